#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <string>
#include <thread>

#include "utils/RefBase.h"

namespace {

using android::RefBase;
using android::sp;
using android::wp;

// Writes down what happens to it.
struct Witness : virtual RefBase {
    explicit Witness(std::string& text) : story(text) {}
    ~Witness() override { story += "deleted "; }
    void onFirstRef() override { story += "first "; }
    void onLastStrongRef(const void*) override { story += "last "; }
    std::string& story;
};

struct Side {
    virtual ~Side() = default;
};
struct Derived : Side, Witness {
    using Witness::Witness;
};

// A listener would be told twice, too late, or after it is gone; a late callback would reach freed memory.
TEST(RefBase, LivesFromTheFirstStrongReferenceToTheLast) {
    std::string story;
    auto* object = new Witness(story);
    sp<Witness> a = object;
    EXPECT_EQ(story, "first ");
    const wp<Witness> weak = a, same = weak;
    sp<Witness> b = a, c = std::move(a);
    EXPECT_EQ(object->getStrongCount(), 2);
    EXPECT_TRUE(a == nullptr && b == c && c == object && weak.promote() == b);
    b.clear();
    EXPECT_EQ(story, "first ");
    c = nullptr;
    EXPECT_EQ(story, "first last deleted ");
    EXPECT_EQ(weak.promote(), nullptr);
    EXPECT_TRUE(weak == same && weak != nullptr);
}

// A reference to a base class would count, delete or compare another object than the one it was made of.
TEST(RefBase, ConvertsAcrossVirtualAndSecondBases) {
    std::string story;
    sp<Derived> derived = new Derived(story);
    sp<Witness> base = derived;
    wp<RefBase> weak = sp<RefBase>(base);
    EXPECT_TRUE(base == derived && weak == sp<RefBase>(derived));
    EXPECT_EQ(derived->getWeakRefs()->getWeakCount(), 3);
    EXPECT_EQ(dynamic_cast<Derived*>(weak.promote().get()), derived.get());
    derived.clear();
    base = sp<Derived>();
    EXPECT_EQ(story, "first last deleted ");
}

// An object made and never used would leak, or be deleted twice.
TEST(RefBase, AnObjectNeverHeldGoesByDeleteOrWithItsLastWeakReference) {
    std::string story;
    auto* object = new Witness(story);
    const wp<Witness> left = object;
    delete object;
    EXPECT_EQ(left.promote(), nullptr);
    { const wp<Witness> weak = new Witness(story); }
    EXPECT_EQ(story, "deleted deleted ");
    { const sp<Witness> promoted = wp<Witness>(new Witness(story)).promote(); }
    EXPECT_EQ(story, "deleted deleted first last deleted ");
}

struct Counted : RefBase {
    explicit Counted(std::atomic<int>& count) : alive(count) { ++alive; }
    ~Counted() override { --alive; }
    std::atomic<int>& alive;
};

// Two threads that hold one object would delete it early, twice or never.
TEST(RefBaseThreads, CountsHoldUnderTwoThreads) {
    std::atomic<int> alive = 0;
    sp<Counted> shared = new Counted(alive);
    auto copyMany = [own = shared] {
        for (int i = 0; i < 20000; ++i) ASSERT_NE(wp<Counted>(sp<Counted>(own)).promote(), nullptr);
    };
    std::thread other(copyMany);
    copyMany();
    other.join();
    EXPECT_EQ(shared->getWeakRefs()->getWeakCount(), shared->getStrongCount());
    EXPECT_EQ(alive, 1);
}

// A death notice that arrives while the last holder lets go would reach an object half destroyed.
TEST(RefBaseThreads, PromoteRacesWithTheLastRelease) {
    std::atomic<int> alive = 0;
    std::barrier<> step(2);
    wp<Counted> handed;
    constexpr int kRounds = 3000;
    std::thread promoter([&] {
        for (int i = 0; i < kRounds; ++i) {
            step.arrive_and_wait();
            wp<Counted> weak = handed;
            step.arrive_and_wait();
            sp<Counted> strong = weak.promote();
            EXPECT_TRUE(strong == nullptr || strong->alive == 1);
            weak.clear();
            strong.clear();
            step.arrive_and_wait();
        }
    });
    for (int i = 0; i < kRounds; ++i) {
        sp<Counted> last = new Counted(alive);
        handed = last;
        step.arrive_and_wait();
        step.arrive_and_wait();
        handed.clear();
        last.clear();
        step.arrive_and_wait();
        EXPECT_EQ(alive, 0);
    }
    promoter.join();
}

}  // namespace
