// logsiftJson.h - the documents of logsift-json: one verify report or one
// rebuild log as one JSON document, read by the same readers and walks as
// logsift's text, through their JSON printers.
#ifndef UTIL_LOGSIFT_LOGSIFTJSON_H
#define UTIL_LOGSIFT_LOGSIFTJSON_H

#include <ostream>
#include <string>

namespace LogsiftDriver {
struct FileType;
}

namespace LogsiftJson {

// The program's name, as --version and every document give it (the
// version is the package's, CommandLine::VERSION).
extern const char* const PROGRAM;

// The version of the document's schema (doc/logsift-json.schema.json). A
// member may be added within a major version; none is renamed or removed.
extern const char* const SCHEMA_VERSION;

// Exit statuses: 0 read whole; 1 command-line error; 2 the file could not
// be opened, read or validated, or a walk could not be completed (the
// document then ends with an "error" object); 4 added when a verify report
// says errors were found.
constexpr int EXIT_COMMAND_LINE = 1;
constexpr int EXIT_NOT_READ = 2;
constexpr int EXIT_ERRORS_FOUND = 4;

struct Options {
    bool lookup = true;       // ask the storage system for the TOD items' names
    std::string server;       // the server of the management command file
    std::string directory;    // the RAV directory of the newest-file search
    unsigned debugMask = 4;   // the readers' mask (load errors are kept)
    bool summary = false;     // counts and the verdict only, no rows
};

// Each writes one document to `out` and returns the exit status.
int VerifyReport(const std::string& path, const Options& options, std::ostream& out);
int RebuildLog(const std::string& path, const Options& options, std::ostream& out);
// The document of a command line's file type and operand: the named file,
// or the pool's newest file (a document whose error says there is none),
// or, for vbfn and rtfn without a pool (no operand: null; an empty operand
// is the pool whose name is empty), every pool's newest file, each the
// document that pool alone would give.
int Document(const LogsiftDriver::FileType& type, const std::string* operand,
             const Options& options, std::ostream& out);

// Writes the JSON Schema of the documents (doc/logsift-json.schema.json),
// made from the same field tables as the documents.
void WriteSchema(std::ostream& out);

} // namespace LogsiftJson

#endif
