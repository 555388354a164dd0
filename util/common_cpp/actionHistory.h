// actionHistory.h - rebuild log tag scanning and its items: TOD (truncated or
// deleted object) items, message items, action items and the action history,
// plus the finders that locate debug and I/O items by key.
#ifndef UTIL_COMMON_CPP_ACTIONHISTORY_H
#define UTIL_COMMON_CPP_ACTIONHISTORY_H

#include "util/common_cpp/fieldKinds.h"
#include "util/support/qvsGuid.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

// Item tags of the log, each with its closing ">".
extern const char* const ACTION_ITEM_TAG;  // "<actionItem>"
extern const char* const MESSAGE_ITEM_TAG; // "<messageItem>"
extern const char* const TOD_ITEM_TAG;     // "<todItem>"
extern const char* const DEBUG_ITEM_TAG;   // "<debugItem>"
extern const char* const IO_ITEM_TAG;      // "<ioItem>"

// The text between an opening tag and its closing tag, CDATA unwrapped. A tag
// without ">" is an open prefix ("<info") whose attributes are skipped.
// Returns 0, 20163 (no opening tag) or 20162 (no closing tag); `contents` and
// `*endPos` (just after the closing tag) are written only on success.
unsigned GetTagContents(const std::string& text, const std::string& tag, std::string& contents,
                        unsigned long start, unsigned long* endPos);

// The text from the opening tag through the closing tag, matched exactly.
unsigned GetTagContentsInclusive(const std::string& text, const std::string& tag,
                                 std::string& contents, unsigned long start,
                                 unsigned long* endPos);

// GetTagContentsInclusive without the copy: `*first` is the position of the
// opening tag and `*endPos` the position just after the closing tag.
unsigned LocateTagInclusive(std::string_view text, const std::string& tag, unsigned long start,
                            unsigned long* first, unsigned long* endPos);

// GetTagContents without the copy: the contents are [*first, *last) of
// `text` (CDATA unwrapped likewise) and `*endPos` is just after the closing
// tag.
unsigned LocateTagContents(std::string_view text, const std::string& tag, unsigned long start,
                           unsigned long* first, unsigned long* last, unsigned long* endPos);

// An object that the rebuild truncated or deleted.
class TODItem {
public:
    // Bits of `flag`.
    static constexpr unsigned long long REASON_MASK = 0xFF;
    static constexpr unsigned long long FLAG_TRUNCATED = 0x100;
    static constexpr unsigned long long FLAG_DELETED = 0x200;
    static constexpr unsigned long long FLAG_TRUSTEES_TRUNCATED = 0x400;
    static constexpr unsigned long long FLAG_NAMED = 0x8000;
    // Reason code of the items the viewer ignores ("Visibility cleanup").
    static constexpr unsigned REASON_VISIBILITY_CLEANUP = 6;

    // The action the text names for an item, by the first of its flag's
    // bits that is set: truncated, deleted, trustees truncated; else
    // unknown. ACTION_NAMES holds their names as the text shows them.
    enum Action : unsigned { ACTION_TRUNCATED, ACTION_DELETED, ACTION_TRUSTEES_TRUNCATED,
                             ACTION_UNKNOWN, ACTION_COUNT };
    static const char* const ACTION_NAMES[ACTION_COUNT];

    TODItem();

    unsigned GetTODItem(const std::string& itemText);
    Action GetAction() const;
    const char* GetActionName() const;
    unsigned GetReason() const;
    const char* GetReasonName() const;
    bool IsNamed() const;

    static unsigned FindTODItemTag(const std::string& text, unsigned long long key,
                                   std::string& itemText);
    static unsigned FindTODItemTag(const std::string& text, std::string& itemText);
    // Parses the next item at or after `start` into this object; `endPos` is
    // set just after it. 21768 when there is no further item.
    unsigned FindTODItemTagAll(const std::string& text, unsigned long start,
                               unsigned long& endPos);

    unsigned long long Key() const { return key; }
    unsigned long long PZid() const { return pZid; }
    unsigned long long Zid() const { return zid; }
    unsigned long long Flag() const { return flag; }
    unsigned NameSpace() const { return nameSpace; }
    unsigned NameType() const { return nameType; }
    const GUID_t& VolumeID() const { return volumeID; }
    const std::string& FileName() const { return fileName; }

    friend std::ostream& operator<<(std::ostream& os, const TODItem& item);

private:
    // GetTODItem over an item where it stands, in a walk inside the log.
    unsigned ParseTODItem(std::string_view item);

    unsigned long long key;
    unsigned long long pZid;
    unsigned long long zid;
    unsigned long long flag;
    unsigned nameSpace;
    unsigned nameType;
    GUID_t volumeID;
    std::string fileName;
};

// One message of the rebuild with its severity.
class MessageItem {
public:
    enum SeverityCode : unsigned {
        SEVERITY_NONE = 0,
        SEVERITY_WARNING = 1,
        SEVERITY_INFO = 2,
        SEVERITY_ERROR = 3,
        SEVERITY_FATAL = 4,
        SEVERITY_ACTION_REQUIRED = 5,
    };

    MessageItem();

    unsigned GetMessageItem(const std::string& itemText);

    static unsigned FindMessageItemTag(const std::string& text, unsigned long long key,
                                       std::string& itemText);
    static unsigned FindMessageItemTag(const std::string& text, std::string& itemText);
    unsigned FindMessageItemTagAll(const std::string& text, unsigned long start,
                                   unsigned long& endPos);

    unsigned long long Key() const { return key; }
    unsigned Severity() const { return severity; }
    const std::string& Title() const { return title; }
    const std::string& Text() const { return text; }

    friend std::ostream& operator<<(std::ostream& os, const MessageItem& item);

private:
    // GetMessageItem over an item where it stands, in a walk inside the log.
    unsigned ParseMessageItem(std::string_view item);

    unsigned long long key;
    unsigned severity;
    std::string title; // never filled from the log
    std::string text;
};

// One action of the rebuild with its times and counts.
class ActionItem {
public:
    ActionItem();
    ActionItem(unsigned long long key, const std::string& objectName,
               const std::string& subObjectName, const std::string& description,
               unsigned isPool, unsigned startUTC, unsigned long long startCount,
               unsigned endUTC, unsigned long long endCount);

    // Stores the values; 20000 when memory runs out, else 0.
    unsigned Set(unsigned long long key, const std::string& objectName,
                 const std::string& subObjectName, const std::string& description,
                 unsigned isPool, unsigned startUTC, unsigned long long startCount,
                 unsigned endUTC, unsigned long long endCount);

    unsigned GetActionItem(const std::string& itemText);
    // Parses the contents of "<actionCurrent>" as an action item.
    unsigned GetActionCurrent(const std::string& text);

    // Walks the action items, parsing each into this object, until one has
    // `key`; the object keeps the last item parsed.
    unsigned FindActionItemTag(const std::string& text, unsigned long long key,
                               std::string& itemText);
    static unsigned FindActionItemTag(const std::string& text, std::string& itemText);

    const std::string& ObjectName() const { return objectName; }
    const std::string& SubObjectName() const { return subObjectName; }
    const std::string& Description() const { return description; }
    unsigned IsPool() const { return isPool; }
    unsigned StartUTC() const { return startUTC; }
    unsigned EndUTC() const { return endUTC; }
    unsigned long long StartCount() const { return startCount; }
    unsigned long long EndCount() const { return endCount; }
    unsigned long long Key() const { return key; }

    friend std::ostream& operator<<(std::ostream& os, const ActionItem& item);

private:
    std::string objectName;
    std::string subObjectName;
    std::string description;
    unsigned isPool;
    unsigned startUTC;
    unsigned endUTC;
    unsigned long long startCount;
    unsigned long long endCount;
    unsigned long long key;
};

// How each item's fields are shown as data (the JSON printer): one table per
// item kind, F(accessor, kind, member name), the member name being the same
// for the same field in every kind of file (a verify report's records too),
// the kind one of FieldKinds. Lists of macro calls, in the manner of a .def
// file: each use expands them into straight-line code with a static of its
// own per field (the JSON member names, made once); a template walking a
// tuple of such entries would share one static among fields of one type.

#define TOD_ITEM_FIELDS(F)                                                                      \
    F(Key, Key, "key") F(Zid, Id, "zid") F(PZid, Id, "parent_zid") F(Flag, Quantity, "flag")    \
    F(NameSpace, NameSpace, "name_space") F(NameType, NameType, "name_type")                    \
    F(VolumeID, Guid, "volume_id") F(FileName, Text, "file_name")
#define MESSAGE_ITEM_FIELDS(F)                                                                  \
    F(Key, Key, "key") F(Severity, Severity, "severity") F(Text, Text, "text")
#define ACTION_ITEM_FIELDS(F)                                                                   \
    F(Key, Key, "key") F(ObjectName, Text, "object_name")                                       \
    F(SubObjectName, Text, "sub_object_name") F(Description, Text, "description")               \
    F(IsPool, Quantity, "is_pool") F(StartUTC, Time, "start_utc") F(EndUTC, Time, "end_utc")    \
    F(StartCount, Quantity, "start_count") F(EndCount, Quantity, "end_count")

// Debug and I/O items are only located by key.
class DebugItem {
public:
    static unsigned FindDebugItemTag(const std::string& text, unsigned long long key,
                                     std::string& itemText);
    static unsigned FindDebugItemTag(const std::string& text, std::string& itemText);
};

class IOItem {
public:
    static unsigned FindIOItemTag(const std::string& text, unsigned long long key,
                                  std::string& itemText);
};

// The action items of a log taken in key order: 1, 2, 3 ...
class ActionHistory {
public:
    ActionHistory();

    // Takes the items after the current key up to `currentKey`, stopping
    // quietly at the first missing key.
    unsigned GetActionHistory(unsigned long long currentKey, const std::string& text);

    const std::vector<ActionItem>& Items() const { return items; }
    unsigned long long CurrentKey() const { return currentKey; }
    void SetCurrentKey(unsigned long long key) { currentKey = key; }

private:
    std::vector<ActionItem> items;
    unsigned long long currentKey;
};

std::ostream& operator<<(std::ostream& os, const TODItem& item);
std::ostream& operator<<(std::ostream& os, const MessageItem& item);
std::ostream& operator<<(std::ostream& os, const ActionItem& item);

#endif
