// qvsVFS.h - the management command channel (QVSVirtualFileServices) and the
// management client (VFSManageCmd): name lookup, pool and volume queries, and
// the rebuild/verify control requests, exchanged as XML through the virtual
// command file of the administration volume.
#ifndef UTIL_COMMON_CPP_QVSVFS_H
#define UTIL_COMMON_CPP_QVSVFS_H

#include "util/support/qvsGuid.h"

#include <cstdio>
#include <string>

// Trace bits of the channel's flags.
constexpr unsigned int VFS_TRACE_OPEN_PATH = 0x40000000u; // print the path before opening
constexpr unsigned int VFS_TRACE_FAILURES = 0x00000008u;  // result codes and statuses
// Trace bit of the client's second trace word: echo requests' replies.
constexpr unsigned int VFS_TRACE_ECHO = 0x04000000u;

// The command file of the administration volume and its command data stream.
constexpr const char* VFS_MANAGE_CMD_FILE = "/_admin/Manage_QVS/manage.cmd";
constexpr const char* VFS_COMMAND_STREAM = "command";

// One open handle on a virtual command file, switched to a data stream: each
// request is written at the start of the file and its reply read back from
// the start.
class QVSVirtualFileServices {
public:
    // Opens "//" + server + fileName (or fileName alone without a server) and
    // switches the handle to `streamName`. Throws std::runtime_error.
    QVSVirtualFileServices(unsigned int flags, const char* fileName, const char* server,
                           const char* streamName);
    ~QVSVirtualFileServices();

    QVSVirtualFileServices(const QVSVirtualFileServices&) = delete;
    QVSVirtualFileServices& operator=(const QVSVirtualFileServices&) = delete;

    // Up to `size` bytes of the reply at `offset`; a failed-write report in
    // the first chunk throws AdminError.
    unsigned long Read(char* buffer, unsigned long size, unsigned int offset);
    // One whole request at the start of the file; throws AdminError.
    void Write(const char* data, unsigned long length);
    // Whether `text` is the report the storage system gives in place of a
    // reply when the request before it failed; `status` gets its number.
    static bool IsFunnyErrorPresent(unsigned long length, const char* text, unsigned long long& status);

    const std::string& Path() const { return path; }
    unsigned int Flags() const { return flags; }

protected:
    std::string path;
    FILE* file;
    std::string serverPrefix;
    unsigned int flags;
};

class VFSManageCmd : public QVSVirtualFileServices {
public:
    VFSManageCmd(unsigned int flags, const char* server);
    VFSManageCmd();

    unsigned int TraceFlags() const { return traceFlags; }
    void SetTraceFlags(unsigned int value) { traceFlags = value; }

    // ------------------------------------------------ name lookup and queries

    int ReverseNameLookup(unsigned long long zid, unsigned int nameType, unsigned int nameSpace,
                          const GUID_t* volumeID, std::string& volumeName, std::string& path,
                          int& status);
    // Exchange of a pool-verify request whose reply errors become the code.
    int PoolVerifyActions(const std::string& request, std::string& reply, int& status);
    void PoolVerifyActionsT(const std::string& request, std::string& reply);
    void zPoolVersionInformationT(unsigned int& versionMajor, unsigned int& versionMinor,
                                  unsigned int& xmlVersionMajor, unsigned int& xmlVersionMinor);
    void VolumeGetBasicInfoT(const std::string& request, const std::string& tagPath,
                             std::string& reply, std::string& value);
    void PoolGetBasicInfoT(const std::string& request, const std::string& tagPath,
                           std::string& reply, std::string& value);
    void GetVolumeState(const std::string& name, std::string& state);
    void GetVolumeState(const std::string& name, unsigned int* state);
    void GetPoolState(const std::string& name, std::string& state);
    void GetPoolState(const std::string& name, unsigned int* state);
    void GetVolumeID(const std::string& name, std::string& id);
    void GetVolumeID(const std::string& name, GUID_t* id);
    void GetPoolID(const std::string& name, std::string& id);
    void GetPoolID(const std::string& name, GUID_t* id);
    void VolumeModifyStateActionsT(const std::string& request, std::string& reply);
    void ChangeVolumeState(const std::string& volumeName, const std::string& state);
    void OpenAndReadXMLT(const std::string& poolName, const std::string& fileName,
                         unsigned long long key, std::string& xml, bool wide);

    // ------------------------------------------------ rebuild/verify control

    // Fixed-buffer family: the request is formatted into `buffer`, which then
    // receives the reply (cut at size - 1 bytes). Returns a parse code, else
    // the request's status.
    int PoolVerifyActions(unsigned int size, char* buffer);
    int PoolVerifyActions(unsigned int action, unsigned int size, char* buffer);
    int PoolVerifyActions(std::string* poolName, unsigned int action, unsigned int size,
                          char* buffer);
    int PoolVerifyActions(unsigned long long userKey, unsigned int action, unsigned int size,
                          char* buffer);
    int PoolVerifyActions(unsigned long long userKey, std::string& fileName, unsigned int action,
                          unsigned int size, char* buffer);
    int PoolRAVDetails(unsigned long long userKey, unsigned int size, char* buffer, int action,
                       bool multiple);
    int PoolRAVItemRemove(unsigned long long userKey, unsigned int itemType,
                          unsigned long long itemKey);
    int PoolVerifyActionsSet(unsigned int action, unsigned int size, char* buffer,
                             bool reconfigure, bool reset);
    int PoolRAVStatusFromQMFS(std::string* poolName);
    int PoolRAVStatusFromQMFS(unsigned long long userKey);
    int PoolRAVRemove(unsigned long long userKey);

    // String family: throws on any failure.
    void PoolVerifyActionsT(const std::string& request);
    void RAVSet(unsigned long long userKey, const std::string& settings);
    void RAVSetUIPruneStatus(unsigned long long userKey, int value);
    void RAVSetUIOptions(unsigned long long userKey, unsigned long long value);
    void RAVSetDebugLevel(unsigned long long userKey, unsigned long long value);
    void PoolVerifyStartT(const std::string& poolName, unsigned long long* userKey,
                          bool crossValidation, unsigned long long uiOptions,
                          unsigned long long debugLevel);
    void PoolRebuildStartT(const std::string& poolName, unsigned long long* userKey,
                           unsigned long long rezidThreshold, unsigned long long uiOptions,
                           unsigned long long debugLevel, unsigned long long fileLossMax,
                           bool uiPruneWait, bool purge, bool pruneUnknownLosses, bool pruneIV);

    // Status queries of the running RAV thread.
    unsigned long long PoolVerifyStatusFromCommonLayer(unsigned long long userKey);
    unsigned long long PoolRebuildStatusFromCommonLayer(unsigned long long userKey);
    unsigned long long PoolVerifyFinalStatusFromCommonLayer(unsigned long long userKey,
                                                            std::string& setter);
    unsigned long long PoolRebuildFinalStatusFromCommonLayer(unsigned long long userKey,
                                                             std::string& setter);
    unsigned long long PoolVerifyStateFromCommonLayer(unsigned long long userKey);
    unsigned long long PoolRebuildStateFromCommonLayer(unsigned long long userKey);

private:
    struct DetailQuery_s;

    // Reads a whole reply in chunks of `chunk` bytes from offset 0 on.
    void ReadReply(std::string& reply, unsigned long chunk);
    void EchoReply(const char* location, const char* reply) const;
    // The overflow check of the fixed-buffer builders.
    void CheckRequestFits(int count, unsigned int size, const char* location) const;
    void BasicInfoT(const std::string& request, const std::string& tagPath, std::string& reply,
                    std::string& value, bool volume);
    unsigned long long DetailValue(unsigned long long userKey, const DetailQuery_s& query,
                                   std::string* setter);

    unsigned int traceFlags;
};

#endif
