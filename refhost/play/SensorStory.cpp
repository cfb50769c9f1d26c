#include "refhost/play/SensorStory.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "refhost/play/StoryWords.h"
#include "refhost/trace/SensorNames.h"

namespace refhost {

namespace {

constexpr int32_t kFoldAngle = 3;  ///< type

/// Of every frame while the sensor is off: no failure of an enabling.
constexpr std::string_view kCoverOff = "mSCSensorEnabled is false";

/// Parts of the lines on a sensor that is not to be had.
constexpr std::string_view kFailing[] = {"fail", "error", "is false", "is NULL", "is nullptr", "not ok"};

bool saysFailure(std::string_view text) {
    const auto said = [text](std::string_view part) { return says(text, part); };
    return text != kCoverOff && std::any_of(std::begin(kFailing), std::end(kFailing), said);
}

/// With which line a filter lets a frame pass because it does not know its sensor's state.
const LogEntry* idleLine(const CallResult& result, std::string_view sensorTag) {
    if (sensorTag == kFoldTag) return lineOf(result, kFoldTag, "not enabled.");
    const LogEntry* off = lineOf(result, kCoverSensorTag, kCoverOff);
    return off != nullptr ? off : lineOf(result, kCoverTag, "Invalid state=");
}

Decision noted(int64_t when, std::string subject, std::string words) {
    return {when, Fate::Noted, std::move(subject), std::move(words)};
}

}  // namespace

SensorStory::SensorStory()
    : mCover{kCoverSensorTag, "slide-cover sensor", "slide-cover filter", {}, {}, {}},
      mFold{kFoldTag, "fold-angle sensor", "fold-angle filter", {}, {}, {}} {}

void SensorStory::hear(int64_t when, const TraceLine& line, const CallResult& result, Decisions& decisions) {
    if (const auto* service = std::get_if<SensorService>(&line.event)) hear(when, *service, decisions);
    if (const auto* event = std::get_if<SensorEvent>(&line.event)) hearOfFoldAngle(when, *event, decisions);
    if (std::holds_alternative<NotifyInputStart>(line.event)) mNoFoldFilter = lineOf(result, kFoldTag) == nullptr;
    if (result.log.empty()) return;
    for (Sensor* sensor : {&mCover, &mFold}) {
        hear(when, *sensor, result, decisions);
        hearOfIdling(when, *sensor, result, decisions);
    }
}

/// The first line on a failure is the cause; the others are its consequences.
void SensorStory::hear(int64_t when, Sensor& sensor, const CallResult& result, Decisions& decisions) {
    std::string_view state;
    std::string_view words;
    bool failed = false;
    for (const LogEntry& entry : result.log) {
        if (entry.tag != sensor.tag) continue;
        const bool fails = saysFailure(entry.text);
        if (!fails && !entry.text.ends_with("Sensor success")) continue;
        state = fails ? "fails" : entry.text.starts_with("disable") ? "off" : "on";
        if (!failed) words = entry.text;
        failed = failed || fails;
    }
    if (state.empty() || (state == sensor.state && words == sensor.words)) return;
    sensor.state = state;
    sensor.words = words;
    sensor.idle.clear();
    decisions.push_back(noted(when, fmt::format("{} {}", sensor.name, state), sensor.words));
}

void SensorStory::hearOfIdling(int64_t when, Sensor& sensor, const CallResult& result, Decisions& decisions) {
    const LogEntry* idle = idleLine(result, sensor.tag);
    if (idle == nullptr || idle->text == sensor.idle) return;
    sensor.idle = idle->text;
    decisions.push_back(noted(when, fmt::format("{} idle", sensor.filter), idle->text));
}

void SensorStory::hear(int64_t when, const SensorService& happening, Decisions& decisions) {
    if (happening.fails) {
        std::string calls;
        for (const auto& [call, fault] : *happening.fails) {
            calls += fmt::format("{}{}: {}", calls.empty() ? "(" : ", ", nameOf(kServiceCalls, call),
                                 nameOf(kServiceFaults, fault));
        }
        decisions.push_back(calls.empty() ? noted(when, "sensor service mended", "")
                                          : noted(when, "sensor service fails", calls + ")"));
    }
    if (!happening.state) return;
    decisions.push_back(noted(when, fmt::format("sensor service {}", nameOf(kServiceStates, *happening.state)), ""));
    for (Sensor* sensor : {&mCover, &mFold}) sensor->state = {};  // what comes of it is news, even in the same words
}

/// The fold angle's filter logs nothing of its samples; a plug-in without that filter has logged nothing at all.
void SensorStory::hearOfFoldAngle(int64_t when, const SensorEvent& event, Decisions& decisions) {
    if (event.type != kFoldAngle || !mNoFoldFilter || mToldOfFoldAngle) return;
    mToldOfFoldAngle = true;
    decisions.push_back(noted(when, "fold angle not heard", "(this plug-in is built without the fold angle's filter)"));
}

}  // namespace refhost
