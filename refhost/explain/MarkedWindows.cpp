#include "refhost/explain/MarkedWindows.h"

#include <algorithm>

#include "aft/host/FloatToInt.h"

namespace refhost {

void MarkedWindows::hear(const TraceLine& line) {
    if (const auto* surface = std::get_if<ConfigureSurface>(&line.event); surface != nullptr && surface->device) {
        mSurfaces[*surface->device] = *surface;
    }
    const auto* shown = std::get_if<ProcessInputWindow>(&line.event);
    if (shown == nullptr) return;
    mFrames.clear();
    for (const WindowDescription& window : shown->windows) {
        const auto& [left, top, right, bottom] = window.frame;
        if (window.notchArea && window.visible) mFrames.push_back({left, top, right, bottom});
    }
}

/// Single precision, one rounding an operation: a finger on a frame's edge falls to the side on which the filter has
/// it.
bool MarkedWindows::hold(const DeviceRef& device, const android::RawPointerData::Pointer& finger) const {
    const auto known = device ? mSurfaces.find(*device) : mSurfaces.end();
    if (known == mSurfaces.end() || mFrames.empty()) return false;
    const ConfigureSurface& surface = known->second;
    const auto& c = surface.calibration;
    const auto rawX = static_cast<float>(finger.x);
    const auto rawY = static_cast<float>(finger.y);
    const float x = c[0] * rawX + c[1] * rawY + c[2];
    const float y = c[3] * rawX + c[4] * rawY + c[5];
    const bool clockwise = surface.orientation == 1;
    const float fromLeft =
        clockwise ? y - static_cast<float>(surface.rawY[0]) : static_cast<float>(surface.rawY[1]) - y;
    const float fromTop = clockwise ? static_cast<float>(surface.rawX[1]) - x : x - static_cast<float>(surface.rawX[0]);
    const int32_t across = android::toSaturatedInt32(surface.translate[1] + surface.scale[1] * fromLeft);
    const int32_t down = android::toSaturatedInt32(surface.translate[0] + surface.scale[0] * fromTop);
    return std::any_of(mFrames.begin(), mFrames.end(),
                       [&](const android::AftArea& frame) { return frame.contains(across, down); });
}

}  // namespace refhost
