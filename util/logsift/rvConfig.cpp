// rvConfig.cpp - option parsing, usage text, version line and settings dump.
#include "util/logsift/rvConfig.h"

#include "util/logsift/commandLine.h"
#include "util/logsift/logsiftDriver.h"
#include "util/support/qvsApp.h"

#include <cstdlib>
#include <getopt.h>
#include <iostream>
#include <vector>

const char* const DEFAULT_RAV_DIRECTORY = "/var/opt/kestrel/log/qvs/rav/";

namespace {

const char* const USAGE_LINES[] = {
    "Kestrel QVS - Rebuild And Verify Viewer",
    "Usage: logsift [OPTION]... rtf FILENAME",
    "   or: logsift [OPTION]... [NOPTION]... rtfn POOLNAME",
    "   or: logsift [OPTION]... [VOPTION]... vbf FILENAME",
    "   or: logsift [OPTION]... [NOPTION]... [VOPTION]... vbfn POOLNAME",
    "     Dumps specified rebuild/verify files in human readable format.",
    "",
    "Mandatory arguments to long options are mandatory for short options too.",
    "",
    " OPTION:  General options.",
    "      -h, --help                   Displays this help information and exits.",
    "      -V, --verbose=LEVEL          Controls the amount of output.",
    "      -v, --version                Displays version information and exits.",
    "",
    " VOPTION: Verify specific options",
    "      -a, --actions                Display action information.",
    "      -H, --histograms             Display histograms.",
    "      -o, --objects-details        Display objects details.",
    "",
    " NOPTION: Newest specific options",
    "      -P, --path=PATH              Specifies path to rav files.",
    nullptr, // the "Default is" line, built from the current directory
    "",
    "The first program argument is the FILETYPE.  This can be 'rtf', 'rtfn', 'vbf'",
    "or 'vbfn'.",
    "",
    "For 'rtf' the FILENAME is a rebuild log file.  Logsift will convert ZIDs",
    "in the FILENAME into the file's name.  Logsift will also display any messages",
    "that occurred during rebuild.",
    "",
    "For 'rtfn', logsift will use the 'newest' rebuild log in PATH for the",
    "specified POOLNAME.",
    "",
    "For 'vbf' the FILENAME is a verify report file.  Logsift will convert this",
    "into a human readable form.",
    "",
    "For 'vbfn', logsift will use the 'newest' verify report in PATH for the",
    "specified POOLNAME.",
    "",
};

// In this order: the short options "hvaHoP:V:" and the long table are made
// from it. Built on first use, inside main: nothing allocates before it.
const std::vector<CommandLine::Option>& options() {
    static const std::vector<CommandLine::Option> rows = {
        {"help", 'h', no_argument, nullptr, nullptr},
        {"version", 'v', no_argument, nullptr, nullptr},
        {"actions", 'a', no_argument, nullptr, nullptr},
        {"histograms", 'H', no_argument, nullptr, nullptr},
        {"objects-details", 'o', no_argument, nullptr, nullptr},
        {"path", 'P', required_argument, nullptr, nullptr},
        {"verbose", 'V', required_argument, nullptr, nullptr},
    };
    return rows;
}

} // namespace

std::string RavDirectory(const std::string& path) {
    if (path.empty() || path.back() != '/')
        return path + "/";
    return path;
}

RVConfig::RVConfig(const std::string& programName, const std::string& version)
    : verbose(6), fileName(""), poolName(""), serverName(""), listActions(false),
      listObjectDetails(false), listHistograms(false), verify(false), rebuild(false),
      newest(false), directory(DEFAULT_RAV_DIRECTORY), programName(programName),
      version(version) {
    // The effective default is 4; the initialiser's 6 is overridden on purpose.
    verbose = 4;
}

RVConfig::~RVConfig() = default;

void RVConfig::TryHelp() {
    std::cerr << "Try '" << programName << " --help' for more information." << std::endl;
}

void RVConfig::Usage(std::ostream& out) {
    out.setf(std::ios_base::showbase);
    for (const char* line : USAGE_LINES) {
        if (line == nullptr)
            out << std::string(37, ' ') << "Default is \"" << directory << "\"" << std::endl;
        else
            out << line << std::endl;
    }
}

int RVConfig::ProcessCommandLine(std::ostream& out, int argc, char** argv) {
    const int result = CommandLine::Parse(options(), argc, argv, [this](int c, const char* value) {
        switch (c) {
        case 'h':
            Usage(std::cout);
            return 1;
        case 'v':
            std::cout << programName << " (QVS) " << version << "\n"
                      << CommandLine::RIGHTS_NOTICE << "\n";
            std::cout.flush();
            return 1;
        case 'a':
            listActions = true;
            break;
        case 'o':
            listObjectDetails = true;
            break;
        case 'H':
            listHistograms = true;
            break;
        case 'P':
            directory = RavDirectory(value);
            break;
        case 'V': {
            char* end = nullptr;
            long level = std::strtol(value, &end, 0);
            if (*end != '\0') {
                std::cerr << programName << ": invalid LEVEL format '" << value << "'"
                          << std::endl;
                return 1;
            }
            if (level < 0 || static_cast<unsigned>(level) == 0) {
                std::cerr << programName << ": illegal LEVEL value '" << value << "'"
                          << std::endl;
                return 1;
            }
            verbose = static_cast<unsigned>(level);
            TheApp.SetLevel(verbose);
            break;
        }
        case ':':
        case '?':
            TryHelp();
            return 2;
        case 0:
            break;
        default:
            std::cerr << programName << ": option '-" << static_cast<char>(optopt)
                      << "' is invalid." << std::endl;
            TryHelp();
            return 2;
        }
        return CommandLine::GO_ON;
    });
    if (result != CommandLine::GO_ON)
        return result;

    int index = optind;
    if (index >= argc)
        return UsageError("missing FILETYPE argument.");
    const char* word = argv[index];
    if (const LogsiftDriver::FileType* type = LogsiftDriver::FindFileType(word)) {
        rebuild = type->rebuildLog;
        verify = !type->rebuildLog;
        newest = type->newest;
        return newest ? parse_vbfn(argc, argv, index) : parse_FILENAME(argc, argv, index);
    }
    // Deliberately on the standard output, unlike every other usage error.
    out << "FILETYPE " << word << " is not legal.\n";
    out.flush();
    TryHelp();
    return 2;
}

int RVConfig::UsageError(const std::string& message) {
    std::cerr << programName << ": " << message << std::endl;
    TryHelp();
    return 2;
}

int RVConfig::parse_FILENAME(int argc, char** argv, int index) {
    if (index + 1 >= argc)
        return UsageError("missing FILENAME argument.");
    fileName = argv[index + 1];
    if (index + 2 == argc)
        return 0;
    return UsageError(std::string("unexpected argument - ") + argv[index + 2] + ".");
}

int RVConfig::parse_rtf(int argc, char** argv, int index) { return parse_FILENAME(argc, argv, index); }

int RVConfig::parse_vbf(int argc, char** argv, int index) { return parse_FILENAME(argc, argv, index); }

int RVConfig::parse_vbfn(int argc, char** argv, int index) {
    if (index + 1 >= argc)
        return UsageError("missing POOLNAME argument.");
    poolName = argv[index + 1];
    // An optional server name may follow; the usage text does not mention it.
    if (index + 2 < argc)
        serverName = argv[index + 2];
    if (index + 3 >= argc)
        return 0;
    return UsageError(std::string("unexpected argument - ") + argv[index + 3] + ".");
}

std::ostream& operator<<(std::ostream& os, const RVConfig& cfg) {
    os << "    FileName            - " << cfg.fileName << std::endl;
    os << "    PoolName            - " << cfg.poolName << std::endl;
    os << "    Servername          - " << cfg.serverName << std::endl;
    os << "    Newest              - " << cfg.newest << std::endl;
    os << "    Verify              - " << cfg.verify << std::endl;
    os << "    Rebuild             - " << cfg.rebuild << std::endl;
    os << "    Verbose             - " << std::dec << cfg.verbose << std::endl;
    os << "    Directory           - " << cfg.directory << std::endl;
    os << "    List Actions        - " << cfg.listActions << std::endl;
    os << "    List Object Details - " << cfg.listObjectDetails << std::endl;
    os << "    List Histograms     - " << cfg.listHistograms << std::endl;
    return os;
}
