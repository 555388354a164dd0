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

// "PROGRAM: internal error: WHAT" on standard error, after what standard
// output holds, then `status`: for an exception that is no lack of memory
// and that nothing of the program's own took in (a programming error).
// Allocates nothing.
int InternalError(const char* program, const char* what, int status);

// A program's whole run, the same for every program of the package: the
// closed standard descriptors opened (StartFailure when that fails), the
// memory reserve installed (memoryReserve.h: it lets a lack of memory be
// thrown and reported, and a JSON document be closed whole), `work` run
// with standard output through its writer (RunWithStandardOutput), and a
// lack of memory anywhere reported by OutOfMemory, any other exception by
// InternalError. `failureStatus` is the status of each failure.
int RunProgram(const char* program, int failureStatus, int (*work)(int, char**), int argc,
               char** argv);

} // namespace QVS

#endif
