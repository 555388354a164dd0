// verifyFile.h - reader of verify reports (placeholder until the reader lands).
#ifndef UTIL_COMMON_CPP_VERIFYFILE_H
#define UTIL_COMMON_CPP_VERIFYFILE_H

#include <ostream>
#include <string>

class VerifyFile {
public:
    bool displayActions;
    bool displayHistograms;
    bool displayObjectDetails;

    VerifyFile(const std::string& fileName, std::ostream& out, unsigned debugMask);
    VerifyFile(const std::string& poolName, const std::string* serverName, long time,
               std::ostream& out, unsigned debugMask);
    VerifyFile(const std::string& poolName, const std::string* serverName, long time,
               std::ostream& out, bool is64, unsigned debugMask);
    ~VerifyFile();

    unsigned ReadAndValidateSectionAll();
};

#endif
