// outputWriter_test.cpp - the writer of standard output: whole blocks through
// short writes and interruptions, the first error kept and thrown once, line
// buffering, and control characters escaped for a terminal.
#include "util/support/outputWriter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <ostream>
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

TEST(OutputWriterEscapes, ALoneC2LeadIsWrittenAsItIs) {
    EXPECT_EQ("a\xc2\n", escaped({"a\xc2\n"}));
    EXPECT_EQ("a\xc2", escaped({"a\xc2"}));
    EXPECT_EQ("a\xc2\\033", escaped({"a\xc2\033"}));
}
