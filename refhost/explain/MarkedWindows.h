#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "aft/host/AftArea.h"
#include "aft/host/RawPointerData.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Where the windows lie in which fingers are wanted in the notch band too, as the phone is held. One thread.
class MarkedWindows {
  public:
    void hear(const TraceLine& line);

    /// Whether a finger, in raw panel units, is in one of them. Only in landscape is there a band to ask for.
    bool hold(const DeviceRef& device, const android::RawPointerData::Pointer& finger) const;

  private:
    std::map<int32_t, ConfigureSurface> mSurfaces;  ///< by device id
    std::vector<android::AftArea> mFrames;          ///< of the display
};

}  // namespace refhost
