// verifyFile_test.cpp - the verify report reader: opening, the pool paths,
// section walking, kept records and headers, list reading limits, the copy
// with its CRC check, and a field-by-field check of the record layouts
// against the fixture builder's own tables. The reports are built with the
// build, from tests/unit/fixtures/*.vbfdesc and from verifyLayoutDescription;
// a test only copies one into its own directory.
#include "util/common_cpp/verifyFile.h"
#include "util/support/qvsLib.h"

#include "tests/unit/verifyLayout_testutil.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

// Packed record fields may sit at any address; compare copies, never bind
// a reference to them.
template <typename T> T loaded(T value) { return value; }

class TempDir {
public:
    TempDir() {
        char name[] = "/tmp/verifyFileXXXXXX";
        EXPECT_NE(mkdtemp(name), nullptr);
        path_ = name;
    }
    ~TempDir() { EXPECT_EQ(std::system(("rm -rf '" + path_ + "'").c_str()), 0); }
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::string readAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeAll(const std::string& path, const std::string& data) {
    std::ofstream out(path, std::ios::binary);
    out << data;
}

// Copies the prebuilt report `fixture` into the test's directory as `name`:
// the reader's paths and the directory around the report are the test's own.
std::string fixtureReport(const TempDir& dir, const std::string& fixture, const std::string& name) {
    const std::string source = std::string(LOGSIFT_FIXTURES) + "/unit/" + fixture + ".vbf";
    const std::string path = dir.file(name);
    std::ifstream in(source, std::ios::binary);
    if (!in) {
        ADD_FAILURE() << "missing fixture " << source << ": build the fixtures target";
        return path;
    }
    std::ofstream out(path, std::ios::binary);
    if (!(out << in.rdbuf()) || !out.flush())
        ADD_FAILURE() << "could not copy fixture " << source << " to " << path;
    return path;
}

std::string openFailure(std::function<void()> construct) {
    try {
        construct();
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "(no exception)";
}

std::string directoryListing(const std::string& path) {
    std::set<std::string> names;
    if (DIR* d = opendir(path.c_str())) {
        while (dirent* e = readdir(d))
            names.insert(e->d_name);
        closedir(d);
    }
    std::string all;
    for (const auto& n : names)
        all += n + "\n";
    return all;
}

} // namespace

// ---------------------------------------------------------------- opening

TEST(VerifyOpen, MissingFileWithoutTheOpenBit) {
    std::ostringstream out;
    EXPECT_EQ(openFailure([&] { VerifyFile vf("/nonexistent/report.vbf", out, 1); }),
              "Could not open verify statistics file");
    EXPECT_EQ(out.str(), "");
}

TEST(VerifyOpen, MissingFileWithTheOpenBit) {
    std::ostringstream out;
    EXPECT_EQ(openFailure([&] { VerifyFile vf("/nonexistent/report.vbf", out, 4); }),
              "Could not open verify statistics file");
    EXPECT_EQ(out.str(), "\nCould not open /nonexistent/report.vbf: No such file or directory\n");
    // A zero mask means the default 6, which has the bit.
    std::ostringstream byDefault;
    openFailure([&] { VerifyFile vf("/nonexistent/report.vbf", byDefault, 0); });
    EXPECT_EQ(byDefault.str(), out.str());
}

TEST(VerifyOpen, EmptyAndShortFiles) {
    TempDir dir;
    for (size_t size = 0; size < 4; ++size) {
        const std::string path = dir.file("short" + std::to_string(size));
        writeAll(path, std::string(size, 'x'));
        std::ostringstream out;
        EXPECT_EQ(openFailure([&] { VerifyFile vf(path, out, 4); }),
                  "No QMFS Verify results present - run verify first");
        EXPECT_EQ(out.str(), "\nNo QMFS Verify Statistics available from " + path + ".\n");
        std::ostringstream quiet;
        openFailure([&] { VerifyFile vf(path, quiet, 0x40000000); });
        EXPECT_EQ(quiet.str(), "");
    }
}

TEST(VerifyOpen, UnreadableCrcHasNoLineEnd) {
    TempDir dir;
    std::ostringstream out;
    EXPECT_EQ(openFailure([&] { VerifyFile vf(dir.path(), out, 4); }),
              "Could not read CRC from verify statistics file");
    EXPECT_EQ(out.str(), "\nCould not read CRC from " + dir.path() + ": Is a directory");
}

TEST(VerifyOpen, PoolPaths) {
    const std::string pool = "P";
    const std::string server = "S";
    const std::string none;
    std::ostringstream out;
    openFailure([&] { VerifyFile vf(pool, nullptr, 0, out, 4); });
    EXPECT_EQ(out.str(), "\nCould not open /_admin/Manage_QVS/Pool/PVerifyStatistics.vbf: "
                         "No such file or directory\n");
    out.str("");
    openFailure([&] { VerifyFile vf(pool, &none, 0, out, 4); });
    EXPECT_EQ(out.str(), "\nCould not open /_admin/Manage_QVS/Pool/PVerifyStatistics.vbf: "
                         "No such file or directory\n");
    out.str("");
    openFailure([&] { VerifyFile vf(pool, &server, 0, out, true, 4); });
    EXPECT_EQ(out.str(), "\nCould not open //S/_admin/Manage_QVS/Pool/P/QMFS64/VerifyStatistics.vbf: "
                         "No such file or directory\n");
    out.str("");
    openFailure([&] { VerifyFile vf(pool, nullptr, 0, out, false, 4); });
    EXPECT_EQ(out.str(), "\nCould not open /_admin/Manage_QVS/Pool/P/QMFS/VerifyStatistics.vbf: "
                         "No such file or directory\n");
}

TEST(VerifyOpen, FieldsAfterConstruction) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "crc_only", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    EXPECT_TRUE(vf.displayActions);
    EXPECT_TRUE(vf.displayHistograms);
    EXPECT_TRUE(vf.displayObjectDetails);
    EXPECT_EQ(vf.headerSections + vf.overallSections + vf.poolSections + vf.volumeSections +
                  vf.actionSections + vf.conflictBlocksSections + vf.lvSkippedSections,
              0u);
    EXPECT_EQ(vf.storedCrc, 0x11223344u);
    EXPECT_EQ(vf.poolName, "None");
    EXPECT_EQ(vf.path, path);
    EXPECT_EQ(vf.debugMask, 6u);
    EXPECT_FALSE(vf.is64);
    EXPECT_NE(vf.file, nullptr);
    EXPECT_NE(vf.timeStamp, 0);
    EXPECT_EQ(out.str(), "");
    // A file of the CRC alone has no sections.
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    EXPECT_EQ(out.str(), "No data in the statictics file.  Ensure that verify has been run "
                         "since the last boot.\n");
}

// ---------------------------------------------------------------- reading

TEST(VerifyRead, VolumesAndHeadersKeptInFileOrder) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "volumes_and_headers", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    vf.displayObjectDetails = false;
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    ASSERT_EQ(vf.volumes.size(), 3u);
    ASSERT_EQ(vf.volumeSectionHeaders.size(), 3u);
    EXPECT_EQ(vf.volumeSections, 3u);
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(UnicodeString(vf.volumes[i].volumeName, 256).utf8(), "VOL" + std::to_string(i + 1));
        EXPECT_EQ(vf.volumeSectionHeaders[i].reserved32[8], i + 1);
        EXPECT_EQ(loaded(vf.volumeSectionHeaders[i].size), 6268u);
    }
    const unsigned char reserved8[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_EQ(std::memcmp(vf.headerSectionHeader.reserved8, reserved8, 12), 0);
    EXPECT_EQ(std::memcmp(vf.headerSectionHeader.reserved32, "kept bytes", 10), 0);
    EXPECT_EQ(std::memcmp(vf.headerSectionHeader.type, "QMfSVerH", 8), 0);
    EXPECT_EQ(vf.headerPayload[0], 0xaa);
    EXPECT_EQ(vf.headerPayload[1], 0xbb);
    EXPECT_EQ(std::memcmp(vf.overallSectionHeader.type, "QMfSVerO", 8), 0);
    const std::string text = out.str();
    EXPECT_LT(text.find("LV: VOL1"), text.find("LV: VOL2"));
    EXPECT_LT(text.find("LV: VOL2"), text.find("LV: VOL3"));
}

TEST(VerifyRead, OddOffsetFieldsOfThePool) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "pool_odd_offsets", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    EXPECT_EQ(loaded(vf.poolStats.errors), 0x0102030405060708ull);
    EXPECT_EQ(loaded(vf.poolStats.warnings), 0x1112131415161718ull);
    EXPECT_NE(out.str().find("Pool: P\xc3\xa9\n"), std::string::npos);
}

TEST(VerifyRead, ActionListSizes) {
    TempDir dir;
    const std::string good = fixtureReport(dir, "actions_two", "good.vbf");
    std::ostringstream out;
    VerifyFile vf(good, out, 0);
    vf.displayActions = false;
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    ASSERT_EQ(vf.actions.count, 2u);
    EXPECT_EQ(loaded(vf.actions.records[1].key), 6u);
    EXPECT_EQ(vf.actions.records[0].action[0], 'A');
    EXPECT_EQ(out.str().find("Action list"), std::string::npos);

    const std::string bad = fixtureReport(dir, "actions_bad_size", "bad.vbf");
    std::ostringstream badOut;
    VerifyFile badFile(bad, badOut, 0);
    EXPECT_EQ(badFile.ReadAndValidateSectionAll(), 21756u);
    EXPECT_NE(badOut.str().find("util/common_cpp/verifyFile[3234]  328  327\n"
                                "util/common_cpp/verifyFile[1490]\n"),
              std::string::npos);
}

// A count that claims more records than the file holds fails as a short read
// without asking for the memory the count would need.
TEST(VerifyRead, HugeCountsFailWithoutAllocating) {
    struct Case {
        const char* kind;
        const char* count;
        const char* lines;
    } cases[] = {
        {"action", "0x80000000", "[1779]\nutil/common_cpp/verifyFile[3257]\nutil/common_cpp/verifyFile[1490]\n"},
        {"conflicts", "0x20000000", "[1779]\nutil/common_cpp/verifyFile[3195]\nutil/common_cpp/verifyFile[1520]\n"},
        {"skipped", "0x40000000", "[1779]\nutil/common_cpp/verifyFile[3334]\nutil/common_cpp/verifyFile[1440]\n"},
    };
    TempDir dir;
    for (const Case& c : cases) {
        // count * size wraps to 0, so the size check passes with no records.
        const std::string path =
            fixtureReport(dir, std::string("huge_count_") + c.kind, std::string(c.kind) + ".vbf");
        std::ostringstream out;
        VerifyFile vf(path, out, 0);
        EXPECT_EQ(vf.ReadAndValidateSectionAll(), 20100u) << c.kind;
        EXPECT_NE(out.str().find(std::string("util/common_cpp/verifyFile") + c.lines),
                  std::string::npos)
            << out.str();
    }
}

TEST(VerifyRead, ListsAndSkipsThroughAPipe) {
    TempDir dir;
    const std::string source = fixtureReport(dir, "lists_and_skips", "r.vbf");
    const std::string fifo = dir.file("pipe");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string bytes = readAll(source);
    std::thread writer([&] {
        std::ofstream pipe(fifo, std::ios::binary);
        pipe << bytes;
    });
    std::ostringstream out;
    {
        VerifyFile vf(fifo, out, 0);
        EXPECT_EQ(vf.RemainingBytes(), -1);
        EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
        EXPECT_EQ(vf.conflicts.count, 2u);
        EXPECT_EQ(loaded(vf.conflicts.records[1].block), 17u);
    }
    writer.join();
    EXPECT_NE(out.str().find(" Message record section will be skipped.\n"), std::string::npos);
    EXPECT_NE(out.str().find(" Extra ConflictBlocks section will be skipped.\n"), std::string::npos);
}

TEST(VerifyRead, NothingWrittenToOrNextToTheReport) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "pool_and_volume", "r.vbf");
    const std::string before = readAll(path);
    const std::string listing = directoryListing(dir.path());
    struct stat info;
    ASSERT_EQ(stat(path.c_str(), &info), 0);
    {
        std::ostringstream out;
        VerifyFile vf(path, out, 0);
        EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    }
    struct stat after;
    ASSERT_EQ(stat(path.c_str(), &after), 0);
    EXPECT_EQ(readAll(path), before);
    EXPECT_EQ(directoryListing(dir.path()), listing);
    EXPECT_EQ(after.st_mtime, info.st_mtime);
}

// ---------------------------------------------------------------- copy

TEST(VerifyCopy, CopiesTheWholeReportWhenTheCrcIsRight) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "pool_errors_and_volume", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    const std::string destination = dir.file("copy.vbf");
    vf.CopyFile(destination);
    EXPECT_EQ(out.str(), "  Destination file: " + destination + "\n");
    EXPECT_EQ(readAll(destination), readAll(path));
    EXPECT_EQ(vf.destinationName, destination);
}

TEST(VerifyCopy, WrongCrcThrows) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "wrong_crc", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    EXPECT_EQ(openFailure([&] { vf.CopyFile(dir.file("copy.vbf")); }), "CRC is incorrect");
    const std::string text = out.str();
    const std::string prefix = "util/common_cpp/verifyFile[1941] CRC is not correct.  Expected 5 but calculated ";
    ASSERT_NE(text.find(prefix), std::string::npos) << text;
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(text.substr(text.size() - 2), ".\n");
}

TEST(VerifyCopy, UncreatableDestination) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "header_only", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    const std::string destination = dir.file("missing/copy.vbf");
    EXPECT_EQ(openFailure([&] { vf.CopyFile(destination); }), "Could not create destination file");
    EXPECT_EQ(out.str(), "  Destination file: " + destination + "\n" +
                             "util/common_cpp/verifyFile[1895] Could not create \"" + destination +
                             "\" because of \"No such file or directory\"\n");
}

// ---------------------------------------------------------------- layouts

namespace {

using verifyLayout_test::FieldCheck;
using verifyLayout_test::valueFor;

template <typename R> void expectFields(const R& record, const std::vector<FieldCheck<R>>& fields) {
    for (const auto& f : fields)
        EXPECT_EQ(f.get(record), valueFor(f.name, f.width, f.isSigned)) << f.name;
}

} // namespace

TEST(VerifyLayout, EveryFieldOfTheFixedRecords) {
    const auto status = verifyLayout_test::statusFields();
    const auto volume = verifyLayout_test::volumeFields();
    const auto pool = verifyLayout_test::poolFields();

    TempDir dir;
    const std::string path = fixtureReport(dir, "layout_fixed", "layout.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    vf.displayObjectDetails = false;
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    auto overallFields = status;
    overallFields.erase(overallFields.begin() + 10, overallFields.begin() + 12);
    expectFields(vf.status, overallFields);
    EXPECT_EQ(loaded(vf.status.finalStatusValid), 1u);
    EXPECT_EQ(UnicodeString(vf.status.poolName, 64).utf8(), std::string(64, 'p'));
    EXPECT_STREQ(vf.status.sourceSetter, "setter");
    EXPECT_STREQ(vf.status.sourceCaller, "caller");
    expectFields(vf.poolStats, pool);
    EXPECT_EQ(UnicodeString(vf.poolStats.poolName, 499).utf8(), "POOL");
    ASSERT_EQ(vf.volumes.size(), 1u);
    expectFields(vf.volumes[0], volume);
    EXPECT_EQ(UnicodeString(vf.volumes[0].volumeName, 256).utf8(), "VOLUME");
    EXPECT_EQ(loaded(vf.volumes[0].volumeId.timeLow), 1u);
    EXPECT_EQ(vf.volumes[0].volumeId.node[5], 0x0b);
    EXPECT_STREQ(vf.volumes[0].bt.objectTree.name, "tree name");
}

TEST(VerifyLayout, EveryFieldOfTheListRecords) {
    const auto action = verifyLayout_test::actionFields();
    const auto conflict = verifyLayout_test::conflictFields();
    const auto skipped = verifyLayout_test::skippedFields();
    TempDir dir;
    const std::string path = fixtureReport(dir, "layout_lists", "lists.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    ASSERT_EQ(vf.actions.count, 1u);
    expectFields(vf.actions.records[0], action);
    EXPECT_EQ(UnicodeString(vf.actions.records[0].object, 16).utf8(), "OBJ");
    EXPECT_STREQ(vf.actions.records[0].subObject, "sub");
    EXPECT_STREQ(vf.actions.records[0].action, "act");
    ASSERT_EQ(vf.conflicts.count, 1u);
    expectFields(vf.conflicts.records[0], conflict);
    ASSERT_EQ(vf.lvSkipped.count, 1u);
    expectFields(vf.lvSkipped.records[0], skipped);
    EXPECT_EQ(UnicodeString(vf.lvSkipped.records[0].volumeName, 256).utf8(), "SKIP");
    EXPECT_STREQ(vf.lvSkipped.records[0].sourceSetter, "src");
}

// ---------------------------------------------------------------- read errors

namespace {

// A stream that serves `data` and then fails every read with EIO.
struct FailingSource {
    std::string data;
    size_t position = 0;
};

ssize_t failingRead(void* cookie, char* buffer, size_t size) {
    auto* source = static_cast<FailingSource*>(cookie);
    if (source->position >= source->data.size()) {
        errno = EIO;
        return -1;
    }
    size_t n = std::min(size, source->data.size() - source->position);
    std::memcpy(buffer, source->data.data() + source->position, n);
    source->position += n;
    return static_cast<ssize_t>(n);
}

int failingClose(void*) { return 0; }

// Replaces the reader's file by one that fails after `good` bytes of `path`
// (counted from offset 4, where the reader stands after construction).
void failAfter(VerifyFile& vf, FailingSource& source, const std::string& path, size_t good) {
    source.data = readAll(path).substr(4, good);
    std::fclose(vf.file);
    cookie_io_functions_t io = {failingRead, nullptr, nullptr, failingClose};
    vf.file = fopencookie(&source, "rb", io);
    ASSERT_NE(vf.file, nullptr);
}

const std::string EIO_STATUS = std::to_string(5u + 0x22BA5000u);

} // namespace

TEST(VerifyReadErrors, SectionHeader) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "overall_and_pool", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    FailingSource source;
    failAfter(vf, source, path, 566 + 10);
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 5u + 0x22BA5000u);
    const std::string text = out.str();
    EXPECT_NE(text.find("util/common_cpp/verifyFile[1843] Could not read because of "
                        "\"Input/output error\"\n"
                        "util/common_cpp/verifyFile[1595] " + EIO_STATUS + "\n"),
              std::string::npos)
        << text;
}

TEST(VerifyReadErrors, SectionPayload) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "overall_and_pool", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    FailingSource source;
    failAfter(vf, source, path, 566 + 96 + 100);
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 5u + 0x22BA5000u);
    const std::string text = out.str();
    EXPECT_NE(text.find("util/common_cpp/verifyFile[1779]\n"
                        "util/common_cpp/verifyFile[1785] Could not read because of "
                        "\"Input/output error\"\n"
                        "util/common_cpp/verifyFile[1786]\n"
                        "util/common_cpp/verifyFile[531]\n"),
              std::string::npos)
        << text;
}

TEST(VerifyReadErrors, CopyStopsOnAReadError) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "overall_and_pool", "r.vbf");
    std::ostringstream out;
    VerifyFile vf(path, out, 0);
    FailingSource source;
    failAfter(vf, source, path, 5000);
    const std::string destination = dir.file("copy.vbf");
    EXPECT_EQ(openFailure([&] { vf.CopyFile(destination); }), "Unable to read verify statistics");
    EXPECT_EQ(out.str(), "  Destination file: " + destination + "\n" +
                             "util/common_cpp/verifyFile[1816] Could not read because of "
                             "\"Input/output error\"\n"
                             "util/common_cpp/verifyFile[1951] Unable to read complete Verify "
                             "file.  Status " + EIO_STATUS + "\n");
    // What came before the error was written out.
    EXPECT_EQ(readAll(destination).size(), 4u + 4096u);
}

// ---------------------------------------------------------------- a diagnostic that throws

namespace {

// Takes its first line, then fails every write: with the badbit in its
// stream's exception mask, a diagnostic written after the first line throws.
class FirstLineOnly : public std::streambuf {
protected:
    int_type overflow(int_type c) override {
        if (done || traits_type::eq_int_type(c, traits_type::eof()))
            return traits_type::eof();
        done = traits_type::to_char_type(c) == '\n';
        return c;
    }

private:
    bool done = false;
};

std::size_t openDescriptors() {
    std::size_t count = 0;
    if (DIR* dir = opendir("/proc/self/fd")) {
        while (readdir(dir) != nullptr)
            ++count;
        closedir(dir);
    }
    return count;
}

} // namespace

TEST(VerifyOpen, ADiagnosticThatThrowsLeavesNoFileOpen) {
    TempDir dir;
    const std::string path = dir.file("short");
    writeAll(path, "xy");
    FirstLineOnly failing;
    std::ostream out(&failing);
    const std::size_t before = openDescriptors();
    out.exceptions(std::ios::badbit);
    // The first line (the empty one) goes; the message after it throws.
    EXPECT_THROW(VerifyFile(path, out, 4), std::ios_base::failure);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(VerifyCopy, ADiagnosticThatThrowsLeavesNoDestinationOpen) {
    TempDir dir;
    const std::string path = fixtureReport(dir, "wrong_crc", "r.vbf");
    FirstLineOnly failing;
    std::ostream out(&failing);
    VerifyFile vf(path, out, 4);
    const std::size_t before = openDescriptors();
    out.exceptions(std::ios::badbit);
    // "Destination file:" goes; the CRC message after it throws.
    EXPECT_THROW(vf.CopyFile(dir.file("copy.vbf")), std::ios_base::failure);
    EXPECT_EQ(openDescriptors(), before);
}
