// verifyPrinter.h - where the verify reader hands what it has read: each
// section's record or list, as the section is read. The text printer is the
// report of the renderers (verifyFileOutput); a printer of data, such as the
// JSON printer, receives the same records from the same reading.
#ifndef UTIL_COMMON_CPP_VERIFYPRINTER_H
#define UTIL_COMMON_CPP_VERIFYPRINTER_H

#include "util/common_cpp/verifyFileRecords.h"

#include <cstdint>
#include <ostream>

class VerifyFile;
class ActionStats;
class ConflictBlocksStats;
class LVSkippedStats;

// The seventeen variable-data records, X(record), in the order of their
// section tags.
#define VF_VARIABLE_RECORDS(X)                                                                  \
    X(CBSV_NextLeafInvalidList_s)                                                               \
    X(CBSV_InvalidBlockList_s)                                                                  \
    X(BTDS_BranchOutOfRangeZids_s)                                                              \
    X(BTDS_UnreadableZid_s)                                                                     \
    X(BTDS_BTZnotInNT_s)                                                                        \
    X(BTDS_BTZnotInPT_s)                                                                        \
    X(BTDS_DuplicateZidsB_s)                                                                    \
    X(BTDS_DuplicateZidsL_s)                                                                    \
    X(BTDS_OutOfRangeZids_s)                                                                    \
    X(BTDS_BTBadNTFiles_s)                                                                      \
    X(BTDS_missingBeastParentEnts_s)                                                            \
    X(NTDS_NTZnotInBT_s)                                                                        \
    X(STDS_STZnotInBT_s)                                                                        \
    X(STDS_STZnotInNT_s)                                                                        \
    X(STDS_STPZnotInBT_s)                                                                       \
    X(STDS_STPZnotInNT_s)                                                                       \
    X(STDS_unaccBlks_s)

class VerifyPrinter {
public:
    virtual ~VerifyPrinter();

    virtual void Status(ZVP_Status_s const& status) = 0;
    virtual void Pool(ZVP_PoolStats_s const& pool) = 0;
    virtual void Volume(ZVP_LVStats_s const& volume) = 0;
    virtual void Actions(ActionStats const& list) = 0;
    virtual void Conflicts(ConflictBlocksStats const& list) = 0;
    virtual void Skipped(LVSkippedStats const& list) = 0;
    // A variable-data list: its start (its title and the count its section
    // gives, which may be 0), each row as it is read, and its end when every
    // row was read.
#define VF_PRINTER_LIST_METHODS(Record)                                                         \
    virtual void ListStart(char const* title, uint32_t count, Record const* none) = 0;          \
    virtual void ListRow(Record const& row) = 0;
    VF_VARIABLE_RECORDS(VF_PRINTER_LIST_METHODS)
#undef VF_PRINTER_LIST_METHODS
    virtual void ListEnd() = 0;
};

// The report as text: each record through its renderer, as the design has
// the reader print it. The switches are those of the reader.
class VerifyTextPrinter : public VerifyPrinter {
public:
    explicit VerifyTextPrinter(VerifyFile& file);
    ~VerifyTextPrinter() override;

    void Status(ZVP_Status_s const& status) override;
    void Pool(ZVP_PoolStats_s const& pool) override;
    void Volume(ZVP_LVStats_s const& volume) override;
    void Actions(ActionStats const& list) override;
    void Conflicts(ConflictBlocksStats const& list) override;
    void Skipped(LVSkippedStats const& list) override;
#define VF_TEXT_LIST_METHODS(Record)                                                            \
    void ListStart(char const* title, uint32_t count, Record const* none) override;             \
    void ListRow(Record const& row) override;
    VF_VARIABLE_RECORDS(VF_TEXT_LIST_METHODS)
#undef VF_TEXT_LIST_METHODS
    void ListEnd() override;

private:
    VerifyFile& file;
    // An empty list shows nothing at all, not even its end.
    bool listShown = false;
};

#endif
