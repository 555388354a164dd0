// crcFold.cpp - CRC-32 by carry-less multiplication ("Fast CRC Computation
// for Generic Polynomials Using PCLMULQDQ", Intel, 2009): four 128-bit
// lanes folded forward 512 bits at a time, then into one lane, then 16
// bytes at a time, then to 64 bits and a Barrett reduction to 32. The
// constants are those of the bit-reflected polynomial: x^(4*128+32),
// x^(4*128-32), x^(128+32), x^(128-32) and x^64 modulo P, then P and mu.
#include "util/support/crcFold.h"

#if defined(__x86_64__) || defined(__i386__)

#include <cstdint>
#include <immintrin.h>

namespace QVS {

namespace {

alignas(16) const uint64_t K1K2[2] = {0x0154442bd4ull, 0x01c6e41596ull};
alignas(16) const uint64_t K3K4[2] = {0x01751997d0ull, 0x00ccaa009eull};
alignas(16) const uint64_t K5K0[2] = {0x0163cd6124ull, 0x0000000000ull};
alignas(16) const uint64_t POLY_MU[2] = {0x01db710641ull, 0x01f7011641ull};

__attribute__((target("pclmul,sse4.1"))) __m128i load(const unsigned char* at) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
}

// One lane folded forward over the next 128 bits of `into`.
__attribute__((target("pclmul,sse4.1"))) __m128i fold(__m128i lane, __m128i constants,
                                                       __m128i into) {
    const __m128i low = _mm_clmulepi64_si128(lane, constants, 0x00);
    const __m128i high = _mm_clmulepi64_si128(lane, constants, 0x11);
    return _mm_xor_si128(_mm_xor_si128(high, low), into);
}

} // namespace

bool CrcFoldAvailable() {
    static const bool available =
        __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    return available;
}

__attribute__((target("pclmul,sse4.1"))) unsigned FoldCrc(unsigned crc, const unsigned char* data,
                                                          std::size_t length) {
    __m128i x1 = load(data);
    __m128i x2 = load(data + 16);
    __m128i x3 = load(data + 32);
    __m128i x4 = load(data + 48);
    x1 = _mm_xor_si128(x1, _mm_cvtsi32_si128(static_cast<int>(crc)));
    data += 64;
    length -= 64;

    __m128i k = _mm_load_si128(reinterpret_cast<const __m128i*>(K1K2));
    for (; length >= 64; data += 64, length -= 64) {
        x1 = fold(x1, k, load(data));
        x2 = fold(x2, k, load(data + 16));
        x3 = fold(x3, k, load(data + 32));
        x4 = fold(x4, k, load(data + 48));
    }

    k = _mm_load_si128(reinterpret_cast<const __m128i*>(K3K4));
    x1 = fold(x1, k, x2);
    x1 = fold(x1, k, x3);
    x1 = fold(x1, k, x4);
    for (; length >= 16; data += 16, length -= 16)
        x1 = fold(x1, k, load(data));

    // 128 bits to 64.
    const __m128i mask = _mm_setr_epi32(~0, 0, ~0, 0);
    __m128i x = _mm_clmulepi64_si128(x1, k, 0x10);
    x1 = _mm_xor_si128(_mm_srli_si128(x1, 8), x);
    k = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(K5K0));
    x = _mm_srli_si128(x1, 4);
    x1 = _mm_clmulepi64_si128(_mm_and_si128(x1, mask), k, 0x00);
    x1 = _mm_xor_si128(x1, x);

    // Barrett reduction to 32 bits.
    k = _mm_load_si128(reinterpret_cast<const __m128i*>(POLY_MU));
    x = _mm_clmulepi64_si128(_mm_and_si128(x1, mask), k, 0x10);
    x = _mm_clmulepi64_si128(_mm_and_si128(x, mask), k, 0x00);
    x1 = _mm_xor_si128(x1, x);
    return static_cast<unsigned>(_mm_extract_epi32(x1, 1));
}

} // namespace QVS

#else

namespace QVS {

bool CrcFoldAvailable() { return false; }
unsigned FoldCrc(unsigned crc, const unsigned char*, std::size_t) { return crc; }

} // namespace QVS

#endif
