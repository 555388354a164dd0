// summaryPrinters.cpp - the counting printers.
#include "util/common_cpp/summaryPrinters.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/verifyFile.h"

#include <bitset>

namespace {

unsigned conditions(uint64_t word) { return static_cast<unsigned>(std::bitset<64>(word).count()); }

} // namespace

const char* VerifyVerdict(VerifySummary const& summary, unsigned status) {
    if (status != 0)
        return "damaged";
    if (!summary.statusRead)
        return "no data";
    if (summary.result != 0)
        return "incomplete";
    if (summary.errors != 0)
        return "errors";
    if (summary.warnings != 0)
        return "warnings";
    return "clean";
}

bool VerifyErrorsFound(VerifySummary const& summary) { return summary.errors != 0; }

VerifySummaryPrinter::VerifySummaryPrinter() = default;
VerifySummaryPrinter::~VerifySummaryPrinter() = default;

void VerifySummaryPrinter::Status(ZVP_Status_s const& status) {
    summary.statusRead = true;
    summary.startTime = status.verifyStartTime;
    summary.endTime = status.verifyEndTime;
    summary.finished = status.finalStatusValid != 0;
    summary.result = VerifyResults(status);
}

void VerifySummaryPrinter::Pool(ZVP_PoolStats_s const& pool) {
    summary.errors += conditions(pool.errors);
    summary.warnings += conditions(pool.warnings);
}

void VerifySummaryPrinter::Volume(ZVP_LVStats_s const& volume) {
    ++summary.volumes;
    summary.errors += conditions(volume.errors);
    summary.warnings += conditions(volume.warnings);
}

void VerifySummaryPrinter::Actions(ActionStats const&) {}
void VerifySummaryPrinter::Conflicts(ConflictBlocksStats const&) {}
void VerifySummaryPrinter::Skipped(LVSkippedStats const&) {}

void VerifySummaryPrinter::ListStart(VerifyFormat::ListType const&, uint32_t) {
    ++summary.problemLists;
}

void VerifySummaryPrinter::ListRow(VerifyFormat::ListType const&, unsigned char const*) {
    ++summary.problemRows;
}

void VerifySummaryPrinter::ListEnd(VerifyFormat::ListType const&) {}

RebuildSummaryPrinter::RebuildSummaryPrinter() = default;
RebuildSummaryPrinter::~RebuildSummaryPrinter() = default;

void RebuildSummaryPrinter::MessagesStart() {}

void RebuildSummaryPrinter::Message(MessageItem const&) { ++summary.messages; }

void RebuildSummaryPrinter::MessagesEnd(unsigned long, unsigned status, unsigned long) {
    summary.messageStatus = status;
}

void RebuildSummaryPrinter::IgnoredTODItem(TODItem const&) { ++summary.ignored; }

void RebuildSummaryPrinter::TODItemShown(TODItem const& item, NameLookup_s const*) {
    ++summary.todItems;
    if (item.Flag() & TODItem::FLAG_TRUNCATED)
        ++summary.truncated;
    if (item.Flag() & TODItem::FLAG_DELETED)
        ++summary.deleted;
}

// The summaries never ask for names.
bool RebuildSummaryPrinter::ChannelFailure(std::exception const&) { return true; }

void RebuildSummaryPrinter::TODItemsEnd(unsigned long, unsigned long, unsigned status,
                                        unsigned long) {
    summary.todStatus = status;
    summary.todWalkEnded = true;
}
