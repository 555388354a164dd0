// logsiftJson.cpp - the documents of logsift-json.
#include "util/logsift/logsiftJson.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/jsonFields.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/rebuildJsonPrinter.h"
#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyJsonPrinter.h"
#include "util/logsift/commandLine.h"
#include "util/logsift/logsiftDriver.h"
#include "util/logsift/poolHealth.h"
#include "util/support/jsonWriter.h"
#include "util/support/memoryReserve.h"
#include "util/support/qvsError.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"
#include "util/support/utf8.h"

#include <cerrno>
#include <cstring>
#include <cstdio>
#include <memory>
#include <new>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>


namespace LogsiftJson {

const char* const PROGRAM = "logsift-json";
const char* const SCHEMA_VERSION = "1.2";

namespace {

using QVS::JsonWriter;

using LogsiftDriver::Source;

// The members every document begins with.
void opening(JsonWriter& json, const char* kind) {
    json.BeginObject();
    json.Member("schema_version", SCHEMA_VERSION);
    json.Member("program", PROGRAM);
    json.Member("version", CommandLine::VERSION);
    json.Member("kind", kind);
}

// `size`: of the regular file that is read, as it was when opened; null
// for a stream or a file that could not be opened.
void begin(JsonWriter& json, const char* kind, const Source& source, const uint64_t* size) {
    opening(json, kind);
    json.Key("file");
    json.BeginObject();
    json.Key("path");
    if (source.path.empty())
        json.Null();
    else
        json.String(source.path);
    if (size != nullptr) {
        json.Quantity("size", *size);
    } else {
        json.Key("size");
        json.Null();
    }
    if (source.searched) {
        json.Member("pool", QVS::LosslessText(source.pool));
        json.Member("directory", source.directory);
    }
    json.EndObject();
}

// The file of a whole document, opened by the companions' rules before its
// first member is written (its size is that of the file read).
struct Opening {
    explicit Opening(const Source& source)
        : opened(!source.path.empty() && LogsiftDriver::OpenSource(source, input, failure)) {}
    // The size `begin` shows: of a regular file opened, else none.
    const uint64_t* Size() const { return opened && input.regular ? &input.size : nullptr; }

    QVS::InputFile input;
    QVS::InputFailure failure;
    const bool opened;
};

// The reader's own messages (what logsift would print among the report's
// lines), kept as they are written and read back in place: there is no
// copy to make when memory has run out.
class ReaderMessages : public std::ostream {
public:
    ReaderMessages() : std::ostream(&buffer) {}
    std::string_view Text() const { return buffer.Text(); }

private:
    struct Buffer : std::stringbuf {
        std::string_view Text() const {
            return std::string_view(pbase(), static_cast<std::size_t>(pptr() - pbase()));
        }
    };
    Buffer buffer;
};

// One line each.
void readerMessages(JsonWriter& json, std::string_view text) {
    json.Key("reader_messages");
    json.BeginArray();
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos)
            end = text.size();
        if (end > start)
            json.String(text.substr(start, end - start));
        start = end + 1;
    }
    json.EndArray();
}

const char OUT_OF_MEMORY_TEXT[] = "out of memory";

using LogsiftDriver::Outcome;

// The first failure of a document: its status, what it was, and where in
// the file reading stopped (-1 when it did not stop at a place).
struct First {
    Outcome outcome;

    void Note(const Outcome& what) {
        if (outcome.status == 0 && what.status != 0)
            outcome = what;
    }
    void Note(unsigned status, std::string text, long long offset = -1) {
        Outcome what;
        what.status = status;
        what.text = std::move(text);
        what.offset = offset;
        Note(what);
    }
};

void errorMember(JsonWriter& json, const Outcome& outcome) {
    json.Key("error");
    json.BeginObject();
    JsonFields::StatusMember(json, "status", outcome.status);
    json.Member("message", outcome.text);
    json.Key("offset");
    if (outcome.offset >= 0)
        json.Unsigned(static_cast<uint64_t>(outcome.offset));
    else
        json.Null();
    if (outcome.error != 0)
        json.MemberSigned("errno", outcome.error);
    json.EndObject();
}

void end(JsonWriter& json) { json.EndObject(); }

// The checksum of the bytes after the stored one, from the reading: null
// when the file could not be opened or read to its end.
void crcMember(JsonWriter& json, const LogsiftDriver::Crc* crc) {
    json.Key("crc");
    if (crc == nullptr || !crc->known) {
        json.Null();
        return;
    }
    json.BeginObject(true);
    json.Member("stored", JsonFields::NumberText::Hex(crc->stored).View());
    json.Member("computed", JsonFields::NumberText::Hex(crc->computed).View());
    json.Member("matches", crc->Matches());
    json.EndObject();
}

// A document's exit status, with its outcome for the every-pool document.
struct Written {
    int exit = 0;
    Outcome outcome;
};

// The outcome of a newest-file search that found nothing: the directory
// that could not be read, or no file of the pool in it.
Outcome noFile(const Source& source, const char* what, int directoryError) {
    Outcome outcome;
    if (directoryError != 0) {
        outcome.status = QVS::ERRNO_STATUS_BASE + static_cast<unsigned>(directoryError);
        outcome.error = directoryError;
        outcome.text = "cannot read the directory " + source.directory + ": " +
                       std::strerror(directoryError);
    } else {
        outcome.status = QVS::STATUS_NO_MATCHING_FILE;
        outcome.text = std::string("no ") + what + " of pool " + source.pool + " in " +
                       source.directory;
    }
    return outcome;
}

// The report's sections through the JSON printer, inside "sections", and
// counted for the verdict.
class JsonVerifyReading : public LogsiftDriver::VerifyReading {
public:
    explicit JsonVerifyReading(JsonWriter& json)
        : json(json), printer(json), both(printer, counting) {}

    void OpenFailed(const Outcome&) override { Sections(nullptr); }
    void Start(VerifyFile& reader) override {
        opened = true;
        reader.SetPrinter(both);
    }
    void Finished(VerifyFile&, const Outcome&, const LogsiftDriver::Crc& crc) override {
        Sections(&crc);
    }
    // Closes "sections" and writes the checksum that reading them gave.
    void Sections(const LogsiftDriver::Crc* crc) {
        printer.Close();
        json.EndArray();
        crcMember(json, crc);
    }

    const VerifyJsonPrinter& Printer() const { return printer; }
    const VerifySummary& Counts() const { return counting.Summary(); }
    bool Opened() const { return opened; }

private:
    JsonWriter& json;
    VerifyJsonPrinter printer;
    VerifySummaryPrinter counting;
    VerifyTeePrinter both;
    bool opened = false;
};

Written verifyReport(const Source& source, const Options& options, JsonWriter& json,
                     int directoryError) {
    Opening file(source);
    QVS::InputFile& input = file.input;
    begin(json, "verify_report", source, file.Size());
    ReaderMessages messages;
    First first;
    json.Key("sections");
    json.BeginArray();
    JsonVerifyReading reading(json);
    if (file.opened) {
        first.Note(LogsiftDriver::ReadVerifyReport(
            LogsiftDriver::InputReport(source.path, input, messages, options.debugMask),
            reading));
    } else {
        if (source.path.empty())
            first.Note(noFile(source, "verify report", directoryError));
        else
            first.Note(LogsiftDriver::InputOutcome(file.failure));
        reading.Sections(nullptr);
    }
    const VerifyJsonPrinter& printer = reading.Printer();
    json.Key("totals");
    json.BeginObject(true);
    json.Quantity("sections", printer.Sections());
    json.Quantity("volumes", printer.Volumes());
    // "list_rows" counted the problem lists' rows only; kept for the
    // documents' readers, beside the names that say what they count.
    json.Quantity("list_rows", printer.ProblemListRows());
    json.Quantity("problem_list_rows", printer.ProblemListRows());
    json.Quantity("action_rows", printer.ActionRows());
    json.Quantity("conflict_rows", printer.ConflictRows());
    json.Quantity("skipped_volume_rows", printer.SkippedVolumeRows());
    json.EndObject();
    // The verdict the summaries give, from the same counts.
    PoolHealth::VerifyFacts facts;
    facts.present = !source.path.empty();
    facts.opened = reading.Opened();
    facts.outcome = first.outcome;
    facts.counts = reading.Counts();
    json.Member("verdict", PoolHealth::WordOf(PoolHealth::VerdictOf(facts)).word);
    const Outcome& outcome = first.outcome;
    json.Key("outcome");
    json.BeginObject(true);
    JsonFields::StatusMember(json, "status", outcome.status);
    json.Member("errors_found", printer.ErrorsFound());
    json.EndObject();
    readerMessages(json, messages.Text());
    if (outcome.status != 0)
        errorMember(json, outcome);
    end(json);
    return {(outcome.status != 0 ? EXIT_NOT_READ : 0) |
                (printer.ErrorsFound() ? EXIT_ERRORS_FOUND : 0),
            outcome};
}

const char ACTION_HISTORY_TAG[] = "<actionHistory>";

// The walk over the action history: every item that can be read is written,
// and one that cannot is reported and passed over (its end is known); an
// item or a history without its closing tag ends the walk.
class ActionWalk {
public:
    ActionWalk(JsonWriter& writer, std::ostream& readerMessages)
        : json(writer), messages(readerMessages) {}

    // Writes "action_items" and "action_walk". In a log still being written
    // (`finished` false) the walk may end where the text ends: in a history
    // not closed yet, or at an item that the end cut.
    void Run(std::string const& text, bool finished) {
        json.Key("action_items");
        const std::size_t depth = json.Depth();
        json.BeginArray();
        try {
            Walk(text, finished);
        } catch (const std::bad_alloc&) {
            json.CloseTo(depth + 1);
            Stop(QVS::zERR_NO_MEMORY, RebuildJsonPrinter::OUT_OF_MEMORY, OUT_OF_MEMORY_TEXT, -1);
        }
        json.EndArray();
        json.Key("action_walk");
        json.BeginObject(true);
        json.Quantity("count", count);
        json.Quantity("unreadable", unreadable);
        json.Member("ended_by", endedBy);
        JsonFields::StatusMember(json, "status", status);
        if (endedBy == RebuildJsonPrinter::END_OF_TEXT)
            json.Quantity("text_end", text.size());
        json.EndObject();
    }

    unsigned long Count() const { return count; }
    unsigned long Unreadable() const { return unreadable; }
    // The first status of an item that could not be read or that ended the
    // walk, with what it was and where the item begins in the log's text.
    unsigned Status() const { return status; }
    std::string const& Failure() const { return failure; }
    long long Position() const { return position; }

private:
    void Walk(std::string const& text, bool finished) {
        unsigned long first = 0;
        unsigned long last = 0;
        unsigned found = LocateTagContents(text, ACTION_HISTORY_TAG, 0, &first, &last, nullptr);
        if (found == QVS::zERR_XML_TAG_NOT_FOUND) {
            // A log without an action history, or one not begun yet.
            if (!finished)
                endedBy = RebuildJsonPrinter::END_OF_TEXT;
            return;
        }
        bool open = false; // the history is not closed: it goes to the text's end
        if (found == QVS::zERR_XML_END_TAG_NOT_FOUND && !finished) {
            open = true;
            first = static_cast<unsigned long>(text.find(ACTION_HISTORY_TAG) +
                                               std::strlen(ACTION_HISTORY_TAG));
            last = static_cast<unsigned long>(text.size());
        } else if (found != 0) {
            const std::size_t at = text.find(ACTION_HISTORY_TAG);
            Report("The action history", at, "has no closing tag", found);
            Stop(found, RebuildJsonPrinter::DAMAGED_ITEM, "the action history has no closing tag",
                 static_cast<long long>(at));
            return;
        }
        const std::string_view history = std::string_view(text).substr(first, last - first);
        std::string itemText;
        unsigned long position = 0;
        for (;;) {
            QVS::MemoryReserve::Check();
            unsigned long itemStart = 0;
            unsigned long itemEnd = 0;
            found = LocateTagInclusive(history, ACTION_ITEM_TAG, position, &itemStart, &itemEnd);
            if (found == QVS::zERR_XML_TAG_NOT_FOUND) {
                if (open)
                    endedBy = RebuildJsonPrinter::END_OF_TEXT;
                return;
            }
            if (found != 0) {
                const std::size_t begun = history.find(ACTION_ITEM_TAG, position);
                if (open && RebuildFile::OnlyAnItemBegun(
                                history.substr(begun + std::strlen(ACTION_ITEM_TAG)))) {
                    endedBy = RebuildJsonPrinter::END_OF_TEXT; // cut by the end of the text
                    return;
                }
                const std::size_t at = first + begun;
                Report("Action item", at, "has no closing tag", found);
                Stop(found, RebuildJsonPrinter::DAMAGED_ITEM, "an action item has no closing tag",
                     static_cast<long long>(at));
                return;
            }
            itemText.assign(history.substr(itemStart, itemEnd - itemStart));
            ActionItem item;
            const unsigned read = item.GetActionItem(itemText);
            if (read == 0) {
                ++count;
                RebuildJson::WriteActionItem(json, item);
            } else {
                ++unreadable;
                const unsigned long at = first + itemStart;
                Report("Action item", at, "could not be read", read);
                Stop(read, nullptr, "an action item could not be read",
                     static_cast<long long>(at));
            }
            position = itemEnd;
        }
    }

    // A reader message: what, at which offset of the log's text, what
    // happened, and the status with its name.
    void Report(char const* what, std::size_t at, char const* happened, unsigned why) {
        const char* name = JsonFields::StatusName(why);
        messages << what << " at offset " << at << " " << happened << ": status " << why << " ("
                 << (name ? name : "no name") << ")\n";
    }

    // Keeps the first failure; `ending` is how the walk ended, null when it
    // goes on past the item.
    void Stop(unsigned what, char const* ending, char const* text, long long at) {
        if (ending != nullptr)
            endedBy = ending;
        if (status != 0)
            return;
        status = what;
        failure = text;
        position = at;
    }

    JsonWriter& json;
    std::ostream& messages;
    unsigned long count = 0;
    unsigned long unreadable = 0;
    unsigned status = 0;
    char const* endedBy = RebuildJsonPrinter::END_OF_LIST;
    std::string failure;
    long long position = -1;
};

// The log's walks through the JSON printer, then its action history.
class JsonRebuildReading : public LogsiftDriver::RebuildReading {
public:
    JsonRebuildReading(JsonWriter& json, std::ostream& messages, First& first)
        : printer(json), actions(json, messages), first(first) {}

    void OpenFailed(const Outcome&) override {}
    void Start(RebuildFile& log) override { log.SetPrinter(printer); }
    void MessagesRead(const Outcome&) override {} // the printer keeps the walk's end
    void Finished(RebuildFile&, const Outcome& walk) override {
        if (walk.threw)
            printer.Abandon(walk.status, walk.text);
        else
            printer.Close();
    }
    void Done(RebuildFile& log) override {
        loaded = true;
        first.Note(printer.Status(), printer.Failure(), printer.Position());
        finished = log.Finished();
        actions.Run(log.Text(), finished);
        first.Note(actions.Status(), actions.Failure(), actions.Position());
    }

    RebuildJsonPrinter& Printer() { return printer; }
    const ActionWalk& Actions() const { return actions; }
    bool Loaded() const { return loaded; }
    bool Finished() const { return finished; }

private:
    RebuildJsonPrinter printer;
    ActionWalk actions;
    First& first;
    bool loaded = false;
    bool finished = false;
};

Written rebuildLog(const Source& source, const Options& options, JsonWriter& json,
                     int directoryError) {
    Opening file(source);
    QVS::InputFile& input = file.input;
    begin(json, "rebuild_log", source, file.Size());
    json.Member("lookups", options.lookup);
    ReaderMessages messages;
    First first;
    JsonRebuildReading reading(json, messages, first);
    if (file.opened) {
        LogsiftDriver::RebuildOptions walks;
        walks.lookup = options.lookup;
        walks.server = options.server;
        const Outcome loading = LogsiftDriver::ReadRebuildLog(
            LogsiftDriver::InputLog(source.path, input, messages, options.debugMask), walks,
            reading);
        if (!reading.Loaded())
            first.Note(loading);
    } else if (source.path.empty()) {
        first.Note(noFile(source, "rebuild log", directoryError));
    } else {
        first.Note(LogsiftDriver::InputOutcome(file.failure));
    }
    RebuildJsonPrinter& printer = reading.Printer();
    const ActionWalk& actions = reading.Actions();
    if (!reading.Loaded()) {
        // No log: empty walks, and no action history to walk.
        printer.Close();
        json.Key("action_items");
        json.BeginArray();
        json.EndArray();
    }
    // Whether the log's root element is closed: false for a rebuild still
    // writing it; null when the log could not be loaded.
    json.Key("finished");
    if (reading.Loaded())
        json.Bool(reading.Finished());
    else
        json.Null();
    json.Key("totals");
    json.BeginObject(true);
    json.Quantity("messages", printer.Messages());
    json.Quantity("tod_items", printer.TODItems());
    json.Quantity("ignored_tod_items", printer.Ignored());
    json.Quantity("action_items", actions.Count());
    json.Quantity("unreadable_action_items", actions.Unreadable());
    json.EndObject();
    const Outcome& outcome = first.outcome;
    json.Key("outcome");
    json.BeginObject(true);
    JsonFields::StatusMember(json, "status", outcome.status);
    json.EndObject();
    readerMessages(json, messages.Text());
    if (outcome.status != 0)
        errorMember(json, outcome);
    end(json);
    return {outcome.status != 0 ? EXIT_NOT_READ : 0, outcome};
}

// ---------------------------------------------------------------- summaries

void timeMember(JsonWriter& json, const char* name, uint64_t seconds) {
    JsonFields::writeField(json, JsonFields::MemberKeys(name), seconds, FieldKinds::Time{});
}

// The end of a summary: its outcome, and its error when it has one.
void summaryEnd(JsonWriter& json, const Outcome& outcome, bool errorsFound, bool verify) {
    json.Key("outcome");
    json.BeginObject(true);
    JsonFields::StatusMember(json, "status", outcome.status);
    if (verify)
        json.Member("errors_found", errorsFound);
    json.EndObject();
    if (outcome.status != 0)
        errorMember(json, outcome);
    end(json);
}

Written verifySummary(const Source& source, JsonWriter& json, int directoryError) {
    PoolHealth::VerifyFacts facts = PoolHealth::ReadVerify(source);
    if (source.path.empty())
        facts.outcome = noFile(source, "verify report", directoryError);
    begin(json, "verify_summary", source, facts.sized ? &facts.size : nullptr);
    const VerifySummary& s = facts.counts;
    json.Key("summary");
    json.BeginObject();
    json.Member("verdict", PoolHealth::WordOf(facts.verdict).word);
    json.Member("status_read", s.statusRead);
    json.Member("finished", s.finished);
    json.Member("pool_condition_determined", s.statusRead && s.result == 0);
    timeMember(json, "verify_start_time", s.startTime);
    timeMember(json, "verify_end_time", s.endTime);
    json.Quantity("volumes", s.volumes);
    json.Quantity("errors", s.errors);
    json.Quantity("warnings", s.warnings);
    json.Quantity("problem_lists", s.problemLists);
    json.Quantity("problem_rows", s.problemRows);
    json.Key("crc_matches");
    if (facts.crc.known)
        json.Bool(facts.crc.Matches());
    else
        json.Null();
    json.EndObject();
    const bool errorsFound = VerifyErrorsFound(s);
    summaryEnd(json, facts.outcome, errorsFound, true);
    return {(facts.outcome.status != 0 ? EXIT_NOT_READ : 0) |
                (errorsFound ? EXIT_ERRORS_FOUND : 0),
            facts.outcome};
}

Written rebuildSummary(const Source& source, JsonWriter& json, int directoryError) {
    PoolHealth::RebuildFacts facts = PoolHealth::ReadRebuild(source);
    if (source.path.empty())
        facts.outcome = noFile(source, "rebuild log", directoryError);
    begin(json, "rebuild_summary", source, facts.sized ? &facts.size : nullptr);
    const RebuildSummary& s = facts.counts;
    json.Key("summary");
    json.BeginObject();
    json.Member("loaded", facts.opened);
    json.Key("finished");
    if (facts.opened)
        json.Bool(facts.finished);
    else
        json.Null();
    json.Member("state", PoolHealth::WordOf(facts.state).word);
    timeMember(json, "modified", facts.modified > 0 ? static_cast<uint64_t>(facts.modified) : 0);
    json.Quantity("messages", s.messages);
    json.Quantity("tod_items", s.todItems + s.ignored);
    json.Quantity("ignored_tod_items", s.ignored);
    json.Quantity("truncated", s.truncated);
    json.Quantity("deleted", s.deleted);
    json.Key("actions");
    json.BeginObject(true);
    for (unsigned action = 0; action < TODItem::ACTION_COUNT; ++action)
        json.Quantity(TODItem::ACTION_NAMES[action], s.actions[action]);
    json.EndObject();
    json.EndObject();
    summaryEnd(json, facts.outcome, false, false);
    return {facts.outcome.status != 0 ? EXIT_NOT_READ : 0, facts.outcome};
}

// One document: the file's content, or its summary.
Written document(bool rebuild, const Source& source, const Options& options, JsonWriter& json,
                 int directoryError = 0) {
    if (options.summary)
        return rebuild ? rebuildSummary(source, json, directoryError)
                       : verifySummary(source, json, directoryError);
    return rebuild ? rebuildLog(source, options, json, directoryError)
                   : verifyReport(source, options, json, directoryError);
}

// ---------------------------------------------------------------- every pool

// Every pool's newest file of the type, each the document that pool alone
// would give, keyed by the pool's name as that file spells it (written by
// the lossless rule, so that no two pools share a key). The outcome is the
// directory's, else what the pools say (the first pool not read, and how
// many were not); when memory runs out the document is closed where it
// stands, whole, with status 20000.
int pools(const LogsiftDriver::FileType& type, const Options& options, JsonWriter& json) {
    opening(json, "pools");
    json.Member("file_type", type.word);
    json.Member("directory", options.directory);
    json.Member("summary", options.summary);
    json.Key("pools");
    json.BeginObject();
    const std::size_t depth = json.Depth();
    int status = 0;
    int scan = 0;
    unsigned long count = 0, notRead = 0, errorsFound = 0;
    First first;
    Outcome firstPool;
    std::string firstPoolName;
    try {
        std::vector<LogsiftDriver::PoolFiles> found;
        scan = LogsiftDriver::ScanPools(options.directory, found);
        for (const LogsiftDriver::PoolFiles& pool : found) {
            const std::string& path = type.rebuildLog ? pool.log : pool.report;
            if (path.empty())
                continue;
            QVS::MemoryReserve::Check();
            const std::string& name = type.rebuildLog ? pool.logName : pool.reportName;
            Source source{path, name, options.directory, true};
            ++count;
            json.Key(QVS::LosslessText(name));
            const Written one = document(type.rebuildLog, source, options, json);
            if (one.exit & EXIT_NOT_READ) {
                ++notRead;
                if (firstPool.status == 0) {
                    firstPool = one.outcome;
                    firstPoolName = QVS::LosslessText(name);
                }
            }
            errorsFound += (one.exit & EXIT_ERRORS_FOUND) != 0;
            status |= one.exit;
        }
    } catch (const std::bad_alloc&) {
        json.CloseTo(depth);
        first.Note(QVS::zERR_NO_MEMORY, OUT_OF_MEMORY_TEXT);
    }
    json.EndObject();
    json.Key("totals");
    json.BeginObject(true);
    json.Quantity("pools", count);
    json.Quantity("not_read", notRead);
    json.Quantity("errors_found", errorsFound);
    json.EndObject();
    if (scan != 0) {
        Outcome unread;
        unread.status = QVS::ERRNO_STATUS_BASE + static_cast<unsigned>(scan);
        unread.error = scan;
        unread.text = "cannot read the directory " + options.directory + ": " + std::strerror(scan);
        first.Note(unread);
    } else if (count == 0) {
        first.Note(QVS::STATUS_NO_MATCHING_FILE,
                   std::string("no ") + (type.rebuildLog ? "rebuild log" : "verify report") +
                       " of any pool in " + options.directory);
    }
    if (notRead != 0) {
        Outcome pools = firstPool;
        pools.offset = -1;
        pools.text = std::to_string(notRead) + " of " + std::to_string(count) +
                     (count == 1 ? " pool" : " pools") + " not read whole; the first, " +
                     firstPoolName + ": " + firstPool.text;
        first.Note(pools);
    }
    const Outcome& outcome = first.outcome;
    json.Key("outcome");
    json.BeginObject(true);
    JsonFields::StatusMember(json, "status", outcome.status);
    json.EndObject();
    if (outcome.status != 0) {
        errorMember(json, outcome);
        status |= EXIT_NOT_READ;
    }
    end(json);
    return status;
}

} // namespace

// A document of its own: the writer and the document's end. A lack of
// memory that no part of the document could take in closes what was begun,
// with its error, so that what is written is still one whole document.
template <typename Write> int whole(std::ostream& out, Write write) {
    JsonWriter json(out);
    int status;
    try {
        status = write(json);
    } catch (const std::bad_alloc&) {
        if (json.Depth() == 0)
            throw; // nothing begun: the program's own message says it
        json.CloseTo(1);
        Outcome outcome;
        outcome.status = QVS::zERR_NO_MEMORY;
        outcome.text = OUT_OF_MEMORY_TEXT;
        errorMember(json, outcome);
        json.EndObject();
        status = EXIT_NOT_READ;
    }
    json.Finish();
    return status;
}

int VerifyReport(const std::string& path, const Options& options, std::ostream& out) {
    return whole(out, [&](JsonWriter& json) {
        return document(false, Source{path, "", ""}, options, json).exit;
    });
}

int RebuildLog(const std::string& path, const Options& options, std::ostream& out) {
    return whole(out, [&](JsonWriter& json) {
        return document(true, Source{path, "", ""}, options, json).exit;
    });
}

int Document(const LogsiftDriver::FileType& type, const std::string* operand,
             const Options& options, std::ostream& out) {
    return whole(out, [&](JsonWriter& json) {
        if (type.newest && operand == nullptr)
            return pools(type, options, json);
        int error = 0;
        const Source source = LogsiftDriver::LocateQuietly(
            type, operand ? *operand : std::string(), options.directory, error);
        return document(type.rebuildLog, source, options, json, error).exit;
    });
}

} // namespace LogsiftJson
