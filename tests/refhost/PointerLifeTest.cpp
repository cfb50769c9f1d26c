#include <fmt/format.h>
#include <gtest/gtest.h>

#include "refhost/check/TraceCheck.h"
#include "refhost/play/Player.h"
#include "tests/refhost/TraceWords.h"

namespace refhost {
namespace {

struct Life {
    const char* lines;
    const char* told;  ///< what is found, in order; a breach ends in "!"
    int taken = -1;    ///< ms of a frame that comes out as if all its fingers were taken
    int passed = -1;   ///< and of one that comes out as it is handed in
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
    {"f9000:5,9 f9010:5,9 f9020:5,9", "pointer-torn! pointer-again! gesture-torn! ", 9010},
    {"f9000:5,9 f9010:", "pointer-lost! ", 9000},
    {"f9000:5,9 f9010:5,9", "pointer-late! ", 9000},
    {"516@9000 f9010:500,1900 f9020:500,1860 f9030:", "pointer-lost! ", 9020},
    {"516@9000 f9010:500,1900 f9020:500,1861 f9030:", "", 9020},
    {"turn1@9 f9000:5,101 f9010:5,100 f9020:", "pointer-torn! ", 9010},
    {"cover0@9 f9000:5,9 cover1@9005 f9010:5,9 f12004:5,9", "pointer-after-cancel! ", -1, 12004},
    {"cover0@9 f9000:5,9 cover1@9005 g9010:5,9 f9020:5,9 f9030: f13000:5,9 f13010:5,9", "pointer-torn! ", 13010},
    {"f9000:500,1900 517@9100 f9110:500,1900", "pointer-after-cancel! ", -1, 9110},
};

// A gesture would fall apart in the apps' eyes, and the check find nothing or blame what filters are for; or the
// reverse.
TEST(PointerLife, KnowsABreachFromWhatFiltersAreFor) {
    for (const Life& life : kLives) {
        if (!ZQAFT_FOLDABLE && std::string_view(life.told).starts_with("fold")) continue;
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
        std::string told;
        for (const Breach& breach : check.breaches()) told += fmt::format("{}! ", breach.rule);
        for (const Designed& designed : check.designed()) told += fmt::format("{} ", designed.name);
        EXPECT_EQ(told, life.told) << life.lines;
    }
}

}  // namespace
}  // namespace refhost
