// fuzz_reply.cpp - the management reply side: the XML scanner, the reply
// templates, every result-value function and the failed-write check, on
// arbitrary replies.
#include "util/common_cpp/nXML.h"
#include "util/common_cpp/qvsVFS.h"
#include "util/support/qvsError.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

template <typename F> void Guard(F f) {
    try {
        f();
    } catch (const QVSError&) {
    } catch (const std::exception&) {
    }
}

const char* const TEMPLATES[] = {
    "<qvsReply>",
    "<qvsReply><pool><poolVerify>",
    "<qvsReply><volume><getVolumeInfo><basicInfo><volumeState>",
    "<qvsReply><pool><poolVerify><verifyDetails><entry>",
    "<writeResult>",
    "<a><a>",
    "<>",
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A private, terminated, writable copy: XML_stripCDATA writes into it.
    std::vector<char> text(data, data + size);
    text.push_back('\0');
    char* begin = text.data();
    char* last = size > 0 ? begin + size - 1 : begin;
    unsigned long length = static_cast<unsigned long>(std::strlen(begin));

    NXML::XML_ElementInfo_s info;
    const char* name = nullptr;
    unsigned long nameLength = 0;
    if (size > 0) {
        NXML::XML_GetNextTag(begin, last, &info, &name, &nameLength);
        NXML::XML_GetTagElementAtCurrentLevel("a", begin, last, &info);
        if (NXML::XML_GetTagElement("result", begin, last, &info) == 0)
            NXML::XML_GetTagAttribute("value", &info);
        unsigned long long u;
        long long s;
        NXML::XML_UTF8ToQUAD(begin, last, &u, nullptr);
        NXML::XML_UTF8ToSQUAD(begin, last, &s, nullptr);
        const char* p = begin;
        NXML::XML_skipWhiteSpace(&p, last);
        p = begin;
        NXML::XML_findEndOfNonWhiteSpace(&p, last);
        NXML::XML_atStartCDATA(begin, last);
        NXML::XML_atEndCDATA(begin, last);
    }
    for (const char* templ : TEMPLATES) {
        std::string contents, value;
        long long number = 0;
        unsigned long long unsignedNumber = 0;
        NXML::MQVS_GetSpecificTemplate(templ, length, begin, &info);
        NXML::MQVS_GetSpecificTemplate(templ, length, begin, contents);
        NXML::MQVS_GetResultTemplate(templ, length, begin, &info);
        NXML::MQVS_GetTagTemplate(templ, "<result>", length, begin, &info);
        NXML::MQVS_GetAttribute(templ, "<result>", "value", length, begin, value);
        NXML::MQVS_GetAttribute(templ, "<userKey>", "value", length, begin, &number);
        NXML::MQVS_GetResultValueAttribute(templ, length, begin, &number);
        Guard([&] {
            NXML::MQVS_GetTagAttributeAttribute(templ, "<userKey>", "value", length, begin,
                                                &unsignedNumber);
        });
        Guard([&] { NXML::GetReplyResultValueT(begin, templ); });
    }
    int result = 0;
    NXML::GetQVSReplyResultValue(begin, result);
    NXML::GetPoolVerifyReplyResultValue(begin, result);
    Guard([&] { NXML::GetQVSReplyResultValueT(begin); });
    Guard([&] { NXML::GetPoolVerifyReplyResultValueT(begin); });
    Guard([&] { NXML::GetVolumeModifyStateReplyResultValueT(begin); });
    Guard([&] { NXML::GetVolumeBasicInfoReplyResultValueT(begin); });
    Guard([&] { NXML::GetPoolBasicInfoReplyResultValueT(begin); });
    Guard([&] { NXML::GetReplyResultValueForTag(begin, "poolVerify"); });
    unsigned long long status = 0;
    QVSVirtualFileServices::IsFunnyErrorPresent(length, begin, status);
    // Last: stripping CDATA writes a zero byte into the text.
    if (size > 0)
        NXML::XML_stripCDATA(begin, last);
    return 0;
}
