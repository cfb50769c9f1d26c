// The helpers on the shared records, through the exports of the built plug-in.

#include <gtest/gtest.h>

#include "refhost/play/Plugin.h"
#include "tests/support/Log.h"

namespace test {
namespace {

using android::BitSet32;
using android::RawPointerData;

struct PointerHelpers : ::testing::Test {
    refhost::Plugin plugin{ZQAFT_PLUGIN_UNDER_TEST};

    static RawPointerData frameOf(const std::vector<uint32_t>& ids) {
        RawPointerData data{};
        data.idToIndex.fill(99);
        for (const uint32_t id : ids) {
            data.pointers[data.pointerCount].id = id;
            data.pointers[data.pointerCount].x = static_cast<int32_t>(100 + id);
            data.touchingIdBits.markBit(id);
            data.hoveringIdBits.markBit(id);
            if (id < 32) data.idToIndex[id] = data.pointerCount;
            ++data.pointerCount;
        }
        return data;
    }
    static BitSet32 setOf(const std::vector<uint32_t>& ids) {
        BitSet32 set{};
        for (const uint32_t id : ids) set.markBit(id);
        return set;
    }
};

// Fingers that stay must keep their records and their order, or the host follows the wrong one.
TEST_F(PointerHelpers, FilteringKeepsTheOthersInOrder) {
    struct Case {
        std::vector<uint32_t> ids, filter, left;
    };
    for (const Case& c : {Case{{3, 5, 7}, {5}, {3, 7}}, Case{{31, 0, 16}, {31}, {0, 16}}, Case{{1, 2}, {1, 2}, {}},
                          Case{{1, 2}, {0, 9}, {1, 2}}, Case{{}, {1}, {}}, Case{{9, 40, 2}, {9}, {40, 2}}}) {
        RawPointerData data = frameOf(c.ids);
        const BitSet32 hovering = data.hoveringIdBits;
        BitSet32 idBits = data.touchingIdBits;
        const BitSet32 filter = setOf(c.filter);
        EXPECT_EQ(plugin.filterAndCompactPointers(&data, &idBits, &filter), &data);
        EXPECT_EQ(data.pointerCount, c.left.size());
        for (uint32_t i = 0; i < data.pointerCount; ++i) {
            EXPECT_EQ(data.pointers[i].id, c.left[i]);
            EXPECT_EQ(data.pointers[i].x, static_cast<int32_t>(100 + c.left[i]));
            if (c.left[i] < 32) {
                EXPECT_EQ(data.idToIndex[c.left[i]], i);
            }
        }
        EXPECT_EQ(data.touchingIdBits, setOf(c.left));
        EXPECT_EQ(idBits, setOf(c.left));
        EXPECT_EQ(data.hoveringIdBits, hovering) << "hovering ids are the host's";
    }
}

// The host's own set may say what is to go: the frame must be emptied of it, not half of it.
TEST_F(PointerHelpers, FilteringByTheSetItself) {
    RawPointerData data = frameOf({4, 8, 6});
    BitSet32 ids = setOf({4, 6, 11});
    plugin.filterAndCompactPointers(&data, &ids, &ids);
    EXPECT_EQ(ids, setOf({11}));
    EXPECT_EQ(data.pointerCount, 1u);
    EXPECT_EQ(data.pointers[0].id, 8u);
    EXPECT_EQ(data.idToIndex[8], 0u);
}

// A copy takes the indexes of the pointers that are there, and leaves the others; a pointer of no id is reported.
TEST_F(PointerHelpers, CopyingTakesWhatIsThere) {
    LogRecorder log;
    const RawPointerData from = frameOf({40, 6});
    RawPointerData to = frameOf({});
    to.idToIndex.fill(77);
    plugin.copyRawPointerData(&from, &to);
    EXPECT_EQ(to.pointers[0].x, 140);
    EXPECT_EQ(to.pointers[1].x, 106);
    EXPECT_EQ(to.idToIndex[6], 1u);
    EXPECT_EQ(to.idToIndex[8], 77u);
    EXPECT_EQ(to.touchingIdBits, from.touchingIdBits);
    EXPECT_EQ(to.hoveringIdBits, from.hoveringIdBits);
    EXPECT_EQ(log.texts(), std::vector{std::string("copyRawPointerData pointer[0] id=40 is invalid!")});
    plugin.clearRawPointerData(&to);
    EXPECT_EQ(to.pointerCount + to.hoveringIdBits.value + to.touchingIdBits.value, 0u);
    EXPECT_EQ(to.pointers[1].x, 106) << "records stay";
}

// Counts that no host passes must not reach beyond the record: the sanitizers watch.
TEST_F(PointerHelpers, CountsBeyondTheRecord) {
    RawPointerData from = frameOf({1, 2});
    from.pointerCount = UINT32_MAX;
    RawPointerData to{};
    plugin.copyRawPointerData(&from, &to);
    BitSet32 ids = setOf({0, 1});
    plugin.filterAndCompactPointers(&to, &ids, &ids);
    EXPECT_LE(to.pointerCount, RawPointerData::kMaxPointers);
}

// Each flag test looks at its own bit of the driver's byte.
TEST_F(PointerHelpers, FlagTests) {
    for (int bit = 0; bit < 32; ++bit) {
        RawPointerData::Pointer pointer{};
        pointer.extraData = uint32_t{1} << bit;
        EXPECT_EQ(plugin.touchOnSide(&pointer), bit == 25) << bit;
        EXPECT_EQ(plugin.touchDataValid(&pointer), bit == 26) << bit;
        EXPECT_EQ(plugin.touchIsFolded(&pointer), bit == 28) << bit;
    }
    plugin.releaseNotifyKeyArgs(nullptr);
    EXPECT_STREQ(plugin.version, "1.2");
}

}  // namespace
}  // namespace test
