#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "refhost/check/TraceCheck.h"
#include "refhost/play/Player.h"
#include "tests/refhost/TraceWords.h"

namespace refhost {
namespace {

struct Life {
    const char* lines;
    const char* found;  ///< what is found, in order; a breach ends in "!"
    int taken = -1;     ///< ms of a frame that comes out as if all its fingers were taken
    int passed = -1;    ///< and of one that comes out as it is handed in
};

const Life kLives[] = {
    {"516@9000 f9010:500,1900 f9020:500,1860", "held-back-then-restored "},
    {"516@9000 f9010:500,1900 f10100:500,1700", "held-back-then-late "},
    {"f9000:500,1900 519@9010 f9020:500,1900 f10100:500,1700",
     "held-back-while-down held-back-then-again held-back-then-new-gesture "},
    {"f9000:500,1900 517@9100 f9110:500,1900 f9120:500,1700;5,9", "sensor-cancel-passes "},
    {"f9000:499,1900 f9001:499,1900 f9002:600,1979 516@9010 f9309:600,1979;5,9 f9310:600,1979;5,9",
     "sensor-cancel-passes sensor-cancel-then-late "},
    {"f9000:5,9,20000000 f9010:5,9", "abnormal-touch-passes "},
    {"cover0@9 f9000:5,9 cover1@9005 f9010:5,9 f9020:5,9;6,9 f12005:5,9;6,9", "cover-settled cover-then-late "},
    {"cover0@9 f9000:5,9 cover2@9005 f9010:5,9 input0@9015 f9020:5,9", "cover-idle "},
    {"cover0@9 f9000:500,1900 cover2@9005 f9010:500,1900 519@9015 f9020:500,1900 f10100:500,1700", "cover-forgot "},
    {"cover0@9 F8000:5,9 f9000:5,9 cover1@9005 f9010:5,9 F9020:5,9 F12006:5,9",
     "cover-while-down cover-then-again cover-then-new-gesture "},
    {"turn1@9 f9000:5,100 f9010:5,101", "notch-then-late "},
    {"f9000:5,100 turn1@9 f9010:5,100 f9020:5,101", "notch-while-down notch-then-again notch-then-new-gesture "},
    {"516@9000 f9010:500,1900 f9020:500,1860 f9030:500,50 turn1@9035 f9040:500,50",
     "held-back-then-restored notch-while-down "},
    {"31x0@9 f9000:5,9 9x90@9005 f9010:5,9 f9020:5,9;6,9 input0@9025 f9030:5,9;6,9", "fold-forgot fold-then-late "},
    {"31x0@9 F8000:5,9 f9000:5,9 9x90@9005 f9010:5,9 F9020:5,9 input0@9025 F9030:5,9",
     "fold-while-down fold-then-again fold-then-new-gesture "},
    {"f9000:5,9 f9010:5,9 f9020:5,9", "pointer-torn! record-missing! pointer-again! gesture-torn! ", 9010},
    {"f9000:5,9 f9010:", "record-missing! pointer-lost! ", 9000},
    {"f9000:5,9 f9010:5,9", "record-missing! pointer-late! ", 9000},
    {"516@9000 f9010:500,1900 f9020:500,1860 f9030:", "record-missing! pointer-lost! ", 9020},
    {"516@9000 f9010:500,1900 f9020:500,1861 f9030:", "", 9020},
    {"turn1@9 f9000:5,101 f9010:5,100 f9020:", "pointer-torn! record-missing! ", 9010},
    {"cover0@9 f9000:5,9 cover1@9005 f9010:5,9 f12004:5,9", "pointer-after-cancel! record-frame! ", -1, 12004},
    {"cover0@9 f9000:5,9 cover1@9005 g9010:5,9 f9020:5,9 f9030: f13000:5,9 f13010:5,9",
     "pointer-torn! record-missing! ", 13010},
    {"f9000:500,1900 517@9100 f9110:500,1900", "pointer-after-cancel! record-frame! ", -1, 9110},
};

// A gesture would fall apart in the apps' eyes, and the check find nothing or blame what filters are for; or the
// reverse.
TEST(TraceCheck, KnowsABreachFromWhatFiltersAreFor) {
    for (const Life& life : kLives) {
        if (!ZQAFT_FOLDABLE && std::string_view(life.found).starts_with("fold")) continue;
        Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
        TraceCheck check(headerOfWords());
        for (const TraceLine& line : linesOf(life.lines)) {
            CallResult result = player.play(line);
            const auto* call = std::get_if<ProcessRawTouches>(&line.event);
            const int64_t ms = call != nullptr ? call->when / 1'000'000 : 0;
            if (ms == life.taken || ms == life.passed) {
                result.frame.frame = ms == life.passed ? call->frame : android::RawPointerData{};
                result.frame.ids = result.frame.frame.touchingIdBits;
                result.frame.removed.value = call->ids.value & ~result.frame.ids.value;
                if (ms == life.taken) result.log.clear();  // a library that takes it says nothing of putting it back
            }
            check.hear(line, result);
        }
        std::string found;
        for (const Breach& breach : check.breaches()) found += fmt::format("{}! ", breach.rule);
        for (const Designed& designed : check.designed()) found += fmt::format("{} ", designed.name);
        EXPECT_EQ(found, life.found) << life.lines;
    }
}

/// Finds what a check says of a trace whose records `lie` changes, of the line at 9020 ms.
std::string foundIn(const char* lines, const std::function<void(CallResult&)>& lie) {
    Player player(headerOfWords(), ZQAFT_PLUGIN_UNDER_TEST);
    TraceCheck check(headerOfWords());
    for (const TraceLine& line : linesOf(lines)) {
        CallResult result = player.play(line);
        if (line.t == 9'020'000'000) lie(result);
        check.hear(line, result);
    }
    std::string found;
    for (const Breach& breach : check.breaches()) found += fmt::format("{} ", breach.rule);
    return found;
}

Record& pointerRecordOf(CallResult& result) {
    return *std::find_if(result.records.begin(), result.records.end(),
                         [](const Record& record) { return record.pointer && record.filter == "front-fingerprint"; });
}

Measurement& measured(CallResult& result, std::string_view name) {
    for (Record& record : result.records) {
        for (Measurement& each : record.measurements) {
            if (each.name == name) return each;
        }
    }
    throw std::invalid_argument(std::string(name));
}

// A library could record what it did not do, and every explanation of it would be believed.
TEST(TraceCheck, FindsRecordsThatLie) {
    constexpr const char* kHeld = "516@9000 f9010:500,1900 f9020:500,1890 f9030:500,1850 f9040:";
    constexpr const char* kDoubted = "516@9000 f9020:500,1900 f9030:";
    constexpr const char* kKey = "f9000:500,1900 601@9020 f9030:";
    constexpr const char* kCover = "cover0@9 f9000:5,9 cover2@9005 f9020:5,9 f9030:";
    const struct {
        const char* lines;
        std::function<void(CallResult&)> lie;
        const char* found;
    } kLies[] = {
        {kHeld, [](CallResult&) {}, ""},
        {kHeld, [](CallResult& result) { result.records.clear(); }, "record-missing pointer-late "},
        {kHeld, [](CallResult& result) { pointerRecordOf(result).when += 1; }, "record-frame "},
        {kHeld, [](CallResult& result) { pointerRecordOf(result).extraData ^= 1; }, "record-frame "},
        {kHeld, [](CallResult& result) { pointerRecordOf(result).y += 1; }, "record-frame record-measure "},
        {kHeld, [](CallResult& result) { pointerRecordOf(result).outcome = RecordOutcome::Passed; },
         "record-missing pointer-late "},
        {kHeld, [](CallResult& result) { pointerRecordOf(result).rule = "moved-up"; }, "record-rule "},
        {kHeld, [](CallResult& result) { measured(result, "moved up").least = 9; }, "record-measure "},
        {kHeld, [](CallResult& result) { measured(result, "moved up").holds = true; }, "record-measure record-rule "},
        {kHeld, [](CallResult& result) { measured(result, "held back for").value += 1; }, "record-measure "},
        {kHeld, [](CallResult& result) { measured(result, "y in the area").value += 1; }, "record-measure "},
        {kDoubted, [](CallResult& result) { measured(result, "since a finger on the sensor").cause.when -= 5'000'000; },
         "record-measure record-measure "},
        {kDoubted, [](CallResult& result) { measured(result, "since a finger on the sensor").cause.keyCode = 513; },
         "record-measure "},
        {kKey, [](CallResult& result) { result.records.back().outcome = RecordOutcome::Dispatched; }, "record-frame "},
        {kKey, [](CallResult& result) { result.records.back().key = 513; }, "record-missing "},
        {kCover,
         [](CallResult& result) {
             std::erase_if(result.records,
                           [](const Record& record) { return record.outcome == RecordOutcome::Cancelled; });
         },
         "record-missing "},
    };
    for (const auto& [lines, lie, found] : kLies) {
        EXPECT_EQ(foundIn(lines, lie), found) << "lie " << (&lie - &kLies[0].lie);
    }
}

}  // namespace
}  // namespace refhost
