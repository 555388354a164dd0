// nXML.cpp - management XML scanner and reply templates (first cut: every
// lookup reports an incomplete text until the scanner lands).
#include "util/common_cpp/nXML.h"

#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

namespace NXML {

unsigned int XML_GetNextTag(const char*, const char*, XML_ElementInfo_s*, const char**,
                            unsigned long*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int XML_FindEndOfElement(const char*, unsigned long, const char*, const char*,
                                  XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int XML_GetTagElementAtCurrentLevel(const char*, const char*, const char*,
                                             XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int XML_GetTagElement(const char*, char*, char*, XML_ElementInfo_s*) { return XML_TAG_ABSENT; }
unsigned int XML_GetTagAttribute(const char*, XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
const char* XML_atStartCDATA(const char*, const char*) { return nullptr; }
const char* XML_atEndCDATA(const char*, const char*) { return nullptr; }
const char* XML_stripCDATA(const char* p, const char*) { return p; }
void XML_skipWhiteSpace(const char**, const char*) {}
void XML_findEndOfNonWhiteSpace(const char**, const char*) {}
unsigned int XML_UTF8ToQUAD(const char*, const char*, unsigned long long*, const char**) { return QVS::zERR_BAD_TRANSFORMATION; }
unsigned int XML_UTF8ToSQUAD(const char*, const char*, long long*, const char**) { return QVS::zERR_BAD_TRANSFORMATION; }
void XML_Display(const char*, const char*, const char*) {}
unsigned int MQVS_GetNextTagString(const char*, const char**, unsigned long, char*) { return QVS::zERR_BAD_PARAMETER_VALUE; }
unsigned int MQVS_GetSpecificTemplate(const char*, unsigned long, const char*, XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetSpecificTemplate(const char*, unsigned long, const char*, std::string&) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetResultTemplate(const char*, unsigned long, const char*, XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetTagTemplate(const char*, const char*, unsigned long, const char*, XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetTemplate(const char*, const char*, unsigned long, const char*, XML_ElementInfo_s*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetAttribute(const char*, const char*, const char*, unsigned long, const char*, std::string&) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetAttribute(const char*, const char*, const char*, unsigned long, const char*, long long*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetTagAttributeAttribute(const char*, const char*, const char*, unsigned long, const char*, unsigned long long*) {
    throw QVSError("Can not find tag", QVS::zERR_XML_IS_INCOMPLETE, "util/common_cpp/nXML");
}
unsigned int MQVS_GetResultValueAttribute(const char*, unsigned long, const char*, long long*) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int MQVS_GetTagContents(const char*, unsigned long, const std::vector<std::string>&, std::string&) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int GetQVSReplyResultValue(const char*, int&) { return QVS::zERR_XML_IS_INCOMPLETE; }
unsigned int GetPoolVerifyReplyResultValue(const char*, int&) { return QVS::zERR_XML_IS_INCOMPLETE; }
void GetReplyResultValueT(const char*, const char*) { throw AdminError("Unable to parse XML tag", QVS::zERR_XML_IS_INCOMPLETE, "util/common_cpp/nXML"); }
void GetQVSReplyResultValueT(const char* reply) { GetReplyResultValueT(reply, "<qvsReply>"); }
void GetPoolVerifyReplyResultValueT(const char* reply) { GetReplyResultValueT(reply, "<qvsReply>"); }
void GetVolumeModifyStateReplyResultValueT(const char* reply) { GetReplyResultValueT(reply, "<qvsReply>"); }
void GetVolumeBasicInfoReplyResultValueT(const char* reply) { GetReplyResultValueT(reply, "<qvsReply>"); }
void GetPoolBasicInfoReplyResultValueT(const char* reply) { GetReplyResultValueT(reply, "<qvsReply>"); }
void GetReplyResultValueForTag(const char* reply, const char*) { GetReplyResultValueT(reply, "<qvsReply>"); }

} // namespace NXML
