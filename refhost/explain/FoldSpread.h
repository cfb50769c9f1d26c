#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// How far apart the averages of the fold angle's last samples lie: the filter takes a wide spread for folding, and
/// logs nothing of a sample. One thread.
class FoldSpread {
  public:
    explicit FoldSpread(const TraceHeader& header);

    void hear(const TraceLine& line, const CallResult& result);

    /// In the sensor's unit; nothing until the windows are full.
    std::optional<float> now() const;

  private:
    void take(float angle);

    std::optional<int32_t> mHandle;  ///< of the sensor
    bool mOn = false;
    bool mDeaf = false;  ///< what the filter listens to has died, and nothing ever comes from it
    std::vector<float> mAngles;
    std::vector<float> mAverages;
    float mSum = 0;
    size_t mPlace = 0;  ///< the ring's next; an emptying leaves it
};

}  // namespace refhost
