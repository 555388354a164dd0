// startup_test.cpp - the start and the end of every program's run: what is
// not taken in by the program's own work ends it with its failure status and
// a line on standard error, never with a signal.
#include "util/support/startup.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>

namespace {

int throwsLogicError(int, char**) { throw std::logic_error("container closed twice"); }
int throwsBadAlloc(int, char**) { throw std::bad_alloc(); }
int succeeds(int, char**) { return 4; }

char program[] = "prog";
char* arguments[] = {program, nullptr};

} // namespace

TEST(RunProgram, AProgrammingErrorEndsWithTheFailureStatusNotASignal) {
    EXPECT_EXIT(std::exit(QVS::RunProgram("prog", 2, throwsLogicError, 1, arguments)),
                ::testing::ExitedWithCode(2), "^prog: internal error: container closed twice\n$");
}

TEST(RunProgram, ALackOfMemoryIsSaid) {
    EXPECT_EXIT(std::exit(QVS::RunProgram("prog", 2, throwsBadAlloc, 1, arguments)),
                ::testing::ExitedWithCode(2), "^prog: out of memory\n$");
}

TEST(RunProgram, TheWorksStatusIsTheProgramsOwn) {
    EXPECT_EXIT(std::exit(QVS::RunProgram("prog", 2, succeeds, 1, arguments)),
                ::testing::ExitedWithCode(4), "^$");
}
