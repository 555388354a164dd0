// statusViews.cpp - the table, the problems-only view and the scripted view.
#include "util/logsift/statusViews.h"

#include "util/common_cpp/jsonFields.h"
#include "util/support/utf8.h"

#include <algorithm>
#include <string>

namespace StatusViews {

namespace {

using PoolHealth::Pool;

const char NONE[] = "-";

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
    };
    return views;
}

} // namespace StatusViews
