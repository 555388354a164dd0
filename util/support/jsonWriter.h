// jsonWriter.h - a small streaming writer of one JSON document (RFC 8259):
// members and elements go out as they are given, nothing is kept but the
// nesting, and strings are escaped, invalid UTF-8 becoming U+FFFD.
#ifndef UTIL_SUPPORT_JSONWRITER_H
#define UTIL_SUPPORT_JSONWRITER_H

#include "util/support/compiler.h"
#include "util/support/mallocBuffer.h"
#include "util/support/shortCopy.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

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
    // A name made of two parts ("status" and "_name"), written without
    // joining them first: nothing is allocated.
    void Key(std::string_view name, std::string_view suffix) {
        Separate();
        Put('"');
        Escape(name);
        Escape(suffix);
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
    // control characters, \u007f for DEL and \u0080 to \u009f for the C1
    // controls (so that a document is safe to show on a terminal as it is),
    // and U+FFFD for each byte that does not begin a valid UTF-8 character
    // (overlong forms and surrogates included).
    static void AppendEscaped(std::string_view text, std::string& out);

    // A one-line object written straight into the buffer: what BeginObject(true),
    // its members and EndObject write, for the rows a large file holds
    // millions of. Its place in the buffer is kept in the row itself, where
    // the compiler can hold it in registers across the byte stores.
    // Members are named with keys made by QuoteKey; no container may be
    // opened inside a row, and nothing else written while it is open.
    class Row {
    public:
        explicit Row(JsonWriter& writer) : json(writer) {
            json.Separate();
            at = json.buffer + json.used;
            limit = json.buffer + json.capacity;
            Put('{');
        }
        Row(const Row&) = delete;
        Row& operator=(const Row&) = delete;
        // Closes the row and hands its bytes to the writer (not a destructor:
        // a write that fails while an exception unwinds would end the program).
        void End() {
            Put('}');
            json.used = static_cast<std::size_t>(at - json.buffer);
        }

        QVS_ALWAYS_INLINE void QuotedKey(std::string_view quoted) {
            if (!first)
                Put(", ", 2);
            first = false;
            Put(quoted.data(), quoted.size());
        }
        QVS_ALWAYS_INLINE void String(std::string_view utf8) {
            if (utf8.size() + 2 > json.capacity) {
                // More than the buffer holds: written by the writer itself.
                json.used = static_cast<std::size_t>(at - json.buffer);
                json.Put('"');
                json.Escape(utf8);
                json.Put('"');
                Reload();
                return;
            }
            Room(utf8.size() + 2);
            *at++ = '"';
            const std::size_t plain = PlainCopy(utf8, at);
            if (plain == utf8.size()) {
                at += plain;
            } else {
                // Something to escape: written by the writer itself.
                json.used = static_cast<std::size_t>(at - json.buffer);
                json.Escape(utf8);
                Reload();
            }
            Put('"');
        }
        QVS_ALWAYS_INLINE void Unsigned(uint64_t value) {
            Room(24);
            at = std::to_chars(at, at + 24, value).ptr;
        }
        QVS_ALWAYS_INLINE void Signed(int64_t value) {
            Room(24);
            at = std::to_chars(at, at + 24, value).ptr;
        }
        void Bool(bool value) {
            if (value)
                Put("true", 4);
            else
                Put("false", 5);
        }
        void Null() { Put("null", 4); }

    private:
        QVS_ALWAYS_INLINE void Room(std::size_t n) {
            if (n > static_cast<std::size_t>(limit - at)) {
                json.used = static_cast<std::size_t>(at - json.buffer);
                json.MakeRoom(n);
                Reload();
            }
        }
        void Reload() {
            at = json.buffer + json.used;
            limit = json.buffer + json.capacity;
        }
        QVS_ALWAYS_INLINE void Put(const char* bytes, std::size_t n) {
            Room(n);
            CopyShort(at, bytes, n);
            at += n;
        }
        QVS_ALWAYS_INLINE void Put(char c) {
            Room(1);
            *at++ = c;
        }

        JsonWriter& json;
        char* at;
        char* limit;
        bool first = true;
    };

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
        return buffer + used;
    }
    void MakeRoom(std::size_t n);
    void Put(const char* bytes, std::size_t n) {
        if (n > capacity) {
            PutLong(bytes, n);
            return;
        }
        CopyShort(At(n), bytes, n);
        used += n;
    }
    // Any number of bytes, through the buffer in pieces of its size.
    void PutLong(const char* bytes, std::size_t n);
    // `text` escaped, handed to `emit` in pieces (see AppendEscaped).
    template <typename Emit> static void EscapeInto(std::string_view text, Emit emit);
    // Plain are the bytes a string holds as they are: from 0x20 to 0x7e but
    // '"' and '\\'. Control characters and DEL are escaped, and bytes from
    // 0x80 on are checked as UTF-8.
    static constexpr bool IsPlain(unsigned char c) {
        return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
    }
#ifdef __SSE2__
    // The bytes of `block` that are not plain, a bit each: a byte below 0x20
    // or from 0x80 on is below 0x20 as a signed byte.
    static QVS_INLINE unsigned NotPlain(__m128i block) {
        const __m128i special = _mm_or_si128(
            _mm_or_si128(_mm_cmplt_epi8(block, _mm_set1_epi8(0x20)),
                         _mm_cmpeq_epi8(block, _mm_set1_epi8(0x7F))),
            _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('"')),
                         _mm_cmpeq_epi8(block, _mm_set1_epi8('\\'))));
        return static_cast<unsigned>(_mm_movemask_epi8(special));
    }
#endif
    // How many bytes from the start of `text` are plain.
    static std::size_t PlainLength(std::string_view text);
    // The same, copying them to `to` (which has room for all of `text`) as
    // they are scanned: all of them, unless something must be escaped.
    static QVS_INLINE std::size_t PlainCopy(std::string_view text, char* to) {
        const std::size_t size = text.size();
        const char* const bytes = text.data();
#ifdef __SSE2__
        if (size >= 16) {
            auto copied = [&](std::size_t i) QVS_ALWAYS_INLINE {
                const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
                _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), block);
                return NotPlain(block);
            };
            std::size_t i = 0;
            for (; i + 16 <= size; i += 16)
                if (const unsigned marks = copied(i))
                    return i + static_cast<unsigned>(__builtin_ctz(marks));
            // The last block overlaps the one before.
            if (i < size)
                if (const unsigned marks = copied(size - 16))
                    return size - 16 + static_cast<unsigned>(__builtin_ctz(marks));
            return size;
        }
#endif
        std::size_t i = 0;
        for (; i < size && IsPlain(static_cast<unsigned char>(bytes[i])); ++i)
            to[i] = bytes[i];
        return i;
    }
    void Put(char c) {
        *At(1) = c;
        ++used;
    }
    void Drain();

    // Twice the standard output writer's buffer: what is drained is always at
    // least its size, and goes to the file without a second copy.
    static constexpr std::size_t BUFFER_SIZE = 512 * 1024;
    static constexpr std::size_t FALLBACK_SIZE = 4096;
    // Levels of nesting with room kept for them (a document has six at most).
    static constexpr std::size_t NESTING_RESERVED = 32;

    std::ostream& out;
    std::vector<Level> open;
    bool afterKey = false;
    // The buffer: BUFFER_SIZE bytes of the heap, or, where memory is too
    // short for them, the small one inside the writer, so that a document
    // can still be written and closed.
    MallocBuffer heap;
    char* buffer;
    char fallback[FALLBACK_SIZE];
    std::size_t capacity = 0;
    std::size_t used = 0;
};

} // namespace QVS

#endif
