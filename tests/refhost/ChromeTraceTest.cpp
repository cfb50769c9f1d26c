#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "refhost/export/ChromeTrace.h"
#include "refhost/play/Player.h"
#include "tests/refhost/TraceWords.h"

namespace refhost {
namespace {

using nlohmann::json;

std::string exportOf(const std::vector<TraceLine>& lines) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    ChromeTrace trace(headerOfWords());
    for (const TraceLine& line : lines) trace.onLine(line, player.play(line));
    TextBuffer out;
    trace.write(out);
    return fmt::to_string(out);
}

/// The slices and instants of the track of this name, by time.
std::vector<json> eventsOn(const json& trace, const std::string& track) {
    const json& events = trace["traceEvents"];
    const auto named = std::find_if(events.begin(), events.end(), [&](const json& each) {
        return each["name"] == "thread_name" && each["args"]["name"] == track;
    });
    if (named == events.end()) return {};
    std::vector<json> found;
    for (const json& each : events) {
        if (each["ph"] != "M" && each["ph"] != "C" && each["tid"] == (*named)["tid"]) found.push_back(each);
    }
    std::stable_sort(found.begin(), found.end(), [](const json& a, const json& b) { return a["ts"] < b["ts"]; });
    return found;
}

/// "held back 9010+10 finger-on-sensor": the outcome, the begin and the duration in ms, and the rule, of each event.
std::string summaryOf(const json& trace, const std::string& track) {
    std::string text;
    for (const json& each : eventsOn(trace, track)) {
        text += fmt::format("{} {}", each["name"].get<std::string>(), each["ts"].get<double>() / 1000);
        if (each["ph"] == "X") text += fmt::format("+{}", each["dur"].get<double>() / 1000);
        text += " " + each["args"].value("rule", "-") + "; ";
    }
    return text;
}

// The engineer would see a finger or a key pass while it was held back, or read another reason than the library's.
TEST(ChromeTrace, ShowsFingersKeysGesturesAndTheCoverWithTheirReasons) {
    const json trace = json::parse(
        exportOf(linesOf("516@9000 up516@9005 f9010:500,1900 f9020:500,1860 f9030: "
                         "f12000:500,1900 601@12050 601@12100 up601@12150 f12200: 601@12300 601@12400 up601@12450 "
                         "cover0@15000 f15010:5,9 cover2@15100 f15110:5,9 f15115:5,9;7,7 cover2@15120 f15200: "
                         "f16000:5,9 516@16100")));

    EXPECT_EQ(summaryOf(trace, "finger 1 (id 0)"), "held back 9010+10 finger-on-sensor; restored 9020+10 moved-up; ");
    const json restored = eventsOn(trace, "finger 1 (id 0)").at(1)["args"];
    EXPECT_EQ(restored["filter"], "front-fingerprint");
    const json& measured = restored["measurements"];
    const auto movedUp =
        std::find_if(measured.begin(), measured.end(), [](const json& each) { return each["name"] == "moved up"; });
    ASSERT_NE(movedUp, measured.end());
    EXPECT_EQ((*movedUp)["value"], 40);
    EXPECT_EQ((*movedUp)["least"], 40);
    EXPECT_EQ((*movedUp)["margin"], 0);
    EXPECT_EQ((*movedUp)["holds"], true);

    EXPECT_EQ(summaryOf(trace, "key 516 of fingerprint (device 4)"),
              "consumed 9000+5 sensor-finger-new; consumed 16100 sensor-finger-new; ");
    EXPECT_EQ(summaryOf(trace, "key 601 of fingerprint (device 4)"),
              "held back 12050+150 waits-for-finger; re-sent 12200 finger-no-gesture; dispatched 12300 no-finger; "
              "dispatched 12400+50 no-finger; consumed 12450 as-its-down; ");
    EXPECT_EQ(summaryOf(trace, "key 601 of fingerprint (device 4), while it waits"),
              "consumed 12100+50 finger-nearby; ");

    EXPECT_EQ(summaryOf(trace, "gestures"), "cancelled 15110 cover-moved; reported 15200 cover-report; ");
    EXPECT_EQ(summaryOf(trace, "finger 3 (id 0)"), "kept 15010+100 outside-area; cancelled 15110+90 cover-moved; ");
    EXPECT_EQ(summaryOf(trace, "finger 4 (id 1)"), "held back 15115+85 cover-cancelled; lost 15200 cover-cancelled; ");
    EXPECT_EQ(eventsOn(trace, "finger 5 (id 0)").at(0)["args"].value("ended", true), false);
    std::string cover;
    for (const json& each : trace["traceEvents"]) {
        if (each["ph"] == "C" && each["name"] == "cover state") cover += each["ts"].dump() + each["args"].dump() + ' ';
    }
    EXPECT_EQ(cover, R"(15000000.0{"value":0} 15100000.0{"value":2} )");
}

// A viewer would reject the file, or draw a slice of a million hours.
TEST(ChromeTrace, StaysValidWhenTimesRunBackwards) {
    std::vector<TraceLine> lines = linesOf("516@9000 f9010:500,1900 f8000:500,1900;3,3 up516@7000 f6000:3,3");
    const auto addFrame = [&](int64_t when, const test::Fingers& fingers) {
        const android::RawPointerData frame = test::frameOf(fingers);
        lines.push_back(
            {static_cast<uint32_t>(lines.size() + 2), {}, ProcessRawTouches{3, when, frame, frame.touchingIdBits}});
    };
    addFrame(INT64_MAX, {});
    addFrame(-1, {{.id = 0, .x = 5}});
    addFrame(INT64_MIN, {});
    addFrame(1'234'567'890'123'456'789, {{.id = 0, .x = 5}});
    const std::string text = exportOf(lines);
    const json trace = json::parse(text);
    EXPECT_NE(text.find(R"("ts":-0.001,)"), std::string::npos);
    EXPECT_NE(text.find(R"("ts":1234567890123456.789,)"), std::string::npos) << "a double has no such precision";
    size_t slices = 0;
    for (int finger = 1; finger <= 4; ++finger) {
        for (const char* id : {"0", "1"}) {
            double end = -1e300;
            for (const json& each : eventsOn(trace, fmt::format("finger {} (id {})", finger, id))) {
                if (each["ph"] != "X") continue;
                EXPECT_GE(each["dur"], 0) << each;
                EXPECT_GE(each["ts"], end) << each;
                end = each["ts"].get<double>() + each["dur"].get<double>();
                ++slices;
            }
        }
    }
    EXPECT_GE(slices, 4U);
}

}  // namespace
}  // namespace refhost
