// nxml_test.cpp - the management XML scanner and the reply templates.
#include "util/common_cpp/nXML.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

using namespace NXML;

namespace {

// The text in a heap block of exactly its length (no terminator), so a read
// past the inclusive end is caught by the address sanitizer.
class Exact {
public:
    explicit Exact(const std::string& text) : size_(text.size()), data_(new char[text.size() + 1]) {
        std::memcpy(data_.get(), text.data(), text.size());
        // Not part of the range: the scanner must never look at it.
        data_[size_] = '#';
    }
    char* begin() { return data_.get(); }
    char* last() { return data_.get() + size_ - 1; }
    size_t size() const { return size_; }

private:
    size_t size_;
    std::unique_ptr<char[]> data_;
};

std::string contentsOf(const XML_ElementInfo_s& info) {
    if (info.contentsStart == nullptr)
        return "";
    return std::string(info.contentsStart, info.contentsLength);
}

std::string valueOf(const XML_ElementInfo_s& info) {
    return std::string(info.valueStart, info.valueLength);
}

unsigned int nextTag(const std::string& text, XML_ElementInfo_s& info, std::string* name = nullptr) {
    const char* n = nullptr;
    unsigned long length = 0;
    unsigned int status =
        XML_GetNextTag(text.data(), text.data() + text.size() - 1, &info, &n, &length);
    if (status == 0 && name)
        *name = std::string(n, length);
    return status;
}

} // namespace

// ---------------------------------------------------------------- elements

TEST(XmlGetNextTag, EmptyElementHasNullContents) {
    std::string text = "<a/>";
    XML_ElementInfo_s info;
    std::string name;
    ASSERT_EQ(0u, nextTag(text, info, &name));
    EXPECT_EQ("a", name);
    EXPECT_EQ(nullptr, info.contentsStart);
    EXPECT_EQ(nullptr, info.contentsLast);
    EXPECT_EQ(0u, info.contentsLength);
    EXPECT_EQ(text.data() + 3, info.elementEnd);
    EXPECT_EQ(text.data() + 2, info.nameEnd);
}

TEST(XmlGetNextTag, EmptyElementWithAttributes) {
    std::string text = "<a x=\"1\" />";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ(nullptr, info.contentsStart);
    EXPECT_EQ(text.data() + text.size() - 1, info.elementEnd);
}

TEST(XmlGetNextTag, SimpleElementPositions) {
    std::string text = "  <name a=\"b\">hello</name> tail";
    XML_ElementInfo_s info;
    std::string name;
    ASSERT_EQ(0u, nextTag(text, info, &name));
    EXPECT_EQ("name", name);
    EXPECT_EQ(' ', *info.nameEnd);
    EXPECT_EQ("hello", contentsOf(info));
    EXPECT_EQ(info.contentsStart + 4, info.contentsLast);
    EXPECT_EQ('>', *info.elementEnd);
    EXPECT_EQ(text.find("</name>") + 6, static_cast<size_t>(info.elementEnd - text.data()));
}

TEST(XmlGetNextTag, EmptyContentsHaveLengthZero) {
    std::string text = "<x></x>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ(text.data() + 3, info.contentsStart);
    EXPECT_EQ(0u, info.contentsLength);
    EXPECT_EQ(text.data() + 6, info.elementEnd);
}

TEST(XmlGetNextTag, NestedSameNameEndsAtSecondClosingTag) {
    std::string text = "<a><a>x</a></a>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ("<a>x</a>", contentsOf(info));
    EXPECT_EQ(text.data() + text.size() - 1, info.elementEnd);
}

TEST(XmlGetNextTag, CdataMarkerInsideChildIsOrdinaryText) {
    std::string text = "<a><b>]]></b></a>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ("<b>]]></b>", contentsOf(info));
}

TEST(XmlGetNextTag, ClosingTagInsideCdataIsIgnored) {
    std::string text = "<a><![CDATA[</a>]]></a>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ("<![CDATA[</a>]]>", contentsOf(info));
    EXPECT_EQ(text.data() + text.size() - 1, info.elementEnd);
}

TEST(XmlGetNextTag, CdataOpenedInsideChildIsNotRecognised) {
    // Inside <b> the CDATA start is plain text, so its "</a>" closes <a>.
    std::string text = "<a><b><![CDATA[</a>]]></b></a>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ("<b><![CDATA[", contentsOf(info));
}

TEST(XmlGetNextTag, SameNamedEmptyChildNeedsOneMoreClosingTag) {
    std::string text = "<a><a/>x</a>y</a>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ("<a/>x</a>y", contentsOf(info));
    std::string shortText = "<a><a/>x</a>";
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, nextTag(shortText, info));
}

TEST(XmlGetNextTag, UnterminatedCdataRunsToTheEnd) {
    std::string text = "<a><![CDATA[</a>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, nextTag(text, info));
}

TEST(XmlGetNextTag, IncompleteTexts) {
    XML_ElementInfo_s info;
    for (const char* text : {"no tag at all", "<", "<abc", "<abc ", "<abc x=\"1\"", "<a>text",
                             "<a>text</a", "<a>text</b>", "<a><a>x</a>"})
        EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, nextTag(text, info)) << text;
}

TEST(XmlGetNextTag, ClosingTagAsNextTagHasEmptyName) {
    std::string text = "</a>";
    XML_ElementInfo_s info;
    const char* name = nullptr;
    unsigned long length = 99;
    // An unmatched closing tag never completes as an element.
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              XML_GetNextTag(text.data(), text.data() + 3, &info, &name, &length));
    EXPECT_EQ(0u, length);
}

TEST(XmlGetNextTag, EmptyRange) {
    std::string text = "<a/>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              XML_GetNextTag(text.data(), text.data() - 1, &info, nullptr, nullptr));
}

TEST(XmlGetNextTag, RangeEndCutsTheElement) {
    std::string text = "<a>x</a>";
    XML_ElementInfo_s info;
    // The range ends on "/" of the closing tag: not complete.
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              XML_GetNextTag(text.data(), text.data() + 5, &info, nullptr, nullptr));
    EXPECT_EQ(0u, XML_GetNextTag(text.data(), text.data() + 7, &info, nullptr, nullptr));
}

TEST(XmlFindEndOfElement, DirectCall) {
    std::string text = "<poolVerify><x/></poolVerify>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, XML_FindEndOfElement(text.data() + 1, 10, text.data() + 11,
                                       text.data() + text.size() - 1, &info));
    EXPECT_EQ("<x/>", contentsOf(info));
}

TEST(XmlFindEndOfElement, NoClosingAngle) {
    std::string text = "<a b=\"c\"";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              XML_FindEndOfElement(text.data() + 1, 1, text.data() + 2,
                                   text.data() + text.size() - 1, &info));
}

TEST(XmlGetTagElementAtCurrentLevel, FindsSiblings) {
    std::string text = "<one>1</one><two>2</two><three>3</three>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, XML_GetTagElementAtCurrentLevel("three", text.data(),
                                                  text.data() + text.size() - 1, &info));
    EXPECT_EQ("3", contentsOf(info));
}

TEST(XmlGetTagElementAtCurrentLevel, DoesNotFindNestedElement) {
    std::string text = "<one><two>2</two></one><three/>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              XML_GetTagElementAtCurrentLevel("two", text.data(), text.data() + text.size() - 1,
                                              &info));
    EXPECT_EQ(0u, XML_GetTagElementAtCurrentLevel("three", text.data(),
                                                  text.data() + text.size() - 1, &info));
}

TEST(XmlGetTagElementAtCurrentLevel, NameMustMatchWholly) {
    std::string text = "<results>1</results><result value=\"2\"/>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, XML_GetTagElementAtCurrentLevel("result", text.data(),
                                                  text.data() + text.size() - 1, &info));
    EXPECT_EQ(nullptr, info.contentsStart);
    ASSERT_EQ(0u, XML_GetTagAttribute("value", &info));
    EXPECT_EQ("2", valueOf(info));
}

TEST(XmlGetTagElement, FlatSearchFindsNestedElement) {
    std::string text = "<qvsReply><x><target><result value=\"0\"/></target></x></qvsReply>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, XML_GetTagElement("target", &text[0], &text[text.size() - 1], &info));
    EXPECT_EQ("<result value=\"0\"/>", contentsOf(info));
}

TEST(XmlGetTagElement, NameMustBeFollowedBySeparator) {
    std::string text = "<targets>a</targets><target >b</target>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, XML_GetTagElement("target", &text[0], &text[text.size() - 1], &info));
    EXPECT_EQ("b", contentsOf(info));
}

TEST(XmlGetTagElement, AbsentNameGivesAllOnes) {
    std::string text = "<a>b</a>";
    XML_ElementInfo_s info;
    EXPECT_EQ(0xFFFFFFFFu, XML_GetTagElement("zzz", &text[0], &text[text.size() - 1], &info));
    EXPECT_EQ(XML_TAG_ABSENT, XML_GetTagElement("a", &text[0], &text[1], &info));
    std::string none = "plain";
    EXPECT_EQ(XML_TAG_ABSENT, XML_GetTagElement("a", &none[0], &none[none.size() - 1], &info));
}

TEST(XmlGetTagElement, UnterminatedElementIsIncomplete) {
    std::string text = "<a>b";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              XML_GetTagElement("a", &text[0], &text[text.size() - 1], &info));
}

// ---------------------------------------------------------------- attributes

TEST(XmlGetTagAttribute, BlanksAroundEquals) {
    std::string text = "<result value = \"20801\"/>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    ASSERT_EQ(0u, XML_GetTagAttribute("value", &info));
    EXPECT_EQ("20801", valueOf(info));
    EXPECT_EQ(info.valueStart + 4, info.valueLast);
}

TEST(XmlGetTagAttribute, SingleQuotesAreRejected) {
    std::string text = "<result value='0'/>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, XML_GetTagAttribute("value", &info));
}

TEST(XmlGetTagAttribute, ElementWithContents) {
    std::string text = "<result a=\"1\" value=\"7\">inner value=\"9\"</result>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    ASSERT_EQ(0u, XML_GetTagAttribute("value", &info));
    EXPECT_EQ("7", valueOf(info));
    ASSERT_EQ(0u, XML_GetTagAttribute("a", &info));
    EXPECT_EQ("1", valueOf(info));
}

TEST(XmlGetTagAttribute, EmptyValue) {
    std::string text = "<result value=\"\"/>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    ASSERT_EQ(0u, XML_GetTagAttribute("value", &info));
    EXPECT_EQ(0u, info.valueLength);
    EXPECT_EQ(info.valueStart - 1, info.valueLast);
}

TEST(XmlGetTagAttribute, TailOfLongerNameMatches) {
    std::string text = "<result oldvalue=\"3\"/>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, nextTag(text, info));
    ASSERT_EQ(0u, XML_GetTagAttribute("value", &info));
    EXPECT_EQ("3", valueOf(info));
}

TEST(XmlGetTagAttribute, MissingOrMalformed) {
    XML_ElementInfo_s info;
    for (const char* text : {"<result/>", "<result other=\"1\"/>", "<result value/>",
                             "<result value=\"0/>", "<result>value=\"0\"</result>",
                             "<result value=0/>"}) {
        std::string kept = text; // info points into it
        ASSERT_EQ(0u, nextTag(kept, info)) << text;
        EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, XML_GetTagAttribute("value", &info)) << text;
    }
}

TEST(XmlGetTagAttribute, UnfilledInfo) {
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, XML_GetTagAttribute("value", &info));
}

// ---------------------------------------------------------------- CDATA and white space

TEST(XmlCdata, StartAndEnd) {
    std::string text = "<![CDATA[abc]]>";
    const char* last = text.data() + text.size() - 1;
    EXPECT_EQ(text.data() + 8, XML_atStartCDATA(text.data(), last));
    EXPECT_EQ(nullptr, XML_atStartCDATA(text.data(), text.data() + 7));
    EXPECT_EQ(nullptr, XML_atStartCDATA(text.data() + 1, last));
    EXPECT_EQ(last, XML_atEndCDATA(text.data() + 12, last));
    EXPECT_EQ(nullptr, XML_atEndCDATA(text.data() + 12, last - 1));
    EXPECT_EQ(nullptr, XML_atEndCDATA(text.data() + 11, last));
}

TEST(XmlCdata, StripWritesTerminator) {
    char text[] = "<![CDATA[abc]]>tail";
    const char* result = XML_stripCDATA(text, text + sizeof(text) - 2);
    EXPECT_STREQ("abc", result);
    char plain[] = "abc";
    EXPECT_EQ(plain, XML_stripCDATA(plain, plain + 2));
    char open[] = "<![CDATA[abc";
    EXPECT_STREQ("abc", XML_stripCDATA(open, open + sizeof(open) - 2));
}

TEST(XmlWhiteSpace, SkipAndFindEnd) {
    std::string text = " \t\n\v\f\rword next";
    const char* p = text.data();
    const char* last = text.data() + text.size() - 1;
    XML_skipWhiteSpace(&p, last);
    EXPECT_EQ('w', *p);
    XML_findEndOfNonWhiteSpace(&p, last);
    EXPECT_EQ('d', *p);
    const char* q = text.data() + text.size() - 4;
    XML_findEndOfNonWhiteSpace(&q, last);
    EXPECT_EQ(last, q);
    const char* blank = text.data();
    XML_skipWhiteSpace(&blank, text.data() + 5);
    EXPECT_EQ(text.data() + 6, blank);
}

// ---------------------------------------------------------------- numbers

TEST(XmlNumbers, HexOctalDecimal) {
    unsigned long long value = 0;
    const char* next = nullptr;
    std::string hex = "0x10";
    ASSERT_EQ(0u, XML_UTF8ToQUAD(hex.data(), hex.data() + 3, &value, &next));
    EXPECT_EQ(16u, value);
    EXPECT_EQ(hex.data() + 4, next);
    std::string octal = " 010 ";
    ASSERT_EQ(0u, XML_UTF8ToQUAD(octal.data(), octal.data() + 4, &value, &next));
    EXPECT_EQ(8u, value);
    EXPECT_EQ(octal.data() + 4, next);
    std::string decimal = "20801";
    ASSERT_EQ(0u, XML_UTF8ToQUAD(decimal.data(), decimal.data() + 4, &value, nullptr));
    EXPECT_EQ(20801u, value);
}

TEST(XmlNumbers, EightyDigitsAreTooMany) {
    std::string digits(80, '1');
    unsigned long long value = 5;
    EXPECT_EQ(QVS::zERR_BUFFER_TOO_SMALL,
              XML_UTF8ToQUAD(digits.data(), digits.data() + 79, &value, nullptr));
    EXPECT_EQ(5u, value);
    std::string fewer(79, '0');
    EXPECT_EQ(0u, XML_UTF8ToQUAD(fewer.data(), fewer.data() + 78, &value, nullptr));
    long long signedValue = 0;
    EXPECT_EQ(QVS::zERR_BUFFER_TOO_SMALL,
              XML_UTF8ToSQUAD(digits.data(), digits.data() + 79, &signedValue, nullptr));
}

TEST(XmlNumbers, BlanksOnlyOrEmpty) {
    std::string blanks = "   ";
    unsigned long long value = 5;
    EXPECT_EQ(QVS::zERR_BAD_TRANSFORMATION,
              XML_UTF8ToQUAD(blanks.data(), blanks.data() + 2, &value, nullptr));
    EXPECT_EQ(QVS::zERR_BAD_TRANSFORMATION,
              XML_UTF8ToQUAD(blanks.data() + 1, blanks.data(), &value, nullptr));
    long long signedValue = 5;
    EXPECT_EQ(QVS::zERR_BAD_TRANSFORMATION,
              XML_UTF8ToSQUAD(blanks.data(), blanks.data() + 2, &signedValue, nullptr));
    EXPECT_EQ(QVS::zERR_BAD_TRANSFORMATION,
              XML_UTF8ToSQUAD(blanks.data() + 1, blanks.data(), &signedValue, nullptr));
    EXPECT_EQ(5u, value);
    EXPECT_EQ(5, signedValue);
}

TEST(XmlNumbers, NoDigitIsNoNumber) {
    std::string word = "bad) (7)";
    unsigned long long value = 5;
    EXPECT_EQ(QVS::zERR_BAD_TRANSFORMATION,
              XML_UTF8ToQUAD(word.data(), word.data() + word.size() - 1, &value, nullptr));
    std::string seven = "7)";
    ASSERT_EQ(0u, XML_UTF8ToQUAD(seven.data(), seven.data() + 1, &value, nullptr));
    EXPECT_EQ(7u, value);
}

TEST(XmlNumbers, SignedMinus) {
    std::string text = "-16";
    long long value = 0;
    ASSERT_EQ(0u, XML_UTF8ToSQUAD(text.data(), text.data() + 2, &value, nullptr));
    EXPECT_EQ(-16, value);
}

TEST(XmlNumbers, RangeEndCutsNumber) {
    Exact text("12345");
    unsigned long long value = 0;
    ASSERT_EQ(0u, XML_UTF8ToQUAD(text.begin(), text.begin() + 2, &value, nullptr));
    EXPECT_EQ(123u, value);
}

TEST(XmlDisplay, WritesLocationLabelAndText) {
    std::string text = "<a>b</a>tail";
    testing::internal::CaptureStderr();
    XML_Display("label", text.data(), text.data() + 7);
    EXPECT_EQ("util/common_cpp/nXML[996] label\n<a>b</a>\n",
              testing::internal::GetCapturedStderr());
}

TEST(XmlDisplay, StopsAtZeroByte) {
    std::string text("ab\0cd", 5);
    testing::internal::CaptureStderr();
    XML_Display("x", text.data(), text.data() + 4);
    EXPECT_EQ("util/common_cpp/nXML[996] x\nab\n", testing::internal::GetCapturedStderr());
}

// ---------------------------------------------------------------- templates

TEST(MqvsNextTagString, WalksTheTemplate) {
    const char* templ = "<qvsReply><pool><poolVerify>";
    const char* next = templ;
    char buffer[128];
    std::vector<std::string> names;
    unsigned int status;
    while ((status = MQVS_GetNextTagString(next, &next, sizeof(buffer), buffer)) == 0)
        names.push_back(buffer);
    EXPECT_EQ(QVS::zERR_RETURN_PARA_NULL, status);
    EXPECT_EQ((std::vector<std::string>{"qvsReply", "pool", "poolVerify"}), names);
}

TEST(MqvsNextTagString, EmptyNameAndUnclosedName) {
    const char* next = nullptr;
    char buffer[16];
    const char* empty = "<>";
    ASSERT_EQ(0u, MQVS_GetNextTagString(empty, &next, sizeof(buffer), buffer));
    EXPECT_STREQ("", buffer);
    EXPECT_EQ(empty + 1, next);
    const char* unclosed = "<abc";
    ASSERT_EQ(0u, MQVS_GetNextTagString(unclosed, &next, sizeof(buffer), buffer));
    EXPECT_STREQ("abc", buffer);
    EXPECT_EQ(unclosed + 4, next);
}

TEST(MqvsNextTagString, BadParameters) {
    char buffer[8];
    const char* next = nullptr;
    EXPECT_EQ(QVS::zERR_BAD_PARAMETER_VALUE, MQVS_GetNextTagString(nullptr, &next, 8, buffer));
    EXPECT_EQ(QVS::zERR_BAD_PARAMETER_VALUE, MQVS_GetNextTagString("<a>", &next, 0, buffer));
    EXPECT_EQ(QVS::zERR_RETURN_PARA_NULL, MQVS_GetNextTagString("", &next, 8, buffer));
    EXPECT_EQ(QVS::zERR_BUFFER_TOO_SMALL, MQVS_GetNextTagString("<abcdefgh>", &next, 8, buffer));
    EXPECT_EQ(0u, MQVS_GetNextTagString("<abcdefg>", &next, 8, buffer));
}

TEST(MqvsSpecificTemplate, FollowsOneLevelPerTag) {
    std::string reply = "<qvsReply><pool><poolVerify><volume>VOL1</volume><path>/a/b</path>"
                        "</poolVerify></pool></qvsReply>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("<qvsReply><pool><poolVerify><path>", reply.size(),
                                           reply.c_str(), &info));
    EXPECT_EQ("/a/b", contentsOf(info));
    std::string value;
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("<qvsReply><pool><poolVerify><volume>", reply.size(),
                                           reply.c_str(), value));
    EXPECT_EQ("VOL1", value);
}

TEST(MqvsSpecificTemplate, SecondTagTwoLevelsDownIsNotFound) {
    std::string reply = "<qvsReply><pool><poolVerify><result value=\"0\"/></poolVerify></pool>"
                        "</qvsReply>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetSpecificTemplate("<qvsReply><poolVerify>", reply.size(), reply.c_str(),
                                       &info));
}

TEST(MqvsSpecificTemplate, TagOf128CharactersIsTooLong) {
    std::string name(128, 'n');
    std::string reply = "<" + name + ">x</" + name + ">";
    std::string templ = "<" + name + ">";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_BUFFER_TOO_SMALL,
              MQVS_GetSpecificTemplate(templ.c_str(), reply.size(), reply.c_str(), &info));
    std::string shorter(127, 'n');
    std::string reply2 = "<" + shorter + ">x</" + shorter + ">";
    std::string templ2 = "<" + shorter + ">";
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate(templ2.c_str(), reply2.size(), reply2.c_str(), &info));
    EXPECT_EQ("x", contentsOf(info));
}

TEST(MqvsSpecificTemplate, EmptyElementEndsTheWalk) {
    std::string reply = "<qvsReply><pool/></qvsReply>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetSpecificTemplate("<qvsReply><pool><x>", reply.size(), reply.c_str(), &info));
    std::string value = "old";
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("<qvsReply><pool>", reply.size(), reply.c_str(), value));
    EXPECT_EQ("", value);
}

TEST(MqvsSpecificTemplate, StringFormUnwrapsCdata) {
    std::string reply = "<qvsReply><path><![CDATA[/a<b>]]></path></qvsReply>";
    std::string value;
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("<qvsReply><path>", reply.size(), reply.c_str(), value));
    EXPECT_EQ("/a<b>", value);
    // Only the section is taken, as a zero-terminated CDATA text would be.
    std::string trailing = "<qvsReply><path><![CDATA[/a]]>b</path></qvsReply>";
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("<qvsReply><path>", trailing.size(), trailing.c_str(),
                                           value));
    EXPECT_EQ("/a", value);
    // An unterminated section hides the closing tags behind it.
    std::string unterminated = "<qvsReply><path><![CDATA[/a</path></qvsReply>";
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetSpecificTemplate("<qvsReply><path>", unterminated.size(),
                                       unterminated.c_str(), value));
    std::string spaced = "<qvsReply><path> <![CDATA[x]]></path></qvsReply>";
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("<qvsReply><path>", spaced.size(), spaced.c_str(),
                                           value));
    EXPECT_EQ(" <![CDATA[x]]>", value);
}

TEST(MqvsSpecificTemplate, BadParametersAndEmptyTemplate) {
    std::string reply = "<qvsReply/>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_BAD_PARAMETER_VALUE,
              MQVS_GetSpecificTemplate(nullptr, reply.size(), reply.c_str(), &info));
    EXPECT_EQ(QVS::zERR_BAD_PARAMETER_VALUE,
              MQVS_GetSpecificTemplate("<qvsReply>", reply.size(), nullptr, &info));
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetSpecificTemplate("<qvsReply>", 0, reply.c_str(), &info));
    // No tag at all: the whole text is the element's contents.
    ASSERT_EQ(0u, MQVS_GetSpecificTemplate("", reply.size(), reply.c_str(), &info));
    EXPECT_EQ(reply, contentsOf(info));
}

TEST(MqvsSpecificTemplate, LengthLimitsTheSearch) {
    std::string reply = "<qvsReply><a>1</a></qvsReply>";
    XML_ElementInfo_s info;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetSpecificTemplate("<qvsReply>", reply.size() - 1, reply.c_str(), &info));
}

TEST(MqvsTagTemplate, TagInsideTemplate) {
    std::string reply = "<writeResult><error>Write failed (20012)</error></writeResult>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, MQVS_GetTagTemplate("<writeResult>", "<error>", reply.size(), reply.c_str(),
                                      &info));
    EXPECT_EQ("Write failed (20012)", contentsOf(info));
    ASSERT_EQ(0u, MQVS_GetTemplate("<writeResult>", "<error>", reply.size(), reply.c_str(), &info));
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetTagTemplate("<writeResult>", "<warning>", reply.size(), reply.c_str(),
                                  &info));
    EXPECT_EQ(QVS::zERR_BAD_PARAMETER_VALUE,
              MQVS_GetTagTemplate("<writeResult>", nullptr, reply.size(), reply.c_str(), &info));
}

TEST(MqvsResultTemplate, FindsResultInsideTemplate) {
    std::string reply = "<qvsReply><result value=\"0\"/><pool><poolVerify><result value=\"5\"/>"
                        "</poolVerify></pool></qvsReply>";
    XML_ElementInfo_s info;
    ASSERT_EQ(0u, MQVS_GetResultTemplate("<qvsReply><pool><poolVerify>", reply.size(),
                                         reply.c_str(), &info));
    ASSERT_EQ(0u, XML_GetTagAttribute("value", &info));
    EXPECT_EQ("5", valueOf(info));
}

TEST(MqvsResultValueAttribute, ResultWithoutValueLeavesCallerValue) {
    std::string reply = "<qvsReply><result/></qvsReply>";
    long long value = 1234;
    EXPECT_EQ(0u, MQVS_GetResultValueAttribute("<qvsReply>", reply.size(), reply.c_str(), &value));
    EXPECT_EQ(1234, value);
    std::string empty = "<qvsReply><result value=\"\"/></qvsReply>";
    EXPECT_EQ(0u, MQVS_GetResultValueAttribute("<qvsReply>", empty.size(), empty.c_str(), &value));
    EXPECT_EQ(1234, value);
    std::string word = "<qvsReply><result value=\"abc\"/></qvsReply>";
    EXPECT_EQ(0u, MQVS_GetResultValueAttribute("<qvsReply>", word.size(), word.c_str(), &value));
    EXPECT_EQ(1234, value);
}

TEST(MqvsResultValueAttribute, ReadsSignedValue) {
    std::string reply = "<qvsReply><result value=\"-3\"><description>x</description></result>"
                        "</qvsReply>";
    long long value = 0;
    EXPECT_EQ(0u, MQVS_GetResultValueAttribute("<qvsReply>", reply.size(), reply.c_str(), &value));
    EXPECT_EQ(-3, value);
}

TEST(MqvsResultValueAttribute, MissingResultIsReported) {
    std::string reply = "<qvsReply><other/></qvsReply>";
    long long value = 0;
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetResultValueAttribute("<qvsReply>", reply.size(), reply.c_str(), &value));
}

TEST(MqvsGetAttribute, StringFormTracesAndCopies) {
    std::string reply = "<qvsReply><pool><versionMajor value=\"1\" name=\"abc\"/></pool></qvsReply>";
    std::string value = "old";
    testing::internal::CaptureStderr();
    ASSERT_EQ(0u, MQVS_GetAttribute("<qvsReply><pool>", "<versionMajor>", "name", reply.size(),
                                    reply.c_str(), value));
    EXPECT_EQ("util/common_cpp/nXML[950]\n\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ("abc", value);
}

TEST(MqvsGetAttribute, StringFormLenientWhenAbsentOrEmpty) {
    std::string reply = "<qvsReply><pool><x name=\"\"/></pool></qvsReply>";
    std::string value = "old";
    testing::internal::CaptureStderr();
    EXPECT_EQ(0u, MQVS_GetAttribute("<qvsReply><pool>", "<x>", "name", reply.size(),
                                    reply.c_str(), value));
    EXPECT_EQ(0u, MQVS_GetAttribute("<qvsReply><pool>", "<x>", "other", reply.size(),
                                    reply.c_str(), value));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    EXPECT_EQ("old", value);
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              MQVS_GetAttribute("<qvsReply><pool>", "<y>", "name", reply.size(), reply.c_str(),
                                value));
}

TEST(MqvsGetAttribute, NumericForm) {
    std::string reply = "<qvsReply><pool><x value=\"0x20\"/><y value=\"\"/></pool></qvsReply>";
    long long value = 9;
    ASSERT_EQ(0u, MQVS_GetAttribute("<qvsReply><pool>", "<x>", "value", reply.size(),
                                    reply.c_str(), &value));
    EXPECT_EQ(32, value);
    ASSERT_EQ(0u, MQVS_GetAttribute("<qvsReply><pool>", "<y>", "value", reply.size(),
                                    reply.c_str(), &value));
    EXPECT_EQ(32, value);
}

TEST(MqvsTagAttributeAttribute, ReadsUnsignedValue) {
    std::string reply = "<qvsReply><pool><poolVerify><versionMajor value=\"1\"/>"
                        "<versionMinor value=\"01\"/></poolVerify></pool></qvsReply>";
    unsigned long long value = 0;
    EXPECT_EQ(0u, MQVS_GetTagAttributeAttribute("<qvsReply><pool><poolVerify>", "<versionMajor>",
                                                "value", reply.size(), reply.c_str(), &value));
    EXPECT_EQ(1u, value);
}

TEST(MqvsTagAttributeAttribute, ThrowsOnEachFailure) {
    std::string reply = "<qvsReply><pool><a value=\"x\"/><b other=\"1\"/></pool></qvsReply>";
    unsigned long long value = 0;
    struct Case {
        const char* tag;
        const char* message;
        int status;
    };
    for (const Case& c : {Case{"<c>", "Can not find tag", 21703},
                          Case{"<b>", "Tag attribute issues", 21703},
                          Case{"<a>", "Tag attribute contents issues", 20150}}) {
        testing::internal::CaptureStderr();
        try {
            MQVS_GetTagAttributeAttribute("<qvsReply><pool>", c.tag, "value", reply.size(),
                                          reply.c_str(), &value);
            ADD_FAILURE() << c.tag;
        } catch (const AdminError&) {
            ADD_FAILURE() << "an AdminError for " << c.tag;
        } catch (const QVSError& e) {
            EXPECT_STREQ(c.message, e.what());
            EXPECT_EQ(c.status, e.status());
            EXPECT_EQ(0u, e.location().find("util/common_cpp/nXML["));
        }
        std::string err = testing::internal::GetCapturedStderr();
        if (c.status == 21703) {
            EXPECT_NE(std::string::npos, err.find(std::string("Tagname ") + c.tag)) << err;
        }
    }
}

// ---------------------------------------------------------------- result values

TEST(ReplyResultValue, ZeroReturnsNormally) {
    EXPECT_NO_THROW(GetQVSReplyResultValueT("<qvsReply><result value=\"0\"/></qvsReply>"));
}

TEST(ReplyResultValue, NonZeroThrowsReplyResults) {
    try {
        GetQVSReplyResultValueT("<qvsReply><result value=\"20801\"/></qvsReply>");
        FAIL();
    } catch (const AdminError&) {
        FAIL() << "a result is not a channel failure";
    } catch (const QVSError& e) {
        EXPECT_EQ(20801, e.status());
        EXPECT_STREQ("Reply results", e.what());
        EXPECT_TRUE(e.hasStatus());
    }
}

TEST(ReplyResultValue, OverflowThrowsAndReturns20006) {
    const char* reply = "<qvsReply><result value=\"4294967296\"/></qvsReply>";
    try {
        GetQVSReplyResultValueT(reply);
        FAIL();
    } catch (const QVSError& e) {
        EXPECT_EQ(20006, e.status());
        EXPECT_STREQ("Value overflow", e.what());
    }
    int result = 77;
    EXPECT_EQ(QVS::zERR_QUAD_TOO_BIG_FOR_LONG, GetQVSReplyResultValue(reply, result));
    EXPECT_EQ(0, result); // truncated to 32 bits
}

TEST(ReplyResultValue, StatusForms) {
    int result = -1;
    EXPECT_EQ(0u, GetQVSReplyResultValue("<qvsReply><result value=\"20811\"/></qvsReply>", result));
    EXPECT_EQ(20811, result);
    EXPECT_EQ(0u, GetQVSReplyResultValue("<qvsReply><result value=\"-2147483648\"/></qvsReply>",
                                         result));
    EXPECT_EQ(-2147483647 - 1, result);
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE, GetQVSReplyResultValue("<qvsReply/>", result));
    EXPECT_EQ(QVS::zERR_BAD_PARAMETER_VALUE, GetQVSReplyResultValue(nullptr, result));
    const char* pool = "<qvsReply><result value=\"0\"/><pool><poolVerify><result value=\"20405\"/>"
                       "</poolVerify></pool></qvsReply>";
    EXPECT_EQ(0u, GetQVSReplyResultValue(pool, result));
    EXPECT_EQ(0, result);
    EXPECT_EQ(0u, GetPoolVerifyReplyResultValue(pool, result));
    EXPECT_EQ(20405, result);
    EXPECT_EQ(QVS::zERR_XML_IS_INCOMPLETE,
              GetPoolVerifyReplyResultValue("<qvsReply><result value=\"0\"/></qvsReply>", result));
}

TEST(ReplyResultValue, MissingValueCountsAsSuccess) {
    EXPECT_NO_THROW(GetQVSReplyResultValueT("<qvsReply><result/></qvsReply>"));
}

TEST(ReplyResultValue, ParseFailureOfGeneralForm) {
    try {
        GetReplyResultValueT("<qvsReply><x/></qvsReply>", "<qvsReply><pool>");
        FAIL();
    } catch (const AdminError& e) {
        EXPECT_STREQ("Unable to parse XML tag <qvsReply><pool>", e.what());
        EXPECT_EQ(21703, e.status());
        EXPECT_EQ("util/common_cpp/nXML[1159]", e.location());
    }
    try {
        GetQVSReplyResultValueT("<other/>");
        FAIL();
    } catch (const AdminError& e) {
        EXPECT_STREQ("Unable to parse XML tag <qvsReply>", e.what());
    }
}

TEST(ReplyResultValue, LongTemplateMessageIsCut) {
    std::string templ(400, 'x');
    try {
        GetReplyResultValueT("<qvsReply/>", templ.c_str());
        FAIL();
    } catch (const AdminError& e) {
        EXPECT_EQ(255u, std::strlen(e.what()));
    }
}

namespace {

struct FixedForm {
    void (*check)(const char*);
    const char* wrapperOpen;
    const char* wrapperClose;
    const char* parseMessage;
    const char* resultMessage;
};

const FixedForm FIXED_FORMS[] = {
    {GetPoolVerifyReplyResultValueT, "<qvsReply><pool><poolVerify>", "</poolVerify></pool></qvsReply>",
     "Unable to parse XML tag <poolVerify>", "PoolVerify results"},
    {GetVolumeModifyStateReplyResultValueT, "<qvsReply><volume><modifyState>",
     "</modifyState></volume></qvsReply>", "Unable to parse XML tag <modifyState>",
     "modifyState results"},
    {GetVolumeBasicInfoReplyResultValueT, "<qvsReply><volume><getVolumeInfo>",
     "</getVolumeInfo></volume></qvsReply>", "Unable to parse XML tag <getVolumeInfo>",
     "getVolumeInfo results"},
    {GetPoolBasicInfoReplyResultValueT, "<qvsReply><pool><getPoolInfo>",
     "</getPoolInfo></pool></qvsReply>", "Unable to parse XML tag <getPoolInfo>",
     "getPoolInfo results"},
};

} // namespace

TEST(ReplyResultValue, FixedFormsMessages) {
    for (const FixedForm& f : FIXED_FORMS) {
        std::string ok = std::string(f.wrapperOpen) + "<result value=\"0\"/>" + f.wrapperClose;
        EXPECT_NO_THROW(f.check(ok.c_str())) << f.resultMessage;
        std::string bad = std::string(f.wrapperOpen) + "<result value=\"20811\"/>" + f.wrapperClose;
        try {
            f.check(bad.c_str());
            ADD_FAILURE() << f.resultMessage;
        } catch (const AdminError&) {
            ADD_FAILURE() << f.resultMessage;
        } catch (const QVSError& e) {
            EXPECT_STREQ(f.resultMessage, e.what());
            EXPECT_EQ(20811, e.status());
        }
        std::string big = std::string(f.wrapperOpen) + "<result value=\"0x80000000\"/>" + f.wrapperClose;
        try {
            f.check(big.c_str());
            ADD_FAILURE() << f.resultMessage;
        } catch (const QVSError& e) {
            EXPECT_STREQ("Value overflow", e.what());
            EXPECT_EQ(20006, e.status());
        }
        try {
            f.check("<qvsReply><result value=\"0\"/></qvsReply>");
            ADD_FAILURE() << f.parseMessage;
        } catch (const AdminError& e) {
            EXPECT_STREQ(f.parseMessage, e.what());
            EXPECT_EQ(21703, e.status());
        }
    }
}

TEST(ReplyResultValueForTag, Outcomes) {
    EXPECT_NO_THROW(GetReplyResultValueForTag(
        "<qvsReply><a><b><startRebuild><result value=\"0\"/></startRebuild></b></a></qvsReply>",
        "startRebuild"));
    struct Case {
        const char* reply;
        const char* message;
        int status;
        const char* location;
        bool admin;
    };
    const Case cases[] = {
        {"<qvsReply/>", "Can't find content for tag op", 21702, "util/common_cpp/nXML[1218]", false},
        {"<qvsReply><op/></qvsReply>", "Can't find result tag", 21702, "util/common_cpp/nXML[1225]",
         false},
        {"<qvsReply><op><x/></op></qvsReply>", "Can't find result tag", 21702,
         "util/common_cpp/nXML[1225]", false},
        {"<qvsReply><op><result/></op></qvsReply>", "Unable to parse XML tag op", 21703,
         "util/common_cpp/nXML[1244]", true},
        {"<qvsReply><op><result value=\"\"/></op></qvsReply>", "Unable to parse XML tag op", 20150,
         "util/common_cpp/nXML[1244]", true},
        {"<qvsReply><op><result value=\"zz\"/></op></qvsReply>", "Unable to parse XML tag op",
         20150, "util/common_cpp/nXML[1244]", true},
        {"<qvsReply><op><result value=\"4294967296\"/></op></qvsReply>", "Value overflow", 20006,
         "util/common_cpp/nXML[1250]", false},
        {"<qvsReply><op><result value=\"21734\"/></op></qvsReply>", "Reply results", 21734,
         "util/common_cpp/nXML[1254]", false},
        {"", "Can't find content for tag op", 21702, "util/common_cpp/nXML[1218]", false},
    };
    for (const Case& c : cases) {
        try {
            GetReplyResultValueForTag(c.reply, "op");
            ADD_FAILURE() << c.reply;
        } catch (const QVSError& e) {
            EXPECT_STREQ(c.message, e.what()) << c.reply;
            EXPECT_EQ(c.status, e.status()) << c.reply;
            EXPECT_EQ(c.location, e.location()) << c.reply;
            EXPECT_EQ(c.admin, dynamic_cast<const AdminError*>(&e) != nullptr) << c.reply;
        }
    }
}

TEST(MqvsTagContents, ListOfTags) {
    std::string reply = "<qvsReply><pool><name>P1</name></pool></qvsReply>";
    std::string value;
    ASSERT_EQ(0u, MQVS_GetTagContents(reply.c_str(), reply.size(), {"qvsReply", "pool", "name"},
                                      value));
    EXPECT_EQ("P1", value);
}

// ---------------------------------------------------------------- hostile input

namespace {

std::string mutate(std::mt19937& rng, std::string text) {
    static const char alphabet[] = "<>/=\" ![]CDATAqvsReplyresultvalue0x19";
    std::uniform_int_distribution<int> op(0, 3);
    int edits = 1 + static_cast<int>(rng() % 6);
    for (int i = 0; i < edits && !text.empty(); ++i) {
        size_t at = rng() % text.size();
        char c = alphabet[rng() % (sizeof(alphabet) - 1)];
        switch (op(rng)) {
        case 0: text.erase(at, 1 + rng() % 4); break;
        case 1: text.insert(at, 1, c); break;
        case 2: text[at] = c; break;
        default: text.resize(at); break;
        }
    }
    return text;
}

// Runs every scanner and template entry point over the text; each must
// return (or throw one of the documented kinds) without reading past it.
void exercise(const std::string& text) {
    if (text.empty())
        return;
    Exact exact(text);
    XML_ElementInfo_s info;
    const char* name = nullptr;
    unsigned long length = 0;
    for (size_t from = 0; from < exact.size(); from += 7) {
        if (XML_GetNextTag(exact.begin() + from, exact.last(), &info, &name, &length) == 0)
            XML_GetTagAttribute("value", &info);
    }
    XML_GetTagElementAtCurrentLevel("result", exact.begin(), exact.last(), &info);
    if (XML_GetTagElement("result", exact.begin(), exact.last(), &info) == 0)
        XML_GetTagAttribute("value", &info);
    unsigned long long u = 0;
    long long s = 0;
    XML_UTF8ToQUAD(exact.begin(), exact.last(), &u, nullptr);
    XML_UTF8ToSQUAD(exact.begin(), exact.last(), &s, nullptr);
    std::string value;
    MQVS_GetSpecificTemplate("<qvsReply><pool><poolVerify><path>", exact.size(), exact.begin(),
                             value);
    MQVS_GetResultValueAttribute("<qvsReply>", exact.size(), exact.begin(), &s);
    MQVS_GetTagTemplate("<writeResult>", "<error>", exact.size(), exact.begin(), &info);
    MQVS_GetAttribute("<qvsReply>", "<result>", "value", exact.size(), exact.begin(), &s);

    int result = 0;
    const char* reply = text.c_str();
    GetQVSReplyResultValue(reply, result);
    GetPoolVerifyReplyResultValue(reply, result);
    try { GetQVSReplyResultValueT(reply); } catch (const QVSError&) {}
    try { GetPoolVerifyReplyResultValueT(reply); } catch (const QVSError&) {}
    try { GetReplyResultValueForTag(reply, "poolVerify"); } catch (const QVSError&) {}
    try {
        MQVS_GetTagAttributeAttribute("<qvsReply>", "<result>", "value", text.size(), reply, &u);
    } catch (const QVSError&) {}
}

} // namespace

TEST(HostileReplies, MutatedRepliesNeverReadOutside) {
    const std::vector<std::string> seeds = {
        "<qvsReply><result value=\"0\"/><pool><poolVerify><result value=\"0\"/><volume>V</volume>"
        "<path><![CDATA[/x/y]]></path></poolVerify></pool></qvsReply>",
        "<writeResult><error>Write failed (20012)</error></writeResult>",
        "<qvsReply><a><a/><![CDATA[</a>]]></a><result value = \"5\">t</result></qvsReply>",
    };
    std::mt19937 rng(20801);
    testing::internal::CaptureStderr();
    for (const std::string& seed : seeds) {
        exercise(seed);
        for (int i = 0; i < 3000; ++i)
            exercise(mutate(rng, seed));
        for (size_t cut = 1; cut <= seed.size(); ++cut)
            exercise(seed.substr(0, cut));
    }
    testing::internal::GetCapturedStderr();
    SUCCEED();
}
