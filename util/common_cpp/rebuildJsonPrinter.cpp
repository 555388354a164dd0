// rebuildJsonPrinter.cpp - the rebuild log as JSON.
#include "util/common_cpp/rebuildJsonPrinter.h"

#include "util/common_cpp/jsonFields.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/support/memoryReserve.h"
#include "util/support/qvsStatus.h"

#include <new>

#include <string>

namespace {

using QVS::JsonWriter;
using namespace FieldKinds;
using JsonFields::writeField;
using Keys = JsonFields::MemberKeys;

const char* const SEVERITY_NAMES[] = {nullptr, "warning", "info", "error", "fatal",
                                      "action_required"};

// The writers of the kinds only rebuild log items have.
template <typename Out>
QVS_INLINE void writeField(Out& json, Keys const& k, std::string const& value, Text) {
    json.QuotedKey(k.key);
    json.String(value);
}

template <typename Out> QVS_INLINE void writeField(Out& json, Keys const& k, unsigned value, Severity) {
    json.QuotedKey(k.key);
    json.Unsigned(value);
    json.QuotedKey(k.name);
    if (value < sizeof SEVERITY_NAMES / sizeof SEVERITY_NAMES[0] && SEVERITY_NAMES[value])
        json.String(SEVERITY_NAMES[value]);
    else
        json.Null();
}

template <typename Out>
QVS_INLINE void writeField(Out& json, Keys const& k, unsigned value, NameSpace) {
    JsonFields::Quantity(json, k.key, k.twin, value);
    json.QuotedKey(k.separator);
    json.String(RebuildFile::NameSpaceSeparator(value));
}

// Each expansion is a block of its own, so each field has its own names.
#define ITEM_JSON_FIELD(accessor, kind, name)                                                   \
    {                                                                                           \
        static const Keys keys(name);                                                           \
        writeField(json, keys, item.accessor(), kind{});                                        \
    }

// A message: one row, written in place (a log holds millions).
void writeMessage(JsonWriter& writer, MessageItem const& item) {
    JsonWriter::Row json(writer);
    MESSAGE_ITEM_FIELDS(ITEM_JSON_FIELD)
    json.End();
}
} // namespace

void RebuildJson::WriteActionItem(JsonWriter& writer, ActionItem const& item) {
    JsonWriter::Row json(writer);
    ACTION_ITEM_FIELDS(ITEM_JSON_FIELD)
    json.End();
}

RebuildJsonPrinter::RebuildJsonPrinter(JsonWriter& writer) : json(writer), depth(writer.Depth()) {}

RebuildJsonPrinter::~RebuildJsonPrinter() = default;

void RebuildJsonPrinter::MessagesStart() {
    json.Key("messages");
    json.BeginArray();
    messageWalk = Walk::OPEN;
}

void RebuildJsonPrinter::Message(MessageItem const& item) {
    // Between two rows: where the work can stop with the document whole.
    QVS::MemoryReserve::Check();
    ++messages;
    writeMessage(json, item);
}

void RebuildJsonPrinter::Stopped(unsigned walkStatus, bool atPosition,
                                 unsigned long walkPosition, std::string const& what) {
    if (walkStatus == 0 || status != 0)
        return;
    status = walkStatus;
    position = walkPosition;
    hasPosition = atPosition;
    failure = what;
}

void RebuildJsonPrinter::MessagesEnd(unsigned long found, unsigned walkStatus,
                                     unsigned long walkPosition) {
    EndMessages(found, walkStatus, EndedBy(walkStatus));
    Stopped(walkStatus, true, walkPosition, "the message walk stopped at a damaged item");
}

void RebuildJsonPrinter::EndOfWrittenText(unsigned long end) {
    atTextEnd = true;
    textEnd = end;
}

char const* RebuildJsonPrinter::EndedBy(unsigned walkStatus) const {
    if (walkStatus != 0)
        return DAMAGED_ITEM;
    return atTextEnd ? END_OF_TEXT : END_OF_LIST;
}

// Where the text ends, for a walk that ended there.
void RebuildJsonPrinter::TextEnd() {
    if (atTextEnd)
        json.Quantity("text_end", textEnd);
    atTextEnd = false;
}

void RebuildJsonPrinter::EndMessages(unsigned long found, unsigned walkStatus,
                                     char const* endedBy) {
    // An array the document's CloseTo has ended already is not ended again.
    if (json.Depth() > depth)
        json.EndArray();
    messageWalk = Walk::ENDED;
    json.Key("message_walk");
    json.BeginObject(true);
    json.Quantity("count", found);
    json.Member("ended_by", endedBy);
    JsonFields::StatusMember(json, "status", walkStatus);
    TextEnd();
    json.EndObject();
}

void RebuildJsonPrinter::BeginTODItems() {
    json.Key("tod_items");
    json.BeginArray();
    todWalk = Walk::OPEN;
}

void RebuildJsonPrinter::WriteTODItem(TODItem const& item, bool isIgnored,
                                      NameLookup_s const* lookup) {
    QVS::MemoryReserve::Check();
    if (todWalk == Walk::NOT_BEGUN)
        BeginTODItems();
    ++todItems;
    json.BeginObject(true);
    TOD_ITEM_FIELDS(ITEM_JSON_FIELD)
    json.Member("named", item.IsNamed());
    json.Quantity("action", item.Flag() & (TODItem::FLAG_TRUNCATED | TODItem::FLAG_DELETED |
                                           TODItem::FLAG_TRUSTEES_TRUNCATED));
    json.Member("action_name", item.GetActionName());
    json.Quantity("reason", item.GetReason());
    json.Member("reason_name", item.GetReasonName());
    json.Member("ignored", isIgnored);
    json.Key("lookup");
    if (lookup == nullptr && channelStatus != 0 && !isIgnored) {
        // Names were to be asked and could not be.
        json.BeginObject(true);
        json.Member("outcome", NOT_ASKED);
        json.MemberSigned("code", 0);
        JsonFields::StatusMember(json, "status", channelStatus);
        json.Member("retried_as_name_type_0", false);
        json.Member("message", channelFailure);
        json.EndObject();
    } else if (lookup == nullptr) {
        json.Null();
    } else {
        json.BeginObject(true);
        char const* outcome = "found";
        if (lookup->code != 0)
            outcome = "call_failed";
        else if (lookup->detail == static_cast<int>(QVS::zERR_VOLUME_NOT_FOUND))
            outcome = "volume_not_found";
        else if (lookup->detail == static_cast<int>(QVS::zERR_VOLUME_NOT_IN_ACTIVE_STATE))
            outcome = "volume_not_active";
        else if (lookup->detail != 0)
            outcome = "failed";
        json.Member("outcome", outcome);
        json.MemberSigned("code", lookup->code);
        JsonFields::StatusMember(json, "status", lookup->detail);
        json.Member("retried_as_name_type_0", lookup->retried);
        if (lookup->code == 0 && lookup->detail == 0) {
            json.Member("volume_name", lookup->volumeName);
            json.Member("path", lookup->path);
        }
        json.EndObject();
    }
    json.EndObject();
}

void RebuildJsonPrinter::IgnoredTODItem(TODItem const& item) {
    ++ignored;
    WriteTODItem(item, true, nullptr);
}

void RebuildJsonPrinter::TODItemShown(TODItem const& item, NameLookup_s const* lookup) {
    WriteTODItem(item, false, lookup);
}

bool RebuildJsonPrinter::ChannelFailure(std::exception const& e) {
    const bool outOfMemory = dynamic_cast<std::bad_alloc const*>(&e) != nullptr;
    channelStatus = outOfMemory ? QVS::zERR_NO_MEMORY : QVS::zERR_BAD_PARAMETER_VALUE;
    channelFailure = std::string("Unable to create VFSManageCmd: ") + e.what();
    Stopped(channelStatus, false, 0, channelFailure);
    // Without memory the walk stops; without a channel the items are still
    // listed, so that no object the rebuild touched goes missing.
    return !outOfMemory;
}

void RebuildJsonPrinter::TODItemsEnd(unsigned long found, unsigned long ignoredItems,
                                     unsigned walkStatus, unsigned long walkPosition) {
    EndTODItems(found, ignoredItems, walkStatus, EndedBy(walkStatus));
    Stopped(walkStatus, true, walkPosition, "the TOD walk stopped at a damaged item");
}

void RebuildJsonPrinter::Close() {
    if (messageWalk == Walk::NOT_BEGUN) {
        json.Key("messages");
        json.BeginArray();
        json.EndArray();
        messageWalk = Walk::ENDED;
    }
    if (todWalk == Walk::ENDED)
        return;
    if (channelStatus != 0) {
        // The walk stopped at once: its status is the channel's.
        EndTODItems(todItems, ignored, channelStatus,
                    channelStatus == QVS::zERR_NO_MEMORY ? OUT_OF_MEMORY : NO_CHANNEL);
        return;
    }
    if (todWalk == Walk::NOT_BEGUN) {
        json.Key("tod_items");
        json.BeginArray();
        json.EndArray();
        todWalk = Walk::ENDED;
    }
}

void RebuildJsonPrinter::Abandon(unsigned abandonStatus, std::string const& what) {
    json.CloseTo(depth);
    char const* endedBy = abandonStatus == QVS::zERR_NO_MEMORY ? OUT_OF_MEMORY : FAILURE;
    if (messageWalk == Walk::OPEN)
        EndMessages(messages, abandonStatus, endedBy);
    else if (todWalk == Walk::OPEN)
        EndTODItems(todItems, ignored, abandonStatus, endedBy);
    Stopped(abandonStatus, false, 0, what);
    Close();
}

void RebuildJsonPrinter::EndTODItems(unsigned long found, unsigned long ignoredItems,
                                     unsigned walkStatus, char const* endedBy) {
    if (todWalk == Walk::NOT_BEGUN)
        BeginTODItems();
    if (json.Depth() > depth)
        json.EndArray();
    todWalk = Walk::ENDED;
    json.Key("tod_walk");
    json.BeginObject(true);
    json.Quantity("count", found);
    json.Quantity("ignored", ignoredItems);
    // Whether the walk came to its end call at all: a damaged item ends it
    // as well as the list's end does; "ended_by" tells them apart.
    json.Member("complete", endedBy == END_OF_LIST || endedBy == DAMAGED_ITEM ||
                                endedBy == END_OF_TEXT);
    json.Member("ended_by", endedBy);
    JsonFields::StatusMember(json, "status", walkStatus);
    TextEnd();
    json.EndObject();
    if (channelStatus != 0 && channelStatus != QVS::zERR_NO_MEMORY) {
        // Why no name was asked, once for the document.
        json.Key("lookup_failure");
        json.BeginObject(true);
        JsonFields::StatusMember(json, "status", channelStatus);
        json.Member("message", channelFailure);
        json.EndObject();
    }
}
