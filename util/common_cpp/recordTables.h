// recordTables.h - the tables that describe a record of a verify report: its
// fields (name, place, size, and how each is shown as data) and, for a list's
// records, its text columns (heading and row cell). The registry of records
// (verifyFileRecords.h) is made of them; the reader, the printers and the
// schema read nothing else about a record.
#ifndef UTIL_COMMON_CPP_RECORDTABLES_H
#define UTIL_COMMON_CPP_RECORDTABLES_H

#include "util/support/compiler.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace RecordTables {

// How a field is shown as data (the JSON printer and the schema).
enum class Kind : uint8_t {
    Quantity,    // a count, size or block: an unsigned number
    Signed,      // a signed number
    Id,          // an identifier (ZID, locator, LSN): hexadecimal text
    Key,         // a key: decimal text
    Status,      // a status number and its zERR_ name
    Time,        // seconds since 1970: ISO 8601 UTC and the raw value
    Guid,        // the GUID's text form
    NameType,    // a name type: the number and its name
    ErrorWord,   // a word of error bits: the number and the set bits' texts
    WarningWord, // a word of warning bits, the same way
    Encryption,  // an encryption algorithm: the number and its name
    Nested,      // a record of its own, with its own table
    Levels,      // the histogram levels: an array of records of their own
    Wide,        // a UTF-16LE name of size / 2 units
    Narrow,      // a text of size bytes
    Reserved,    // bytes the producer keeps to itself: not shown
};

struct FieldTable;

// One field of a record, in layout order. `offset` is where the format's
// byte tables put it, `placed` where the record has it: the two must agree.
struct Field {
    const char* name;                   // as the record has it ("totalBlocks")
    uint32_t offset;
    uint32_t placed;
    uint32_t size;                      // bytes
    Kind kind;
    const FieldTable* nested = nullptr; // Nested and Levels: the record it holds
};

// Every field of a record, reserved bytes included, so that a check can see
// that the table covers the whole record.
struct FieldTable {
    const char* record; // the record's name ("BTDS_UnreadableZid_s")
    uint32_t size;      // sizeof the record
    const Field* fields;
    std::size_t count;
};

// Whether `table` covers its record: each field where the byte tables say and
// where the record has it, the next field right after it, the last one
// ending at the record's end.
constexpr bool Covers(const FieldTable& table) {
    uint32_t next = 0;
    for (std::size_t i = 0; i < table.count; ++i) {
        const Field& f = table.fields[i];
        if (f.offset != next || f.placed != f.offset)
            return false;
        next = f.offset + f.size;
    }
    return next == table.size;
}

constexpr bool SameName(const char* a, const char* b) {
    while (*a != '\0' && *a == *b) {
        ++a;
        ++b;
    }
    return *a == *b;
}

// The field of `table` named `name`; a name the table lacks is no constant
// (the build stops where a column names it).
constexpr const Field& FieldNamed(const FieldTable& table, const char* name) {
    for (std::size_t i = 0; i < table.count; ++i)
        if (SameName(table.fields[i].name, name))
            return table.fields[i];
    throw "no field of that name";
}

// What a list row's cell shows of its field.
enum class Cell : uint8_t {
    Hex,       // the number in lower-case hexadecimal, right in the width
    Unsigned,  // the number in decimal, right in the width
    Signed,    // the signed number in decimal, right in the width
    Text,      // the narrow text, left in the width
    TextRight, // the narrow text, right in the width
    Wide,      // the wide name, left in the width
    WideRight, // the wide name, right in the width
    NameType,  // the name type's word, left in the width
    YesNo,     // "Y" when the number is not 0, else "N", right in the width
    Seconds,   // `second` minus the field in 32 bits, in decimal, right in the width
};

// One column of a list: its heading (a title left in its width with a gap
// after it, and a rule of dashes with a gap) and its row cell (the value in
// its width, then a unit mark left in its own width, or blanks). A column
// without a title has no heading: a heading may have fewer columns than the
// rows have cells.
struct Column {
    const char* title;
    int titleWidth;
    int titleGap;
    int ruleWidth;
    int ruleGap;
    Cell cell;
    const char* field;
    int width;
    const char* mark; // null: blanks
    int markWidth;
    const char* second = nullptr; // Seconds: the field subtracted from
};

struct ColumnTable {
    const Column* columns;
    std::size_t count;
    bool rowEndsLine; // the row writes its own line end
};

// A field's value: the record's bytes copied, never read in place.
template <std::size_t Size> QVS_INLINE uint64_t LoadUnsigned(const unsigned char* at) {
    if constexpr (Size == 8) {
        uint64_t value;
        std::memcpy(&value, at, 8);
        return value;
    } else if constexpr (Size == 4) {
        uint32_t value;
        std::memcpy(&value, at, 4);
        return value;
    } else if constexpr (Size == 2) {
        uint16_t value;
        std::memcpy(&value, at, 2);
        return value;
    } else {
        static_assert(Size == 1, "a number of 1, 2, 4 or 8 bytes");
        return at[0];
    }
}

template <std::size_t Size> QVS_INLINE int64_t LoadSigned(const unsigned char* at) {
    static_assert(Size == 4, "the signed fields are 32-bit statuses");
    int32_t value;
    std::memcpy(&value, at, 4);
    return value;
}

} // namespace RecordTables

#endif
