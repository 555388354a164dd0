// verifyJsonPrinter.h - the verify report as data: every record the reader
// hands over, written as a JSON section object with every field of the
// record, field by field from the record's table.
#ifndef UTIL_COMMON_CPP_VERIFYJSONPRINTER_H
#define UTIL_COMMON_CPP_VERIFYJSONPRINTER_H

#include "util/common_cpp/verifyPrinter.h"
#include "util/support/jsonWriter.h"

#include <cstdint>
#include <string>

// Writes the elements of the document's "sections" array, one per section
// read, in file order; the caller opens and closes that array.
class VerifyJsonPrinter : public VerifyPrinter {
public:
    explicit VerifyJsonPrinter(QVS::JsonWriter& json);
    ~VerifyJsonPrinter() override;

    void Status(ZVP_Status_s const& status) override;
    void Pool(ZVP_PoolStats_s const& pool) override;
    void Volume(ZVP_LVStats_s const& volume) override;
    void Actions(ActionStats const& list) override;
    void Conflicts(ConflictBlocksStats const& list) override;
    void Skipped(LVSkippedStats const& list) override;
#define VF_JSON_LIST_METHODS(Record)                                                            \
    void ListStart(char const* title, uint32_t count, Record const* none) override;             \
    void ListRow(Record const& row) override;
    VF_VARIABLE_RECORDS(VF_JSON_LIST_METHODS)
#undef VF_JSON_LIST_METHODS
    void ListEnd() override;

    // Closes a list that a failed read left open.
    void Close();

    // What was seen, for the document's totals and exit status.
    unsigned Sections() const { return sections; }
    unsigned Volumes() const { return volumes; }
    uint64_t ListRows() const { return listRows; }
    // Whether the pool record or a volume record has an error bit set.
    bool ErrorsFound() const { return errorsFound; }

private:
    // Opens the section object of `kind` and writes its "section" member.
    void BeginSection(char const* kind);
    void BeginList(char const* kind, char const* title, uint32_t count);

    QVS::JsonWriter& json;
    bool listOpen = false;
    unsigned sections = 0;
    unsigned volumes = 0;
    uint64_t listRows = 0;
    bool errorsFound = false;
};

namespace VerifyJson {
// The member name of a record field: its name in snake_case ("totalBlocks"
// gives "total_blocks", "poolBlocks1" gives "pool_blocks_1").
std::string SnakeCase(char const* fieldName);
// The name of a status number from the error tables, or null when they have
// none for it.
char const* StatusName(long status);
// A UTF-16LE name field, cut at its first 0 unit or at the field's end, as
// UTF-8: surrogate pairs are combined, and a surrogate without its pair
// becomes U+FFFD.
std::string WideName(unsigned char const* field, std::size_t units);
// The kind of each variable-data list ("unreadable_zid"): its record's name
// without the family prefix, in snake_case.
#define VF_JSON_LIST_KIND(Record) char const* ListKind(Record const*);
VF_VARIABLE_RECORDS(VF_JSON_LIST_KIND)
#undef VF_JSON_LIST_KIND

// A status as two members: "KEY", the number, and "KEY_name", its name from
// the error tables or null.
void StatusMember(QVS::JsonWriter& json, std::string const& key, long status);

// The names of one field's members, quoted once (QVS::JsonWriter::QuoteKey):
// fields of rows are written once per row, and a file holds millions of rows.
struct MemberKeys {
    explicit MemberKeys(std::string const& key);
    std::string key;       // the field itself
    std::string twin;      // KEY_s, the decimal twin of a large quantity
    std::string name;      // KEY_name
    std::string names;     // KEY_names, the names of a word's bits
    std::string separator; // KEY_separator
    std::string raw;       // KEY_raw, a time's value as read
    std::string rawTwin;   // KEY_raw_s
};

// A quantity with its decimal twin from 2^53 on, through a writer or a row.
template <typename Out>
QVS_INLINE void Quantity(Out& json, std::string const& key, std::string const& twin,
                         uint64_t value) {
    json.QuotedKey(key);
    json.Unsigned(value);
    if (value >= QVS::JsonWriter::EXACT_DOUBLE_LIMIT) {
        char digits[24];
        const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
        json.QuotedKey(twin);
        json.String(std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)));
    }
}

// A status as two members, with the names made by MemberKeys.
template <typename Out>
QVS_INLINE void StatusMember(Out& json, MemberKeys const& keys, long status) {
    json.QuotedKey(keys.key);
    json.Signed(status);
    json.QuotedKey(keys.name);
    if (char const* name = StatusName(status))
        json.String(name);
    else
        json.Null();
}
} // namespace VerifyJson

#endif
