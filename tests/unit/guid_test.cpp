// guid_test.cpp - GUID text forms, parsing, generation, validation, ordering.
#include "util/support/qvsGuid.h"
#include "util/support/qvsStatus.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iomanip>
#include <random>
#include <sstream>

namespace {

GUID_t Sample() {
    GUID_t g;
    g.timeLow = 1;
    g.timeMid = 2;
    g.timeHighAndVersion = 3;
    g.clockSeqHighAndReserved = 0x80;
    g.clockSeqLow = 5;
    const uint8_t node[6] = {6, 7, 8, 9, 0x0a, 0x0b};
    std::memcpy(g.node, node, 6);
    return g;
}

bool Same(const GUID_t& a, const GUID_t& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

} // namespace

TEST(GuidText, ToStringWritesThirtySevenCharacters) {
    GUID_t g = Sample();
    char text[38];
    ASSERT_EQ(QVS::LB_GUIDToString(&g, sizeof text, text), 0u);
    EXPECT_STREQ(text, "00000001-0002-0003-80-05-060708090a0b");
    EXPECT_EQ(std::strlen(text), 37u);
}

TEST(GuidText, ToStringNeedsThirtyEightBytes) {
    GUID_t g = Sample();
    char text[64];
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(QVS::LB_GUIDToString(&g, 37, text), unsigned(QVS::zERR_BUFFER_TOO_SMALL));
    EXPECT_EQ(text[0], '\0');
    EXPECT_EQ(QVS::LB_GUIDToString(&g, 38, text), 0u);
    EXPECT_EQ(std::strlen(text), 37u);
}

TEST(GuidText, StreamOperatorMatchesStringForm) {
    GUID_t g = Sample();
    std::ostringstream os;
    os << g;
    EXPECT_EQ(os.str(), "00000001-0002-0003-80-05-060708090a0b");
}

TEST(GuidText, StreamOperatorRestoresFlagsButLeavesZeroFill) {
    GUID_t g = Sample();
    std::ostringstream os;
    os << std::showbase << std::uppercase;
    std::ios_base::fmtflags before = os.flags();
    os << g;
    EXPECT_EQ(os.flags(), before);
    EXPECT_EQ(os.fill(), '0');
    os << std::setw(4) << 7;
    EXPECT_EQ(os.str().substr(37), "0007");
}

TEST(GuidText, StreamOperatorIgnoresShowbaseAndDecimalState) {
    GUID_t g = Sample();
    g.timeLow = 0xabcdef;
    std::ostringstream os;
    os << std::showbase << std::dec << g;
    EXPECT_EQ(os.str(), "00abcdef-0002-0003-80-05-060708090a0b");
}

TEST(GuidText, StreamOperatorWritesThePlainTextWhateverTheStreamWasSetTo) {
    // Every combination an earlier writer may have left: adjustment, case,
    // base prefix, sign, base, and a width with a fill character.
    GUID_t g = Sample();
    g.timeLow = 0xabcdef;
    g.node[5] = 0xfe;
    const std::string plain = "00abcdef-0002-0003-80-05-060708090afe";
    const std::ios_base::fmtflags adjustments[] = {std::ios_base::fmtflags(), std::ios_base::left,
                                                   std::ios_base::right, std::ios_base::internal};
    const std::ios_base::fmtflags bases[] = {std::ios_base::fmtflags(), std::ios_base::dec,
                                             std::ios_base::oct, std::ios_base::hex};
    unsigned combinations = 0;
    for (std::ios_base::fmtflags adjustment : adjustments)
        for (std::ios_base::fmtflags base : bases)
            for (int others = 0; others < 8; ++others)
                for (int width : {0, 1, 40})
                    for (char fill : {' ', '*', '0'}) {
                        std::ostringstream os;
                        os.flags(adjustment | base |
                                 ((others & 1) ? std::ios_base::uppercase : std::ios_base::fmtflags()) |
                                 ((others & 2) ? std::ios_base::showbase : std::ios_base::fmtflags()) |
                                 ((others & 4) ? std::ios_base::showpos : std::ios_base::fmtflags()));
                        os.width(width);
                        os.fill(fill);
                        const std::ios_base::fmtflags before = os.flags();
                        os << g;
                        EXPECT_EQ(os.str(), plain) << "flags " << before << " width " << width
                                                   << " fill '" << fill << "'";
                        EXPECT_EQ(os.flags(), before);
                        ++combinations;
                    }
    EXPECT_EQ(combinations, 4u * 4u * 8u * 3u * 3u);
}

TEST(GuidText, LeftAdjustedStreamKeepsTheZerosInFront) {
    GUID_t g = Sample();
    std::ostringstream os;
    os << std::left << g;
    EXPECT_EQ(os.str(), "00000001-0002-0003-80-05-060708090a0b");
}

TEST(GuidParse, BothFormsGiveTheSameIdentifier) {
    GUID_t a{}, b{};
    ASSERT_EQ(QVS::LB_GUIDFromUTF8("00000001-0002-0003-80-05-060708090a0b", &a), 0u);
    ASSERT_EQ(QVS::LB_GUIDFromUTF8("00000001-0002-0003-8005-060708090a0b", &b), 0u);
    EXPECT_TRUE(Same(a, b));
    EXPECT_TRUE(Same(a, Sample()));
}

TEST(GuidParse, UpperCaseDigitsAreAccepted) {
    GUID_t a{};
    ASSERT_EQ(QVS::LB_GUIDFromUTF8("ABCDEF01-0002-0003-8005-060708090A0B", &a), 0u);
    EXPECT_EQ(a.timeLow, 0xabcdef01u);
    EXPECT_EQ(a.node[5], 0x0b);
}

TEST(GuidParse, RejectsEveryDeviation) {
    const char* bad[] = {
        "x0000001-0002-0003-80-05-060708090a0b", // group 1 starts with a non-digit
        "00000001-x002-0003-80-05-060708090a0b", // group 2
        "00000001-0002-x003-80-05-060708090a0b", // group 3
        "00000001-0002-0003-x0-05-060708090a0b", // clock high
        "00000001-0002-0003-80-x5-060708090a0b", // clock low
        "00000001-0002-0003-80-05-x60708090a0b", // node
        "00000001-0002-0003-x005-060708090a0b",  // 36-form clock group
        "0000001-00002-0003-80-05-060708090a0b", // a group one digit short
        "00000001-002-00003-80-05-060708090a0b",
        "00000001-0002-0003-80-5-0060708090a0b",
        "00000001-0002-0003-80-05-060708090a0",  // length 36 but the 37-form
        "00000001-0002-0003-80-05-060708090a0bc", // length 38
        "00000001-0002-0003-8005-060708090a0",   // length 35
        "00000001+0002-0003-80-05-060708090a0b", // wrong separator
        "",
    };
    for (const char* text : bad) {
        GUID_t g{};
        EXPECT_EQ(QVS::LB_GUIDFromUTF8(text, &g), unsigned(QVS::zERR_INVALID_VOLUME_ID)) << text;
    }
}

TEST(GuidParse, FieldsParsedBeforeAnErrorStayWritten) {
    GUID_t g{};
    EXPECT_EQ(QVS::LB_GUIDFromUTF8("12345678-0002-x003-80-05-060708090a0b", &g),
              unsigned(QVS::zERR_INVALID_VOLUME_ID));
    EXPECT_EQ(g.timeLow, 0x12345678u);
    EXPECT_EQ(g.timeMid, 2);
}

TEST(GuidParse, RoundTripOfRandomIdentifiers) {
    std::mt19937 rng(12345);
    for (int i = 0; i < 2000; ++i) {
        GUID_t g;
        unsigned char* bytes = reinterpret_cast<unsigned char*>(&g);
        for (size_t k = 0; k < sizeof g; ++k)
            bytes[k] = static_cast<unsigned char>(rng());
        char text[38];
        ASSERT_EQ(QVS::LB_GUIDToString(&g, sizeof text, text), 0u);
        GUID_t back{};
        ASSERT_EQ(QVS::LB_GUIDFromUTF8(text, &back), 0u) << text;
        EXPECT_TRUE(Same(g, back)) << text;
        std::ostringstream os;
        os << g;
        EXPECT_EQ(os.str(), text);
        // The 36-character form carries the same identifier.
        std::string common(text);
        common.erase(21, 1);
        GUID_t fromCommon{};
        ASSERT_EQ(QVS::LB_GUIDFromUTF8(common.c_str(), &fromCommon), 0u) << common;
        EXPECT_TRUE(Same(g, fromCommon));
    }
}

TEST(GuidConstants, ZeroAndInvalidAreEqual) {
    GUID_t zero = QVS::zZERO_GUID, invalid = QVS::zINVALID_GUID;
    EXPECT_EQ(QVS::LB_GUIDCompare(&zero, &invalid), 0);
    GUID_t admin = QVS::zADMINVOL_GUID;
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&admin);
    for (size_t i = 0; i < sizeof admin; ++i)
        EXPECT_EQ(bytes[i], 0xFF);
    EXPECT_EQ(QVS::LB_GUIDCompare(&admin, &zero), 1);
    EXPECT_EQ(QVS::LB_GUIDCompare(&zero, &admin), -1);
}

TEST(GuidCompare, WordsInMemoryOrderNotTextOrder) {
    GUID_t a{}, b{};
    // Byte 0 is the low byte of the first little-endian word.
    reinterpret_cast<unsigned char*>(&a)[3] = 1; // 0x01000000 in word 0
    reinterpret_cast<unsigned char*>(&b)[0] = 2; // 0x00000002 in word 0
    EXPECT_EQ(QVS::LB_GUIDCompare(&a, &b), 1);
    GUID_t c{}, d{};
    reinterpret_cast<unsigned char*>(&c)[15] = 1; // last word only
    reinterpret_cast<unsigned char*>(&d)[12] = 0xFF;
    EXPECT_EQ(QVS::LB_GUIDCompare(&c, &d), 1);
    EXPECT_EQ(QVS::LB_GUIDCompare(&d, &c), -1);
    EXPECT_EQ(QVS::LB_GUIDCompare(&c, &c), 0);
}

TEST(GuidGenerate, GeneratedIdentifiersValidate) {
    GUID_t g;
    QVS::LB_GUIDGenerate(&g);
    EXPECT_TRUE(QVS::LB_GUIDValidate(&g));
    EXPECT_EQ(g.clockSeqHighAndReserved & 0xC0, 0x80);
    EXPECT_LT(g.timeHighAndVersion, 4096);
    EXPECT_EQ(QVS::GUIDinitDone, 1u);
    EXPECT_EQ(std::memcmp(g.node, QVS::GUIDnode, 6), 0);
}

TEST(GuidGenerate, ValidateChecksReservedBitsAndTimeHigh) {
    GUID_t g = Sample();
    EXPECT_TRUE(QVS::LB_GUIDValidate(&g));
    g.clockSeqHighAndReserved = 0xC0;
    EXPECT_FALSE(QVS::LB_GUIDValidate(&g));
    g.clockSeqHighAndReserved = 0x40;
    EXPECT_FALSE(QVS::LB_GUIDValidate(&g));
    g.clockSeqHighAndReserved = 0xBF;
    g.timeHighAndVersion = 4095;
    EXPECT_TRUE(QVS::LB_GUIDValidate(&g));
    g.timeHighAndVersion = 4096;
    EXPECT_FALSE(QVS::LB_GUIDValidate(&g));
}

TEST(GuidGenerate, SameSecondAdvancesSequenceAndWrapMovesTime) {
    // Pretend the clock already stands a little ahead, so every generation of
    // this test falls "within one second".
    QVS::GUIDsavedTime = QVS::GUID_getTime() + 100000000ull;
    QVS::GUIDclockSeq = 5;
    const uint64_t saved = QVS::GUIDsavedTime;
    GUID_t a, b;
    QVS::LB_GUIDGenerate(&a);
    QVS::LB_GUIDGenerate(&b);
    // The timestamp repeats from the clock's reading, the sequence differs.
    EXPECT_EQ(a.timeLow, b.timeLow);
    EXPECT_EQ(a.timeMid, b.timeMid);
    EXPECT_NE(a.clockSeqLow, b.clockSeqLow);
    EXPECT_EQ(QVS::GUIDclockSeq, 7u);
    EXPECT_EQ(b.clockSeqLow, 7);

    // Run the sequence up to its wrap. The saved time follows the clock's
    // reading, so the wrap moves it one step past that reading.
    QVS::GUIDsavedTime = saved;
    QVS::GUIDclockSeq = 0;
    GUID_t g;
    for (int i = 0; i < 16383; ++i)
        QVS::LB_GUIDGenerate(&g);
    EXPECT_EQ(QVS::GUIDclockSeq, 16383u);
    EXPECT_EQ(g.clockSeqHighAndReserved, 0xBF);
    EXPECT_EQ(g.clockSeqLow, 0xFF);
    const uint64_t beforeWrap = QVS::GUIDsavedTime;
    QVS::GUIDsavedTime = saved; // keep the next reading "within the second"
    QVS::LB_GUIDGenerate(&g);
    EXPECT_EQ(QVS::GUIDclockSeq, 0u);
    EXPECT_EQ(QVS::GUIDsavedTime, saved + 1);
    EXPECT_EQ(g.timeLow, static_cast<uint32_t>(saved + 1));
    EXPECT_EQ(g.clockSeqHighAndReserved, 0x80);
    EXPECT_EQ(g.clockSeqLow, 0);
    EXPECT_LE(beforeWrap, saved);
}

TEST(GuidGenerate, NewSecondKeepsSequence) {
    QVS::GUIDsavedTime = 0;
    QVS::GUIDclockSeq = 42;
    GUID_t g;
    QVS::LB_GUIDGenerate(&g);
    EXPECT_EQ(QVS::GUIDclockSeq, 42u);
    EXPECT_GE(QVS::GUIDsavedTime, 0x01B21DD213814000ull);
    uint64_t t = QVS::GUIDsavedTime;
    EXPECT_EQ(g.timeLow, static_cast<uint32_t>(t));
    EXPECT_EQ(g.timeMid, static_cast<uint16_t>(t >> 32));
    EXPECT_EQ(g.timeHighAndVersion, static_cast<uint16_t>((t >> 48) & 0xFFF));
}

TEST(GuidGenerate, TimeCountsHundredNanosecondsSince1582) {
    uint64_t t = QVS::GUID_getTime();
    EXPECT_EQ((t - 0x01B21DD213814000ull) % 10000000ull, 0u);
    uint64_t seconds = (t - 0x01B21DD213814000ull) / 10000000ull;
    EXPECT_NEAR(static_cast<double>(seconds), static_cast<double>(time(nullptr) & 0xFFFFFFFF), 2.0);
}
