#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "android/log.h"
#include "platform/control/LogSink.h"
#include "utils/String8.h"

// Counts what this program and the libraries that it loaded allocate.
static thread_local size_t allocations = 0;

void* operator new(size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

// A report or a line made anew in each frame would bring the allocator into every frame.
TEST(Allocation, NoneForTextThatFitsItsStorage) {
    auto text = android::String8::format("%0300d", 0);
    text.clear();
    size_t logged = 0;
    aftplatform::setLogSink([&logged](const aftplatform::LogLine& line) { logged = line.text.size(); });
    const size_t before = allocations;
    text.appendFormat("%0200d", 1);
    text.appendFormat("%0100d", 2);
    __android_log_print(ANDROID_LOG_INFO, "ATagLongerThanAnyShortString", "%s", text.c_str());
    EXPECT_EQ(allocations, before);
    aftplatform::setLogSink(nullptr);
    EXPECT_GT(before, 0u);
    EXPECT_EQ(logged, 300u);
}
