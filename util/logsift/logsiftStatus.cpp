// logsiftStatus.cpp - the pools' summaries as one table.
#include "util/logsift/logsiftStatus.h"

#include "util/common_cpp/jsonFields.h"
#include "util/support/line.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

namespace LogsiftStatus {

const char* const PROGRAM = "logsift-status";

namespace {

std::string timeText(int64_t seconds) {
    if (seconds <= 0)
        return "-";
    const std::string text = JsonFields::IsoTime(static_cast<uint64_t>(seconds));
    return text.empty() ? "-" : text;
}

// The cells of one line; a text column is left in its width, a number right.
enum Column { POOL, REPORT, FINISHED, VERDICT, ERRORS, WARNINGS, PROBLEMS, LOG, MESSAGES,
              TRUNCATED, DELETED, COLUMNS };

const char* const HEADINGS[COLUMNS] = {"POOL",     "REPORT",   "FINISHED", "VERDICT",
                                       "ERRORS",   "WARNINGS", "PROBLEMS", "LOG",
                                       "MESSAGES", "TRUNCATED", "DELETED"};
const bool NUMBER[COLUMNS] = {false, false, false, false, true, true,
                              true,  false, true,  true,  true};

using Cells = std::vector<std::string>;

Cells cellsOf(const PoolStatus& pool) {
    Cells cells(COLUMNS, "-");
    // An empty name is shown as such, never as an empty cell.
    cells[POOL] = pool.files.name.empty() ? "\"\"" : pool.files.name;
    if (!pool.files.report.empty()) {
        const LogsiftSummary::Report& report = pool.report;
        const VerifySummary& s = report.summary;
        if (!report.opened) {
            cells[VERDICT] = "unreadable";
        } else {
            if (s.statusRead) {
                cells[REPORT] = timeText(s.endTime != 0 ? s.endTime : s.startTime);
                cells[FINISHED] = s.finished ? "yes" : "no";
            }
            cells[VERDICT] = VerifyVerdict(s, report.status);
            cells[ERRORS] = std::to_string(s.errors);
            cells[WARNINGS] = std::to_string(s.warnings);
            cells[PROBLEMS] = std::to_string(s.problemRows);
        }
    } else if (pool.found) {
        cells[VERDICT] = "no report";
    } else {
        cells[VERDICT] = "no files";
    }
    if (!pool.files.log.empty()) {
        const LogsiftSummary::Log& log = pool.log;
        cells[LOG] = timeText(log.modified);
        if (log.opened) {
            cells[MESSAGES] = std::to_string(log.summary.messages);
            cells[TRUNCATED] = std::to_string(log.summary.truncated);
            cells[DELETED] = std::to_string(log.summary.deleted);
        } else {
            cells[MESSAGES] = "unreadable";
        }
    }
    return cells;
}

void writeLine(std::ostream& out, const Cells& cells, const std::vector<std::size_t>& widths) {
    QVS::Line line(out);
    for (std::size_t c = 0; c < COLUMNS; ++c) {
        if (c > 0)
            line.Gap(2);
        const int width = static_cast<int>(widths[c]);
        if (NUMBER[c])
            line.Right(cells[c], width);
        else if (c + 1 == COLUMNS)
            line.Text(cells[c]);
        else
            line.Left(cells[c], width);
    }
    line.End();
}

} // namespace

int Collect(const std::string& directory, const std::vector<std::string>& named,
            std::vector<PoolStatus>& pools) {
    std::vector<LogsiftDriver::PoolFiles> found;
    const int status = LogsiftDriver::ScanPools(directory, found);
    pools.clear();
    if (named.empty()) {
        for (LogsiftDriver::PoolFiles& files : found) {
            PoolStatus pool;
            pool.files = std::move(files);
            pools.push_back(std::move(pool));
        }
    } else {
        std::map<std::string, const LogsiftDriver::PoolFiles*> byKey;
        for (const LogsiftDriver::PoolFiles& files : found)
            byKey.emplace(LogsiftDriver::PoolKey(files.name), &files);
        std::set<std::string> shown; // a pool named twice is shown once
        for (const std::string& name : named) {
            if (!shown.insert(LogsiftDriver::PoolKey(name)).second)
                continue;
            PoolStatus pool;
            pool.files.name = name;
            const auto known = byKey.find(LogsiftDriver::PoolKey(name));
            pool.found = known != byKey.end();
            if (pool.found)
                pool.files = *known->second;
            pools.push_back(std::move(pool));
        }
    }
    for (PoolStatus& pool : pools) {
        if (!pool.files.report.empty())
            pool.report = LogsiftSummary::ReadReport(
                LogsiftDriver::Source{pool.files.report, pool.files.reportName, directory, true});
        if (!pool.files.log.empty())
            pool.log = LogsiftSummary::ReadLog(
                LogsiftDriver::Source{pool.files.log, pool.files.logName, directory, true});
    }
    return status;
}

void WriteTable(std::ostream& out, const std::vector<PoolStatus>& pools) {
    std::vector<Cells> rows;
    rows.reserve(pools.size() + 1);
    rows.emplace_back(HEADINGS, HEADINGS + COLUMNS);
    for (const PoolStatus& pool : pools)
        rows.push_back(cellsOf(pool));
    std::vector<std::size_t> widths(COLUMNS, 0);
    for (const Cells& cells : rows)
        for (std::size_t c = 0; c < COLUMNS; ++c)
            widths[c] = std::max(widths[c], cells[c].size());
    for (const Cells& cells : rows)
        writeLine(out, cells, widths);
}

int ExitStatus(const std::vector<PoolStatus>& pools) {
    int status = 0;
    for (const PoolStatus& pool : pools) {
        if (!pool.found || (!pool.files.report.empty() && pool.report.status != 0) ||
            (!pool.files.log.empty() && pool.log.status != 0))
            status |= EXIT_NOT_READ;
        if (!pool.files.report.empty() && VerifyErrorsFound(pool.report.summary))
            status |= EXIT_ERRORS_FOUND;
    }
    return status;
}

} // namespace LogsiftStatus
