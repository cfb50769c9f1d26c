#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>

#include "utils/Singleton.h"

static std::atomic<int> made = 0;

struct OnlyOne : android::Singleton<OnlyOne> {
    OnlyOne() { ++made; }
};

ANDROID_SINGLETON_STATIC_INSTANCE(OnlyOne)

// Two threads that ask for a filter at once would each get one of their own.
TEST(Singleton, IsMadeOnceOnFirstUse) {
    EXPECT_EQ(OnlyOne::hasInstance(), made == 1);
    std::barrier<> start(2);
    const auto get = [&start] {
        start.arrive_and_wait();
        OnlyOne::getInstance();
    };
    std::thread other(get);
    get();
    other.join();
    EXPECT_EQ(made, 1);
    EXPECT_TRUE(OnlyOne::hasInstance());
}
