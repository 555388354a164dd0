// logsiftDriver.h - what both programs do before a printer is at work: tell
// the file types apart, find the file (a pool's newest one, or the one
// named), open it and walk it. Each program says, through a Reading, how it
// shows the walk and each way it can fail; the walk itself is here, once.
#ifndef UTIL_LOGSIFT_LOGSIFTDRIVER_H
#define UTIL_LOGSIFT_LOGSIFTDRIVER_H

#include "util/support/inputFile.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <ostream>
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

// The same for the companions, from one reading of the directory (ScanPools),
// which prints nothing: `error` is the errno that stopped the reading, so
// that a directory that cannot be read is said for what it is rather than
// as a pool without a file.
Source LocateQuietly(const FileType& type, const std::string& operand,
                     const std::string& directory, int& error);

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

// What one stage of reading a file came to: its opening, or its reading
// (the sections of a report, or a walk of a log).
struct Outcome {
    unsigned status = 0;    // 0: the stage went to its end
    std::string text;       // what happened, in words; empty when all went well
    long long offset = -1;  // where in the file reading stopped; -1: not at a place
    int error = 0;          // the errno behind it, where the system gave one
    bool threw = false;     // the stage ended with an exception
    std::string thrown;     // its what()
    bool internal = false;  // a programming error, not the input's

    bool Good() const { return status == 0; }
};

// The outcome of a failed opening: the errno's status (errno + 0x22BA5000)
// and "cannot open: " with its text, or a bad parameter for a file of a kind
// that is not read, with the kind.
Outcome InputOutcome(const QVS::InputFailure& failure);

// The outcome an exception stands for: out of memory (20000), a reader's
// own status (a QVSError), a failure of the input (20008, "bad parameter"),
// or a programming error (24999, internal: a std::logic_error or any other
// exception that is not a runtime failure). `thrown` keeps what() for the
// lines of logsift's text, which print it as it is.
Outcome OutcomeOf(const std::exception& e);
// A reader's status, with its words.
Outcome VerifyStatusOutcome(unsigned status);

// What a verify reader's status means, in a few words.
std::string DescribeVerifyStatus(unsigned status);

// The CRC of a report read by a reader that folds it from the reading.
struct Crc {
    bool known = false;  // computed: the file was read to its end
    uint32_t stored = 0;
    uint32_t computed = 0;
    bool Matches() const { return known && stored == computed; }
};

// How one program shows the reading of a verify report: each call is one
// step of ReadVerifyReport. The driver opens, reads and works out every
// outcome; a reading only shows them.
class VerifyReading {
public:
    virtual ~VerifyReading();
    // The reader could not be made.
    virtual void OpenFailed(const Outcome& open) = 0;
    // Before the sections: the printer and the display switches.
    virtual void Start(VerifyFile& reader) = 0;
    // After them, however they ended, with the reader's CRC where it folds
    // one (a report whose CRC does not match has status 21741 when its
    // sections read whole).
    virtual void Finished(VerifyFile& reader, const Outcome& read, const Crc& crc) = 0;
};

using VerifyOpener = std::function<std::unique_ptr<VerifyFile>()>;

// Opens the report with `open` and reads it; the outcome of the stage that
// ended the reading.
Outcome ReadVerifyReport(const VerifyOpener& open, VerifyReading& reading);

// How a rebuild log is walked: the TOD items' names asked of the storage
// system or not, and through which server's command file.
struct RebuildOptions {
    bool lookup = false;
    std::string server;
};

// How one program shows the walks of a rebuild log, likewise.
class RebuildReading {
public:
    virtual ~RebuildReading();
    virtual void OpenFailed(const Outcome& open) = 0;
    virtual void Start(RebuildFile& log) = 0;
    // The message walk's outcome.
    virtual void MessagesRead(const Outcome& walk) = 0;
    // After the TOD walk with its outcome, or after a failure in either
    // walk.
    virtual void Finished(RebuildFile& log, const Outcome& walk) = 0;
    // Last, whichever way the walks ended, with the log still loaded.
    virtual void Done(RebuildFile& log) = 0;
};

using RebuildOpener = std::function<std::unique_ptr<RebuildFile>()>;

Outcome ReadRebuildLog(const RebuildOpener& open, const RebuildOptions& options,
                       RebuildReading& reading);

// The companions' openers over an input that OpenSource opened: the reader
// takes its descriptor, reads no further than its size when opened, folds
// a report's CRC, takes a log that is still being written as far as it is
// written, and writes its own messages and diagnostics to `messages`.
VerifyOpener InputReport(const std::string& path, QVS::InputFile& input, std::ostream& messages,
                         unsigned debugMask);
RebuildOpener InputLog(const std::string& path, QVS::InputFile& input, std::ostream& messages,
                       unsigned debugMask);

} // namespace LogsiftDriver

#endif
