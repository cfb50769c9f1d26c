#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "refhost/play/CallResult.h"

// Which of the lines that the plug-in logged in a call speaks of what. All are empty where no line does.

namespace refhost {

/// Who logs.
inline constexpr std::string_view kFrontFpTag = "ZqFrontFPAftProcessor";
inline constexpr std::string_view kCoverTag = "ZqSCAftProcessor";
inline constexpr std::string_view kCoverSensorTag = "ZqAftSCStateManager";
inline constexpr std::string_view kNotchTag = "ZqNotchAftProcessor";
inline constexpr std::string_view kFoldTag = "ZqFoldableDeviceAftProcessor";  ///< the filter, and its sensor too

/// Those who cancel gestures, in the order in which they see a frame.
inline constexpr std::string_view kCancellers[] = {kFrontFpTag, kCoverTag, kFoldTag};

inline bool says(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

/// The first line under this tag that holds `part`, or null.
const LogEntry* lineOf(const CallResult& result, std::string_view tag, std::string_view part = "");

/// The number that follows `name` in a text.
std::optional<int32_t> numberAfter(std::string_view text, std::string_view name);

/// On a finger: the front fingerprint filter's decision.
std::string wordsOnFinger(const CallResult& result, uint32_t id);
/// On a finger that this filter begins to hold back.
std::string wordsOnRestraining(const CallResult& result, uint32_t id);
/// On a finger that this filter puts back where it landed, whichever it is.
std::string wordsOnRestoring(const CallResult& result);
bool isRestoring(std::string_view words);

/// On the cancel that this one of kCancellers asks for.
std::string wordsOnCancel(const CallResult& result, std::string_view canceller);
/// On all fingers of a gesture that the fold cancels in this frame, or has cancelled before.
std::string wordsOnFolding(const CallResult& result);

std::string wordsOnKey(const CallResult& result);
std::string wordsOnHoldingKey(const CallResult& result);
std::string wordsOnSendingKey(const CallResult& result);

/// Why the front fingerprint filter has no area to act in.
std::string wordsOnNoArea(const CallResult& result);

}  // namespace refhost
