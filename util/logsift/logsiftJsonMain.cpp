// logsiftJsonMain.cpp - entry of logsift-json: reads the command line and
// writes one verify report or rebuild log as one JSON document.
#include "util/logsift/commandLine.h"
#include "util/logsift/logsiftDriver.h"
#include "util/logsift/logsiftJson.h"
#include "util/support/startup.h"

#include <getopt.h>
#include <iostream>
#include <string>

namespace {

using LogsiftJson::PROGRAM;

// Codes of the options that have a long name alone.
enum : int { NO_LOOKUP = 256, SUMMARY };

const CommandLine::Program& program() {
    static const CommandLine::Program p{
        PROGRAM,
        "Usage: logsift-json [OPTION]... vbf FILENAME\n"
        "   or: logsift-json [OPTION]... vbfn [POOLNAME [SERVER]]\n"
        "   or: logsift-json [OPTION]... rtf FILENAME\n"
        "   or: logsift-json [OPTION]... rtfn [POOLNAME [SERVER]]\n",
        "Writes one verify report or rebuild log as one JSON document on standard output;\n"
        "vbfn and rtfn without a pool write every pool's newest one, keyed by pool.\n",
        {
            {"no-lookup", NO_LOOKUP, no_argument, nullptr,
             "do not ask the storage system for the names of a\nrebuild log's objects"},
            {"summary", SUMMARY, no_argument, nullptr, "only the counts and the verdict, no rows"},
        },
        "Exit status: 0 the file was read whole; 1 a command-line error; 2 the file\n"
        "could not be opened, read or validated, a walk could not be completed, an\n"
        "action item could not be read, names could not be asked, or memory ran out\n"
        "(the document ends with an \"error\" object; for every pool, a pool's\n"
        "document or the whole one has it); 4 is added when a verify report says\n"
        "errors were found.\n"};
    return p;
}

int document(int argc, char** argv) {
    LogsiftJson::Options options;
    CommandLine::Common common;
    const int parsed = CommandLine::ParseCompanion(
        program(), argc, argv, common, [&options](int code, const char*) {
            switch (code) {
            case NO_LOOKUP:
                options.lookup = false;
                return CommandLine::GO_ON;
            case SUMMARY:
                options.summary = true;
                return CommandLine::GO_ON;
            default:
                return CommandLine::UsageError(PROGRAM, "");
            }
        });
    if (parsed != CommandLine::GO_ON)
        return parsed;
    options.directory = common.directory;
    if (optind >= argc)
        return CommandLine::UsageError(PROGRAM, "missing FILETYPE argument.");
    const LogsiftDriver::FileType* type = LogsiftDriver::FindFileType(argv[optind]);
    if (type == nullptr)
        return CommandLine::UsageError(PROGRAM,
                                       std::string("FILETYPE ") + argv[optind] + " is not legal.");
    // A pool may be followed by the server whose command file is asked.
    const int operands = argc - optind - 1;
    const int most = type->newest ? 2 : 1;
    // vbfn and rtfn without a pool: every pool.
    if (operands < 1 && !type->newest)
        return CommandLine::UsageError(PROGRAM,
                                       std::string("missing ") + type->operand + " argument.");
    if (operands > most)
        return CommandLine::UsageError(
            PROGRAM, std::string("unexpected argument - ") + argv[optind + most + 1] + ".");
    if (operands == 2)
        options.server = argv[optind + 2];
    const std::string operand = operands > 0 ? argv[optind + 1] : "";
    return LogsiftJson::Document(*type, operands > 0 ? &operand : nullptr, options, std::cout);
}

} // namespace

// A document closes itself whole when memory runs out while it is made (the
// reserve lets it); what comes before one is reported as out of memory.
int main(int argc, char** argv) {
    return QVS::RunProgram(PROGRAM, LogsiftJson::EXIT_NOT_READ, document, argc, argv);
}
