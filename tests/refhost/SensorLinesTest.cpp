#include <gtest/gtest.h>

#include "refhost/play/Player.h"
#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "refhost/trace/SensorNames.h"
#include "tests/refhost/TraceText.h"

namespace refhost {
namespace {

/// What came back from a line: the calls that reached the sensor service, cancels and reports.
std::string answer(const CallResult& result) {
    std::string text;
    for (const auto& [call, arguments] : result.requests.service) {
        text += fmt::format("{}({}) ", nameOf(kServiceCalls, call), fmt::join(arguments, ","));
    }
    if (!result.requests.cancelled.empty()) text += "cancel ";
    for (const Report& report : result.requests.reports) text += report.text;
    return text;
}

// A slide cover that closes in mid-gesture, and a service that dies, comes back and refuses, would be replayed as if
// the phone had neither; or what the lines say would reach the plug-in late, or be booked on another line.
TEST(SensorLines, ReachThePlugInAndItsCallsComeBack) {
    const std::string frame = R"("call":"processRawTouches","device":4,"when":60)";
    const std::string sample = R"("platform":"sensorEvent","timestamp":1,"type":65557,"handle":)";
    const std::string service = R"("platform":"sensorService",)";
    const std::string subscribed = "linkToDeath(0) createEventQueue() getDefaultSensor(65557) enableSensor(7,0,0) ";
    const std::pair<std::string, std::string> lines[] = {
        {R"("t":60000000000,"call":"notifyInputStart")", subscribed},
        {sample + R"(7,"values":[1])", ""},
        {frame + R"(300000000,"pointers":[{"id":2,"x":540,"y":1200}])", ""},
        {sample + R"(8,"values":[1,1])", ""},
        {frame + R"(320000000,"pointers":[{"id":2,"x":540,"y":1100}])", ""},
        {R"("t":60420000000,)" + sample + R"(7,"values":[1,2])", ""},
        {frame + R"(430000000,"pointers":[{"id":2,"x":552,"y":1010}])", "cancel "},
        {frame + R"(440000000,"pointers":[{"id":2,"x":560,"y":900}])", ""},
        {frame + R"(500000000,"pointers":[])", "{time:120, Firstpoint(540,1200), LastPoint(560,900), state:2}"},
        {service + R"("state":"dies")", ""},
        {R"("call":"notifyInputExit")", ""},
        {service + R"("fails":{"enableSensor":"result"},"state":"registers")", subscribed},
        {service + R"("fails":{"getDefaultSensor":"transport"})", ""},
        {R"("call":"notifyInputStart")", ""},
        {service + R"("fails":{},"state":"absent")", ""},
        {R"("call":"notifyInputStart")", "getDefaultSensor(65557) enableSensor(7,0,0) "},
        {R"("call":"notifyInputExit")", "disableSensor(7) "},
    };
    std::string trace = R"({"trace":"zqaft","version":1,"properties":{"ro.config.zq_hall_prop":"1"},"devices":[)"
                        R"({"id":3,"name":"front"},{"id":4,"name":"back"}],)"
                        R"("sensors":[{"type":3,"handle":9},{"type":65557,"handle":7},{"type":65557,"handle":8}]})";
    for (const auto& [line, expected] : lines) trace += "\n{" + line + "}";
    std::istringstream in(trace);
    TraceReader reader(in, "in");
    Player player(reader.header(), ZQAFT_PLUGIN_UNDER_TEST);
    TraceLine line;
    for (const auto& [text, expected] : lines) {
        ASSERT_TRUE(reader.next(line));
        EXPECT_EQ(answer(player.play(line)), expected) << text;
    }
}

// What a profile says of covers, folds and rotations would be replayed at another time, to another sensor or on a
// surface that has lost its geometry.
TEST(SensorLines, AProfilesTimelineBecomesThem) {
    ImportedTrace trace(readGetevent("[ 5.000000] 0003 0035 00000001\n[ 5.000000] 0003 0036 00000002\n"
                                     "[ 5.300000] 0000 0000 00000000\n",
                                     "in"),
                        parseProfile(R"(
touch: {name: p, id: 3, external: true, surface: {width: 9, height: 9, calibration: [2, 0, 1, 0, 2, 1], scale: [3, 4],
        translate: [5, 6]}}
sensors: [{type: slide_cover, handle: 7}, {type: 65557, handle: 8}, {type: 3, handle: 9}]
sensor_service: {fails: {createEventQueue: noQueue}}
timeline:
- {at: 0.1, fold_angle: {from: 10, to: 40, samples: 4, every: 0.1}}
- {at: 0.2, slide_cover: 2, input: start, sensor_service: {state: registers, fails: {}}}
- {at: 0.25, rotate: 3, windows: [{name: w, notch_area: true}]}
- {at: 0.35, sensor: {handle: 8, values: [1, 0.5]}, fold_angle: -7.5}
- {at: 0.35, sensor: {type: slide_cover}, sensor_service: dies}
- {at: 0.5, fold_angle: {from: 3, samples: 2}}
)",
                                     "phone.yaml", "."),
                        "");
    const std::string fold = R"("platform":"sensorEvent","type":3,"handle":9,"timestamp":)";
    const std::string cover = R"("platform":"sensorEvent","type":65557,"handle":)";
    const std::string surface = R"("call":"configureSurface","device":3,"width":9,"height":9,"orientation":)";
    const std::string geometry =
        R"(,"calibration":[2,0,1,0,2,1],"rawX":[0,8],"rawY":[0,8],"scale":[3,4],"translate":[5,6])";
    const std::pair<int, std::string> lines[] = {
        {0, surface + "0" + geometry},
        {0, R"("platform":"sensorService","fails":{"createEventQueue":"noQueue"})"},
        {0, R"("call":"notifyInputStart")"},
        {100, fold + R"(60100000000,"values":[0,0,10])"},
        {200, fold + R"(60200000000,"values":[0,0,20])"},
        {200, R"("platform":"sensorService","fails":{},"state":"registers")"},
        {200, R"("call":"notifyInputStart")"},
        {200, cover + R"(7,"timestamp":60200000000,"values":[1,2])"},
        {250, surface + "3" + geometry},
        {250, R"("call":"processInputWindow","windows":[{"name":"w","notchArea":true}])"},
        {300, fold + R"(60300000000,"values":[0,0,30])"},
        {300,
         R"("call":"processRawTouches","device":3,"when":60300000000,"pointers":[{"id":0,"x":1,"y":2,"axes":[0,0,0,0,0,0,0,0,0,1]}])"},
        {350, cover + R"(8,"timestamp":60350000000,"values":[1,0.5])"},
        {350, fold + R"(60350000000,"values":[0,0,-7.5])"},
        {350, R"("platform":"sensorService","state":"dies")"},
        {350, cover + R"(7,"timestamp":60350000000)"},
        {400, fold + R"(60400000000,"values":[0,0,40])"},
        {500, fold + R"(60500000000,"values":[0,0,3])"},
        {510, fold + R"(60510000000,"values":[0,0,3])"},
    };
    std::string expected = R"({"trace":"zqaft","version":1,"properties":{},"devices":[{"id":3,"name":"p",)"
                           R"("external":true}],"sensors":[{"type":65557,"handle":7},{"type":65557,"handle":8},)"
                           R"({"type":3,"handle":9}]})";
    for (const auto& [ms, rest] : lines) expected += fmt::format("\n{{\"t\":60{:03}000000,{}}}", ms, rest);
    EXPECT_EQ(written(trace), expected + "\n");
}

}  // namespace
}  // namespace refhost
