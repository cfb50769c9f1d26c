#include "refhost/report/SensorCurves.h"

namespace refhost {

namespace {

constexpr int32_t kCoverSensor = 65557;
constexpr int32_t kFoldAngle = 3;
constexpr double kUnseenAngle = 0.5;

/// Which of a sample's values is the curve's.
size_t valueOf(int32_t type) { return type == kFoldAngle ? 2 : type == kCoverSensor ? 1 : 0; }

}  // namespace

void SensorCurves::hear(int64_t now, const SensorEvent& event) {
    const size_t index = valueOf(event.type);
    const double value = index < event.values.size() ? double{event.values[index]} : 0;
    Curve& curve =
        mCurves.try_emplace({event.type, event.handle}, event.type == kFoldAngle ? kUnseenAngle : 0).first->second;
    if (event.type == kCoverSensor) {  // a state holds until the next: nothing lies on a line between them
        if (curve.points.empty() || curve.points.back().x != value) curve.points.push_back({now, value, 0});
        return;
    }
    if (const auto corner = curve.thinner.add({now, value, 0})) curve.points.push_back(*corner);
}

void SensorCurves::write(TextBuffer& out) const {
    JsonList all;
    for (const auto& [sensor, curve] : mCurves) {
        TextBuffer& text = all.next();
        append(text, FMT_COMPILE("[{},{},["), sensor.first, sensor.second);
        std::vector<PathPoint> points = curve.points;
        if (const auto last = PathThinner(curve.thinner).end()) points.push_back(*last);
        for (const PathPoint& point : points) {
            append(text, FMT_COMPILE("{}{},{}"), &point == points.data() ? "" : ",", toUs(point.time), point.x);
        }
        append(text, "]]");
    }
    all.write(out, "sensors");
}

}  // namespace refhost
