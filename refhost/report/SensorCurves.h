#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "refhost/report/JsonList.h"
#include "refhost/report/PathThinner.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What the sensors measured, as curves: of the slide cover its state, where that changes, of the fold angle the angle,
/// of any other the first value. One thread.
class SensorCurves {
  public:
    /// @param now ns, the trace's clock
    void hear(int64_t now, const SensorEvent& event);

    /// Appends `"sensors":[[type,handle,[time,value,...]],...]`, times in us.
    void write(TextBuffer& out) const;

  private:
    struct Curve {
        explicit Curve(double tolerance) : thinner(tolerance) {}
        PathThinner thinner;
        std::vector<PathPoint> points;
    };

    std::map<std::pair<int32_t, int32_t>, Curve> mCurves;  ///< by type and handle
};

}  // namespace refhost
