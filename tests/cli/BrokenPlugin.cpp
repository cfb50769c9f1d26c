// A plug-in that breaks what a host relies on: it consumes every key, and one kills it.

#include <cstdlib>

#include "aft/host/PluginApi.h"

using namespace android;

namespace android {

const char* aft_version = "broken";

}  // namespace android

int32_t processKey(InputMapper*, int64_t, int32_t keyCode, int32_t, bool, int32_t, uint32_t) noexcept {
    if (keyCode == 99) std::abort();
    return 1;
}
void processRawTouches(InputMapper*, int64_t, RawPointerData&, BitSet32&, Vector<void*>&) noexcept {}
void processInputWindow(const std::vector<sp<InputWindowHandle>>&, const sp<InputWindowHandle>&, bool) noexcept {}
void configureSurface(InputMapper*, int32_t, int32_t, int32_t, TouchAffineTransformation&, RawPointerAxes&, float,
                      float, float, float) noexcept {}
void notifyInputStart() noexcept {}
void notifyInputExit() noexcept {}
void notifyScreenState() noexcept {}
void* allocNotifyKeyArgs() noexcept { return nullptr; }
void releaseNotifyKeyArgs(void*) noexcept {}
void copyRawPointerData(const RawPointerData*, RawPointerData*) noexcept {}
void clearRawPointerData(RawPointerData*) noexcept {}
RawPointerData* filterAndCompactPointers(RawPointerData* data, BitSet32*, const BitSet32*) noexcept { return data; }
bool touchOnSide(const RawPointerData::Pointer*) noexcept { return false; }
bool touchDataValid(const RawPointerData::Pointer*) noexcept { return false; }
bool touchIsFolded(const RawPointerData::Pointer*) noexcept { return false; }
