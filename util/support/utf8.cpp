// utf8.cpp - checks and the lossless text of names.
#include "util/support/utf8.h"

namespace QVS {

bool IsValidUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = ValidCharacterLength(text.substr(i));
        if (length == 0)
            return false;
        i += length;
    }
    return true;
}

std::string LosslessText(std::string_view name) {
    if (name.find('\\') == std::string_view::npos && IsValidUtf8(name))
        return std::string(name);
    static const char HEX[] = "0123456789abcdef";
    std::string text;
    text.reserve(name.size() + 8);
    std::size_t i = 0;
    while (i < name.size()) {
        const std::size_t length = ValidCharacterLength(name.substr(i));
        if (length == 0) {
            const unsigned char byte = static_cast<unsigned char>(name[i]);
            const char escape[] = {'\\', 'x', HEX[byte >> 4], HEX[byte & 0xF]};
            text.append(escape, sizeof escape);
            ++i;
        } else if (name[i] == '\\') {
            text += "\\\\";
            ++i;
        } else {
            text.append(name, i, length);
            i += length;
        }
    }
    return text;
}

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t length = ValidCharacterLength(text.substr(i));
        i += length == 0 ? 1 : length;
        ++width;
    }
    return width;
}

std::string EscapedCell(std::string_view name, bool backslash) {
    std::string cell;
    cell.reserve(name.size());
    for (const char c : name) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F || (backslash && c == '\\')) {
            const char escape[] = {'\\', static_cast<char>('0' + (byte >> 6)),
                                   static_cast<char>('0' + ((byte >> 3) & 7)),
                                   static_cast<char>('0' + (byte & 7))};
            cell.append(escape, sizeof escape);
        } else {
            cell += c;
        }
    }
    return cell;
}

} // namespace QVS
