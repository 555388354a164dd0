// line.cpp - the line writer's names.
#include "util/support/line.h"

namespace QVS {

Line& Line::WideName(const unsigned char* field, std::size_t units, int width, bool right) {
    if (bad)
        return *this;
    auto unitAt = [field](std::size_t i) {
        return static_cast<uint32_t>(field[2 * i] | (static_cast<uint32_t>(field[2 * i + 1]) << 8));
    };
    std::size_t count = 0;
    while (count < units && unitAt(count) != 0)
        ++count;
    if (right) {
        std::size_t length = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const uint32_t u = unitAt(i);
            length += u < 0x80 ? 1 : u < 0x800 ? 2 : 3;
        }
        Pad(length, width);
    }
    // Each unit on its own, as the report's names have always been shown (at
    // most three bytes each), into a buffer handed on in one piece.
    constexpr std::size_t CHUNK = 256;
    char decoded[3 * CHUNK];
    std::size_t written = 0;
    for (std::size_t start = 0; start < count; start += CHUNK) {
        std::size_t n = 0;
        for (std::size_t i = start; i < count && i < start + CHUNK; ++i)
            n += EncodeUtf8(unitAt(i), decoded + n);
        Put(decoded, n);
        written += n;
    }
    if (!right)
        Pad(written, width);
    return *this;
}

Line& Line::WideName(const unsigned short* units, int width) {
    if (bad || units == nullptr)
        return *this;
    std::size_t length = 0;
    char bytes[4];
    for (; *units != 0; ++units) {
        const std::size_t n = EncodeUtf8(*units, bytes);
        Put(bytes, n);
        length += n;
    }
    return Pad(length, width);
}

} // namespace QVS
