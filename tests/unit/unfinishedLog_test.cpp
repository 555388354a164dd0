// unfinishedLog_test.cpp - a rebuild log still being written, as the
// companions read it: cut anywhere (between items, inside an item, inside a
// tag), it gives what the same log closed at its last complete item gives,
// and its walks end where the text ends instead of at a damaged item.
#include "util/logsift/logsiftDriver.h"
#include "util/logsift/logsiftJson.h"
#include "util/logsift/poolHealth.h"

#include "tests/unit/scratch_testutil.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Under the sanitizers, which cost many times the time, every seventh byte.
// A macro: only the preprocessor knows the build's instrumentation.
#if defined(__SANITIZE_ADDRESS__)
#define UNFINISHED_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define UNFINISHED_SANITIZED 1
#endif
#endif
#ifdef UNFINISHED_SANITIZED
constexpr std::size_t CUT_STEP = 7;
#else
constexpr std::size_t CUT_STEP = 1;
#endif

std::string readAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

const char* const HISTORIES[] = {"todHistory", "messageHistory", "actionHistory", "debugHistory",
                                 "ioHistory"};
const char* const ITEM_ENDS[] = {"</todItem>", "</messageItem>", "</actionItem>", "</debugItem>",
                                 "</ioItem>", "</actionCurrent>"};

// The log closed at its last complete item: cut after the last item or
// history tag that the cut left whole, then every history left open closed,
// then the root.
std::string closedAtLastItem(const std::string& cut) {
    std::size_t keep = cut.find("<rebuildLog>");
    if (keep == std::string::npos)
        return cut;
    keep += std::string("<rebuildLog>").size();
    auto later = [&](const std::string& tag) {
        const std::size_t at = cut.rfind(tag);
        if (at != std::string::npos)
            keep = std::max(keep, at + tag.size());
    };
    for (const char* end : ITEM_ENDS)
        later(end);
    for (const char* history : HISTORIES) {
        later(std::string("<") + history + ">");
        later(std::string("</") + history + ">");
    }
    std::string closed = cut.substr(0, keep);
    for (const char* history : HISTORIES) {
        const std::string open = std::string("<") + history + ">";
        const std::string close = std::string("</") + history + ">";
        const std::size_t opened = closed.rfind(open);
        const std::size_t shut = closed.rfind(close);
        if (opened != std::string::npos && (shut == std::string::npos || shut < opened))
            closed += close;
    }
    return closed + "</rebuildLog>";
}

// What the companions give of a log: the summary's facts, and the whole
// document's totals of action items and its "finished".
struct Read {
    PoolHealth::RebuildFacts facts;
    std::string document;
    long actionItems = -1;
    int exit = -1;
};

Read readLog(const std::string& path) {
    Read read;
    read.facts = PoolHealth::ReadRebuild(LogsiftDriver::Source{path, "", "", false});
    std::ostringstream out;
    LogsiftJson::Options options;
    options.lookup = false;
    read.exit = LogsiftJson::RebuildLog(path, options, out);
    read.document = out.str();
    const std::string key = "\"action_items\": ";
    const std::size_t at = read.document.rfind(key); // in the totals, after the list
    if (at != std::string::npos)
        read.actionItems = std::stol(read.document.substr(at + key.size(), 20));
    return read;
}

std::string counts(const Read& read) {
    const RebuildSummary& s = read.facts.counts;
    std::ostringstream text;
    text << "messages " << s.messages << ", TOD items " << s.todItems << " (ignored " << s.ignored
         << ", truncated " << s.truncated << ", deleted " << s.deleted << ", by action "
         << s.actions[0] << "/" << s.actions[1] << "/" << s.actions[2] << "/" << s.actions[3]
         << "), action items " << read.actionItems;
    return text.str();
}

std::vector<std::string> logs() {
    std::vector<std::string> paths = {std::string(LOGSIFT_SOURCE_DIR) +
                                      "/examples/sample_rebuild.xml"};
    const std::string corpus = std::string(LOGSIFT_SOURCE_DIR) + "/fuzz/corpus/fuzz_rebuild";
    if (DIR* dir = opendir(corpus.c_str())) {
        while (dirent* entry = readdir(dir))
            if (entry->d_name[0] != '.')
                paths.push_back(corpus + "/" + entry->d_name);
        closedir(dir);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

} // namespace

// Every byte of every log of the corpora as the end of what is written.
TEST(UnfinishedLog, EveryCutGivesTheCountsOfTheLogClosedAtItsLastCompleteItem) {
    Scratch scratch;
    long compared = 0;
    for (const std::string& log : logs()) {
        const std::string text = readAll(log);
        const std::size_t root = text.find("<rebuildLog>");
        const std::size_t rootEnd = text.rfind("</rebuildLog>");
        // Logs that are damaged whole, or have no root, say nothing of cuts.
        if (root == std::string::npos || rootEnd == std::string::npos)
            continue;
        const Read whole = readLog(scratch.Write("whole.xml", text));
        if (!whole.facts.outcome.Good())
            continue;
        for (std::size_t end = root + 12; end < rootEnd; end += CUT_STEP) {
            const std::string cut = text.substr(0, end);
            const Read unfinished = readLog(scratch.Write("cut.xml", cut));
            const Read closed = readLog(scratch.Write("closed.xml", closedAtLastItem(cut)));
            ++compared;
            ASSERT_TRUE(unfinished.facts.outcome.Good())
                << log << " cut at " << end << ": " << unfinished.facts.outcome.text;
            ASSERT_EQ(unfinished.facts.state, PoolHealth::LogState::Unfinished) << log << " " << end;
            ASSERT_EQ(unfinished.exit, 0) << log << " cut at " << end;
            ASSERT_NE(unfinished.document.find("\"finished\": false"), std::string::npos);
            ASSERT_EQ(counts(unfinished), counts(closed)) << log << " cut at " << end;
        }
    }
    EXPECT_GT(compared, 15000 / CUT_STEP);
    std::cout << compared << " cuts compared\n";
}

// The cuts that make damage, not the end of what is written: an item
// without its closing tag with more text after it, and a log cut inside
// its root's opening tag.
TEST(UnfinishedLog, ADamagedItemFollowedByMoreTextStaysDamaged) {
    Scratch scratch;
    const Read item = readLog(scratch.Write(
        "damaged.xml", "<rebuildLog><messageHistory><messageItem><key v=\"1\"/>"
                       "<m><info>x</info></m></messageHistory><todHistory>"));
    EXPECT_EQ(item.facts.state, PoolHealth::LogState::Damaged);
    EXPECT_EQ(item.exit, 2);
    const Read root = readLog(scratch.Write("root.xml", "<rebuildL"));
    EXPECT_EQ(root.facts.state, PoolHealth::LogState::Unreadable);
    EXPECT_EQ(root.exit, 2);
    // A closed log keeps the design's rule: an unterminated last item is damage.
    const Read closed = readLog(scratch.Write(
        "closed.xml", "<rebuildLog><messageItem><key v=\"1\"/><m><info>x</info></m></rebuildLog>"));
    EXPECT_EQ(closed.facts.state, PoolHealth::LogState::Damaged);
}

// The walks say where they ended: at the end of the text, with its offset.
TEST(UnfinishedLog, WalksEndAtTheEndOfTheText) {
    Scratch scratch;
    const std::string text = "<rebuildLog><todHistory><todItem><key v=\"1\"/><zid v=\"0x10\"/>"
                             "<pZid v=\"1\"/><flag v=\"0x100\"/><volumeID v=\"9f3d7c20-3f4e-11ee-"
                             "8a-01-0050568c2e11\"/></todItem><todItem><key v=\"2\"/>";
    const Read read = readLog(scratch.Write("log.xml", text));
    EXPECT_NE(read.document.find("\"tod_walk\": {\"count\": 1, \"ignored\": 0, \"complete\": true, "
                                 "\"ended_by\": \"end_of_text\", \"status\": 0, \"status_name\": "
                                 "\"zOK\", \"text_end\": " +
                                 std::to_string(text.size()) + "}"),
              std::string::npos)
        << read.document;
    EXPECT_NE(read.document.find("\"message_walk\": {\"count\": 0, \"ended_by\": \"end_of_text\""),
              std::string::npos);
    EXPECT_NE(read.document.find("\"ended_by\": \"end_of_text\", \"status\": 0, \"status_name\": "
                                 "\"zOK\", \"text_end\""),
              std::string::npos);
}
