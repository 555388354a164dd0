// qvsLib.cpp - CRC-32, numbers, UTF-16 text, key="value" extraction.
#include "util/support/qvsLib.h"

#include "util/support/crcFold.h"
#include "util/support/qvsGuid.h"
#include "util/support/qvsStatus.h"
#include "util/support/textSearch.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <new>
#include <unistd.h>

namespace QVS {

namespace {

// The standard table for the polynomial, and fifteen more derived from it, so
// that sixteen bytes are taken in one step ("slicing by sixteen"): the same
// CRC as the byte-wise step, far faster over a whole report.
struct CrcTable {
    unsigned entry[16][256];
    CrcTable() {
        for (unsigned n = 0; n < 256; ++n) {
            unsigned c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            entry[0][n] = c;
        }
        for (unsigned n = 0; n < 256; ++n)
            for (int t = 1; t < 16; ++t)
                entry[t][n] = entry[0][entry[t - 1][n] & 0xFF] ^ (entry[t - 1][n] >> 8);
    }
};

const CrcTable crcTable;

} // namespace

unsigned updateCRC(unsigned crc, unsigned char* data, unsigned long length) {
    // Whole blocks by carry-less multiplication where the processor has it;
    // the rest by the tables.
    if (length >= CRC_FOLD_MINIMUM && CrcFoldAvailable()) {
        const unsigned long folded = length & ~15ul;
        crc = FoldCrc(crc, data, folded);
        data += folded;
        length -= folded;
    }
    const auto& t = crcTable.entry;
    unsigned long i = 0;
    for (; i + 16 <= length; i += 16) {
        const unsigned char* b = data + i;
        const unsigned low = crc ^ (b[0] | (b[1] << 8) | (b[2] << 16) |
                                    (static_cast<unsigned>(b[3]) << 24));
        crc = t[15][low & 0xFF] ^ t[14][(low >> 8) & 0xFF] ^ t[13][(low >> 16) & 0xFF] ^
              t[12][low >> 24] ^ t[11][b[4]] ^ t[10][b[5]] ^ t[9][b[6]] ^ t[8][b[7]] ^
              t[7][b[8]] ^ t[6][b[9]] ^ t[5][b[10]] ^ t[4][b[11]] ^ t[3][b[12]] ^ t[2][b[13]] ^
              t[1][b[14]] ^ t[0][b[15]];
    }
    for (; i < length; ++i)
        crc = t[0][(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
    return crc;
}

time_t GetUTCTime() { return time(nullptr); }

void LB_delay(long milliseconds) {
    // The product is taken in 32 bits, as the storage tools do.
    usleep(static_cast<useconds_t>(static_cast<uint32_t>(milliseconds * 1000)));
}

unsigned qradix_value(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    int lower = std::tolower(static_cast<unsigned char>(c));
    if (lower >= 'a' && lower <= 'z')
        return static_cast<unsigned>(lower - 'a' + 10);
    return 37;
}

unsigned long long _stoq(const char* s, char** end, int base, int mode) {
    if (end)
        *end = const_cast<char*>(s);
    const char* p = s;
    while (std::isspace(static_cast<unsigned char>(*p)))
        ++p;
    bool negative = false;
    if (*p == '-' || *p == '+') {
        negative = *p == '-';
        ++p;
    }
    bool hexPrefix = p[0] == '0' && (p[1] == 'x' || p[1] == 'X');
    if (base == 0)
        base = hexPrefix ? 16 : (p[0] == '0' ? 8 : 10);
    else if (base < 2 || base > 36)
        return 0;
    if (base == 16 && hexPrefix)
        p += 2;

    unsigned long long value = 0;
    bool overflow = false;
    const char* first = p;
    unsigned digit;
    while ((digit = qradix_value(*p)) < static_cast<unsigned>(base)) {
        unsigned long long next = value * static_cast<unsigned>(base) + digit;
        // This test misses some overflows; the storage tools rely on it as is.
        if (next < value)
            overflow = true;
        value = next;
        ++p;
    }
    if (end)
        *end = const_cast<char*>(p == first ? s : p);

    const unsigned long long signedMax = 0x7FFFFFFFFFFFFFFFull;
    const unsigned long long signedMin = 0x8000000000000000ull;
    if (mode == 1) {
        if (value & signedMin)
            return negative ? signedMin : signedMax;
        if (overflow)
            return negative ? signedMin : signedMax;
        return negative ? (~value + 1) : value;
    }
    if (mode == 0) {
        if (overflow)
            return ~0ull;
        return negative ? (~value + 1) : value;
    }
    if (overflow)
        return negative ? signedMin : signedMax;
    return negative ? (~value + 1) : value;
}

unsigned long long LB_strtouq(const char* s, char** end, int base) { return _stoq(s, end, base, 0); }

long long LB_strtoq(const char* s, char** end, int base) {
    return static_cast<long long>(_stoq(s, end, base, 1));
}

void appendUtf8(unsigned u, std::string& out) {
    char bytes[4];
    out.append(bytes, EncodeUtf8(u, bytes));
}

void uni2utf(const unsigned short* text, std::string& out) {
    if (text == nullptr)
        return;
    for (; *text != 0; ++text)
        appendUtf8(*text, out);
}

unsigned LB_VolumeStateStringToVolumeStateNumber(const char* word) {
    if (word == nullptr)
        return 0;
    if (std::strcmp(word, "active") == 0)
        return 6;
    if (std::strcmp(word, "deactive") == 0)
        return 2;
    if (std::strcmp(word, "maintenance") == 0)
        return 3;
    return 0;
}

} // namespace QVS

UnicodeString::UnicodeString(const unsigned short* text) { QVS::uni2utf(text, text_); }

UnicodeString::UnicodeString(const void* field, size_t maxUnits) {
    const unsigned char* bytes = static_cast<const unsigned char*>(field);
    for (size_t i = 0; i < maxUnits; ++i) {
        unsigned u = bytes[2 * i] | (static_cast<unsigned>(bytes[2 * i + 1]) << 8);
        if (u == 0)
            break;
        QVS::appendUtf8(u, text_);
    }
}

UnicodeString::~UnicodeString() = default;

std::ostream& operator<<(std::ostream& os, const UnicodeString& name) {
    return os.write(name.utf8().data(), static_cast<std::streamsize>(name.utf8().size()));
}

namespace {

// Finds the value behind `key` in `text`, read as a terminated string would
// be: it ends at the view's end or at its first zero byte. [start, close) is
// the quoted text.
QVS_INLINE unsigned locateValue(std::string_view text, std::string_view key, const char*& start,
                                const char*& close) {
    const char* const data = text.data();
    const std::size_t hit = QVS::FindIn(data, 0, text.size(), QVS::Needle(key, 1));
    // A zero byte ends the text: a key that only comes after one is absent,
    // and so is a closing quote.
    if (hit == std::string_view::npos ||
        QVS::FindByte(data, data + hit, '\0', data + text.size()) != nullptr)
        return QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND;
    const char* const value = data + hit + key.size();
    const char* const quote = QVS::FindQuoteOrZero(value, data + text.size());
    if (quote == nullptr || *quote == '\0')
        return QVS::zERR_LIB_QUOTE_NOT_FOUND;
    start = value;
    close = quote;
    return 0;
}

// strtoull(text, nullptr, 0) for the usual value, up to 19 plain decimal
// digits that end before `close` (no overflow possible); false for anything
// else, which goes to the C library.
bool plainDecimal(const char* text, const char* close, unsigned long long* value) {
    if (text == close || *text < '1' || *text > '9' || close - text > 19)
        return false;
    unsigned long long result = 0;
    for (; text < close; ++text) {
        const unsigned digit = static_cast<unsigned char>(*text) - '0';
        if (digit > 9)
            break;
        result = result * 10 + digit;
    }
    *value = result;
    return true;
}

// The numeric forms: convert from the value's start, stopping at the first
// character that cannot belong to the number, at the closing quote at the
// latest (so a text that is not terminated is never read past it).
template <typename T, typename Convert>
unsigned GetNumber(std::string_view text, std::string_view key, T* value, Convert convert) {
    const char *start, *close;
    unsigned status = locateValue(text, key, start, close);
    if (status == 0)
        *value = static_cast<T>(convert(start));
    return status;
}

} // namespace

unsigned LBP_GetValue(std::string_view text, std::string_view key, unsigned int* value) {
    return GetNumber(text, key, value, [](const char* s) { return std::strtoul(s, nullptr, 0); });
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, int* value) {
    return GetNumber(text, key, value, [](const char* s) { return std::strtol(s, nullptr, 0); });
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, unsigned long* value) {
    return GetNumber(text, key, value, [](const char* s) { return std::strtoul(s, nullptr, 0); });
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, long* value) {
    return GetNumber(text, key, value, [](const char* s) { return std::strtol(s, nullptr, 0); });
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, unsigned long long* value) {
    const char *start, *close;
    unsigned status = locateValue(text, key, start, close);
    // Millions of keys and ZIDs of a log are plain decimals.
    if (status == 0 && !plainDecimal(start, close, value))
        *value = std::strtoull(start, nullptr, 0);
    return status;
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, bool* value) {
    unsigned long long number = 0;
    unsigned status = LBP_GetValue(text, key, &number);
    if (status == 0)
        *value = number != 0;
    return status;
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, char* buffer, unsigned size) {
    if (size == 0)
        return QVS::zERR_BUFFER_TOO_SMALL;
    const char *start, *close;
    unsigned status = locateValue(text, key, start, close);
    if (status != 0)
        return status;
    size_t length = static_cast<size_t>(close - start);
    if (length >= size)
        return QVS::zERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, start, length);
    buffer[length] = '\0';
    return 0;
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, std::string& value) {
    const char *start, *close;
    unsigned status = locateValue(text, key, start, close);
    if (status != 0)
        return status;
    try {
        value.assign(start, close);
    } catch (const std::exception&) {
        return QVS::zERR_NO_MEMORY;
    }
    return 0;
}

unsigned LBP_GetValue(std::string_view text, std::string_view key, GUID_t* value) {
    const char *start, *close;
    unsigned status = locateValue(text, key, start, close);
    if (status != 0)
        return status;
    size_t length = static_cast<size_t>(close - start);
    if (length != QVS::GUID_TEXT_LENGTH - 1 && length != QVS::GUID_TEXT_LENGTH)
        return QVS::zERR_INVALID_VOLUME_ID;
    char copy[QVS::GUID_TEXT_LENGTH + 1];
    std::memcpy(copy, start, length);
    copy[length] = '\0';
    return QVS::LB_GUIDFromUTF8(copy, value);
}

// The terminated-string forms are the same extraction over the whole string.
unsigned LBP_GetValue(const char* text, const char* key, unsigned int* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, int* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, unsigned long* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, long* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, unsigned long long* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, bool* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, char* buffer, unsigned size) {
    return LBP_GetValue(std::string_view(text), key, buffer, size);
}

unsigned LBP_GetValue(const char* text, const char* key, std::string& value) {
    return LBP_GetValue(std::string_view(text), key, value);
}

unsigned LBP_GetValue(const char* text, const char* key, GUID_t* value) {
    return LBP_GetValue(std::string_view(text), key, value);
}
