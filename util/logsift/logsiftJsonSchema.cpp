// logsiftJsonSchema.cpp - the JSON Schema (draft 2020-12) of logsift-json's
// documents, made from the same field tables as the documents, so that the
// schema in doc/ is checked against what the printers write.
#include "util/logsift/logsiftJson.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/fieldKinds.h"
#include "util/common_cpp/rebuildJsonPrinter.h"
#include "util/common_cpp/verifyJsonPrinter.h"
#include "util/common_cpp/verifyFileRecords.h"
#include "util/support/jsonWriter.h"

#include <string>
#include <vector>

namespace LogsiftJson {

namespace {

using QVS::JsonWriter;
using VerifyFormat::Layout;
using namespace FieldKinds;

// The members of one object schema being made: properties in order, and
// which of them are required.
class ObjectSchema {
public:
    explicit ObjectSchema(JsonWriter& writer) : json(writer) {}

    // A property whose schema the caller writes next, as one object.
    void Property(const std::string& name, bool required = true) {
        names.push_back(name);
        if (required)
            requiredNames.push_back(name);
        json.Key(name);
    }
    // Closes "properties" and writes "required" (the caller has opened
    // "properties" with Open).
    void Open(const char* description) {
        json.BeginObject();
        json.Member("type", "object");
        if (description)
            json.Member("description", description);
        json.Key("properties");
        json.BeginObject();
    }
    void Close() {
        json.EndObject();
        json.Key("required");
        json.BeginArray(true);
        for (const std::string& name : requiredNames)
            json.String(name);
        json.EndArray();
        json.EndObject();
    }

private:
    JsonWriter& json;
    std::vector<std::string> names;
    std::vector<std::string> requiredNames;
};

void typed(JsonWriter& json, const char* type, const char* description = nullptr) {
    json.BeginObject(true);
    json.Member("type", type);
    if (description)
        json.Member("description", description);
    json.EndObject();
}

void patterned(JsonWriter& json, const char* pattern, const char* description) {
    json.BeginObject(true);
    json.Member("type", "string");
    json.Member("pattern", pattern);
    json.Member("description", description);
    json.EndObject();
}

void nullable(JsonWriter& json, const char* type, const char* description) {
    json.BeginObject(true);
    json.Key("type");
    json.BeginArray(true);
    json.String(type);
    json.String("null");
    json.EndArray();
    json.Member("description", description);
    json.EndObject();
}

void reference(JsonWriter& json, const std::string& name) {
    json.BeginObject(true);
    json.Member("$ref", "#/$defs/" + name);
    json.EndObject();
}

// An array whose items are the definition `name`.
void arrayOf(JsonWriter& json, const std::string& name) {
    json.BeginObject(true);
    json.Member("type", "array");
    json.Key("items");
    reference(json, name);
    json.EndObject();
}

const char QUANTITY[] = "a quantity (count, size or block number); when it is 2^53 or more, the "
                        "member named after it with _s also holds it as a decimal string";
const char ID_PATTERN[] = "^0x[0-9a-f]+$";
const char KEY_PATTERN[] = "^[0-9]+$";
const char GUID_PATTERN[] =
    "^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{2}-[0-9a-f]{2}-[0-9a-f]{12}$";
const char TEXT[] = "text as read; a byte that begins no valid UTF-8 character shows U+FFFD";
const char WIDE[] = "a UTF-16 name decoded to UTF-8; a surrogate without its pair shows U+FFFD";

// A quantity, described as what it counts where `description` says so.
void quantity(ObjectSchema& object, JsonWriter& json, const std::string& key,
              const char* description = nullptr, bool required = true) {
    object.Property(key, required);
    json.BeginObject(true);
    json.Member("type", "integer");
    json.Key("minimum");
    json.Unsigned(0);
    json.Member("description", description ? description : QUANTITY);
    json.EndObject();
    object.Property(key + "_s", false);
    patterned(json, "^[0-9]+$", "the quantity as a decimal string, present from 2^53 on");
}

void named(ObjectSchema& object, JsonWriter& json, const std::string& key, const char* what) {
    object.Property(key);
    typed(json, "integer", what);
    object.Property(key + "_name");
    nullable(json, "string", "its name, null where there is none");
}

void time(ObjectSchema& object, JsonWriter& json, const std::string& key) {
    object.Property(key);
    patterned(json, "^([0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z)?$",
              "ISO 8601 UTC (empty when the time cannot be shown)");
    quantity(object, json, key + "_raw");
}

// The property schemas of a verify record's field, by its kind.
void word(ObjectSchema& o, JsonWriter& j, const std::string& k, const char* what) {
    quantity(o, j, k);
    o.Property(k + "_names");
    j.BeginObject(true);
    j.Member("type", "array");
    j.Key("items");
    typed(j, "string");
    j.Member("description", what);
    j.EndObject();
}

void field(ObjectSchema& o, JsonWriter& j, const std::string& k, RecordTables::Kind kind,
           RecordTables::FieldTable const* nested) {
    using RecordTables::Kind;
    switch (kind) {
    case Kind::Quantity:
        quantity(o, j, k);
        break;
    case Kind::Signed:
        o.Property(k);
        typed(j, "integer");
        break;
    case Kind::Id:
        o.Property(k);
        patterned(j, ID_PATTERN, "an identifier in hexadecimal");
        break;
    case Kind::Key:
        o.Property(k);
        patterned(j, KEY_PATTERN, "a key in decimal");
        break;
    case Kind::Status:
        named(o, j, k, "a status number; its name from the error tables");
        break;
    case Kind::Time:
        time(o, j, k);
        break;
    case Kind::Guid:
        o.Property(k);
        patterned(j, GUID_PATTERN, "a GUID in its text form");
        break;
    case Kind::ErrorWord:
        word(o, j, k, "the texts of the error bits that are set");
        break;
    case Kind::WarningWord:
        word(o, j, k, "the texts of the warning bits that are set");
        break;
    case Kind::NameType:
        quantity(o, j, k);
        o.Property(k + "_name");
        typed(j, "string", "File, Stream, Extend, Delete or ???");
        break;
    case Kind::Encryption:
        quantity(o, j, k);
        o.Property(k + "_name");
        nullable(j, "string", "AES128 or AES256; null when not encrypted");
        break;
    case Kind::Nested:
        o.Property(k);
        reference(j, nested->record);
        break;
    case Kind::Levels:
        o.Property(k);
        j.BeginObject(true);
        j.Member("type", "array");
        j.Key("items");
        reference(j, nested->record);
        j.Member("description", "the histogram levels, 0 to 20");
        j.EndObject();
        break;
    case Kind::Wide:
        o.Property(k);
        typed(j, "string", WIDE);
        break;
    case Kind::Narrow:
        o.Property(k);
        typed(j, "string", TEXT);
        break;
    case Kind::Reserved:
        break;
    }
}

void field(ObjectSchema& o, JsonWriter& j, RecordTables::Field const& f) {
    field(o, j, VerifyJson::SnakeCase(f.name), f.kind, f.nested);
}

// The properties of a record by its table.
void properties(ObjectSchema& object, JsonWriter& json, RecordTables::FieldTable const& table) {
    for (std::size_t i = 0; i < table.count; ++i)
        field(object, json, table.fields[i]);
}

void recordDefinition(JsonWriter& json, RecordTables::FieldTable const& table) {
    json.Key(table.record);
    ObjectSchema object(json);
    object.Open(nullptr);
    properties(object, json, table);
    object.Close();
}

// A section object: "section" with its constant, then what the section adds.
template <typename Extra>
void section(JsonWriter& json, const char* kind, const char* description, Extra extra) {
    ObjectSchema object(json);
    object.Open(description);
    object.Property("section");
    json.BeginObject(true);
    json.Member("const", kind);
    json.EndObject();
    extra(object);
    object.Close();
}

void listMembers(ObjectSchema& object, JsonWriter& json, const char* record) {
    quantity(object, json, "count");
    object.Property("rows");
    arrayOf(json, record);
}

void statusMembers(ObjectSchema& object, JsonWriter& json, const char* key) {
    named(object, json, key, "a status number, 0 for success; its zERR_ name");
}

void endedBy(ObjectSchema& object, JsonWriter& json, const char* description) {
    object.Property("ended_by", false);
    json.BeginObject(true);
    json.Key("enum");
    json.BeginArray(true);
    for (const char* ending :
         {RebuildJsonPrinter::END_OF_LIST, RebuildJsonPrinter::DAMAGED_ITEM,
          RebuildJsonPrinter::NO_CHANNEL, RebuildJsonPrinter::OUT_OF_MEMORY,
          RebuildJsonPrinter::FAILURE})
        json.String(ending);
    json.EndArray();
    json.Member("description", description);
    json.EndObject();
}

void errorDefinition(JsonWriter& json) {
    json.Key("error");
    ObjectSchema object(json);
    object.Open("why the document ends before the file's end: a damaged file, or a walk "
                "that could not be completed");
    statusMembers(object, json, "status");
    object.Property("message");
    typed(json, "string");
    object.Property("offset");
    nullable(json, "integer", "where in the file reading stopped (for a rebuild log, in its "
                              "text as read); null when it did not stop at a place");
    object.Close();
}

void fileDefinition(JsonWriter& json) {
    json.Key("file");
    ObjectSchema object(json);
    object.Open("the file read");
    object.Property("path");
    nullable(json, "string", "null when the newest-file search found none");
    object.Property("size");
    nullable(json, "integer", "bytes; null when not a regular file");
    object.Property("pool", false);
    typed(json, "string", "vbfn and rtfn: the pool searched for");
    object.Property("directory", false);
    typed(json, "string", "vbfn and rtfn: the RAV directory searched");
    object.Close();
}

// The members every document begins with.
void commonMembers(ObjectSchema& object, JsonWriter& json, const char* kind) {
    object.Property("schema_version");
    json.BeginObject(true);
    json.Member("const", SCHEMA_VERSION);
    json.EndObject();
    object.Property("program");
    json.BeginObject(true);
    json.Member("const", "logsift-json");
    json.EndObject();
    object.Property("version");
    typed(json, "string");
    object.Property("kind");
    json.BeginObject(true);
    json.Member("const", kind);
    json.EndObject();
    object.Property("file");
    reference(json, "file");
}

void tailMembers(ObjectSchema& object, JsonWriter& json) {
    object.Property("reader_messages", false);
    json.BeginObject(true);
    json.Member("type", "array");
    json.Key("items");
    typed(json, "string");
    json.Member("description", "the reader's own messages, as logsift prints them");
    json.EndObject();
    object.Property("error", false);
    reference(json, "error");
}

void verifyDocument(JsonWriter& json) {
    json.Key("verify_report");
    ObjectSchema object(json);
    object.Open("a verify report");
    commonMembers(object, json, "verify_report");
    object.Property("crc");
    json.BeginObject(true);
    json.Key("type");
    json.BeginArray(true);
    json.String("object");
    json.String("null");
    json.EndArray();
    json.Member("description", "stored and computed CRC-32 (hexadecimal) and whether they match; "
                               "null when the file could not be read whole");
    json.EndObject();
    object.Property("sections", false);
    json.BeginObject();
    json.Member("type", "array");
    json.Member("description", "one object per section, in file order");
    json.Key("items");
    json.BeginObject();
    json.Key("oneOf");
    json.BeginArray();
    section(json, "status_summary", "the overall status and the verdict drawn from it",
            [&](ObjectSchema& s) {
                properties(s, json, Layout<ZVP_Status_s>::TABLE);
                s.Property("verdict");
                ObjectSchema verdict(json);
                verdict.Open(nullptr);
                verdict.Property("status_valid");
                typed(json, "boolean");
                verdict.Property("final_status_valid");
                typed(json, "boolean");
                verdict.Property("pool_condition_determined");
                typed(json, "boolean");
                statusMembers(verdict, json, "result");
                verdict.Close();
            });
    section(json, "pool", "the pool's statistics", [&](ObjectSchema& s) {
        properties(s, json, Layout<ZVP_PoolStats_s>::TABLE);
    });
    section(json, "volume", "one volume's statistics", [&](ObjectSchema& s) {
        properties(s, json, Layout<ZVP_LVStats_s>::TABLE);
    });
    section(json, "actions", "the action list",
            [&](ObjectSchema& s) { listMembers(s, json, "RAV_Action_s"); });
    section(json, "conflicts", "the cross-linked block list",
            [&](ObjectSchema& s) { listMembers(s, json, "BlockConflicts_s"); });
    section(json, "skipped_volumes", "the skipped-volume list",
            [&](ObjectSchema& s) { listMembers(s, json, "LVSkipped_s"); });
    section(json, "problem_list", "a variable-data problem list", [&](ObjectSchema& s) {
        s.Property("kind");
        json.BeginObject(true);
        json.Member("type", "string");
        json.Member("description", "the kind of list, which names its rows' schema");
        json.EndObject();
        s.Property("title");
        typed(json, "string");
        quantity(s, json, "count");
        s.Property("rows");
        json.BeginObject(true);
        json.Member("type", "array");
        json.Member("description", "the rows read, one object each (see the list kinds)");
        json.EndObject();
        s.Property("complete", false);
        typed(json, "boolean",
              "false when reading stopped inside the list (the file ended there, or memory "
              "ran out)");
    });
    json.EndArray();
    // Each kind of problem list has rows of its own record.
    json.Key("allOf");
    json.BeginArray();
    for (VerifyFormat::ListType const& type : VerifyFormat::VARIABLE_LISTS) {
        json.BeginObject(true);
        json.Key("if");
        json.BeginObject(true);
        json.Key("properties");
        json.BeginObject(true);
        json.Key("kind");
        json.BeginObject(true);
        json.Member("const", type.kind);
        json.EndObject();
        json.EndObject();
        json.Key("required");
        json.BeginArray(true);
        json.String("kind");
        json.EndArray();
        json.EndObject();
        json.Key("then");
        json.BeginObject(true);
        json.Key("properties");
        json.BeginObject(true);
        json.Key("rows");
        json.BeginObject(true);
        json.Key("items");
        reference(json, type.record);
        json.EndObject();
        json.EndObject();
        json.EndObject();
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.EndObject();
    object.Property("totals", false);
    ObjectSchema totals(json);
    totals.Open(nullptr);
    quantity(totals, json, "sections", "the objects of \"sections\"");
    quantity(totals, json, "volumes", "the volume sections read");
    quantity(totals, json, "list_rows",
             "deprecated: the same as problem_list_rows, which it counts, despite its name",
             false);
    quantity(totals, json, "problem_list_rows",
             "the rows read of every variable-data problem list", false);
    quantity(totals, json, "action_rows", "the rows of the action list", false);
    quantity(totals, json, "conflict_rows", "the rows of the cross-linked block list", false);
    quantity(totals, json, "skipped_volume_rows", "the rows of the skipped-volume list", false);
    totals.Close();
    object.Property("outcome");
    ObjectSchema outcome(json);
    outcome.Open("the reader's status");
    statusMembers(outcome, json, "status");
    outcome.Property("errors_found", false);
    typed(json, "boolean", "the pool's or a volume's error word is not zero");
    outcome.Close();
    tailMembers(object, json);
    object.Close();
}

// The properties of a rebuild log item, by its table: as a verify record's
// field of the same kind, but for the kinds only items have (and a ZID).
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, FieldKinds::Key) {
    field(o, j, k, RecordTables::Kind::Key, nullptr);
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, FieldKinds::Quantity) {
    field(o, j, k, RecordTables::Kind::Quantity, nullptr);
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, FieldKinds::NameType) {
    field(o, j, k, RecordTables::Kind::NameType, nullptr);
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, FieldKinds::Guid) {
    field(o, j, k, RecordTables::Kind::Guid, nullptr);
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, FieldKinds::Time) {
    field(o, j, k, RecordTables::Kind::Time, nullptr);
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, Id) {
    o.Property(k);
    patterned(j, ID_PATTERN, "a ZID in hexadecimal");
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, Text) {
    o.Property(k);
    typed(j, "string", TEXT);
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, Severity) {
    quantity(o, j, k);
    o.Property(k + "_name");
    nullable(j, "string", "warning, info, error, fatal or action_required");
}
void itemField(ObjectSchema& o, JsonWriter& j, const std::string& k, NameSpace) {
    quantity(o, j, k);
    o.Property(k + "_separator");
    typed(j, "string", "what stands between a looked-up path and the logged name");
}
#define ITEM_SCHEMA_FIELD(accessor, kind, name) itemField(object, json, name, kind{});

void rebuildDocument(JsonWriter& json) {
    json.Key("rebuild_log");
    ObjectSchema object(json);
    object.Open("a rebuild log");
    commonMembers(object, json, "rebuild_log");
    object.Property("lookups");
    typed(json, "boolean", "whether the TOD items' names were asked of the storage system");
    object.Property("messages");
    arrayOf(json, "message_item");
    object.Property("message_walk", false);
    reference(json, "walk");
    object.Property("tod_items");
    arrayOf(json, "tod_item");
    object.Property("tod_walk", false);
    reference(json, "walk");
    object.Property("action_items");
    arrayOf(json, "action_item");
    object.Property("action_walk", false);
    reference(json, "action_walk");
    object.Property("totals");
    ObjectSchema totals(json);
    totals.Open(nullptr);
    quantity(totals, json, "messages", "the message items read");
    quantity(totals, json, "tod_items",
             "the TOD items read, the ignored ones included (tod_items lists them all)");
    quantity(totals, json, "ignored_tod_items",
             "the TOD items of reason 6 (visibility cleanup), which logsift does not show");
    quantity(totals, json, "action_items", "the action items read and listed");
    quantity(totals, json, "unreadable_action_items",
             "the action items passed over because they could not be read", false);
    totals.Close();
    object.Property("outcome");
    ObjectSchema outcome(json);
    outcome.Open("the first status that ended a walk or that an action item gave, 0 when every "
                 "walk reached its list's end and every item was read");
    statusMembers(outcome, json, "status");
    outcome.Close();
    tailMembers(object, json);
    object.Close();
}

void itemDefinitions(JsonWriter& json) {
    {
        json.Key("message_item");
        ObjectSchema object(json);
        object.Open("a message of the rebuild");
        MESSAGE_ITEM_FIELDS(ITEM_SCHEMA_FIELD)
        object.Close();
    }
    {
        json.Key("tod_item");
        ObjectSchema object(json);
        object.Open("an object that the rebuild truncated or deleted");
        TOD_ITEM_FIELDS(ITEM_SCHEMA_FIELD)
        object.Property("named");
        typed(json, "boolean");
        quantity(object, json, "action");
        object.Property("action_name");
        typed(json, "string", "TRUNCATED, DELETED, TRUSTEES TRUNCATED or UNKNOWN");
        quantity(object, json, "reason");
        object.Property("reason_name");
        typed(json, "string");
        object.Property("ignored");
        typed(json, "boolean", "a reason (6, visibility cleanup) that the viewer does not show");
        object.Property("lookup");
        json.BeginObject(true);
        json.Key("oneOf");
        json.BeginArray(true);
        typed(json, "null");
        reference(json, "lookup");
        json.EndArray();
        json.Member("description", "null without lookups, and for ignored items");
        json.EndObject();
        object.Close();
    }
    {
        json.Key("lookup");
        ObjectSchema object(json);
        object.Open("what the storage system answered for the item's name");
        object.Property("outcome");
        json.BeginObject(true);
        json.Key("enum");
        json.BeginArray(true);
        for (const char* outcome :
             {"found", "call_failed", "volume_not_found", "volume_not_active", "failed"})
            json.String(outcome);
        json.EndArray();
        json.EndObject();
        object.Property("code");
        typed(json, "integer", "the call's return code");
        statusMembers(object, json, "status");
        object.Property("retried_as_name_type_0");
        typed(json, "boolean");
        object.Property("volume_name", false);
        typed(json, "string");
        object.Property("path", false);
        typed(json, "string");
        object.Close();
    }
    {
        json.Key("action_item");
        ObjectSchema object(json);
        object.Open("an item of the action history");
        ACTION_ITEM_FIELDS(ITEM_SCHEMA_FIELD)
        object.Close();
    }
    {
        json.Key("walk");
        ObjectSchema object(json);
        object.Open("how a walk over the log's items ended");
        quantity(object, json, "count", "the items the walk found and listed");
        object.Property("ignored", false);
        json.BeginObject(true);
        json.Member("type", "integer");
        json.Member("description", "the TOD walk: the items of reason 6 among them");
        json.EndObject();
        object.Property("complete", false);
        typed(json, "boolean",
              "the TOD walk: deprecated; true when the walk came to its end, at its list's end "
              "or at a damaged item, and false when it was stopped before (see ended_by)");
        endedBy(object, json, "why the walk ended: its list's end, a damaged item, a "
                              "management channel that could not be had (the TOD walk with "
                              "lookups), a lack of memory, or another failure");
        statusMembers(object, json, "status");
        object.Close();
    }
    {
        json.Key("action_walk");
        ObjectSchema object(json);
        object.Open("how the walk over the action history ended: an item that cannot be read "
                    "is passed over and reported in reader_messages");
        quantity(object, json, "count", "the action items read and listed");
        quantity(object, json, "unreadable", "the action items that could not be read");
        endedBy(object, json, "why the walk ended: the history's end, an item or a history "
                              "without its closing tag, or a lack of memory");
        statusMembers(object, json, "status");
        object.Close();
    }
}

} // namespace

void WriteSchema(std::ostream& out) {
    JsonWriter json(out);
    json.BeginObject();
    json.Member("$schema", "https://json-schema.org/draft/2020-12/schema");
    json.Member("$id", "https://logsift/logsift-json.schema.json");
    json.Member("title", "logsift-json document");
    json.Member("description",
                "One verify report or one rebuild log as read by logsift-json. Identifiers "
                "(GUIDs, ZIDs, keys) are strings; quantities are numbers, with a decimal-string "
                "twin NAME_s from 2^53 on; every enumeration is its number and its name; times "
                "are ISO 8601 UTC with the raw value beside them. A member may be added within "
                "a major schema version; none is renamed or removed.");
    json.Key("oneOf");
    json.BeginArray();
    reference(json, "verify_report");
    reference(json, "rebuild_log");
    json.EndArray();
    json.Key("$defs");
    json.BeginObject();
    verifyDocument(json);
    rebuildDocument(json);
    fileDefinition(json);
    errorDefinition(json);
    itemDefinitions(json);
    for (RecordTables::FieldTable const* table :
         {&Layout<LevelInformation_s>::TABLE, &Layout<CommonBlockStats_s>::TABLE,
          &Layout<VDBStats_s>::TABLE, &Layout<BTStats_s>::TABLE, &Layout<NTStats_s>::TABLE,
          &Layout<UBTStats_s>::TABLE, &Layout<DBTStats_s>::TABLE, &Layout<MFLStats_s>::TABLE,
          &Layout<EFLStats_s>::TABLE, &Layout<PLStats_s>::TABLE, &Layout<BTIStats_s>::TABLE,
          &Layout<RAV_Action_s>::TABLE, &Layout<BlockConflicts_s>::TABLE,
          &Layout<LVSkipped_s>::TABLE})
        recordDefinition(json, *table);
    for (VerifyFormat::ListType const& type : VerifyFormat::VARIABLE_LISTS)
        recordDefinition(json, type.fields);
    json.EndObject();
    json.EndObject();
    json.Finish();
}

} // namespace LogsiftJson
