#include <tuple>

#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "tests/recording/RecordingText.h"
#include "tests/refhost/TraceText.h"

using namespace refhost;

namespace {

const std::string kTouch = "touch: {name: panel, id: 3, surface: {width: 100, height: 200}}\n";

ImportedTrace imported(const std::string& recording, const std::string& profile = kTouch,
                       const std::string& device = "") {
    return {readGetevent(recording, "in"), parseProfile(profile, "phone.yaml", "."), device};
}

// A recorded swipe would be replayed on a phone in another state, with keys lost, doubled or at another moment.
TEST(Import, MakesATraceOfARecordingAndItsPhone) {
    ImportedTrace trace = imported(R"(add device 1: /dev/fp
  name:     "fp"
[  100.000000] /dev/panel: 0003 0035 0000000a
[  100.000000] /dev/panel: 0003 0036 00000014
[  100.000000] /dev/panel: 0003 0037 00000002
[  100.000000] /dev/panel: 0000 0000 00000000
[  100.200000] /dev/fp: 0001 0161 00000001
[  100.300000] /dev/fp: 0001 0161 00000002
[  100.300000] /dev/volume: 0001 0161 00000001
[  100.400000] /dev/fp: 0001 0161 00000000
[  100.400000] /dev/fp: 0001 0074 00000001
)",
                                   kTouch + R"(keys: {name: fp, id: 5, policy_flags: 2, scancodes: {KEY_SELECT: 601}}
windows: [{name: w}]
timeline: [{at: 0.25, rotate: 1}, {at: 0.25, keyguard: true, property: {k: v}}, {at: 9, input: exit}]
)");
    EXPECT_EQ(
        written(trace),
        R"({"trace":"zqaft","version":1,"properties":{},"devices":[{"id":3,"name":"panel"},{"id":5,"name":"fp","sources":257}]}
{"t":60000000000,"call":"configureSurface","device":3,"width":100,"height":200,"orientation":0,"rawX":[0,99],"rawY":[0,199]}
{"t":60000000000,"call":"processInputWindow","windows":[{"name":"w"}]}
{"t":60000000000,"call":"notifyInputStart"}
{"t":60000000000,"call":"processRawTouches","device":3,"when":60000000000,"pointers":[{"id":0,"x":10,"y":20,"axes":[0,0,0,0,0,0,0,0,0,1],"extraData":134217728}]}
{"t":60200000000,"call":"processKey","device":5,"when":60200000000,"keyCode":601,"scanCode":353,"down":true,"policyFlags":2}
{"t":60250000000,"call":"configureSurface","device":3,"width":100,"height":200,"orientation":1,"rawX":[0,99],"rawY":[0,199]}
{"t":60250000000,"call":"processInputWindow","windows":[{"name":"w"}],"keyguard":true}
{"t":60250000000,"platform":"setProperty","key":"k","value":"v"}
{"t":60400000000,"call":"processKey","device":5,"when":60400000000,"keyCode":601,"scanCode":353,"down":false,"policyFlags":2}
{"t":69000000000,"call":"notifyInputExit"}
)");
    const std::string unmapped = "in: 1 key event without a key code in phone.yaml left out; the first is scan code ";
    EXPECT_EQ(trace.leftOut(), (std::vector<std::string>{"in: 1 key repeat left out",
                                                         "in: 1 key event of other devices than the key device of "
                                                         "phone.yaml left out",
                                                         unmapped + "116 (KEY_POWER)"}));
}

// A recording whose clock was set, or whose devices are slightly out of order, would freeze the replay or stretch it.
TEST(Import, TheClockGoesOnWhateverTheRecordingsDoes) {
    // Seconds of each report, 0 for one without a time, the trace's milliseconds, and notes of jumps and disorder.
    using Case = std::tuple<std::vector<double>, std::vector<int64_t>, size_t>;
    for (const auto& [seconds, expected, notes] :
         {Case{{5000, 5000.1, 1400, 1400.2}, {0, 100, 100, 300}, 1}, Case{{1.5, 1.7e9, 1.7e9 + 0.5}, {0, 0, 500}, 1},
          Case{{100, 100.4, 100.2, 100.3, 100.5}, {0, 400, 400, 400, 500}, 1},
          Case{{100, 101, 100, 100, 31000100}, {0, 1000, 1000, 1000, 31000000000}, 1},
          Case{{0, 0, 0}, {0, 10, 20}, 0}}) {
        std::string text;
        for (const double at : seconds) {
            text += at > 0 ? fmt::format("[{:15.6f}] ", at) : "";
            text += "0003 0035 00000001\n0003 0036 00000001\n0000 0000 00000000\n";
        }
        ImportedTrace trace = imported(text);
        std::vector<int64_t> whenMs;
        for (TraceLine line; trace.next(line);) {
            const auto* frame = std::get_if<ProcessRawTouches>(&line.event);
            if (frame == nullptr) continue;
            whenMs.push_back((frame->when - TraceClock::kStartNs) / 1'000'000);
            EXPECT_EQ(line.t, frame->when);
        }
        EXPECT_EQ(whenMs, expected) << text;
        EXPECT_EQ(trace.leftOut().size(), notes) << text;
    }
}

// Coordinates of a panel twice as large would be replayed as if they were the profile's, and nobody would be told.
TEST(Import, SaysWhereTheRecordingDoesNotFit) {
    const std::string two = "/dev/a: 0003 0035 00000001\n/dev/b: 0003 0035 00000001\n";
    const std::string axis = " ABS (0003): 0035  : value 0, min 0, max 199, fuzz 0, flat 0, resolution 0\n";
    const std::string other = "in: another panel than phone.yaml: ";
    EXPECT_EQ(imported("0003 0035 00000064\n0003 0036 000000c7\n").notes().back(),
              other + "x 100 on line 1 lies outside the profile's surface");
    EXPECT_EQ(imported("add device 1: /dev/x\n" + axis + "/dev/x: 0003 0035 00000001\n").notes().back(),
              other + "x 0..199 in the recording, 0..99 in the profile");
    EXPECT_EQ(imported("0003 0035 00000063\n0003 0036 000000c7\n").notes().size(), 1u)
        << "no times, but the panel fits";
    EXPECT_NE(errorOf([&] { imported(two); }).find("device: 2 devices send touches"), std::string::npos);
    EXPECT_EQ(errorOf([&] { imported(two, kTouch, "/dev/b"); }), "");
}

// What a profile says of covers, folds and rotations would be replayed at another time, to another sensor or on a
// surface that has lost its geometry.
TEST(Import, MakesSensorLinesOfAProfilesTimeline) {
    const char* recording = "[ 5.000000] 0003 0035 00000001\n0003 0036 00000002\n[ 5.300000] 0000 0000 00000000\n";
    const char* profile =
        R"(touch: {name: p, id: 3, external: true, surface: {width: 9, height: 9, calibration: [2, 0, 1, 0, 2, 1], scale: [3, 4],
        translate: [5, 6]}}
sensors: [{type: slide_cover, handle: 7}, {type: 65557, handle: 8}, {type: 3, handle: 9}]
sensor_service: {fails: {createEventQueue: noQueue}}
timeline:
- {at: 0.1, fold_angle: {from: 10, to: 40, samples: 4, every: 0.1}}
- {at: 0.2, slide_cover: 2, input: start, sensor_service: {state: registers, fails: {}}}
- {at: 0.25, rotate: 3}
- {at: 0.35, sensor: {handle: 8, values: [1, 0.5]}, fold_angle: -7.5}
- {at: 0.35, sensor: {type: slide_cover}}
)";
    ImportedTrace trace(readGetevent(recording, "in"), parseProfile(profile, "phone.yaml", "."), "");
    EXPECT_EQ(
        written(trace),
        R"({"trace":"zqaft","version":1,"properties":{},"devices":[{"id":3,"name":"p","external":true}],"sensors":[{"type":65557,"handle":7},{"type":65557,"handle":8},{"type":3,"handle":9}]}
{"t":60000000000,"call":"configureSurface","device":3,"width":9,"height":9,"orientation":0,"calibration":[2,0,1,0,2,1],"rawX":[0,8],"rawY":[0,8],"scale":[3,4],"translate":[5,6]}
{"t":60000000000,"platform":"sensorService","fails":{"createEventQueue":"noQueue"}}
{"t":60000000000,"call":"notifyInputStart"}
{"t":60100000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60100000000,"values":[0,0,10]}
{"t":60200000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60200000000,"values":[0,0,20]}
{"t":60200000000,"platform":"sensorService","fails":{},"state":"registers"}
{"t":60200000000,"call":"notifyInputStart"}
{"t":60200000000,"platform":"sensorEvent","type":65557,"handle":7,"timestamp":60200000000,"values":[1,2]}
{"t":60250000000,"call":"configureSurface","device":3,"width":9,"height":9,"orientation":3,"calibration":[2,0,1,0,2,1],"rawX":[0,8],"rawY":[0,8],"scale":[3,4],"translate":[5,6]}
{"t":60300000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60300000000,"values":[0,0,30]}
{"t":60300000000,"call":"processRawTouches","device":3,"when":60300000000,"pointers":[{"id":0,"x":1,"y":2,"axes":[0,0,0,0,0,0,0,0,0,1]}]}
{"t":60350000000,"platform":"sensorEvent","type":65557,"handle":8,"timestamp":60350000000,"values":[1,0.5]}
{"t":60350000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60350000000,"values":[0,0,-7.5]}
{"t":60350000000,"platform":"sensorEvent","type":65557,"handle":7,"timestamp":60350000000}
{"t":60400000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60400000000,"values":[0,0,40]}
)");
}

}  // namespace
