#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "utils/RefBase.h"
#include "utils/Singleton.h"

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

// A listener would be told twice, too late, or after it is gone; a late callback would reach freed memory; a reference
// to a virtual base would count or compare another object.
TEST(RefBase, LivesFromTheFirstStrongReferenceToTheLast) {
    std::string story;
    auto* object = new Witness(story);
    sp<Witness> a = object;
    const wp<Witness> weak = a, same = weak;
    sp<RefBase> base = a;
    sp<Witness> b = std::move(a);
    EXPECT_EQ(object->getStrongCount(), 2);
    EXPECT_EQ(object->getWeakRefs()->getWeakCount(), 4);
    EXPECT_TRUE(a == nullptr && b == object && base == b && weak.promote() == b && wp<RefBase>(b) == base);
    b = nullptr;
    EXPECT_EQ(story, "first ");
    base.clear();
    EXPECT_EQ(story, "first last deleted ");
    EXPECT_EQ(weak.promote(), nullptr);
    EXPECT_TRUE(weak == same && weak != nullptr);
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

// Two threads that hold one object, or a death notice that arrives while the last holder lets go, would delete it
// early, twice or never.
TEST(RefBase, TwoThreadsCopyPromoteAndRelease) {
    std::string life;
    const sp<Witness> shared = new Witness(life);
    const auto copyShared = [&shared] {
        for (int i = 0; i < 200; ++i) ASSERT_NE(wp<Witness>(sp<Witness>(shared)).promote(), nullptr);
    };
    std::vector<std::string> stories(3000);
    std::vector<sp<Witness>> held;
    std::vector<wp<Witness>> handed;
    for (std::string& story : stories) handed.emplace_back(held.emplace_back(new Witness(story)));
    std::barrier<> round(2);
    std::thread promoter([&] {
        for (wp<Witness>& weak : handed) {
            round.arrive_and_wait();
            const sp<Witness> strong = std::exchange(weak, nullptr).promote();
            EXPECT_TRUE(strong == nullptr || strong->story == "first ");
            copyShared();
        }
    });
    for (sp<Witness>& last : held) {
        round.arrive_and_wait();
        last.clear();
        copyShared();
    }
    promoter.join();
    for (const std::string& story : stories) EXPECT_EQ(story, "first last deleted ");
    EXPECT_TRUE(shared->getStrongCount() == 1 && shared->getWeakRefs()->getWeakCount() == 1 && life == "first ");
}

struct OnlyOne : android::Singleton<OnlyOne> {
    OnlyOne() { ++made; }
    static inline std::atomic<int> made = 0;
};

}  // namespace

ANDROID_SINGLETON_STATIC_INSTANCE(OnlyOne)

// Two threads that ask for a filter at once would each get one of their own.
TEST(Singleton, IsMadeOnceOnFirstUse) {
    std::barrier<> start(2);
    const auto get = [&start] {
        start.arrive_and_wait();
        OnlyOne::getInstance();
    };
    std::thread other(get);
    get();
    other.join();
    EXPECT_TRUE(OnlyOne::hasInstance() && OnlyOne::made == 1);
}
