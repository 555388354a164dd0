// allocations_testutil.h - counts the allocations of a test program while
// `counting` is set, for the tests of code that must allocate nothing (a
// document closed for a lack of memory, a destructor that may run while one
// unwinds). Included by one source of a test program: it replaces the
// program's operator new.
#ifndef TESTS_UNIT_ALLOCATIONS_TESTUTIL_H
#define TESTS_UNIT_ALLOCATIONS_TESTUTIL_H

#include <cstdlib>
#include <new>

namespace {
bool counting = false;
long allocations = 0;
} // namespace

void* operator new(std::size_t size) {
    if (counting)
        ++allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size))
        return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

#endif
