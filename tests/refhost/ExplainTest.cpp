#include <fmt/format.h>
#include <gtest/gtest.h>

#include "refhost/explain/ExplainedWriter.h"
#include "refhost/explain/Explainer.h"
#include "refhost/explain/RuleMeaning.h"
#include "refhost/play/Player.h"
#include "tests/refhost/TraceWords.h"

namespace refhost {
namespace {

struct Edge {
    const char* lines;
    const char* told;  ///< of the last decision: verdict, rule, and measures with their margins; the dot ends them
};

void PrintTo(const Edge& edge, std::ostream* out) { *out << edge.told; }

class Explains : public ::testing::TestWithParam<Edge> {};

// The engineer would be told another rule than the one that acted, or that it held where it did not.
TEST_P(Explains, EachRuleAndMeasurement) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer;
    std::vector<Explained> all;
    for (const TraceLine& line : linesOf(GetParam().lines)) {
        for (const Explained& each : explainer.onLine(line, player.play(line))) all.push_back(each);
    }
    ASSERT_FALSE(all.empty());
    const Decision& decision = all.back().decision;
    EXPECT_NE(meaningOf(decision.rule), "") << decision.rule;
    std::string told = fmt::format("{} {}", wordOf(decision.outcome), decision.rule);
    for (const Measurement& each : decision.measurements) {
        const std::string_view name = each.name;
        const bool isPlace = name == "x in the area" || name == "y in the area";
        if (!isPlace || !each.holds) told += fmt::format(" {}={}({})", name, each.value, marginOf(each));
    }
    EXPECT_EQ((told + '.').find(GetParam().told), 0U) << told;
}

// The tests of each filter hold both sides of its thresholds: here is one case for each rule, measurement and kind of
// range.
const Edge kEdges[] = {
    {"517@9000 f10700:500,1900 f10710: f10720:500,1900", "kept no-doubt."},
    {"513@9500 516@9300 f9590:500,1900", "held back finger-on-sensor since a finger on the sensor=90("},
    {"bar1@9 517@8990 f9000:500,1900 f10700:500,1900", "let through navigation-bar since identification=1710(-11)."},
    {"519@9000 f10699:500,1900", "held back enrolment since enrolment=1699(0)"},
    {"517@9000 f10699:500,1900", "held back identification since identification=1699(0)"},
    {"f9000:500,1900 517@9100 f9120:500,1900 518@9150 f9160:500,1900 f9200:500,1850",
     "restored moved-up moved up=50(10) moved sideways=0(200) held back for=40(40)"},
    {"516@9000 f9010:500,1900 f10011:500,1850 f10020:",
     "lost no-gesture moved up=50(10) moved sideways=0(200) held back for=1001(-1)"},
    {"516@9000 f9010:500,1900 g9020:500,1880 f9030:500,1880 f9040:500,1845 f9050:", "lost no-gesture moved up=35(-5)"},
    {"516@9100 f9110:500,1900 f9105:500,1800 f9107:",
     "lost no-gesture moved up=100(60) moved sideways=0(200) held back for=-5(-5)"},
    {"516@9000 f9010:400,1900 f9020:601,1860",
     "let through left-area-late x in the area=601(-1) moved sideways=201(-1)"},
    {"516@9000 f9010:500,1801 f9020:500,1799",
     "restored left-area y in the area=1799(-1) moved sideways=0(200) held back for=10(10)"},
    {"516@9000 f9010:500,1700 f9020:500,1800", "kept wide-range"},
    {"f9000:500,1900 517@9300 f9301:500,1900",
     "cancelled touch-before-identification from touch to identification=300(0)"},
    {"f9000:499,1900 f9001:499,1900 f9002:600,1979 516@9010 f9309:600,1979",
     "cancelled slide-over-sensor since the sensor's last key=299(0) slid along x=101(0) slid along y=79(0)."},
    {"f9000:499,1900 f9001:499,1900 f9002:600,1979 516@9010 f9309:600,1979;5,9 f9700:600,1979;5,9",
     "let through outside-area x in the area=5(-395) y in the area=9(-1791)."},
    {"f9000:500,1900 601@9119", "held back waits-for-finger since the finger landed=119(0)"},
    {"f9000:500,1900 601@9120", "consumed finger-nearby since the finger landed=120(-1)"},
    {"f9000:500,1900 520@9200", "dispatched not-judged."},
    {"turn1@9 f9000:500,100", "held back notch-band y in the notch band=100(0)"},
    {"turn1@9 516@8990 f9000:500,1900,1000000", "held back edge-in-landscape on the edge in landscape=1(0)."},
    {"turn1@9 f9000:500,500 turn0@9010 f9030: turn1@9040 f9050:500,50", "kept notch-left-before"},
    {"turn1@9 marked1@10 f9000:500,50", "kept notch-window"},
    {"turn1@9 f9000:900,1000 601@9050", "consumed central-area x in the central area=900(0)"},
    {"turn1@9 f9000:901,100 601@9050",
     "dispatched no-finger x in the central area=901(-1) y in the central area=100(0)"},
    {"turn1@9 f9000:900,1000 F9010:5,5 601@9050", "dispatched no-finger x in the central area=5(-95)"},
    {"keyguard1@9 f9000:5,6,20000000",
     "cancelled abnormal-touch flagged as abnormal=0(-1) flagged as stylus dirty=1(0)."},
    {"keyguard0@9 f9000:5,6,8000000",
     "kept abnormal-allowed flagged as abnormal=1(0) flagged as stylus dirty=0(-1) cancels in every window=0(-1) "
     "keyguard in front=0(-1) call window in front=0(-1)."},
    {"cover0@9 f9000:5,6 cover2@9001 f9002:5,6 f9003:", "reported cover-report cover moved after touch-down=1(0)"},
    {"cover0@9 f9000:5,6 cover2@9000 f9002:5,6 f9003:",
     "cancelled cover-moved cover state=2(inf) cover state before=0(inf)."},
    {"cover0@9 f9000:5,6 cover1@9005 f9010:5,6 f12005:5,6",
     "let through cover-settled cover in state 1 for=3000000000(0)"},
    {"cover0@9 f9000:5,9 cover2@9005 f9010:5,9 input0@9015 f9020:5,9", "let through cover-idle."},
    {"cover0@9 f9000:5,6 cover1@9005 f9010:5,6 f12004:5,6;7,8",
     "held back cover-cancelled cover in state 1 for=2999000000(-1000000)"},
    {"f9000:499,1900 f9001:499,1900 f9002:583,1979 516@9010",
     "consumed sensor-finger-explained slid along x=84(-17) slid along y=79(0)"},
    {"31x0@9 11x30@9 f9000:5,6", ZQAFT_FOLDABLE ? "cancelled folding spread of the averages=11(" : "kept outside-area"},
};
INSTANTIATE_TEST_SUITE_P(Rules, Explains, ::testing::ValuesIn(kEdges));

// A key would be missing while it waits, or be shown when it waits no longer.
TEST(Explainer, ShowsTheKeyThatWaits) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer;
    std::string waits;
    for (const TraceLine& line : linesOf("516@9000 f9010:500,1900 f9020:500,1900 601@9050 f9060:500,1861 f9070:")) {
        explainer.onLine(line, player.play(line));
        const auto& key = explainer.waitingKey();
        waits += key ? fmt::format("{} {} ", *key->decision.target.key, key->decision.rule) : "- ";
    }
    EXPECT_EQ(waits, "- - - - - 601 waits-for-finger 601 waits-for-finger - ");
}

// A finger would be shown as an earlier frame had it, as if it were on the other panel, or once too often.
TEST(Explainer, ShowsTheLatestRecordOfEachFinger) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer;
    std::string text;
    for (const TraceLine& line : linesOf("f9000:500,1900 519@9010 f9020:5,9 F9030:500,1900")) {
        for (const Explained& each : explainer.onLine(line, player.play(line))) {
            if (!each.decision.target.pointers.isEmpty()) text += each.decision.subject + "; ";
        }
        for (const FingerDown& finger : explainer.fingersDown()) {
            const Decision& latest = finger.latest.decision;
            text += fmt::format("{} {}: {} {}; ", latest.when / 1'000'000, latest.subject, latest.rule,
                                finger.decisions.size());
        }
    }
    EXPECT_EQ(text,
              "finger 0 at (500, 1900); 9000 finger 0 at (500, 1900): no-doubt 1; "
              "9000 finger 0 at (500, 1900): no-doubt 1; 9020 finger 0 at (5, 9): outside-area 1; "
              "finger 0 at (500, 1900) of device 6; 9020 finger 0 at (5, 9): outside-area 1; "
              "9030 finger 0 at (500, 1900) of device 6: wide-range 1; ");
}

// From a finger that was held back the engineer would be led to another event than the one that caused it, or would
// look for a setting where there is none.
TEST(Explainer, LeadsFromAMeasurementToItsCauseAndItsSetting) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer;
    std::vector<TraceLine> lines = linesOf("516@9000 601@9003 f9010:500,1900 f9020:500,1850");
    std::get<ProcessKey>(lines[3].event).when += 400'000;  // within its millisecond
    std::get<ProcessRawTouches>(lines[4].event).when += 600'000;
    TextBuffer text;
    for (const TraceLine& line : lines) {
        for (const Explained& each : explainer.onLine(line, player.play(line))) {
            if (!each.decision.target.pointers.isEmpty()) printReason(text, each);
        }
    }
    const std::string printed = fmt::to_string(text);
    for (const char* line : {
             "x in the area                 500        400 to 600        yes, by 100 and 100        "
             "setting ro.zqaft.tpfp.filter_area\n",
             "since a finger on the sensor  7 ms       1 to 299 ms       yes, by 6 and 292 ms       "
             "key 601 at 9.003 s, fixed\n",
             "moved up                      50         at least 40       yes, by 10                 "
             "landing at 9.011 s, fixed\n",
             "held back for                 10 ms      0 to 1000 ms      yes, by 10 and 990 ms      "
             "landing at 9.011 s, fixed\n",
         }) {
        EXPECT_NE(printed.find(line), std::string::npos) << line << "in\n" << printed;
    }
}

}  // namespace
}  // namespace refhost
