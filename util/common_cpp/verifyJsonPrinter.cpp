// verifyJsonPrinter.cpp - the verify report as JSON, field by field from the
// records' tables.
#include "util/common_cpp/verifyJsonPrinter.h"

#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyFileOutput.h"
#include "util/support/memoryReserve.h"
#include "util/support/qvsError.h"
#include "util/support/qvsLib.h"

#include <cctype>
#include <charconv>
#include <cstring>
#include <ctime>
#include <type_traits>

namespace VerifyJson {

std::string SnakeCase(char const* fieldName) {
    std::string name;
    for (char const* p = fieldName; *p != '\0'; ++p) {
        const unsigned char c = static_cast<unsigned char>(*p);
        const bool afterLetter = p != fieldName && std::isalpha(static_cast<unsigned char>(p[-1]));
        if (std::isupper(c)) {
            // A run of capitals is one word: "missingParentsInNT" ends "_in_nt".
            if (p != fieldName && !std::isupper(static_cast<unsigned char>(p[-1])))
                name.push_back('_');
            name.push_back(static_cast<char>(std::tolower(c)));
        } else if (std::isdigit(c) && afterLetter) {
            name.push_back('_');
            name.push_back(static_cast<char>(c));
        } else {
            name.push_back(static_cast<char>(c));
        }
    }
    return name;
}

namespace {

const uint32_t REPLACEMENT_CHARACTER = 0xFFFD;

} // namespace

std::string WideName(unsigned char const* field, std::size_t units) {
    // Four bytes a unit at the most, made in place and cut to size once.
    std::string name(4 * units, '\0');
    std::size_t length = 0;
    auto unitAt = [field](std::size_t i) {
        return static_cast<uint32_t>(field[2 * i] | (field[2 * i + 1] << 8));
    };
    for (std::size_t i = 0; i < units; ++i) {
        const uint32_t u = unitAt(i);
        if (u == 0)
            break;
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < units) {
            const uint32_t low = unitAt(i + 1);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                length += QVS::EncodeUtf8(0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00),
                                          &name[length]);
                ++i;
                continue;
            }
        }
        length += QVS::EncodeUtf8(u >= 0xD800 && u <= 0xDFFF ? REPLACEMENT_CHARACTER : u,
                                  &name[length]);
    }
    name.resize(length);
    return name;
}


char const* ListKind(CBSV_NextLeafInvalidList_s const*) { return "next_leaf_invalid_list"; }
char const* ListKind(CBSV_InvalidBlockList_s const*) { return "invalid_block_list"; }
char const* ListKind(BTDS_BranchOutOfRangeZids_s const*) { return "branch_out_of_range_zids"; }
char const* ListKind(BTDS_UnreadableZid_s const*) { return "unreadable_zid"; }
char const* ListKind(BTDS_BTZnotInNT_s const*) { return "btz_not_in_nt"; }
char const* ListKind(BTDS_BTZnotInPT_s const*) { return "btz_not_in_pt"; }
char const* ListKind(BTDS_DuplicateZidsB_s const*) { return "duplicate_zids_b"; }
char const* ListKind(BTDS_DuplicateZidsL_s const*) { return "duplicate_zids_l"; }
char const* ListKind(BTDS_OutOfRangeZids_s const*) { return "out_of_range_zids"; }
char const* ListKind(BTDS_BTBadNTFiles_s const*) { return "bt_bad_nt_files"; }
char const* ListKind(BTDS_missingBeastParentEnts_s const*) { return "missing_beast_parent_ents"; }
char const* ListKind(NTDS_NTZnotInBT_s const*) { return "ntz_not_in_bt"; }
char const* ListKind(STDS_STZnotInBT_s const*) { return "stz_not_in_bt"; }
char const* ListKind(STDS_STZnotInNT_s const*) { return "stz_not_in_nt"; }
char const* ListKind(STDS_STPZnotInBT_s const*) { return "stpz_not_in_bt"; }
char const* ListKind(STDS_STPZnotInNT_s const*) { return "stpz_not_in_nt"; }
char const* ListKind(STDS_unaccBlks_s const*) { return "unacc_blks"; }

} // namespace VerifyJson

namespace {

using QVS::JsonWriter;
using namespace FieldKinds;
using JsonFields::writeField;

using FieldKeys = JsonFields::MemberKeys;

// The writers of the kinds only verify records have.
#define VF_JSON_DECLARE(Record) void writeFields(JsonWriter& json, Record const& r);
VF_JSON_DECLARE(LevelInformation_s)
VF_JSON_DECLARE(CommonBlockStats_s)
VF_JSON_DECLARE(VDBStats_s)
VF_JSON_DECLARE(BTStats_s)
VF_JSON_DECLARE(NTStats_s)
VF_JSON_DECLARE(UBTStats_s)
VF_JSON_DECLARE(DBTStats_s)
VF_JSON_DECLARE(MFLStats_s)
VF_JSON_DECLARE(EFLStats_s)
VF_JSON_DECLARE(PLStats_s)
VF_JSON_DECLARE(BTIStats_s)
VF_JSON_DECLARE(ZVP_Status_s)
VF_JSON_DECLARE(ZVP_LVStats_s)
VF_JSON_DECLARE(ZVP_PoolStats_s)
#undef VF_JSON_DECLARE

template <typename Names>
void writeWord(JsonWriter& json, FieldKeys const& k, uint64_t word, Names names) {
    JsonFields::Quantity(json, k.key, k.twin, word);
    json.QuotedKey(k.names);
    json.BeginArray(true);
    for (unsigned bit = 0; bit < 64; ++bit)
        if (word & (uint64_t{1} << bit))
            if (char const* text = names(bit))
                json.String(text);
    json.EndArray();
}

template <typename Out> void writeField(Out& json, FieldKeys const& k, uint64_t value, ErrorWord) {
    writeWord(json, k, value, ErrorTypeText);
}

template <typename Out> void writeField(Out& json, FieldKeys const& k, uint64_t value, WarningWord) {
    writeWord(json, k, value, WarningTypeText);
}

template <typename Out> void writeField(Out& json, FieldKeys const& k, uint64_t value, Encryption) {
    JsonFields::Quantity(json, k.key, k.twin, value);
    json.QuotedKey(k.name);
    if (value == VerifyFormat::ENCRYPTION_AES128)
        json.String("AES128");
    else if (value == VerifyFormat::ENCRYPTION_AES256)
        json.String("AES256");
    else
        json.Null();
}

template <typename Out, typename T> QVS_INLINE void writeField(Out& json, FieldKeys const& k, T const& value, Nested) {
    json.QuotedKey(k.key);
    json.BeginObject();
    writeFields(json, value);
    json.EndObject();
}

template <typename Out> void writeField(Out& json, FieldKeys const& k, LevelInformation_s const* levels, Levels) {
    json.QuotedKey(k.key);
    json.BeginArray();
    for (unsigned level = 0; level < VerifyFormat::HISTOGRAM_LEVELS; ++level) {
        json.BeginObject(true);
        writeFields(json, levels[level]);
        json.EndObject();
    }
    json.EndArray();
}

template <typename Out, unsigned Units>
QVS_INLINE void writeField(Out& json, FieldKeys const& k, unsigned char const* field, Wide<Units>) {
    json.QuotedKey(k.key);
    json.String(VerifyJson::WideName(field, Units));
}

template <typename Out, unsigned Size>
QVS_INLINE void writeField(Out& json, FieldKeys const& k, char const* field, Narrow<Size>) {
    json.QuotedKey(k.key);
    json.String(std::string_view(field, strnlen(field, Size)));
}

template <typename Out, typename T> void writeField(Out&, FieldKeys const&, T, Reserved) {}

// Each field of a record by its table; each member name is made once.
#define VF_JSON_FIELD(field, kind)                                                              \
    {                                                                                           \
        static const FieldKeys keys(VerifyJson::SnakeCase(#field));                                                   \
        writeField(json, keys, r.field, kind{});                                                \
    }
#define VF_JSON_DEFINE(Record)                                                                  \
    void writeFields(JsonWriter& json, Record const& r) { VF_FIELDS_##Record(VF_JSON_FIELD) }
VF_JSON_DEFINE(LevelInformation_s)
VF_JSON_DEFINE(CommonBlockStats_s)
VF_JSON_DEFINE(VDBStats_s)
VF_JSON_DEFINE(BTStats_s)
VF_JSON_DEFINE(NTStats_s)
VF_JSON_DEFINE(UBTStats_s)
VF_JSON_DEFINE(DBTStats_s)
VF_JSON_DEFINE(MFLStats_s)
VF_JSON_DEFINE(EFLStats_s)
VF_JSON_DEFINE(PLStats_s)
VF_JSON_DEFINE(BTIStats_s)
VF_JSON_DEFINE(ZVP_Status_s)
VF_JSON_DEFINE(ZVP_LVStats_s)
VF_JSON_DEFINE(ZVP_PoolStats_s)
#undef VF_JSON_DEFINE

// A row of a list: one line, written in place (a list may hold millions).
#define VF_JSON_ROW(Record)                                                                     \
    void writeRow(JsonWriter& writer, Record const& r) {                                        \
        JsonWriter::Row json(writer);                                                           \
        VF_FIELDS_##Record(VF_JSON_FIELD) json.End();                                           \
    }
VF_JSON_ROW(RAV_Action_s)
VF_JSON_ROW(BlockConflicts_s)
VF_JSON_ROW(LVSkipped_s)
VF_VARIABLE_RECORDS(VF_JSON_ROW)
#undef VF_JSON_ROW
#undef VF_JSON_FIELD

template <typename List> void writeList(JsonWriter& json, List const& list) {
    json.Quantity("count", list.count);
    json.Key("rows");
    json.BeginArray();
    for (auto const& record : list.records) {
        QVS::MemoryReserve::Check();
        writeRow(json, record);
    }
    json.EndArray();
}

} // namespace

VerifyJsonPrinter::VerifyJsonPrinter(JsonWriter& writer) : json(writer), depth(writer.Depth()) {}

VerifyJsonPrinter::~VerifyJsonPrinter() = default;

void VerifyJsonPrinter::BeginSection(char const* kind) {
    // Between two sections: where the work can stop with the document whole.
    QVS::MemoryReserve::Check();
    ++sections;
    json.BeginObject();
    json.Member("section", kind);
}

void VerifyJsonPrinter::Status(ZVP_Status_s const& status) {
    BeginSection("status_summary");
    writeFields(json, status);
    // The verdict the report draws from them.
    const int results = VerifyResults(status);
    json.Key("verdict");
    json.BeginObject();
    json.Member("status_valid", status.statusValid != 0);
    json.Member("final_status_valid", status.finalStatusValid != 0);
    json.Member("pool_condition_determined", results == 0);
    JsonFields::StatusMember(json, "result", results);
    json.EndObject();
    json.EndObject();
}

void VerifyJsonPrinter::Pool(ZVP_PoolStats_s const& pool) {
    BeginSection("pool");
    writeFields(json, pool);
    json.EndObject();
    if (pool.errors != 0)
        errorsFound = true;
}

void VerifyJsonPrinter::Volume(ZVP_LVStats_s const& volume) {
    ++volumes;
    BeginSection("volume");
    writeFields(json, volume);
    json.EndObject();
    if (volume.errors != 0)
        errorsFound = true;
}

void VerifyJsonPrinter::Actions(ActionStats const& list) {
    BeginSection("actions");
    actionRows += list.records.size();
    writeList(json, list);
    json.EndObject();
}

void VerifyJsonPrinter::Conflicts(ConflictBlocksStats const& list) {
    BeginSection("conflicts");
    conflictRows += list.records.size();
    writeList(json, list);
    json.EndObject();
}

void VerifyJsonPrinter::Skipped(LVSkippedStats const& list) {
    BeginSection("skipped_volumes");
    skippedVolumeRows += list.records.size();
    writeList(json, list);
    json.EndObject();
}

void VerifyJsonPrinter::BeginList(char const* kind, char const* title, uint32_t count) {
    BeginSection("problem_list");
    json.Member("kind", kind);
    json.Member("title", title);
    json.Quantity("count", count);
    json.Key("rows");
    json.BeginArray();
    listOpen = true;
}

#define VF_JSON_LIST_METHODS(Record)                                                            \
    void VerifyJsonPrinter::ListStart(char const* title, uint32_t count, Record const* none) {  \
        BeginList(VerifyJson::ListKind(none), title, count);                                                \
    }                                                                                           \
    void VerifyJsonPrinter::ListRow(Record const& row) {                                        \
        QVS::MemoryReserve::Check();                                                            \
        ++problemListRows;                                                                      \
        writeRow(json, row);                                                                    \
    }
VF_VARIABLE_RECORDS(VF_JSON_LIST_METHODS)
#undef VF_JSON_LIST_METHODS

void VerifyJsonPrinter::ListEnd() {
    json.EndArray();
    json.Member("complete", true);
    json.EndObject();
    listOpen = false;
}

void VerifyJsonPrinter::Close() {
    if (listOpen) {
        // Down to the list's rows array: its section object, then the rows.
        json.CloseTo(depth + 2);
        json.EndArray();
        json.Member("complete", false);
        json.EndObject();
        listOpen = false;
    }
    json.CloseTo(depth);
}
