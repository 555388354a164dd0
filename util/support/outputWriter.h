// outputWriter.h - the one writer of standard output: a buffer of its own
// over the file descriptor, emptied with write(2), that notices a failed
// write and stops the work, and that shows control characters and bytes
// that are not well-formed UTF-8 as escapes where the output is a terminal
// (standard error too, when it is one).
#ifndef UTIL_SUPPORT_OUTPUTWRITER_H
#define UTIL_SUPPORT_OUTPUTWRITER_H

#include "util/support/mallocBuffer.h"

#include <cstddef>
#include <iostream>
#include <memory>
#include <ostream>
#include <streambuf>

namespace QVS {

// Thrown through the stream when the output cannot be written, so that the
// work stops where it is. Deliberately not a std::exception: the views catch
// those and would write on. `error` is the errno of the failed write.
struct OutputWriteError {
    int error;
};

class OutputWriter : public std::streambuf {
public:
    // Bytes held before they are written in one block.
    static constexpr std::size_t BUFFER_SIZE = 256 * 1024;
    static constexpr std::size_t FALLBACK_SIZE = 4096;

    // What a failed write does: stop the work (standard output: an
    // OutputWriteError once, then everything after it dropped), or lose
    // only the bytes of that write and go on (standard error, which has
    // nowhere to report its own failure).
    enum class OnFailure { Stop, Ignore };

    // `lineBuffered`: every line goes out when it ends (a terminal).
    // `escapeControls`: only the bytes of well-formed UTF-8 characters that
    // are not controls are written as they are; every other byte is
    // written as a backslash escape with three octal digits (\033), so that
    // text from files and volumes cannot command a terminal (see
    // EmitEscaped for the rule).
    // `write` stands in for write(2) (a test's writer of short writes and
    // interruptions).
    using WriteFunction = long (*)(int fd, const void* data, std::size_t size);
    OutputWriter(int fd, bool lineBuffered, bool escapeControls, WriteFunction write = nullptr,
                 OnFailure onFailure = OnFailure::Stop);
    // Writes what is held; a failure is no longer reported.
    ~OutputWriter() override;
    OutputWriter(const OutputWriter&) = delete;
    OutputWriter& operator=(const OutputWriter&) = delete;

    // Writes what is held; throws OutputWriteError when that fails. The
    // first bytes of a character that is not complete yet are written
    // escaped: a flush writes no byte that was not found well-formed.
    void Flush();
    // Writes what is held without throwing, for a message on standard error
    // that must come after the lines before it, even in a destructor; a
    // failure is kept and thrown at the next write.
    void FlushQuietly();
    // The errno of the first failed write, 0 while none failed (always 0
    // when failures are ignored). After a failure that stops the work
    // everything else given to the writer is dropped.
    int Error() const { return error; }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* s, std::streamsize n) override;
    int sync() override;

private:
    // Bytes taken and not written yet.
    std::size_t Held() const;
    // Takes `n` bytes into the buffer, which has room for them.
    void Take(const char* s, std::size_t n);
    // Writes the held bytes and empties the buffer; throws OutputWriteError
    // on the first failure.
    void Drain();
    // Writes `n` bytes, escaped where the controls are to be escaped.
    void Emit(const char* s, std::size_t n);
    void EmitEscaped(const char* s, std::size_t n);
    // Writes the bytes of an unfinished character escaped and forgets them.
    void EmitPartialEscaped();
    // Throws the failure once; what comes after it is dropped.
    void Fail();
    // write(2) of all `n` bytes, through short writes and interruptions;
    // false with `error` set when it fails.
    bool WriteAll(const char* s, std::size_t n);

    const int fd;
    const WriteFunction write;
    const bool lineBuffered;
    const bool escapeControls;
    const OnFailure onFailure;
    // BUFFER_SIZE bytes of the heap, or where memory is too short for them
    // the small buffer inside the writer: output still goes out, in
    // smaller writes.
    MallocBuffer heap;
    char* buffer;
    std::size_t capacity;
    char fallback[FALLBACK_SIZE];
    // Held bytes when line-buffered; otherwise the stream's put area holds
    // them, so that the stream writes into the buffer without a call.
    std::size_t held = 0;
    int error = 0;
    bool thrown = false;
    // The escaping's view of UTF-8 across writes: the first bytes of a
    // character not complete yet, held back until it proves well-formed
    // (written as they are, but a C1 control) or not (written escaped), and
    // the length its lead byte announces.
    unsigned char partial[4] = {};
    unsigned partialSize = 0;
    unsigned partialLength = 0;
};

// Puts an OutputWriter over standard output behind std::cout for its
// lifetime, set up as standard output asks (a terminal is line-buffered and
// shows controls and bytes that are not well-formed UTF-8 escaped), and
// makes a failed write stop the work by an OutputWriteError out of the
// stream.
class StandardOutput {
public:
    StandardOutput();
    // Restores std::cout as it was, after writing what is held.
    ~StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    // Writes what is held; throws OutputWriteError when that fails.
    void Flush() { writer.Flush(); }
    // After a failure: std::cout no longer throws, so that the failure can
    // be reported on std::cerr (which flushes std::cout first).
    void StopThrowing() { std::cout.exceptions(std::ios_base::goodbit); }

private:
    OutputWriter writer;
    std::streambuf* previous;
    std::ios_base::iostate previousExceptions;
};

// Puts an OutputWriter over standard error behind std::cerr for its lifetime
// when standard error is a terminal: traces and messages carry file names,
// paths and message texts read from files, and are shown escaped as
// standard output is. Each output operation is written at once (std::cerr
// stays unit-buffered and tied to std::cout, so standard output's lines come
// first), and a failed write is ignored. Anywhere else std::cerr is left
// as it is, and its bytes are not changed.
class StandardError {
public:
    StandardError();
    // Restores std::cerr as it was.
    ~StandardError();
    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

private:
    // None when standard error is no terminal.
    std::unique_ptr<OutputWriter> writer;
    std::streambuf* previous = nullptr;
    std::ostream* previousTie = nullptr;
    std::ios_base::fmtflags previousFlags{};
};

// A program's work with standard output behind a StandardOutput and standard
// error behind a StandardError: `work`'s status, or, when standard output
// cannot be written, "PROGRAM: write error: " and the system's text on
// standard error and `writeErrorStatus`; when memory runs out in the work,
// OutOfMemory with the same status. The work stops at the first failed
// write: output is never lost silently.
int RunWithStandardOutput(const char* program, int writeErrorStatus, int (*work)(int, char**),
                          int argc, char** argv);

// Writes what standard output holds without throwing (see FlushQuietly),
// so that a message written to standard error by other means than std::cerr
// (perror) comes after the lines printed before it.
void FlushStandardOutputQuietly();

// perror(what) after FlushStandardOutputQuietly, with errno kept for it.
// Never throws, so a destructor may call it.
void PrintSystemError(const char* what);

} // namespace QVS

#endif
