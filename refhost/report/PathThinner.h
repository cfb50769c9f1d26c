#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace refhost {

/// Where something was at a time: a finger on the panel (raw units), or a sensor's value as `x`.
struct PathPoint {
    int64_t time = 0;  ///< ns
    double x = 0;
    double y = 0;
};

/// Thins a path while it is told: what lies between two points that are kept differs from the straight line between
/// them, at every moment, by `tolerance` at most, along x and along y. It looks at each point once and holds two.
/// Times do not go back. One thread.
class PathThinner {
  public:
    /// @param tolerance in the unit of x and y, 0 and up; 0 leaves out only what the line has anyway
    explicit PathThinner(double tolerance) : mTolerance(tolerance) {}

    /// Takes the next point. The answer is a point to keep: the one before, once it is known that it cannot be left
    /// out.
    std::optional<PathPoint> add(const PathPoint& point);

    /// Ends the line here: the last point, where it has not been kept yet. The path may go on from it.
    std::optional<PathPoint> end();

  private:
    /// The slopes of lines from the last point kept that pass everything since close enough.
    struct Slopes {
        double least = -std::numeric_limits<double>::infinity();
        double most = std::numeric_limits<double>::infinity();

        bool allow(double slope) const { return least <= slope && slope <= most; }
        void narrow(double from, double to, double time, double tolerance);
    };

    void narrow(const PathPoint& point);

    double mTolerance;
    std::optional<PathPoint> mKept;
    std::optional<PathPoint> mLast;  ///< after mKept, and not kept yet
    Slopes mX;
    Slopes mY;
};

}  // namespace refhost
