#include "refhost/report/PathThinner.h"

#include <algorithm>

namespace refhost {

namespace {

/// ns, for `now` at or after `then`, however far apart: the difference may be more than an int64_t holds.
double since(int64_t then, int64_t now) {
    return static_cast<double>(static_cast<uint64_t>(now) - static_cast<uint64_t>(then));
}

}  // namespace

void PathThinner::Slopes::narrow(double from, double to, double time, double tolerance) {
    least = std::max(least, (to - tolerance - from) / time);
    most = std::min(most, (to + tolerance - from) / time);
}

std::optional<PathPoint> PathThinner::add(const PathPoint& point) {
    if (!mKept) {
        mKept = point;
        return point;
    }
    const double time = since(mKept->time, point.time);
    const bool onLine = time > 0 && mX.allow((point.x - mKept->x) / time) && mY.allow((point.y - mKept->y) / time);
    std::optional<PathPoint> corner;
    if (!onLine) corner = end();
    mLast = point;
    narrow(point);
    return corner;
}

std::optional<PathPoint> PathThinner::end() {
    if (!mLast) return std::nullopt;
    mKept = mLast;
    mLast.reset();
    mX = {};
    mY = {};
    return mKept;
}

void PathThinner::narrow(const PathPoint& point) {
    const double time = since(mKept->time, point.time);
    if (time <= 0) return;  // two at once: the next one decides anew
    mX.narrow(mKept->x, point.x, time, mTolerance);
    mY.narrow(mKept->y, point.y, time, mTolerance);
}

}  // namespace refhost
