// logsiftSummary.h - a verify report or a rebuild log read for its summary:
// the driver's walks with the counting printers, nothing shown. What
// logsift-status prints and logsift-json --summary writes.
#ifndef UTIL_LOGSIFT_LOGSIFTSUMMARY_H
#define UTIL_LOGSIFT_LOGSIFTSUMMARY_H

#include "util/common_cpp/summaryPrinters.h"

#include <cstdint>
#include <string>

namespace LogsiftSummary {

// The reader's debug mask of the summaries, as logsift-json's documents.
constexpr unsigned DEBUG_MASK = 4;

struct Report {
    bool opened = false;
    unsigned status = 0;  // 0: read whole; else why not
    std::string failure;  // what the status means
    VerifySummary summary;
};

struct Log {
    bool opened = false;
    unsigned status = 0;    // 0: loaded and walked whole
    std::string failure;
    int64_t modified = -1;  // the file's modification time; the log holds none of its own
    RebuildSummary summary;
};

Report ReadReport(const std::string& path);
// Without names: the TOD items are counted as the log gives them.
Log ReadLog(const std::string& path);

} // namespace LogsiftSummary

#endif
