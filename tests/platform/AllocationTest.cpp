#include <gtest/gtest.h>

#include "android/log.h"
#include "platform/control/LogSink.h"
#include "tests/support/Allocations.h"
#include "utils/String8.h"

// A report or a line made anew in each frame would bring the allocator into every frame.
TEST(Allocation, NoneForTextThatFitsItsStorage) {
    auto text = android::String8::format("%0300d", 0);
    text.clear();
    size_t logged = 0;
    aftplatform::setLogSink([&logged](const aftplatform::LogLine& line) { logged = line.text.size(); });
    const size_t before = test::allocations();
    text.appendFormat("%0200d", 1);
    text.appendFormat("%0100d", 2);
    __android_log_print(ANDROID_LOG_INFO, "ATagLongerThanAnyShortString", "%s", text.c_str());
    EXPECT_EQ(test::allocations(), before);
    aftplatform::setLogSink(nullptr);
    EXPECT_GT(before, 0u);
    EXPECT_EQ(logged, 300u);
}
