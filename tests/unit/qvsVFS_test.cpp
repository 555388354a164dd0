// qvsVFS_test.cpp - the virtual-file command channel (open, mode switch,
// write, read, failed-write reports) and Handle_raii, against the simulated
// administration volume where a storage system is needed.
#include "util/common_cpp/lbpMisc.h"
#include "util/common_cpp/qvsVFS.h"
#include "util/support/qvsError.h"

#include "tests/tools/qvsadminfs/adminVolume.h"
#include "tests/unit/qvsvfs_testutil.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <fstream>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

using qvsadminfs::AdminVolume;

const std::string kSwitch = "<virtualIO><datastream name=\"command\"/></virtualIO>";
const std::string kVersionRequest =
    "<qvsRequest><pool><poolVerify><action>6</action></poolVerify></pool></qvsRequest>";
const std::string kVersionReply =
    "<qvsReply><pool><poolVerify><versionMajor value=\"1\"/><versionMinor value=\"1\"/>"
    "<xmlVersionMajor value=\"1\"/><xmlVersionMinor value=\"0\"/><result value=\"0\"/>"
    "</poolVerify></pool><result value=\"0\"/></qvsReply>";

// A regular file stands in for the command file where only the object is
// needed: the switch is then just written into it.
class PlainFile {
public:
    PlainFile() {
        char templ[] = "/tmp/qvsvfs-plain-XXXXXX";
        int fd = mkstemp(templ);
        if (fd >= 0)
            close(fd);
        path_ = templ;
    }
    ~PlainFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

std::string Stderr(const std::function<void()>& body) {
    testing::internal::CaptureStderr();
    body();
    return testing::internal::GetCapturedStderr();
}

class ChannelTest : public ::testing::Test {
protected:
    void SetUp() override { QVSADMINFS_START(volume, "version major=1 minor=1\n"); }

    // The reply to one request, read back in one piece.
    std::string Exchange(QVSVirtualFileServices& channel, const std::string& request) {
        channel.Write(request.data(), request.size());
        char buffer[4096] = {};
        unsigned long n = channel.Read(buffer, sizeof(buffer) - 1, 0);
        return std::string(buffer, n);
    }

    AdminVolume volume;
};

// ------------------------------------------------------------- opening

TEST(ChannelOpen, MissingCommandFileThrowsAfterItsLine) {
    std::string err;
    try {
        err = Stderr([] { VFSManageCmd cmd(0, "tmp/qvsvfs-no-such-server"); });
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        err = testing::internal::GetCapturedStderr();
        EXPECT_STREQ(e.what(), "Could not open command file");
        EXPECT_EQ(dynamic_cast<const QVSError*>(&e), nullptr);
    }
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[140] Could not open "
                   "\"//tmp/qvsvfs-no-such-server/_admin/Manage_QVS/manage.cmd\" because of "
                   "\"No such file or directory\"\n");
}

TEST(ChannelOpen, PathTraceBitPrintsThePathFirst) {
    testing::internal::CaptureStderr();
    EXPECT_THROW(VFSManageCmd(0x40000000u, "tmp/qvsvfs-no-such-server"), std::runtime_error);
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err.substr(0, err.find('\n') + 1),
              "util/common_cpp/qvsVFS[133] //tmp/qvsvfs-no-such-server/_admin/Manage_QVS/"
              "manage.cmd\n");
}

TEST(ChannelOpen, NoServerMeansTheLocalPath) {
    PlainFile file;
    QVSVirtualFileServices channel(0, file.path().c_str(), nullptr, "command");
    EXPECT_EQ(channel.Path(), file.path());
    QVSVirtualFileServices empty(0, file.path().c_str(), "", "command");
    EXPECT_EQ(empty.Path(), file.path());
}

TEST(ChannelOpen, ZeroFlagsBecomeSix) {
    PlainFile file;
    QVSVirtualFileServices zero(0, file.path().c_str(), nullptr, "command");
    EXPECT_EQ(zero.Flags(), 6u);
    QVSVirtualFileServices nine(9, file.path().c_str(), nullptr, "command");
    EXPECT_EQ(nine.Flags(), 9u);
}

TEST(ChannelOpen, SwitchIsWrittenAtTheStartAndTheFileClosedAfterwards) {
    PlainFile file;
    { QVSVirtualFileServices channel(0, file.path().c_str(), nullptr, "command"); }
    EXPECT_EQ(AdminVolume::ReadFile(file.path()), kSwitch);
    { QVSVirtualFileServices channel(0, file.path().c_str(), nullptr, nullptr); }
    // The shorter switch overwrites the start of the longer one.
    EXPECT_EQ(AdminVolume::ReadFile(file.path()).substr(0, 36),
              "<virtualIO><datastream/></virtualIO>");
}

TEST_F(ChannelTest, ClientSwitchesItsHandleToTheCommandStream) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(cmd.Path(), volume.CommandPath());
    EXPECT_EQ(cmd.Flags(), 6u);
    EXPECT_EQ(cmd.TraceFlags(), 6u);
    EXPECT_EQ(volume.Log(), kSwitch + "\n");
}

TEST_F(ChannelTest, NullStreamNameSelectsTheDefaultStream) {
    QVSVirtualFileServices channel(0, "/_admin/Manage_QVS/manage.cmd", volume.Server().c_str(),
                                   nullptr);
    EXPECT_EQ(volume.Log(), "<virtualIO><datastream/></virtualIO>\n");
    // The simulated server answers command requests only on the command stream.
    EXPECT_EQ(Exchange(channel, kVersionRequest), "");
}

TEST_F(ChannelTest, SwitchThatCannotBeWrittenClosesAndThrows) {
    volume.WriteState("fault kind=write-error match=<virtualIO>\n");
    // A switch longer than the stdio buffer is written at once and fails at once.
    std::string stream(5000, 's');
    std::string err;
    testing::internal::CaptureStderr();
    try {
        QVSVirtualFileServices channel(0, "/_admin/Manage_QVS/manage.cmd",
                                       volume.Server().c_str(), stream.c_str());
        err = testing::internal::GetCapturedStderr();
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        err = testing::internal::GetCapturedStderr();
        EXPECT_STREQ(e.what(), "Could not switch to command mode");
    }
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[159] Could not write to \"" + volume.CommandPath() +
                       "\" because of \"Input/output error\"\n");
    EXPECT_EQ(volume.Log(), "");
}

TEST_F(ChannelTest, SwitchWhoseFlushFailsIsNotFatal) {
    volume.WriteState("fault kind=write-error match=<virtualIO>\n");
    std::string err = Stderr([&] {
        VFSManageCmd cmd(0, volume.Server().c_str());
        volume.WriteState("version major=1 minor=1\n");
    });
    EXPECT_EQ(err.substr(0, err.find('\n') + 1), "Unable to flush data 1: Input/output error\n");
}

// ------------------------------------------------------------- write and read

TEST_F(ChannelTest, RequestIsWrittenAtTheStartAndTheReplyReadFromTheStart) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(Exchange(cmd, kVersionRequest), kVersionReply);
    // A second, shorter request replaces the first one entirely.
    std::string shorter = "<qvsRequest><pool><poolVerify><action>99</action></poolVerify></pool>"
                          "</qvsRequest>";
    EXPECT_EQ(Exchange(cmd, shorter),
              "<qvsReply><pool><poolVerify><result value=\"20008\"/></poolVerify></pool>"
              "<result value=\"20008\"/></qvsReply>");
    EXPECT_EQ(volume.Log(), kSwitch + "\n" + kVersionRequest + "\n" + shorter + "\n");
}

TEST_F(ChannelTest, ReadAtAnOffsetReturnsTheRestOfTheReply) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.Write(kVersionRequest.data(), kVersionRequest.size());
    char buffer[64] = {};
    EXPECT_EQ(cmd.Read(buffer, 10, 0), 10u);
    EXPECT_EQ(std::string(buffer, 10), kVersionReply.substr(0, 10));
    unsigned long n = cmd.Read(buffer, 63, 200);
    EXPECT_EQ(std::string(buffer, n), kVersionReply.substr(200));
    EXPECT_EQ(cmd.Read(buffer, 63, 5000), 0u);
}

TEST_F(ChannelTest, WriteFailureThrowsAdminErrorWithErrno) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=write-error match=<qvsRequest>\n");
    std::string request = "<qvsRequest>" + std::string(6000, 'x') + "</qvsRequest>";
    testing::internal::CaptureStderr();
    try {
        cmd.Write(request.data(), request.size());
        testing::internal::GetCapturedStderr();
        FAIL() << "no exception";
    } catch (const AdminError& e) {
        std::string err = testing::internal::GetCapturedStderr();
        EXPECT_STREQ(e.what(), "Could not write command");
        EXPECT_FALSE(e.hasStatus());
        EXPECT_EQ(e.status(), 0);
        EXPECT_EQ(e.errnoValue(), EIO);
        EXPECT_EQ(e.number(), EIO);
        EXPECT_EQ(e.location(), "util/common_cpp/qvsVFS[312]");
        EXPECT_EQ(err, "util/common_cpp/qvsVFS[311] Could not write to \"" +
                           volume.CommandPath() + "\" because of \"Input/output error\"\n");
    }
}

TEST_F(ChannelTest, BufferedWriteWhoseFlushFailsOnlyReports) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=write-error match=<qvsRequest>\n");
    std::string err = Stderr([&] { cmd.Write(kVersionRequest.data(), kVersionRequest.size()); });
    EXPECT_EQ(err, "Unable to flush data 3: Input/output error\n");
}

TEST_F(ChannelTest, ReadFailureThrowsAdminErrorWithErrnoAndTheObjectStaysUsable) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=read-error\n");
    cmd.Write(kVersionRequest.data(), kVersionRequest.size());
    char buffer[1025] = {};
    testing::internal::CaptureStderr();
    try {
        cmd.Read(buffer, 1024, 0);
        testing::internal::GetCapturedStderr();
        FAIL() << "no exception";
    } catch (const AdminError& e) {
        std::string err = testing::internal::GetCapturedStderr();
        EXPECT_STREQ(e.what(), "Could not read");
        EXPECT_FALSE(e.hasStatus());
        EXPECT_EQ(e.errnoValue(), EIO);
        EXPECT_EQ(e.location(), "util/common_cpp/qvsVFS[269]");
        EXPECT_EQ(err, "util/common_cpp/qvsVFS[268] Could not read from \"" +
                           volume.CommandPath() + "\" because of \"Input/output error\"\n");
    }
    volume.WriteState("version major=1 minor=1\n");
    EXPECT_EQ(Exchange(cmd, kVersionRequest), kVersionReply);
}

TEST_F(ChannelTest, FailedWriteReportThrowsWithItsNumber) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=writeresult text='Volume busy (20012)'\n");
    cmd.Write(kVersionRequest.data(), kVersionRequest.size());
    char buffer[1025] = {};
    testing::internal::CaptureStderr();
    try {
        cmd.Read(buffer, 1024, 0);
        testing::internal::GetCapturedStderr();
        FAIL() << "no exception";
    } catch (const AdminError& e) {
        std::string err = testing::internal::GetCapturedStderr();
        EXPECT_STREQ(e.what(), "Could not read because of a write error ");
        EXPECT_TRUE(e.hasStatus());
        EXPECT_EQ(e.status(), 20012);
        EXPECT_EQ(e.location(), "util/common_cpp/qvsVFS[292]");
        EXPECT_EQ(err, "util/common_cpp/qvsVFS[291] Could not read from \"" +
                           volume.CommandPath() + "\" because of \"20012\"\n");
    }
}

TEST_F(ChannelTest, FailedWriteReportWithoutNumberGivesTheGenericStatus) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=writeresult text='no number here'\n");
    cmd.Write(kVersionRequest.data(), kVersionRequest.size());
    char buffer[1025] = {};
    testing::internal::CaptureStderr();
    try {
        cmd.Read(buffer, 1024, 0);
        FAIL() << "no exception";
    } catch (const AdminError& e) {
        EXPECT_EQ(e.status(), 24999);
    }
    testing::internal::GetCapturedStderr();
}

TEST_F(ChannelTest, FailedWriteReportInALaterChunkIsNotDetected) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    // The report starts the second 1024-byte chunk of the reply.
    volume.WriteState("fault kind=raw text=\"" + std::string(1024, ' ') +
                      "<writeResult><error>Volume busy (20012)</error></writeResult>\"\n");
    std::string reply;
    int status = 0;
    int code = -1;
    std::string err = qvsvfs_test::Stderr(
        [&] { code = cmd.PoolVerifyActions(kVersionRequest, reply, status); });
    EXPECT_EQ(code, 21703);
    EXPECT_EQ(reply.size(), 1024u + 61u);
    EXPECT_EQ(err, "");
    // Read directly at that offset, it is returned as it is.
    char buffer[1025] = {};
    unsigned long n = cmd.Read(buffer, 1024, 1024);
    EXPECT_EQ(std::string(buffer, n), "<writeResult><error>Volume busy (20012)</error></writeResult>");
}

TEST_F(ChannelTest, ShortReplyStartingLikeAReportIsAReply) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("fault kind=raw text='<writeResult>'\n");
    cmd.Write(kVersionRequest.data(), kVersionRequest.size());
    char buffer[1025] = {};
    EXPECT_EQ(cmd.Read(buffer, 1024, 0), 13u);
}

TEST_F(ChannelTest, ReplyOfExactly1024BytesEndsWithAnEmptyRead) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.WriteState("version major=1 minor=1\nfault kind=pad size=1024\n");
    volume.ClearTrace();
    std::string reply;
    int status = -1;
    EXPECT_EQ(cmd.PoolVerifyActions(kVersionRequest, reply, status), 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(reply.size(), 1024u);
    // The whole reply comes with the read at 0; only a further Read at 1024
    // asks the file again, finds its end, and the loop stops there.
    auto reads = qvsvfs_test::TraceReads(volume.Trace());
    ASSERT_FALSE(reads.empty()) << volume.Trace();
    EXPECT_EQ(reads.front(), std::make_pair(0L, 1024L)) << volume.Trace();
    EXPECT_EQ(reads.back(), std::make_pair(1024L, 0L)) << volume.Trace();
}

// ------------------------------------------------------------- failed-write reports

class FunnyErrorTest : public ::testing::Test {
protected:
    bool Check(const std::string& text, unsigned long long& status) {
        return channel.IsFunnyErrorPresent(text.size(), text.data(), status);
    }
    PlainFile file;
    QVSVirtualFileServices channel{0, file.path().c_str(), nullptr, "command"};
};

TEST_F(FunnyErrorTest, ShorterThanFourteenBytesIsNeverAReport) {
    unsigned long long status = 99;
    EXPECT_FALSE(Check("<writeResult>", status));
    EXPECT_EQ(status, 0u);
}

TEST_F(FunnyErrorTest, NumberInParenthesesIsTheStatus) {
    unsigned long long status = 0;
    EXPECT_TRUE(Check("<writeResult><error>Volume busy (20012)</error></writeResult>", status));
    EXPECT_EQ(status, 20012u);
}

TEST_F(FunnyErrorTest, NonNumericParenthesisIsSkipped) {
    unsigned long long status = 0;
    EXPECT_TRUE(Check("<writeResult><error>failed (bad) twice (7)</error></writeResult>", status));
    EXPECT_EQ(status, 7u);
}

TEST_F(FunnyErrorTest, NoParenthesisGivesTheGenericStatus) {
    unsigned long long status = 0;
    EXPECT_TRUE(Check("<writeResult><error>failed</error></writeResult>", status));
    EXPECT_EQ(status, 24999u);
}

TEST_F(FunnyErrorTest, ErrorTextShorterThanTwoGivesTheGenericStatus) {
    unsigned long long status = 0;
    EXPECT_TRUE(Check("<writeResult><error>(</error></writeResult>", status));
    EXPECT_EQ(status, 24999u);
    EXPECT_TRUE(Check("<writeResult><error/></writeResult>", status));
    EXPECT_EQ(status, 24999u);
}

TEST_F(FunnyErrorTest, ParenthesisAtTheVeryEndIsNotConverted) {
    unsigned long long status = 0;
    EXPECT_TRUE(Check("<writeResult><error>x(</error></writeResult>", status));
    EXPECT_EQ(status, 24999u);
}

TEST_F(FunnyErrorTest, WithoutAnErrorElementOrTheTagItIsNoReport) {
    unsigned long long status = 5;
    EXPECT_FALSE(Check("<writeResult><warning>x (1)</warning></writeResult>", status));
    EXPECT_EQ(status, 0u);
    EXPECT_FALSE(Check("<qvsReply><result value=\"0\"/></qvsReply>", status));
    EXPECT_FALSE(Check(" <writeResult><error>x (1)</error></writeResult>", status));
}

TEST_F(FunnyErrorTest, OnlyTheGivenLengthIsExamined) {
    unsigned long long status = 0;
    std::string text = "<writeResult><error>busy (12)</error></writeResult>";
    // Cut before the closing tag of the error element: no element, no report.
    EXPECT_FALSE(channel.IsFunnyErrorPresent(28, text.data(), status));
}

// ------------------------------------------------------------- Handle_raii

TEST(HandleRaii, OpensAndCloses) {
    PlainFile file;
    std::ofstream(file.path()) << "abc";
    Handle_raii handle(file.path().c_str(), "rb");
    ASSERT_NE(handle.get(), nullptr);
    char buffer[4] = {};
    EXPECT_EQ(std::fread(buffer, 1, 3, handle.get()), 3u);
    EXPECT_STREQ(buffer, "abc");
}

TEST(HandleRaii, MissingFileForReading) {
    testing::internal::CaptureStderr();
    try {
        Handle_raii handle("/tmp/qvsvfs-no-such-dir/file.xml", "rb");
        testing::internal::GetCapturedStderr();
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Could not open file");
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "util/common_cpp/lbpMisc[68] Could not open \"/tmp/qvsvfs-no-such-dir/file.xml\" "
                  "because of \"No such file or directory\"\n");
    }
}

TEST(HandleRaii, FileThatCannotBeCreated) {
    testing::internal::CaptureStderr();
    try {
        Handle_raii handle("/tmp/qvsvfs-no-such-dir/file.xml", "wb");
        testing::internal::GetCapturedStderr();
        FAIL() << "no exception";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "Could not open/create file");
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "util/common_cpp/lbpMisc[73] Could not open or create "
                  "\"/tmp/qvsvfs-no-such-dir/file.xml\" because of \"No such file or directory\"\n");
    }
}

} // namespace
