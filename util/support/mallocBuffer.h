// mallocBuffer.h - a buffer taken with malloc, for the writers that fall
// back to a small buffer of their own when memory is short: `new
// (std::nothrow)` reports a failure by throwing inside the library, and a
// throw needs memory of its own, which may be just what is missing.
#ifndef UTIL_SUPPORT_MALLOCBUFFER_H
#define UTIL_SUPPORT_MALLOCBUFFER_H

#include <cstdlib>
#include <memory>

namespace QVS {

struct FreeBuffer {
    void operator()(char* buffer) const { std::free(buffer); }
};
using MallocBuffer = std::unique_ptr<char[], FreeBuffer>;

// `size` bytes, or null when they cannot be had.
inline MallocBuffer TakeBuffer(std::size_t size) {
    return MallocBuffer(static_cast<char*>(std::malloc(size)));
}

} // namespace QVS

#endif
