// qvsVFS.cpp - placeholder until the client lands.
#include "util/common_cpp/qvsVFS.h"

#include <stdexcept>

QVSVirtualFileServices::QVSVirtualFileServices(unsigned int, const char*, const char*, const char*) {
    throw std::runtime_error("Could not open command file");
}
QVSVirtualFileServices::~QVSVirtualFileServices() = default;
VFSManageCmd::VFSManageCmd(unsigned int flags, const char* server)
    : QVSVirtualFileServices(flags, "/_admin/Manage_QVS/manage.cmd", server, "command") {}
VFSManageCmd::VFSManageCmd() : VFSManageCmd(4, nullptr) {}
int VFSManageCmd::ReverseNameLookup(unsigned long long, unsigned int, unsigned int, const GUID_t*,
                                    std::string&, std::string&, int&) {
    return 0;
}
