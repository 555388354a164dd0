// memoryReserve.cpp - the reserve of memory behind the new-handler.
#include "util/support/memoryReserve.h"

#include <cstdlib>
#include <new>

namespace QVS {

bool MemoryReserve::installed = false;
void* MemoryReserve::held = nullptr;

bool MemoryReserve::Install() {
    if (held == nullptr)
        held = std::malloc(SIZE);
    if (held == nullptr)
        return false;
    installed = true;
    std::set_new_handler(GiveUp);
    return true;
}

// Called by operator new when an allocation fails: the first time the
// reserve is freed and the allocation tried again; then it fails for good.
void MemoryReserve::GiveUp() {
    if (held == nullptr)
        throw std::bad_alloc();
    std::free(held);
    held = nullptr;
}

void MemoryReserve::Retake() {
    // malloc, not new: a failure here must not come back to the handler.
    held = std::malloc(SIZE);
    if (held == nullptr)
        throw std::bad_alloc();
}

} // namespace QVS
