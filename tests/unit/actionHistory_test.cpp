// actionHistory_test.cpp - rebuild log tag scanning, items, dumps and the
// action history.
#include "util/common_cpp/actionHistory.h"
#include "util/support/qvsApp.h"
#include "util/support/qvsStatus.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>

namespace {

const char GUID_TEXT[] = "01234567-89ab-cdef-01-23-456789abcdef";

std::string todItem(const std::string& key, const std::string& flag, const std::string& extra = "",
                    const std::string& zid = "0x118", const std::string& pZid = "0x40") {
    return "<todItem><key v=\"" + key + "\"/><zid v=\"" + zid + "\"/><pZid v=\"" + pZid +
           "\"/><volumeID v=\"" + GUID_TEXT + "\"/><flag v=\"" + flag + "\"/>" + extra +
           "</todItem>";
}

std::string messageItem(const std::string& key, const std::string& m) {
    return "<messageItem><key v=\"" + key + "\"/><m>" + m + "</m></messageItem>";
}

std::string actionItem(unsigned key, const std::string& extra = "") {
    return "<actionItem><key value=\"" + std::to_string(key) + "\"/>" + extra + "</actionItem>";
}

// Restores the debug mask whatever a test set it to.
class DebugMask : public ::testing::Test {
protected:
    void TearDown() override { TheApp.SetLevel(0); }
};

std::string dump(const TODItem& item) {
    std::ostringstream os;
    os << item;
    return os.str();
}

} // namespace

// ---------------------------------------------------------------- GetTagContents

TEST(GetTagContents, PlainElement) {
    std::string text = "xx<todItem>abc</todItem>yy";
    std::string contents = "old";
    unsigned long endPos = 0;
    ASSERT_EQ(0u, GetTagContents(text, "<todItem>", contents, 0, &endPos));
    EXPECT_EQ("abc", contents);
    EXPECT_EQ(text.size() - 2, endPos);
    EXPECT_EQ(0u, GetTagContents(text, "<todItem>", contents, 2, nullptr));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents(text, "<todItem>", contents, 3, nullptr));
}

TEST(GetTagContents, AttributesNeedTheOpenPrefix) {
    std::string text = "<todItem id='1'>abc</todItem>";
    std::string contents = "old";
    unsigned long endPos = 7;
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents(text, "<todItem>", contents, 0, &endPos));
    EXPECT_EQ("old", contents);
    EXPECT_EQ(7u, endPos);
    ASSERT_EQ(0u, GetTagContents(text, "<todItem", contents, 0, &endPos));
    EXPECT_EQ("abc", contents);
    // The closing tag formed from a prefix is "</todItem", without its ">".
    EXPECT_EQ(text.size() - 1, endPos);
}

TEST(GetTagContents, NestedSameNameEndsAtFirstClosingTag) {
    std::string contents;
    ASSERT_EQ(0u, GetTagContents("<a><a>x</a></a>", "<a>", contents, 0, nullptr));
    EXPECT_EQ("<a>x", contents);
}

TEST(GetTagContents, PrefixMatchesLongerNames) {
    std::string contents;
    ASSERT_EQ(0u, GetTagContents("<information loc=\"x\">text</information>", "<info", contents, 0,
                                 nullptr));
    EXPECT_EQ("text", contents);
}

TEST(GetTagContents, PrefixWithoutClosingAngle) {
    std::string contents = "old";
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND,
              GetTagContents("<info loc=\"x\"", "<info", contents, 0, nullptr));
    EXPECT_EQ("old", contents);
}

TEST(GetTagContents, CdataUnwrapping) {
    std::string contents;
    ASSERT_EQ(0u, GetTagContents("<fileName><![CDATA[a]]></fileName>", "<fileName>", contents, 0,
                                 nullptr));
    EXPECT_EQ("a", contents);
    ASSERT_EQ(0u, GetTagContents("<fileName> <![CDATA[a]]></fileName>", "<fileName>", contents, 0,
                                 nullptr));
    EXPECT_EQ(" <![CDATA[a]]>", contents);
    ASSERT_EQ(0u, GetTagContents("<fileName><![CDATA[a]]> </fileName>", "<fileName>", contents, 0,
                                 nullptr));
    EXPECT_EQ("<![CDATA[a]]> ", contents);
    ASSERT_EQ(0u, GetTagContents("<fileName><![CDATA[]]></fileName>", "<fileName>", contents, 0,
                                 nullptr));
    EXPECT_EQ("", contents);
}

TEST(GetTagContents, CdataOnlyPartOfContentsIsKept) {
    std::string contents;
    ASSERT_EQ(0u, GetTagContents("<f><![CDATA[a]]>b</f>", "<f>", contents, 0, nullptr));
    EXPECT_EQ("<![CDATA[a]]>b", contents);
    ASSERT_EQ(0u, GetTagContents("<f><![CDATA[a</f>", "<f>", contents, 0, nullptr));
    EXPECT_EQ("<![CDATA[a", contents);
}

TEST(GetTagContents, CdataWithEarlierEndMarkerOnlyIsKept) {
    std::string contents;
    ASSERT_EQ(0u, GetTagContents("<f><![CDATA[a]]>b]]>c</f>", "<f>", contents, 0, nullptr));
    EXPECT_EQ("<![CDATA[a]]>b]]>c", contents);
    // The last marker at the end wins, so an inner one stays in the text.
    ASSERT_EQ(0u, GetTagContents("<f><![CDATA[a]]>b]]></f>", "<f>", contents, 0, nullptr));
    EXPECT_EQ("a]]>b", contents);
}

TEST(GetTagContents, EmptyAndSelfClosingElements) {
    std::string contents = "old";
    unsigned long endPos = 0;
    ASSERT_EQ(0u, GetTagContents("<x></x>", "<x>", contents, 0, &endPos));
    EXPECT_EQ("", contents);
    EXPECT_EQ(7u, endPos);
    contents = "old";
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents("<x/>", "<x>", contents, 0, nullptr));
    EXPECT_EQ("old", contents);
}

TEST(GetTagContents, MissingClosingTag) {
    std::string contents = "old";
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              GetTagContents("<x>abc</y>", "<x>", contents, 0, nullptr));
    EXPECT_EQ("old", contents);
}

TEST(GetTagContents, StartBeyondTextAndEmptyTag) {
    std::string contents;
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents("<x></x>", "<x>", contents, 100, nullptr));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents("<x></x>", "", contents, 0, nullptr));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents("", "<x>", contents, 0, nullptr));
}

TEST(GetTagContents, OneCharacterTagAndTagsAtTheVeryEnd) {
    std::string contents;
    unsigned long endPos = 0;
    ASSERT_EQ(0u, GetTagContents("a<b>c</b>", "<", contents, 0, &endPos));
    EXPECT_EQ("c", contents);
    EXPECT_EQ(7u, endPos);
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, GetTagContents("<x></x", "</x>", contents, 0, nullptr));
    // A closing tag given as the tag looks for "<//x>".
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              GetTagContents("<x></x>", "</x>", contents, 3, nullptr));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, GetTagContents("<x></x", "<x>", contents, 0, nullptr));
    ASSERT_EQ(0u, GetTagContents("<x></x>", "<x>", contents, 0, nullptr));
}

TEST(GetTagContentsInclusive, WholeElement) {
    std::string text = "ab<todItem><![CDATA[x]]></todItem>cd";
    std::string contents;
    unsigned long endPos = 0;
    ASSERT_EQ(0u, GetTagContentsInclusive(text, "<todItem>", contents, 0, &endPos));
    EXPECT_EQ("<todItem><![CDATA[x]]></todItem>", contents);
    EXPECT_EQ(text.size() - 2, endPos);
}

TEST(GetTagContentsInclusive, ExactTagOnly) {
    std::string contents = "old";
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND,
              GetTagContentsInclusive("<todItem id='1'></todItem>", "<todItem>", contents, 0,
                                      nullptr));
    // No ">" handling: the prefix is matched as given.
    ASSERT_EQ(0u, GetTagContentsInclusive("<info a=\"1\">t</info>", "<info", contents, 0, nullptr));
    EXPECT_EQ("<info a=\"1\">t</info", contents);
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              GetTagContentsInclusive("<a>x", "<a>", contents, 0, nullptr));
}

TEST(GetTagContentsInclusive, ClosingTagMustFollowOpeningTag) {
    std::string contents;
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              GetTagContentsInclusive("</a><a>", "<a>", contents, 0, nullptr));
}

TEST(LocateTagInclusive, PositionsWithoutCopy) {
    unsigned long first = 0, endPos = 0;
    ASSERT_EQ(0u, LocateTagInclusive("xx<rebuildLog></rebuildLog>", "<rebuildLog>", 0, &first,
                                     &endPos));
    EXPECT_EQ(2u, first);
    EXPECT_EQ(27u, endPos);
}

// ---------------------------------------------------------------- finders

TEST(KeyedFinders, KeyEightIsNotKeyEighty) {
    std::string text = "<todHistory>" + todItem("80", "0x100") + todItem("8", "0x200") +
                       "</todHistory>";
    std::string itemText;
    ASSERT_EQ(0u, TODItem::FindTODItemTag(text, 8, itemText));
    EXPECT_EQ(todItem("8", "0x200"), itemText);
    ASSERT_EQ(0u, TODItem::FindTODItemTag(text, 80, itemText));
    EXPECT_EQ(todItem("80", "0x100"), itemText);
}

TEST(KeyedFinders, FirstMatchInFileOrderWins) {
    std::string first = todItem("5", "0x100", "", "1");
    std::string second = todItem("5", "0x100", "", "2");
    std::string itemText;
    ASSERT_EQ(0u, TODItem::FindTODItemTag(first + second, 5, itemText));
    EXPECT_EQ(first, itemText);
}

TEST(KeyedFinders, PatternAnywhereInTheItem) {
    // The key pattern inside a file name still matches: a plain substring search.
    std::string item = "<todItem><fileName>&lt;key v=\"3\" <key v=\"3\"</fileName><key v=\"9\"/></todItem>";
    std::string itemText;
    ASSERT_EQ(0u, TODItem::FindTODItemTag(item, 3, itemText));
    EXPECT_EQ(item, itemText);
}

TEST(KeyedFinders, NotFoundLeavesLastExaminedItem) {
    std::string text = todItem("1", "0x100") + todItem("2", "0x100");
    std::string itemText = "before";
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, TODItem::FindTODItemTag(text, 3, itemText));
    EXPECT_EQ(todItem("2", "0x100"), itemText);
    itemText = "before";
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, TODItem::FindTODItemTag("no items", 3, itemText));
    EXPECT_EQ("before", itemText);
}

TEST(KeyedFinders, UnterminatedItemEndsSearch) {
    std::string text = todItem("1", "0x100") + "<todItem><key v=\"2\"/>";
    std::string itemText;
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, TODItem::FindTODItemTag(text, 2, itemText));
}

TEST(KeyedFinders, MessageDebugAndIOItems) {
    std::string text = messageItem("4", "<info>m</info>") +
                       "<debugItem><key v=\"4\"/>d</debugItem>" +
                       "<ioItem><key v=\"4\"/></ioItem><ioItem><k v=\"4\"/>io</ioItem>";
    std::string itemText;
    ASSERT_EQ(0u, MessageItem::FindMessageItemTag(text, 4, itemText));
    EXPECT_EQ(messageItem("4", "<info>m</info>"), itemText);
    ASSERT_EQ(0u, DebugItem::FindDebugItemTag(text, 4, itemText));
    EXPECT_EQ("<debugItem><key v=\"4\"/>d</debugItem>", itemText);
    // I/O items are keyed by the short attribute name only.
    ASSERT_EQ(0u, IOItem::FindIOItemTag(text, 4, itemText));
    EXPECT_EQ("<ioItem><k v=\"4\"/>io</ioItem>", itemText);
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, IOItem::FindIOItemTag(text, 5, itemText));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, DebugItem::FindDebugItemTag(text, 5, itemText));
}

TEST(FirstItemFinders, EachKind) {
    std::string text = actionItem(7) + messageItem("2", "<info>a</info>") + todItem("3", "1") +
                       "<debugItem>d</debugItem>";
    std::string itemText;
    ASSERT_EQ(0u, ActionItem::FindActionItemTag(text, itemText));
    EXPECT_EQ(actionItem(7), itemText);
    ASSERT_EQ(0u, MessageItem::FindMessageItemTag(text, itemText));
    EXPECT_EQ(messageItem("2", "<info>a</info>"), itemText);
    ASSERT_EQ(0u, TODItem::FindTODItemTag(text, itemText));
    EXPECT_EQ(todItem("3", "1"), itemText);
    ASSERT_EQ(0u, DebugItem::FindDebugItemTag(text, itemText));
    EXPECT_EQ("<debugItem>d</debugItem>", itemText);
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, TODItem::FindTODItemTag("", itemText));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, TODItem::FindTODItemTag("<todItem>", itemText));
}

TEST(ActionItemFinder, ComparesParsedKeysNumerically) {
    std::string text = actionItem(1) + "<actionItem><key value=\"0x2\"/></actionItem>" +
                       actionItem(3);
    ActionItem item;
    std::string itemText;
    ASSERT_EQ(0u, item.FindActionItemTag(text, 2, itemText));
    EXPECT_EQ(2u, item.Key());
    EXPECT_EQ("<actionItem><key value=\"0x2\"/></actionItem>", itemText);
}

TEST(ActionItemFinder, NotFoundKeepsLastParsedItem) {
    ActionItem item;
    std::string itemText;
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND,
              item.FindActionItemTag(actionItem(1) + actionItem(4), 9, itemText));
    EXPECT_EQ(4u, item.Key());
}

TEST(ActionItemFinder, ParseFailureEndsSearch) {
    ActionItem item;
    std::string itemText;
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND,
              item.FindActionItemTag("<actionItem></actionItem>" + actionItem(1), 1, itemText));
}

TEST(WalkingFinders, WalkTodItemsThenEndOfList) {
    std::string text = "<todHistory>" + todItem("1", "0x100") + todItem("2", "0x200") +
                       "</todHistory>";
    TODItem item;
    unsigned long position = 0, next = 0;
    ASSERT_EQ(0u, item.FindTODItemTagAll(text, position, next));
    EXPECT_EQ(1u, item.Key());
    position = next;
    ASSERT_EQ(0u, item.FindTODItemTagAll(text, position, next));
    EXPECT_EQ(2u, item.Key());
    EXPECT_EQ(text.size() - std::string("</todHistory>").size(), next);
    position = next;
    EXPECT_EQ(QVS::zERR_RAV_EOL, item.FindTODItemTagAll(text, position, next));
    EXPECT_EQ(2u, item.Key());
}

TEST(WalkingFinders, EmptyTextGivesEndOfListNeverTagNotFound) {
    TODItem tod;
    MessageItem message;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_RAV_EOL, tod.FindTODItemTagAll("", 0, next));
    EXPECT_EQ(QVS::zERR_RAV_EOL, message.FindMessageItemTagAll("<rebuildLog/>", 0, next));
    EXPECT_EQ(QVS::zERR_RAV_EOL, message.FindMessageItemTagAll("<messageItem></messageItem>", 5,
                                                               next));
}

TEST(WalkingFinders, UnterminatedLastItemGives20162) {
    std::string text = messageItem("1", "<info>a</info>") + "<messageItem><key v=\"2\"/>";
    MessageItem item;
    unsigned long next = 0;
    ASSERT_EQ(0u, item.FindMessageItemTagAll(text, 0, next));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, item.FindMessageItemTagAll(text, next, next));
}

TEST(WalkingFinders, ParseFailureIsReturned) {
    std::string text = "<todItem><key v=\"1\"/></todItem>";
    TODItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND, item.FindTODItemTagAll(text, 0, next));
    EXPECT_EQ(1u, item.Key()); // fields read so far stay set
}

// ---------------------------------------------------------------- TOD items

TEST(TODItemParse, NamedItem) {
    TODItem item;
    ASSERT_EQ(0u, item.GetTODItem(todItem("12", "0x8102",
                                          "<nameSpace v=\"2\"/><nameType v=\"3\"/>"
                                          "<fileName><![CDATA[a b.txt]]></fileName>")));
    EXPECT_EQ(12u, item.Key());
    EXPECT_EQ(0x118u, item.Zid());
    EXPECT_EQ(0x40u, item.PZid());
    EXPECT_EQ(0x8102u, item.Flag());
    EXPECT_TRUE(item.IsNamed());
    EXPECT_EQ(2u, item.GetReason());
    EXPECT_STREQ("TRUNCATED", item.GetActionName());
    EXPECT_STREQ("Unfinished delete", item.GetReasonName());
    EXPECT_EQ(2u, item.NameSpace());
    EXPECT_EQ(3u, item.NameType());
    EXPECT_EQ("a b.txt", item.FileName());
    std::ostringstream guid;
    guid << item.VolumeID();
    EXPECT_EQ(GUID_TEXT, guid.str());
}

TEST(TODItemParse, UnnamedItemIgnoresNameElements) {
    TODItem item;
    ASSERT_EQ(0u, item.GetTODItem(todItem("1", "0x102",
                                          "<nameSpace v=\"2\"/><nameType v=\"3\"/>"
                                          "<fileName>x</fileName>")));
    EXPECT_FALSE(item.IsNamed());
    EXPECT_EQ(0u, item.NameSpace());
    EXPECT_EQ(0u, item.NameType());
    EXPECT_EQ("this is not a named beast so no file name", item.FileName());
}

TEST(TODItemParse, OctalAndDecimalFlags) {
    TODItem item;
    ASSERT_EQ(0u, item.GetTODItem(todItem("1", "0100")));
    EXPECT_EQ(64u, item.Flag());
    ASSERT_EQ(0u, item.GetTODItem(todItem("1", "33026", "<nameSpace v=\"0\"/><nameType v=\"0\"/>"
                                                        "<fileName>n</fileName>")));
    EXPECT_EQ(0x8102u, item.Flag());
}

TEST(TODItemParse, ElementOrderIsFree) {
    TODItem item;
    std::string text = std::string("<todItem><fileName>f</fileName><volumeID v=\"") + GUID_TEXT +
                       "\"/><nameType v=\"1\"/><flag v=\"0x8201\"/><pZid v=\"5\"/>"
                       "<nameSpace v=\"7\"/><zid v=\"6\"/><key v=\"4\"/></todItem>";
    ASSERT_EQ(0u, item.GetTODItem(text));
    EXPECT_EQ(4u, item.Key());
    EXPECT_EQ(6u, item.Zid());
    EXPECT_EQ(5u, item.PZid());
    EXPECT_EQ(7u, item.NameSpace());
    EXPECT_EQ(1u, item.NameType());
    EXPECT_STREQ("DELETED", item.GetActionName());
}

TEST(TODItemParse, Failures) {
    TODItem item;
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND, item.GetTODItem("<todItem></todItem>"));
    EXPECT_EQ(QVS::zERR_LIB_QUOTE_NOT_FOUND, item.GetTODItem("<todItem><key v=\"1/></todItem>"));
    std::string badGuid = "<todItem><key v=\"1\"/><zid v=\"1\"/><pZid v=\"1\"/><flag v=\"1\"/>"
                          "<volumeID v=\"not-a-guid\"/></todItem>";
    EXPECT_EQ(QVS::zERR_INVALID_VOLUME_ID, item.GetTODItem(badGuid));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND,
              item.GetTODItem(todItem("1", "0x8000", "<nameSpace v=\"0\"/><nameType v=\"0\"/>")));
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND,
              item.GetTODItem(todItem("1", "0x8000", "<nameSpace v=\"0\"/>")));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              item.GetTODItem(todItem("1", "0x8000", "<nameSpace v=\"0\"/><nameType v=\"0\"/>"
                                                    "<fileName>x")));
}

TEST(TODItemNames, ActionNamesInOrder) {
    struct Case {
        const char* flag;
        const char* action;
    };
    for (const Case& c : {Case{"0x100", "TRUNCATED"}, Case{"0x300", "TRUNCATED"},
                          Case{"0x700", "TRUNCATED"}, Case{"0x200", "DELETED"},
                          Case{"0x600", "DELETED"}, Case{"0x400", "TRUSTEES TRUNCATED"},
                          Case{"0x0", "UNKNOWN"}, Case{"0x8000", "UNKNOWN"}}) {
        TODItem item;
        ASSERT_EQ(0u, item.GetTODItem(todItem("1", c.flag, "<nameSpace v=\"0\"/><nameType v=\"0\"/>"
                                                           "<fileName>x</fileName>")));
        EXPECT_STREQ(c.action, item.GetActionName()) << c.flag;
    }
}

TEST(TODItemNames, EveryReasonName) {
    const char* names[] = {"unknown",
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
                           "Object is missing"};
    for (unsigned reason = 0; reason < 256; ++reason) {
        TODItem item;
        ASSERT_EQ(0u, item.GetTODItem(todItem("1", std::to_string(0x100 + reason))));
        EXPECT_EQ(reason, item.GetReason());
        EXPECT_STREQ(reason < 14 ? names[reason] : "unknown", item.GetReasonName()) << reason;
    }
}

TEST(TODItemNames, DefaultsAndDump) {
    TODItem item;
    EXPECT_EQ("<TODItem>\n<TODI_Key>0</TODI_Key>\n<TODI_Zid>0</TODI_Zid>\n<TODI_PZid>0</TODI_PZid>\n"
              "<TODI_Flag>0</TODI_Flag>\n"
              "<TODI_VolumeID>00000000-0000-0000-00-00-000000000000</TODI_VolumeID>\n"
              "<TODI_NameSpace>0</TODI_NameSpace>\n<TODI_NameType>0</TODI_NameType>\n"
              "<TODI_FileName></TODI_FileName>\n</TODItem>\n",
              dump(item));
    ASSERT_EQ(0u, item.GetTODItem(todItem("9", "0x8101", "<nameSpace v=\"4\"/><nameType v=\"3\"/>"
                                                         "<fileName>f.txt</fileName>",
                                          "280", "16")));
    EXPECT_EQ(std::string("<TODItem>\n<TODI_Key>9</TODI_Key>\n<TODI_Zid>280</TODI_Zid>\n"
                          "<TODI_PZid>16</TODI_PZid>\n<TODI_Flag>33025</TODI_Flag>\n"
                          "<TODI_VolumeID>") +
                  GUID_TEXT +
                  "</TODI_VolumeID>\n<TODI_NameSpace>4</TODI_NameSpace>\n"
                  "<TODI_NameType>3</TODI_NameType>\n<TODI_FileName>f.txt</TODI_FileName>\n"
                  "</TODItem>\n",
              dump(item));
}

// ---------------------------------------------------------------- message items

TEST(MessageItemParse, EachSeverity) {
    struct Case {
        const char* m;
        unsigned severity;
        const char* text;
    };
    for (const Case& c : {Case{"<warning>w</warning>", 1, "w"}, Case{"<info>i</info>", 2, "i"},
                          Case{"<error>e</error>", 3, "e"}, Case{"<fatal>f</fatal>", 4, "f"},
                          Case{"<actionRequired>a</actionRequired>", 5, "a"}}) {
        MessageItem item;
        ASSERT_EQ(0u, item.GetMessageItem(messageItem("3", c.m))) << c.m;
        EXPECT_EQ(3u, item.Key());
        EXPECT_EQ(c.severity, item.Severity()) << c.m;
        EXPECT_EQ(c.text, item.Text());
        EXPECT_EQ("", item.Title());
    }
}

TEST(MessageItemParse, TrialOrderBeatsTextOrder) {
    MessageItem item;
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("1", "<error>e</error><warning>w</warning>")));
    EXPECT_EQ(1u, item.Severity());
    EXPECT_EQ("w", item.Text());
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("1", "<fatal>f</fatal><actionRequired>a"
                                                       "</actionRequired><error>e</error>")));
    EXPECT_EQ(3u, item.Severity());
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("1", "<fatal>f</fatal><actionRequired>a"
                                                       "</actionRequired>")));
    EXPECT_EQ(5u, item.Severity());
}

TEST(MessageItemParse, AttributesAreSkippedAndCdataUnwrapped) {
    MessageItem item;
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("1", "<info loc=\"rebuild.c:12\">Pool scanned"
                                                       "</info>")));
    EXPECT_EQ(2u, item.Severity());
    EXPECT_EQ("Pool scanned", item.Text());
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("1", "<error loc=\"x\"><![CDATA[a < b]]></error>")));
    EXPECT_EQ("a < b", item.Text());
}

TEST(MessageItemParse, Failures) {
    MessageItem item;
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("1", "<info>first</info>")));
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND,
              item.GetMessageItem("<messageItem><m><info>x</info></m></messageItem>"));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND,
              item.GetMessageItem("<messageItem><key v=\"2\"/></messageItem>"));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              item.GetMessageItem("<messageItem><key v=\"2\"/><m>x</messageItem>"));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, item.GetMessageItem(messageItem("2", "plain")));
    // The status is the last trial's: an unterminated fatal gives 20162.
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, item.GetMessageItem(messageItem("2", "<fatal>x")));
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, item.GetMessageItem(messageItem("2", "<info>x")));
    EXPECT_EQ(2u, item.Severity());
    EXPECT_EQ("first", item.Text());
}

TEST(MessageItemParse, Dump) {
    MessageItem item;
    ASSERT_EQ(0u, item.GetMessageItem(messageItem("0x1f", "<info>x</info>")));
    std::ostringstream os;
    os << item;
    EXPECT_EQ("<MessageItem>\n<MI_Key>31</MI_Key>\n</MessageItem>\n", os.str());
}

// ---------------------------------------------------------------- action items

TEST(ActionItemParse, Defaults) {
    ActionItem item;
    std::ostringstream os;
    os << item;
    EXPECT_EQ("<ActionItem>\n<AI_Key>0</AI_Key>\n<AI_Object>Not initialized</AI_Object>\n"
              "<AI_SubObject>Not initialized</AI_SubObject>\n"
              "<AI_Action>Not initialized</AI_Action>\n<AI_IsPool>1</AI_IsPool>\n"
              "<AI_StartUTC>0</AI_StartUTC>\n<AI_EndUTC>0</AI_EndUTC>\n"
              "<AI_StartCount>0</AI_StartCount>\n<AI_EndCount>0</AI_EndCount>\n</ActionItem>\n",
              os.str());
}

TEST(ActionItemParse, OnlyAKey) {
    ActionItem item;
    ASSERT_EQ(0u, item.GetActionItem(actionItem(5)));
    EXPECT_EQ(5u, item.Key());
    EXPECT_EQ("Unknown", item.ObjectName());
    EXPECT_EQ("Unknown", item.SubObjectName());
    EXPECT_EQ("Unknown", item.Description());
    EXPECT_EQ(1u, item.IsPool());
    EXPECT_EQ(0u, item.StartUTC());
    EXPECT_EQ(0u, item.EndUTC());
    EXPECT_EQ(0u, item.StartCount());
    EXPECT_EQ(0u, item.EndCount());
}

TEST(ActionItemParse, AllFields) {
    ActionItem item;
    ASSERT_EQ(0u, item.GetActionItem(actionItem(
                      2, "<description value=\"Rebuild volume\"/><objectName value=\"POOL1\"/>"
                         "<subObjectName value=\"VOL1\"/><isPool value=\"0\"/>"
                         "<start value=\"100\"/><end value=\"0x200\"/>"
                         "<startUTC value=\"1700000000\"/><endUTC value=\"1700000500\"/>")));
    EXPECT_EQ("Rebuild volume", item.Description());
    EXPECT_EQ("POOL1", item.ObjectName());
    EXPECT_EQ("VOL1", item.SubObjectName());
    EXPECT_EQ(0u, item.IsPool());
    EXPECT_EQ(100u, item.StartCount());
    EXPECT_EQ(512u, item.EndCount());
    EXPECT_EQ(1700000000u, item.StartUTC());
    EXPECT_EQ(1700000500u, item.EndUTC());
    std::ostringstream os;
    os << item;
    EXPECT_EQ("<ActionItem>\n<AI_Key>2</AI_Key>\n<AI_Object>POOL1</AI_Object>\n"
              "<AI_SubObject>VOL1</AI_SubObject>\n<AI_Action>Rebuild volume</AI_Action>\n"
              "<AI_IsPool>0</AI_IsPool>\n<AI_StartUTC>1700000000</AI_StartUTC>\n"
              "<AI_EndUTC>1700000500</AI_EndUTC>\n<AI_StartCount>100</AI_StartCount>\n"
              "<AI_EndCount>512</AI_EndCount>\n</ActionItem>\n",
              os.str());
}

TEST(ActionItemParse, IsPoolNonZeroIsOneAndLongNamesAreUnknown) {
    ActionItem item;
    std::string longObject(32, 'o');
    std::string fitting(31, 'o');
    ASSERT_EQ(0u, item.GetActionItem(actionItem(1, "<isPool value=\"7\"/><objectName value=\"" +
                                                       longObject + "\"/><subObjectName value=\"" +
                                                       fitting + "\"/>")));
    EXPECT_EQ(1u, item.IsPool());
    EXPECT_EQ("Unknown", item.ObjectName());
    EXPECT_EQ(fitting, item.SubObjectName());
    std::string description(160, 'd');
    ASSERT_EQ(0u, item.GetActionItem(actionItem(1, "<description value=\"" + description + "\"/>")));
    EXPECT_EQ("Unknown", item.Description());
    ASSERT_EQ(0u, item.GetActionItem(actionItem(1, "<description value=\"" +
                                                       description.substr(1) + "\"/>")));
    EXPECT_EQ(description.substr(1), item.Description());
}

TEST(ActionItemParse, NegativeUtcIsStoredIn32Bits) {
    ActionItem item;
    ASSERT_EQ(0u, item.GetActionItem(actionItem(1, "<startUTC value=\"-1\"/>")));
    EXPECT_EQ(0xFFFFFFFFu, item.StartUTC());
}

TEST(ActionItemParse, KeyIsRequired) {
    ActionItem item;
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND,
              item.GetActionItem("<actionItem><isPool value=\"0\"/></actionItem>"));
    EXPECT_EQ(QVS::zERR_LIB_QUOTE_NOT_FOUND, item.GetActionItem("<actionItem><key value=\"1"));
    EXPECT_EQ("Not initialized", item.ObjectName());
}

TEST(ActionItemParse, SetAndConstructor) {
    ActionItem item(3, "obj", "sub", "desc", 0, 10, 20, 30, 40);
    EXPECT_EQ(3u, item.Key());
    EXPECT_EQ("obj", item.ObjectName());
    EXPECT_EQ("sub", item.SubObjectName());
    EXPECT_EQ("desc", item.Description());
    EXPECT_EQ(0u, item.IsPool());
    EXPECT_EQ(10u, item.StartUTC());
    EXPECT_EQ(20u, item.StartCount());
    EXPECT_EQ(30u, item.EndUTC());
    EXPECT_EQ(40u, item.EndCount());
    EXPECT_EQ(0u, item.Set(4, "o", "s", "d", 1, 1, 2, 3, 4));
    EXPECT_EQ(4u, item.Key());
    EXPECT_EQ(4u, item.EndCount());
}

TEST(ActionItemParse, ActionCurrent) {
    ActionItem item;
    ASSERT_EQ(0u, item.GetActionCurrent("<actionHistory><actionCurrent><key value=\"6\"/>"
                                        "<description value=\"now\"/></actionCurrent>"
                                        "</actionHistory>"));
    EXPECT_EQ(6u, item.Key());
    EXPECT_EQ("now", item.Description());
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, item.GetActionCurrent("<actionHistory/>"));
}

// ---------------------------------------------------------------- action history

TEST(ActionHistoryUpdate, StopsQuietlyAtAGap) {
    std::string text = "<rebuildLog><actionHistory>" + actionItem(4) + actionItem(5) +
                       actionItem(7) + "</actionHistory></rebuildLog>";
    ActionHistory history;
    EXPECT_EQ(0u, history.CurrentKey());
    history.SetCurrentKey(3);
    EXPECT_EQ(0u, history.GetActionHistory(9, text));
    EXPECT_EQ(5u, history.CurrentKey());
    ASSERT_EQ(2u, history.Items().size());
    EXPECT_EQ(4u, history.Items()[0].Key());
    EXPECT_EQ(5u, history.Items()[1].Key());
}

TEST(ActionHistoryUpdate, TakesKeysInSequenceUpToCurrentKey) {
    std::string text = "<actionHistory>" + actionItem(3) + actionItem(1) + actionItem(2) +
                       actionItem(4) + "<actionCurrent/></actionHistory>";
    ActionHistory history;
    EXPECT_EQ(0u, history.GetActionHistory(3, text));
    ASSERT_EQ(3u, history.Items().size());
    EXPECT_EQ(1u, history.Items()[0].Key());
    EXPECT_EQ(2u, history.Items()[1].Key());
    EXPECT_EQ(3u, history.Items()[2].Key());
    EXPECT_EQ(0u, history.GetActionHistory(2, text));
    EXPECT_EQ(3u, history.Items().size());
    EXPECT_EQ(0u, history.GetActionHistory(4, text));
    EXPECT_EQ(4u, history.CurrentKey());
}

TEST(ActionHistoryUpdate, ItemsOutsideTheHistoryAreNotSeen) {
    std::string text = actionItem(1) + "<actionHistory>" + actionItem(2) + "</actionHistory>";
    ActionHistory history;
    EXPECT_EQ(0u, history.GetActionHistory(2, text));
    EXPECT_EQ(0u, history.CurrentKey());
}

TEST(ActionHistoryUpdate, MissingHistory) {
    ActionHistory history;
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, history.GetActionHistory(1, "<rebuildLog/>"));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, history.GetActionHistory(1, "<actionHistory>"));
}

// ---------------------------------------------------------------- traces

TEST_F(DebugMask, NoTracesWithoutMask) {
    std::string text = todItem("1", "0x100") + messageItem("1", "<info>x</info>");
    TODItem tod;
    MessageItem message;
    unsigned long next = 0;
    testing::internal::CaptureStderr();
    tod.FindTODItemTagAll(text, 0, next);
    message.FindMessageItemTagAll(text, 0, next);
    tod.FindTODItemTagAll("<todItem></todItem>", 0, next);
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
}

TEST_F(DebugMask, MessageWalkTracesBeforeAndAfterParsing) {
    TheApp.SetLevel(DEBUG_ITEMS);
    MessageItem item;
    unsigned long next = 0;
    testing::internal::CaptureStderr();
    ASSERT_EQ(0u, item.FindMessageItemTagAll(messageItem("7", "<info>x</info>"), 0, next));
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos,
              err.find("util/common_cpp/actionHistory[662] <MessageItem>\n<MI_Key>0</MI_Key>\n"))
        << err;
    EXPECT_NE(std::string::npos,
              err.find("util/common_cpp/actionHistory[670] <MessageItem>\n<MI_Key>7</MI_Key>\n"))
        << err;
    EXPECT_NE(std::string::npos, err.find("Message Item contents <messageItem>")) << err;
    EXPECT_LT(err.find("[662]"), err.find("[670]"));
}

TEST_F(DebugMask, MessageWalkTracesFailureStatus) {
    TheApp.SetLevel(DEBUG_FAILURES);
    MessageItem item;
    unsigned long next = 0;
    testing::internal::CaptureStderr();
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND,
              item.FindMessageItemTagAll("<messageItem><key v=\"1\"/></messageItem>", 0, next));
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, err.find("util/common_cpp/actionHistory[666] 20163\n")) << err;
    EXPECT_EQ(std::string::npos, err.find("[662]"));
}

TEST_F(DebugMask, TodWalkTraces) {
    TheApp.SetLevel(DEBUG_ITEMS | DEBUG_FAILURES);
    TODItem item;
    unsigned long next = 0;
    testing::internal::CaptureStderr();
    ASSERT_EQ(0u, item.FindTODItemTagAll(todItem("5", "0x100"), 0, next));
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND,
              item.FindTODItemTagAll("<todItem></todItem>", 0, next));
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos,
              err.find("util/common_cpp/actionHistory[1012] <TODItem>\n<TODI_Key>0</TODI_Key>"))
        << err;
    EXPECT_NE(std::string::npos,
              err.find("util/common_cpp/actionHistory[1020] <TODItem>\n<TODI_Key>5</TODI_Key>"))
        << err;
    EXPECT_NE(std::string::npos, err.find("util/common_cpp/actionHistory[1016] 21820\n")) << err;
    EXPECT_NE(std::string::npos, err.find("TOD contents <todItem>")) << err;
}

TEST_F(DebugMask, ValueTraces) {
    TheApp.SetLevel(DEBUG_VALUES);
    TODItem tod;
    MessageItem message;
    ActionHistory history;
    testing::internal::CaptureStderr();
    ASSERT_EQ(0u, tod.GetTODItem(todItem("5", "0x8100", "<nameSpace v=\"1\"/><nameType v=\"2\"/>"
                                                        "<fileName>f</fileName>")));
    ASSERT_EQ(0u, message.GetMessageItem(messageItem("6", "<error>e</error>")));
    ASSERT_EQ(0u, history.GetActionHistory(1, "<actionHistory>" + actionItem(1) +
                                                  "</actionHistory>"));
    std::string err = testing::internal::GetCapturedStderr();
    for (const char* expected :
         {" Key is 5\n", " Zid is 280\n", " PZid is 64\n", " Flag is 33024\n", " NameType is 2\n",
          " NameSpace is 1\n", " File name is f\n", " VolumeID is 01234567-89ab-cdef-01-23-",
          " Key is 6\n", " <m> contents is <error>e</error>\n", " <error> contents is e\n",
          " Search for 1\n", " key is 1\n",
          " No need to look as currentKey <= AH_HistoryCurrentKey\n"})
        EXPECT_NE(std::string::npos, err.find(expected)) << expected << "\n" << err;
    EXPECT_EQ(std::string::npos, err.find("TOD contents"));
}

// ---------------------------------------------------------------- hostile input

TEST(HostileLogs, CutsAndJunkNeverHang) {
    std::string log = "<rebuildLog><todHistory>" +
                      todItem("1", "0x8101", "<nameSpace v=\"1\"/><nameType v=\"3\"/>"
                                             "<fileName><![CDATA[x]]></fileName>") +
                      todItem("2", "0x206") + "</todHistory><messageHistory>" +
                      messageItem("1", "<info loc=\"a\">m</info>") +
                      "</messageHistory><actionHistory>" + actionItem(1) + actionItem(2) +
                      "</actionHistory></rebuildLog>";
    for (size_t cut = 0; cut <= log.size(); ++cut) {
        for (const std::string& text : {log.substr(0, cut), log.substr(cut)}) {
            TODItem tod;
            MessageItem message;
            unsigned long position = 0, next = 0;
            unsigned guard = 0;
            while (tod.FindTODItemTagAll(text, position, next) == 0 && ++guard < 100)
                position = next;
            position = 0;
            while (message.FindMessageItemTagAll(text, position, next) == 0 && ++guard < 200)
                position = next;
            EXPECT_LT(guard, 200u);
            std::string itemText;
            TODItem::FindTODItemTag(text, 2, itemText);
            IOItem::FindIOItemTag(text, 2, itemText);
            ActionHistory history;
            history.GetActionHistory(5, text);
            EXPECT_LE(history.CurrentKey(), 2u);
        }
    }
}

// ---------------------------------------------------------------- walks inside the log

// The walks read each item where it stands in the log: an item's values are
// searched for inside the item, never in the text after it.

TEST(WalkInsideTheLog, MessagesOneAfterAnother) {
    const std::string log = messageItem("7", "<info loc=\"x\">first</info>") + "\n" +
                            messageItem("8", "<![CDATA[<error>second</error>]]>");
    MessageItem item;
    unsigned long next = 0;
    ASSERT_EQ(0u, item.FindMessageItemTagAll(log, 0, next));
    EXPECT_EQ("first", item.Text());
    EXPECT_EQ(7u, item.Key());
    EXPECT_EQ(MessageItem::SEVERITY_INFO, item.Severity());
    EXPECT_EQ(log.find('\n'), next);
    ASSERT_EQ(0u, item.FindMessageItemTagAll(log, next, next));
    EXPECT_EQ("second", item.Text());
    EXPECT_EQ(MessageItem::SEVERITY_ERROR, item.Severity());
    EXPECT_EQ(log.size(), next);
    EXPECT_EQ(QVS::zERR_RAV_EOL, item.FindMessageItemTagAll(log, next, next));
    EXPECT_EQ(log.size(), next);
}

TEST(WalkInsideTheLog, ClosingQuoteMustLieInsideTheItem) {
    // The quote after the item does not close the key value.
    const std::string log = "<messageItem><key v=\"1</messageItem>\"";
    MessageItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_LIB_QUOTE_NOT_FOUND, item.FindMessageItemTagAll(log, 0, next));
    const std::string tod = "<todItem><key v=\"1\"/><zid v=\"2</todItem>\"";
    TODItem todItem;
    EXPECT_EQ(QVS::zERR_LIB_QUOTE_NOT_FOUND, todItem.FindTODItemTagAll(tod, 0, next));
}

TEST(WalkInsideTheLog, KeyAfterTheItemIsNotFound) {
    const std::string log = "<messageItem><m><info>x</info></m></messageItem><key v=\"1\"/>";
    MessageItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND, item.FindMessageItemTagAll(log, 0, next));
}

TEST(WalkInsideTheLog, SeverityAfterTheMessageIsNotFound) {
    const std::string log = "<messageItem><key v=\"1\"/><m>x</m></messageItem><info>y</info>";
    MessageItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, item.FindMessageItemTagAll(log, 0, next));
    EXPECT_EQ(1u, item.Key());
    EXPECT_EQ(MessageItem::SEVERITY_NONE, item.Severity());
}

TEST(WalkInsideTheLog, FileNameAfterTheItemIsNotFound) {
    const std::string log =
        todItem("1", "0x8101", "<nameSpace v=\"1\"/><nameType v=\"0\"/>") + "<fileName>f</fileName>";
    TODItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, item.FindTODItemTagAll(log, 0, next));
}

TEST(WalkInsideTheLog, ZeroByteEndsTheValueSearchAsInATerminatedString) {
    const std::string before = std::string("<messageItem>\0<key v=\"1\"/><m><info>x</info></m>", 46) +
                               "</messageItem>";
    MessageItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND, item.FindMessageItemTagAll(before, 0, next));
    EXPECT_EQ(QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND, item.GetMessageItem(before));
    const std::string inside =
        std::string("<messageItem><key v=\"1\0\"/><m><info>x</info></m>", 46) + "</messageItem>";
    EXPECT_EQ(QVS::zERR_LIB_QUOTE_NOT_FOUND, item.FindMessageItemTagAll(inside, 0, next));
    EXPECT_EQ(QVS::zERR_LIB_QUOTE_NOT_FOUND, item.GetMessageItem(inside));
}

TEST(WalkInsideTheLog, ItemsWithManyTags) {
    for (unsigned count : {0u, 1u, 63u, 64u, 65u, 200u}) {
        std::string filler;
        for (unsigned i = 0; i < count; ++i)
            filler += "<x/>";
        const std::string first = "<messageItem>" + filler + "<key v=\"" + std::to_string(count) +
                                  "\"/><m><error>e</error>" + filler +
                                  "<warning a=\"1\">w</warning></m></messageItem>";
        const std::string log =
            first + "<messageItem><key v=\"2\"/>" + filler + "<m><fatal>f</fatal></m></messageItem>";
        MessageItem item;
        unsigned long next = 0;
        ASSERT_EQ(0u, item.FindMessageItemTagAll(log, 0, next)) << count;
        EXPECT_EQ(first.size(), next);
        EXPECT_EQ("w", item.Text());
        EXPECT_EQ(count, item.Key());
        EXPECT_EQ(MessageItem::SEVERITY_WARNING, item.Severity());
        ASSERT_EQ(0u, item.FindMessageItemTagAll(log, next, next));
        EXPECT_EQ("f", item.Text());
        EXPECT_EQ(MessageItem::SEVERITY_FATAL, item.Severity());
        EXPECT_EQ(log.size(), next);
    }
}

TEST(WalkInsideTheLog, UnterminatedItemWithManyTags) {
    std::string filler;
    for (unsigned i = 0; i < 100; ++i)
        filler += "<x>";
    MessageItem item;
    unsigned long next = 0;
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              item.FindMessageItemTagAll("<messageItem>" + filler, 0, next));
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND,
              item.FindMessageItemTagAll("<messageItem>" + filler + "</messageItem", 0, next));
}

TEST(WalkInsideTheLog, TODNamesAndTheUnnamedText) {
    const std::string log =
        todItem("1", "0x8101", "<nameSpace v=\"1\"/><nameType v=\"3\"/><fileName><![CDATA[a b]]></fileName>") +
        todItem("2", "0x206");
    TODItem item;
    unsigned long next = 0;
    ASSERT_EQ(0u, item.FindTODItemTagAll(log, 0, next));
    EXPECT_EQ("a b", item.FileName());
    EXPECT_EQ(3u, item.NameType());
    EXPECT_EQ(1u, item.NameSpace());
    ASSERT_EQ(0u, item.FindTODItemTagAll(log, next, next));
    EXPECT_EQ("this is not a named beast so no file name", item.FileName());
    EXPECT_EQ(0u, item.NameSpace());
    EXPECT_EQ(0u, item.NameType());
    EXPECT_EQ(QVS::zERR_RAV_EOL, item.FindTODItemTagAll(log, next, next));
}

TEST_F(DebugMask, TODWalkTracesTheFileNameOfThePreviousItemBeforeParsing) {
    const std::string log =
        todItem("1", "0x8101", "<nameSpace v=\"1\"/><nameType v=\"0\"/><fileName>n1</fileName>") +
        todItem("2", "0x8102", "<nameSpace v=\"2\"/><nameType v=\"0\"/><fileName>n2</fileName>");
    TheApp.SetLevel(DEBUG_ITEMS);
    TODItem item;
    unsigned long position = 0, next = 0;
    testing::internal::CaptureStderr();
    while (item.FindTODItemTagAll(log, position, next) == 0)
        position = next;
    const std::string err = testing::internal::GetCapturedStderr();
    const std::string::size_type secondBefore = err.find("[1012]", err.find("[1020]"));
    ASSERT_NE(std::string::npos, secondBefore) << err;
    EXPECT_EQ(secondBefore + 7, err.find("<TODItem>\n<TODI_Key>1</TODI_Key>", secondBefore)) << err;
    EXPECT_NE(std::string::npos, err.find("<TODI_FileName>n1</TODI_FileName>", secondBefore)) << err;
    EXPECT_NE(std::string::npos, err.find("<TODI_FileName>n2</TODI_FileName>")) << err;
}
