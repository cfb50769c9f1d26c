#pragma once

#include <array>
#include <cstdint>

#include "aft/host/Decision.h"
#include "aft/host/RawPointerData.h"

namespace android {

/// How far a point has moved: the box around all places where it was seen. Raw panel units.
struct AftPointRange {
    static constexpr int32_t kNoMinimum = 0x0FFFFFFF;

    int32_t minX = kNoMinimum;
    int32_t maxX = 0;
    int32_t minY = kNoMinimum;
    int32_t maxY = 0;

    void update(const RawPointerData::Pointer& p);

    /// Extents; 0 for a box that no point has entered.
    uint32_t xRange() const;
    uint32_t yRange() const;

    friend constexpr bool operator==(const AftPointRange&, const AftPointRange&) = default;
};

/// Which fingers have been judged to touch the panel next to the fingerprint sensor, since when, and how far each has
/// moved since. A mark lasts as long as its touch sequence; should one outlive it, it expires 300 ms after it was last
/// refreshed. The touch filter marks and moves; the key filter asks.
/// Plain data; no lock of its own: keys and frames come on one thread. Ids of 32 and more are in no set and in no
/// array.
struct NearbyFPPoints {
    bool mTouching = false;       ///< a touch sequence is in progress
    uint32_t mCurTouchSeq = 0;    ///< its number, while mTouching
    BitSet32 mNearbyIdBits{};     ///< ids marked now
    BitSet32 mWideRangeIdBits{};  ///< those of them that came in from outside the area, or were compensated
    std::array<int64_t, RawPointerData::kMaxIds> mMarkTime{};  ///< ms, when last marked or refreshed
    std::array<uint32_t, RawPointerData::kMaxIds> mMarkTouchSeq{};
    std::array<AftPointRange, RawPointerData::kMaxIds> mPointRange;

    NearbyFPPoints();

    /// Marks the point, or renews its mark. Logs the first time.
    /// @param wideRange whether the mark is a wide-range mark from now on
    /// @param when      ns
    /// @return          true: it was not marked before
    bool markPoint(uint32_t touchSeq, const RawPointerData::Pointer& p, bool wideRange, int64_t when,
                   const char* reason);

    /// Grows the range of a marked point; an unmarked one starts anew from nothing.
    void updatePointRange(const RawPointerData::Pointer& p);

    /// A touch sequence begins, or ends; its end takes all marks with it.
    void setTouchState(bool touching, uint32_t touchSeq);

    /// Refreshes the marks of the sequence in progress and drops those of others that are 300 ms old. Logs. `when` in
    /// ns.
    void invalidate(int64_t when);

    /// Whether any mark is left after `invalidate`.
    bool touchRecently(int64_t when);

    /// Whether a marked finger has slid sideways over the sensor: more than 100 along x, less than 80 along y.
    /// Wide-range points do not count. Logs when so.
    /// @param measured gains how far that finger has slid, or the last one that was looked at
    bool swipeOverEdge(Measurements& measured = Measurements::unheard()) const;
};

}  // namespace android
