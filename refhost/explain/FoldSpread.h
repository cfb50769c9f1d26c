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
    void hear(const TraceLine& line, const CallResult& result);

    /// In the sensor's unit; nothing until the windows are full.
    std::optional<float> now() const;

  private:
    void take(float angle);

    bool mOn = false;
    std::vector<float> mAngles;
    std::vector<float> mAverages;
    float mSum = 0;
    size_t mPlace = 0;  ///< the ring's next; an emptying leaves it
};

}  // namespace refhost
