#include "aft/frontfp/NearbyFPPoints.h"

#include <algorithm>

#include "aft/frontfp/EventTime.h"
#include "aft/frontfp/FrontFPLog.h"

namespace android {

namespace {

/// A mark of an earlier touch sequence says nothing any more from here on.
constexpr uint64_t kMarkTimeoutMs = 300;

/// A finger that rests wobbles less than this along x, and one that swipes up or down moves more than this along y.
constexpr uint32_t kSwipeMinXRange = 101;
constexpr uint32_t kSwipeYRangeLimit = 80;

/// Unsigned, so that no two coordinates are too far apart; a box never entered has its maximum below its minimum.
uint32_t extent(int32_t minimum, int32_t maximum) {
    return static_cast<uint32_t>(std::max(maximum, minimum)) - static_cast<uint32_t>(minimum);
}

}  // namespace

void AftPointRange::update(const RawPointerData::Pointer& p) {
    minX = std::min(minX, p.x);
    maxX = std::max(maxX, p.x);
    minY = std::min(minY, p.y);
    maxY = std::max(maxY, p.y);
}

uint32_t AftPointRange::xRange() const { return extent(minX, maxX); }
uint32_t AftPointRange::yRange() const { return extent(minY, maxY); }

NearbyFPPoints::NearbyFPPoints() {
    // Zeros, not the empty box: a first mark without a range of its own counts from the panel's corner.
    mPointRange.fill({0, 0, 0, 0});
}

bool NearbyFPPoints::markPoint(uint32_t touchSeq, const RawPointerData::Pointer& p, bool wideRange, int64_t when,
                               const char* reason) {
    const bool wasMarked = mNearbyIdBits.hasBit(p.id);
    mNearbyIdBits.markBit(p.id);
    if (wideRange) {
        mWideRangeIdBits.markBit(p.id);
    } else {
        mWideRangeIdBits.clearBit(p.id);
    }
    if (p.id < RawPointerData::kMaxIds) {
        mMarkTouchSeq[p.id] = touchSeq;
        mMarkTime[p.id] = toMs(when);
    }
    if (!wasMarked) {
        LOGI("TouchSeq#%d, mark point(id=%d, x=%d, y=%d) nearby the FP, reason:%s", touchSeq, p.id, p.x, p.y, reason);
    }
    return !wasMarked;
}

void NearbyFPPoints::updatePointRange(const RawPointerData::Pointer& p) {
    if (p.id >= RawPointerData::kMaxIds) return;
    if (mNearbyIdBits.hasBit(p.id)) {
        mPointRange[p.id].update(p);
    } else {
        mPointRange[p.id] = {};
    }
}

void NearbyFPPoints::setTouchState(bool touching, uint32_t touchSeq) {
    mTouching = touching;
    if (touching) {
        mCurTouchSeq = touchSeq;
    } else {
        mNearbyIdBits.clear();
        mWideRangeIdBits.clear();
    }
}

void NearbyFPPoints::invalidate(int64_t when) {
    const int64_t nowMs = toMs(when);
    for (uint32_t id : mNearbyIdBits) {
        if (mTouching && mMarkTouchSeq[id] == mCurTouchSeq) {
            mMarkTime[id] = nowMs;
            LOGI("During touchSeq#%d, pointer is touching, update the nearby FP point(id=%d) timestamp",
                 mMarkTouchSeq[id], id);
            continue;
        }
        const uint64_t elapsed = msSince(nowMs, mMarkTime[id]);
        if (elapsed >= kMarkTimeoutMs) {
            LOGI("Clear nearby FP point(id=%d), timeout=%d, marked %lldms ago in TouchSeq#%d, curTouchSeq=%d", id, 1,
                 static_cast<long long>(elapsed), mMarkTouchSeq[id], mCurTouchSeq);
            mNearbyIdBits.clearBit(id);
            mWideRangeIdBits.clearBit(id);
            mMarkTime[id] = 0;
        } else {
            LOGI("Point(id=%d) is nearby FP, marked %lldms ago in TouchSeq#%d, curTouchSeq=%d", id,
                 static_cast<long long>(elapsed), mMarkTouchSeq[id], mCurTouchSeq);
        }
    }
}

bool NearbyFPPoints::touchRecently(int64_t when) {
    invalidate(when);
    return !mNearbyIdBits.isEmpty();
}

bool NearbyFPPoints::swipeOverEdge(Measurements& measured) const {
    const uint32_t before = measured.count();
    for (uint32_t id : mNearbyIdBits) {
        if (mWideRangeIdBits.hasBit(id)) continue;
        measured.forgetSince(before);
        const uint32_t xRange = mPointRange[id].xRange();
        const uint32_t yRange = mPointRange[id].yRange();
        const bool isWide = measured.atLeast({.name = "slid along x"}, xRange, kSwipeMinXRange);
        const bool isFlat = measured.below({.name = "slid along y"}, yRange, kSwipeYRangeLimit);
        if (isWide && isFlat) {
            LOGI("a nearby FP finger may swipe along the X axis(xRange:%d,yRange:%d)", xRange, yRange);
            return true;
        }
    }
    return false;
}

}  // namespace android
