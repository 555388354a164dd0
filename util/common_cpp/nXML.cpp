// nXML.cpp - management XML scanner and reply templates.
//
// Every range is [start, end] with an inclusive end pointer. No function reads
// a character outside its range: lengths are compared as counts before any
// lookahead, so a hostile reply can end anywhere without harm.
#include "util/common_cpp/nXML.h"

#include "util/support/location.h"
#include "util/support/qvsError.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <cctype>
#include <climits>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <new>

namespace NXML {

namespace {

const char CDATA_OPEN[] = "<![CDATA[";
const unsigned long CDATA_OPEN_LENGTH = sizeof(CDATA_OPEN) - 1;
const char CDATA_CLOSE[] = "]]>";
const unsigned long CDATA_CLOSE_LENGTH = sizeof(CDATA_CLOSE) - 1;

// Template tag names are limited to 127 characters and a terminator.
const unsigned long TAG_BUFFER_SIZE = 128;
// Numbers are copied into a buffer of this size, terminator included.
const unsigned long NUMBER_BUFFER_SIZE = 80;
// Formatted exception texts are cut to this size, terminator included.
const unsigned long MESSAGE_BUFFER_SIZE = 256;

const char QVS_REPLY_TEMPLATE[] = "<qvsReply>";
const char POOL_VERIFY_TEMPLATE[] = "<qvsReply><pool><poolVerify>";
const char MODIFY_STATE_TEMPLATE[] = "<qvsReply><volume><modifyState>";
const char VOLUME_INFO_TEMPLATE[] = "<qvsReply><volume><getVolumeInfo>";
const char POOL_INFO_TEMPLATE[] = "<qvsReply><pool><getPoolInfo>";
const char RESULT_TEMPLATE[] = "<result>";
const char VALUE_ATTRIBUTE[] = "value";

bool isWhite(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Characters left in [p, end]; 0 for an empty or absent range.
unsigned long remaining(const char* p, const char* end) {
    if (p == nullptr || end == nullptr || p > end)
        return 0;
    return static_cast<unsigned long>(end - p) + 1;
}

// True when `s` of `length` characters stands at p inside [p, end].
bool matchesAt(const char* p, const char* end, const char* s, unsigned long length) {
    return remaining(p, end) >= length && std::memcmp(p, s, length) == 0;
}

const char* findChar(const char* p, const char* end, char c) {
    unsigned long n = remaining(p, end);
    if (n == 0)
        return nullptr;
    return static_cast<const char*>(std::memchr(p, c, n));
}

// Pointer to the first of `s` inside [p, end], or null.
const char* findText(const char* p, const char* end, const char* s, unsigned long length) {
    for (; remaining(p, end) >= length; ++p) {
        p = findChar(p, end, s[0]);
        if (p == nullptr)
            return nullptr;
        if (matchesAt(p, end, s, length))
            return p;
    }
    return nullptr;
}

// A tag name runs until white space, "/" or ">". Returns the number of name
// characters at p and sets `complete` when a terminator was met inside the
// range.
unsigned long tagNameLength(const char* p, const char* end, bool& complete) {
    unsigned long n = remaining(p, end);
    for (unsigned long i = 0; i < n; ++i) {
        if (isWhite(p[i]) || p[i] == '/' || p[i] == '>') {
            complete = true;
            return i;
        }
    }
    complete = false;
    return n;
}

void setEmptyElement(XML_ElementInfo_s* info, const char* close) {
    info->contentsStart = nullptr;
    info->contentsLast = nullptr;
    info->contentsLength = 0;
    info->elementEnd = close;
}

// The contents of `info` as the range still to search.
void setRange(XML_ElementInfo_s* info, const char* start, const char* end) {
    info->contentsStart = start;
    info->contentsLast = end;
    info->contentsLength = remaining(start, end);
}

// Follows the template through [start, end] one level per tag.
unsigned int followTemplate(const char* templ, const char* start, const char* end,
                            XML_ElementInfo_s* info) {
    setRange(info, start, end);
    const char* next = templ;
    char name[TAG_BUFFER_SIZE];
    for (;;) {
        unsigned int status = MQVS_GetNextTagString(next, &next, sizeof(name), name);
        if (status == QVS::zERR_RETURN_PARA_NULL)
            return 0;
        if (status != 0)
            return status;
        if (info->contentsStart == nullptr || info->contentsLength == 0)
            return QVS::zERR_XML_IS_INCOMPLETE;
        const char* rangeStart = info->contentsStart;
        const char* rangeEnd = info->contentsLast;
        status = XML_GetTagElementAtCurrentLevel(name, rangeStart, rangeEnd, info);
        if (status != 0)
            return status;
    }
}

// Last character of a text of `length` characters (inclusive end pointer).
const char* lastOf(const char* text, unsigned long length) {
    return length == 0 ? text - 1 : text + (length - 1);
}

unsigned int convertNumber(const char* start, const char* end, unsigned long long* value,
                           const char** next) {
    const char* p = start;
    XML_skipWhiteSpace(&p, end);
    if (remaining(p, end) == 0)
        return QVS::zERR_BAD_TRANSFORMATION;
    const char* last = p;
    XML_findEndOfNonWhiteSpace(&last, end);
    unsigned long length = static_cast<unsigned long>(last - p) + 1;
    if (length >= NUMBER_BUFFER_SIZE)
        return QVS::zERR_BUFFER_TOO_SMALL;
    char buffer[NUMBER_BUFFER_SIZE];
    std::memcpy(buffer, p, length);
    buffer[length] = '\0';
    char* stop = nullptr;
    unsigned long long number = QVS::LB_strtouq(buffer, &stop, 0);
    // A field without a single digit is no number at all.
    if (stop == buffer)
        return QVS::zERR_BAD_TRANSFORMATION;
    if (value)
        *value = number;
    if (next)
        *next = last + 1;
    return 0;
}

bool fitsInt32(long long value) { return value >= INT_MIN && value <= INT_MAX; }

std::string formatTag(const char* format, const char* tag) {
    char buffer[MESSAGE_BUFFER_SIZE];
    std::snprintf(buffer, sizeof(buffer), format, tag ? tag : "");
    return buffer;
}

// Locations of one result check: parse failure, overflow, non-zero result.
struct ResultCheck_s {
    const char* templ;
    const char* parseMessage; // null: "Unable to parse XML tag %s" with templ
    const char* resultMessage;
    const char* parseLocation;
    const char* overflowLocation;
    const char* resultLocation;
};

void checkResult(const char* reply, const ResultCheck_s& check) {
    long long value = 0; // a missing value attribute counts as success
    unsigned int status =
        MQVS_GetResultValueAttribute(check.templ, reply ? std::strlen(reply) : 0, reply, &value);
    if (status != 0) {
        std::string message = check.parseMessage
                                  ? std::string(check.parseMessage)
                                  : formatTag("Unable to parse XML tag %s", check.templ);
        throw AdminError(message, static_cast<int>(status), check.parseLocation);
    }
    if (!fitsInt32(value))
        throw QVSError("Value overflow", QVS::zERR_QUAD_TOO_BIG_FOR_LONG, check.overflowLocation);
    if (value == 0)
        return;
    throw QVSError(check.resultMessage, static_cast<int>(value), check.resultLocation);
}

unsigned int resultValue(const char* reply, const char* templ, int& result) {
    if (reply == nullptr)
        return QVS::zERR_BAD_PARAMETER_VALUE;
    long long value = 0;
    unsigned int status = MQVS_GetResultValueAttribute(templ, std::strlen(reply), reply, &value);
    if (status != 0)
        return status;
    result = static_cast<int>(static_cast<unsigned int>(static_cast<unsigned long long>(value)));
    return fitsInt32(value) ? 0 : static_cast<unsigned int>(QVS::zERR_QUAD_TOO_BIG_FOR_LONG);
}

} // namespace

// ---------------------------------------------------------------- scanner

unsigned int XML_GetNextTag(const char* start, const char* end, XML_ElementInfo_s* info,
                            const char** name, unsigned long* nameLength) {
    XML_ElementInfo_s local;
    if (info == nullptr)
        info = &local;
    const char* open = findChar(start, end, '<');
    if (open == nullptr)
        return QVS::zERR_XML_IS_INCOMPLETE;
    const char* tagName = open + 1;
    if (remaining(tagName, end) == 0)
        return QVS::zERR_XML_IS_INCOMPLETE;
    unsigned long length = 0;
    if (*tagName != '/' && *tagName != '>') {
        bool complete = false;
        length = tagNameLength(tagName, end, complete);
        if (!complete)
            return QVS::zERR_XML_IS_INCOMPLETE;
    }
    if (name)
        *name = tagName;
    if (nameLength)
        *nameLength = length;
    info->nameEnd = tagName + length;
    return XML_FindEndOfElement(tagName, length, info->nameEnd, end, info);
}

unsigned int XML_FindEndOfElement(const char* name, unsigned long nameLength,
                                  const char* afterName, const char* end,
                                  XML_ElementInfo_s* info) {
    XML_ElementInfo_s local;
    if (info == nullptr)
        info = &local;
    const char* close = findChar(afterName, end, '>');
    if (close == nullptr)
        return QVS::zERR_XML_IS_INCOMPLETE;
    if (name == nullptr)
        nameLength = 0;
    // Only a character of the scanned tag is looked at before the ">".
    if (close > afterName && close[-1] == '/') {
        setEmptyElement(info, close);
        return 0;
    }

    const char* contents = close + 1;
    unsigned long depth = 0;    // open children of the element's own name
    unsigned long children = 0; // open children of any name
    bool inCDATA = false;
    const char* p = contents;
    while (remaining(p, end) > 0) {
        if (inCDATA) {
            const char* stop = XML_atEndCDATA(p, end);
            if (stop) {
                inCDATA = false;
                p = stop + 1;
            } else {
                ++p;
            }
            continue;
        }
        if (*p != '<') {
            ++p;
            continue;
        }
        // CDATA counts only at the element's own level; inside a child its
        // contents are ordinary text.
        if (children == 0) {
            const char* bracket = XML_atStartCDATA(p, end);
            if (bracket) {
                inCDATA = true;
                p = bracket + 1;
                continue;
            }
        }
        if (remaining(p, end) >= 2 && p[1] == '/') {
            unsigned long tagLength = 2 + nameLength + 1;
            if (remaining(p, end) >= tagLength &&
                (nameLength == 0 || std::memcmp(p + 2, name, nameLength) == 0) &&
                p[2 + nameLength] == '>') {
                if (depth == 0) {
                    info->contentsStart = contents;
                    info->contentsLast = p - 1;
                    info->contentsLength = static_cast<unsigned long>(p - contents);
                    info->elementEnd = p + 2 + nameLength;
                    return 0;
                }
                --depth;
            }
            if (children > 0)
                --children;
            p += 2;
            continue;
        }
        bool complete = false;
        unsigned long childLength = tagNameLength(p + 1, end, complete);
        if (complete && childLength > 0) {
            // A name ended by "/" (<b/>) opens nothing; a same-named child
            // deepens the search even when written empty.
            if (p[1 + childLength] != '/')
                ++children;
            if (childLength == nameLength && nameLength > 0 &&
                std::memcmp(p + 1, name, nameLength) == 0)
                ++depth;
        }
        ++p;
    }
    return QVS::zERR_XML_IS_INCOMPLETE;
}

unsigned int XML_GetTagElementAtCurrentLevel(const char* name, const char* start,
                                             const char* end, XML_ElementInfo_s* info) {
    XML_ElementInfo_s local;
    if (info == nullptr)
        info = &local;
    if (name == nullptr)
        return QVS::zERR_XML_IS_INCOMPLETE;
    unsigned long wanted = std::strlen(name);
    const char* p = start;
    for (;;) {
        const char* tagName = nullptr;
        unsigned long tagLength = 0;
        unsigned int status = XML_GetNextTag(p, end, info, &tagName, &tagLength);
        if (status != 0)
            return status;
        if (tagLength == wanted && std::memcmp(tagName, name, wanted) == 0)
            return 0;
        // Element ends always lie after the tag's "<", so this advances.
        p = info->elementEnd + 1;
    }
}

unsigned int XML_GetTagElement(const char* name, char* start, char* end, XML_ElementInfo_s* info) {
    XML_ElementInfo_s local;
    if (info == nullptr)
        info = &local;
    if (name == nullptr)
        return XML_TAG_ABSENT;
    unsigned long length = std::strlen(name);
    const char* p = start;
    for (;;) {
        const char* open = findChar(p, end, '<');
        if (open == nullptr)
            return XML_TAG_ABSENT;
        const char* tagName = open + 1;
        if (remaining(tagName, end) < length + 1)
            return XML_TAG_ABSENT;
        char after = tagName[length];
        if (std::memcmp(tagName, name, length) == 0 &&
            (after == '/' || after == '>' || isWhite(after))) {
            info->nameEnd = tagName + length;
            return XML_FindEndOfElement(tagName, length, info->nameEnd, end, info);
        }
        p = tagName;
    }
}

unsigned int XML_GetTagAttribute(const char* attributeName, XML_ElementInfo_s* info) {
    if (info == nullptr || attributeName == nullptr || info->nameEnd == nullptr)
        return QVS::zERR_XML_IS_INCOMPLETE;
    // The attribute area ends before the ">" of the opening tag.
    const char* limit = info->contentsStart ? info->contentsStart - 2
                                            : (info->elementEnd ? info->elementEnd - 1 : nullptr);
    if (limit == nullptr)
        return QVS::zERR_XML_IS_INCOMPLETE;
    unsigned long nameLength = std::strlen(attributeName);
    const char* p = info->nameEnd;
    for (;;) {
        XML_skipWhiteSpace(&p, limit);
        if (remaining(p, limit) == 0)
            return QVS::zERR_XML_IS_INCOMPLETE;
        if (matchesAt(p, limit, attributeName, nameLength)) {
            const char* q = p + nameLength;
            XML_skipWhiteSpace(&q, limit);
            if (remaining(q, limit) > 0 && *q == '=') {
                ++q;
                XML_skipWhiteSpace(&q, limit);
                if (remaining(q, limit) == 0 || *q != '"')
                    return QVS::zERR_XML_IS_INCOMPLETE;
                const char* value = q + 1;
                const char* quote = findChar(value, limit, '"');
                if (quote == nullptr)
                    return QVS::zERR_XML_IS_INCOMPLETE;
                info->valueStart = value;
                info->valueLast = quote - 1;
                info->valueLength = static_cast<unsigned long>(quote - value);
                return 0;
            }
        }
        ++p;
    }
}

const char* XML_atStartCDATA(const char* p, const char* end) {
    if (matchesAt(p, end, CDATA_OPEN, CDATA_OPEN_LENGTH))
        return p + CDATA_OPEN_LENGTH - 1;
    return nullptr;
}

const char* XML_atEndCDATA(const char* p, const char* end) {
    if (matchesAt(p, end, CDATA_CLOSE, CDATA_CLOSE_LENGTH))
        return p + CDATA_CLOSE_LENGTH - 1;
    return nullptr;
}

const char* XML_stripCDATA(const char* p, const char* end) {
    const char* bracket = XML_atStartCDATA(p, end);
    if (bracket == nullptr)
        return p;
    const char* contents = bracket + 1;
    const char* close = findText(contents, end, CDATA_CLOSE, CDATA_CLOSE_LENGTH);
    if (close)
        *const_cast<char*>(close) = '\0';
    return contents;
}

void XML_skipWhiteSpace(const char** p, const char* end) {
    if (p == nullptr)
        return;
    while (remaining(*p, end) > 0 && isWhite(**p))
        ++*p;
}

void XML_findEndOfNonWhiteSpace(const char** p, const char* end) {
    if (p == nullptr)
        return;
    while (remaining(*p, end) > 1 && !isWhite((*p)[1]))
        ++*p;
}

unsigned int XML_UTF8ToQUAD(const char* start, const char* end, unsigned long long* value,
                            const char** next) {
    if (remaining(start, end) == 0)
        return QVS::zERR_BAD_TRANSFORMATION;
    return convertNumber(start, end, value, next);
}

unsigned int XML_UTF8ToSQUAD(const char* start, const char* end, long long* value,
                             const char** next) {
    unsigned long long number = 0;
    unsigned int status = convertNumber(start, end, &number, next);
    if (status == 0 && value)
        *value = static_cast<long long>(number);
    return status;
}

void XML_Display(const char* label, const char* start, const char* end) {
    unsigned long length = remaining(start, end);
    char* copy = new (std::nothrow) char[length + 1];
    if (copy == nullptr)
        return;
    if (length > 0)
        std::memcpy(copy, start, length);
    copy[length] = '\0';
    std::cerr << LS_LOC("util/common_cpp/nXML", 996) << " ";
    if (label)
        std::cerr << label;
    else
        std::cerr.setstate(std::ios::failbit);
    std::cerr << "\n" << copy << "\n";
    delete[] copy;
}

// ---------------------------------------------------------------- templates

unsigned int MQVS_GetNextTagString(const char* templ, const char** next,
                                   unsigned long bufferSize, char* buffer) {
    if (templ == nullptr || bufferSize == 0 || buffer == nullptr)
        return QVS::zERR_BAD_PARAMETER_VALUE;
    const char* open = std::strchr(templ, '<');
    if (open == nullptr)
        return QVS::zERR_RETURN_PARA_NULL;
    const char* name = open + 1;
    unsigned long length = std::strcspn(name, ">");
    if (next)
        *next = name + length;
    if (length + 1 > bufferSize)
        return QVS::zERR_BUFFER_TOO_SMALL;
    std::memcpy(buffer, name, length);
    buffer[length] = '\0';
    return 0;
}

unsigned int MQVS_GetSpecificTemplate(const char* templ, unsigned long length,
                                      const char* text, XML_ElementInfo_s* info) {
    if (templ == nullptr || text == nullptr || info == nullptr)
        return QVS::zERR_BAD_PARAMETER_VALUE;
    return followTemplate(templ, text, lastOf(text, length), info);
}

unsigned int MQVS_GetSpecificTemplate(const char* templ, unsigned long length,
                                      const char* text, std::string& contents) {
    XML_ElementInfo_s info;
    unsigned int status = MQVS_GetSpecificTemplate(templ, length, text, &info);
    if (status != 0)
        return status;
    const char* start = info.contentsStart;
    const char* last = info.contentsLast;
    if (remaining(start, last) == 0) {
        contents.clear();
        return 0;
    }
    const char* bracket = XML_atStartCDATA(start, last);
    if (bracket) {
        start = bracket + 1;
        const char* close = findText(start, last, CDATA_CLOSE, CDATA_CLOSE_LENGTH);
        if (close)
            last = close - 1;
    }
    contents.assign(start, remaining(start, last));
    return 0;
}

unsigned int MQVS_GetResultTemplate(const char* templ, unsigned long length, const char* text,
                                    XML_ElementInfo_s* info) {
    return MQVS_GetTagTemplate(templ, RESULT_TEMPLATE, length, text, info);
}

unsigned int MQVS_GetTagTemplate(const char* templ, const char* tag, unsigned long length,
                                 const char* text, XML_ElementInfo_s* info) {
    if (tag == nullptr)
        return QVS::zERR_BAD_PARAMETER_VALUE;
    unsigned int status = MQVS_GetSpecificTemplate(templ, length, text, info);
    if (status != 0)
        return status;
    const char* start = info->contentsStart;
    const char* last = info->contentsLast;
    if (remaining(start, last) == 0)
        return QVS::zERR_XML_IS_INCOMPLETE;
    return followTemplate(tag, start, last, info);
}

unsigned int MQVS_GetTemplate(const char* templ, const char* tag, unsigned long length,
                              const char* text, XML_ElementInfo_s* info) {
    return MQVS_GetTagTemplate(templ, tag, length, text, info);
}

unsigned int MQVS_GetAttribute(const char* templ, const char* tag, const char* attribute,
                               unsigned long length, const char* text, std::string& value) {
    XML_ElementInfo_s info;
    unsigned int status = MQVS_GetTemplate(templ, tag, length, text, &info);
    if (status != 0)
        return status;
    // A missing or empty attribute leaves the value as it was.
    if (XML_GetTagAttribute(attribute, &info) != 0 || info.valueLength == 0)
        return 0;
    value.clear();
    std::cerr << LS_LOC("util/common_cpp/nXML", 950) << "\n" << value << "\n";
    for (const char* p = info.valueStart; p <= info.valueLast; ++p)
        value += *p;
    return 0;
}

unsigned int MQVS_GetAttribute(const char* templ, const char* tag, const char* attribute,
                               unsigned long length, const char* text, long long* value) {
    XML_ElementInfo_s info;
    unsigned int status = MQVS_GetTemplate(templ, tag, length, text, &info);
    if (status != 0)
        return status;
    if (XML_GetTagAttribute(attribute, &info) == 0 && info.valueLength > 0)
        XML_UTF8ToSQUAD(info.valueStart, info.valueLast, value, nullptr);
    return status;
}

unsigned int MQVS_GetTagAttributeAttribute(const char* templ, const char* tag,
                                           const char* attribute, unsigned long length,
                                           const char* text, unsigned long long* value) {
    XML_ElementInfo_s info;
    unsigned int status = MQVS_GetTagTemplate(templ, tag, length, text, &info);
    if (status != 0) {
        std::cerr << LS_LOC("util/common_cpp/nXML", 1041) << " Tagname " << (tag ? tag : "")
                  << "\n";
        throw QVSError("Can not find tag", static_cast<int>(status),
                       LS_LOC("util/common_cpp/nXML", 1042));
    }
    status = XML_GetTagAttribute(attribute, &info);
    if (status != 0) {
        std::cerr << LS_LOC("util/common_cpp/nXML", 1048) << " Tagname " << (tag ? tag : "")
                  << "\n";
        throw QVSError("Tag attribute issues", static_cast<int>(status),
                       LS_LOC("util/common_cpp/nXML", 1049));
    }
    status = XML_UTF8ToQUAD(info.valueStart, info.valueLast, value, nullptr);
    if (status != 0)
        throw QVSError("Tag attribute contents issues", static_cast<int>(status),
                       LS_LOC("util/common_cpp/nXML", 1054));
    return 0;
}

unsigned int MQVS_GetResultValueAttribute(const char* templ, unsigned long length,
                                          const char* text, long long* value) {
    XML_ElementInfo_s info;
    unsigned int status = MQVS_GetResultTemplate(templ, length, text, &info);
    if (status != 0)
        return status;
    // Deliberately lenient: a missing or empty value leaves `value` alone.
    if (XML_GetTagAttribute(VALUE_ATTRIBUTE, &info) == 0 && info.valueLength > 0)
        XML_UTF8ToSQUAD(info.valueStart, info.valueLast, value, nullptr);
    return 0;
}

unsigned int MQVS_GetTagContents(const char* text, unsigned long length,
                                 const std::vector<std::string>& tags, std::string& contents) {
    std::string templ;
    for (const std::string& tag : tags)
        templ += "<" + tag + ">";
    return MQVS_GetSpecificTemplate(templ.c_str(), length, text, contents);
}

// ---------------------------------------------------------------- results

unsigned int GetQVSReplyResultValue(const char* reply, int& result) {
    return resultValue(reply, QVS_REPLY_TEMPLATE, result);
}

unsigned int GetPoolVerifyReplyResultValue(const char* reply, int& result) {
    return resultValue(reply, POOL_VERIFY_TEMPLATE, result);
}

void GetReplyResultValueT(const char* reply, const char* templ) {
    checkResult(reply, {templ, nullptr, "Reply results", LS_LOC("util/common_cpp/nXML", 1159),
                        LS_LOC("util/common_cpp/nXML", 1165),
                        LS_LOC("util/common_cpp/nXML", 1170)});
}

void GetQVSReplyResultValueT(const char* reply) { GetReplyResultValueT(reply, QVS_REPLY_TEMPLATE); }

void GetPoolVerifyReplyResultValueT(const char* reply) {
    checkResult(reply, {POOL_VERIFY_TEMPLATE, "Unable to parse XML tag <poolVerify>",
                        "PoolVerify results", LS_LOC("util/common_cpp/nXML", 1086),
                        LS_LOC("util/common_cpp/nXML", 1091),
                        LS_LOC("util/common_cpp/nXML", 1096)});
}

void GetVolumeModifyStateReplyResultValueT(const char* reply) {
    checkResult(reply, {MODIFY_STATE_TEMPLATE, "Unable to parse XML tag <modifyState>",
                        "modifyState results", LS_LOC("util/common_cpp/nXML", 1106),
                        LS_LOC("util/common_cpp/nXML", 1111),
                        LS_LOC("util/common_cpp/nXML", 1116)});
}

void GetVolumeBasicInfoReplyResultValueT(const char* reply) {
    checkResult(reply, {VOLUME_INFO_TEMPLATE, "Unable to parse XML tag <getVolumeInfo>",
                        "getVolumeInfo results", LS_LOC("util/common_cpp/nXML", 1126),
                        LS_LOC("util/common_cpp/nXML", 1131),
                        LS_LOC("util/common_cpp/nXML", 1136)});
}

void GetPoolBasicInfoReplyResultValueT(const char* reply) {
    checkResult(reply, {POOL_INFO_TEMPLATE, "Unable to parse XML tag <getPoolInfo>",
                        "getPoolInfo results", LS_LOC("util/common_cpp/nXML", 1146),
                        LS_LOC("util/common_cpp/nXML", 1151),
                        LS_LOC("util/common_cpp/nXML", 1156)});
}

void GetReplyResultValueForTag(const char* reply, const char* tag) {
    unsigned long length = reply ? std::strlen(reply) : 0;
    XML_ElementInfo_s element;
    char* start = const_cast<char*>(reply);
    if (reply == nullptr || length == 0 ||
        XML_GetTagElement(tag, start, start + (length - 1), &element) != 0)
        throw QVSError(formatTag("Can't find content for tag %s", tag), QVS::zERR_XML_IS_BAD,
                       LS_LOC("util/common_cpp/nXML", 1218));

    XML_ElementInfo_s result;
    if (remaining(element.contentsStart, element.contentsLast) == 0 ||
        MQVS_GetSpecificTemplate(RESULT_TEMPLATE, element.contentsLength, element.contentsStart,
                                 &result) != 0)
        throw QVSError("Can't find result tag", QVS::zERR_XML_IS_BAD,
                       LS_LOC("util/common_cpp/nXML", 1225));

    long long value = 0;
    unsigned int status = XML_GetTagAttribute(VALUE_ATTRIBUTE, &result);
    if (status == 0)
        status = XML_UTF8ToSQUAD(result.valueStart, result.valueLast, &value, nullptr);
    if (status != 0)
        throw AdminError(formatTag("Unable to parse XML tag %s", tag), static_cast<int>(status),
                         LS_LOC("util/common_cpp/nXML", 1244));
    if (!fitsInt32(value))
        throw QVSError("Value overflow", QVS::zERR_QUAD_TOO_BIG_FOR_LONG,
                       LS_LOC("util/common_cpp/nXML", 1250));
    if (value == 0)
        return;
    throw QVSError("Reply results", static_cast<int>(value), LS_LOC("util/common_cpp/nXML", 1254));
}

} // namespace NXML
