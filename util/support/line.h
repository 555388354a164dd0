// line.h - one line of a text report, built in place and handed to the
// stream with one call: fields padded by arithmetic, numbers by
// std::to_chars. The one way the report's rows and headings are written.
#ifndef UTIL_SUPPORT_LINE_H
#define UTIL_SUPPORT_LINE_H

#include "util/support/compiler.h"
#include "util/support/qvsLib.h"
#include "util/support/shortCopy.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>

namespace QVS {

// Its fields give exactly what the stream's own writers give (fill ' ' but
// for dashes, right or left in the width, hexadecimal in lower case without
// a base prefix), without setting and resetting the stream's flags per field.
class Line {
public:
    explicit Line(std::ostream& out) : os(out) {}
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    Line& Text(std::string_view value) {
        if (!bad)
            Put(value.data(), value.size());
        return *this;
    }
    // A field of `width`, the value left in it.
    Line& Left(std::string_view value, int width) {
        Text(value);
        return Pad(value.size(), width);
    }
    // A null text ends the line there with the stream's bad bit, as the
    // stream writers do.
    Line& Left(const char* value, int width) {
        if (value == nullptr)
            return Bad();
        return Left(std::string_view(value), width);
    }
    // A field of `width`, the value right in it.
    Line& Right(std::string_view value, int width) {
        Pad(value.size(), width);
        return Text(value);
    }
    Line& Right(const char* value, int width) {
        if (value == nullptr)
            return Bad();
        return Right(std::string_view(value), width);
    }
    // `width` blanks: a column gap.
    Line& Gap(int width) { return Pad(0, width); }
    Line& Dashes(int width) { return Fill('-', width > 0 ? static_cast<std::size_t>(width) : 0); }
    Line& Hex(uint64_t value, int width) { return Number(value, 16, width); }
    Line& Decimal(long long value, int width) { return Number(value, 10, width); }
    Line& Unsigned(unsigned long long value, int width) { return Number(value, 10, width); }
    // A name of UTF-16LE units in a record field, cut at its first 0 unit or
    // at the field's end, each unit written as the character of its own value
    // (as the report's names always are), in a field of `width`, left in it or
    // right.
    Line& WideName(const unsigned char* field, std::size_t units, int width, bool right = false);
    // A zero-terminated name of UTF-16 units in host order, left in `width`.
    Line& WideName(const unsigned short* units, int width);

    // Writes the line as it stands.
    void Write() {
        Spill();
        if (bad)
            os.setstate(std::ios_base::badbit);
    }
    // The line and its end.
    void End() {
        if (!bad)
            Put("\n", 1);
        Write();
    }

private:
    static constexpr std::size_t CAPACITY = 2048;

    Line& Bad() {
        bad = true;
        return *this;
    }
    // Room for `n` more bytes; what does not fit is written first.
    bool Room(std::size_t n) {
        if (n > CAPACITY - used)
            Spill();
        return n <= CAPACITY;
    }
    void Spill() {
        if (used > 0)
            Write(line, used);
        used = 0;
    }
    // What ostream::write does, without its sentry: a row is one call, and
    // the sentry's checks cost as much as the copy. A stream already failed
    // takes nothing, as with write.
    void Write(const char* bytes, std::size_t n) {
        if (!os.good())
            return;
        const std::streamsize count = static_cast<std::streamsize>(n);
        if (os.rdbuf()->sputn(bytes, count) != count)
            os.setstate(std::ios_base::badbit);
    }
    void Put(const char* bytes, std::size_t n) {
        if (!Room(n)) {
            Write(bytes, n);
            return;
        }
        CopyShort(line + used, bytes, n);
        used += n;
    }
    Line& Fill(char c, std::size_t n) {
        if (bad)
            return *this;
        // Most padding is a few blanks: one fixed-size copy, no call.
        static constexpr char BLANKS[33] = "                                ";
        if (c == ' ' && n <= 32 && CAPACITY - used >= 32) {
            std::memcpy(line + used, BLANKS, 32);
            used += n;
            return *this;
        }
        while (n > 0) {
            Room(1);
            const std::size_t part = std::min(n, CAPACITY - used);
            std::memset(line + used, c, part);
            used += part;
            n -= part;
        }
        return *this;
    }
    Line& Pad(std::size_t length, int width) {
        if (width > 0 && length < static_cast<std::size_t>(width))
            Fill(' ', static_cast<std::size_t>(width) - length);
        return *this;
    }
    template <typename T> Line& Number(T value, int base, int width) {
        char digits[24];
        const std::to_chars_result result =
            std::to_chars(digits, digits + sizeof digits, value, base);
        return Right(std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)),
                     width);
    }

    std::ostream& os;
    char line[CAPACITY];
    std::size_t used = 0;
    bool bad = false;
};

inline Line& Line::WideName(const unsigned char* field, std::size_t units, int width, bool right) {
    if (bad)
        return *this;
    auto unitAt = [field](std::size_t i) {
        return static_cast<uint32_t>(field[2 * i] | (static_cast<uint32_t>(field[2 * i + 1]) << 8));
    };
    std::size_t count = 0;
    while (count < units && unitAt(count) != 0)
        ++count;
    if (right) {
        std::size_t length = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const uint32_t u = unitAt(i);
            length += u < 0x80 ? 1 : u < 0x800 ? 2 : 3;
        }
        Pad(length, width);
    }
    // Each unit on its own, as the report's names have always been shown (at
    // most three bytes each), into a buffer handed on in one piece.
    constexpr std::size_t CHUNK = 256;
    char decoded[3 * CHUNK];
    std::size_t written = 0;
    for (std::size_t start = 0; start < count; start += CHUNK) {
        std::size_t n = 0;
        for (std::size_t i = start; i < count && i < start + CHUNK; ++i)
            n += EncodeUtf8(unitAt(i), decoded + n);
        Put(decoded, n);
        written += n;
    }
    if (!right)
        Pad(written, width);
    return *this;
}

inline Line& Line::WideName(const unsigned short* units, int width) {
    if (bad || units == nullptr)
        return *this;
    std::size_t length = 0;
    char bytes[4];
    for (; *units != 0; ++units) {
        const std::size_t n = EncodeUtf8(*units, bytes);
        Put(bytes, n);
        length += n;
    }
    return Pad(length, width);
}

} // namespace QVS

#endif
