#include <gtest/gtest.h>

#include "tests/recording/RecordingText.h"
#include "tests/refhost/TraceText.h"

namespace refhost {
namespace {

const std::string kHead = R"({"trace":"zqaft","version":1)";
const std::string kDevices =
    kHead + R"(,"devices":[{"id":3,"name":"panel"},{"id":5,"name":"fp","sources":257}]})" + "\n";

// Lines that want no more than their end.
const std::string kFrame = R"({"call":"processRawTouches","device":3,"when":1,"pointers":[)";
const std::string kPointer = kFrame + R"({"id":4,"x":7,"y":8)";
const std::string kKey = R"({"call":"processKey","device":5,"keyCode":1,"down":true,"when":)";
const std::string kWindow = R"({"call":"processInputWindow","windows":[{"name":"w")";
const std::string kSurface =
    R"({"call":"configureSurface","device":3,"height":2,"orientation":0,"rawX":[0,1],"rawY":[0,1])";
const std::string kSample = R"({"platform":"sensorEvent","type":3,"handle":9)";
const std::string kService = R"({"platform":"sensorService")";
const std::string kProperty = R"({"platform":"setProperty","key":"k","value":)";

std::string textOf(size_t bytes) { return "\"" + std::string(bytes, 'v') + "\"}"; }

// A trace written by hand, without what is usual in it, would be replayed with other fingers, keys, windows or devices.
TEST(TraceReader, WhatIsAbsentIsAsUsual) {
    const std::pair<std::string, std::string> lines[] = {
        {kPointer + "}]}",
         kPointer + R"(,"axes":[0,0,0,0,0,0,0,0,0,0],"hovering":false,"extraData":0,"reserved":0}]})"},
        {kPointer + "}]}", kPointer + R"(}],"touching":[4],"hovering":[],"ids":[4],"idToIndex":{"4":0}})"},
        {kPointer + R"(,"hovering":true}]})",
         kPointer + R"(,"hovering":true}],"touching":[],"hovering":[4],"ids":[]})"},
        {kPointer + R"(}],"touching":[]})", kPointer + R"(}],"touching":[],"ids":[]})"},
        {kKey + " 1 } \t\r\n" + kKey + "1}", kKey + "1}\n" + kKey + R"(1,"scanCode":0,"metaState":0,"policyFlags":0})"},
        {kWindow + "}]}", kWindow + R"(,"token":true,"type":1,"frame":[0,0,0,0],"visible":true,"notchArea":false}],)"
                                    R"("focused":null,"keyguard":false})"},
        {kSurface + R"(,"width":1})",
         kSurface + R"(,"width":1,"calibration":[1,0,0,0,1.0,0],"scale":[1e0,1],"translate":[0,0]})"},
        {kSample + R"(,"timestamp":5})", kSample + R"(,"timestamp":5,"values":[]})"},
    };
    for (const auto& [brief, full] : lines) EXPECT_EQ(rewritten(kDevices + brief), rewritten(kDevices + full)) << brief;
    EXPECT_EQ(rewritten(kHead + "}"), rewritten(kHead + R"(,"properties":{},"devices":[],"note":""})"));
    EXPECT_EQ(rewritten(kHead + R"(,"devices":[{"id":1,"name":""}]})"),
              rewritten(kHead + R"(,"devices":[{"id":1,"name":"","external":false,"sources":4098}]})"));
}

// An engineer whose trace has a fault would be sent to the wrong place, or the fault would be replayed as if it were
// none.
TEST(TraceReader, NamesTheFault) {
    std::string seventeen = kFrame + "0";
    for (int id = 1; id < 17; ++id) seventeen += ",0";  // counted before any of them is read
    const std::pair<std::string, std::string> cases[] = {
        {R"({"call":"processTouches"})", R"(call: unknown "processTouches"; expected one of processRawTouches, )"},
        {R"({"t":1})", R"(line: neither "call" nor "platform")"},
        {R"({"call":"notifyInputExit","t":99,"t":99})", "t: given twice"},
        {R"({"call":"notifyInputExit","t":49})", "t: moves the clock back; expected 50 or later"},
        {" \t\r", "line: empty"},
        {std::string(100'000, '['), "json: column "},
        {R"({"call":"processKey","when":1,"keyCode":1,"down":true})", "device: missing"},
        {R"({"call":"processKey","device":4,"when":1,"keyCode":1,"down":true})", "device: no device of this id"},
        {R"({"call":"processKey","device":5,"when":1,"keyCode":1,"down":1})", "down: not a boolean"},
        {kKey + "1.0}", "when: not an integer"},
        {kKey + "9223372036854775808}", "when: does not fit; expected -9223372036854775808 to 9223372036854775807"},
        {kKey + R"(1,"policyFlags":4294967296})", "policyFlags: does not fit; expected 0 to 4294967295"},
        {kFrame + R"({"id":32,"x":7,"y":8}]})", "pointers[0].id: no pointer id; expected 0 to 31"},
        {kPointer + R"(},{"id":4,"x":7,"y":8}]})", "pointers[1].id: another pointer"},
        {seventeen + "]}", "pointers: 17 pointers; expected at most 16"},
        {kPointer + R"(,"axes":[0,0,0,"",0,0,0,0,0,0]}]})", "pointers[0].axes[3]: not an integer"},
        {kPointer + R"(,"pressure":1}]})", "pointers[0].pressure: unknown key"},
        {kPointer + R"(}],"touching":[5]})", "touching: id 5 has no record"},
        {kPointer + R"(}],"ids":[5]})", "ids: id 5 has no record"},
        {kPointer + R"(}],"ids":[5],"idToIndex":{"5":16}})", "idToIndex.5: no index of a record"},
        {kWindow + R"(}],"focused":1})", "focused: no window of this index"},
        {kSurface + R"(,"width":1,"scale":[1,1e39]})", "scale[1]: does not fit"},
        {kSurface + R"(,"width":1,"scale":[1,true]})", "scale[1]: not a number"},
        {kProperty + textOf(92), "value: 92 bytes long; expected at most 91"},
        {R"({"platform":"setProperty","key":"","value":"v"})", "key: empty"},
        {R"({"platform":"sensor"})", R"(platform: unknown "sensor"; expected one of sensorEvent, sensorService, )"},
        {kSample + "}", "timestamp: missing"},
        {kSample + R"(,"timestamp":1,"values":[0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0]})", "values: 17 values; expected at"},
        {kSample + R"(,"timestamp":1,"values":[0,"1"]})", "values[1]: not a number"},
        {kService + "}", R"(line: neither "state" nor "fails")"},
        {kService + R"(,"state":"dead"})", R"(state: unknown "dead"; expected one of dies, registers, absent, )"},
        {kService + R"(,"state":"dies","fails":{"enable":"result"}})", "fails.enable: unknown key; expected one"},
        {kService + R"(,"fails":{"enableSensor":"noQueue"}})", R"(fails.enableSensor: unknown "noQueue"; expected )"},
        // Of the header itself.
        {"", "1: trace: the file is empty"},
        {"\n", "1: trace: no JSON object, so no trace; expected its header (a recording needs --profile)"},
        {R"({"call":"notifyInputStart"})", "1: trace: no header"},
        {R"({"trace":"zqaft","version":2})", "1: version: unknown; expected 1"},
        {kHead + R"(,"devices":[{"id":1,"name":"a"},{"id":1,"name":"b"}]})", "1: devices[1].id: another device"},
        {kHead + R"(,"sensors":[{"type":3,"handle":7},{"type":9,"handle":7}]})", "1: sensors[1].handle: sensors[0] "},
        {kHead + R"(,"properties":{"k":"1","k":"1"}})", "1: properties.k: given twice"},
        {kHead + R"(,"properties":{"":"v"}})", "1: properties: a property without a name"},
        {kHead + R"(,"properties":{"k":)" + textOf(92) + "}", "1: properties.k: 92 bytes"},
    };
    for (const auto& [text, fault] : cases) {
        const bool header = beginsWith(fault, "1: ");
        std::istringstream in(header ? text : kDevices + kKey + "9,\"t\":50}\n" + text + "\n");
        uint32_t read = 0;
        const std::string error = errorOf([&] {
            TraceReader reader(in, "in");
            for (TraceLine line; reader.next(line);) read = line.line;
        });
        EXPECT_EQ(read, header ? 0u : 2u) << "the line before it is good";
        EXPECT_TRUE(beginsWith(error, (header ? "in:" : "in:3: ") + fault)) << text << "\n" << error;
    }
}

// What an import writes would come back as another gesture on another phone.
TEST(TraceWriter, WhatIsWrittenReadsAsTheSame) {
    const std::string trace =
        R"({"trace":"zqaft","version":1,"properties":{"b":"\"q\" \\ \u0001 µ","a":""},"devices":[{"id":-3,"name":"ein \"Gerät\"","external":true,"sources":4294967295},{"id":5,"name":""}],"sensors":[{"type":65557,"handle":-7},{"type":3,"handle":9}],"note":"why\nand how"}
{"call":"processKey","device":-3,"when":-9223372036854775808,"keyCode":513,"scanCode":-2147483648,"down":true,"metaState":2147483647,"policyFlags":4294967295}
{"t":0,"call":"processRawTouches","device":null,"when":1,"pointers":[]}
{"t":1,"call":"processRawTouches","device":5,"when":9223372036854775807,"pointers":[{"id":31,"x":-2147483648,"y":2147483647,"axes":[1,-2,3,4,5,6,7,8,9,10],"hovering":true,"extraData":4294967295,"reserved":9},{"id":0,"x":1,"y":2}]}
{"call":"processRawTouches","device":5,"when":2,"pointers":[{"id":3,"x":1,"y":2},{"id":4,"x":3,"y":4}],"touching":[4,6],"hovering":[3,8],"ids":[3,5,7],"idToIndex":{"3":1,"4":0,"5":15,"6":0,"7":0,"31":2}}
{"call":"processRawTouches","device":5,"when":2,"pointers":[{"id":3,"x":1,"y":2}],"touching":[],"ids":[3]}
{"call":"processInputWindow","windows":[{"name":"a"},{"name":"b\"","token":false,"type":2019,"frame":[-1,2,3,4],"visible":false,"notchArea":true}],"focused":1,"keyguard":true}
{"call":"configureSurface","device":5,"width":1080,"height":2340,"orientation":3,"calibration":[1.5,0.1,-3,1e+20,1.1754944e-38,6],"rawX":[-1,1079],"rawY":[2,2339],"scale":[0.33333334,-3.4028235e+38],"translate":[-0.0,0.5]}
{"call":"configureSurface","device":null,"width":-1,"height":0,"orientation":0,"rawX":[0,0],"rawY":[0,0]}
{"t":9223372036854775807,"call":"notifyInputStart"}
{"call":"notifyScreenState"}
{"platform":"setProperty","key":"ro.k\"","value":"a\tb"}
{"t":9223372036854775807,"platform":"sensorEvent","type":-1,"handle":-7,"timestamp":-9,"values":[1,0,-88.25,0.1,1e+20,0,0,0,0,0,0,0,0,0,0,0]}
{"platform":"sensorService","fails":{},"state":"registers"}
{"platform":"sensorService","fails":{"getService":"transport","linkToDeath":"result","createEventQueue":"noQueue","getDefaultSensor":"transport","enableSensor":"result","disableSensor":"transport"}}
{"platform":"sensorService","state":"dies"}
)" + kProperty +
        textOf(91) + "\n";
    EXPECT_EQ(rewritten(trace), trace);
}

}  // namespace
}  // namespace refhost
