// outputWriter.cpp - the writer of standard output.
#include "util/support/outputWriter.h"

#include "util/support/startup.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>

#include <unistd.h>

namespace QVS {

namespace {

// Bytes written as they are without a further look: printable ASCII, tab
// and newline.
bool isPlain(unsigned char c) { return (c >= 0x20 && c < 0x7F) || c == '\t' || c == '\n'; }

// The length of the character that `c` begins, 0 for a byte that begins
// none: a continuation byte, C0 or C1 (the lead of an overlong form), F5 to
// FF (beyond U+10FFFF). Not asked for ASCII.
unsigned lengthAfterLead(unsigned char c) {
    if (c >= 0xC2 && c <= 0xDF)
        return 2;
    if (c >= 0xE0 && c <= 0xEF)
        return 3;
    if (c >= 0xF0 && c <= 0xF4)
        return 4;
    return 0;
}

// Whether `c` may stand at `position` (1 for the second byte) in a
// character led by `lead`. The narrower ranges of the second byte rule out
// overlong forms (after E0, F0), the surrogates U+D800 to U+DFFF (after ED)
// and code points above U+10FFFF (after F4).
bool continues(unsigned char lead, unsigned position, unsigned char c) {
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (position == 1) {
        switch (lead) {
        case 0xE0:
            low = 0xA0;
            break;
        case 0xED:
            high = 0x9F;
            break;
        case 0xF0:
            low = 0x90;
            break;
        case 0xF4:
            high = 0x8F;
            break;
        default:
            break;
        }
    }
    return c >= low && c <= high;
}

// C2 80 to C2 9F: U+0080 to U+009F, the C1 controls.
bool isC1Control(const unsigned char* bytes, unsigned size) {
    return size == 2 && bytes[0] == 0xC2 && bytes[1] <= 0x9F;
}

// The length of the well-formed character that is no control at the start
// of the `available` bytes, 0 when there is none there whole.
unsigned wholeCharacter(const unsigned char* bytes, std::size_t available) {
    const unsigned length = lengthAfterLead(bytes[0]);
    if (length == 0 || length > available)
        return 0;
    for (unsigned k = 1; k < length; ++k)
        if (!continues(bytes[0], k, bytes[k]))
            return 0;
    return isC1Control(bytes, length) ? 0 : length;
}

// The four bytes of `c` escaped: a backslash and three octal digits.
void octalEscape(unsigned char c, char* text) {
    text[0] = '\\';
    text[1] = static_cast<char>('0' + (c >> 6));
    text[2] = static_cast<char>('0' + ((c >> 3) & 7));
    text[3] = static_cast<char>('0' + (c & 7));
}

long systemWrite(int fd, const void* data, std::size_t size) { return ::write(fd, data, size); }

} // namespace

OutputWriter::OutputWriter(int descriptor, bool lines, bool escape, WriteFunction writeFunction,
                           OnFailure failure)
    : fd(descriptor), write(writeFunction ? writeFunction : systemWrite), lineBuffered(lines),
      escapeControls(escape), onFailure(failure), heap(TakeBuffer(BUFFER_SIZE)),
      buffer(heap ? heap.get() : fallback), capacity(heap ? BUFFER_SIZE : FALLBACK_SIZE) {
    // A terminal's writes all come through xsputn and overflow, which see
    // each line end; anything else is written straight into the buffer.
    if (!lineBuffered)
        setp(buffer, buffer + capacity);
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
        std::memcpy(buffer + held, s, n);
        held += n;
    } else {
        std::memcpy(pptr(), s, n);
        pbump(static_cast<int>(n));
    }
}

void OutputWriter::Flush() {
    Drain();
    if (partialSize > 0)
        EmitPartialEscaped();
}

void OutputWriter::FlushQuietly() {
    try {
        Flush();
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
    if (onFailure == OnFailure::Ignore) {
        // What that write held is lost; the next one is tried.
        error = 0;
        return;
    }
    if (!thrown) {
        thrown = true;
        throw OutputWriteError{error};
    }
}

void OutputWriter::Drain() {
    const std::size_t size = Held();
    held = 0;
    if (!lineBuffered)
        setp(buffer, buffer + capacity);
    if (error != 0) {
        Fail();
        return;
    }
    if (size > 0)
        Emit(buffer, size);
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

// The rule of the escaping, after the table of well-formed UTF-8 byte
// sequences (Unicode, Table 3-7), byte by byte from the first byte written:
// - 00 to 7F is a character of its own, written as it is but for the
//   controls: C0 other than tab and newline, and DEL (7F), which are escaped.
// - C2 to DF begins a character of two bytes, E0 to EF one of three, F0 to
//   F4 one of four. The second byte must be A0 to BF after E0, 80 to 9F
//   after ED, 90 to BF after F0, 80 to 8F after F4, 80 to BF after the
//   other leads; every later byte 80 to BF. The lead and the bytes after it
//   are held until the character is complete, then written as they are,
//   but for C2 80 to C2 9F (U+0080 to U+009F, the C1 controls), whose two
//   bytes are escaped.
// - 80 to C1 and F5 to FF begin no character and are escaped.
// - A byte that cannot continue the held bytes ends them: each of them is
//   escaped (with the lead they are the maximal subpart of an ill-formed
//   sequence; the bytes after a lead begin no character), and that byte is
//   looked at again as the beginning of a character.
// - Held bytes carry over to the next write; a flush escapes them.
// So a byte is written as it is exactly when it belongs to a well-formed
// character that is not a control.
void OutputWriter::EmitEscaped(const char* s, std::size_t n) {
    // Escaped text is written in pieces of a buffer of its own.
    char out[4096];
    std::size_t used = 0;
    auto writeOut = [&]() {
        if (used > 0 && error == 0 && !WriteAll(out, used))
            Fail();
        used = 0;
    };
    auto put = [&](const char* bytes, std::size_t count) {
        if (count > sizeof out - used) {
            writeOut();
            if (count > sizeof out) {
                // A long run of plain text goes out as it is.
                if (error == 0 && !WriteAll(bytes, count))
                    Fail();
                return;
            }
        }
        std::memcpy(out + used, bytes, count);
        used += count;
    };
    auto escaped = [&](unsigned char c) {
        char text[4];
        octalEscape(c, text);
        put(text, sizeof text);
    };
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(s);
    std::size_t i = 0;
    while (i < n && error == 0) {
        const unsigned char c = bytes[i];
        if (partialSize > 0) {
            if (continues(partial[0], partialSize, c)) {
                partial[partialSize++] = c;
                ++i;
                if (partialSize == partialLength) {
                    if (isC1Control(partial, partialSize)) {
                        escaped(partial[0]);
                        escaped(partial[1]);
                    } else {
                        put(reinterpret_cast<const char*>(partial), partialSize);
                    }
                    partialSize = 0;
                }
                continue;
            }
            // Ill-formed: the held bytes are escaped, and `c` is looked at
            // again as a beginning.
            for (unsigned k = 0; k < partialSize; ++k)
                escaped(partial[k]);
            partialSize = 0;
            continue;
        }
        // Most text is a run of plain ASCII and whole characters, copied in
        // one piece.
        std::size_t end = i;
        while (end < n) {
            if (isPlain(bytes[end])) {
                ++end;
                continue;
            }
            const unsigned whole = wholeCharacter(bytes + end, n - end);
            if (whole == 0)
                break;
            end += whole;
        }
        if (end > i) {
            put(s + i, end - i);
            i = end;
            continue;
        }
        // A control, a byte that begins no character, or the lead of a
        // character that is not whole in this write.
        const unsigned length = lengthAfterLead(c);
        if (length > 0) {
            partial[0] = c;
            partialSize = 1;
            partialLength = length;
        } else {
            escaped(c);
        }
        ++i;
    }
    writeOut();
}

void OutputWriter::EmitPartialEscaped() {
    char text[4 * sizeof partial];
    std::size_t used = 0;
    for (unsigned k = 0; k < partialSize; ++k, used += 4)
        octalEscape(partial[k], text + used);
    partialSize = 0;
    if (error == 0 && !WriteAll(text, used))
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
    if (n > capacity - Held()) {
        Drain();
        if (n >= capacity) {
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
    // Standard error outlives standard output, for the write error.
    StandardError errors;
    StandardOutput output;
    try {
        const int status = work(argc, argv);
        output.Flush();
        return status;
    } catch (const OutputWriteError& failure) {
        output.StopThrowing();
        std::cerr << program << ": write error: " << std::strerror(failure.error) << std::endl;
        return writeErrorStatus;
    } catch (const std::bad_alloc&) {
        // Where nothing of the work's own could report it (the command
        // line, the search; the documents close themselves whole).
        return OutOfMemory(program, writeErrorStatus);
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

StandardError::StandardError() {
    if (isatty(STDERR_FILENO) != 1)
        return;
    writer = std::make_unique<OutputWriter>(STDERR_FILENO, true, true, nullptr,
                                            OutputWriter::OnFailure::Ignore);
    previous = std::cerr.rdbuf(writer.get());
    // As std::cerr always is: standard output is written before each message,
    // and each message at once, so that lines keep their order on a terminal
    // that shows both.
    previousTie = std::cerr.tie(&std::cout);
    previousFlags = std::cerr.setf(std::ios_base::unitbuf);
}

StandardError::~StandardError() {
    if (!writer)
        return;
    std::cerr.flags(previousFlags);
    std::cerr.tie(previousTie);
    std::cerr.rdbuf(previous);
}

} // namespace QVS
