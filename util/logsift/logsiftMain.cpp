// logsiftMain.cpp - program entry: reads the command line and views one file.
#include "util/logsift/logsiftView.h"
#include "util/logsift/rvConfig.h"

#include <iostream>

int main(int argc, char** argv) {
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
