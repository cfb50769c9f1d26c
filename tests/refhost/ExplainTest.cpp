#include <fmt/format.h>
#include <gtest/gtest.h>

#include "refhost/explain/Explainer.h"
#include "refhost/explain/RuleMeanings.h"
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
TEST_P(Explains, BothSidesOfEachThreshold) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer(headerOfWords());
    std::vector<Explained> all;
    for (const TraceLine& line : linesOf(GetParam().lines)) {
        for (const Explained& each : explainer.explain(line, player.play(line))) all.push_back(each);
    }
    ASSERT_FALSE(all.empty());
    const auto& [decision, reason, log] = all.back();
    EXPECT_NE(meaningOf(reason.rule), "") << reason.rule;
    std::string told = fmt::format("{} {}", wordOf(decision.fate), reason.rule);
    for (const Measure& each : reason.measures) told += fmt::format(" {}={}({})", each.name, each.value, each.margin());
    EXPECT_EQ((told + '.').find(GetParam().told), 0U) << told;
}

const Edge kEdges[] = {
    {"516@9000 f9299:500,1900", "held back finger-on-sensor since a finger on the sensor=299(0)"},
    {"516@9000 f9300:500,1900", "kept no-doubt since a finger on the sensor=300(-1)"},
    {"513@9500 516@9300 f9590:500,1900", "held back finger-on-sensor since a finger on the sensor=90("},
    {"bar1@9 516@8990 f9000:500,1900", "kept navigation-bar since a finger on the sensor=10(9)"},
    {"bar1@9 517@8990 f9000:500,1900 f10700:500,1900", "let through navigation-bar since identification=1710(-11)."},
    {"519@9000 f10699:500,1900", "held back enrolment since enrolment=1699(0)"},
    {"519@9000 f10700:500,1900", "kept no-doubt since enrolment=1700(-1)"},
    {"517@9000 f10699:500,1900", "held back identification since identification=1699(0)"},
    {"517@9000 f10700:500,1900", "kept no-doubt since identification=1700(-1)."},
    {"f9000:500,1900 517@9100 f9120:500,1900 518@9150 f9160:500,1900",
     "held back identification since identification=10("},
    {"f9000:500,1900 517@9100 f9120:500,1900 518@9150 f9160:500,1900 f9200:500,1850",
     "restored moved-up moved up=50(10) moved sideways=0(200) held back for=40(960)"},
    {"f9000:500,1900 517@9100 f9120:500,1900 f10850:500,1900,20000000", "cancelled abnormal-touch"},
    {"516@9000 f9010:399,1800", "kept outside-area x in the area=399(-1) y in the area=1800(0)"},
    {"516@9000 f9010:500,1900 f10010:500,1860",
     "restored moved-up moved up=40(0) moved sideways=0(200) held back for=1000(0)"},
    {"516@9000 f9010:500,1900 f9020:500,1861 f9030:", "lost no-gesture moved up=39(-1)"},
    {"516@9000 f9010:500,1900 f10011:500,1850 f10020:",
     "lost no-gesture moved up=50(10) moved sideways=0(200) held back for=1010(-10)"},
    {"516@9000 f9010:500,1900 g9020:500,1880 f9030:500,1880 f9040:500,1845 f9050:", "lost no-gesture moved up=35(-5)"},
    {"516@9100 f9110:500,1900 f9105:500,1800 f9107:",
     "lost no-gesture moved up=100(60) moved sideways=0(200) held back for=-3(-3)"},
    {"516@9000 f9010:400,1900 f9020:600,1860", "restored moved-up moved up=40(0) moved sideways=200(0)"},
    {"516@9000 f9010:400,1900 f9020:601,1860", "let through left-area-late moved up=40(0) moved sideways=201(-1)"},
    {"516@9000 f9010:500,1801 f9020:500,1799", "restored left-area moved up=2(-38)"},
    {"516@9000 f9010:500,1700 f9020:500,1800", "kept wide-range"},
    {"f9000:500,1900 517@9300 f9301:500,1900",
     "cancelled touch-before-identification from touch to identification=300(0)"},
    {"f9000:500,1900 517@9301 f9302:500,1900", "held back identification"},
    {"f9000:499,1900 f9001:499,1900 f9002:600,1979 516@9010 f9309:600,1979",
     "cancelled slide-over-sensor slid along x=101(0) slid along y=79(0) since the sensor's last key=299(0)"},
    {"f9000:499,1900 f9001:499,1900 f9002:600,1979 516@9010 f9309:600,1979;5,9 f9700:600,1979;5,9",
     "let through after-cancel."},
    {"517@9000 f10700:500,1900 f10710: f10720:500,1900", "kept no-doubt."},
    {"f9000:5,9 518@9010 f9020: f9030:500,1900 f9040: f9050:500,1900", "kept no-doubt."},
    {"516@9000 f9010:500,1900 f9020:500,1860 601@9050", "consumed finger-nearby."},
    {"f9000:500,1900 601@9119", "held back waits-for-finger since the finger landed=119(0)"},
    {"f9000:500,1900 601@9120", "consumed finger-nearby since the finger landed=120(-1)"},
    {"f9000:500,1900 f9050: 601@9080", "dispatched no-finger."},
    {"f9000:500,1900 513@9050 514@9060", "consumed finger-nearby."},
    {"f9000:500,1900 520@9200", "dispatched not-judged."},
    {"turn1@9 f9000:500,100", "held back notch-band y in the notch band=100(0)"},
    {"turn1@9 f9000:500,101",
     "kept outside-area x in the area=500(100) y in the area=101(-1699) y in the notch band=101(-1)"},
    {"turn1@9 f9000:500,1900,1000000", "held back edge-in-landscape on the edge in landscape=1(0)"},
    {"turn1@9 516@8990 f9000:500,1900,1000000", "held back edge-in-landscape on the edge in landscape=1(0)."},
    {"turn1@9 f9000:500,500 turn0@9010 f9030: turn1@9040 f9050:500,50", "kept notch-left-before"},
    {"turn1@9 marked1@10 f9000:500,50", "kept notch-window"},
    {"turn1@9 f9000:500,1900", "kept no-doubt on the edge in landscape=0(-1)"},
    {"turn1@9 f9000:900,1000 601@9050", "consumed central-area x in the central area=900(0)"},
    {"turn1@9 f9000:901,100 601@9050",
     "dispatched no-finger x in the central area=901(-1) y in the central area=100(0)"},
    {"turn1@9 f9000:900,1000 F9010:5,5 601@9050", "dispatched no-finger x in the central area=5(-95)"},
    {"keyguard1@9 f9000:5,6,8000000",
     "cancelled abnormal-touch flagged as abnormal=1(0) flagged as stylus dirty=0(-1)"},
    {"keyguard1@9 f9000:5,6,20000000",
     "cancelled abnormal-touch flagged as abnormal=0(-1) flagged as stylus dirty=1(0) cancels in every window=0(-1)."},
    {"keyguard0@9 f9000:5,6,8000000", "kept outside-area"},
    {"cover0@9 f9000:5,6 cover2@9001 f9002:5,6 f9003:", "reported cover-report cover moved after touch-down=1(0)"},
    {"cover0@9 f9000:5,6 cover2@9000 f9002:5,6 f9003:", "cancelled cover-moved cover moved after touch-down=0(-1)"},
    {"cover0@9 f9000:5,6 cover1@9005 f9010:5,6 f12005:5,6", "let through cover-settled cover in state 1 for=3000(0)"},
    {"cover0@9 f9000:5,9 cover2@9005 f9010:5,9 input0@9015 f9020:5,9", "let through cover-idle."},
    {"cover0@9 f9000:5,6 cover1@9005 f9010:5,6 f12004:5,6;7,8",
     "held back cover-cancelled cover in state 1 for=2999(-1)"},
    {"f9000:499,1900 f9001:499,1900 f9002:583,1979 516@9010",
     "consumed sensor-finger-explained slid along x=84(-17) slid along y=79(0)"},
    {"31x0@9 10x30@9 f9000:5,6", "kept outside-area"},
    {"31x0@9 11x30@9 f9000:5,6", ZQAFT_FOLDABLE ? "cancelled folding spread of the averages=11(" : "kept outside-area"},
    {"31x0@9 11x30@9 dies0@10 30x30@11 f9000:5,6",
     ZQAFT_FOLDABLE ? "cancelled folding spread of the averages=11(" : "kept outside-area"},
};
INSTANTIATE_TEST_SUITE_P(Rules, Explains, ::testing::ValuesIn(kEdges));

// A key would be missing from a moment at which it waits, or be shown as if its fate were open when it is not.
TEST(Explainer, ShowsTheKeyThatWaits) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer(headerOfWords());
    std::string waits;
    for (const TraceLine& line : linesOf("516@9000 f9010:500,1900 601@9050 f9060:500,1861 f9070:")) {
        explainer.explain(line, player.play(line));
        const auto key = explainer.keyAt(*line.t);
        waits += key ? fmt::format("{} ms ", key->reason.measures[0].value) : "- ";
    }
    EXPECT_EQ(waits, "- - - - 0 ms 10 ms - ");
}

// A finger that passes would be shown with a doubt that holds, or as if it were on the other panel, or told twice.
TEST(Explainer, ShowsTheFingersAsTheirLastFramesWereJudged) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer(headerOfWords());
    std::string told;
    for (const TraceLine& line : linesOf("f9000:500,1900 519@9010 f9020:5,9 F9030:500,1900")) {
        for (const Explained& each : explainer.explain(line, player.play(line))) {
            if (!each.decision.about.fingers.isEmpty()) told += each.decision.subject + "; ";
        }
        for (const OnGlass& finger : explainer.fingersAt(*line.t)) {
            const Reason& reason = finger.state.reason;
            told += fmt::format("{}: {} {}; ", finger.state.decision.subject, reason.rule, reason.measures.size());
        }
    }
    EXPECT_EQ(told,
              "finger 0 at (500, 1900); finger 0 at (500, 1900): no-doubt 0; finger 0 at (500, 1900): no-doubt 0; "
              "finger 0 at (5, 9): outside-area 2; finger 0 at (500, 1900) of device 6; "
              "finger 0 at (5, 9): outside-area 2; finger 0 at (500, 1900) of device 6: wide-range 2; ");
}

}  // namespace
}  // namespace refhost
