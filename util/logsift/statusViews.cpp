// statusViews.cpp - the table, the problems-only view and the scripted view.
#include "util/logsift/statusViews.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/jsonFields.h"
#include "util/logsift/commandLine.h"
#include "util/support/utf8.h"

#include <algorithm>
#include <string>

namespace StatusViews {

namespace {

using PoolHealth::Pool;

const char NONE[] = "-";

// The option code of a view with a long name alone.
constexpr int METRICS = 300;

std::string timeText(int64_t seconds) {
    if (seconds <= 0)
        return NONE;
    const std::string text = JsonFields::IsoTime(static_cast<uint64_t>(seconds));
    return text.empty() ? NONE : text;
}

std::string count(unsigned long value) { return std::to_string(value); }

// One column: its heading, whether it holds numbers (right-aligned), and
// its cell of a pool.
struct Column {
    const char* heading;
    bool number;
    std::string (*cell)(const Pool& pool, bool script);
};

// The name, escaped where a byte would break the row; an empty name is
// shown as such.
std::string nameCell(const Pool& pool, bool script) {
    return pool.name.empty() ? "\"\"" : QVS::EscapedCell(pool.name, script);
}

bool reportRead(const Pool& pool) { return pool.verify.present && pool.verify.opened; }
bool logRead(const Pool& pool) { return pool.rebuild.present && pool.rebuild.opened; }

const Column COLUMNS[] = {
    {"POOL", false, nameCell},
    {"HEALTH", false, [](const Pool& p, bool) { return std::string(WordOf(p.health).word); }},
    {"REPORT", false,
     [](const Pool& p, bool) {
         return reportRead(p) && p.verify.counts.statusRead ? timeText(p.verify.ReportTime())
                                                            : std::string(NONE);
     }},
    {"FINISHED", false,
     [](const Pool& p, bool) {
         return reportRead(p) && p.verify.counts.statusRead
                    ? std::string(p.verify.counts.finished ? "yes" : "no")
                    : std::string(NONE);
     }},
    {"VERDICT", false, [](const Pool& p, bool) { return std::string(WordOf(p.verify.verdict).word); }},
    {"ERRORS", true,
     [](const Pool& p, bool) { return reportRead(p) ? count(p.verify.counts.errors) : NONE; }},
    {"WARNINGS", true,
     [](const Pool& p, bool) { return reportRead(p) ? count(p.verify.counts.warnings) : NONE; }},
    {"PROBLEMS", true,
     [](const Pool& p, bool) { return reportRead(p) ? count(p.verify.counts.problemRows) : NONE; }},
    {"LOG", false,
     [](const Pool& p, bool) {
         return p.rebuild.present && p.rebuild.sized ? timeText(p.rebuild.modified)
                                                     : std::string(NONE);
     }},
    {"REBUILD", false,
     [](const Pool& p, bool) {
         return p.rebuild.present ? std::string(WordOf(p.rebuild.state).word) : NONE;
     }},
    {"MESSAGES", true,
     [](const Pool& p, bool) { return logRead(p) ? count(p.rebuild.counts.messages) : NONE; }},
    {"TRUNCATED", true,
     [](const Pool& p, bool) { return logRead(p) ? count(p.rebuild.counts.truncated) : NONE; }},
    {"DELETED", true,
     [](const Pool& p, bool) { return logRead(p) ? count(p.rebuild.counts.deleted) : NONE; }},
};
constexpr std::size_t COLUMN_COUNT = sizeof COLUMNS / sizeof COLUMNS[0];

using Cells = std::vector<std::string>;

Cells cellsOf(const Pool& pool, bool script) {
    Cells cells;
    for (const Column& column : COLUMNS)
        cells.push_back(column.cell(pool, script));
    return cells;
}

// Columns two blanks apart, padded by display width: a text left in its
// column, a number right; the last cell without trailing blanks.
void writeTable(std::ostream& out, const std::vector<const Pool*>& pools) {
    std::vector<Cells> rows;
    rows.reserve(pools.size() + 1);
    Cells heading;
    for (const Column& column : COLUMNS)
        heading.push_back(column.heading);
    rows.push_back(std::move(heading));
    for (const Pool* pool : pools)
        rows.push_back(cellsOf(*pool, false));
    std::vector<std::size_t> widths(COLUMN_COUNT, 0);
    for (const Cells& cells : rows)
        for (std::size_t c = 0; c < COLUMN_COUNT; ++c)
            widths[c] = std::max(widths[c], QVS::DisplayWidth(cells[c]));
    std::string line;
    for (const Cells& cells : rows) {
        line.clear();
        for (std::size_t c = 0; c < COLUMN_COUNT; ++c) {
            if (c > 0)
                line += "  ";
            const std::size_t pad = widths[c] - QVS::DisplayWidth(cells[c]);
            if (COLUMNS[c].number)
                line.append(pad, ' ');
            line += cells[c];
            if (!COLUMNS[c].number && c + 1 < COLUMN_COUNT)
                line.append(pad, ' ');
        }
        line += '\n';
        out << line;
    }
}

std::vector<const Pool*> all(const std::vector<Pool>& pools) {
    std::vector<const Pool*> shown;
    for (const Pool& pool : pools)
        shown.push_back(&pool);
    return shown;
}

int table(std::ostream& out, const Context& context, const std::vector<Pool>& pools) {
    writeTable(out, all(pools));
    return TableExitStatus(context, pools);
}

// Only the pools whose health is not healthy; a line that says so when
// every pool is.
int problems(std::ostream& out, const Context& context, const std::vector<Pool>& pools) {
    std::vector<const Pool*> shown;
    for (const Pool& pool : pools)
        if (pool.health != PoolHealth::Health::Healthy)
            shown.push_back(&pool);
    if (shown.empty() && !pools.empty())
        out << "all " << pools.size() << (pools.size() == 1 ? " pool is" : " pools are")
            << " healthy\n";
    else if (!shown.empty())
        writeTable(out, shown);
    return TableExitStatus(context, pools);
}

// No heading; the fields of a line one tab apart, names escaped (their
// backslashes too), for scripts.
int scripted(std::ostream& out, const Context& context, const std::vector<Pool>& pools) {
    std::string line;
    for (const Pool& pool : pools) {
        const Cells cells = cellsOf(pool, true);
        line.clear();
        for (std::size_t c = 0; c < cells.size(); ++c) {
            if (c > 0)
                line += '\t';
            line += cells[c];
        }
        line += '\n';
        out << line;
    }
    return TableExitStatus(context, pools);
}

// ---------------------------------------------------------------- metrics

// A label value as the exposition format writes it: backslash, double quote
// and newline escaped; a pool name first made valid UTF-8 by the lossless
// rule of the JSON keys.
std::string labelValue(const std::string& text) {
    std::string value;
    for (const char c : text) {
        if (c == '\\')
            value += "\\\\";
        else if (c == '"')
            value += "\\\"";
        else if (c == '\n')
            value += "\\n";
        else
            value += c;
    }
    return value;
}

// Each pool's label value, made once for all its series.
class PoolLabels {
public:
    explicit PoolLabels(const std::vector<Pool>& pools) : first(pools.data()) {
        for (const Pool& pool : pools)
            text.push_back(labelValue(QVS::LosslessText(pool.name)));
    }
    const std::string& Of(const Pool& pool) const {
        return text[static_cast<std::size_t>(&pool - first)];
    }

private:
    const Pool* first;
    std::vector<std::string> text;
};

// One family: its # HELP and # TYPE lines, then its series.
class Family {
public:
    Family(std::ostream& out, const char* name, const char* help,
           const PoolLabels* labels = nullptr)
        : out(out), name(name), labels(labels) {
        out << "# HELP " << name << " " << help << "\n# TYPE " << name << " gauge\n";
    }
    // A series of the pool (none when `pool` is null) with one more label.
    void Series(const Pool* pool, long long value, const char* label = nullptr,
                const char* labelText = nullptr) {
        out << name;
        if (pool != nullptr || label != nullptr) {
            out << '{';
            if (pool != nullptr)
                out << "pool=\"" << labels->Of(*pool) << '"';
            if (label != nullptr)
                out << (pool != nullptr ? "," : "") << label << "=\"" << labelValue(labelText)
                    << '"';
            out << '}';
        }
        out << ' ' << value << '\n';
    }

private:
    std::ostream& out;
    const char* name;
    const PoolLabels* labels;
};

// A gauge of each pool that has such a file, read by `value`.
template <typename Value>
void perPool(std::ostream& out, const std::vector<Pool>& pools, const PoolLabels& labels,
             const char* name, const char* help, bool (*has)(const Pool&), Value value) {
    Family family(out, name, help, &labels);
    for (const Pool& pool : pools)
        if (has(pool))
            family.Series(&pool, value(pool));
}

// A state set: one series per word, 1 for the pool's own, 0 for the others.
template <typename Of>
void stateSet(std::ostream& out, const std::vector<Pool>& pools, const PoolLabels& labels,
              const char* name, const char* help, const char* label,
              const std::vector<PoolHealth::Word>& words, Of of) {
    Family family(out, name, help, &labels);
    for (const Pool& pool : pools)
        for (std::size_t i = 0; i < words.size(); ++i)
            family.Series(&pool, of(pool) == i ? 1 : 0, label, words[i].word);
}

bool hasReport(const Pool& pool) { return pool.verify.present; }
bool readReport(const Pool& pool) { return pool.verify.present && pool.verify.opened; }
bool timedReport(const Pool& pool) { return readReport(pool) && pool.verify.counts.statusRead; }
bool hasLog(const Pool& pool) { return pool.rebuild.present; }
bool readLog(const Pool& pool) { return pool.rebuild.present && pool.rebuild.opened; }

// The pools' health in the Prometheus text exposition format (0.0.4), for
// the node exporter's textfile collector: every value as logsift-json
// --summary gives it, nothing per object or file name. Exit status 0 when
// written, 2 when the directory could not be read (said in the metrics
// too).
int metrics(std::ostream& out, const Context& context, const std::vector<Pool>& pools) {
    const PoolLabels labels(pools);
    Family(out, "logsift_build_info", "The version of logsift-status that wrote these metrics.")
        .Series(nullptr, 1, "version", CommandLine::VERSION);
    Family(out, "logsift_directory_read_success", "Whether the RAV directory could be read.")
        .Series(nullptr, context.scanError == 0 ? 1 : 0);
    Family(out, "logsift_pools", "Pools with a verify report or a rebuild log in the RAV directory.")
        .Series(nullptr, static_cast<long long>(pools.size()));
    Family(out, "logsift_max_age_seconds",
           "Age past which a pool's newest verify report makes it stale.")
        .Series(nullptr, context.rules.maxAge);
    stateSet(out, pools, labels, "logsift_pool_health",
             "The pool's health from its newest report and log, as a state set.", "health",
             PoolHealth::Healths(), [](const Pool& p) { return static_cast<std::size_t>(p.health); });
    stateSet(out, pools, labels, "logsift_verify_verdict",
             "The verdict of the pool's newest verify report, as a state set.", "verdict",
             PoolHealth::Verdicts(),
             [](const Pool& p) { return static_cast<std::size_t>(p.verify.verdict); });
    perPool(out, pools, labels, "logsift_verify_read_success",
            "Whether the pool's newest verify report was read whole and its CRC matches.",
            hasReport, [](const Pool& p) { return p.verify.outcome.Good() ? 1LL : 0LL; });
    perPool(out, pools, labels, "logsift_verify_finished",
            "Whether the final status of the pool's newest verify report is valid.", timedReport,
            [](const Pool& p) { return p.verify.counts.finished ? 1LL : 0LL; });
    perPool(out, pools, labels, "logsift_verify_report_timestamp_seconds",
            "When the verify of the pool's newest report ended (began, when it has no end); 0 "
            "when it holds no time.",
            timedReport, [](const Pool& p) { return static_cast<long long>(p.verify.ReportTime()); });
    perPool(out, pools, labels, "logsift_verify_errors",
            "Error conditions of the pool and its volumes in the newest verify report.",
            readReport, [](const Pool& p) { return static_cast<long long>(p.verify.counts.errors); });
    perPool(out, pools, labels, "logsift_verify_warnings",
            "Warning conditions of the pool and its volumes in the newest verify report.",
            readReport,
            [](const Pool& p) { return static_cast<long long>(p.verify.counts.warnings); });
    perPool(out, pools, labels, "logsift_verify_problem_rows",
            "Rows of the problem lists of the pool's newest verify report.", readReport,
            [](const Pool& p) { return static_cast<long long>(p.verify.counts.problemRows); });
    perPool(out, pools, labels, "logsift_rebuild_read_success",
            "Whether the pool's newest rebuild log was read whole (an unfinished log is).",
            hasLog, [](const Pool& p) { return p.rebuild.outcome.Good() ? 1LL : 0LL; });
    perPool(out, pools, labels, "logsift_rebuild_log_finished",
            "Whether the pool's newest rebuild log is closed (0: a rebuild still writing it).",
            readLog, [](const Pool& p) { return p.rebuild.finished ? 1LL : 0LL; });
    perPool(out, pools, labels, "logsift_rebuild_log_timestamp_seconds",
            "The modification time of the pool's newest rebuild log.", hasLog,
            [](const Pool& p) { return static_cast<long long>(p.rebuild.modified); });
    perPool(out, pools, labels, "logsift_rebuild_messages", "Messages of the pool's newest rebuild log.",
            readLog, [](const Pool& p) { return static_cast<long long>(p.rebuild.counts.messages); });
    perPool(out, pools, labels, "logsift_rebuild_truncated_objects",
            "Objects whose flag says the rebuild truncated them, in the newest rebuild log.",
            readLog,
            [](const Pool& p) { return static_cast<long long>(p.rebuild.counts.truncated); });
    perPool(out, pools, labels, "logsift_rebuild_deleted_objects",
            "Objects whose flag says the rebuild deleted them, in the newest rebuild log.",
            readLog, [](const Pool& p) { return static_cast<long long>(p.rebuild.counts.deleted); });
    Family objects(out, "logsift_rebuild_objects",
                   "Objects listed by the newest rebuild log, by the action its text names.",
                   &labels);
    for (const Pool& pool : pools)
        if (readLog(pool))
            for (unsigned action = 0; action < TOD_ACTIONS; ++action)
                objects.Series(&pool, static_cast<long long>(pool.rebuild.counts.actions[action]),
                               "action", TODItem::ACTION_NAMES[action]);
    return context.scanError != 0 ? PoolHealth::EXIT_NOT_READ : 0;
}

} // namespace

int TableExitStatus(const Context& context, const std::vector<PoolHealth::Pool>& pools) {
    int status = PoolHealth::ExitStatus(pools);
    if (context.scanError != 0 || pools.empty())
        status |= PoolHealth::EXIT_NOT_READ;
    return status;
}

const std::vector<View>& Views() {
    static const std::vector<View> views = {
        {nullptr, 0, nullptr, table},
        {"problems", 'x', "only the pools whose health is not healthy", problems},
        {"scripted", 'H',
         "for scripts: no heading, the fields of a line one tab\napart, names escaped",
         scripted},
        {"metrics", METRICS,
         "the pools' health as metrics in the Prometheus text\nformat, for the node exporter's "
         "textfile collector",
         metrics},
    };
    return views;
}

} // namespace StatusViews
