// qvsGuid.cpp - GUID text forms, parsing, generation, validation, ordering.
#include "util/support/qvsGuid.h"

#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iomanip>

namespace QVS {

const GUID_t zZERO_GUID = {0, 0, 0, 0, 0, {0, 0, 0, 0, 0, 0}};
// Deliberately the same bytes as zZERO_GUID.
const GUID_t zINVALID_GUID = {0, 0, 0, 0, 0, {0, 0, 0, 0, 0, 0}};
const GUID_t zADMINVOL_GUID = {0xFFFFFFFFu, 0xFFFF, 0xFFFF, 0xFF, 0xFF,
                               {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}};

uint64_t GUIDclockSeq = 0;
uint8_t GUIDnode[6] = {0, 0, 0, 0, 0, 0};
uint64_t GUIDsavedTime = 0;
uint64_t GUIDinitDone = 0;

unsigned LB_GUIDToString(const GUID_t* guid, unsigned int size, char* text) {
    if (size <= GUID_TEXT_LENGTH) {
        if (size > 0)
            text[0] = '\0';
        return zERR_BUFFER_TOO_SMALL;
    }
    std::snprintf(text, size, "%08x-%04x-%04x-%02x-%02x-%02x%02x%02x%02x%02x%02x",
                  guid->timeLow, guid->timeMid, guid->timeHighAndVersion,
                  guid->clockSeqHighAndReserved, guid->clockSeqLow, guid->node[0],
                  guid->node[1], guid->node[2], guid->node[3], guid->node[4], guid->node[5]);
    return 0;
}

namespace {

// A group must begin with a hexadecimal digit, and the base-16 conversion
// must consume exactly `width` characters.
bool hexGroup(const char*& p, unsigned width, uint64_t& value) {
    if (!std::isxdigit(static_cast<unsigned char>(*p)))
        return false;
    char* end = nullptr;
    value = std::strtoull(p, &end, 16);
    if (end != p + width)
        return false;
    p = end;
    return true;
}

bool dash(const char*& p) {
    if (*p != '-')
        return false;
    ++p;
    return true;
}

} // namespace

unsigned LB_GUIDFromUTF8(const char* text, GUID_t* guid) {
    if (text == nullptr)
        return zERR_INVALID_VOLUME_ID;
    size_t len = std::strlen(text);
    if (len != 37 && len != 36)
        return zERR_INVALID_VOLUME_ID;
    const char* p = text;
    uint64_t v = 0;
    if (!hexGroup(p, 8, v))
        return zERR_INVALID_VOLUME_ID;
    guid->timeLow = static_cast<uint32_t>(v);
    if (!dash(p) || !hexGroup(p, 4, v))
        return zERR_INVALID_VOLUME_ID;
    guid->timeMid = static_cast<uint16_t>(v);
    if (!dash(p) || !hexGroup(p, 4, v))
        return zERR_INVALID_VOLUME_ID;
    guid->timeHighAndVersion = static_cast<uint16_t>(v);
    if (!dash(p))
        return zERR_INVALID_VOLUME_ID;
    if (len == 37) {
        if (!hexGroup(p, 2, v))
            return zERR_INVALID_VOLUME_ID;
        guid->clockSeqHighAndReserved = static_cast<uint8_t>(v);
        if (!dash(p) || !hexGroup(p, 2, v))
            return zERR_INVALID_VOLUME_ID;
        guid->clockSeqLow = static_cast<uint8_t>(v);
    } else {
        if (!hexGroup(p, 4, v))
            return zERR_INVALID_VOLUME_ID;
        guid->clockSeqHighAndReserved = static_cast<uint8_t>(v >> 8);
        guid->clockSeqLow = static_cast<uint8_t>(v);
    }
    if (!dash(p) || !hexGroup(p, 12, v))
        return zERR_INVALID_VOLUME_ID;
    for (int i = 5; i >= 0; --i) {
        guid->node[i] = static_cast<uint8_t>(v);
        v >>= 8;
    }
    return 0;
}

uint64_t GUID_getTime() {
    uint32_t seconds = static_cast<uint32_t>(GetUTCTime());
    return static_cast<uint64_t>(seconds) * 10000000ull + 0x01B21DD213814000ull;
}

void GUID_init() {
    std::srand(static_cast<unsigned>(GetUTCTime()));
    for (auto& b : GUIDnode)
        b = static_cast<uint8_t>(std::rand() & 0xFF);
    GUIDinitDone = 1;
}

void LB_GUIDGenerate(GUID_t* guid) {
    if (GUIDinitDone == 0)
        GUID_init();
    uint64_t t = GUID_getTime();
    if (t <= GUIDsavedTime) {
        GUIDclockSeq = (GUIDclockSeq + 1) & 0x3FFF;
        // The timestamp may repeat; only a wrapped sequence moves it on.
        if (GUIDclockSeq == 0)
            t = GUIDsavedTime + 1;
    }
    GUIDsavedTime = t;
    guid->timeLow = static_cast<uint32_t>(t);
    guid->timeMid = static_cast<uint16_t>(t >> 32);
    guid->timeHighAndVersion = static_cast<uint16_t>((t >> 48) & 0x0FFF);
    guid->clockSeqHighAndReserved = static_cast<uint8_t>(((GUIDclockSeq >> 8) & 0x3F) | 0x80);
    guid->clockSeqLow = static_cast<uint8_t>(GUIDclockSeq & 0xFF);
    std::memcpy(guid->node, GUIDnode, sizeof guid->node);
}

bool LB_GUIDValidate(GUID_t* guid) {
    return (guid->clockSeqHighAndReserved & 0xC0) == 0x80 && guid->timeHighAndVersion < 4096;
}

int LB_GUIDCompare(GUID_t* a, GUID_t* b) {
    // Four little-endian words as the bytes lie: not the order of the text form.
    const unsigned char* pa = reinterpret_cast<const unsigned char*>(a);
    const unsigned char* pb = reinterpret_cast<const unsigned char*>(b);
    for (int w = 0; w < 4; ++w) {
        uint32_t wa = 0, wb = 0;
        for (int i = 3; i >= 0; --i) {
            wa = (wa << 8) | pa[w * 4 + i];
            wb = (wb << 8) | pb[w * 4 + i];
        }
        if (wa != wb)
            return wa > wb ? 1 : -1;
    }
    return 0;
}

} // namespace QVS

std::ostream& operator<<(std::ostream& os, const GUID_t& guid) {
    // Whatever an earlier writer left set (adjustment, case, base prefix,
    // sign) must not change the text; the flags are restored below.
    std::ios_base::fmtflags saved = os.flags();
    os << std::hex << std::noshowbase << std::nouppercase << std::noshowpos << std::right
       << std::setfill('0');
    os << std::setw(8) << guid.timeLow << "-" << std::setw(4) << guid.timeMid << "-"
       << std::setw(4) << guid.timeHighAndVersion << "-" << std::setw(2)
       << unsigned(guid.clockSeqHighAndReserved) << "-" << std::setw(2)
       << unsigned(guid.clockSeqLow) << "-";
    for (uint8_t b : guid.node)
        os << std::setw(2) << unsigned(b);
    os.flags(saved);
    return os;
}
