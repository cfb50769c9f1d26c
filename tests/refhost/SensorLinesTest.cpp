#include <gtest/gtest.h>

#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "tests/refhost/TraceText.h"

namespace refhost {
namespace {

// What a profile says of covers, folds and rotations would be replayed at another time, to another sensor or on a
// surface that has lost its geometry.
TEST(SensorLines, AProfilesTimelineBecomesThem) {
    const char* recording = "[ 5.000000] 0003 0035 00000001\n0003 0036 00000002\n[ 5.300000] 0000 0000 00000000\n";
    const char* profile =
        R"(touch: {name: p, id: 3, external: true, surface: {width: 9, height: 9, calibration: [2, 0, 1, 0, 2, 1], scale: [3, 4],
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
{"t":60250000000,"call":"processInputWindow","windows":[{"name":"w","notchArea":true}]}
{"t":60300000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60300000000,"values":[0,0,30]}
{"t":60300000000,"call":"processRawTouches","device":3,"when":60300000000,"pointers":[{"id":0,"x":1,"y":2,"axes":[0,0,0,0,0,0,0,0,0,1]}]}
{"t":60350000000,"platform":"sensorEvent","type":65557,"handle":8,"timestamp":60350000000,"values":[1,0.5]}
{"t":60350000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60350000000,"values":[0,0,-7.5]}
{"t":60350000000,"platform":"sensorService","state":"dies"}
{"t":60350000000,"platform":"sensorEvent","type":65557,"handle":7,"timestamp":60350000000}
{"t":60400000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60400000000,"values":[0,0,40]}
{"t":60500000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60500000000,"values":[0,0,3]}
{"t":60510000000,"platform":"sensorEvent","type":3,"handle":9,"timestamp":60510000000,"values":[0,0,3]}
)");
}

}  // namespace
}  // namespace refhost
