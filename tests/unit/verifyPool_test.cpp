// verifyPool_test.cpp - a pool's live verify statistics read and copied
// through the simulated administration volume.
#include "tests/tools/qvsadminfs/adminVolume.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftView.h"
#include "util/support/qvsLib.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace {

// A report of one Header section and one Overall section whose status is
// not valid, behind its CRC.
std::string Report(bool goodCrc = true) {
    std::string body;
    auto section = [&body](const char* tag, uint32_t size) {
        std::string header(96, '\0');
        std::memcpy(&header[0], "QMfSVerS", 8);
        for (int i = 0; i < 4; ++i)
            header[20 + i] = static_cast<char>(size >> (8 * i));
        std::memcpy(&header[24], tag, 8);
        for (int i = 32; i < 96; ++i) // bytes the reader keeps but never reads
            header[i] = static_cast<char>(i);
        body += header;
        body += std::string(size - 96, '\0');
    };
    section("QMfSVerH", 176);
    section("QMfSVerO", 566);
    unsigned crc = ~QVS::updateCRC(0xFFFFFFFFu, reinterpret_cast<unsigned char*>(&body[0]),
                                   body.size());
    if (!goodCrc)
        crc ^= 1;
    std::string bytes(4, '\0');
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<char>(crc >> (8 * i));
    return bytes + body;
}

std::string ReadWhole(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

const char* const STATE = "pool name=P1\n";

} // namespace

TEST(VerifyPool, SixArgumentConstructorReadsTheQmfsStatistics) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    volume.WritePoolFile("P1/QMFS/VerifyStatistics.vbf", Report());
    std::string server = volume.Server();
    std::ostringstream out;
    VerifyFile vf("P1", &server, 0, out, false, 4);
    EXPECT_EQ(vf.path, "//" + server + "/_admin/Manage_QVS/Pool/P1/QMFS/VerifyStatistics.vbf");
    EXPECT_EQ(vf.poolName, "P1");
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
    // The Overall section ends its block with one more line end.
    EXPECT_EQ(out.str(), "  Warning: Verify status is not valid\n\n"
                         "'Verify completion code' indicates that verify was unable to complete "
                         "verification.\n"
                         "   Therefore there is no detailed verify report.\n");
}

TEST(VerifyPool, SixArgumentConstructorReadsTheQmfs64Statistics) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    volume.WritePoolFile("P1/QMFS64/VerifyStatistics.vbf", Report());
    std::string server = volume.Server();
    std::ostringstream out;
    VerifyFile vf("P1", &server, 1700000000, out, true, 4);
    EXPECT_EQ(vf.path, "//" + server + "/_admin/Manage_QVS/Pool/P1/QMFS64/VerifyStatistics.vbf");
    EXPECT_TRUE(vf.is64);
    EXPECT_EQ(vf.timeStamp, 1700000000);
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
}

TEST(VerifyPool, FiveArgumentConstructorPutsNoSlashBeforeTheFileName) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    volume.WritePoolFile("P1VerifyStatistics.vbf", Report());
    std::string server = volume.Server();
    std::ostringstream out;
    VerifyFile vf("P1", &server, 0, out, 4);
    EXPECT_EQ(vf.path, "//" + server + "/_admin/Manage_QVS/Pool/P1VerifyStatistics.vbf");
    EXPECT_EQ(vf.ReadAndValidateSectionAll(), 0u);
}

TEST(VerifyPool, MissingStatisticsFile) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    std::string server = volume.Server();
    std::ostringstream out;
    try {
        VerifyFile vf("P1", &server, 0, out, false, 4);
        FAIL() << "opened a missing file";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Could not open verify statistics file");
    }
    EXPECT_EQ(out.str(), "\nCould not open //" + server +
                             "/_admin/Manage_QVS/Pool/P1/QMFS/VerifyStatistics.vbf: "
                             "No such file or directory\n");
}

TEST(VerifyPool, ReadErrorOfTheStatisticsFile) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, std::string(STATE) + "fault kind=file-read-error match=P1/QMFS/\n");
    volume.WritePoolFile("P1/QMFS/VerifyStatistics.vbf", Report());
    std::string server = volume.Server();
    std::ostringstream out;
    try {
        VerifyFile vf("P1", &server, 0, out, false, 4);
        FAIL() << "read a failing file";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Could not read CRC from verify statistics file");
    }
    EXPECT_EQ(out.str(), "\nCould not read CRC from //" + server +
                             "/_admin/Manage_QVS/Pool/P1/QMFS/VerifyStatistics.vbf: "
                             "Input/output error");
}

TEST(VerifyPool, CopyChecksTheCrcAndWritesTheWholeReport) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    std::string report = Report();
    volume.WritePoolFile("P1/QMFS/VerifyStatistics.vbf", report);
    std::string server = volume.Server();
    std::string destination = volume.Dir() + "/copy.vbf";
    std::ostringstream out;
    VerifyFile vf("P1", &server, 0, out, false, 4);
    EXPECT_NO_THROW(vf.CopyFile(destination));
    EXPECT_EQ(out.str(), "  Destination file: " + destination + "\n");
    EXPECT_EQ(ReadWhole(destination), report);
    EXPECT_EQ(vf.destinationName, destination);
}

TEST(VerifyPool, CopyWithAWrongCrcFails) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    std::string report = Report(false);
    volume.WritePoolFile("P1/QMFS/VerifyStatistics.vbf", report);
    std::string server = volume.Server();
    std::string destination = volume.Dir() + "/copy.vbf";
    std::ostringstream out;
    VerifyFile vf("P1", &server, 0, out, false, 4);
    try {
        vf.CopyFile(destination);
        FAIL() << "copied a report with a wrong CRC";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "CRC is incorrect");
    }
    unsigned stored = static_cast<unsigned char>(report[0]) |
                      static_cast<unsigned char>(report[1]) << 8 |
                      static_cast<unsigned char>(report[2]) << 16 |
                      static_cast<unsigned>(static_cast<unsigned char>(report[3])) << 24;
    EXPECT_EQ(out.str(), "  Destination file: " + destination + "\n" +
                             "util/common_cpp/verifyFile[1941] CRC is not correct.  Expected " +
                             std::to_string(stored) + " but calculated " +
                             std::to_string(stored ^ 1) + ".\n");
    // What was read is on disk all the same.
    EXPECT_EQ(ReadWhole(destination), report);
}

TEST(VerifyPool, CopyToADestinationThatCannotBeCreated) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    volume.WritePoolFile("P1/QMFS/VerifyStatistics.vbf", Report());
    std::string server = volume.Server();
    std::string destination = volume.Dir() + "/no-such-dir/copy.vbf";
    std::ostringstream out;
    VerifyFile vf("P1", &server, 0, out, false, 4);
    try {
        vf.CopyFile(destination);
        FAIL() << "created a file in a missing directory";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Could not create destination file");
    }
    EXPECT_EQ(out.str(), "  Destination file: " + destination + "\n" +
                             "util/common_cpp/verifyFile[1895] Could not create \"" + destination +
                             "\" because of \"No such file or directory\"\n");
}

TEST(VerifyPool, PoolViewPrintsTheReportAndItsStatusWithoutDash) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    // A Header section alone: the Overall section is missing.
    std::string report = Report();
    std::string headerOnly = report.substr(0, 4 + 176);
    unsigned crc = ~QVS::updateCRC(0xFFFFFFFFu, reinterpret_cast<unsigned char*>(&headerOnly[4]),
                                   176);
    for (int i = 0; i < 4; ++i)
        headerOnly[i] = static_cast<char>(crc >> (8 * i));
    volume.WritePoolFile("P1VerifyStatistics.vbf", headerOnly);
    RVConfig cfg("logsift", "1.00");
    testing::internal::CaptureStdout();
    unsigned status = VBF_View("P1", volume.Server(), cfg);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(status, 21738u);
    EXPECT_EQ(out, "Required section missing\n"
                   "util/logsift/logsiftMain[300] Unable to process Verify file.  Status 21738\n");
}

TEST(VerifyPool, PoolViewOfAMissingPool) {
    qvsadminfs::AdminVolume volume;
    QVSADMINFS_START(volume, STATE);
    RVConfig cfg("logsift", "1.00");
    testing::internal::CaptureStdout();
    unsigned status = VBF_View("P9", volume.Server(), cfg);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(status, 20008u);
    EXPECT_EQ(out, "\nCould not open //" + volume.Server() +
                       "/_admin/Manage_QVS/Pool/P9VerifyStatistics.vbf: No such file or directory\n"
                       "Unable to open verify binary file:  Could not open verify statistics file\n");
}
