// rebuildJsonPrinter.h - the rebuild log as data: every message and TOD item
// that the viewer's walks hand over, field by field from the items' tables,
// with the answer of each name lookup.
#ifndef UTIL_COMMON_CPP_REBUILDJSONPRINTER_H
#define UTIL_COMMON_CPP_REBUILDJSONPRINTER_H

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/rebuildPrinter.h"
#include "util/support/jsonWriter.h"

#include <string>

// Writes members of the document object: "messages" and "message_walk",
// "tod_items" and "tod_walk"; the caller writes the rest.
class RebuildJsonPrinter : public RebuildPrinter {
public:
    // How a walk ended, as its "ended_by" member says.
    static constexpr char const* END_OF_LIST = "end_of_list";
    static constexpr char const* DAMAGED_ITEM = "damaged_item";
    static constexpr char const* NO_CHANNEL = "no_channel";
    static constexpr char const* OUT_OF_MEMORY = "out_of_memory";
    static constexpr char const* FAILURE = "failure";
    // The walk reached the end of what a log still being written holds.
    static constexpr char const* END_OF_TEXT = "end_of_text";
    // A lookup's outcome when no channel could be had for the names.
    static constexpr char const* NOT_ASKED = "not_asked";

    // Its members go into the object open in `json` now.
    explicit RebuildJsonPrinter(QVS::JsonWriter& json);
    ~RebuildJsonPrinter() override;

    void MessagesStart() override;
    void Message(MessageItem const& item) override;
    void MessagesEnd(unsigned long found, unsigned status, unsigned long position) override;
    void IgnoredTODItem(TODItem const& item) override;
    void TODItemShown(TODItem const& item, NameLookup_s const* lookup) override;
    // Unless memory ran out, goes on: every item is listed, each with the
    // failure in place of its lookup, and "lookup_failure" says it once.
    bool ChannelFailure(std::exception const& failure) override;
    void TODItemsEnd(unsigned long found, unsigned long ignored, unsigned status,
                     unsigned long position) override;
    void EndOfWrittenText(unsigned long textEnd) override;

    // Ends what the walks left open ("tod_items" after a channel failure,
    // with its walk summary) and writes the empty lists of walks that never
    // began (a log that could not be loaded).
    void Close();
    // After an exception out of a walk (`status` 20000 when memory ran
    // out): closes what was open in the document, ends the open walk with
    // that status, and then as Close.
    void Abandon(unsigned status, std::string const& what);

    // What the walks saw, for the document's totals and error.
    unsigned long Messages() const { return messages; }
    unsigned long TODItems() const { return todItems; }
    unsigned long Ignored() const { return ignored; }
    // The first status that ended a walk (0 when both ended at their list's
    // end), where that walk's last step began, and what happened.
    unsigned Status() const { return status; }
    // -1 when the walk did not stop at a place in the log (a channel failure).
    long long Position() const { return hasPosition ? static_cast<long long>(position) : -1; }
    std::string const& Failure() const { return failure; }

private:
    enum class Walk { NOT_BEGUN, OPEN, ENDED };

    void WriteTODItem(TODItem const& item, bool isIgnored, NameLookup_s const* lookup);
    void BeginTODItems();
    void EndMessages(unsigned long found, unsigned walkStatus, char const* endedBy);
    // How a walk that ended with `walkStatus` ended, and its "text_end".
    char const* EndedBy(unsigned walkStatus) const;
    void TextEnd();
    // Closes the TOD item list and writes its walk's counts and status.
    void EndTODItems(unsigned long found, unsigned long ignoredItems, unsigned walkStatus,
                     char const* endedBy);
    // Keeps the first status that ended a walk, with where and why.
    void Stopped(unsigned walkStatus, bool atPosition, unsigned long walkPosition,
                 std::string const& what);

    QVS::JsonWriter& json;
    // The depth of the document object the members go into.
    const std::size_t depth;
    Walk messageWalk = Walk::NOT_BEGUN;
    Walk todWalk = Walk::NOT_BEGUN;
    // The status of a channel failure, and what it was: the walk goes on
    // without names, unless memory ran out (which stops it at once).
    unsigned channelStatus = 0;
    std::string channelFailure;
    unsigned long messages = 0;
    unsigned long todItems = 0;
    unsigned long ignored = 0;
    unsigned status = 0;
    unsigned long position = 0;
    bool hasPosition = false;
    std::string failure;
    // Said by the walk that ends next: it reached the end of the text there.
    bool atTextEnd = false;
    unsigned long textEnd = 0;
};

namespace RebuildJson {
// Writes one action item as a one-line object of the members its table
// names.
void WriteActionItem(QVS::JsonWriter& json, ActionItem const& item);
} // namespace RebuildJson

#endif
