// jsonWriter.h - a small streaming writer of one JSON document (RFC 8259):
// members and elements go out as they are given, nothing is kept but the
// nesting, and strings are escaped, invalid UTF-8 becoming U+FFFD.
#ifndef UTIL_SUPPORT_JSONWRITER_H
#define UTIL_SUPPORT_JSONWRITER_H

#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
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
    // Writes what is still held (a document cut short by a failure keeps
    // what was made of it).
    ~JsonWriter();
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    // Containers. A container opened `oneLine` keeps its members on one line
    // (the rows of a list); others put each member on a line of its own,
    // indented by two blanks a level.
    void BeginObject(bool oneLine = false) { Begin(true, oneLine, '{'); }
    void EndObject() { End('}'); }
    void BeginArray(bool oneLine = false) { Begin(false, oneLine, '['); }
    void EndArray() { End(']'); }

    // The name of the next member of the object being written.
    void Key(std::string_view name) {
        Separate();
        Put('"');
        Escape(name);
        Put("\": ", 3);
        afterKey = true;
    }
    // The same with the name already made by QuotedKey (a caller that
    // writes the member many times makes it once).
    void QuotedKey(std::string_view quoted) {
        Separate();
        Put(quoted.data(), quoted.size());
        afterKey = true;
    }
    // What Key writes for `name`.
    static std::string QuoteKey(std::string_view name);

    void String(std::string_view utf8) {
        Separate();
        Put('"');
        Escape(utf8);
        Put('"');
    }
    void Unsigned(uint64_t value) {
        Separate();
        char* at = At(24);
        used += static_cast<std::size_t>(std::to_chars(at, at + 24, value).ptr - at);
    }
    void Signed(int64_t value) {
        Separate();
        char* at = At(24);
        used += static_cast<std::size_t>(std::to_chars(at, at + 24, value).ptr - at);
    }
    void Bool(bool value) {
        Separate();
        if (value)
            Put("true", 4);
        else
            Put("false", 5);
    }
    void Null() {
        Separate();
        Put("null", 4);
    }

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
    void Separate() {
        if (afterKey) {
            afterKey = false;
            return;
        }
        if (open.empty())
            return;
        Level& level = open.back();
        if (level.oneLine) {
            if (!level.empty)
                Put(", ", 2);
        } else {
            if (!level.empty)
                Put(',');
            NewLine(open.size());
        }
        level.empty = false;
    }
    void NewLine(std::size_t depth);
    void Begin(bool object, bool oneLine, char open);
    void End(char close);
    void Escape(std::string_view text);

    // Room for `n` more bytes: what is held goes to the stream first when
    // it would not fit. A document is made of many small pieces, and one
    // stream call each would cost more than making them.
    char* At(std::size_t n) {
        if (n > capacity - used)
            MakeRoom(n);
        return buffer.get() + used;
    }
    void MakeRoom(std::size_t n);
    void Put(const char* bytes, std::size_t n) {
        std::memcpy(At(n), bytes, n);
        used += n;
    }
    void Put(char c) {
        *At(1) = c;
        ++used;
    }
    void Drain();

    static constexpr std::size_t BUFFER_SIZE = 64 * 1024;

    std::ostream& out;
    std::vector<Level> open;
    bool afterKey = false;
    std::unique_ptr<char[]> buffer;
    std::size_t capacity = 0;
    std::size_t used = 0;
};

} // namespace QVS

#endif
