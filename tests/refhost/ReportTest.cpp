#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <random>

#include "refhost/play/Player.h"
#include "refhost/report/PathThinner.h"
#include "refhost/report/TraceReport.h"
#include "tests/refhost/TraceText.h"
#include "tests/refhost/TraceWords.h"

using namespace refhost;

namespace {

// The cursor would show a finger where it never was.
TEST(Report, AThinnedPathStaysWithinItsToleranceAtEveryMoment) {
    std::mt19937 random;  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same path every time
    std::normal_distribution<double> noise(0, 2);
    std::vector<PathPoint> path{{0, 500, 900}};
    for (int i = 1; i < 5000; ++i) {
        const PathPoint& last = path.back();
        const bool rests = i % 1000 < 300;
        path.push_back({last.time + (i % 97 == 0 ? 0 : 8'000'000), std::round(last.x + (rests ? 0 : 3 + noise(random))),
                        std::round(last.y + (rests ? 0 : noise(random)))});
    }
    PathThinner thinner(1.5);
    std::vector<PathPoint> kept;
    for (const PathPoint& point : path) {
        if (const auto corner = thinner.add(point)) kept.push_back(*corner);
    }
    kept.push_back(thinner.end().value());

    EXPECT_LT(kept.size(), path.size() * 3 / 4);
    EXPECT_EQ(kept.back().time, path.back().time);
    size_t at = 0;
    for (const PathPoint& point : path) {
        while (at + 2 < kept.size() && kept[at + 1].time < point.time) ++at;
        const PathPoint &from = kept[at], &to = kept[at + 1];
        if (point.time == to.time) continue;  // two points at one time: the line has both of its ends there
        const double share = static_cast<double>(point.time - from.time) / static_cast<double>(to.time - from.time);
        EXPECT_NEAR(std::lerp(from.x, to.x, share), point.x, 1.5 + 1e-6);
        EXPECT_NEAR(std::lerp(from.y, to.y, share), point.y, 1.5 + 1e-6);
    }
}

nlohmann::json dataOf(const TraceHeader& header, const std::vector<TraceLine>& lines) {
    Player player(header, ZQAFT_PLUGIN_UNDER_TEST);
    TraceReport report(header);
    for (const TraceLine& line : lines) report.hear(line, player.play(line));
    TextBuffer page;
    report.writePage(page, "a<b");
    const std::string text(page.data(), page.size());
    const size_t from = text.find(R"(id="data">)") + 10;
    return nlohmann::json::parse(text.substr(from, text.find("</script>", from) - from));
}

// The picture would show a finger as passed on while it was not, a key without its end, or nothing: the page cut off by
// a text of the trace.
TEST(Report, ShowsEachFingerAndKeyWithItsStates) {
    std::istringstream in(
        R"({"trace":"zqaft","version":1,"note":"</script>","properties":{"ro.zqaft.tpfp.filter_area":"400,1800,600,2000"},"devices":[{"id":3,"name":"panel"},{"id":4,"name":"fingerprint"}]}
{"call":"configureSurface","device":3,"width":1000,"height":2000,"orientation":1,"rawX":[0,999],"rawY":[0,1999]}
{"t":1000000000,"call":"processInputWindow","windows":[{"name":"behind"},{"name":"front"},{"name":"bar","type":2019}],"focused":1}
{"call":"processInputWindow","windows":[{"name":"front"},{"name":"bar","type":2019},{"name":"other"}],"focused":0}
{"call":"configureSurface","device":3,"width":1000,"height":2000,"orientation":0,"rawX":[0,999],"rawY":[0,1999]}
{"call":"processKey","device":4,"when":10000000000,"keyCode":516,"down":true}
{"call":"processRawTouches","device":3,"when":10050000000,"pointers":[{"id":0,"x":500,"y":1900}]}
{"call":"processKey","device":4,"when":10060000000,"keyCode":601,"down":true}
{"call":"processKey","device":4,"when":10070000000,"keyCode":601,"down":false}
{"call":"processRawTouches","device":3,"when":10080000000,"pointers":[{"id":0,"x":500,"y":1870}]}
{"call":"processKey","device":4,"when":10085000000,"keyCode":601,"down":false}
{"call":"processRawTouches","device":3,"when":10090000000,"pointers":[{"id":0,"x":500,"y":1860}]}
{"call":"processRawTouches","device":3,"when":10100000000,"pointers":[{"id":0,"x":500,"y":1850},{"id":1,"x":20,"y":20}]}
{"call":"processRawTouches","device":3,"when":10110000000,"pointers":[{"id":1,"x":20,"y":20}]}
{"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,0]}
{"t":2000000000,"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,1]}
{"t":3000000000,"platform":"sensorEvent","type":65557,"handle":7,"timestamp":0,"values":[1,2]}
)");
    TraceReader reader(in, "trace");
    std::vector<TraceLine> lines;
    for (TraceLine line; reader.next(line);) lines.push_back(line);
    const nlohmann::json data = dataOf(reader.header(), lines);
    EXPECT_EQ(data["name"], "a<b");
    EXPECT_EQ(data["note"], "</script>");
    EXPECT_EQ(data["span"].dump(), "[1000000,10110000]");
    EXPECT_EQ(data["strokes"].dump(), R"([[3,0,10110000,[10050000,500,1900,40000,0,-40,10000,0,-10],)"
                                      R"([10050000,"held back",10090000,"restored"]],)"
                                      R"([3,1,null,[10100000,20,20,10000,0,0],[10100000,"kept"]]])");
    EXPECT_EQ(data["keys"].dump(), R"([[4,516,10000000,null,"consumed",null,null],)"
                                   R"([4,601,10060000,10070000,"held back",10090000,"dropped"]])");
    EXPECT_EQ(data["sensors"].dump(), "[[65557,7,[1000000,0,2000000,1,3000000,2]]]") << "a state is on no line";
    EXPECT_EQ(data["surfaces"].size(), 2U);
    EXPECT_EQ(data["windows"].size(), 1U) << "of windows that do not matter";
    EXPECT_EQ(data["windows"][0]["windows"][data["windows"][0]["focused"].get<size_t>()]["name"], "front");
    EXPECT_EQ(data["places"].back()["area"].dump(), "[400,1800,600,2000]");
    EXPECT_EQ(data["places"].back()["central"].dump(), "[100,100,900,1900]");
    std::string verdicts;  // a plug-in with the fold angle's filter notes that its sensor is not there
    for (const nlohmann::json& decision : data["decisions"]) {
        if (decision["verdict"] != "noted") verdicts += decision["verdict"].get<std::string>() + "; ";
    }
    EXPECT_EQ(verdicts, "consumed; held back; held back; dispatched; restored; dropped; kept; ");
}

// The headline would count one cancel where the host was asked for two, or the path be drawn as kept.
TEST(Report, CountsTheGesturesThatWereCancelled) {
    const nlohmann::json data = dataOf(headerOfWords(), linesOf("f9000:1,2,20000000 f9000: f9000:1,2,20000000"));
    EXPECT_EQ(data["summary"]["gesturesCancelled"], 2);
    EXPECT_EQ(data["strokes"][0][4].dump(), R"([9000000,"cancelled"])") << "of two states at one time the last counts";
}

}  // namespace
