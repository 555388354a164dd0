// logsiftMain.cpp - program entry: reads the command line and views one file.
#include "util/logsift/logsiftView.h"
#include "util/logsift/rvConfig.h"
#include "util/support/outputWriter.h"
#include "util/support/startup.h"

#include <iostream>
#include <new>

namespace {

// What happens after the command line is read; its result is the exit status.
int view(int argc, char** argv) {
    RVConfig cfg("logsift", "1.00");
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

// The views report a lack of memory themselves; this is for what comes
// before and between them (the command line, the settings, the search).
int run(int argc, char** argv) {
    try {
        return view(argc, argv);
    } catch (const std::bad_alloc&) {
        return QVS::OutOfMemory("logsift", 1);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (!QVS::OpenClosedStandardDescriptors())
        return QVS::StartFailure("logsift", 1);
    try {
        return QVS::RunWithStandardOutput("logsift", 1, run, argc, argv);
    } catch (const std::bad_alloc&) {
        return QVS::OutOfMemory("logsift", 1);
    }
}
