#include <gtest/gtest.h>

#include "refhost/play/Player.h"
#include "refhost/play/ResultWriter.h"
#include "tests/refhost/TraceText.h"

using namespace refhost;

namespace {

// Whoever reads results by program would miss a key that was sent again, a cancel or a finger that was taken out.
TEST(Results, HoldAllThatCameBack) {
    const std::string frame = R"({"call":"processRawTouches","device":3,"when":)";
    const std::string service = R"({"platform":"sensorService",)";
    const std::string enabled =
        R"({"call":"getDefaultSensor","arguments":[65557]},{"call":"enableSensor","arguments":[7,0,0]})";
    const std::string subscribed =
        R"("service":[{"call":"linkToDeath","arguments":[0]},{"call":"createEventQueue","arguments":[]},)" + enabled;
    const std::pair<std::string, std::string> lines[] = {
        {R"({"call":"notifyInputStart"})", subscribed},
        {R"({"call":"processRawTouches","device":3,"when":60000000000,"pointers":[{"id":9,"x":1,"y":2,"hovering":true,"reserved":5},{"id":0,"x":540,"y":2200,"axes":[-1,0,0,0,0,0,0,0,0,7],"extraData":536870912}],"idToIndex":{"4":1}})",
         R"("frame":{"pointers":[{"id":9,"x":1,"y":2,"axes":[0,0,0,0,0,0,0,0,0,0],"hovering":true,"extraData":0,"reserved":5},{"id":0,"x":540,"y":2200,"axes":[-1,0,0,0,0,0,0,0,0,7],"hovering":false,"extraData":536870912,"reserved":0}],"touching":[0],"hovering":[9],"idToIndex":{"0":1,"9":0}},"ids":[0],"removed":[],"keys":[],"cancelled":[60000000000],)"},
        {R"({"call":"processKey","device":5,"when":60060000000,"keyCode":601,"scanCode":-7,"down":true,"metaState":3,"policyFlags":2147483650})",
         R"("result":1,)"},
        {frame + R"(60130000000,"pointers":[]})",
         R"("frame":{"pointers":[],"touching":[],"hovering":[],"idToIndex":{}},"ids":[],"removed":[],"keys":[{"eventTime":60130000000,"deviceId":5,"source":257,"policyFlags":2147483650,"action":0,"flags":8,"keyCode":601,"scanCode":-7,"metaState":3,"downTime":60130000000},{"eventTime":60130000000,"deviceId":5,"source":257,"policyFlags":2147483650,"action":1,"flags":8,"keyCode":601,"scanCode":-7,"metaState":3,"downTime":60130000000}],)"},
        {R"({"call":"processKey","device":5,"when":65000000000,"keyCode":516,"down":true})", R"("result":1,)"},
        {frame + R"(65090000000,"pointers":[{"id":1,"x":540,"y":2200}]})",
         R"("frame":{"pointers":[],"touching":[],"hovering":[],"idToIndex":{}},"ids":[],"removed":[1],"keys":[],)"},
        // A sensor service that dies and comes back.
        {service + R"("state":"dies"})", ""},
        {R"({"call":"notifyInputExit"})", ""},
        {service + R"("fails":{"enableSensor":"result"},"state":"registers"})", subscribed},
        {service + R"("fails":{},"state":"absent"})", ""},
        {R"({"call":"notifyInputStart"})", R"("service":[)" + enabled},
        {R"({"call":"notifyInputExit"})", R"("service":[{"call":"disableSensor","arguments":[7]})"},
    };
    std::string trace =
        R"({"trace":"zqaft","version":1,"properties":{"ro.zqaft.tpfp.filter_area":"400,2100,680,2340","ro.config.zq_hall_prop":"1"},"devices":[{"id":3,"name":"panel"},{"id":5,"name":"fingerprint","sources":257}],"sensors":[{"type":3,"handle":9},{"type":65557,"handle":7},{"type":65557,"handle":8}]}
{"call":"configureSurface","device":3,"width":1080,"height":2340,"orientation":0,"rawX":[0,1],"rawY":[0,1]})";
    for (const auto& [line, result] : lines) trace += std::string("\n") + line;
    std::istringstream in(trace);
    TraceReader reader(in, "in");
    Player player(reader.header(), ZQAFT_PLUGIN_UNDER_TEST);
    TraceLine line;
    reader.next(line);
    player.play(line);
    for (const auto& [call, result] : lines) {
        ASSERT_TRUE(reader.next(line));
        TextBuffer out;
        writeResult(out, player.play(line));
        const std::string text = fmt::to_string(out);
        const std::string expected = fmt::format(R"({{"line":{},{})", line.line, result);
        EXPECT_EQ(text.substr(0, expected.size()), expected);
        const bool ofService =
            result.ends_with('}');  // there a build for foldable devices goes on with a sensor of its own
        EXPECT_TRUE(ofService || text.substr(expected.size()).starts_with(R"("log":)"));
    }
}

// A log line with a quotation mark, a byte that is no text, or of an unknown priority would break the JSON around it.
TEST(Results, TextsOfAllKinds) {
    CallResult result;
    result.line = 7;
    result.requests.cancelled = {1, -2};
    result.requests.reports = {{651, "{time:\"1\"}"}, {-1, ""}};
    result.log = {{4, "Tag", "\"a\\b\"\n\x01"}, {99, "", "µ \xff"}};
    TextBuffer out;
    writeResult(out, result);
    EXPECT_EQ(fmt::to_string(out),
              R"({"line":7,"cancelled":[1,-2],"reports":[{"event":651,"text":"{time:\"1\"}"},{"event":-1,"text":""}],)"
              R"("log":[{"priority":"INFO","tag":"Tag","text":"\"a\\b\"\n\u0001"},)"
              "{\"priority\":\"UNKNOWN\",\"tag\":\"\",\"text\":\"µ \xEF\xBF\xBD\"}],\"decisions\":[]}\n");
}

}  // namespace
