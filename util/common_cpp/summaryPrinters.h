// summaryPrinters.h - printers that show nothing and count: a verify
// report's verdict, its error and warning conditions and its problem rows,
// and a rebuild log's messages and what its rebuild truncated and deleted.
// They take the same records from the same readers as the text and the
// JSON, so a summary costs what reading costs.
#ifndef UTIL_COMMON_CPP_SUMMARYPRINTERS_H
#define UTIL_COMMON_CPP_SUMMARYPRINTERS_H

#include "util/common_cpp/rebuildPrinter.h"
#include "util/common_cpp/verifyPrinter.h"

#include <cstdint>

struct VerifySummary {
    bool statusRead = false;   // the status summary section was read
    uint32_t startTime = 0;    // of the verify, seconds since 1970
    uint32_t endTime = 0;
    bool finished = false;     // the final status is valid
    int result = 0;            // 0: the verify determined the pool's condition
    unsigned volumes = 0;
    unsigned errors = 0;       // error conditions named by the pool and its volumes
    unsigned warnings = 0;     // warning conditions, likewise
    unsigned long problemLists = 0;
    unsigned long problemRows = 0; // rows of the problem lists, as read
};

// Whether the report says errors were found (logsift-json's exit bit 4).
bool VerifyErrorsFound(VerifySummary const& summary);

class VerifySummaryPrinter : public VerifyPrinter {
public:
    VerifySummaryPrinter();
    ~VerifySummaryPrinter() override;

    void Status(ZVP_Status_s const& status) override;
    void Pool(ZVP_PoolStats_s const& pool) override;
    void Volume(ZVP_LVStats_s const& volume) override;
    void Actions(ActionStats const& list) override;
    void Conflicts(ConflictBlocksStats const& list) override;
    void Skipped(LVSkippedStats const& list) override;
    void ListStart(VerifyFormat::ListType const& type, uint32_t count) override;
    void ListRow(VerifyFormat::ListType const& type, unsigned char const* row) override;
    void ListEnd(VerifyFormat::ListType const& type) override;

    VerifySummary const& Summary() const { return summary; }

private:
    VerifySummary summary;
};

// The actions of TOD items, as many as TODItem names.
constexpr unsigned TOD_ACTIONS = 4;

// Hands every record to two printers: a document and its counts from one
// reading.
class VerifyTeePrinter : public VerifyPrinter {
public:
    VerifyTeePrinter(VerifyPrinter& first, VerifyPrinter& second);
    ~VerifyTeePrinter() override;

    void Status(ZVP_Status_s const& status) override;
    void Pool(ZVP_PoolStats_s const& pool) override;
    void Volume(ZVP_LVStats_s const& volume) override;
    void Actions(ActionStats const& list) override;
    void Conflicts(ConflictBlocksStats const& list) override;
    void Skipped(LVSkippedStats const& list) override;
    void ListStart(VerifyFormat::ListType const& type, uint32_t count) override;
    void ListRow(VerifyFormat::ListType const& type, unsigned char const* row) override;
    void ListEnd(VerifyFormat::ListType const& type) override;

private:
    VerifyPrinter& first;
    VerifyPrinter& second;
};

struct RebuildSummary {
    unsigned long messages = 0;
    unsigned messageStatus = 0; // 0, or the status that ended the message walk
    unsigned long todItems = 0; // shown (not ignored for their reason)
    unsigned long ignored = 0;
    unsigned long truncated = 0; // TOD items whose flag says truncated
    unsigned long deleted = 0;   // ... and deleted
    // The items shown, by the action the text names for each (TODItem::
    // Action): they add up to todItems.
    unsigned long actions[TOD_ACTIONS] = {};
    unsigned todStatus = 0;
    bool todWalkEnded = false;
};

class RebuildSummaryPrinter : public RebuildPrinter {
public:
    RebuildSummaryPrinter();
    ~RebuildSummaryPrinter() override;

    void MessagesStart() override;
    void Message(MessageItem const& item) override;
    void MessagesEnd(unsigned long found, unsigned status, unsigned long position) override;
    void IgnoredTODItem(TODItem const& item) override;
    void TODItemShown(TODItem const& item, NameLookup_s const* lookup) override;
    bool ChannelFailure(std::exception const& failure) override;
    void TODItemsEnd(unsigned long found, unsigned long ignored, unsigned status,
                     unsigned long position) override;

    RebuildSummary const& Summary() const { return summary; }

private:
    RebuildSummary summary;
};

#endif
