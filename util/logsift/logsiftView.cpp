// logsiftView.cpp - view one verify report or rebuild log on standard output:
// the driver's walks, shown as text.
#include "util/logsift/logsiftView.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftDriver.h"
#include "util/support/location.h"
#include "util/support/qvsStatus.h"

#include <exception>
#include <iostream>
#include <memory>

namespace {

const char* const OPEN_FAILURE = "Unable to open verify binary file:  ";
const char* const VIEW_FAILURE = "Unable to view file:  ";

// Every failure is reported on stdout, where the report itself goes.
void viewFailure(const LogsiftDriver::Outcome& outcome) {
    std::cout << VIEW_FAILURE << outcome.thrown << std::endl;
}

// The view's status of an outcome: a reader that threw is 20008, whatever
// it threw.
unsigned viewStatus(const LogsiftDriver::Outcome& outcome) {
    return outcome.threw ? QVS::zERR_BAD_PARAMETER_VALUE : outcome.status;
}

class TextVerifyReading : public LogsiftDriver::VerifyReading {
public:
    TextVerifyReading(const RVConfig& cfg, const char* failurePrefix, const char* failureText)
        : cfg(cfg), failurePrefix(failurePrefix), failureText(failureText) {}

    void OpenFailed(const LogsiftDriver::Outcome& open) override {
        std::cout << OPEN_FAILURE << open.thrown << std::endl;
    }
    void Start(VerifyFile& reader) override { VBF_DisplayOptions(reader, cfg); }
    void Finished(VerifyFile&, const LogsiftDriver::Outcome& read,
                  const LogsiftDriver::Crc&) override {
        if (read.threw)
            viewFailure(read);
        else if (read.status != 0)
            std::cout << failurePrefix << failureText << std::dec << read.status << std::endl;
    }

private:
    const RVConfig& cfg;
    const char* failurePrefix;
    const char* failureText;
};

class TextRebuildReading : public LogsiftDriver::RebuildReading {
public:
    // A log that cannot be loaded is reported as a failed view.
    void OpenFailed(const LogsiftDriver::Outcome& open) override { viewFailure(open); }
    void Start(RebuildFile&) override {}
    void MessagesRead(const LogsiftDriver::Outcome& walk) override {
        if (walk.status != 0)
            std::cout << "Unable to process all messages: " << std::dec << walk.status
                      << std::endl;
    }
    void Finished(RebuildFile&, const LogsiftDriver::Outcome& walk) override {
        if (walk.threw)
            viewFailure(walk);
        else if (walk.status != 0)
            std::cout << "Unable to process complete file: " << std::dec << walk.status
                      << std::endl;
    }
    void Done(RebuildFile&) override {}
};

unsigned viewVerifyReport(const std::string& fileName, const RVConfig& cfg,
                          const char* failurePrefix) {
    TextVerifyReading reading(cfg, failurePrefix, " Unable to process Verify file.  Status - ");
    return viewStatus(LogsiftDriver::ReadVerifyReport(
        [&] { return std::make_unique<VerifyFile>(fileName, std::cout, cfg.verbose); }, reading));
}

// The newest file of the pool, announced, or the search's failure.
bool locateNewest(const std::string& poolName, const RVConfig& cfg, bool rebuildLog,
                  std::string& path) {
    const LogsiftDriver::Source source = LogsiftDriver::Locate(
        *LogsiftDriver::FindFileType(rebuildLog ? "rtfn" : "vbfn"), poolName, cfg.directory);
    const char* const what = rebuildLog ? "rebuild log" : "verify report";
    if (source.path.empty()) {
        std::cout << "Unable to find " << what << " in '" << cfg.directory
                  << "': " << QVS::STATUS_NO_MATCHING_FILE << std::endl;
        return false;
    }
    std::cout << "The " << what << " file " << source.path << " will be used.\n";
    path = source.path;
    return true;
}

} // namespace

void VBF_DisplayOptions(VerifyFile& vf, const RVConfig& cfg) {
    vf.displayActions = cfg.listActions;
    vf.displayHistograms = cfg.listHistograms;
    vf.displayObjectDetails = cfg.listObjectDetails;
}

unsigned VBF_View(const std::string& fileName, const RVConfig& cfg) {
    return viewVerifyReport(fileName, cfg, LS_LOC("util/logsift/logsiftMain", 271));
}

unsigned VBF_View(const std::string& poolName, const std::string& serverName, const RVConfig& cfg) {
    // No dash after "Status" here, unlike the file-name view.
    TextVerifyReading reading(cfg, LS_LOC("util/logsift/logsiftMain", 300),
                              " Unable to process Verify file.  Status ");
    return viewStatus(LogsiftDriver::ReadVerifyReport(
        [&] {
            return std::make_unique<VerifyFile>(poolName, &serverName, 0, std::cout, cfg.verbose);
        },
        reading));
}

unsigned RXF_View(const std::string& fileName, const RVConfig& cfg) {
    TextRebuildReading reading;
    LogsiftDriver::RebuildOptions options;
    options.lookup = true;
    options.server = cfg.serverName;
    return viewStatus(LogsiftDriver::ReadRebuildLog(
        [&] { return std::make_unique<RebuildFile>(fileName, std::cout, cfg.verbose); }, options,
        reading));
}

unsigned RXF_ViewNewest(const std::string& poolName, const RVConfig& cfg) {
    std::string path;
    if (!locateNewest(poolName, cfg, true, path))
        return QVS::STATUS_NO_MATCHING_FILE;
    return RXF_View(path, cfg);
}

unsigned VBF_ViewNewest(const std::string& poolName, const RVConfig& cfg) {
    std::string path;
    if (!locateNewest(poolName, cfg, false, path))
        return QVS::STATUS_NO_MATCHING_FILE;
    return viewVerifyReport(path, cfg, LS_LOC("util/logsift/logsiftMain", 230));
}

void LSFT_LetUserView() {}
