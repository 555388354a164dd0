// verifyFileOutput.h - text writers of the verify report: dotted lines, the
// status summary, the pool and volume blocks, histograms, and the headings
// and rows of every record list.
#ifndef UTIL_COMMON_CPP_VERIFYFILEOUTPUT_H
#define UTIL_COMMON_CPP_VERIFYFILEOUTPUT_H

#include "util/common_cpp/verifyFileRecords.h"
#include "util/common_cpp/verifyNames.h"
#include "util/common_cpp/verifyPrinter.h"
#include "util/support/qvsLib.h"

#include <cstdint>
#include <ostream>

class ActionStats;
class ConflictBlocksStats;
class LVSkippedStats;

// Placeholders printed when a record's name cannot be converted. They are
// built once at start-up by BuildPlaceholders, called first thing in main's
// work, not before main: there a failed allocation cannot even be thrown,
// and the program would end with a signal. Until then the writers print the
// same texts from constants.
extern UnicodeString VFF_PoolName;
extern UnicodeString VFF_VolumeName;
extern UnicodeString VFF_FileName;
void BuildPlaceholders();

// Dotted label-and-value lines. Each leaves the fill character at '.', or at
// '0' for the GUID line, whose value goes through the GUID operator.
std::ostream& fileOut(std::ostream& os, char const* label, uint64_t value);
std::ostream& fileOut(std::ostream& os, char const* label, char const* text);
std::ostream& fileOutHex(std::ostream& os, char const* label, uint64_t value);
std::ostream& fileOut(std::ostream& os, char const* label, GUID_t const* guid);
std::ostream& fileOut(std::ostream& os, char const* label, UnicodeString const& name);
std::ostream& fileOutOptional(std::ostream& os, char const* label, uint64_t value,
                              uint64_t omitValue);
std::ostream& fileOutW(std::ostream& os, char const* label, uint64_t value, uint64_t expected,
                       uint64_t warningBits);
std::ostream& fileOutW(std::ostream& os, uint64_t value, uint64_t expected,
                       uint64_t warningBits);
std::ostream& outputTime(std::ostream& os, long seconds, bool local);

// Status summary and the error/warning words.
std::ostream& operator<<(std::ostream& os, ZVP_Status_s const& status);
std::ostream& fileOut(std::ostream& os, uint64_t errors, uint64_t warnings);
std::ostream& displayErrors(std::ostream& os, uint64_t errors);
std::ostream& displayWarnings(std::ostream& os, uint64_t warnings);
std::ostream& displayWarnings2(std::ostream& os, uint64_t warnings);

// Object details and histograms.
std::ostream& operator<<(std::ostream& os, CommonBlockStats_s const& stats);
std::ostream& fileOutHeader(std::ostream& os, LevelInformation_s const& level);
std::ostream& fileOut(std::ostream& os, unsigned level, LevelInformation_s const& info);
std::ostream& fileOut(std::ostream& os, char const* label, LevelInformation_s const& info);
// The object-details block; `histograms` adds the level table.
std::ostream& writeObjectDetails(std::ostream& os, CommonBlockStats_s const& stats,
                                 bool histograms);

// The pool block and a volume block, with the object details and histograms
// the switches ask for (VerifyFile's display members forward to these).
std::ostream& writePool(std::ostream& os, ZVP_PoolStats_s const& pool, DisplaySwitches show);
std::ostream& writeVolume(std::ostream& os, ZVP_LVStats_s const& volume, DisplaySwitches show);
std::ostream& writeVolumeParts(std::ostream& os, BTStats_s const& bt, NTStats_s const& nt,
                               VDBStats_s const& vdb, UBTStats_s const& ubt,
                               DBTStats_s const& dbt, MFLStats_s const& mfl,
                               EFLStats_s const& efl, PLStats_s const& pl,
                               BTIStats_s const& bti, DisplaySwitches show);
// The object-details block when the switches ask for it.
std::ostream& writeObjectDetailsIf(std::ostream& os, CommonBlockStats_s const& stats,
                                   DisplaySwitches show);

// Variable-data lists.
std::ostream& variablePreHeader(std::ostream& os, char const* title, unsigned count);

std::ostream& variableHeaderZid(std::ostream& os);
std::ostream& variableHeaderZidBlock(std::ostream& os);
std::ostream& variableHeaderBlockBlock(std::ostream& os);
std::ostream& variableHeaderZidStatusStatusSetter(std::ostream& os);
std::ostream& variableHeaderBlockStatusStatusSetter(std::ostream& os);
std::ostream& variableHeaderNameStatusStatusSetter(std::ostream& os);
std::ostream& variableHeaderZidZidStatusStatusSetter(std::ostream& os, char const* title1,
                                                     char const* title2);
std::ostream& variableHeaderZidZidZidFileName(std::ostream& os, char const* title1,
                                              char const* title2, char const* title3);
std::ostream& variableHeaderZidZidNTNSMFileNameStatusStatusSetter(std::ostream& os);

std::ostream& variableDataZid(std::ostream& os, uint64_t zid);
std::ostream& variableDataZidBlock(std::ostream& os, uint64_t zid, uint64_t block);
std::ostream& variableDataBlockBlock(std::ostream& os, uint64_t startBlock, uint64_t endBlock);
std::ostream& variableDataZidStatusStatusSetter(std::ostream& os, uint64_t zid, int status,
                                                char const* sourceSetter);
std::ostream& variableDataBlockStatusStatusSetter(std::ostream& os, uint64_t block, int status,
                                                  char const* sourceSetter);
std::ostream& variableDataNameStatusStatusSetter(std::ostream& os, UnicodeString const& name,
                                                 int status, char const* sourceSetter);
std::ostream& variableDataZidZidStatusStatusSetter(std::ostream& os, uint64_t zid1,
                                                   uint64_t zid2, int status,
                                                   char const* sourceSetter);
// `fileName` is a zero-terminated UTF-16 string in host order.
std::ostream& variableDataZidZidZidFileName(std::ostream& os, uint64_t zid1, uint64_t zid2,
                                            uint64_t zid3, unsigned short const* fileName);
std::ostream& variableDataZidZidNTNSMFileNameStatusStatusSetter(
    std::ostream& os, uint64_t zid, uint64_t parentZid, unsigned short nameType,
    unsigned nameSpaceMask, unsigned short const* fileName, int status,
    char const* sourceSetter);

// The heading and the row of each list, by its record type (the record of a
// heading is not read): each is its list's column table at work.
std::ostream& variableHeader(std::ostream& os, CBSV_NextLeafInvalidList_s const* record);
std::ostream& variableData(std::ostream& os, CBSV_NextLeafInvalidList_s const* record);
std::ostream& variableHeader(std::ostream& os, CBSV_InvalidBlockList_s const* record);
std::ostream& variableData(std::ostream& os, CBSV_InvalidBlockList_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_BranchOutOfRangeZids_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_BranchOutOfRangeZids_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_UnreadableZid_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_UnreadableZid_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_BTZnotInNT_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_BTZnotInNT_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_BTZnotInPT_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_BTZnotInPT_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_DuplicateZidsB_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_DuplicateZidsB_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_DuplicateZidsL_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_DuplicateZidsL_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_OutOfRangeZids_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_OutOfRangeZids_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_BTBadNTFiles_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_BTBadNTFiles_s const* record);
std::ostream& variableHeader(std::ostream& os, BTDS_missingBeastParentEnts_s const* record);
std::ostream& variableData(std::ostream& os, BTDS_missingBeastParentEnts_s const* record);
std::ostream& variableHeader(std::ostream& os, NTDS_NTZnotInBT_s const* record);
std::ostream& variableData(std::ostream& os, NTDS_NTZnotInBT_s const* record);
std::ostream& variableHeader(std::ostream& os, STDS_STZnotInBT_s const* record);
std::ostream& variableData(std::ostream& os, STDS_STZnotInBT_s const* record);
std::ostream& variableHeader(std::ostream& os, STDS_STZnotInNT_s const* record);
std::ostream& variableData(std::ostream& os, STDS_STZnotInNT_s const* record);
std::ostream& variableHeader(std::ostream& os, STDS_STPZnotInBT_s const* record);
std::ostream& variableData(std::ostream& os, STDS_STPZnotInBT_s const* record);
std::ostream& variableHeader(std::ostream& os, STDS_STPZnotInNT_s const* record);
std::ostream& variableData(std::ostream& os, STDS_STPZnotInNT_s const* record);
std::ostream& variableHeader(std::ostream& os, STDS_unaccBlks_s const* record);
std::ostream& variableData(std::ostream& os, STDS_unaccBlks_s const* record);

// Action, conflict and skipped-volume rows and headings. A row has no line end.
std::ostream& fileOutHeader(std::ostream& os, RAV_Action_s const& record);
std::ostream& fileOutHeader(std::ostream& os, BlockConflicts_s const& record);
std::ostream& fileOutHeader(std::ostream& os, LVSkipped_s const& record);
std::ostream& fileOut(std::ostream& os, RAV_Action_s const& record);
std::ostream& fileOut(std::ostream& os, BlockConflicts_s const& record);
std::ostream& fileOut(std::ostream& os, LVSkipped_s const& record);
std::ostream& operator<<(std::ostream& os, RAV_Action_s const& record);
std::ostream& operator<<(std::ostream& os, BlockConflicts_s const& record);
std::ostream& operator<<(std::ostream& os, LVSkipped_s const& record);

// The action, conflict and skipped-volume lists.
std::ostream& operator<<(std::ostream& os, ActionStats const& list);
std::ostream& operator<<(std::ostream& os, ConflictBlocksStats const& list);
std::ostream& operator<<(std::ostream& os, LVSkippedStats const& list);
std::ostream& fileOut(std::ostream& os, ActionStats const& list);
std::ostream& fileOut(std::ostream& os, ConflictBlocksStats const& list);
std::ostream& fileOut(std::ostream& os, LVSkippedStats const& list);

#endif
