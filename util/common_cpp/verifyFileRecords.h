// verifyFileRecords.h - the records of the verify report and their registry:
// the byte layout of the section header, the fixed records, the list records
// and the variable-data records, and beside each record its table
// (every field with where it stands and how it is shown as data; for a
// list's records also its section tag, title and text columns). The reader's
// dispatch, the text and JSON printers and the schema are made from these
// tables.
//
// Adding a kind of problem list takes its struct here, a Layout row of its
// fields, tag, title and columns, and its name in VariableLists below.
#ifndef UTIL_COMMON_CPP_VERIFYFILERECORDS_H
#define UTIL_COMMON_CPP_VERIFYFILERECORDS_H

#include "util/common_cpp/recordTables.h"
#include "util/support/qvsGuid.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <ostream>
#include <utility>

// Every record is a byte image of the file (little-endian, packed). Wide names
// are kept as raw UTF-16LE bytes, never as unsigned short arrays, so that no
// code can take a misaligned pointer to them; UnicodeString(field, units)
// reads them byte by byte and stops at the end of the field.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "verify report records are little-endian byte images"
#endif

namespace VerifyFormat {

// Eight ASCII bytes read as one little-endian 64-bit word.
constexpr uint64_t Tag(const char (&text)[9]) {
    uint64_t word = 0;
    for (int i = 7; i >= 0; --i)
        word = (word << 8) | static_cast<unsigned char>(text[i]);
    return word;
}

constexpr uint64_t SECTION_MAGIC = Tag("QMfSVerS");

// The sections without a record of their own; every other section's tag is
// in its record's Layout.
constexpr uint64_t TAG_HEADER = Tag("QMfSVerH");
constexpr uint64_t TAG_MESSAGE_RECORD = Tag("QMfSVGVP");
constexpr uint64_t TAG_DEBUG_RECORD = Tag("QMfSVGVQ");

constexpr unsigned CRC_SIZE = 4;
constexpr unsigned SECTION_HEADER_SIZE = 96;
constexpr unsigned HEADER_PAYLOAD_SIZE = 80;
constexpr unsigned HEADER_SECTION_SIZE = SECTION_HEADER_SIZE + HEADER_PAYLOAD_SIZE;
constexpr unsigned LIST_COUNT_SIZE = 4;

// Widths of the text fields.
constexpr unsigned NARROW_TEXT_SIZE = 32;     // names, source setters, sub-objects
constexpr unsigned ACTION_TEXT_SIZE = 64;     // RAV_Action_s::action
constexpr unsigned STATUS_POOL_NAME_UNITS = 64;
constexpr unsigned POOL_NAME_AREA_UNITS = 499; // 998 bytes
constexpr unsigned VOLUME_NAME_UNITS = 256;
constexpr unsigned FILE_NAME_UNITS = 256;
constexpr unsigned ACTION_OBJECT_UNITS = 16;
constexpr unsigned HISTOGRAM_LEVELS = 21;

// Block quota value meaning "no quota".
constexpr uint64_t NO_BLOCK_QUOTA = 0x7ffffffffffffull;
constexpr uint64_t ENCRYPTION_AES128 = 256;
constexpr uint64_t ENCRYPTION_AES256 = 259;

} // namespace VerifyFormat

#pragma pack(push, 1)

// The 96-byte header in front of every section. Bytes 8-19 and 32-95 are the
// producer's; they are kept byte for byte and never interpreted.
struct VerifyFileSection {
    uint64_t magic;
    unsigned char reserved8[12];
    uint32_t size; // header plus payload
    char type[8];
    unsigned char reserved32[64];

    // Fills the header from the file; 0, 20100 at end of file, 21756 for a
    // bad magic, or an errno status.
    unsigned ReadSectionHeader(FILE* file, std::ostream& out);
    uint64_t TypeTag() const;
};

struct LevelInformation_s {
    uint32_t blocks;
    uint32_t records;
    uint32_t objects;
};

struct CommonBlockStats_s {
    uint64_t reserved0;
    char name[VerifyFormat::NARROW_TEXT_SIZE];
    uint64_t blockCount;
    uint64_t blockCountPass2;
    uint64_t badBlockValue;
    uint64_t badBlockValuePass2;
    uint64_t crossLinkedBlocks;
    uint64_t incorrectMagic;
    uint64_t incorrectRecordCount;
    uint64_t incorrectChecksum;
    uint64_t readErrors;
    uint64_t miscellaneousErrors;
    uint64_t invalidBlocks;
    uint64_t reserved128;
    uint64_t invalidNextLeaf;
    uint32_t levelCurrent;
    uint32_t levelMaximum;
    uint32_t levelLimit;
    LevelInformation_s levels[VerifyFormat::HISTOGRAM_LEVELS];
    LevelInformation_s branches;
    LevelInformation_s leaves;
};

struct VDBStats_s {
    CommonBlockStats_s blocks;
    unsigned char reserved432[16];
    uint64_t blockQuota;
    uint64_t blocksInUse;
    uint64_t numberOfFiles;
    uint64_t numberOfObjects;
    uint64_t nextAvailableId;
    uint64_t purgeableBlocks;
    uint64_t reserved496;
    uint64_t encryptionAlgorithm;
};

struct BTStats_s {
    uint64_t reserved0;
    CommonBlockStats_s objectTree;
    CommonBlockStats_s specialTree;
    CommonBlockStats_s dataBlocks;
    uint64_t reserved1304;
    uint64_t salvageableObjects;
    uint64_t salvageableBlocks;
    uint64_t dataStreamObjects;
    uint64_t systemObjects;
    uint64_t fileObjects;
    uint64_t directoryObjects;
    uint64_t orphanedObjects;
    uint64_t missingParentsInNT;
    uint64_t reserved1376;
    uint64_t lostDataBlocks;
    uint64_t filesWithLostData;
    uint64_t missingNameEntries;
    uint64_t missingSalvageEntries;
    uint64_t namedObjects;
    uint64_t extraNameEntries;
    uint64_t objectsRequiringNoNames;
    uint64_t sysObjectsNameEntries;
    uint64_t unreadableObjects;
    uint64_t greatestObjectId;
    uint64_t duplicateIdsA;
    uint64_t duplicateIdsB;
    uint64_t reserved1480;
    uint64_t idRangeErrorsA;
    uint64_t idRangeErrorsB;
    uint64_t reserved1504;
    uint64_t btiEntries;
    uint64_t missingBtiEntries;
};

struct NTStats_s {
    uint64_t reserved0;
    CommonBlockStats_s nameTree;
    uint64_t fileNames;
    uint64_t directoryNames;
    uint64_t overflowNodesA;
    uint64_t overflowNodesB;
    uint64_t objectsWithDuplicateNames;
    uint64_t totalDuplicateNames;
    uint64_t nameEntriesWithoutObjects;
    uint64_t reserved496;
};

struct UBTStats_s {
    CommonBlockStats_s blocks;
    unsigned char reserved432[16];
};

struct DBTStats_s {
    CommonBlockStats_s blocks;
};

struct MFLStats_s {
    CommonBlockStats_s blocks;
    uint64_t reserved432;
};

struct EFLStats_s {
    CommonBlockStats_s blocks;
    CommonBlockStats_s blocks2;
};

struct PLStats_s {
    CommonBlockStats_s blocks;
};

struct BTIStats_s {
    CommonBlockStats_s blocks;
    uint64_t invalidBtiEntries;
};

struct ZVP_Status_s {
    uint64_t statusValid;
    unsigned char poolName[2 * VerifyFormat::STATUS_POOL_NAME_UNITS];
    uint32_t blockSize;
    uint64_t totalBlocks;
    unsigned char reserved148[162];
    uint64_t userKey;
    uint64_t unaccountedBlocks;
    uint64_t crossLinkedBlocks;
    uint64_t invalidBlocks;
    uint32_t verifyStartTime;
    unsigned char reserved346[16];
    uint64_t blocksVerified;
    uint64_t blocksReverified;
    uint64_t finalStatusValid;
    int32_t completionCode;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
    char sourceCaller[VerifyFormat::NARROW_TEXT_SIZE];
    uint64_t abortedByUser;
    uint32_t verifyEndTime;
    unsigned char reserved466[4];
};

struct ZVP_LVStats_s {
    unsigned char volumeName[2 * VerifyFormat::VOLUME_NAME_UNITS];
    uint64_t errors;
    uint64_t warnings;
    uint64_t deleted;
    uint64_t purging;
    uint32_t deletionTime;
    GUID_t volumeId;
    uint64_t locator;
    VDBStats_s vdb;
    BTStats_s bt;
    NTStats_s nt;
    UBTStats_s ubt;
    DBTStats_s dbt;
    MFLStats_s mfl;
    EFLStats_s efl;
    PLStats_s pl;
    BTIStats_s bti;
};

struct ZVP_PoolStats_s {
    unsigned char reserved0[16];
    unsigned char poolName[2 * VerifyFormat::POOL_NAME_AREA_UNITS];
    uint64_t errors;
    uint64_t warnings;
    uint64_t totalBlocks;
    uint64_t usedByPool;
    uint64_t unaccountedBlocks;
    uint64_t crossLinkedBlocks;
    uint64_t salvageableObjects;
    uint64_t salvageableBlocks;
    uint64_t reserved1078;
    uint64_t crossValidation;
    unsigned char reserved1094[32];
    uint64_t lvsNotVerified;
    uint64_t highestLsn;
    uint64_t lowestLsn;
    CommonBlockStats_s poolBlocks1;
    CommonBlockStats_s poolBlocks2;
    CommonBlockStats_s poolBlocks3;
    CommonBlockStats_s poolBlocks4;
    CommonBlockStats_s poolBlocks5;
    uint64_t systemTotalBlocks;
    uint64_t systemBlocksInUse;
    uint64_t purgeableBlocks;
    uint64_t nonPurgeableBlocks;
    uint64_t reserved3342;
    CommonBlockStats_s salvageTree;
    uint64_t salvageParentsWithoutIds;
    uint64_t salvageParentsWithoutNames;
    uint64_t salvageEntriesWithoutIds;
    uint64_t salvageEntriesWithoutNames;
    CommonBlockStats_s poolBlocks6;
    CommonBlockStats_s poolBlocks7;
    CommonBlockStats_s freeBlocks;
    VDBStats_s vdb;
    BTStats_s bt;
    NTStats_s nt;
    UBTStats_s ubt;
    DBTStats_s dbt;
    MFLStats_s mfl;
    EFLStats_s efl;
    PLStats_s pl;
    unsigned char reserved10270[432];
    BTIStats_s bti;
    unsigned char reserved11142[16];
};

// List records.

struct RAV_Action_s {
    uint64_t key;
    uint32_t startSeconds;
    uint32_t endSeconds;
    uint64_t start;
    uint64_t end;
    uint16_t isPool;
    unsigned char object[2 * VerifyFormat::ACTION_OBJECT_UNITS];
    char subObject[VerifyFormat::NARROW_TEXT_SIZE];
    char action[VerifyFormat::ACTION_TEXT_SIZE];
};

struct BlockConflicts_s {
    uint64_t block;
    uint64_t object1;
    uint64_t volume1;
    uint64_t object2;
    uint64_t volume2;
};

struct LVSkipped_s {
    unsigned char volumeName[2 * VerifyFormat::VOLUME_NAME_UNITS];
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

// Variable-data records.

struct CBSV_NextLeafInvalidList_s {
    uint64_t expectedBlock;
    uint64_t actualBlock;
};

struct CBSV_InvalidBlockList_s {
    uint64_t block;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct BTDS_BranchOutOfRangeZids_s {
    uint64_t zid;
};

struct BTDS_UnreadableZid_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct BTDS_BTZnotInNT_s {
    uint64_t parentZid;
    uint64_t childZid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct BTDS_BTZnotInPT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct BTDS_DuplicateZidsB_s {
    uint64_t zid;
    uint64_t block;
};

struct BTDS_DuplicateZidsL_s {
    uint64_t zid;
    uint64_t block;
};

struct BTDS_OutOfRangeZids_s {
    uint64_t zid;
};

struct BTDS_BTBadNTFiles_s {
    uint64_t actualZid;
    uint64_t expectedZid;
    uint64_t parentZid;
    unsigned char fileName[2 * VerifyFormat::FILE_NAME_UNITS];
};

struct BTDS_missingBeastParentEnts_s {
    uint64_t parentZid;
    uint64_t childZid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct NTDS_NTZnotInBT_s {
    uint64_t zid;
    uint64_t parentZid;
    uint16_t nameType;
    uint32_t nameSpaceMask;
    unsigned char fileName[2 * VerifyFormat::FILE_NAME_UNITS];
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct STDS_STZnotInBT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct STDS_STZnotInNT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct STDS_STPZnotInBT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct STDS_STPZnotInNT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};

struct STDS_unaccBlks_s {
    uint64_t startBlock;
    uint64_t endBlock;
};

#pragma pack(pop)

// The section header's fields, where the format's byte tables put them.
static_assert(offsetof(VerifyFileSection, magic) == 0, "VerifyFileSection::magic offset");
static_assert(offsetof(VerifyFileSection, reserved8) == 8, "VerifyFileSection::reserved8 offset");
static_assert(offsetof(VerifyFileSection, size) == 20, "VerifyFileSection::size offset");
static_assert(offsetof(VerifyFileSection, type) == 24, "VerifyFileSection::type offset");
static_assert(offsetof(VerifyFileSection, reserved32) == 32, "VerifyFileSection::reserved32 offset");

// Sizes, as the format's byte tables give them.
static_assert(sizeof(VerifyFileSection) == 96, "VerifyFileSection size");
static_assert(sizeof(LevelInformation_s) == 12, "LevelInformation_s size");
static_assert(sizeof(CommonBlockStats_s) == 432, "CommonBlockStats_s size");
static_assert(sizeof(VDBStats_s) == 512, "VDBStats_s size");
static_assert(sizeof(BTStats_s) == 1528, "BTStats_s size");
static_assert(sizeof(NTStats_s) == 504, "NTStats_s size");
static_assert(sizeof(UBTStats_s) == 448, "UBTStats_s size");
static_assert(sizeof(DBTStats_s) == 432, "DBTStats_s size");
static_assert(sizeof(MFLStats_s) == 440, "MFLStats_s size");
static_assert(sizeof(EFLStats_s) == 864, "EFLStats_s size");
static_assert(sizeof(PLStats_s) == 432, "PLStats_s size");
static_assert(sizeof(BTIStats_s) == 440, "BTIStats_s size");
static_assert(sizeof(ZVP_Status_s) == 470, "ZVP_Status_s size");
static_assert(sizeof(ZVP_LVStats_s) == 6172, "ZVP_LVStats_s size");
static_assert(sizeof(ZVP_PoolStats_s) == 11158, "ZVP_PoolStats_s size");
static_assert(sizeof(RAV_Action_s) == 162, "RAV_Action_s size");
static_assert(sizeof(BlockConflicts_s) == 40, "BlockConflicts_s size");
static_assert(sizeof(LVSkipped_s) == 548, "LVSkipped_s size");
static_assert(sizeof(CBSV_NextLeafInvalidList_s) == 16, "CBSV_NextLeafInvalidList_s size");
static_assert(sizeof(CBSV_InvalidBlockList_s) == 44, "CBSV_InvalidBlockList_s size");
static_assert(sizeof(BTDS_BranchOutOfRangeZids_s) == 8, "BTDS_BranchOutOfRangeZids_s size");
static_assert(sizeof(BTDS_UnreadableZid_s) == 44, "BTDS_UnreadableZid_s size");
static_assert(sizeof(BTDS_BTZnotInNT_s) == 52, "BTDS_BTZnotInNT_s size");
static_assert(sizeof(BTDS_BTZnotInPT_s) == 44, "BTDS_BTZnotInPT_s size");
static_assert(sizeof(BTDS_DuplicateZidsB_s) == 16, "BTDS_DuplicateZidsB_s size");
static_assert(sizeof(BTDS_DuplicateZidsL_s) == 16, "BTDS_DuplicateZidsL_s size");
static_assert(sizeof(BTDS_OutOfRangeZids_s) == 8, "BTDS_OutOfRangeZids_s size");
static_assert(sizeof(BTDS_BTBadNTFiles_s) == 536, "BTDS_BTBadNTFiles_s size");
static_assert(sizeof(BTDS_missingBeastParentEnts_s) == 52, "BTDS_missingBeastParentEnts_s size");
static_assert(sizeof(NTDS_NTZnotInBT_s) == 570, "NTDS_NTZnotInBT_s size");
static_assert(sizeof(STDS_STZnotInBT_s) == 44, "STDS_STZnotInBT_s size");
static_assert(sizeof(STDS_STZnotInNT_s) == 44, "STDS_STZnotInNT_s size");
static_assert(sizeof(STDS_STPZnotInBT_s) == 44, "STDS_STPZnotInBT_s size");
static_assert(sizeof(STDS_STPZnotInNT_s) == 44, "STDS_STPZnotInNT_s size");
static_assert(sizeof(STDS_unaccBlks_s) == 16, "STDS_unaccBlks_s size");

// ---------------------------------------------------------------- the registry

namespace VerifyFormat {

using RecordTables::Cell;
using RecordTables::Column;
using RecordTables::ColumnTable;
using RecordTables::Field;
using RecordTables::FieldTable;
using RecordTables::Kind;

// A field of the table's Record: its name as text, the offset the format's
// byte tables give it, and where and how large the record has it. A macro,
// as only the preprocessor turns a member's name into both its text and the
// member itself (offsetof, sizeof).
#define VF_FIELD(member, offset, ...)                                                           \
    Field { #member, offset, offsetof(Record, member), sizeof(Record::member), __VA_ARGS__ }

// The text columns the lists share: heading title, its width and gap, rule
// width and gap, then the row cell, the field it shows, its width, and a
// unit mark ("z" a ZID, "k" a block, "vz" a volume locator) or blanks after
// it. Heading and row widths differ where the report has them differ.
namespace Columns {

inline constexpr Column ZID_COLUMNS[] = {{"Zid", 16, 3, 17, 2, Cell::Hex, "zid", 17, "z", 2}};
inline constexpr ColumnTable ZID{ZID_COLUMNS, std::size(ZID_COLUMNS), true};

// The block in decimal here, unlike every other block column.
inline constexpr Column ZID_BLOCK_COLUMNS[] = {{"Zid", 16, 3, 17, 2, Cell::Hex, "zid", 17, "z", 2},
                                        {"Block", 8, 3, 9, 2, Cell::Unsigned, "block", 9, "k", 2}};
inline constexpr ColumnTable ZID_BLOCK{ZID_BLOCK_COLUMNS, std::size(ZID_BLOCK_COLUMNS), true};

inline constexpr Column START_END_BLOCK_COLUMNS[] = {
    {"Start", 8, 3, 9, 2, Cell::Hex, "startBlock", 8, "k", 3},
    {"End", 8, 3, 9, 2, Cell::Hex, "endBlock", 8, "k", 3}};
inline constexpr ColumnTable START_END_BLOCK{START_END_BLOCK_COLUMNS, std::size(START_END_BLOCK_COLUMNS),
                                      true};

inline constexpr Column EXPECTED_ACTUAL_BLOCK_COLUMNS[] = {
    {"Expected block", 16, 3, 17, 2, Cell::Hex, "expectedBlock", 16, "k", 3},
    {"Actual block", 16, 0, 17, 0, Cell::Hex, "actualBlock", 16, "k", 3}};
inline constexpr ColumnTable EXPECTED_ACTUAL_BLOCK{EXPECTED_ACTUAL_BLOCK_COLUMNS,
                                            std::size(EXPECTED_ACTUAL_BLOCK_COLUMNS), true};

inline constexpr Column ZID_STATUS_COLUMNS[] = {
    {"Zid", 16, 3, 17, 2, Cell::Hex, "zid", 17, "z", 2},
    {"Status", 6, 3, 6, 3, Cell::Signed, "status", 6, nullptr, 3},
    {"Source", 32, 3, 32, 3, Cell::Text, "sourceSetter", 32, nullptr, 3}};
inline constexpr ColumnTable ZID_STATUS{ZID_STATUS_COLUMNS, std::size(ZID_STATUS_COLUMNS), true};

inline constexpr Column BLOCK_STATUS_COLUMNS[] = {
    {"Block", 16, 3, 17, 2, Cell::Hex, "block", 16, "k", 3},
    {"Status", 8, 3, 8, 3, Cell::Signed, "status", 6, nullptr, 3},
    {"Source", 32, 3, 32, 3, Cell::Text, "sourceSetter", 32, nullptr, 3}};
inline constexpr ColumnTable BLOCK_STATUS{BLOCK_STATUS_COLUMNS, std::size(BLOCK_STATUS_COLUMNS), true};

inline constexpr Column PARENT_CHILD_STATUS_COLUMNS[] = {
    {"Parent", 16, 3, 17, 2, Cell::Hex, "parentZid", 17, "z", 2},
    {"Child", 16, 3, 17, 2, Cell::Hex, "childZid", 17, "z", 2},
    {"Status", 6, 3, 6, 3, Cell::Signed, "status", 6, nullptr, 3},
    {"Source", 32, 3, 32, 3, Cell::Text, "sourceSetter", 32, nullptr, 3}};
inline constexpr ColumnTable PARENT_CHILD_STATUS{PARENT_CHILD_STATUS_COLUMNS,
                                          std::size(PARENT_CHILD_STATUS_COLUMNS), true};

// "Expecteded" is the column's title.
inline constexpr Column ZID_ZID_ZID_FILE_NAME_COLUMNS[] = {
    {"Actual", 10, 3, 11, 2, Cell::Hex, "actualZid", 10, "z", 3},
    {"Expecteded", 10, 3, 11, 2, Cell::Hex, "expectedZid", 10, "z", 3},
    {"Parent", 10, 3, 11, 2, Cell::Hex, "parentZid", 10, "z", 3},
    {"File name", 38, 3, 38, 3, Cell::Wide, "fileName", 38, nullptr, 3}};
inline constexpr ColumnTable ZID_ZID_ZID_FILE_NAME{ZID_ZID_ZID_FILE_NAME_COLUMNS,
                                            std::size(ZID_ZID_ZID_FILE_NAME_COLUMNS), true};

inline constexpr Column NAME_TREE_ENTRY_COLUMNS[] = {
    {"Zid", 19, 2, 19, 2, Cell::Hex, "zid", 19, "z", 2},
    {"Parent Zid", 19, 2, 19, 2, Cell::Hex, "parentZid", 19, "z", 2},
    {"Type", 6, 3, 6, 3, Cell::NameType, "nameType", 6, nullptr, 3},
    {"Mask", 4, 3, 4, 3, Cell::Hex, "nameSpaceMask", 4, nullptr, 3},
    {"File name", 38, 3, 38, 3, Cell::Wide, "fileName", 38, nullptr, 3},
    {"Status", 6, 3, 6, 3, Cell::Signed, "status", 6, nullptr, 3},
    {"Source", 32, 3, 32, 3, Cell::Text, "sourceSetter", 32, nullptr, 3}};
inline constexpr ColumnTable NAME_TREE_ENTRY{NAME_TREE_ENTRY_COLUMNS, std::size(NAME_TREE_ENTRY_COLUMNS),
                                      true};

// A name, a status and its source, headed as a list of its own would be.
inline constexpr Column NAME_STATUS_COLUMNS[] = {
    {"Name", 32, 3, 32, 3, Cell::Wide, "volumeName", 32, nullptr, 3},
    {"Status", 8, 3, 8, 3, Cell::Signed, "status", 6, nullptr, 3},
    {"Source", 32, 3, 32, 3, Cell::Text, "sourceSetter", 32, nullptr, 3}};
inline constexpr ColumnTable NAME_STATUS{NAME_STATUS_COLUMNS, std::size(NAME_STATUS_COLUMNS), true};

// The skipped-volume list heads only its first column; its rows end their
// own line, and the list adds another.
inline constexpr Column SKIPPED_VOLUME_COLUMNS[] = {
    {"Logical Volumes Skipped", 32, 0, 32, 0, Cell::Wide, "volumeName", 32, nullptr, 3},
    {nullptr, 0, 0, 0, 0, Cell::Signed, "status", 6, nullptr, 3},
    {nullptr, 0, 0, 0, 0, Cell::Text, "sourceSetter", 32, nullptr, 3}};
inline constexpr ColumnTable SKIPPED_VOLUME{SKIPPED_VOLUME_COLUMNS, std::size(SKIPPED_VOLUME_COLUMNS),
                                     true};

// Seconds are taken in 32 bits: an end before the start wraps.
inline constexpr Column ACTION_COLUMNS[] = {
    {"Object", 16, 2, 16, 2, Cell::WideRight, "object", 16, nullptr, 2},
    {"Pool", 4, 2, 4, 2, Cell::YesNo, "isPool", 4, nullptr, 2},
    {"Start", 11, 2, 11, 2, Cell::Hex, "start", 10, "k", 3},
    {"End", 11, 2, 11, 2, Cell::Hex, "end", 10, "k", 3},
    {"Seconds", 7, 2, 7, 2, Cell::Seconds, "startSeconds", 7, nullptr, 2, "endSeconds"},
    {"Sub-object", 22, 2, 22, 2, Cell::TextRight, "subObject", 22, nullptr, 2},
    {"Action", 32, 2, 32, 2, Cell::Text, "action", 32, nullptr, 2},
    {"Key", 4, 0, 4, 0, Cell::Unsigned, "key", 4, nullptr, 0}};
inline constexpr ColumnTable ACTION{ACTION_COLUMNS, std::size(ACTION_COLUMNS), false};

inline constexpr Column CONFLICT_COLUMNS[] = {
    {"Block", 8, 3, 9, 2, Cell::Hex, "block", 8, "k", 3},
    {"Object 1", 18, 3, 19, 2, Cell::Hex, "object1", 18, "z", 3},
    {"Volume 1", 8, 4, 10, 2, Cell::Hex, "volume1", 8, "vz", 4},
    {"Object 2", 18, 3, 19, 2, Cell::Hex, "object2", 18, "z", 3},
    {"Volume 2", 8, 4, 10, 2, Cell::Hex, "volume2", 8, "vz", 4}};
inline constexpr ColumnTable CONFLICT{CONFLICT_COLUMNS, std::size(CONFLICT_COLUMNS), false};

} // namespace Columns

// Each record's row of the registry: its fields, and where it has them, its
// section's tag, and for a list the title and text columns. The fixed records
// and the held lists name their section in the JSON documents (SECTION); a
// variable-data list names its kind (KIND).
template <typename R> struct Layout;

template <> struct Layout<LevelInformation_s> {
    using Record = LevelInformation_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Quantity),
        VF_FIELD(records, 4, Kind::Quantity),
        VF_FIELD(objects, 8, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"LevelInformation_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<CommonBlockStats_s> {
    using Record = CommonBlockStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(reserved0, 0, Kind::Reserved),
        VF_FIELD(name, 8, Kind::Narrow),
        VF_FIELD(blockCount, 40, Kind::Quantity),
        VF_FIELD(blockCountPass2, 48, Kind::Quantity),
        VF_FIELD(badBlockValue, 56, Kind::Quantity),
        VF_FIELD(badBlockValuePass2, 64, Kind::Quantity),
        VF_FIELD(crossLinkedBlocks, 72, Kind::Quantity),
        VF_FIELD(incorrectMagic, 80, Kind::Quantity),
        VF_FIELD(incorrectRecordCount, 88, Kind::Quantity),
        VF_FIELD(incorrectChecksum, 96, Kind::Quantity),
        VF_FIELD(readErrors, 104, Kind::Quantity),
        VF_FIELD(miscellaneousErrors, 112, Kind::Quantity),
        VF_FIELD(invalidBlocks, 120, Kind::Quantity),
        VF_FIELD(reserved128, 128, Kind::Reserved),
        VF_FIELD(invalidNextLeaf, 136, Kind::Quantity),
        VF_FIELD(levelCurrent, 144, Kind::Quantity),
        VF_FIELD(levelMaximum, 148, Kind::Quantity),
        VF_FIELD(levelLimit, 152, Kind::Quantity),
        VF_FIELD(levels, 156, Kind::Levels, &Layout<LevelInformation_s>::TABLE),
        VF_FIELD(branches, 408, Kind::Nested, &Layout<LevelInformation_s>::TABLE),
        VF_FIELD(leaves, 420, Kind::Nested, &Layout<LevelInformation_s>::TABLE),
    };
    static constexpr FieldTable TABLE{"CommonBlockStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<VDBStats_s> {
    using Record = VDBStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(reserved432, 432, Kind::Reserved),
        VF_FIELD(blockQuota, 448, Kind::Quantity),
        VF_FIELD(blocksInUse, 456, Kind::Quantity),
        VF_FIELD(numberOfFiles, 464, Kind::Quantity),
        VF_FIELD(numberOfObjects, 472, Kind::Quantity),
        VF_FIELD(nextAvailableId, 480, Kind::Id),
        VF_FIELD(purgeableBlocks, 488, Kind::Quantity),
        VF_FIELD(reserved496, 496, Kind::Reserved),
        VF_FIELD(encryptionAlgorithm, 504, Kind::Encryption),
    };
    static constexpr FieldTable TABLE{"VDBStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<BTStats_s> {
    using Record = BTStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(reserved0, 0, Kind::Reserved),
        VF_FIELD(objectTree, 8, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(specialTree, 440, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(dataBlocks, 872, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(reserved1304, 1304, Kind::Reserved),
        VF_FIELD(salvageableObjects, 1312, Kind::Quantity),
        VF_FIELD(salvageableBlocks, 1320, Kind::Quantity),
        VF_FIELD(dataStreamObjects, 1328, Kind::Quantity),
        VF_FIELD(systemObjects, 1336, Kind::Quantity),
        VF_FIELD(fileObjects, 1344, Kind::Quantity),
        VF_FIELD(directoryObjects, 1352, Kind::Quantity),
        VF_FIELD(orphanedObjects, 1360, Kind::Quantity),
        VF_FIELD(missingParentsInNT, 1368, Kind::Quantity),
        VF_FIELD(reserved1376, 1376, Kind::Reserved),
        VF_FIELD(lostDataBlocks, 1384, Kind::Quantity),
        VF_FIELD(filesWithLostData, 1392, Kind::Quantity),
        VF_FIELD(missingNameEntries, 1400, Kind::Quantity),
        VF_FIELD(missingSalvageEntries, 1408, Kind::Quantity),
        VF_FIELD(namedObjects, 1416, Kind::Quantity),
        VF_FIELD(extraNameEntries, 1424, Kind::Quantity),
        VF_FIELD(objectsRequiringNoNames, 1432, Kind::Quantity),
        VF_FIELD(sysObjectsNameEntries, 1440, Kind::Quantity),
        VF_FIELD(unreadableObjects, 1448, Kind::Quantity),
        VF_FIELD(greatestObjectId, 1456, Kind::Id),
        VF_FIELD(duplicateIdsA, 1464, Kind::Quantity),
        VF_FIELD(duplicateIdsB, 1472, Kind::Quantity),
        VF_FIELD(reserved1480, 1480, Kind::Reserved),
        VF_FIELD(idRangeErrorsA, 1488, Kind::Quantity),
        VF_FIELD(idRangeErrorsB, 1496, Kind::Quantity),
        VF_FIELD(reserved1504, 1504, Kind::Reserved),
        VF_FIELD(btiEntries, 1512, Kind::Quantity),
        VF_FIELD(missingBtiEntries, 1520, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"BTStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<NTStats_s> {
    using Record = NTStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(reserved0, 0, Kind::Reserved),
        VF_FIELD(nameTree, 8, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(fileNames, 440, Kind::Quantity),
        VF_FIELD(directoryNames, 448, Kind::Quantity),
        VF_FIELD(overflowNodesA, 456, Kind::Quantity),
        VF_FIELD(overflowNodesB, 464, Kind::Quantity),
        VF_FIELD(objectsWithDuplicateNames, 472, Kind::Quantity),
        VF_FIELD(totalDuplicateNames, 480, Kind::Quantity),
        VF_FIELD(nameEntriesWithoutObjects, 488, Kind::Quantity),
        VF_FIELD(reserved496, 496, Kind::Reserved),
    };
    static constexpr FieldTable TABLE{"NTStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<UBTStats_s> {
    using Record = UBTStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(reserved432, 432, Kind::Reserved),
    };
    static constexpr FieldTable TABLE{"UBTStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<DBTStats_s> {
    using Record = DBTStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
    };
    static constexpr FieldTable TABLE{"DBTStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<MFLStats_s> {
    using Record = MFLStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(reserved432, 432, Kind::Reserved),
    };
    static constexpr FieldTable TABLE{"MFLStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<EFLStats_s> {
    using Record = EFLStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(blocks2, 432, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
    };
    static constexpr FieldTable TABLE{"EFLStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<PLStats_s> {
    using Record = PLStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
    };
    static constexpr FieldTable TABLE{"PLStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<BTIStats_s> {
    using Record = BTIStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(blocks, 0, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(invalidBtiEntries, 432, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"BTIStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
};

template <> struct Layout<ZVP_Status_s> {
    using Record = ZVP_Status_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(statusValid, 0, Kind::Quantity),
        VF_FIELD(poolName, 8, Kind::Wide),
        VF_FIELD(blockSize, 136, Kind::Quantity),
        VF_FIELD(totalBlocks, 140, Kind::Quantity),
        VF_FIELD(reserved148, 148, Kind::Reserved),
        VF_FIELD(userKey, 310, Kind::Key),
        VF_FIELD(unaccountedBlocks, 318, Kind::Quantity),
        VF_FIELD(crossLinkedBlocks, 326, Kind::Quantity),
        VF_FIELD(invalidBlocks, 334, Kind::Quantity),
        VF_FIELD(verifyStartTime, 342, Kind::Time),
        VF_FIELD(reserved346, 346, Kind::Reserved),
        VF_FIELD(blocksVerified, 362, Kind::Quantity),
        VF_FIELD(blocksReverified, 370, Kind::Quantity),
        VF_FIELD(finalStatusValid, 378, Kind::Quantity),
        VF_FIELD(completionCode, 386, Kind::Status),
        VF_FIELD(sourceSetter, 390, Kind::Narrow),
        VF_FIELD(sourceCaller, 422, Kind::Narrow),
        VF_FIELD(abortedByUser, 454, Kind::Quantity),
        VF_FIELD(verifyEndTime, 462, Kind::Time),
        VF_FIELD(reserved466, 466, Kind::Reserved),
    };
    static constexpr FieldTable TABLE{"ZVP_Status_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVerO");
    static constexpr char SECTION[] = "status_summary";
};

template <> struct Layout<ZVP_LVStats_s> {
    using Record = ZVP_LVStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(volumeName, 0, Kind::Wide),
        VF_FIELD(errors, 512, Kind::ErrorWord),
        VF_FIELD(warnings, 520, Kind::WarningWord),
        VF_FIELD(deleted, 528, Kind::Quantity),
        VF_FIELD(purging, 536, Kind::Quantity),
        VF_FIELD(deletionTime, 544, Kind::Time),
        VF_FIELD(volumeId, 548, Kind::Guid),
        VF_FIELD(locator, 564, Kind::Id),
        VF_FIELD(vdb, 572, Kind::Nested, &Layout<VDBStats_s>::TABLE),
        VF_FIELD(bt, 1084, Kind::Nested, &Layout<BTStats_s>::TABLE),
        VF_FIELD(nt, 2612, Kind::Nested, &Layout<NTStats_s>::TABLE),
        VF_FIELD(ubt, 3116, Kind::Nested, &Layout<UBTStats_s>::TABLE),
        VF_FIELD(dbt, 3564, Kind::Nested, &Layout<DBTStats_s>::TABLE),
        VF_FIELD(mfl, 3996, Kind::Nested, &Layout<MFLStats_s>::TABLE),
        VF_FIELD(efl, 4436, Kind::Nested, &Layout<EFLStats_s>::TABLE),
        VF_FIELD(pl, 5300, Kind::Nested, &Layout<PLStats_s>::TABLE),
        VF_FIELD(bti, 5732, Kind::Nested, &Layout<BTIStats_s>::TABLE),
    };
    static constexpr FieldTable TABLE{"ZVP_LVStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVerV");
    static constexpr char SECTION[] = "volume";
};

template <> struct Layout<ZVP_PoolStats_s> {
    using Record = ZVP_PoolStats_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(reserved0, 0, Kind::Reserved),
        VF_FIELD(poolName, 16, Kind::Wide),
        VF_FIELD(errors, 1014, Kind::ErrorWord),
        VF_FIELD(warnings, 1022, Kind::WarningWord),
        VF_FIELD(totalBlocks, 1030, Kind::Quantity),
        VF_FIELD(usedByPool, 1038, Kind::Quantity),
        VF_FIELD(unaccountedBlocks, 1046, Kind::Quantity),
        VF_FIELD(crossLinkedBlocks, 1054, Kind::Quantity),
        VF_FIELD(salvageableObjects, 1062, Kind::Quantity),
        VF_FIELD(salvageableBlocks, 1070, Kind::Quantity),
        VF_FIELD(reserved1078, 1078, Kind::Reserved),
        VF_FIELD(crossValidation, 1086, Kind::Quantity),
        VF_FIELD(reserved1094, 1094, Kind::Reserved),
        VF_FIELD(lvsNotVerified, 1126, Kind::Quantity),
        VF_FIELD(highestLsn, 1134, Kind::Id),
        VF_FIELD(lowestLsn, 1142, Kind::Id),
        VF_FIELD(poolBlocks1, 1150, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(poolBlocks2, 1582, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(poolBlocks3, 2014, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(poolBlocks4, 2446, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(poolBlocks5, 2878, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(systemTotalBlocks, 3310, Kind::Quantity),
        VF_FIELD(systemBlocksInUse, 3318, Kind::Quantity),
        VF_FIELD(purgeableBlocks, 3326, Kind::Quantity),
        VF_FIELD(nonPurgeableBlocks, 3334, Kind::Quantity),
        VF_FIELD(reserved3342, 3342, Kind::Reserved),
        VF_FIELD(salvageTree, 3350, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(salvageParentsWithoutIds, 3782, Kind::Quantity),
        VF_FIELD(salvageParentsWithoutNames, 3790, Kind::Quantity),
        VF_FIELD(salvageEntriesWithoutIds, 3798, Kind::Quantity),
        VF_FIELD(salvageEntriesWithoutNames, 3806, Kind::Quantity),
        VF_FIELD(poolBlocks6, 3814, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(poolBlocks7, 4246, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(freeBlocks, 4678, Kind::Nested, &Layout<CommonBlockStats_s>::TABLE),
        VF_FIELD(vdb, 5110, Kind::Nested, &Layout<VDBStats_s>::TABLE),
        VF_FIELD(bt, 5622, Kind::Nested, &Layout<BTStats_s>::TABLE),
        VF_FIELD(nt, 7150, Kind::Nested, &Layout<NTStats_s>::TABLE),
        VF_FIELD(ubt, 7654, Kind::Nested, &Layout<UBTStats_s>::TABLE),
        VF_FIELD(dbt, 8102, Kind::Nested, &Layout<DBTStats_s>::TABLE),
        VF_FIELD(mfl, 8534, Kind::Nested, &Layout<MFLStats_s>::TABLE),
        VF_FIELD(efl, 8974, Kind::Nested, &Layout<EFLStats_s>::TABLE),
        VF_FIELD(pl, 9838, Kind::Nested, &Layout<PLStats_s>::TABLE),
        VF_FIELD(reserved10270, 10270, Kind::Reserved),
        VF_FIELD(bti, 10702, Kind::Nested, &Layout<BTIStats_s>::TABLE),
        VF_FIELD(reserved11142, 11142, Kind::Reserved),
    };
    static constexpr FieldTable TABLE{"ZVP_PoolStats_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVerP");
    static constexpr char SECTION[] = "pool";
};

template <> struct Layout<RAV_Action_s> {
    using Record = RAV_Action_s;
    // The report gives an action's start and end as counts of seconds, with no
    // epoch stated (only their difference is shown as text): numbers, not times.
    static constexpr Field FIELDS[] = {
        VF_FIELD(key, 0, Kind::Key),
        VF_FIELD(startSeconds, 8, Kind::Quantity),
        VF_FIELD(endSeconds, 12, Kind::Quantity),
        VF_FIELD(start, 16, Kind::Quantity),
        VF_FIELD(end, 24, Kind::Quantity),
        VF_FIELD(isPool, 32, Kind::Quantity),
        VF_FIELD(object, 34, Kind::Wide),
        VF_FIELD(subObject, 66, Kind::Narrow),
        VF_FIELD(action, 98, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"RAV_Action_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVeVE");
    static constexpr char TITLE[] = "  Action list.";
    static constexpr char SECTION[] = "actions";
    static constexpr ColumnTable COLUMNS = Columns::ACTION;
};

template <> struct Layout<BlockConflicts_s> {
    using Record = BlockConflicts_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(block, 0, Kind::Quantity),
        VF_FIELD(object1, 8, Kind::Id),
        VF_FIELD(volume1, 16, Kind::Id),
        VF_FIELD(object2, 24, Kind::Id),
        VF_FIELD(volume2, 32, Kind::Id),
    };
    static constexpr FieldTable TABLE{"BlockConflicts_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVeVC");
    static constexpr char TITLE[] = "  Cross-linked block information.";
    static constexpr char SECTION[] = "conflicts";
    static constexpr ColumnTable COLUMNS = Columns::CONFLICT;
};

template <> struct Layout<LVSkipped_s> {
    using Record = LVSkipped_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(volumeName, 0, Kind::Wide),
        VF_FIELD(status, 512, Kind::Status),
        VF_FIELD(sourceSetter, 516, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"LVSkipped_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVeVD");
    static constexpr char TITLE[] = "  Skipped logical volume information.";
    static constexpr char SECTION[] = "skipped_volumes";
    static constexpr ColumnTable COLUMNS = Columns::SKIPPED_VOLUME;
};

template <> struct Layout<CBSV_NextLeafInvalidList_s> {
    using Record = CBSV_NextLeafInvalidList_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(expectedBlock, 0, Kind::Quantity),
        VF_FIELD(actualBlock, 8, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"CBSV_NextLeafInvalidList_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVeVA");
    static constexpr char TITLE[] = "Invalid next leaf list";
    static constexpr char KIND[] = "next_leaf_invalid_list";
    static constexpr ColumnTable COLUMNS = Columns::EXPECTED_ACTUAL_BLOCK;
};

template <> struct Layout<CBSV_InvalidBlockList_s> {
    using Record = CBSV_InvalidBlockList_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(block, 0, Kind::Quantity),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"CBSV_InvalidBlockList_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVeVB");
    static constexpr char TITLE[] = "Invalid block list";
    static constexpr char KIND[] = "invalid_block_list";
    static constexpr ColumnTable COLUMNS = Columns::BLOCK_STATUS;
};

template <> struct Layout<BTDS_BranchOutOfRangeZids_s> {
    using Record = BTDS_BranchOutOfRangeZids_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
    };
    static constexpr FieldTable TABLE{"BTDS_BranchOutOfRangeZids_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVA");
    static constexpr char TITLE[] = "Out of range IDs in Object Tree branches";
    static constexpr char KIND[] = "branch_out_of_range_zids";
    static constexpr ColumnTable COLUMNS = Columns::ZID;
};

template <> struct Layout<BTDS_UnreadableZid_s> {
    using Record = BTDS_UnreadableZid_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"BTDS_UnreadableZid_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVB");
    static constexpr char TITLE[] = "Unreadable Zid list";
    static constexpr char KIND[] = "unreadable_zid";
    static constexpr ColumnTable COLUMNS = Columns::ZID_STATUS;
};

template <> struct Layout<BTDS_BTZnotInNT_s> {
    using Record = BTDS_BTZnotInNT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(parentZid, 0, Kind::Id),
        VF_FIELD(childZid, 8, Kind::Id),
        VF_FIELD(status, 16, Kind::Status),
        VF_FIELD(sourceSetter, 20, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"BTDS_BTZnotInNT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVC");
    static constexpr char TITLE[] = "Zid not found in name tree";
    static constexpr char KIND[] = "btz_not_in_nt";
    static constexpr ColumnTable COLUMNS = Columns::PARENT_CHILD_STATUS;
};

template <> struct Layout<BTDS_BTZnotInPT_s> {
    using Record = BTDS_BTZnotInPT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"BTDS_BTZnotInPT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVD");
    static constexpr char TITLE[] = "Zid not found in purge tree";
    static constexpr char KIND[] = "btz_not_in_pt";
    static constexpr ColumnTable COLUMNS = Columns::ZID_STATUS;
};

template <> struct Layout<BTDS_DuplicateZidsB_s> {
    using Record = BTDS_DuplicateZidsB_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(block, 8, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"BTDS_DuplicateZidsB_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVE");
    static constexpr char TITLE[] = "Duplicate zid in branch";
    static constexpr char KIND[] = "duplicate_zids_b";
    static constexpr ColumnTable COLUMNS = Columns::ZID_BLOCK;
};

template <> struct Layout<BTDS_DuplicateZidsL_s> {
    using Record = BTDS_DuplicateZidsL_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(block, 8, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"BTDS_DuplicateZidsL_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVF");
    static constexpr char TITLE[] = "Duplicate Zid in leaf";
    static constexpr char KIND[] = "duplicate_zids_l";
    static constexpr ColumnTable COLUMNS = Columns::ZID_BLOCK;
};

template <> struct Layout<BTDS_OutOfRangeZids_s> {
    using Record = BTDS_OutOfRangeZids_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
    };
    static constexpr FieldTable TABLE{"BTDS_OutOfRangeZids_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVG");
    static constexpr char TITLE[] = "Out of range IDs in Object Tree leaves";
    static constexpr char KIND[] = "out_of_range_zids";
    static constexpr ColumnTable COLUMNS = Columns::ZID;
};

template <> struct Layout<BTDS_BTBadNTFiles_s> {
    using Record = BTDS_BTBadNTFiles_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(actualZid, 0, Kind::Id),
        VF_FIELD(expectedZid, 8, Kind::Id),
        VF_FIELD(parentZid, 16, Kind::Id),
        VF_FIELD(fileName, 24, Kind::Wide),
    };
    static constexpr FieldTable TABLE{"BTDS_BTBadNTFiles_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVH");
    static constexpr char TITLE[] = "Missing name space and/or files with multiple IDs in Object Tree";
    static constexpr char KIND[] = "bt_bad_nt_files";
    static constexpr ColumnTable COLUMNS = Columns::ZID_ZID_ZID_FILE_NAME;
};

template <> struct Layout<BTDS_missingBeastParentEnts_s> {
    using Record = BTDS_missingBeastParentEnts_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(parentZid, 0, Kind::Id),
        VF_FIELD(childZid, 8, Kind::Id),
        VF_FIELD(status, 16, Kind::Status),
        VF_FIELD(sourceSetter, 20, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"BTDS_missingBeastParentEnts_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVI");
    static constexpr char TITLE[] = "Objects with missing parent";
    static constexpr char KIND[] = "missing_beast_parent_ents";
    static constexpr ColumnTable COLUMNS = Columns::PARENT_CHILD_STATUS;
};

template <> struct Layout<NTDS_NTZnotInBT_s> {
    using Record = NTDS_NTZnotInBT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(parentZid, 8, Kind::Id),
        VF_FIELD(nameType, 16, Kind::NameType),
        VF_FIELD(nameSpaceMask, 18, Kind::Quantity),
        VF_FIELD(fileName, 22, Kind::Wide),
        VF_FIELD(status, 534, Kind::Status),
        VF_FIELD(sourceSetter, 538, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"NTDS_NTZnotInBT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVJ");
    static constexpr char TITLE[] = "Name Tree entries with no named object in Object Tree";
    static constexpr char KIND[] = "ntz_not_in_bt";
    static constexpr ColumnTable COLUMNS = Columns::NAME_TREE_ENTRY;
};

template <> struct Layout<STDS_STZnotInBT_s> {
    using Record = STDS_STZnotInBT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"STDS_STZnotInBT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVK");
    static constexpr char TITLE[] = "Salvage Tree entries with no object";
    static constexpr char KIND[] = "stz_not_in_bt";
    static constexpr ColumnTable COLUMNS = Columns::ZID_STATUS;
};

template <> struct Layout<STDS_STZnotInNT_s> {
    using Record = STDS_STZnotInNT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"STDS_STZnotInNT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVL");
    static constexpr char TITLE[] = "Salvage Tree entries with no name";
    static constexpr char KIND[] = "stz_not_in_nt";
    static constexpr ColumnTable COLUMNS = Columns::ZID_STATUS;
};

template <> struct Layout<STDS_STPZnotInBT_s> {
    using Record = STDS_STPZnotInBT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"STDS_STPZnotInBT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVM");
    static constexpr char TITLE[] = "Salvage Tree entries with no parent object";
    static constexpr char KIND[] = "stpz_not_in_bt";
    static constexpr ColumnTable COLUMNS = Columns::ZID_STATUS;
};

template <> struct Layout<STDS_STPZnotInNT_s> {
    using Record = STDS_STPZnotInNT_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(zid, 0, Kind::Id),
        VF_FIELD(status, 8, Kind::Status),
        VF_FIELD(sourceSetter, 12, Kind::Narrow),
    };
    static constexpr FieldTable TABLE{"STDS_STPZnotInNT_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVN");
    static constexpr char TITLE[] = "Salvage Tree entries with no parent name";
    static constexpr char KIND[] = "stpz_not_in_nt";
    static constexpr ColumnTable COLUMNS = Columns::ZID_STATUS;
};

template <> struct Layout<STDS_unaccBlks_s> {
    using Record = STDS_unaccBlks_s;
    static constexpr Field FIELDS[] = {
        VF_FIELD(startBlock, 0, Kind::Quantity),
        VF_FIELD(endBlock, 8, Kind::Quantity),
    };
    static constexpr FieldTable TABLE{"STDS_unaccBlks_s", sizeof(Record), FIELDS, std::size(FIELDS)};
    static constexpr uint64_t TAG = Tag("QMfSVGVO");
    static constexpr char TITLE[] = "Unaccounted blocks regions";
    static constexpr char KIND[] = "unacc_blks";
    static constexpr ColumnTable COLUMNS = Columns::START_END_BLOCK;
};

#undef VF_FIELD

// Each table covers every byte of its record, each field where the byte
// tables put it (the lists' tables are checked with the list of lists).
static_assert(RecordTables::Covers(Layout<LevelInformation_s>::TABLE), "LevelInformation_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<CommonBlockStats_s>::TABLE), "CommonBlockStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<VDBStats_s>::TABLE), "VDBStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<BTStats_s>::TABLE), "BTStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<NTStats_s>::TABLE), "NTStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<UBTStats_s>::TABLE), "UBTStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<DBTStats_s>::TABLE), "DBTStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<MFLStats_s>::TABLE), "MFLStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<EFLStats_s>::TABLE), "EFLStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<PLStats_s>::TABLE), "PLStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<BTIStats_s>::TABLE), "BTIStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<ZVP_Status_s>::TABLE), "ZVP_Status_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<ZVP_LVStats_s>::TABLE), "ZVP_LVStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<ZVP_PoolStats_s>::TABLE), "ZVP_PoolStats_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<RAV_Action_s>::TABLE), "RAV_Action_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<BlockConflicts_s>::TABLE), "BlockConflicts_s: its table and its layout");
static_assert(RecordTables::Covers(Layout<LVSkipped_s>::TABLE), "LVSkipped_s: its table and its layout");

// The variable-data lists, in the order of their section tags.
template <typename... Records> struct RecordList {};
using VariableLists =
    RecordList<CBSV_NextLeafInvalidList_s, CBSV_InvalidBlockList_s, BTDS_BranchOutOfRangeZids_s,
               BTDS_UnreadableZid_s, BTDS_BTZnotInNT_s, BTDS_BTZnotInPT_s, BTDS_DuplicateZidsB_s,
               BTDS_DuplicateZidsL_s, BTDS_OutOfRangeZids_s, BTDS_BTBadNTFiles_s,
               BTDS_missingBeastParentEnts_s, NTDS_NTZnotInBT_s, STDS_STZnotInBT_s,
               STDS_STZnotInNT_s, STDS_STPZnotInBT_s, STDS_STPZnotInNT_s, STDS_unaccBlks_s>;

// What the reader and the printers know of a variable-data list at run time:
// its row of the registry, and its place in VariableLists.
struct ListType {
    const char* record;
    uint64_t tag;
    const char* title;
    const char* kind;
    uint32_t size;
    const FieldTable& fields;
    const ColumnTable& columns;
    std::size_t index;
};

template <typename R> constexpr ListType ListTypeOf(std::size_t index) {
    return ListType{Layout<R>::TABLE.record, Layout<R>::TAG,   Layout<R>::TITLE,
                    Layout<R>::KIND,         sizeof(R),        Layout<R>::TABLE,
                    Layout<R>::COLUMNS,      index};
}

template <typename... Records, std::size_t... I>
constexpr std::array<ListType, sizeof...(Records)> ListTypes(RecordList<Records...>,
                                                             std::index_sequence<I...>) {
    return {{ListTypeOf<Records>(I)...}};
}

template <typename... Records>
constexpr std::size_t ListCount(RecordList<Records...>) {
    return sizeof...(Records);
}

constexpr std::size_t VARIABLE_LIST_COUNT = ListCount(VariableLists{});
inline constexpr std::array<ListType, VARIABLE_LIST_COUNT> VARIABLE_LISTS =
    ListTypes(VariableLists{}, std::make_index_sequence<VARIABLE_LIST_COUNT>{});

// Each list's table covers every byte of its record, each field where the
// byte tables put it; the record that fails is named by the instantiation.
template <typename R> constexpr bool ListCovered() {
    static_assert(RecordTables::Covers(Layout<R>::TABLE), "a list's table and its layout");
    return true;
}
template <typename... Records> constexpr bool ListsCovered(RecordList<Records...>) {
    return (ListCovered<Records>() && ...);
}
static_assert(ListsCovered(VariableLists{}));

// No two kinds of section share a tag: the reader dispatches by it.
constexpr bool TagsDistinct() {
    constexpr uint64_t FIXED[] = {TAG_HEADER,
                                  TAG_MESSAGE_RECORD,
                                  TAG_DEBUG_RECORD,
                                  Layout<ZVP_Status_s>::TAG,
                                  Layout<ZVP_PoolStats_s>::TAG,
                                  Layout<ZVP_LVStats_s>::TAG,
                                  Layout<RAV_Action_s>::TAG,
                                  Layout<BlockConflicts_s>::TAG,
                                  Layout<LVSkipped_s>::TAG};
    uint64_t tags[std::size(FIXED) + VARIABLE_LIST_COUNT] = {};
    std::size_t count = 0;
    for (uint64_t tag : FIXED)
        tags[count++] = tag;
    for (const ListType& type : VARIABLE_LISTS)
        tags[count++] = type.tag;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t j = i + 1; j < count; ++j)
            if (tags[i] == tags[j])
                return false;
    return true;
}
static_assert(TagsDistinct(), "two kinds of section share a tag");

// The largest record of a variable-data list: room for any row.
constexpr std::size_t LargestListRecord() {
    std::size_t largest = 0;
    for (const ListType& type : VARIABLE_LISTS)
        largest = type.size > largest ? type.size : largest;
    return largest;
}

} // namespace VerifyFormat

// Derived results of the overall status (used by the reader's early stop).
bool FinalResults(ZVP_Status_s const& status);
// 21734 when the status or its final part is not valid, else the completion code.
int VerifyResults(ZVP_Status_s const& status);

#endif
