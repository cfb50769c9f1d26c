// The touch side of the front fingerprint filter: which fingers near the sensor are held back, let through, put back
// where they landed, or cancelled.

#include <cstdlib>

#include "aft/frontfp/EventTime.h"
#include "aft/frontfp/FrontFPLog.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"
#include "aft/host/Contacts.h"
#include "aft/host/PluginApi.h"

namespace android {

namespace {

/// A finger held back for longer is resting on the sensor: it does not come back.
constexpr uint64_t kCompensateMs = 1000;

/// A gesture starts upward; a finger that has gone further sideways is another movement, and must not jump back.
constexpr int64_t kCompensateSidewaysLimit = 200;

/// Less upward movement than this is the wobble of a finger on the sensor. Raw panel units, as the sideways limit.
constexpr int64_t kCompensateUpwardMin = 40;

}  // namespace

void ZqFrontFPAftProcessor::processRawTouches(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits,
                                              Vector<void*>& keys) {
    if (mLastRawPointerData != nullptr) copyRawPointerData(&data, mLastRawPointerData.get());

    const bool wasTouching = mTouching;
    if (touchingEnd(data)) {
        mFPEventState.handlePendingKey(when, true, keys);
        return;
    }

    const FrameConditions now = gatherConditions(when);
    mRestrainedIdBits &= idBits;
    mWideRangeIdBits &= idBits;

    if (wasTouching) {
        if (idBits.count() >= 2) secondFingerDown(when, keys);
        if (mapper != nullptr && !mTouchCanceled && causedBySensor(when)) {
            mapper->cancelTouch(when);
            mTouchCanceled = true;
            filterAndCompactPointers(&data, &idBits, &idBits);
            return;
        }
    }

    if (allFar(data, idBits, now)) return;

    const bool firstSingle = !wasTouching && idBits.count() == 1;
    BitSet32 removeBits{};
    for (auto [id, p] : contacts(data, idBits)) {
        const Verdict verdict = judge(id, p, now);
        if (verdict != Verdict::Outside) {
            mNearbyPoints.updatePointRange(p);
            if (firstSingle) onlyFingerLandedInside(when);
        }
        if (!apply(verdict, id, p, now)) removeBits.markBit(id);
    }
    if (!removeBits.isEmpty()) filterAndCompactPointers(&data, &idBits, &removeBits);
}

/// True, with all done that is to be done, where no finger is inside the filter area and none has been reported there
/// (whoever is held back has been): most of what a phone is used for. One look at each finger is enough for it.
bool ZqFrontFPAftProcessor::allFar(const RawPointerData& data, BitSet32 idBits, const FrameConditions& now) {
    BitSet32 far{};
    for (auto [id, p] : contacts(data, idBits)) {
        if (now.surface.filterArea.contains(p.x, p.y)) return false;
        far.markBit(id);
    }
    if ((far.value & mReportedIdBits.value) != 0) return false;
    mWideRangeIdBits.value |= far.value;
    return true;
}

bool ZqFrontFPAftProcessor::touchingEnd(const RawPointerData& data) {
    if (!data.touchingIdBits.isEmpty()) {
        if (!mTouching) {
            mTouching = true;
            mNearbyPoints.setTouchState(true, mTouchSeq);
            mTouchSeqDesc.clear();
            mTouchSeqDesc.appendFormat("During TouchSeq#%d", mTouchSeq);
            mFPEventState.clearPendingKey();
        }
        return false;
    }
    if (mTouching) {
        mNearbyPoints.setTouchState(false, mTouchSeq);
        mTouchSeqDesc.clear();
        mTouchSeqDesc.appendFormat("After TouchSeq#%d", mTouchSeq);
        mTouching = false;
        mTouchCanceled = false;
        mIdentifyState.mTouchDownTime = 0;
        mReportedIdBits.clear();
        mWideRangeIdBits.clear();
        mRestrainedIdBits.clear();
        if (++mTouchSeq == 0) mTouchSeq = 1;
    }
    return true;
}

ZqFrontFPAftProcessor::FrameConditions ZqFrontFPAftProcessor::gatherConditions(int64_t when) {
    FrameConditions now{};  // filled in this order: the first two questions log, and change the identification state
    now.when = when;
    now.surface = surface();
    now.identifying = mIdentifyState.identifyingRecently(mTouchSeq, when);
    now.preferNavigationBar = preferTouchNavigationBar(now.surface, when);
    now.fpRecently = fingerPrintDownRecently(when);
    now.enrolling = enrollFingerPrintRecently(when);
    return now;
}

bool ZqFrontFPAftProcessor::preferTouchNavigationBar(const Surface& surface, int64_t when) {
    return surface.preferNavigationBar && !mIdentifyState.identifyingRecently(mTouchSeq, when);
}

bool ZqFrontFPAftProcessor::touchOnEdge(const RawPointerData::Pointer& p) const {
    return (p.extraData & RawPointerData::Pointer::kOnEdge) != 0;
}

/// Two fingers are a gesture of their own: what was waiting for a single finger on the sensor waits no longer.
void ZqFrontFPAftProcessor::secondFingerDown(int64_t when, Vector<void*>& keys) {
    mIdentifyState.mTouchDownTime = 0;
    mFPEventState.handlePendingKey(when, true, keys);
    mFPEventState.mTouchDownTime = 0;
    mFPEventState.mPendingKey.touchSeq = mTouchSeq;
}

bool ZqFrontFPAftProcessor::causedBySensor(int64_t when) {
    if (mIdentifyState.touchBeforeIdentify(when)) {
        LOGI("this touch may caused by identify finger, cancel it");
        return true;
    }
    if (swipeOnFPRecently(when)) {
        LOGI("this touch may caused by swipe on FP sensor, cancel it");
        return true;
    }
    return false;
}

void ZqFrontFPAftProcessor::onlyFingerLandedInside(int64_t when) {
    mIdentifyState.mTouchDownTime = toMs(when);
    mFPEventState.mPendingKey.touchSeq = mTouchSeq;
    mFPEventState.mTouchDownTime = toMs(when);
}

/// The on-edge bit means something in landscape alone, where a hand holds the phone by the sensor's side.
bool ZqFrontFPAftProcessor::edgeCounts(const RawPointerData::Pointer& p, const FrameConditions& now) const {
    return now.surface.landscape && touchOnEdge(p);
}

/// In landscape the edge bit takes the place of the sensor's recent finger.
bool ZqFrontFPAftProcessor::restrainCause(const RawPointerData::Pointer& p, const FrameConditions& now) const {
    return now.enrolling || now.identifying || (now.surface.landscape ? edgeCounts(p, now) : now.fpRecently);
}

ZqFrontFPAftProcessor::Verdict ZqFrontFPAftProcessor::judge(uint32_t id, const RawPointerData::Pointer& p,
                                                            const FrameConditions& now) const {
    if (!now.surface.filterArea.contains(p.x, p.y)) return Verdict::Outside;
    if (now.preferNavigationBar && !now.enrolling && !edgeCounts(p, now)) return Verdict::NavigationBar;
    if (mWideRangeIdBits.hasBit(id)) return Verdict::WideRange;  // seen outside: never held back in this sequence
    if (mRestrainedIdBits.hasBit(id)) return Verdict::StillRestrained;
    if (restrainCause(p, now)) return Verdict::Restrain;
    return Verdict::LetThrough;
}

/// Carries a verdict out. True: the pointer stays in the frame.
bool ZqFrontFPAftProcessor::apply(Verdict verdict, uint32_t id, RawPointerData::Pointer& p,
                                  const FrameConditions& now) {
    switch (verdict) {
        case Verdict::Outside:
            if (mReportedIdBits.hasBit(id)) {
                LOGD("TouchSeq#%d, touch point(id=%d, x=%d, y=%d) move out the filter area", mTouchSeq, id, p.x, p.y);
                mReportedIdBits.clearBit(id);
            }
            mWideRangeIdBits.markBit(id);
            if (mRestrainedIdBits.hasBit(id)) {
                compensatePointIfNeed(p, now.when, true);
                mRestrainedIdBits.clearBit(id);
            }
            return true;

        case Verdict::NavigationBar:
            if (reportFirst(id)) {
                LOGD("TouchSeq#%d, preferTouchNavigationBar, dispatch nearby FP touch point(id=%d, x=%d, y=%d)",
                     mTouchSeq, id, p.x, p.y);
            }
            mRestrainedIdBits.clearBit(id);
            mNearbyPoints.markPoint(mTouchSeq, p, false, now.when,
                                    "prefer dispatch to navigationbar and point not on edge");
            return true;

        case Verdict::WideRange:
            if (reportFirst(id)) {
                LOGI("TouchSeq#%d, wide range point:id=%d move into filter area at point(x=%d, y=%d)", mTouchSeq, id,
                     p.x, p.y);
            }
            mNearbyPoints.markPoint(mTouchSeq, p, true, now.when, "wide range point");
            return true;

        case Verdict::StillRestrained:
            if (!compensatePointIfNeed(p, now.when, false)) return false;
            mRestrainedIdBits.clearBit(id);
            return true;

        case Verdict::Restrain:
            if (reportFirst(id)) {
                LOGI(
                    "TouchSeq#%d, restraint current point(id=%d, x=%d, y=%d), onEdge=%d, enrolling=%d, "
                    "identifying=%d, FPRecently=%d",
                    mTouchSeq, id, p.x, p.y, edgeCounts(p, now), now.enrolling, now.identifying, now.fpRecently);
            }
            mRestrainedIdBits.markBit(id);
            mRestrainedPoints[id] = {p.x, p.y, p.axes[0], p.extraData, toMs(now.when)};
            return false;

        case Verdict::LetThrough:
            mNearbyPoints.markPoint(mTouchSeq, p, false, now.when, "point should not filter");
            return true;
    }
    return true;
}

/// True the first time that a decision about this id is reported: each decision is one line per finger, not per frame.
bool ZqFrontFPAftProcessor::reportFirst(uint32_t id) {
    const bool first = !mReportedIdBits.hasBit(id);
    mReportedIdBits.markBit(id);
    return first;
}

/// Puts a held-back pointer back to where it landed, if it has proved to be a gesture; `force` when it has left the
/// filter area, which is proof enough of the upward movement. The caller lifts the restraint.
bool ZqFrontFPAftProcessor::compensatePointIfNeed(RawPointerData::Pointer& p, int64_t when, bool force) {
    if (p.id >= RawPointerData::kMaxIds) return false;
    RestrainedPoint& landed = mRestrainedPoints[p.id];
    const int64_t sideways = std::llabs(int64_t{landed.x} - p.x);
    const int64_t upward = int64_t{landed.y} - p.y;
    if (msSince(toMs(when), landed.timeMs) > kCompensateMs) return false;
    if (sideways > kCompensateSidewaysLimit) return false;
    if (upward < kCompensateUpwardMin && !force) return false;

    LOGI("compensate point(id=%d, x=%d, y=%d) replace point(%d, %d) and mark it nearby the FP", p.id, landed.x,
         landed.y, p.x, p.y);
    p.x = landed.x;
    p.y = landed.y;
    p.axes[0] = landed.axis0;
    p.extraData = landed.extraData;
    landed.timeMs = 0;
    mWideRangeIdBits.markBit(p.id);
    mNearbyPoints.markPoint(mTouchSeq, p, true, when, "compensate point");
    mFPEventState.clearPendingKey();  // it waited to learn what this finger is: no key of its own
    return true;
}

}  // namespace android
