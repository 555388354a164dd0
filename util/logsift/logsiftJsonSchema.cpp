// logsiftJsonSchema.cpp - the JSON Schema (draft 2020-12) of logsift-json's
// documents, written as data in the nesting the schema has, with every
// record's definition made from the registry's field tables, so that the
// schema in doc/ is checked against what the printers write.
#include "util/logsift/logsiftJson.h"
#include "util/logsift/poolHealth.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/fieldKinds.h"
#include "util/common_cpp/rebuildJsonPrinter.h"
#include "util/common_cpp/verifyFileRecords.h"
#include "util/common_cpp/verifyJsonPrinter.h"
#include "util/logsift/schemaValue.h"
#include "util/support/jsonWriter.h"

#include <string>
#include <vector>

namespace LogsiftJson {

namespace {

using RecordTables::FieldTable;
using RecordTables::Kind;
using SchemaValue::Block;
using SchemaValue::BlockList;
using SchemaValue::Line;
using SchemaValue::LineList;
using SchemaValue::Member;
using SchemaValue::Value;
using VerifyFormat::Layout;

const char QUANTITY[] = "a quantity (count, size or block number); when it is 2^53 or more, the "
                        "member named after it with _s also holds it as a decimal string";
const char TWIN[] = "the quantity as a decimal string, present from 2^53 on";
const char DECIMAL_PATTERN[] = "^[0-9]+$";
const char ID_PATTERN[] = "^0x[0-9a-f]+$";
const char GUID_PATTERN[] =
    "^[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{2}-[0-9a-f]{2}-[0-9a-f]{12}$";
const char TIME_PATTERN[] = "^([0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z)?$";
const char TEXT[] = "text as read; a byte that begins no valid UTF-8 character shows U+FFFD";
const char WIDE[] = "a UTF-16 name decoded to UTF-8; a surrogate without its pair shows U+FFFD";
const char STATUS[] = "a status number, 0 for success; its zERR_ name";

// ---------------------------------------------------------------- shapes

Value Typed(const char* type, const char* description = nullptr) {
    return Line({{"type", type}, {"description", description}});
}

Value Patterned(const char* pattern, const char* description) {
    return Line({{"type", "string"}, {"pattern", pattern}, {"description", description}});
}

Value Nullable(const char* type, const char* description) {
    return Line({{"type", LineList({type, "null"})}, {"description", description}});
}

Value Ref(const std::string& name) { return Line({{"$ref", "#/$defs/" + name}}); }

Value ArrayOf(const std::string& name) { return Line({{"type", "array"}, {"items", Ref(name)}}); }

Value Const(const char* value) { return Line({{"const", value}}); }

Value Enum(std::vector<Value> values, const char* description = nullptr) {
    return Line({{"enum", LineList(std::move(values))}, {"description", description}});
}

// The properties of an object schema, in order, each required or not.
struct Property {
    std::string name;
    Value schema;
    bool required;
};
using Properties = std::vector<Property>;

Properties operator+(Properties first, Properties const& more) {
    first.insert(first.end(), more.begin(), more.end());
    return first;
}

Properties P(std::string name, Value schema, bool required = true) {
    return {Property{std::move(name), std::move(schema), required}};
}

Value ObjectOf(const char* description, Properties const& properties) {
    std::vector<Member> members;
    std::vector<Value> required;
    for (Property const& p : properties) {
        members.emplace_back(p.name, p.schema);
        if (p.required)
            required.emplace_back(p.name);
    }
    return Block({{"type", "object"},
                  {"description", description},
                  {"properties", Block(std::move(members))},
                  {"required", LineList(std::move(required))}});
}

// A quantity and its decimal twin, described as what it counts where
// `description` says so.
Properties Quantity(const std::string& key, const char* description = nullptr,
                    bool required = true) {
    return P(key,
             Line({{"type", "integer"},
                   {"minimum", Value::Integer(0)},
                   {"description", description ? description : QUANTITY}}),
             required) +
           P(key + "_s", Patterned(DECIMAL_PATTERN, TWIN), false);
}

// A number and its name.
Properties Named(const std::string& key, const char* what) {
    return P(key, Typed("integer", what)) +
           P(key + "_name", Nullable("string", "its name, null where there is none"));
}

Properties StatusOf(const std::string& key) { return Named(key, STATUS); }

Properties Time(const std::string& key) {
    return P(key, Patterned(TIME_PATTERN, "ISO 8601 UTC (empty when the time cannot be shown)")) +
           Quantity(key + "_raw");
}

Properties Word(const std::string& key, const char* what) {
    return Quantity(key) + P(key + "_names", Line({{"type", "array"},
                                                    {"items", Typed("string")},
                                                    {"description", what}}));
}

// The members of a field of `kind` named `key`.
Properties FieldMembers(const std::string& key, Kind kind, FieldTable const* nested) {
    switch (kind) {
    case Kind::Quantity:
        return Quantity(key);
    case Kind::Signed:
        return P(key, Typed("integer"));
    case Kind::Id:
        return P(key, Patterned(ID_PATTERN, "an identifier in hexadecimal"));
    case Kind::Key:
        return P(key, Patterned(DECIMAL_PATTERN, "a key in decimal"));
    case Kind::Status:
        return Named(key, "a status number; its name from the error tables");
    case Kind::Time:
        return Time(key);
    case Kind::Guid:
        return P(key, Patterned(GUID_PATTERN, "a GUID in its text form"));
    case Kind::NameType:
        return Quantity(key) +
               P(key + "_name", Typed("string", "File, Stream, Extend, Delete or ???"));
    case Kind::ErrorWord:
        return Word(key, "the texts of the error bits that are set");
    case Kind::WarningWord:
        return Word(key, "the texts of the warning bits that are set");
    case Kind::Encryption:
        return Quantity(key) +
               P(key + "_name", Nullable("string", "AES128 or AES256; null when not encrypted"));
    case Kind::Nested:
        return P(key, Ref(nested->record));
    case Kind::Levels:
        return P(key, Line({{"type", "array"},
                            {"items", Ref(nested->record)},
                            {"description", "the histogram levels, 0 to 20"}}));
    case Kind::Wide:
        return P(key, Typed("string", WIDE));
    case Kind::Narrow:
        return P(key, Typed("string", TEXT));
    case Kind::Reserved:
        break;
    }
    return {};
}

// Every field of a record, by its table.
Properties FieldsOf(FieldTable const& table) {
    Properties properties;
    for (std::size_t i = 0; i < table.count; ++i) {
        RecordTables::Field const& f = table.fields[i];
        properties = properties + FieldMembers(VerifyJson::SnakeCase(f.name), f.kind, f.nested);
    }
    return properties;
}

Member RecordDefinition(FieldTable const& table) {
    return {table.record, ObjectOf(nullptr, FieldsOf(table))};
}

// A section object: "section" with its constant, then what the section adds.
Value Section(const char* kind, const char* description, Properties const& extra) {
    return ObjectOf(description, P("section", Const(kind)) + extra);
}

Properties ListMembers(const char* record) {
    return Quantity("count") + P("rows", ArrayOf(record));
}

// A walk's ending, as the printers name it.
Properties EndedBy(const char* description) {
    return P("ended_by",
             Enum({RebuildJsonPrinter::END_OF_LIST, RebuildJsonPrinter::DAMAGED_ITEM,
                   RebuildJsonPrinter::NO_CHANNEL, RebuildJsonPrinter::OUT_OF_MEMORY,
                   RebuildJsonPrinter::FAILURE, RebuildJsonPrinter::END_OF_TEXT},
                  description),
             false) +
           Quantity("text_end",
                    "present when the walk ended at the end of what a log that is still being "
                    "written holds (ended_by end_of_text): the length of its text",
                    false);
}

// The members of a rebuild log item's field, by its kind: as a verify
// record's field of the same kind, but for the kinds only items have (and a
// ZID).
Properties ItemMembers(const char* key, FieldKinds::Key) {
    return FieldMembers(key, Kind::Key, nullptr);
}
Properties ItemMembers(const char* key, FieldKinds::Quantity) {
    return FieldMembers(key, Kind::Quantity, nullptr);
}
Properties ItemMembers(const char* key, FieldKinds::NameType) {
    return FieldMembers(key, Kind::NameType, nullptr);
}
Properties ItemMembers(const char* key, FieldKinds::Guid) {
    return FieldMembers(key, Kind::Guid, nullptr);
}
Properties ItemMembers(const char* key, FieldKinds::Time) {
    return FieldMembers(key, Kind::Time, nullptr);
}
Properties ItemMembers(const char* key, FieldKinds::Id) {
    return P(key, Patterned(ID_PATTERN, "a ZID in hexadecimal"));
}
Properties ItemMembers(const char* key, FieldKinds::Text) { return P(key, Typed("string", TEXT)); }
Properties ItemMembers(const char* key, FieldKinds::Severity) {
    return Quantity(key) + P(std::string(key) + "_name",
                             Nullable("string", "warning, info, error, fatal or action_required"));
}
Properties ItemMembers(const char* key, FieldKinds::NameSpace) {
    return Quantity(key) +
           P(std::string(key) + "_separator",
             Typed("string", "what stands between a looked-up path and the logged name"));
}

// Every field of an item, by the item's table (a list of F(getter, kind,
// name) entries, actionHistory.h).
struct ItemFields {
    Properties properties;
    template <typename Kind> void Add(const char* name, Kind kind) {
        properties = properties + ItemMembers(name, kind);
    }
};
// The item tables are lists of macro calls (see actionHistory.h); this is
// what each entry adds to the schema.
#define ITEM_SCHEMA_FIELD(getter, kind, name) fields.Add(name, FieldKinds::kind{});

Properties MessageItemFields() {
    ItemFields fields;
    MESSAGE_ITEM_FIELDS(ITEM_SCHEMA_FIELD)
    return fields.properties;
}

Properties TODItemFields() {
    ItemFields fields;
    TOD_ITEM_FIELDS(ITEM_SCHEMA_FIELD)
    return fields.properties;
}

Properties ActionItemFields() {
    ItemFields fields;
    ACTION_ITEM_FIELDS(ITEM_SCHEMA_FIELD)
    return fields.properties;
}
#undef ITEM_SCHEMA_FIELD

// ---------------------------------------------------------------- the documents

// An enumeration of the words of one of the pool health's tables.
Value WordsOf(const std::vector<PoolHealth::Word>& words, const char* description) {
    std::vector<Value> values;
    for (const PoolHealth::Word& word : words)
        values.push_back(word.word);
    return Enum(std::move(values), description);
}

// The members every document begins with; a document of one file then
// names it. And those it ends with.
Properties Header(const char* kind) {
    return P("schema_version",
             Patterned("^1\\.[0-9]+$", "1.MINOR: a later minor version only adds members")) +
           P("program", Const("logsift-json")) + P("version", Typed("string")) +
           P("kind", Const(kind));
}

Properties Opening(const char* kind) { return Header(kind) + P("file", Ref("file")); }

Properties Closing() {
    return P("reader_messages",
             Line({{"type", "array"},
                   {"items", Typed("string")},
                   {"description", "the reader's own messages, as logsift prints them"}}),
             false) +
           P("error", Ref("error"), false);
}

// Each kind of problem list has rows of its own record.
Value ListRowRules() {
    std::vector<Value> rules;
    for (VerifyFormat::ListType const& type : VerifyFormat::VARIABLE_LISTS)
        rules.push_back(Line({
            {"if", Line({{"properties", Line({{"kind", Const(type.kind)}})},
                         {"required", LineList({"kind"})}})},
            {"then", Line({{"properties", Line({{"rows", Line({{"items", Ref(type.record)}})}})}})},
        }));
    return BlockList(std::move(rules));
}

Value VerifyDocument() {
    return ObjectOf(
        "a verify report",
        Opening("verify_report") +
            P("crc", Nullable("object", "stored and computed CRC-32 (hexadecimal) and whether "
                                        "they match; null when the file could not be read whole")) +
            P("sections",
              Block({
                  {"type", "array"},
                  {"description", "one object per section, in file order"},
                  {"items",
                   Block({
                       {"oneOf",
                        BlockList({
                            Section(Layout<ZVP_Status_s>::SECTION,
                                    "the overall status and the verdict drawn from it",
                                    FieldsOf(Layout<ZVP_Status_s>::TABLE) +
                                        P("verdict",
                                          ObjectOf(nullptr,
                                                   P("status_valid", Typed("boolean")) +
                                                       P("final_status_valid", Typed("boolean")) +
                                                       P("pool_condition_determined",
                                                         Typed("boolean")) +
                                                       StatusOf("result")))),
                            Section(Layout<ZVP_PoolStats_s>::SECTION, "the pool's statistics",
                                    FieldsOf(Layout<ZVP_PoolStats_s>::TABLE)),
                            Section(Layout<ZVP_LVStats_s>::SECTION, "one volume's statistics",
                                    FieldsOf(Layout<ZVP_LVStats_s>::TABLE)),
                            Section(Layout<RAV_Action_s>::SECTION, "the action list",
                                    ListMembers("RAV_Action_s")),
                            Section(Layout<BlockConflicts_s>::SECTION,
                                    "the cross-linked block list",
                                    ListMembers("BlockConflicts_s")),
                            Section(Layout<LVSkipped_s>::SECTION, "the skipped-volume list",
                                    ListMembers("LVSkipped_s")),
                            Section("problem_list", "a variable-data problem list",
                                    P("kind", Line({{"type", "string"},
                                                    {"description", "the kind of list, which "
                                                                    "names its rows' schema"}})) +
                                        P("title", Typed("string")) + Quantity("count") +
                                        P("rows", Line({{"type", "array"},
                                                        {"description", "the rows read, one "
                                                                        "object each (see the "
                                                                        "list kinds)"}})) +
                                        P("complete",
                                          Typed("boolean", "false when reading stopped inside "
                                                           "the list (the file ended there, or "
                                                           "memory ran out)"),
                                          false)),
                        })},
                       {"allOf", ListRowRules()},
                   })},
              }),
              false) +
            P("totals",
              ObjectOf(nullptr,
                       Quantity("sections", "the objects of \"sections\"") +
                           Quantity("volumes", "the volume sections read") +
                           Quantity("list_rows",
                                    "deprecated: the same as problem_list_rows, which it "
                                    "counts, despite its name",
                                    false) +
                           Quantity("problem_list_rows",
                                    "the rows read of every variable-data problem list", false) +
                           Quantity("action_rows", "the rows of the action list", false) +
                           Quantity("conflict_rows", "the rows of the cross-linked block list",
                                    false) +
                           Quantity("skipped_volume_rows", "the rows of the skipped-volume list",
                                    false)),
              false) +
            P("verdict",
              WordsOf(PoolHealth::Verdicts(),
                      "the report's verdict, as its summary and logsift-status give it"),
              false) +
            P("outcome",
              ObjectOf("the reader's status",
                       StatusOf("status") +
                           P("errors_found",
                             Typed("boolean", "the pool's or a volume's error word is not zero"),
                             false))) +
            Closing());
}

Value RebuildDocument() {
    return ObjectOf(
        "a rebuild log",
        Opening("rebuild_log") +
            P("lookups",
              Typed("boolean", "whether the TOD items' names were asked of the storage system")) +
            P("messages", ArrayOf("message_item")) + P("message_walk", Ref("walk"), false) +
            P("tod_items", ArrayOf("tod_item")) + P("tod_walk", Ref("walk"), false) +
            P("lookup_failure",
              ObjectOf("present when names were to be asked and no management channel could be "
                       "had: every TOD item is listed all the same, its lookup not_asked",
                       StatusOf("status") + P("message", Typed("string"))),
              false) +
            P("action_items", ArrayOf("action_item")) +
            P("action_walk", Ref("action_walk"), false) +
            P("finished",
              Nullable("boolean", "whether the log's root element is closed: false for a "
                                  "rebuild still writing it, whose walks end where its text "
                                  "ends; null when the log could not be loaded"),
              false) +
            P("totals",
              ObjectOf(nullptr,
                       Quantity("messages", "the message items read") +
                           Quantity("tod_items", "the TOD items read, the ignored ones included "
                                                 "(tod_items lists them all)") +
                           Quantity("ignored_tod_items",
                                    "the TOD items of reason 6 (visibility cleanup), which "
                                    "logsift does not show") +
                           Quantity("action_items", "the action items read and listed") +
                           Quantity("unreadable_action_items",
                                    "the action items passed over because they could not be "
                                    "read",
                                    false))) +
            P("outcome",
              ObjectOf("the first status that ended a walk or that an action item gave, 0 when "
                       "every walk reached its list's end and every item was read",
                       StatusOf("status"))) +
            Closing());
}

// The closing members of a summary: its outcome and its error.
Properties SummaryClosing(bool verify) {
    Properties outcome = StatusOf("status");
    if (verify)
        outcome = outcome + P("errors_found", Typed("boolean", "the report found errors"));
    return P("outcome", ObjectOf("the reader's status", outcome)) + P("error", Ref("error"), false);
}

// The TOD items shown, by the action the text names for each.
Value ActionCounts() {
    Properties counts;
    for (unsigned action = 0; action < TODItem::ACTION_COUNT; ++action)
        counts = counts + Quantity(TODItem::ACTION_NAMES[action]);
    return ObjectOf("the TOD items shown (not ignored), by the action the text names for each: "
                    "they add up to the items listed",
                    counts);
}

Value VerifySummaryDocument() {
    return ObjectOf(
        "a verify report's summary (logsift-json --summary): its counts and its verdict, no "
        "rows",
        Opening("verify_summary") +
            P("summary",
              ObjectOf(nullptr,
                       P("verdict", WordsOf(PoolHealth::Verdicts(), nullptr)) +
                           P("status_read", Typed("boolean", "the status summary was read")) +
                           P("finished", Typed("boolean", "the final status is valid")) +
                           P("pool_condition_determined", Typed("boolean")) +
                           Time("verify_start_time") + Time("verify_end_time") +
                           Quantity("volumes", "the volume sections read") +
                           Quantity("errors", "the error conditions of the pool and its volumes") +
                           Quantity("warnings", "the warning conditions, likewise") +
                           Quantity("problem_lists", "the variable-data problem lists read") +
                           Quantity("problem_rows", "their rows read") +
                           P("crc_matches",
                             Nullable("boolean", "whether the report's bytes give its CRC; null "
                                                 "when it could not be read to its end"),
                             false))) +
            SummaryClosing(true));
}

Value RebuildSummaryDocument() {
    return ObjectOf(
        "a rebuild log's summary (logsift-json --summary): its counts, no items, no names asked; "
        "its time is the file's modification time (the log holds none of its own)",
        Opening("rebuild_summary") +
            P("summary",
              ObjectOf(nullptr,
                       P("loaded", Typed("boolean", "the log could be loaded")) +
                           P("finished",
                             Nullable("boolean", "whether the log's root element is closed; "
                                                 "null when it could not be loaded"),
                             false) +
                           P("state", WordsOf(PoolHealth::LogStates(), nullptr), false) +
                           Time("modified") +
                           Quantity("messages", "the message items") +
                           Quantity("tod_items", "the TOD items, the ignored ones included") +
                           Quantity("ignored_tod_items", "the TOD items of reason 6") +
                           Quantity("truncated", "the TOD items whose flag says truncated") +
                           Quantity("deleted", "the TOD items whose flag says deleted") +
                           P("actions", ActionCounts(), false))) +
            SummaryClosing(false));
}

Value PoolsDocument() {
    return ObjectOf(
        "every pool's newest file of one type (vbfn or rtfn without a pool)",
        Header("pools") + P("file_type", Enum({"vbfn", "rtfn"})) +
            P("directory", Typed("string", "the RAV directory read")) +
            P("summary", Typed("boolean", "whether the pools' documents are summaries")) +
            P("pools",
              Line({{"type", "object"},
                    {"description", "keyed by pool name: the document that pool alone would "
                                    "give"},
                    {"additionalProperties",
                     Line({{"oneOf", LineList({Ref("verify_report"), Ref("rebuild_log"),
                                               Ref("verify_summary"),
                                               Ref("rebuild_summary")})}})}})) +
            P("totals", ObjectOf(nullptr, Quantity("pools", "the pools listed") +
                                              Quantity("not_read", "the pools whose document "
                                                                   "has an error") +
                                              Quantity("errors_found",
                                                       "the pools whose report found errors"))) +
            P("outcome", ObjectOf("the directory's reading, else what the pools say: 0, why "
                                  "no pool is listed, or the status of the first pool not "
                                  "read whole",
                                  StatusOf("status"))) +
            P("error", Ref("error"), false));
}

std::vector<Member> Definitions() {
    std::vector<Member> definitions = {
        {"verify_report", VerifyDocument()},
        {"rebuild_log", RebuildDocument()},
        {"verify_summary", VerifySummaryDocument()},
        {"rebuild_summary", RebuildSummaryDocument()},
        {"pools", PoolsDocument()},
        {"file",
         ObjectOf("the file read",
                  P("path", Nullable("string", "null when the newest-file search found none")) +
                      P("size", Nullable("integer", "bytes; null when not a regular file")) +
                      P("pool", Typed("string", "vbfn and rtfn: the pool searched for"), false) +
                      P("directory", Typed("string", "vbfn and rtfn: the RAV directory searched"),
                        false))},
        {"error",
         ObjectOf("why the document ends before the file's end: a damaged file, or a walk that "
                  "could not be completed",
                  StatusOf("status") + P("message", Typed("string")) +
                      P("offset", Nullable("integer", "where in the file reading stopped (for a "
                                                      "rebuild log, in its text as read); null "
                                                      "when it did not stop at a place")) +
                      P("errno", Typed("integer", "the system's error number behind it, where "
                                                  "there is one"),
                        false))},
        {"message_item", ObjectOf("a message of the rebuild", MessageItemFields())},
        {"tod_item",
         ObjectOf("an object that the rebuild truncated or deleted",
                  TODItemFields() + P("named", Typed("boolean")) + Quantity("action") +
                      P("action_name",
                        Typed("string", "TRUNCATED, DELETED, TRUSTEES TRUNCATED or UNKNOWN")) +
                      Quantity("reason") + P("reason_name", Typed("string")) +
                      P("ignored", Typed("boolean", "a reason (6, visibility cleanup) that the "
                                                    "viewer does not show")) +
                      P("lookup",
                        Line({{"oneOf", LineList({Typed("null"), Ref("lookup")})},
                              {"description", "null without lookups, and for ignored items"}})))},
        {"lookup",
         ObjectOf("what the storage system answered for the item's name",
                  P("outcome", Enum({"found", "call_failed", "volume_not_found",
                                     "volume_not_active", "failed", "not_asked"})) +
                      P("code", Typed("integer", "the call's return code")) + StatusOf("status") +
                      P("retried_as_name_type_0", Typed("boolean")) +
                      P("volume_name", Typed("string"), false) +
                      P("path", Typed("string"), false) +
                      P("message",
                        Typed("string", "not_asked: why no name could be asked (the status is "
                                        "the management channel's)"),
                        false))},
        {"action_item", ObjectOf("an item of the action history", ActionItemFields())},
        {"walk",
         ObjectOf("how a walk over the log's items ended",
                  Quantity("count", "the items the walk found and listed") +
                      P("ignored",
                        Line({{"type", "integer"},
                              {"description", "the TOD walk: the items of reason 6 among them"}}),
                        false) +
                      P("complete",
                        Typed("boolean", "the TOD walk: deprecated; true when the walk came to "
                                         "its end, at its list's end or at a damaged item, and "
                                         "false when it was stopped before (see ended_by)"),
                        false) +
                      EndedBy("why the walk ended: its list's end, a damaged item, a management "
                              "channel that could not be had (the TOD walk with lookups), a "
                              "lack of memory, another failure, or the end of what a log "
                              "still being written holds (end_of_text: an item cut by it, or "
                              "a list not closed yet)") +
                      StatusOf("status"))},
        {"action_walk",
         ObjectOf("how the walk over the action history ended: an item that cannot be read is "
                  "passed over and reported in reader_messages",
                  Quantity("count", "the action items read and listed") +
                      Quantity("unreadable", "the action items that could not be read") +
                      EndedBy("why the walk ended: the history's end, an item or a history "
                              "without its closing tag, a lack of memory, or the end of what a "
                              "log still being written holds") +
                      StatusOf("status"))},
    };
    // The records, nested ones first, then the lists' rows.
    for (FieldTable const* table :
         {&Layout<LevelInformation_s>::TABLE, &Layout<CommonBlockStats_s>::TABLE,
          &Layout<VDBStats_s>::TABLE, &Layout<BTStats_s>::TABLE, &Layout<NTStats_s>::TABLE,
          &Layout<UBTStats_s>::TABLE, &Layout<DBTStats_s>::TABLE, &Layout<MFLStats_s>::TABLE,
          &Layout<EFLStats_s>::TABLE, &Layout<PLStats_s>::TABLE, &Layout<BTIStats_s>::TABLE,
          &Layout<RAV_Action_s>::TABLE, &Layout<BlockConflicts_s>::TABLE,
          &Layout<LVSkipped_s>::TABLE})
        definitions.push_back(RecordDefinition(*table));
    for (VerifyFormat::ListType const& type : VerifyFormat::VARIABLE_LISTS)
        definitions.push_back(RecordDefinition(type.fields));
    return definitions;
}

} // namespace

void WriteSchema(std::ostream& out) {
    const Value schema = Block({
        {"$schema", "https://json-schema.org/draft/2020-12/schema"},
        {"$id", "https://logsift/logsift-json.schema.json"},
        {"title", "logsift-json document"},
        {"description",
         "One verify report or one rebuild log as read by logsift-json, its summary, or every "
         "pool's newest one. Identifiers (GUIDs, "
         "ZIDs, keys) are strings; quantities are numbers, with a decimal-string twin NAME_s "
         "from 2^53 on; every enumeration is its number and its name; times are ISO 8601 UTC "
         "with the raw value beside them. A member may be added within a major schema "
         "version; none is renamed or removed."},
        {"oneOf", BlockList({Ref("verify_report"), Ref("rebuild_log"), Ref("verify_summary"),
                             Ref("rebuild_summary"), Ref("pools")})},
        {"$defs", Block(Definitions())},
    });
    QVS::JsonWriter json(out);
    schema.Write(json);
    json.Finish();
}

} // namespace LogsiftJson
