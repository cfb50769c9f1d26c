#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>
#include <utils/StrongPointer.h>
#include <utils/Vector.h>

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "aft/host/AftArea.h"
#include "aft/host/Decision.h"
#include "aft/host/InputMapper.h"
#include "aft/host/InputWindowHandle.h"
#include "aft/host/RawPointerData.h"
#include "aft/host/SurfaceGeometry.h"

namespace android {

/// The filter of phones with a notch: held in landscape, the hand covers it. It is fed raw frames, window lists and the
/// surfaces' geometry.
///
/// In landscape, a finger that comes down in the notch band (raw y from 0 to the notch's height, both inside) is taken
/// out of the frame, unless it is inside a visible window that the host marks as using that place. Once it has been
/// seen outside the band, or in such a window, it is left alone until all fingers are up. In portrait nothing happens,
/// and a sequence neither begins nor ends.
///
/// It has no switch: without a valid notch property it leaves every frame alone. It never cancels, and logs nothing
/// after it has been made.
///
/// Threads: frames come on one thread; window lists and surfaces may come on others at any time. A frame goes by one
/// copy of its surface, and each finger in the band by one state of the window list.
class ZqNotchAftProcessor : public Singleton<ZqNotchAftProcessor> {
  public:
    /// What is known of one touch device's surface.
    struct SurfaceConfig {
        bool landscape;       ///< orientation 1 or 3
        int32_t orientation;  ///< quarter turns
        TouchAffineTransformation calibration;
        int32_t rawXMin;
        int32_t rawXMax;
        int32_t rawYMin;
        int32_t rawYMax;
        float xScale;  ///< raw units to display units, as the other three
        float yScale;
        float xTranslate;
        float yTranslate;
    };

    /// Reads the system properties.
    ZqNotchAftProcessor();
    virtual ~ZqNotchAftProcessor() = default;

    /// Whether the filter applies to this mapper's touch device. False for a null mapper.
    bool isInputDeviceHasNotch(InputMapper* mapper) const;
    /// Writes down the surface of a mapper's device, over what was known of it. Those of external devices, of negative
    /// ids and of devices without the notch are not wanted.
    void configureSurface(InputMapper* mapper, int orientation, TouchAffineTransformation& calibration,
                          RawPointerAxes& axes, float xScale, float yScale, float xTranslate, float yTranslate);
    /// Whether the device is held in landscape; false where its surface is not known.
    bool isLandscape(int deviceId);

    /// Filters one frame in place. `mapper` may be null: the frame is left alone then. `when` in ns, for records.
    void processRawTouches(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits);
    /// Takes the marked windows of the list in place of those of the last.
    void processInputWindow(const std::vector<sp<InputWindowHandle>>& windows);

    /// Whether the pointer is in a marked window, or nothing is known against it.
    bool pointInNoFilterAreas(int deviceId, const RawPointerData::Pointer& pointer);
    /// Follows the touch sequence. True where nobody touches, which ends it.
    bool touchingEndAndUpdate(const RawPointerData& data);

    /// Calibrates a point in place.
    void applyTo(float& x, float& y, const SurfaceConfig& config) const;

  private:
    struct DisplayPoint {
        int32_t x;
        int32_t y;
    };

    std::optional<SurfaceConfig> surfaceOf(int deviceId);
    std::optional<DisplayPoint> toDisplay(const RawPointerData::Pointer& pointer, const SurfaceConfig& config) const;
    bool inMarkedWindow(const RawPointerData::Pointer& pointer, const SurfaceConfig& surface);
    // The decision is a Decision, or an UnrecordedDecision where nobody listens.
    template <typename PointerDecision>
    BitSet32 judgeAll(const RawPointerData& data, BitSet32 idBits, const SurfaceConfig& surface,
                      const DecisionRecorder& recorder);
    bool judge(uint32_t id, const RawPointerData::Pointer& pointer, const SurfaceConfig& surface, auto& decision);
    bool inBand(const RawPointerData::Pointer& pointer, auto& decision) const;
    static void recordPortrait(InputMapper* mapper, int64_t when, const RawPointerData& data, BitSet32 idBits);

    Mutex mLock;                     ///< guards mNoFilterAreas and mSurfaceConfigs
    int32_t mNotchHeight = 0;        ///< raw panel units; set once, as are the next two
    bool mHasNotch = false;          ///< the notch property is valid
    bool mCheckPanelName = false;    ///< only devices of the folding panel's name have the notch
    bool mTouching = false;          ///< a touch sequence is in progress
    BitSet32 mUnfilteredIds{};       ///< let through in this sequence
    Vector<AftArea> mNoFilterAreas;  ///< frames of the marked windows, display units, in the list's order
    std::unordered_map<int32_t, SurfaceConfig> mSurfaceConfigs;  ///< by device id; never loses one
};

}  // namespace android
