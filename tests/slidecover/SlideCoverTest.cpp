// A slide cover that moves under a finger, through the exports of the built plug-in.

#include <cmath>

#include "platform/control/Properties.h"
#include "tests/support/Phone.h"

using namespace test;

namespace {

const Phone::Properties kHall = {{"ro.config.zq_hall_prop", "1"}};
const Finger kFinger = finger(0).at(540, 1200);

/// A phone with a slide cover, in a state that its sensor has told; -1: it has not told any.
struct Slider : Phone {
    explicit Slider(const Properties& properties = kHall, float state = 0) : Phone(properties) {
        start();
        lift();  // makes the filter
        if (state >= 0) coverMoves(state);
    }
};

/// What comes of fingers on the glass: "seen" or "gone", then what the filter logs, cancels and reports.
std::string feel(Phone& phone, const Fingers& fingers = {kFinger}) {
    const size_t seen = phone.touch(fingers).size();
    std::string story = fingers.empty() ? "up" : seen == fingers.size() ? "seen" : seen == 0 ? "gone" : "some are gone";
    for (const std::string& line : phone.log("ZqSCAftProcessor")) story += "; " + line;
    if (phone.cancels() != 0) story += "; cancelled";
    for (const refhost::Report& report : phone.reports()) story += "; " + std::to_string(report.event) + report.text;
    return story;
}
std::string lift(Phone& phone) { return feel(phone, kNone); }

std::string change(const std::string& states) {
    return "; INFO mCurState." + states + ", need to cancel touch.; cancelled";
}
std::string report(const std::string& text) {
    return "up; INFO reportFirstPointData() eventid=651, eventMsg={{" + text + "}}; 651{" + text + "}";
}

// Whoever moves the cover has a thumb on the screen: its gesture is cancelled once and gone until all fingers are up,
// and the host is told what it was. The next gesture is the user's again.
TEST(SlideCover, AChangeUnderAFingerEndsItsGesture) {
    Slider phone;
    const Finger higher = finger(5).at(9, 9), lower = finger(2).at(540, 1200);
    EXPECT_EQ(feel(phone, {higher, lower}), "seen");
    phone.coverMoves(2);
    phone.coverMoves(0);
    EXPECT_EQ(feel(phone.after(100ms), {higher}), "seen") << "only what lies between two looks counts";
    phone.after(20ms).coverMoves(2);
    EXPECT_EQ(feel(phone.after(8ms), {higher, lower}), "gone" + change("state=2, preState=0, preSlideTime=120"));
    EXPECT_EQ(feel(phone.after(8ms), {higher, lower.at(560, 900)}), "gone");
    EXPECT_EQ(lift(phone), report("time:120, Firstpoint(540,1200), LastPoint(560,900), state:2"));
    EXPECT_EQ(feel(phone), "seen");
    EXPECT_EQ(lift(phone), "up");
    feel(phone, {finger(0).at(1, 2)});
    phone.after(7ms).coverMoves(0);
    EXPECT_EQ(feel(phone), "gone" + change("state=0, preState=2, preSlideTime=7"));
    EXPECT_EQ(lift(phone), report("time:7, Firstpoint(1,2), LastPoint(560,900), state:0")) << "not the last point held";
}

// In state 1 the cover is at rest after three seconds, to the nanosecond, and fingers count again; never in another.
TEST(SlideCover, AtRestFingersCountAgain) {
    using Case = std::tuple<float, float, std::chrono::nanoseconds, std::string>;
    for (const auto& [from, to, since, fate] : {Case{0, 1, 2'999'999'999ns, "gone"}, Case{0, 1, 3s, "seen"},
                                                Case{0, 2, 3s, "gone"}, Case{2, 0, 3s, "gone"}}) {
        for (const bool atOnce : {false, true}) {
            Slider phone(kHall, from);
            EXPECT_EQ(feel(phone), "seen") << "cancelled for a change of before";
            phone.after(1s).coverMoves(to);
            if (atOnce) feel(phone);
            const std::string then = feel(phone.after(since));
            EXPECT_EQ(then.substr(0, 4), fate) << to;
            EXPECT_EQ(then.ends_with("cancelled"), !atOnce) << "cancelled once, even in a frame that passes";
            EXPECT_NE(lift(phone), "up");
        }
    }
}

// A gesture of less than a millisecond is not worth telling; more than 99 characters cannot be told, and the log says
// so. The time is that of the change, however often the sensor repeats it.
TEST(SlideCover, WhatIsReported) {
    const std::string points = " Firstpoint(-2147483648,-2147483648), LastPoint(-2147483648,-2147483648), state:2";
    using Case = std::pair<std::chrono::nanoseconds, std::string>;
    for (const auto& [time, told] : {Case{500us, "up"}, Case{999'999ns, "up"}, Case{1ms, report("time:1," + points)},
                                     Case{9'999'999'999ms, report("time:9999999999," + points)},
                                     Case{10'000'000'000ms, "up; ERROR sprintf_s error"}}) {
        Slider phone;
        const Fingers corner = {finger(0).at(INT32_MIN, INT32_MIN)};
        feel(phone, corner);
        phone.after(time).coverMoves(2);
        phone.after(5s).coverMoves(2);
        EXPECT_TRUE(feel(phone, corner).ends_with("cancelled"));
        feel(phone, corner);
        EXPECT_EQ(lift(phone), told);
    }
}

// Without a mapper there is nothing to cancel and nobody to tell, not even the last one; the fingers go all the same.
TEST(SlideCover, WithoutAMapper) {
    Slider phone;
    feel(phone);
    phone.after(9ms).coverMoves(1);
    feel(phone);
    EXPECT_NE(lift(phone), "up");
    feel(phone);
    phone.after(9ms).coverMoves(2);
    EXPECT_EQ(phone.touchWithoutMapper(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(feel(phone), "gone") << "it is too late to cancel";
    EXPECT_EQ(lift(phone), "up; WARN device is NULL");
}

// While the host's input is off, or the sensor service dead, fingers pass, and the log says so. A cancelled gesture is
// cancelled still after that, and the last state known; a change of before the gesture is not worth telling.
TEST(SlideCover, OffInTheMiddleOfAGesture) {
    const std::string off = "; WARN getSCFilterState false.";
    Slider phone;
    feel(phone);
    phone.after(10ms).coverMoves(1);
    feel(phone);
    phone.exit();
    EXPECT_EQ(feel(phone), "seen" + off);
    phone.start();
    EXPECT_EQ(feel(phone), "gone");
    phone.coverMoves(2);
    phone.service(refhost::SensorService::State::Dies);
    phone.start();
    EXPECT_EQ(lift(phone), report("time:10, Firstpoint(540,1200), LastPoint(540,1200), state:1"));
    EXPECT_EQ(feel(phone.after(1'900us)), "seen; WARN Touchbegin: getSCFilterState failed" + off);
    phone.service(refhost::SensorService::State::Registers);
    EXPECT_EQ(feel(phone), "gone" + change("state=2, preState=1, preSlideTime=-1"));
    EXPECT_EQ(lift(phone), "up");
}

// A frame that an earlier filter has emptied is a lift-off here: the host is told with the finger still down.
TEST(SlideCover, AnEmptiedFrameIsALiftOff) {
    Slider phone({Phone::kSensorArea[0], kHall[0]});
    const Fingers onSensor = {finger(0).at(540, 2200)};
    EXPECT_EQ(feel(phone, onSensor), "seen");
    phone.after(50ms).coverMoves(2);
    EXPECT_EQ(feel(phone, onSensor), "gone" + change("state=2, preState=0, preSlideTime=50"));
    phone.key(517);
    EXPECT_TRUE(feel(phone.after(8ms), onSensor).ends_with("Firstpoint(540,2200), LastPoint(0,0), state:2}"));
}

// What the sensor may tell, and what is noise: a wrong cut makes a cover move that lies still in state 1.
TEST(SlideCover, WhatAnEventSays) {
    using Case = std::tuple<float, float, std::string>;
    for (const auto& [kind, state, told] :
         {Case{1, 0, "0"}, Case{1, 2, "2"}, Case{1.99, 2, "2"}, Case{0.9, 2, ""}, Case{-0.9, 2, ""}, Case{-1, 2, ""},
          Case{2, 2, ""}, Case{NAN, 2, ""}, Case{1e20, 2, ""}, Case{1, 2.7, "2"}, Case{1, 0.9, "0"}, Case{1, -0.9, "0"},
          Case{1, 3, ""}, Case{1, -1, ""}, Case{1, NAN, ""}, Case{1, 1e20, ""}, Case{1, -1e20, ""}, Case{1, 1.9, ""}}) {
        Slider phone(kHall, 1);
        phone.after(1ms).sense(42, Phone::kCover, {kind, state});
        const Lines line = {"INFO handleSensorEvent event.type=42 state=" + told +
                            ", timestamp=60001000000 ns, sensorHandle=7"};
        EXPECT_EQ(phone.log("ZqAftSCStateManager"), told.empty() ? Lines{} : line) << kind << ", " << state;
    }
}

// Odd numbers have a cover, and the first that it ever tells is a change, even in the middle of a gesture; without one,
// nothing more is done or said.
TEST(SlideCover, WhichPhonesHaveOne) {
    using Case = std::pair<std::string, bool>;
    for (const auto& [value, has] : {Case{"1", true}, Case{"3", true}, Case{"-1", true}, Case{"7x", true},
                                     Case{"0", false}, Case{"2", false}, Case{"", false}, Case{"x1", false}}) {
        Slider phone({{"ro.config.zq_hall_prop", value}}, -1);
        EXPECT_EQ(feel(phone), has ? "seen; WARN Invalid state=-1." : "seen") << value;
        phone.after(3ms).coverMoves(0);
        EXPECT_EQ(feel(phone), has ? "gone" + change("state=0, preState=-1, preSlideTime=3") : "seen");
        phone.start();
        const Lines lines = {"INFO isSupport=1", "INFO getInstance", "INFO enableSCSensor"};
        EXPECT_EQ(phone.log("ZqAftSCStateManager"), has ? lines : Lines{"INFO isSupport=0"}) << value;
    }
}

// The lines of the filter's making, and of a service that is not there, in order. The filter decides once, while the
// host's start and exit ask each time.
TEST(SlideCover, WhatTheLogSaysAtTheStart) {
    Phone phone(kHall);
    phone.fails({{aftplatform::sensors::Call::GetService, aftplatform::sensors::Fault::Transport}});
    phone.touch(kFinger);
    Lines lines = phone.log("");
    std::erase_if(lines, [](const std::string& line) { return line.find("SC") == std::string::npos; });
    const std::string manager = "INFO ZqAftSCStateManager: ", filter = "INFO ZqSCAftProcessor: ";
    EXPECT_EQ(
        lines,
        (Lines{manager + "isSupport=1", filter + "sAftConfig.enabled=1", filter + "constructor ZqSCAftProcessor",
               manager + "getInstance", "ERROR ZqAftSCStateManager: fail to get SensorManager",
               manager + "mSCSensorEnabled is false", "WARN ZqSCAftProcessor: Touchbegin: getSCFilterState failed",
               manager + "mSCSensorEnabled is false", "WARN ZqSCAftProcessor: getSCFilterState false."}));
    aftplatform::properties::set("ro.config.zq_hall_prop", "0");
    phone.exit();
    EXPECT_EQ(phone.log("ZqAftSCStateManager"), Lines{"INFO isSupport=0"});
    EXPECT_EQ(feel(phone), "seen; WARN getSCFilterState false.");
    lift(phone);
    EXPECT_EQ(lift(phone), "up");
    EXPECT_EQ(phone.log("ZqAftSCStateManager"), Lines{}) << "asked for nobody's touch";
}

}  // namespace
