#include "aft/slidecover/ZqSCAftProcessor.h"

#include <bounded_c.h>

#include <array>

#include "aft/host/PluginApi.h"

#define AFT_LOG_TAG "ZqSCAftProcessor"

#include "aft/host/Log.h"

namespace android {

namespace {

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
        return;
    }
    if (!SCFitlterState::isKnown(mCurState.state)) {
        LOGW("Invalid state=%d.", mCurState.state);
        return;
    }
    if (!mCancelled) {
        if (mCurState.state == previousState) return;
        cancelGesture(mapper, when, previousState);
    }
    const bool settled = mCurState.state == kSettlingState && elapsed(when, mCurState.stateTime) > kSettlingTime;
    if (!settled) filterAndCompactPointers(&data, &idBits, &idBits);
}

/// Follows the touch sequence. True where the frame belongs to none, or ends it.
bool ZqSCAftProcessor::touchingEnd(const RawPointerData& data, long long when) {
    if (data.touchingIdBits.isEmpty()) {
        if (mTouching) sequenceEnds();
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

void ZqSCAftProcessor::sequenceEnds() {
    if (!mReported && mCancelled && mPreSlideTime >= kShortestReported) reportBbFilterPoint();
    mTouching = false;
    mCancelled = false;
    mTouchDownTime = 0;
    mPreSlideTime = 0;
}

void ZqSCAftProcessor::cancelGesture(InputMapper* mapper, long long when, int32_t previousState) {
    mPreSlideTime = elapsed(mCurState.stateTime, mTouchDownTime) / 1'000'000;
    LOGI("mCurState.state=%d, preState=%d, preSlideTime=%lld, need to cancel touch.", mCurState.state, previousState,
         static_cast<long long>(mPreSlideTime));
    if (mapper != nullptr) mapper->cancelTouch(when);
    mCancelled = true;
    mCancelMapper = mapper;
}

void ZqSCAftProcessor::reportBbFilterPoint() {
    if (mCancelMapper == nullptr) {
        LOGW("device is NULL");
        return;
    }
    InputReaderContext* const context = mCancelMapper->getContext();
    InputReaderPolicyInterface* const policy = context != nullptr ? context->getPolicy() : nullptr;
    if (policy == nullptr) {
        LOGW("device->getPolicy() is NULL");
        return;
    }
    std::array<char, kReportSize> text{};
    if (sprintf_s(text.data(), text.size(), "{time:%lld, Firstpoint(%d,%d), LastPoint(%d,%d), state:%d}",
                  static_cast<long long>(mPreSlideTime), mFirstPoint.x, mFirstPoint.y, mLastPoint.x, mLastPoint.y,
                  mCurState.state) < 0) {
        LOGE("sprintf_s error");
        return;
    }
    LOGI("reportFirstPointData() eventid=%d, eventMsg={%s}", kReportEvent, text.data());
    policy->reportEvent(text.data(), kReportEvent);
    mReported = true;
}

}  // namespace android
