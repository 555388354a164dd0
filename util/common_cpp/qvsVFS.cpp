// qvsVFS.cpp - the virtual-file command channel and the management client.
#include "util/common_cpp/qvsVFS.h"

#include "util/common_cpp/lbpMisc.h"
#include "util/common_cpp/nXML.h"
#include "util/support/location.h"
#include "util/support/outputWriter.h"
#include "util/support/qvsError.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <vector>

// A macro, as the location must be one string literal made when compiling.
#define VFS_LOC(line) LS_LOC("util/common_cpp/qvsVFS", line)

namespace {

// Source positions of the diagnostics; they are part of the output.
namespace loc {
// channel
constexpr const char* kOpenTrace = VFS_LOC(133);
constexpr const char* kOpen = VFS_LOC(140);
constexpr const char* kSwitch = VFS_LOC(159);
constexpr const char* kReadMessage = VFS_LOC(268);
constexpr const char* kReadThrow = VFS_LOC(269);
constexpr const char* kWriteReportMessage = VFS_LOC(291);
constexpr const char* kWriteReportThrow = VFS_LOC(292);
constexpr const char* kWriteMessage = VFS_LOC(311);
constexpr const char* kWriteThrow = VFS_LOC(312);
constexpr const char* kReplyTooLong = VFS_LOC(330);
// exchange with result codes
constexpr const char* kActionsWrite = VFS_LOC(360);
constexpr const char* kActionsRead = VFS_LOC(372);
constexpr const char* kActionsEcho = VFS_LOC(380);
constexpr const char* kActionsCode = VFS_LOC(388);
// exchanges that throw
constexpr const char* kActionsTEcho = VFS_LOC(420);
constexpr const char* kModifyStateEcho = VFS_LOC(445);
constexpr const char* kVersionEcho = VFS_LOC(520);
constexpr const char* kVolumeInfoEcho = VFS_LOC(560);
constexpr const char* kVolumeInfoTag = VFS_LOC(575);
constexpr const char* kPoolInfoEcho = VFS_LOC(600);
constexpr const char* kPoolInfoTag = VFS_LOC(615);
constexpr const char* kVolumeGuid = VFS_LOC(660);
constexpr const char* kPoolGuid = VFS_LOC(700);
constexpr const char* kXmlReadTrace = VFS_LOC(760);
constexpr const char* kXmlReadThrow = VFS_LOC(761);
constexpr const char* kXmlKeyTrace = VFS_LOC(770);
constexpr const char* kXmlKeyThrow = VFS_LOC(771);
constexpr const char* kXmlMatchTrace = VFS_LOC(776);
constexpr const char* kXmlMatchThrow = VFS_LOC(777);
// fixed-buffer family
constexpr const char* kFixedEcho = VFS_LOC(1010);
constexpr const char* kFixedCode = VFS_LOC(1018);
constexpr const char* kFixedStatus = VFS_LOC(1022);
constexpr const char* kFixedException = VFS_LOC(1030);
constexpr const char* kBuildAction = VFS_LOC(1060);
constexpr const char* kBuildPoolName = VFS_LOC(1080);
constexpr const char* kBuildUserKey = VFS_LOC(1100);
constexpr const char* kBuildFileName = VFS_LOC(1120);
constexpr const char* kBuildDetails = VFS_LOC(1140);
constexpr const char* kBuildItemRemove = VFS_LOC(1160);
constexpr const char* kBuildSet = VFS_LOC(1180);
constexpr const char* kBuildSetReset = VFS_LOC(1185);
constexpr const char* kBuildSetReconfigure = VFS_LOC(1190);
constexpr const char* kBuildSetClose = VFS_LOC(1195);
// string family
constexpr const char* kStringWrite = VFS_LOC(1240);
constexpr const char* kStringRead = VFS_LOC(1245);
constexpr const char* kStringEcho = VFS_LOC(1250);
// status queries
constexpr const char* kVerifyStatusObtain = VFS_LOC(1380);
constexpr const char* kVerifyStatusParse = VFS_LOC(1385);
constexpr const char* kRebuildStatusObtain = VFS_LOC(1390);
constexpr const char* kRebuildStatusParse = VFS_LOC(1395);
constexpr const char* kVerifyFinalCode = VFS_LOC(1400);
constexpr const char* kVerifyFinalReply = VFS_LOC(1401);
constexpr const char* kVerifyFinalObtain = VFS_LOC(1405);
constexpr const char* kVerifyFinalParse = VFS_LOC(1410);
constexpr const char* kRebuildFinalCode = VFS_LOC(1440);
constexpr const char* kRebuildFinalReply = VFS_LOC(1441);
constexpr const char* kRebuildFinalObtain = VFS_LOC(1445);
constexpr const char* kRebuildFinalParse = VFS_LOC(1450);
constexpr const char* kVerifyStateCode = VFS_LOC(1480);
constexpr const char* kVerifyStateReply = VFS_LOC(1481);
constexpr const char* kVerifyStateObtain = VFS_LOC(1485);
constexpr const char* kVerifyStateParse = VFS_LOC(1490);
constexpr const char* kRebuildStateCode = VFS_LOC(1515);
constexpr const char* kRebuildStateReply = VFS_LOC(1516);
constexpr const char* kRebuildStateObtain = VFS_LOC(1519);
constexpr const char* kRebuildStateParse = VFS_LOC(1524);
} // namespace loc

constexpr unsigned long kReplyChunk = 1024;     // chunk of every reply read
constexpr unsigned long kBasicInfoChunk = 2048; // chunk of the information queries
constexpr unsigned long kXmlFileChunk = 1024;   // chunk of a result file read
// A reply that never ends would otherwise grow without bound.
constexpr unsigned long kMaxReplyBytes = 16ul * 1024 * 1024;
constexpr unsigned int kStatusBuffer = 512;   // RAV status by key or pool name
constexpr unsigned int kDetailsBuffer = 5120; // removal and details
constexpr unsigned int kItemRemoveBuffer = 512;
constexpr unsigned int kFunnyErrorMinimum = 14;

constexpr unsigned int kActionStatusByKey = 1;
constexpr unsigned int kActionRemove = 2;
constexpr unsigned int kActionStatusByPool = 3;
constexpr unsigned int kActionItemRemove = 4;
constexpr unsigned int kActionSet = 5;
constexpr unsigned int kActionVersion = 6;
constexpr unsigned int kActionVerifyStart = 17;
constexpr unsigned int kActionVerifyDetails = 18;
constexpr unsigned int kActionRebuildStart = 33;
constexpr unsigned int kActionRebuildDetails = 34;
constexpr unsigned int kActionReverseLookup = 64;

constexpr const char* kWriteResultTag = "<writeResult>";
constexpr size_t kWriteResultTagLength = 13;
constexpr const char* kErrorTag = "<error>";

constexpr const char* kPoolVerifyTemplate = "<qvsReply><pool><poolVerify>";
constexpr const char* kVolumeTemplate = "<qvsReply><pool><poolVerify><volume>";
constexpr const char* kPathTemplate = "<qvsReply><pool><poolVerify><path>";
constexpr const char* kVerifyEntry = "<qvsReply><pool><poolVerify><verifyDetails><entry>";
constexpr const char* kRebuildEntry = "<qvsReply><pool><poolVerify><rebuildDetails><entry>";
constexpr const char* kVolumeStatePath = "<qvsReply><volume><getVolumeInfo><basicInfo><volumeState>";
constexpr const char* kVolumeGuidPath = "<qvsReply><volume><getVolumeInfo><basicInfo><volumeGUID>";
constexpr const char* kPoolStatePath = "<qvsReply><pool><getPoolInfo><basicInfo><poolState>";
constexpr const char* kPoolGuidPath = "<qvsReply><pool><getPoolInfo><basicInfo><poolGUID>";
constexpr const char* kValueAttribute = "value";

constexpr const char* kRequestOpen = "<qvsRequest><pool><poolVerify>";
constexpr const char* kRequestClose = "</poolVerify></pool></qvsRequest>";

constexpr const char* kPoolDirectory = "/_admin/Manage_QVS/Pool/";
constexpr const char* kUserKeyAttribute = "<userKey value=\"";

// A value formatted through a text stream and taken back as one word.
template <typename T>
std::string Word(const T& value) {
    std::ostringstream out;
    out << value;
    std::istringstream in(out.str());
    std::string word;
    in >> word;
    return word;
}

template <typename T>
std::string Decimal(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}

void ReportException(const char* text, const QVSError& error) {
    std::cerr << text << error.number() << "(" << error.location() << ")\n";
}

std::string BasicInfoRequest(bool volume, const std::string& name) {
    // The information element is closed before ` type="basic">` on purpose:
    // the server takes the request in exactly this form.
    if (volume)
        return "<qvsRequest><volume><getVolumeInfo> type=\"basic\"><volumeName>" + name +
               "</volumeName></getVolumeInfo></volume></qvsRequest>";
    return "<qvsRequest><pool><getPoolInfo> type=\"basic\"><poolName>" + name +
           "</poolName></getPoolInfo></pool></qvsRequest>";
}

} // namespace

// ==================================================================== channel

QVSVirtualFileServices::QVSVirtualFileServices(unsigned int flags, const char* fileName,
                                               const char* server, const char* streamName)
    : path(), file(nullptr), serverPrefix(), flags(flags == 0 ? 6 : flags) {
    if (server != nullptr && *server != '\0')
        serverPrefix = std::string("//") + server;
    path = serverPrefix + (fileName ? fileName : "");
    if (this->flags & VFS_TRACE_OPEN_PATH)
        std::cerr << loc::kOpenTrace << " " << path << "\n" << std::flush;

    file = std::fopen(path.c_str(), "r+");
    if (file == nullptr) {
        const int error = errno;
        std::cerr << loc::kOpen << " Could not open \"" << path << "\" because of \""
                  << std::strerror(error) << "\"\n";
        throw std::runtime_error("Could not open command file");
    }

    std::string modeSwitch = streamName != nullptr
                                 ? std::string("<virtualIO><datastream name=\"") + streamName +
                                       "\"/></virtualIO>"
                                 : std::string("<virtualIO><datastream/></virtualIO>");
    if (std::fwrite(modeSwitch.data(), modeSwitch.size(), 1, file) != 1) {
        const int error = errno;
        std::cerr << loc::kSwitch << " Could not write to \"" << path << "\" because of \""
                  << std::strerror(error) << "\"\n";
        std::fclose(file);
        file = nullptr;
        throw std::runtime_error("Could not switch to command mode");
    }
    // Neither failure is fatal: the first request finds out.
    if (std::fflush(file) != 0)
        QVS::PrintSystemError("Unable to flush data 1");
    if (std::fseek(file, 0, SEEK_SET) != 0)
        QVS::PrintSystemError("Unable to fseek to 0 -- case 1");
}

QVSVirtualFileServices::~QVSVirtualFileServices() {
    if (file == nullptr)
        return;
    if (std::fflush(file) != 0)
        QVS::PrintSystemError("Unable to flush data 2");
    std::fclose(file);
    file = nullptr;
}

unsigned long QVSVirtualFileServices::Read(char* buffer, unsigned long size, unsigned int offset) {
    std::fseek(file, static_cast<long>(offset), SEEK_SET);
    std::clearerr(file);
    unsigned long n = std::fread(buffer, 1, size, file);
    if (n == 0 && !std::feof(file)) {
        const int error = errno;
        std::cerr << loc::kReadMessage << " Could not read from \"" << path << "\" because of \""
                  << std::strerror(error) << "\"\n";
        errno = error;
        throw AdminError("Could not read", loc::kReadThrow);
    }
    // Only the first chunk of a reply can be a failed-write report.
    if (offset != 0)
        return n;
    unsigned long long status = 0;
    if (IsFunnyErrorPresent(n, buffer, status)) {
        std::cerr << loc::kWriteReportMessage << " Could not read from \"" << path
                  << "\" because of \"" << status << "\"\n";
        throw AdminError("Could not read because of a write error ", static_cast<int>(status),
                         loc::kWriteReportThrow);
    }
    return n;
}

void QVSVirtualFileServices::Write(const char* data, unsigned long length) {
    std::fseek(file, 0, SEEK_SET);
    std::clearerr(file);
    if (std::fwrite(data, 1, length, file) == length) {
        if (std::fflush(file) != 0)
            QVS::PrintSystemError("Unable to flush data 3");
        return;
    }
    const int error = errno;
    std::cerr << loc::kWriteMessage << " Could not write to \"" << path << "\" because of \""
              << std::strerror(error) << "\"\n";
    errno = error;
    throw AdminError("Could not write command", loc::kWriteThrow);
}

bool QVSVirtualFileServices::IsFunnyErrorPresent(unsigned long length, const char* text,
                                                 unsigned long long& status) {
    status = 0;
    if (length < kFunnyErrorMinimum || text == nullptr)
        return false;
    if (std::memcmp(text, kWriteResultTag, kWriteResultTagLength) != 0)
        return false;
    NXML::XML_ElementInfo_s info;
    if (NXML::MQVS_GetTagTemplate(kWriteResultTag, kErrorTag, length, text, &info) != 0)
        return false;
    // The number used when the error text carries none.
    status = QVS::zERR_GENERIC_QVS_ERROR;
    if (info.contentsLength < 2)
        return true;
    const char* contents = info.contentsStart;
    for (unsigned long p = 1; p < info.contentsLength; ++p) {
        if (contents[p - 1] != '(')
            continue;
        unsigned long long number = 0;
        if (NXML::XML_UTF8ToQUAD(contents + p, info.contentsLast, &number, nullptr) == 0) {
            status = number;
            return true;
        }
    }
    return true;
}

// ===================================================================== client

VFSManageCmd::VFSManageCmd(unsigned int flags, const char* server)
    : QVSVirtualFileServices(flags, VFS_MANAGE_CMD_FILE, server, VFS_COMMAND_STREAM),
      traceFlags(6) {}

VFSManageCmd::VFSManageCmd()
    : QVSVirtualFileServices(4, VFS_MANAGE_CMD_FILE, nullptr, VFS_COMMAND_STREAM),
      traceFlags(6) {}

void VFSManageCmd::ReadReply(std::string& reply, unsigned long chunk) {
    reply.clear();
    std::vector<char> buffer(chunk + 1, '\0');
    unsigned long offset = 0;
    for (;;) {
        unsigned long n = Read(buffer.data(), chunk, static_cast<unsigned int>(offset));
        buffer[n] = '\0';
        reply.append(buffer.data());
        if (n != chunk)
            return;
        offset += chunk;
        if (offset >= kMaxReplyBytes)
            throw AdminError("Reply too long", QVS::zERR_BUFFER_TOO_SMALL, loc::kReplyTooLong);
    }
}

void VFSManageCmd::EchoReply(const char* location, const char* reply) const {
    if (traceFlags & VFS_TRACE_ECHO)
        std::cerr << location << " -->" << reply << "<--\n";
}

// ------------------------------------------------------ lookups and queries

int VFSManageCmd::PoolVerifyActions(const std::string& request, std::string& reply,
                                    int& status) {
    try {
        Write(request.data(), request.size());
    } catch (const QVSError& error) {
        ReportException("Exception while attempting to write to VFSManageCmd Object:  ", error);
        std::cerr << loc::kActionsWrite << "\n";
        throw;
    }
    try {
        ReadReply(reply, kReplyChunk);
    } catch (const QVSError& error) {
        ReportException("Exception while attempting to read from VFSManageCmd Object:  ", error);
        std::cerr << loc::kActionsRead << "\n";
        throw;
    }
    EchoReply(loc::kActionsEcho, reply.c_str());
    unsigned int code = NXML::GetQVSReplyResultValue(reply.c_str(), status);
    if (code == 0)
        return static_cast<int>(NXML::GetPoolVerifyReplyResultValue(reply.c_str(), status));
    if (flags & VFS_TRACE_FAILURES)
        std::cerr << loc::kActionsCode << " " << code << "\n";
    return static_cast<int>(code);
}

void VFSManageCmd::PoolVerifyActionsT(const std::string& request, std::string& reply) {
    Write(request.data(), request.size());
    ReadReply(reply, kReplyChunk);
    EchoReply(loc::kActionsTEcho, reply.c_str());
    NXML::GetQVSReplyResultValueT(reply.c_str());
    NXML::GetPoolVerifyReplyResultValueT(reply.c_str());
}

void VFSManageCmd::VolumeModifyStateActionsT(const std::string& request, std::string& reply) {
    Write(request.data(), request.size());
    ReadReply(reply, kReplyChunk);
    EchoReply(loc::kModifyStateEcho, reply.c_str());
    NXML::GetQVSReplyResultValueT(reply.c_str());
    NXML::GetVolumeModifyStateReplyResultValueT(reply.c_str());
}

int VFSManageCmd::ReverseNameLookup(unsigned long long zid, unsigned int nameType,
                                    unsigned int nameSpace, const GUID_t* volumeID,
                                    std::string& volumeName, std::string& path, int& status) {
    const GUID_t& guid = volumeID != nullptr ? *volumeID : QVS::zZERO_GUID;
    // Name space before name type: the element order is the server's.
    std::string request = std::string(kRequestOpen) + "<action>" + Word(kActionReverseLookup) +
                          "</action><zid>" + Word(zid) + "</zid><nameSpace>" + Word(nameSpace) +
                          "</nameSpace><nameType>" + Word(nameType) + "</nameType><volumeID>" +
                          Word(guid) + "</volumeID>" + kRequestClose;
    std::string reply;
    int code = PoolVerifyActions(request, reply, status);
    if (code != 0 || status != 0)
        return code;
    code = static_cast<int>(NXML::GetPoolVerifyReplyResultValue(reply.c_str(), status));
    if (code != 0 || status != 0)
        return code;
    code = static_cast<int>(
        NXML::MQVS_GetSpecificTemplate(kVolumeTemplate, reply.size(), reply.c_str(), volumeName));
    if (code != 0)
        return code;
    return static_cast<int>(
        NXML::MQVS_GetSpecificTemplate(kPathTemplate, reply.size(), reply.c_str(), path));
}

void VFSManageCmd::zPoolVersionInformationT(unsigned int& versionMajor,
                                            unsigned int& versionMinor,
                                            unsigned int& xmlVersionMajor,
                                            unsigned int& xmlVersionMinor) {
    std::string reply;
    PoolVerifyActionsT(std::string(kRequestOpen) + "<action>" + Word(kActionVersion) +
                           "</action>" + kRequestClose,
                       reply);
    if (traceFlags & (VFS_TRACE_ECHO | VFS_TRACE_FAILURES))
        std::cerr << loc::kVersionEcho << " -->" << reply << "<--\n";
    auto number = [&](const char* tag) {
        unsigned long long value = 0;
        NXML::MQVS_GetTagAttributeAttribute(kPoolVerifyTemplate, tag, kValueAttribute,
                                            reply.size(), reply.c_str(), &value);
        return static_cast<unsigned int>(value);
    };
    versionMajor = number("<versionMajor>");
    versionMinor = number("<versionMinor>");
    // Interface 1.00 has no XML version numbers.
    if (versionMajor * 100 + versionMinor > 100) {
        xmlVersionMajor = number("<xmlVersionMajor>");
        xmlVersionMinor = number("<xmlVersionMinor>");
    } else {
        xmlVersionMajor = 0;
        xmlVersionMinor = 0;
    }
}

void VFSManageCmd::BasicInfoT(const std::string& request, const std::string& tagPath,
                              std::string& reply, std::string& value, bool volume) {
    Write(request.data(), request.size());
    ReadReply(reply, kBasicInfoChunk);
    EchoReply(volume ? loc::kVolumeInfoEcho : loc::kPoolInfoEcho, reply.c_str());
    NXML::GetQVSReplyResultValueT(reply.c_str());
    if (volume)
        NXML::GetVolumeBasicInfoReplyResultValueT(reply.c_str());
    else
        NXML::GetPoolBasicInfoReplyResultValueT(reply.c_str());
    unsigned int code =
        NXML::MQVS_GetSpecificTemplate(tagPath.c_str(), reply.size(), reply.c_str(), value);
    if (code != 0) {
        if (volume)
            throw AdminError("Unable to parse XML tag <getVolumeInfo>", static_cast<int>(code),
                             loc::kVolumeInfoTag);
        throw AdminError("Unable to parse XML tag <getPoolInfo>", static_cast<int>(code),
                         loc::kPoolInfoTag);
    }
}

void VFSManageCmd::VolumeGetBasicInfoT(const std::string& request, const std::string& tagPath,
                                       std::string& reply, std::string& value) {
    BasicInfoT(request, tagPath, reply, value, true);
}

void VFSManageCmd::PoolGetBasicInfoT(const std::string& request, const std::string& tagPath,
                                     std::string& reply, std::string& value) {
    BasicInfoT(request, tagPath, reply, value, false);
}

namespace {

// Callers see one word for a usable volume or pool.
void MountedReadsActive(std::string& state) {
    if (state == "mounted")
        state = "active";
}

// The identifier text of a basic-information reply as a GUID; throws with
// `message` when it is not one.
void ParseIdText(const std::string& text, const char* message, const char* location,
                 GUID_t* id) {
    GUID_t parsed{};
    unsigned int code = QVS::LB_GUIDFromUTF8(text.c_str(), &parsed);
    if (code != 0)
        throw AdminError(message, static_cast<int>(code), location);
    if (id != nullptr)
        *id = parsed;
}

} // namespace

void VFSManageCmd::GetVolumeState(const std::string& name, std::string& state) {
    std::string reply;
    VolumeGetBasicInfoT(BasicInfoRequest(true, name), kVolumeStatePath, reply, state);
    MountedReadsActive(state);
}

void VFSManageCmd::GetVolumeState(const std::string& name, unsigned int* state) {
    std::string text;
    GetVolumeState(name, text);
    if (state != nullptr)
        *state = QVS::LB_VolumeStateStringToVolumeStateNumber(text.c_str());
}

void VFSManageCmd::GetPoolState(const std::string& name, std::string& state) {
    std::string reply;
    PoolGetBasicInfoT(BasicInfoRequest(false, name), kPoolStatePath, reply, state);
    MountedReadsActive(state);
}

void VFSManageCmd::GetPoolState(const std::string& name, unsigned int* state) {
    std::string text;
    GetPoolState(name, text);
    if (state != nullptr)
        *state = QVS::LB_VolumeStateStringToVolumeStateNumber(text.c_str());
}

void VFSManageCmd::GetVolumeID(const std::string& name, std::string& id) {
    std::string reply;
    VolumeGetBasicInfoT(BasicInfoRequest(true, name), kVolumeGuidPath, reply, id);
}

void VFSManageCmd::GetVolumeID(const std::string& name, GUID_t* id) {
    std::string text;
    GetVolumeID(name, text);
    ParseIdText(text, "Unable to parse Volume ID string", loc::kVolumeGuid, id);
}

void VFSManageCmd::GetPoolID(const std::string& name, std::string& id) {
    std::string reply;
    PoolGetBasicInfoT(BasicInfoRequest(false, name), kPoolGuidPath, reply, id);
}

void VFSManageCmd::GetPoolID(const std::string& name, GUID_t* id) {
    std::string text;
    GetPoolID(name, text);
    ParseIdText(text, "Unable to parse Pool ID string", loc::kPoolGuid, id);
}

void VFSManageCmd::ChangeVolumeState(const std::string& volumeName, const std::string& state) {
    std::string request = "<qvsRequest><volume><modifyState><volumeName>" + volumeName +
                          "</volumeName><volumeState>" + state +
                          "</volumeState></modifyState></volume></qvsRequest>";
    std::string reply;
    VolumeModifyStateActionsT(request, reply);
}

void VFSManageCmd::OpenAndReadXMLT(const std::string& poolName, const std::string& fileName,
                                   unsigned long long key, std::string& xml, bool wide) {
    std::string filePath =
        std::string(kPoolDirectory) + poolName + (wide ? "/QMFS64/" : "/QMFS/") + fileName;
    Handle_raii handle(filePath.c_str(), "rb");
    FILE* in = handle.get();
    xml.clear();
    char buffer[kXmlFileChunk + 1];
    unsigned long offset = 0;
    for (;;) {
        std::fseek(in, static_cast<long>(offset), SEEK_SET);
        size_t n = std::fread(buffer, 1, kXmlFileChunk, in);
        buffer[n] = '\0';
        xml.append(buffer);
        if (n != kXmlFileChunk)
            break;
        offset += kXmlFileChunk;
        if (offset >= kMaxReplyBytes)
            throw AdminError("Reply too long", QVS::zERR_BUFFER_TOO_SMALL, loc::kReplyTooLong);
    }
    if (!std::feof(in)) {
        const int error = errno;
        if (flags & VFS_TRACE_FAILURES)
            std::cerr << loc::kXmlReadTrace << " " << std::strerror(error) << "\n";
        errno = error;
        throw AdminError("Unable to read XML file", loc::kXmlReadThrow);
    }
    // The result file is itself a reply.
    NXML::GetQVSReplyResultValueT(xml.c_str());
    unsigned long long fileKey = 0;
    unsigned int code = LBP_GetValue(xml.c_str(), kUserKeyAttribute, &fileKey);
    if (code != 0) {
        if (flags & VFS_TRACE_FAILURES)
            std::cerr << loc::kXmlKeyTrace << " " << code << "\n";
        throw AdminError("XML file must have <userKey>, but none found.", static_cast<int>(code),
                         loc::kXmlKeyThrow);
    }
    if (fileKey != key) {
        if (flags & VFS_TRACE_FAILURES)
            std::cerr << loc::kXmlMatchTrace << " Matching operation key not found\n";
        throw AdminError("XML file is not for specified key", QVS::zERR_RAV_STATUS_NOT_AVALIABLE,
                         loc::kXmlMatchThrow);
    }
}

// ------------------------------------------------------ fixed-buffer family

int VFSManageCmd::PoolVerifyActions(unsigned int size, char* buffer) {
    if (size == 0 || buffer == nullptr)
        return static_cast<int>(QVS::zERR_BAD_PARAMETER_VALUE);
    try {
        Write(buffer, std::strlen(buffer));
        // The reply replaces the request and is cut to the buffer.
        unsigned long n = Read(buffer, size - 1, 0);
        buffer[n] = '\0';
    } catch (const QVSError& error) {
        std::cerr << loc::kFixedException;
        ReportException("Exception while attempting to access VFSManageCmd Object:  ", error);
        throw;
    }
    EchoReply(loc::kFixedEcho, buffer);
    int status = 0;
    unsigned int code = NXML::GetQVSReplyResultValue(buffer, status);
    if (code != 0) {
        if (flags & VFS_TRACE_FAILURES)
            std::cerr << loc::kFixedCode << " " << code << "\n";
        return static_cast<int>(code);
    }
    if ((flags & VFS_TRACE_FAILURES) && status != 0)
        std::cerr << loc::kFixedStatus << " " << status << "\n";
    code = NXML::GetPoolVerifyReplyResultValue(buffer, status);
    return code != 0 ? static_cast<int>(code) : status;
}

void VFSManageCmd::CheckRequestFits(int count, unsigned int size, const char* location) const {
    // A count equal to the size passes, one character short, as it always has.
    if (count >= 0 && static_cast<unsigned int>(count) <= size)
        return;
    std::cerr << location << " Could not write to \"" << path
              << "\" because of \"zERR_BUFFER_TOO_SMALL\"\n";
    throw std::runtime_error("Internal buffer too small");
}

int VFSManageCmd::PoolVerifyActions(unsigned int action, unsigned int size, char* buffer) {
    int count = std::snprintf(
        buffer, size, "<qvsRequest><pool><poolVerify><action>%u</action></poolVerify></pool></qvsRequest>",
        action);
    CheckRequestFits(count, size, loc::kBuildAction);
    return PoolVerifyActions(size, buffer);
}

int VFSManageCmd::PoolVerifyActions(std::string* poolName, unsigned int action, unsigned int size,
                                    char* buffer) {
    int count = std::snprintf(buffer, size,
                              "<qvsRequest><pool><poolVerify><poolName>%s</poolName><action>%u"
                              "</action></poolVerify></pool></qvsRequest>",
                              poolName ? poolName->c_str() : "", action);
    CheckRequestFits(count, size, loc::kBuildPoolName);
    return PoolVerifyActions(size, buffer);
}

int VFSManageCmd::PoolVerifyActions(unsigned long long userKey, unsigned int action,
                                    unsigned int size, char* buffer) {
    int count = std::snprintf(buffer, size,
                              "<qvsRequest><pool><poolVerify><userKey>%llu</userKey><action>%u"
                              "</action></poolVerify></pool></qvsRequest>",
                              userKey, action);
    CheckRequestFits(count, size, loc::kBuildUserKey);
    return PoolVerifyActions(size, buffer);
}

int VFSManageCmd::PoolVerifyActions(unsigned long long userKey, std::string& fileName,
                                    unsigned int action, unsigned int size, char* buffer) {
    int count = std::snprintf(buffer, size,
                              "<qvsRequest><pool><poolVerify><fileName>%s</fileName><userKey>%llu"
                              "</userKey><action>%u</action></poolVerify></pool></qvsRequest>",
                              fileName.c_str(), userKey, action);
    CheckRequestFits(count, size, loc::kBuildFileName);
    return PoolVerifyActions(size, buffer);
}

int VFSManageCmd::PoolRAVDetails(unsigned long long userKey, unsigned int size, char* buffer,
                                 int action, bool multiple) {
    const char* format =
        multiple ? "<qvsRequest><pool><poolVerify><userKey>%llu</userKey><action>%u</action>"
                   "<multiple/></poolVerify></pool></qvsRequest>"
                 : "<qvsRequest><pool><poolVerify><userKey>%llu</userKey><action>%u</action>"
                   "</poolVerify></pool></qvsRequest>";
    int count = std::snprintf(buffer, size, format, userKey, static_cast<unsigned int>(action));
    CheckRequestFits(count, size, loc::kBuildDetails);
    return PoolVerifyActions(size, buffer);
}

int VFSManageCmd::PoolRAVItemRemove(unsigned long long userKey, unsigned int itemType,
                                    unsigned long long itemKey) {
    char buffer[kItemRemoveBuffer];
    int count = std::snprintf(buffer, sizeof(buffer),
                              "<qvsRequest><pool><poolVerify><userKey>%llu</userKey><action>%u"
                              "</action><itemKey>%llu</itemKey><itemType>%u</itemType>"
                              "</poolVerify></pool></qvsRequest>",
                              userKey, kActionItemRemove, itemKey, itemType);
    CheckRequestFits(count, kItemRemoveBuffer, loc::kBuildItemRemove);
    return PoolVerifyActions(kItemRemoveBuffer, buffer);
}

int VFSManageCmd::PoolVerifyActionsSet(unsigned int action, unsigned int size, char* buffer,
                                       bool reconfigure, bool reset) {
    int count = std::snprintf(buffer, size, "<qvsRequest><pool><poolVerify><action>%u</action>",
                              action);
    CheckRequestFits(count, size, loc::kBuildSet);
    // Each piece goes after the text so far; its own count is checked against
    // the whole size, not the space left, as it always has been.
    auto append = [&](const char* piece, const char* location) {
        size_t used = std::strlen(buffer);
        int pieceCount = std::snprintf(buffer + used, size - used, "%s", piece);
        CheckRequestFits(pieceCount, size, location);
    };
    if (reset)
        append("<reset/>", loc::kBuildSetReset);
    if (reconfigure)
        append("<reconfigure/>", loc::kBuildSetReconfigure);
    append(kRequestClose, loc::kBuildSetClose);
    return PoolVerifyActions(size, buffer);
}

int VFSManageCmd::PoolRAVStatusFromQMFS(std::string* poolName) {
    char buffer[kStatusBuffer];
    return PoolVerifyActions(poolName, kActionStatusByPool, kStatusBuffer, buffer);
}

int VFSManageCmd::PoolRAVStatusFromQMFS(unsigned long long userKey) {
    char buffer[kStatusBuffer];
    return PoolVerifyActions(userKey, kActionStatusByKey, kStatusBuffer, buffer);
}

int VFSManageCmd::PoolRAVRemove(unsigned long long userKey) {
    std::vector<char> buffer(kDetailsBuffer);
    return PoolVerifyActions(userKey, kActionRemove, kDetailsBuffer, buffer.data());
}

// ------------------------------------------------------------ string family

void VFSManageCmd::PoolVerifyActionsT(const std::string& request) {
    try {
        Write(request.data(), request.size());
    } catch (const QVSError& error) {
        ReportException("Exception while attempting to write to VFSManageCmd Object:  ", error);
        std::cerr << loc::kStringWrite << "\n";
        throw;
    }
    std::string reply;
    try {
        ReadReply(reply, kReplyChunk);
    } catch (const QVSError& error) {
        ReportException("Exception while attempting to read from VFSManageCmd Object:  ", error);
        std::cerr << loc::kStringRead << "\n";
        throw;
    }
    EchoReply(loc::kStringEcho, reply.c_str());
    NXML::GetQVSReplyResultValueT(reply.c_str());
    NXML::GetPoolVerifyReplyResultValueT(reply.c_str());
}

void VFSManageCmd::RAVSet(unsigned long long userKey, const std::string& settings) {
    PoolVerifyActionsT(std::string(kRequestOpen) + "<userKey>" + Decimal(userKey) +
                       "</userKey><action>" + Decimal(kActionSet) + "</action>" + settings +
                       kRequestClose);
}

void VFSManageCmd::RAVSetUIPruneStatus(unsigned long long userKey, int value) {
    RAVSet(userKey, "<uiPruneStatus>" + Decimal(value) + "</uiPruneStatus>");
}

void VFSManageCmd::RAVSetUIOptions(unsigned long long userKey, unsigned long long value) {
    RAVSet(userKey, "<uiOptions>" + Decimal(value) + "</uiOptions>");
}

void VFSManageCmd::RAVSetDebugLevel(unsigned long long userKey, unsigned long long value) {
    RAVSet(userKey, "<debugLevel>" + Decimal(value) + "</debugLevel>");
}

void VFSManageCmd::PoolVerifyStartT(const std::string& poolName, unsigned long long* userKey,
                                    bool crossValidation, unsigned long long uiOptions,
                                    unsigned long long debugLevel) {
    std::ostringstream request;
    request << kRequestOpen << "<action>" << kActionVerifyStart << "</action><poolName>"
            << poolName << "</poolName><uiOptions>" << uiOptions << "</uiOptions><debugLevel>"
            << debugLevel << "</debugLevel>";
    if (crossValidation)
        request << "<crossValidation/>";
    request << kRequestClose;
    std::string reply;
    PoolVerifyActionsT(request.str(), reply);
    unsigned long long key = 0;
    NXML::MQVS_GetTagAttributeAttribute(kPoolVerifyTemplate, "<userKey>", kValueAttribute,
                                        reply.size(), reply.c_str(), &key);
    if (userKey != nullptr)
        *userKey = key;
}

void VFSManageCmd::PoolRebuildStartT(const std::string& poolName, unsigned long long* userKey,
                                     unsigned long long rezidThreshold,
                                     unsigned long long uiOptions, unsigned long long debugLevel,
                                     unsigned long long fileLossMax, bool uiPruneWait,
                                     bool purge, bool pruneUnknownLosses, bool pruneIV) {
    std::ostringstream request;
    request << kRequestOpen << "<action>" << kActionRebuildStart << "</action><poolName>"
            << poolName << "</poolName><rezidThreshold>" << rezidThreshold
            << "</rezidThreshold><uiOptions>" << uiOptions << "</uiOptions><debugLevel>"
            << debugLevel << "</debugLevel><fileLossMax>" << fileLossMax << "</fileLossMax>";
    if (uiPruneWait)
        request << "<uiPruneWait/>";
    if (purge)
        request << "<purge/>";
    // pruneIV is written before pruneUnknownLosses although it comes after it
    // among the arguments; the server reads them in this order.
    if (pruneIV)
        request << "<pruneIV/>";
    if (pruneUnknownLosses)
        request << "<pruneUnknownLosses/>";
    request << kRequestClose;
    std::string reply;
    PoolVerifyActionsT(request.str(), reply);
    unsigned long long key = 0;
    NXML::MQVS_GetTagAttributeAttribute(kPoolVerifyTemplate, "<userKey>", kValueAttribute,
                                        reply.size(), reply.c_str(), &key);
    if (userKey != nullptr)
        *userKey = key;
}

// ------------------------------------------------------------ status queries

struct VFSManageCmd::DetailQuery_s {
    unsigned int action;
    const char* entryPath;
    const char* valueTag;
    const char* obtainMessage;
    const char* parseMessage;
    bool diagnostics; // the final-status and state queries always show the reply
    const char* codeLocation;
    const char* replyLocation;
    const char* obtainLocation;
    const char* parseLocation;
};

unsigned long long VFSManageCmd::DetailValue(unsigned long long userKey,
                                             const DetailQuery_s& query, std::string* setter) {
    std::vector<char> buffer(kDetailsBuffer, '\0');
    int result = PoolRAVDetails(userKey, kDetailsBuffer, buffer.data(),
                                static_cast<int>(query.action), false);
    if (query.diagnostics) {
        std::cerr << query.codeLocation << " " << result << "\n";
        std::cerr << query.replyLocation << buffer.data() << "\n";
    }
    if (result != 0)
        throw QVSError(query.obtainMessage, result, query.obtainLocation);
    const char* reply = buffer.data();
    const unsigned long length = std::strlen(reply);
    long long value = 0;
    unsigned int code =
        NXML::MQVS_GetAttribute(query.entryPath, query.valueTag, kValueAttribute, length, reply,
                                &value);
    if (code == 0 && setter != nullptr)
        code = NXML::MQVS_GetAttribute(query.entryPath, "<finalStatusSetter>", kValueAttribute,
                                       length, reply, *setter);
    if (code != 0)
        throw QVSError(query.parseMessage, static_cast<int>(code), query.parseLocation);
    return static_cast<unsigned long long>(value);
}

unsigned long long VFSManageCmd::PoolVerifyStatusFromCommonLayer(unsigned long long userKey) {
    static const DetailQuery_s query = {kActionVerifyDetails, kVerifyEntry, "<ravStatus>",
                                        "Could not obtain rav thread status",
                                        "Could not parse rav thread status", false, nullptr,
                                        nullptr, loc::kVerifyStatusObtain,
                                        loc::kVerifyStatusParse};
    return DetailValue(userKey, query, nullptr);
}

unsigned long long VFSManageCmd::PoolRebuildStatusFromCommonLayer(unsigned long long userKey) {
    static const DetailQuery_s query = {kActionRebuildDetails, kRebuildEntry, "<ravStatus>",
                                        "Could not obtain rav thread status",
                                        "Could not parse rav thread status", false, nullptr,
                                        nullptr, loc::kRebuildStatusObtain,
                                        loc::kRebuildStatusParse};
    return DetailValue(userKey, query, nullptr);
}

unsigned long long VFSManageCmd::PoolVerifyFinalStatusFromCommonLayer(unsigned long long userKey,
                                                                      std::string& setter) {
    static const DetailQuery_s query = {kActionVerifyDetails, kVerifyEntry, "<finalStatus>",
                                        "Could not obtain rav thread final status",
                                        "Could not parse rav thread final status", true,
                                        loc::kVerifyFinalCode, loc::kVerifyFinalReply,
                                        loc::kVerifyFinalObtain, loc::kVerifyFinalParse};
    return DetailValue(userKey, query, &setter);
}

unsigned long long VFSManageCmd::PoolRebuildFinalStatusFromCommonLayer(
    unsigned long long userKey, std::string& setter) {
    static const DetailQuery_s query = {kActionRebuildDetails, kRebuildEntry, "<finalStatus>",
                                        "Could not obtain rav thread final status",
                                        "Could not parse rav thread final status", true,
                                        loc::kRebuildFinalCode, loc::kRebuildFinalReply,
                                        loc::kRebuildFinalObtain, loc::kRebuildFinalParse};
    return DetailValue(userKey, query, &setter);
}

unsigned long long VFSManageCmd::PoolVerifyStateFromCommonLayer(unsigned long long userKey) {
    static const DetailQuery_s query = {kActionVerifyDetails, kVerifyEntry, "<state>",
                                        "Could not obtain rav thread state",
                                        "Could not parse rav thread state", true,
                                        loc::kVerifyStateCode, loc::kVerifyStateReply,
                                        loc::kVerifyStateObtain, loc::kVerifyStateParse};
    return DetailValue(userKey, query, nullptr);
}

unsigned long long VFSManageCmd::PoolRebuildStateFromCommonLayer(unsigned long long userKey) {
    static const DetailQuery_s query = {kActionRebuildDetails, kRebuildEntry, "<state>",
                                        "Could not obtain rav thread state",
                                        "Could not parse rav thread state", true,
                                        loc::kRebuildStateCode, loc::kRebuildStateReply,
                                        loc::kRebuildStateObtain, loc::kRebuildStateParse};
    return DetailValue(userKey, query, nullptr);
}
