// summaryPrinters.cpp - the counting printers.
#include "util/common_cpp/summaryPrinters.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/verifyFile.h"

#include <bitset>

namespace {

unsigned conditions(uint64_t word) { return static_cast<unsigned>(std::bitset<64>(word).count()); }

} // namespace

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

VerifyTeePrinter::VerifyTeePrinter(VerifyPrinter& a, VerifyPrinter& b) : first(a), second(b) {}
VerifyTeePrinter::~VerifyTeePrinter() = default;

void VerifyTeePrinter::Status(ZVP_Status_s const& status) {
    first.Status(status);
    second.Status(status);
}
void VerifyTeePrinter::Pool(ZVP_PoolStats_s const& pool) {
    first.Pool(pool);
    second.Pool(pool);
}
void VerifyTeePrinter::Volume(ZVP_LVStats_s const& volume) {
    first.Volume(volume);
    second.Volume(volume);
}
void VerifyTeePrinter::Actions(ActionStats const& list) {
    first.Actions(list);
    second.Actions(list);
}
void VerifyTeePrinter::Conflicts(ConflictBlocksStats const& list) {
    first.Conflicts(list);
    second.Conflicts(list);
}
void VerifyTeePrinter::Skipped(LVSkippedStats const& list) {
    first.Skipped(list);
    second.Skipped(list);
}
void VerifyTeePrinter::ListStart(VerifyFormat::ListType const& type, uint32_t count) {
    first.ListStart(type, count);
    second.ListStart(type, count);
}
void VerifyTeePrinter::ListRow(VerifyFormat::ListType const& type, unsigned char const* row) {
    first.ListRow(type, row);
    second.ListRow(type, row);
}
void VerifyTeePrinter::ListEnd(VerifyFormat::ListType const& type) {
    first.ListEnd(type);
    second.ListEnd(type);
}

static_assert(TOD_ACTIONS == TODItem::ACTION_COUNT, "a count for each action");

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
    ++summary.actions[item.GetAction()];
}

// The summaries never ask for names.
bool RebuildSummaryPrinter::ChannelFailure(std::exception const&) { return true; }

void RebuildSummaryPrinter::TODItemsEnd(unsigned long, unsigned long, unsigned status,
                                        unsigned long) {
    summary.todStatus = status;
    summary.todWalkEnded = true;
}
