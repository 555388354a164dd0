// progress.cpp - the count on standard error.
#include "util/support/progress.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace QVS {

namespace {

// One write of the whole text; a terminal that takes it in part or not at
// all loses a progress line, nothing else.
void writeAll(const char* text, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::write(STDERR_FILENO, text + done, size - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        done += static_cast<std::size_t>(n);
    }
}

} // namespace

namespace {

// Whether descriptors 1 and 2 are the same terminal, reached by whatever
// path: the same device, or both the controlling terminal (/dev/tty is
// a device of its own that stands for it).
bool sameTerminal() {
    struct stat out, err;
    if (fstat(STDOUT_FILENO, &out) != 0 || fstat(STDERR_FILENO, &err) != 0)
        return true;
    if (out.st_rdev == err.st_rdev)
        return true;
    return tcgetsid(STDOUT_FILENO) != -1 && tcgetsid(STDERR_FILENO) != -1;
}

} // namespace

bool Progress::Wanted() {
    if (!isatty(STDERR_FILENO))
        return false;
    return !isatty(STDOUT_FILENO) || !sameTerminal();
}

Progress::Progress(const char* what, unsigned long total, const char* noun)
    : what(what), total(total), noun(noun) {
    Show(0);
}

Progress::~Progress() {
    // Blanks over the longest line shown, and the cursor back at its start,
    // written from a buffer of its own: a destructor that may run while a
    // lack of memory unwinds allocates nothing.
    static const char BLANKS[] = "                                ";
    for (std::size_t left = longest; left > 0;) {
        const std::size_t n = std::min(left, sizeof BLANKS - 1);
        writeAll(BLANKS, n);
        left -= n;
    }
    if (longest > 0)
        writeAll("\r", 1);
}

unsigned long Progress::Permille(unsigned long done) const {
    return total == 0 ? 1000 : static_cast<unsigned long>(std::min(done, total) * 1000.0 / total);
}

void Progress::Done(unsigned long done) {
    if (Permille(done) != shownPermille || done == total)
        Show(done);
}

void Progress::Show(unsigned long done) {
    shownPermille = Permille(done);
    // The cursor goes back to the line's start after the text, so that a
    // message written meanwhile begins at the start of the line.
    const std::string line =
        what + " " + std::to_string(done) + " of " + std::to_string(total) + " " + noun;
    longest = std::max(longest, line.size());
    const std::string shown = line + "\r";
    writeAll(shown.data(), shown.size());
}

} // namespace QVS
