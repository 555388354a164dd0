// startup.h - what both programs do before they open anything: standard
// descriptors that were left closed are opened on /dev/null.
#ifndef UTIL_SUPPORT_STARTUP_H
#define UTIL_SUPPORT_STARTUP_H

namespace QVS {

// Opens /dev/null on each of descriptors 0, 1 and 2 that is closed, so that
// no file the program opens later (a report, the management command file)
// can become its standard input, output or error by accident, and have the
// report or its traces written into it. False when /dev/null cannot be
// opened; the program must then stop before it opens anything.
bool OpenClosedStandardDescriptors();

// "PROGRAM: cannot open /dev/null: " and the system's text on descriptor 2
// (if it is open at all), then `status`: what a program returns when
// OpenClosedStandardDescriptors failed.
int StartFailure(const char* program, int status);

// "PROGRAM: out of memory" on standard error, after what standard output
// holds, then `status`: for a program whose work ran out of memory where
// nothing of its own could report it. Allocates nothing.
int OutOfMemory(const char* program, int status);

} // namespace QVS

#endif
