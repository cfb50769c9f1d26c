#include <gtest/gtest.h>

#include "refhost/Files.h"
#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"
#include "refhost/trace/TraceReader.h"
#include "refhost/trace/TraceWriter.h"
#include "tests/refhost/DecisionText.h"

using namespace refhost;

namespace {

struct Recorded {
    std::string profile, recording, file;
    std::string decisions{};  ///< where they say more than the verdicts next to the trace
};

void PrintTo(const Recorded& recorded, std::ostream* out) { *out << recorded.file; }

class Example : public ::testing::TestWithParam<Recorded> {};

// The corpus of examples would hold what the importer no longer makes of their recordings; or an outcome would be shown
// without its rule, or without what led to it.
TEST_P(Example, BecomesItsTraceAndItsDecisions) {
    const std::string folder = ZQAFT_EXAMPLES "/";
    const auto& [profile, recording, file, expected] = GetParam();
    ImportedTrace imported(readRecording(folder + recording + ".getevent"), readProfile(folder + profile + ".yaml"),
                           "");
    TextBuffer text;
    writeTrace(text, imported.header());
    for (TraceLine line; imported.next(line);) writeTrace(text, line);
    EXPECT_TRUE(imported.notes().empty() && imported.leftOut().empty());
    TraceReader trace(folder + file + ".trace.jsonl");
    EXPECT_TRUE(fmt::to_string(text) == readFile(folder + file + ".trace.jsonl"));
    const std::string decisions = decisionsOf(trace);
    EXPECT_EQ(decisions.find('?'), std::string::npos) << "a rule without a meaning: " << decisions;
    EXPECT_TRUE(expected.empty() || decisions == expected) << decisions;
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
     "60000 noted front-fingerprint area-placed; 60000 noted notch notch-surface; "
     "60000 held back finger 0 at (556, 37): notch-band; 60340 kept finger 1 at (319, 1838): outside-area; "
     "60905 lost finger 0 at (556, 36): notch-band; 61900 held back finger 0 at (602, 66): notch-band; "
     "62099 let through finger 0 at (596, 107): notch-left; 63000 noted notch notch-windows; "
     "63400 kept finger 0 at (236, 58): notch-window; 63610 kept finger 0 at (241, 61): notch-window; "
     "64100 held back finger 0 at (742, 44): notch-band; 64332 lost finger 0 at (740, 45): notch-band; "
     "65000 noted front-fingerprint area-placed; 65000 noted notch notch-surface; "
     "65500 kept finger 0 at (538, 14): outside-area; 7: 4 kept, 1 let through (199 ms late), 2 lost"},
    {"phone-sensor-service-dies", "slide-cover", "traces/sensor-service-dies",
     "60000 noted front-fingerprint area-placed; 60000 noted slide-cover sensor-on*; "
     "60000 noted slide-cover cover-state*; 60000 kept finger 0 at (566, 1704): outside-area; "
     "60700 noted sensor service dies; 60700 noted slide-cover sensor-lost; 61000 noted slide-cover cover-idle*; "
     "61000 kept finger 0 at (612, 1884): outside-area; 61250 noted sensor 65557 unheard; "
     "61382 kept finger 1 at (331, 1422): outside-area; 62200 noted sensor service registers; "
     "62200 noted slide-cover sensor-on*; 62210 noted slide-cover cover-state*; "
     "62600 kept finger 0 at (522, 1304): outside-area; 62900 noted slide-cover cover-state*; "
     "62907 cancelled gesture of finger 0: cover-moved*; 66310 reported event 651: cover-report*; "
     "4: 3 kept, 1 cancelled"},
    {"phone-foldable", "folding", "traces-foldable/folding",
     ZQAFT_FOLDABLE ? ""
                    : "60000 noted front-fingerprint area-placed; 60000 noted sensor 3 unheard; "
                      "60000 kept finger 0 at (586, 1690): outside-area; "
                      "61000 kept finger 0 at (846, 1462): outside-area; "
                      "61606 kept finger 1 at (262, 641): outside-area; "
                      "63400 kept finger 0 at (604, 1652): outside-area; 4: 4 kept"},
};
INSTANTIATE_TEST_SUITE_P(Examples, Example, ::testing::ValuesIn(kRecorded));

}  // namespace
