// logsiftDriver_test.cpp - the file types, the file of a run, and the steps
// of the two walks in their order, whichever way each ends.
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftDriver.h"
#include "util/logsift/logsiftView.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include "util/support/inputFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
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

class ScanDir {
public:
    ScanDir() {
        char templ[] = "/tmp/logsift-scan-XXXXXX";
        path = mkdtemp(templ);
        path += "/";
    }
    ~ScanDir() {
        if (std::system(("rm -rf '" + path + "'").c_str()) != 0)
            std::fprintf(stderr, "could not remove %s\n", path.c_str());
    }
    void touch(const std::string& name) const { std::ofstream(path + name) << "x"; }
    std::string path;
};

// What the search gives pool by pool, for the pools the scan found.
void expectSameAsTheSearch(const std::string& dir, const std::vector<LogsiftDriver::PoolFiles>& pools) {
    for (const LogsiftDriver::PoolFiles& pool : pools) {
        std::string report, log;
        if (!FindTheNewestFile(dir, pool.name, report, false))
            report.clear();
        if (!FindTheNewestFile(dir, pool.name, log, true))
            log.clear();
        EXPECT_EQ(pool.report, report) << pool.name;
        EXPECT_EQ(pool.log, log) << pool.name;
    }
}

TEST(ScanPools, EveryPoolTheNameRuleAllows) {
    ScanDir dir;
    for (const char* name :
         {"POOL1_verify_00000010_report.vbf", "POOL1_verify_0000000f_report.vbf",
          "POOL1_rebuild_00000003_log.xml", "my_pool_verify_00000001_report.vbf",
          "Mixed_Case_VERIFY_0000000A_REPORT.VBF", "logsonly_rebuild_00000001_log.xml",
          "bad_stamp_verify_zzzzzzzz_report.vbf", "short_verify_123_report.vbf",
          "notes.txt", "POOL1_verify_00000010_report.vbf.bak", "_verify_00000001_report.vbf"})
        dir.touch(name);
    std::vector<LogsiftDriver::PoolFiles> pools;
    ASSERT_EQ(LogsiftDriver::ScanPools(dir.path, pools), 0);
    std::vector<std::string> names;
    for (const auto& pool : pools)
        names.push_back(pool.name);
    EXPECT_EQ(names, (std::vector<std::string>{"", "Mixed_Case", "POOL1", "bad_stamp",
                                               "logsonly", "my_pool"}));
    expectSameAsTheSearch(dir.path, pools);
    EXPECT_EQ(pools[2].report, dir.path + "POOL1_verify_00000010_report.vbf");
    EXPECT_EQ(pools[2].log, dir.path + "POOL1_rebuild_00000003_log.xml");
    EXPECT_EQ(pools[4].report, "");
}

TEST(ScanPools, NamesThatDifferInCaseAreOnePoolNamedByItsNewestReport) {
    ScanDir dir;
    dir.touch("data_verify_00000001_report.vbf");
    dir.touch("DATA_verify_00000002_report.vbf");
    dir.touch("Data_rebuild_00000009_log.xml");
    std::vector<LogsiftDriver::PoolFiles> pools;
    ASSERT_EQ(LogsiftDriver::ScanPools(dir.path, pools), 0);
    ASSERT_EQ(pools.size(), 1u);
    EXPECT_EQ(pools[0].name, "DATA");
    expectSameAsTheSearch(dir.path, pools);
}

TEST(ScanPools, EqualStampsGoToTheEntryMetLastAsInTheSearch) {
    ScanDir dir;
    for (const char* stamp : {"00000001", "00000003", "00000002", "00000003"})
        dir.touch(std::string("p_verify_") + stamp + "_report.vbf");
    dir.touch("p_verify_00000003_REPORT.vbf");
    dir.touch("P_verify_00000003_report.VBF");
    std::vector<LogsiftDriver::PoolFiles> pools;
    ASSERT_EQ(LogsiftDriver::ScanPools(dir.path, pools), 0);
    ASSERT_EQ(pools.size(), 1u);
    expectSameAsTheSearch(dir.path, pools);
}

TEST(ScanPools, AThousandPoolsAgreeWithTheSearch) {
    ScanDir dir;
    for (int i = 0; i < 1000; ++i) {
        char name[64];
        std::snprintf(name, sizeof name, "pool%04d_verify_%08x_report.vbf", i, 100 + i % 7);
        dir.touch(name);
        std::snprintf(name, sizeof name, "pool%04d_verify_%08x_report.vbf", i, 3);
        dir.touch(name);
        if (i % 3 == 0) {
            std::snprintf(name, sizeof name, "pool%04d_rebuild_%08x_log.xml", i, i);
            dir.touch(name);
        }
    }
    std::vector<LogsiftDriver::PoolFiles> pools;
    ASSERT_EQ(LogsiftDriver::ScanPools(dir.path, pools), 0);
    ASSERT_EQ(pools.size(), 1000u);
    EXPECT_EQ(pools.front().name, "pool0000");
    EXPECT_EQ(pools.back().name, "pool0999");
    // The search reads the directory once per pool: a sample of them.
    std::vector<LogsiftDriver::PoolFiles> sample;
    for (std::size_t i = 0; i < pools.size(); i += 37)
        sample.push_back(pools[i]);
    expectSameAsTheSearch(dir.path, sample);
}

TEST(ScanPools, DirectoryThatCannotBeReadGivesItsErrno) {
    std::vector<LogsiftDriver::PoolFiles> pools{{"stale", "", "", "", ""}};
    EXPECT_EQ(LogsiftDriver::ScanPools("/nonexistent-rav-directory/", pools), ENOENT);
}

TEST(ScanPools, DirectoryWithoutReportsHasNoPools) {
    ScanDir dir;
    dir.touch("readme.txt");
    dir.touch("pool_verify_00000001_report.vbf.tmp");
    std::vector<LogsiftDriver::PoolFiles> pools;
    ASSERT_EQ(LogsiftDriver::ScanPools(dir.path, pools), 0);
    EXPECT_TRUE(pools.empty());
}

TEST(OutcomeOf, OwnStatusMemoryBadParameterOrInternal) {
    const LogsiftDriver::Outcome memory = LogsiftDriver::OutcomeOf(std::bad_alloc());
    EXPECT_EQ(memory.status, QVS::zERR_NO_MEMORY);
    EXPECT_EQ(memory.text, "out of memory");
    EXPECT_TRUE(memory.threw);
    EXPECT_EQ(LogsiftDriver::OutcomeOf(QVSError("x", 20163, "here")).status, 20163u);
    const LogsiftDriver::Outcome input = LogsiftDriver::OutcomeOf(std::runtime_error("x"));
    EXPECT_EQ(input.status, QVS::zERR_BAD_PARAMETER_VALUE);
    EXPECT_EQ(input.thrown, "x");
    EXPECT_FALSE(input.internal);
    // A programming error is not reported as bad input.
    const LogsiftDriver::Outcome internal = LogsiftDriver::OutcomeOf(std::logic_error("bug"));
    EXPECT_TRUE(internal.internal);
    EXPECT_EQ(internal.status, QVS::zERR_GENERIC_QVS_ERROR);
    EXPECT_EQ(internal.text, "internal error: bug");
}

TEST(OutcomeOf, AnOperatingSystemFailureCarriesItsErrno) {
    errno = EACCES;
    const LogsiftDriver::Outcome outcome =
        LogsiftDriver::OutcomeOf(AdminError("Could not open", "here"));
    EXPECT_EQ(outcome.error, EACCES);
    EXPECT_EQ(outcome.status, QVS::ERRNO_STATUS_BASE + EACCES);
}

TEST(InputOutcome, TheErrnoInWordsOrTheKind) {
    QVS::InputFailure missing{ENOENT, "No such file or directory"};
    const LogsiftDriver::Outcome outcome = LogsiftDriver::InputOutcome(missing);
    EXPECT_EQ(outcome.status, QVS::ERRNO_STATUS_BASE + ENOENT);
    EXPECT_EQ(outcome.text, "cannot open: No such file or directory");
    EXPECT_EQ(outcome.error, ENOENT);
    QVS::InputFailure fifo{QVS::NOT_READABLE_KIND, "not a regular file: FIFO"};
    EXPECT_EQ(LogsiftDriver::InputOutcome(fifo).status, QVS::zERR_BAD_PARAMETER_VALUE);
    EXPECT_EQ(LogsiftDriver::InputOutcome(fifo).text, "not a regular file: FIFO");
}

std::string writeLog(const std::string& text) {
    char templ[] = "/tmp/logsift-driver-log-XXXXXX";
    const int fd = mkstemp(templ);
    EXPECT_GE(fd, 0);
    EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(fd);
    return templ;
}

std::string describe(const LogsiftDriver::Outcome& outcome) {
    return std::to_string(outcome.status) + (outcome.threw ? " threw " + outcome.thrown : "");
}

// Records the steps it is given.
class Recording : public LogsiftDriver::VerifyReading {
public:
    explicit Recording(bool throwInStart = false) : throwInStart(throwInStart) {}
    void OpenFailed(const LogsiftDriver::Outcome& open) override {
        steps.push_back("open failed " + describe(open));
    }
    void Start(VerifyFile&) override {
        steps.push_back("start");
        if (throwInStart)
            throw std::runtime_error("stop");
    }
    void Finished(VerifyFile&, const LogsiftDriver::Outcome& read,
                  const LogsiftDriver::Crc& crc) override {
        steps.push_back("finished " + describe(read) + (crc.known ? " crc" : ""));
    }
    bool throwInStart;
    std::vector<std::string> steps;
};

LogsiftDriver::VerifyOpener opener(const std::string& path, std::ostream& messages) {
    return [path, &messages] { return std::make_unique<VerifyFile>(path, messages, 4); };
}

TEST(ReadVerifyReport, OpenFailureEndsTheWalk) {
    Recording reading;
    std::ostringstream messages;
    const LogsiftDriver::Outcome outcome =
        LogsiftDriver::ReadVerifyReport(opener("/nonexistent/report.vbf", messages), reading);
    EXPECT_EQ(outcome.status, QVS::zERR_BAD_PARAMETER_VALUE);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{
                                 "open failed 20008 threw Could not open verify statistics file"}));
}

TEST(ReadVerifyReport, WalkEndsWithTheReadersStatus) {
    Recording reading;
    std::ostringstream messages;
    const LogsiftDriver::Outcome outcome = LogsiftDriver::ReadVerifyReport(
        opener(std::string(LOGSIFT_FIXTURES) + "/unit/overall_and_pool.vbf", messages), reading);
    EXPECT_TRUE(outcome.Good());
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"start", "finished 0"}));
}

TEST(ReadVerifyReport, FailureInsideTheWalkEndsIt) {
    Recording reading(true);
    std::ostringstream messages;
    const LogsiftDriver::Outcome outcome = LogsiftDriver::ReadVerifyReport(
        opener(std::string(LOGSIFT_FIXTURES) + "/unit/overall_and_pool.vbf", messages), reading);
    EXPECT_EQ(outcome.status, QVS::zERR_BAD_PARAMETER_VALUE);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"start", "finished 20008 threw stop"}));
}

TEST(ReadVerifyReport, AReportWhoseCrcDoesNotMatchIsDamaged) {
    Recording reading;
    std::ostringstream messages;
    QVS::InputFile input;
    QVS::InputFailure failure;
    // A report that reads whole, its stored CRC changed.
    std::ifstream whole(std::string(LOGSIFT_FIXTURES) + "/unit/overall_and_pool.vbf",
                        std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(whole)), std::istreambuf_iterator<char>());
    ASSERT_GT(bytes.size(), 4u);
    bytes[0] = static_cast<char>(bytes[0] ^ 0xFF);
    const std::string path = writeLog(bytes);
    ASSERT_TRUE(QVS::OpenInput(path, QVS::InputKinds::RegularOnly, input, failure));
    const LogsiftDriver::Outcome outcome = LogsiftDriver::ReadVerifyReport(
        LogsiftDriver::InputReport(path, input, messages, 4), reading);
    EXPECT_EQ(outcome.status, QVS::zERR_RAV_BAD_CHECKSUM);
    EXPECT_EQ(outcome.text, "the stored CRC does not match the report's bytes");
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"start", "finished 21741 crc"}));
    unlink(path.c_str());
}

class RebuildRecording : public LogsiftDriver::RebuildReading {
public:
    explicit RebuildRecording(bool throwInStart = false) : throwInStart(throwInStart) {}
    void OpenFailed(const LogsiftDriver::Outcome& open) override {
        steps.push_back("open failed " + describe(open));
    }
    void Start(RebuildFile&) override {
        steps.push_back("start");
        if (throwInStart)
            throw std::runtime_error("stop");
    }
    void MessagesRead(const LogsiftDriver::Outcome& walk) override {
        steps.push_back("messages " + describe(walk));
    }
    void Finished(RebuildFile&, const LogsiftDriver::Outcome& walk) override {
        steps.push_back("finished " + describe(walk));
    }
    void Done(RebuildFile& log) override {
        steps.push_back("done " + std::to_string(log.Text().size()));
    }
    bool throwInStart;
    std::vector<std::string> steps;
};


LogsiftDriver::RebuildOpener logOpener(const std::string& path, std::ostream& messages) {
    return [path, &messages] { return std::make_unique<RebuildFile>(path, messages, 4); };
}

const std::string LOG = "<rebuildLog><messageList></messageList><todList></todList></rebuildLog>";

TEST(ReadRebuildLog, WalksWithoutLookupsInOrder) {
    const std::string path = writeLog(LOG);
    RebuildRecording reading;
    std::ostringstream messages;
    EXPECT_TRUE(LogsiftDriver::ReadRebuildLog(logOpener(path, messages), {}, reading).Good());
    EXPECT_EQ(reading.steps,
              (std::vector<std::string>{"start", "messages 0", "finished 0",
                                        "done " + std::to_string(LOG.size())}));
    unlink(path.c_str());
}

TEST(ReadRebuildLog, FailureInsideTheWalksStillEndsWithDone) {
    const std::string path = writeLog(LOG);
    RebuildRecording reading(true);
    std::ostringstream messages;
    EXPECT_EQ(LogsiftDriver::ReadRebuildLog(logOpener(path, messages), {}, reading).status,
              QVS::zERR_BAD_PARAMETER_VALUE);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{"start", "finished 20008 threw stop",
                                                       "done " + std::to_string(LOG.size())}));
    unlink(path.c_str());
}

TEST(ReadRebuildLog, LogThatCannotBeLoadedHasNoDone) {
    const std::string path = writeLog("no root element here");
    RebuildRecording reading;
    std::ostringstream messages;
    LogsiftDriver::RebuildOptions options;
    options.lookup = true;
    EXPECT_EQ(LogsiftDriver::ReadRebuildLog(logOpener(path, messages), options, reading).status,
              20163u);
    EXPECT_EQ(reading.steps, (std::vector<std::string>{
                                 "open failed 20163 threw Require tag <rebuildLog> is missing"}));
    unlink(path.c_str());
}

} // namespace
