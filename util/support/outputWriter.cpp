// outputWriter.cpp - the writer of standard output.
#include "util/support/outputWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

#include <unistd.h>

namespace QVS {

namespace {

// The first byte of the UTF-8 form of the C1 controls (U+0080 to U+009F).
const unsigned char C1_LEAD = 0xC2;

bool isC1(unsigned char c) { return c >= 0x80 && c <= 0x9F; }

// Controls shown escaped when alone: C0 but tab and newline, and DEL.
bool isShownEscaped(unsigned char c) { return (c < 0x20 && c != '\t' && c != '\n') || c == 0x7F; }

// Continuation bytes that follow a UTF-8 lead byte (0 for a byte that leads
// nothing).
unsigned continuationsAfter(unsigned char c) {
    if (c >= 0xC3 && c <= 0xDF)
        return 1;
    if (c >= 0xE0 && c <= 0xEF)
        return 2;
    if (c >= 0xF0 && c <= 0xF4)
        return 3;
    return 0;
}

bool isContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

long systemWrite(int fd, const void* data, std::size_t size) { return ::write(fd, data, size); }

} // namespace

OutputWriter::OutputWriter(int descriptor, bool lines, bool escape, WriteFunction writeFunction)
    : fd(descriptor), write(writeFunction ? writeFunction : systemWrite), lineBuffered(lines),
      escapeControls(escape), buffer(new char[BUFFER_SIZE]) {
    // A terminal's writes all come through xsputn and overflow, which see
    // each line end; anything else is written straight into the buffer.
    if (!lineBuffered)
        setp(buffer.get(), buffer.get() + BUFFER_SIZE);
}

OutputWriter::~OutputWriter() {
    try {
        Flush();
    } catch (const OutputWriteError&) {
        // Too late to report: the work has ended.
    }
}

std::size_t OutputWriter::Held() const {
    return lineBuffered ? held : static_cast<std::size_t>(pptr() - pbase());
}

void OutputWriter::Take(const char* s, std::size_t n) {
    if (lineBuffered) {
        std::memcpy(buffer.get() + held, s, n);
        held += n;
    } else {
        std::memcpy(pptr(), s, n);
        pbump(static_cast<int>(n));
    }
}

void OutputWriter::Flush() {
    Drain();
    if (pendingC2) {
        // A 0xC2 that no byte followed is no control.
        pendingC2 = false;
        const char lead = static_cast<char>(C1_LEAD);
        if (error == 0 && !WriteAll(&lead, 1))
            Fail();
    }
}

void OutputWriter::FlushQuietly() {
    try {
        Drain();
    } catch (const OutputWriteError&) {
        // Kept: thrown again at the next write.
        thrown = false;
    }
}

bool OutputWriter::WriteAll(const char* s, std::size_t n) {
    while (n > 0) {
        const long written = write(fd, s, n);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            error = errno;
            return false;
        }
        if (written == 0) {
            // A write that takes nothing would be tried for ever.
            error = EIO;
            return false;
        }
        s += written;
        n -= static_cast<std::size_t>(written);
    }
    return true;
}

void OutputWriter::Fail() {
    if (!thrown) {
        thrown = true;
        throw OutputWriteError{error};
    }
}

void OutputWriter::Drain() {
    const std::size_t size = Held();
    held = 0;
    if (!lineBuffered)
        setp(buffer.get(), buffer.get() + BUFFER_SIZE);
    if (error != 0) {
        Fail();
        return;
    }
    if (size > 0)
        Emit(buffer.get(), size);
}

void OutputWriter::Emit(const char* s, std::size_t n) {
    if (error != 0) {
        Fail();
        return;
    }
    if (escapeControls) {
        EmitEscaped(s, n);
        return;
    }
    if (!WriteAll(s, n))
        Fail();
}

void OutputWriter::EmitEscaped(const char* s, std::size_t n) {
    // Escaped text is written in pieces of a buffer of its own, each byte
    // taking four at most.
    char out[4096];
    std::size_t used = 0;
    auto put = [&](const char* bytes, std::size_t count) {
        if (count > sizeof out - used) {
            if (!WriteAll(out, used))
                Fail();
            used = 0;
        }
        std::memcpy(out + used, bytes, count);
        used += count;
    };
    auto escaped = [&](unsigned char c) {
        const char text[4] = {'\\', static_cast<char>('0' + (c >> 6)),
                              static_cast<char>('0' + ((c >> 3) & 7)),
                              static_cast<char>('0' + (c & 7))};
        put(text, sizeof text);
    };
    const char lead = static_cast<char>(C1_LEAD);
    for (std::size_t i = 0; i < n && error == 0; ++i) {
        const unsigned char c = static_cast<unsigned char>(s[i]);
        if (pendingC2) {
            pendingC2 = false;
            if (isC1(c)) {
                // U+0080 to U+009F: a control on a UTF-8 terminal.
                escaped(C1_LEAD);
                escaped(c);
                continue;
            }
            put(&lead, 1);
            if (isContinuation(c)) {
                put(s + i, 1); // the rest of a character such as U+00A0
                continue;
            }
        }
        if (continuations > 0 && isContinuation(c)) {
            --continuations;
            put(s + i, 1);
            continue;
        }
        continuations = 0;
        if (c == C1_LEAD) {
            pendingC2 = true;
        } else if (isShownEscaped(c) || isC1(c)) {
            // A C1 byte outside a UTF-8 sequence is a control on an 8-bit
            // terminal.
            escaped(c);
        } else {
            if (c >= 0x80)
                continuations = continuationsAfter(c);
            put(s + i, 1);
        }
    }
    if (used > 0 && error == 0 && !WriteAll(out, used))
        Fail();
}

OutputWriter::int_type OutputWriter::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof()))
        return traits_type::not_eof(c);
    const char byte = traits_type::to_char_type(c);
    xsputn(&byte, 1);
    return c;
}

std::streamsize OutputWriter::xsputn(const char* s, std::streamsize count) {
    if (count <= 0)
        return count;
    const std::size_t n = static_cast<std::size_t>(count);
    if (error != 0) {
        Fail();
        return count; // dropped
    }
    if (n > BUFFER_SIZE - Held()) {
        Drain();
        if (n >= BUFFER_SIZE) {
            // A block larger than the buffer goes out as it is.
            Emit(s, n);
            return count;
        }
    }
    Take(s, n);
    if (lineBuffered && std::memchr(s, '\n', n) != nullptr)
        Drain();
    return count;
}

int OutputWriter::sync() {
    Flush();
    return 0;
}

void FlushStandardOutputQuietly() {
    if (OutputWriter* writer = dynamic_cast<OutputWriter*>(std::cout.rdbuf())) {
        writer->FlushQuietly();
        return;
    }
    try {
        std::cout.flush();
    } catch (...) {
        // Only a flush for the order of the lines; the stream keeps its state.
    }
}

void PrintSystemError(const char* what) {
    const int error = errno;
    FlushStandardOutputQuietly();
    errno = error;
    std::perror(what);
}

int RunWithStandardOutput(const char* program, int writeErrorStatus, int (*work)(int, char**),
                          int argc, char** argv) {
    StandardOutput output;
    try {
        const int status = work(argc, argv);
        output.Flush();
        return status;
    } catch (const OutputWriteError& failure) {
        output.StopThrowing();
        std::cerr << program << ": write error: " << std::strerror(failure.error) << std::endl;
        return writeErrorStatus;
    }
}

StandardOutput::StandardOutput()
    : writer(STDOUT_FILENO, isatty(STDOUT_FILENO) == 1, isatty(STDOUT_FILENO) == 1),
      previous(std::cout.rdbuf(&writer)), previousExceptions(std::cout.exceptions()) {
    // A failure inside the writer leaves the stream by the OutputWriteError
    // itself, which the stream passes on when bad bits throw.
    std::cout.exceptions(std::ios_base::badbit);
}

StandardOutput::~StandardOutput() {
    std::cout.exceptions(previousExceptions);
    std::cout.rdbuf(previous);
}

} // namespace QVS
