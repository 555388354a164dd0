// memoryReserve.h - a reserve of memory held back for the end of a document:
// when an allocation fails, the reserve is given up so that the piece being
// written can be finished, and the work stops at the next place where a
// document can be closed whole.
#ifndef UTIL_SUPPORT_MEMORYRESERVE_H
#define UTIL_SUPPORT_MEMORYRESERVE_H

#include <cstddef>

namespace QVS {

class MemoryReserve {
public:
    // What is held back: enough to finish a row or a member and to close
    // the document, whose writer allocates nothing once it is built.
    static constexpr std::size_t SIZE = 256 * 1024;

    // Takes the reserve and installs the new-handler that gives it up. The
    // handler throws std::bad_alloc once the reserve is gone, and the memory
    // given back is there for the exception itself. False when the reserve
    // cannot be had: memory is then too short even to throw.
    static bool Install();
    // At a place where the work can stop with its document whole: throws
    // std::bad_alloc when the reserve was given up and cannot be taken
    // again. A failure that passed (an allocation larger than what is left,
    // after which a smaller one would do) costs nothing more.
    // Nothing at all where no reserve was installed.
    static void Check() {
        if (installed && held == nullptr)
            Retake();
    }

private:
    static void Retake();
    static void GiveUp();

    static bool installed;
    static void* held;
};

} // namespace QVS

#endif
