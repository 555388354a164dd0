// outputWriter.h - the one writer of standard output: a buffer of its own
// over the file descriptor, emptied with write(2), that notices a failed
// write and stops the work, and that shows control characters as escapes
// where the output is a terminal.
#ifndef UTIL_SUPPORT_OUTPUTWRITER_H
#define UTIL_SUPPORT_OUTPUTWRITER_H

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

    // `lineBuffered`: every line goes out when it ends (a terminal).
    // `escapeControls`: control characters other than tab and newline, DEL
    // and C1 controls are written as backslash escapes with three octal
    // digits (\033), so that text from files and volumes cannot command a
    // terminal.
    // `write` stands in for write(2) (a test's writer of short writes and
    // interruptions).
    using WriteFunction = long (*)(int fd, const void* data, std::size_t size);
    OutputWriter(int fd, bool lineBuffered, bool escapeControls, WriteFunction write = nullptr);
    // Writes what is held; a failure is no longer reported.
    ~OutputWriter() override;
    OutputWriter(const OutputWriter&) = delete;
    OutputWriter& operator=(const OutputWriter&) = delete;

    // Writes what is held; throws OutputWriteError when that fails.
    void Flush();
    // Writes what is held without throwing, for a message on standard error
    // that must come after the lines before it, even in a destructor; a
    // failure is kept and thrown at the next write.
    void FlushQuietly();
    // The errno of the first failed write, 0 while none failed. After a
    // failure everything else given to the writer is dropped.
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
    // Throws the failure once; what comes after it is dropped.
    void Fail();
    // write(2) of all `n` bytes, through short writes and interruptions;
    // false with `error` set when it fails.
    bool WriteAll(const char* s, std::size_t n);

    const int fd;
    const WriteFunction write;
    const bool lineBuffered;
    const bool escapeControls;
    std::unique_ptr<char[]> buffer;
    // Held bytes when line-buffered; otherwise the stream's put area holds
    // them, so that the stream writes into the buffer without a call.
    std::size_t held = 0;
    int error = 0;
    bool thrown = false;
    // The escaping's view of UTF-8: continuation bytes still expected after
    // a lead byte, and a pending 0xC2 lead whose next byte decides whether
    // the pair is a C1 control.
    unsigned continuations = 0;
    bool pendingC2 = false;
};

// Puts an OutputWriter over standard output behind std::cout for its
// lifetime, set up as standard output asks (a terminal is line-buffered and
// shows control characters escaped), and makes a failed write stop the work
// by an OutputWriteError out of the stream.
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

// A program's work with standard output behind a StandardOutput: `work`'s
// status, or, when standard output cannot be written, "PROGRAM: write error:
// " and the system's text on standard error and `writeErrorStatus`. The
// work stops at the first failed write: output is never lost silently.
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
