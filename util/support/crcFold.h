// crcFold.h - the CRC-32 of updateCRC (reflected polynomial 0xEDB88320) by
// carry-less multiplication, folding 64 bytes at a step, where the processor
// has the instruction: the same value as the tables give, several times as
// fast over a whole report.
#ifndef UTIL_SUPPORT_CRCFOLD_H
#define UTIL_SUPPORT_CRCFOLD_H

#include <cstddef>

namespace QVS {

// Whether FoldCrc can be used on this processor.
bool CrcFoldAvailable();

// The CRC register after `length` bytes (at least 64, a multiple of 16),
// from the register `crc` (not complemented, as updateCRC keeps it).
unsigned FoldCrc(unsigned crc, const unsigned char* data, std::size_t length);

// The smallest length FoldCrc takes.
constexpr std::size_t CRC_FOLD_MINIMUM = 64;

} // namespace QVS

#endif
