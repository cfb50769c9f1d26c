#include <gtest/gtest.h>

#include "refhost/Files.h"
#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "refhost/trace/TraceReader.h"
#include "refhost/trace/TraceWriter.h"
#include "tests/refhost/StoryText.h"

using namespace refhost;

namespace {

struct Recorded {
    std::string profile, recording, file;
    std::string story{};  ///< where it says more than the verdicts beside the trace
};

void PrintTo(const Recorded& recorded, std::ostream* out) { *out << recorded.file; }

class Example : public ::testing::TestWithParam<Recorded> {};

// The corpus of examples would hold what the importer no longer makes of their recordings; or the engineer would be
// told of a fate without its rule, or not what led to it.
TEST_P(Example, BecomesItsTraceAndItsStory) {
    const std::string folder = ZQAFT_EXAMPLES "/";
    const auto& [profile, recording, file, story] = GetParam();
    ImportedTrace imported(readRecording(folder + recording + ".getevent"), readProfile(folder + profile + ".yaml"),
                           "");
    TextBuffer text;
    writeTrace(text, imported.header());
    for (TraceLine line; imported.next(line);) writeTrace(text, line);
    EXPECT_TRUE(imported.notes().empty() && imported.leftOut().empty());
    TraceReader trace(folder + file + ".trace.jsonl");
    EXPECT_TRUE(fmt::to_string(text) == readFile(folder + file + ".trace.jsonl"));
    const std::string told = storyOf(trace, false);
    EXPECT_TRUE(story.empty() ? told.find("no rule for") == std::string::npos : told == story) << told;
}

const Recorded kRecorded[] = {
    {"phone", "swipe-from-sensor", "traces/swipe-from-sensor"},
    {"phone", "unlock", "traces/unlock"},
    {"phone", "key-held-back", "traces/key-held-back"},
    {"phone-navigation-bar", "navigation-bar", "traces/navigation-bar"},
    {"phone-in-call", "call", "traces/call"},
    {"phone-slide-cover", "slide-cover", "traces/slide-cover"},
    {"phone-slide-cover-settles", "slide-cover", "traces/slide-cover-settles"},
    {"phone-landscape", "notch", "traces/notch",
     "60000 noted landscape, orientation 1; "
     "60000 held back finger 0 at (556, 37) (in the notch band, raw y 0 to 100; the notch filter logs nothing); "
     "60340 kept finger 1 at (319, 1838); 60905 lost finger 0 at (556, 36); "
     "61900 held back finger 0 at (602, 66) (in the notch band, raw y 0 to 100; the notch filter logs nothing); "
     "62099 let through finger 0 at (596, 107) (out of the notch band, raw y 0 to 100); "
     "63000 noted notch-area window shown (Window{3f2a91 u0 com.example.race.Pedals}: 0, 640 to 240, 1040 of the "
     "display); 63400 kept finger 0 at (236, 58); 63610 kept finger 0 at (241, 61); "
     "64100 held back finger 0 at (742, 44) (in the notch band, raw y 0 to 100; the notch filter logs nothing); "
     "64332 lost finger 0 at (740, 45); 65000 noted portrait, orientation 0; 65500 kept finger 0 at (538, 14); "},
    {"phone-sensor-service-dies", "slide-cover", "traces/sensor-service-dies",
     "60000 noted slide-cover sensor on; 60000 noted slide cover in state 0; 60000 kept finger 0 at (566, 1704); "
     "60700 noted sensor service dies; 61000 noted slide-cover filter idle; 61000 kept finger 0 at (612, 1884); "
     "61250 noted slide cover in state 2 (the filter does not hear of it); 61382 kept finger 1 at (331, 1422); "
     "62200 noted sensor service registers; 62200 noted slide-cover sensor on; 62210 noted slide cover in state 2; "
     "62600 kept finger 0 at (522, 1304); 62900 noted slide cover in state 0; 62907 cancelled gesture of finger 0; "
     "66310 reported event 651; "},
    {"phone-foldable", "folding", "traces-foldable/folding",
     ZQAFT_FOLDABLE ? ""
                    : "60000 noted fold angle not heard (this plug-in is built without the fold angle's filter); "
                      "60000 kept finger 0 at (586, 1690); 61000 kept finger 0 at (846, 1462); "
                      "61606 kept finger 1 at (262, 641); 63400 kept finger 0 at (604, 1652); "},
};
INSTANTIATE_TEST_SUITE_P(Examples, Example, ::testing::ValuesIn(kRecorded));

}  // namespace
