#include "aft/foldable/ZqFoldableDeviceAftProcessor.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"
#include "aft/host/PluginApi.h"
#include "aft/notch/ZqNotchAftProcessor.h"
#include "aft/slidecover/ZqAftSCStateInterface.h"
#include "aft/slidecover/ZqSCAftProcessor.h"

// Which filter hears of what, and in which order: this file shows that and nothing else. Each filter works on the frame
// as the earlier ones left it, whatever they answered; a frame that one of them emptied is a lift-off to the next.

using namespace android;

namespace android {

const char* aft_version = "1.2";

}  // namespace android

int32_t processKey(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode, bool down, int32_t metaState,
                   uint32_t policyFlags) noexcept {
    if (!ZqFrontFPAftProcessor::enabled()) return ZqFrontFPAftProcessor::keyWhileOff(mapper, when, keyCode);
    return ZqFrontFPAftProcessor::getInstance()->processKey(mapper, when, keyCode, scanCode, down, metaState,
                                                            policyFlags);
}

void processRawTouches(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits,
                       Vector<void*>& keys) noexcept {
    const bool nearSensor = ZqFrontFPAftProcessor::enabled();
    const bool abnormal = ZqFrontFPAftProcessor::enabledAbt();
    if (!nearSensor) ZqFrontFPAftProcessor::recordOff(mapper, when, data, idBits);
    if (nearSensor || abnormal) {
        const sp<ZqFrontFPAftProcessor> filter = ZqFrontFPAftProcessor::getInstance();
        if (nearSensor) filter->processRawTouches(mapper, when, data, idBits, keys);
        if (abnormal) filter->processRawTouchesForAbt(mapper, when, data, idBits);
    }
    if (ZqSCAftProcessor::enabled()) ZqSCAftProcessor::getInstance()->processRawTouches(mapper, when, data, idBits);
    ZqNotchAftProcessor::getInstance().processRawTouches(mapper, when, data, idBits);
    if (ZqFoldableDeviceAftProcessor::enabled()) {
        ZqFoldableDeviceAftProcessor::getInstance().processRawTouches(mapper, when, data, idBits);
    }
}

void processInputWindow(const std::vector<sp<InputWindowHandle>>& windows, const sp<InputWindowHandle>& focusedWindow,
                        bool keyguardShowing) noexcept {
    if (ZqFrontFPAftProcessor::enabled()) ZqFrontFPAftProcessor::getInstance()->processInputWindow(windows);
    if (ZqFrontFPAftProcessor::enabledAbt()) {
        ZqFrontFPAftProcessor::getInstance()->processInputWindowForAbt(focusedWindow, keyguardShowing);
    }
    ZqNotchAftProcessor::getInstance().processInputWindow(windows);
}

void configureSurface(InputMapper* mapper, int32_t width, int32_t height, int32_t orientation,
                      TouchAffineTransformation& calibration, RawPointerAxes& axes, float xScale, float yScale,
                      float xTranslate, float yTranslate) noexcept {
    if (ZqFrontFPAftProcessor::enabled()) {
        ZqFrontFPAftProcessor::getInstance()->configureSurface(width, height, orientation);
    }
    ZqNotchAftProcessor::getInstance().configureSurface(mapper, orientation, calibration, axes, xScale, yScale,
                                                        xTranslate, yTranslate);
}

void notifyInputStart() noexcept {
    if (ZqAftSCStateInterface::isSupport()) ZqAftSCStateInterface::getInstance()->enableSCSensor();
    if (ZqFoldableDeviceAftProcessor::enabled()) ZqFoldableDeviceAftProcessor::getInstance().start();
}

void notifyInputExit() noexcept {
    if (ZqAftSCStateInterface::isSupport()) ZqAftSCStateInterface::getInstance()->disableSCSensor();
    if (ZqFoldableDeviceAftProcessor::enabled()) ZqFoldableDeviceAftProcessor::getInstance().stop();
}

void notifyScreenState() noexcept {}
