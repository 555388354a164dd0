// verifyFileOutput.h - text writers of the verify report: dotted lines, the
// status summary, histograms and the row writers of every record list.
#ifndef UTIL_COMMON_CPP_VERIFYFILEOUTPUT_H
#define UTIL_COMMON_CPP_VERIFYFILEOUTPUT_H

#include "util/common_cpp/verifyFileRecords.h"
#include "util/support/qvsLib.h"

#include <cstdint>
#include <ostream>

// Placeholders printed when a record's name cannot be converted.
extern const UnicodeString VFF_PoolName;
extern const UnicodeString VFF_VolumeName;
extern const UnicodeString VFF_FileName;

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
// The text of one bit (0 to 32) of an error or a warning word, as the report
// shows it; null for a bit the report never shows.
char const* ErrorTypeText(unsigned bit);
char const* WarningTypeText(unsigned bit);

// Object details and histograms.
std::ostream& operator<<(std::ostream& os, CommonBlockStats_s const& stats);
std::ostream& fileOutHeader(std::ostream& os, LevelInformation_s const& level);
std::ostream& fileOut(std::ostream& os, unsigned level, LevelInformation_s const& info);
std::ostream& fileOut(std::ostream& os, char const* label, LevelInformation_s const& info);
// The object-details block; `histograms` adds the level table.
std::ostream& writeObjectDetails(std::ostream& os, CommonBlockStats_s const& stats,
                                 bool histograms);

// Variable-data lists.
char const* nTypeName(unsigned nameType);
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

#define VF_DECLARE_VARIABLE_WRITERS(R)                                                         \
    std::ostream& variableHeader(std::ostream& os, R const* record);                            \
    std::ostream& variableData(std::ostream& os, R const* record)

VF_DECLARE_VARIABLE_WRITERS(CBSV_NextLeafInvalidList_s);
VF_DECLARE_VARIABLE_WRITERS(CBSV_InvalidBlockList_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_BranchOutOfRangeZids_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_UnreadableZid_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_BTZnotInNT_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_BTZnotInPT_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_DuplicateZidsB_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_DuplicateZidsL_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_OutOfRangeZids_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_BTBadNTFiles_s);
VF_DECLARE_VARIABLE_WRITERS(BTDS_missingBeastParentEnts_s);
VF_DECLARE_VARIABLE_WRITERS(NTDS_NTZnotInBT_s);
VF_DECLARE_VARIABLE_WRITERS(STDS_STZnotInBT_s);
VF_DECLARE_VARIABLE_WRITERS(STDS_STZnotInNT_s);
VF_DECLARE_VARIABLE_WRITERS(STDS_STPZnotInBT_s);
VF_DECLARE_VARIABLE_WRITERS(STDS_STPZnotInNT_s);
VF_DECLARE_VARIABLE_WRITERS(STDS_unaccBlks_s);

#undef VF_DECLARE_VARIABLE_WRITERS

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

#endif
