// qvsadminfs_test.cpp - the simulated administration volume itself: its
// wrapper script, clean unmounting, per-handle requests, state reloading,
// pool files and the faults the other tests rely on.
#include "util/common_cpp/qvsVFS.h"
#include "util/support/qvsError.h"

#include "tests/tools/qvsadminfs/adminVolume.h"
#include "tests/unit/qvsvfs_testutil.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <set>
#include <string>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using qvsadminfs::AdminVolume;
using qvsvfs_test::Throws;

const std::string kVersionRequest =
    "<qvsRequest><pool><poolVerify><action>6</action></poolVerify></pool></qvsRequest>";

std::string Script() { return std::string(LOGSIFT_SOURCE_DIR) + "/tests/tools/qvsadminfs/with-admin-volume.sh"; }

std::string Quote(const std::string& text) { return "'" + text + "'"; }

// Runs a shell command; its exit status and its combined output.
int Shell(const std::string& command, std::string& output) {
    output.clear();
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        return -1;
    char buffer[512];
    size_t n;
    while ((n = fread(buffer, 1, sizeof(buffer), pipe)) > 0)
        output.append(buffer, n);
    int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// A scratch directory with a state file, for the tests that start the
// simulator themselves.
class Scratch {
public:
    Scratch() {
        char templ[] = "/tmp/qvsadminfs-scratch-XXXXXX";
        dir_ = mkdtemp(templ);
        std::ofstream(dir_ + "/state") << "version major=1 minor=1\n";
    }
    ~Scratch() {
        if (std::system(("rm -rf " + Quote(dir_)).c_str()) != 0) {
            // A directory that will not go away is left to the system.
        }
    }
    const std::string& dir() const { return dir_; }

private:
    std::string dir_;
};

// Skips a test when the simulator cannot run here.
#define REQUIRE_SIMULATOR()                                                              \
    do {                                                                                 \
        if (geteuid() != 0)                                                              \
            GTEST_SKIP() << "mounting the simulated administration volume needs root";   \
        if (access("/dev/fuse", R_OK | W_OK) != 0)                                       \
            GTEST_SKIP() << "/dev/fuse is missing";                                      \
        if (AdminVolume::SimulatorBinary().empty() ||                                    \
            access(AdminVolume::SimulatorBinary().c_str(), X_OK) != 0)                   \
            GTEST_SKIP() << "the simulator qvsadminfs is not built";                     \
    } while (0)

// ------------------------------------------------------------ wrapper script

TEST(WrapperScript, RunsTheCommandAndUnmounts) {
    REQUIRE_SIMULATOR();
    Scratch scratch;
    std::string mnt = scratch.dir() + "/mnt";
    std::string out;
    int status = Shell(Script() + " --sim " + Quote(AdminVolume::SimulatorBinary()) +
                           " --state " + Quote(scratch.dir() + "/state") + " --log " +
                           Quote(scratch.dir() + "/log") + " " + Quote(mnt) +
                           " -- sh -c 'ls " + mnt + "/Manage_QVS; exit 3'",
                       out);
    EXPECT_EQ(status, 3) << out;
    EXPECT_EQ(out, "Pool\nmanage.cmd\n");
    EXPECT_FALSE(AdminVolume::Mounted(mnt));
    // The mount point it made is gone again.
    EXPECT_NE(access(mnt.c_str(), F_OK), 0);
}

TEST(WrapperScript, PrivateMountIsSeenByTheCommandOnly) {
    REQUIRE_SIMULATOR();
    Scratch scratch;
    std::string mnt = scratch.dir() + "/mnt";
    // Mount points of this very directory, in the command's namespace and in
    // this test's; other tests may mount elsewhere at the same time.
    std::ofstream(scratch.dir() + "/check.sh")
        << "awk -v m=" << mnt << " '$5 == m' /proc/self/mountinfo | wc -l\n"
        << "awk -v m=" << mnt << " '$5 == m' /proc/" << getpid() << "/mountinfo | wc -l\n";
    std::string out;
    int status = Shell(Script() + " --private --sim " + Quote(AdminVolume::SimulatorBinary()) +
                           " --state " + Quote(scratch.dir() + "/state") + " " + Quote(mnt) +
                           " -- sh " + Quote(scratch.dir() + "/check.sh"),
                       out);
    EXPECT_EQ(status, 0) << out;
    EXPECT_EQ(out, "1\n0\n");
    EXPECT_FALSE(AdminVolume::Mounted(mnt));
}

// /_admin is made by the first test that mounts there and removed by the
// last one out: the tests leave nothing outside their own directories.
using qvsadminfs::RootMountPoint;

TEST(RootMountPoint, TheLastOneOutRemovesWhatTheFirstOneMade) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "/_admin can be made by root only";
    const bool existed = RootMountPoint::MadeByOthers();
    {
        RootMountPoint first, second;
        ASSERT_TRUE(first.Take());
        ASSERT_TRUE(second.Take());
        first.Leave();
        // Still in use by the second.
        EXPECT_EQ(::access(RootMountPoint::PATH, F_OK), 0);
    }
    EXPECT_TRUE(RootMountPoint::NothingLeft(existed));
}

TEST(WrapperScript, LeavesNoMountPointAtTheRoot) {
    REQUIRE_SIMULATOR();
    if (::geteuid() != 0)
        GTEST_SKIP() << "/_admin can be made by root only";
    Scratch scratch;
    const bool existed = RootMountPoint::MadeByOthers();
    std::string out;
    int status = Shell(Script() + " --private --sim " + Quote(AdminVolume::SimulatorBinary()) +
                           " --state " + Quote(scratch.dir() + "/state") +
                           " /_admin -- sh -c 'ls /_admin/Manage_QVS'",
                       out);
    EXPECT_EQ(status, 0) << out;
    EXPECT_EQ(out, "Pool\nmanage.cmd\n");
    EXPECT_TRUE(RootMountPoint::NothingLeft(existed));
}

TEST(WrapperScript, MissingSimulatorIsSkipped) {
    Scratch scratch;
    std::string out;
    int status = Shell(Script() + " --sim /nonexistent/qvsadminfs --state " +
                           Quote(scratch.dir() + "/state") + " " +
                           Quote(scratch.dir() + "/mnt") + " -- true",
                       out);
    EXPECT_EQ(status, 77);
    EXPECT_EQ(out.compare(0, 9, "skipped: "), 0) << out;
}

TEST(WrapperScript, BadUsage) {
    std::string out;
    EXPECT_EQ(Shell(Script() + " /tmp/x -- true", out), 2);
}

TEST(WrapperScript, UnmountsWhenInterrupted) {
    REQUIRE_SIMULATOR();
    Scratch scratch;
    std::string mnt = scratch.dir() + "/mnt";
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        dup2(null, 2);
        execl("/bin/bash", "bash", Script().c_str(), "--sim",
              AdminVolume::SimulatorBinary().c_str(), "--state",
              (scratch.dir() + "/state").c_str(), mnt.c_str(), "--", "sleep", "60",
              static_cast<char*>(nullptr));
        _exit(127);
    }
    bool up = false;
    for (int i = 0; i < 200 && !up; ++i) {
        up = AdminVolume::Mounted(mnt);
        if (!up)
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    EXPECT_TRUE(up);
    kill(pid, SIGTERM);
    int status = 0;
    waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 143);
    EXPECT_FALSE(AdminVolume::Mounted(mnt));
}

// ------------------------------------------------------------ start and stop

TEST(Simulator, KilledSimulatorLeavesNoMount) {
    REQUIRE_SIMULATOR();
    if (system("command -v fusermount3 >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "fusermount3 is missing: no automatic unmount";
    Scratch scratch;
    std::string mnt = scratch.dir() + "/mnt";
    mkdir(mnt.c_str(), 0755);
    pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        execl(AdminVolume::SimulatorBinary().c_str(), "qvsadminfs", "--state",
              (scratch.dir() + "/state").c_str(), "--die-with-parent", mnt.c_str(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    bool up = false;
    for (int i = 0; i < 200 && !up; ++i) {
        up = access((mnt + "/Manage_QVS/manage.cmd").c_str(), F_OK) == 0;
        if (!up)
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    EXPECT_TRUE(up);
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    bool gone = false;
    for (int i = 0; i < 200 && !gone; ++i) {
        gone = !AdminVolume::Mounted(mnt);
        if (!gone)
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    EXPECT_TRUE(gone);
    if (!gone)
        umount2(mnt.c_str(), MNT_DETACH);
}

TEST(Simulator, BadStateFileStopsTheStart) {
    REQUIRE_SIMULATOR();
    Scratch scratch;
    std::ofstream(scratch.dir() + "/bad") << "# fine\nvolume name=V\n";
    std::string out;
    int status = Shell(Quote(AdminVolume::SimulatorBinary()) + " --state " +
                           Quote(scratch.dir() + "/bad") + " " + Quote(scratch.dir()),
                       out);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(out, "qvsadminfs: " + scratch.dir() + "/bad: line 2: missing guid=\n");
    std::ofstream(scratch.dir() + "/bad") << "fault kind=explode\n";
    Shell(Quote(AdminVolume::SimulatorBinary()) + " --state " + Quote(scratch.dir() + "/bad") +
              " " + Quote(scratch.dir()),
          out);
    EXPECT_EQ(out, "qvsadminfs: " + scratch.dir() + "/bad: line 1: unknown fault kind \"explode\"\n");
}

TEST(Simulator, UsageWithoutState) {
    REQUIRE_SIMULATOR();
    std::string out;
    EXPECT_EQ(Shell(Quote(AdminVolume::SimulatorBinary()) + " /tmp", out), 2);
    EXPECT_EQ(out.compare(0, 17, "usage: qvsadminfs"), 0) << out;
}

// ------------------------------------------------------------ command file

class SimulatorTest : public ::testing::Test {
protected:
    void SetUp() override {
        QVSADMINFS_START(volume, "version major=1 minor=1\n"
                                 "volume guid=01234567-89ab-cdef-01-23-456789abcdef name=VOL1\n"
                                 "pool name=P1\n");
    }
    std::string Exchange(QVSVirtualFileServices& channel, const std::string& request) {
        channel.Write(request.data(), request.size());
        char buffer[8192] = {};
        unsigned long n = channel.Read(buffer, sizeof(buffer) - 1, 0);
        return std::string(buffer, n);
    }
    AdminVolume volume;
};

TEST_F(SimulatorTest, EveryHandleHasItsOwnRequestAndReply) {
    VFSManageCmd a(0, volume.Server().c_str());
    VFSManageCmd b(0, volume.Server().c_str());
    std::string volumeRequest = "<qvsRequest><volume><getVolumeInfo> type=\"basic\"><volumeName>"
                                "VOL1</volumeName></getVolumeInfo></volume></qvsRequest>";
    a.Write(kVersionRequest.data(), kVersionRequest.size());
    b.Write(volumeRequest.data(), volumeRequest.size());
    char buffer[2048] = {};
    unsigned long n = a.Read(buffer, sizeof(buffer) - 1, 0);
    EXPECT_EQ(std::string(buffer, n).substr(0, 42), "<qvsReply><pool><poolVerify><versionMajor ");
    n = b.Read(buffer, sizeof(buffer) - 1, 0);
    EXPECT_EQ(std::string(buffer, n).substr(0, 43), "<qvsReply><volume><getVolumeInfo><basicInfo");
}

TEST_F(SimulatorTest, LongRequestInSeveralWritesIsOneRequest) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string request = "<qvsRequest><volume><getVolumeInfo> type=\"basic\"><volumeName>" +
                          std::string(9000, 'v') + "</volumeName></getVolumeInfo></volume></qvsRequest>";
    EXPECT_EQ(Exchange(cmd, request),
              "<qvsReply><volume><getVolumeInfo><result value=\"20801\"/></getVolumeInfo>"
              "</volume><result value=\"20801\"/></qvsReply>");
    std::string log = volume.Log();
    EXPECT_EQ(log.substr(log.find('\n') + 1), request + "\n");
}

TEST_F(SimulatorTest, UnreadRequestIsLoggedWhenTheHandleCloses) {
    {
        VFSManageCmd cmd(0, volume.Server().c_str());
        cmd.Write(kVersionRequest.data(), kVersionRequest.size());
    }
    std::string log = volume.Log();
    EXPECT_EQ(log.substr(log.find('\n') + 1), kVersionRequest + "\n");
}

TEST_F(SimulatorTest, StateChangesAreSeenByTheNextRequest) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state;
    cmd.GetVolumeState("VOL1", state);
    EXPECT_EQ(state, "active");
    // A state change of the volume lasts until the state file changes.
    cmd.ChangeVolumeState("VOL1", "maintenance");
    cmd.GetVolumeState("VOL1", state);
    EXPECT_EQ(state, "maintenance");
    volume.WriteState("volume guid=01234567-89ab-cdef-01-23-456789abcdef name=VOL1 state=deactive\n");
    cmd.GetVolumeState("VOL1", state);
    EXPECT_EQ(state, "deactive");
}

TEST_F(SimulatorTest, QuotedAndHereDocumentValues) {
    volume.WriteState("fault kind=raw match=<action>6< text=<<END\n"
                      "<qvsReply>\n"
                      "  <result value=\"0\"/>\n"
                      "</qvsReply>\n"
                      "END\n"
                      "fault kind=raw match=<action>7< text=\"a\\tb\\x41\\\"\"\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(Exchange(cmd, kVersionRequest), "<qvsReply>\n  <result value=\"0\"/>\n</qvsReply>");
    EXPECT_EQ(Exchange(cmd, "<qvsRequest><pool><poolVerify><action>7</action></poolVerify></pool>"
                            "</qvsRequest>"),
              "a\tbA\"");
}

TEST_F(SimulatorTest, ResultFaultPlacement) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=result value=4294967296\n");
    EXPECT_EQ(Exchange(cmd, kVersionRequest),
              "<qvsReply><pool><poolVerify><result value=\"4294967296\"/></poolVerify></pool>"
              "<result value=\"4294967296\"/></qvsReply>");
    volume.WriteState("fault kind=result value=20801 where=top\n");
    EXPECT_EQ(Exchange(cmd, "<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>P1"
                            "</poolName></getPoolInfo></pool></qvsRequest>"),
              "<qvsReply><pool><getPoolInfo><result value=\"0\"/></getPoolInfo></pool>"
              "<result value=\"20801\"/></qvsReply>");
}

TEST_F(SimulatorTest, MalformedAndPaddedReplies) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=result value=0\nfault kind=malformed\n");
    std::string whole = "<qvsReply><pool><poolVerify><result value=\"0\"/></poolVerify></pool>"
                        "<result value=\"0\"/></qvsReply>";
    EXPECT_EQ(Exchange(cmd, kVersionRequest), whole.substr(0, whole.size() / 2));
    volume.WriteState("fault kind=result value=0\nfault kind=pad size=1024\n");
    std::string padded = Exchange(cmd, kVersionRequest);
    EXPECT_EQ(padded.size(), 1024u);
    EXPECT_EQ(padded.substr(1013), "</qvsReply>");
}

TEST_F(SimulatorTest, SlowReply) {
    volume.WriteState("version major=1 minor=1\nfault kind=delay ms=400\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned a = 0, b = 0, c = 0, d = 0;
    auto start = std::chrono::steady_clock::now();
    cmd.zPoolVersionInformationT(a, b, c, d);
    auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(elapsed, std::chrono::milliseconds(400));
    EXPECT_EQ(a, 1u);
    EXPECT_EQ(b, 1u);
}

TEST_F(SimulatorTest, OpenError) {
    volume.WriteState("fault kind=open-error errno=13\n");
    std::string err;
    auto e = Throws<std::runtime_error>([&] { VFSManageCmd cmd(0, volume.Server().c_str()); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Could not open command file");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[140] Could not open \"" + volume.CommandPath() +
                       "\" because of \"Permission denied\"\n");
}

// ------------------------------------------------------------ pool files

TEST_F(SimulatorTest, PoolFilesFromTheBackingDirectoryAndTheStateFile) {
    volume.WritePoolFile("P2/QMFS/VerifyStatistics.vbf", std::string("\x01\x02\x00\x03", 4));
    volume.WriteState("pool name=P1\nfile pool=P1 dir=QMFS64 name=r.xml text=inline\n");
    std::string base = volume.MountPoint() + "/Manage_QVS/Pool";
    EXPECT_EQ(AdminVolume::ReadFile(base + "/P2/QMFS/VerifyStatistics.vbf"),
              std::string("\x01\x02\x00\x03", 4));
    EXPECT_EQ(AdminVolume::ReadFile(base + "/P1/QMFS64/r.xml"), "inline");
    std::set<std::string> names;
    if (DIR* d = opendir(base.c_str())) {
        while (dirent* e = readdir(d))
            names.insert(e->d_name);
        closedir(d);
    }
    EXPECT_EQ(names, (std::set<std::string>{".", "..", "P1", "P2"}));
    EXPECT_EQ(access((base + "/P1/QMFS").c_str(), F_OK), 0);
    EXPECT_NE(access((base + "/P9/QMFS").c_str(), F_OK), 0);
    // Read-only.
    errno = 0;
    EXPECT_LT(open((base + "/P2/QMFS/VerifyStatistics.vbf").c_str(), O_WRONLY), 0);
    EXPECT_EQ(errno, EROFS);
}

TEST_F(SimulatorTest, PoolFileReadError) {
    volume.WritePoolFile("P2/QMFS/VerifyStatistics.vbf", "data");
    volume.WriteState("fault kind=file-read-error match=P2/QMFS/\n");
    int fd = open((volume.MountPoint() + "/Manage_QVS/Pool/P2/QMFS/VerifyStatistics.vbf").c_str(),
                  O_RDONLY);
    ASSERT_GE(fd, 0);
    char buffer[16];
    errno = 0;
    EXPECT_LT(read(fd, buffer, sizeof(buffer)), 0);
    EXPECT_EQ(errno, EIO);
    close(fd);
}

} // namespace
