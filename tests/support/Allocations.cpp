#include "tests/support/Allocations.h"

#include <cstdlib>
#include <new>

// The C heap below this program's malloc(). A sanitizer brings its own, under a name of its own.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" void* __interceptor_malloc(size_t size) __attribute__((weak));
extern "C" void* __libc_malloc(size_t size);
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

// Malloc() is called before a sanitizer is up: nothing on its way may call into one.
#define BEFORE_SANITIZERS __attribute__((noinline, no_sanitize("address", "thread", "undefined")))

namespace {

thread_local size_t count = 0;
thread_local size_t untilFailure = 0;  // 0: none is to fail
thread_local test::Heap failing = test::Heap::None;
thread_local test::Heap failed = test::Heap::None;

/// Null where this allocation is the one that was asked to fail.
BEFORE_SANITIZERS void* allocate(size_t size, test::Heap heap) {
    ++count;
    const bool counts = untilFailure > 0 && (failing == test::Heap::None || failing == heap);
    if (counts && --untilFailure == 0) {
        failed = heap;
        return nullptr;
    }
    return __interceptor_malloc != nullptr ? __interceptor_malloc(size) : __libc_malloc(size);
}

}  // namespace

size_t test::allocations() { return count; }

void test::failAllocation(size_t nth, Heap of) {
    untilFailure = nth;
    failing = of;
    failed = Heap::None;
}

test::Heap test::failedAllocation() { return failed; }

extern "C" __attribute__((visibility("default"))) BEFORE_SANITIZERS void* malloc(size_t size) noexcept {
    return allocate(size, test::Heap::Malloc);
}

// Out of line, or the compiler takes a pair of them for malloc() with delete.
__attribute__((noinline)) void* operator new(size_t size) {
    if (void* memory = allocate(size > 0 ? size : 1, test::Heap::New)) return memory;
    throw std::bad_alloc();
}
__attribute__((noinline)) void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size > 0 ? size : 1, test::Heap::NothrowNew);
}
__attribute__((noinline)) void operator delete(void* memory) noexcept { std::free(memory); }
__attribute__((noinline)) void operator delete(void* memory, size_t) noexcept { std::free(memory); }
