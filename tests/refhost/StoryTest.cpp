#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sstream>

#include "refhost/play/Player.h"
#include "refhost/play/Story.h"
#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "refhost/trace/TraceReader.h"

namespace refhost {
namespace {

struct Recorded {
    std::string profile;
    std::string recording;
    std::string story;
};

void PrintTo(const Recorded& recorded, std::ostream* out) { *out << recorded.recording << " on " << recorded.profile; }

constexpr const char* kFates[] = {"kept",     "held back",  "restored", "let through", "lost",     "cancelled",
                                  "consumed", "dispatched", "re-sent",  "dropped",     "reported", "noted"};

/// The fates of a trace in ms, with the story's own words but without the filters', which their own tests hold.
/// @param foldAngle whether to tell of that sensor, as a plug-in with its filter does of every phone
std::string storyOf(TraceSource& trace, bool foldAngle) {
    Player player(trace.header(), ZQAFT_PLUGIN_UNDER_TEST);
    Story story;
    std::string told;
    TraceLine line;
    while (trace.next(line)) {
        for (const Decision& decision : story.tell(line, player.play(line))) {
            if (!foldAngle && decision.subject.starts_with("fold-angle")) continue;
            told += fmt::format("{} {} {}{}; ", (decision.when + 500'000) / 1'000'000,
                                kFates[static_cast<size_t>(decision.fate)], decision.subject,
                                decision.words.starts_with('(') ? " " + decision.words : "");
        }
    }
    return told;
}

class StoryOf : public ::testing::TestWithParam<Recorded> {};

// The engineer at the desk would be told that a finger or a key met another fate than it did.
TEST_P(StoryOf, EachFate) {
    const std::string folder = std::string(ZQAFT_EXAMPLES) + "/";
    ImportedTrace trace(readRecording(folder + GetParam().recording + ".getevent"),
                        readProfile(folder + GetParam().profile + ".yaml"), "");
    EXPECT_EQ(storyOf(trace, GetParam().recording == "folding"), GetParam().story);
    EXPECT_TRUE(trace.notes().empty() && trace.leftOut().empty());
}

const Recorded kRecorded[] = {
    {"phone", "swipe-from-sensor",
     "60000 consumed key 516 down; 60062 held back finger 0 at (548, 2230); 60128 restored finger 0 at (548, 2230); "
     "60222 consumed key 601 down; 60336 kept finger 1 at (300, 900); 60939 consumed key 516 down; "
     "60989 held back finger 0 at (530, 2261); 61375 lost finger 0 at (531, 2262); "},
    {"phone", "unlock",
     "60000 kept finger 0 at (543, 2219); 60084 consumed key 517 down; 60092 cancelled gesture of finger 0; "
     "60231 consumed key 518 down; "
     "62600 kept finger 0 at (520, 2150); "},
    {"phone", "key-held-back",
     "60000 kept finger 0 at (537, 2240); 60061 held back key 601 down; 60131 re-sent key 601 down and up; "
     "60900 consumed key 516 down; 60958 held back finger 0 at (542, 2235); 60991 held back key 601 down; "
     "61012 restored finger 0 at (542, 2235); 61012 dropped key 601; "},
    {"phone-navigation-bar", "navigation-bar",
     "60000 consumed key 516 down; 60055 kept finger 0 at (537, 2288); 62000 consumed key 516 down; "
     "62055 held back finger 0 at (537, 2289); 62121 lost finger 0 at (537, 2289); "},
    {"phone-in-call", "call",
     "60000 kept finger 0 at (299, 699); 60000 cancelled gesture of finger 0; 60900 kept finger 0 at (700, 1500); "
     "62400 kept finger 0 at (311, 720); "},
    {"phone-landscape", "notch",
     "60000 noted landscape, orientation 1; "
     "60000 held back finger 0 at (556, 37) (in the notch band, raw y 0 to 100; the notch filter logs nothing); "
     "60340 kept finger 1 at (319, 1838); 60905 lost finger 0 at (556, 36); "
     "61900 held back finger 0 at (602, 66) (in the notch band, raw y 0 to 100; the notch filter logs nothing); "
     "62099 let through finger 0 at (596, 107) (out of the notch band, raw y 0 to 100); "
     "63000 noted notch-area window shown (Window{3f2a91 u0 com.example.race.Pedals}: 0, 640 to 240, 1040 of the "
     "display); 63400 kept finger 0 at (236, 58); 63610 kept finger 0 at (241, 61); "
     "64100 held back finger 0 at (742, 44) (in the notch band, raw y 0 to 100; the notch filter logs nothing); "
     "64332 lost finger 0 at (740, 45); 65000 noted portrait, orientation 0; 65500 kept finger 0 at (538, 14); "},
    {"phone-slide-cover-settles", "slide-cover",
     "60000 noted slide-cover sensor on; 60000 noted slide cover in state 0; 60000 kept finger 0 at (566, 1704); "
     "61000 kept finger 0 at (612, 1884); 61382 kept finger 1 at (331, 1422); 62600 kept finger 0 at (522, 1304); "
     "62800 noted slide cover in state 1; 62808 cancelled gesture of finger 0; "
     "66069 let through finger 0 at (443, 1103) (the slide cover has been in state 1 for 3 s: touches pass again); "
     "66310 reported event 651; "},
    {"phone-sensor-service-dies", "slide-cover",
     "60000 noted slide-cover sensor on; 60000 noted slide cover in state 0; 60000 kept finger 0 at (566, 1704); "
     "60700 noted sensor service dies; 61000 noted slide-cover filter idle; 61000 kept finger 0 at (612, 1884); "
     "61250 noted slide cover in state 2 (the filter does not hear of it); 61382 kept finger 1 at (331, 1422); "
     "62200 noted sensor service registers; 62200 noted slide-cover sensor on; 62210 noted slide cover in state 2; "
     "62600 kept finger 0 at (522, 1304); 62900 noted slide cover in state 0; 62907 cancelled gesture of finger 0; "
     "66310 reported event 651; "},
#if ZQAFT_FOLDABLE
    {"phone-foldable", "folding",
     "60000 noted fold-angle sensor on; 60000 kept finger 0 at (586, 1690); 61000 kept finger 0 at (846, 1462); "
     "61432 cancelled gesture of finger 0; 61606 held back finger 1 at (262, 641); "
     "61764 lost finger 1 at (264, 645); 63400 kept finger 0 at (604, 1652); "},
#else
    {"phone-foldable", "folding",
     "60000 noted fold angle not heard (this plug-in is built without the fold angle's filter); "
     "60000 kept finger 0 at (586, 1690); 61000 kept finger 0 at (846, 1462); 61606 kept finger 1 at (262, 641); "
     "63400 kept finger 0 at (604, 1652); "},
#endif
};
INSTANTIATE_TEST_SUITE_P(Examples, StoryOf, ::testing::ValuesIn(kRecorded));

// The story would blame the wrong filter, or keep silent where a gesture ends otherwise than its first line promised.
TEST(Story, TellsWhoTookAFingerAndWhoCouldNot) {
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
    EXPECT_EQ(storyOf(trace, false),
              "1 noted landscape, orientation 3; 1 noted sensor service fails (enableSensor: result); "
              "1 noted slide-cover sensor fails; 2 noted slide-cover filter idle; "
              "2 held back finger 0 at (5, 9) (in the notch band, raw y 0 to 9; the notch filter logs nothing); "
              "2 held back finger 1 at (50, 0) (in the notch band, raw y 0 to 9; the notch filter logs nothing); "
              "2 noted notch-area window shown (Game: 2330, 0 to 2340, 5 of the display); "
              "3 let through finger 0 at (5, 9) (in the notch band, but in a notch-area window); "
              "4 noted portrait, orientation 0; "
              "5 let through finger 1 at (50, 0) (no longer held in landscape: the notch filter does not act); "
              "7 noted sensor service mended; 7 noted slide-cover sensor on; 7 noted slide cover in state 0; "
              "10 kept finger 0 at (5, 50); 10 cancelled gesture of finger 0; 12 noted slide cover in state 2; "
              "13 held back finger 1 at (6, 50); 13 cancelled gesture of finger 0; 14 lost finger 1 at (6, 50); "
              "14 reported event 651; 25 noted slide-cover sensor off; "
              "25 noted slide cover in state 1 (the filter does not hear of it); "
              "25 noted slide cover in state 2 (the filter has it so already); ");
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
}  // namespace refhost
