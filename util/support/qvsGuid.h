// qvsGuid.h - 16-byte identifiers of pools and volumes: text forms, parsing,
// generation, validation and ordering.
#ifndef UTIL_SUPPORT_QVSGUID_H
#define UTIL_SUPPORT_QVSGUID_H

#include <cstdint>
#include <cstddef>
#include <ostream>

#pragma pack(push, 1)
struct GUID_t {
    uint32_t timeLow;
    uint16_t timeMid;
    uint16_t timeHighAndVersion;
    uint8_t clockSeqHighAndReserved;
    uint8_t clockSeqLow;
    uint8_t node[6];
};
#pragma pack(pop)
static_assert(sizeof(GUID_t) == 16, "GUID_t is 16 bytes on disk");
static_assert(offsetof(GUID_t, timeLow) == 0, "GUID_t layout");
static_assert(offsetof(GUID_t, timeMid) == 4, "GUID_t layout");
static_assert(offsetof(GUID_t, timeHighAndVersion) == 6, "GUID_t layout");
static_assert(offsetof(GUID_t, clockSeqHighAndReserved) == 8, "GUID_t layout");
static_assert(offsetof(GUID_t, clockSeqLow) == 9, "GUID_t layout");
static_assert(offsetof(GUID_t, node) == 10, "GUID_t layout");

namespace QVS {

extern const GUID_t zZERO_GUID;
extern const GUID_t zINVALID_GUID;
extern const GUID_t zADMINVOL_GUID;

// Generator state: process-wide and unguarded (one thread at a time).
extern uint64_t GUIDclockSeq;
extern uint8_t GUIDnode[6];
extern uint64_t GUIDsavedTime;
extern uint64_t GUIDinitDone;

// Characters of the text form "%08x-%04x-%04x-%02x-%02x-%02x%02x%02x%02x%02x%02x".
constexpr unsigned GUID_TEXT_LENGTH = 37;

unsigned LB_GUIDToString(const GUID_t* guid, unsigned int size, char* text);
unsigned LB_GUIDFromUTF8(const char* text, GUID_t* guid);
void LB_GUIDGenerate(GUID_t* guid);
bool LB_GUIDValidate(GUID_t* guid);
int LB_GUIDCompare(GUID_t* a, GUID_t* b);
void GUID_init();
uint64_t GUID_getTime();

} // namespace QVS

// Writes the 37-character text form. Restores the format flags but leaves the
// fill character at '0'.
std::ostream& operator<<(std::ostream& os, const GUID_t& guid);

#endif
