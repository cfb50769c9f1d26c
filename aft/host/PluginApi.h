#pragma once

#include <utils/StrongPointer.h>
#include <utils/Vector.h>

#include <cstdint>
#include <vector>

#include "aft/host/Export.h"
#include "aft/host/InputMapper.h"
#include "aft/host/InputWindowHandle.h"
#include "aft/host/NotifyKeyArgs.h"
#include "aft/host/RawPointerData.h"
#include "aft/host/SurfaceGeometry.h"

/// All that `libzqaftprocessor.so` exports: fifteen functions with C linkage and one data object. `when` is the event
/// time in ns. No exception leaves any of them: where the heap is exhausted, and nothing else is said, the process
/// ends.

namespace android {

/// The plug-in's version, for the host to read.
extern AFT_EXPORT const char* aft_version;

}  // namespace android

extern "C" {

// What the host tells the plug-in. Frames and keys come on one thread, the input reader's; the others may come on any,
// at the same time.

/// @param mapper may be null: while the filter is on, the key is then dispatched; while it is off, 516 to 519 are
///               consumed whatever the mapper
/// @return nonzero: the key is consumed and must not be dispatched; 0: dispatch it
AFT_EXPORT int32_t processKey(android::InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode, bool down,
                              int32_t metaState, uint32_t policyFlags) noexcept;

/// Filters one frame in place, before the host cooks it.
/// @param mapper may be null; no gesture is cancelled then
/// @param data   the frame; pointers can leave it or change places and values
/// @param idBits the ids to judge; loses those that are removed
/// @param keys   gains records of `allocNotifyKeyArgs` that the host has to dispatch and then release
AFT_EXPORT void processRawTouches(android::InputMapper* mapper, int64_t when, android::RawPointerData& data,
                                  android::BitSet32& idBits, android::Vector<void*>& keys) noexcept;

/// The window list, front to back, whenever it changes. `focusedWindow` may be null.
AFT_EXPORT void processInputWindow(const std::vector<android::sp<android::InputWindowHandle>>& windows,
                                   const android::sp<android::InputWindowHandle>& focusedWindow,
                                   bool keyguardShowing) noexcept;

/// The touch surface, whenever the host configures it. `mapper` may be null: the notch filter ignores it then. Width
/// and height in raw panel units; `orientation` 0..3 quarter turns; the four floats take raw units to display units.
AFT_EXPORT void configureSurface(android::InputMapper* mapper, int32_t width, int32_t height, int32_t orientation,
                                 android::TouchAffineTransformation& calibration, android::RawPointerAxes& axes,
                                 float xScale, float yScale, float xTranslate, float yTranslate) noexcept;

/// The host's input starts or ends: the sensors are enabled or disabled. Waits for the sensor service.
AFT_EXPORT void notifyInputStart() noexcept;
AFT_EXPORT void notifyInputExit() noexcept;
/// Does nothing, whatever arguments the host passes.
AFT_EXPORT void notifyScreenState() noexcept;

// Helpers on the shared records, for both sides. No state, no lock; any thread that owns the records.

/// A block of 64 bytes for one NotifyKeyArgs, uninitialised, from the C heap; null when there is none left.
AFT_EXPORT void* allocNotifyKeyArgs() noexcept;
/// Gives such a block back; null is allowed.
AFT_EXPORT void releaseNotifyKeyArgs(void* args) noexcept;

/// Copies the counts, the id sets, the valid records, and of `idToIndex` the entries of their ids; the others keep what
/// `dst` held. A record whose id is 32 or more is copied, and logged.
AFT_EXPORT void copyRawPointerData(const android::RawPointerData* src, android::RawPointerData* dst) noexcept;

/// Empties the count and both id sets; records and `idToIndex` stay as they are.
AFT_EXPORT void clearRawPointerData(android::RawPointerData* data) noexcept;

/// Takes every pointer whose id is in `filterIds` out of `data`, keeping the order of the rest.
/// @param data      frame, raw panel units; edited in place
/// @param idBits    the host's id set of that frame; loses the removed ids. May be the same object as `filterIds`
/// @param filterIds ids 0..31 to remove; ids without a record change nothing
/// @return          `data`
/// The set of hovering ids is never touched. Never allocates or fails.
AFT_EXPORT android::RawPointerData* filterAndCompactPointers(android::RawPointerData* data, android::BitSet32* idBits,
                                                             const android::BitSet32* filterIds) noexcept;

AFT_EXPORT bool touchOnSide(const android::RawPointerData::Pointer* p) noexcept;
AFT_EXPORT bool touchDataValid(const android::RawPointerData::Pointer* p) noexcept;
AFT_EXPORT bool touchIsFolded(const android::RawPointerData::Pointer* p) noexcept;

}  // extern "C"
