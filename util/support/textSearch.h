// textSearch.h - the substring searches of the rebuild log and of key="value"
// texts: the first occurrence of a short text (a tag, a key) inside a range.
//
// Millions of items are searched a few times each over a hundred bytes or so,
// and a whole log once in a while for a tag it may not hold; both are served
// by one search that tests sixteen places at a time against two bytes of the
// text. Everything is inline, so that a search is compiled where it is used,
// for its own text when that is a constant.
#ifndef UTIL_SUPPORT_TEXTSEARCH_H
#define UTIL_SUPPORT_TEXTSEARCH_H

#include "util/support/compiler.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace QVS {

// How rare a byte is in the texts searched: 0 for the most common. Bytes
// not listed (capitals above all) count as rarest. Only a search hint: any
// order finds the same.
struct ByteRarity_s {
    unsigned char rank[256];
    constexpr ByteRarity_s() : rank() {
        constexpr std::string_view byFrequency = " <>\"=/v\netaoinsh0123456789rdlcumwfgypbkjxqz";
        for (unsigned c = 0; c < 256; ++c)
            rank[c] = static_cast<unsigned char>(byFrequency.size());
        for (std::size_t i = 0; i < byFrequency.size(); ++i)
            rank[static_cast<unsigned char>(byFrequency[i])] = static_cast<unsigned char>(i);
    }
};
constexpr ByteRarity_s BYTE_RARITY;

// The place of the rarest byte after the first (the first is tested anyway).
constexpr std::size_t RarestByte(std::string_view text) {
    std::size_t best = text.size() > 1 ? 1 : 0;
    for (std::size_t i = 2; i < text.size(); ++i)
        if (BYTE_RARITY.rank[static_cast<unsigned char>(text[i])] >=
            BYTE_RARITY.rank[static_cast<unsigned char>(text[best])])
            best = i;
    return best;
}

// A text to search for, with the second byte that a search tests together
// with its first: its rarest one, so that few places pass both. A text
// known only at run time (a key) is tested by its first two bytes, which
// costs nothing to choose.
struct Needle {
    constexpr explicit Needle(std::string_view needle) : text(needle), second(RarestByte(needle)) {}
    constexpr Needle(std::string_view needle, std::size_t secondByte)
        : text(needle), second(secondByte < needle.size() ? secondByte : 0) {}
    std::string_view text;
    std::size_t second;
};

// The first and the last sizeof(Word) bytes of a and b compared, which
// covers n bytes from sizeof(Word) to twice that.
template <typename Word> QVS_INLINE bool SameEnds(const char* a, const char* b, std::size_t n) {
    Word a1, b1, a2, b2;
    std::memcpy(&a1, a, sizeof a1);
    std::memcpy(&b1, b, sizeof b1);
    std::memcpy(&a2, a + n - sizeof a2, sizeof a2);
    std::memcpy(&b2, b + n - sizeof b2, sizeof b2);
    return a1 == b1 && a2 == b2;
}

// memcmp(a, b, n) == 0 for the short texts of tags and keys, by overlapping
// words.
QVS_INLINE bool SameBytes(const char* a, const char* b, std::size_t n) {
    if (n >= 8 && n <= 16)
        return SameEnds<std::uint64_t>(a, b, n);
    if (n >= 4 && n < 8)
        return SameEnds<std::uint32_t>(a, b, n);
    if (n < 4) {
        for (std::size_t i = 0; i < n; ++i)
            if (a[i] != b[i])
                return false;
        return true;
    }
    return std::memcmp(a, b, n) == 0;
}

// The first place in [p, last] where `needle` starts, or null; `last` is the
// last place where the whole needle still fits.
QVS_INLINE const char* FindNeedle(const char* p, const char* last, const Needle& needle) {
    const char* wanted = needle.text.data();
    const std::size_t length = needle.text.size();
    if (length == 0)
        return p <= last ? p : nullptr;
    const std::size_t second = needle.second;
#ifdef __SSE2__
    if (length >= 2) {
        const __m128i firstBytes = _mm_set1_epi8(wanted[0]);
        const __m128i secondBytes = _mm_set1_epi8(wanted[second]);
        auto pairs = [&](const char* at) QVS_ALWAYS_INLINE {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + second));
            return _mm_and_si128(_mm_cmpeq_epi8(a, firstBytes), _mm_cmpeq_epi8(b, secondBytes));
        };
        // A load of sixteen places from p reads up to p + second + 15, which
        // is inside the text while p + 15 <= last. Sixty-four places are
        // filtered at once while none passes, which is almost everywhere.
        auto matchIn16 = [&](const char* at) QVS_ALWAYS_INLINE -> const char* {
            unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(pairs(at)));
            while (marks != 0) {
                const char* candidate = at + __builtin_ctz(marks);
                marks &= marks - 1;
                if (SameBytes(candidate, wanted, length))
                    return candidate;
            }
            return nullptr;
        };
        if (last - p >= 15) {
            // The first sixteen places on their own: a tag of an item is
            // most often near.
            if (const char* found = matchIn16(p))
                return found;
            for (p += 16; last - p >= 63; p += 64) {
                const __m128i any = _mm_or_si128(_mm_or_si128(pairs(p), pairs(p + 16)),
                                                 _mm_or_si128(pairs(p + 32), pairs(p + 48)));
                if (_mm_movemask_epi8(any) != 0)
                    for (const char* quarter = p; quarter < p + 64; quarter += 16)
                        if (const char* found = matchIn16(quarter))
                            return found;
            }
            for (; last - p >= 15; p += 16)
                if (const char* found = matchIn16(p))
                    return found;
            // The last places, fewer than sixteen, in one block that ends at
            // `last`: the places before them that it tests again hold no match.
            return p <= last ? matchIn16(last - 15) : nullptr;
        }
    }
#endif
    for (; p <= last; ++p)
        if (*p == wanted[0] && p[second] == wanted[second] && SameBytes(p, wanted, length))
            return p;
    return nullptr;
}

// The first occurrence of `needle` lying wholly inside [from, end) of `text`,
// or npos.
QVS_INLINE std::size_t FindIn(const char* text, std::size_t from, std::size_t end,
                              const Needle& needle) {
    if (from > end || end - from < needle.text.size())
        return std::string_view::npos;
    const char* found = FindNeedle(text + from, text + end - needle.text.size(), needle);
    return found ? static_cast<std::size_t>(found - text) : std::string_view::npos;
}

// The first `c` in [p, end), or null: memchr for the short distances inside
// one item, where a call costs more than the scan. The bytes up to
// `readable` (at or after `end`) may be read, which lets a short range be
// tested in one load.
QVS_INLINE const char* FindByte(const char* p, const char* end, char c,
                                const char* readable = nullptr) {
#ifdef __SSE2__
    const __m128i wanted = _mm_set1_epi8(c);
    auto marksAt = [&](const char* at) QVS_ALWAYS_INLINE {
        return static_cast<unsigned>(_mm_movemask_epi8(
            _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at)), wanted)));
    };
    if (end - p < 16 && readable != nullptr && readable - p >= 16) {
        const unsigned marks = marksAt(p) & ((1u << (end - p)) - 1);
        return marks != 0 ? p + __builtin_ctz(marks) : nullptr;
    }
    for (; end - p >= 16; p += 16)
        if (const unsigned marks = marksAt(p))
            return p + __builtin_ctz(marks);
#else
    (void)readable;
#endif
    for (; p < end; ++p)
        if (*p == c)
            return p;
    return nullptr;
}

// The first '"' or zero byte in [p, end), or null: the end of a quoted value
// in a text that a zero byte may end.
QVS_INLINE const char* FindQuoteOrZero(const char* p, const char* end) {
#ifdef __SSE2__
    const __m128i quotes = _mm_set1_epi8('"');
    const __m128i zeros = _mm_setzero_si128();
    for (; end - p >= 16; p += 16) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(
            _mm_or_si128(_mm_cmpeq_epi8(block, quotes), _mm_cmpeq_epi8(block, zeros))));
        if (marks != 0)
            return p + __builtin_ctz(marks);
    }
#endif
    for (; p < end; ++p)
        if (*p == '"' || *p == '\0')
            return p;
    return nullptr;
}

} // namespace QVS

#endif
