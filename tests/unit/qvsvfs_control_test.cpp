// qvsvfs_control_test.cpp - the rebuild/verify control requests of the
// management client through the simulated administration volume: request
// texts, fixed buffers and their overflow, replies, errors and diagnostics.
#include "util/common_cpp/qvsVFS.h"
#include "util/support/qvsError.h"

#include "tests/tools/qvsadminfs/adminVolume.h"
#include "tests/unit/qvsvfs_testutil.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using qvsadminfs::AdminVolume;
using qvsvfs_test::Stderr;
using qvsvfs_test::Throws;

const std::string kSwitch = "<virtualIO><datastream name=\"command\"/></virtualIO>\n";
const std::string kOpen = "<qvsRequest><pool><poolVerify>";
const std::string kClose = "</poolVerify></pool></qvsRequest>";

const std::string kState = "pool name=P1 guid=aaaaaaaa-bbbb-cccc-dd-ee-ffffffffffff\n"
                           "pool name=P2\n"
                           "rav key=7 pool=P1 kind=verify ravStatus=3 finalStatus=21735 "
                           "setter=admin state=2\n"
                           "rav key=8 pool=P2 kind=rebuild ravStatus=4 finalStatus=0 "
                           "setter=system state=5\n"
                           "rav key=9 pool=P1 result=21727\n"
                           "rav key=10 pool=P1 entry='<userKey value=\"10\"/>'\n"
                           "rav key=11 pool=P1 entry='<finalStatus value=\"5\"/>'\n"
                           "nextkey value=100\n";

// The reply the simulator gives to a details request for key 7.
const std::string kDetails7 =
    "<qvsReply><pool><poolVerify><verifyDetails><entry><userKey value=\"7\"/><ravStatus "
    "value=\"3\"/><finalStatus value=\"21735\"/><finalStatusSetter value=\"admin\"/><state "
    "value=\"2\"/></entry></verifyDetails><result value=\"0\"/></poolVerify></pool><result "
    "value=\"0\"/></qvsReply>";

class ControlTest : public ::testing::Test {
protected:
    void SetUp() override { QVSADMINFS_START(volume, kState); }
    void With(const std::string& extra) { volume.WriteState(kState + extra); }
    // The requests after the mode switch.
    std::string Requests() {
        std::string log = volume.Log();
        EXPECT_EQ(log.compare(0, kSwitch.size(), kSwitch), 0) << log;
        return log.substr(std::min(log.size(), kSwitch.size()));
    }
    std::string Overflow(unsigned line) {
        return "util/common_cpp/qvsVFS[" + std::to_string(line) + "] Could not write to \"" +
               volume.CommandPath() + "\" because of \"zERR_BUFFER_TOO_SMALL\"\n";
    }
    AdminVolume volume;
};

// ------------------------------------------------------------ fixed-buffer requests

TEST_F(ControlTest, ActionRequest) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    char buffer[512];
    EXPECT_EQ(cmd.PoolVerifyActions(6, sizeof(buffer), buffer), 0);
    EXPECT_EQ(Requests(), kOpen + "<action>6</action>" + kClose + "\n");
    // The reply replaces the request in the buffer.
    EXPECT_EQ(std::string(buffer).substr(0, 47), "<qvsReply><pool><poolVerify><versionMajor value");
}

TEST_F(ControlTest, StatusByPoolName) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string pool = "P1", unknown = "P9";
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(&pool), 0);
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(&unknown), 21723);
    EXPECT_EQ(Requests(), kOpen + "<poolName>P1</poolName><action>3</action>" + kClose + "\n" +
                              kOpen + "<poolName>P9</poolName><action>3</action>" + kClose + "\n");
}

TEST_F(ControlTest, StatusByKeyReturnsTheRequestStatus) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(7ull), 0);
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(9ull), 21727);
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(55ull), 21723);
    EXPECT_EQ(Requests(), kOpen + "<userKey>7</userKey><action>1</action>" + kClose + "\n" +
                              kOpen + "<userKey>9</userKey><action>1</action>" + kClose + "\n" +
                              kOpen + "<userKey>55</userKey><action>1</action>" + kClose + "\n");
}

TEST_F(ControlTest, FileNameRequest) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string file = "P1_verify_0000001A_report.vbf";
    char buffer[512];
    EXPECT_EQ(cmd.PoolVerifyActions(18446744073709551615ull, file, 1, sizeof(buffer), buffer),
              21723);
    EXPECT_EQ(Requests(), kOpen +
                              "<fileName>P1_verify_0000001A_report.vbf</fileName><userKey>"
                              "18446744073709551615</userKey><action>1</action>" +
                              kClose + "\n");
}

TEST_F(ControlTest, DetailsWithAndWithoutMultiple) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::vector<char> buffer(5120);
    EXPECT_EQ(cmd.PoolRAVDetails(7, 5120, buffer.data(), 18, true), 0);
    EXPECT_EQ(cmd.PoolRAVDetails(8, 5120, buffer.data(), 34, false), 0);
    EXPECT_EQ(Requests(), kOpen + "<userKey>7</userKey><action>18</action><multiple/>" + kClose +
                              "\n" + kOpen + "<userKey>8</userKey><action>34</action>" + kClose +
                              "\n");
}

TEST_F(ControlTest, ItemRemovePutsTheItemKeyBeforeItsType) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(cmd.PoolRAVItemRemove(7, 2, 9), 0);
    EXPECT_EQ(Requests(), kOpen +
                              "<userKey>7</userKey><action>4</action><itemKey>9</itemKey>"
                              "<itemType>2</itemType>" +
                              kClose + "\n");
}

TEST_F(ControlTest, SetWritesResetBeforeReconfigure) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    char buffer[512];
    cmd.PoolVerifyActionsSet(5, sizeof(buffer), buffer, true, true);
    cmd.PoolVerifyActionsSet(5, sizeof(buffer), buffer, true, false);
    cmd.PoolVerifyActionsSet(5, sizeof(buffer), buffer, false, true);
    cmd.PoolVerifyActionsSet(5, sizeof(buffer), buffer, false, false);
    EXPECT_EQ(Requests(), kOpen + "<action>5</action><reset/><reconfigure/>" + kClose + "\n" +
                              kOpen + "<action>5</action><reconfigure/>" + kClose + "\n" + kOpen +
                              "<action>5</action><reset/>" + kClose + "\n" + kOpen +
                              "<action>5</action>" + kClose + "\n");
}

TEST_F(ControlTest, SetPiecesAreCheckedAgainstTheWholeBuffer) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    // The opening text (48 characters) fits 60 bytes; the later pieces are
    // cut to the space left without complaint. The reply is then cut too.
    char buffer[60];
    EXPECT_EQ(cmd.PoolVerifyActionsSet(5, sizeof(buffer), buffer, true, true), 21703);
    EXPECT_EQ(Requests(), kOpen + "<action>5</action><reset/><re\n");
}

TEST_F(ControlTest, RemoveDeletesTheRecord) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(cmd.PoolRAVRemove(7), 0);
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(7ull), 21723);
    EXPECT_EQ(Requests(), kOpen + "<userKey>7</userKey><action>2</action>" + kClose + "\n" +
                              kOpen + "<userKey>7</userKey><action>1</action>" + kClose + "\n");
}

TEST_F(ControlTest, UnparsableReplyIsTheCode) {
    With("fault kind=malformed\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(7ull), 21703);
}

TEST_F(ControlTest, TracesOfCodeAndStatusUnderBit8) {
    With("fault kind=raw text=garbage match=<action>1<\n"
         "fault kind=result value=21727 where=top match=<action>2<\n");
    VFSManageCmd cmd(8, volume.Server().c_str());
    int code = 0;
    std::string err = Stderr([&] { code = cmd.PoolRAVStatusFromQMFS(7ull); });
    EXPECT_EQ(code, 21703);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[1018] 21703\n");
    // A top-level status is traced, then replaced by the inner one.
    err = Stderr([&] { code = cmd.PoolRAVRemove(7); });
    EXPECT_EQ(code, 0);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[1022] 21727\n");
    VFSManageCmd quiet(0, volume.Server().c_str());
    EXPECT_EQ(Stderr([&] { quiet.PoolRAVStatusFromQMFS(7ull); }), "");
}

TEST_F(ControlTest, EchoOfTheFixedBufferReply) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.SetTraceFlags(0x04000000u);
    std::vector<char> buffer(5120);
    std::string err = Stderr([&] { cmd.PoolRAVDetails(7, 5120, buffer.data(), 18, false); });
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[1010] -->" + kDetails7 + "<--\n");
}

TEST_F(ControlTest, ChannelFailureIsReportedAndPassedOn) {
    With("fault kind=read-error\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err;
    auto e = Throws<AdminError>([&] { cmd.PoolRAVStatusFromQMFS(7ull); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->errnoValue(), EIO);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[268] Could not read from \"" + volume.CommandPath() +
                       "\" because of \"Input/output error\"\n"
                       "util/common_cpp/qvsVFS[1030]Exception while attempting to access "
                       "VFSManageCmd Object:  5(util/common_cpp/qvsVFS[269])\n");
}

// ------------------------------------------------------------ buffers and overflow

TEST_F(ControlTest, PoolNameTooLongForTheStatusBufferWritesNothing) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string pool(450, 'p');
    std::string err;
    auto e = Throws<std::runtime_error>([&] { cmd.PoolRAVStatusFromQMFS(&pool); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Internal buffer too small");
    EXPECT_EQ(dynamic_cast<const QVSError*>(&*e), nullptr);
    EXPECT_EQ(err, Overflow(1080));
    EXPECT_EQ(volume.Log(), kSwitch);
    // 400 characters still fit the 512 bytes.
    pool.resize(400);
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(&pool), 21723);
}

TEST_F(ControlTest, EveryBuilderChecksItsBuffer) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    char buffer[40];
    std::string file = "f", err;
    auto a = Throws<std::runtime_error>([&] { cmd.PoolVerifyActions(6, sizeof(buffer), buffer); },
                                        err);
    ASSERT_TRUE(a);
    EXPECT_EQ(err, Overflow(1060));
    auto k = Throws<std::runtime_error>(
        [&] { cmd.PoolVerifyActions(7ull, 1, sizeof(buffer), buffer); }, err);
    ASSERT_TRUE(k);
    EXPECT_EQ(err, Overflow(1100));
    auto f = Throws<std::runtime_error>(
        [&] { cmd.PoolVerifyActions(7ull, file, 1, sizeof(buffer), buffer); }, err);
    ASSERT_TRUE(f);
    EXPECT_EQ(err, Overflow(1120));
    auto d = Throws<std::runtime_error>(
        [&] { cmd.PoolRAVDetails(7, sizeof(buffer), buffer, 18, false); }, err);
    ASSERT_TRUE(d);
    EXPECT_EQ(err, Overflow(1140));
    auto s = Throws<std::runtime_error>(
        [&] { cmd.PoolVerifyActionsSet(5, sizeof(buffer), buffer, false, false); }, err);
    ASSERT_TRUE(s);
    EXPECT_EQ(err, Overflow(1180));
    EXPECT_EQ(volume.Log(), kSwitch);
}

TEST_F(ControlTest, TextOfExactlyTheBufferSizePassesOneCharacterShort) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    const std::string text = kOpen + "<action>6</action>" + kClose;
    std::vector<char> buffer(text.size());
    cmd.PoolVerifyActions(6, static_cast<unsigned>(text.size()), buffer.data());
    EXPECT_EQ(Requests(), text.substr(0, text.size() - 1) + "\n");
    std::string err;
    auto e = Throws<std::runtime_error>(
        [&] { cmd.PoolVerifyActions(6, static_cast<unsigned>(text.size() - 1), buffer.data()); },
        err);
    ASSERT_TRUE(e);
}

TEST_F(ControlTest, LongReplyIsCutToTheBuffer) {
    With("fault kind=pad size=300\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    char buffer[100];
    EXPECT_EQ(cmd.PoolVerifyActions(6, sizeof(buffer), buffer), 21703);
    EXPECT_EQ(std::strlen(buffer), 99u);
    EXPECT_EQ(std::string(buffer), std::string("<qvsReply><pool><poolVerify><versionMajor value=\"1\"/>"
                                               "<versionMinor value=\"1\"/><xmlVersionMajor valu"));
}

TEST_F(ControlTest, StatusBufferHolds511Bytes) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    With("fault kind=pad size=511\n");
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(7ull), 0);
    With("fault kind=pad size=512\n");
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(7ull), 21703);
    std::string pool = "P1";
    EXPECT_EQ(cmd.PoolRAVStatusFromQMFS(&pool), 21703);
}

TEST_F(ControlTest, RemovalAndDetailsBuffersHold5119Bytes) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    With("fault kind=pad size=5119\n");
    EXPECT_EQ(cmd.PoolVerifyStatusFromCommonLayer(7), 3u);
    EXPECT_EQ(cmd.PoolRAVRemove(7), 0);
    volume.WriteState(kState + "fault kind=pad size=5120\n");
    EXPECT_EQ(cmd.PoolRAVRemove(7), 21703);
    std::string err;
    auto e = Throws<QVSError>([&] { cmd.PoolVerifyStatusFromCommonLayer(7); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Could not obtain rav thread status");
    EXPECT_EQ(e->status(), 21703);
}

// ------------------------------------------------------------ string requests

TEST_F(ControlTest, SettingsRequests) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.RAVSet(7, "<anything>1</anything>");
    cmd.RAVSetUIPruneStatus(7, -3);
    cmd.RAVSetUIOptions(7, 18446744073709551615ull);
    cmd.RAVSetDebugLevel(8, 255);
    const std::string head = kOpen + "<userKey>7</userKey><action>5</action>";
    EXPECT_EQ(Requests(), head + "<anything>1</anything>" + kClose + "\n" + head +
                              "<uiPruneStatus>-3</uiPruneStatus>" + kClose + "\n" + head +
                              "<uiOptions>18446744073709551615</uiOptions>" + kClose + "\n" +
                              kOpen + "<userKey>8</userKey><action>5</action><debugLevel>255"
                              "</debugLevel>" + kClose + "\n");
}

TEST_F(ControlTest, SettingsErrorsThrow) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err;
    auto top = Throws<QVSError>([&] { cmd.RAVSetDebugLevel(55, 1); }, err);
    ASSERT_TRUE(top);
    EXPECT_EQ(top->status(), 21723);
    EXPECT_STREQ(top->what(), "Reply results");
    auto inner = Throws<QVSError>([&] { cmd.RAVSetDebugLevel(9, 1); }, err);
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->status(), 21727);
    EXPECT_STREQ(inner->what(), "PoolVerify results");
}

TEST_F(ControlTest, SettingsWriteFailureIsReported) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    With("fault kind=write-error match=<qvsRequest>\n");
    std::string err;
    auto e = Throws<AdminError>([&] { cmd.RAVSet(7, std::string(6000, ' ')); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[311] Could not write to \"" + volume.CommandPath() +
                       "\" because of \"Input/output error\"\n"
                       "Exception while attempting to write to VFSManageCmd Object:  5"
                       "(util/common_cpp/qvsVFS[312])\n"
                       "util/common_cpp/qvsVFS[1240]\n");
}

TEST_F(ControlTest, SettingsReadFailureIsReported) {
    With("fault kind=writeresult text='Busy (21734)'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err;
    auto e = Throws<AdminError>([&] { cmd.RAVSetUIOptions(7, 1); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 21734);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[291] Could not read from \"" + volume.CommandPath() +
                       "\" because of \"21734\"\n"
                       "Exception while attempting to read from VFSManageCmd Object:  21734"
                       "(util/common_cpp/qvsVFS[292])\n"
                       "util/common_cpp/qvsVFS[1245]\n");
}

TEST_F(ControlTest, SettingsEcho) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.SetTraceFlags(0x04000000u);
    std::string err = Stderr([&] { cmd.RAVSetUIOptions(7, 1); });
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[1250] --><qvsReply><pool><poolVerify><result "
                   "value=\"0\"/></poolVerify></pool><result value=\"0\"/></qvsReply><--\n");
}

TEST_F(ControlTest, VerifyStartReturnsTheNewKey) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long key = 0;
    cmd.PoolVerifyStartT("P1", &key, false, 3, 4);
    EXPECT_EQ(key, 100u);
    cmd.PoolVerifyStartT("P2", &key, true, 0, 18446744073709551615ull);
    EXPECT_EQ(key, 101u);
    EXPECT_EQ(Requests(), kOpen +
                              "<action>17</action><poolName>P1</poolName><uiOptions>3</uiOptions>"
                              "<debugLevel>4</debugLevel>" +
                              kClose + "\n" + kOpen +
                              "<action>17</action><poolName>P2</poolName><uiOptions>0</uiOptions>"
                              "<debugLevel>18446744073709551615</debugLevel><crossValidation/>" +
                              kClose + "\n");
}

TEST_F(ControlTest, VerifyStartOfAnUnknownPoolThrows) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long key = 5;
    std::string err;
    auto e = Throws<QVSError>([&] { cmd.PoolVerifyStartT("P9", &key, false, 0, 0); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20801);
    EXPECT_STREQ(e->what(), "Reply results");
    EXPECT_EQ(key, 5u);
}

TEST_F(ControlTest, StartReplyWithoutKeyThrows) {
    With("fault kind=raw text='<qvsReply><pool><poolVerify><result value=\"0\"/></poolVerify>"
         "</pool><result value=\"0\"/></qvsReply>'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long key = 5;
    std::string err;
    auto e = Throws<QVSError>(
        [&] { cmd.PoolRebuildStartT("P1", &key, 0, 0, 0, 0, false, false, false, false); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Can not find tag");
}

TEST_F(ControlTest, RebuildStartWithoutFlags) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long key = 0;
    cmd.PoolRebuildStartT("P1", &key, 1, 2, 3, 4, false, false, false, false);
    EXPECT_EQ(key, 100u);
    EXPECT_EQ(Requests(), kOpen +
                              "<action>33</action><poolName>P1</poolName><rezidThreshold>1"
                              "</rezidThreshold><uiOptions>2</uiOptions><debugLevel>3</debugLevel>"
                              "<fileLossMax>4</fileLossMax>" +
                              kClose + "\n");
}

TEST_F(ControlTest, RebuildStartFlagOrder) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long key = 0;
    // Only the third flag (pruneUnknownLosses), then each other one alone,
    // then all four.
    cmd.PoolRebuildStartT("P1", &key, 0, 0, 0, 0, false, false, true, false);
    cmd.PoolRebuildStartT("P1", &key, 0, 0, 0, 0, true, false, false, false);
    cmd.PoolRebuildStartT("P1", &key, 0, 0, 0, 0, false, true, false, false);
    cmd.PoolRebuildStartT("P1", &key, 0, 0, 0, 0, false, false, false, true);
    cmd.PoolRebuildStartT("P1", &key, 0, 0, 0, 0, true, true, true, true);
    EXPECT_EQ(key, 104u);
    const std::string head = kOpen +
                             "<action>33</action><poolName>P1</poolName><rezidThreshold>0"
                             "</rezidThreshold><uiOptions>0</uiOptions><debugLevel>0</debugLevel>"
                             "<fileLossMax>0</fileLossMax>";
    EXPECT_EQ(Requests(), head + "<pruneUnknownLosses/>" + kClose + "\n" + head +
                              "<uiPruneWait/>" + kClose + "\n" + head + "<purge/>" + kClose +
                              "\n" + head + "<pruneIV/>" + kClose + "\n" + head +
                              "<uiPruneWait/><purge/><pruneIV/><pruneUnknownLosses/>" + kClose +
                              "\n");
}

// ------------------------------------------------------------ status queries

TEST_F(ControlTest, StatusQueriesAreQuiet) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long verify = 0, rebuild = 0;
    std::string err = Stderr([&] {
        verify = cmd.PoolVerifyStatusFromCommonLayer(7);
        rebuild = cmd.PoolRebuildStatusFromCommonLayer(8);
    });
    EXPECT_EQ(verify, 3u);
    EXPECT_EQ(rebuild, 4u);
    EXPECT_EQ(err, "");
    EXPECT_EQ(Requests(), kOpen + "<userKey>7</userKey><action>18</action>" + kClose + "\n" +
                              kOpen + "<userKey>8</userKey><action>34</action>" + kClose + "\n");
}

TEST_F(ControlTest, FinalStatusAlwaysShowsTheReply) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string setter = "old";
    unsigned long long value = 0;
    std::string err = Stderr([&] { value = cmd.PoolVerifyFinalStatusFromCommonLayer(7, setter); });
    EXPECT_EQ(value, 21735u);
    EXPECT_EQ(setter, "admin");
    EXPECT_EQ(err.substr(0, err.find("util/common_cpp/nXML")),
              "util/common_cpp/qvsVFS[1400] 0\nutil/common_cpp/qvsVFS[1401]" + kDetails7 + "\n");
    err = Stderr([&] { value = cmd.PoolRebuildFinalStatusFromCommonLayer(8, setter); });
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(setter, "system");
    EXPECT_EQ(err.substr(0, 36), "util/common_cpp/qvsVFS[1440] 0\nutil/");
    EXPECT_EQ(err.substr(0, err.find('\n', 31) + 1).substr(31),
              "util/common_cpp/qvsVFS[1441]<qvsReply><pool><poolVerify><rebuildDetails><entry>"
              "<userKey value=\"8\"/><ravStatus value=\"4\"/><finalStatus value=\"0\"/>"
              "<finalStatusSetter value=\"system\"/><state value=\"5\"/></entry></rebuildDetails>"
              "<result value=\"0\"/></poolVerify></pool><result value=\"0\"/></qvsReply>\n");
}

TEST_F(ControlTest, StateAlwaysShowsTheReply) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned long long value = 0;
    std::string err = Stderr([&] { value = cmd.PoolVerifyStateFromCommonLayer(7); });
    EXPECT_EQ(value, 2u);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[1480] 0\nutil/common_cpp/qvsVFS[1481]" + kDetails7 + "\n");
    err = Stderr([&] { value = cmd.PoolRebuildStateFromCommonLayer(8); });
    EXPECT_EQ(value, 5u);
    EXPECT_EQ(err.substr(0, 60), "util/common_cpp/qvsVFS[1515] 0\nutil/common_cpp/qvsVFS[1516]<");
}

TEST_F(ControlTest, UnknownKeyCannotBeObtained) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err, setter;
    auto s = Throws<QVSError>([&] { cmd.PoolVerifyStatusFromCommonLayer(55); }, err);
    ASSERT_TRUE(s);
    EXPECT_STREQ(s->what(), "Could not obtain rav thread status");
    EXPECT_EQ(s->status(), 21723);
    EXPECT_EQ(s->location(), "util/common_cpp/qvsVFS[1380]");
    EXPECT_EQ(err, "");
    auto r = Throws<QVSError>([&] { cmd.PoolRebuildStatusFromCommonLayer(55); }, err);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->location(), "util/common_cpp/qvsVFS[1390]");
    auto f = Throws<QVSError>([&] { cmd.PoolVerifyFinalStatusFromCommonLayer(55, setter); }, err);
    ASSERT_TRUE(f);
    EXPECT_STREQ(f->what(), "Could not obtain rav thread final status");
    EXPECT_EQ(f->status(), 21723);
    EXPECT_EQ(f->location(), "util/common_cpp/qvsVFS[1405]");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[1400] 21723\nutil/common_cpp/qvsVFS[1401]<qvsReply><pool>"
                   "<poolVerify><result value=\"21723\"/></poolVerify></pool><result "
                   "value=\"21723\"/></qvsReply>\n");
    auto rf = Throws<QVSError>([&] { cmd.PoolRebuildFinalStatusFromCommonLayer(55, setter); }, err);
    ASSERT_TRUE(rf);
    EXPECT_EQ(rf->location(), "util/common_cpp/qvsVFS[1445]");
    auto st = Throws<QVSError>([&] { cmd.PoolVerifyStateFromCommonLayer(55); }, err);
    ASSERT_TRUE(st);
    EXPECT_STREQ(st->what(), "Could not obtain rav thread state");
    EXPECT_EQ(st->location(), "util/common_cpp/qvsVFS[1485]");
    EXPECT_EQ(err.substr(0, 35), "util/common_cpp/qvsVFS[1480] 21723\n");
    auto rs = Throws<QVSError>([&] { cmd.PoolRebuildStateFromCommonLayer(55); }, err);
    ASSERT_TRUE(rs);
    EXPECT_EQ(rs->location(), "util/common_cpp/qvsVFS[1519]");
}

TEST_F(ControlTest, MissingValuesCannotBeParsed) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err, setter;
    auto s = Throws<QVSError>([&] { cmd.PoolVerifyStatusFromCommonLayer(10); }, err);
    ASSERT_TRUE(s);
    EXPECT_STREQ(s->what(), "Could not parse rav thread status");
    EXPECT_EQ(s->status(), 21703);
    EXPECT_EQ(s->location(), "util/common_cpp/qvsVFS[1385]");
    auto r = Throws<QVSError>([&] { cmd.PoolRebuildStatusFromCommonLayer(10); }, err);
    ASSERT_TRUE(r);
    EXPECT_EQ(r->location(), "util/common_cpp/qvsVFS[1395]");
    auto f = Throws<QVSError>([&] { cmd.PoolVerifyFinalStatusFromCommonLayer(10, setter); }, err);
    ASSERT_TRUE(f);
    EXPECT_STREQ(f->what(), "Could not parse rav thread final status");
    EXPECT_EQ(f->location(), "util/common_cpp/qvsVFS[1410]");
    // The value is there, its setter is not.
    auto fs = Throws<QVSError>([&] { cmd.PoolRebuildFinalStatusFromCommonLayer(11, setter); }, err);
    ASSERT_TRUE(fs);
    EXPECT_STREQ(fs->what(), "Could not parse rav thread final status");
    EXPECT_EQ(fs->status(), 21703);
    EXPECT_EQ(fs->location(), "util/common_cpp/qvsVFS[1450]");
    auto st = Throws<QVSError>([&] { cmd.PoolVerifyStateFromCommonLayer(10); }, err);
    ASSERT_TRUE(st);
    EXPECT_STREQ(st->what(), "Could not parse rav thread state");
    EXPECT_EQ(st->location(), "util/common_cpp/qvsVFS[1490]");
    auto rs = Throws<QVSError>([&] { cmd.PoolRebuildStateFromCommonLayer(10); }, err);
    ASSERT_TRUE(rs);
    EXPECT_EQ(rs->location(), "util/common_cpp/qvsVFS[1524]");
}

TEST_F(ControlTest, StatusQueryChannelFailurePassesThrough) {
    With("fault kind=writeresult text='(20012)'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err;
    auto e = Throws<AdminError>([&] { cmd.PoolVerifyStateFromCommonLayer(7); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20012);
    EXPECT_STREQ(e->what(), "Could not read because of a write error ");
}

} // namespace
