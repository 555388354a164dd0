// jsonWriter.cpp - the streaming JSON writer.
#include "util/support/jsonWriter.h"

#include "util/support/utf8.h"

#include <charconv>
#include <new>
#include <stdexcept>


namespace QVS {

namespace {

const char HEX_DIGITS[] = "0123456789abcdef";

// U+FFFD in UTF-8: what a byte that begins no valid character becomes.
const char REPLACEMENT[] = "\xef\xbf\xbd";
// The C1 controls in UTF-8: 0xC2 followed by 0x80 to 0x9F.
const unsigned char C1_LEAD = 0xC2;
const unsigned char C1_LAST = 0x9F;

} // namespace

std::size_t JsonWriter::PlainLength(std::string_view text) {
    const std::size_t size = text.size();
    std::size_t i = 0;
#ifdef __SSE2__
    for (; i + 16 <= size; i += 16)
        if (const unsigned marks = NotPlain(_mm_loadu_si128(
                reinterpret_cast<const __m128i*>(text.data() + i))))
            return i + static_cast<unsigned>(__builtin_ctz(marks));
#endif
    while (i < size && IsPlain(static_cast<unsigned char>(text[i])))
        ++i;
    return i;
}

JsonWriter::JsonWriter(std::ostream& output)
    : out(output), heap(TakeBuffer(BUFFER_SIZE)),
      buffer(heap ? heap.get() : fallback), capacity(heap ? BUFFER_SIZE : FALLBACK_SIZE) {
    // Room for any nesting a document has, so that writing allocates
    // nothing: a document is closed whole even when memory has run out.
    open.reserve(NESTING_RESERVED);
}

JsonWriter::~JsonWriter() {
    if (used == 0)
        return;
    try {
        Drain();
    } catch (...) {
        // A failed write is the stream's to report; a destructor cannot.
    }
}

void JsonWriter::Drain() {
    out.write(buffer, static_cast<std::streamsize>(used));
    used = 0;
}

void JsonWriter::MakeRoom(std::size_t n) {
    // Pieces larger than the buffer go in by PutLong, never by a larger
    // buffer: nothing is allocated once the writer is built.
    if (n > capacity)
        throw std::logic_error("JSON piece larger than the writer's buffer");
    Drain();
}

void JsonWriter::NewLine(std::size_t depth) {
    char* at = At(1 + 2 * depth);
    at[0] = '\n';
    std::memset(at + 1, ' ', 2 * depth);
    used += 1 + 2 * depth;
}

void JsonWriter::Begin(bool object, bool oneLine, char openChar) {
    Separate();
    Put(openChar);
    // A container inside a one-line container is on that line too.
    const bool inLine = oneLine || (!open.empty() && open.back().oneLine);
    open.push_back(Level{object, inLine, true});
}

void JsonWriter::End(char closeChar) {
    if (open.empty())
        throw std::logic_error("JSON container closed twice");
    const Level level = open.back();
    open.pop_back();
    if (!level.empty && !level.oneLine)
        NewLine(open.size());
    Put(closeChar);
}

std::string JsonWriter::QuoteKey(std::string_view name) {
    std::string quoted(1, '"');
    AppendEscaped(name, quoted);
    quoted.append("\": ");
    return quoted;
}

void JsonWriter::Escape(std::string_view text) {
    // Most text is plain: it is copied as it is scanned, and goes in whole.
    if (text.size() <= capacity) {
        char* const at = At(text.size());
        if (PlainCopy(text, at) == text.size()) {
            used += text.size();
            return;
        }
    }
    // Something to escape, or more than the buffer holds: the copy begun is
    // left unused, and the text goes in piece by piece, nothing allocated.
    EscapeInto(text, [this](const char* piece, std::size_t n) { PutLong(piece, n); });
}

void JsonWriter::PutLong(const char* bytes, std::size_t n) {
    while (n > 0) {
        if (used == capacity)
            Drain();
        const std::size_t piece = n < capacity - used ? n : capacity - used;
        std::memcpy(buffer + used, bytes, piece);
        used += piece;
        bytes += piece;
        n -= piece;
    }
}

void JsonWriter::Quantity(std::string_view key, uint64_t value) {
    Key(key);
    Unsigned(value);
    if (value >= EXACT_DOUBLE_LIMIT) {
        char digits[24];
        const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
        Key(key, "_s");
        String(std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)));
    }
}

void JsonWriter::CloseTo(std::size_t depth) {
    if (afterKey)
        Null();
    while (open.size() > depth)
        End(open.back().object ? '}' : ']');
}

void JsonWriter::Finish() {
    if (!open.empty())
        throw std::logic_error("JSON document ended with open containers");
    Put('\n');
    Drain();
}

void JsonWriter::AppendEscaped(std::string_view text, std::string& out) {
    EscapeInto(text, [&out](const char* piece, std::size_t n) { out.append(piece, n); });
}

template <typename Emit> void JsonWriter::EscapeInto(std::string_view text, Emit emit) {
    std::size_t run = 0; // [run, i) needs no escape
    std::size_t i = 0;
    const std::size_t size = text.size();
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    while (i < size) {
        // Most text is plain: passed over without a test of its own per kind.
        i += PlainLength(text.substr(i));
        if (i == size)
            break;
        const unsigned char c = bytes[i];
        std::size_t length = 1;
        if (c >= 0x80) {
            length = ValidCharacterLength(text.substr(i));
            // A C1 control (U+0080 to U+009F) is escaped like the C0 ones,
            // so that the document is safe to show as it is.
            if (length > 1 && !(c == C1_LEAD && bytes[i + 1] <= C1_LAST)) {
                i += length;
                continue;
            }
        }
        emit(text.data() + run, i - run);
        if (c >= 0x80 && length == 0) {
            emit(REPLACEMENT, sizeof REPLACEMENT - 1);
            length = 1;
        } else if (c == '"' || c == '\\') {
            const char escaped[2] = {'\\', static_cast<char>(c)};
            emit(escaped, 2);
        } else if (c == '\n') {
            emit("\\n", 2);
        } else if (c == '\t') {
            emit("\\t", 2);
        } else if (c == '\r') {
            emit("\\r", 2);
        } else if (c == '\b') {
            emit("\\b", 2);
        } else if (c == '\f') {
            emit("\\f", 2);
        } else {
            // Other controls, DEL and the C1 controls: by their code point.
            const unsigned code = c >= 0x80 ? bytes[i + 1] : c;
            const char escaped[6] = {'\\', 'u', '0', '0', HEX_DIGITS[code >> 4],
                                     HEX_DIGITS[code & 0xF]};
            emit(escaped, 6);
        }
        i += length;
        run = i;
    }
    emit(text.data() + run, text.size() - run);
}

} // namespace QVS
