#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "refhost/explain/Explainer.h"
#include "refhost/report/JsonList.h"
#include "refhost/report/PathThinner.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The fingers from landing to lift, with their paths, thinned, and what was their state along it. One thread.
class Strokes {
  public:
    /// @param decisions of this frame
    void hear(const ProcessRawTouches& call, const std::vector<Explained>& decisions);

    /// The panel's size decides how closely a path is followed. Raw units.
    void hear(const ConfigureSurface& call);

    /// Appends `"strokes":[[device,id,lift,[time,x,y,...],[time,verdict,...]],...]`, times in us, places in raw units;
    /// after the first, points are differences to the one before. `lift` is the time of the frame without the finger:
    /// null where there is none.
    void write(TextBuffer& out) const;

  private:
    struct Stroke {
        explicit Stroke(double tolerance) : thinner(tolerance) {}

        PathThinner thinner;
        std::vector<PathPoint> points;
        std::vector<std::pair<int64_t, Outcome>> states;  ///< since when
        PathPoint last;

        void keep(const std::optional<PathPoint>& point) {
            if (point) points.push_back(*point);
        }
        void follow(const PathPoint& point);
        void turn(const Decision& decision);
    };
    using Whose = std::pair<DeviceRef, uint32_t>;

    static void write(TextBuffer& out, const Whose& whose, const Stroke& stroke, std::optional<int64_t> lift);
    void endLifted(const ProcessRawTouches& call);

    std::map<DeviceRef, double> mTolerances;
    std::map<Whose, Stroke> mDown;
    JsonList mEnded;
};

}  // namespace refhost
