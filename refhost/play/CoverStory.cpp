#include "refhost/play/CoverStory.h"

#include <fmt/format.h>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

constexpr int32_t kCoverSensor = 65557;  ///< type
constexpr int32_t kTellsState = 1;       ///< what a sample's first value says when the second is a state
constexpr int32_t kStates = 3;           ///< 0, 1, 2

/// The state in which touches pass again, those of a cancelled gesture too, once it has lasted for longer than this.
constexpr int32_t kSettlingState = 1;
constexpr int64_t kSettlingNs = 2'999'999'999;

/// A value of a sample, cut to an integer; nothing where that is no state.
std::optional<int32_t> valueOf(const SensorEvent& event, size_t index) {
    const float value = index < event.values.size() ? event.values[index] : 0;
    return value > -1 && value < kStates ? std::optional(static_cast<int32_t>(value)) : std::nullopt;
}

/// Why a gesture that was worth a report got none.
const LogEntry* noReport(const CallResult& result) {
    for (const char* said : {"device is NULL", "device->getPolicy() is NULL", "sprintf_s error"}) {
        if (const LogEntry* line = lineOf(result, kCoverTag, said)) return line;
    }
    return nullptr;
}

}  // namespace

void CoverStory::hear(int64_t when, const TraceLine& line, const CallResult& result, Decisions& decisions) {
    if (const auto* event = std::get_if<SensorEvent>(&line.event)) hear(when, *event, result, decisions);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) hear(when, *frame, result, decisions);
}

/// The filter logs what is news to it. A state of which it does not hear is told as well: it is why nothing happens.
void CoverStory::hear(int64_t when, const SensorEvent& event, const CallResult& result, Decisions& decisions) {
    const LogEntry* heard = lineOf(result, kCoverSensorTag, "handleSensorEvent ");
    const std::optional<int32_t> state = valueOf(event, 1);
    if (heard != nullptr) {
        mState = state;
        mSince = when;
    } else if (event.type != kCoverSensor || valueOf(event, 0) != kTellsState || !state || state == mTold) {
        return;
    }
    mTold = state;
    const char* silent = state == mState ? "(the filter has it so already)" : "(the filter does not hear of it)";
    decisions.push_back({when, Fate::Noted, fmt::format("slide cover in state {}", state.value_or(0)),
                         heard != nullptr ? heard->text : silent});
}

/// A gesture ends for the filter with its report, too: that may come while a finger is down which another filter hides;
/// so may its end without one, which is known by the first finger that passes.
void CoverStory::hear(int64_t when, const ProcessRawTouches& call, const CallResult& result, Decisions& decisions) {
    const LogEntry* unsent = noReport(result);
    if (unsent != nullptr) decisions.push_back({when, Fate::Noted, "no report", unsent->text});
    if (call.frame.touchingIdBits.isEmpty() || unsent != nullptr || lineOf(result, kCoverTag, "reportFirstPointData")) {
        mCancelled = false;
    }
    mBlind = lineOf(result, kCoverTag, "getSCFilterState false.") || lineOf(result, kCoverTag, "Invalid state=");
    if (!result.frame.ids.isEmpty() && !mBlind && !settled(when)) mCancelled = false;
    if (!wordsOnCancel(result, kCoverTag).empty()) mCancelled = true;
}

bool CoverStory::settled(int64_t when) const { return mState == kSettlingState && when - mSince > kSettlingNs; }

std::string CoverStory::wordsOnTaking(int64_t when) const {
    if (!mCancelled || mBlind || settled(when)) return "";
    return "(the slide cover's filter has cancelled its gesture)";
}

std::string CoverStory::wordsOnPassing(int64_t when) const {
    if (!mCancelled) return "";
    if (mBlind) return "(the slide cover's filter is idle)";
    return settled(when) ? "(the slide cover has been in state 1 for 3 s: touches pass again)" : "";
}

}  // namespace refhost
