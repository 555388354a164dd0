// logsiftDriver_test.cpp - the file types, the file of a run, and the steps
// of the two walks in their order, whichever way each ends.
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftDriver.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using LogsiftDriver::FileType;

TEST(FileTypes, TheFourWordsAndNothingElse) {
    struct Expected {
        const char* word;
        bool rebuildLog;
        bool newest;
        const char* operand;
    };
    const Expected expected[] = {{"rtf", true, false, "FILENAME"},
                                 {"vbf", false, false, "FILENAME"},
                                 {"rtfn", true, true, "POOLNAME"},
                                 {"vbfn", false, true, "POOLNAME"}};
    for (const Expected& e : expected) {
        const FileType* type = LogsiftDriver::FindFileType(e.word);
        ASSERT_NE(type, nullptr) << e.word;
        EXPECT_EQ(type->rebuildLog, e.rebuildLog) << e.word;
        EXPECT_EQ(type->newest, e.newest) << e.word;
        EXPECT_STREQ(type->operand, e.operand) << e.word;
    }
    for (const char* word : {"", "VBF", "vbf ", "rt", "rtfnn", "vbfN", "-vbf"})
        EXPECT_EQ(LogsiftDriver::FindFileType(word), nullptr) << "'" << word << "'";
}

TEST(Locate, NamedFileIsTakenAsItIs) {
    const LogsiftDriver::Source source =
        LogsiftDriver::Locate(*LogsiftDriver::FindFileType("vbf"), "no/such/file", "/nowhere/");
    EXPECT_EQ(source.path, "no/such/file");
    EXPECT_EQ(source.pool, "");
    EXPECT_EQ(source.directory, "");
}

TEST(Locate, SearchThatFindsNothingSaysWhereItLooked) {
    const LogsiftDriver::Source source =
        LogsiftDriver::Locate(*LogsiftDriver::FindFileType("rtfn"), "POOL", "/nonexistent-rav/");
    EXPECT_EQ(source.path, "");
    EXPECT_EQ(source.pool, "POOL");
    EXPECT_EQ(source.directory, "/nonexistent-rav/");
}

TEST(Locate, SearchFindsThePoolsNewestFile) {
    char templ[] = "/tmp/logsift-driver-XXXXXX";
    ASSERT_NE(mkdtemp(templ), nullptr);
    const std::string dir = std::string(templ) + "/";
    std::ofstream(dir + "POOL_verify_00000001_report.vbf") << "x";
    std::ofstream(dir + "POOL_verify_0000000A_report.vbf") << "x";
    const LogsiftDriver::Source source =
        LogsiftDriver::Locate(*LogsiftDriver::FindFileType("vbfn"), "POOL", dir);
    EXPECT_EQ(source.path, dir + "POOL_verify_0000000A_report.vbf");
    unlink((dir + "POOL_verify_00000001_report.vbf").c_str());
    unlink((dir + "POOL_verify_0000000A_report.vbf").c_str());
    rmdir(templ);
}

TEST(FailureStatus, OwnStatusMemoryOrBadParameter) {
    EXPECT_EQ(LogsiftDriver::FailureStatus(std::bad_alloc()), QVS::zERR_NO_MEMORY);
    EXPECT_EQ(LogsiftDriver::FailureStatus(QVSError("x", 20163, "here")), 20163u);
    EXPECT_EQ(LogsiftDriver::FailureStatus(std::runtime_error("x")),
              QVS::zERR_BAD_PARAMETER_VALUE);
}

// Records the steps it is given.
class Recording : public LogsiftDriver::VerifyReading {
public:
    explicit Recording(std::string path, bool throwInStart = false)
        : path(std::move(path)), throwInStart(throwInStart) {}
    std::unique_ptr<VerifyFile> Open() override {
        steps.push_back("open");
        return std::make_unique<VerifyFile>(path, messages, 4);
    }
    unsigned OpenFailed(const std::exception&) override {
        steps.push_back("open failed");
        return 1;
    }
    void Start(VerifyFile&) override {
        steps.push_back("start");
        if (throwInStart)
            throw std::runtime_error("stop");
    }
    unsigned Finished(VerifyFile&, unsigned status) override {
        steps.push_back("finished " + std::to_string(status));
        return 2;
    }
    unsigned Threw(VerifyFile&, const std::exception& e) override {
        steps.push_back(std::string("threw ") + e.what());
        return 3;
    }
    std::string path;
    bool throwInStart;
    std::ostringstream messages;
    std::vector<std::string> steps;
};

TEST(ReadVerifyReport, OpenFailureEndsTheWalk) {
    Recording reading("/nonexistent/report.vbf");
    EXPECT_EQ(LogsiftDriver::ReadVerifyReport(reading), 1u);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"open", "open failed"}));
}

TEST(ReadVerifyReport, WalkEndsWithTheReadersStatus) {
    Recording reading(std::string(LOGSIFT_FIXTURES) + "/unit/overall_and_pool.vbf");
    EXPECT_EQ(LogsiftDriver::ReadVerifyReport(reading), 2u);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"open", "start", "finished 0"}));
}

TEST(ReadVerifyReport, FailureInsideTheWalkIsHandedToThrew) {
    Recording reading(std::string(LOGSIFT_FIXTURES) + "/unit/overall_and_pool.vbf", true);
    EXPECT_EQ(LogsiftDriver::ReadVerifyReport(reading), 3u);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"open", "start", "threw stop"}));
}

class RebuildRecording : public LogsiftDriver::RebuildReading {
public:
    RebuildRecording(std::string path, bool lookup, bool throwInStart = false)
        : path(std::move(path)), lookup(lookup), throwInStart(throwInStart) {}
    std::unique_ptr<RebuildFile> Open() override {
        steps.push_back("open");
        return std::make_unique<RebuildFile>(path, messages, 4);
    }
    unsigned OpenFailed(const std::exception&) override {
        steps.push_back("open failed");
        return 1;
    }
    void Start(RebuildFile&) override {
        steps.push_back("start");
        if (throwInStart)
            throw std::runtime_error("stop");
    }
    void MessagesRead(unsigned status) override {
        steps.push_back("messages " + std::to_string(status));
    }
    bool Lookup() const override { return lookup; }
    const std::string& Server() const override { return server; }
    unsigned Finished(RebuildFile&, unsigned status) override {
        steps.push_back("finished " + std::to_string(status));
        return 2;
    }
    unsigned Threw(RebuildFile&, const std::exception& e) override {
        steps.push_back(std::string("threw ") + e.what());
        return 3;
    }
    void Done(RebuildFile& log) override {
        steps.push_back("done " + std::to_string(log.Text().size()));
    }
    std::string path;
    bool lookup;
    bool throwInStart;
    std::string server;
    std::ostringstream messages;
    std::vector<std::string> steps;
};

std::string writeLog(const std::string& text) {
    char templ[] = "/tmp/logsift-driver-log-XXXXXX";
    const int fd = mkstemp(templ);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(fd);
    return templ;
}

const std::string LOG = "<rebuildLog><messageList></messageList><todList></todList></rebuildLog>";

TEST(ReadRebuildLog, WalksWithoutLookupsInOrder) {
    const std::string path = writeLog(LOG);
    RebuildRecording reading(path, false);
    EXPECT_EQ(LogsiftDriver::ReadRebuildLog(reading), 2u);
    EXPECT_EQ(reading.steps,
              (std::vector<std::string>{"open", "start", "messages 0", "finished 0",
                                        "done " + std::to_string(LOG.size())}));
    unlink(path.c_str());
}

TEST(ReadRebuildLog, FailureInsideTheWalksStillEndsWithDone) {
    const std::string path = writeLog(LOG);
    RebuildRecording reading(path, false, true);
    EXPECT_EQ(LogsiftDriver::ReadRebuildLog(reading), 3u);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"open", "start", "threw stop",
                                                       "done " + std::to_string(LOG.size())}));
    unlink(path.c_str());
}

TEST(ReadRebuildLog, LogThatCannotBeLoadedHasNoDone) {
    const std::string path = writeLog("no root element here");
    RebuildRecording reading(path, true);
    EXPECT_EQ(LogsiftDriver::ReadRebuildLog(reading), 1u);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"open", "open failed"}));
    unlink(path.c_str());
}

} // namespace
