// qvsVFS.h - management command channel (placeholder until the client lands).
#ifndef UTIL_COMMON_CPP_QVSVFS_H
#define UTIL_COMMON_CPP_QVSVFS_H

#include "util/support/qvsGuid.h"

#include <string>

class QVSVirtualFileServices {
public:
    QVSVirtualFileServices(unsigned int flags, const char* fileName, const char* server,
                           const char* streamName);
    ~QVSVirtualFileServices();
};

class VFSManageCmd : public QVSVirtualFileServices {
public:
    VFSManageCmd(unsigned int flags, const char* server);
    VFSManageCmd();
    int ReverseNameLookup(unsigned long long zid, unsigned int nameType, unsigned int nameSpace,
                          const GUID_t* volumeID, std::string& volumeName, std::string& path,
                          int& status);
};

#endif
