// commandLine.h - the command lines of the three programs: each program's
// options are one table of rows, read by one getopt loop; the companions
// share the rows of -P, -h and -v, their help texts and the version.
#ifndef UTIL_LOGSIFT_COMMANDLINE_H
#define UTIL_LOGSIFT_COMMANDLINE_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace CommandLine {

// The package's version, which every program's --version shows.
extern const char* const VERSION;
// The line after the version.
extern const char* const RIGHTS_NOTICE;

// One option: its long name, its code (the short letter, or a number above
// 255 for an option with a long name alone), whether it takes a value
// (getopt's no_argument, required_argument or optional_argument), the
// value's name and the help text (null: left out of the help made from the
// rows; a help text of several lines has them apart by '\n').
struct Option {
    const char* longName;
    int code;
    int argument;
    const char* value;
    const char* help;
};

// What a handler returns to go on with the next option.
constexpr int GO_ON = -1;

// Reads the options of argv with getopt_long, the short options and the
// long table made from `rows` in their order, and hands each option met to
// `handle` with its value (null when it has none); getopt's '?' and ':' go
// to it too. A handler's result other than GO_ON ends the reading and is
// returned; GO_ON is returned when the options are used up (optind is then
// the first operand).
int Parse(const std::vector<Option>& rows, int argc, char** argv,
          const std::function<int(int code, const char* value)>& handle);

// A companion program: its name, its usage lines ("Usage: ..." and "   or:
// ..."), what it does, its own options, and the text after them.
struct Program {
    const char* name;
    const char* usage;
    const char* description;
    std::vector<Option> options;
    const char* epilogue;
};

// The companions' exit status of a command-line error.
constexpr int EXIT_COMMAND_LINE = 1;

// What the companions' common options leave.
struct Common {
    std::string directory; // -P, ending in '/'; the default RAV directory unless given
};

// Reads a companion's command line: -P/--path (not empty: that would read
// the root directory), -h/--help (the help made from the rows) and
// -v/--version, then the program's own options through `own`. GO_ON when
// the operands are next (from optind), else the exit status (0 after the
// help or the version, 1 after a usage error, which is said with the
// try-help line).
int ParseCompanion(const Program& program, int argc, char** argv, Common& common,
                   const std::function<int(int code, const char* value)>& own);

// "PROGRAM: MESSAGE" and the try-help line on standard error; returns 1.
int UsageError(const char* program, const std::string& message);

// The help of a companion: its usage, what it does, every option from its
// rows and the common ones, and its epilogue.
void WriteHelp(std::ostream& out, const Program& program);

} // namespace CommandLine

#endif
