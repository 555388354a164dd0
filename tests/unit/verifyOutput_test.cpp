// verifyOutput_test.cpp - the verify report writers on their own streams:
// dotted lines, status summary, error/warning words, histograms, pool and
// volume blocks, variable-data rows and the three record lists.
#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyFileOutput.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <iomanip>
#include <memory>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

// A dotted line built by hand: one space, label padded with dots to 26,
// value right-aligned in 16 dots, newline.
std::string dotted(const std::string& label, const std::string& value) {
    std::string line = " " + label;
    if (label.size() < 26)
        line += std::string(26 - label.size(), '.');
    if (value.size() < 16)
        line += std::string(16 - value.size(), '.');
    return line + value + "\n";
}

std::string dotted(const std::string& label, unsigned long long value) {
    return dotted(label, std::to_string(value));
}

// Runs of blanks and dashes, counted out by hand from the column layouts.
std::string sp(size_t n) { return std::string(n, ' '); }
std::string dash(size_t n) { return std::string(n, '-'); }

template <typename T> T zeroed() {
    T value;
    std::memset(&value, 0, sizeof value);
    return value;
}

void setWide(unsigned char* field, size_t units, const std::u16string& text) {
    std::memset(field, 0, 2 * units);
    for (size_t i = 0; i < text.size() && i < units; ++i) {
        field[2 * i] = static_cast<unsigned char>(text[i] & 0xFF);
        field[2 * i + 1] = static_cast<unsigned char>(text[i] >> 8);
    }
}

void setNarrow(char* field, size_t size, const std::string& text) {
    std::memset(field, 0, size);
    std::memcpy(field, text.data(), std::min(size, text.size()));
}

// A VerifyFile needs a file to open; the renderers only need its switches.
class WriterHost {
public:
    WriterHost() {
        char name[] = "/tmp/verifyOutputXXXXXX";
        int fd = mkstemp(name);
        EXPECT_GE(fd, 0);
        EXPECT_EQ(write(fd, "\0\0\0\0", 4), 4);
        close(fd);
        path_ = name;
        file_.reset(new VerifyFile(path_, sink_, 0));
    }
    ~WriterHost() { std::remove(path_.c_str()); }
    VerifyFile& vf() { return *file_; }

private:
    std::ostringstream sink_;
    std::string path_;
    std::unique_ptr<VerifyFile> file_;
};

struct TzUtc {
    TzUtc() {
        setenv("TZ", "UTC", 1);
        tzset();
    }
};
const TzUtc tzUtc;

// The "Report time" line shows the clock; checks its shape and masks it.
std::string maskReportTime(const std::string& text) {
    static const std::regex line(
        "  Report time: \"[A-Z][a-z][a-z] \\d\\d, \\d{4}  \\d\\d:\\d\\d:\\d\\d [AP]M  [+-]\\d{4}\"\n");
    std::smatch m;
    EXPECT_TRUE(std::regex_search(text, m, line)) << text;
    return std::regex_replace(text, line, "  Report time: TIME\n");
}

const long NOV_15_2026_083714 = 1794731834;

} // namespace

// ---------------------------------------------------------------- dotted lines

TEST(VerifyDottedLine, ExamplesFromTheReportLayout) {
    std::ostringstream os;
    fileOut(os, "Total Blocks", 1234);
    fileOutHex(os, "Highest LSN", 8010);
    fileOut(os, "Block Quota", "None");
    EXPECT_EQ(os.str(), " Total Blocks..........................1234\n"
                        " Highest LSN.........................0x1f4a\n"
                        " Block Quota...........................None\n");
}

TEST(VerifyDottedLine, LeavesDotFillAndRestoresFlags) {
    std::ostringstream os;
    os << std::hex << std::left;
    const auto flags = os.flags();
    fileOut(os, "Label", uint64_t{5});
    EXPECT_EQ(os.fill(), '.');
    EXPECT_EQ(os.flags(), flags);
    // The u64 line keeps the stream's own base.
    EXPECT_EQ(os.str(), dotted("Label", "5"));
    os.str("");
    fileOut(os, "Label", uint64_t{255});
    EXPECT_EQ(os.str(), dotted("Label", "ff"));
    // A later writer that pads without setting a fill shows the dots.
    os.str("");
    os << std::setw(4) << "x";
    EXPECT_EQ(os.str(), "x...");
}

TEST(VerifyDottedLine, LabelOf26AndLonger) {
    std::ostringstream os;
    fileOut(os, "Number of Purgeable blocks", uint64_t{7});
    EXPECT_EQ(os.str(), " Number of Purgeable blocks...............7\n");
    os.str("");
    fileOut(os, "A label that is longer than the field", uint64_t{7});
    EXPECT_EQ(os.str(), " A label that is longer than the field...............7\n");
}

TEST(VerifyDottedLine, WideValuesArePrintedWhole) {
    std::ostringstream os;
    fileOut(os, "Big", uint64_t{18446744073709551615ull});
    EXPECT_EQ(os.str(), " Big.......................18446744073709551615\n");
    os.str("");
    fileOut(os, "Seventeen", uint64_t{12345678901234567ull});
    EXPECT_EQ(os.str(), " Seventeen.................12345678901234567\n");
}

TEST(VerifyDottedLine, HexZeroHasNoPrefix) {
    std::ostringstream os;
    fileOutHex(os, "Lowest LSN", 0);
    EXPECT_EQ(os.str(), " Lowest LSN" + std::string(16 + 15, '.') + "0\n");
    EXPECT_EQ(os.str(), dotted("Lowest LSN", "0"));
    EXPECT_FALSE(os.flags() & std::ios_base::hex);
    EXPECT_FALSE(os.flags() & std::ios_base::showbase);
}

TEST(VerifyDottedLine, OptionalLineVanishesAtOmitValue) {
    std::ostringstream os;
    fileOutOptional(os, "Read errors", 0, 0);
    EXPECT_EQ(os.str(), "");
    fileOutOptional(os, "Read errors", 3, 0);
    EXPECT_EQ(os.str(), dotted("Read errors", 3));
    os.str("");
    fileOutOptional(os, "Read errors", 0, 9);
    EXPECT_EQ(os.str(), dotted("Read errors", 0));
}

TEST(VerifyDottedLine, WarningLineOnlyWhenValueDiffers) {
    std::ostringstream os;
    fileOutW(os, "Missing Name Entries", 0, 0, 1024);
    EXPECT_EQ(os.str(), dotted("Missing Name Entries", 0));
    os.str("");
    fileOutW(os, "Missing Name Entries", 3, 0, 1024);
    EXPECT_EQ(os.str(), dotted("Missing Name Entries", 3) +
                            "   WARNING: The above value should be 0\n"
                            "    This results in the \"A 'Volume Problem Report' Shows "
                            "Problems.\" warning\n");
    os.str("");
    fileOutW(os, 3, 7, 64 | 0x100000000ull);
    EXPECT_EQ(os.str(), "   WARNING: The above value should be 7\n"
                        "    This results in the \"Filename(s) could not be found in the NT.\" "
                        "warning\n"
                        "    This results in the \"Invalid entry in BTI.\" warning\n");
}

TEST(VerifyDottedLine, NullLabelSilencesTheStream) {
    std::ostringstream os;
    fileOut(os, nullptr, uint64_t{1});
    EXPECT_TRUE(os.bad());
    fileOut(os, "Later", uint64_t{2});
    EXPECT_EQ(os.str(), " ");
}

TEST(VerifyDottedLine, GuidLineLeavesZeroFill) {
    GUID_t guid;
    ASSERT_EQ(QVS::LB_GUIDFromUTF8("00000001-0002-0003-80-05-060708090a0b", &guid), 0u);
    std::ostringstream os;
    fileOut(os, "ID", &guid);
    EXPECT_EQ(os.str(), " ID....00000001-0002-0003-80-05-060708090a0b\n");
    EXPECT_EQ(os.fill(), '0');
    EXPECT_EQ(os.flags(), std::ostringstream().flags());
}

TEST(VerifyDottedLine, NameLineHasShortLabel) {
    unsigned char field[8];
    setWide(field, 4, u"VOL1");
    std::ostringstream os;
    fileOut(os, "LV", UnicodeString(field, 4));
    EXPECT_EQ(os.str(), " LV...." + std::string(32, '.') + "VOL1\n");
    EXPECT_EQ(os.fill(), '.');
}

TEST(VerifyTime, QuotedAndWithoutLineEnd) {
    std::ostringstream os;
    outputTime(os, NOV_15_2026_083714, false);
    EXPECT_EQ(os.str(), "\"Nov 15, 2026  08:37:14 AM  +0000\"");
    os.str("");
    outputTime(os, NOV_15_2026_083714 + 12 * 3600, true); // TZ=UTC
    EXPECT_EQ(os.str(), "\"Nov 15, 2026  08:37:14 PM  +0000\"");
}

TEST(VerifyTime, UnconvertibleTime) {
    std::ostringstream os;
    outputTime(os, LONG_MAX, false);
    EXPECT_EQ(os.str(), "\"Invalid time\"");
    EXPECT_EQ(os.str().size(), 14u);
}

TEST(VerifyName, OperatorAppliesNoWidth) {
    unsigned char field[6];
    setWide(field, 3, u"ab\u00e9");
    std::ostringstream os;
    os.width(10);
    os << UnicodeString(field, 3);
    EXPECT_EQ(os.str(), "ab\xc3\xa9");
}

// ---------------------------------------------------------------- status summary

namespace {

ZVP_Status_s finishedStatus() {
    auto s = zeroed<ZVP_Status_s>();
    s.statusValid = 1;
    setWide(s.poolName, 64, u"POOL1");
    s.blockSize = 4096;
    s.totalBlocks = 1048576;
    s.verifyStartTime = NOV_15_2026_083714;
    s.userKey = 77;
    s.blocksVerified = 1000;
    s.unaccountedBlocks = 2;
    s.finalStatusValid = 1;
    s.verifyEndTime = NOV_15_2026_083714 + 60;
    return s;
}

} // namespace

TEST(VerifySummary, FinishedVerify) {
    std::ostringstream os;
    os << finishedStatus();
    EXPECT_EQ(maskReportTime(os.str()),
              " Pool: POOL1                Total Size: 4096 MB (1048576 blocks)\n"
              "\n"
              "  Report time: TIME\n"
              "  Verify start time: \"Nov 15, 2026  08:37:14 AM  +0000\"\n"
              "  User key: 77\n"
              "  Blocks verified: 1000\n"
              "  Unaccounted for blocks: 2\n"
              "  Cross-linked blocks: 0\n"
              "  Invalid blocks: 0\n"
              "  Verify end time: \"Nov 15, 2026  08:38:14 AM  +0000\"\n"
              "  Verify was able to determine pool condition.\n");
}

TEST(VerifySummary, EveryConditionalLine) {
    auto s = finishedStatus();
    s.totalBlocks = 1023; // below 1024 blocks the size is 0 MB
    s.crossLinkedBlocks = 4;
    s.blocksReverified = 9;
    s.invalidBlocks = 1;
    s.completionCode = -5;
    setNarrow(s.sourceSetter, 32, "setter.c");
    // A text that fills its field has no terminator and is cut there.
    setNarrow(s.sourceCaller, 32, std::string(32, 'c'));
    s.abortedByUser = 1;
    std::ostringstream os;
    os << s;
    EXPECT_EQ(maskReportTime(os.str()),
              " Pool: POOL1                Total Size: 0 MB (1023 blocks)\n"
              "\n"
              "  Report time: TIME\n"
              "  Verify start time: \"Nov 15, 2026  08:37:14 AM  +0000\"\n"
              "  User key: 77\n"
              "  Blocks verified: 1000\n"
              "  Unaccounted for blocks: 2\n"
              "  Cross-linked blocks: 4\n"
              "   ERROR: The above is very bad\n"
              "  Blocks re-verified in cross-link pass: 9\n"
              "  Invalid blocks: 1\n"
              "   ERROR: The above is bad\n"
              "  Verify end time: \"Nov 15, 2026  08:38:14 AM  +0000\"\n"
              "  Verify was unable to determine pool condition.  Completion code: -5\n"
              "    Source setter is \"setter.c\"\n"
              "    Source caller is \"" +
                  std::string(32, 'c') +
                  "\"\n"
                  "   Verify was aborted by a user.\n");
}

TEST(VerifySummary, StatusNotValid) {
    auto s = finishedStatus();
    s.statusValid = 0;
    std::ostringstream os;
    os << s;
    EXPECT_EQ(os.str(), "  Warning: Verify status is not valid\n");
}

TEST(VerifySummary, FinalStatusNotValid) {
    auto s = finishedStatus();
    s.finalStatusValid = 0;
    s.completionCode = 3;
    std::ostringstream os;
    os << s;
    EXPECT_EQ(maskReportTime(os.str()),
              " Pool: POOL1                Total Size: 4096 MB (1048576 blocks)\n"
              "\n"
              "  Report time: TIME\n"
              "  Verify start time: \"Nov 15, 2026  08:37:14 AM  +0000\"\n"
              "  User key: 77\n"
              "  Blocks verified: 1000\n"
              "  Unaccounted for blocks: 2\n"
              "  Cross-linked blocks: 0\n"
              "  Invalid blocks: 0\n"
              "  Verify final status is not valid.\n");
}

TEST(VerifySummary, DecimalEvenOnAHexStream) {
    std::ostringstream os;
    os << std::hex;
    os << finishedStatus();
    EXPECT_NE(os.str().find("  User key: 77\n"), std::string::npos);
    EXPECT_TRUE(os.flags() & std::ios_base::hex);
}

TEST(VerifyResultsTest, DerivedResults) {
    auto s = finishedStatus();
    EXPECT_TRUE(FinalResults(s));
    EXPECT_EQ(VerifyResults(s), 0);
    s.completionCode = -5;
    EXPECT_EQ(VerifyResults(s), -5);
    s.finalStatusValid = 0;
    EXPECT_FALSE(FinalResults(s));
    EXPECT_EQ(VerifyResults(s), 21734);
    s.finalStatusValid = 1;
    s.statusValid = 0;
    EXPECT_FALSE(FinalResults(s));
    EXPECT_EQ(VerifyResults(s), 21734);
}

// ---------------------------------------------------------------- error and warning words

TEST(VerifyWords, UnknownAndKnownErrorBits) {
    std::ostringstream os;
    displayErrors(os, 0x200);
    EXPECT_EQ(os.str(), "  Error types: 0x200\n    Unknown error\n");
    os.str("");
    displayErrors(os, 0x100);
    EXPECT_EQ(os.str(), "  Error types: 0x100\n    Name Tree Leaf Linked list is broken.\n");
    os.str("");
    displayErrors(os, 0);
    EXPECT_EQ(os.str(), "  Error types: 0\n");
    EXPECT_FALSE(os.flags() & std::ios_base::hex);
}

TEST(VerifyWords, WarningBitsInOrderAndHighBitsSilent) {
    std::ostringstream os;
    displayWarnings(os, 0x100000001ull);
    EXPECT_EQ(os.str(), "  Warning types: 0x100000001\n"
                        "    Volume System Report 'Blocks in Use' in Error.\n"
                        "    Invalid entry in BTI.\n");
    os.str("");
    displayWarnings(os, 1ull << 40);
    EXPECT_EQ(os.str(), "  Warning types: 0x10000000000\n");
}

TEST(VerifyWords, EveryErrorBit) {
    const char* const known[] = {"Cross Linked Blocks Exist.",
                                 "Name Tree Entries != Named Objects.",
                                 "Object Tree Leaf Linked list is broken.",
                                 "Name Tree Entries Exist With No Object.",
                                 "Total Blocks are in Error.",
                                 "Salvage Tree Leaf Linked List is Broken.",
                                 "Could Not Verify Logical Volume(s).",
                                 "Invalid Blocks Exist.",
                                 "Name Tree Leaf Linked list is broken."};
    std::string expected = "  Error types: 0x1ffffffff\n";
    for (int bit = 0; bit <= 32; ++bit)
        expected += std::string("    ") +
                    (bit < 9 ? known[bit] : bit < 32 ? "Unknown error" : "BT entry missing in BTI.") +
                    "\n";
    std::ostringstream os;
    displayErrors(os, 0xFFFFFFFFFFFFFFFFull);
    EXPECT_EQ(os.str(), "  Error types: 0xffffffffffffffff\n" + expected.substr(expected.find('\n') + 1));
}

TEST(VerifyWords, EveryWarningBit) {
    const char* const known[] = {"Volume System Report 'Blocks in Use' in Error.",
                                 "Unaccounted Blocks Exist.",
                                 "Volume System Report 'Number of Files' in Error.",
                                 "Volume System Report 'Number of Objects' in Error.",
                                 "Object Tree Node(s) Contain Corruption.",
                                 "Salvage Tree Node(s) Contain Corruption.",
                                 "Filename(s) could not be found in the NT.",
                                 "Pool System Report 'Number of Objects' in Error.",
                                 "Pool System Report 'Blocks in Use' in Error.",
                                 "Salvage Tree Inconsistent With Object/Name Trees.",
                                 "A 'Volume Problem Report' Shows Problems.",
                                 "Sum of 'Salvagable Objects' != Salvage Tree Entries.",
                                 "Pool System Report 'Number of Salvagable blocks' in Error.",
                                 "Volume System Report 'Number of Salvagable blocks' in Error.",
                                 "Pool IV 'Number of Salvagable blocks' in Error."};
    std::string lines, consequences;
    for (int bit = 0; bit <= 32; ++bit) {
        std::string text =
            bit < 15 ? known[bit] : bit < 32 ? "Unknown warning" : "Invalid entry in BTI.";
        lines += "    " + text + "\n";
        consequences += "    This results in the \"" + text + "\" warning\n";
    }
    std::ostringstream os;
    displayWarnings(os, 0x1FFFFFFFFull);
    EXPECT_EQ(os.str(), "  Warning types: 0x1ffffffff\n" + lines);
    os.str("");
    displayWarnings2(os, 0xFFFFFFFFFFFFFFFFull);
    EXPECT_EQ(os.str(), consequences);
}

TEST(VerifyWords, FoundLines) {
    std::ostringstream os;
    fileOut(os, uint64_t{0}, uint64_t{0});
    EXPECT_EQ(os.str(), "Errors found: No\nWarnings found: No\n");
    os.str("");
    fileOut(os, uint64_t{1}, uint64_t{2});
    EXPECT_EQ(os.str(), "Errors found: Yes\n  Error types: 0x1\n    Cross Linked Blocks Exist.\n"
                        "Warnings found: Yes\n  Warning types: 0x2\n    Unaccounted Blocks Exist.\n");
}

// ---------------------------------------------------------------- histograms and details

namespace {

// Description 16, Blocks 14, Records 16, Objects 16, ratio 8, each + 3.
const std::string HISTOGRAM_HEADING =
    "  Description" + sp(5 + 3) + "Blocks" + sp(8 + 3) + "Records" + sp(9 + 3) + "Objects" +
    sp(9 + 3) + "Records per Blocks" + sp(3) + "\n" + "  " + dash(16) + sp(3) + dash(14) + sp(3) +
    dash(16) + sp(3) + dash(16) + sp(3) + dash(8) + sp(3) + "\n";

CommonBlockStats_s sampleBlockStats() {
    auto s = zeroed<CommonBlockStats_s>();
    setNarrow(s.name, 32, "Object Tree");
    s.blockCount = 100;
    s.readErrors = 2;
    s.levelCurrent = 1;
    s.levelMaximum = 3;
    s.levelLimit = 20;
    s.levels[0] = {10, 55, 7};
    s.levels[1] = {0, 5, 0}; // no blocks: not shown
    s.levels[2] = {4, 9, 1};
    s.branches = {0, 5, 0}; // totals rows take a zero block count as 1
    s.leaves = {14, 64, 8};
    return s;
}

} // namespace

TEST(VerifyHistogram, HeadingAndRows) {
    std::ostringstream os;
    fileOutHeader(os, LevelInformation_s{0, 0, 0});
    EXPECT_EQ(os.str(), HISTOGRAM_HEADING);
    os.str("");
    fileOut(os, 0u, LevelInformation_s{10, 55, 7});
    EXPECT_EQ(os.str(), "          Level  0               10                 55                  7          5   \n");
    os.str("");
    fileOut(os, "Branches", LevelInformation_s{0, 5, 0});
    EXPECT_EQ(os.str(), "          Branches                0                  5                  0          5   \n");
}

TEST(VerifyHistogram, ObjectDetailsWithHistogram) {
    std::ostringstream os;
    os << sampleBlockStats();
    EXPECT_EQ(os.str(), std::string("\n --- Object details: Object Tree ---\n") +
                            dotted("Block count", 100) + dotted("Read errors", 2) +
                            dotted("Level current", 1) + dotted("Level maximum", 3) +
                            dotted("Level limit", 20) + HISTOGRAM_HEADING +
                            "          Level  0               10                 55                  7          5   \n"
                            "          Level  2                4                  9                  1          2   \n"
                            "          Branches                0                  5                  0          5   \n"
                            "            Leaves               14                 64                  8          4   \n");
}

TEST(VerifyHistogram, EveryOptionalCounter) {
    auto s = zeroed<CommonBlockStats_s>();
    s.blockCount = 0;
    s.badBlockValue = 1;
    s.crossLinkedBlocks = 2;
    s.incorrectMagic = 3;
    s.incorrectRecordCount = 4;
    s.incorrectChecksum = 5;
    s.readErrors = 6;
    s.miscellaneousErrors = 7;
    s.blockCountPass2 = 8;
    s.badBlockValuePass2 = 9;
    s.invalidBlocks = 10;
    s.invalidNextLeaf = 11;
    std::ostringstream os;
    writeObjectDetails(os, s, false);
    EXPECT_EQ(os.str(), "\n --- Object details:  ---\n" + dotted("Block count", 0) +
                            dotted("Bad block value", 1) + dotted("Cross-linked blocks", 2) +
                            dotted("Incorrent magic", 3) + dotted("Incorrect record count", 4) +
                            dotted("Incorrect checksum", 5) + dotted("Read errors", 6) +
                            dotted("Miscellaneous error", 7) + dotted("Block count(pass 2)", 8) +
                            dotted("Bad block value(pass 2)", 9) + dotted("Invalid blocks", 10) +
                            dotted("Invalid next leaf", 11) + dotted("Level current", 0) +
                            dotted("Level maximum", 0) + dotted("Level limit", 0));
}

TEST(VerifyHistogram, SwitchesOfTheReader) {
    WriterHost host;
    VerifyFile& vf = host.vf();
    std::ostringstream os;
    vf.displayObjectDetails = false;
    vf.displayCommonBlockStats_s(os, sampleBlockStats());
    EXPECT_EQ(os.str(), "");
    vf.displayObjectDetails = true;
    vf.displayHistograms = false;
    vf.displayCommonBlockStats_s(os, sampleBlockStats());
    EXPECT_EQ(os.str(), "\n --- Object details: Object Tree ---\n" + dotted("Block count", 100) +
                            dotted("Read errors", 2) + dotted("Level current", 1) +
                            dotted("Level maximum", 3) + dotted("Level limit", 20));
}

// ---------------------------------------------------------------- volumes

namespace {

const char RULE[] = "*************************************************************";

ZVP_LVStats_s sampleVolume() {
    auto v = zeroed<ZVP_LVStats_s>();
    setWide(v.volumeName, 256, u"VOL1");
    v.locator = 0x2a;
    EXPECT_EQ(QVS::LB_GUIDFromUTF8("00000001-0002-0003-80-05-060708090a0b", &v.volumeId), 0u);
    v.vdb.blockQuota = 0x7ffffffffffffull;
    return v;
}

std::string volumeHeading(const std::string& deletion) {
    return std::string("\n") + RULE + "\nLV: VOL1\nErrors found: No\nWarnings found: No\n" +
           "Locator: 2avz\nID: 00000001-0002-0003-80-05-060708090a0b\n" + deletion + RULE +
           "\n\n";
}

} // namespace

TEST(VerifyVolume, DeletedAndPurging) {
    WriterHost host;
    auto v = sampleVolume();
    v.deleted = 1;
    v.purging = 1;
    v.deletionTime = 0x1234;
    std::ostringstream os;
    host.vf().displayZVP_LVStats_s(os, v);
    // The deletion time stays in hexadecimal and runs into "Purging".
    EXPECT_EQ(os.str(), volumeHeading("Deletion time:1234Purging: Yes\n") +
                            "Purging logical volumes never have details\n");
    EXPECT_EQ(os.fill(), '0'); // left by the GUID
    EXPECT_FALSE(os.flags() & std::ios_base::hex);
}

TEST(VerifyVolume, DeletedNotPurgingHasTheFullReport) {
    WriterHost host;
    auto v = sampleVolume();
    v.deleted = 1;
    v.deletionTime = 10;
    std::ostringstream os;
    host.vf().displayZVP_LVStats_s(os, v);
    const std::string text = os.str();
    EXPECT_EQ(text.substr(0, volumeHeading("Deletion time:aPurging: No\n").size()),
              volumeHeading("Deletion time:aPurging: No\n"));
    EXPECT_NE(text.find(" ------ Volume Scan Report ------\n"), std::string::npos);
    EXPECT_NE(text.find(dotted("Block Quota", "None")), std::string::npos);
}

TEST(VerifyVolume, FullVolumePart) {
    WriterHost host;
    host.vf().displayObjectDetails = false;
    auto v = sampleVolume();
    v.bt.objectTree.leaves.objects = 4294967295u;
    v.bt.specialTree.leaves.objects = 1;
    v.bt.objectsRequiringNoNames = 3;
    v.bt.systemObjects = 4;
    v.bt.fileObjects = 5;
    v.bt.directoryObjects = 6;
    v.bt.dataStreamObjects = 7;
    v.bt.greatestObjectId = 0x1f4a;
    v.nt.overflowNodesA = 2;
    v.nt.overflowNodesB = 3;
    v.nt.nameTree.leaves.objects = 8;
    v.bt.namedObjects = 9;
    v.nt.objectsWithDuplicateNames = 10;
    v.nt.totalDuplicateNames = 11;
    v.nt.fileNames = 12;
    v.nt.directoryNames = 13;
    v.bt.salvageableBlocks = 14;
    v.bt.btiEntries = 15;
    v.vdb.encryptionAlgorithm = 259;
    v.vdb.nextAvailableId = 0x100;
    v.vdb.numberOfFiles = 16;
    v.vdb.numberOfObjects = 17;
    v.vdb.purgeableBlocks = 18;
    v.vdb.blocksInUse = 19;
    v.vdb.blockQuota = 0;
    v.bt.lostDataBlocks = 20;
    v.bt.filesWithLostData = 21;
    v.bt.duplicateIdsA = 1;
    v.bt.duplicateIdsB = 2;
    v.bt.idRangeErrorsA = 3;
    v.bt.idRangeErrorsB = 4;
    v.bt.missingNameEntries = 3;
    v.bt.extraNameEntries = 0;
    v.bt.sysObjectsNameEntries = 22;
    v.nt.nameEntriesWithoutObjects = 23;
    v.bt.missingSalvageEntries = 24;
    v.bt.unreadableObjects = 25;
    v.bt.missingParentsInNT = 26;
    v.bt.orphanedObjects = 27;
    v.bt.missingBtiEntries = 0;
    v.bti.invalidBtiEntries = 2;
    v.bt.salvageableObjects = 28;
    v.bt.objectTree.levelMaximum = 4;
    v.nt.nameTree.levelMaximum = 5;
    v.ubt.blocks.levelMaximum = 6;
    v.dbt.blocks.levelMaximum = 7;
    v.mfl.blocks.levelMaximum = 8;
    v.efl.blocks.levelMaximum = 9;
    v.efl.blocks2.levelMaximum = 99; // not a level line
    v.bti.blocks.levelMaximum = 10;
    std::ostringstream os;
    host.vf().displayZVP_LVStats_s(os, v);
    const std::string expected =
        volumeHeading("") + "\n ------ Volume Scan Report ------\n" +
        dotted("Object Tree Entries", 4294967295u) + dotted("Object Special Entries", 1) +
        dotted("Total Object Entries", 0) + dotted("Objects Requiring No Names", 3) +
        dotted("System Objects", 4) + dotted("File Objects", 5) + dotted("Directory Objects", 6) +
        dotted("DataStreams Objects", 7) + dotted("Total Volume Objects", 0) +
        dotted("Greatest Object ID", "0x1f4a") + dotted("Name Tree Overflow Nodes", 5) +
        dotted("Name Tree Entries", 8) + dotted("Named Objects", 9) +
        dotted("Objects W/Duplicate Names", 10) + dotted("Total Duplicate Names", 11) +
        dotted("Name Tree Filesnames", 12) + dotted("Name Tree Dirnames", 13) +
        dotted("Salvagable Blocks", 14) + dotted("BTI Entries", 15) +
        " Volume is encrypted.................AES256\n" +
        "\n ------ Volume System Report ------\n" + dotted("Next Available ID", "0x100") +
        dotted("Number of Files", 16) + dotted("Number of Objects", 17) +
        dotted("Number of Purgeable blocks", 18) + dotted("Blocks In Use", 19) +
        dotted("Block Quota", 0) + "\n ----- Volume Problem Report ------\n" +
        dotted("Lost Data Blocks", 20) + dotted("Files With Lost Data", 21) +
        dotted("Duplicate Object IDs", 3) + dotted("Object ID range errors", 7) +
        dotted("Missing Name Entries", 3) + "   WARNING: The above value should be 0\n" +
        "    This results in the \"A 'Volume Problem Report' Shows Problems.\" warning\n" +
        dotted("Extra Name Entries", 0) + dotted("Sys Objects Name Entries", 22) +
        dotted("Name Entries W/O Objects", 23) + dotted("Missing Salvage Entries", 24) +
        dotted("Unreadable Objects", 25) + dotted("Missing Parents in NT", 26) +
        dotted("Orphaned Objects", 27) + dotted("Missing BTI entries", 0) +
        dotted("Invalid entries in BTI", 2) + "   WARNING: The above value should be 0\n" +
        "    This results in the \"Invalid entry in BTI.\" warning\n" +
        "\n --------- Additional Info ---------\n" + dotted("Salvagable Objects", 28) +
        dotted("Object Tree Levels", 4) + dotted("Name Tree Levels", 5) +
        dotted("User Rest. Tree Levels", 6) + dotted("Dir Rest. Tree Levels", 7) +
        dotted("MFL Tree Levels", 8) + dotted("EFL Tree Levels", 9) +
        dotted("BTI Tree Levels", 10);
    EXPECT_EQ(os.str(), expected);
}

TEST(VerifyVolume, EncryptionValues) {
    WriterHost host;
    host.vf().displayObjectDetails = false;
    for (uint64_t algorithm : {256ull, 257ull, 259ull, 0ull}) {
        auto v = sampleVolume();
        v.vdb.encryptionAlgorithm = algorithm;
        std::ostringstream os;
        host.vf().displayZVP_LVStats_s(os, v);
        const bool aes128 = os.str().find(" Volume is encrypted.................AES128\n") !=
                            std::string::npos;
        const bool aes256 = os.str().find(" Volume is encrypted.................AES256\n") !=
                            std::string::npos;
        EXPECT_EQ(aes128, algorithm == 256) << algorithm;
        EXPECT_EQ(aes256, algorithm == 259) << algorithm;
        EXPECT_EQ(os.str().find("encrypted") != std::string::npos, algorithm == 256 || algorithm == 259);
    }
}

TEST(VerifyVolume, ObjectDetailsOrder) {
    WriterHost host;
    host.vf().displayHistograms = false;
    auto v = sampleVolume();
    setNarrow(v.bt.objectTree.name, 32, "n1");
    setNarrow(v.bt.specialTree.name, 32, "n2");
    setNarrow(v.nt.nameTree.name, 32, "n3");
    setNarrow(v.vdb.blocks.name, 32, "n4");
    setNarrow(v.ubt.blocks.name, 32, "n5");
    setNarrow(v.dbt.blocks.name, 32, "n6");
    setNarrow(v.mfl.blocks.name, 32, "n7");
    setNarrow(v.efl.blocks.name, 32, "n8");
    setNarrow(v.efl.blocks2.name, 32, "n9");
    setNarrow(v.pl.blocks.name, 32, "n10");
    setNarrow(v.bt.dataBlocks.name, 32, "n11");
    setNarrow(v.bti.blocks.name, 32, "n12");
    std::ostringstream os;
    host.vf().displayZVP_LVStats_s(os, v);
    std::string names;
    std::regex heading(" --- Object details: (n\\d+) ---");
    const std::string text = os.str();
    for (std::sregex_iterator it(text.begin(), text.end(), heading), end; it != end; ++it)
        names += (*it)[1].str() + " ";
    EXPECT_EQ(names, "n1 n2 n3 n4 n5 n6 n7 n8 n9 n10 n11 n12 ");
}

// ---------------------------------------------------------------- pool

TEST(VerifyPool, ScanSystemAndSalvageReports) {
    WriterHost host;
    host.vf().displayObjectDetails = false;
    auto p = zeroed<ZVP_PoolStats_s>();
    setWide(p.poolName, 499, u"POOL1");
    p.errors = 0x200;
    p.crossValidation = 5;
    p.crossLinkedBlocks = 1;
    p.unaccountedBlocks = 2;
    p.usedByPool = 3;
    p.totalBlocks = 1000;
    p.freeBlocks.blockCount = 1001; // unsigned wrap in "Total In Use"
    p.highestLsn = 8010;
    p.lowestLsn = 0;
    p.bt.objectTree.leaves.objects = 4;
    p.bt.specialTree.leaves.objects = 5;
    p.salvageTree.leaves.objects = 6;
    p.systemTotalBlocks = 7;
    p.systemBlocksInUse = 8;
    p.purgeableBlocks = 9;
    p.nonPurgeableBlocks = 10;
    p.salvageEntriesWithoutIds = 11;
    p.salvageEntriesWithoutNames = 12;
    p.salvageParentsWithoutIds = 13;
    p.salvageParentsWithoutNames = 14;
    p.salvageableObjects = 15;
    p.salvageableBlocks = 16;
    p.bt.objectTree.levelMaximum = 17;
    p.nt.nameTree.levelMaximum = 18;
    p.salvageTree.levelMaximum = 19;
    p.ubt.blocks.levelMaximum = 20;
    p.dbt.blocks.levelMaximum = 21;
    p.mfl.blocks.levelMaximum = 22;
    p.bti.blocks.levelMaximum = 23;
    p.lvsNotVerified = 24;
    p.vdb.blockQuota = 0x7ffffffffffffull;
    std::ostringstream os;
    host.vf().displayZVP_PoolStats_s(os, p);
    const std::string expected =
        std::string("\n") + RULE + "\nPool: POOL1\nErrors found: Yes\n  Error types: 0x200\n" +
        "    Unknown error\nWarnings found: No\n" + RULE + "\n\n\n" +
        " ------- Pool Scan Report -------\n" + dotted("Cross validation", "Yes") +
        dotted("Cross-linked Blocks", 1) + dotted("Unaccounted Blocks", 2) +
        dotted("Used By Pool", 3) + dotted("Total In Use", 18446744073709551615ull) +
        dotted("Unused Blocks", 1001) + dotted("Total Blocks", 1000) +
        dotted("Highest LSN", "0x1f4a") + dotted("Lowest LSN", "0") +
        dotted("Object Tree Entries", 4) + dotted("Object Special Entries", 5) +
        dotted("Salvage Tree Entries", 6) + "\n ------- Pool System Report -------\n" +
        dotted("Total Blocks", 7) + dotted("Blocks in Use", 8) + dotted("Purgeable Blocks", 9) +
        dotted("Non-Purgeable Blocks", 10) + "\n ----- Salvage System Report ----\n" +
        dotted("Salvage Entries W/O IDs", 11) + dotted("Salvage Entries W/O names", 12) +
        dotted("Salvage Parents W/O IDs", 13) + dotted("Salvage Parents W/O names", 14) +
        dotted("Salvagable Objects", 15) + dotted("Salvagable Blocks", 16) +
        dotted("Object Tree Levels", 17) + dotted("Name Tree Levels", 18) +
        dotted("Salvage Tree Levels", 19) + dotted("User Rest. Tree Levels", 20) +
        dotted("Dir Rest. Tree Levels", 21) + dotted("MFL Tree Levels", 22) +
        dotted("BTI Tree Levels", 23) + dotted("LVs Not Verified", 24) +
        "\n ------ Volume Scan Report ------\n";
    EXPECT_EQ(os.str().substr(0, expected.size()), expected);
    EXPECT_NE(os.str().find(dotted("Block Quota", "None")), std::string::npos);
}

TEST(VerifyPool, CrossValidationNoAndDetailsOrder) {
    WriterHost host;
    host.vf().displayHistograms = false;
    auto p = zeroed<ZVP_PoolStats_s>();
    CommonBlockStats_s* blocks[] = {&p.poolBlocks1, &p.poolBlocks2, &p.poolBlocks3,
                                    &p.poolBlocks4, &p.poolBlocks5, &p.poolBlocks6,
                                    &p.poolBlocks7, &p.freeBlocks,  &p.salvageTree};
    const char* names[] = {"p1", "p2", "p3", "p4", "p5", "p6", "p7", "free", "salvage"};
    for (int i = 0; i < 9; ++i)
        setNarrow(blocks[i]->name, 32, names[i]);
    setNarrow(p.bt.objectTree.name, 32, "ot");
    std::ostringstream os;
    host.vf().displayZVP_PoolStats_s(os, p);
    EXPECT_NE(os.str().find(dotted("Cross validation", "No")), std::string::npos);
    std::string order;
    std::regex heading(" --- Object details: ([a-z0-9]+) ---");
    const std::string text = os.str();
    for (std::sregex_iterator it(text.begin(), text.end(), heading), end; it != end; ++it)
        order += (*it)[1].str() + " ";
    EXPECT_EQ(order.substr(0, 36), "p2 p1 p5 p6 p7 free p4 salvage p3 ot");
}

// ---------------------------------------------------------------- variable-data lists

TEST(VerifyVariable, PreHeader) {
    std::ostringstream os;
    variablePreHeader(os, "Unreadable Zid list", 1);
    EXPECT_EQ(os.str(), "\n  Unreadable Zid list\n     1 records to follow.\n\n");
    std::ostringstream bad;
    variablePreHeader(bad, nullptr, 1);
    EXPECT_TRUE(bad.bad());
}

TEST(VerifyVariable, ZidWriter) {
    std::ostringstream os;
    variableHeaderZid(os);
    variableDataZid(os, 0x1f);
    EXPECT_EQ(os.str(), "  Zid" + sp(13 + 3) + "\n" + "  " + dash(17) + sp(2) + "\n" + "  " + sp(15) +
                            "1fz \n");
}

TEST(VerifyVariable, ZidBlockAndBlockBlock) {
    std::ostringstream os;
    variableHeaderZidBlock(os);
    variableDataZidBlock(os, 0x1f, 255);
    EXPECT_EQ(os.str(), "  Zid" + sp(13 + 3) + "Block" + sp(3 + 3) + "\n" + "  " + dash(17) + sp(2) +
                            dash(9) + sp(2) + "\n" + "  " + sp(15) + "1fz " + sp(6) + "255k \n");
    os.str("");
    variableHeaderBlockBlock(os);
    variableDataBlockBlock(os, 255, 0x10);
    EXPECT_EQ(os.str(), "  Start" + sp(3 + 3) + "End" + sp(5 + 3) + "\n" + "  " + dash(9) + sp(2) +
                            dash(9) + sp(2) + "\n" + "  " + sp(6) + "ffk  " + sp(6) + "10k  \n");
}

TEST(VerifyVariable, NextLeafWriter) {
    std::ostringstream os;
    CBSV_NextLeafInvalidList_s r{0xabc, 0x1};
    variableHeader(os, &r);
    variableData(os, &r);
    EXPECT_EQ(os.str(), "  Expected block" + sp(2 + 3) + "Actual block" + sp(4) + "\n" + "  " +
                            dash(17) + sp(2) + dash(17) + "\n" + "  " + sp(13) + "abck  " + sp(15) +
                            "1k  \n");
}

TEST(VerifyVariable, StatusWriters) {
    std::ostringstream os;
    variableHeaderZidStatusStatusSetter(os);
    variableDataZidStatusStatusSetter(os, 0x2a, -5, "src");
    const std::string statusSource = "Status" + sp(3) + "Source" + sp(26 + 3) + "\n";
    EXPECT_EQ(os.str(), "  Zid" + sp(13 + 3) + statusSource + "  " + dash(17) + sp(2) + dash(6) +
                            sp(3) + dash(32) + sp(3) + "\n" + "  " + sp(15) + "2az " + sp(4) +
                            "-5" + sp(3) + "src" + sp(29 + 3) + "\n");
    os.str("");
    variableHeaderBlockStatusStatusSetter(os);
    variableDataBlockStatusStatusSetter(os, 0x2a, 7, "src");
    EXPECT_EQ(os.str(), "  Block" + sp(11 + 3) + "Status" + sp(2 + 3) + "Source" + sp(26 + 3) + "\n" +
                            "  " + dash(17) + sp(2) + dash(8) + sp(3) + dash(32) + sp(3) + "\n" +
                            "  " + sp(14) + "2ak  " + sp(5) + "7" + sp(3) + "src" + sp(29 + 3) +
                            "\n");
    os.str("");
    variableHeaderNameStatusStatusSetter(os);
    unsigned char field[8];
    setWide(field, 4, u"VOL1");
    variableDataNameStatusStatusSetter(os, UnicodeString(field, 4), 20801, "lv.c");
    EXPECT_EQ(os.str(), "  Name" + sp(28 + 3) + "Status" + sp(2 + 3) + "Source" + sp(26 + 3) + "\n" +
                            "  " + dash(32) + sp(3) + dash(8) + sp(3) + dash(32) + sp(3) + "\n" +
                            "  VOL1" + sp(28 + 3) + " 20801" + sp(3) + "lv.c" + sp(28 + 3) + "\n");
    os.str("");
    variableHeaderZidZidStatusStatusSetter(os, "Parent", "Child");
    variableDataZidZidStatusStatusSetter(os, 1, 2, 0, "");
    EXPECT_EQ(os.str(), "  Parent" + sp(10 + 3) + "Child" + sp(11 + 3) + statusSource + "  " +
                            dash(17) + sp(2) + dash(17) + sp(2) + dash(6) + sp(3) + dash(32) +
                            sp(3) + "\n" + "  " + sp(16) + "1z " + sp(16) + "2z " + sp(5) + "0" +
                            sp(3) + sp(32) + sp(3) + "\n");
}

TEST(VerifyVariable, FileNameWriters) {
    std::ostringstream os;
    const unsigned short name[] = {'a', 'b', 0};
    variableHeaderZidZidZidFileName(os, "Actual", "Expecteded", "Parent");
    variableDataZidZidZidFileName(os, 1, 0x22, 0x333, name);
    EXPECT_EQ(os.str(), "  Actual" + sp(4 + 3) + "Expecteded" + sp(0 + 3) + "Parent" + sp(4 + 3) +
                            "File name" + sp(29 + 3) + "\n" + "  " + dash(11) + sp(2) + dash(11) +
                            sp(2) + dash(11) + sp(2) + dash(38) + sp(3) + "\n" + "  " + sp(9) +
                            "1z  " + sp(8) + "22z  " + sp(7) + "333z  " + "ab" + sp(36 + 3) + "\n");
    // A name longer than its column is printed whole and shifts the row.
    std::vector<unsigned short> longName(40, 'x');
    longName.push_back(0);
    os.str("");
    variableDataZidZidZidFileName(os, 1, 2, 3, longName.data());
    EXPECT_EQ(os.str(), "  " + sp(9) + "1z  " + sp(9) + "2z  " + sp(9) + "3z  " + std::string(40, 'x') +
                            sp(3) + "\n");
}

TEST(VerifyVariable, NameTreeEntryWriter) {
    std::ostringstream os;
    const unsigned short name[] = {'f', 0x00e9, 0};
    variableHeaderZidZidNTNSMFileNameStatusStatusSetter(os);
    variableDataZidZidNTNSMFileNameStatusStatusSetter(os, 0x10, 0x5, 1, 0x1f, name, -1, "nt.c");
    variableDataZidZidNTNSMFileNameStatusStatusSetter(os, 0x10, 0x5, 7, 0, name, 0, "nt.c");
    // The name column pads bytes: "f\xc3\xa9" is three of its 38.
    const std::string zids = "  " + sp(17) + "10z " + sp(18) + "5z ";
    const std::string nameColumn = "f\xc3\xa9" + sp(35 + 3);
    EXPECT_EQ(os.str(), "  Zid" + sp(16 + 2) + "Parent Zid" + sp(9 + 2) + "Type" + sp(2 + 3) + "Mask" +
                            sp(3) + "File name" + sp(29 + 3) + "Status" + sp(3) + "Source" +
                            sp(26 + 3) + "\n" + "  " + dash(19) + sp(2) + dash(19) + sp(2) +
                            dash(6) + sp(3) + dash(4) + sp(3) + dash(38) + sp(3) + dash(6) + sp(3) +
                            dash(32) + sp(3) + "\n" + zids + "Stream" + sp(3) + "  1f" + sp(3) +
                            nameColumn + "    -1" + sp(3) + "nt.c" + sp(28 + 3) + "\n" + zids + "???" +
                            sp(3 + 3) + "   0" + sp(3) + nameColumn + "     0" + sp(3) + "nt.c" +
                            sp(28 + 3) + "\n");
}

TEST(VerifyVariable, NameTypes) {
    EXPECT_STREQ(nTypeName(0), "File");
    EXPECT_STREQ(nTypeName(1), "Stream");
    EXPECT_STREQ(nTypeName(2), "Extend");
    EXPECT_STREQ(nTypeName(3), "Delete");
    EXPECT_STREQ(nTypeName(7), "???");
}

TEST(VerifyVariable, UnterminatedSourceIsCut) {
    BTDS_UnreadableZid_s r;
    r.zid = 1;
    r.status = 2;
    std::memset(r.sourceSetter, 'q', sizeof r.sourceSetter);
    std::ostringstream os;
    variableData(os, &r);
    EXPECT_EQ(os.str(), "                  1z      2   " + std::string(32, 'q') + "   \n");
}

// ---------------------------------------------------------------- record lists

TEST(VerifyLists, EmptyActionList) {
    ActionStats list;
    std::ostringstream os;
    os << list;
    EXPECT_EQ(os.str(), "\n  Action list.\n     0 records to follow.\n\n\n");
}

TEST(VerifyLists, ActionRowWithWrappedSeconds) {
    ActionStats list;
    auto a = zeroed<RAV_Action_s>();
    a.key = 7;
    a.startSeconds = 100;
    a.endSeconds = 99;
    a.start = 0x10;
    a.end = 0x2000;
    a.isPool = 1;
    setWide(a.object, 16, u"POOL1");
    setNarrow(a.subObject, 32, "VOL1");
    setNarrow(a.action, 64, "Rebuild");
    list.records.push_back(a);
    list.count = 1;
    std::ostringstream os;
    os << list;
    EXPECT_EQ(os.str(),
              "\n  Action list.\n     1 records to follow.\n\n"
              "  Object            Pool  Start        End          Seconds  Sub-object              Action                            Key \n"
              "  ----------------  ----  -----------  -----------  -------  ----------------------  --------------------------------  ----\n"
              "             POOL1     Y          10k        2000k  4294967295                    VOL1  Rebuild                              7\n"
              "\n");
}

TEST(VerifyLists, ConflictRow) {
    ConflictBlocksStats list;
    list.records.push_back(BlockConflicts_s{0x10, 0x2a, 0x3, 0x2b, 0x4});
    list.count = 1;
    std::ostringstream os;
    os << list;
    EXPECT_EQ(os.str(),
              "\n  Cross-linked block information.\n     1 records to follow.\n\n"
              "  Block" + sp(3 + 3) + "Object 1" + sp(10 + 3) + "Volume 1" + sp(4) + "Object 2" +
                  sp(10 + 3) + "Volume 2" + sp(4) + "\n" + "  " + dash(9) + sp(2) + dash(19) +
                  sp(2) + dash(10) + sp(2) + dash(19) + sp(2) + dash(10) + sp(2) + "\n" + "  " +
                  sp(6) + "10k  " + sp(16) + "2az  " + sp(7) + "3vz  " + sp(16) + "2bz  " + sp(7) +
                  "4vz  \n" + "\n");
}

TEST(VerifyLists, TwoSkippedVolumesEachFollowedByAnEmptyLine) {
    LVSkippedStats list;
    auto s = zeroed<LVSkipped_s>();
    setWide(s.volumeName, 256, u"VOL1");
    s.status = 20801;
    setNarrow(s.sourceSetter, 32, "lv.c");
    list.records.push_back(s);
    setWide(s.volumeName, 256, u"VOL2");
    s.status = -1;
    list.records.push_back(s);
    list.count = 2;
    std::ostringstream os;
    os << list;
    EXPECT_EQ(os.str(),
              "\n  Skipped logical volume information.\n     2 records to follow.\n\n"
              "  Logical Volumes Skipped         \n"
              "  --------------------------------\n"
              "  VOL1                                20801   lv.c                               \n"
              "\n"
              "  VOL2                                   -1   lv.c                               \n"
              "\n"
              "\n");
}

// ---------------------------------------------------------------- stream state across writers

TEST(VerifyStreamState, GuidAndDottedLinesLeaveTheirFill) {
    WriterHost host;
    auto v = sampleVolume();
    v.deleted = 1;
    v.purging = 1;
    std::ostringstream os;
    host.vf().displayZVP_LVStats_s(os, v);
    EXPECT_EQ(os.fill(), '0');
    fileOut(os, "x", uint64_t{1});
    EXPECT_EQ(os.fill(), '.');
}

// Every table writer sets its own fill, so the '.' of a dotted line or the
// '0' of a GUID never shows in what comes after them.
TEST(VerifyStreamState, TableWritersIgnoreTheIncomingFill) {
    WriterHost host;
    host.vf().displayObjectDetails = true;
    host.vf().displayHistograms = true;
    ActionStats actions;
    auto a = zeroed<RAV_Action_s>();
    setWide(a.object, 16, u"V");
    a.endSeconds = 3;
    actions.records.push_back(a);
    actions.count = 1;
    ConflictBlocksStats conflicts;
    conflicts.records.push_back(BlockConflicts_s{1, 2, 3, 4, 5});
    conflicts.count = 1;
    LVSkippedStats skipped;
    skipped.records.push_back(zeroed<LVSkipped_s>());
    skipped.count = 1;
    BTDS_BTBadNTFiles_s bad = zeroed<BTDS_BTBadNTFiles_s>();
    NTDS_NTZnotInBT_s nt = zeroed<NTDS_NTZnotInBT_s>();
    CBSV_NextLeafInvalidList_s leaf{1, 2};
    const std::function<void(std::ostream&)> writers[] = {
        [&](std::ostream& os) { os << actions; },
        [&](std::ostream& os) { os << conflicts; },
        [&](std::ostream& os) { os << skipped; },
        [&](std::ostream& os) { os << sampleBlockStats(); },
        [&](std::ostream& os) { host.vf().displayZVP_LVStats_s(os, sampleVolume()); },
        [&](std::ostream& os) { variableHeader(os, &bad), variableData(os, &bad); },
        [&](std::ostream& os) { variableHeader(os, &nt), variableData(os, &nt); },
        [&](std::ostream& os) { variableHeader(os, &leaf), variableData(os, &leaf); },
        [&](std::ostream& os) { variableHeaderZidBlock(os), variableDataZidBlock(os, 1, 2); },
        [&](std::ostream& os) { variableHeaderBlockBlock(os), variableDataBlockBlock(os, 1, 2); },
        [&](std::ostream& os) { variablePreHeader(os, "t", 3); },
    };
    for (size_t i = 0; i < sizeof writers / sizeof writers[0]; ++i) {
        std::ostringstream fresh;
        writers[i](fresh);
        for (char fill : {'.', '0', '*'}) {
            std::ostringstream dirty;
            dirty.fill(fill);
            writers[i](dirty);
            EXPECT_EQ(dirty.str(), fresh.str()) << "writer " << i << " fill " << fill;
        }
    }
}
