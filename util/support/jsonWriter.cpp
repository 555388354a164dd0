// jsonWriter.cpp - the streaming JSON writer.
#include "util/support/jsonWriter.h"

#include <charconv>
#include <stdexcept>

namespace QVS {

namespace {

const char HEX_DIGITS[] = "0123456789abcdef";
// U+FFFD in UTF-8: what a byte that begins no valid character becomes.
const char REPLACEMENT[] = "\xef\xbf\xbd";

// The length of the valid UTF-8 character that begins `text`, or 0.
std::size_t validCharacter(std::string_view text) {
    const unsigned char c = static_cast<unsigned char>(text[0]);
    std::size_t length;
    unsigned char low = 0x80, high = 0xBF; // the second byte's range
    if (c < 0x80)
        return 1;
    if (c >= 0xC2 && c <= 0xDF) {
        length = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        length = 3;
        if (c == 0xE0)
            low = 0xA0; // no overlong form
        else if (c == 0xED)
            high = 0x9F; // no surrogate
    } else if (c >= 0xF0 && c <= 0xF4) {
        length = 4;
        if (c == 0xF0)
            low = 0x90;
        else if (c == 0xF4)
            high = 0x8F; // nothing above U+10FFFF
    } else {
        return 0;
    }
    if (text.size() < length)
        return 0;
    const unsigned char second = static_cast<unsigned char>(text[1]);
    if (second < low || second > high)
        return 0;
    for (std::size_t i = 2; i < length; ++i)
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80)
            return 0;
    return length;
}

} // namespace

JsonWriter::JsonWriter(std::ostream& output) : out(output) {}

void JsonWriter::Raw(std::string_view text) {
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void JsonWriter::NewLine(std::size_t depth) {
    out.put('\n');
    for (std::size_t i = 0; i < depth; ++i)
        Raw("  ");
}

void JsonWriter::Separate() {
    if (afterKey) {
        afterKey = false;
        return;
    }
    if (open.empty())
        return;
    Level& level = open.back();
    if (!level.empty)
        out.put(',');
    if (level.oneLine) {
        if (!level.empty)
            out.put(' ');
    } else {
        NewLine(open.size());
    }
    level.empty = false;
}

void JsonWriter::Begin(bool object, bool oneLine, char openChar) {
    Separate();
    out.put(openChar);
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
    out.put(closeChar);
}

void JsonWriter::BeginObject(bool oneLine) { Begin(true, oneLine, '{'); }
void JsonWriter::EndObject() { End('}'); }
void JsonWriter::BeginArray(bool oneLine) { Begin(false, oneLine, '['); }
void JsonWriter::EndArray() { End(']'); }

void JsonWriter::Key(std::string_view name) {
    Separate();
    scratch.assign(1, '"');
    AppendEscaped(name, scratch);
    scratch.append("\": ");
    Raw(scratch);
    afterKey = true;
}

void JsonWriter::String(std::string_view utf8) {
    Separate();
    scratch.assign(1, '"');
    AppendEscaped(utf8, scratch);
    scratch.push_back('"');
    Raw(scratch);
}

void JsonWriter::Unsigned(uint64_t value) {
    Separate();
    char digits[24];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
    Raw(std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)));
}

void JsonWriter::Signed(int64_t value) {
    Separate();
    char digits[24];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
    Raw(std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)));
}

void JsonWriter::Bool(bool value) {
    Separate();
    Raw(value ? "true" : "false");
}

void JsonWriter::Null() {
    Separate();
    Raw("null");
}

void JsonWriter::Quantity(std::string_view key, uint64_t value) {
    Key(key);
    Unsigned(value);
    if (value >= EXACT_DOUBLE_LIMIT) {
        char digits[24];
        const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, value);
        std::string twin(key);
        twin += "_s";
        Member(twin, std::string_view(digits, static_cast<std::size_t>(result.ptr - digits)));
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
    out.put('\n');
}

void JsonWriter::AppendEscaped(std::string_view text, std::string& out) {
    std::size_t run = 0; // [run, i) needs no escape
    std::size_t i = 0;
    while (i < text.size()) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c < 0x80 && c != '"' && c != '\\') {
            ++i;
            continue;
        }
        if (c >= 0x80) {
            const std::size_t length = validCharacter(text.substr(i));
            if (length > 0) {
                i += length;
                continue;
            }
        }
        out.append(text.data() + run, i - run);
        if (c >= 0x80) {
            out.append(REPLACEMENT);
        } else if (c == '"' || c == '\\') {
            out.push_back('\\');
            out.push_back(static_cast<char>(c));
        } else if (c == '\n') {
            out.append("\\n");
        } else if (c == '\t') {
            out.append("\\t");
        } else if (c == '\r') {
            out.append("\\r");
        } else if (c == '\b') {
            out.append("\\b");
        } else if (c == '\f') {
            out.append("\\f");
        } else {
            out.append("\\u00");
            out.push_back(HEX_DIGITS[c >> 4]);
            out.push_back(HEX_DIGITS[c & 0xF]);
        }
        ++i;
        run = i;
    }
    out.append(text.data() + run, text.size() - run);
}

} // namespace QVS
