// poolHealth.h - a pool's health as one typed value: what reading its
// newest verify report and newest rebuild log gave (counts as numbers,
// times as times, each file's outcome with its errno), the report's
// verdict, the log's state and the pool's health, each a word of one table
// (its word, a short text, exactly what makes it). Every view shows this
// value: logsift-status's table, problems-only and scripted views, its
// metrics, and logsift-json's summaries.
#ifndef UTIL_LOGSIFT_POOLHEALTH_H
#define UTIL_LOGSIFT_POOLHEALTH_H

#include "util/common_cpp/summaryPrinters.h"
#include "util/logsift/logsiftDriver.h"

#include <cstdint>
#include <string>
#include <vector>

namespace PoolHealth {

// One row of a table of words: the word views and metrics show (one token),
// a text, and what makes it.
struct Word {
    const char* word;
    const char* text;
    const char* description;
};

// The verdict of a pool's newest verify report.
enum class Verdict : unsigned {
    Clean, Warnings, Errors, Incomplete, NoData, Damaged, Unreadable, NoReport, NoFiles,
};
// The state of a pool's newest rebuild log.
enum class LogState : unsigned { Finished, Unfinished, Damaged, Unreadable, NoLog };
// A pool's health from both files, the worse of two later in this order.
enum class Health : unsigned {
    Healthy, Rebuilding, Warnings, Unverified, Stale, Incomplete, Truncated, Unreadable,
    Damaged, Errors, DataLost, NoFiles,
};

// The tables, one row per value in the enum's order.
const std::vector<Word>& Verdicts();
const std::vector<Word>& LogStates();
const std::vector<Word>& Healths();
const Word& WordOf(Verdict verdict);
const Word& WordOf(LogState state);
const Word& WordOf(Health health);

// What reading one file gave.
struct FileFacts {
    bool present = false;  // the pool has such a file
    std::string path;
    bool opened = false;   // a reader could be made of it
    LogsiftDriver::Outcome outcome; // of the opening, or of the reading; Good(): read whole
    bool sized = false;    // a regular file: its size is known
    uint64_t size = 0;     // when it was opened
    int64_t modified = 0;  // its modification time
};

struct VerifyFacts : FileFacts {
    VerifySummary counts;
    LogsiftDriver::Crc crc;
    Verdict verdict = Verdict::NoReport;
    // When the verify ended, or began when it has no end; 0 when unknown.
    int64_t ReportTime() const;
};

struct RebuildFacts : FileFacts {
    RebuildSummary counts;
    bool finished = false; // the log's closing tags were read
    LogState state = LogState::NoLog;
};

struct Pool {
    std::string name;   // as its files spell it
    bool found = true;  // false: a pool named on the command line without a file
    LogsiftDriver::PoolFiles files;
    VerifyFacts verify;
    RebuildFacts rebuild;
    Health health = Health::Healthy;
};

constexpr int64_t SECONDS_PER_DAY = 86400;
constexpr int64_t DEFAULT_MAX_AGE_DAYS = 8;

// What the health weighs besides the files.
struct Rules {
    int64_t now = 0;                                          // seconds since 1970
    int64_t maxAge = DEFAULT_MAX_AGE_DAYS * SECONDS_PER_DAY;  // older reports are stale
};

// Each file read for its summary (no names asked), by the companions' rules
// of opening (LogsiftDriver::OpenSource).
VerifyFacts ReadVerify(const LogsiftDriver::Source& source);
RebuildFacts ReadRebuild(const LogsiftDriver::Source& source);

// The verdict of what reading a report gave, and the state of a log.
Verdict VerdictOf(const VerifyFacts& verify);
LogState StateOf(const RebuildFacts& rebuild);

// Whether the report is older than the rules allow (a report without a
// time, or dated 1970, is).
bool Stale(const VerifyFacts& verify, const Rules& rules);
Health HealthOf(const Pool& pool, const Rules& rules);

// The pools of `directory`: every one when `named` is empty, else those
// named (a pool named twice, in either case, once), each read and weighed.
// 0, or the errno that stopped reading the directory.
int Collect(const std::string& directory, const std::vector<std::string>& named,
            const Rules& rules, std::vector<Pool>& pools);

// The companions' exit statuses: 0; 1 a command-line error; 2 a file could
// not be read whole (an unfinished log is read whole), a named pool has no
// file, or the directory could not be read or holds no pool's file; 4
// added when a pool's newest verify report found errors.
constexpr int EXIT_NOT_READ = 2;
constexpr int EXIT_ERRORS_FOUND = 4;
int ExitStatus(const std::vector<Pool>& pools);

} // namespace PoolHealth

#endif
