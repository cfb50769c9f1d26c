#pragma once

#include <utils/Singleton.h>

#include <atomic>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "aft/host/InputMapper.h"
#include "aft/host/RawPointerData.h"

namespace android {

/// The filter of foldable devices: whoever folds one has fingers on the screen. It is fed raw frames, and looks at the
/// fold state with each.
///
/// A frame in which the device folds cancels the gesture, once; that frame and all that follow lose their pointers,
/// until all fingers are up, whatever the angle does meanwhile. While the sensor is not enabled, frames pass.
///
/// Whether a build has this filter is decided when it is configured (ZQAFT_FOLDABLE); without it, nothing of it runs.
///
/// Threads: frames come on one thread, start() and stop() on any.
class ZqFoldableDeviceAftProcessor : public Singleton<ZqFoldableDeviceAftProcessor> {
  public:
    ZqFoldableDeviceAftProcessor();

    /// Whether this build has the filter.
    static bool enabled();

    void start();
    /// Also forgets that the gesture has been cancelled; a cancel by a frame that runs at the same time may outlive
    /// that.
    void stop();
    /// Filters one frame in place. `when` in ns. `mapper` may be null: no gesture is cancelled then.
    void processRawTouches(InputMapper* mapper, long long when, RawPointerData& data, BitSet32& idBits);
    /// True where nobody touches, which ends the gesture. `when` is not used.
    bool touchingEnd(const RawPointerData& data, long long when);

  private:
    sp<ZqAftFoldableStateManager> mFoldableStateManager;
    bool mIdle = false;                    ///< the sensor was not enabled in the last frame, for records
    std::atomic<bool> mCancelled = false;  ///< the gesture in progress has been
};

}  // namespace android
