// startup.cpp - the standard descriptors at start-up.
#include "util/support/startup.h"

#include "util/support/memoryReserve.h"
#include "util/support/outputWriter.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace QVS {

bool OpenClosedStandardDescriptors() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (fcntl(fd, F_GETFD) != -1 || errno != EBADF)
            continue;
        // The lowest free descriptor is this one: those below it are open.
        int opened;
        do
            opened = open("/dev/null", O_RDWR | O_NOCTTY);
        while (opened == -1 && errno == EINTR);
        if (opened == -1)
            return false;
        if (opened != fd) {
            close(opened);
            return false;
        }
    }
    return true;
}

int StartFailure(const char* program, int status) {
    const std::string message =
        std::string(program) + ": cannot open /dev/null: " + std::strerror(errno) + "\n";
    // Nothing more can be done when standard error is closed as well.
    if (write(STDERR_FILENO, message.data(), message.size()) < 0) {
    }
    return status;
}

int OutOfMemory(const char* program, int status) {
    FlushStandardOutputQuietly();
    const char* const parts[] = {program, ": out of memory\n"};
    for (const char* part : parts)
        if (write(STDERR_FILENO, part, std::strlen(part)) < 0)
            break;
    return status;
}

int InternalError(const char* program, const char* what, int status) {
    FlushStandardOutputQuietly();
    const char* const parts[] = {program, ": internal error: ", what, "\n"};
    for (const char* part : parts)
        if (write(STDERR_FILENO, part, std::strlen(part)) < 0)
            break;
    return status;
}

int RunProgram(const char* program, int failureStatus, int (*work)(int, char**), int argc,
               char** argv) {
    if (!OpenClosedStandardDescriptors())
        return StartFailure(program, failureStatus);
    // Without the reserve even a throw could not be made: said plainly
    // and ended here, rather than with a signal later.
    if (!MemoryReserve::Install())
        return OutOfMemory(program, failureStatus);
    try {
        return RunWithStandardOutput(program, failureStatus, work, argc, argv);
    } catch (const std::bad_alloc&) {
        return OutOfMemory(program, failureStatus);
    } catch (const std::exception& e) {
        // A programming error: said, and the program ends as after any
        // failure, never with a signal.
        return InternalError(program, e.what(), failureStatus);
    }
}

} // namespace QVS
