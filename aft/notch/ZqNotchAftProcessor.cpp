#include "aft/notch/ZqNotchAftProcessor.h"

#include <bounded_c.h>
#include <cutils/properties.h>

#include <string_view>

#include "aft/host/FloatToInt.h"
#include "aft/host/PluginApi.h"

#define AFT_LOG_TAG "ZqNotchAftProcessor"

#include "aft/host/Log.h"

ANDROID_SINGLETON_STATIC_INSTANCE(android::ZqNotchAftProcessor)

namespace android {

namespace {

using Outcome = DecisionRecord::Outcome;

constexpr char kNotch[] = "notch";  ///< the filter's name in decision records

constexpr char kNotchProperty[] = "ro.config.zq_notch_size";
constexpr char kFoldDisplayProperty[] = "ro.config.zq_fold_disp";

/// What the name of a folding phone's notched panel holds.
constexpr std::string_view kNotchedPanel = "zorvia,ts_kit";

}  // namespace

ZqNotchAftProcessor::ZqNotchAftProcessor() {
    char value[PROPERTY_VALUE_MAX];
    int unused = 0;
    property_get(kNotchProperty, value, "");
    int height = 0;
    if (sscanf_s(value, "%d,%d,%d,%d", &unused, &height, &unused, &unused) == 4) {
        mNotchHeight = height;
        mHasNotch = true;
        LOGI("notch height:%d", height);
    } else {
        LOGI("Device has no valid notch prop:%s", value);
    }

    property_get(kFoldDisplayProperty, value, "");
    int foldWidth = 0;
    if (sscanf_s(value, "%d,%d,%d,%d,%d,%d", &unused, &foldWidth, &unused, &unused, &unused, &unused) == 6) {
        LOGI("fold part width:%d", foldWidth);
        mCheckPanelName = foldWidth == 0;
    } else {
        LOGI("Device is not a fold device:%s", value);
    }
}

bool ZqNotchAftProcessor::isInputDeviceHasNotch(InputMapper* mapper) const {
    if (!mHasNotch || mapper == nullptr) return false;
    return !mCheckPanelName || mapper->getDeviceName().find(kNotchedPanel) != std::string::npos;
}

void ZqNotchAftProcessor::processRawTouches(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits) {
    if (!isInputDeviceHasNotch(mapper)) return;
    const std::optional<SurfaceConfig> surface = surfaceOf(mapper->getDeviceId());
    if (!surface || !surface->landscape) return recordPortrait(mapper, when, data, idBits);
    if (touchingEndAndUpdate(data)) return;
    const DecisionRecorder recorder(kNotch, mapper, when);
    const BitSet32 removed = recorder.listening() ? judgeAll<Decision>(data, idBits, *surface, recorder)
                                                  : judgeAll<UnrecordedDecision>(data, idBits, *surface, recorder);
    if (!removed.isEmpty()) filterAndCompactPointers(&data, &idBits, &removed);
}

/// @return the ids that leave the frame
template <typename PointerDecision>
BitSet32 ZqNotchAftProcessor::judgeAll(const RawPointerData& data, BitSet32 idBits, const SurfaceConfig& surface,
                                       const DecisionRecorder& recorder) {
    BitSet32 removed{};
    for (uint32_t id : idBits) {
        const RawPointerData::Pointer* p = data.find(id);
        if (p == nullptr) continue;
        PointerDecision decision(recorder, id, *p);
        if (!judge(id, *p, surface, decision)) removed.markBit(id);
    }
    return removed;
}

/// True: the pointer stays, and does so until all fingers are up, where this says so for the first time.
bool ZqNotchAftProcessor::judge(uint32_t id, const RawPointerData::Pointer& pointer, const SurfaceConfig& surface,
                                auto& decision) {
    if (!inBand(pointer, decision)) {
        decision.record(Outcome::OutOfScope, "notch-left"_rule);
    } else if (decision.flag({.name = "in a marked window"}, inMarkedWindow(pointer, surface))) {
        decision.record(Outcome::Passed, "notch-window"_rule);
    } else if (decision.flag({.name = "let through before"}, mUnfilteredIds.hasBit(id))) {
        decision.record(Outcome::Passed, "notch-left-before"_rule);
    } else {
        decision.record(Outcome::Removed, "notch-band"_rule);
        return false;
    }
    mUnfilteredIds.markBit(id);
    return true;
}

void ZqNotchAftProcessor::recordPortrait(InputMapper* mapper, int64_t when, const RawPointerData& data,
                                         BitSet32 idBits) {
    const DecisionRecorder recorder(kNotch, mapper, when);
    if (recorder.listening()) recordEach(recorder, data, idBits, Outcome::OutOfScope, "notch-portrait"_rule);
}

bool ZqNotchAftProcessor::touchingEndAndUpdate(const RawPointerData& data) {
    mTouching = !data.touchingIdBits.isEmpty();
    if (!mTouching) mUnfilteredIds.clear();
    return !mTouching;
}

bool ZqNotchAftProcessor::inBand(const RawPointerData::Pointer& pointer, auto& decision) const {
    return decision.within({.name = "y in the notch band", .setting = kNotchProperty}, pointer.y, 0, mNotchHeight);
}

void ZqNotchAftProcessor::processInputWindow(const std::vector<sp<InputWindowHandle>>& windows) {
    if (!mHasNotch) return;
    Vector<AftArea> areas;
    for (const sp<InputWindowHandle>& window : windows) {
        if (window == nullptr || !window->visible) continue;
        if ((window->aftFlags & InputWindowHandle::kNotchArea) == 0) continue;
        areas.add({window->frameLeft, window->frameTop, window->frameRight, window->frameBottom});
    }
    {
        Mutex::Autolock lock(mLock);
        if (mNoFilterAreas.isEmpty() && areas.isEmpty()) return;
        mNoFilterAreas = areas;
    }
    const DecisionRecorder recorder(kNotch);
    Decision decision(recorder);
    decision.fact({.name = "marked windows"}, static_cast<double>(areas.size()));
    decision.record(Outcome::Noted, "notch-windows"_rule);
}

bool ZqNotchAftProcessor::pointInNoFilterAreas(int deviceId, const RawPointerData::Pointer& pointer) {
    const std::optional<SurfaceConfig> surface = surfaceOf(deviceId);
    return !surface || inMarkedWindow(pointer, *surface);
}

/// Held any other way than in landscape, no window needs a mark.
bool ZqNotchAftProcessor::inMarkedWindow(const RawPointerData::Pointer& pointer, const SurfaceConfig& surface) {
    const std::optional<DisplayPoint> shown = toDisplay(pointer, surface);
    if (!shown) return true;
    Mutex::Autolock lock(mLock);
    for (const AftArea& area : mNoFilterAreas) {
        if (area.contains(shown->x, shown->y)) return true;
    }
    return false;
}

void ZqNotchAftProcessor::configureSurface(InputMapper* mapper, int orientation, TouchAffineTransformation& calibration,
                                           RawPointerAxes& axes, float xScale, float yScale, float xTranslate,
                                           float yTranslate) {
    if (!isInputDeviceHasNotch(mapper) || mapper->getDeviceId() < 0 || mapper->isDeviceExternal()) return;
    const SurfaceConfig config{.landscape = orientation == 1 || orientation == 3,
                               .orientation = orientation,
                               .calibration = calibration,
                               .rawXMin = axes.x.minValue,
                               .rawXMax = axes.x.maxValue,
                               .rawYMin = axes.y.minValue,
                               .rawYMax = axes.y.maxValue,
                               .xScale = xScale,
                               .yScale = yScale,
                               .xTranslate = xTranslate,
                               .yTranslate = yTranslate};
    const DecisionRecorder recorder(kNotch, mapper);
    Decision decision(recorder);
    decision.fact({.name = "orientation"}, orientation);
    decision.fact({.name = "landscape"}, config.landscape ? 1 : 0);
    decision.fact({.name = "notch band bottom", .setting = kNotchProperty}, mNotchHeight);
    decision.record(Outcome::Noted, "notch-surface"_rule);
    Mutex::Autolock lock(mLock);
    mSurfaceConfigs.insert_or_assign(mapper->getDeviceId(), config);
}

bool ZqNotchAftProcessor::isLandscape(int deviceId) {
    const std::optional<SurfaceConfig> surface = surfaceOf(deviceId);
    return surface && surface->landscape;
}

std::optional<ZqNotchAftProcessor::SurfaceConfig> ZqNotchAftProcessor::surfaceOf(int deviceId) {
    Mutex::Autolock lock(mLock);
    const auto known = mSurfaceConfigs.find(deviceId);
    if (known == mSurfaceConfigs.end()) return std::nullopt;
    return known->second;
}

void ZqNotchAftProcessor::applyTo(float& x, float& y, const SurfaceConfig& config) const {
    const auto& c = config.calibration.c;
    const float rawX = x;
    const float rawY = y;
    x = c[0] * rawX + c[1] * rawY + c[2];
    y = c[3] * rawX + c[4] * rawY + c[5];
}

/// Nothing where the device is not held in landscape.
std::optional<ZqNotchAftProcessor::DisplayPoint> ZqNotchAftProcessor::toDisplay(const RawPointerData::Pointer& pointer,
                                                                                const SurfaceConfig& config) const {
    auto x = static_cast<float>(pointer.x);
    auto y = static_cast<float>(pointer.y);
    applyTo(x, y, config);
    float across = 0;
    float down = 0;
    if (config.orientation == 1) {
        across = config.yTranslate + config.yScale * (y - static_cast<float>(config.rawYMin));
        down = config.xTranslate + config.xScale * (static_cast<float>(config.rawXMax) - x);
    } else if (config.orientation == 3) {
        across = config.yTranslate + config.yScale * (static_cast<float>(config.rawYMax) - y);
        down = config.xTranslate + config.xScale * (x - static_cast<float>(config.rawXMin));
    } else {
        return std::nullopt;
    }
    return DisplayPoint{toSaturatedInt32(across), toSaturatedInt32(down)};
}

}  // namespace android
