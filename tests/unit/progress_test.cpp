// progress_test.cpp - the count on standard error: rewritten at most a
// thousand times however long the work, its last count always shown, and
// the line cleared at the end.
#include "util/support/progress.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <string>
#include <unistd.h>

#include "tests/unit/allocations_testutil.h"

namespace {

// Standard error into a pipe for one test's span.
class CapturedStderr {
public:
    CapturedStderr() {
        EXPECT_EQ(pipe(fds), 0);
        fcntl(fds[0], F_SETFL, O_NONBLOCK);
        fcntl(fds[1], F_SETPIPE_SZ, 1 << 20);
        saved = dup(STDERR_FILENO);
        dup2(fds[1], STDERR_FILENO);
    }
    ~CapturedStderr() {
        dup2(saved, STDERR_FILENO);
        close(saved);
        close(fds[0]);
        close(fds[1]);
    }
    std::string Text() {
        std::string text;
        char block[4096];
        ssize_t n;
        while ((n = read(fds[0], block, sizeof block)) > 0)
            text.append(block, static_cast<std::size_t>(n));
        return text;
    }

private:
    int fds[2];
    int saved;
};

std::size_t count(const std::string& text, const std::string& piece) {
    std::size_t found = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        ++found;
    return found;
}

TEST(Progress, LongWorkIsShownAtMostAThousandTimes) {
    CapturedStderr err;
    {
        QVS::Progress progress("looked up", 100000, "names");
        for (unsigned long done = 1; done <= 100000; ++done)
            progress.Done(done);
    }
    const std::string text = err.Text();
    EXPECT_LE(count(text, "looked up"), 1001u);
    EXPECT_GE(count(text, "looked up"), 1000u);
    EXPECT_NE(text.find("looked up 0 of 100000 names\r"), std::string::npos);
    EXPECT_NE(text.find("looked up 100000 of 100000 names\r"), std::string::npos);
    // Blanks over the longest line, and the cursor at the line's start.
    const std::string clear = std::string(std::string("looked up 100000 of 100000 names").size(), ' ') + "\r";
    ASSERT_GE(text.size(), clear.size());
    EXPECT_EQ(text.substr(text.size() - clear.size()), clear);
}

TEST(Progress, ShortWorkShowsEveryStep) {
    CapturedStderr err;
    {
        QVS::Progress progress("looked up", 3, "names");
        for (unsigned long done = 1; done <= 3; ++done)
            progress.Done(done);
    }
    EXPECT_EQ(err.Text(), "looked up 0 of 3 names\rlooked up 1 of 3 names\rlooked up 2 of 3 names\r"
                          "looked up 3 of 3 names\r                      \r");
}

TEST(Progress, NothingToDoIsShownAndCleared) {
    CapturedStderr err;
    { QVS::Progress progress("looked up", 0, "names"); }
    EXPECT_EQ(err.Text(), "looked up 0 of 0 names\r                      \r");
}

TEST(Progress, NotWantedWhenStandardErrorIsNoTerminal) {
    CapturedStderr err;
    EXPECT_FALSE(QVS::Progress::Wanted());
}

} // namespace

// The line is cleared without an allocation: the destructor may run while a
// lack of memory unwinds, where an allocation that fails ends the program.
TEST(Progress, ClearingAllocatesNothing) {
    CapturedStderr captured;
    {
        QVS::Progress progress("looked up", 123456789, "names of a rather long description");
        progress.Done(123456789);
        counting = true;
        allocations = 0;
    }
    counting = false;
    EXPECT_EQ(allocations, 0);
    const std::string text = captured.Text();
    EXPECT_NE(text.find(std::string(67, ' ') + "\r"), std::string::npos) << text;
}
