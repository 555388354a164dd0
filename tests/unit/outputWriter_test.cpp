// outputWriter_test.cpp - the writer of standard output: whole blocks through
// short writes and interruptions, the first error kept and thrown once, line
// buffering, control characters and bytes that are not well-formed UTF-8
// escaped for a terminal (checked against a decoder of the test's own over
// every sequence of one and two bytes, of three led by E0 to EF and a sample
// of four), and standard error escaped when it is a terminal.
#include "util/support/outputWriter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <iostream>
#include <ostream>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using QVS::OutputWriteError;
using QVS::OutputWriter;

// A write(2) of the test's own: it records what it was given and answers
// from a script of results, one per call (a count means "took that many
// bytes at most"; -EINTR and the like fail with that errno). Past the end of
// the script it takes everything.
struct ScriptedWrite {
    static std::string taken;
    static std::vector<long> script;
    static std::size_t calls;

    static void Reset(std::vector<long> results) {
        taken.clear();
        script = std::move(results);
        calls = 0;
    }

    static long Write(int, const void* data, std::size_t size) {
        long result = calls < script.size() ? script[calls] : static_cast<long>(size);
        ++calls;
        if (result < 0) {
            errno = static_cast<int>(-result);
            return -1;
        }
        const std::size_t n = std::min(size, static_cast<std::size_t>(result));
        taken.append(static_cast<const char*>(data), n);
        return static_cast<long>(n);
    }
};
std::string ScriptedWrite::taken;
std::vector<long> ScriptedWrite::script;
std::size_t ScriptedWrite::calls = 0;

std::string pattern(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>('a' + i % 26);
    return text;
}

// What goes through a writer that escapes controls, given in the pieces of
// `pieces` (so that a character may be split between two writes).
std::string escaped(const std::vector<std::string>& pieces) {
    ScriptedWrite::Reset({});
    {
        OutputWriter writer(1, false, true, ScriptedWrite::Write);
        std::ostream out(&writer);
        for (const std::string& piece : pieces)
            out << piece;
        writer.Flush();
    }
    return ScriptedWrite::taken;
}

} // namespace

TEST(OutputWriter, ShortWritesAndInterruptionsAreRetriedUntilAllIsWritten) {
    ScriptedWrite::Reset({1, -EINTR, 7, -EINTR, -EINTR, 4096, 3});
    const std::string text = pattern(100000);
    OutputWriter writer(1, false, false, ScriptedWrite::Write);
    std::ostream out(&writer);
    out << text;
    writer.Flush();
    EXPECT_EQ(text, ScriptedWrite::taken);
    EXPECT_GT(ScriptedWrite::calls, 7u);
    EXPECT_EQ(0, writer.Error());
}

TEST(OutputWriter, NothingIsWrittenBeforeTheBufferFillsOrAFlush) {
    ScriptedWrite::Reset({});
    OutputWriter writer(1, false, false, ScriptedWrite::Write);
    std::ostream out(&writer);
    out << "line one\nline two\n";
    EXPECT_EQ("", ScriptedWrite::taken);
    out << std::flush;
    EXPECT_EQ("line one\nline two\n", ScriptedWrite::taken);
    EXPECT_EQ(1u, ScriptedWrite::calls);
}

TEST(OutputWriter, BlocksAreWrittenInBigPieces) {
    ScriptedWrite::Reset({});
    const std::string line = "  a message line of a rebuild log\n";
    OutputWriter writer(1, false, false, ScriptedWrite::Write);
    std::ostream out(&writer);
    std::string expected;
    while (expected.size() < 3 * OutputWriter::BUFFER_SIZE) {
        out << line;
        expected += line;
    }
    writer.Flush();
    EXPECT_EQ(expected, ScriptedWrite::taken);
    EXPECT_EQ(3u + 1u, ScriptedWrite::calls);
}

TEST(OutputWriter, ATerminalGetsEveryLineWhenItEnds) {
    ScriptedWrite::Reset({});
    OutputWriter writer(1, true, false, ScriptedWrite::Write);
    std::ostream out(&writer);
    out << "first ";
    EXPECT_EQ("", ScriptedWrite::taken);
    out << "line\n";
    EXPECT_EQ("first line\n", ScriptedWrite::taken);
    out << "second\n";
    EXPECT_EQ("first line\nsecond\n", ScriptedWrite::taken);
}

TEST(OutputWriter, TheFirstErrorIsKeptAndThrownOnceThenEverythingIsDropped) {
    ScriptedWrite::Reset({5, -ENOSPC, -EIO});
    OutputWriter writer(1, false, false, ScriptedWrite::Write);
    std::ostream out(&writer);
    out.exceptions(std::ios_base::badbit);
    out << "0123456789";
    try {
        out << std::flush;
        FAIL() << "no OutputWriteError";
    } catch (const OutputWriteError& e) {
        EXPECT_EQ(ENOSPC, e.error);
    }
    EXPECT_EQ(ENOSPC, writer.Error());
    EXPECT_EQ("01234", ScriptedWrite::taken);
    const std::size_t calls = ScriptedWrite::calls;
    out.exceptions(std::ios_base::goodbit);
    out.clear();
    out << "more" << std::flush;
    writer.Flush();
    EXPECT_EQ(calls, ScriptedWrite::calls);
    EXPECT_EQ(ENOSPC, writer.Error());
}

TEST(OutputWriter, AQuietFlushKeepsTheFailureForTheNextWrite) {
    ScriptedWrite::Reset({-EPIPE});
    OutputWriter writer(1, false, false, ScriptedWrite::Write);
    std::ostream out(&writer);
    out.exceptions(std::ios_base::badbit);
    out << "held";
    EXPECT_NO_THROW(writer.FlushQuietly());
    EXPECT_EQ(EPIPE, writer.Error());
    EXPECT_THROW(out << "next", OutputWriteError);
}

TEST(OutputWriter, ABufferLargerThanAPipeArrivesWhole) {
    // A real pipe (64 KiB) read by another process while much more is written.
    int fds[2];
    ASSERT_EQ(0, pipe(fds));
    const std::string text = pattern(3 * OutputWriter::BUFFER_SIZE + 12345);
    pid_t reader = fork();
    ASSERT_GE(reader, 0);
    if (reader == 0) {
        close(fds[1]);
        std::string got;
        char chunk[4096];
        ssize_t n;
        while ((n = read(fds[0], chunk, sizeof chunk)) > 0)
            got.append(chunk, static_cast<std::size_t>(n));
        _exit(got == text ? 0 : 1);
    }
    close(fds[0]);
    {
        OutputWriter writer(fds[1], false, false);
        std::ostream out(&writer);
        out << text.substr(0, 1000);
        out.write(text.data() + 1000, static_cast<std::streamsize>(text.size() - 1000));
        writer.Flush();
        EXPECT_EQ(0, writer.Error());
    }
    close(fds[1]);
    int status = 0;
    ASSERT_EQ(reader, waitpid(reader, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(OutputWriter, AFullDiskIsReportedWithItsErrno) {
    const int full = open("/dev/full", O_WRONLY);
    if (full < 0)
        GTEST_SKIP() << "no /dev/full";
    OutputWriter writer(full, false, false);
    std::ostream out(&writer);
    out << "text";
    EXPECT_THROW(writer.Flush(), OutputWriteError);
    EXPECT_EQ(ENOSPC, writer.Error());
    close(full);
}

TEST(OutputWriter, FailuresIgnoredNeverThrowAndTheNextWriteIsTried) {
    ScriptedWrite::Reset({-EIO, 2});
    OutputWriter writer(2, true, true, ScriptedWrite::Write, OutputWriter::OnFailure::Ignore);
    std::ostream out(&writer);
    out.exceptions(std::ios_base::badbit);
    EXPECT_NO_THROW(out << "lost\n");
    EXPECT_NO_THROW(out << "kept\n");
    EXPECT_NO_THROW(writer.Flush());
    EXPECT_TRUE(out.good());
    EXPECT_EQ(0, writer.Error());
    EXPECT_EQ("kept\n", ScriptedWrite::taken);
}

// ---------------------------------------------------------------- escapes

TEST(OutputWriterEscapes, C0ControlsAndDelAreShownAsOctal) {
    EXPECT_EQ("a\\033[2Jb\\007c\\177d\\015e\\000f", escaped({std::string("a\033[2Jb\007c\177d\re\0f", 14)}));
}

TEST(OutputWriterEscapes, TabAndNewlineStay) { EXPECT_EQ("a\tb\nc", escaped({"a\tb\nc"})); }

TEST(OutputWriterEscapes, C1ControlsInUtf8AndAsLoneBytes) {
    EXPECT_EQ("x\\302\\233y", escaped({"x\xc2\x9by"}));
    EXPECT_EQ("x\\302\\200y\\302\\237z", escaped({"x\xc2\x80y\xc2\x9fz"}));
    EXPECT_EQ("x\\233y\\200", escaped({"x\x9by\x80"}));
}

TEST(OutputWriterEscapes, OtherCharactersStayWhole) {
    // é, €, a no-break space (C2 A0), U+1F600 (four bytes whose continuation
    // bytes include 0x9F and 0x98).
    const std::string text = "\xc3\xa9 \xe2\x82\xac \xc2\xa0 \xf0\x9f\x98\x80 plain";
    EXPECT_EQ(text, escaped({text}));
}

TEST(OutputWriterEscapes, ACharacterSplitBetweenTwoWrites) {
    EXPECT_EQ("a\\302\\233b", escaped({"a\xc2", "\x9b" "b"}));
    EXPECT_EQ("a\xc2\xa0" "b", escaped({"a\xc2", "\xa0" "b"}));
    EXPECT_EQ("\xe2\x82\xac", escaped({"\xe2", "\x82", "\xac"}));
}

TEST(OutputWriterEscapes, ALoneC2LeadIsEscaped) {
    EXPECT_EQ("a\\302\n", escaped({"a\xc2\n"}));
    EXPECT_EQ("a\\302", escaped({"a\xc2"}));
    EXPECT_EQ("a\\302\\033", escaped({"a\xc2\033"}));
}

TEST(OutputWriterEscapes, AnIllFormedSequenceIsEscapedAndWhatFollowsIsNot) {
    // E9 needs two continuation bytes: 9B is one, '2' is not.
    EXPECT_EQ("caf\\351\\2332J", escaped({"caf\xe9\x9b" "2J"}));
}

TEST(OutputWriterEscapes, ALoneSurrogateIsEscaped) {
    // U+D89B, half of a UTF-16 pair, in the form of a UTF-8 character.
    EXPECT_EQ("\\355\\242\\233", escaped({"\xed\xa2\x9b"}));
    EXPECT_EQ("\\355\\240\\275\\355\\270\\200", escaped({"\xed\xa0\xbd\xed\xb8\x80"}));
}

TEST(OutputWriterEscapes, AnOverlongFormIsEscaped) {
    EXPECT_EQ("\\300\\257", escaped({"\xc0\xaf"}));
    EXPECT_EQ("\\340\\200\\257", escaped({"\xe0\x80\xaf"}));
    EXPECT_EQ("\\360\\200\\200\\257", escaped({"\xf0\x80\x80\xaf"}));
}

TEST(OutputWriterEscapes, ACodePointAboveU10FFFFIsEscaped) {
    EXPECT_EQ("\\364\\220\\200\\200", escaped({"\xf4\x90\x80\x80"}));
    EXPECT_EQ("\\367\\277\\277\\277", escaped({"\xf7\xbf\xbf\xbf"}));
}

TEST(OutputWriterEscapes, AFourByteCharacterPassesRawWholeOrSplit) {
    // U+1F600 and U+10FFFF.
    EXPECT_EQ("a\xf0\x9f\x98\x80" "b", escaped({"a\xf0\x9f\x98\x80" "b"}));
    EXPECT_EQ("a\xf0\x9f\x98\x80" "b", escaped({"a\xf0", "\x9f", "\x98\x80" "b"}));
    EXPECT_EQ("\xf4\x8f\xbf\xbf", escaped({"\xf4\x8f\xbf\xbf"}));
}

TEST(OutputWriterEscapes, AByteThatEndsASequenceBeginsTheNextCharacter) {
    EXPECT_EQ("\\342\xe2\x82\xac", escaped({"\xe2\xe2\x82\xac"}));
    EXPECT_EQ("\\360\\237\xc3\xa9", escaped({"\xf0\x9f\xc3\xa9"}));
    EXPECT_EQ("\\342\\202\\033", escaped({"\xe2\x82\033"}));
}

TEST(OutputWriterEscapes, AnUnfinishedCharacterIsEscapedWhenFlushed) {
    ScriptedWrite::Reset({});
    {
        OutputWriter writer(1, false, true, ScriptedWrite::Write);
        writer.sputn("a\xe2\x82", 3);
        writer.Flush();
        EXPECT_EQ("a\\342\\202", ScriptedWrite::taken);
        // The rest of the character comes too late: no lead before it.
        writer.sputn("\xac", 1);
        writer.FlushQuietly();
        EXPECT_EQ("a\\342\\202\\254", ScriptedWrite::taken);
        writer.sputn("\xf0\x9f", 2);
    }
    EXPECT_EQ("a\\342\\202\\254\\360\\237", ScriptedWrite::taken);
}

TEST(OutputWriterEscapes, ACharacterAcrossTheBufferDrainStaysWhole) {
    const std::string filler(OutputWriter::BUFFER_SIZE - 1, 'a');
    ScriptedWrite::Reset({});
    {
        // The put area takes the lead as its last byte; the next byte drains
        // it, and the character is finished in the next write.
        OutputWriter writer(1, false, true, ScriptedWrite::Write);
        writer.sputn(filler.data(), static_cast<std::streamsize>(filler.size()));
        writer.sputc('\xe2');
        writer.sputc('\x82');
        EXPECT_EQ(filler, ScriptedWrite::taken);
        writer.sputc('\xac');
    }
    EXPECT_EQ(filler + "\xe2\x82\xac", ScriptedWrite::taken);

    // A block as large as the buffer is written without it.
    std::string block(OutputWriter::BUFFER_SIZE, 'b');
    block.back() = '\xf0';
    EXPECT_EQ(block.substr(0, block.size() - 1) + "\xf0\x9f\x98\x80",
              escaped({block, "\x9f\x98", "\x80"}));
    EXPECT_EQ(block.substr(0, block.size() - 1) + "\\360\\237?", escaped({block, "\x9f?"}));
}

// ---------------------------------------------------------------- well-formed UTF-8

namespace {

// The table of well-formed UTF-8 byte sequences (Unicode, Table 3-7): the
// range of each byte of a character, row by row.
struct WellFormedRow {
    unsigned length;
    unsigned char low[4];
    unsigned char high[4];
};
const WellFormedRow WELL_FORMED[] = {
    {1, {0x00}, {0x7F}},                                     // U+0000..U+007F
    {2, {0xC2, 0x80}, {0xDF, 0xBF}},                         // U+0080..U+07FF
    {3, {0xE0, 0xA0, 0x80}, {0xE0, 0xBF, 0xBF}},             // U+0800..U+0FFF
    {3, {0xE1, 0x80, 0x80}, {0xEC, 0xBF, 0xBF}},             // U+1000..U+CFFF
    {3, {0xED, 0x80, 0x80}, {0xED, 0x9F, 0xBF}},             // U+D000..U+D7FF
    {3, {0xEE, 0x80, 0x80}, {0xEF, 0xBF, 0xBF}},             // U+E000..U+FFFF
    {4, {0xF0, 0x90, 0x80, 0x80}, {0xF0, 0xBF, 0xBF, 0xBF}}, // U+10000..U+3FFFF
    {4, {0xF1, 0x80, 0x80, 0x80}, {0xF3, 0xBF, 0xBF, 0xBF}}, // U+40000..U+FFFFF
    {4, {0xF4, 0x80, 0x80, 0x80}, {0xF4, 0x8F, 0xBF, 0xBF}}, // U+100000..U+10FFFF
};

void appendOctal(std::string& out, unsigned char c) {
    const char text[4] = {'\\', static_cast<char>('0' + c / 64), static_cast<char>('0' + c / 8 % 8),
                          static_cast<char>('0' + c % 8)};
    out.append(text, sizeof text);
}

// What a terminal is to be shown for `input`, from the table alone. At each
// byte: the row whose first range holds it. When the bytes after it fall in
// that row's ranges, the character is shown as it is, unless it is a
// control (C0 but tab and newline, DEL, U+0080..U+009F), whose bytes are
// escaped. Otherwise the byte and those after it that did fall in the
// ranges (the maximal subpart, cut short by a byte or by the end) are
// escaped one by one, and the byte that did not fall in them is looked at
// again as a beginning. A byte that begins no row is escaped alone.
std::string expectedOnATerminal(const std::string& input) {
    std::string out;
    std::size_t at = 0;
    while (at < input.size()) {
        const unsigned char first = static_cast<unsigned char>(input[at]);
        const WellFormedRow* row = nullptr;
        for (const WellFormedRow& candidate : WELL_FORMED)
            if (first >= candidate.low[0] && first <= candidate.high[0])
                row = &candidate;
        std::size_t matched = 1;
        bool shown = false;
        if (row != nullptr) {
            while (matched < row->length && at + matched < input.size()) {
                const unsigned char next = static_cast<unsigned char>(input[at + matched]);
                if (next < row->low[matched] || next > row->high[matched])
                    break;
                ++matched;
            }
            shown = matched == row->length;
            if (shown && row->length == 1)
                shown = !((first < 0x20 && first != '\t' && first != '\n') || first == 0x7F);
            if (shown && row->length == 2)
                shown = !(first == 0xC2 && static_cast<unsigned char>(input[at + 1]) <= 0x9F);
        }
        for (std::size_t k = 0; k < matched; ++k) {
            if (shown)
                out += input[at + k];
            else
                appendOctal(out, static_cast<unsigned char>(input[at + k]));
        }
        at += matched;
    }
    return out;
}

std::string hex(const std::string& bytes) {
    std::string text;
    for (char c : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02X",
                      static_cast<unsigned>(static_cast<unsigned char>(c)));
        text += (text.empty() ? "" : " ") + std::string(digits);
    }
    return text;
}

// A write(2) that takes everything.
std::string captured;
long capture(int, const void* data, std::size_t size) {
    captured.append(static_cast<const char*>(data), size);
    return static_cast<long>(size);
}

// Feeds sequences to escaping writers, each sequence flushed on its own (so
// that nothing carries over to the next), and compares what is written with
// the table's answer.
class TableCheck {
public:
    // `sequence` in one write.
    void Whole(const std::string& sequence) {
        captured.clear();
        alone.sputn(sequence.data(), static_cast<std::streamsize>(sequence.size()));
        alone.Flush();
        Compare(sequence, 0, expectedOnATerminal(sequence));
    }
    // `sequence` in two writes, split before byte `at`. The first piece
    // begins with a newline, so that the line-buffered writer writes it out
    // at once: the second piece is escaped in a write of its own, with only
    // the writer's state between the two.
    void Split(const std::string& sequence, std::size_t at) {
        captured.clear();
        const std::string first = "\n" + sequence.substr(0, at);
        lines.sputn(first.data(), static_cast<std::streamsize>(first.size()));
        lines.sputn(sequence.data() + at, static_cast<std::streamsize>(sequence.size() - at));
        lines.Flush();
        Compare(sequence, at, "\n" + expectedOnATerminal(sequence));
    }
    // How many sequences were shown unchanged.
    std::size_t Unchanged() const { return unchanged; }
    std::size_t Failures() const { return failures; }
    const std::string& Examples() const { return examples; }

private:
    // `split`: where the sequence was split, 0 when it was not.
    void Compare(const std::string& sequence, std::size_t split, const std::string& expected) {
        if (captured == expected) {
            unchanged += expected.size() == sequence.size() ? 1 : 0;
            return;
        }
        if (++failures <= 5)
            examples += hex(sequence) + (split ? " split at " + std::to_string(split) : "") +
                        ": expected \"" + expected + "\", written \"" + captured + "\"\n";
    }

    OutputWriter alone{1, false, true, capture};
    OutputWriter lines{1, true, true, capture};
    std::size_t unchanged = 0;
    std::size_t failures = 0;
    std::string examples;
};

std::string bytes(std::initializer_list<unsigned> values) {
    std::string text;
    for (unsigned value : values)
        text += static_cast<char>(value);
    return text;
}

// Values about the edges of the table's ranges.
const unsigned char EDGES[] = {0x00, 0x0A, 0x1B, 0x41, 0x7F, 0x80, 0x81, 0x8F, 0x90, 0x91,
                               0x9F, 0xA0, 0xBF, 0xC0, 0xC2, 0xE0, 0xF0, 0xF4, 0xF5, 0xFF};

// A fixed sequence of pseudo-random numbers (xorshift32), the same every run.
struct Numbers {
    std::uint32_t state = 2463534242u;
    unsigned Next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
};

} // namespace

TEST(OutputWriterWellFormed, EveryOneByteSequence) {
    TableCheck check;
    for (unsigned a = 0; a < 256; ++a)
        check.Whole(bytes({a}));
    EXPECT_EQ(0u, check.Failures()) << check.Examples();
    // 95 printable characters, tab and newline.
    EXPECT_EQ(97u, check.Unchanged());
}

TEST(OutputWriterWellFormed, EveryTwoByteSequence) {
    TableCheck check;
    for (unsigned a = 0; a < 256; ++a)
        for (unsigned b = 0; b < 256; ++b)
            check.Whole(bytes({a, b}));
    EXPECT_EQ(0u, check.Failures()) << check.Examples();
    // Two of the 97 plain ASCII characters, or U+00A0..U+07FF.
    EXPECT_EQ(97u * 97u + (0x800u - 0xA0u), check.Unchanged());
}

TEST(OutputWriterWellFormed, EveryThreeByteSequenceFromE0ToEF) {
    TableCheck check;
    for (unsigned a = 0xE0; a <= 0xEF; ++a)
        for (unsigned b = 0; b < 256; ++b)
            for (unsigned c = 0; c < 256; ++c)
                check.Whole(bytes({a, b, c}));
    EXPECT_EQ(0u, check.Failures()) << check.Examples();
    // U+0800..U+FFFF but the 2048 surrogates.
    EXPECT_EQ(0x10000u - 0x800u - 0x800u, check.Unchanged());
}

TEST(OutputWriterWellFormed, FourByteSequencesFromF0ToF4) {
    TableCheck check;
    Numbers numbers;
    for (unsigned a = 0xF0; a <= 0xF4; ++a) {
        for (unsigned char b : EDGES)
            for (unsigned char c : EDGES)
                for (unsigned char d : EDGES)
                    check.Whole(bytes({a, b, c, d}));
        // Any bytes, and bytes of the continuation range only.
        for (int i = 0; i < 100000; ++i) {
            const unsigned r = numbers.Next();
            check.Whole(bytes({a, r & 0xFF, (r >> 8) & 0xFF, (r >> 16) & 0xFF}));
        }
        for (int i = 0; i < 100000; ++i) {
            const unsigned r = numbers.Next();
            check.Whole(bytes({a, 0x80 + (r & 0x3F), 0x80 + ((r >> 8) & 0x3F),
                               0x80 + ((r >> 16) & 0x3F)}));
        }
    }
    EXPECT_EQ(0u, check.Failures()) << check.Examples();
    EXPECT_GT(check.Unchanged(), 100000u);
}

TEST(OutputWriterWellFormed, SequencesSplitBetweenTwoWrites) {
    TableCheck check;
    for (unsigned a = 0; a < 256; ++a)
        for (unsigned b = 0; b < 256; ++b)
            check.Split(bytes({a, b}), 1);
    for (unsigned a = 0xE0; a <= 0xEF; ++a)
        for (unsigned b = 0; b < 256; ++b)
            for (unsigned char c : EDGES)
                for (std::size_t at = 1; at < 3; ++at)
                    check.Split(bytes({a, b, c}), at);
    for (unsigned a = 0xF0; a <= 0xF4; ++a)
        for (unsigned char b : EDGES)
            for (unsigned char c : EDGES)
                for (unsigned char d : EDGES)
                    for (std::size_t at = 1; at < 4; ++at)
                        check.Split(bytes({a, b, c, d}), at);
    EXPECT_EQ(0u, check.Failures()) << check.Examples();
}

// ---------------------------------------------------------------- standard error

namespace {

// Runs `child` in a child process whose standard error is `fd`, and returns
// its exit status (the child's own checks) once `parent` has run.
template <typename Child, typename Parent>
int withStandardError(int fd, Child child, Parent parent) {
    pid_t pid = fork();
    if (pid == 0) {
        dup2(fd, STDERR_FILENO);
        _exit(child());
    }
    parent();
    int status = 0;
    if (pid < 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

std::string readAll(int fd) {
    std::string text;
    char chunk[4096];
    ssize_t n;
    while ((n = read(fd, chunk, sizeof chunk)) > 0)
        text.append(chunk, static_cast<std::size_t>(n));
    return text;
}

} // namespace

TEST(StandardError, OnATerminalItIsEscapedAndWrittenAtOnce) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0)
        GTEST_SKIP() << "no pseudo-terminal";
    const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY);
    ASSERT_GE(terminal, 0);
    int release[2];
    ASSERT_EQ(0, pipe(release));
    const std::string expected = "name \\033[31m caf\\351\\2332J \\355\\242\\233 \xc3\xa9";
    std::string shown;
    const int status = withStandardError(
        terminal,
        [&] {
            close(release[1]);
            int result = 0;
            {
                QVS::StandardError errors;
                if (std::cerr.tie() != &std::cout || !(std::cerr.flags() & std::ios_base::unitbuf))
                    result = 2;
                // No line end: the text must reach the terminal all the same.
                std::cerr << "name \033[31m caf\xe9\x9b" "2J \xed\xa2\x9b \xc3\xa9";
                // Held until the parent has read it.
                char byte;
                if (read(release[0], &byte, 1) < 0)
                    result = 3;
            }
            return result;
        },
        [&] {
            close(release[0]);
            // What the terminal shows within a few seconds, so that a text
            // shorter than expected fails instead of waiting for ever.
            char chunk[256];
            pollfd ready = {master, POLLIN, 0};
            while (shown.size() < expected.size() && poll(&ready, 1, 5000) == 1) {
                const ssize_t n = read(master, chunk, sizeof chunk);
                if (n <= 0)
                    break;
                shown.append(chunk, static_cast<std::size_t>(n));
            }
            close(release[1]);
        });
    close(terminal);
    close(master);
    EXPECT_EQ(0, status);
    EXPECT_EQ(expected, shown);
}

TEST(StandardError, ElsewhereStdCerrIsLeftAsItIs) {
    int fds[2];
    ASSERT_EQ(0, pipe(fds));
    std::string written;
    const int status = withStandardError(
        fds[1],
        [&] {
            close(fds[0]);
            close(fds[1]);
            std::streambuf* before = std::cerr.rdbuf();
            int result = 0;
            {
                QVS::StandardError errors;
                if (std::cerr.rdbuf() != before)
                    result = 2;
                std::cerr << "name \033[31m caf\xe9\x9b" "2J\n";
            }
            return result;
        },
        [&] {
            close(fds[1]);
            written = readAll(fds[0]);
            close(fds[0]);
        });
    EXPECT_EQ(0, status);
    EXPECT_EQ("name \033[31m caf\xe9\x9b" "2J\n", written);
}
