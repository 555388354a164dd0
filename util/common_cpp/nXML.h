// nXML.h - management XML scanner and reply templates: a small non-validating
// scanner over replies of the management interface, and the tag-path lookups
// and result checks built on it.
#ifndef UTIL_COMMON_CPP_NXML_H
#define UTIL_COMMON_CPP_NXML_H

#include <string>
#include <vector>

namespace NXML {

// Positions found by the element operations; all point into the scanned text
// and every "last" position is inclusive.
struct XML_ElementInfo_s {
    const char* nameEnd = nullptr;       // first character after the tag name
    const char* elementEnd = nullptr;    // ">" of the closing tag (or of "/>")
    const char* contentsStart = nullptr; // null for an empty element
    const char* contentsLast = nullptr;  // null for an empty element
    unsigned long contentsLength = 0;    // 0 for an empty element
    const char* valueStart = nullptr;    // attribute value of XML_GetTagAttribute
    const char* valueLast = nullptr;     // one before valueStart when empty
    unsigned long valueLength = 0;
};

// Returned by XML_GetTagElement when the name does not occur (all ones).
constexpr unsigned int XML_TAG_ABSENT = 0xFFFFFFFFu;

// Ranges are [start, end] with `end` inclusive; an end before its start is an
// empty range. Statuses: 0, 21703 (incomplete), 20150, 20004.
unsigned int XML_GetNextTag(const char* start, const char* end, XML_ElementInfo_s* info,
                            const char** name, unsigned long* nameLength);
unsigned int XML_FindEndOfElement(const char* name, unsigned long nameLength,
                                  const char* afterName, const char* end,
                                  XML_ElementInfo_s* info);
unsigned int XML_GetTagElementAtCurrentLevel(const char* name, const char* start,
                                             const char* end, XML_ElementInfo_s* info);
unsigned int XML_GetTagElement(const char* name, char* start, char* end,
                               XML_ElementInfo_s* info);
unsigned int XML_GetTagAttribute(const char* attributeName, XML_ElementInfo_s* info);

const char* XML_atStartCDATA(const char* p, const char* end);
const char* XML_atEndCDATA(const char* p, const char* end);
// Writes a zero byte into the text when a CDATA section starts at p: the text
// must be writable.
const char* XML_stripCDATA(const char* p, const char* end);

void XML_skipWhiteSpace(const char** p, const char* end);
void XML_findEndOfNonWhiteSpace(const char** p, const char* end);

unsigned int XML_UTF8ToQUAD(const char* start, const char* end, unsigned long long* value,
                            const char** next);
unsigned int XML_UTF8ToSQUAD(const char* start, const char* end, long long* value,
                             const char** next);

// Debug trace of a range on the standard error stream.
void XML_Display(const char* label, const char* start, const char* end);

// Templates are texts of opening tags, "<qvsReply><pool><poolVerify>", each
// found one level inside the element of the tag before it. `length` is the
// number of characters of `text` to search.
unsigned int MQVS_GetNextTagString(const char* templ, const char** next,
                                   unsigned long bufferSize, char* buffer);
unsigned int MQVS_GetSpecificTemplate(const char* templ, unsigned long length,
                                      const char* text, XML_ElementInfo_s* info);
unsigned int MQVS_GetSpecificTemplate(const char* templ, unsigned long length,
                                      const char* text, std::string& contents);
unsigned int MQVS_GetResultTemplate(const char* templ, unsigned long length, const char* text,
                                    XML_ElementInfo_s* info);
unsigned int MQVS_GetTagTemplate(const char* templ, const char* tag, unsigned long length,
                                 const char* text, XML_ElementInfo_s* info);
unsigned int MQVS_GetTemplate(const char* templ, const char* tag, unsigned long length,
                              const char* text, XML_ElementInfo_s* info);
unsigned int MQVS_GetAttribute(const char* templ, const char* tag, const char* attribute,
                               unsigned long length, const char* text, std::string& value);
unsigned int MQVS_GetAttribute(const char* templ, const char* tag, const char* attribute,
                               unsigned long length, const char* text, long long* value);
// Throws QVSError when the tag, the attribute or its number is missing.
unsigned int MQVS_GetTagAttributeAttribute(const char* templ, const char* tag,
                                           const char* attribute, unsigned long length,
                                           const char* text, unsigned long long* value);
unsigned int MQVS_GetResultValueAttribute(const char* templ, unsigned long length,
                                          const char* text, long long* value);
// The contents of the element reached by the tags in turn, each one level
// below the one before ("qvsReply", "pool", ...: names without brackets).
unsigned int MQVS_GetTagContents(const char* text, unsigned long length,
                                 const std::vector<std::string>& tags, std::string& contents);

// Status-returning result values (0 = the reply was read; `result` holds the
// request's own status).
unsigned int GetQVSReplyResultValue(const char* reply, int& result);
unsigned int GetPoolVerifyReplyResultValue(const char* reply, int& result);

// Return when the reply's result is 0; throw AdminError or QVSError otherwise.
void GetReplyResultValueT(const char* reply, const char* templ);
void GetQVSReplyResultValueT(const char* reply);
void GetPoolVerifyReplyResultValueT(const char* reply);
void GetVolumeModifyStateReplyResultValueT(const char* reply);
void GetVolumeBasicInfoReplyResultValueT(const char* reply);
void GetPoolBasicInfoReplyResultValueT(const char* reply);
void GetReplyResultValueForTag(const char* reply, const char* tag);

} // namespace NXML

#endif
