// logsiftSummary.h - a verify report or a rebuild log read for its summary:
// the driver's walks with the counting printers, nothing shown. What
// logsift-status prints and logsift-json --summary writes.
#ifndef UTIL_LOGSIFT_LOGSIFTSUMMARY_H
#define UTIL_LOGSIFT_LOGSIFTSUMMARY_H

#include "util/common_cpp/summaryPrinters.h"
#include "util/logsift/logsiftDriver.h"

#include <cstdint>
#include <string>

namespace LogsiftSummary {

// The reader's debug mask of the summaries, as logsift-json's documents.
constexpr unsigned DEBUG_MASK = 4;

struct Report {
    bool opened = false;
    unsigned status = 0;  // 0: read whole and its CRC matches; else why not
    std::string failure;  // what the status means
    bool crcKnown = false;   // the CRC could be computed (the file was read to its end)
    bool crcMatches = false;
    bool sized = false;      // a regular file was opened: its size is known
    uint64_t size = 0;       // of the file read, when it was opened
    VerifySummary summary;
};

struct Log {
    bool opened = false;
    unsigned status = 0;    // 0: loaded and walked whole
    std::string failure;
    int64_t modified = -1;  // the file's modification time; the log holds none of its own
    bool sized = false;
    uint64_t size = 0;
    RebuildSummary summary;
};

Report ReadReport(const LogsiftDriver::Source& source);
// Without names: the TOD items are counted as the log gives them.
Log ReadLog(const LogsiftDriver::Source& source);

} // namespace LogsiftSummary

#endif
