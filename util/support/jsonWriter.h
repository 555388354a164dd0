// jsonWriter.h - a small streaming writer of one JSON document (RFC 8259):
// members and elements go out as they are given, nothing is kept but the
// nesting, and strings are escaped, invalid UTF-8 becoming U+FFFD.
#ifndef UTIL_SUPPORT_JSONWRITER_H
#define UTIL_SUPPORT_JSONWRITER_H

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace QVS {

class JsonWriter {
public:
    // Numbers above this lose digits in a consumer that reads every number
    // as a double (2^53): such a quantity also gets a decimal-string twin.
    static constexpr uint64_t EXACT_DOUBLE_LIMIT = uint64_t{1} << 53;

    explicit JsonWriter(std::ostream& out);

    // Containers. A container opened `oneLine` keeps its members on one line
    // (the rows of a list); others put each member on a line of its own,
    // indented by two blanks a level.
    void BeginObject(bool oneLine = false);
    void EndObject();
    void BeginArray(bool oneLine = false);
    void EndArray();
    // The name of the next member of the object being written.
    void Key(std::string_view name);

    void String(std::string_view utf8);
    void Unsigned(uint64_t value);
    void Signed(int64_t value);
    void Bool(bool value);
    void Null();

    // Members: the key and its value.
    void Member(std::string_view key, std::string_view utf8) {
        Key(key);
        String(utf8);
    }
    void Member(std::string_view key, const char* utf8) { Member(key, std::string_view(utf8)); }
    void Member(std::string_view key, bool value) {
        Key(key);
        Bool(value);
    }
    void MemberSigned(std::string_view key, int64_t value) {
        Key(key);
        Signed(value);
    }
    // A quantity: a number, and beside it "KEY_s", its decimal string, when
    // it is at or above EXACT_DOUBLE_LIMIT.
    void Quantity(std::string_view key, uint64_t value);

    // Closes the open containers down to `depth` (a member whose value was
    // not given gets null), so that a document cut short by a failure is
    // still whole.
    void CloseTo(std::size_t depth);
    // Ends the document with a newline; every container must be closed.
    void Finish();
    // How many containers are open.
    std::size_t Depth() const { return open.size(); }

    // `text` escaped as the contents of a JSON string (without the quotes),
    // appended to `out`: the escapes of RFC 8259 for '"', '\\' and the
    // control characters, and U+FFFD for each byte that does not begin a
    // valid UTF-8 character (overlong forms and surrogates included).
    static void AppendEscaped(std::string_view text, std::string& out);

private:
    struct Level {
        bool object;
        bool oneLine;
        bool empty;
    };
    // Before a value (or a key): the comma and the line break it needs.
    void Separate();
    void NewLine(std::size_t depth);
    void Begin(bool object, bool oneLine, char open);
    void End(char close);
    void Raw(std::string_view text);

    std::ostream& out;
    std::vector<Level> open;
    bool afterKey = false;
    std::string scratch;
};

} // namespace QVS

#endif
