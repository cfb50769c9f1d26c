#include <gtest/gtest.h>

#include "refhost/check/TraceCheck.h"
#include "refhost/explain/Explainer.h"
#include "refhost/play/Playback.h"
#include "tests/refhost/TraceWords.h"

namespace refhost {
namespace {

struct Changed {
    const char* lines;
    const char* rule;      ///< of the last decision with this measurement
    const char* measured;  ///< name
    double least;
    double most;
};

constexpr double kOpen = std::numeric_limits<double>::infinity();

// Of a library with other thresholds the engineer would see those of this build, or the check would call right what
// that library does wrong, or the reverse.
TEST(ChangedPlugin, IsExplainedByItsOwnThresholds) {
    const Changed kChanged[] = {
        {"516@9000 f9010:500,1900 f9020:500,1841 f9030:500,1840", "moved-up", "moved up", 60, kOpen},
        {"516@9000 f9010:500,1900 f9020:500,1841", "no-gesture", "moved up", 60, kOpen},
        {"516@9000 f9200:500,1900", "no-doubt", "since a finger on the sensor", 1, 199},
        {"f9000:500,1900 601@9100", "finger-nearby", "since the finger landed", 1, 99},
        {"f9000:500,1900 517@9250 f9251:500,1900", "touch-before-identification", "from touch to identification", 1,
         250},
        {"f9000:499,1900 f9001:499,1900 f9002:618,1979 516@9010", "sensor-finger-explained", "slid along x", 121,
         kOpen},
        {"cover0@9 f9000:5,6 cover1@9005 f9010:5,6 f11005:5,6", "cover-settled", "cover in state 1 for", 2e9, kOpen},
#if ZQAFT_FOLDABLE
        {"31x0@9 22x30@9 f9000:5,6", "folding", "spread of the averages", 20 + 16 * 1.1920929e-07, kOpen},
#endif
    };
    for (const Changed& changed : kChanged) {
        Player player(headerOfWords(), ZQAFT_CHANGED_PLUGIN);
        Explainer explainer;
        TraceCheck check(headerOfWords());
        const Explained* last = nullptr;
        Explained found;
        for (const TraceLine& line : linesOf(changed.lines)) {
            const CallResult& result = player.play(line);
            check.hear(line, result);
            for (const Explained& each : explainer.onLine(line, result)) {
                if (find(each.decision.measurements, changed.measured) != nullptr) last = &(found = each);
            }
        }
        for (const FingerDown& finger : explainer.fingersDown()) {
            const Decision& latest = finger.latest.decision;
            if (latest.rule == changed.rule && find(latest.measurements, changed.measured) != nullptr) {
                last = &(found = finger.latest);
            }
        }
        ASSERT_NE(last, nullptr) << changed.lines;
        EXPECT_EQ(found.decision.rule, changed.rule) << changed.lines;
        const Measurement& measured = *find(found.decision.measurements, changed.measured);
        EXPECT_DOUBLE_EQ(measured.least, changed.least) << changed.lines;
        EXPECT_EQ(measured.most, changed.most) << changed.lines;
        EXPECT_TRUE(check.breaches().empty()) << changed.lines << ": " << check.breaches().front().text;
    }
}

}  // namespace
}  // namespace refhost
