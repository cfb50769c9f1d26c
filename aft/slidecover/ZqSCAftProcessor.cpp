#include "aft/slidecover/ZqSCAftProcessor.h"

#include <bounded_c.h>

#include <array>

#include "aft/host/PluginApi.h"

#define AFT_LOG_TAG "ZqSCAftProcessor"

#include "aft/host/Log.h"

namespace android {

namespace {

using Outcome = DecisionRecord::Outcome;

constexpr int32_t kReportEvent = 651;

/// The report's text and its NUL; a longer one is not sent.
constexpr size_t kReportSize = 100;

/// A gesture cancelled sooner after touch-down, in ms, is not worth a report.
constexpr int64_t kShortestReported = 1;

/// The one state in which the fingers of a cancelled gesture pass again, once it has lasted longer than this, in ns.
constexpr int32_t kSettlingState = 1;
constexpr int64_t kSettlingTime = 2'999'999'999;

/// `later - earlier` in ns; times that no clock can have wrap around.
constexpr int64_t elapsed(int64_t later, int64_t earlier) {
    return static_cast<int64_t>(static_cast<uint64_t>(later) - static_cast<uint64_t>(earlier));
}

/// `ms` after `time` (ns), wrapping around likewise.
constexpr int64_t msLater(int64_t time, int64_t ms) {
    return static_cast<int64_t>(static_cast<uint64_t>(time) + static_cast<uint64_t>(ms) * 1'000'000U);
}

void recordCancelled(const DecisionRecorder& recorder, const RawPointerData& data, BitSet32 idBits, bool settled,
                     const Measurements& measured) {
    for (uint32_t id : idBits) {
        const RawPointerData::Pointer* p = data.find(id);
        if (p == nullptr) continue;
        Decision decision(recorder, id, *p);
        decision.add(measured);
        if (settled) {
            decision.record(Outcome::Passed, "cover-settled"_rule);
        } else {
            decision.record(Outcome::Removed, "cover-cancelled"_rule);
        }
    }
}

/// The position of the lowest touching id; where its record is out of the frame's bounds, the point stays.
void pointOf(const RawPointerData& data, ScPoint& point) {
    const RawPointerData::Pointer* p = data.find(*data.touchingIdBits.begin());
    if (p != nullptr) point = {p->x, p->y};
}

}  // namespace

Mutex ZqSCAftProcessor::sLock;
sp<ZqSCAftProcessor> ZqSCAftProcessor::sInstance;
AftEnableConfig ZqSCAftProcessor::sAftConfig;

bool ZqSCAftProcessor::enabled() {
    Mutex::Autolock lock(sLock);
    if (!sAftConfig.decided) {
        sAftConfig.enabled = ZqAftSCStateInterface::isSupport();
        sAftConfig.decided = true;
        LOGI("sAftConfig.enabled=%d", sAftConfig.enabled ? 1 : 0);
    }
    return sAftConfig.enabled;
}

sp<ZqSCAftProcessor> ZqSCAftProcessor::getInstance() {
    Mutex::Autolock lock(sLock);
    if (sInstance == nullptr) sInstance = new ZqSCAftProcessor();
    return sInstance;
}

ZqSCAftProcessor::ZqSCAftProcessor() {
    LOGI("constructor ZqSCAftProcessor");
    mZqAftSCStateManager = ZqAftSCStateInterface::getInstance();
}

ZqSCAftProcessor::~ZqSCAftProcessor() { LOGI("destructor release ZqSCAftProcessor"); }

void ZqSCAftProcessor::processRawTouches(InputMapper* mapper, long long when, RawPointerData& data, BitSet32& idBits) {
    if (touchingEnd(data, when)) return;
    if (mZqAftSCStateManager == nullptr) {
        LOGW("mZqAftSCStateManager is NULL.");
        return;
    }
    const int32_t previousState = mCurState.state;
    if (!mZqAftSCStateManager->getSCFilterState(mCurState)) {
        LOGW("getSCFilterState false.");
        return recordIdle(mapper, when, data, idBits);
    }
    if (!SCFitlterState::isKnown(mCurState.state)) {
        LOGW("Invalid state=%d.", mCurState.state);
        return recordIdle(mapper, when, data, idBits);
    }
    mIdle = false;
    if (!mCancelled && mCurState.state == previousState) return;
    const DecisionRecorder recorder(kSlideCover, mapper, when);
    if (!mCancelled) cancelGesture(mapper, when, previousState, recorder);
    filterCancelled(data, idBits, when, recorder);
}

/// Every pointer passes; the first frame of such a run says so, too.
void ZqSCAftProcessor::recordIdle(InputMapper* mapper, int64_t when, const RawPointerData& data, BitSet32 idBits) {
    const DecisionRecorder recorder(kSlideCover, mapper, when);
    if (!mIdle) Decision(recorder).record(Outcome::Noted, "cover-idle"_rule, true);
    mIdle = true;
    if (recorder.listening()) recordEach(recorder, data, idBits, Outcome::OutOfScope, "cover-idle"_rule);
}

/// The pointers of a cancelled gesture leave every frame; in the settling state they come back.
void ZqSCAftProcessor::filterCancelled(RawPointerData& data, BitSet32& idBits, long long when,
                                       const DecisionRecorder& recorder) {
    Measurements measured(recorder.listening());
    const bool settled = isSettled(when, measured);
    if (recorder.listening()) recordCancelled(recorder, data, idBits, settled, measured);
    if (!settled) filterAndCompactPointers(&data, &idBits, &idBits);
}

bool ZqSCAftProcessor::isSettled(long long when, Measurements& measured) const {
    return mCurState.state == kSettlingState &&
           measured.atLeast({.name = "cover in state 1 for", .unit = "ns"}, elapsed(when, mCurState.stateTime),
                            kSettlingTime + 1, {"cover state", 0, mCurState.stateTime, 0});
}

/// Follows the touch sequence. True where the frame belongs to none, or ends it.
bool ZqSCAftProcessor::touchingEnd(const RawPointerData& data, long long when) {
    if (data.touchingIdBits.isEmpty()) {
        if (mTouching) sequenceEnds(when);
        return true;
    }
    if (!mTouching) {
        sequenceBegins(data, when);
    } else if (mCancelled) {
        pointOf(data, mLastPoint);
    }
    return false;
}

void ZqSCAftProcessor::sequenceBegins(const RawPointerData& data, long long when) {
    mTouching = true;
    mReported = false;
    mTouchDownTime = when;
    pointOf(data, mFirstPoint);
    if (mZqAftSCStateManager != nullptr && !mZqAftSCStateManager->getSCFilterState(mCurState)) {
        LOGW("Touchbegin: getSCFilterState failed");
    }
}

void ZqSCAftProcessor::sequenceEnds(long long when) {
    if (!mReported && mCancelled) reportBbFilterPointIfLate(when);
    mTouching = false;
    mCancelled = false;
    mTouchDownTime = 0;
    mPreSlideTime = 0;
}

void ZqSCAftProcessor::reportBbFilterPointIfLate(long long when) {
    const DecisionRecorder recorder(kSlideCover, mCancelMapper, when);
    Decision decision(recorder);
    const Quantity movedAfter{.name = "cover moved after touch-down", .unit = "ms"};
    const MeasurementCause touchDown{"landing", 0, mTouchDownTime, msLater(mTouchDownTime, mPreSlideTime)};
    if (decision.atLeast(movedAfter, mPreSlideTime, kShortestReported, touchDown)) reportBbFilterPoint(decision);
}

void ZqSCAftProcessor::cancelGesture(InputMapper* mapper, long long when, int32_t previousState,
                                     const DecisionRecorder& recorder) {
    mPreSlideTime = elapsed(mCurState.stateTime, mTouchDownTime) / 1'000'000;
    LOGI("mCurState.state=%d, preState=%d, preSlideTime=%lld, need to cancel touch.", mCurState.state, previousState,
         static_cast<long long>(mPreSlideTime));
    Decision decision(recorder);
    decision.fact({.name = "cover state"}, mCurState.state, {"cover state", 0, mCurState.stateTime, 0});
    decision.fact({.name = "cover state before"}, previousState);
    decision.record(Outcome::Cancelled, "cover-moved"_rule, true);
    if (mapper != nullptr) mapper->cancelTouch(when);
    mCancelled = true;
    mCancelMapper = mapper;
}

void ZqSCAftProcessor::reportBbFilterPoint(Decision& decision) {
    if (mCancelMapper == nullptr) {
        LOGW("device is NULL");
        return decision.record(Outcome::Noted, "no-report"_rule, true);
    }
    InputReaderContext* const context = mCancelMapper->getContext();
    InputReaderPolicyInterface* const policy = context != nullptr ? context->getPolicy() : nullptr;
    if (policy == nullptr) {
        LOGW("device->getPolicy() is NULL");
        return decision.record(Outcome::Noted, "no-report"_rule, true);
    }
    std::array<char, kReportSize> text{};
    if (sprintf_s(text.data(), text.size(), "{time:%lld, Firstpoint(%d,%d), LastPoint(%d,%d), state:%d}",
                  static_cast<long long>(mPreSlideTime), mFirstPoint.x, mFirstPoint.y, mLastPoint.x, mLastPoint.y,
                  mCurState.state) < 0) {
        LOGE("sprintf_s error");
        return decision.record(Outcome::Noted, "no-report"_rule, true);
    }
    LOGI("reportFirstPointData() eventid=%d, eventMsg={%s}", kReportEvent, text.data());
    decision.record(Outcome::Reported, "cover-report"_rule, true);
    policy->reportEvent(text.data(), kReportEvent);
    mReported = true;
}

}  // namespace android
