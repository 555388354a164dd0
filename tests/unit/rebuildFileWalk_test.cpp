// rebuildFileWalk_test.cpp - the message walk split over two threads, and
// begun while the log is read, gives what one walk gives, on whole and on
// damaged logs; the first TOD item is found while the log is read.
#include "util/common_cpp/rebuildFileWalk.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/support/qvsStatus.h"

#include "tests/unit/logfile_testutil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

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
    std::vector<unsigned long> ends; // where each step ended
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
        walk.ends.push_back(next);
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

// The same with a pause between the load and the display, in which the walk
// begun during the load goes on as far as it may.
Shown showMessagesAfterAPause(const std::string& log) {
    LogFile file(log);
    std::ostringstream out;
    RebuildFile rf(file.path(), out, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const unsigned status = rf.DisplayMessageItems();
    return Shown{status, out.str()};
}
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
    const unsigned status = alone.status == QVS::zERR_RAV_EOL ? 0u : alone.status;
    const Shown shown = showMessages(log);
    EXPECT_EQ(status, shown.status);
    EXPECT_EQ("", firstDifference(expectedOutput(alone), shown.text));
    const Shown later = showMessagesAfterAPause(log);
    EXPECT_EQ(status, later.status);
    EXPECT_EQ("", firstDifference(expectedOutput(alone), later.text));
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

// The item ends and lines one walk from 0 gives, for comparison with a walk
// that took them from a log still being read.
void expectSameItemsAsOneWalk(const std::string& text, const MessageWalkAhead& walk,
                              std::size_t count) {
    const OneWalk alone = walkAlone(text);
    ASSERT_LE(count, walk.Items().size());
    ASSERT_LE(count, alone.ends.size());
    for (std::size_t index = 0; index < count; ++index)
        EXPECT_EQ(alone.ends[index], walk.Items()[index].end) << "item " << index;
    // The lines of those items: up to the count-th line end.
    std::size_t length = 0;
    for (std::size_t line = 0; line < count; ++line)
        length = alone.lines.find('\n', length) + 1;
    const std::string lines = alone.lines.substr(0, length);
    EXPECT_EQ(lines, std::string(walk.LinesFrom(0).substr(0, lines.size())));
}

// Hands `text` to a walk behind the load piece by piece, as the viewer's load
// does, in pieces of sizes that go round `sizes`; the log's room is `room`.
struct GrowingLog {
    explicit GrowingLog(std::size_t room) { log.reserve(room); }
    std::unique_ptr<MessageWalkAhead> Start() {
        return MessageWalkAhead::StartBehindLoad(log.data(), log.capacity());
    }
    // In step, the walk catches up with each piece before the next comes,
    // so that its steps run into the end of what is there.
    void Feed(MessageWalkAhead& walk, const std::string& text,
              std::initializer_list<std::size_t> sizes, bool inStep = false) {
        std::size_t at = 0;
        auto size = sizes.begin();
        while (at < text.size()) {
            const std::size_t piece = std::min(*size, text.size() - at);
            ASSERT_LE(log.size() + piece, log.capacity());
            log.append(text, at, piece);
            walk.Grow(log.size());
            at += piece;
            const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
            while (inStep && !walk.CaughtUp(log.size())) {
                // A walk that never waits for more text spins on what is there.
                ASSERT_LT(std::chrono::steady_clock::now(), deadline)
                    << "the walk did not catch up with " << log.size() << " bytes";
                std::this_thread::yield();
            }
            if (++size == sizes.end())
                size = sizes.begin();
        }
    }
    // Starts a walk, hands it the whole text and waits until it has ended.
    std::unique_ptr<MessageWalkAhead> WalkAll(const std::string& text,
                                              std::initializer_list<std::size_t> sizes,
                                              bool inStep = false) {
        std::unique_ptr<MessageWalkAhead> walk = Start();
        if (walk == nullptr)
            return nullptr;
        Feed(*walk, text, sizes, inStep);
        walk->Complete();
        walk->Wait();
        return walk;
    }
    std::string log;
};

TEST(MessageWalkBehindLoadTest, FindsWhatOneWalkFindsWhateverThePiecesRead) {
    const std::string text = items(1, 3000);
    GrowingLog growing(2 * text.size()); // the walk keeps to the first half of the room
    std::unique_ptr<MessageWalkAhead> walk = growing.WalkAll(text, {1, 7, 13, 100, 4096, 3});
    ASSERT_NE(nullptr, walk);
    EXPECT_EQ(0u, walk->From());
    EXPECT_TRUE(walk->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_RAV_EOL), walk->Status());
    EXPECT_EQ(3000u, walk->Items().size());
    expectSameItemsAsOneWalk(text, *walk, 3000);
    EXPECT_EQ(walkAlone(text).lines, walk->LinesFrom(0));
}

TEST(MessageWalkBehindLoadTest, StepsThatRunIntoTheEndOfTheTextAreTakenAgain) {
    const std::string text = items(1, 300);
    GrowingLog growing(2 * text.size());
    std::unique_ptr<MessageWalkAhead> walk = growing.WalkAll(text, {1, 7, 13, 3, 30, 2}, true);
    ASSERT_NE(nullptr, walk);
    EXPECT_TRUE(walk->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_RAV_EOL), walk->Status());
    EXPECT_EQ(300u, walk->Items().size());
    expectSameItemsAsOneWalk(text, *walk, 300);
}

TEST(MessageWalkBehindLoadTest, AnItemLongerThanManyPiecesIsFoundWhole) {
    const std::string text = items(1, 10) +
                             messageItem(11, "<info>" + std::string(1 << 20, 'x') + "</info>") +
                             items(12, 10);
    GrowingLog growing(2 * text.size());
    std::unique_ptr<MessageWalkAhead> walk = growing.WalkAll(text, {4096}, true);
    ASSERT_NE(nullptr, walk);
    EXPECT_TRUE(walk->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_RAV_EOL), walk->Status());
    ASSERT_EQ(21u, walk->Items().size());
    expectSameItemsAsOneWalk(text, *walk, 21);
}

TEST(MessageWalkBehindLoadTest, ABadItemEndsTheWalkOnlyWithItsOwnStatus) {
    const std::string text = items(1, 50) + messageItem(51, "no severity") + items(52, 50);
    GrowingLog growing(2 * text.size());
    std::unique_ptr<MessageWalkAhead> walk = growing.WalkAll(text, {10, 333}, true);
    ASSERT_NE(nullptr, walk);
    EXPECT_TRUE(walk->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_XML_TAG_NOT_FOUND), walk->Status());
    ASSERT_EQ(50u, walk->Items().size());
    expectSameItemsAsOneWalk(text, *walk, 50);
}

TEST(MessageWalkBehindLoadTest, AnUnclosedLastItemEndsTheWalkOnlyOnceTheLogIsWhole) {
    const std::string text = items(1, 20) + "<messageItem><key v=\"21\"/><m><info>cut";
    GrowingLog waiting(2 * text.size());
    std::unique_ptr<MessageWalkAhead> stopped = waiting.Start();
    ASSERT_NE(nullptr, stopped);
    waiting.Feed(*stopped, text, {64}, true);
    // Stopped while it waits for the rest: no status, and every whole item.
    stopped->Finish();
    EXPECT_FALSE(stopped->Ended());
    EXPECT_EQ(20u, stopped->Items().size());
    expectSameItemsAsOneWalk(text, *stopped, 20);

    GrowingLog whole(2 * text.size());
    std::unique_ptr<MessageWalkAhead> ended = whole.WalkAll(text, {64});
    ASSERT_NE(nullptr, ended);
    EXPECT_TRUE(ended->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_XML_END_TAG_NOT_FOUND), ended->Status());
    expectSameItemsAsOneWalk(text, *ended, 20);
    EXPECT_EQ(20u, ended->Items().size());
}

TEST(MessageWalkBehindLoadTest, ALogWithoutMessagesEndsTheWalkWhenWhole) {
    const std::string text =
        "<rebuildLog><todHistory>" + std::string(100000, ' ') + "</todHistory></rebuildLog>";
    GrowingLog growing(2 * text.size());
    std::unique_ptr<MessageWalkAhead> walk = growing.WalkAll(text, {1000});
    ASSERT_NE(nullptr, walk);
    EXPECT_TRUE(walk->Ended());
    EXPECT_EQ(static_cast<unsigned>(QVS::zERR_RAV_EOL), walk->Status());
    EXPECT_EQ(0u, walk->Items().size());
    EXPECT_EQ(0ul, walk->Last());
}

TEST(MessageWalkBehindLoadTest, KeepsToTheFirstHalfOfTheRoom) {
    const std::string text = items(1, 1000);
    GrowingLog growing(text.size());
    const std::size_t half = growing.log.capacity() / 2;
    std::unique_ptr<MessageWalkAhead> walk = growing.WalkAll(text, {4096});
    ASSERT_NE(nullptr, walk);
    EXPECT_FALSE(walk->Ended());
    ASSERT_GE(walk->Items().size(), 2u);
    // Its last step began before the half, and no step after it.
    EXPECT_LT(walk->Items()[walk->Items().size() - 2].end, half);
    EXPECT_GE(walk->Last(), half);
    expectSameItemsAsOneWalk(text, *walk, walk->Items().size());
}

TEST(MessageWalkBehindLoadTest, FinishingAWalkThatWaitsForTextReturns) {
    GrowingLog growing(1 << 20);
    std::unique_ptr<MessageWalkAhead> walk = growing.Start();
    ASSERT_NE(nullptr, walk);
    walk->Finish(); // would hang if the waiting walk were not woken
    EXPECT_FALSE(walk->Ended());
    EXPECT_EQ(0u, walk->Items().size());
}

TEST(MessageWalkAheadTest, StopsBeforeItsItemsAndLinesTakeMoreThanItsRoom) {
    const std::string text = items(1, 100);
    const std::size_t room = 1000;
    std::unique_ptr<MessageWalkAhead> ahead = MessageWalkAhead::Start(text, 0, 1000, room);
    ASSERT_NE(nullptr, ahead);
    ahead->Wait();
    EXPECT_FALSE(ahead->Ended());
    EXPECT_LE(ahead->Footprint(), room);
    const std::size_t count = ahead->Items().size();
    EXPECT_GT(count, 5u);
    // One more item would not have fitted.
    const std::size_t line = sizeof("  Object 100 was checked.\n") - 1;
    EXPECT_GT(ahead->Footprint() + sizeof(MessageWalkAhead::Found_s) + line, room);
    EXPECT_EQ(ahead->Footprint(),
              count * sizeof(MessageWalkAhead::Found_s) + ahead->LinesFrom(0).size());
    expectSameItemsAsOneWalk(text, *ahead, count);
}

TEST(MessageLinesTest, LinesAreTwoBlanksTheTextAndANewline) {
    const std::string log = "short" + std::string(200, '.') + std::string(100, 'L');
    MessageLines lines(1000);
    EXPECT_EQ(0u, lines.Size());
    EXPECT_EQ(1000u, lines.Capacity());
    const char* const end = log.data() + log.size();
    lines.Append(std::string_view(log.data(), 5), end);         // copied with what follows
    lines.Append(std::string_view(log.data() + 205, 100), end); // longer than a short one
    lines.Append(std::string_view(log.data() + 295, 10), end);  // too near the end to read on
    lines.Append(std::string_view(log.data(), 0), end);         // empty
    EXPECT_EQ("  short\n  " + std::string(100, 'L') + "\n  " + std::string(10, 'L') + "\n  \n",
              lines.View());
    lines.Clear();
    EXPECT_EQ(0u, lines.Size());
    EXPECT_EQ("", lines.View());
}

TEST(MessageLinesTest, FitsCountsTheThreeBytesALineAdds) {
    const std::string log(64, 'x');
    MessageLines lines(10);
    EXPECT_TRUE(lines.Fits(7));
    EXPECT_FALSE(lines.Fits(8));
    lines.Append(std::string_view(log.data(), 7), log.data() + log.size());
    EXPECT_EQ(10u, lines.Size());
    EXPECT_FALSE(lines.Fits(0));
    EXPECT_EQ("  xxxxxxx\n", lines.View());
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

TEST(DisplayMessageItemsTwoThreadsTest, BadItemInTheFirstQuarterEndsTheWalkBegunDuringTheLoad) {
    const std::string log = "<rebuildLog><messageHistory>" + items(1, 20000) +
                            messageItem(20001, "no severity") + items(20002, 80000) +
                            "</messageHistory></rebuildLog>\n";
    ASSERT_LT(log.find("no severity"), log.size() / 4);
    expectSameAsOneWalk(log, QVS::zERR_XML_TAG_NOT_FOUND);
}

TEST(DisplayMessageItemsTwoThreadsTest, MissingClosingTagAtTheEndGivesItsStatus) {
    const std::string log = largeLog(items(50001, 10), "<messageItem><key v=\"1\"/><m><info>cut");
    expectSameAsOneWalk(log, QVS::zERR_XML_END_TAG_NOT_FOUND);
}

// The first TOD item is looked for block by block while the log is read.
std::string todItem() {
    return "<todItem><key v=\"1\"/><zid v=\"0x118\"/><pZid v=\"0x5\"/><volumeID "
           "v=\"01234567-89ab-cdef-01-23-456789abcdef\"/><flag v=\"0x8101\"/><nameSpace "
           "v=\"2\"/><nameType v=\"0\"/><fileName>a.dat</fileName></todItem>";
}

// What DisplayTODItems prints for a small log holding the item.
std::string todOutputAlone() {
    const Shown shown = showTODItems("<rebuildLog>" + todItem() + "</rebuildLog>");
    EXPECT_EQ(0u, shown.status);
    return shown.text;
}

// A log of messages with the TOD item starting at byte `place` of the file;
// `zeroAt`, when not npos, puts a zero byte there, which drops the rest of
// its chunk from the text.
std::string logWithTODItemAt(std::size_t place, std::size_t zeroAt = std::string::npos) {
    std::string log = "<rebuildLog><messageHistory>";
    unsigned key = 1;
    while (log.size() < place)
        log += messageItem(key++, "<info>Object was checked.</info>");
    log.resize(place, ' ');
    log += todItem() + "</messageHistory></rebuildLog>\n";
    if (zeroAt != std::string::npos)
        log[zeroAt] = '\0';
    return log;
}

void expectTheTODItemFoundAt(std::size_t place, std::size_t zeroAt = std::string::npos) {
    SCOPED_TRACE("TOD item at " + std::to_string(place));
    const Shown shown = showTODItems(logWithTODItemAt(place, zeroAt));
    EXPECT_EQ(0u, shown.status);
    EXPECT_EQ(todOutputAlone(), shown.text);
}

// Blocks of 64 chunks are read at once: a tag across the end of one block
// is found once the next is in.
const std::size_t READ_BLOCK = 64 * RebuildFile::CHUNK_SIZE;

TEST(FirstTODItemTest, FoundWhereverItLiesAroundTheEndOfABlock) {
    for (std::size_t back = 0; back <= 10; ++back)
        expectTheTODItemFoundAt(2 * READ_BLOCK - back);
    expectTheTODItemFoundAt(2 * READ_BLOCK + 1);
}

TEST(FirstTODItemTest, FoundAcrossABlockEndAfterAChunkDroppedForAZeroByte) {
    // The zero byte drops the last 24 bytes of the first chunk: in the text
    // the tag still lies across the place where the second block begins.
    for (std::size_t back : {1, 4, 8})
        expectTheTODItemFoundAt(2 * READ_BLOCK - back, RebuildFile::CHUNK_SIZE - 24);
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
