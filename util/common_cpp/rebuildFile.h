// rebuildFile.h - viewer of rebuild logs (placeholder until the viewer lands).
#ifndef UTIL_COMMON_CPP_REBUILDFILE_H
#define UTIL_COMMON_CPP_REBUILDFILE_H

#include <ostream>
#include <string>

class RebuildFile {
public:
    RebuildFile(const std::string& fileName, std::ostream& out, unsigned int flags);
    ~RebuildFile();
    unsigned DisplayTODItems();
    unsigned long ProcessTODItems(const char* channelArg);
    unsigned DisplayMessageItems();
};

#endif
