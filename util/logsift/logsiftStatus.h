// logsiftStatus.h - every pool at a glance: one line per pool from its
// newest verify report and newest rebuild log, each read for its summary.
#ifndef UTIL_LOGSIFT_LOGSIFTSTATUS_H
#define UTIL_LOGSIFT_LOGSIFTSTATUS_H

#include "util/logsift/logsiftDriver.h"
#include "util/logsift/logsiftSummary.h"

#include <ostream>
#include <string>
#include <vector>

namespace LogsiftStatus {

extern const char* const PROGRAM;

// Exit statuses, as logsift-json's: 0; 1 a command-line error; 2 a file
// could not be read whole, a named pool has none, or the directory could not
// be read or holds no pool's file; 4 added when a pool's newest verify report
// found errors.
constexpr int EXIT_COMMAND_LINE = 1;
constexpr int EXIT_NOT_READ = 2;
constexpr int EXIT_ERRORS_FOUND = 4;

// One pool: its files and what reading them gave.
struct PoolStatus {
    LogsiftDriver::PoolFiles files;
    bool found = true; // false: a named pool without a report or a log
    LogsiftSummary::Report report;
    LogsiftSummary::Log log;
};

// The pools of `directory`: every one when `named` is empty, else those
// named, in that order. 0, or the errno that stopped reading the directory.
int Collect(const std::string& directory, const std::vector<std::string>& named,
            std::vector<PoolStatus>& pools);

// The heading and one line per pool, in columns that line up.
void WriteTable(std::ostream& out, const std::vector<PoolStatus>& pools);

// The exit status the pools give.
int ExitStatus(const std::vector<PoolStatus>& pools);

} // namespace LogsiftStatus

#endif
