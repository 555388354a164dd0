// line_test.cpp - the line writer against the stream's own writers: the same
// bytes for every kind of field, at every width, and long lines whole.
#include "util/support/line.h"

#include <gtest/gtest.h>

#include <climits>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

namespace {

using QVS::Line;

std::string streamLeft(const std::string& value, int width) {
    std::ostringstream out;
    out << std::left << std::setw(width) << value;
    return out.str();
}

std::string streamRight(const std::string& value, int width) {
    std::ostringstream out;
    out << std::right << std::setw(width) << value;
    return out.str();
}

TEST(Line, TextFieldsMatchTheStreamAtEveryWidth) {
    for (const std::string value : {"", "a", "abcdefgh", "a name of twenty-one"}) {
        for (int width = -2; width <= 40; ++width) {
            std::ostringstream left, right;
            Line(left).Left(value, width).Write();
            Line(right).Right(value, width).Write();
            EXPECT_EQ(left.str(), streamLeft(value, width)) << value << " " << width;
            EXPECT_EQ(right.str(), streamRight(value, width)) << value << " " << width;
        }
    }
}

TEST(Line, NumbersMatchTheStream) {
    const long long decimals[] = {0, 7, -7, 1234567890123LL, LLONG_MIN, LLONG_MAX};
    const unsigned long long unsigneds[] = {0, 42, ULLONG_MAX};
    for (int width : {0, 1, 5, 12, 25}) {
        for (long long v : decimals) {
            std::ostringstream mine, theirs;
            Line(mine).Decimal(v, width).Write();
            theirs << std::setw(width) << v;
            EXPECT_EQ(mine.str(), theirs.str()) << v << " " << width;
        }
        for (unsigned long long v : unsigneds) {
            std::ostringstream mine, theirs, hexMine, hexTheirs;
            Line(mine).Unsigned(v, width).Write();
            theirs << std::setw(width) << v;
            EXPECT_EQ(mine.str(), theirs.str()) << v << " " << width;
            Line(hexMine).Hex(v, width).Write();
            hexTheirs << std::hex << std::setw(width) << v;
            EXPECT_EQ(hexMine.str(), hexTheirs.str()) << v << " " << width;
        }
    }
}

TEST(Line, GapsDashesAndTheLineEnd) {
    std::ostringstream out;
    Line(out).Text("a").Gap(3).Dashes(5).Gap(0).Dashes(-1).Text("b").End();
    EXPECT_EQ(out.str(), "a   -----b\n");
}

TEST(Line, LineLongerThanItsBufferIsWrittenWhole) {
    std::ostringstream out;
    std::string expected;
    Line line(out);
    for (int i = 0; i < 700; ++i) {
        line.Right(std::to_string(i), 6).Dashes(1);
        expected += streamRight(std::to_string(i), 6) + "-";
    }
    const std::string big(5000, 'x');
    line.Left(big, 5001).Gap(100).End();
    expected += big + " " + std::string(100, ' ') + "\n";
    EXPECT_EQ(out.str(), expected);
}

TEST(Line, NullTextEndsTheLineWithTheBadBit) {
    std::ostringstream out;
    Line(out).Text("before ").Left(static_cast<const char*>(nullptr), 5).Text("after").End();
    EXPECT_EQ(out.str(), "before ");
    EXPECT_TRUE(out.bad());
}

TEST(Line, StreamAlreadyFailedTakesNothing) {
    std::ostringstream out;
    out.setstate(std::ios_base::failbit);
    Line(out).Text("lost").End();
    EXPECT_EQ(out.str(), "");
}

// UTF-16LE units in a record field.
std::vector<unsigned char> field(const std::vector<unsigned> units, std::size_t size) {
    std::vector<unsigned char> bytes(2 * size, 0);
    for (std::size_t i = 0; i < units.size() && i < size; ++i) {
        bytes[2 * i] = static_cast<unsigned char>(units[i] & 0xFF);
        bytes[2 * i + 1] = static_cast<unsigned char>(units[i] >> 8);
    }
    return bytes;
}

TEST(Line, WideNameIsCutAtItsFirstZeroUnitOrTheFieldsEnd) {
    const auto cut = field({'V', 'O', 'L', 0, 'X'}, 8);
    std::ostringstream a;
    Line(a).WideName(cut.data(), 8, 6).Text("|").Write();
    EXPECT_EQ(a.str(), "VOL   |");
    const auto full = field({'A', 'B', 'C', 'D'}, 4);
    std::ostringstream b;
    Line(b).WideName(full.data(), 4, 2).Text("|").Write();
    EXPECT_EQ(b.str(), "ABCD|");
    std::ostringstream c;
    Line(c).WideName(full.data(), 4, 7, true).Write();
    EXPECT_EQ(c.str(), "   ABCD");
}

TEST(Line, WideNameUnitsAreEachTheirOwnCharacter) {
    // e-acute (two bytes), the euro sign (three) and a lone surrogate (three,
    // as it stands): the width counts bytes, as the stream's does.
    const auto name = field({0xE9, 0x20AC, 0xD800}, 3);
    std::ostringstream out;
    Line(out).WideName(name.data(), 3, 10, true).Write();
    EXPECT_EQ(out.str(), std::string(2, ' ') + "\xC3\xA9" + "\xE2\x82\xAC" + "\xED\xA0\x80");
}

TEST(Line, LongWideNameIsWrittenWhole) {
    std::vector<unsigned> units(1000, 0x20AC);
    const auto name = field(units, units.size());
    std::ostringstream out;
    Line(out).WideName(name.data(), units.size(), 0).End();
    std::string expected;
    for (std::size_t i = 0; i < units.size(); ++i)
        expected += "\xE2\x82\xAC";
    EXPECT_EQ(out.str(), expected + "\n");
}

TEST(Line, HostOrderWideNameEndsAtZero) {
    const unsigned short units[] = {'p', 'o', 'o', 'l', 0, 'x'};
    std::ostringstream out;
    Line(out).WideName(units, 6).Text("|").Write();
    EXPECT_EQ(out.str(), "pool  |");
    std::ostringstream none;
    Line(none).WideName(static_cast<const unsigned short*>(nullptr), 3).Text("|").Write();
    EXPECT_EQ(none.str(), "|");
}

} // namespace
