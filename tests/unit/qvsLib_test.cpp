// qvsLib_test.cpp - CRC-32, number parsing, UTF-16 text, key="value" values.
#include "util/support/qvsGuid.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The container's use: start at all ones, complement at the end.
unsigned Crc32(const std::string& text) {
    std::string copy = text;
    return ~QVS::updateCRC(0xFFFFFFFFu, reinterpret_cast<unsigned char*>(&copy[0]), copy.size());
}

} // namespace

TEST(Crc, KnownVectors) {
    EXPECT_EQ(Crc32(""), 0x00000000u);
    EXPECT_EQ(Crc32("a"), 0xE8B7BE43u);
    EXPECT_EQ(Crc32("123456789"), 0xCBF43926u);
    EXPECT_EQ(Crc32("The quick brown fox jumps over the lazy dog"), 0x414FA339u);
    EXPECT_EQ(Crc32(std::string(32, '\0')), 0x190A55ADu);
}

TEST(Crc, ZeroLengthLeavesValueUnchanged) {
    unsigned char byte = 0;
    EXPECT_EQ(QVS::updateCRC(0x12345678u, &byte, 0), 0x12345678u);
}

TEST(Crc, StepsCanBeChained) {
    std::string text = "The quick brown fox jumps over the lazy dog";
    unsigned crc = 0xFFFFFFFFu;
    for (size_t i = 0; i < text.size(); i += 7) {
        size_t n = std::min<size_t>(7, text.size() - i);
        crc = QVS::updateCRC(crc, reinterpret_cast<unsigned char*>(&text[i]), n);
    }
    EXPECT_EQ(~crc, 0x414FA339u);
}

TEST(Crc, EightBytesAtATimeGiveTheByteWiseStep) {
    // The step of the design, one byte at a time, as the reference.
    unsigned table[256];
    for (unsigned n = 0; n < 256; ++n) {
        unsigned c = n;
        for (int k = 0; k < 8; ++k)
            c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        table[n] = c;
    }
    auto byteWise = [&table](unsigned crc, const unsigned char* data, size_t length) {
        for (size_t i = 0; i < length; ++i)
            crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
        return crc;
    };
    std::mt19937 random(42);
    std::vector<unsigned char> data(70000);
    for (unsigned char& b : data)
        b = static_cast<unsigned char>(random());
    // Every length up to 40 from every start up to 8 (so no alignment is
    // assumed), then long stretches.
    for (size_t start = 0; start < 8; ++start)
        for (size_t length = 0; length <= 40; ++length)
            ASSERT_EQ(byteWise(0xFFFFFFFFu, &data[start], length),
                      QVS::updateCRC(0xFFFFFFFFu, &data[start], length))
                << start << " " << length;
    for (size_t length : {65535u, 65536u, 69999u})
        EXPECT_EQ(byteWise(0x12345678u, &data[1], length),
                  QVS::updateCRC(0x12345678u, &data[1], length));
}

TEST(Radix, DigitValues) {
    EXPECT_EQ(QVS::qradix_value('0'), 0u);
    EXPECT_EQ(QVS::qradix_value('9'), 9u);
    EXPECT_EQ(QVS::qradix_value('a'), 10u);
    EXPECT_EQ(QVS::qradix_value('A'), 10u);
    EXPECT_EQ(QVS::qradix_value('z'), 35u);
    EXPECT_EQ(QVS::qradix_value('Z'), 35u);
    EXPECT_EQ(QVS::qradix_value('-'), 37u);
    EXPECT_EQ(QVS::qradix_value(' '), 37u);
    EXPECT_EQ(QVS::qradix_value('\0'), 37u);
}

TEST(Stoq, SignedHexWithSpacesAndMinus) {
    const char* text = "  -0x10";
    char* end = nullptr;
    EXPECT_EQ(QVS::LB_strtoq(text, &end, 0), -16);
    EXPECT_EQ(end, text + std::strlen(text));
    EXPECT_EQ(*end, '\0');
}

TEST(Stoq, NoDigitsLeavesEndAtStart) {
    const char* text = "xyz";
    char* end = nullptr;
    EXPECT_EQ(QVS::LB_strtoq(text, &end, 0), 0);
    EXPECT_EQ(end, text);
    EXPECT_EQ(QVS::LB_strtouq(text, &end, 10), 0u);
    EXPECT_EQ(end, text);
    const char* blanks = "   -";
    EXPECT_EQ(QVS::LB_strtouq(blanks, &end, 0), 0u);
    EXPECT_EQ(end, blanks);
}

TEST(Stoq, UnsignedOverflowGivesAllOnes) {
    const char* text = "18446744073709551616"; // 2 to the power 64
    char* end = nullptr;
    EXPECT_EQ(QVS::LB_strtouq(text, &end, 0), ~0ull);
    EXPECT_EQ(end, text + 20);
    EXPECT_EQ(QVS::LB_strtouq("18446744073709551615", nullptr, 10), ~0ull);
}

TEST(Stoq, OverflowTestMissesSomeWraps) {
    // 2^64 + 2^63 wraps once without the new value falling below the old one
    // at the last step: the check is kept as the storage tools have it.
    const char* text = "0x18000000000000000";
    EXPECT_EQ(QVS::LB_strtouq(text, nullptr, 0), 0x8000000000000000ull);
}

TEST(Stoq, BaseDetection) {
    char* end = nullptr;
    EXPECT_EQ(QVS::LB_strtouq("0x1F", &end, 0), 31u);
    EXPECT_EQ(QVS::LB_strtouq("0X1f", &end, 0), 31u);
    EXPECT_EQ(QVS::LB_strtouq("017", &end, 0), 15u);
    EXPECT_EQ(QVS::LB_strtouq("019", &end, 0), 1u); // octal stops at 9
    EXPECT_EQ(QVS::LB_strtouq("123abc", &end, 0), 123u);
    EXPECT_EQ(QVS::LB_strtouq("0x1F", &end, 16), 31u); // prefix skipped for base 16
    EXPECT_EQ(QVS::LB_strtouq("0x1F", &end, 10), 0u);  // decimal stops at x
    EXPECT_EQ(QVS::LB_strtouq("zz", &end, 36), 35u * 36 + 35);
    EXPECT_EQ(QVS::LB_strtouq("+42", &end, 0), 42u);
    EXPECT_EQ(QVS::LB_strtouq("\t\n 42", &end, 0), 42u);
}

TEST(Stoq, IllegalBaseReturnsZeroWithEndAtStart) {
    const char* text = "  123";
    char* end = nullptr;
    EXPECT_EQ(QVS::LB_strtouq(text, &end, 1), 0u);
    EXPECT_EQ(end, text);
    EXPECT_EQ(QVS::LB_strtouq(text, &end, 37), 0u);
    EXPECT_EQ(end, text);
    EXPECT_EQ(QVS::LB_strtouq(text, &end, -2), 0u);
}

TEST(Stoq, NullEndIsAllowed) { EXPECT_EQ(QVS::LB_strtouq("77", nullptr, 8), 63u); }

TEST(Stoq, UnsignedNegation) {
    EXPECT_EQ(QVS::LB_strtouq("-1", nullptr, 0), ~0ull);
    EXPECT_EQ(QVS::LB_strtouq("-0x10", nullptr, 0), 0ull - 16);
}

TEST(Stoq, SignedSaturation) {
    EXPECT_EQ(QVS::LB_strtoq("9223372036854775807", nullptr, 10), LLONG_MAX);
    EXPECT_EQ(QVS::LB_strtoq("9223372036854775808", nullptr, 10), LLONG_MAX);
    EXPECT_EQ(QVS::LB_strtoq("-9223372036854775808", nullptr, 10), LLONG_MIN);
    EXPECT_EQ(QVS::LB_strtoq("-9223372036854775809", nullptr, 10), LLONG_MIN);
    EXPECT_EQ(QVS::LB_strtoq("0xFFFFFFFFFFFFFFFF", nullptr, 0), LLONG_MAX);
    EXPECT_EQ(QVS::LB_strtoq("-0xFFFFFFFFFFFFFFFF", nullptr, 0), LLONG_MIN);
    EXPECT_EQ(QVS::LB_strtoq("99999999999999999999999", nullptr, 10), LLONG_MAX);
    EXPECT_EQ(QVS::LB_strtoq("-5", nullptr, 10), -5);
}

TEST(Stoq, OtherModes) {
    EXPECT_EQ(QVS::_stoq("-12", nullptr, 10, 2), 0ull - 12);
    EXPECT_EQ(QVS::_stoq("18446744073709551616", nullptr, 10, 2), 0x7FFFFFFFFFFFFFFFull);
    EXPECT_EQ(QVS::_stoq("-18446744073709551616", nullptr, 10, 7), 0x8000000000000000ull);
    // Without overflow the top bit is not examined in these modes.
    EXPECT_EQ(QVS::_stoq("0xFFFFFFFFFFFFFFFF", nullptr, 0, 2), ~0ull);
}

TEST(Stoq, AgreesWithTheCLibraryOnRandomInputs) {
    std::mt19937_64 rng(2026);
    const char* prefixes[] = {"", " ", "\t", "+", "-", " -", "0x", "-0x", "0", " +0X"};
    for (int i = 0; i < 20000; ++i) {
        std::string text = prefixes[rng() % 10];
        bool hex = text.find('x') != std::string::npos || text.find('X') != std::string::npos;
        bool octal = !hex && !text.empty() && text.back() == '0';
        const char* digits = hex ? "0123456789abcdefABCDEF" : octal ? "01234567" : "0123456789";
        size_t ndigits = std::strlen(digits);
        // Few enough digits that neither function overflows.
        size_t count = 1 + rng() % (hex ? 15 : octal ? 20 : 18);
        for (size_t k = 0; k < count; ++k)
            text += digits[rng() % ndigits];
        if (rng() % 3 == 0)
            text += "g9 ";
        char *ours = nullptr, *theirs = nullptr;
        errno = 0;
        unsigned long long expected = std::strtoull(text.c_str(), &theirs, 0);
        EXPECT_EQ(QVS::LB_strtouq(text.c_str(), &ours, 0), expected) << text;
        EXPECT_EQ(ours, theirs) << text;
        long long expectedSigned = std::strtoll(text.c_str(), &theirs, 0);
        EXPECT_EQ(QVS::LB_strtoq(text.c_str(), &ours, 0), expectedSigned) << text;
        EXPECT_EQ(ours, theirs) << text;
        if (!hex && !octal) {
            EXPECT_EQ(QVS::LB_strtouq(text.c_str(), &ours, 10),
                      std::strtoull(text.c_str(), &theirs, 10))
                << text;
            EXPECT_EQ(ours, theirs) << text;
        }
    }
}

TEST(Utf, ConvertsOneTwoAndThreeByteUnits) {
    const unsigned short text[] = {'A', 0x00E9, 0x20AC, 0};
    std::string out = "x";
    QVS::uni2utf(text, out);
    EXPECT_EQ(out, "xA\xC3\xA9\xE2\x82\xAC"); // appended, not replaced
}

TEST(Utf, BoundaryUnits) {
    const unsigned short text[] = {0x7F, 0x80, 0x7FF, 0x800, 0xFFFF, 0};
    std::string out;
    QVS::uni2utf(text, out);
    EXPECT_EQ(out, "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
}

TEST(Utf, SurrogateHalvesAreEncodedOneByOne) {
    const unsigned short text[] = {0xD83D, 0xDE00, 0}; // one emoji as a pair
    std::string out;
    QVS::uni2utf(text, out);
    EXPECT_EQ(out, "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(Utf, NullAndEmptyAppendNothing) {
    std::string out = "keep";
    QVS::uni2utf(nullptr, out);
    const unsigned short empty[] = {0};
    QVS::uni2utf(empty, out);
    EXPECT_EQ(out, "keep");
}

TEST(UnicodeStringTest, ConvertsAndPrintsBytesUnchanged) {
    const unsigned short text[] = {'P', 'o', 'o', 'l', 0x00E9, 0};
    UnicodeString name(text);
    EXPECT_EQ(name.utf8(), "Pool\xC3\xA9");
    std::ostringstream os;
    os.width(20);
    os << name;
    EXPECT_EQ(os.str(), "Pool\xC3\xA9");
}

TEST(UnicodeStringTest, FieldIsCutAtItsEndWithoutTerminator) {
    // Three units with no 0 unit, starting at an odd address.
    unsigned char raw[8] = {0xEE, 'a', 0, 'b', 0, 0xAC, 0x20, 0xEE};
    UnicodeString name(raw + 1, 3);
    EXPECT_EQ(name.utf8(), "ab\xE2\x82\xAC");
    unsigned char stop[6] = {'x', 0, 0, 0, 'y', 0};
    EXPECT_EQ(UnicodeString(stop, 3).utf8(), "x");
}

TEST(VolumeState, Words) {
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber("active"), 6u);
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber("deactive"), 2u);
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber("maintenance"), 3u);
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber("Active"), 0u);
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber("active "), 0u);
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber("mounted"), 0u);
    EXPECT_EQ(QVS::LB_VolumeStateStringToVolumeStateNumber(""), 0u);
}

TEST(Clock, UtcTimeIsTheSystemTime) {
    time_t before = time(nullptr);
    time_t now = QVS::GetUTCTime();
    EXPECT_GE(now, before);
    EXPECT_LE(now, time(nullptr));
}

TEST(Clock, DelaySleepsAtLeastTheGivenTime) {
    auto start = std::chrono::steady_clock::now();
    QVS::LB_delay(20);
    auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count(), 19);
}

TEST(GetValue, UnsignedFromKeyWithQuote) {
    unsigned int value = 99;
    EXPECT_EQ(LBP_GetValue("size=\"12\"", "size=\"", &value), 0u);
    EXPECT_EQ(value, 12u);
}

TEST(GetValue, MissingKeyAndMissingQuote) {
    unsigned int value = 99;
    EXPECT_EQ(LBP_GetValue("size=12", "size=\"", &value), unsigned(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND));
    EXPECT_EQ(LBP_GetValue("size=\"12", "size=\"", &value), unsigned(QVS::zERR_LIB_QUOTE_NOT_FOUND));
    EXPECT_EQ(value, 99u);
}

TEST(GetValue, NumericForms) {
    const char* text = "<a v=\"0x8102\"/><b v=\"0100\"/><c v=\"-7\"/><d v=\"4294967297\"/><e v=\"0\"/>";
    unsigned int u32 = 0;
    EXPECT_EQ(LBP_GetValue(text, "<a v=\"", &u32), 0u);
    EXPECT_EQ(u32, 0x8102u);
    EXPECT_EQ(LBP_GetValue(text, "<d v=\"", &u32), 0u);
    EXPECT_EQ(u32, 1u); // truncated to 32 bits
    int i32 = 0;
    EXPECT_EQ(LBP_GetValue(text, "<c v=\"", &i32), 0u);
    EXPECT_EQ(i32, -7);
    unsigned long ul = 0;
    EXPECT_EQ(LBP_GetValue(text, "<b v=\"", &ul), 0u);
    EXPECT_EQ(ul, 64u);
    long l = 0;
    EXPECT_EQ(LBP_GetValue(text, "<c v=\"", &l), 0u);
    EXPECT_EQ(l, -7);
    unsigned long long ull = 0;
    EXPECT_EQ(LBP_GetValue(text, "<d v=\"", &ull), 0u);
    EXPECT_EQ(ull, 4294967297ull);
    bool flag = false;
    EXPECT_EQ(LBP_GetValue(text, "<a v=\"", &flag), 0u);
    EXPECT_TRUE(flag);
    EXPECT_EQ(LBP_GetValue(text, "<e v=\"", &flag), 0u);
    EXPECT_FALSE(flag);
}

TEST(GetValue, FirstOccurrenceWins) {
    unsigned long long value = 0;
    EXPECT_EQ(LBP_GetValue("<k v=\"1\"/><k v=\"2\"/>", "<k v=\"", &value), 0u);
    EXPECT_EQ(value, 1u);
}

TEST(GetValue, CharacterBuffer) {
    char buffer[6];
    EXPECT_EQ(LBP_GetValue("n=\"hello\"", "n=\"", buffer, 0), unsigned(QVS::zERR_BUFFER_TOO_SMALL));
    EXPECT_EQ(LBP_GetValue("n=\"hello\"", "n=\"", buffer, 5), unsigned(QVS::zERR_BUFFER_TOO_SMALL));
    EXPECT_EQ(LBP_GetValue("n=\"hello\"", "n=\"", buffer, 6), 0u);
    EXPECT_STREQ(buffer, "hello");
    EXPECT_EQ(LBP_GetValue("n=\"\"", "n=\"", buffer, 1), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(LBP_GetValue("x", "n=\"", buffer, 6), unsigned(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND));
}

TEST(GetValue, StringForm) {
    std::string value = "old";
    EXPECT_EQ(LBP_GetValue("<o value=\"vol1 data\"/>", "<o value=\"", value), 0u);
    EXPECT_EQ(value, "vol1 data");
    EXPECT_EQ(LBP_GetValue("<o value=\"x", "<o value=\"", value), unsigned(QVS::zERR_LIB_QUOTE_NOT_FOUND));
    EXPECT_EQ(value, "vol1 data");
}

TEST(GetValue, GuidForms) {
    GUID_t g{};
    EXPECT_EQ(LBP_GetValue("<v v=\"00000001-0002-0003-80-05-060708090a0b\"/>", "<v v=\"", &g), 0u);
    EXPECT_EQ(g.timeLow, 1u);
    EXPECT_EQ(g.node[5], 0x0b);
    GUID_t h{};
    EXPECT_EQ(LBP_GetValue("<v v=\"00000001-0002-0003-8005-060708090a0b\"/>", "<v v=\"", &h), 0u);
    EXPECT_EQ(std::memcmp(&g, &h, sizeof g), 0);
    EXPECT_EQ(LBP_GetValue("<v v=\"00000001-0002-0003-8005-060708090a0\"/>", "<v v=\"", &h),
              unsigned(QVS::zERR_INVALID_VOLUME_ID));
    EXPECT_EQ(LBP_GetValue("<v v=\"00000001-0002-0003-8005-060708090a0bb\"/>", "<v v=\"", &h),
              unsigned(QVS::zERR_INVALID_VOLUME_ID));
    EXPECT_EQ(LBP_GetValue("<v v=\"0000000g-0002-0003-80-05-060708090a0b\"/>", "<v v=\"", &h),
              unsigned(QVS::zERR_INVALID_VOLUME_ID));
    EXPECT_EQ(LBP_GetValue("<v v=\"00000001-0002-0003-80-05-060708090a0b", "<v v=\"", &h),
              unsigned(QVS::zERR_LIB_QUOTE_NOT_FOUND));
}

// The view forms read a text that is not terminated, such as one item inside
// a whole log, as the terminated string that ends at the view's end or at its
// first zero byte.
TEST(GetValueOfAView, EndsAtTheEndOfTheView) {
    const std::string log = "<k v=\"1</item>\"<j v=\"2\"/>";
    const std::string_view item(log.data(), log.find("</item>") + 7);
    unsigned long long value = 99;
    EXPECT_EQ(LBP_GetValue(item, "<k v=\"", &value), unsigned(QVS::zERR_LIB_QUOTE_NOT_FOUND));
    EXPECT_EQ(LBP_GetValue(item, "<j v=\"", &value), unsigned(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND));
    EXPECT_EQ(value, 99u);
    EXPECT_EQ(LBP_GetValue(std::string_view(log), "<j v=\"", &value), 0u);
    EXPECT_EQ(value, 2u);
    // A key cut by the view's end is not there.
    EXPECT_EQ(LBP_GetValue(std::string_view(log.data(), 4), "<k v=\"", &value),
              unsigned(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND));
}

TEST(GetValueOfAView, EndsAtAZeroByteAsATerminatedStringDoes) {
    const std::string before("<a/>\0<k v=\"5\"/>", 15);
    unsigned int value = 99;
    EXPECT_EQ(LBP_GetValue(std::string_view(before), "<k v=\"", &value),
              unsigned(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND));
    const std::string inside("<k v=\"5\0\"/>", 11);
    EXPECT_EQ(LBP_GetValue(std::string_view(inside), "<k v=\"", &value),
              unsigned(QVS::zERR_LIB_QUOTE_NOT_FOUND));
    const std::string after("<k v=\"5\"/>\0x", 12);
    EXPECT_EQ(LBP_GetValue(std::string_view(after), "<k v=\"", &value), 0u);
    EXPECT_EQ(value, 5u);
    EXPECT_EQ(LBP_GetValue(inside.c_str(), "<k v=\"", &value), unsigned(QVS::zERR_LIB_QUOTE_NOT_FOUND));
}

TEST(GetValueOfAView, NumbersStopAtTheClosingQuote) {
    // The digits after the quote belong to the next text, not to the value.
    const std::string text = "<k v=\"12\"34";
    unsigned long long big = 0;
    EXPECT_EQ(LBP_GetValue(std::string_view(text), "<k v=\"", &big), 0u);
    EXPECT_EQ(big, 12u);
    // Every form of number the C library reads: hexadecimal, octal, signs,
    // blanks, and decimals too long to be read digit by digit.
    struct Case {
        const char* text;
        unsigned long long value;
    } cases[] = {
        {"<k v=\"0x1F\"", 31},
        {"<k v=\"017\"", 15},
        {"<k v=\"0\"", 0},
        {"<k v=\" 42\"", 42},
        {"<k v=\"-1\"", ~0ull},
        {"<k v=\"+7\"", 7},
        {"<k v=\"9999999999999999999\"", 9999999999999999999ull},
        {"<k v=\"18446744073709551615\"", 18446744073709551615ull},
        {"<k v=\"18446744073709551616\"", ~0ull},
        {"<k v=\"12ab\"", 12},
        {"<k v=\"\"", 0},
        {"<k v=\"x\"", 0},
    };
    for (const Case& c : cases) {
        unsigned long long fromView = 1, fromText = 2;
        EXPECT_EQ(LBP_GetValue(std::string_view(c.text), "<k v=\"", &fromView), 0u) << c.text;
        EXPECT_EQ(LBP_GetValue(c.text, "<k v=\"", &fromText), 0u) << c.text;
        EXPECT_EQ(fromView, c.value) << c.text;
        EXPECT_EQ(fromText, c.value) << c.text;
    }
}

TEST(GetValueOfAView, EveryForm) {
    const std::string text = "<n v=\"name\"/><g v=\"00000001-0002-0003-80-05-060708090a0b\"/>"
                             "<i v=\"-3\"/><u v=\"7\"/>";
    const std::string_view view(text);
    std::string name;
    EXPECT_EQ(LBP_GetValue(view, "<n v=\"", name), 0u);
    EXPECT_EQ(name, "name");
    char buffer[5];
    EXPECT_EQ(LBP_GetValue(view, "<n v=\"", buffer, 5), 0u);
    EXPECT_STREQ(buffer, "name");
    EXPECT_EQ(LBP_GetValue(view, "<n v=\"", buffer, 4), unsigned(QVS::zERR_BUFFER_TOO_SMALL));
    GUID_t g{};
    EXPECT_EQ(LBP_GetValue(view, "<g v=\"", &g), 0u);
    EXPECT_EQ(g.timeLow, 1u);
    int i = 0;
    long l = 0;
    EXPECT_EQ(LBP_GetValue(view, "<i v=\"", &i), 0u);
    EXPECT_EQ(LBP_GetValue(view, "<i v=\"", &l), 0u);
    EXPECT_EQ(i, -3);
    EXPECT_EQ(l, -3);
    unsigned u = 0;
    unsigned long ul = 0;
    bool b = false;
    EXPECT_EQ(LBP_GetValue(view, "<u v=\"", &u), 0u);
    EXPECT_EQ(LBP_GetValue(view, "<u v=\"", &ul), 0u);
    EXPECT_EQ(LBP_GetValue(view, "<u v=\"", &b), 0u);
    EXPECT_EQ(u, 7u);
    EXPECT_EQ(ul, 7u);
    EXPECT_TRUE(b);
}

// The CRC of every length and alignment, from any register, equals the
// bitwise CRC: the folding by carry-less multiplication (where the
// processor has it) and the tables agree to the bit.
TEST(Crc, EveryLengthAndAlignmentEqualsTheBitwiseCrc) {
    std::vector<unsigned char> data(4200);
    unsigned seed = 12345;
    for (unsigned char& byte : data) {
        seed = seed * 1103515245u + 12345u;
        byte = static_cast<unsigned char>(seed >> 16);
    }
    auto bitwise = [&](unsigned crc, std::size_t from, std::size_t length) {
        for (std::size_t i = from; i < from + length; ++i) {
            crc ^= data[i];
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
        }
        return crc;
    };
    for (std::size_t length = 0; length <= 1100; ++length)
        for (std::size_t from : {0u, 1u, 7u, 15u}) {
            const unsigned start = length % 3 == 0 ? 0xFFFFFFFFu : static_cast<unsigned>(length * 2654435761u);
            ASSERT_EQ(QVS::updateCRC(start, data.data() + from, length), bitwise(start, from, length))
                << "length " << length << " from " << from;
        }
    EXPECT_EQ(~QVS::updateCRC(0xFFFFFFFFu, data.data(), 4096), ~bitwise(0xFFFFFFFFu, 0, 4096));
}
