#include <gtest/gtest.h>

#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "tests/refhost/StoryText.h"

using namespace refhost;

namespace {

struct Recorded {
    std::string profile, recording, story;
};

void PrintTo(const Recorded& recorded, std::ostream* out) { *out << recorded.recording << " on " << recorded.profile; }

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

}  // namespace
