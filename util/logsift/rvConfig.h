// rvConfig.h - the settings of one run, read from the command line.
#ifndef UTIL_LOGSIFT_RVCONFIG_H
#define UTIL_LOGSIFT_RVCONFIG_H

#include <ostream>
#include <string>

// The directory the storage system writes its RAV output files into.
extern const char* const DEFAULT_RAV_DIRECTORY;

// A -P value as the newest-file search takes it: ending in '/'.
std::string RavDirectory(const std::string& path);

class RVConfig {
public:
    RVConfig(const std::string& programName, const std::string& version);
    virtual ~RVConfig();

    // 0: go on and view; 1: finished (help, version, bad LEVEL); 2: usage error.
    int ProcessCommandLine(std::ostream& out, int argc, char** argv);
    void Usage(std::ostream& out);
    int parse_FILENAME(int argc, char** argv, int index);
    int parse_rtf(int argc, char** argv, int index);
    int parse_vbf(int argc, char** argv, int index);
    int parse_vbfn(int argc, char** argv, int index);

    unsigned verbose;
    std::string fileName;
    std::string poolName;
    std::string serverName;
    bool listActions;
    bool listObjectDetails;
    bool listHistograms;
    bool verify;
    bool rebuild;
    bool newest;
    std::string directory;
    std::string programName;
    std::string version;

private:
    void TryHelp();
    // Prints "program: message" and the try-help line; returns 2.
    int UsageError(const std::string& message);
};

std::ostream& operator<<(std::ostream& os, const RVConfig& cfg);

#endif
