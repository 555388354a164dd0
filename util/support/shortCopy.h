// shortCopy.h - a copy without the call a memcpy of unknown length costs
// where it is short: the writers' pieces (keys, numbers, marks, short names)
// are, and are copied millions of times.
#ifndef UTIL_SUPPORT_SHORTCOPY_H
#define UTIL_SUPPORT_SHORTCOPY_H

#include "util/support/compiler.h"

#include <cstddef>
#include <cstring>

namespace QVS {

// N bytes through a local, so the compiler makes one load and one store.
template <std::size_t N> QVS_INLINE void CopyExactly(char* to, const char* from) {
    char bytes[N];
    std::memcpy(bytes, from, N);
    std::memcpy(to, bytes, N);
}

// Up to 32 bytes in two overlapping moves of the largest width that fits;
// more by memcpy.
QVS_INLINE void CopyShort(char* to, const char* from, std::size_t n) {
    if (n > 32) {
        std::memcpy(to, from, n);
    } else if (n >= 16) {
        CopyExactly<16>(to, from);
        CopyExactly<16>(to + n - 16, from + n - 16);
    } else if (n >= 8) {
        CopyExactly<8>(to, from);
        CopyExactly<8>(to + n - 8, from + n - 8);
    } else if (n >= 4) {
        CopyExactly<4>(to, from);
        CopyExactly<4>(to + n - 4, from + n - 4);
    } else if (n > 0) {
        to[0] = from[0];
        to[n / 2] = from[n / 2];
        to[n - 1] = from[n - 1];
    }
}

} // namespace QVS

#endif
