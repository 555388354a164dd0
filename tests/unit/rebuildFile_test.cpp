// rebuildFile_test.cpp - loading rebuild logs and printing their items.
#include "util/common_cpp/rebuildFile.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include "tests/unit/logfile_testutil.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const char GUID_TEXT[] = "01234567-89ab-cdef-01-23-456789abcdef";


std::string todItem(unsigned key, const std::string& flag, const std::string& zid,
                    const std::string& pZid, const std::string& named = "") {
    return "<todItem><key v=\"" + std::to_string(key) + "\"/><zid v=\"" + zid + "\"/><pZid v=\"" +
           pZid + "\"/><volumeID v=\"" + GUID_TEXT + "\"/><flag v=\"" + flag + "\"/>" + named +
           "</todItem>";
}

std::string named(unsigned nameSpace, unsigned nameType, const std::string& fileName) {
    return "<nameSpace v=\"" + std::to_string(nameSpace) + "\"/><nameType v=\"" +
           std::to_string(nameType) + "\"/><fileName>" + fileName + "</fileName>";
}

std::string messageItem(unsigned key, const std::string& m) {
    return "<messageItem><key v=\"" + std::to_string(key) + "\"/><m>" + m + "</m></messageItem>";
}

std::string rebuildLog(const std::string& tod, const std::string& messages = "") {
    return "<rebuildLog><todHistory>" + tod + "</todHistory><messageHistory>" + messages +
           "</messageHistory></rebuildLog>\n";
}

const char TOTALS_0_0[] = "\nFound 0 items that were deleted or truncated.\n  Ignored 0 expected items.\n";

bool commandFileExists() { return access("/_admin/Manage_QVS/manage.cmd", F_OK) == 0; }

} // namespace

// ---------------------------------------------------------------- loading

TEST(RebuildFileLoad, MissingRootThrows20163AndReports) {
    LogFile log("<todHistory></todHistory>");
    std::ostringstream out;
    try {
        RebuildFile rf(log.path(), out, 4);
        FAIL();
    } catch (const AdminError&) {
        FAIL();
    } catch (const QVSError& e) {
        EXPECT_EQ(20163, e.status());
        EXPECT_STREQ("Require tag <rebuildLog> is missing", e.what());
        EXPECT_EQ("util/common_cpp/rebuildFile[138]", e.location());
    }
    EXPECT_EQ("\nRequired tag <rebuildLog> not found.  Status is 20163.\n", out.str());
}

TEST(RebuildFileLoad, MissingRootSilentWithoutFlag4) {
    LogFile log("<rebuildLog/>");
    std::ostringstream out;
    EXPECT_THROW(RebuildFile(log.path(), out, 8), QVSError);
    EXPECT_EQ("", out.str());
}

TEST(RebuildFileLoad, UnterminatedRootThrows20162) {
    LogFile log("<rebuildLog><todHistory></todHistory>");
    std::ostringstream out;
    try {
        RebuildFile rf(log.path(), out, 0);
        FAIL();
    } catch (const QVSError& e) {
        EXPECT_EQ(20162, e.status());
    }
    EXPECT_EQ("\nRequired tag <rebuildLog> not found.  Status is 20162.\n", out.str());
}

TEST(RebuildFileLoad, ClosingRootBeforeOpeningIsNotAnElement) {
    LogFile log("</rebuildLog><rebuildLog>");
    std::ostringstream out;
    try {
        RebuildFile rf(log.path(), out, 4);
        FAIL();
    } catch (const QVSError& e) {
        EXPECT_EQ(20162, e.status());
    }
    LogFile nested("<rebuildLog></rebuildLog><rebuildLog>");
    std::ostringstream quiet;
    EXPECT_NO_THROW(RebuildFile(nested.path(), quiet, 4));
}

TEST(RebuildFileLoad, ZeroFlagsMeanSix) {
    LogFile log(rebuildLog(""));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 0);
    EXPECT_EQ(6u, rf.Flags());
    RebuildFile other(log.path(), out, 1);
    EXPECT_EQ(1u, other.Flags());
    EXPECT_EQ("", out.str());
}

TEST(RebuildFileLoad, OpenFailure) {
    std::string missing = testing::TempDir() + "rebuildFile_test_no_such_file.xml";
    std::ostringstream out;
    try {
        RebuildFile rf(missing, out, 4);
        FAIL();
    } catch (const QVSError&) {
        FAIL();
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ("Could not open rebuild RXF file", e.what());
    }
    EXPECT_EQ("\nCould not open " + missing + ": No such file or directory\n", out.str());
    std::ostringstream quiet;
    EXPECT_THROW(RebuildFile(missing, quiet, 2), std::runtime_error);
    EXPECT_EQ("", quiet.str());
}

TEST(RebuildFileLoad, ReadFailureOfADirectory) {
    std::string dir = testing::TempDir() + "rebuildFile_test_dir_" + std::to_string(getpid());
    ASSERT_EQ(0, mkdir(dir.c_str(), 0700));
    std::ostringstream out;
    testing::internal::CaptureStderr();
    try {
        RebuildFile rf(dir, out, 4);
        ADD_FAILURE();
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ("Could not read input file", e.what());
    }
    std::string err = testing::internal::GetCapturedStderr();
    rmdir(dir.c_str());
    EXPECT_EQ("util/common_cpp/rebuildFile[97] Could not read from \"" + dir +
                  "\" because of \"Is a directory\"\n",
              err);
    EXPECT_EQ("", out.str());
}

TEST(RebuildFileLoad, ZeroByteDropsTheRestOfItsChunkOnly) {
    std::string first = "<rebuildLog><todHistory>";
    std::string chunk1 = first + std::string(1, '\0');
    chunk1 += std::string(1024 - chunk1.size(), 'J'); // junk after the zero byte
    std::string chunk2 = "</todHistory>";
    chunk2 += std::string(1024 - chunk2.size(), ' ');
    std::string chunk3 = "</rebuildLog>";
    LogFile log(chunk1 + chunk2 + chunk3);
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(first + chunk2 + chunk3, rf.Text());
}

TEST(RebuildFileLoad, ZeroByteAtChunkStartAndEnd) {
    std::string chunk1 = "<rebuildLog>" + std::string(1024 - 13, 'a') + std::string(1, '\0');
    std::string chunk2 = std::string(1, '\0') + std::string(1023, 'b');
    std::string chunk3 = "</rebuildLog>";
    LogFile log(chunk1 + chunk2 + chunk3);
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(chunk1.substr(0, 1023) + chunk3, rf.Text());
}

TEST(RebuildFileLoad, ManyChunksKeptWhole) {
    std::string body;
    for (unsigned i = 0; i < 500; ++i)
        body += messageItem(i, "<info>message " + std::to_string(i) + "</info>");
    std::string text = rebuildLog("", body);
    LogFile log(text);
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(text, rf.Text());
}

TEST(RebuildFileLoad, ZeroBytesAcrossReadBlocksFollowTheChunkRule) {
    // Zero bytes around the places where larger reads meet: each still drops
    // only the rest of its own 1024-byte chunk.
    std::string file = "<rebuildLog>";
    std::string expected = file;
    unsigned chunk = 1;
    size_t fill = 1024 - file.size();
    for (; chunk < 300; ++chunk) {
        std::string body(fill, static_cast<char>('a' + chunk % 26));
        size_t zeroAt = std::string::npos;
        if (chunk % 64 == 0 || chunk % 64 == 63 || chunk % 17 == 0)
            zeroAt = (chunk * 37) % fill;
        if (zeroAt != std::string::npos) {
            body[zeroAt] = '\0';
            expected += body.substr(0, zeroAt);
        } else {
            expected += body;
        }
        file += body;
        fill = 1024;
    }
    file += "</rebuildLog>";
    expected += "</rebuildLog>";
    LogFile log(file);
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(expected, rf.Text());
}

TEST(RebuildFileLoad, UnknownSizeFromAPipe) {
    const std::string text = rebuildLog("", messageItem(1, "<info>piped</info>"));
    std::string fifo = testing::TempDir() + "rebuildFile_test_fifo_" + std::to_string(getpid());
    ASSERT_EQ(0, mkfifo(fifo.c_str(), 0600));
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        FILE* writer = std::fopen(fifo.c_str(), "wb");
        if (writer) {
            std::fwrite(text.data(), 1, text.size(), writer);
            std::fclose(writer);
        }
        _exit(0);
    }
    std::ostringstream out;
    {
        RebuildFile rf(fifo, out, 4);
        EXPECT_EQ(text, rf.Text());
        EXPECT_EQ(0u, rf.DisplayMessageItems());
    }
    int status = 0;
    waitpid(child, &status, 0);
    std::remove(fifo.c_str());
    EXPECT_EQ("Rebuild messages\n  piped\n\nFound 1 messages.\n\n", out.str());
}

// ---------------------------------------------------------------- TOD items

TEST(RebuildFileTOD, EmptyLogPrintsOnlyTotals) {
    LogFile log(rebuildLog(""));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayTODItems());
    EXPECT_EQ(TOTALS_0_0, out.str());
}

TEST(RebuildFileTOD, ReasonSixIsCountedButNotPrinted) {
    LogFile log(rebuildLog(todItem(1, "0x101", "0x118", "0x40") +
                           todItem(2, "0x206", "0x119", "0x40") +
                           todItem(3, "0x8203", "0x11a", "0x40", named(2, 0, "a.txt"))));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayTODItems());
    EXPECT_EQ(std::string("Vol ID ") + GUID_TEXT +
                  ", non-named file,  <ZID 0x118>   TRUNCATED (Cross Linked Blocks)\n"
                  "Vol ID " +
                  GUID_TEXT +
                  ", name is \"a.txt\" <ZID 0x11a> <PZID 0x40>   DELETED (Corrupt Beast)\n"
                  "\nFound 3 items that were deleted or truncated.\n  Ignored 1 expected items.\n",
              out.str());
}

TEST(RebuildFileTOD, ZeroZidAndUnknownNames) {
    LogFile log(rebuildLog(todItem(1, "0x8000", "0", "0", named(0, 0, "<![CDATA[x y]]>")) +
                           todItem(2, "0x40e", "18446744073709551615", "0")));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayTODItems());
    EXPECT_EQ(std::string("Vol ID ") + GUID_TEXT +
                  ", name is \"x y\" <ZID 0> <PZID 0>   UNKNOWN (unknown)\n"
                  "Vol ID " +
                  GUID_TEXT +
                  ", non-named file,  <ZID 0xffffffffffffffff>   TRUSTEES TRUNCATED (unknown)\n"
                  "\nFound 2 items that were deleted or truncated.\n  Ignored 0 expected items.\n",
              out.str());
}

TEST(RebuildFileTOD, StreamFormatIsRestored) {
    LogFile log(rebuildLog(todItem(1, "0x101", "0x118", "0x40")));
    std::ostringstream out;
    out << std::dec;
    std::ios_base::fmtflags before = out.flags();
    RebuildFile rf(log.path(), out, 4);
    rf.DisplayTODItems();
    EXPECT_EQ(before, out.flags());
    EXPECT_NE(std::string::npos, out.str().find("Found 1 items"));
}

TEST(RebuildFileTOD, UnterminatedItemEndsWalkWith20162AfterTotals) {
    LogFile log("<rebuildLog>" + todItem(1, "0x101", "0x118", "0x40") +
                "<todItem><key v=\"2\"/></rebuildLog>");
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, rf.DisplayTODItems());
    EXPECT_EQ(std::string("Vol ID ") + GUID_TEXT +
                  ", non-named file,  <ZID 0x118>   TRUNCATED (Cross Linked Blocks)\n"
                  "\nFound 1 items that were deleted or truncated.\n  Ignored 0 expected items.\n",
              out.str());
}

TEST(RebuildFileTOD, BadItemEndsWalkWithItsStatus) {
    LogFile log(rebuildLog("<todItem><key v=\"1\"/><zid v=\"1\"/><pZid v=\"1\"/><flag v=\"1\"/>"
                           "<volumeID v=\"bad\"/></todItem>" +
                           todItem(2, "0x101", "0x118", "0x40")));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(QVS::zERR_INVALID_VOLUME_ID, rf.DisplayTODItems());
    EXPECT_EQ(TOTALS_0_0, out.str());
}

TEST(RebuildFileTOD, NameSpaceSeparators) {
    const char* expected[] = {"\\", ":", "/", "??", "\\", "??", ":::", "::", "??", "??"};
    for (unsigned ns = 0; ns < 10; ++ns)
        EXPECT_STREQ(expected[ns], RebuildFile::NameSpaceSeparator(ns)) << ns;
    EXPECT_STREQ("??", RebuildFile::NameSpaceSeparator(0xFFFFFFFFu));
}

// ---------------------------------------------------------------- lookups

TEST(RebuildFileLookup, ChannelFailureEndsAtOnceWithoutTotals) {
    if (commandFileExists())
        GTEST_SKIP() << "a management command file is present on this machine";
    LogFile log(rebuildLog(todItem(1, "0x106", "0x118", "0x40") +
                           todItem(2, "0x101", "0x119", "0x40") +
                           todItem(3, "0x101", "0x11a", "0x40")));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    testing::internal::CaptureStderr();
    EXPECT_EQ(20008u, rf.ProcessTODItems(""));
    testing::internal::GetCapturedStderr();
    EXPECT_EQ("Unable to create VFSManageCmd:  Could not open command file\n", out.str());
}

TEST(RebuildFileLookup, NoLookupForIgnoredOrMissingItems) {
    LogFile log(rebuildLog(todItem(1, "0x106", "0x118", "0x40") +
                           todItem(2, "0x8206", "0x119", "0x40", named(1, 0, "x"))));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    testing::internal::CaptureStderr();
    EXPECT_EQ(0u, rf.ProcessTODItems(nullptr));
    EXPECT_EQ("", testing::internal::GetCapturedStderr());
    EXPECT_EQ("\nFound 2 items that were deleted or truncated.\n  Ignored 2 expected items.\n",
              out.str());
    std::ostringstream empty;
    LogFile none(rebuildLog(""));
    RebuildFile rf2(none.path(), empty, 4);
    EXPECT_EQ(0u, rf2.ProcessTODItems("server"));
    EXPECT_EQ(TOTALS_0_0, empty.str());
}

TEST(RebuildFileLookup, BrokenWalkWithoutItemsReturnsItsStatus) {
    LogFile log("<rebuildLog><todItem></rebuildLog>");
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(20162u, rf.ProcessTODItems(""));
    EXPECT_EQ(TOTALS_0_0, out.str());
}

// ---------------------------------------------------------------- messages

TEST(RebuildFileMessages, TwoMessages) {
    LogFile log(rebuildLog("", messageItem(1, "<info loc=\"a.c:1\">Rebuild started</info>") +
                                   messageItem(2, "<error>Bad block</error>")));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayMessageItems());
    EXPECT_EQ("Rebuild messages\n  Rebuild started\n  Bad block\n\nFound 2 messages.\n\n",
              out.str());
}

TEST(RebuildFileMessages, NoMessages) {
    LogFile log(rebuildLog(""));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayMessageItems());
    EXPECT_EQ("Rebuild messages\n\nFound 0 messages.\n\n", out.str());
}

TEST(RebuildFileMessages, BadMessageEndsWalkAfterTotals) {
    LogFile log(rebuildLog("", messageItem(1, "<warning>w</warning>") +
                                   messageItem(2, "no severity") +
                                   messageItem(3, "<info>i</info>")));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, rf.DisplayMessageItems());
    EXPECT_EQ("Rebuild messages\n  w\n\nFound 1 messages.\n\n", out.str());
}

TEST(RebuildFileMessages, OutsideTheHistoryStillCounts) {
    // The walk searches the whole text, not only <messageHistory>.
    LogFile log("<rebuildLog>" + messageItem(1, "<fatal>f</fatal>") + "</rebuildLog>" +
                messageItem(2, "<actionRequired>a</actionRequired>"));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayMessageItems());
    EXPECT_EQ("Rebuild messages\n  f\n  a\n\nFound 2 messages.\n\n", out.str());
}

TEST(RebuildFileMessages, LongAndManyMessagesKeepTheirLines) {
    // Lines are written in blocks; a message longer than a block goes out on
    // its own. The output is the same line for line.
    const std::string longText(200000, 'L');
    std::string body;
    std::string expected = "Rebuild messages\n";
    for (unsigned i = 0; i < 3000; ++i) {
        std::string text = i % 1000 == 500 ? longText : "message " + std::to_string(i);
        body += messageItem(i, "<warning>" + text + "</warning>");
        expected += "  " + text + "\n";
    }
    expected += "\nFound 3000 messages.\n\n";
    LogFile log(rebuildLog("", body));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 4);
    EXPECT_EQ(0u, rf.DisplayMessageItems());
    EXPECT_EQ(expected, out.str());
}

// ---------------------------------------------------------------- large logs

namespace {

// Message items keyed first..first+count-1, each with the text
// "Object KEY was checked.", and the lines they print.
struct Messages {
    std::string items;
    std::string lines;
};

Messages checkedObjects(unsigned first, unsigned count) {
    Messages m;
    for (unsigned key = first; key < first + count; ++key) {
        const std::string text = "Object " + std::to_string(key) + " was checked.";
        m.items += messageItem(key, "<info>" + text + "</info>") + "\n";
        m.lines += "  " + text + "\n";
    }
    return m;
}

std::string messagesShown(const std::string& lines, unsigned long count) {
    return "Rebuild messages\n" + lines + "\nFound " + std::to_string(count) + " messages.\n\n";
}

struct Shown {
    unsigned status;
    std::string text;
};

Shown showMessages(const std::string& contents) {
    LogFile log(contents);
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 0);
    const unsigned status = rf.DisplayMessageItems();
    return Shown{status, out.str()};
}

// Empty when the texts are equal, else where they first differ: a failure
// shows two lines rather than two texts of megabytes.
std::string firstDifference(const std::string& expected, const std::string& actual) {
    if (expected == actual)
        return "";
    std::size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
        ++at;
    const std::size_t lineStart = at == 0 ? std::string::npos : expected.rfind('\n', at - 1);
    const std::size_t from = lineStart == std::string::npos ? 0 : lineStart + 1;
    return "at byte " + std::to_string(at) + ": expected \"" +
           expected.substr(from, expected.find('\n', from) - from) + "\", got \"" +
           actual.substr(from, actual.find('\n', from) - from) + "\" (sizes " +
           std::to_string(expected.size()) + " and " + std::to_string(actual.size()) + ")";
}

const unsigned LARGE = 60000; // messages of a log of about 5 MB

} // namespace

TEST(RebuildFileLargeLogs, EveryMessageInOrder) {
    const Messages all = checkedObjects(1, 2 * LARGE);
    const Shown shown = showMessages(rebuildLog("", all.items));
    EXPECT_EQ(0u, shown.status);
    EXPECT_EQ("", firstDifference(messagesShown(all.lines, 2 * LARGE), shown.text));
}

TEST(RebuildFileLargeLogs, DamagedItemsAnywhereEndTheWalkThere) {
    // A message without a severity ends the walk with 20163 at its place,
    // at the start, in the middle or at the very end of a large log.
    for (unsigned before : {0u, 1u, LARGE, 2 * LARGE - 1, 2 * LARGE}) {
        SCOPED_TRACE("bad item after " + std::to_string(before) + " messages");
        const Messages head = checkedObjects(1, before);
        const Messages tail = checkedObjects(before + 2, 2 * LARGE - before);
        const Shown shown =
            showMessages(rebuildLog("", head.items + messageItem(before + 1, "no severity") + tail.items));
        EXPECT_EQ(QVS::zERR_XML_TAG_NOT_FOUND, shown.status);
        EXPECT_EQ("", firstDifference(messagesShown(head.lines, before), shown.text));
    }
}

TEST(RebuildFileLargeLogs, UnclosedItemSwallowsTheNextOne) {
    // An item without its closing tag ends at the next item's closing tag:
    // its text is that of the first severity element inside, which is its own.
    const Messages head = checkedObjects(1, LARGE);
    const Messages tail = checkedObjects(LARGE + 3, LARGE);
    const std::string unclosed = "<messageItem><key v=\"" + std::to_string(LARGE + 1) +
                                 "\"/><m><warning>unclosed</warning></m>\n";
    const Shown shown = showMessages(
        rebuildLog("", head.items + unclosed +
                           messageItem(LARGE + 2, "<info>swallowed</info>") + tail.items));
    EXPECT_EQ(0u, shown.status);
    EXPECT_EQ("", firstDifference(messagesShown(head.lines + "  unclosed\n" + tail.lines,
                                                2 * LARGE + 1),
                                  shown.text));
}

TEST(RebuildFileLargeLogs, OpeningTagInsideAnItemStartsNoItem) {
    // The walk goes on after an item's closing tag, so an opening tag inside
    // an item's text is not an item of its own.
    const Messages head = checkedObjects(1, LARGE);
    const Messages tail = checkedObjects(LARGE + 2, LARGE);
    const std::string outer = "<messageItem><key v=\"" + std::to_string(LARGE + 1) +
                              "\"/><m><info>outer " + std::string(200000, 'x') +
                              "</info></m> <messageItem><key v=\"7\"/><m><info>inner</info></m>"
                              "</messageItem>\n";
    const Shown shown = showMessages(rebuildLog("", head.items + outer + tail.items));
    EXPECT_EQ(0u, shown.status);
    EXPECT_EQ("", firstDifference(messagesShown(head.lines + "  outer " + std::string(200000, 'x') +
                                                    "\n" + tail.lines,
                                                2 * LARGE + 1),
                                  shown.text));
}

TEST(RebuildFileLargeLogs, MissingClosingTagAtTheEndGivesItsStatus) {
    const Messages all = checkedObjects(1, 2 * LARGE);
    const Shown shown = showMessages("<rebuildLog></rebuildLog><messageHistory>" + all.items +
                                     "<messageItem><key v=\"1\"/><m><info>cut");
    EXPECT_EQ(QVS::zERR_XML_END_TAG_NOT_FOUND, shown.status);
    EXPECT_EQ("", firstDifference(messagesShown(all.lines, 2 * LARGE), shown.text));
}

TEST(RebuildFileLargeLogs, TODItemsFarIntoALogOfMessages) {
    // The TOD walk finds its items wherever they lie in a large log, and
    // none at all in a log of messages only.
    const Messages all = checkedObjects(1, 2 * LARGE);
    const std::string item = todItem(1, "0x8101", "0x118", "0x5", named(2, 0, "a.dat"));
    const std::string line = std::string("Vol ID ") + GUID_TEXT +
                             ", name is \"a.dat\" <ZID 0x118> <PZID 0x5>   TRUNCATED (Cross Linked Blocks)\n";
    const std::string totals1 = "\nFound 1 items that were deleted or truncated.\n  Ignored 0 expected items.\n";
    for (const std::string& contents :
         {"<rebuildLog><messageHistory>" + all.items + item + "</messageHistory></rebuildLog>\n",
          "<rebuildLog><messageHistory>" + all.items + "</messageHistory></rebuildLog>\n" + item}) {
        LogFile log(contents);
        std::ostringstream out;
        RebuildFile rf(log.path(), out, 0);
        EXPECT_EQ(0u, rf.DisplayTODItems());
        EXPECT_EQ(line + totals1, out.str());
    }
    LogFile log(rebuildLog("", all.items));
    std::ostringstream out;
    RebuildFile rf(log.path(), out, 0);
    EXPECT_EQ(0u, rf.DisplayTODItems());
    EXPECT_EQ(TOTALS_0_0, out.str());
}

// ---------------------------------------------------------------- hostile input

TEST(RebuildFileHostile, EveryCutOfALogEndsCleanly) {
    std::string text = rebuildLog(todItem(1, "0x8101", "0x118", "0x40", named(1, 3, "a")) +
                                      todItem(2, "0x206", "0x119", "0x40"),
                                  messageItem(1, "<info>m</info>"));
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        LogFile log(text.substr(0, cut));
        std::ostringstream out;
        try {
            RebuildFile rf(log.path(), out, 4);
            rf.DisplayTODItems();
            rf.DisplayMessageItems();
        } catch (const QVSError& e) {
            EXPECT_TRUE(e.status() == 20162 || e.status() == 20163) << e.status();
        }
    }
}
