// logsiftView.cpp - view one verify report or rebuild log on standard output.
#include "util/logsift/logsiftView.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/support/location.h"
#include "util/support/qvsStatus.h"

#include <exception>
#include <iostream>
#include <memory>

namespace {

// Reader failures are reported on stdout, where the report itself goes.
unsigned ViewVerifyFile(std::unique_ptr<VerifyFile> vf, const RVConfig& cfg,
                        const char* failurePrefix, const char* failureText) {
    VBF_DisplayOptions(*vf, cfg);
    unsigned status = vf->ReadAndValidateSectionAll();
    if (status != 0)
        std::cout << failurePrefix << failureText << std::dec << status << std::endl;
    return status;
}

const char* const OPEN_FAILURE = "Unable to open verify binary file:  ";
const char* const VIEW_FAILURE = "Unable to view file:  ";

unsigned ViewVerifyReport(const std::string& fileName, const RVConfig& cfg,
                          const char* failurePrefix) {
    std::unique_ptr<VerifyFile> vf;
    try {
        vf.reset(new VerifyFile(fileName, std::cout, cfg.verbose));
    } catch (const std::exception& e) {
        std::cout << OPEN_FAILURE << e.what() << std::endl;
        return QVS::zERR_BAD_PARAMETER_VALUE;
    }
    try {
        return ViewVerifyFile(std::move(vf), cfg, failurePrefix,
                              " Unable to process Verify file.  Status - ");
    } catch (const std::exception& e) {
        std::cout << VIEW_FAILURE << e.what() << std::endl;
        return QVS::zERR_BAD_PARAMETER_VALUE;
    }
}

} // namespace

void VBF_DisplayOptions(VerifyFile& vf, const RVConfig& cfg) {
    vf.displayActions = cfg.listActions;
    vf.displayHistograms = cfg.listHistograms;
    vf.displayObjectDetails = cfg.listObjectDetails;
}

unsigned VBF_View(const std::string& fileName, const RVConfig& cfg) {
    return ViewVerifyReport(fileName, cfg, LS_LOC("util/logsift/logsiftMain", 271));
}

unsigned VBF_View(const std::string& poolName, const std::string& serverName, const RVConfig& cfg) {
    std::unique_ptr<VerifyFile> vf;
    try {
        vf.reset(new VerifyFile(poolName, &serverName, 0, std::cout, cfg.verbose));
    } catch (const std::exception& e) {
        std::cout << OPEN_FAILURE << e.what() << std::endl;
        return QVS::zERR_BAD_PARAMETER_VALUE;
    }
    try {
        // No dash after "Status" here, unlike the file-name view.
        return ViewVerifyFile(std::move(vf), cfg, LS_LOC("util/logsift/logsiftMain", 300),
                              " Unable to process Verify file.  Status ");
    } catch (const std::exception& e) {
        std::cout << VIEW_FAILURE << e.what() << std::endl;
        return QVS::zERR_BAD_PARAMETER_VALUE;
    }
}

unsigned RXF_View(const std::string& fileName, const RVConfig& cfg) {
    unsigned status = 0;
    try {
        RebuildFile rf(fileName, std::cout, cfg.verbose);
        unsigned messages = rf.DisplayMessageItems();
        if (messages != 0)
            std::cout << "Unable to process all messages: " << std::dec << messages << std::endl;
        status = static_cast<unsigned>(rf.ProcessTODItems(cfg.serverName.c_str()));
        if (status != 0)
            std::cout << "Unable to process complete file: " << std::dec << status << std::endl;
    } catch (const std::exception& e) {
        std::cout << VIEW_FAILURE << e.what() << std::endl;
        return QVS::zERR_BAD_PARAMETER_VALUE;
    }
    return status;
}

unsigned RXF_ViewNewest(const std::string& poolName, const RVConfig& cfg) {
    std::string path;
    if (!FindTheNewestFile(cfg.directory, poolName, path, true)) {
        std::cout << "Unable to find rebuild log in '" << cfg.directory << "': "
                  << QVS::STATUS_NO_MATCHING_FILE << std::endl;
        return QVS::STATUS_NO_MATCHING_FILE;
    }
    std::cout << "The rebuild log file " << path << " will be used.\n";
    return RXF_View(path, cfg);
}

unsigned VBF_ViewNewest(const std::string& poolName, const RVConfig& cfg) {
    std::string path;
    if (!FindTheNewestFile(cfg.directory, poolName, path, false)) {
        std::cout << "Unable to find verify report in '" << cfg.directory << "': "
                  << QVS::STATUS_NO_MATCHING_FILE << std::endl;
        return QVS::STATUS_NO_MATCHING_FILE;
    }
    std::cout << "The verify report file " << path << " will be used.\n";
    return ViewVerifyReport(path, cfg, LS_LOC("util/logsift/logsiftMain", 230));
}

void LSFT_LetUserView() {}
