// verifyFileRecords.h - byte layouts of the verify report: section header,
// fixed records, list records and the seventeen variable-data records.
#ifndef UTIL_COMMON_CPP_VERIFYFILERECORDS_H
#define UTIL_COMMON_CPP_VERIFYFILERECORDS_H

#include "util/common_cpp/fieldKinds.h"
#include "util/support/qvsGuid.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ostream>

// Every record is a byte image of the file (little-endian, packed). Wide names
// are kept as raw UTF-16LE bytes, never as unsigned short arrays, so that no
// code can take a misaligned pointer to them; UnicodeString(field, units)
// reads them byte by byte and stops at the end of the field.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "verify report records are little-endian byte images"
#endif

// Checks one field offset of a packed record.
#define VF_FIELD_AT(type, field, offset)                                                        \
    static_assert(offsetof(type, field) == (offset), #type "::" #field " offset")

namespace VerifyFormat {

// Eight ASCII bytes read as one little-endian 64-bit word.
constexpr uint64_t Tag(const char (&text)[9]) {
    uint64_t word = 0;
    for (int i = 7; i >= 0; --i)
        word = (word << 8) | static_cast<unsigned char>(text[i]);
    return word;
}

constexpr uint64_t SECTION_MAGIC = Tag("QMfSVerS");

constexpr uint64_t TAG_HEADER = Tag("QMfSVerH");
constexpr uint64_t TAG_OVERALL = Tag("QMfSVerO");
constexpr uint64_t TAG_POOL = Tag("QMfSVerP");
constexpr uint64_t TAG_VOLUME = Tag("QMfSVerV");
constexpr uint64_t TAG_ACTION = Tag("QMfSVeVE");
constexpr uint64_t TAG_CONFLICT_BLOCKS = Tag("QMfSVeVC");
constexpr uint64_t TAG_LV_SKIPPED = Tag("QMfSVeVD");
constexpr uint64_t TAG_MESSAGE_RECORD = Tag("QMfSVGVP");
constexpr uint64_t TAG_DEBUG_RECORD = Tag("QMfSVGVQ");

constexpr uint64_t TAG_NEXT_LEAF_INVALID = Tag("QMfSVeVA");
constexpr uint64_t TAG_INVALID_BLOCK = Tag("QMfSVeVB");
constexpr uint64_t TAG_BRANCH_OUT_OF_RANGE = Tag("QMfSVGVA");
constexpr uint64_t TAG_UNREADABLE_ZID = Tag("QMfSVGVB");
constexpr uint64_t TAG_BTZ_NOT_IN_NT = Tag("QMfSVGVC");
constexpr uint64_t TAG_BTZ_NOT_IN_PT = Tag("QMfSVGVD");
constexpr uint64_t TAG_DUPLICATE_ZIDS_B = Tag("QMfSVGVE");
constexpr uint64_t TAG_DUPLICATE_ZIDS_L = Tag("QMfSVGVF");
constexpr uint64_t TAG_OUT_OF_RANGE = Tag("QMfSVGVG");
constexpr uint64_t TAG_BT_BAD_NT_FILES = Tag("QMfSVGVH");
constexpr uint64_t TAG_MISSING_PARENT = Tag("QMfSVGVI");
constexpr uint64_t TAG_NTZ_NOT_IN_BT = Tag("QMfSVGVJ");
constexpr uint64_t TAG_STZ_NOT_IN_BT = Tag("QMfSVGVK");
constexpr uint64_t TAG_STZ_NOT_IN_NT = Tag("QMfSVGVL");
constexpr uint64_t TAG_STPZ_NOT_IN_BT = Tag("QMfSVGVM");
constexpr uint64_t TAG_STPZ_NOT_IN_NT = Tag("QMfSVGVN");
constexpr uint64_t TAG_UNACCOUNTED_BLOCKS = Tag("QMfSVGVO");

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

// How each field of a record is shown as data (the JSON printer): one table
// per record, VF_FIELDS_<record>(F), next to the record below, lists its
// fields in layout order as F(field, kind), reserved bytes included, so that a
// check can see that the table covers the whole record. The kinds are those
// of FieldKinds.

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
#define VF_FIELDS_LevelInformation_s(F) \
    F(blocks, Quantity) F(records, Quantity) F(objects, Quantity)

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
#define VF_FIELDS_CommonBlockStats_s(F) \
    F(reserved0, Reserved) F(name, Narrow<VerifyFormat::NARROW_TEXT_SIZE>) \
    F(blockCount, Quantity) F(blockCountPass2, Quantity) F(badBlockValue, Quantity) \
    F(badBlockValuePass2, Quantity) F(crossLinkedBlocks, Quantity) F(incorrectMagic, Quantity) \
    F(incorrectRecordCount, Quantity) F(incorrectChecksum, Quantity) F(readErrors, Quantity) \
    F(miscellaneousErrors, Quantity) F(invalidBlocks, Quantity) F(reserved128, Reserved) \
    F(invalidNextLeaf, Quantity) F(levelCurrent, Quantity) F(levelMaximum, Quantity) \
    F(levelLimit, Quantity) F(levels, Levels) F(branches, Nested) F(leaves, Nested)

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
#define VF_FIELDS_VDBStats_s(F) \
    F(blocks, Nested) F(reserved432, Reserved) F(blockQuota, Quantity) \
    F(blocksInUse, Quantity) F(numberOfFiles, Quantity) F(numberOfObjects, Quantity) \
    F(nextAvailableId, Id) F(purgeableBlocks, Quantity) F(reserved496, Reserved) \
    F(encryptionAlgorithm, Encryption)

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
#define VF_FIELDS_BTStats_s(F) \
    F(reserved0, Reserved) F(objectTree, Nested) F(specialTree, Nested) F(dataBlocks, Nested) \
    F(reserved1304, Reserved) F(salvageableObjects, Quantity) F(salvageableBlocks, Quantity) \
    F(dataStreamObjects, Quantity) F(systemObjects, Quantity) F(fileObjects, Quantity) \
    F(directoryObjects, Quantity) F(orphanedObjects, Quantity) F(missingParentsInNT, Quantity) \
    F(reserved1376, Reserved) F(lostDataBlocks, Quantity) F(filesWithLostData, Quantity) \
    F(missingNameEntries, Quantity) F(missingSalvageEntries, Quantity) \
    F(namedObjects, Quantity) F(extraNameEntries, Quantity) \
    F(objectsRequiringNoNames, Quantity) F(sysObjectsNameEntries, Quantity) \
    F(unreadableObjects, Quantity) F(greatestObjectId, Id) F(duplicateIdsA, Quantity) \
    F(duplicateIdsB, Quantity) F(reserved1480, Reserved) F(idRangeErrorsA, Quantity) \
    F(idRangeErrorsB, Quantity) F(reserved1504, Reserved) F(btiEntries, Quantity) \
    F(missingBtiEntries, Quantity)

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
#define VF_FIELDS_NTStats_s(F) \
    F(reserved0, Reserved) F(nameTree, Nested) F(fileNames, Quantity) \
    F(directoryNames, Quantity) F(overflowNodesA, Quantity) F(overflowNodesB, Quantity) \
    F(objectsWithDuplicateNames, Quantity) F(totalDuplicateNames, Quantity) \
    F(nameEntriesWithoutObjects, Quantity) F(reserved496, Reserved)

struct UBTStats_s {
    CommonBlockStats_s blocks;
    unsigned char reserved432[16];
};
#define VF_FIELDS_UBTStats_s(F) \
    F(blocks, Nested) F(reserved432, Reserved)

struct DBTStats_s {
    CommonBlockStats_s blocks;
};
#define VF_FIELDS_DBTStats_s(F) \
    F(blocks, Nested)

struct MFLStats_s {
    CommonBlockStats_s blocks;
    uint64_t reserved432;
};
#define VF_FIELDS_MFLStats_s(F) \
    F(blocks, Nested) F(reserved432, Reserved)

struct EFLStats_s {
    CommonBlockStats_s blocks;
    CommonBlockStats_s blocks2;
};
#define VF_FIELDS_EFLStats_s(F) \
    F(blocks, Nested) F(blocks2, Nested)

struct PLStats_s {
    CommonBlockStats_s blocks;
};
#define VF_FIELDS_PLStats_s(F) \
    F(blocks, Nested)

struct BTIStats_s {
    CommonBlockStats_s blocks;
    uint64_t invalidBtiEntries;
};
#define VF_FIELDS_BTIStats_s(F) \
    F(blocks, Nested) F(invalidBtiEntries, Quantity)

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
#define VF_FIELDS_ZVP_Status_s(F) \
    F(statusValid, Quantity) F(poolName, Wide<VerifyFormat::STATUS_POOL_NAME_UNITS>) \
    F(blockSize, Quantity) F(totalBlocks, Quantity) F(reserved148, Reserved) F(userKey, Key) \
    F(unaccountedBlocks, Quantity) F(crossLinkedBlocks, Quantity) F(invalidBlocks, Quantity) \
    F(verifyStartTime, Time) F(reserved346, Reserved) F(blocksVerified, Quantity) \
    F(blocksReverified, Quantity) F(finalStatusValid, Quantity) F(completionCode, Status) \
    F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>) \
    F(sourceCaller, Narrow<VerifyFormat::NARROW_TEXT_SIZE>) F(abortedByUser, Quantity) \
    F(verifyEndTime, Time) F(reserved466, Reserved)

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
#define VF_FIELDS_ZVP_LVStats_s(F) \
    F(volumeName, Wide<VerifyFormat::VOLUME_NAME_UNITS>) F(errors, ErrorWord) \
    F(warnings, WarningWord) F(deleted, Quantity) F(purging, Quantity) F(deletionTime, Time) \
    F(volumeId, Guid) F(locator, Id) F(vdb, Nested) F(bt, Nested) F(nt, Nested) F(ubt, Nested) \
    F(dbt, Nested) F(mfl, Nested) F(efl, Nested) F(pl, Nested) F(bti, Nested)

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
#define VF_FIELDS_ZVP_PoolStats_s(F) \
    F(reserved0, Reserved) F(poolName, Wide<VerifyFormat::POOL_NAME_AREA_UNITS>) \
    F(errors, ErrorWord) F(warnings, WarningWord) F(totalBlocks, Quantity) \
    F(usedByPool, Quantity) F(unaccountedBlocks, Quantity) F(crossLinkedBlocks, Quantity) \
    F(salvageableObjects, Quantity) F(salvageableBlocks, Quantity) F(reserved1078, Reserved) \
    F(crossValidation, Quantity) F(reserved1094, Reserved) F(lvsNotVerified, Quantity) \
    F(highestLsn, Id) F(lowestLsn, Id) F(poolBlocks1, Nested) F(poolBlocks2, Nested) \
    F(poolBlocks3, Nested) F(poolBlocks4, Nested) F(poolBlocks5, Nested) \
    F(systemTotalBlocks, Quantity) F(systemBlocksInUse, Quantity) F(purgeableBlocks, Quantity) \
    F(nonPurgeableBlocks, Quantity) F(reserved3342, Reserved) F(salvageTree, Nested) \
    F(salvageParentsWithoutIds, Quantity) F(salvageParentsWithoutNames, Quantity) \
    F(salvageEntriesWithoutIds, Quantity) F(salvageEntriesWithoutNames, Quantity) \
    F(poolBlocks6, Nested) F(poolBlocks7, Nested) F(freeBlocks, Nested) F(vdb, Nested) \
    F(bt, Nested) F(nt, Nested) F(ubt, Nested) F(dbt, Nested) F(mfl, Nested) F(efl, Nested) \
    F(pl, Nested) F(reserved10270, Reserved) F(bti, Nested) F(reserved11142, Reserved)

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
// The report gives an action's start and end as counts of seconds, with no
// epoch stated (only their difference is shown as text): numbers, not times.
#define VF_FIELDS_RAV_Action_s(F) \
    F(key, Key) F(startSeconds, Quantity) F(endSeconds, Quantity) F(start, Quantity) \
    F(end, Quantity) \
    F(isPool, Quantity) F(object, Wide<VerifyFormat::ACTION_OBJECT_UNITS>) \
    F(subObject, Narrow<VerifyFormat::NARROW_TEXT_SIZE>) \
    F(action, Narrow<VerifyFormat::ACTION_TEXT_SIZE>)

struct BlockConflicts_s {
    uint64_t block;
    uint64_t object1;
    uint64_t volume1;
    uint64_t object2;
    uint64_t volume2;
};
#define VF_FIELDS_BlockConflicts_s(F) \
    F(block, Quantity) F(object1, Id) F(volume1, Id) F(object2, Id) F(volume2, Id)

struct LVSkipped_s {
    unsigned char volumeName[2 * VerifyFormat::VOLUME_NAME_UNITS];
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_LVSkipped_s(F) \
    F(volumeName, Wide<VerifyFormat::VOLUME_NAME_UNITS>) F(status, Status) \
    F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

// Variable-data records.

struct CBSV_NextLeafInvalidList_s {
    uint64_t expectedBlock;
    uint64_t actualBlock;
};
#define VF_FIELDS_CBSV_NextLeafInvalidList_s(F) \
    F(expectedBlock, Quantity) F(actualBlock, Quantity)

struct CBSV_InvalidBlockList_s {
    uint64_t block;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_CBSV_InvalidBlockList_s(F) \
    F(block, Quantity) F(status, Status) \
    F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct BTDS_BranchOutOfRangeZids_s {
    uint64_t zid;
};
#define VF_FIELDS_BTDS_BranchOutOfRangeZids_s(F) \
    F(zid, Id)

struct BTDS_UnreadableZid_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_BTDS_UnreadableZid_s(F) \
    F(zid, Id) F(status, Status) F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct BTDS_BTZnotInNT_s {
    uint64_t parentZid;
    uint64_t childZid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_BTDS_BTZnotInNT_s(F) \
    F(parentZid, Id) F(childZid, Id) F(status, Status) \
    F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct BTDS_BTZnotInPT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_BTDS_BTZnotInPT_s(F) \
    F(zid, Id) F(status, Status) F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct BTDS_DuplicateZidsB_s {
    uint64_t zid;
    uint64_t block;
};
#define VF_FIELDS_BTDS_DuplicateZidsB_s(F) \
    F(zid, Id) F(block, Quantity)

struct BTDS_DuplicateZidsL_s {
    uint64_t zid;
    uint64_t block;
};
#define VF_FIELDS_BTDS_DuplicateZidsL_s(F) \
    F(zid, Id) F(block, Quantity)

struct BTDS_OutOfRangeZids_s {
    uint64_t zid;
};
#define VF_FIELDS_BTDS_OutOfRangeZids_s(F) \
    F(zid, Id)

struct BTDS_BTBadNTFiles_s {
    uint64_t actualZid;
    uint64_t expectedZid;
    uint64_t parentZid;
    unsigned char fileName[2 * VerifyFormat::FILE_NAME_UNITS];
};
#define VF_FIELDS_BTDS_BTBadNTFiles_s(F) \
    F(actualZid, Id) F(expectedZid, Id) F(parentZid, Id) \
    F(fileName, Wide<VerifyFormat::FILE_NAME_UNITS>)

struct BTDS_missingBeastParentEnts_s {
    uint64_t parentZid;
    uint64_t childZid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_BTDS_missingBeastParentEnts_s(F) \
    F(parentZid, Id) F(childZid, Id) F(status, Status) \
    F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct NTDS_NTZnotInBT_s {
    uint64_t zid;
    uint64_t parentZid;
    uint16_t nameType;
    uint32_t nameSpaceMask;
    unsigned char fileName[2 * VerifyFormat::FILE_NAME_UNITS];
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_NTDS_NTZnotInBT_s(F) \
    F(zid, Id) F(parentZid, Id) F(nameType, NameType) F(nameSpaceMask, Quantity) \
    F(fileName, Wide<VerifyFormat::FILE_NAME_UNITS>) F(status, Status) \
    F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct STDS_STZnotInBT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_STDS_STZnotInBT_s(F) \
    F(zid, Id) F(status, Status) F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct STDS_STZnotInNT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_STDS_STZnotInNT_s(F) \
    F(zid, Id) F(status, Status) F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct STDS_STPZnotInBT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_STDS_STPZnotInBT_s(F) \
    F(zid, Id) F(status, Status) F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct STDS_STPZnotInNT_s {
    uint64_t zid;
    int32_t status;
    char sourceSetter[VerifyFormat::NARROW_TEXT_SIZE];
};
#define VF_FIELDS_STDS_STPZnotInNT_s(F) \
    F(zid, Id) F(status, Status) F(sourceSetter, Narrow<VerifyFormat::NARROW_TEXT_SIZE>)

struct STDS_unaccBlks_s {
    uint64_t startBlock;
    uint64_t endBlock;
};
#define VF_FIELDS_STDS_unaccBlks_s(F) \
    F(startBlock, Quantity) F(endBlock, Quantity)

#pragma pack(pop)

// Sizes.
static_assert(sizeof(VerifyFileSection) == 96, "section header size");
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

// Each field table covers every byte of its record.
#define VF_FIELD_SIZE(field, kind) +sizeof(VF_TABLE_RECORD::field)
#define VF_TABLE_RECORD LevelInformation_s
static_assert(0 VF_FIELDS_LevelInformation_s(VF_FIELD_SIZE) == sizeof(LevelInformation_s), "LevelInformation_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD CommonBlockStats_s
static_assert(0 VF_FIELDS_CommonBlockStats_s(VF_FIELD_SIZE) == sizeof(CommonBlockStats_s), "CommonBlockStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD VDBStats_s
static_assert(0 VF_FIELDS_VDBStats_s(VF_FIELD_SIZE) == sizeof(VDBStats_s), "VDBStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTStats_s
static_assert(0 VF_FIELDS_BTStats_s(VF_FIELD_SIZE) == sizeof(BTStats_s), "BTStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD NTStats_s
static_assert(0 VF_FIELDS_NTStats_s(VF_FIELD_SIZE) == sizeof(NTStats_s), "NTStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD UBTStats_s
static_assert(0 VF_FIELDS_UBTStats_s(VF_FIELD_SIZE) == sizeof(UBTStats_s), "UBTStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD DBTStats_s
static_assert(0 VF_FIELDS_DBTStats_s(VF_FIELD_SIZE) == sizeof(DBTStats_s), "DBTStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD MFLStats_s
static_assert(0 VF_FIELDS_MFLStats_s(VF_FIELD_SIZE) == sizeof(MFLStats_s), "MFLStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD EFLStats_s
static_assert(0 VF_FIELDS_EFLStats_s(VF_FIELD_SIZE) == sizeof(EFLStats_s), "EFLStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD PLStats_s
static_assert(0 VF_FIELDS_PLStats_s(VF_FIELD_SIZE) == sizeof(PLStats_s), "PLStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTIStats_s
static_assert(0 VF_FIELDS_BTIStats_s(VF_FIELD_SIZE) == sizeof(BTIStats_s), "BTIStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD ZVP_Status_s
static_assert(0 VF_FIELDS_ZVP_Status_s(VF_FIELD_SIZE) == sizeof(ZVP_Status_s), "ZVP_Status_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD ZVP_LVStats_s
static_assert(0 VF_FIELDS_ZVP_LVStats_s(VF_FIELD_SIZE) == sizeof(ZVP_LVStats_s), "ZVP_LVStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD ZVP_PoolStats_s
static_assert(0 VF_FIELDS_ZVP_PoolStats_s(VF_FIELD_SIZE) == sizeof(ZVP_PoolStats_s), "ZVP_PoolStats_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD RAV_Action_s
static_assert(0 VF_FIELDS_RAV_Action_s(VF_FIELD_SIZE) == sizeof(RAV_Action_s), "RAV_Action_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BlockConflicts_s
static_assert(0 VF_FIELDS_BlockConflicts_s(VF_FIELD_SIZE) == sizeof(BlockConflicts_s), "BlockConflicts_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD LVSkipped_s
static_assert(0 VF_FIELDS_LVSkipped_s(VF_FIELD_SIZE) == sizeof(LVSkipped_s), "LVSkipped_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD CBSV_NextLeafInvalidList_s
static_assert(0 VF_FIELDS_CBSV_NextLeafInvalidList_s(VF_FIELD_SIZE) == sizeof(CBSV_NextLeafInvalidList_s), "CBSV_NextLeafInvalidList_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD CBSV_InvalidBlockList_s
static_assert(0 VF_FIELDS_CBSV_InvalidBlockList_s(VF_FIELD_SIZE) == sizeof(CBSV_InvalidBlockList_s), "CBSV_InvalidBlockList_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_BranchOutOfRangeZids_s
static_assert(0 VF_FIELDS_BTDS_BranchOutOfRangeZids_s(VF_FIELD_SIZE) == sizeof(BTDS_BranchOutOfRangeZids_s), "BTDS_BranchOutOfRangeZids_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_UnreadableZid_s
static_assert(0 VF_FIELDS_BTDS_UnreadableZid_s(VF_FIELD_SIZE) == sizeof(BTDS_UnreadableZid_s), "BTDS_UnreadableZid_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_BTZnotInNT_s
static_assert(0 VF_FIELDS_BTDS_BTZnotInNT_s(VF_FIELD_SIZE) == sizeof(BTDS_BTZnotInNT_s), "BTDS_BTZnotInNT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_BTZnotInPT_s
static_assert(0 VF_FIELDS_BTDS_BTZnotInPT_s(VF_FIELD_SIZE) == sizeof(BTDS_BTZnotInPT_s), "BTDS_BTZnotInPT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_DuplicateZidsB_s
static_assert(0 VF_FIELDS_BTDS_DuplicateZidsB_s(VF_FIELD_SIZE) == sizeof(BTDS_DuplicateZidsB_s), "BTDS_DuplicateZidsB_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_DuplicateZidsL_s
static_assert(0 VF_FIELDS_BTDS_DuplicateZidsL_s(VF_FIELD_SIZE) == sizeof(BTDS_DuplicateZidsL_s), "BTDS_DuplicateZidsL_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_OutOfRangeZids_s
static_assert(0 VF_FIELDS_BTDS_OutOfRangeZids_s(VF_FIELD_SIZE) == sizeof(BTDS_OutOfRangeZids_s), "BTDS_OutOfRangeZids_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_BTBadNTFiles_s
static_assert(0 VF_FIELDS_BTDS_BTBadNTFiles_s(VF_FIELD_SIZE) == sizeof(BTDS_BTBadNTFiles_s), "BTDS_BTBadNTFiles_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD BTDS_missingBeastParentEnts_s
static_assert(0 VF_FIELDS_BTDS_missingBeastParentEnts_s(VF_FIELD_SIZE) == sizeof(BTDS_missingBeastParentEnts_s), "BTDS_missingBeastParentEnts_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD NTDS_NTZnotInBT_s
static_assert(0 VF_FIELDS_NTDS_NTZnotInBT_s(VF_FIELD_SIZE) == sizeof(NTDS_NTZnotInBT_s), "NTDS_NTZnotInBT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD STDS_STZnotInBT_s
static_assert(0 VF_FIELDS_STDS_STZnotInBT_s(VF_FIELD_SIZE) == sizeof(STDS_STZnotInBT_s), "STDS_STZnotInBT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD STDS_STZnotInNT_s
static_assert(0 VF_FIELDS_STDS_STZnotInNT_s(VF_FIELD_SIZE) == sizeof(STDS_STZnotInNT_s), "STDS_STZnotInNT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD STDS_STPZnotInBT_s
static_assert(0 VF_FIELDS_STDS_STPZnotInBT_s(VF_FIELD_SIZE) == sizeof(STDS_STPZnotInBT_s), "STDS_STPZnotInBT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD STDS_STPZnotInNT_s
static_assert(0 VF_FIELDS_STDS_STPZnotInNT_s(VF_FIELD_SIZE) == sizeof(STDS_STPZnotInNT_s), "STDS_STPZnotInNT_s field table");
#undef VF_TABLE_RECORD
#define VF_TABLE_RECORD STDS_unaccBlks_s
static_assert(0 VF_FIELDS_STDS_unaccBlks_s(VF_FIELD_SIZE) == sizeof(STDS_unaccBlks_s), "STDS_unaccBlks_s field table");
#undef VF_TABLE_RECORD
#undef VF_FIELD_SIZE

// Offsets.
VF_FIELD_AT(VerifyFileSection, magic, 0);
VF_FIELD_AT(VerifyFileSection, reserved8, 8);
VF_FIELD_AT(VerifyFileSection, size, 20);
VF_FIELD_AT(VerifyFileSection, type, 24);
VF_FIELD_AT(VerifyFileSection, reserved32, 32);

VF_FIELD_AT(LevelInformation_s, blocks, 0);
VF_FIELD_AT(LevelInformation_s, records, 4);
VF_FIELD_AT(LevelInformation_s, objects, 8);

VF_FIELD_AT(CommonBlockStats_s, reserved0, 0);
VF_FIELD_AT(CommonBlockStats_s, name, 8);
VF_FIELD_AT(CommonBlockStats_s, blockCount, 40);
VF_FIELD_AT(CommonBlockStats_s, blockCountPass2, 48);
VF_FIELD_AT(CommonBlockStats_s, badBlockValue, 56);
VF_FIELD_AT(CommonBlockStats_s, badBlockValuePass2, 64);
VF_FIELD_AT(CommonBlockStats_s, crossLinkedBlocks, 72);
VF_FIELD_AT(CommonBlockStats_s, incorrectMagic, 80);
VF_FIELD_AT(CommonBlockStats_s, incorrectRecordCount, 88);
VF_FIELD_AT(CommonBlockStats_s, incorrectChecksum, 96);
VF_FIELD_AT(CommonBlockStats_s, readErrors, 104);
VF_FIELD_AT(CommonBlockStats_s, miscellaneousErrors, 112);
VF_FIELD_AT(CommonBlockStats_s, invalidBlocks, 120);
VF_FIELD_AT(CommonBlockStats_s, reserved128, 128);
VF_FIELD_AT(CommonBlockStats_s, invalidNextLeaf, 136);
VF_FIELD_AT(CommonBlockStats_s, levelCurrent, 144);
VF_FIELD_AT(CommonBlockStats_s, levelMaximum, 148);
VF_FIELD_AT(CommonBlockStats_s, levelLimit, 152);
VF_FIELD_AT(CommonBlockStats_s, levels, 156);
VF_FIELD_AT(CommonBlockStats_s, branches, 408);
VF_FIELD_AT(CommonBlockStats_s, leaves, 420);

VF_FIELD_AT(VDBStats_s, blocks, 0);
VF_FIELD_AT(VDBStats_s, reserved432, 432);
VF_FIELD_AT(VDBStats_s, blockQuota, 448);
VF_FIELD_AT(VDBStats_s, blocksInUse, 456);
VF_FIELD_AT(VDBStats_s, numberOfFiles, 464);
VF_FIELD_AT(VDBStats_s, numberOfObjects, 472);
VF_FIELD_AT(VDBStats_s, nextAvailableId, 480);
VF_FIELD_AT(VDBStats_s, purgeableBlocks, 488);
VF_FIELD_AT(VDBStats_s, reserved496, 496);
VF_FIELD_AT(VDBStats_s, encryptionAlgorithm, 504);

VF_FIELD_AT(BTStats_s, reserved0, 0);
VF_FIELD_AT(BTStats_s, objectTree, 8);
VF_FIELD_AT(BTStats_s, specialTree, 440);
VF_FIELD_AT(BTStats_s, dataBlocks, 872);
VF_FIELD_AT(BTStats_s, reserved1304, 1304);
VF_FIELD_AT(BTStats_s, salvageableObjects, 1312);
VF_FIELD_AT(BTStats_s, salvageableBlocks, 1320);
VF_FIELD_AT(BTStats_s, dataStreamObjects, 1328);
VF_FIELD_AT(BTStats_s, systemObjects, 1336);
VF_FIELD_AT(BTStats_s, fileObjects, 1344);
VF_FIELD_AT(BTStats_s, directoryObjects, 1352);
VF_FIELD_AT(BTStats_s, orphanedObjects, 1360);
VF_FIELD_AT(BTStats_s, missingParentsInNT, 1368);
VF_FIELD_AT(BTStats_s, reserved1376, 1376);
VF_FIELD_AT(BTStats_s, lostDataBlocks, 1384);
VF_FIELD_AT(BTStats_s, filesWithLostData, 1392);
VF_FIELD_AT(BTStats_s, missingNameEntries, 1400);
VF_FIELD_AT(BTStats_s, missingSalvageEntries, 1408);
VF_FIELD_AT(BTStats_s, namedObjects, 1416);
VF_FIELD_AT(BTStats_s, extraNameEntries, 1424);
VF_FIELD_AT(BTStats_s, objectsRequiringNoNames, 1432);
VF_FIELD_AT(BTStats_s, sysObjectsNameEntries, 1440);
VF_FIELD_AT(BTStats_s, unreadableObjects, 1448);
VF_FIELD_AT(BTStats_s, greatestObjectId, 1456);
VF_FIELD_AT(BTStats_s, duplicateIdsA, 1464);
VF_FIELD_AT(BTStats_s, duplicateIdsB, 1472);
VF_FIELD_AT(BTStats_s, reserved1480, 1480);
VF_FIELD_AT(BTStats_s, idRangeErrorsA, 1488);
VF_FIELD_AT(BTStats_s, idRangeErrorsB, 1496);
VF_FIELD_AT(BTStats_s, reserved1504, 1504);
VF_FIELD_AT(BTStats_s, btiEntries, 1512);
VF_FIELD_AT(BTStats_s, missingBtiEntries, 1520);

VF_FIELD_AT(NTStats_s, reserved0, 0);
VF_FIELD_AT(NTStats_s, nameTree, 8);
VF_FIELD_AT(NTStats_s, fileNames, 440);
VF_FIELD_AT(NTStats_s, directoryNames, 448);
VF_FIELD_AT(NTStats_s, overflowNodesA, 456);
VF_FIELD_AT(NTStats_s, overflowNodesB, 464);
VF_FIELD_AT(NTStats_s, objectsWithDuplicateNames, 472);
VF_FIELD_AT(NTStats_s, totalDuplicateNames, 480);
VF_FIELD_AT(NTStats_s, nameEntriesWithoutObjects, 488);
VF_FIELD_AT(NTStats_s, reserved496, 496);

VF_FIELD_AT(UBTStats_s, blocks, 0);
VF_FIELD_AT(UBTStats_s, reserved432, 432);
VF_FIELD_AT(DBTStats_s, blocks, 0);
VF_FIELD_AT(MFLStats_s, blocks, 0);
VF_FIELD_AT(MFLStats_s, reserved432, 432);
VF_FIELD_AT(EFLStats_s, blocks, 0);
VF_FIELD_AT(EFLStats_s, blocks2, 432);
VF_FIELD_AT(PLStats_s, blocks, 0);
VF_FIELD_AT(BTIStats_s, blocks, 0);
VF_FIELD_AT(BTIStats_s, invalidBtiEntries, 432);

VF_FIELD_AT(ZVP_Status_s, statusValid, 0);
VF_FIELD_AT(ZVP_Status_s, poolName, 8);
VF_FIELD_AT(ZVP_Status_s, blockSize, 136);
VF_FIELD_AT(ZVP_Status_s, totalBlocks, 140);
VF_FIELD_AT(ZVP_Status_s, reserved148, 148);
VF_FIELD_AT(ZVP_Status_s, userKey, 310);
VF_FIELD_AT(ZVP_Status_s, unaccountedBlocks, 318);
VF_FIELD_AT(ZVP_Status_s, crossLinkedBlocks, 326);
VF_FIELD_AT(ZVP_Status_s, invalidBlocks, 334);
VF_FIELD_AT(ZVP_Status_s, verifyStartTime, 342);
VF_FIELD_AT(ZVP_Status_s, reserved346, 346);
VF_FIELD_AT(ZVP_Status_s, blocksVerified, 362);
VF_FIELD_AT(ZVP_Status_s, blocksReverified, 370);
VF_FIELD_AT(ZVP_Status_s, finalStatusValid, 378);
VF_FIELD_AT(ZVP_Status_s, completionCode, 386);
VF_FIELD_AT(ZVP_Status_s, sourceSetter, 390);
VF_FIELD_AT(ZVP_Status_s, sourceCaller, 422);
VF_FIELD_AT(ZVP_Status_s, abortedByUser, 454);
VF_FIELD_AT(ZVP_Status_s, verifyEndTime, 462);
VF_FIELD_AT(ZVP_Status_s, reserved466, 466);

VF_FIELD_AT(ZVP_LVStats_s, volumeName, 0);
VF_FIELD_AT(ZVP_LVStats_s, errors, 512);
VF_FIELD_AT(ZVP_LVStats_s, warnings, 520);
VF_FIELD_AT(ZVP_LVStats_s, deleted, 528);
VF_FIELD_AT(ZVP_LVStats_s, purging, 536);
VF_FIELD_AT(ZVP_LVStats_s, deletionTime, 544);
VF_FIELD_AT(ZVP_LVStats_s, volumeId, 548);
VF_FIELD_AT(ZVP_LVStats_s, locator, 564);
VF_FIELD_AT(ZVP_LVStats_s, vdb, 572);
VF_FIELD_AT(ZVP_LVStats_s, bt, 1084);
VF_FIELD_AT(ZVP_LVStats_s, nt, 2612);
VF_FIELD_AT(ZVP_LVStats_s, ubt, 3116);
VF_FIELD_AT(ZVP_LVStats_s, dbt, 3564);
VF_FIELD_AT(ZVP_LVStats_s, mfl, 3996);
VF_FIELD_AT(ZVP_LVStats_s, efl, 4436);
VF_FIELD_AT(ZVP_LVStats_s, pl, 5300);
VF_FIELD_AT(ZVP_LVStats_s, bti, 5732);

VF_FIELD_AT(ZVP_PoolStats_s, reserved0, 0);
VF_FIELD_AT(ZVP_PoolStats_s, poolName, 16);
VF_FIELD_AT(ZVP_PoolStats_s, errors, 1014);
VF_FIELD_AT(ZVP_PoolStats_s, warnings, 1022);
VF_FIELD_AT(ZVP_PoolStats_s, totalBlocks, 1030);
VF_FIELD_AT(ZVP_PoolStats_s, usedByPool, 1038);
VF_FIELD_AT(ZVP_PoolStats_s, unaccountedBlocks, 1046);
VF_FIELD_AT(ZVP_PoolStats_s, crossLinkedBlocks, 1054);
VF_FIELD_AT(ZVP_PoolStats_s, salvageableObjects, 1062);
VF_FIELD_AT(ZVP_PoolStats_s, salvageableBlocks, 1070);
VF_FIELD_AT(ZVP_PoolStats_s, reserved1078, 1078);
VF_FIELD_AT(ZVP_PoolStats_s, crossValidation, 1086);
VF_FIELD_AT(ZVP_PoolStats_s, reserved1094, 1094);
VF_FIELD_AT(ZVP_PoolStats_s, lvsNotVerified, 1126);
VF_FIELD_AT(ZVP_PoolStats_s, highestLsn, 1134);
VF_FIELD_AT(ZVP_PoolStats_s, lowestLsn, 1142);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks1, 1150);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks2, 1582);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks3, 2014);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks4, 2446);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks5, 2878);
VF_FIELD_AT(ZVP_PoolStats_s, systemTotalBlocks, 3310);
VF_FIELD_AT(ZVP_PoolStats_s, systemBlocksInUse, 3318);
VF_FIELD_AT(ZVP_PoolStats_s, purgeableBlocks, 3326);
VF_FIELD_AT(ZVP_PoolStats_s, nonPurgeableBlocks, 3334);
VF_FIELD_AT(ZVP_PoolStats_s, reserved3342, 3342);
VF_FIELD_AT(ZVP_PoolStats_s, salvageTree, 3350);
VF_FIELD_AT(ZVP_PoolStats_s, salvageParentsWithoutIds, 3782);
VF_FIELD_AT(ZVP_PoolStats_s, salvageParentsWithoutNames, 3790);
VF_FIELD_AT(ZVP_PoolStats_s, salvageEntriesWithoutIds, 3798);
VF_FIELD_AT(ZVP_PoolStats_s, salvageEntriesWithoutNames, 3806);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks6, 3814);
VF_FIELD_AT(ZVP_PoolStats_s, poolBlocks7, 4246);
VF_FIELD_AT(ZVP_PoolStats_s, freeBlocks, 4678);
VF_FIELD_AT(ZVP_PoolStats_s, vdb, 5110);
VF_FIELD_AT(ZVP_PoolStats_s, bt, 5622);
VF_FIELD_AT(ZVP_PoolStats_s, nt, 7150);
VF_FIELD_AT(ZVP_PoolStats_s, ubt, 7654);
VF_FIELD_AT(ZVP_PoolStats_s, dbt, 8102);
VF_FIELD_AT(ZVP_PoolStats_s, mfl, 8534);
VF_FIELD_AT(ZVP_PoolStats_s, efl, 8974);
VF_FIELD_AT(ZVP_PoolStats_s, pl, 9838);
VF_FIELD_AT(ZVP_PoolStats_s, reserved10270, 10270);
VF_FIELD_AT(ZVP_PoolStats_s, bti, 10702);
VF_FIELD_AT(ZVP_PoolStats_s, reserved11142, 11142);

VF_FIELD_AT(RAV_Action_s, key, 0);
VF_FIELD_AT(RAV_Action_s, startSeconds, 8);
VF_FIELD_AT(RAV_Action_s, endSeconds, 12);
VF_FIELD_AT(RAV_Action_s, start, 16);
VF_FIELD_AT(RAV_Action_s, end, 24);
VF_FIELD_AT(RAV_Action_s, isPool, 32);
VF_FIELD_AT(RAV_Action_s, object, 34);
VF_FIELD_AT(RAV_Action_s, subObject, 66);
VF_FIELD_AT(RAV_Action_s, action, 98);

VF_FIELD_AT(BlockConflicts_s, block, 0);
VF_FIELD_AT(BlockConflicts_s, object1, 8);
VF_FIELD_AT(BlockConflicts_s, volume1, 16);
VF_FIELD_AT(BlockConflicts_s, object2, 24);
VF_FIELD_AT(BlockConflicts_s, volume2, 32);

VF_FIELD_AT(LVSkipped_s, volumeName, 0);
VF_FIELD_AT(LVSkipped_s, status, 512);
VF_FIELD_AT(LVSkipped_s, sourceSetter, 516);

VF_FIELD_AT(CBSV_NextLeafInvalidList_s, expectedBlock, 0);
VF_FIELD_AT(CBSV_NextLeafInvalidList_s, actualBlock, 8);
VF_FIELD_AT(CBSV_InvalidBlockList_s, block, 0);
VF_FIELD_AT(CBSV_InvalidBlockList_s, status, 8);
VF_FIELD_AT(CBSV_InvalidBlockList_s, sourceSetter, 12);
VF_FIELD_AT(BTDS_BranchOutOfRangeZids_s, zid, 0);
VF_FIELD_AT(BTDS_UnreadableZid_s, zid, 0);
VF_FIELD_AT(BTDS_UnreadableZid_s, status, 8);
VF_FIELD_AT(BTDS_UnreadableZid_s, sourceSetter, 12);
VF_FIELD_AT(BTDS_BTZnotInNT_s, parentZid, 0);
VF_FIELD_AT(BTDS_BTZnotInNT_s, childZid, 8);
VF_FIELD_AT(BTDS_BTZnotInNT_s, status, 16);
VF_FIELD_AT(BTDS_BTZnotInNT_s, sourceSetter, 20);
VF_FIELD_AT(BTDS_BTZnotInPT_s, zid, 0);
VF_FIELD_AT(BTDS_BTZnotInPT_s, status, 8);
VF_FIELD_AT(BTDS_BTZnotInPT_s, sourceSetter, 12);
VF_FIELD_AT(BTDS_DuplicateZidsB_s, zid, 0);
VF_FIELD_AT(BTDS_DuplicateZidsB_s, block, 8);
VF_FIELD_AT(BTDS_DuplicateZidsL_s, zid, 0);
VF_FIELD_AT(BTDS_DuplicateZidsL_s, block, 8);
VF_FIELD_AT(BTDS_OutOfRangeZids_s, zid, 0);
VF_FIELD_AT(BTDS_BTBadNTFiles_s, actualZid, 0);
VF_FIELD_AT(BTDS_BTBadNTFiles_s, expectedZid, 8);
VF_FIELD_AT(BTDS_BTBadNTFiles_s, parentZid, 16);
VF_FIELD_AT(BTDS_BTBadNTFiles_s, fileName, 24);
VF_FIELD_AT(BTDS_missingBeastParentEnts_s, parentZid, 0);
VF_FIELD_AT(BTDS_missingBeastParentEnts_s, childZid, 8);
VF_FIELD_AT(BTDS_missingBeastParentEnts_s, status, 16);
VF_FIELD_AT(BTDS_missingBeastParentEnts_s, sourceSetter, 20);
VF_FIELD_AT(NTDS_NTZnotInBT_s, zid, 0);
VF_FIELD_AT(NTDS_NTZnotInBT_s, parentZid, 8);
VF_FIELD_AT(NTDS_NTZnotInBT_s, nameType, 16);
VF_FIELD_AT(NTDS_NTZnotInBT_s, nameSpaceMask, 18);
VF_FIELD_AT(NTDS_NTZnotInBT_s, fileName, 22);
VF_FIELD_AT(NTDS_NTZnotInBT_s, status, 534);
VF_FIELD_AT(NTDS_NTZnotInBT_s, sourceSetter, 538);
VF_FIELD_AT(STDS_STZnotInBT_s, zid, 0);
VF_FIELD_AT(STDS_STZnotInBT_s, status, 8);
VF_FIELD_AT(STDS_STZnotInBT_s, sourceSetter, 12);
VF_FIELD_AT(STDS_STZnotInNT_s, zid, 0);
VF_FIELD_AT(STDS_STZnotInNT_s, status, 8);
VF_FIELD_AT(STDS_STZnotInNT_s, sourceSetter, 12);
VF_FIELD_AT(STDS_STPZnotInBT_s, zid, 0);
VF_FIELD_AT(STDS_STPZnotInBT_s, status, 8);
VF_FIELD_AT(STDS_STPZnotInBT_s, sourceSetter, 12);
VF_FIELD_AT(STDS_STPZnotInNT_s, zid, 0);
VF_FIELD_AT(STDS_STPZnotInNT_s, status, 8);
VF_FIELD_AT(STDS_STPZnotInNT_s, sourceSetter, 12);
VF_FIELD_AT(STDS_unaccBlks_s, startBlock, 0);
VF_FIELD_AT(STDS_unaccBlks_s, endBlock, 8);

// Derived results of the overall status (used by the reader's early stop).
bool FinalResults(ZVP_Status_s const& status);
// 21734 when the status or its final part is not valid, else the completion code.
int VerifyResults(ZVP_Status_s const& status);

#endif
