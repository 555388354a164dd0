// verifyJsonPrinter.cpp - the verify report as JSON, field by field from the
// records' tables.
#include "util/common_cpp/verifyJsonPrinter.h"

#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyNames.h"
#include "util/support/memoryReserve.h"
#include "util/support/qvsLib.h"

#include <array>
#include <cctype>
#include <cstring>
#include <map>
#include <vector>

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


} // namespace VerifyJson

namespace {

using QVS::JsonWriter;
using namespace VerifyFormat;
using FieldKeys = JsonFields::MemberKeys;
using JsonFields::writeField;

const unsigned char* bytes(void const* record) { return static_cast<const unsigned char*>(record); }

// The member names of every field of a table, made once.
std::vector<FieldKeys> keysOf(FieldTable const& table) {
    std::vector<FieldKeys> keys;
    keys.reserve(table.count);
    for (std::size_t i = 0; i < table.count; ++i)
        keys.emplace_back(VerifyJson::SnakeCase(table.fields[i].name));
    return keys;
}

// A number of 1 to 8 bytes of a record, copied, never read in place.
uint64_t loadUnsigned(const unsigned char* at, uint32_t size) {
    uint64_t value = 0;
    std::memcpy(&value, at, size);
    return value;
}

template <typename Out>
void writeWord(Out& json, FieldKeys const& k, uint64_t word, char const* (*names)(unsigned)) {
    JsonFields::Quantity(json, k.key, k.twin, word);
    json.QuotedKey(k.names);
    json.BeginArray(true);
    for (unsigned bit = 0; bit < 64; ++bit)
        if (word & (uint64_t{1} << bit))
            if (char const* text = names(bit))
                json.String(text);
    json.EndArray();
}

void writeEncryption(JsonWriter& json, FieldKeys const& k, uint64_t value) {
    JsonFields::Quantity(json, k.key, k.twin, value);
    json.QuotedKey(k.name);
    if (value == ENCRYPTION_AES128)
        json.String("AES128");
    else if (value == ENCRYPTION_AES256)
        json.String("AES256");
    else
        json.Null();
}

void writeFields(JsonWriter& json, FieldTable const& table, const unsigned char* record);

// One field of a fixed record, by its kind. The fixed records are a few a
// report: their fields are written by the table as it is read.
void writeField(JsonWriter& json, FieldKeys const& k, Field const& f, const unsigned char* at) {
    switch (f.kind) {
    case Kind::Quantity:
        writeField(json, k, loadUnsigned(at, f.size), FieldKinds::Quantity{});
        break;
    case Kind::Signed:
    case Kind::Status: {
        int32_t value;
        static_assert(sizeof value == 4, "the signed fields are 32-bit statuses");
        std::memcpy(&value, at, sizeof value);
        if (f.kind == Kind::Status)
            writeField(json, k, value, FieldKinds::Status{});
        else
            writeField(json, k, value, FieldKinds::Signed{});
        break;
    }
    case Kind::Id:
        writeField(json, k, loadUnsigned(at, f.size), FieldKinds::Id{});
        break;
    case Kind::Key:
        writeField(json, k, loadUnsigned(at, f.size), FieldKinds::Key{});
        break;
    case Kind::Time:
        writeField(json, k, loadUnsigned(at, f.size), FieldKinds::Time{});
        break;
    case Kind::Guid: {
        GUID_t guid;
        static_assert(sizeof guid == 16, "a GUID is 16 bytes");
        std::memcpy(&guid, at, sizeof guid);
        writeField(json, k, guid, FieldKinds::Guid{});
        break;
    }
    case Kind::NameType:
        writeField(json, k, loadUnsigned(at, f.size), FieldKinds::NameType{});
        break;
    case Kind::ErrorWord:
        writeWord(json, k, loadUnsigned(at, f.size), VerifyNames::ErrorTypeText);
        break;
    case Kind::WarningWord:
        writeWord(json, k, loadUnsigned(at, f.size), VerifyNames::WarningTypeText);
        break;
    case Kind::Encryption:
        writeEncryption(json, k, loadUnsigned(at, f.size));
        break;
    case Kind::Nested:
        json.QuotedKey(k.key);
        json.BeginObject();
        writeFields(json, *f.nested, at);
        json.EndObject();
        break;
    case Kind::Levels:
        json.QuotedKey(k.key);
        json.BeginArray();
        for (uint32_t level = 0; level < f.size / f.nested->size; ++level) {
            json.BeginObject(true);
            writeFields(json, *f.nested, at + level * f.nested->size);
            json.EndObject();
        }
        json.EndArray();
        break;
    case Kind::Wide:
        json.QuotedKey(k.key);
        json.String(VerifyJson::WideName(at, f.size / 2));
        break;
    case Kind::Narrow: {
        const char* text = reinterpret_cast<const char*>(at);
        json.QuotedKey(k.key);
        json.String(std::string_view(text, strnlen(text, f.size)));
        break;
    }
    case Kind::Reserved:
        break;
    }
}

void writeFields(JsonWriter& json, FieldTable const& table, const unsigned char* record) {
    // Each table's names are made the first time it is written.
    static std::map<FieldTable const*, std::vector<FieldKeys>> names;
    auto known = names.find(&table);
    if (known == names.end())
        known = names.emplace(&table, keysOf(table)).first;
    for (std::size_t i = 0; i < table.count; ++i)
        writeField(json, known->second[i], table.fields[i], record + table.fields[i].offset);
}

// One field of a list row of R, by its kind, chosen as the program is built:
// a list may hold millions of rows.
template <typename R, std::size_t I>
QVS_INLINE void writeRowField(JsonWriter::Row& json, FieldKeys const& k, const unsigned char* row) {
    constexpr Field f = Layout<R>::TABLE.fields[I];
    const unsigned char* at = row + f.offset;
    if constexpr (f.kind == Kind::Quantity) {
        writeField(json, k, RecordTables::LoadUnsigned<f.size>(at), FieldKinds::Quantity{});
    } else if constexpr (f.kind == Kind::Id) {
        writeField(json, k, RecordTables::LoadUnsigned<f.size>(at), FieldKinds::Id{});
    } else if constexpr (f.kind == Kind::Key) {
        writeField(json, k, RecordTables::LoadUnsigned<f.size>(at), FieldKinds::Key{});
    } else if constexpr (f.kind == Kind::Status) {
        writeField(json, k, static_cast<int32_t>(RecordTables::LoadSigned<f.size>(at)),
                   FieldKinds::Status{});
    } else if constexpr (f.kind == Kind::NameType) {
        writeField(json, k, RecordTables::LoadUnsigned<f.size>(at), FieldKinds::NameType{});
    } else if constexpr (f.kind == Kind::Wide) {
        json.QuotedKey(k.key);
        json.String(VerifyJson::WideName(at, f.size / 2));
    } else if constexpr (f.kind == Kind::Narrow) {
        const char* text = reinterpret_cast<const char*>(at);
        json.QuotedKey(k.key);
        json.String(std::string_view(text, strnlen(text, f.size)));
    } else {
        static_assert(f.kind == Kind::Reserved, "a kind that list rows have");
    }
}

template <typename R, std::size_t... I>
QVS_INLINE void writeRowFields(JsonWriter::Row& json, std::vector<FieldKeys> const& keys,
                               const unsigned char* row, std::index_sequence<I...>) {
    (writeRowField<R, I>(json, keys[I], row), ...);
}

// A row of a list: one line, written in place.
template <typename R> void writeRow(JsonWriter& writer, const unsigned char* row) {
    static const std::vector<FieldKeys> keys = keysOf(Layout<R>::TABLE);
    JsonWriter::Row json(writer);
    writeRowFields<R>(json, keys, row, std::make_index_sequence<Layout<R>::TABLE.count>{});
    json.End();
}

using RowWriter = void (*)(JsonWriter&, const unsigned char*);

template <typename... Records>
constexpr std::array<RowWriter, sizeof...(Records)> rowWriters(RecordList<Records...>) {
    return {{&writeRow<Records>...}};
}

// The row writer of each variable-data list, in the registry's order.
constexpr auto ROWS = rowWriters(VariableLists{});

template <typename Record> void writeList(JsonWriter& json, VerifyRecordList<Record> const& list) {
    json.Quantity("count", list.count);
    json.Key("rows");
    json.BeginArray();
    for (auto const& record : list.records) {
        QVS::MemoryReserve::Check();
        writeRow<Record>(json, bytes(&record));
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
    BeginSection(Layout<ZVP_Status_s>::SECTION);
    writeFields(json, Layout<ZVP_Status_s>::TABLE, bytes(&status));
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
    BeginSection(Layout<ZVP_PoolStats_s>::SECTION);
    writeFields(json, Layout<ZVP_PoolStats_s>::TABLE, bytes(&pool));
    json.EndObject();
    if (pool.errors != 0)
        errorsFound = true;
}

void VerifyJsonPrinter::Volume(ZVP_LVStats_s const& volume) {
    ++volumes;
    BeginSection(Layout<ZVP_LVStats_s>::SECTION);
    writeFields(json, Layout<ZVP_LVStats_s>::TABLE, bytes(&volume));
    json.EndObject();
    if (volume.errors != 0)
        errorsFound = true;
}

void VerifyJsonPrinter::Actions(ActionStats const& list) {
    BeginSection(Layout<RAV_Action_s>::SECTION);
    actionRows += list.records.size();
    writeList(json, list);
    json.EndObject();
}

void VerifyJsonPrinter::Conflicts(ConflictBlocksStats const& list) {
    BeginSection(Layout<BlockConflicts_s>::SECTION);
    conflictRows += list.records.size();
    writeList(json, list);
    json.EndObject();
}

void VerifyJsonPrinter::Skipped(LVSkippedStats const& list) {
    BeginSection(Layout<LVSkipped_s>::SECTION);
    skippedVolumeRows += list.records.size();
    writeList(json, list);
    json.EndObject();
}

void VerifyJsonPrinter::ListStart(ListType const& type, uint32_t count) {
    BeginSection("problem_list");
    json.Member("kind", type.kind);
    json.Member("title", type.title);
    json.Quantity("count", count);
    json.Key("rows");
    json.BeginArray();
    listOpen = true;
}

void VerifyJsonPrinter::ListRow(ListType const& type, unsigned char const* row) {
    QVS::MemoryReserve::Check();
    ++problemListRows;
    ROWS[type.index](json, row);
}

void VerifyJsonPrinter::ListEnd(ListType const&) {
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
