// The touch side of the front fingerprint filter: which fingers near the sensor are held back, let through, put back
// where they landed, or cancelled.

#include <cstdlib>

#include "aft/frontfp/EventTime.h"
#include "aft/frontfp/FrontFPLog.h"
#include "aft/frontfp/FrontFPProperties.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"
#include "aft/host/Contacts.h"
#include "aft/host/PluginApi.h"

namespace android {

namespace {

using Outcome = DecisionRecord::Outcome;

/// A finger held back for longer is resting on the sensor: it does not come back.
constexpr int64_t kCompensateMs = 1000;

/// A gesture starts upward; a finger that has gone further sideways is another movement, and must not jump back.
constexpr int64_t kCompensateSidewaysLimit = 200;

/// Less upward movement than this is the wobble of a finger on the sensor. Raw panel units, as the sideways limit.
constexpr int64_t kCompensateUpwardMin = 40;

constexpr Quantity kAreaX{.name = "x in the area", .setting = kFilterAreaProperty};
constexpr Quantity kAreaY{.name = "y in the area", .setting = kFilterAreaProperty};

}  // namespace

void ZqFrontFPAftProcessor::processRawTouches(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits,
                                              Vector<void*>& keys) {
    if (mLastRawPointerData != nullptr) copyRawPointerData(&data, mLastRawPointerData.get());

    const bool wasTouching = mTouching;
    if (touchingEnd(data, when)) {
        mFPEventState.handlePendingKey(when, true, keys);
        return;
    }

    const DecisionRecorder recorder(kFrontFP, mapper, when);
    const FrameConditions now = gatherConditions(recorder, when);
    mRestrainedIdBits &= idBits;
    mWideRangeIdBits &= idBits;

    if (wasTouching) {
        if (idBits.count() >= 2) secondFingerDown(when, keys);
        if (mapper != nullptr && !mTouchCanceled && causedBySensor(recorder, when)) {
            mapper->cancelTouch(when);
            mTouchCanceled = true;
            if (recorder.listening()) {
                recordEach(recorder, data, idBits, Outcome::Removed, "gesture-cancelled"_rule);
            }
            filterAndCompactPointers(&data, &idBits, &idBits);
            return;
        }
    }

    if (!recorder.listening() && allFar(data, idBits, now)) return;

    const bool firstSingle = !wasTouching && idBits.count() == 1;
    const BitSet32 removeBits = recorder.listening() ? judgeAll<Decision>(data, idBits, firstSingle, now)
                                                     : judgeAll<UnrecordedDecision>(data, idBits, firstSingle, now);
    if (!removeBits.isEmpty()) filterAndCompactPointers(&data, &idBits, &removeBits);
}

/// Gives each finger its verdict, and carries it out. @return the ids that leave the frame
template <typename PointerDecision>
BitSet32 ZqFrontFPAftProcessor::judgeAll(RawPointerData& data, BitSet32 idBits, bool firstSingle,
                                         const FrameConditions& now) {
    BitSet32 removeBits{};
    for (auto [id, p] : contacts(data, idBits)) {
        PointerDecision decision(now.recorder, id, p);
        const Verdict verdict = judge(id, p, now, decision);
        if (verdict.action != Action::Outside) {
            mNearbyPoints.updatePointRange(p);
            if (firstSingle) onlyFingerLandedInside(now.when);
        }
        if (!apply(verdict, id, p, now, decision)) removeBits.markBit(id);
    }
    return removeBits;
}

/// Handles a frame that has no finger inside the filter area and none that was reported there (a held-back finger
/// was): most frames of a phone in use. One look at each finger is enough. judgeAll() does the same, and records it.
/// @return true: the frame is handled; false: nothing has changed
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

bool ZqFrontFPAftProcessor::touchingEnd(const RawPointerData& data, int64_t when) {
    if (!data.touchingIdBits.isEmpty()) {
        if (!mTouching) {
            mTouching = true;
            mNearbyPoints.setTouchState(true, mTouchSeq);
            mTouchSeqDesc.clear();
            mTouchSeqDesc.appendFormat("During TouchSeq#%d", mTouchSeq);
            mFPEventState.dropPendingKey(when, "new-touch"_rule);
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

ZqFrontFPAftProcessor::FrameConditions ZqFrontFPAftProcessor::gatherConditions(const DecisionRecorder& recorder,
                                                                               int64_t when) {
    FrameConditions now(recorder, when);
    now.surface = surface();
    // In this order: the first two questions log, and change the identification state.
    now.identifying = mIdentifyState.identifyingRecently(mTouchSeq, when, now.measured);
    now.preferNavigationBar = preferTouchNavigationBar(now.surface, when);
    // In landscape this is logged, and decides nothing.
    Measurements& ofSensor = now.surface.landscape ? Measurements::unheard() : now.measured;
    now.fpRecently = fingerPrintDownRecently(when, ofSensor);
    now.enrolling = enrollFingerPrintRecently(when, now.measured);
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

bool ZqFrontFPAftProcessor::causedBySensor(const DecisionRecorder& recorder, int64_t when) {
    Decision identified(recorder);
    if (mIdentifyState.touchBeforeIdentify(when, identified)) {
        LOGI("this touch may caused by identify finger, cancel it");
        identified.record(Outcome::Cancelled, "touch-before-identification"_rule, true);
        return true;
    }
    Decision slid(recorder);
    if (swipeOnFPRecently(when, slid)) {
        LOGI("this touch may caused by swipe on FP sensor, cancel it");
        slid.record(Outcome::Cancelled, "slide-over-sensor"_rule, true);
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
std::optional<Rule> ZqFrontFPAftProcessor::restrainCause(const RawPointerData::Pointer& p, const FrameConditions& now,
                                                         auto& decision) const {
    decision.add(now.measured);
    const bool onEdge = now.surface.landscape && decision.flag({.name = "on the edge in landscape"}, touchOnEdge(p));
    if (now.enrolling) return "enrolment"_rule;
    if (now.identifying) return "identification"_rule;
    if (onEdge) return "edge-in-landscape"_rule;
    if (!now.surface.landscape && now.fpRecently) return "finger-on-sensor"_rule;
    return std::nullopt;
}

/// A finger that has been seen outside the filter area is never held back in its sequence.
ZqFrontFPAftProcessor::Verdict ZqFrontFPAftProcessor::judge(uint32_t id, const RawPointerData::Pointer& p,
                                                            const FrameConditions& now, auto& decision) const {
    if (!decision.inside(kAreaX, kAreaY, now.surface.filterArea, p.x, p.y)) {
        return {Action::Outside, "outside-area"_rule};
    }
    if (now.preferNavigationBar && !now.enrolling && !edgeCounts(p, now)) {
        return {Action::NavigationBar, "navigation-bar"_rule};
    }
    if (mWideRangeIdBits.hasBit(id)) return {Action::WideRange, "wide-range"_rule};
    if (mRestrainedIdBits.hasBit(id)) return {Action::StillRestrained, "no-gesture"_rule};
    if (const auto cause = restrainCause(p, now, decision)) return {Action::Restrain, *cause};
    return {Action::LetThrough, "no-doubt"_rule};
}

/// Carries a verdict out. True: the pointer stays in the frame.
bool ZqFrontFPAftProcessor::apply(Verdict verdict, uint32_t id, RawPointerData::Pointer& p, const FrameConditions& now,
                                  auto& decision) {
    switch (verdict.action) {
        case Action::Outside:
            if (mReportedIdBits.hasBit(id)) {
                LOGD("TouchSeq#%d, touch point(id=%d, x=%d, y=%d) move out the filter area", mTouchSeq, id, p.x, p.y);
                mReportedIdBits.clearBit(id);
            }
            mWideRangeIdBits.markBit(id);
            if (!mRestrainedIdBits.hasBit(id)) {
                decision.record(Outcome::OutOfScope, verdict.rule);
            } else {
                if (!compensatePointIfNeed(p, now.when, true, decision)) {
                    decision.record(Outcome::Passed, "left-area-late"_rule);
                }
                mRestrainedIdBits.clearBit(id);
            }
            return true;

        case Action::NavigationBar: {
            const bool first = reportFirst(id);
            if (first) {
                LOGD("TouchSeq#%d, preferTouchNavigationBar, dispatch nearby FP touch point(id=%d, x=%d, y=%d)",
                     mTouchSeq, id, p.x, p.y);
            }
            decision.add(now.measured);
            decision.record(Outcome::Passed, verdict.rule, first);
            mRestrainedIdBits.clearBit(id);
            mNearbyPoints.markPoint(mTouchSeq, p, false, now.when,
                                    "prefer dispatch to navigationbar and point not on edge");
            return true;
        }

        case Action::WideRange: {
            const bool first = reportFirst(id);
            if (first) {
                LOGI("TouchSeq#%d, wide range point:id=%d move into filter area at point(x=%d, y=%d)", mTouchSeq, id,
                     p.x, p.y);
            }
            decision.record(Outcome::Passed, verdict.rule, first);
            mNearbyPoints.markPoint(mTouchSeq, p, true, now.when, "wide range point");
            return true;
        }

        case Action::StillRestrained:
            if (!compensatePointIfNeed(p, now.when, false, decision)) {
                decision.record(Outcome::Removed, verdict.rule);
                return false;
            }
            mRestrainedIdBits.clearBit(id);
            return true;

        case Action::Restrain: {
            const bool first = reportFirst(id);
            if (first) {
                LOGI(
                    "TouchSeq#%d, restraint current point(id=%d, x=%d, y=%d), onEdge=%d, enrolling=%d, "
                    "identifying=%d, FPRecently=%d",
                    mTouchSeq, id, p.x, p.y, edgeCounts(p, now), now.enrolling, now.identifying, now.fpRecently);
            }
            decision.record(Outcome::Removed, verdict.rule, first);
            mRestrainedIdBits.markBit(id);
            mRestrainedPoints[id] = {p.x, p.y, p.axes[0], p.extraData, toMs(now.when)};
            return false;
        }

        case Action::LetThrough:
            decision.record(Outcome::Passed, verdict.rule);
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
bool ZqFrontFPAftProcessor::compensatePointIfNeed(RawPointerData::Pointer& p, int64_t when, bool force,
                                                  auto& decision) {
    if (p.id >= RawPointerData::kMaxIds) return false;
    RestrainedPoint& landed = mRestrainedPoints[p.id];
    const int64_t sideways = std::llabs(int64_t{landed.x} - p.x);
    const int64_t upward = int64_t{landed.y} - p.y;
    const MeasurementCause landing = eventAt("landing", landed.timeMs);
    const bool isUp = force || decision.atLeast({.name = "moved up"}, upward, kCompensateUpwardMin, landing);
    const bool isStraight = decision.atMost({.name = "moved sideways"}, sideways, kCompensateSidewaysLimit, landing);
    const bool isSoon = decision.within({.name = "held back for", .unit = "ms"}, msFrom(landed.timeMs, toMs(when)), 0,
                                        kCompensateMs, landing);
    if (!isUp || !isStraight || !isSoon) return false;

    LOGI("compensate point(id=%d, x=%d, y=%d) replace point(%d, %d) and mark it nearby the FP", p.id, landed.x,
         landed.y, p.x, p.y);
    decision.record(Outcome::Restored, force ? "left-area"_rule : "moved-up"_rule, true);
    p.x = landed.x;
    p.y = landed.y;
    p.axes[0] = landed.axis0;
    p.extraData = landed.extraData;
    landed.timeMs = 0;
    mWideRangeIdBits.markBit(p.id);
    mNearbyPoints.markPoint(mTouchSeq, p, true, when, "compensate point");
    mFPEventState.dropPendingKey(when, "finger-restored"_rule);  // it waited to learn what this finger is
    return true;
}

}  // namespace android
