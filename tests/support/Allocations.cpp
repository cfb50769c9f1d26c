#include "tests/support/Allocations.h"

#include <cstdlib>
#include <new>

static thread_local size_t count = 0;

size_t test::allocations() { return count; }

// Out of line, or the compiler takes a pair of them for malloc() with delete.
__attribute__((noinline)) void* operator new(size_t size) {
    ++count;
    if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}
__attribute__((noinline)) void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    ++count;
    return std::malloc(size > 0 ? size : 1);
}
__attribute__((noinline)) void operator delete(void* memory) noexcept { std::free(memory); }
__attribute__((noinline)) void operator delete(void* memory, size_t) noexcept { std::free(memory); }
