#include "refhost/explain/FoldSpread.h"

#include <algorithm>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

constexpr int32_t kFoldAngle = 3;  ///< type
constexpr size_t kAngle = 2;       ///< which of a sample's values
constexpr size_t kWindow = 30;     ///< samples, and averages
constexpr float kAboveAll = 1000;  ///< averages beyond this, either way, are measured against it

}  // namespace

FoldSpread::FoldSpread(const TraceHeader& header) {
    if (!header.sensors) return;
    for (const auto& sensor : *header.sensors) {
        if (sensor.type == kFoldAngle && !mHandle) mHandle = sensor.handle;
    }
}

void FoldSpread::hear(const TraceLine& line, const CallResult& result) {
    for (const LogEntry& entry : result.log) {
        if (entry.tag != kFoldTag || !entry.text.ends_with("Sensor success")) continue;
        mOn = entry.text.starts_with("enable");
        if (mOn) continue;
        mAngles.clear();
        mAverages.clear();
        mSum = 0;
    }
    const auto* service = std::get_if<SensorService>(&line.event);
    if (service != nullptr && service->state == SensorService::State::Dies) mDeaf = mOn;
    const auto* event = std::get_if<SensorEvent>(&line.event);
    if (!mOn || mDeaf || event == nullptr || event->handle != mHandle) return;
    take(kAngle < event->values.size() ? event->values[kAngle] : 0);
}

/// As long as the window fills, a sample stands for its average.
void FoldSpread::take(float angle) {
    const size_t place = mPlace;
    mPlace = (place + 1) % kWindow;
    if (mAngles.size() < kWindow) {
        mAngles.push_back(angle);
        mAverages.push_back(angle);
        mSum += angle;
        return;
    }
    mSum -= mAngles[place];
    mAngles[place] = angle;
    mSum += angle;
    mAverages[place] = mSum / static_cast<float>(kWindow);
}

std::optional<float> FoldSpread::now() const {
    if (mAngles.size() < kWindow) return std::nullopt;
    float lowest = kAboveAll;
    float highest = -kAboveAll;
    for (const float average : mAverages) {
        lowest = std::min(lowest, average);
        highest = std::max(highest, average);
    }
    return highest - lowest;
}

}  // namespace refhost
