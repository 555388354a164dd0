// rebuildFileWalk_test.cpp - the message walk split over two threads gives
// what one walk gives, on whole and on damaged logs.
#include "util/common_cpp/rebuildFileWalk.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/support/qvsStatus.h"

#include "tests/unit/logfile_testutil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

std::string messageItem(unsigned key, const std::string& m) {
    return "<messageItem><key v=\"" + std::to_string(key) + "\"/><m>" + m + "</m></messageItem>\n";
}

std::string items(unsigned first, unsigned count) {
    std::string text;
    for (unsigned key = first; key < first + count; ++key)
        text += messageItem(key, "<info>Object " + std::to_string(key) + " was checked.</info>");
    return text;
}

// What one walk from position 0 prints and returns, step by step.
struct OneWalk {
    std::string lines;
    unsigned long found = 0;
    unsigned status = 0;
};

OneWalk walkAlone(const std::string& text) {
    OneWalk walk;
    MessageItem item;
    std::string_view message;
    unsigned long position = 0;
    unsigned long next = 0;
    while ((walk.status = item.NextMessageItem(text, position, next, message)) == 0) {
        position = next;
        ++walk.found;
        walk.lines += "  " + std::string(message) + "\n";
    }
    return walk;
}

std::string expectedOutput(const OneWalk& walk) {
    return "Rebuild messages\n" + walk.lines + "\nFound " + std::to_string(walk.found) +
           " messages.\n\n";
}

// Empty when the texts are equal, else where they first differ: a failure
// shows two lines rather than two texts of megabytes.
std::string firstDifference(const std::string& expected, const std::string& actual) {
    if (expected == actual)
        return "";
    std::size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
        ++at;
    const std::size_t lineStart = expected.rfind('\n', at == 0 ? 0 : at - 1);
    const std::size_t from = lineStart == std::string::npos ? 0 : lineStart + 1;
    const std::size_t line = static_cast<std::size_t>(std::count(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(from), '\n')) + 1;
    return "line " + std::to_string(line) + ": expected \"" +
           expected.substr(from, expected.find('\n', from) - from) + "\", got \"" +
           actual.substr(from, actual.find('\n', from) - from) + "\" (sizes " +
           std::to_string(expected.size()) + " and " + std::to_string(actual.size()) + ")";
}


// What one display operation printed for a log, and the status it returned.
struct Shown {
    unsigned status;
    std::string text;
};

template <typename Display>
Shown show(const std::string& log, Display display) {
    LogFile file(log);
    std::ostringstream out;
    RebuildFile rf(file.path(), out, 0);
    const unsigned status = (rf.*display)();
    return Shown{status, out.str()};
}

Shown showMessages(const std::string& log) { return show(log, &RebuildFile::DisplayMessageItems); }
Shown showTODItems(const std::string& log) { return show(log, &RebuildFile::DisplayTODItems); }

// A log of more than 8 MiB (large enough to be walked on two threads) whose
// middle falls inside `middle`, at about its middle.
std::string largeLog(const std::string& middle, const std::string& messagesEnd = "") {
    const std::string half = items(1, 50000); // about 4.4 MB
    return "<rebuildLog><messageHistory>" + half + middle + items(70001, 50000) + messagesEnd +
           "</messageHistory></rebuildLog>\n";
}

void expectSameAsOneWalk(const std::string& log, unsigned expectedStatus) {
    ASSERT_GE(log.size(), 8u << 20);
    OneWalk alone = walkAlone(log);
    EXPECT_EQ(expectedStatus, alone.status);
    const Shown shown = showMessages(log);
    EXPECT_EQ(alone.status == QVS::zERR_RAV_EOL ? 0u : alone.status, shown.status);
    EXPECT_EQ("", firstDifference(expectedOutput(alone), shown.text));
}

TEST(MessageWalkAheadTest, FindsWhatOneWalkFindsFromItsStart) {
    const std::string text = items(1, 50);
    const unsigned long from = static_cast<unsigned long>(text.size() / 2);
    std::unique_ptr<MessageWalkAhead> ahead = MessageWalkAhead::Start(text, from, 1000);
    ASSERT_NE(nullptr, ahead);
    ahead->Wait();
    EXPECT_EQ(from, ahead->From());
    EXPECT_TRUE(ahead->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_RAV_EOL), ahead->Status());

    MessageItem item;
    std::string_view message;
    unsigned long position = from;
    unsigned long next = 0;
    std::size_t index = 0;
    std::string lines;
    while (item.NextMessageItem(text, position, next, message) == 0) {
        ASSERT_LT(index, ahead->Items().size());
        EXPECT_EQ(next, ahead->Items()[index].end);
        const std::string line = "  " + std::string(message) + "\n";
        EXPECT_EQ(line, ahead->LinesFrom(index).substr(0, line.size()));
        lines += line;
        position = next;
        ++index;
    }
    EXPECT_EQ(index, ahead->Items().size());
    EXPECT_EQ(lines, ahead->LinesFrom(0));
    EXPECT_EQ("", ahead->LinesFrom(index));
    EXPECT_GT(index, 20u);
    EXPECT_EQ(ahead->Items().back().end, ahead->Last());
}

TEST(MessageWalkAheadTest, PassedIsTrueOnlyAtItsStartAndItemEnds) {
    const std::string text = items(1, 10);
    std::unique_ptr<MessageWalkAhead> ahead = MessageWalkAhead::Start(text, 5, 100);
    ASSERT_NE(nullptr, ahead);
    ahead->Wait();
    ASSERT_EQ(9u, ahead->Items().size()); // the first item opens before position 5
    std::size_t index = 99;
    EXPECT_TRUE(ahead->Passed(5, index));
    EXPECT_EQ(0u, index);
    EXPECT_TRUE(ahead->Passed(ahead->Items()[3].end, index));
    EXPECT_EQ(4u, index);
    EXPECT_TRUE(ahead->Passed(ahead->Last(), index));
    EXPECT_EQ(9u, index);
    EXPECT_FALSE(ahead->Passed(ahead->Items()[3].end + 1, index));
    EXPECT_FALSE(ahead->Passed(4, index));
    EXPECT_FALSE(ahead->Passed(ahead->Last() + 1, index));
}

TEST(MessageWalkAheadTest, StopsAtItsLimitWithoutAStatus) {
    const std::string text = items(1, 10);
    std::unique_ptr<MessageWalkAhead> ahead = MessageWalkAhead::Start(text, 0, 3);
    ASSERT_NE(nullptr, ahead);
    ahead->Wait();
    EXPECT_FALSE(ahead->Ended());
    ASSERT_EQ(3u, ahead->Items().size());
    EXPECT_EQ(ahead->Items()[2].end, ahead->Last());
}

TEST(MessageWalkAheadTest, EndsWithTheStatusOfABadItem) {
    const std::string text =
        items(1, 3) + messageItem(4, "no severity") + items(5, 3);
    std::unique_ptr<MessageWalkAhead> ahead = MessageWalkAhead::Start(text, 0, 100);
    ASSERT_NE(nullptr, ahead);
    ahead->Wait();
    EXPECT_TRUE(ahead->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_XML_TAG_NOT_FOUND), ahead->Status());
    EXPECT_EQ(3u, ahead->Items().size());
}

TEST(MessageWalkAheadTest, DestroyingARunningWalkStopsIt) {
    const std::string text = items(1, 200000);
    std::unique_ptr<MessageWalkAhead> ahead = MessageWalkAhead::Start(text, 0, 300000);
    ASSERT_NE(nullptr, ahead);
    ahead.reset(); // returns once the thread has stopped
    SUCCEED();
}

TEST(DisplayMessageItemsTwoThreadsTest, LargeWholeLogPrintsEveryMessageInOrder) {
    const std::string log = largeLog(items(50001, 20000));
    const Shown shown = showMessages(log);
    EXPECT_EQ(0u, shown.status);
    const std::string& text = shown.text;
    EXPECT_EQ(0u, text.find("Rebuild messages\n  Object 1 was checked.\n  Object 2 was checked.\n"));
    EXPECT_NE(std::string::npos, text.find("\n  Object 59999 was checked.\n  Object 60000 was checked.\n"
                                           "  Object 60001 was checked.\n"));
    EXPECT_NE(std::string::npos,
              text.find("\n  Object 120000 was checked.\n\nFound 120000 messages.\n\n"));
    OneWalk alone = walkAlone(log);
    EXPECT_EQ("", firstDifference(expectedOutput(alone), text));
}

TEST(DisplayMessageItemsTwoThreadsTest, OpeningTagInsideTheMiddleItemIsTakenOnce) {
    // The second walk starts at the inner opening tag, the first walk at the
    // outer one; both end at the same closing tag.
    const std::string middle = "<messageItem><key v=\"50001\"/><m><info>outer " +
                               std::string(200000, 'x') +
                               "</info></m> " + messageItem(7777777, "<info>inner</info>");
    const std::string log = largeLog(middle);
    ASSERT_GT(log.find("<messageItem><key v=\"7777777\""), log.size() / 2);
    ASSERT_LT(log.find("<messageItem><key v=\"50001\""), log.size() / 2);
    expectSameAsOneWalk(log, QVS::zERR_RAV_EOL);
}

TEST(DisplayMessageItemsTwoThreadsTest, UnclosedMiddleItemSwallowsTheNextOne) {
    const std::string middle =
        "<messageItem><key v=\"50001\"/><m><info>unclosed " + std::string(4000, 'x') + "</info></m>\n";
    const std::string log = largeLog(middle);
    expectSameAsOneWalk(log, QVS::zERR_RAV_EOL);
}

TEST(DisplayMessageItemsTwoThreadsTest, BadItemInTheSecondHalfEndsTheWalkWithItsStatus) {
    const std::string log = largeLog(items(50001, 10), messageItem(99999, "no severity"));
    expectSameAsOneWalk(log, QVS::zERR_XML_TAG_NOT_FOUND);
}

TEST(DisplayMessageItemsTwoThreadsTest, BadItemInTheFirstHalfEndsTheWalkBeforeTheMiddle) {
    const std::string log = "<rebuildLog><messageHistory>" + items(1, 100) +
                            "<messageItem><key v=\"101\"/></messageItem>" + items(102, 110000) +
                            "</messageHistory></rebuildLog>\n";
    expectSameAsOneWalk(log, QVS::zERR_XML_TAG_NOT_FOUND);
}

TEST(DisplayMessageItemsTwoThreadsTest, MissingClosingTagAtTheEndGivesItsStatus) {
    const std::string log = largeLog(items(50001, 10), "<messageItem><key v=\"1\"/><m><info>cut");
    expectSameAsOneWalk(log, QVS::zERR_XML_END_TAG_NOT_FOUND);
}

// The first TOD item of a large log is searched for in two halves at once.
std::string todItem() {
    return "<todItem><key v=\"1\"/><zid v=\"0x118\"/><pZid v=\"0x5\"/><volumeID "
           "v=\"01234567-89ab-cdef-01-23-456789abcdef\"/><flag v=\"0x8101\"/><nameSpace "
           "v=\"2\"/><nameType v=\"0\"/><fileName>a.dat</fileName></todItem>";
}

// What DisplayTODItems prints for a small log (one search) holding the item.
std::string todOutputAlone() {
    const Shown shown = showTODItems("<rebuildLog>" + todItem() + "</rebuildLog>");
    EXPECT_EQ(0u, shown.status);
    return shown.text;
}

// A log of more than 8 MiB of messages with the TOD item placed so that it
// starts `offset` bytes from the middle (negative: before it).
std::string largeLogWithTODItemAt(long offset) {
    const std::string head = "<rebuildLog><messageHistory>" + items(1, 50000);
    const std::string tail = items(70001, 50000) + "</messageHistory></rebuildLog>\n";
    // Padding before the item moves it; the middle moves by half as much.
    const long total = static_cast<long>(head.size() + todItem().size() + tail.size());
    const long place = static_cast<long>(head.size());
    const long padding = 2 * (total / 2 + offset - place);
    if (padding < 0)
        return "";
    std::string log = head + std::string(static_cast<std::size_t>(padding), ' ') + todItem() + tail;
    return log;
}

void expectTheTODItemFound(long offset) {
    const std::string log = largeLogWithTODItemAt(offset);
    ASSERT_GE(log.size(), 8u << 20);
    const long middle = static_cast<long>(log.size() / 2);
    ASSERT_EQ(middle + offset, static_cast<long>(log.find("<todItem>")));
    const Shown shown = showTODItems(log);
    EXPECT_EQ(0u, shown.status);
    EXPECT_EQ(todOutputAlone(), shown.text);
    EXPECT_NE(std::string::npos, shown.text.find("Found 1 items"));
}

TEST(FirstTODItemTest, FoundWhereverItLiesAroundTheMiddle) {
    for (long offset : {-1000L, -9L, -8L, -1L, 0L, 1L, 1000L})
        expectTheTODItemFound(offset);
}

TEST(FirstTODItemTest, FoundNearTheStartAndNearTheEnd) {
    const std::string log = "<rebuildLog>" + todItem() + "<messageHistory>" + items(1, 120000) +
                            todItem() + "</messageHistory></rebuildLog>\n";
    ASSERT_GE(log.size(), 8u << 20);
    const Shown both = showTODItems(log);
    EXPECT_EQ(0u, both.status);
    EXPECT_NE(std::string::npos, both.text.find("Found 2 items"));

    const std::string last = "<rebuildLog><messageHistory>" + items(1, 120000) + todItem() +
                             "</messageHistory></rebuildLog>\n";
    const Shown lastOnly = showTODItems(last);
    EXPECT_EQ(0u, lastOnly.status);
    EXPECT_EQ(todOutputAlone(), lastOnly.text);
}

TEST(FirstTODItemTest, NoneInALargeLogOfMessages) {
    const Shown shown = showTODItems(largeLog(items(50001, 10)));
    EXPECT_EQ(0u, shown.status);
    EXPECT_EQ("\nFound 0 items that were deleted or truncated.\n  Ignored 0 expected items.\n",
              shown.text);
}

} // namespace
