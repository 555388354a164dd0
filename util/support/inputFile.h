// inputFile.h - how the companion programs open a report or a log: without
// blocking, and only what has an end. A FIFO, a device or a symlink to one
// that is named like a report must neither hang a monitor nor feed it an
// endless stream; a file that grows while it is read is read as it was.
#ifndef UTIL_SUPPORT_INPUTFILE_H
#define UTIL_SUPPORT_INPUTFILE_H

#include <cstdint>
#include <string>

namespace QVS {

// What kinds of file are read.
enum class InputKinds {
    RegularOnly,      // files a search found in the RAV directory
    RegularOrStream,  // a file named on the command line: a pipe or FIFO too
};

// An opened input: its descriptor, owned until a reader takes it, and what
// fstat gave when it was opened.
struct InputFile {
    int descriptor = -1;
    bool regular = false;
    uint64_t size = 0;      // a regular file is read no further than this
    int64_t modified = 0;   // seconds since 1970

    InputFile() = default;
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    // The descriptor, which its taker now closes.
    int Take() {
        const int taken = descriptor;
        descriptor = -1;
        return taken;
    }
    // How far a reader reads it: the size of a regular file, or to its end.
    uint64_t Limit() const { return regular ? size : UINT64_MAX; }
};

// The outcome of an opening: 0, or the errno of a failed call, or
// NOT_READABLE_KIND for a file of a kind that is not read; `text` says it in
// words ("No such file or directory", "not a regular file: FIFO").
struct InputFailure {
    int error = 0;
    std::string text;
};
constexpr int NOT_READABLE_KIND = -1;

// Opens `path` for reading (O_NONBLOCK, O_NOCTTY, close-on-exec), checks its
// kind with fstat, and for a stream that is read gives the blocking mode
// back. True and `file` filled, or false and `failure` filled; nothing stays
// open on failure.
bool OpenInput(const std::string& path, InputKinds kinds, InputFile& file,
               InputFailure& failure);

// The kind of a file in words: "FIFO", "character device", ...
const char* FileKindName(unsigned mode);

} // namespace QVS

#endif
