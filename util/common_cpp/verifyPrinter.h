// verifyPrinter.h - where the verify reader hands what it has read: each
// section's record or list, as the section is read. The text printer
// (verifyTextPrinter) is the report of the renderers; a printer of data, such
// as the JSON printer, receives the same records from the same reading.
#ifndef UTIL_COMMON_CPP_VERIFYPRINTER_H
#define UTIL_COMMON_CPP_VERIFYPRINTER_H

#include "util/common_cpp/verifyFileRecords.h"

#include <cstdint>

class ActionStats;
class ConflictBlocksStats;
class LVSkippedStats;

// What the text shows besides what every report shows (the command line's
// -a, -H and -o).
struct DisplaySwitches {
    bool actions;
    bool histograms;
    bool objectDetails;
};

class VerifyPrinter {
public:
    virtual ~VerifyPrinter();

    virtual void Status(ZVP_Status_s const& status) = 0;
    virtual void Pool(ZVP_PoolStats_s const& pool) = 0;
    virtual void Volume(ZVP_LVStats_s const& volume) = 0;
    // The lists the reader holds whole.
    virtual void Actions(ActionStats const& list) = 0;
    virtual void Conflicts(ConflictBlocksStats const& list) = 0;
    virtual void Skipped(LVSkippedStats const& list) = 0;
    // A variable-data list: its start with the count its section gives
    // (which may be 0), each row as it is read (the bytes of one record of
    // `type`), and its end once every row was read.
    virtual void ListStart(VerifyFormat::ListType const& type, uint32_t count) = 0;
    virtual void ListRow(VerifyFormat::ListType const& type, unsigned char const* row) = 0;
    virtual void ListEnd(VerifyFormat::ListType const& type) = 0;
};

#endif
