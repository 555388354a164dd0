// actionHistory.cpp - rebuild log tag scanning, item parsing, the action
// history and the item dumps.
//
// The log is read with plain substring searches, not an XML parser: an
// element starts at the literal text of its opening tag and ends at the first
// literal closing tag after it.
#include "util/common_cpp/actionHistory.h"

#include "util/support/location.h"
#include "util/support/qvsApp.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"
#include "util/support/textSearch.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <new>
#include <sstream>
#include <string_view>


const char* const ACTION_ITEM_TAG = "<actionItem>";
const char* const MESSAGE_ITEM_TAG = "<messageItem>";
const char* const TOD_ITEM_TAG = "<todItem>";
const char* const DEBUG_ITEM_TAG = "<debugItem>";
const char* const IO_ITEM_TAG = "<ioItem>";

namespace {

// The searches of one item are inlined where they are used, so that each is
// compiled for its own tag (length and bytes known). An attribute, which
// only a macro can stand for.
#define HOT QVS_ALWAYS_INLINE

const char CDATA_OPEN[] = "<![CDATA[";
const std::string::size_type CDATA_OPEN_LENGTH = sizeof(CDATA_OPEN) - 1;
const char CDATA_CLOSE[] = "]]>";
const std::string::size_type CDATA_CLOSE_LENGTH = sizeof(CDATA_CLOSE) - 1;

// Key attribute prefixes of the keyed finders. I/O items really use the
// shorter attribute name.
constexpr char KEY_PREFIX[] = "<key v=\"";
constexpr char IO_KEY_PREFIX[] = "<k v=\"";

// Value prefixes of TOD and message items.
constexpr char TOD_KEY[] = "<key v=\"";
constexpr char TOD_ZID[] = "<zid v=\"";
constexpr char TOD_PZID[] = "<pZid v=\"";
constexpr char TOD_FLAG[] = "<flag v=\"";
constexpr char TOD_NAME_TYPE[] = "<nameType v=\"";
constexpr char TOD_NAME_SPACE[] = "<nameSpace v=\"";
constexpr char TOD_VOLUME_ID[] = "<volumeID v=\"";
const char UNNAMED_FILE_NAME[] = "this is not a named beast so no file name";

// Value prefixes of action items.
const char ACTION_KEY[] = "<key value=\"";
const char ACTION_DESCRIPTION[] = "<description value=\"";
const char ACTION_OBJECT_NAME[] = "<objectName value=\"";
const char ACTION_SUB_OBJECT_NAME[] = "<subObjectName value=\"";
const char ACTION_IS_POOL[] = "<isPool value=\"";
const char ACTION_START[] = "<start value=\"";
const char ACTION_END[] = "<end value=\"";
const char ACTION_START_UTC[] = "<startUTC value=\"";
const char ACTION_END_UTC[] = "<endUTC value=\"";
const char ACTION_HISTORY_TAG[] = "<actionHistory>";
const char ACTION_CURRENT_TAG[] = "<actionCurrent>";
const char NOT_INITIALIZED[] = "Not initialized";
const char UNKNOWN_NAME[] = "Unknown";

// Buffer sizes of the bounded action item texts, terminator included.
const unsigned DESCRIPTION_SIZE = 160;
const unsigned OBJECT_NAME_SIZE = 32;
const unsigned SUB_OBJECT_NAME_SIZE = 64;

const char* const REASON_NAMES[] = {
    "unknown",
    "Cross Linked Blocks",
    "Unfinished delete",
    "Corrupt Beast",
    "Bad Next Block",
    "Inconsistent compression information",
    "Visibility cleanup",
    "Volume Locator for old volume",
    "Volume Locator on Logical Volume",
    "Named object points to self",
    "Overflow object points to self",
    "Overflow object points back into list",
    "Not an overflow object",
    "Object is missing",
};
const unsigned REASON_COUNT = sizeof(REASON_NAMES) / sizeof(REASON_NAMES[0]);

// Trace locations: a macro, as each must be one string literal made when
// compiling.
#define AH_LOC(line) LS_LOC("util/common_cpp/actionHistory", line)

template <typename T>
void trace(unsigned mask, const char* location, const char* label, const T& value) {
    if (TheApp.DebugLevel(mask))
        std::cerr << location << label << value << std::endl;
}

// The same with the debug mask read once by the caller: the walks ask for
// every field of millions of items.
template <typename T>
void traceIf(unsigned level, unsigned mask, const char* location, const char* label,
             const T& value) {
    if ((level & mask) != 0)
        std::cerr << location << label << value << std::endl;
}

const std::string_view::size_type NOT_FOUND = std::string_view::npos;

using QVS::FindByte;
using QVS::FindIn;
using QVS::Needle;

// An opening tag (or open prefix) with its closing tag.
struct TagPair {
    constexpr TagPair(std::string_view openTag, std::string_view closeTag)
        : open(openTag), close(closeTag), prefix(openTag.find('>') == NOT_FOUND) {}
    Needle open;
    Needle close;
    bool prefix; // no ">": the opening tag may carry attributes
};

// The closing tag is the opening one with "/" after its first character.
constexpr bool closes(std::string_view open, std::string_view close) {
    return !open.empty() && close.size() == open.size() + 1 && close[0] == open[0] &&
           close[1] == '/' && close.substr(2) == open.substr(1);
}

// A macro, as the check's message is the tag's literal joined to a text.
#define TAG_PAIR(name, open, close)                                                             \
    static_assert(closes(open, close), "closing tag of " open);                                \
    constexpr TagPair name(open, close)

TAG_PAIR(MESSAGE_ITEM_TAGS, "<messageItem>", "</messageItem>");
TAG_PAIR(TOD_ITEM_TAGS, "<todItem>", "</todItem>");
TAG_PAIR(MESSAGE_TEXT_TAGS, "<m>", "</m>");
TAG_PAIR(FILE_NAME_TAGS, "<fileName>", "</fileName>");
TAG_PAIR(WARNING_TAGS, "<warning", "</warning");
TAG_PAIR(INFO_TAGS, "<info", "</info");
TAG_PAIR(ERROR_TAGS, "<error", "</error");
TAG_PAIR(ACTION_REQUIRED_TAGS, "<actionRequired", "</actionRequired");
TAG_PAIR(FATAL_TAGS, "<fatal", "</fatal");

// Severity elements in the order they are tried: the first kind in this
// order wins, not the first in the text.
struct SeverityTrial_s {
    const TagPair* tags;
    unsigned severity;
    const char* traceLabel;
};
constexpr SeverityTrial_s SEVERITY_TRIALS[] = {
    {&WARNING_TAGS, MessageItem::SEVERITY_WARNING, " <warning> contents is "},
    {&INFO_TAGS, MessageItem::SEVERITY_INFO, " <info> contents is "},
    {&ERROR_TAGS, MessageItem::SEVERITY_ERROR, " <error> contents is "},
    {&ACTION_REQUIRED_TAGS, MessageItem::SEVERITY_ACTION_REQUIRED, " <actionRequired> contents is "},
    {&FATAL_TAGS, MessageItem::SEVERITY_FATAL, " <fatal> contents is "},
};

// GetTagContents without the copy: [*first, *last) of `text` is the
// contents, a whole-contents CDATA section unwrapped; *endPos is just after
// the closing tag.
HOT inline unsigned locateContents(std::string_view text, std::string_view::size_type start,
                                   const TagPair& tag, std::string_view::size_type* first,
                                   std::string_view::size_type* last,
                                   std::string_view::size_type* endPos) {
    const char* base = text.data();
    const std::string_view::size_type end = text.size();
    std::string_view::size_type open = FindIn(base, start, end, tag.open);
    if (open == NOT_FOUND)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string_view::size_type begin = open + tag.open.text.size();
    if (tag.prefix) {
        const char* close = FindByte(base + begin, base + end, '>', base + text.size());
        if (close == nullptr)
            return QVS::zERR_XML_TAG_NOT_FOUND;
        begin = static_cast<std::string_view::size_type>(close - base) + 1;
    }
    std::string_view::size_type close = FindIn(base, begin, end, tag.close);
    if (close == NOT_FOUND)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    *endPos = close + tag.close.text.size();
    // Unwrapped only when the section is the whole contents: it opens at the
    // first character and its "]]>" ends them.
    if (close - begin >= CDATA_OPEN_LENGTH + CDATA_CLOSE_LENGTH && base[begin] == '<' &&
        QVS::SameBytes(base + begin, CDATA_OPEN, CDATA_OPEN_LENGTH) &&
        QVS::SameBytes(base + close - CDATA_CLOSE_LENGTH, CDATA_CLOSE, CDATA_CLOSE_LENGTH)) {
        begin += CDATA_OPEN_LENGTH;
        close -= CDATA_CLOSE_LENGTH;
    }
    *first = begin;
    *last = close;
    return 0;
}

// GetTagContentsInclusive without the copy: [*first, *endPos) of `text`.
HOT inline unsigned locateInclusive(std::string_view text, std::string_view::size_type start,
                                    const TagPair& tag, std::string_view::size_type* first,
                                    std::string_view::size_type* endPos) {
    std::string_view::size_type open = FindIn(text.data(), start, text.size(), tag.open);
    if (open == NOT_FOUND)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string_view::size_type close =
        FindIn(text.data(), open + tag.open.text.size(), text.size(), tag.close);
    if (close == NOT_FOUND)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    *first = open;
    *endPos = close + tag.close.text.size();
    return 0;
}

// A tag given at run time with its closing tag; empty when it names no
// element.
struct RuntimeTags {
    explicit RuntimeTags(const std::string& tag)
        : closing(tag.empty() ? std::string() : std::string(tag).insert(1, "/")),
          pair(tag, closing) {}
    std::string closing;
    TagPair pair;
};

// The walking finders' step: the next item of a kind from `start`, located in
// place; 21768 instead of 20163 when there is none.
HOT inline unsigned nextItem(const std::string& text, unsigned long start, const TagPair& tag,
                             std::string_view& item, unsigned long& endPos) {
    std::string_view::size_type first = 0;
    std::string_view::size_type end = 0;
    const unsigned status = locateInclusive(text, start, tag, &first, &end);
    if (status != 0)
        return status == QVS::zERR_XML_TAG_NOT_FOUND ? static_cast<unsigned>(QVS::zERR_RAV_EOL)
                                                     : status;
    item = std::string_view(text).substr(first, end - first);
    endPos = static_cast<unsigned long>(end);
    return 0;
}

// "<key v=" + quote + key + quote: the closing quote keeps 8 from matching 80.
std::string keyPattern(const char* prefix, unsigned long long key) {
    std::ostringstream pattern;
    pattern << prefix << key << '"';
    return pattern.str();
}

unsigned findKeyedItem(const std::string& text, const char* itemTag, const char* prefix,
                       unsigned long long key, std::string& itemText) {
    const std::string pattern = keyPattern(prefix, key);
    const std::string tag = itemTag;
    unsigned long position = 0;
    for (;;) {
        unsigned status = GetTagContentsInclusive(text, tag, itemText, position, &position);
        if (status != 0)
            return status;
        if (itemText.find(pattern) != std::string::npos)
            return 0;
    }
}

unsigned findFirstItem(const std::string& text, const char* itemTag, std::string& itemText) {
    return GetTagContentsInclusive(text, itemTag, itemText, 0, nullptr);
}

} // namespace

// ---------------------------------------------------------------- primitives

unsigned GetTagContents(const std::string& text, const std::string& tag, std::string& contents,
                        unsigned long start, unsigned long* endPos) {
    // An empty tag names no element.
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    const RuntimeTags tags(tag);
    std::string_view::size_type first = 0;
    std::string_view::size_type last = 0;
    std::string_view::size_type end = 0;
    unsigned status = locateContents(text, start, tags.pair, &first, &last, &end);
    if (status != 0)
        return status;
    contents.assign(text, first, last - first);
    if (endPos)
        *endPos = static_cast<unsigned long>(end);
    return 0;
}

unsigned LocateTagContents(std::string_view text, const std::string& tag, unsigned long start,
                           unsigned long* first, unsigned long* last, unsigned long* endPos) {
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    const RuntimeTags tags(tag);
    std::string_view::size_type begin = 0;
    std::string_view::size_type close = 0;
    std::string_view::size_type end = 0;
    unsigned status = locateContents(text, start, tags.pair, &begin, &close, &end);
    if (status != 0)
        return status;
    *first = static_cast<unsigned long>(begin);
    *last = static_cast<unsigned long>(close);
    if (endPos)
        *endPos = static_cast<unsigned long>(end);
    return 0;
}

unsigned LocateTagInclusive(std::string_view text, const std::string& tag, unsigned long start,
                            unsigned long* first, unsigned long* endPos) {
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    const RuntimeTags tags(tag);
    std::string_view::size_type open = 0;
    std::string_view::size_type end = 0;
    unsigned status = locateInclusive(text, start, tags.pair, &open, &end);
    if (status != 0)
        return status;
    if (first)
        *first = static_cast<unsigned long>(open);
    if (endPos)
        *endPos = static_cast<unsigned long>(end);
    return 0;
}

unsigned GetTagContentsInclusive(const std::string& text, const std::string& tag,
                                 std::string& contents, unsigned long start,
                                 unsigned long* endPos) {
    unsigned long first = 0;
    unsigned long end = 0;
    unsigned status = LocateTagInclusive(text, tag, start, &first, &end);
    if (status != 0)
        return status;
    contents.assign(text, first, end - first);
    if (endPos)
        *endPos = end;
    return 0;
}

// ---------------------------------------------------------------- TOD items

TODItem::TODItem()
    : key(0), pZid(0), zid(0), flag(0), nameSpace(0), nameType(0), volumeID(QVS::zZERO_GUID) {}

unsigned TODItem::GetTODItem(const std::string& itemText) { return ParseTODItem(itemText); }

// The item is read where it stands: in a walk, inside the whole log.
unsigned TODItem::ParseTODItem(std::string_view item) {
    const unsigned level = TheApp.Level();
    traceIf(level, DEBUG_ITEMS, AH_LOC(930), " TOD contents ", item);

    struct NumberField_s {
        const char* prefix;
        unsigned long long* value;
        const char* label;
    };
    const NumberField_s numbers[] = {
        {TOD_KEY, &key, " Key is "},
        {TOD_ZID, &zid, " Zid is "},
        {TOD_PZID, &pZid, " PZid is "},
        {TOD_FLAG, &flag, " Flag is "},
    };
    for (const NumberField_s& field : numbers) {
        unsigned status = LBP_GetValue(item, field.prefix, field.value);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(941), " Unable to read a TOD value, status ",
                    status);
            return status;
        }
        traceIf(level, DEBUG_VALUES, AH_LOC(944), field.label, *field.value);
    }

    if (IsNamed()) {
        unsigned status = LBP_GetValue(item, TOD_NAME_TYPE, &nameType);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(951), " Unable to read nameType, status ", status);
            return status;
        }
        traceIf(level, DEBUG_VALUES, AH_LOC(954), " NameType is ", nameType);
        status = LBP_GetValue(item, TOD_NAME_SPACE, &nameSpace);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(957), " Unable to read nameSpace, status ",
                    status);
            return status;
        }
        traceIf(level, DEBUG_VALUES, AH_LOC(960), " NameSpace is ", nameSpace);
        std::string_view::size_type first = 0;
        std::string_view::size_type last = 0;
        std::string_view::size_type end = 0;
        status = locateContents(item, 0, FILE_NAME_TAGS, &first, &last, &end);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(963), " Unable to read fileName, status ", status);
            return status;
        }
        fileName.assign(item.data() + first, last - first);
        traceIf(level, DEBUG_VALUES, AH_LOC(966), " File name is ", fileName);
    } else {
        nameSpace = 0;
        nameType = 0;
        fileName = UNNAMED_FILE_NAME;
    }

    unsigned status = LBP_GetValue(item, TOD_VOLUME_ID, &volumeID);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(975), " Unable to read volumeID, status ", status);
        return status;
    }
    traceIf(level, DEBUG_VALUES, AH_LOC(978), " VolumeID is ", volumeID);
    return 0;
}

const char* const TODItem::ACTION_NAMES[ACTION_COUNT] = {"TRUNCATED", "DELETED",
                                                         "TRUSTEES TRUNCATED", "UNKNOWN"};

TODItem::Action TODItem::GetAction() const {
    if (flag & FLAG_TRUNCATED)
        return ACTION_TRUNCATED;
    if (flag & FLAG_DELETED)
        return ACTION_DELETED;
    if (flag & FLAG_TRUSTEES_TRUNCATED)
        return ACTION_TRUSTEES_TRUNCATED;
    return ACTION_UNKNOWN;
}

const char* TODItem::GetActionName() const { return ACTION_NAMES[GetAction()]; }

unsigned TODItem::GetReason() const { return static_cast<unsigned>(flag & REASON_MASK); }

const char* TODItem::GetReasonName() const {
    unsigned reason = GetReason();
    return reason < REASON_COUNT ? REASON_NAMES[reason] : REASON_NAMES[0];
}

bool TODItem::IsNamed() const { return (flag & FLAG_NAMED) != 0; }

unsigned TODItem::FindTODItemTag(const std::string& text, unsigned long long key,
                                 std::string& itemText) {
    return findKeyedItem(text, TOD_ITEM_TAG, KEY_PREFIX, key, itemText);
}

unsigned TODItem::FindTODItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, TOD_ITEM_TAG, itemText);
}

unsigned TODItem::FindTODItemTagAll(const std::string& text, unsigned long start,
                                    unsigned long& endPos) {
    std::string_view item;
    unsigned status = nextItem(text, start, TOD_ITEM_TAGS, item, endPos);
    if (status != 0)
        return status;
    const unsigned level = TheApp.Level();
    // Still the previous item's fields.
    if (level & DEBUG_ITEMS)
        std::cerr << AH_LOC(1012) << " " << *this << std::endl;
    status = ParseTODItem(item);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(1016), " ", status);
        return status;
    }
    if (level & DEBUG_ITEMS)
        std::cerr << AH_LOC(1020) << " " << *this << std::endl;
    return 0;
}

std::ostream& operator<<(std::ostream& os, const TODItem& item) {
    os << "<TODItem>\n"
       << "<TODI_Key>" << item.key << "</TODI_Key>\n"
       << "<TODI_Zid>" << item.zid << "</TODI_Zid>\n"
       << "<TODI_PZid>" << item.pZid << "</TODI_PZid>\n"
       << "<TODI_Flag>" << item.flag << "</TODI_Flag>\n"
       << "<TODI_VolumeID>" << item.volumeID << "</TODI_VolumeID>\n"
       << "<TODI_NameSpace>" << item.nameSpace << "</TODI_NameSpace>\n"
       << "<TODI_NameType>" << item.nameType << "</TODI_NameType>\n"
       << "<TODI_FileName>" << item.fileName << "</TODI_FileName>\n"
       << "</TODItem>\n";
    return os;
}

// ---------------------------------------------------------------- message items

MessageItem::MessageItem() : key(0), severity(SEVERITY_NONE) {}

unsigned MessageItem::GetMessageItem(const std::string& itemText) {
    return ParseMessageItem(itemText);
}

// The item is read where it stands: in a walk, inside the whole log.
unsigned MessageItem::ParseMessageItem(std::string_view item) {
    const unsigned level = TheApp.Level();
    traceIf(level, DEBUG_ITEMS, AH_LOC(560), " Message Item contents ", item);
    unsigned status = LBP_GetValue(item, KEY_PREFIX, &key);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(563), " Unable to read the message key, status ",
                status);
        return status;
    }
    traceIf(level, DEBUG_VALUES, AH_LOC(566), " Key is ", key);

    std::string_view::size_type first = 0;
    std::string_view::size_type last = 0;
    std::string_view::size_type end = 0;
    status = locateContents(item, 0, MESSAGE_TEXT_TAGS, &first, &last, &end);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(571), " Unable to read <m>, status ", status);
        return status;
    }
    // The severity elements are looked for inside those contents only.
    const std::string_view contents = item.substr(first, last - first);
    traceIf(level, DEBUG_VALUES, AH_LOC(574), " <m> contents is ", contents);

    // Written out trial by trial, so that each search is compiled for its tag.
    auto found = [&](const SeverityTrial_s& trial) HOT {
        status = locateContents(contents, 0, *trial.tags, &first, &last, &end);
        if (status != 0)
            return false;
        severity = trial.severity;
        text.assign(contents.data() + first, last - first);
        traceIf(level, DEBUG_VALUES, AH_LOC(582), trial.traceLabel, text);
        return true;
    };
    static_assert(sizeof(SEVERITY_TRIALS) / sizeof(SEVERITY_TRIALS[0]) == 5, "five trials");
    if (found(SEVERITY_TRIALS[0]) || found(SEVERITY_TRIALS[1]) || found(SEVERITY_TRIALS[2]) ||
        found(SEVERITY_TRIALS[3]) || found(SEVERITY_TRIALS[4]))
        return 0;
    traceIf(level, DEBUG_FAILURES, AH_LOC(586), " No message severity found, status ", status);
    return status;
}

unsigned MessageItem::FindMessageItemTag(const std::string& text, unsigned long long key,
                                         std::string& itemText) {
    return findKeyedItem(text, MESSAGE_ITEM_TAG, KEY_PREFIX, key, itemText);
}

unsigned MessageItem::FindMessageItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, MESSAGE_ITEM_TAG, itemText);
}

unsigned MessageItem::FindMessageItemTagAll(const std::string& text, unsigned long start,
                                            unsigned long& endPos) {
    std::string_view item;
    unsigned status = nextItem(text, start, MESSAGE_ITEM_TAGS, item, endPos);
    if (status != 0)
        return status;
    const unsigned level = TheApp.Level();
    // Still the previous item's fields.
    traceIf(level, DEBUG_ITEMS, AH_LOC(662), " ", *this);
    status = ParseMessageItem(item);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(666), " ", status);
        return status;
    }
    traceIf(level, DEBUG_ITEMS, AH_LOC(670), " ", *this);
    return 0;
}

std::ostream& operator<<(std::ostream& os, const MessageItem& item) {
    os << "<MessageItem>\n"
       << "<MI_Key>" << item.key << "</MI_Key>\n"
       << "</MessageItem>\n";
    return os;
}

// ---------------------------------------------------------------- debug and I/O items

unsigned DebugItem::FindDebugItemTag(const std::string& text, unsigned long long key,
                                     std::string& itemText) {
    return findKeyedItem(text, DEBUG_ITEM_TAG, KEY_PREFIX, key, itemText);
}

unsigned DebugItem::FindDebugItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, DEBUG_ITEM_TAG, itemText);
}

unsigned IOItem::FindIOItemTag(const std::string& text, unsigned long long key,
                               std::string& itemText) {
    return findKeyedItem(text, IO_ITEM_TAG, IO_KEY_PREFIX, key, itemText);
}

// ---------------------------------------------------------------- action items

ActionItem::ActionItem()
    : objectName(NOT_INITIALIZED), subObjectName(NOT_INITIALIZED), description(NOT_INITIALIZED),
      isPool(1), startUTC(0), endUTC(0), startCount(0), endCount(0), key(0) {}

ActionItem::ActionItem(unsigned long long key, const std::string& objectName,
                       const std::string& subObjectName, const std::string& description,
                       unsigned isPool, unsigned startUTC, unsigned long long startCount,
                       unsigned endUTC, unsigned long long endCount)
    : objectName(objectName), subObjectName(subObjectName), description(description),
      isPool(isPool), startUTC(startUTC), endUTC(endUTC), startCount(startCount),
      endCount(endCount), key(key) {}

unsigned ActionItem::Set(unsigned long long newKey, const std::string& newObjectName,
                         const std::string& newSubObjectName, const std::string& newDescription,
                         unsigned newIsPool, unsigned newStartUTC,
                         unsigned long long newStartCount, unsigned newEndUTC,
                         unsigned long long newEndCount) {
    try {
        objectName = newObjectName;
        subObjectName = newSubObjectName;
        description = newDescription;
    } catch (const std::bad_alloc&) {
        return QVS::zERR_NO_MEMORY;
    }
    key = newKey;
    isPool = newIsPool;
    startUTC = newStartUTC;
    startCount = newStartCount;
    endUTC = newEndUTC;
    endCount = newEndCount;
    return 0;
}

unsigned ActionItem::GetActionItem(const std::string& itemText) {
    const char* item = itemText.c_str();
    unsigned long long newKey = 0;
    unsigned status = LBP_GetValue(item, ACTION_KEY, &newKey);
    if (status != 0)
        return status;
    trace(DEBUG_VALUES, AH_LOC(300), " key is ", newKey);

    char descriptionText[DESCRIPTION_SIZE];
    char objectText[OBJECT_NAME_SIZE];
    char subObjectText[SUB_OBJECT_NAME_SIZE];
    if (LBP_GetValue(item, ACTION_DESCRIPTION, descriptionText, sizeof(descriptionText)) != 0)
        std::strcpy(descriptionText, UNKNOWN_NAME);
    if (LBP_GetValue(item, ACTION_OBJECT_NAME, objectText, sizeof(objectText)) != 0)
        std::strcpy(objectText, UNKNOWN_NAME);
    if (LBP_GetValue(item, ACTION_SUB_OBJECT_NAME, subObjectText, sizeof(subObjectText)) != 0)
        std::strcpy(subObjectText, UNKNOWN_NAME);

    // Without isPool an action counts as a pool action.
    unsigned poolValue = 0;
    unsigned newIsPool = 1;
    if (LBP_GetValue(item, ACTION_IS_POOL, &poolValue) == 0)
        newIsPool = poolValue != 0 ? 1 : 0;

    unsigned long long newStart = 0;
    unsigned long long newEnd = 0;
    long newStartUTC = 0;
    long newEndUTC = 0;
    if (LBP_GetValue(item, ACTION_START, &newStart) != 0)
        newStart = 0;
    if (LBP_GetValue(item, ACTION_END, &newEnd) != 0)
        newEnd = 0;
    if (LBP_GetValue(item, ACTION_START_UTC, &newStartUTC) != 0)
        newStartUTC = 0;
    if (LBP_GetValue(item, ACTION_END_UTC, &newEndUTC) != 0)
        newEndUTC = 0;

    return Set(newKey, objectText, subObjectText, descriptionText, newIsPool,
               static_cast<unsigned>(newStartUTC), newStart, static_cast<unsigned>(newEndUTC),
               newEnd);
}

unsigned ActionItem::GetActionCurrent(const std::string& text) {
    std::string contents;
    unsigned status = GetTagContents(text, ACTION_CURRENT_TAG, contents, 0, nullptr);
    if (status != 0)
        return status;
    return GetActionItem(contents);
}

unsigned ActionItem::FindActionItemTag(const std::string& text, unsigned long long wanted,
                                       std::string& itemText) {
    const std::string tag = ACTION_ITEM_TAG;
    unsigned long position = 0;
    for (;;) {
        unsigned status = GetTagContentsInclusive(text, tag, itemText, position, &position);
        if (status != 0)
            return status;
        status = GetActionItem(itemText);
        if (status != 0)
            return status;
        if (key == wanted)
            return 0;
    }
}

unsigned ActionItem::FindActionItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, ACTION_ITEM_TAG, itemText);
}

std::ostream& operator<<(std::ostream& os, const ActionItem& item) {
    os << "<ActionItem>\n"
       << "<AI_Key>" << item.key << "</AI_Key>\n"
       << "<AI_Object>" << item.objectName << "</AI_Object>\n"
       << "<AI_SubObject>" << item.subObjectName << "</AI_SubObject>\n"
       << "<AI_Action>" << item.description << "</AI_Action>\n"
       << "<AI_IsPool>" << item.isPool << "</AI_IsPool>\n"
       << "<AI_StartUTC>" << item.startUTC << "</AI_StartUTC>\n"
       << "<AI_EndUTC>" << item.endUTC << "</AI_EndUTC>\n"
       << "<AI_StartCount>" << item.startCount << "</AI_StartCount>\n"
       << "<AI_EndCount>" << item.endCount << "</AI_EndCount>\n"
       << "</ActionItem>\n";
    return os;
}

// ---------------------------------------------------------------- action history

ActionHistory::ActionHistory() : currentKey(0) {}

unsigned ActionHistory::GetActionHistory(unsigned long long wantedKey, const std::string& text) {
    std::string history;
    unsigned status = GetTagContents(text, ACTION_HISTORY_TAG, history, 0, nullptr);
    if (status != 0)
        return status;
    for (;;) {
        if (currentKey >= wantedKey) {
            trace(DEBUG_VALUES, AH_LOC(412), " No need to look as currentKey <= AH_HistoryCurrentKey",
                  "");
            return 0;
        }
        trace(DEBUG_VALUES, AH_LOC(416), " Search for ", currentKey + 1);
        ActionItem item;
        std::string itemText;
        // A gap in the keys ends the update quietly.
        if (item.FindActionItemTag(history, currentKey + 1, itemText) != 0)
            return 0;
        status = item.GetActionItem(itemText);
        if (status != 0)
            return status;
        items.push_back(item);
        ++currentKey;
    }
}
