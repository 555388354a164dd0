// logsiftView.cpp - view one verify report or rebuild log on standard output:
// the driver's walks, shown as text.
#include "util/logsift/logsiftView.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftDriver.h"
#include "util/support/location.h"
#include "util/support/qvsStatus.h"

#include <exception>
#include <functional>
#include <iostream>
#include <memory>

namespace {

const char* const OPEN_FAILURE = "Unable to open verify binary file:  ";
const char* const VIEW_FAILURE = "Unable to view file:  ";

// Every failure is reported on stdout, where the report itself goes.
unsigned viewFailure(const std::exception& e) {
    std::cout << VIEW_FAILURE << e.what() << std::endl;
    return QVS::zERR_BAD_PARAMETER_VALUE;
}

class TextVerifyReading : public LogsiftDriver::VerifyReading {
public:
    TextVerifyReading(const RVConfig& cfg, std::function<std::unique_ptr<VerifyFile>()> open,
                      const char* failurePrefix, const char* failureText)
        : cfg(cfg), open(std::move(open)), failurePrefix(failurePrefix),
          failureText(failureText) {}

    std::unique_ptr<VerifyFile> Open() override { return open(); }
    unsigned OpenFailed(const std::exception& e) override {
        std::cout << OPEN_FAILURE << e.what() << std::endl;
        return QVS::zERR_BAD_PARAMETER_VALUE;
    }
    void Start(VerifyFile& reader) override { VBF_DisplayOptions(reader, cfg); }
    unsigned Finished(VerifyFile&, unsigned status) override {
        if (status != 0)
            std::cout << failurePrefix << failureText << std::dec << status << std::endl;
        return status;
    }
    unsigned Threw(VerifyFile&, const std::exception& e) override { return viewFailure(e); }

private:
    const RVConfig& cfg;
    std::function<std::unique_ptr<VerifyFile>()> open;
    const char* failurePrefix;
    const char* failureText;
};

class TextRebuildReading : public LogsiftDriver::RebuildReading {
public:
    TextRebuildReading(const std::string& fileName, const RVConfig& cfg)
        : fileName(fileName), cfg(cfg) {}

    std::unique_ptr<RebuildFile> Open() override {
        return std::make_unique<RebuildFile>(fileName, std::cout, cfg.verbose);
    }
    // A log that cannot be loaded is reported as a failed view.
    unsigned OpenFailed(const std::exception& e) override { return viewFailure(e); }
    void Start(RebuildFile&) override {}
    void MessagesRead(unsigned status) override {
        if (status != 0)
            std::cout << "Unable to process all messages: " << std::dec << status << std::endl;
    }
    bool Lookup() const override { return true; }
    const std::string& Server() const override { return cfg.serverName; }
    unsigned Finished(RebuildFile&, unsigned status) override {
        if (status != 0)
            std::cout << "Unable to process complete file: " << std::dec << status << std::endl;
        return status;
    }
    unsigned Threw(RebuildFile&, const std::exception& e) override { return viewFailure(e); }
    void Done(RebuildFile&) override {}

private:
    const std::string& fileName;
    const RVConfig& cfg;
};

unsigned viewVerifyReport(const std::string& fileName, const RVConfig& cfg,
                          const char* failurePrefix) {
    TextVerifyReading reading(
        cfg, [&] { return std::make_unique<VerifyFile>(fileName, std::cout, cfg.verbose); },
        failurePrefix, " Unable to process Verify file.  Status - ");
    return LogsiftDriver::ReadVerifyReport(reading);
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
    TextVerifyReading reading(
        cfg,
        [&] {
            return std::make_unique<VerifyFile>(poolName, &serverName, 0, std::cout, cfg.verbose);
        },
        LS_LOC("util/logsift/logsiftMain", 300), " Unable to process Verify file.  Status ");
    return LogsiftDriver::ReadVerifyReport(reading);
}

unsigned RXF_View(const std::string& fileName, const RVConfig& cfg) {
    TextRebuildReading reading(fileName, cfg);
    return LogsiftDriver::ReadRebuildLog(reading);
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
