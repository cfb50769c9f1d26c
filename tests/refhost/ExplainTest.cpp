#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sstream>

#include "refhost/explain/Explainer.h"
#include "refhost/play/Player.h"
#include "refhost/trace/TraceReader.h"

namespace refhost {
namespace {

struct Edge {
    const char* lines;  ///< after a surface of 1000 x 2000 with the area 400, 1800 to 600, 2000
    const char* told;   ///< of the last decision: verdict, rule, and one of its measures with its margin
};

void PrintTo(const Edge& edge, std::ostream* out) { *out << edge.told; }

/// Words as "516@9000", a key and its ms, or "f9300:500,1900", a frame with one finger or none; all after "landscape".
std::string traceOf(std::istringstream words) {
    std::string lines;
    int turned = 0;
    for (std::string word; words >> word;) {
        int first = 0;
        int x = 0;
        int y = 0;
        if (word == "landscape") turned = 1;
        if (std::sscanf(word.c_str(), "%d@%d", &first, &x) == 2) {
            lines += fmt::format(R"({{"call":"processKey","device":4,"when":{}000000,"keyCode":{},"down":true}})", x,
                                 first) +
                     '\n';
        }
        const int count = std::sscanf(word.c_str(), "f%d:%d,%d", &first, &x, &y);
        if (count <= 0) continue;
        lines += fmt::format(R"({{"call":"processRawTouches","device":3,"when":{}000000,"pointers":[{}]}})", first,
                             count == 3 ? fmt::format(R"({{"id":0,"x":{},"y":{}}})", x, y) : "") +
                 '\n';
    }
    return fmt::format(
        R"({{"trace":"zqaft","version":1,"properties":{{"ro.zqaft.tpfp.filter_area":"400,1800,600,2000","ro.config.zq_notch_size":"0,100,0,0"}},"devices":[{{"id":3,"name":"panel"}},{{"id":4,"name":"fingerprint"}}]}}
{{"call":"configureSurface","device":3,"width":1000,"height":2000,"orientation":{},"rawX":[0,999],"rawY":[0,1999]}}
{})",
        turned, lines);
}

class Explains : public ::testing::TestWithParam<Edge> {};

// The engineer would be told another rule than the one that acted, or that it held where it did not.
TEST_P(Explains, BothSidesOfEachThreshold) {
    std::istringstream text(traceOf(std::istringstream(GetParam().lines)));
    TraceReader trace(text, "in");
    Player player(trace.header(), ZQAFT_PLUGIN_UNDER_TEST);
    Explainer explainer(trace.header());
    std::vector<Explained> all;
    for (TraceLine line; trace.next(line);) {
        for (const Explained& each : explainer.explain(line, player.play(line))) all.push_back(each);
    }
    ASSERT_FALSE(all.empty());
    const auto& [decision, reason, log] = all.back();
    std::string told = fmt::format("{} {}", wordOf(decision.fate), reason.rule);
    for (const Measure& each : reason.measures) told += fmt::format(" {}={}({})", each.name, each.value, each.margin());
    EXPECT_EQ(told.find(GetParam().told), 0U) << told;
}

const Edge kEdges[] = {
    {"516@9000 f9299:500,1900", "held back finger-on-sensor since a finger on the sensor=299(0)"},
    {"516@9000 f9300:500,1900", "kept no-doubt since a finger on the sensor=300(-1)"},
    {"519@9000 f10699:500,1900", "held back enrolment since enrolment=1699(0)"},
    {"519@9000 f10700:500,1900", "kept no-doubt since enrolment=1700(-1)"},
    {"517@9000 f10699:500,1900", "held back identification since identification=1699(0)"},
    {"517@9000 f10700:500,1900", "kept no-doubt"},
    {"516@9000 f9010:399,1800", "kept outside-area x in the area=399(-1) y in the area=1800(0)"},
    {"516@9000 f9010:500,1900 f10010:500,1860",
     "restored moved-up moved up=40(0) moved sideways=0(200) held back for=1000(0)"},
    {"516@9000 f9010:500,1900 f9020:500,1861 f9030:", "lost no-gesture moved up=39(-1)"},
    {"516@9000 f9010:500,1900 f10011:500,1850 f10020:",
     "lost no-gesture moved up=50(10) moved sideways=0(200) held back for=1010(-10)"},
    {"516@9000 f9010:400,1900 f9020:600,1860", "restored moved-up moved up=40(0) moved sideways=200(0)"},
    {"516@9000 f9010:400,1900 f9020:601,1860", "let through left-area-late moved up=40(0) moved sideways=201(-1)"},
    {"516@9000 f9010:500,1801 f9020:500,1799", "restored left-area moved up=2(-38)"},
    {"516@9000 f9010:500,1700 f9020:500,1800", "kept wide-range"},
    {"f9000:500,1900 517@9300 f9301:500,1900",
     "cancelled touch-before-identification from touch to identification=300(0)"},
    {"f9000:500,1900 517@9301 f9302:500,1900", "held back identification"},
    {"f9000:499,1900 f9001:499,1900 f9002:600,1979 516@9010 f9309:600,1979",
     "cancelled slide-over-sensor slid along x=101(0) slid along y=79(0) since the sensor's last key=299(0)"},
    {"f9000:500,1900 601@9119", "held back waits-for-finger since the finger landed=119(0)"},
    {"f9000:500,1900 601@9120", "consumed finger-nearby since the finger landed=120(-1)"},
    {"landscape f9000:500,100", "held back notch-band y in the notch band=100(0)"},
    {"landscape f9000:500,101",
     "kept outside-area x in the area=500(100) y in the area=101(-1699) y in the notch band=101(-1)"},
};
INSTANTIATE_TEST_SUITE_P(Rules, Explains, ::testing::ValuesIn(kEdges));

}  // namespace
}  // namespace refhost
