// logsiftJson.cpp - the documents of logsift-json.
#include "util/logsift/logsiftJson.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/jsonFields.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/rebuildJsonPrinter.h"
#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyJsonPrinter.h"
#include "util/logsift/logsiftView.h"
#include "util/support/jsonWriter.h"
#include "util/support/qvsError.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include <sys/stat.h>

namespace LogsiftJson {

const char* const PROGRAM = "logsift-json";
const char* const VERSION = "1.00";
const char* const SCHEMA_VERSION = "1.0";

namespace {

using QVS::JsonWriter;

const std::size_t CRC_BLOCK_SIZE = 1 << 16;

// Where a document's file came from.
struct Source {
    std::string path;      // empty when no file was found
    std::string pool;      // for the newest-file search
    std::string directory; // likewise
};

void begin(JsonWriter& json, const char* kind, const Source& source) {
    json.BeginObject();
    json.Member("schema_version", SCHEMA_VERSION);
    json.Member("program", PROGRAM);
    json.Member("version", VERSION);
    json.Member("kind", kind);
    json.Key("file");
    json.BeginObject();
    json.Key("path");
    if (source.path.empty())
        json.Null();
    else
        json.String(source.path);
    struct stat info;
    if (!source.path.empty() && stat(source.path.c_str(), &info) == 0 && S_ISREG(info.st_mode)) {
        json.Quantity("size", static_cast<uint64_t>(info.st_size));
    } else {
        json.Key("size");
        json.Null();
    }
    if (!source.pool.empty()) {
        json.Member("pool", source.pool);
        json.Member("directory", source.directory);
    }
    json.EndObject();
}

// The reader's own messages (what logsift would print among the report's
// lines), one line each.
void readerMessages(JsonWriter& json, const std::string& text) {
    json.Key("reader_messages");
    json.BeginArray();
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        if (end > start)
            json.String(std::string_view(text).substr(start, end - start));
        start = end + 1;
    }
    json.EndArray();
}

void errorMember(JsonWriter& json, long status, const std::string& message, long long offset) {
    json.Key("error");
    json.BeginObject();
    JsonFields::StatusMember(json, "status", status);
    json.Member("message", message);
    json.Key("offset");
    if (offset >= 0)
        json.Unsigned(static_cast<uint64_t>(offset));
    else
        json.Null();
    json.EndObject();
}

void end(JsonWriter& json) {
    json.EndObject();
    json.Finish();
}

// What a verify reader's status means, for the error object.
std::string describe(unsigned status) {
    if (status >= QVS::ERRNO_STATUS_BASE)
        return std::strerror(static_cast<int>(status - QVS::ERRNO_STATUS_BASE));
    switch (status) {
    case QVS::STATUS_END_OF_FILE:
        return "the file ends inside a section";
    case QVS::STATUS_BAD_SECTION:
        return "a section has a bad magic or a bad size";
    case QVS::zERR_RAV_MISSING_SECTION:
        return "a required section is missing";
    case QVS::zERR_NO_MEMORY:
        return "out of memory";
    default:
        return "the report could not be read";
    }
}

// The CRC over everything after the stored one; false when the file cannot
// be read whole (or is not a regular file, which cannot be read twice).
bool computeCrc(const std::string& path, uint32_t& stored, uint32_t& computed) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        return false;
    unsigned char storedBytes[VerifyFormat::CRC_SIZE];
    bool ok = std::fread(storedBytes, 1, sizeof storedBytes, file) == sizeof storedBytes;
    stored = static_cast<uint32_t>(storedBytes[0] | (storedBytes[1] << 8) | (storedBytes[2] << 16) |
                                   (static_cast<uint32_t>(storedBytes[3]) << 24));
    unsigned crc = 0xFFFFFFFFu;
    std::unique_ptr<unsigned char[]> block(new unsigned char[CRC_BLOCK_SIZE]);
    size_t got;
    while (ok && (got = std::fread(block.get(), 1, CRC_BLOCK_SIZE, file)) > 0)
        crc = QVS::updateCRC(crc, block.get(), got);
    ok = ok && !std::ferror(file);
    std::fclose(file);
    computed = ~crc;
    return ok;
}

void crcMember(JsonWriter& json, const std::string& path) {
    json.Key("crc");
    uint32_t stored = 0, computed = 0;
    if (path.empty() || !computeCrc(path, stored, computed)) {
        json.Null();
        return;
    }
    json.BeginObject(true);
    json.Member("stored", JsonFields::NumberText::Hex(stored).View());
    json.Member("computed", JsonFields::NumberText::Hex(computed).View());
    json.Member("matches", stored == computed);
    json.EndObject();
}

// The message of a newest-file search that found nothing.
std::string noFile(const Source& source, const char* what) {
    return std::string("no ") + what + " of pool " + source.pool + " in " + source.directory;
}

int verifyReport(const Source& source, const Options& options, std::ostream& out) {
    JsonWriter json(out);
    begin(json, "verify_report", source);
    crcMember(json, source.path);
    std::ostringstream messages;
    std::unique_ptr<VerifyFile> reader;
    std::string openFailure;
    unsigned status = QVS::zERR_BAD_PARAMETER_VALUE;
    if (source.path.empty()) {
        status = QVS::STATUS_NO_MATCHING_FILE;
        openFailure = noFile(source, "verify report");
    } else {
        try {
            reader.reset(new VerifyFile(source.path, messages, options.debugMask));
        } catch (const std::exception& e) {
            openFailure = e.what();
        }
    }
    VerifyJsonPrinter printer(json);
    long long offset = -1;
    json.Key("sections");
    const std::size_t depth = json.Depth();
    json.BeginArray();
    if (reader) {
        reader->SetPrinter(printer);
        try {
            status = reader->ReadAndValidateSectionAll();
        } catch (const std::exception& e) {
            json.CloseTo(depth + 1);
            openFailure = e.what();
            status = QVS::zERR_BAD_PARAMETER_VALUE;
        }
        printer.Close();
        if (reader->file != nullptr)
            offset = ftello(reader->file);
    }
    json.EndArray();
    json.Key("totals");
    json.BeginObject(true);
    json.Quantity("sections", printer.Sections());
    json.Quantity("volumes", printer.Volumes());
    json.Quantity("list_rows", printer.ListRows());
    json.EndObject();
    json.Key("outcome");
    json.BeginObject(true);
    JsonFields::StatusMember(json, "status", status);
    json.Member("errors_found", printer.ErrorsFound());
    json.EndObject();
    readerMessages(json, messages.str());
    if (status != 0)
        errorMember(json, status, openFailure.empty() ? describe(status) : openFailure, offset);
    end(json);
    return (status != 0 ? EXIT_NOT_READ : 0) | (printer.ErrorsFound() ? EXIT_ERRORS_FOUND : 0);
}

const char ACTION_HISTORY_TAG[] = "<actionHistory>";

// Every action item of the history, in file order.
void actionItems(JsonWriter& json, const std::string& text, unsigned long& count) {
    json.Key("action_items");
    json.BeginArray();
    std::string history;
    if (GetTagContents(text, ACTION_HISTORY_TAG, history, 0, nullptr) == 0) {
        unsigned long position = 0;
        std::string itemText;
        while (GetTagContentsInclusive(history, ACTION_ITEM_TAG, itemText, position, &position) ==
               0) {
            ActionItem item;
            if (item.GetActionItem(itemText) != 0)
                continue; // an item without its key is no action
            ++count;
            RebuildJson::WriteActionItem(json, item);
        }
    }
    json.EndArray();
}

int rebuildLog(const Source& source, const Options& options, std::ostream& out) {
    JsonWriter json(out);
    begin(json, "rebuild_log", source);
    json.Member("lookups", options.lookup);
    std::ostringstream messages;
    std::unique_ptr<RebuildFile> log;
    long loadStatus = 0;
    std::string loadFailure;
    if (source.path.empty()) {
        loadStatus = QVS::STATUS_NO_MATCHING_FILE;
        loadFailure = noFile(source, "rebuild log");
    } else {
        try {
            log.reset(new RebuildFile(source.path, messages, options.debugMask));
        } catch (const QVSError& e) {
            loadStatus = e.status();
            loadFailure = e.what();
        } catch (const std::exception& e) {
            loadStatus = QVS::zERR_BAD_PARAMETER_VALUE;
            loadFailure = e.what();
        }
    }
    RebuildJsonPrinter printer(json);
    unsigned long actions = 0;
    long status = loadStatus;
    std::string failure = loadFailure;
    long long offset = -1;
    const std::size_t depth = json.Depth();
    if (log) {
        log->SetPrinter(printer);
        try {
            log->DisplayMessageItems();
            if (options.lookup)
                log->ProcessTODItems(options.server.c_str());
            else
                log->DisplayTODItems();
            printer.Close();
        } catch (const std::exception& e) {
            json.CloseTo(depth);
            failure = e.what();
            status = QVS::zERR_BAD_PARAMETER_VALUE;
        }
        if (status == 0 && printer.Status() != 0) {
            status = printer.Status();
            failure = printer.Failure();
            offset = printer.Position();
        }
        actionItems(json, log->Text(), actions);
    } else {
        json.Key("messages");
        json.BeginArray();
        json.EndArray();
        json.Key("tod_items");
        json.BeginArray();
        json.EndArray();
        json.Key("action_items");
        json.BeginArray();
        json.EndArray();
    }
    json.Key("totals");
    json.BeginObject(true);
    json.Quantity("messages", printer.Messages());
    json.Quantity("tod_items", printer.TODItems());
    json.Quantity("ignored_tod_items", printer.Ignored());
    json.Quantity("action_items", actions);
    json.EndObject();
    json.Key("outcome");
    json.BeginObject(true);
    JsonFields::StatusMember(json, "status", status);
    json.EndObject();
    readerMessages(json, messages.str());
    if (status != 0)
        errorMember(json, status, failure, offset);
    end(json);
    return status != 0 ? EXIT_NOT_READ : 0;
}

} // namespace

int VerifyReport(const std::string& path, const Options& options, std::ostream& out) {
    return verifyReport(Source{path, "", ""}, options, out);
}

int RebuildLog(const std::string& path, const Options& options, std::ostream& out) {
    return rebuildLog(Source{path, "", ""}, options, out);
}

int Newest(bool rebuild, const std::string& pool, const Options& options, std::ostream& out) {
    Source source{"", pool, options.directory};
    // Not found: the same document, empty, with the error.
    FindTheNewestFile(options.directory, pool, source.path, rebuild);
    return rebuild ? rebuildLog(source, options, out) : verifyReport(source, options, out);
}

} // namespace LogsiftJson
