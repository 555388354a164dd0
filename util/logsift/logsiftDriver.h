// logsiftDriver.h - what both programs do before a printer is at work: tell
// the file types apart, find the file (a pool's newest one, or the one
// named), open it and walk it. Each program says, through a Reading, how it
// shows the walk and each way it can fail; the walk itself is here, once.
#ifndef UTIL_LOGSIFT_LOGSIFTDRIVER_H
#define UTIL_LOGSIFT_LOGSIFTDRIVER_H

#include "util/support/inputFile.h"

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class RebuildFile;
class VerifyFile;

namespace LogsiftDriver {

// The first program argument: which kind of file, and whether the operand
// names the file or a pool whose newest file is read.
struct FileType {
    const char* word;
    bool rebuildLog; // else a verify report
    bool newest;
    const char* operand; // its name in the usage messages
};

// The four words, or null for any other.
const FileType* FindFileType(std::string_view word);

// The file of one run.
struct Source {
    std::string path;      // empty when a search found nothing
    std::string pool;      // set when searched for: the pool as its file spells it
    std::string directory; // likewise
    bool searched = false; // a search of the RAV directory gave the path
};

// The named file, or the pool's newest file of the type in `directory`.
Source Locate(const FileType& type, const std::string& operand, const std::string& directory);

// One pool of the RAV directory: its name as its newest file gives it, and
// the newest verify report and rebuild log the search finds for it (empty
// where it has none).
struct PoolFiles {
    std::string name;       // as the report spells it, or the log when there is none
    std::string report;
    std::string log;
    std::string reportName; // the pool as each file spells it
    std::string logName;
};

// Every pool with a report or a log in `directory`, in the byte order of
// their names, from one reading of the directory: the same files as the
// newest-file search gives pool by pool. Names that differ only in case are
// one pool, as the search takes them. 0, or the errno that stopped the
// reading (what was read before it is kept).
int ScanPools(const std::string& directory, std::vector<PoolFiles>& pools);

// What tells pools apart: the name as the search compares it (in upper
// case, so names that differ only in case are one pool).
std::string PoolKey(const std::string& name);

// Opens the file of `source` as the companion programs do (util/support/
// inputFile.h): a file that a search found only when it is a regular file,
// a file named on the command line when it is one or a stream. False and
// `failure` filled when it cannot be read.
bool OpenSource(const Source& source, QVS::InputFile& file, QVS::InputFailure& failure);
// The status a failed opening stands for: the errno's, or a bad parameter
// for a file of a kind that is not read.
unsigned InputStatus(const QVS::InputFailure& failure);
// What it says: "cannot open: " and the errno's text, or the kind's text.
std::string InputText(const QVS::InputFailure& failure);

// The status a failure to open a file stands for: the reader's own status,
// out of memory, or else a bad parameter.
unsigned FailureStatus(const std::exception& e);

// The status a failure inside a walk stands for: out of memory, or else a
// bad parameter (the readers' own failures come as statuses, not throws).
unsigned WalkFailureStatus(const std::exception& e);
// What a failure says: "out of memory", or the exception's own text.
std::string FailureText(const std::exception& e);

// What a verify reader's status means, in a few words.
std::string DescribeVerifyStatus(unsigned status);

// How one program reads a verify report: each call is one step of the walk
// in ReadVerifyReport, and each returns the run's status where it ends it.
class VerifyReading {
public:
    virtual ~VerifyReading();
    // The reader over the file; throws as the reader's constructors do.
    virtual std::unique_ptr<VerifyFile> Open() = 0;
    virtual unsigned OpenFailed(const std::exception& e) = 0;
    // Before the sections: the printer and the display switches.
    virtual void Start(VerifyFile& reader) = 0;
    // After them, with the reader's status.
    virtual unsigned Finished(VerifyFile& reader, unsigned status) = 0;
    virtual unsigned Threw(VerifyFile& reader, const std::exception& e) = 0;
};

unsigned ReadVerifyReport(VerifyReading& reading);

// How one program reads a rebuild log, likewise.
class RebuildReading {
public:
    virtual ~RebuildReading();
    virtual std::unique_ptr<RebuildFile> Open() = 0;
    virtual unsigned OpenFailed(const std::exception& e) = 0;
    virtual void Start(RebuildFile& log) = 0;
    // The message walk's status.
    virtual void MessagesRead(unsigned status) = 0;
    // Whether the TOD items' names are asked of the storage system, and of
    // which server's command file.
    virtual bool Lookup() const = 0;
    virtual const std::string& Server() const = 0;
    // After the TOD walk, with its status.
    virtual unsigned Finished(RebuildFile& log, unsigned status) = 0;
    virtual unsigned Threw(RebuildFile& log, const std::exception& e) = 0;
    // Last, whichever way the walks ended, with the log still loaded.
    virtual void Done(RebuildFile& log) = 0;
};

unsigned ReadRebuildLog(RebuildReading& reading);

} // namespace LogsiftDriver

#endif
