// poolHealth.cpp - the words, the reading of each file for its summary, and
// the weighing of a pool's health.
#include "util/logsift/poolHealth.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/support/qvsStatus.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <set>

namespace PoolHealth {

const std::vector<Word>& Verdicts() {
    static const std::vector<Word> words = {
        {"clean", "clean", "the verify finished and found neither error nor warning conditions"},
        {"warnings", "warnings", "the verify found warning conditions and no error condition"},
        {"errors", "errors", "the verify found error conditions in the pool or its volumes"},
        {"incomplete", "incomplete", "the verify could not determine the pool's condition"},
        {"no_data", "no data",
         "the report holds no section: no verify has run since the last boot"},
        {"damaged", "damaged",
         "the report could not be read whole, or its bytes do not give its CRC (the counts "
         "are those read)"},
        {"unreadable", "unreadable",
         "the report cannot be opened, is too short to hold a CRC, or is not a regular file"},
        {"no_report", "no report", "the pool has a rebuild log but no verify report"},
        {"no_files", "no files", "a pool named on the command line has neither a verify report "
                                 "nor a rebuild log"},
    };
    return words;
}

const std::vector<Word>& LogStates() {
    static const std::vector<Word> words = {
        {"finished", "finished", "the log was read whole, its closing tags included"},
        {"unfinished", "unfinished",
         "the log ends where its writer stands: a rebuild that is still running (the counts "
         "are those written so far)"},
        {"damaged", "damaged", "a walk of the log ended at a damaged item"},
        {"unreadable", "unreadable",
         "the log cannot be opened, holds no <rebuildLog> element, or is not a regular file"},
        {"no_log", "no log", "the pool has no rebuild log"},
    };
    return words;
}

const std::vector<Word>& Healths() {
    static const std::vector<Word> words = {
        {"healthy", "healthy",
         "the newest verify report is clean and recent, and the newest rebuild log (where "
         "there is one) lists no object truncated or deleted"},
        {"rebuilding", "rebuilding",
         "the newest rebuild log is still being written, and nothing below holds"},
        {"warnings", "warnings",
         "the newest verify report found warning conditions, or the newest rebuild log lists "
         "objects whose trustees were truncated or whose action is unknown"},
        {"unverified", "unverified", "the pool has a rebuild log but no verify report"},
        {"stale", "stale",
         "the newest verify report is older than the age limit (--max-age, 8 days unless "
         "given), or holds no time"},
        {"incomplete", "incomplete",
         "the newest verify could not determine the pool's condition, or its report holds no "
         "section"},
        {"truncated", "truncated", "the newest rebuild log lists objects the rebuild truncated"},
        {"unreadable", "unreadable", "the newest verify report or rebuild log cannot be read"},
        {"damaged", "damaged",
         "the newest verify report or rebuild log could not be read whole (a report whose CRC "
         "does not match included)"},
        {"errors", "errors", "the newest verify report found error conditions"},
        {"data_lost", "data lost", "the newest rebuild log lists objects the rebuild deleted"},
        {"no_files", "no files",
         "a pool named on the command line has neither a verify report nor a rebuild log"},
    };
    return words;
}

const Word& WordOf(Verdict verdict) { return Verdicts()[static_cast<unsigned>(verdict)]; }
const Word& WordOf(LogState state) { return LogStates()[static_cast<unsigned>(state)]; }
const Word& WordOf(Health health) { return Healths()[static_cast<unsigned>(health)]; }

int64_t VerifyFacts::ReportTime() const {
    return counts.endTime != 0 ? counts.endTime : counts.startTime;
}

namespace {

// The readers' own messages go nowhere: a summary shows none.
class Nowhere : public std::ostream {
public:
    Nowhere() : std::ostream(nullptr) {}
};

// The readers' debug mask of the summaries, as logsift-json's documents.
constexpr unsigned DEBUG_MASK = 4;

class VerifyCounting : public LogsiftDriver::VerifyReading {
public:
    explicit VerifyCounting(VerifyFacts& facts) : facts(facts) {}
    void OpenFailed(const LogsiftDriver::Outcome&) override {}
    void Start(VerifyFile& reader) override {
        facts.opened = true;
        reader.SetPrinter(printer);
    }
    void Finished(VerifyFile&, const LogsiftDriver::Outcome&,
                  const LogsiftDriver::Crc& crc) override {
        facts.crc = crc;
        facts.counts = printer.Summary();
    }

private:
    VerifyFacts& facts;
    VerifySummaryPrinter printer;
};

class RebuildCounting : public LogsiftDriver::RebuildReading {
public:
    explicit RebuildCounting(RebuildFacts& facts) : facts(facts) {}
    void OpenFailed(const LogsiftDriver::Outcome&) override {}
    void Start(RebuildFile& log) override {
        facts.opened = true;
        log.SetPrinter(printer);
    }
    void MessagesRead(const LogsiftDriver::Outcome& walk) override { messages = walk; }
    void Finished(RebuildFile&, const LogsiftDriver::Outcome&) override {}
    void Done(RebuildFile& log) override {
        facts.counts = printer.Summary();
        facts.finished = log.Finished();
    }
    // The message walk's outcome, when it ended the reading.
    LogsiftDriver::Outcome messages;

private:
    RebuildFacts& facts;
    RebuildSummaryPrinter printer;
};

} // namespace

Verdict VerdictOf(const VerifyFacts& facts) {
    if (!facts.present)
        return Verdict::NoReport;
    if (!facts.opened || facts.outcome.status == QVS::zERR_NO_MEMORY)
        return Verdict::Unreadable;
    if (!facts.outcome.Good())
        return Verdict::Damaged;
    if (!facts.counts.statusRead)
        return Verdict::NoData;
    if (facts.counts.result != 0)
        return Verdict::Incomplete;
    if (facts.counts.errors != 0)
        return Verdict::Errors;
    if (facts.counts.warnings != 0)
        return Verdict::Warnings;
    return Verdict::Clean;
}

LogState StateOf(const RebuildFacts& facts) {
    if (!facts.present)
        return LogState::NoLog;
    if (!facts.opened || facts.outcome.status == QVS::zERR_NO_MEMORY)
        return LogState::Unreadable;
    if (!facts.outcome.Good())
        return LogState::Damaged;
    if (!facts.finished)
        return LogState::Unfinished;
    return LogState::Finished;
}

namespace {

// Opens the file of `source` by the companions' rules and hands it to
// `read`, or keeps why it could not be opened.
template <typename Facts, typename Read>
void readFile(const LogsiftDriver::Source& source, Facts& facts, Read read) {
    facts.present = !source.path.empty();
    facts.path = source.path;
    if (!facts.present)
        return;
    QVS::InputFile input;
    QVS::InputFailure failure;
    if (!LogsiftDriver::OpenSource(source, input, failure)) {
        facts.outcome = LogsiftDriver::InputOutcome(failure);
        return;
    }
    facts.sized = input.regular;
    facts.size = input.size;
    facts.modified = input.modified;
    read(input);
}

} // namespace

VerifyFacts ReadVerify(const LogsiftDriver::Source& source) {
    VerifyFacts facts;
    readFile(source, facts, [&](QVS::InputFile& input) {
        Nowhere nowhere;
        VerifyCounting reading(facts);
        facts.outcome = LogsiftDriver::ReadVerifyReport(
            LogsiftDriver::InputReport(source.path, input, nowhere, DEBUG_MASK), reading);
    });
    facts.verdict = VerdictOf(facts);
    return facts;
}

RebuildFacts ReadRebuild(const LogsiftDriver::Source& source) {
    RebuildFacts facts;
    readFile(source, facts, [&](QVS::InputFile& input) {
        Nowhere nowhere;
        RebuildCounting reading(facts);
        LogsiftDriver::RebuildOptions options; // no names asked
        facts.outcome = LogsiftDriver::ReadRebuildLog(
            LogsiftDriver::InputLog(source.path, input, nowhere, DEBUG_MASK), options, reading);
        // The first walk that failed says why.
        if (facts.outcome.Good() && !reading.messages.Good())
            facts.outcome = reading.messages;
    });
    facts.state = StateOf(facts);
    return facts;
}

bool Stale(const VerifyFacts& verify, const Rules& rules) {
    if (!verify.counts.statusRead)
        return false;
    const int64_t when = verify.ReportTime();
    return when <= 0 || rules.now - when > rules.maxAge;
}

namespace {

// The health each verdict and each state of a log makes by itself, in the
// order of the tables.
const Health VERDICT_HEALTH[] = {
    Health::Healthy,    Health::Warnings,   Health::Errors,     Health::Incomplete,
    Health::Incomplete, Health::Damaged,    Health::Unreadable, Health::Unverified,
    Health::NoFiles,
};
const Health LOG_STATE_HEALTH[] = {
    Health::Healthy, Health::Rebuilding, Health::Damaged, Health::Unreadable, Health::Healthy,
};
static_assert(sizeof VERDICT_HEALTH / sizeof VERDICT_HEALTH[0] ==
                  static_cast<unsigned>(Verdict::NoFiles) + 1,
              "a health for each verdict");
static_assert(sizeof LOG_STATE_HEALTH / sizeof LOG_STATE_HEALTH[0] ==
                  static_cast<unsigned>(LogState::NoLog) + 1,
              "a health for each state of a log");

} // namespace

Health HealthOf(const Pool& pool, const Rules& rules) {
    if (!pool.found)
        return Health::NoFiles;
    const VerifyFacts& verify = pool.verify;
    const RebuildFacts& rebuild = pool.rebuild;
    Health health = std::max(VERDICT_HEALTH[static_cast<unsigned>(verify.verdict)],
                             LOG_STATE_HEALTH[static_cast<unsigned>(rebuild.state)]);
    auto atLeast = [&health](Health worse) { health = std::max(health, worse); };
    if (verify.present && verify.opened && Stale(verify, rules))
        atLeast(Health::Stale);
    if (rebuild.present && rebuild.opened) {
        const unsigned long* actions = rebuild.counts.actions;
        if (actions[TODItem::ACTION_DELETED] != 0 || rebuild.counts.deleted != 0)
            atLeast(Health::DataLost);
        if (actions[TODItem::ACTION_TRUNCATED] != 0 || rebuild.counts.truncated != 0)
            atLeast(Health::Truncated);
        if (actions[TODItem::ACTION_TRUSTEES_TRUNCATED] != 0 ||
            actions[TODItem::ACTION_UNKNOWN] != 0)
            atLeast(Health::Warnings);
    }
    return health;
}

int Collect(const std::string& directory, const std::vector<std::string>& named,
            const Rules& rules, std::vector<Pool>& pools) {
    std::vector<LogsiftDriver::PoolFiles> found;
    const int status = LogsiftDriver::ScanPools(directory, found);
    pools.clear();
    if (named.empty()) {
        for (LogsiftDriver::PoolFiles& files : found) {
            Pool pool;
            pool.name = files.name;
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
            Pool pool;
            pool.name = name;
            const auto known = byKey.find(LogsiftDriver::PoolKey(name));
            pool.found = known != byKey.end();
            if (pool.found) {
                pool.files = *known->second;
                pool.name = pool.files.name; // as the files spell it
            }
            pools.push_back(std::move(pool));
        }
    }
    for (Pool& pool : pools) {
        pool.verify = ReadVerify(
            LogsiftDriver::Source{pool.files.report, pool.files.reportName, directory, true});
        pool.rebuild = ReadRebuild(
            LogsiftDriver::Source{pool.files.log, pool.files.logName, directory, true});
        if (!pool.found)
            pool.verify.verdict = Verdict::NoFiles;
        pool.health = HealthOf(pool, rules);
    }
    return status;
}

int ExitStatus(const std::vector<Pool>& pools) {
    int status = 0;
    for (const Pool& pool : pools) {
        if (!pool.found || (pool.verify.present && !pool.verify.outcome.Good()) ||
            (pool.rebuild.present && !pool.rebuild.outcome.Good()))
            status |= EXIT_NOT_READ;
        if (pool.verify.present && VerifyErrorsFound(pool.verify.counts))
            status |= EXIT_ERRORS_FOUND;
    }
    return status;
}

} // namespace PoolHealth
