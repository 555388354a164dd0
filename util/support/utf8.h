// utf8.h - UTF-8 as the programs check it: which bytes form a well-formed
// character (the table of well-formed byte sequences: no overlong form, no
// surrogate, nothing above U+10FFFF), and a name's text that keeps every byte.
#ifndef UTIL_SUPPORT_UTF8_H
#define UTIL_SUPPORT_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace QVS {

// The length of the well-formed UTF-8 character that begins `text`, or 0
// when its first byte begins none (`text` must not be empty).
inline std::size_t ValidCharacterLength(std::string_view text) {
    const unsigned char c = static_cast<unsigned char>(text[0]);
    std::size_t length;
    unsigned char low = 0x80, high = 0xBF; // the second byte's range
    if (c < 0x80)
        return 1;
    if (c >= 0xC2 && c <= 0xDF) {
        length = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        length = 3;
        if (c == 0xE0)
            low = 0xA0; // no overlong form
        else if (c == 0xED)
            high = 0x9F; // no surrogate
    } else if (c >= 0xF0 && c <= 0xF4) {
        length = 4;
        if (c == 0xF0)
            low = 0x90;
        else if (c == 0xF4)
            high = 0x8F; // nothing above U+10FFFF
    } else {
        return 0;
    }
    if (text.size() < length)
        return 0;
    const unsigned char second = static_cast<unsigned char>(text[1]);
    if (second < low || second > high)
        return 0;
    for (std::size_t i = 2; i < length; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            return 0;
    return length;
}

// Whether every byte of `text` belongs to a well-formed character.
bool IsValidUtf8(std::string_view text);

// A name as valid UTF-8 that no other name gives and from which its bytes
// come back: a name that is valid UTF-8 and holds no backslash is itself;
// in any other, each backslash is doubled and each byte that belongs to no
// well-formed character is written \xHH (two lower-case hexadecimal digits).
// So "A\xff" (the byte FF) is written A\xff, and a name that really holds a
// backslash, x, f, f is written A\\xff.
std::string LosslessText(std::string_view name);

// How many columns `text` takes on a terminal: one for each well-formed
// character and one for each byte of none (East Asian wide characters are
// counted as one).
std::size_t DisplayWidth(std::string_view text);

// A name as a cell of a row shows it: each byte that would break the row or
// move the cursor (a C0 control, tab and newline among them, or DEL) as a
// backslash and three octal digits; with `backslash`, a backslash too (a
// row that a script reads back, where \ooo must mean one thing only).
std::string EscapedCell(std::string_view name, bool backslash = false);

} // namespace QVS

#endif
