// inputFile_test.cpp - how the companions open a report or a log: only what
// has an end, without blocking, and no further than the size it had when it
// was opened (a file that grows or is replaced while it is read).
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/support/inputFile.h"
#include "util/support/qvsLib.h"

#include "tests/unit/scratch_testutil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

bool open(const std::string& path, QVS::InputKinds kinds, QVS::InputFile& file,
          QVS::InputFailure& failure) {
    return QVS::OpenInput(path, kinds, file, failure);
}

// A rebuild log read from an opened input, as the companions read one.
std::string logText(const std::string& path, QVS::InputFile& file,
                    std::ostream* diagnostics = nullptr) {
    std::ostringstream out;
    RebuildFile::Opened opened;
    opened.regular = file.regular;
    opened.size = file.size;
    opened.diagnostics = diagnostics;
    opened.descriptor = file.Take();
    return RebuildFile(path, opened, out, 4).Text();
}

// A verify report of one header section, its CRC right.
std::string report() {
    std::string body(96 + 80, '\0');
    body.replace(0, 8, "QMfSVerS");
    body[20] = static_cast<char>(176);
    body.replace(24, 8, "QMfSVerH");
    unsigned crc = ~QVS::updateCRC(0xFFFFFFFFu, reinterpret_cast<unsigned char*>(&body[0]),
                                   static_cast<unsigned long>(body.size()));
    std::string file(4, '\0');
    for (int i = 0; i < 4; ++i)
        file[i] = static_cast<char>((crc >> (8 * i)) & 0xFF);
    return file + body;
}

} // namespace

TEST(OpenInput, ARegularFileGivesItsSizeAndTime) {
    Scratch scratch;
    const std::string path = scratch.Write("r", "12345");
    QVS::InputFile file;
    QVS::InputFailure failure;
    ASSERT_TRUE(open(path, QVS::InputKinds::RegularOnly, file, failure)) << failure.text;
    EXPECT_TRUE(file.regular);
    EXPECT_EQ(file.size, 5u);
    EXPECT_EQ(file.Limit(), 5u);
    EXPECT_GT(file.modified, 0);
    EXPECT_GE(file.descriptor, 0);
}

TEST(OpenInput, AFifoWithoutWriterIsRefusedAtOnce) {
    Scratch scratch;
    const std::string path = scratch.Path("fifo");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    QVS::InputFile file;
    QVS::InputFailure failure;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(open(path, QVS::InputKinds::RegularOnly, file, failure));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(failure.error, QVS::NOT_READABLE_KIND);
    EXPECT_EQ(failure.text, "not a regular file: FIFO");
    EXPECT_EQ(file.descriptor, -1);
}

TEST(OpenInput, DevicesAndDirectoriesAreRefusedByKind) {
    Scratch scratch;
    const std::string link = scratch.Path("zero");
    ASSERT_EQ(::symlink("/dev/zero", link.c_str()), 0);
    for (const auto& [path, text] :
         {std::pair<std::string, std::string>{link, "not a regular file: character device"},
          {"/dev/null", "not a regular file: character device"},
          {"/tmp", "not a regular file: directory"}}) {
        for (QVS::InputKinds kinds :
             {QVS::InputKinds::RegularOnly, QVS::InputKinds::RegularOrStream}) {
            QVS::InputFile file;
            QVS::InputFailure failure;
            EXPECT_FALSE(open(path, kinds, file, failure)) << path;
            EXPECT_EQ(failure.text, text) << path;
        }
    }
}

TEST(OpenInput, AMissingFileGivesItsErrno) {
    QVS::InputFile file;
    QVS::InputFailure failure;
    EXPECT_FALSE(open("/nonexistent/x", QVS::InputKinds::RegularOnly, file, failure));
    EXPECT_EQ(failure.error, ENOENT);
    EXPECT_EQ(failure.text, "No such file or directory");
}

TEST(OpenInput, AStreamNamedOnPurposeIsReadToItsEnd) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    ASSERT_EQ(::write(pipe[1], "abc", 3), 3);
    ::close(pipe[1]);
    const std::string path = "/proc/self/fd/" + std::to_string(pipe[0]);
    {
        QVS::InputFile file;
        QVS::InputFailure failure;
        EXPECT_FALSE(open(path, QVS::InputKinds::RegularOnly, file, failure));
        EXPECT_EQ(failure.text, "not a regular file: FIFO");
    }
    QVS::InputFile file;
    QVS::InputFailure failure;
    ASSERT_TRUE(open(path, QVS::InputKinds::RegularOrStream, file, failure)) << failure.text;
    EXPECT_FALSE(file.regular);
    EXPECT_EQ(file.Limit(), UINT64_MAX);
    char text[8];
    EXPECT_EQ(::read(file.descriptor, text, sizeof text), 3);
    ::close(pipe[0]);
}

TEST(OpenInput, AReportThatGrowsIsReadAsItWasWhenOpened) {
    Scratch scratch;
    const std::string path = scratch.Write("report.vbf", report());
    QVS::InputFile file;
    QVS::InputFailure failure;
    ASSERT_TRUE(open(path, QVS::InputKinds::RegularOnly, file, failure));
    // A writer appends a section after the opening.
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(500, 'x');
    std::ostringstream out;
    VerifyFile reader(path, file.Take(), file.Limit(), out, 4);
    EXPECT_EQ(reader.ReadAndValidateSectionAll(), 21738u); // the header alone
    uint32_t computed = 0;
    ASSERT_TRUE(reader.FinishCrc(computed));
    EXPECT_EQ(computed, reader.storedCrc);
}

TEST(OpenInput, ALogReplacedWhileItIsReadIsTheOneOpened) {
    Scratch scratch;
    const std::string first = "<rebuildLog><messageHistory></messageHistory></rebuildLog>";
    const std::string path = scratch.Write("log.xml", first);
    QVS::InputFile file;
    QVS::InputFailure failure;
    ASSERT_TRUE(open(path, QVS::InputKinds::RegularOnly, file, failure));
    // Another log takes its name, and the first one grows.
    scratch.Write("other.xml", "<rebuildLog>other</rebuildLog>");
    ASSERT_EQ(::rename(scratch.Path("other.xml").c_str(), path.c_str()), 0);
    ASSERT_EQ(::write(file.descriptor, "", 0), -1); // opened for reading only
    std::ostringstream diagnostics;
    EXPECT_EQ(logText(path, file, &diagnostics), first);
    EXPECT_EQ(diagnostics.str(), "");
}

TEST(OpenInput, ALogThatGrowsStopsAtItsSizeWhenOpened) {
    Scratch scratch;
    const std::string first = "<rebuildLog><messageHistory></messageHistory></rebuildLog>";
    const std::string path = scratch.Write("log.xml", first);
    QVS::InputFile file;
    QVS::InputFailure failure;
    ASSERT_TRUE(open(path, QVS::InputKinds::RegularOnly, file, failure));
    std::ofstream(path, std::ios::binary | std::ios::app) << "<more/>";
    EXPECT_EQ(logText(path, file), first);
}

TEST(OpenInput, ADescriptorNotTakenIsClosed) {
    Scratch scratch;
    const std::string path = scratch.Write("r", "x");
    int descriptor;
    {
        QVS::InputFile file;
        QVS::InputFailure failure;
        ASSERT_TRUE(open(path, QVS::InputKinds::RegularOnly, file, failure));
        descriptor = file.descriptor;
    }
    EXPECT_EQ(::fcntl(descriptor, F_GETFD), -1);
}

// A log that cannot be read is reported once, by the program that opened
// it: the reader's own line goes to the stream it is given, not to the
// standard error stream as well.
TEST(OpenInput, ALogThatCannotBeReadReportsToItsOwnStream) {
    Scratch scratch;
    const std::string path = scratch.Write("log.xml", "<rebuildLog></rebuildLog>");
    std::ostringstream out, diagnostics, standardError;
    std::streambuf* saved = std::cerr.rdbuf(standardError.rdbuf());
    RebuildFile::Opened opened;
    opened.regular = true;
    opened.size = 100;
    opened.diagnostics = &diagnostics;
    // A directory opens, and every read of it fails.
    opened.descriptor = ::open(scratch.Path("").c_str(), O_RDONLY);
    EXPECT_THROW(RebuildFile(path, opened, out, 4), std::runtime_error);
    std::cerr.rdbuf(saved);
    EXPECT_EQ(standardError.str(), "");
    EXPECT_EQ(diagnostics.str(), "util/common_cpp/rebuildFile[97] Could not read from \"" + path +
                                     "\" because of \"Is a directory\"\n");
}
