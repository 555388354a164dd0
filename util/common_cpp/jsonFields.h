// jsonFields.h - a field of a verify record or of a rebuild log item as JSON
// members, by its kind (FieldKinds): the members' names, made once per
// field, and the writers of the kinds that both kinds of file have. Each
// writer takes a QVS::JsonWriter or a QVS::JsonWriter::Row.
#ifndef UTIL_COMMON_CPP_JSONFIELDS_H
#define UTIL_COMMON_CPP_JSONFIELDS_H

#include "util/common_cpp/fieldKinds.h"
#include "util/common_cpp/verifyNames.h"
#include "util/support/jsonWriter.h"
#include "util/support/qvsGuid.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace JsonFields {

// The name of a status number from the error tables, or null when they have
// none for it.
char const* StatusName(long status);

// Seconds since 1970 in ISO 8601 UTC; empty when they cannot be shown.
std::string IsoTime(uint64_t seconds);

// The text of an identifier, "0x" and its lower-case hexadecimal digits, or
// of a key or a decimal twin, its decimal digits; made without an allocation.
class NumberText {
public:
    static NumberText Hex(uint64_t value) {
        NumberText text;
        text.digits[0] = '0';
        text.digits[1] = 'x';
        text.End(std::to_chars(text.digits + 2, text.digits + sizeof text.digits, value, 16));
        return text;
    }
    static NumberText Decimal(uint64_t value) {
        NumberText text;
        text.End(std::to_chars(text.digits, text.digits + sizeof text.digits, value));
        return text;
    }
    std::string_view View() const { return std::string_view(digits, length); }

private:
    NumberText() = default;
    void End(std::to_chars_result result) {
        length = static_cast<std::size_t>(result.ptr - digits);
    }
    char digits[24];
    std::size_t length = 0;
};

// The names of one field's members, quoted once (QVS::JsonWriter::QuoteKey).
struct MemberKeys {
    explicit MemberKeys(std::string const& field);
    std::string key;       // the field itself
    std::string twin;      // KEY_s, the decimal twin of a large quantity
    std::string name;      // KEY_name
    std::string names;     // KEY_names, the names of a word's bits
    std::string separator; // KEY_separator
    std::string raw;       // KEY_raw, a time's value as read
    std::string rawTwin;   // KEY_raw_s
};

// A status as two members: "KEY", the number, and "KEY_name", its name or
// null.
void StatusMember(QVS::JsonWriter& json, std::string_view key, long status);

// A quantity with its decimal twin from 2^53 on.
template <typename Out>
QVS_INLINE void Quantity(Out& json, std::string const& key, std::string const& twin,
                         uint64_t value) {
    json.QuotedKey(key);
    json.Unsigned(value);
    if (value >= QVS::JsonWriter::EXACT_DOUBLE_LIMIT) {
        json.QuotedKey(twin);
        json.String(NumberText::Decimal(value).View());
    }
}

// The writers by kind. A field is passed by value: a record's fields are
// packed, and no reference binds to them.
template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::Quantity) {
    static_assert(std::is_unsigned<T>::value, "a quantity is unsigned");
    Quantity(json, k.key, k.twin, value);
}

template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::Signed) {
    json.QuotedKey(k.key);
    json.Signed(value);
}

template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::Id) {
    json.QuotedKey(k.key);
    json.String(NumberText::Hex(static_cast<uint64_t>(value)).View());
}

template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::Key) {
    json.QuotedKey(k.key);
    json.String(NumberText::Decimal(static_cast<uint64_t>(value)).View());
}

template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::Status) {
    json.QuotedKey(k.key);
    json.Signed(value);
    json.QuotedKey(k.name);
    if (char const* name = StatusName(value))
        json.String(name);
    else
        json.Null();
}

template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::Time) {
    json.QuotedKey(k.key);
    json.String(IsoTime(value));
    Quantity(json, k.raw, k.rawTwin, value);
}

template <typename Out>
void writeField(Out& json, MemberKeys const& k, GUID_t value, FieldKinds::Guid) {
    char text[QVS::GUID_TEXT_LENGTH + 1];
    QVS::LB_GUIDToString(&value, sizeof text, text);
    json.QuotedKey(k.key);
    json.String(text);
}

template <typename Out, typename T>
QVS_INLINE void writeField(Out& json, MemberKeys const& k, T value, FieldKinds::NameType) {
    Quantity(json, k.key, k.twin, value);
    json.QuotedKey(k.name);
    json.String(nTypeName(value));
}

} // namespace JsonFields

#endif
