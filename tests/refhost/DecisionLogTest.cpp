#include <gtest/gtest.h>

#include <sstream>

#include "refhost/trace/TraceReader.h"
#include "tests/refhost/DecisionText.h"

using namespace refhost;

namespace {

// The log would blame the wrong filter, or miss where a gesture ends otherwise than its first line promised.
TEST(DecisionLog, NamesTheFilterThatRemovesAFinger) {
    std::istringstream in(
        R"({"trace":"zqaft","version":1,"properties":{"ro.config.zq_hall_prop":"1","ro.config.zq_notch_size":"0,9,0,0"},"devices":[{"id":3,"name":"panel"}],"sensors":[{"type":65557,"handle":7}]}
{"t":1000000,"call":"configureSurface","device":3,"width":1080,"height":2340,"orientation":3,"rawX":[0,1079],"rawY":[0,2339]}
{"platform":"sensorService","fails":{"enableSensor":"result"}}
{"call":"notifyInputStart"}
{"call":"notifyInputStart"}
{"call":"processRawTouches","device":3,"when":2000000,"pointers":[{"id":0,"x":5,"y":9},{"id":1,"x":50,"y":0}]}
{"t":2000000,"call":"processInputWindow","windows":[{"name":"Game","notchArea":true,"frame":[2330,0,2340,5]},{"name":"Hidden","notchArea":true,"visible":false}]}
{"call":"processRawTouches","device":3,"when":3000000,"pointers":[{"id":0,"x":5,"y":9},{"id":1,"x":50,"y":0}]}
{"t":4000000,"call":"configureSurface","device":3,"width":1080,"height":2340,"orientation":0,"rawX":[0,1079],"rawY":[0,2339]}
{"call":"processRawTouches","device":3,"when":5000000,"pointers":[{"id":0,"x":5,"y":9},{"id":1,"x":50,"y":0}]}
{"call":"processRawTouches","device":3,"when":6000000,"pointers":[]}
{"t":7000000,"platform":"sensorService","fails":{}}
{"call":"notifyInputStart"}
{"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,0]}
{"call":"processRawTouches","device":3,"when":10000000,"pointers":[{"id":0,"x":5,"y":50,"extraData":536870912}]}
{"t":12000000,"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,2]}
{"call":"processRawTouches","device":3,"when":13000000,"pointers":[{"id":0,"x":5,"y":50,"extraData":536870912},{"id":1,"x":6,"y":50}]}
{"call":"processRawTouches","device":3,"when":14000000,"pointers":[]}
{"t":25000000,"call":"notifyInputExit"}
{"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,1]}
{"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,2]})");
    TraceReader trace(in, "in");
    EXPECT_EQ(decisionsOf(trace),
              "1 noted front-fingerprint area-off*; 1 noted notch notch-surface; 1 noted sensor service fails; "
              "1 noted slide-cover sensor-failed*; 2 noted slide-cover cover-idle*; "
              "2 held back finger 0 at (5, 9): notch-band; 2 held back finger 1 at (50, 0): notch-band; "
              "2 noted notch notch-windows; 3 let through finger 0 at (5, 9): notch-window; "
              "4 noted notch notch-surface; 5 let through finger 1 at (50, 0): notch-portrait; "
              "7 noted sensor service fixed; 7 noted slide-cover sensor-on*; 7 noted slide-cover cover-state*; "
              "10 kept finger 0 at (5, 50): filter-off; 10 cancelled gesture of finger 0: abnormal-touch*; "
              "12 noted slide-cover cover-state*; 13 held back finger 1 at (6, 50): cover-cancelled; "
              "13 cancelled gesture of finger 0: cover-moved*; 14 lost finger 1 at (6, 50): cover-cancelled; "
              "14 reported event 651: cover-report*; 25 noted slide-cover sensor-off*; 25 noted sensor 65557 unheard; "
              "4: 2 let through (1 to 3 ms late), 1 lost, 1 cancelled");
}

// When two panels are cancelled one after the other, the second's fingers would seem to be kept.
TEST(DecisionLog, ShowsTheCancelsOfEachPanel) {
    std::string text =
        R"({"trace":"zqaft","version":1,"properties":{"ro.zqaft.tpfp.filter_area":"1,1,999,999"},"devices":[{"id":3,"name":"front"},{"id":4,"name":"back"},{"id":5,"name":"fingerprint"}]}
{"call":"configureSurface","device":3,"width":1000,"height":1000,"orientation":0,"rawX":[0,999],"rawY":[0,999]})";
    const auto frame = [&text](int device, int ms, int x) {
        text += fmt::format(
            R"({}{{"call":"processRawTouches","device":{},"when":{}000000,"pointers":[{{"id":0,"x":{},"y":2}}]}})",
            '\n', device, ms, x);
    };
    frame(3, 9013, 1);
    frame(4, 9014, 1);
    text +=
        "\n"
        R"({"call":"processKey","device":5,"when":9015000000,"keyCode":513,"down":true})";
    frame(3, 9023, 102);
    frame(4, 9024, 102);
    frame(3, 9025, 102);
    std::istringstream in(text);
    TraceReader trace(in, "in");
    EXPECT_EQ(decisionsOf(trace),
              "0 noted front-fingerprint area-placed; 9013 kept finger 0 at (1, 2): no-doubt; "
              "9014 kept finger 0 at (1, 2) of device 4: no-doubt; 9015 held back key 513 down: waits-for-finger*; "
              "9024 cancelled gesture of finger 0 of device 4: slide-over-sensor*; "
              "9025 cancelled gesture of finger 0: slide-over-sensor*; 2: 2 cancelled");
}

// The time per call that a replay reports would be of another order than the calls' own.
TEST(DurationHistogram, PercentilesToTheWidthOfABucket) {
    EXPECT_EQ(DurationHistogram().percentile(0.5), 0);
    for (const int64_t value : std::initializer_list<int64_t>{0, 31, 32, 63, 64, 127, 1'000'000, INT64_MAX}) {
        DurationHistogram histogram;
        for (const int64_t each : {value, value, INT64_MAX}) histogram.add(each);
        EXPECT_GE(histogram.percentile(0.5), value);
        EXPECT_LE(histogram.percentile(0.5) - value, value / 32) << value;
        EXPECT_EQ(histogram.percentile(1), INT64_MAX);
    }
    DurationHistogram histogram;
    for (int64_t ns = 1000; ns >= -1; --ns) histogram.add(ns);  // -1: a clock that went back
    EXPECT_EQ(histogram.count(), 1002u);
    EXPECT_NEAR(static_cast<double>(histogram.percentile(0.5)), 500, 16);
    EXPECT_NEAR(static_cast<double>(histogram.percentile(0.25)), 250, 8);
    EXPECT_EQ(histogram.percentile(1), 1000) << "no percentile lies above the greatest value";
}

}  // namespace
