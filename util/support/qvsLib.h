// qvsLib.h - CRC-32 step, clock and delay, radix-aware number parsing,
// UTF-16 to UTF-8 conversion, key="value" extraction and volume-state words.
#ifndef UTIL_SUPPORT_QVSLIB_H
#define UTIL_SUPPORT_QVSLIB_H

#include "util/support/compiler.h"

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <ostream>
#include <string>
#include <string_view>

struct GUID_t;

namespace QVS {

// One reflected CRC-32 step (polynomial 0xEDB88320) over `length` bytes; the
// caller applies the initial 0xFFFFFFFF and the final complement.
unsigned updateCRC(unsigned crc, unsigned char* data, unsigned long length);

time_t GetUTCTime();
void LB_delay(long milliseconds);

// Digit value of c in any base up to 36, or 37 for a non-digit.
unsigned qradix_value(char c);

// Parses an integer with base detection; mode 0 unsigned, mode 1 signed
// (saturating), other modes signed limits on overflow.
unsigned long long _stoq(const char* s, char** end, int base, int mode);
unsigned long long LB_strtouq(const char* s, char** end, int base);
long long LB_strtoq(const char* s, char** end, int base);

// The UTF-8 bytes of code point `code` (up to 4) written to `out`; returns
// how many.
QVS_INLINE std::size_t EncodeUtf8(uint32_t code, char* out) {
    if (code < 0x80) {
        out[0] = static_cast<char>(code);
        return 1;
    }
    if (code < 0x800) {
        out[0] = static_cast<char>(0xC0 | (code >> 6));
        out[1] = static_cast<char>(0x80 | (code & 0x3F));
        return 2;
    }
    if (code < 0x10000) {
        out[0] = static_cast<char>(0xE0 | (code >> 12));
        out[1] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out[2] = static_cast<char>(0x80 | (code & 0x3F));
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | (code >> 18));
    out[1] = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out[2] = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out[3] = static_cast<char>(0x80 | (code & 0x3F));
    return 4;
}

// Appends the UTF-8 form of a zero-terminated UTF-16 string; each unit is
// encoded on its own (surrogate halves are not combined).
void uni2utf(const unsigned short* text, std::string& out);
// Appends one code point as UTF-8: a UTF-16 unit becomes one, two or three
// bytes.
void appendUtf8(unsigned code, std::string& out);

// Volume state words: "active" 6, "deactive" 2, "maintenance" 3, else 0.
unsigned LB_VolumeStateStringToVolumeStateNumber(const char* word);

} // namespace QVS

// Owning UTF-8 copy of a UTF-16 name.
class UnicodeString {
public:
    explicit UnicodeString(const unsigned short* text);
    // A name stored in a record: little-endian units, cut at its first 0 unit
    // or at the end of the field, whichever comes first. Never reads past
    // `maxUnits` units and never needs alignment.
    UnicodeString(const void* field, size_t maxUnits);
    ~UnicodeString();

    const std::string& utf8() const { return text_; }

private:
    std::string text_;
};

std::ostream& operator<<(std::ostream& os, const UnicodeString& name);

// key="value" extraction. `key` includes the opening quote. Returns 0,
// 21820 (key absent), 21821 (no closing quote), 20004, 20000 or 20821.
unsigned LBP_GetValue(const char* text, const char* key, unsigned int* value);
unsigned LBP_GetValue(const char* text, const char* key, int* value);
unsigned LBP_GetValue(const char* text, const char* key, unsigned long* value);
unsigned LBP_GetValue(const char* text, const char* key, long* value);
unsigned LBP_GetValue(const char* text, const char* key, unsigned long long* value);
unsigned LBP_GetValue(const char* text, const char* key, bool* value);
unsigned LBP_GetValue(const char* text, const char* key, char* buffer, unsigned size);
unsigned LBP_GetValue(const char* text, const char* key, std::string& value);
unsigned LBP_GetValue(const char* text, const char* key, GUID_t* value);

// The same over a text that need not be terminated, such as one item inside
// a whole rebuild log: it is read as the terminated string that ends at the
// view's end or at its first zero byte, whichever comes first.
unsigned LBP_GetValue(std::string_view text, std::string_view key, unsigned int* value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, int* value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, unsigned long* value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, long* value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, unsigned long long* value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, bool* value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, char* buffer, unsigned size);
unsigned LBP_GetValue(std::string_view text, std::string_view key, std::string& value);
unsigned LBP_GetValue(std::string_view text, std::string_view key, GUID_t* value);

#endif
