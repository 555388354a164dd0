// commandLine.cpp - one getopt loop for every program, and the companions'
// common options.
#include "util/logsift/commandLine.h"

#include "util/logsift/rvConfig.h"

#include <cstring>
#include <getopt.h>
#include <iostream>

namespace CommandLine {

const char* const VERSION = "1.00";
const char* const RIGHTS_NOTICE = "Copyright (C) 2026 the logsift authors. All rights reserved.";

namespace {

// The column where an option's help begins.
constexpr std::size_t HELP_COLUMN = 23;

enum CommonCode { PATH = 'P', HELP = 'h', VERSION_CODE = 'v' };

const std::vector<Option>& commonRows() {
    static const std::vector<Option> rows = {
        {"path", PATH, required_argument, "PATH", nullptr}, // its help names the default
        {"help", HELP, no_argument, nullptr, "display this help and exit"},
        {"version", VERSION_CODE, no_argument, nullptr, "display version information and exit"},
    };
    return rows;
}

std::string pathHelp() {
    return std::string("directory of the RAV files\n(default ") + DEFAULT_RAV_DIRECTORY + ")";
}

void writeOption(std::ostream& out, const Option& option, const std::string& help) {
    std::string left = "  ";
    if (option.code > 0 && option.code < 256)
        left += std::string("-") + static_cast<char>(option.code) + ", ";
    else
        left += "    ";
    left += std::string("--") + option.longName;
    if (option.value != nullptr) {
        if (option.argument == optional_argument)
            left += std::string("[=") + option.value + "]";
        else
            left += std::string("=") + option.value;
    }
    left += left.size() + 1 < HELP_COLUMN ? std::string(HELP_COLUMN - left.size(), ' ') : "\n" + std::string(HELP_COLUMN, ' ');
    out << left;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = help.find('\n', start);
        out << help.substr(start, end == std::string::npos ? std::string::npos : end - start)
            << "\n";
        if (end == std::string::npos)
            break;
        out << std::string(HELP_COLUMN, ' ');
        start = end + 1;
    }
}

} // namespace

int Parse(const std::vector<Option>& rows, int argc, char** argv,
          const std::function<int(int code, const char* value)>& handle) {
    std::string shortOptions;
    std::vector<struct option> longOptions;
    for (const Option& row : rows) {
        if (row.code > 0 && row.code < 256) {
            shortOptions += static_cast<char>(row.code);
            if (row.argument == required_argument)
                shortOptions += ':';
            else if (row.argument == optional_argument)
                shortOptions += "::";
        }
        longOptions.push_back({row.longName, row.argument, nullptr, row.code});
    }
    longOptions.push_back({nullptr, 0, nullptr, 0});
    optind = 0; // a full rescan, so a command line can be read more than once per process
    opterr = 1;
    int c;
    while ((c = getopt_long(argc, argv, shortOptions.c_str(), longOptions.data(), nullptr)) !=
           -1) {
        const int result = handle(c, optarg);
        if (result != GO_ON)
            return result;
    }
    return GO_ON;
}

int UsageError(const char* program, const std::string& message) {
    if (!message.empty())
        std::cerr << program << ": " << message << "\n";
    std::cerr << "Try '" << program << " --help' for more information." << std::endl;
    return EXIT_COMMAND_LINE;
}

void WriteHelp(std::ostream& out, const Program& program) {
    out << program.usage << program.description << "\n";
    std::vector<Option> rows = commonRows();
    writeOption(out, rows[0], pathHelp());
    for (const Option& option : program.options)
        if (option.help != nullptr)
            writeOption(out, option, option.help);
    for (std::size_t i = 1; i < rows.size(); ++i)
        writeOption(out, rows[i], rows[i].help);
    out << "\n" << program.epilogue;
}

int ParseCompanion(const Program& program, int argc, char** argv, Common& common,
                   const std::function<int(int code, const char* value)>& own) {
    common.directory = DEFAULT_RAV_DIRECTORY;
    std::vector<Option> rows = commonRows();
    rows.insert(rows.end(), program.options.begin(), program.options.end());
    return Parse(rows, argc, argv, [&](int code, const char* value) {
        switch (code) {
        case HELP:
            WriteHelp(std::cout, program);
            return 0;
        case VERSION_CODE:
            std::cout << program.name << " (QVS) " << VERSION << "\n";
            return 0;
        case PATH:
            // An empty name would be read as the root directory.
            if (*value == '\0')
                return UsageError(program.name, "the directory name of -P is empty");
            common.directory = RavDirectory(value);
            return GO_ON;
        case '?':
        case ':':
            return UsageError(program.name, "");
        default:
            return own(code, value);
        }
    });
}

} // namespace CommandLine
