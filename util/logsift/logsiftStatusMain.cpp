// logsiftStatusMain.cpp - entry of logsift-status: every pool's health, from
// its newest verify report and newest rebuild log, in the view the command
// line chooses.
#include "util/logsift/commandLine.h"
#include "util/logsift/logsiftDriver.h"
#include "util/logsift/poolHealth.h"
#include "util/logsift/statusViews.h"
#include "util/support/atomicFile.h"
#include "util/support/startup.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <getopt.h>
#include <iostream>
#include <string>
#include <vector>

namespace {

const char* const PROGRAM = "logsift-status";

// Codes of the options that have a long name alone.
enum : int { LIST = 256, MAX_AGE, OUTPUT };

// The largest age limit taken: a hundred years.
constexpr long MAX_AGE_DAYS = 36500;

CommandLine::Program program() {
    CommandLine::Program p{
        PROGRAM,
        "Usage: logsift-status [OPTION]... [POOL]...\n",
        "Shows each pool's health from its newest verify report and newest rebuild log:\n"
        "the report's time, whether the verify finished, its verdict, its numbers of\n"
        "errors, warnings and problem rows; the log's time and state, its messages and\n"
        "how many objects the rebuild truncated and deleted. Every pool of the RAV\n"
        "directory when none is named.\n",
        {},
        "Exit status: 0 every file was read whole; 1 a command-line error; 2 a file\n"
        "could not be read whole, a named pool has no file, the directory could not\n"
        "be read or holds no file of a pool, or FILE could not be written; 4 is\n"
        "added when a pool's newest verify report found errors. With --metrics: 0\n"
        "when the metrics were written, 2 when the directory could not be read or\n"
        "FILE could not be written.\n"};
    for (const StatusViews::View& view : StatusViews::Views())
        if (view.longName != nullptr)
            p.options.push_back({view.longName, view.code, no_argument, nullptr, view.help});
    p.options.push_back({"max-age", MAX_AGE, required_argument, "DAYS",
                         "a verify report older than DAYS days makes its\npool stale "
                         "(default 8)"});
    p.options.push_back({"output", OUTPUT, required_argument, "FILE",
                         "write into FILE instead of standard output: a new\n"
                         "file beside it, renamed over it once whole (the\n"
                         "only file the programs write)"});
    p.options.push_back({"list", LIST, optional_argument, "TYPE",
                         "only the pools' names, one per line, from the\n"
                         "directory alone (no file is read): every pool, or\n"
                         "those that TYPE vbfn or rtfn finds a file for"});
    return p;
}

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
    return PoolHealth::EXIT_NOT_READ;
}

// What could not be read, after the view, one line each.
void reportFailures(const std::string& directory, const std::vector<PoolHealth::Pool>& pools) {
    for (const PoolHealth::Pool& pool : pools) {
        if (!pool.found)
            std::cerr << PROGRAM << ": no verify report or rebuild log of pool " << pool.name
                      << " in " << directory << "\n";
        for (const PoolHealth::FileFacts* file : {static_cast<const PoolHealth::FileFacts*>(&pool.verify),
                                                  static_cast<const PoolHealth::FileFacts*>(&pool.rebuild)})
            if (file->present && !file->outcome.Good())
                std::cerr << PROGRAM << ": " << file->path << ": " << file->outcome.text
                          << " (status " << file->outcome.status << ")\n";
    }
}

// The view written into FILE whole, or FILE left as it was and the reason
// said; the view's exit status, or 2.
int writeFile(const char* file, const StatusViews::View& view, const StatusViews::Context& context,
              const std::vector<PoolHealth::Pool>& pools) {
    QVS::AtomicFile atomic(file);
    std::string failure;
    int exit = 0;
    bool written = atomic.Open(failure);
    if (written) {
        try {
            exit = view.write(atomic.Stream(), context, pools);
            written = atomic.Commit(failure);
        } catch (const QVS::OutputWriteError& error) {
            failure = QVS::AtomicFile::WriteFailure(error);
            written = false;
        }
    }
    if (written)
        return exit;
    std::cerr << PROGRAM << ": " << file << ": " << failure << " (the file is left as it was)\n";
    return exit | PoolHealth::EXIT_NOT_READ;
}

int status(int argc, char** argv) {
    const CommandLine::Program description = program();
    CommandLine::Common common;
    bool list = false;
    std::string listed; // the file type whose pools are listed; empty: all
    const char* output = nullptr; // --output: the file written instead of standard output
    const StatusViews::View* view = &StatusViews::Views().front();
    StatusViews::Context context;
    context.rules.now = static_cast<int64_t>(std::time(nullptr));
    const int parsed = CommandLine::ParseCompanion(
        description, argc, argv, common, [&](int code, const char* value) {
            for (const StatusViews::View& candidate : StatusViews::Views()) {
                if (candidate.longName == nullptr || candidate.code != code)
                    continue;
                if (view != &StatusViews::Views().front() && view != &candidate)
                    return CommandLine::UsageError(
                        PROGRAM, std::string("--") + view->longName + " and --" +
                                     candidate.longName + " are two views; choose one");
                view = &candidate;
                return CommandLine::GO_ON;
            }
            switch (code) {
            case LIST:
                list = true;
                listed = value != nullptr ? value : "";
                if (!listed.empty() && listed != "vbfn" && listed != "rtfn")
                    return CommandLine::UsageError(
                        PROGRAM, "--list takes vbfn or rtfn, not '" + listed + "'");
                return CommandLine::GO_ON;
            case OUTPUT:
                if (*value == '\0')
                    return CommandLine::UsageError(PROGRAM, "the file name of --output is empty");
                output = value;
                return CommandLine::GO_ON;
            case MAX_AGE: {
                char* end = nullptr;
                errno = 0;
                const long days = std::strtol(value, &end, 10);
                if (*value == '\0' || *end != '\0' || errno != 0 || days < 0 ||
                    days > MAX_AGE_DAYS)
                    return CommandLine::UsageError(
                        PROGRAM, std::string("--max-age takes a number of days from 0 to ") +
                                     std::to_string(MAX_AGE_DAYS) + ", not '" + value + "'");
                context.rules.maxAge = days * PoolHealth::SECONDS_PER_DAY;
                return CommandLine::GO_ON;
            }
            default:
                return CommandLine::UsageError(PROGRAM, "");
            }
        });
    if (parsed != CommandLine::GO_ON)
        return parsed;
    if (list) {
        if (optind < argc)
            return CommandLine::UsageError(PROGRAM, "--list takes no pool name");
        return listPools(common.directory, listed);
    }
    const std::vector<std::string> named(argv + optind, argv + argc);
    context.directory = common.directory;
    std::vector<PoolHealth::Pool> pools;
    context.scanError = PoolHealth::Collect(common.directory, named, context.rules, pools);
    int exit;
    if (output != nullptr) {
        exit = writeFile(output, *view, context, pools);
    } else {
        exit = view->write(std::cout, context, pools);
        std::cout.flush();
    }
    if (context.scanError != 0)
        std::cerr << PROGRAM << ": cannot read directory " << common.directory << ": "
                  << std::strerror(context.scanError) << "\n";
    else if (pools.empty())
        // Nothing to read is nothing read: a wrong directory must not pass.
        std::cerr << PROGRAM << ": no verify report or rebuild log in " << common.directory
                  << "\n";
    reportFailures(common.directory, pools);
    return exit;
}

} // namespace

int main(int argc, char** argv) {
    return QVS::RunProgram(PROGRAM, PoolHealth::EXIT_NOT_READ, status, argc, argv);
}
