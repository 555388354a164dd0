// logsiftStatusMain.cpp - entry of logsift-status: one line per pool, from
// its newest verify report and newest rebuild log.
#include "util/logsift/logsiftStatus.h"
#include "util/logsift/rvConfig.h"
#include "util/support/startup.h"

#include <cstring>
#include <getopt.h>
#include <iostream>
#include <string>
#include <vector>

namespace {

using LogsiftStatus::PROGRAM;

const char* const VERSION = "1.00";

const char* const USAGE =
    "Usage: logsift-status [OPTION]... [POOL]...\n"
    "Shows one line per pool from its newest verify report and newest rebuild log:\n"
    "the report's time, whether the verify finished, its verdict, its numbers of\n"
    "errors, warnings and problem rows; the log's time, its messages and how many\n"
    "objects the rebuild truncated and deleted. Every pool of the RAV directory\n"
    "when none is named.\n"
    "\n"
    "  -P, --path=PATH      directory of the RAV files\n"
    "                       (default /var/opt/kestrel/log/qvs/rav/)\n"
    "      --list[=TYPE]    only the pools' names, one per line, from the\n"
    "                       directory alone (no file is read): every pool, or\n"
    "                       those that TYPE vbfn or rtfn finds a file for\n"
    "  -h, --help           display this help and exit\n"
    "  -v, --version        display version information and exit\n"
    "\n"
    "Exit status: 0 every file was read whole; 1 a command-line error; 2 a file\n"
    "could not be read whole, a named pool has no file, or the directory could\n"
    "not be read or holds no file of a pool; 4 is added when a pool's newest\n"
    "verify report found errors.\n";

const struct option LONG_OPTIONS[] = {
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'v'},
    {"path", required_argument, nullptr, 'P'},
    {"list", optional_argument, nullptr, 'l'},
    {nullptr, 0, nullptr, 0},
};

// The pools' names, one per line: what the completion offers.
int listPools(const std::string& directory, const std::string& type) {
    std::vector<LogsiftDriver::PoolFiles> pools;
    const int scan = LogsiftDriver::ScanPools(directory, pools);
    for (const LogsiftDriver::PoolFiles& pool : pools) {
        if ((type == "vbfn" && pool.report.empty()) || (type == "rtfn" && pool.log.empty()))
            continue;
        std::cout << pool.name << '\n';
    }
    if (scan == 0)
        return 0;
    std::cout.flush();
    std::cerr << PROGRAM << ": cannot read directory " << directory << ": "
              << std::strerror(scan) << "\n";
    return LogsiftStatus::EXIT_NOT_READ;
}

int usageError(const char* message = nullptr) {
    if (message != nullptr)
        std::cerr << PROGRAM << ": " << message << "\n";
    std::cerr << "Try '" << PROGRAM << " --help' for more information." << std::endl;
    return LogsiftStatus::EXIT_COMMAND_LINE;
}

// What could not be read, after the table, one line each.
void reportFailures(const std::string& directory,
                    const std::vector<LogsiftStatus::PoolStatus>& pools) {
    for (const LogsiftStatus::PoolStatus& pool : pools) {
        if (!pool.found)
            std::cerr << PROGRAM << ": no verify report or rebuild log of pool " << pool.files.name
                      << " in " << directory << "\n";
        if (!pool.files.report.empty() && pool.report.status != 0)
            std::cerr << PROGRAM << ": " << pool.files.report << ": " << pool.report.failure
                      << " (status " << pool.report.status << ")\n";
        if (!pool.files.log.empty() && pool.log.status != 0)
            std::cerr << PROGRAM << ": " << pool.files.log << ": " << pool.log.failure
                      << " (status " << pool.log.status << ")\n";
    }
}

int status(int argc, char** argv) {
    std::string directory = DEFAULT_RAV_DIRECTORY;
    bool list = false;
    std::string listed; // the file type whose pools are listed; empty: all
    opterr = 1;
    int c;
    while ((c = getopt_long(argc, argv, "hvP:", LONG_OPTIONS, nullptr)) != -1) {
        switch (c) {
        case 'h':
            std::cout << USAGE;
            return 0;
        case 'v':
            std::cout << PROGRAM << " (QVS) " << VERSION << "\n";
            return 0;
        case 'P':
            // An empty name would be read as the root directory.
            if (*optarg == '\0')
                return usageError("the directory name of -P is empty");
            directory = RavDirectory(optarg);
            break;
        case 'l':
            list = true;
            listed = optarg != nullptr ? optarg : "";
            if (!listed.empty() && listed != "vbfn" && listed != "rtfn") {
                std::cerr << PROGRAM << ": --list takes vbfn or rtfn, not '" << listed << "'\n";
                return usageError();
            }
            break;
        default:
            return usageError();
        }
    }
    if (list) {
        if (optind < argc) {
            std::cerr << PROGRAM << ": --list takes no pool name\n";
            return usageError();
        }
        return listPools(directory, listed);
    }
    const std::vector<std::string> named(argv + optind, argv + argc);
    std::vector<LogsiftStatus::PoolStatus> pools;
    const int scan = LogsiftStatus::Collect(directory, named, pools);
    LogsiftStatus::WriteTable(std::cout, pools);
    std::cout.flush();
    int exit = LogsiftStatus::ExitStatus(pools);
    if (scan != 0) {
        std::cerr << PROGRAM << ": cannot read directory " << directory << ": "
                  << std::strerror(scan) << "\n";
        exit |= LogsiftStatus::EXIT_NOT_READ;
    } else if (pools.empty()) {
        // Nothing to read is nothing read: a wrong directory must not pass.
        std::cerr << PROGRAM << ": no verify report or rebuild log in " << directory << "\n";
        exit |= LogsiftStatus::EXIT_NOT_READ;
    }
    reportFailures(directory, pools);
    return exit;
}

} // namespace

int main(int argc, char** argv) {
    return QVS::RunProgram(PROGRAM, LogsiftStatus::EXIT_NOT_READ, status, argc, argv);
}
