// What happens where memory runs out, through the exports of the built plug-in.

#include <android/log.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <map>

#include "platform/control/LogSink.h"
#include "tests/support/Allocations.h"
#include "tests/support/Phone.h"

namespace test {
namespace {

const Finger kOnSensor = finger(0).at(540, 2200), kSwipe = finger(0).at(540, 2145), kOther = finger(1).at(200, 600);

// A key that is held back must not be lost, sent by halves or lose its record where there is no memory to send it: it
// waits for the next frame that would send it, be it a lift-off or a second finger's.
TEST(Memory, AHeldBackKeyWaitsForItsRecords) {
    for (const Fingers& next : {kNone, Fingers{kOnSensor, kOther}}) {
        Phone phone;
        phone.touch(kOnSensor);
        ASSERT_TRUE(phone.after(60ms).key(513));
        for (const auto& [nth, which] : {std::pair(1, "down"), {2, "up"}}) {
            failAllocation(static_cast<size_t>(nth), Heap::Malloc);
            EXPECT_EQ(phone.after(20ms).touch(next), next);
            EXPECT_EQ(failedAllocation(), Heap::Malloc);
            EXPECT_TRUE(phone.sentKeys().empty());
            const std::string lost = std::string("ERROR handlePendingKey, allocNotifyKeyArgs for key-") + which;
            EXPECT_EQ(phone.log(), (Lines{"INFO handlePendingKey, force re-dispatch keyCode=513", lost + " failed"}));
        }
        EXPECT_EQ(phone.after(20ms).touch(next), next);
        EXPECT_EQ(phone.sentKeys().size(), 2u);
        EXPECT_EQ(phone.after(20ms).touch(next), next);
        EXPECT_TRUE(phone.sentKeys().empty()) << "sent twice";
    }
}

// Without memory for the last frame fingers are filtered as ever; the sensor's keys alone do not see where they are.
TEST(Memory, WithoutRoomForTheLastFrame) {
    failAllocation(1, Heap::NothrowNew);
    Phone phone;
    ASSERT_EQ(failedAllocation(), Heap::NothrowNew);
    EXPECT_EQ(phone.log(), (Lines{"INFO enabledAbt:true", "INFO version: 1.2, filterAllWindow: false"}))
        << "nothing of it is reported";
    phone.touch(kOther);
    EXPECT_TRUE(phone.key(516));
    EXPECT_EQ(phone.log(), Lines{"DEBUG During TouchSeq#1, new finger touch down on the FP, reset the wait state"});
    EXPECT_EQ(phone.after(20ms).touch({kOnSensor, kOther}), Fingers{kOther});
    EXPECT_EQ(phone.after(20ms).touch({kSwipe, kOther}), (Fingers{kOnSensor, kOther}));
    phone.lift();
    phone.rotate(1);
    phone.after(400ms).touch(finger(0).at(500, 500));
    EXPECT_FALSE(phone.key(501)) << "consumed for a finger in the middle of the screen";
}

/// Something for each filter, from the first call on.
void playAll() {
    Phone phone({{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"},
                 {"ro.config.zq_hall_prop", "1"},
                 {"ro.config.zq_notch_size", "0,80,0,0"}});
    phone.start();
    phone.show({navigationBar(), {.name = "Map", .notchArea = true}});
    phone.show({navigationBar(false)});
    phone.after(400ms).key(516);
    phone.after(50ms).touch(kOnSensor);
    EXPECT_EQ(phone.after(20ms).touch(kSwipe), Fingers{kOnSensor});
    phone.lift();
    phone.after(400ms).touch(kOnSensor);
    EXPECT_TRUE(phone.after(60ms).key(513));
    phone.after(20ms).lift();
    EXPECT_EQ(phone.sentKeys().size(), 2u);
    phone.rotate(1);
    EXPECT_EQ(phone.touch({finger(0).at(500, 50), kOther}), Fingers{kOther});
    phone.lift();
    phone.coverMoves(0);
    phone.touch(kOther);
    phone.after(20ms).coverMoves(2);
    EXPECT_EQ(phone.touch(kOther), kNone);
    phone.lift();
    EXPECT_EQ(phone.reports().size(), 1u);
    phone.service(refhost::SensorService::State::Dies);
    phone.service(refhost::SensorService::State::Registers);
    phone.exit();
}

enum Outcome { kWentOn = 1, kWasSpared, kHostsOwn, kEnded };

/// How a process goes in which the nth allocation by operator new fails, or what killed it.
int outcome(size_t nth) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(60);  // or who waits for ever would hold up the tests
        std::set_terminate([] { _exit(failedAllocation() == Heap::New ? kEnded : 0); });
        failAllocation(nth, Heap::New);
        try {
            playAll();
        } catch (const std::bad_alloc&) {
            _exit(kHostsOwn);  // thrown and caught outside of the plug-in: it would have ended at an export
        }
        _exit(testing::Test::HasFailure() ? 0 : failedAllocation() == Heap::New ? kWentOn : kWasSpared);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// Where the plug-in cannot go on without memory, the input service ends at once and in good order: it never goes on
// with half a decision, and never meets a dead lock or a wild pointer.
TEST(Memory, WhereverItRunsOut) {
    aftplatform::setMinimumLogPriority(ANDROID_LOG_ERROR);
    const refhost::Plugin loaded(ZQAFT_PLUGIN_UNDER_TEST);  // its start is not what is looked at
    std::map<int, std::vector<size_t>> how;                 // judged at the end: a child would take a failure over
    for (size_t nth = 1; how[kWasSpared].empty() && nth < 5000; ++nth) how[outcome(nth)].push_back(nth);
    EXPECT_EQ(how[kWasSpared].size(), 1u);
    EXPECT_GT(how[kEnded].size(), 20u);
    for (const auto& [outcome, of] : how) {
        EXPECT_TRUE(outcome >= kWasSpared) << outcome << " at allocations " << testing::PrintToString(of);
    }
}

}  // namespace
}  // namespace test
