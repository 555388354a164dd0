// verifyFileOutput.cpp - the text of a verify report: dotted lines, status
// summary, pool and volume blocks, histograms and every record list.
#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyFileOutput.h"
#include "util/support/qvsLib.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <ctime>
#include <new>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace VerifyFormat;

// Dotted lines: label and value widths.
constexpr int LABEL_WIDTH = 26;
constexpr int VALUE_WIDTH = 16;
constexpr int SHORT_LABEL_WIDTH = 6;
constexpr int SHORT_VALUE_WIDTH = 36;

constexpr char RULE_LINE[] = "*************************************************************";
static_assert(sizeof(RULE_LINE) == 62, "the rule line is 61 asterisks");

constexpr uint64_t MISSING_NAME_WARNING = 1024;        // bit 10
constexpr uint64_t EXTRA_NAME_WARNING = 64;            // bit 6
constexpr uint64_t BTI_WARNING = 0x100000000ull;       // bit 32
constexpr unsigned WORD_TABLE_ROWS = 33;               // bits 0 to 32

const char* const ERROR_TEXTS[WORD_TABLE_ROWS] = {
    "Cross Linked Blocks Exist.",
    "Name Tree Entries != Named Objects.",
    "Object Tree Leaf Linked list is broken.",
    "Name Tree Entries Exist With No Object.",
    "Total Blocks are in Error.",
    "Salvage Tree Leaf Linked List is Broken.",
    "Could Not Verify Logical Volume(s).",
    "Invalid Blocks Exist.",
    "Name Tree Leaf Linked list is broken.",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error", "Unknown error", "Unknown error",
    "Unknown error", "Unknown error", "Unknown error",
    "BT entry missing in BTI.",
};

const char* const WARNING_TEXTS[WORD_TABLE_ROWS] = {
    "Volume System Report 'Blocks in Use' in Error.",
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
    "Pool IV 'Number of Salvagable blocks' in Error.",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning", "Unknown warning", "Unknown warning", "Unknown warning",
    "Unknown warning",
    "Invalid entry in BTI.",
};

// Restores the format flags on leaving a writer; the fill is not part of them.
class FlagsSaver {
public:
    explicit FlagsSaver(std::ostream& os) : os_(os), flags_(os.flags()) {}
    ~FlagsSaver() { os_.flags(flags_); }
    FlagsSaver(const FlagsSaver&) = delete;
    FlagsSaver& operator=(const FlagsSaver&) = delete;

private:
    std::ostream& os_;
    std::ios_base::fmtflags flags_;
};

UnicodeString placeholderFrom(const char* ascii) {
    std::vector<unsigned short> units;
    for (const char* p = ascii; *p != '\0'; ++p)
        units.push_back(static_cast<unsigned char>(*p));
    units.push_back(0);
    return UnicodeString(units.data());
}

// A wide name of a record, or the placeholder if it cannot be converted.
std::string wideName(const unsigned char* field, size_t units, const UnicodeString& placeholder) {
    try {
        return UnicodeString(field, units).utf8();
    } catch (...) {
        return placeholder.utf8();
    }
}

// A narrow text field, cut at its terminator or at the end of the field.
std::string narrowText(const char* field, size_t size) {
    return std::string(field, strnlen(field, size));
}

// A wide name field copied into an aligned, terminated host-order array.
struct WideBuffer {
    unsigned short units[FILE_NAME_UNITS + 1];
    WideBuffer(const unsigned char* field, size_t count) {
        size_t i = 0;
        for (; i < count; ++i) {
            units[i] = static_cast<unsigned short>(field[2 * i] | (field[2 * i + 1] << 8));
            if (units[i] == 0)
                return; // the rest is never read
        }
        units[i] = 0;
    }
};

// A narrow text field copied with its terminator, cut at the end of the
// field: the rows pass it on without a string of their own.
struct NarrowBuffer {
    char text[NARROW_TEXT_SIZE + 1];
    explicit NarrowBuffer(const char* field) {
        const size_t length = strnlen(field, NARROW_TEXT_SIZE);
        std::memcpy(text, field, length);
        text[length] = '\0';
    }
};

// One line of a report, built in place and written with one call: numbers by
// std::to_chars, padding by arithmetic. Its fields give exactly what the
// stream writers give (fill ' ' but for dashes, right or left in the width,
// hexadecimal in lower case without a base prefix), without setting and
// resetting the stream's flags per field.
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
    // `width` blanks: a column gap, one blank left in its field.
    Line& Gap(int width) { return Pad(0, width); }
    Line& Dashes(int width) { return Fill('-', width > 0 ? static_cast<size_t>(width) : 0); }
    Line& Hex(uint64_t value, int width) { return Number(value, 16, width); }
    Line& Decimal(long long value, int width) { return Number(value, 10, width); }
    Line& Unsigned(unsigned long long value, int width) { return Number(value, 10, width); }
    // A name of UTF-16 units (little-endian in a record field, cut at its
    // first 0 unit or at the field's end; or zero-terminated in host order)
    // in a field of `width`, left in it or right.
    Line& WideName(const unsigned char* field, size_t units, int width, bool right = false) {
        if (bad)
            return *this;
        // Three bytes a unit at the most; the name fields hold no more units
        // than a volume name.
        static_assert(ACTION_OBJECT_UNITS <= VOLUME_NAME_UNITS, "room for every name field");
        char decoded[3 * VOLUME_NAME_UNITS];
        size_t length = 0;
        for (size_t i = 0; i < units && i < VOLUME_NAME_UNITS; ++i) {
            const unsigned u = field[2 * i] | (static_cast<unsigned>(field[2 * i + 1]) << 8);
            if (u == 0)
                break;
            length += QVS::EncodeUtf8(u, decoded + length); // each unit on its own, as uni2utf
        }
        return Placed(std::string_view(decoded, length), width, right);
    }
    Line& WideName(const unsigned short* units, int width) {
        if (bad || units == nullptr)
            return *this;
        size_t length = 0;
        for (; *units != 0; ++units) {
            char bytes[4];
            const size_t n = QVS::EncodeUtf8(*units, bytes);
            Put(bytes, n);
            length += n;
        }
        return Pad(length, width);
    }
    // Writes the line as it stands; a field given a null text ends it there
    // with the stream's bad bit, as the stream writers do.
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
    static constexpr size_t CAPACITY = 2048;

    Line& Placed(std::string_view value, int width, bool right) {
        return right ? Right(value, width) : Left(value, width);
    }
    Line& Bad() {
        bad = true;
        return *this;
    }
    // Room for `n` more bytes; what does not fit is written first.
    bool Room(size_t n) {
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
    void Write(const char* bytes, size_t n) {
        if (!os.good())
            return;
        const std::streamsize count = static_cast<std::streamsize>(n);
        if (os.rdbuf()->sputn(bytes, count) != count)
            os.setstate(std::ios_base::badbit);
    }
    void Put(const char* bytes, size_t n) {
        if (!Room(n)) {
            Write(bytes, n);
            return;
        }
        std::memcpy(line + used, bytes, n);
        used += n;
    }
    Line& Fill(char c, size_t n) {
        if (bad)
            return *this;
        // Most padding is a few blanks: one fixed-size copy, no call.
        static const char BLANKS[33] = "                                ";
        if (c == ' ' && n <= 32 && CAPACITY - used >= 32) {
            std::memcpy(line + used, BLANKS, 32);
            used += n;
            return *this;
        }
        while (n > 0) {
            Room(1);
            const size_t part = std::min(n, CAPACITY - used);
            std::memset(line + used, c, part);
            used += part;
            n -= part;
        }
        return *this;
    }
    Line& Pad(size_t length, int width) {
        if (width > 0 && length < static_cast<size_t>(width))
            Fill(' ', static_cast<size_t>(width) - length);
        return *this;
    }
    template <typename T>
    Line& Number(T value, int base, int width) {
        char digits[24];
        const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value, base);
        return Right(std::string_view(digits, static_cast<size_t>(result.ptr - digits)), width);
    }

    std::ostream& os;
    char line[CAPACITY];
    size_t used = 0;
    bool bad = false;
};

// Padded fields. Each sets its own fill, so no leftover fill shows.
void text(std::ostream& os, const char* value, int width, std::ios_base::fmtflags adjust) {
    os.fill(' ');
    os.setf(adjust, std::ios_base::adjustfield);
    os.width(width);
    if (value == nullptr)
        os.setstate(std::ios_base::badbit);
    else
        os << value;
}

void left(std::ostream& os, const char* value, int width) {
    text(os, value, width, std::ios_base::left);
}

// A blank column gap: one space left in a field of `width`.
void gap(std::ostream& os, int width) { left(os, " ", width); }

void dashes(std::ostream& os, int width) {
    os.fill('-');
    os.width(width);
    os << "";
}

// The dotted line up to its value field: one space, the label left in
// `labelWidth` with '.' fill, then the value field set to right adjustment.
void dottedLabel(std::ostream& os, char const* label, int labelWidth, int valueWidth) {
    os << ' ';
    os.setf(std::ios_base::left, std::ios_base::adjustfield);
    os.fill('.');
    os.width(labelWidth);
    if (label == nullptr)
        os.setstate(std::ios_base::badbit);
    else
        os << label;
    os.width(valueWidth);
    os.setf(std::ios_base::right, std::ios_base::adjustfield);
}

void wordTable(std::ostream& os, const char* const* texts, uint64_t word) {
    for (unsigned bit = 0; bit < WORD_TABLE_ROWS; ++bit)
        if (word & (uint64_t{1} << bit))
            os << "    " << texts[bit] << '\n';
}

} // namespace

const UnicodeString VFF_PoolName = placeholderFrom("<Unknown pool name>");
const UnicodeString VFF_VolumeName = placeholderFrom("<Unknown volume name>");
const UnicodeString VFF_FileName = placeholderFrom("<Unknown file name>");

// ---------------------------------------------------------------- dotted lines

std::ostream& fileOut(std::ostream& os, char const* label, uint64_t value) {
    FlagsSaver saver(os);
    dottedLabel(os, label, LABEL_WIDTH, VALUE_WIDTH);
    os << value << std::endl; // the base is the stream's own
    return os;
}

std::ostream& fileOut(std::ostream& os, char const* label, char const* value) {
    FlagsSaver saver(os);
    dottedLabel(os, label, LABEL_WIDTH, VALUE_WIDTH);
    if (value == nullptr)
        os.setstate(std::ios_base::badbit);
    else
        os << value;
    os << std::endl;
    return os;
}

std::ostream& fileOutHex(std::ostream& os, char const* label, uint64_t value) {
    FlagsSaver saver(os);
    dottedLabel(os, label, LABEL_WIDTH, VALUE_WIDTH);
    os.setf(std::ios_base::hex, std::ios_base::basefield);
    os.setf(std::ios_base::showbase);
    os.unsetf(std::ios_base::uppercase);
    os << value << std::endl;
    return os;
}

std::ostream& fileOut(std::ostream& os, char const* label, GUID_t const* guid) {
    FlagsSaver saver(os);
    dottedLabel(os, label, SHORT_LABEL_WIDTH, SHORT_VALUE_WIDTH);
    // The GUID operator pads its own groups and leaves the fill at '0'.
    if (guid == nullptr)
        os.setstate(std::ios_base::badbit);
    else
        os << *guid;
    os << std::endl;
    return os;
}

std::ostream& fileOut(std::ostream& os, char const* label, UnicodeString const& name) {
    FlagsSaver saver(os);
    dottedLabel(os, label, SHORT_LABEL_WIDTH, SHORT_VALUE_WIDTH);
    os << name.utf8() << std::endl;
    return os;
}

std::ostream& fileOutOptional(std::ostream& os, char const* label, uint64_t value,
                              uint64_t omitValue) {
    if (value != omitValue)
        fileOut(os, label, value);
    return os;
}

std::ostream& fileOutW(std::ostream& os, char const* label, uint64_t value, uint64_t expected,
                       uint64_t warningBits) {
    fileOut(os, label, value);
    if (value != expected)
        fileOutW(os, value, expected, warningBits);
    return os;
}

std::ostream& fileOutW(std::ostream& os, uint64_t /*value*/, uint64_t expected,
                       uint64_t warningBits) {
    {
        FlagsSaver saver(os);
        os.setf(std::ios_base::dec, std::ios_base::basefield);
        os << "   WARNING: The above value should be " << expected << '\n';
    }
    return displayWarnings2(os, warningBits);
}

std::ostream& outputTime(std::ostream& os, long seconds, bool local) {
    time_t when = static_cast<time_t>(seconds);
    struct tm parts;
    bool converted = local ? localtime_r(&when, &parts) != nullptr
                           : gmtime_r(&when, &parts) != nullptr;
    if (!converted) {
        os << "\"Invalid time\"";
        return os;
    }
    char buffer[80];
    size_t length = strftime(buffer, sizeof buffer, "\"%b %d, %Y  %I:%M:%S %p  %z\"", &parts);
    buffer[length] = '\0';
    os << buffer;
    return os;
}

// ---------------------------------------------------------------- status summary

std::ostream& operator<<(std::ostream& os, ZVP_Status_s const& s) {
    FlagsSaver saver(os);
    os.setf(std::ios_base::dec, std::ios_base::basefield);
    if (s.statusValid == 0) {
        os << "  Warning: Verify status is not valid" << '\n';
        return os;
    }
    const uint64_t totalBlocks = s.totalBlocks;
    const uint64_t sizeMB = (static_cast<uint64_t>(s.blockSize) >> 10) * (totalBlocks >> 10);
    os << " Pool: " << wideName(s.poolName, STATUS_POOL_NAME_UNITS, VFF_PoolName)
       << "                Total Size: " << sizeMB << " MB (" << totalBlocks << " blocks)"
       << '\n';
    os << '\n';
    os << "  Report time: ";
    outputTime(os, static_cast<long>(std::time(nullptr)), true);
    os << '\n';
    os << "  Verify start time: ";
    outputTime(os, static_cast<long>(s.verifyStartTime), true);
    os << '\n';
    os << "  User key: " << s.userKey << '\n';
    os << "  Blocks verified: " << s.blocksVerified << '\n';
    os << "  Unaccounted for blocks: " << s.unaccountedBlocks << '\n';
    os << "  Cross-linked blocks: " << s.crossLinkedBlocks << '\n';
    if (s.crossLinkedBlocks != 0) {
        os << "   ERROR: The above is very bad" << '\n';
        os << "  Blocks re-verified in cross-link pass: " << s.blocksReverified << '\n';
    }
    os << "  Invalid blocks: " << s.invalidBlocks << '\n';
    if (s.invalidBlocks != 0)
        os << "   ERROR: The above is bad" << '\n';
    if (s.finalStatusValid == 0) {
        os << "  Verify final status is not valid." << '\n';
        return os;
    }
    os << "  Verify end time: ";
    outputTime(os, static_cast<long>(s.verifyEndTime), true);
    os << '\n';
    if (s.completionCode != 0) {
        os << "  Verify was unable to determine pool condition.  Completion code: "
           << s.completionCode << '\n';
        os << "    Source setter is \"" << narrowText(s.sourceSetter, NARROW_TEXT_SIZE) << "\""
           << '\n';
        os << "    Source caller is \"" << narrowText(s.sourceCaller, NARROW_TEXT_SIZE) << "\""
           << '\n';
    } else {
        os << "  Verify was able to determine pool condition." << '\n';
    }
    if (s.abortedByUser != 0)
        os << "   Verify was aborted by a user." << '\n';
    return os;
}

std::ostream& fileOut(std::ostream& os, uint64_t errors, uint64_t warnings) {
    FlagsSaver saver(os);
    os << "Errors found: ";
    if (errors != 0) {
        os << "Yes" << '\n';
        displayErrors(os, errors);
    } else {
        os << "No" << '\n';
    }
    os << "Warnings found: ";
    if (warnings != 0) {
        os << "Yes" << '\n';
        displayWarnings(os, warnings);
    } else {
        os << "No" << '\n';
    }
    return os;
}

namespace {

// The heading with the word in hexadecimal, then a line per described bit.
std::ostream& displayWord(std::ostream& os, const char* heading, const char* const* texts,
                          uint64_t word) {
    FlagsSaver saver(os);
    os.setf(std::ios_base::hex, std::ios_base::basefield);
    os.setf(std::ios_base::showbase);
    os.unsetf(std::ios_base::uppercase);
    os << heading << word << '\n';
    wordTable(os, texts, word);
    return os;
}

} // namespace

char const* ErrorTypeText(unsigned bit) { return bit < WORD_TABLE_ROWS ? ERROR_TEXTS[bit] : nullptr; }

char const* WarningTypeText(unsigned bit) {
    return bit < WORD_TABLE_ROWS ? WARNING_TEXTS[bit] : nullptr;
}

std::ostream& displayErrors(std::ostream& os, uint64_t errors) {
    return displayWord(os, "  Error types: ", ERROR_TEXTS, errors);
}

std::ostream& displayWarnings(std::ostream& os, uint64_t warnings) {
    return displayWord(os, "  Warning types: ", WARNING_TEXTS, warnings);
}

std::ostream& displayWarnings2(std::ostream& os, uint64_t warnings) {
    for (unsigned bit = 0; bit < WORD_TABLE_ROWS; ++bit)
        if (warnings & (uint64_t{1} << bit))
            os << "    This results in the \"" << WARNING_TEXTS[bit] << "\" warning" << '\n';
    return os;
}

// ---------------------------------------------------------------- histograms

std::ostream& fileOutHeader(std::ostream& os, LevelInformation_s const& /*level*/) {
    FlagsSaver saver(os);
    os << "  ";
    left(os, "Description", 16);
    gap(os, 3);
    left(os, "Blocks", 14);
    gap(os, 3);
    left(os, "Records", 16);
    gap(os, 3);
    left(os, "Objects", 16);
    gap(os, 3);
    left(os, "Records per Blocks", 8);
    gap(os, 3);
    os << '\n';
    os << "  ";
    dashes(os, 16);
    gap(os, 3);
    dashes(os, 14);
    gap(os, 3);
    dashes(os, 16);
    gap(os, 3);
    dashes(os, 16);
    gap(os, 3);
    dashes(os, 8);
    gap(os, 3);
    os << '\n';
    return os;
}

namespace {

// The counts of a level or totals row, after its description column.
void levelCounts(Line& line, LevelInformation_s const& info) {
    const uint32_t blocks = info.blocks;
    const uint32_t records = info.records;
    line.Gap(3).Unsigned(blocks, 14).Gap(3).Unsigned(records, 16).Gap(3);
    line.Unsigned(info.objects, 16).Gap(3);
    line.Unsigned(records / (blocks == 0 ? 1u : blocks), 8).Gap(3);
}

} // namespace

std::ostream& fileOut(std::ostream& os, unsigned level, LevelInformation_s const& info) {
    Line line(os);
    line.Text("  ").Right("Level ", 14).Unsigned(level, 2);
    levelCounts(line, info);
    line.End();
    return os;
}

std::ostream& fileOut(std::ostream& os, char const* label, LevelInformation_s const& info) {
    Line line(os);
    line.Text("  ").Right(label, 16);
    levelCounts(line, info);
    line.End();
    return os;
}

std::ostream& writeObjectDetails(std::ostream& os, CommonBlockStats_s const& s, bool histograms) {
    os << '\n' << " --- Object details: " << narrowText(s.name, NARROW_TEXT_SIZE) << " ---"
       << '\n';
    fileOut(os, "Block count", s.blockCount);
    fileOutOptional(os, "Bad block value", s.badBlockValue, 0);
    fileOutOptional(os, "Cross-linked blocks", s.crossLinkedBlocks, 0);
    fileOutOptional(os, "Incorrent magic", s.incorrectMagic, 0);
    fileOutOptional(os, "Incorrect record count", s.incorrectRecordCount, 0);
    fileOutOptional(os, "Incorrect checksum", s.incorrectChecksum, 0);
    fileOutOptional(os, "Read errors", s.readErrors, 0);
    fileOutOptional(os, "Miscellaneous error", s.miscellaneousErrors, 0);
    fileOutOptional(os, "Block count(pass 2)", s.blockCountPass2, 0);
    fileOutOptional(os, "Bad block value(pass 2)", s.badBlockValuePass2, 0);
    fileOutOptional(os, "Invalid blocks", s.invalidBlocks, 0);
    fileOutOptional(os, "Invalid next leaf", s.invalidNextLeaf, 0);
    fileOut(os, "Level current", static_cast<uint64_t>(s.levelCurrent));
    fileOut(os, "Level maximum", static_cast<uint64_t>(s.levelMaximum));
    fileOut(os, "Level limit", static_cast<uint64_t>(s.levelLimit));
    if (!histograms)
        return os;
    fileOutHeader(os, s.levels[0]);
    fileOut(os, 0u, s.levels[0]);
    for (unsigned level = 1; level < HISTOGRAM_LEVELS; ++level)
        if (s.levels[level].blocks != 0)
            fileOut(os, level, s.levels[level]);
    fileOut(os, "Branches", s.branches);
    fileOut(os, "Leaves", s.leaves);
    return os;
}

std::ostream& operator<<(std::ostream& os, CommonBlockStats_s const& stats) {
    return writeObjectDetails(os, stats, true);
}

// ---------------------------------------------------------------- pool and volumes

void VerifyFile::displayCommonBlockStats_s(std::ostream& os, CommonBlockStats_s const& stats) {
    if (displayObjectDetails)
        writeObjectDetails(os, stats, displayHistograms);
}

void VerifyFile::displayZVP_PoolStats_s(std::ostream& os, ZVP_PoolStats_s const& p) {
    os << '\n' << RULE_LINE << '\n';
    os << "Pool: " << wideName(p.poolName, POOL_NAME_AREA_UNITS, VFF_PoolName) << '\n';
    fileOut(os, p.errors, p.warnings);
    os << RULE_LINE << '\n' << '\n' << '\n';

    os << " ------- Pool Scan Report -------" << '\n';
    fileOut(os, "Cross validation", p.crossValidation != 0 ? "Yes" : "No");
    fileOut(os, "Cross-linked Blocks", p.crossLinkedBlocks);
    fileOut(os, "Unaccounted Blocks", p.unaccountedBlocks);
    fileOut(os, "Used By Pool", p.usedByPool);
    fileOut(os, "Total In Use", p.totalBlocks - p.freeBlocks.blockCount);
    fileOut(os, "Unused Blocks", p.freeBlocks.blockCount);
    fileOut(os, "Total Blocks", p.totalBlocks);
    fileOutHex(os, "Highest LSN", p.highestLsn);
    fileOutHex(os, "Lowest LSN", p.lowestLsn);
    fileOut(os, "Object Tree Entries", static_cast<uint64_t>(p.bt.objectTree.leaves.objects));
    fileOut(os, "Object Special Entries", static_cast<uint64_t>(p.bt.specialTree.leaves.objects));
    fileOut(os, "Salvage Tree Entries", static_cast<uint64_t>(p.salvageTree.leaves.objects));

    os << '\n' << " ------- Pool System Report -------" << '\n';
    fileOut(os, "Total Blocks", p.systemTotalBlocks);
    fileOut(os, "Blocks in Use", p.systemBlocksInUse);
    fileOut(os, "Purgeable Blocks", p.purgeableBlocks);
    fileOut(os, "Non-Purgeable Blocks", p.nonPurgeableBlocks);

    os << '\n' << " ----- Salvage System Report ----" << '\n';
    fileOut(os, "Salvage Entries W/O IDs", p.salvageEntriesWithoutIds);
    fileOut(os, "Salvage Entries W/O names", p.salvageEntriesWithoutNames);
    fileOut(os, "Salvage Parents W/O IDs", p.salvageParentsWithoutIds);
    fileOut(os, "Salvage Parents W/O names", p.salvageParentsWithoutNames);
    fileOut(os, "Salvagable Objects", p.salvageableObjects);
    fileOut(os, "Salvagable Blocks", p.salvageableBlocks);
    fileOut(os, "Object Tree Levels", static_cast<uint64_t>(p.bt.objectTree.levelMaximum));
    fileOut(os, "Name Tree Levels", static_cast<uint64_t>(p.nt.nameTree.levelMaximum));
    fileOut(os, "Salvage Tree Levels", static_cast<uint64_t>(p.salvageTree.levelMaximum));
    fileOut(os, "User Rest. Tree Levels", static_cast<uint64_t>(p.ubt.blocks.levelMaximum));
    fileOut(os, "Dir Rest. Tree Levels", static_cast<uint64_t>(p.dbt.blocks.levelMaximum));
    fileOut(os, "MFL Tree Levels", static_cast<uint64_t>(p.mfl.blocks.levelMaximum));
    fileOut(os, "BTI Tree Levels", static_cast<uint64_t>(p.bti.blocks.levelMaximum));
    fileOut(os, "LVs Not Verified", p.lvsNotVerified);

    // This order, not the storage order, is the report's.
    displayCommonBlockStats_s(os, p.poolBlocks2);
    displayCommonBlockStats_s(os, p.poolBlocks1);
    displayCommonBlockStats_s(os, p.poolBlocks5);
    displayCommonBlockStats_s(os, p.poolBlocks6);
    displayCommonBlockStats_s(os, p.poolBlocks7);
    displayCommonBlockStats_s(os, p.freeBlocks);
    displayCommonBlockStats_s(os, p.poolBlocks4);
    displayCommonBlockStats_s(os, p.salvageTree);
    displayCommonBlockStats_s(os, p.poolBlocks3);

    fileVolumeOut(os, p.bt, p.nt, p.vdb, p.ubt, p.dbt, p.mfl, p.efl, p.pl, p.bti);
}

void VerifyFile::displayZVP_LVStats_s(std::ostream& os, ZVP_LVStats_s const& v) {
    os << '\n' << RULE_LINE << '\n';
    os << "LV: " << wideName(v.volumeName, VOLUME_NAME_UNITS, VFF_VolumeName) << '\n';
    fileOut(os, v.errors, v.warnings);
    {
        FlagsSaver saver(os);
        os.setf(std::ios_base::hex, std::ios_base::basefield);
        os.unsetf(std::ios_base::showbase);
        os << "Locator: " << v.locator << "vz" << '\n';
        os << "ID: " << v.volumeId << '\n'; // leaves the fill at '0'
        if (v.deleted != 0) {
            // Run together and still in hexadecimal, as the report has it.
            os << "Deletion time:" << v.deletionTime
               << (v.purging != 0 ? "Purging: Yes" : "Purging: No") << '\n';
        }
        os << RULE_LINE << '\n' << '\n';
    }
    if (v.deleted != 0 && v.purging != 0) {
        os << "Purging logical volumes never have details" << '\n';
        return;
    }
    fileVolumeOut(os, v.bt, v.nt, v.vdb, v.ubt, v.dbt, v.mfl, v.efl, v.pl, v.bti);
}

void VerifyFile::fileVolumeOut(std::ostream& os, BTStats_s const& bt, NTStats_s const& nt,
                               VDBStats_s const& vdb, UBTStats_s const& ubt,
                               DBTStats_s const& dbt, MFLStats_s const& mfl,
                               EFLStats_s const& efl, PLStats_s const& pl,
                               BTIStats_s const& bti) {
    // Taken in 32 bits, so the sum wraps as the report has always shown it.
    const uint32_t totalObjects = bt.objectTree.leaves.objects + bt.specialTree.leaves.objects;

    os << '\n' << " ------ Volume Scan Report ------" << '\n';
    fileOut(os, "Object Tree Entries", static_cast<uint64_t>(bt.objectTree.leaves.objects));
    fileOut(os, "Object Special Entries", static_cast<uint64_t>(bt.specialTree.leaves.objects));
    fileOut(os, "Total Object Entries", static_cast<uint64_t>(totalObjects));
    fileOut(os, "Objects Requiring No Names", bt.objectsRequiringNoNames);
    fileOut(os, "System Objects", bt.systemObjects);
    fileOut(os, "File Objects", bt.fileObjects);
    fileOut(os, "Directory Objects", bt.directoryObjects);
    fileOut(os, "DataStreams Objects", bt.dataStreamObjects);
    fileOut(os, "Total Volume Objects", static_cast<uint64_t>(totalObjects));
    fileOutHex(os, "Greatest Object ID", bt.greatestObjectId);
    fileOut(os, "Name Tree Overflow Nodes", nt.overflowNodesA + nt.overflowNodesB);
    fileOut(os, "Name Tree Entries", static_cast<uint64_t>(nt.nameTree.leaves.objects));
    fileOut(os, "Named Objects", bt.namedObjects);
    fileOut(os, "Objects W/Duplicate Names", nt.objectsWithDuplicateNames);
    fileOut(os, "Total Duplicate Names", nt.totalDuplicateNames);
    fileOut(os, "Name Tree Filesnames", nt.fileNames);
    fileOut(os, "Name Tree Dirnames", nt.directoryNames);
    fileOut(os, "Salvagable Blocks", bt.salvageableBlocks);
    fileOut(os, "BTI Entries", bt.btiEntries);

    if (vdb.encryptionAlgorithm == ENCRYPTION_AES128)
        os << " Volume is encrypted.................AES128" << '\n';
    else if (vdb.encryptionAlgorithm == ENCRYPTION_AES256)
        os << " Volume is encrypted.................AES256" << '\n';

    os << '\n' << " ------ Volume System Report ------" << '\n';
    fileOutHex(os, "Next Available ID", vdb.nextAvailableId);
    fileOut(os, "Number of Files", vdb.numberOfFiles);
    fileOut(os, "Number of Objects", vdb.numberOfObjects);
    fileOut(os, "Number of Purgeable blocks", vdb.purgeableBlocks);
    fileOut(os, "Blocks In Use", vdb.blocksInUse);
    if (vdb.blockQuota == NO_BLOCK_QUOTA)
        fileOut(os, "Block Quota", "None");
    else
        fileOut(os, "Block Quota", vdb.blockQuota);

    os << '\n' << " ----- Volume Problem Report ------" << '\n';
    fileOut(os, "Lost Data Blocks", bt.lostDataBlocks);
    fileOut(os, "Files With Lost Data", bt.filesWithLostData);
    fileOut(os, "Duplicate Object IDs", bt.duplicateIdsA + bt.duplicateIdsB);
    fileOut(os, "Object ID range errors", bt.idRangeErrorsA + bt.idRangeErrorsB);
    fileOutW(os, "Missing Name Entries", bt.missingNameEntries, 0, MISSING_NAME_WARNING);
    fileOutW(os, "Extra Name Entries", bt.extraNameEntries, 0, EXTRA_NAME_WARNING);
    fileOut(os, "Sys Objects Name Entries", bt.sysObjectsNameEntries);
    fileOut(os, "Name Entries W/O Objects", nt.nameEntriesWithoutObjects);
    fileOut(os, "Missing Salvage Entries", bt.missingSalvageEntries);
    fileOut(os, "Unreadable Objects", bt.unreadableObjects);
    fileOut(os, "Missing Parents in NT", bt.missingParentsInNT);
    fileOut(os, "Orphaned Objects", bt.orphanedObjects);
    fileOutW(os, "Missing BTI entries", bt.missingBtiEntries, 0, BTI_WARNING);
    fileOutW(os, "Invalid entries in BTI", bti.invalidBtiEntries, 0, BTI_WARNING);

    os << '\n' << " --------- Additional Info ---------" << '\n';
    fileOut(os, "Salvagable Objects", bt.salvageableObjects);
    fileOut(os, "Object Tree Levels", static_cast<uint64_t>(bt.objectTree.levelMaximum));
    fileOut(os, "Name Tree Levels", static_cast<uint64_t>(nt.nameTree.levelMaximum));
    fileOut(os, "User Rest. Tree Levels", static_cast<uint64_t>(ubt.blocks.levelMaximum));
    fileOut(os, "Dir Rest. Tree Levels", static_cast<uint64_t>(dbt.blocks.levelMaximum));
    fileOut(os, "MFL Tree Levels", static_cast<uint64_t>(mfl.blocks.levelMaximum));
    fileOut(os, "EFL Tree Levels", static_cast<uint64_t>(efl.blocks.levelMaximum));
    fileOut(os, "BTI Tree Levels", static_cast<uint64_t>(bti.blocks.levelMaximum));

    displayCommonBlockStats_s(os, bt.objectTree);
    displayCommonBlockStats_s(os, bt.specialTree);
    displayCommonBlockStats_s(os, nt.nameTree);
    displayCommonBlockStats_s(os, vdb.blocks);
    displayCommonBlockStats_s(os, ubt.blocks);
    displayCommonBlockStats_s(os, dbt.blocks);
    displayCommonBlockStats_s(os, mfl.blocks);
    displayCommonBlockStats_s(os, efl.blocks);
    displayCommonBlockStats_s(os, efl.blocks2);
    displayCommonBlockStats_s(os, pl.blocks);
    displayCommonBlockStats_s(os, bt.dataBlocks);
    displayCommonBlockStats_s(os, bti.blocks);
}

// ---------------------------------------------------------------- variable-data lists

char const* nTypeName(unsigned nameType) {
    switch (nameType) {
    case 0:
        return "File";
    case 1:
        return "Stream";
    case 2:
        return "Extend";
    case 3:
        return "Delete";
    default:
        return "???";
    }
}

std::ostream& variablePreHeader(std::ostream& os, char const* title, unsigned count) {
    FlagsSaver saver(os);
    os.setf(std::ios_base::dec, std::ios_base::basefield);
    os << '\n' << "  ";
    if (title == nullptr)
        os.setstate(std::ios_base::badbit);
    else
        os << title;
    os << '\n' << "     " << count << " records to follow." << '\n' << '\n';
    return os;
}

namespace {

// One heading column: title and gap; one rule column: dashes and gap.
struct Column {
    const char* title;
    int titleWidth;
    int titleGap;
    int ruleWidth;
    int ruleGap;
};

template <size_t N> std::ostream& heading(std::ostream& os, const Column (&columns)[N]) {
    FlagsSaver saver(os);
    os << "  ";
    for (const Column& c : columns) {
        left(os, c.title, c.titleWidth);
        if (c.titleGap > 0)
            gap(os, c.titleGap);
    }
    os << '\n' << "  ";
    for (const Column& c : columns) {
        dashes(os, c.ruleWidth);
        if (c.ruleGap > 0)
            gap(os, c.ruleGap);
    }
    os << '\n';
    return os;
}

void zidColumn(Line& line, uint64_t zid, int width, int markWidth) {
    line.Hex(zid, width).Left("z", markWidth);
}

void blockColumn(Line& line, uint64_t block, int width, int markWidth) {
    line.Hex(block, width).Left("k", markWidth);
}

void statusColumns(Line& line, int status, char const* sourceSetter) {
    line.Decimal(status, 6).Gap(3).Left(sourceSetter, 32).Gap(3);
}

} // namespace

std::ostream& variableHeaderZid(std::ostream& os) {
    static const Column columns[] = {{"Zid", 16, 3, 17, 2}};
    return heading(os, columns);
}

std::ostream& variableHeaderZidBlock(std::ostream& os) {
    static const Column columns[] = {{"Zid", 16, 3, 17, 2}, {"Block", 8, 3, 9, 2}};
    return heading(os, columns);
}

std::ostream& variableHeaderBlockBlock(std::ostream& os) {
    static const Column columns[] = {{"Start", 8, 3, 9, 2}, {"End", 8, 3, 9, 2}};
    return heading(os, columns);
}

std::ostream& variableHeaderZidStatusStatusSetter(std::ostream& os) {
    static const Column columns[] = {
        {"Zid", 16, 3, 17, 2}, {"Status", 6, 3, 6, 3}, {"Source", 32, 3, 32, 3}};
    return heading(os, columns);
}

std::ostream& variableHeaderBlockStatusStatusSetter(std::ostream& os) {
    static const Column columns[] = {
        {"Block", 16, 3, 17, 2}, {"Status", 8, 3, 8, 3}, {"Source", 32, 3, 32, 3}};
    return heading(os, columns);
}

std::ostream& variableHeaderNameStatusStatusSetter(std::ostream& os) {
    static const Column columns[] = {
        {"Name", 32, 3, 32, 3}, {"Status", 8, 3, 8, 3}, {"Source", 32, 3, 32, 3}};
    return heading(os, columns);
}

std::ostream& variableHeaderZidZidStatusStatusSetter(std::ostream& os, char const* title1,
                                                     char const* title2) {
    const Column columns[] = {{title1, 16, 3, 17, 2},
                              {title2, 16, 3, 17, 2},
                              {"Status", 6, 3, 6, 3},
                              {"Source", 32, 3, 32, 3}};
    return heading(os, columns);
}

std::ostream& variableHeaderZidZidZidFileName(std::ostream& os, char const* title1,
                                              char const* title2, char const* title3) {
    const Column columns[] = {{title1, 10, 3, 11, 2},
                              {title2, 10, 3, 11, 2},
                              {title3, 10, 3, 11, 2},
                              {"File name", 38, 3, 38, 3}};
    return heading(os, columns);
}

std::ostream& variableHeaderZidZidNTNSMFileNameStatusStatusSetter(std::ostream& os) {
    static const Column columns[] = {{"Zid", 19, 2, 19, 2},       {"Parent Zid", 19, 2, 19, 2},
                                     {"Type", 6, 3, 6, 3},        {"Mask", 4, 3, 4, 3},
                                     {"File name", 38, 3, 38, 3}, {"Status", 6, 3, 6, 3},
                                     {"Source", 32, 3, 32, 3}};
    return heading(os, columns);
}

std::ostream& variableDataZid(std::ostream& os, uint64_t zid) {
    Line line(os);
    zidColumn(line.Text("  "), zid, 17, 2);
    line.End();
    return os;
}

std::ostream& variableDataZidBlock(std::ostream& os, uint64_t zid, uint64_t block) {
    Line line(os);
    zidColumn(line.Text("  "), zid, 17, 2);
    line.Unsigned(block, 9).Left("k", 2); // decimal here, unlike every other block column
    line.End();
    return os;
}

std::ostream& variableDataBlockBlock(std::ostream& os, uint64_t startBlock, uint64_t endBlock) {
    Line line(os);
    blockColumn(line.Text("  "), startBlock, 8, 3);
    blockColumn(line, endBlock, 8, 3);
    line.End();
    return os;
}

std::ostream& variableDataZidStatusStatusSetter(std::ostream& os, uint64_t zid, int status,
                                                char const* sourceSetter) {
    Line line(os);
    zidColumn(line.Text("  "), zid, 17, 2);
    statusColumns(line, status, sourceSetter);
    line.End();
    return os;
}

std::ostream& variableDataBlockStatusStatusSetter(std::ostream& os, uint64_t block, int status,
                                                  char const* sourceSetter) {
    Line line(os);
    blockColumn(line.Text("  "), block, 16, 3);
    statusColumns(line, status, sourceSetter);
    line.End();
    return os;
}

std::ostream& variableDataNameStatusStatusSetter(std::ostream& os, UnicodeString const& name,
                                                 int status, char const* sourceSetter) {
    Line line(os);
    line.Text("  ").Left(name.utf8(), 32).Gap(3);
    statusColumns(line, status, sourceSetter);
    line.End();
    return os;
}

std::ostream& variableDataZidZidStatusStatusSetter(std::ostream& os, uint64_t zid1,
                                                   uint64_t zid2, int status,
                                                   char const* sourceSetter) {
    Line line(os);
    zidColumn(line.Text("  "), zid1, 17, 2);
    zidColumn(line, zid2, 17, 2);
    statusColumns(line, status, sourceSetter);
    line.End();
    return os;
}

std::ostream& variableDataZidZidZidFileName(std::ostream& os, uint64_t zid1, uint64_t zid2,
                                            uint64_t zid3, unsigned short const* fileName) {
    Line line(os);
    zidColumn(line.Text("  "), zid1, 10, 3);
    zidColumn(line, zid2, 10, 3);
    zidColumn(line, zid3, 10, 3);
    line.WideName(fileName, 38).Gap(3);
    line.End();
    return os;
}

std::ostream& variableDataZidZidNTNSMFileNameStatusStatusSetter(
    std::ostream& os, uint64_t zid, uint64_t parentZid, unsigned short nameType,
    unsigned nameSpaceMask, unsigned short const* fileName, int status,
    char const* sourceSetter) {
    Line line(os);
    zidColumn(line.Text("  "), zid, 19, 2);
    zidColumn(line, parentZid, 19, 2);
    line.Left(nTypeName(nameType), 6).Gap(3).Hex(nameSpaceMask, 4).Gap(3);
    line.WideName(fileName, 38).Gap(3);
    statusColumns(line, status, sourceSetter);
    line.End();
    return os;
}

// Per-record writers: each hands its fields to the shared writer of its shape.

std::ostream& variableHeader(std::ostream& os, CBSV_NextLeafInvalidList_s const*) {
    static const Column columns[] = {{"Expected block", 16, 3, 17, 2},
                                     {"Actual block", 16, 0, 17, 0}};
    return heading(os, columns);
}

std::ostream& variableData(std::ostream& os, CBSV_NextLeafInvalidList_s const* r) {
    Line line(os);
    blockColumn(line.Text("  "), r->expectedBlock, 16, 3);
    blockColumn(line, r->actualBlock, 16, 3);
    line.End();
    return os;
}

std::ostream& variableHeader(std::ostream& os, CBSV_InvalidBlockList_s const*) {
    return variableHeaderBlockStatusStatusSetter(os);
}

std::ostream& variableData(std::ostream& os, CBSV_InvalidBlockList_s const* r) {
    return variableDataBlockStatusStatusSetter(
        os, r->block, r->status, NarrowBuffer(r->sourceSetter).text);
}

std::ostream& variableHeader(std::ostream& os, BTDS_BranchOutOfRangeZids_s const*) {
    return variableHeaderZid(os);
}

std::ostream& variableData(std::ostream& os, BTDS_BranchOutOfRangeZids_s const* r) {
    return variableDataZid(os, r->zid);
}

std::ostream& variableHeader(std::ostream& os, BTDS_OutOfRangeZids_s const*) {
    return variableHeaderZid(os);
}

std::ostream& variableData(std::ostream& os, BTDS_OutOfRangeZids_s const* r) {
    return variableDataZid(os, r->zid);
}

#define VF_ZID_STATUS_WRITERS(R)                                                               \
    std::ostream& variableHeader(std::ostream& os, R const*) {                                  \
        return variableHeaderZidStatusStatusSetter(os);                                         \
    }                                                                                           \
    std::ostream& variableData(std::ostream& os, R const* r) {                                  \
        return variableDataZidStatusStatusSetter(                                               \
            os, r->zid, r->status, NarrowBuffer(r->sourceSetter).text);      \
    }

VF_ZID_STATUS_WRITERS(BTDS_UnreadableZid_s)
VF_ZID_STATUS_WRITERS(BTDS_BTZnotInPT_s)
VF_ZID_STATUS_WRITERS(STDS_STZnotInBT_s)
VF_ZID_STATUS_WRITERS(STDS_STZnotInNT_s)
VF_ZID_STATUS_WRITERS(STDS_STPZnotInBT_s)
VF_ZID_STATUS_WRITERS(STDS_STPZnotInNT_s)

#undef VF_ZID_STATUS_WRITERS

#define VF_PARENT_CHILD_WRITERS(R)                                                             \
    std::ostream& variableHeader(std::ostream& os, R const*) {                                  \
        return variableHeaderZidZidStatusStatusSetter(os, "Parent", "Child");                   \
    }                                                                                           \
    std::ostream& variableData(std::ostream& os, R const* r) {                                  \
        return variableDataZidZidStatusStatusSetter(                                            \
            os, r->parentZid, r->childZid, r->status,                                           \
            NarrowBuffer(r->sourceSetter).text);                             \
    }

VF_PARENT_CHILD_WRITERS(BTDS_BTZnotInNT_s)
VF_PARENT_CHILD_WRITERS(BTDS_missingBeastParentEnts_s)

#undef VF_PARENT_CHILD_WRITERS

std::ostream& variableHeader(std::ostream& os, BTDS_DuplicateZidsB_s const*) {
    return variableHeaderZidBlock(os);
}

std::ostream& variableData(std::ostream& os, BTDS_DuplicateZidsB_s const* r) {
    return variableDataZidBlock(os, r->zid, r->block);
}

std::ostream& variableHeader(std::ostream& os, BTDS_DuplicateZidsL_s const*) {
    return variableHeaderZidBlock(os);
}

std::ostream& variableData(std::ostream& os, BTDS_DuplicateZidsL_s const* r) {
    return variableDataZidBlock(os, r->zid, r->block);
}

std::ostream& variableHeader(std::ostream& os, BTDS_BTBadNTFiles_s const*) {
    // "Expecteded" is the column's title.
    return variableHeaderZidZidZidFileName(os, "Actual", "Expecteded", "Parent");
}

std::ostream& variableData(std::ostream& os, BTDS_BTBadNTFiles_s const* r) {
    WideBuffer name(r->fileName, FILE_NAME_UNITS);
    return variableDataZidZidZidFileName(os, r->actualZid, r->expectedZid, r->parentZid,
                                         name.units);
}

std::ostream& variableHeader(std::ostream& os, NTDS_NTZnotInBT_s const*) {
    return variableHeaderZidZidNTNSMFileNameStatusStatusSetter(os);
}

std::ostream& variableData(std::ostream& os, NTDS_NTZnotInBT_s const* r) {
    WideBuffer name(r->fileName, FILE_NAME_UNITS);
    return variableDataZidZidNTNSMFileNameStatusStatusSetter(
        os, r->zid, r->parentZid, r->nameType, r->nameSpaceMask, name.units, r->status,
        NarrowBuffer(r->sourceSetter).text);
}

std::ostream& variableHeader(std::ostream& os, STDS_unaccBlks_s const*) {
    return variableHeaderBlockBlock(os);
}

std::ostream& variableData(std::ostream& os, STDS_unaccBlks_s const* r) {
    return variableDataBlockBlock(os, r->startBlock, r->endBlock);
}

// ---------------------------------------------------------------- action, conflict, skipped

std::ostream& fileOutHeader(std::ostream& os, RAV_Action_s const&) {
    FlagsSaver saver(os);
    static const int widths[] = {16, 4, 11, 11, 7, 22, 32, 4};
    static const char* const titles[] = {"Object",     "Pool",   "Start", "End",
                                         "Seconds",    "Sub-object", "Action", "Key"};
    const size_t columns = sizeof widths / sizeof widths[0];
    os << "  ";
    for (size_t i = 0; i < columns; ++i) {
        left(os, titles[i], widths[i]);
        if (i + 1 < columns)
            gap(os, 2);
    }
    os << '\n' << "  ";
    for (size_t i = 0; i < columns; ++i) {
        dashes(os, widths[i]);
        if (i + 1 < columns)
            gap(os, 2);
    }
    os << '\n';
    return os;
}

std::ostream& fileOutHeader(std::ostream& os, BlockConflicts_s const&) {
    FlagsSaver saver(os);
    os << "  ";
    left(os, "Block", 8);
    gap(os, 3);
    left(os, "Object 1", 18);
    gap(os, 3);
    left(os, "Volume 1", 8);
    gap(os, 4);
    left(os, "Object 2", 18);
    gap(os, 3);
    left(os, "Volume 2", 8);
    gap(os, 4);
    os << '\n' << "  ";
    for (int width : {9, 19, 10, 19, 10}) {
        dashes(os, width);
        gap(os, 2);
    }
    os << '\n';
    return os;
}

std::ostream& fileOutHeader(std::ostream& os, LVSkipped_s const&) {
    FlagsSaver saver(os);
    os << "  ";
    left(os, "Logical Volumes Skipped", 32);
    os << '\n' << "  ";
    dashes(os, 32);
    os << '\n';
    return os;
}

std::ostream& fileOut(std::ostream& os, RAV_Action_s const& r) {
    // Seconds are taken in 32 bits: an end before the start wraps.
    const uint32_t seconds = r.endSeconds - r.startSeconds;
    Line line(os);
    line.Text("  ").WideName(r.object, ACTION_OBJECT_UNITS, 16, true);
    line.Gap(2).Right(r.isPool != 0 ? "Y" : "N", 4).Gap(2);
    blockColumn(line, r.start, 10, 3);
    blockColumn(line, r.end, 10, 3);
    line.Unsigned(seconds, 7).Gap(2);
    line.Right(std::string_view(r.subObject, strnlen(r.subObject, NARROW_TEXT_SIZE)), 22).Gap(2);
    line.Left(std::string_view(r.action, strnlen(r.action, ACTION_TEXT_SIZE)), 32).Gap(2);
    line.Unsigned(r.key, 4);
    line.Write();
    return os;
}

std::ostream& fileOut(std::ostream& os, BlockConflicts_s const& r) {
    Line line(os);
    blockColumn(line.Text("  "), r.block, 8, 3);
    zidColumn(line, r.object1, 18, 3);
    line.Hex(r.volume1, 8).Left("vz", 4);
    zidColumn(line, r.object2, 18, 3);
    line.Hex(r.volume2, 8).Left("vz", 4);
    line.Write();
    return os;
}

std::ostream& fileOut(std::ostream& os, LVSkipped_s const& r) {
    Line line(os);
    line.Text("  ").WideName(r.volumeName, VOLUME_NAME_UNITS, 32).Gap(3);
    statusColumns(line, r.status, NarrowBuffer(r.sourceSetter).text);
    line.End();
    return os;
}

std::ostream& operator<<(std::ostream& os, RAV_Action_s const& record) {
    return fileOut(os, record);
}

std::ostream& operator<<(std::ostream& os, BlockConflicts_s const& record) {
    return fileOut(os, record);
}

std::ostream& operator<<(std::ostream& os, LVSkipped_s const& record) {
    return fileOut(os, record);
}

namespace {

template <typename Record>
std::ostream& writeList(std::ostream& os, const char* title,
                        VerifyRecordList<Record> const& list) {
    FlagsSaver saver(os);
    os.setf(std::ios_base::dec, std::ios_base::basefield);
    os << '\n' << title << '\n';
    os << "     " << list.count << " records to follow." << '\n' << '\n';
    if (list.count == 0) {
        os << '\n';
        return os;
    }
    for (size_t i = 0; i < list.records.size(); ++i) {
        if (i == 0)
            fileOutHeader(os, list.records[0]);
        os << list.records[i] << '\n';
    }
    os << '\n';
    return os;
}

} // namespace

std::ostream& fileOut(std::ostream& os, ActionStats const& list) {
    return writeList(os, "  Action list.", list);
}

std::ostream& fileOut(std::ostream& os, ConflictBlocksStats const& list) {
    return writeList(os, "  Cross-linked block information.", list);
}

std::ostream& fileOut(std::ostream& os, LVSkippedStats const& list) {
    return writeList(os, "  Skipped logical volume information.", list);
}

std::ostream& operator<<(std::ostream& os, ActionStats const& list) { return fileOut(os, list); }

std::ostream& operator<<(std::ostream& os, ConflictBlocksStats const& list) {
    return fileOut(os, list);
}

std::ostream& operator<<(std::ostream& os, LVSkippedStats const& list) {
    return fileOut(os, list);
}
