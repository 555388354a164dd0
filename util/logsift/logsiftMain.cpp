// logsiftMain.cpp - program entry: reads the command line and views one file.
#include "util/common_cpp/verifyFileOutput.h"
#include "util/logsift/commandLine.h"
#include "util/logsift/logsiftView.h"
#include "util/logsift/rvConfig.h"
#include "util/support/startup.h"

#include <iostream>

namespace {

// What happens after the command line is read; its result is the exit status.
int view(int argc, char** argv) {
    BuildPlaceholders();
    RVConfig cfg("logsift", CommandLine::VERSION);
    int result = cfg.ProcessCommandLine(std::cout, argc, argv);
    if (result != 0)
        return result - 1;

    std::cout << cfg << std::endl << std::endl;
    // The views' statuses are reported by the views; the exit status stays 0.
    if (cfg.verify) {
        if (cfg.newest)
            VBF_ViewNewest(cfg.poolName, cfg);
        else
            VBF_View(cfg.fileName, cfg);
    }
    if (cfg.rebuild) {
        if (cfg.newest)
            RXF_ViewNewest(cfg.poolName, cfg);
        else
            RXF_View(cfg.fileName, cfg);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) { return QVS::RunProgram("logsift", 1, view, argc, argv); }
