// A slide cover that moves under a finger, through the exports of the built plug-in.

#include <cmath>

#include "platform/control/Properties.h"
#include "tests/support/Phone.h"

namespace test {
namespace {

using aftplatform::sensors::Call;
using aftplatform::sensors::Fault;
using State = refhost::SensorService::State;
using Lines = std::vector<std::string>;

const Phone::Properties kHall = {{"ro.config.zq_hall_prop", "1"}};
const Finger kFinger = finger(0).at(540, 1200);

/// A slider phone whose cover is in state 0.
struct Slider : Phone {
    explicit Slider(const Properties& properties = kHall) : Phone(properties) {
        start();
        coverMoves(0);
    }

    /// What the filter alone logged.
    Lines told() const { return log("ZqSCAftProcessor"); }

    /// The reports of the last call.
    Lines reported() const {
        Lines texts;
        for (const refhost::Report& report : reports()) texts.push_back(std::to_string(report.event) + report.text);
        return texts;
    }
};

/// What the filter and its state manager logged, in order.
Lines coverLog(const Phone& phone) {
    Lines lines = phone.wholeLog();
    std::erase_if(lines, [](const std::string& line) {
        return line.find(" ZqSCAft") == std::string::npos && line.find(" ZqAftSC") == std::string::npos;
    });
    return lines;
}

// Whoever moves the cover has a thumb on the screen: its gesture is cancelled once and gone until all fingers are up,
// and the host is told what it was. The next gesture is the user's again.
TEST(SlideCover, AChangeUnderAFingerEndsItsGesture) {
    Slider phone;
    const Finger higher = finger(5).at(9, 9), lower = finger(2).at(540, 1200);
    EXPECT_EQ(phone.touch({higher, lower}), (Fingers{higher, lower}));
    EXPECT_EQ(phone.after(100ms).touch(higher), Fingers{higher});
    phone.after(20ms).coverMoves(2);
    EXPECT_EQ(phone.after(8ms).touch({higher, lower}), kNone);
    EXPECT_EQ(phone.cancels(), 1u);
    EXPECT_EQ(phone.told(), Lines{"INFO mCurState.state=2, preState=0, preSlideTime=120, need to cancel touch."});
    EXPECT_EQ(phone.after(8ms).touch({higher, lower.at(560, 900)}), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(phone.told(), Lines{});
    phone.lift();
    const std::string text = "{time:120, Firstpoint(540,1200), LastPoint(560,900), state:2}";
    EXPECT_EQ(phone.reported(), Lines{"651" + text});
    EXPECT_EQ(phone.told(), Lines{"INFO reportFirstPointData() eventid=651, eventMsg={" + text + "}"});
    phone.lift();
    EXPECT_EQ(phone.reported(), Lines{}) << "told twice";
    EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger});
    phone.lift();
    EXPECT_EQ(phone.reported(), Lines{}) << "nothing happened in this one";

    phone.touch(kFinger.at(1, 2));
    phone.after(7ms).coverMoves(0);
    phone.touch(kFinger);
    phone.lift();
    EXPECT_EQ(phone.reported(), Lines{"651{time:7, Firstpoint(1,2), LastPoint(560,900), state:0}"})
        << "cancelled in its last frame, it has the last point of the gesture before";
}

// Only what lies between two frames' looks at the cover counts: there and back is no change.
TEST(SlideCover, ThereAndBackGoesUnnoticed) {
    Slider phone;
    phone.touch(kFinger);
    phone.coverMoves(2);
    phone.coverMoves(0);
    EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger});
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(phone.told(), Lines{});
    phone.lift();
    phone.coverMoves(1);
    for (int frame = 0; frame < 2; ++frame) EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger}) << "a change between";
}

// In state 1 the cover is at rest after three seconds, to the nanosecond, and fingers count again; never in another.
TEST(SlideCover, AtRestFingersCountAgain) {
    struct Case {
        float from, to;
        std::chrono::nanoseconds since;
        bool passes;
    };
    for (const Case& c : {Case{0, 1, 2'999'999'999ns, false}, Case{0, 1, 3s, true}, Case{0, 2, 3s, false},
                          Case{2, 0, 3s, false}, Case{2, 1, 3s, true}}) {
        for (const bool seenAtOnce : {false, true}) {
            Slider phone;
            phone.coverMoves(c.from);
            phone.touch(kFinger);
            phone.after(1s).coverMoves(c.to);
            if (seenAtOnce) phone.touch(kFinger);
            EXPECT_EQ(phone.after(c.since).touch(kFinger).size(), c.passes ? 1u : 0u) << c.to << seenAtOnce;
            EXPECT_EQ(phone.cancels(), seenAtOnce ? 0u : 1u) << "cancelled once, even in a frame that passes";
            phone.touch(kFinger.at(7, 8));
            phone.lift();
            const std::string state = std::to_string(static_cast<int>(c.to));
            EXPECT_EQ(phone.reported(),
                      Lines{"651{time:1000, Firstpoint(540,1200), LastPoint(7,8), state:" + state + "}"});
        }
    }
}

// A second change in the gesture cancels nothing more: its rest is counted anew and its state is reported, with the
// time of the first.
TEST(SlideCover, ASecondChange) {
    Slider phone;
    phone.touch(kFinger);
    phone.after(10ms).coverMoves(2);
    phone.touch(kFinger);
    phone.after(1s).coverMoves(1);
    EXPECT_EQ(phone.after(2999ms).touch(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(phone.after(1ms).touch(kFinger), Fingers{kFinger});
    phone.coverMoves(2);
    EXPECT_EQ(phone.touch(kFinger), kNone);
    phone.coverMoves(1);
    phone.touch(kFinger.at(3, 4));
    phone.coverMoves(0);  // after the last look
    phone.lift();
    EXPECT_EQ(phone.reported(), Lines{"651{time:10, Firstpoint(540,1200), LastPoint(3,4), state:1}"});
}

// A gesture that was hardly one is cancelled, but not worth telling; the time is that of the change, told once.
TEST(SlideCover, TooShortToTell) {
    for (const auto& [time, reports] : {std::pair{500'000ns, 0u}, {999'999ns, 0u}, {1'000'000ns, 1u}}) {
        Slider phone;
        phone.touch(kFinger);
        phone.after(time).coverMoves(2);
        phone.after(5s).coverMoves(2);
        EXPECT_EQ(phone.touch(kFinger), kNone);
        EXPECT_EQ(phone.cancels(), 1u);
        phone.lift();
        EXPECT_EQ(phone.reports().size(), reports) << time.count();
    }
}

// The report has room for 99 characters; a longer one is not sent, and the log says so. The next one is.
TEST(SlideCover, TheLongestReport) {
    const Finger corner = finger(0).at(INT32_MIN, INT32_MIN);
    const std::string points = "Firstpoint(-2147483648,-2147483648), LastPoint(-2147483648,-2147483648)";
    Slider phone;
    for (const auto& [time, sent] : {std::pair{10'000'000'000ms, false}, {9'999'999'999ms, true}}) {
        const float from = sent ? 2 : 0, to = 2 - from;
        phone.coverMoves(from);
        phone.touch(corner);
        phone.after(time).coverMoves(to);
        phone.touch(corner);
        phone.touch(corner);
        phone.lift();
        if (sent) {
            ASSERT_EQ(phone.reports().size(), 1u);
            EXPECT_EQ(phone.reports()[0].text, "{time:9999999999, " + points + ", state:0}");
            EXPECT_EQ(phone.reports()[0].text.size(), 99u);
        } else {
            EXPECT_EQ(phone.told(), Lines{"ERROR sprintf_s error"});
            EXPECT_EQ(phone.reported(), Lines{});
        }
    }
}

// Without a mapper there is nothing to cancel and nobody to tell; the fingers go all the same.
TEST(SlideCover, WithoutAMapper) {
    Slider phone;
    phone.touch(kFinger);
    phone.after(9ms).coverMoves(2);
    EXPECT_EQ(phone.touchWithoutMapper(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(phone.touch(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u) << "the chance has gone";
    phone.lift();
    EXPECT_EQ(phone.told(), Lines{"WARN device is NULL"});
    EXPECT_EQ(phone.reported(), Lines{});
}

// The first that the cover ever tells is a change, even in the middle of a gesture; until then fingers are left alone.
TEST(SlideCover, TheFirstEventIsAChange) {
    Phone phone(kHall);
    phone.start();
    for (int frame = 0; frame < 2; ++frame) {
        EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger});
        EXPECT_EQ(coverLog(phone).back(), "WARN ZqSCAftProcessor: Invalid state=-1.");
    }
    phone.after(3ms).coverMoves(0);
    EXPECT_EQ(phone.touch(kFinger), kNone);
    EXPECT_EQ(coverLog(phone),
              Lines{"INFO ZqSCAftProcessor: mCurState.state=0, preState=-1, preSlideTime=3, need to cancel touch."});
}

// While the host's input is off every frame passes, and says so; a cancelled gesture is still cancelled after that.
TEST(SlideCover, OffInTheMiddleOfAGesture) {
    Slider phone;
    phone.touch(kFinger);
    phone.after(5ms).coverMoves(2);
    EXPECT_EQ(phone.touch(kFinger), kNone);
    phone.exit();
    EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger});
    EXPECT_EQ(phone.told(), Lines{"WARN getSCFilterState false."});
    phone.start();
    EXPECT_EQ(phone.touch(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    phone.exit();
    phone.lift();
    EXPECT_EQ(phone.reports().size(), 1u);
}

// A change of before the gesture, seen late because the input was off, cancels it but is not worth telling.
TEST(SlideCover, AChangeOfBeforeTheGesture) {
    Slider phone;
    phone.touch(kFinger);
    phone.lift();
    phone.coverMoves(2);
    phone.exit();
    EXPECT_EQ(phone.after(1'900'000ns).touch(kFinger), Fingers{kFinger});
    EXPECT_EQ(phone.told(), (Lines{"WARN Touchbegin: getSCFilterState failed", "WARN getSCFilterState false."}));
    phone.start();
    EXPECT_EQ(phone.touch(kFinger), kNone);
    EXPECT_EQ(phone.told(), Lines{"INFO mCurState.state=2, preState=0, preSlideTime=-1, need to cancel touch."});
    phone.lift();
    EXPECT_EQ(phone.reported(), Lines{});
}

// When the sensor service dies fingers are left alone; its return brings the filter back, with the state that it knew.
TEST(SlideCover, TheServiceDiesAndReturns) {
    Slider phone;
    phone.coverMoves(2);
    phone.service(State::Dies);
    EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger});
    EXPECT_EQ(phone.told().back(), "WARN getSCFilterState false.");
    phone.start();
    EXPECT_EQ(phone.log("ZqAftSCStateManager").back(), "WARN enableSCSensor() mInitCheck is false");
    phone.service(State::Registers);
    phone.lift();
    phone.touch(kFinger);
    EXPECT_EQ(phone.told(), Lines{}) << "forgot its state";
    phone.after(4ms).coverMoves(0);
    EXPECT_EQ(phone.touch(kFinger), kNone);
}

// A frame that an earlier filter has emptied is a lift-off here: the host is told with the finger still down.
TEST(SlideCover, AnEmptiedFrameIsALiftOff) {
    Slider phone({{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"}, {"ro.config.zq_hall_prop", "1"}});
    const Finger onSensor = finger(0).at(540, 2200);
    EXPECT_EQ(phone.touch(onSensor), Fingers{onSensor});
    phone.after(50ms).coverMoves(2);
    EXPECT_EQ(phone.touch(onSensor), kNone);
    phone.key(517);
    EXPECT_EQ(phone.after(8ms).touch(onSensor), kNone);
    EXPECT_EQ(phone.reported(), Lines{"651{time:50, Firstpoint(540,2200), LastPoint(0,0), state:2}"});
}

// What the sensor may tell, and what is noise: a wrong cut makes a cover move that lies still.
TEST(SlideCover, WhatAnEventSays) {
    struct Case {
        float kind, state;
        int told;  // -1: nothing
    };
    for (const Case& c :
         {Case{1, 0, 0}, Case{1, 2, 2}, Case{1.99F, 2, 2}, Case{0.9F, 2, -1}, Case{-0.9F, 2, -1}, Case{-1, 2, -1},
          Case{2, 2, -1}, Case{NAN, 2, -1}, Case{1e20F, 2, -1}, Case{1, 2.7F, 2}, Case{1, 0.9F, 0}, Case{1, -0.9F, 0},
          Case{1, 3, -1}, Case{1, -1, -1}, Case{1, NAN, -1}, Case{1, 1e20F, -1}, Case{1, 1, -1}, Case{1, 1.9F, -1}}) {
        Slider phone;
        phone.coverMoves(1);
        phone.after(1ms).sense(42, Phone::kCover, {c.kind, c.state});
        EXPECT_EQ(coverLog(phone), c.told < 0
                                       ? Lines{}
                                       : Lines{"INFO ZqAftSCStateManager: handleSensorEvent event.type=42 state=" +
                                               std::to_string(c.told) + ", timestamp=60001000000 ns, sensorHandle=7"})
            << c.kind << ", " << c.state;
    }
}

// Odd numbers have a cover. A phone without one never talks to the sensor service for it.
TEST(SlideCover, WhichPhonesHaveOne) {
    for (const auto& [value, has] : {std::pair{"1", true},
                                     {"3", true},
                                     {"-1", true},
                                     {"7x", true},
                                     {"0", false},
                                     {"2", false},
                                     {"", false},
                                     {"x1", false}}) {
        Phone phone(Phone::Properties{{"ro.config.zq_hall_prop", value}});
        phone.touch(kFinger);
        const std::string digit = has ? "1" : "0";
        EXPECT_EQ(coverLog(phone)[0], "INFO ZqAftSCStateManager: isSupport=" + digit) << value;
        EXPECT_EQ(coverLog(phone)[1], "INFO ZqSCAftProcessor: sAftConfig.enabled=" + digit);
        EXPECT_EQ(coverLog(phone).size() > 2, has);
        for (const bool starts : {true, false}) {
            starts ? phone.start() : phone.exit();
            EXPECT_EQ(coverLog(phone)[0], "INFO ZqAftSCStateManager: isSupport=" + digit) << value;
            EXPECT_EQ(coverLog(phone).size() > 1, has);
        }
    }
}

// The lines of the filter's making and of a service that is not there, in order; the filter decides once, while the
// start asks each time.
TEST(SlideCover, WhatTheLogSaysAtTheStart) {
    Phone phone(kHall);
    phone.fails({{Call::GetService, Fault::Transport}});
    phone.touch(kFinger);
    EXPECT_EQ(coverLog(phone),
              (Lines{"INFO ZqAftSCStateManager: isSupport=1", "INFO ZqSCAftProcessor: sAftConfig.enabled=1",
                     "INFO ZqSCAftProcessor: constructor ZqSCAftProcessor", "INFO ZqAftSCStateManager: getInstance",
                     "ERROR ZqAftSCStateManager: fail to get SensorManager",
                     "INFO ZqAftSCStateManager: mSCSensorEnabled is false",
                     "WARN ZqSCAftProcessor: Touchbegin: getSCFilterState failed",
                     "INFO ZqAftSCStateManager: mSCSensorEnabled is false",
                     "WARN ZqSCAftProcessor: getSCFilterState false."}));
    phone.start();
    EXPECT_EQ(coverLog(phone), (Lines{"INFO ZqAftSCStateManager: isSupport=1", "INFO ZqAftSCStateManager: getInstance",
                                      "INFO ZqAftSCStateManager: enableSCSensor",
                                      "WARN ZqAftSCStateManager: enableSCSensor() mInitCheck is false"}));
    aftplatform::properties::set("ro.config.zq_hall_prop", "0");
    phone.exit();
    EXPECT_EQ(coverLog(phone), Lines{"INFO ZqAftSCStateManager: isSupport=0"});
    phone.touch(kFinger);
    EXPECT_EQ(coverLog(phone), (Lines{"INFO ZqAftSCStateManager: mSCSensorEnabled is false",
                                      "WARN ZqSCAftProcessor: getSCFilterState false."}));
    phone.lift();
    EXPECT_EQ(coverLog(phone), Lines{});
}

}  // namespace
}  // namespace test
