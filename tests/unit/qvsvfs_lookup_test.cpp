// qvsvfs_lookup_test.cpp - the management client's lookups through the
// simulated administration volume: reverse name lookup, version, volume and
// pool information, state change, and operation result files.
#include "util/common_cpp/qvsVFS.h"
#include "util/support/qvsError.h"
#include "util/support/qvsGuid.h"

#include "tests/tools/qvsadminfs/adminVolume.h"
#include "tests/unit/qvsvfs_testutil.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace {

using qvsadminfs::AdminVolume;
using qvsvfs_test::Stderr;
using qvsvfs_test::Throws;
using qvsvfs_test::TraceReads;

const std::string kSwitch = "<virtualIO><datastream name=\"command\"/></virtualIO>\n";
const char* const kVol1 = "01234567-89ab-cdef-01-23-456789abcdef";
const char* const kVol2 = "fedcba98-7654-3210-fe-dc-ba9876543210";
const char* const kNoVol = "99999999-9999-9999-99-99-999999999999";

const std::string kState =
    "# volumes, pools and the objects of VOL1\n"
    "volume guid=01234567-89ab-cdef-01-23-456789abcdef name=VOL1 state=mounted pool=P1\n"
    "volume guid=fedcba98-7654-3210-fe-dc-ba9876543210 name=VOL2 state=deactive pool=P1\n"
    "volume guid=11111111-2222-3333-44-55-666666666666 name=VOL3 state=maintenance pool=P1\n"
    "volume guid=not-a-guid name=BADID state=active pool=P1\n"
    "pool guid=aaaaaaaa-bbbb-cccc-dd-ee-ffffffffffff name=P1 state=active\n"
    "pool guid=bbbbbbbb-bbbb-cccc-dd-ee-ffffffffffff name=P2 state=mounted\n"
    "pool guid=0xbad name=P3 state=offline\n"
    "object volume=01234567-89ab-cdef-01-23-456789abcdef zid=5 nameType=127 nameSpace=3 "
    "path=/projects/x\n"
    "object volume=01234567-89ab-cdef-01-23-456789abcdef zid=6 nameType=0 path=/named\n"
    "object volume=01234567-89ab-cdef-01-23-456789abcdef zid=7 path='/a<b&c'\n"
    "object volume=01234567-89ab-cdef-01-23-456789abcdef zid=8 nameType=3 result=20405\n"
    "version major=1 minor=1 xmlMajor=2 xmlMinor=3\n";

GUID_t Guid(const char* text) {
    GUID_t guid{};
    EXPECT_EQ(QVS::LB_GUIDFromUTF8(text, &guid), 0u) << text;
    return guid;
}

std::string LookupRequest(unsigned long long zid, unsigned nameSpace, unsigned nameType,
                          const char* guid) {
    return "<qvsRequest><pool><poolVerify><action>64</action><zid>" + std::to_string(zid) +
           "</zid><nameSpace>" + std::to_string(nameSpace) + "</nameSpace><nameType>" +
           std::to_string(nameType) + "</nameType><volumeID>" + guid +
           "</volumeID></poolVerify></pool></qvsRequest>";
}

class LookupTest : public ::testing::Test {
protected:
    void SetUp() override { QVSADMINFS_START(volume, kState); }

    // Replaces the state with the base state plus `extra` lines.
    void With(const std::string& extra) { volume.WriteState(kState + extra); }

    AdminVolume volume;
};

// ------------------------------------------------------------ reverse lookup

TEST_F(LookupTest, RequestPutsNameSpaceBeforeNameType) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 127, 3, &guid, name, path, status), 0);
    EXPECT_EQ(volume.Log(),
              kSwitch +
                  "<qvsRequest><pool><poolVerify><action>64</action><zid>5</zid>"
                  "<nameSpace>3</nameSpace><nameType>127</nameType>"
                  "<volumeID>01234567-89ab-cdef-01-23-456789abcdef</volumeID>"
                  "</poolVerify></pool></qvsRequest>\n");
    EXPECT_EQ(status, 0);
    EXPECT_EQ(name, "VOL1");
    EXPECT_EQ(path, "/projects/x");
}

TEST_F(LookupTest, LargeNumbersAreWrittenInPlainDecimal) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = 0;
    cmd.ReverseNameLookup(18446744073709551615ull, 4294967295u, 0, &guid, name, path, status);
    EXPECT_EQ(volume.Log(), kSwitch + LookupRequest(18446744073709551615ull, 0, 4294967295u, kVol1) + "\n");
}

TEST_F(LookupTest, CDataPathIsUnwrapped) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(7, 2, 1, &guid, name, path, status), 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(path, "/a<b&c");
}

TEST_F(LookupTest, ReplyLongerThanOneChunkIsReadWhole) {
    std::string longPath = "/" + std::string(3000, 'p');
    With(std::string("object volume=") + kVol1 + " zid=9 path=" + longPath + "\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(9, 0, 0, &guid, name, path, status), 0);
    EXPECT_EQ(path, longPath);
    EXPECT_EQ(name, "VOL1");
}

TEST_F(LookupTest, VolumeNotFoundIsTheStatusAndLeavesTheOutputs) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kNoVol);
    std::string name = "keep", path = "keep";
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 0, 0, &guid, name, path, status), 0);
    EXPECT_EQ(status, 20801);
    EXPECT_EQ(name, "keep");
    EXPECT_EQ(path, "keep");
}

TEST_F(LookupTest, InactiveVolumeIs20811) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol2);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 0, 0, &guid, name, path, status), 0);
    EXPECT_EQ(status, 20811);
}

TEST_F(LookupTest, UnknownNameIs20405) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(8, 3, 0, &guid, name, path, status), 0);
    EXPECT_EQ(status, 20405);
    EXPECT_EQ(cmd.ReverseNameLookup(6, 0, 0, &guid, name, path, status), 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(path, "/named");
}

TEST_F(LookupTest, AnyOtherErrorIsTheStatus) {
    With("fault kind=result value=20012\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name = "keep", path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status), 0);
    EXPECT_EQ(status, 20012);
    EXPECT_EQ(name, "keep");
}

TEST_F(LookupTest, InnerResultDecidesTheStatus) {
    With("fault kind=result value=20012 where=inner\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status), 0);
    EXPECT_EQ(status, 20012);
}

TEST_F(LookupTest, TopResultAloneIsOverwrittenByTheInnerOne) {
    // The inner result (0) replaces the top one; the empty body then lacks a volume.
    With("fault kind=result value=20012 where=top\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = -1;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status), 21703);
    EXPECT_EQ(status, 0);
}

TEST_F(LookupTest, MalformedReplyIsACode) {
    With("fault kind=malformed\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = 0;
    EXPECT_EQ(cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status), 21703);
}

TEST_F(LookupTest, CodeTraceUnderBit8) {
    With("fault kind=raw text=garbage\n");
    VFSManageCmd cmd(8, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = 0;
    int code = 0;
    std::string err = Stderr([&] { code = cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status); });
    EXPECT_EQ(code, 21703);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[388] 21703\n");
    VFSManageCmd quiet(0, volume.Server().c_str());
    EXPECT_EQ(Stderr([&] { quiet.ReverseNameLookup(5, 3, 127, &guid, name, path, status); }), "");
}

TEST_F(LookupTest, EchoUnderTheSecondTraceWord) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.SetTraceFlags(0x04000000u);
    GUID_t guid = Guid(kVol1);
    std::string name, path;
    int status = 0;
    std::string err = Stderr([&] { cmd.ReverseNameLookup(6, 0, 0, &guid, name, path, status); });
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[380] --><qvsReply><pool><poolVerify><volume>VOL1"
                   "</volume><path>/named</path><result value=\"0\"/></poolVerify></pool>"
                   "<result value=\"0\"/></qvsReply><--\n");
}

TEST_F(LookupTest, ReadFailureIsReportedAndPassedOn) {
    With("fault kind=read-error\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path, err;
    int status = 0;
    auto e = Throws<AdminError>([&] { cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status); },
                                err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Could not read");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[268] Could not read from \"" + volume.CommandPath() +
                       "\" because of \"Input/output error\"\n"
                       "Exception while attempting to read from VFSManageCmd Object:  5"
                       "(util/common_cpp/qvsVFS[269])\n"
                       "util/common_cpp/qvsVFS[372]\n");
}

TEST_F(LookupTest, FailedWriteReportIsReportedWithItsStatus) {
    With("fault kind=writeresult text='Volume busy (20012)'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t guid = Guid(kVol1);
    std::string name, path, err;
    int status = 0;
    auto e = Throws<AdminError>([&] { cmd.ReverseNameLookup(5, 3, 127, &guid, name, path, status); },
                                err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20012);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[291] Could not read from \"" + volume.CommandPath() +
                       "\" because of \"20012\"\n"
                       "Exception while attempting to read from VFSManageCmd Object:  20012"
                       "(util/common_cpp/qvsVFS[292])\n"
                       "util/common_cpp/qvsVFS[372]\n");
}

TEST_F(LookupTest, WriteFailureIsReportedAndPassedOn) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    With("fault kind=write-error match=<qvsRequest>\n");
    std::string request = "<qvsRequest>" + std::string(6000, 'x') + "</qvsRequest>";
    std::string reply, err;
    int status = 0;
    auto e = Throws<AdminError>([&] { cmd.PoolVerifyActions(request, reply, status); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Could not write command");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[311] Could not write to \"" + volume.CommandPath() +
                       "\" because of \"Input/output error\"\n"
                       "Exception while attempting to write to VFSManageCmd Object:  5"
                       "(util/common_cpp/qvsVFS[312])\n"
                       "util/common_cpp/qvsVFS[360]\n");
}

// ------------------------------------------------------------ exchanges that throw

TEST_F(LookupTest, ThrowingExchangeRaisesTheTopResultFirst) {
    With("fault kind=result value=20811\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string reply, err;
    auto e = Throws<QVSError>(
        [&] {
            cmd.PoolVerifyActionsT(
                "<qvsRequest><pool><poolVerify><action>6</action></poolVerify></pool></qvsRequest>",
                reply);
        },
        err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20811);
    EXPECT_STREQ(e->what(), "Reply results");
}

TEST_F(LookupTest, ThrowingExchangeRaisesTheInnerResult) {
    With("fault kind=result value=20811 where=inner\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string reply, err;
    auto e = Throws<QVSError>(
        [&] {
            cmd.PoolVerifyActionsT(
                "<qvsRequest><pool><poolVerify><action>6</action></poolVerify></pool></qvsRequest>",
                reply);
        },
        err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20811);
    EXPECT_STREQ(e->what(), "PoolVerify results");
}

TEST_F(LookupTest, ThrowingExchangeDoesNotReportChannelFailures) {
    With("fault kind=read-error\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string reply, err;
    auto e = Throws<AdminError>([&] { cmd.PoolVerifyActionsT("<qvsRequest/>", reply); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[268] Could not read from \"" + volume.CommandPath() +
                       "\" because of \"Input/output error\"\n");
}

// ------------------------------------------------------------ version

TEST_F(LookupTest, VersionNewerThanOneReadsTheXmlVersion) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned a = 9, b = 9, c = 9, d = 9;
    cmd.zPoolVersionInformationT(a, b, c, d);
    EXPECT_EQ(a, 1u);
    EXPECT_EQ(b, 1u);
    EXPECT_EQ(c, 2u);
    EXPECT_EQ(d, 3u);
    EXPECT_EQ(volume.Log(), kSwitch +
                                "<qvsRequest><pool><poolVerify><action>6</action></poolVerify>"
                                "</pool></qvsRequest>\n");
}

TEST_F(LookupTest, VersionOneZeroLeavesTheXmlVersionZero) {
    With("version major=1 minor=0 xmlMajor=5 xmlMinor=6\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned a = 9, b = 9, c = 9, d = 9;
    cmd.zPoolVersionInformationT(a, b, c, d);
    EXPECT_EQ(a, 1u);
    EXPECT_EQ(b, 0u);
    EXPECT_EQ(c, 0u);
    EXPECT_EQ(d, 0u);
}

TEST_F(LookupTest, VersionTwoZeroReadsTheXmlVersion) {
    With("version major=2 minor=0 xmlMajor=5 xmlMinor=6\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned a = 9, b = 9, c = 9, d = 9;
    cmd.zPoolVersionInformationT(a, b, c, d);
    EXPECT_EQ(c, 5u);
    EXPECT_EQ(d, 6u);
}

TEST_F(LookupTest, VersionWithoutItsNumberThrows) {
    With("fault kind=raw text='<qvsReply><pool><poolVerify><versionMajor value=\"1\"/>"
         "<result value=\"0\"/></poolVerify></pool><result value=\"0\"/></qvsReply>'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned a = 0, b = 0, c = 0, d = 0;
    std::string err;
    auto e = Throws<QVSError>([&] { cmd.zPoolVersionInformationT(a, b, c, d); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Can not find tag");
}

TEST_F(LookupTest, VersionEchoUnderEitherTraceBit) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.SetTraceFlags(8);
    unsigned a = 0, b = 0, c = 0, d = 0;
    std::string err = Stderr([&] { cmd.zPoolVersionInformationT(a, b, c, d); });
    EXPECT_EQ(err.substr(0, 31), "util/common_cpp/qvsVFS[520] -->");
    EXPECT_EQ(err.substr(err.size() - 4), "<--\n");
}

// ------------------------------------------------------------ volume and pool information

TEST_F(LookupTest, MountedVolumeReadsAsActive) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state;
    cmd.GetVolumeState("VOL1", state);
    EXPECT_EQ(state, "active");
    EXPECT_EQ(volume.Log(), kSwitch +
                                "<qvsRequest><volume><getVolumeInfo> type=\"basic\"><volumeName>VOL1"
                                "</volumeName></getVolumeInfo></volume></qvsRequest>\n");
}

TEST_F(LookupTest, OtherVolumeStatesPassThrough) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state;
    cmd.GetVolumeState("VOL2", state);
    EXPECT_EQ(state, "deactive");
    cmd.GetVolumeState("VOL3", state);
    EXPECT_EQ(state, "maintenance");
}

TEST_F(LookupTest, VolumeStateAsNumber) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    unsigned state = 99;
    cmd.GetVolumeState("VOL1", &state);
    EXPECT_EQ(state, 6u);
    cmd.GetVolumeState("VOL2", &state);
    EXPECT_EQ(state, 2u);
    cmd.GetVolumeState("VOL3", &state);
    EXPECT_EQ(state, 3u);
}

TEST_F(LookupTest, PoolStateTextAndNumber) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state;
    cmd.GetPoolState("P2", state);
    EXPECT_EQ(state, "active");
    cmd.GetPoolState("P3", state);
    EXPECT_EQ(state, "offline");
    unsigned number = 99;
    cmd.GetPoolState("P1", &number);
    EXPECT_EQ(number, 6u);
    cmd.GetPoolState("P3", &number);
    EXPECT_EQ(number, 0u);
    EXPECT_EQ(volume.Log(),
              kSwitch +
                  "<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>P2</poolName>"
                  "</getPoolInfo></pool></qvsRequest>\n"
                  "<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>P3</poolName>"
                  "</getPoolInfo></pool></qvsRequest>\n"
                  "<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>P1</poolName>"
                  "</getPoolInfo></pool></qvsRequest>\n"
                  "<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>P3</poolName>"
                  "</getPoolInfo></pool></qvsRequest>\n");
}

TEST_F(LookupTest, VolumeAndPoolIdentifiers) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string text;
    cmd.GetVolumeID("VOL1", text);
    EXPECT_EQ(text, kVol1);
    GUID_t id{};
    cmd.GetVolumeID("VOL1", &id);
    GUID_t expected = Guid(kVol1);
    EXPECT_EQ(std::memcmp(&id, &expected, sizeof(id)), 0);
    cmd.GetPoolID("P1", text);
    EXPECT_EQ(text, "aaaaaaaa-bbbb-cccc-dd-ee-ffffffffffff");
    cmd.GetPoolID("P1", &id);
    expected = Guid("aaaaaaaa-bbbb-cccc-dd-ee-ffffffffffff");
    EXPECT_EQ(std::memcmp(&id, &expected, sizeof(id)), 0);
}

TEST_F(LookupTest, MalformedVolumeIdentifier) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t id{};
    std::string err;
    auto e = Throws<AdminError>([&] { cmd.GetVolumeID("BADID", &id); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Unable to parse Volume ID string");
    EXPECT_EQ(e->status(), 20821);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[660]");
}

TEST_F(LookupTest, MalformedPoolIdentifier) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    GUID_t id{};
    std::string err;
    auto e = Throws<AdminError>([&] { cmd.GetPoolID("P3", &id); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Unable to parse Pool ID string");
    EXPECT_EQ(e->status(), 20821);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[700]");
}

TEST_F(LookupTest, UnknownVolumeThrowsTheReplyResult) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state, err;
    auto e = Throws<QVSError>([&] { cmd.GetVolumeState("NOPE", state); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20801);
    EXPECT_STREQ(e->what(), "Reply results");
}

TEST_F(LookupTest, InnerErrorOfTheInformationQueries) {
    With("fault kind=result value=20801 where=inner\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state, err;
    auto e = Throws<QVSError>([&] { cmd.GetVolumeState("VOL1", state); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "getVolumeInfo results");
    auto p = Throws<QVSError>([&] { cmd.GetPoolState("P1", state); }, err);
    ASSERT_TRUE(p);
    EXPECT_STREQ(p->what(), "getPoolInfo results");
    EXPECT_EQ(p->status(), 20801);
}

TEST_F(LookupTest, MissingTagPathOfTheVolumeQuery) {
    With("fault kind=raw text='<qvsReply><volume><getVolumeInfo><basicInfo/><result value=\"0\"/>"
         "</getVolumeInfo></volume><result value=\"0\"/></qvsReply>'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string state, err;
    auto e = Throws<AdminError>([&] { cmd.GetVolumeState("VOL1", state); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Unable to parse XML tag <getVolumeInfo>");
    EXPECT_EQ(e->status(), 21703);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[575]");
}

TEST_F(LookupTest, MissingTagPathOfThePoolQuery) {
    With("fault kind=raw text='<qvsReply><pool><getPoolInfo><basicInfo><poolName>P1</poolName>"
         "</basicInfo><result value=\"0\"/></getPoolInfo></pool><result value=\"0\"/></qvsReply>'\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string id, err;
    auto e = Throws<AdminError>([&] { cmd.GetPoolID("P1", id); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Unable to parse XML tag <getPoolInfo>");
    EXPECT_EQ(e->status(), 21703);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[615]");
}

TEST_F(LookupTest, InformationReplyOfExactly2048BytesEndsWithAnEmptyRead) {
    With("fault kind=pad size=2048\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.ClearTrace();
    std::string reply, value;
    cmd.VolumeGetBasicInfoT(
        "<qvsRequest><volume><getVolumeInfo> type=\"basic\"><volumeName>VOL1</volumeName>"
        "</getVolumeInfo></volume></qvsRequest>",
        "<qvsReply><volume><getVolumeInfo><basicInfo><volumeState>", reply, value);
    EXPECT_EQ(reply.size(), 2048u);
    EXPECT_EQ(value, "mounted");
    // The whole reply comes with the read at 0; only a further Read at 2048
    // asks the file again, and finds its end.
    auto reads = TraceReads(volume.Trace());
    ASSERT_FALSE(reads.empty()) << volume.Trace();
    EXPECT_EQ(reads.front(), std::make_pair(0L, 2048L)) << volume.Trace();
    EXPECT_EQ(reads.back(), std::make_pair(2048L, 0L)) << volume.Trace();
}

TEST_F(LookupTest, InformationReplyLongerThanOneChunk) {
    With("fault kind=pad size=5000\n");
    VFSManageCmd cmd(0, volume.Server().c_str());
    volume.ClearTrace();
    std::string reply, value;
    cmd.PoolGetBasicInfoT("<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>P1</poolName>"
                          "</getPoolInfo></pool></qvsRequest>",
                          "<qvsReply><pool><getPoolInfo><basicInfo><poolGUID>", reply, value);
    EXPECT_EQ(reply.size(), 5000u);
    EXPECT_EQ(value, "aaaaaaaa-bbbb-cccc-dd-ee-ffffffffffff");
    auto reads = TraceReads(volume.Trace());
    ASSERT_FALSE(reads.empty()) << volume.Trace();
    // Chunks at 0, 2048 and 4096 (904 bytes) end the loop: nothing is asked
    // for at 6144.
    for (const auto& read : reads)
        EXPECT_LT(read.first, 6144L) << volume.Trace();
}

TEST_F(LookupTest, InformationEcho) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.SetTraceFlags(0x04000000u);
    std::string state;
    std::string err = Stderr([&] { cmd.GetVolumeState("VOL1", state); });
    EXPECT_EQ(err.substr(0, 41), "util/common_cpp/qvsVFS[560] --><qvsReply>");
    err = Stderr([&] { cmd.GetPoolState("P1", state); });
    EXPECT_EQ(err.substr(0, 41), "util/common_cpp/qvsVFS[600] --><qvsReply>");
}

// ------------------------------------------------------------ state change

TEST_F(LookupTest, ChangeVolumeStateSendsItsRequest) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.ChangeVolumeState("VOL2", "active");
    EXPECT_EQ(volume.Log(), kSwitch +
                                "<qvsRequest><volume><modifyState><volumeName>VOL2</volumeName>"
                                "<volumeState>active</volumeState></modifyState></volume>"
                                "</qvsRequest>\n");
    std::string state;
    cmd.GetVolumeState("VOL2", state);
    EXPECT_EQ(state, "active");
}

TEST_F(LookupTest, ChangeVolumeStateErrors) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    std::string err;
    auto e = Throws<QVSError>([&] { cmd.ChangeVolumeState("NOPE", "active"); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 20801);
    EXPECT_STREQ(e->what(), "Reply results");
    With("fault kind=result value=21726 where=inner\n");
    auto inner = Throws<QVSError>([&] { cmd.ChangeVolumeState("VOL1", "maintenance"); }, err);
    ASSERT_TRUE(inner);
    EXPECT_EQ(inner->status(), 21726);
    EXPECT_STREQ(inner->what(), "modifyState results");
}

TEST_F(LookupTest, ChangeVolumeStateEcho) {
    VFSManageCmd cmd(0, volume.Server().c_str());
    cmd.SetTraceFlags(0x04000000u);
    std::string err = Stderr([&] { cmd.ChangeVolumeState("VOL1", "active"); });
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[445] --><qvsReply><volume><modifyState><result "
                   "value=\"0\"/></modifyState></volume><result value=\"0\"/></qvsReply><--\n");
}

// ------------------------------------------------------------ result files

// The result file path has no server part, so these mount at /_admin in a
// private mount namespace of the test.
class ResultFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        QVSADMINFS_START(volume,
                         "pool name=P1\n"
                         "file pool=P1 dir=QMFS name=verify.xml "
                         "text='<qvsReply><userKey value=\"7\"/><result value=\"0\"/></qvsReply>'\n"
                         "file pool=P1 dir=QMFS64 name=verify.xml "
                         "text='<qvsReply><userKey value=\"64\"/><result value=\"0\"/></qvsReply>'\n"
                         "file pool=P1 dir=QMFS name=failed.xml "
                         "text='<qvsReply><userKey value=\"7\"/><result value=\"21723\"/></qvsReply>'\n"
                         "file pool=P1 dir=QMFS name=nokey.xml text='<qvsReply><result value=\"0\"/></qvsReply>'\n",
                         true);
    }
    AdminVolume volume;
};

TEST_F(ResultFileTest, DefaultClientUsesTheLocalAdministrationVolume) {
    VFSManageCmd cmd;
    EXPECT_EQ(cmd.Path(), "/_admin/Manage_QVS/manage.cmd");
    EXPECT_EQ(cmd.Flags(), 4u);
    EXPECT_EQ(cmd.TraceFlags(), 6u);
    EXPECT_EQ(volume.Log(), kSwitch);
}

TEST_F(ResultFileTest, ReadsTheFileOfTheKey) {
    VFSManageCmd cmd;
    std::string xml = "old";
    cmd.OpenAndReadXMLT("P1", "verify.xml", 7, xml, false);
    EXPECT_EQ(xml, "<qvsReply><userKey value=\"7\"/><result value=\"0\"/></qvsReply>");
    cmd.OpenAndReadXMLT("P1", "verify.xml", 64, xml, true);
    EXPECT_EQ(xml, "<qvsReply><userKey value=\"64\"/><result value=\"0\"/></qvsReply>");
}

TEST_F(ResultFileTest, LongFilesAreReadInChunks) {
    for (size_t size : {1024u, 1500u, 2048u, 4000u}) {
        std::string head = "<qvsReply><userKey value=\"7\"/><result value=\"0\"/>";
        std::string tail = "</qvsReply>";
        std::string text = head + std::string(size - head.size() - tail.size(), ' ') + tail;
        volume.WritePoolFile("P1/QMFS/long.xml", text);
        VFSManageCmd cmd;
        std::string xml;
        cmd.OpenAndReadXMLT("P1", "long.xml", 7, xml, false);
        EXPECT_EQ(xml, text) << size;
    }
}

TEST_F(ResultFileTest, MissingFile) {
    VFSManageCmd cmd;
    std::string xml, err;
    auto e = Throws<std::runtime_error>([&] { cmd.OpenAndReadXMLT("P1", "none.xml", 7, xml, false); },
                                        err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Could not open file");
    EXPECT_EQ(err, "util/common_cpp/lbpMisc[68] Could not open "
                   "\"/_admin/Manage_QVS/Pool/P1/QMFS/none.xml\" because of \"No such file or "
                   "directory\"\n");
}

TEST_F(ResultFileTest, FileCarryingAnError) {
    VFSManageCmd cmd;
    std::string xml, err;
    auto e = Throws<QVSError>([&] { cmd.OpenAndReadXMLT("P1", "failed.xml", 7, xml, false); }, err);
    ASSERT_TRUE(e);
    EXPECT_EQ(e->status(), 21723);
    EXPECT_STREQ(e->what(), "Reply results");
}

TEST_F(ResultFileTest, FileWithoutUserKey) {
    VFSManageCmd cmd(8, nullptr);
    std::string xml, err;
    auto e = Throws<AdminError>([&] { cmd.OpenAndReadXMLT("P1", "nokey.xml", 7, xml, false); }, err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "XML file must have <userKey>, but none found.");
    EXPECT_EQ(e->status(), 21820);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[771]");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[770] 21820\n");
}

TEST_F(ResultFileTest, FileOfAnotherKeyFailsAfterReadingIt) {
    VFSManageCmd cmd(8, nullptr);
    std::string xml, err;
    auto e = Throws<AdminError>([&] { cmd.OpenAndReadXMLT("P1", "verify.xml", 8, xml, false); },
                                err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "XML file is not for specified key");
    EXPECT_EQ(e->status(), 21724);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[777]");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[776] Matching operation key not found\n");
    EXPECT_EQ(xml, "<qvsReply><userKey value=\"7\"/><result value=\"0\"/></qvsReply>");
    // Without the trace bit nothing is written.
    VFSManageCmd quiet;
    auto q = Throws<AdminError>([&] { quiet.OpenAndReadXMLT("P1", "verify.xml", 8, xml, false); },
                                err);
    ASSERT_TRUE(q);
    EXPECT_EQ(err, "");
}

TEST_F(ResultFileTest, ReadErrorOfTheFile) {
    volume.WritePoolFile("P1/QMFS/broken.xml", "<qvsReply/>");
    volume.WriteState("pool name=P1\nfault kind=file-read-error match=broken\n");
    VFSManageCmd cmd(8, nullptr);
    std::string xml, err;
    auto e = Throws<AdminError>([&] { cmd.OpenAndReadXMLT("P1", "broken.xml", 7, xml, false); },
                                err);
    ASSERT_TRUE(e);
    EXPECT_STREQ(e->what(), "Unable to read XML file");
    EXPECT_FALSE(e->hasStatus());
    EXPECT_EQ(e->errnoValue(), EIO);
    EXPECT_EQ(e->location(), "util/common_cpp/qvsVFS[761]");
    EXPECT_EQ(err, "util/common_cpp/qvsVFS[760] Input/output error\n");
}

} // namespace
