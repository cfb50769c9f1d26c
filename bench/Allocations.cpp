#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "bench/Counted.h"

// The heap's entry points stand in front of the C library's, for this program and every library that it loads.

namespace {

thread_local uint64_t count = 0;

}  // namespace

uint64_t bench::allocations() { return count; }

#pragma GCC visibility push(default)
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the C library's own names for what it does
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void* malloc(size_t size) {
    ++count;
    return __libc_malloc(size);
}
void* calloc(size_t number, size_t size) {
    ++count;
    return __libc_calloc(number, size);
}
void* realloc(void* memory, size_t size) {
    ++count;
    return __libc_realloc(memory, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
    ++count;
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, size_t alignment, size_t size) {
    ++count;
    *memory = __libc_memalign(alignment, size);
    return *memory != nullptr ? 0 : ENOMEM;
}

}  // extern "C"
#pragma GCC visibility pop
