// logsiftJsonMain.cpp - entry of logsift-json: reads the command line and
// writes one verify report or rebuild log as one JSON document.
#include "util/logsift/logsiftDriver.h"
#include "util/logsift/logsiftJson.h"
#include "util/logsift/rvConfig.h"
#include "util/support/startup.h"

#include <getopt.h>
#include <iostream>
#include <string>

namespace {

using LogsiftJson::PROGRAM;
using LogsiftJson::VERSION;

const char* const USAGE =
    "Usage: logsift-json [OPTION]... vbf FILENAME\n"
    "   or: logsift-json [OPTION]... vbfn [POOLNAME [SERVER]]\n"
    "   or: logsift-json [OPTION]... rtf FILENAME\n"
    "   or: logsift-json [OPTION]... rtfn [POOLNAME [SERVER]]\n"
    "Writes one verify report or rebuild log as one JSON document on standard output;\n"
    "vbfn and rtfn without a pool write every pool's newest one, keyed by pool.\n"
    "\n"
    "  -P, --path=PATH      directory of the RAV files for vbfn and rtfn\n"
    "                       (default /var/opt/kestrel/log/qvs/rav/)\n"
    "      --no-lookup      do not ask the storage system for the names of a\n"
    "                       rebuild log's objects\n"
    "      --summary        only the counts and the verdict, no rows\n"
    "  -h, --help           display this help and exit\n"
    "  -v, --version        display version information and exit\n"
    "\n"
    "Exit status: 0 the file was read whole; 1 a command-line error; 2 the file\n"
    "could not be opened, read or validated, a walk could not be completed, an\n"
    "action item could not be read, names could not be asked, or memory ran out\n"
    "(the document ends with an \"error\" object; for every pool, a pool's\n"
    "document or the whole one has it); 4 is added when a verify report says\n"
    "errors were found.\n";

const struct option LONG_OPTIONS[] = {
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'v'},
    {"path", required_argument, nullptr, 'P'},
    {"no-lookup", no_argument, nullptr, 'n'},
    {"summary", no_argument, nullptr, 's'},
    {nullptr, 0, nullptr, 0},
};

int usageError(const std::string& message) {
    if (!message.empty())
        std::cerr << PROGRAM << ": " << message << "\n";
    std::cerr << "Try '" << PROGRAM << " --help' for more information." << std::endl;
    return LogsiftJson::EXIT_COMMAND_LINE;
}

int document(int argc, char** argv) {
    LogsiftJson::Options options;
    options.directory = DEFAULT_RAV_DIRECTORY;
    opterr = 1;
    int c;
    while ((c = getopt_long(argc, argv, "hvP:", LONG_OPTIONS, nullptr)) != -1) {
        switch (c) {
        case 'h':
            std::cout << USAGE;
            return 0;
        case 'v':
            std::cout << PROGRAM << " (QVS) " << VERSION << "\n";
            return 0;
        case 'P':
            // An empty name would be read as the root directory.
            if (*optarg == '\0')
                return usageError("the directory name of -P is empty");
            options.directory = RavDirectory(optarg);
            break;
        case 'n':
            options.lookup = false;
            break;
        case 's':
            options.summary = true;
            break;
        default:
            return usageError("");
        }
    }
    if (optind >= argc)
        return usageError("missing FILETYPE argument.");
    const LogsiftDriver::FileType* type = LogsiftDriver::FindFileType(argv[optind]);
    if (type == nullptr)
        return usageError(std::string("FILETYPE ") + argv[optind] + " is not legal.");
    // A pool may be followed by the server whose command file is asked.
    const int operands = argc - optind - 1;
    const int most = type->newest ? 2 : 1;
    // vbfn and rtfn without a pool: every pool.
    if (operands < 1 && !type->newest)
        return usageError(std::string("missing ") + type->operand + " argument.");
    if (operands > most)
        return usageError(std::string("unexpected argument - ") + argv[optind + most + 1] + ".");
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
