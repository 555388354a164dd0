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
      escapeControls(escape), buffer(new char[BUFFER_SIZE]) {}

OutputWriter::~OutputWriter() {
    try {
        Flush();
    } catch (const OutputWriteError&) {
        // Too late to report: the work has ended.
    }
}

void OutputWriter::Flush() {
    if (escapeControls && pendingC2) {
        pendingC2 = false;
        PutRaw(reinterpret_cast<const char*>(&C1_LEAD), 1);
    }
    Drain();
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
    held = 0;
    if (!thrown) {
        thrown = true;
        throw OutputWriteError{error};
    }
}

void OutputWriter::Drain() {
    if (error != 0) {
        Fail();
        return;
    }
    const std::size_t size = held;
    held = 0;
    if (size > 0 && !WriteAll(buffer.get(), size))
        Fail();
}

void OutputWriter::FlushQuietly() {
    if (error != 0)
        return;
    const std::size_t size = held;
    held = 0;
    if (size > 0)
        WriteAll(buffer.get(), size);
}

void OutputWriter::PutRaw(const char* s, std::size_t n) {
    if (error != 0) {
        Fail();
        return;
    }
    if (n >= BUFFER_SIZE) {
        // A block larger than the buffer goes out as it is.
        Drain();
        if (!WriteAll(s, n))
            Fail();
        return;
    }
    if (n > BUFFER_SIZE - held)
        Drain();
    std::memcpy(buffer.get() + held, s, n);
    held += n;
    if (lineBuffered && std::memchr(s, '\n', n) != nullptr)
        Drain();
}

void OutputWriter::PutEscaped(unsigned char c) {
    const char escaped[4] = {'\\', static_cast<char>('0' + (c >> 6)),
                             static_cast<char>('0' + ((c >> 3) & 7)),
                             static_cast<char>('0' + (c & 7))};
    PutRaw(escaped, sizeof escaped);
}

void OutputWriter::Put(const char* s, std::size_t n) {
    if (!escapeControls) {
        PutRaw(s, n);
        return;
    }
    // Bytes that need nothing go out in runs: [run, i) is not written yet.
    std::size_t run = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned char c = static_cast<unsigned char>(s[i]);
        if (pendingC2) {
            // Everything before the 0xC2 is written, so run is i here.
            pendingC2 = false;
            if (isC1(c)) {
                // U+0080 to U+009F: a control on a UTF-8 terminal.
                PutEscaped(C1_LEAD);
                PutEscaped(c);
                run = i + 1;
                continue;
            }
            PutRaw(reinterpret_cast<const char*>(&C1_LEAD), 1);
            if (isContinuation(c))
                continue; // the rest of a character such as U+00A0
        }
        if (continuations > 0 && isContinuation(c)) {
            --continuations;
            continue;
        }
        continuations = 0;
        if (c == C1_LEAD) {
            PutRaw(s + run, i - run);
            run = i + 1;
            pendingC2 = true;
        } else if (isShownEscaped(c) || isC1(c)) {
            // A C1 byte outside a UTF-8 sequence is a control on an 8-bit
            // terminal.
            PutRaw(s + run, i - run);
            PutEscaped(c);
            run = i + 1;
        } else if (c >= 0x80) {
            continuations = continuationsAfter(c);
        }
    }
    PutRaw(s + run, n - run);
}

OutputWriter::int_type OutputWriter::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof()))
        return traits_type::not_eof(c);
    const char byte = traits_type::to_char_type(c);
    Put(&byte, 1);
    return c;
}

std::streamsize OutputWriter::xsputn(const char* s, std::streamsize n) {
    if (n > 0)
        Put(s, static_cast<std::size_t>(n));
    return n;
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
