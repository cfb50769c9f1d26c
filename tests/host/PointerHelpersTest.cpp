// The helpers on the shared records, through the exports of the built plug-in.

#include <gtest/gtest.h>

#include "refhost/play/Plugin.h"
#include "tests/support/Finger.h"
#include "tests/support/Log.h"

using namespace android;
using namespace test;

namespace {

using Ids = std::vector<uint32_t>;

struct PointerHelpers : ::testing::Test {
    refhost::Plugin plugin{ZQAFT_PLUGIN_UNDER_TEST};

    /// A frame of pointers that touch and hover at once, each at x = 100 + id.
    static RawPointerData frameWith(const Ids& ids) {
        Fingers fingers;
        for (const uint32_t id : ids) fingers.push_back(finger(id).at(static_cast<int32_t>(100 + id), 0));
        RawPointerData frame = frameOf(fingers);
        frame.hoveringIdBits = frame.touchingIdBits;
        return frame;
    }
    static BitSet32 setOf(const Ids& ids) { return frameWith(ids).touchingIdBits; }
};

// Fingers that stay must keep their records and their order, or the host follows the wrong one.
TEST_F(PointerHelpers, FilteringKeepsTheOthersInOrder) {
    using Case = std::array<Ids, 3>;
    for (const auto& [given, filtered, left] :
         {Case{Ids{3, 5, 7}, {5}, {3, 7}}, Case{Ids{31, 0, 16}, {31}, {0, 16}}, Case{Ids{1, 2}, {1, 2}, {}},
          Case{Ids{1, 2}, {0, 9}, {1, 2}}, Case{Ids{}, {1}, {}}, Case{Ids{9, 40, 2}, {9}, {40, 2}}}) {
        RawPointerData frame = frameWith(given);
        BitSet32 ids = frame.touchingIdBits;
        const BitSet32 filter = setOf(filtered);
        EXPECT_EQ(plugin.filterAndCompactPointers(&frame, &ids, &filter), &frame);
        EXPECT_EQ(fingersIn(frame), fingersIn(frameWith(left)));
        EXPECT_EQ(ids, setOf(left));
        EXPECT_EQ(frame.hoveringIdBits, setOf(given)) << "hovering ids are the host's";
    }
}

// The host's own set may say what is to go: the frame must be emptied of it, not half of it.
TEST_F(PointerHelpers, FilteringByTheSetItself) {
    RawPointerData frame = frameWith({4, 8, 6});
    BitSet32 ids = setOf({4, 6, 11});
    plugin.filterAndCompactPointers(&frame, &ids, &ids);
    EXPECT_EQ(ids, setOf({11}));
    EXPECT_EQ(fingersIn(frame), fingersIn(frameWith({8})));
}

// A copy takes the indexes of the pointers that are there, and leaves the others; a pointer of no id is reported.
TEST_F(PointerHelpers, CopyingTakesWhatIsThere) {
    LogRecorder log;
    const RawPointerData from = frameWith({40, 6});
    RawPointerData to{};
    to.idToIndex.fill(77);
    plugin.copyRawPointerData(&from, &to);
    EXPECT_EQ(fingersIn(to), fingersIn(from));
    EXPECT_EQ(to.idToIndex[8], 77u);
    EXPECT_EQ(to.hoveringIdBits, from.hoveringIdBits);
    EXPECT_EQ(log.texts(), std::vector{std::string("copyRawPointerData pointer[0] id=40 is invalid!")});
    plugin.clearRawPointerData(&to);
    EXPECT_EQ(to.pointerCount + to.hoveringIdBits.value + to.touchingIdBits.value, 0u);
    EXPECT_EQ(to.pointers[1].x, 106) << "records stay";
}

// Each flag test looks at its own bit of the driver's byte.
TEST_F(PointerHelpers, FlagTests) {
    for (uint32_t bit = 0; bit < 32; ++bit) {
        const RawPointerData frame = frameOf({finger(0).flagged(uint32_t{1} << bit)});
        EXPECT_EQ(plugin.touchOnSide(&frame.pointers[0]), bit == 25) << bit;
        EXPECT_EQ(plugin.touchDataValid(&frame.pointers[0]), bit == 26) << bit;
        EXPECT_EQ(plugin.touchIsFolded(&frame.pointers[0]), bit == 28) << bit;
    }
    plugin.releaseNotifyKeyArgs(nullptr);
    EXPECT_STREQ(plugin.version, "1.2");
}

}  // namespace
