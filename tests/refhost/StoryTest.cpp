#include <fmt/format.h>
#include <gtest/gtest.h>

#include "refhost/play/Player.h"
#include "refhost/play/Story.h"
#include "refhost/profile/ImportedTrace.h"
#include "refhost/recording/Readers.h"

namespace refhost {
namespace {

struct Recorded {
    std::string profile;
    std::string recording;
    std::string story;
};

void PrintTo(const Recorded& recorded, std::ostream* out) { *out << recorded.recording; }

constexpr const char* kFates[] = {"kept",      "held back", "restored",   "let through", "lost",
                                  "cancelled", "consumed",  "dispatched", "re-sent",     "dropped"};

class StoryOf : public ::testing::TestWithParam<Recorded> {};

// The engineer at the desk would be told that a finger or a key met another fate than it did.
TEST_P(StoryOf, EachFate) {
    const std::string folder = std::string(ZQAFT_EXAMPLES) + "/";
    ImportedTrace trace(readRecording(folder + GetParam().recording + ".getevent"),
                        readProfile(folder + GetParam().profile + ".yaml"), "");
    Player player(trace.header(), ZQAFT_PLUGIN_UNDER_TEST);
    Story story;
    std::string told;
    TraceLine line;
    while (trace.next(line)) {
        for (const Decision& decision : story.tell(line, player.play(line))) {
            told += fmt::format("{} {} {}; ", (decision.when + 500'000) / 1'000'000,
                                kFates[static_cast<size_t>(decision.fate)], decision.subject);
        }
    }
    EXPECT_EQ(told, GetParam().story);
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
};
INSTANTIATE_TEST_SUITE_P(Examples, StoryOf, ::testing::ValuesIn(kRecorded));

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
