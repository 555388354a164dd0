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

#include <cstring>
#include <iostream>
#include <new>
#include <sstream>

const char* const ACTION_ITEM_TAG = "<actionItem>";
const char* const MESSAGE_ITEM_TAG = "<messageItem>";
const char* const TOD_ITEM_TAG = "<todItem>";
const char* const DEBUG_ITEM_TAG = "<debugItem>";
const char* const IO_ITEM_TAG = "<ioItem>";

namespace {

const char CDATA_OPEN[] = "<![CDATA[";
const std::string::size_type CDATA_OPEN_LENGTH = sizeof(CDATA_OPEN) - 1;
const char CDATA_CLOSE[] = "]]>";
const std::string::size_type CDATA_CLOSE_LENGTH = sizeof(CDATA_CLOSE) - 1;

// Key attribute prefixes of the keyed finders. I/O items really use the
// shorter attribute name.
const char KEY_PREFIX[] = "<key v=\"";
const char IO_KEY_PREFIX[] = "<k v=\"";

// Value prefixes of TOD and message items.
const char TOD_KEY[] = "<key v=\"";
const char TOD_ZID[] = "<zid v=\"";
const char TOD_PZID[] = "<pZid v=\"";
const char TOD_FLAG[] = "<flag v=\"";
const char TOD_NAME_TYPE[] = "<nameType v=\"";
const char TOD_NAME_SPACE[] = "<nameSpace v=\"";
const char TOD_VOLUME_ID[] = "<volumeID v=\"";
const char TOD_FILE_NAME_TAG[] = "<fileName>";
const char UNNAMED_FILE_NAME[] = "this is not a named beast so no file name";

const char MESSAGE_TEXT_TAG[] = "<m>";

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

// Severity elements in the order they are tried: the first kind in this
// order wins, not the first in the text.
struct SeverityTrial_s {
    const char* tag;
    unsigned severity;
    const char* traceLabel;
};
const SeverityTrial_s SEVERITY_TRIALS[] = {
    {"<warning", MessageItem::SEVERITY_WARNING, " <warning> contents is "},
    {"<info", MessageItem::SEVERITY_INFO, " <info> contents is "},
    {"<error", MessageItem::SEVERITY_ERROR, " <error> contents is "},
    {"<actionRequired", MessageItem::SEVERITY_ACTION_REQUIRED, " <actionRequired> contents is "},
    {"<fatal", MessageItem::SEVERITY_FATAL, " <fatal> contents is "},
};

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

// Trace locations.
#define AH_LOC(line) LS_LOC("util/common_cpp/actionHistory", line)

template <typename T>
void trace(unsigned mask, const char* location, const char* label, const T& value) {
    if (TheApp.DebugLevel(mask))
        std::cerr << location << label << value << std::endl;
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

// std::string::find with a cheaper candidate test: most "<" of a log start
// some other tag, so the second character rules them out before a memcmp.
std::string::size_type findText(const std::string& text, const std::string& needle,
                                std::string::size_type from) {
    const std::string::size_type n = needle.size();
    const std::string::size_type size = text.size();
    if (n < 2 || from > size || size - from < n)
        return n == 0 ? (from <= size ? from : std::string::npos) : text.find(needle, from);
    const char* data = text.data();
    const char* p = data + from;
    const char* last = data + (size - n); // last place a match can start
    const char first = needle[0];
    const char second = needle[1];
    while (p <= last) {
        p = static_cast<const char*>(std::memchr(p, first, static_cast<size_t>(last - p) + 1));
        if (p == nullptr)
            return std::string::npos;
        if (p[1] == second && std::memcmp(p + 2, needle.data() + 2, n - 2) == 0)
            return static_cast<std::string::size_type>(p - data);
        ++p;
    }
    return std::string::npos;
}

std::string closingTagOf(const std::string& tag) {
    std::string closing = tag;
    closing.insert(1, "/");
    return closing;
}

void unwrapCDATA(std::string& contents) {
    if (contents.compare(0, CDATA_OPEN_LENGTH, CDATA_OPEN) != 0)
        return;
    std::string::size_type close = contents.rfind(CDATA_CLOSE);
    if (close == std::string::npos || close + CDATA_CLOSE_LENGTH != contents.size() ||
        close < CDATA_OPEN_LENGTH)
        return;
    contents.erase(close);
    contents.erase(0, CDATA_OPEN_LENGTH);
}

} // namespace

// ---------------------------------------------------------------- primitives

unsigned GetTagContents(const std::string& text, const std::string& tag, std::string& contents,
                        unsigned long start, unsigned long* endPos) {
    // An empty tag names no element.
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string::size_type open = findText(text, tag, start);
    if (open == std::string::npos)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string::size_type begin = open + tag.size();
    if (tag.find('>') == std::string::npos) {
        std::string::size_type close = text.find('>', begin);
        if (close == std::string::npos)
            return QVS::zERR_XML_TAG_NOT_FOUND;
        begin = close + 1;
    }
    const std::string closing = closingTagOf(tag);
    std::string::size_type close = findText(text, closing, begin);
    if (close == std::string::npos)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    contents.assign(text, begin, close - begin);
    unwrapCDATA(contents);
    if (endPos)
        *endPos = close + closing.size();
    return 0;
}

unsigned LocateTagInclusive(const std::string& text, const std::string& tag, unsigned long start,
                            unsigned long* first, unsigned long* endPos) {
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string::size_type open = findText(text, tag, start);
    if (open == std::string::npos)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    const std::string closing = closingTagOf(tag);
    std::string::size_type close = findText(text, closing, open + tag.size());
    if (close == std::string::npos)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    if (first)
        *first = open;
    if (endPos)
        *endPos = close + closing.size();
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

unsigned TODItem::GetTODItem(const std::string& itemText) {
    const char* item = itemText.c_str();
    trace(DEBUG_ITEMS, AH_LOC(930), " TOD contents ", itemText);

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
            trace(DEBUG_FAILURES, AH_LOC(941), " Unable to read a TOD value, status ", status);
            return status;
        }
        trace(DEBUG_VALUES, AH_LOC(944), field.label, *field.value);
    }

    if (IsNamed()) {
        unsigned status = LBP_GetValue(item, TOD_NAME_TYPE, &nameType);
        if (status != 0) {
            trace(DEBUG_FAILURES, AH_LOC(951), " Unable to read nameType, status ", status);
            return status;
        }
        trace(DEBUG_VALUES, AH_LOC(954), " NameType is ", nameType);
        status = LBP_GetValue(item, TOD_NAME_SPACE, &nameSpace);
        if (status != 0) {
            trace(DEBUG_FAILURES, AH_LOC(957), " Unable to read nameSpace, status ", status);
            return status;
        }
        trace(DEBUG_VALUES, AH_LOC(960), " NameSpace is ", nameSpace);
        status = GetTagContents(itemText, TOD_FILE_NAME_TAG, fileName, 0, nullptr);
        if (status != 0) {
            trace(DEBUG_FAILURES, AH_LOC(963), " Unable to read fileName, status ", status);
            return status;
        }
        trace(DEBUG_VALUES, AH_LOC(966), " File name is ", fileName);
    } else {
        nameSpace = 0;
        nameType = 0;
        fileName = UNNAMED_FILE_NAME;
    }

    unsigned status = LBP_GetValue(item, TOD_VOLUME_ID, &volumeID);
    if (status != 0) {
        trace(DEBUG_FAILURES, AH_LOC(975), " Unable to read volumeID, status ", status);
        return status;
    }
    trace(DEBUG_VALUES, AH_LOC(978), " VolumeID is ", volumeID);
    return 0;
}

const char* TODItem::GetActionName() const {
    if (flag & FLAG_TRUNCATED)
        return "TRUNCATED";
    if (flag & FLAG_DELETED)
        return "DELETED";
    if (flag & FLAG_TRUSTEES_TRUNCATED)
        return "TRUSTEES TRUNCATED";
    return "UNKNOWN";
}

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
    std::string itemText;
    unsigned status = GetTagContentsInclusive(text, TOD_ITEM_TAG, itemText, start, &endPos);
    if (status != 0)
        return status == QVS::zERR_XML_TAG_NOT_FOUND ? static_cast<unsigned>(QVS::zERR_RAV_EOL)
                                                     : status;
    // Still the previous item's fields.
    trace(DEBUG_ITEMS, AH_LOC(1012), " ", *this);
    status = GetTODItem(itemText);
    if (status != 0) {
        trace(DEBUG_FAILURES, AH_LOC(1016), " ", status);
        return status;
    }
    trace(DEBUG_ITEMS, AH_LOC(1020), " ", *this);
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
    trace(DEBUG_ITEMS, AH_LOC(560), " Message Item contents ", itemText);
    unsigned status = LBP_GetValue(itemText.c_str(), KEY_PREFIX, &key);
    if (status != 0) {
        trace(DEBUG_FAILURES, AH_LOC(563), " Unable to read the message key, status ", status);
        return status;
    }
    trace(DEBUG_VALUES, AH_LOC(566), " Key is ", key);

    std::string message;
    status = GetTagContents(itemText, MESSAGE_TEXT_TAG, message, 0, nullptr);
    if (status != 0) {
        trace(DEBUG_FAILURES, AH_LOC(571), " Unable to read <m>, status ", status);
        return status;
    }
    trace(DEBUG_VALUES, AH_LOC(574), " <m> contents is ", message);

    for (const SeverityTrial_s& trial : SEVERITY_TRIALS) {
        std::string contents;
        status = GetTagContents(message, trial.tag, contents, 0, nullptr);
        if (status == 0) {
            severity = trial.severity;
            text.swap(contents);
            trace(DEBUG_VALUES, AH_LOC(582), trial.traceLabel, text);
            return 0;
        }
    }
    trace(DEBUG_FAILURES, AH_LOC(586), " No message severity found, status ", status);
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
    std::string itemText;
    unsigned status = GetTagContentsInclusive(text, MESSAGE_ITEM_TAG, itemText, start, &endPos);
    if (status != 0)
        return status == QVS::zERR_XML_TAG_NOT_FOUND ? static_cast<unsigned>(QVS::zERR_RAV_EOL)
                                                     : status;
    // Still the previous item's fields.
    trace(DEBUG_ITEMS, AH_LOC(662), " ", *this);
    status = GetMessageItem(itemText);
    if (status != 0) {
        trace(DEBUG_FAILURES, AH_LOC(666), " ", status);
        return status;
    }
    trace(DEBUG_ITEMS, AH_LOC(670), " ", *this);
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
