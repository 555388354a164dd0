// verifyFileOutput.cpp - the text of a verify report: dotted lines, status
// summary, pool and volume blocks, histograms, and the headings and rows of
// every record list (made from the lists' column tables); and the text
// printer, which writes each section with them as the reader hands it on.
#include "util/common_cpp/verifyFileOutput.h"

#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyListText.h"
#include "util/common_cpp/verifyTextPrinter.h"
#include "util/support/line.h"
#include "util/support/qvsLib.h"

#include <array>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace VerifyFormat;
using QVS::Line;
using RecordTables::Column;
using RecordTables::ColumnTable;

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

// The histogram's heading; its rows are written by level. Headings only: the
// cells are not used.
constexpr Column HISTOGRAM_COLUMNS[] = {
    {"Description", 16, 3, 16, 3, RecordTables::Cell::Unsigned, nullptr, 0, nullptr, 0},
    {"Blocks", 14, 3, 14, 3, RecordTables::Cell::Unsigned, nullptr, 0, nullptr, 0},
    {"Records", 16, 3, 16, 3, RecordTables::Cell::Unsigned, nullptr, 0, nullptr, 0},
    {"Objects", 16, 3, 16, 3, RecordTables::Cell::Unsigned, nullptr, 0, nullptr, 0},
    {"Records per Blocks", 8, 3, 8, 3, RecordTables::Cell::Unsigned, nullptr, 0, nullptr, 0}};
constexpr ColumnTable HISTOGRAM{HISTOGRAM_COLUMNS, std::size(HISTOGRAM_COLUMNS), true};

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

// The texts of the placeholders, for a placeholder whose start-up build
// found no memory.
const char POOL_NAME_PLACEHOLDER[] = "<Unknown pool name>";
const char VOLUME_NAME_PLACEHOLDER[] = "<Unknown volume name>";
const char FILE_NAME_PLACEHOLDER[] = "<Unknown file name>";
constexpr std::size_t PLACEHOLDER_UNITS = 32;
const unsigned short EMPTY_UNITS[1] = {0};

UnicodeString placeholderFrom(const char* ascii) {
    unsigned short units[PLACEHOLDER_UNITS] = {};
    for (std::size_t i = 0; ascii[i] != '\0' && i + 1 < PLACEHOLDER_UNITS; ++i)
        units[i] = static_cast<unsigned char>(ascii[i]);
    return UnicodeString(units);
}

std::string placeholderText(const UnicodeString& placeholder, const char* ascii) {
    return placeholder.utf8().empty() ? std::string(ascii) : placeholder.utf8();
}

// A wide name of a record, or the placeholder if it cannot be converted.
std::string wideName(const unsigned char* field, size_t units, const UnicodeString& placeholder,
                     const char* ascii) {
    try {
        return UnicodeString(field, units).utf8();
    } catch (...) {
        return placeholderText(placeholder, ascii);
    }
}

// A narrow text field, cut at its terminator or at the end of the field.
std::string narrowText(const char* field, size_t size) {
    return std::string(field, strnlen(field, size));
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

void wordTable(std::ostream& os, char const* (*texts)(unsigned), uint64_t word) {
    for (unsigned bit = 0; bit < VerifyNames::WORD_BITS; ++bit)
        if (word & (uint64_t{1} << bit))
            os << "    " << texts(bit) << '\n';
}


} // namespace

// Empty until built: an empty string takes no memory.
UnicodeString VFF_PoolName(static_cast<const unsigned short*>(EMPTY_UNITS));
UnicodeString VFF_VolumeName(static_cast<const unsigned short*>(EMPTY_UNITS));
UnicodeString VFF_FileName(static_cast<const unsigned short*>(EMPTY_UNITS));

void BuildPlaceholders() {
    VFF_PoolName = placeholderFrom(POOL_NAME_PLACEHOLDER);
    VFF_VolumeName = placeholderFrom(VOLUME_NAME_PLACEHOLDER);
    VFF_FileName = placeholderFrom(FILE_NAME_PLACEHOLDER);
}

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
    os << " Pool: " << wideName(s.poolName, STATUS_POOL_NAME_UNITS, VFF_PoolName, POOL_NAME_PLACEHOLDER)
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
std::ostream& displayWord(std::ostream& os, const char* heading, char const* (*texts)(unsigned),
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

std::ostream& displayErrors(std::ostream& os, uint64_t errors) {
    return displayWord(os, "  Error types: ", VerifyNames::ErrorTypeText, errors);
}

std::ostream& displayWarnings(std::ostream& os, uint64_t warnings) {
    return displayWord(os, "  Warning types: ", VerifyNames::WarningTypeText, warnings);
}

std::ostream& displayWarnings2(std::ostream& os, uint64_t warnings) {
    for (unsigned bit = 0; bit < VerifyNames::WORD_BITS; ++bit)
        if (warnings & (uint64_t{1} << bit))
            os << "    This results in the \"" << VerifyNames::WarningTypeText(bit) << "\" warning"
               << '\n';
    return os;
}

// ---------------------------------------------------------------- histograms

std::ostream& fileOutHeader(std::ostream& os, LevelInformation_s const& /*level*/) {
    return ListText::Heading(os, HISTOGRAM);
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

std::ostream& writeObjectDetailsIf(std::ostream& os, CommonBlockStats_s const& stats,
                                   DisplaySwitches show) {
    if (show.objectDetails)
        writeObjectDetails(os, stats, show.histograms);
    return os;
}

std::ostream& writePool(std::ostream& os, ZVP_PoolStats_s const& p, DisplaySwitches show) {
    os << '\n' << RULE_LINE << '\n';
    os << "Pool: " << wideName(p.poolName, POOL_NAME_AREA_UNITS, VFF_PoolName, POOL_NAME_PLACEHOLDER) << '\n';
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
    writeObjectDetailsIf(os, p.poolBlocks2, show);
    writeObjectDetailsIf(os, p.poolBlocks1, show);
    writeObjectDetailsIf(os, p.poolBlocks5, show);
    writeObjectDetailsIf(os, p.poolBlocks6, show);
    writeObjectDetailsIf(os, p.poolBlocks7, show);
    writeObjectDetailsIf(os, p.freeBlocks, show);
    writeObjectDetailsIf(os, p.poolBlocks4, show);
    writeObjectDetailsIf(os, p.salvageTree, show);
    writeObjectDetailsIf(os, p.poolBlocks3, show);

    return writeVolumeParts(os, p.bt, p.nt, p.vdb, p.ubt, p.dbt, p.mfl, p.efl, p.pl, p.bti, show);
}

std::ostream& writeVolume(std::ostream& os, ZVP_LVStats_s const& v, DisplaySwitches show) {
    os << '\n' << RULE_LINE << '\n';
    os << "LV: " << wideName(v.volumeName, VOLUME_NAME_UNITS, VFF_VolumeName, VOLUME_NAME_PLACEHOLDER) << '\n';
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
        return os;
    }
    return writeVolumeParts(os, v.bt, v.nt, v.vdb, v.ubt, v.dbt, v.mfl, v.efl, v.pl, v.bti, show);
}

std::ostream& writeVolumeParts(std::ostream& os, BTStats_s const& bt, NTStats_s const& nt,
                               VDBStats_s const& vdb, UBTStats_s const& ubt,
                               DBTStats_s const& dbt, MFLStats_s const& mfl,
                               EFLStats_s const& efl, PLStats_s const& pl,
                               BTIStats_s const& bti, DisplaySwitches show) {
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

    writeObjectDetailsIf(os, bt.objectTree, show);
    writeObjectDetailsIf(os, bt.specialTree, show);
    writeObjectDetailsIf(os, nt.nameTree, show);
    writeObjectDetailsIf(os, vdb.blocks, show);
    writeObjectDetailsIf(os, ubt.blocks, show);
    writeObjectDetailsIf(os, dbt.blocks, show);
    writeObjectDetailsIf(os, mfl.blocks, show);
    writeObjectDetailsIf(os, efl.blocks, show);
    writeObjectDetailsIf(os, efl.blocks2, show);
    writeObjectDetailsIf(os, pl.blocks, show);
    writeObjectDetailsIf(os, bt.dataBlocks, show);
    writeObjectDetailsIf(os, bti.blocks, show);
    return os;
}

// ---------------------------------------------------------------- lists

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

std::ostream& ListText::Heading(std::ostream& os, ColumnTable const& table) {
    Line line(os);
    line.Text("  ");
    for (std::size_t i = 0; i < table.count; ++i) {
        const Column& c = table.columns[i];
        if (c.title != nullptr)
            line.Left(c.title, c.titleWidth).Gap(c.titleGap);
    }
    line.Text("\n  ");
    for (std::size_t i = 0; i < table.count; ++i) {
        const Column& c = table.columns[i];
        if (c.title != nullptr)
            line.Dashes(c.ruleWidth).Gap(c.ruleGap);
    }
    line.End();
    return os;
}

// ---------------------------------------------------------------- action, conflict, skipped

std::ostream& fileOutHeader(std::ostream& os, RAV_Action_s const&) {
    return ListText::Heading(os, Layout<RAV_Action_s>::COLUMNS);
}

std::ostream& fileOutHeader(std::ostream& os, BlockConflicts_s const&) {
    return ListText::Heading(os, Layout<BlockConflicts_s>::COLUMNS);
}

std::ostream& fileOutHeader(std::ostream& os, LVSkipped_s const&) {
    return ListText::Heading(os, Layout<LVSkipped_s>::COLUMNS);
}

std::ostream& fileOut(std::ostream& os, RAV_Action_s const& r) {
    ListText::RecordRow(os, r);
    return os;
}

std::ostream& fileOut(std::ostream& os, BlockConflicts_s const& r) {
    ListText::RecordRow(os, r);
    return os;
}

std::ostream& fileOut(std::ostream& os, LVSkipped_s const& r) {
    ListText::RecordRow(os, r);
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

// A held list: its title, its count, then its heading and rows.
template <typename Record>
std::ostream& writeList(std::ostream& os, VerifyRecordList<Record> const& list) {
    FlagsSaver saver(os);
    os.setf(std::ios_base::dec, std::ios_base::basefield);
    os << '\n' << Layout<Record>::TITLE << '\n';
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

std::ostream& fileOut(std::ostream& os, ActionStats const& list) { return writeList(os, list); }

std::ostream& fileOut(std::ostream& os, ConflictBlocksStats const& list) {
    return writeList(os, list);
}

std::ostream& fileOut(std::ostream& os, LVSkippedStats const& list) { return writeList(os, list); }

std::ostream& operator<<(std::ostream& os, ActionStats const& list) { return fileOut(os, list); }

std::ostream& operator<<(std::ostream& os, ConflictBlocksStats const& list) {
    return fileOut(os, list);
}

std::ostream& operator<<(std::ostream& os, LVSkippedStats const& list) {
    return fileOut(os, list);
}

// ---------------------------------------------------------------- the text printer

namespace {

using RowWriter = void (*)(std::ostream&, unsigned char const*);

// The row writer of each variable-data list, in the registry's order.
template <typename... Records>
constexpr std::array<RowWriter, sizeof...(Records)> rowWriters(VerifyFormat::RecordList<Records...>) {
    return {{&ListText::Row<Records>...}};
}

constexpr auto ROWS = rowWriters(VerifyFormat::VariableLists{});

} // namespace

VerifyPrinter::~VerifyPrinter() = default;

VerifyTextPrinter::VerifyTextPrinter(std::ostream& output, DisplaySwitches switches)
    : out(output), show(switches) {}

VerifyTextPrinter::~VerifyTextPrinter() = default;

void VerifyTextPrinter::Status(ZVP_Status_s const& status) { out << status << '\n'; }

void VerifyTextPrinter::Pool(ZVP_PoolStats_s const& pool) { writePool(out, pool, show); }

void VerifyTextPrinter::Volume(ZVP_LVStats_s const& volume) { writeVolume(out, volume, show); }

void VerifyTextPrinter::Actions(ActionStats const& list) {
    if (show.actions)
        out << '\n' << list << '\n';
}

void VerifyTextPrinter::Conflicts(ConflictBlocksStats const& list) { out << '\n' << list << '\n'; }

void VerifyTextPrinter::Skipped(LVSkippedStats const& list) { out << '\n' << list << '\n'; }

void VerifyTextPrinter::ListStart(VerifyFormat::ListType const& type, uint32_t count) {
    listShown = count != 0;
    if (!listShown)
        return;
    variablePreHeader(out, type.title, count);
    ListText::Heading(out, type.columns);
}

void VerifyTextPrinter::ListRow(VerifyFormat::ListType const& type, unsigned char const* row) {
    ROWS[type.index](out, row);
}

void VerifyTextPrinter::ListEnd(VerifyFormat::ListType const&) {
    if (listShown)
        out << '\n';
    listShown = false;
}

std::unique_ptr<VerifyPrinter> NewVerifyTextPrinter(std::ostream& out, DisplaySwitches show) {
    return std::make_unique<VerifyTextPrinter>(out, show);
}
