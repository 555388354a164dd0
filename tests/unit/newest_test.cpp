// newest_test.cpp - recognising RAV output file names and finding the newest.
#include "util/logsift/logsiftView.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <stdlib.h>
#include <string>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class TempDir {
public:
    TempDir() {
        char templ[] = "/tmp/logsift-newest-XXXXXX";
        path_ = mkdtemp(templ);
    }
    ~TempDir() {
        // Only a clean-up: a directory left behind fails no test.
        if (std::system(("rm -rf '" + path_ + "'").c_str()) != 0)
            std::fprintf(stderr, "could not remove %s\n", path_.c_str());
    }
    std::string slash() const { return path_ + "/"; }
    void touch(const std::string& name) const { std::ofstream(path_ + "/" + name) << "x"; }
    // A file whose modification time is `seconds` after the epoch.
    void touchAt(const std::string& name, time_t seconds) const {
        touch(name);
        const struct timespec times[2] = {{seconds, 0}, {seconds, 0}};
        utimensat(AT_FDCWD, (path_ + "/" + name).c_str(), times, 0);
    }
    // Entry names in the order the directory returns them.
    std::vector<std::string> order() const {
        std::vector<std::string> names;
        DIR* d = opendir(path_.c_str());
        while (struct dirent* e = readdir(d))
            names.push_back(e->d_name);
        closedir(d);
        return names;
    }

private:
    std::string path_;
};

} // namespace

TEST(NamePattern, VerifyReportMatchesIgnoringCase) {
    unsigned long long stamp = 0;
    EXPECT_TRUE(IsAVerifyReportFile("pool1", "pool1_verify_0000001A_report.vbf", &stamp));
    EXPECT_EQ(stamp, 0x1Au);
    EXPECT_TRUE(IsAVerifyReportFile("pool1", "POOL1_VERIFY_00000020_REPORT.VBF", &stamp));
    EXPECT_EQ(stamp, 0x20u);
    EXPECT_TRUE(IsAVerifyReportFile("POOL1", "Pool1_Verify_abcdef01_Report.vbf", &stamp));
    EXPECT_EQ(stamp, 0xabcdef01u);
}

TEST(NamePattern, RebuildLogMatches) {
    unsigned long long stamp = 0;
    EXPECT_TRUE(IsARebuildLogFile("p", "p_rebuild_00000100_log.xml", &stamp));
    EXPECT_EQ(stamp, 0x100u);
    EXPECT_FALSE(IsARebuildLogFile("p", "p_verify_00000100_report.vbf", &stamp));
    EXPECT_FALSE(IsAVerifyReportFile("p", "p_rebuild_00000100_log.xml", &stamp));
}

TEST(NamePattern, StampMustBeEightCharacters) {
    unsigned long long stamp = 7;
    EXPECT_FALSE(IsAVerifyReportFile("pool1", "pool1_verify_123_report.vbf", &stamp));
    EXPECT_FALSE(IsAVerifyReportFile("pool1", "pool1_verify_000000001_report.vbf", &stamp));
    EXPECT_FALSE(IsAVerifyReportFile("pool1", "pool1_verify_0000001_report.vbf", &stamp));
    EXPECT_EQ(stamp, 7u); // untouched without a match
}

TEST(NamePattern, PoolPrefixOfAnotherPoolDoesNotMatch) {
    unsigned long long stamp = 0;
    EXPECT_FALSE(IsAVerifyReportFile("pool1", "pool10_verify_00000001_report.vbf", &stamp));
    EXPECT_FALSE(IsARebuildLogFile("pool", "pool1_rebuild_00000001_log.xml", &stamp));
    EXPECT_TRUE(IsAVerifyReportFile("pool10", "pool10_verify_00000001_report.vbf", &stamp));
}

TEST(NamePattern, SuffixMustEndTheName) {
    unsigned long long stamp = 0;
    EXPECT_FALSE(IsAVerifyReportFile("p", "p_verify_00000001_report.vbf.bak", &stamp));
    EXPECT_FALSE(IsAVerifyReportFile("p", "p_verify_00000001_report.vb", &stamp));
    EXPECT_FALSE(IsAVerifyReportFile("p", "x_p_verify_00000001_report.vbf", &stamp));
    EXPECT_FALSE(IsAVerifyReportFile("p", "", &stamp));
    EXPECT_FALSE(IsARebuildLogFile("p", "_log.xml", &stamp));
}

TEST(NamePattern, MalformedStampConvertsAsFarAsItGoes) {
    unsigned long long stamp = 99;
    EXPECT_TRUE(IsAVerifyReportFile("p", "p_verify_12zz5678_report.vbf", &stamp));
    EXPECT_EQ(stamp, 0x12u);
    EXPECT_TRUE(IsAVerifyReportFile("p", "p_verify_zzzzzzzz_report.vbf", &stamp));
    EXPECT_EQ(stamp, 0u);
    // The stamp characters are taken from the name as written, case and all.
    EXPECT_TRUE(IsAVerifyReportFile("p", "p_verify_0000ffFF_report.vbf", &stamp));
    EXPECT_EQ(stamp, 0xffffu);
}

TEST(NamePattern, SuffixTextInsideThePoolName) {
    // The last occurrence of the suffix is the one that must end the name.
    unsigned long long stamp = 0;
    EXPECT_TRUE(IsARebuildLogFile("a_log.xml", "a_log.xml_rebuild_00000003_log.xml", &stamp));
    EXPECT_EQ(stamp, 3u);
}

TEST(FindNewest, LargestStampWinsAcrossCase) {
    TempDir dir;
    dir.touch("pool1_verify_0000001A_report.vbf");
    dir.touch("POOL1_VERIFY_00000020_REPORT.VBF");
    dir.touch("pool10_verify_000000FF_report.vbf");
    dir.touch("pool1_verify_123_report.vbf");
    dir.touch("pool1_rebuild_000000FF_log.xml");
    std::string path;
    ASSERT_TRUE(FindTheNewestFile(dir.slash(), "pool1", path, false));
    EXPECT_EQ(path, dir.slash() + "POOL1_VERIFY_00000020_REPORT.VBF");
    ASSERT_TRUE(FindTheNewestFile(dir.slash(), "pool1", path, true));
    EXPECT_EQ(path, dir.slash() + "pool1_rebuild_000000FF_log.xml");
}

TEST(FindNewest, NothingMatches) {
    TempDir dir;
    dir.touch("pool2_verify_0000001A_report.vbf");
    std::string path = "unchanged";
    EXPECT_FALSE(FindTheNewestFile(dir.slash(), "pool1", path, false));
    EXPECT_EQ(path, "unchanged");
}

TEST(FindNewest, StampZeroWinsWhenAlone) {
    TempDir dir;
    dir.touch("p_verify_00000000_report.vbf");
    std::string path;
    ASSERT_TRUE(FindTheNewestFile(dir.slash(), "p", path, false));
    EXPECT_EQ(path, dir.slash() + "p_verify_00000000_report.vbf");
}

TEST(FindNewest, LastOfEqualStampsInDirectoryOrderWins) {
    TempDir dir;
    // Equal stamps: 0x10 written three ways.
    dir.touch("p_verify_00000010_report.vbf");
    dir.touch("P_VERIFY_00000010_REPORT.VBF");
    dir.touch("p_verify_10zzzzzz_report.vbf");
    std::string expected;
    unsigned long long stamp;
    for (const std::string& name : dir.order())
        if (IsAVerifyReportFile("p", name, &stamp))
            expected = name;
    std::string path;
    ASSERT_TRUE(FindTheNewestFile(dir.slash(), "p", path, false));
    EXPECT_EQ(path, dir.slash() + expected);
}

TEST(FindNewest, ModificationTimesAreNotConsulted) {
    TempDir dir;
    // The smaller stamp is the newer file.
    dir.touchAt("p_rebuild_00000002_log.xml", 1000000000);
    dir.touchAt("p_rebuild_00000001_log.xml", 2000000000);
    std::string path;
    ASSERT_TRUE(FindTheNewestFile(dir.slash(), "p", path, true));
    EXPECT_EQ(path, dir.slash() + "p_rebuild_00000002_log.xml");
}

TEST(FindNewest, MissingDirectoryReportsAndFails) {
    std::string path;
    testing::internal::CaptureStderr();
    bool found = FindTheNewestFile("/nonexistent-logsift-dir/", "p", path, false);
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(found);
    EXPECT_EQ(err, "Could not open directory: No such file or directory\n");
}
