#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "refhost/InputError.h"
#include "refhost/recording/Recording.h"

namespace refhost {

/// The touch device of a recording, as an index into `Recording::devices`.
/// @param wanted a device's name, its path or the last part of that ("event2"); without it, or where several devices go
/// by
///               it, the only one whose events hold multi-touch positions
/// Throws InputError, key "device", when there is no such device or more than one (it lists what there is), or when
/// the recording holds no multi-touch positions (it says what it holds instead, and LINE shows it).
uint32_t chooseTouchDevice(const Recording& recording, const std::optional<std::string>& wanted);

/// True if the device's events hold keys other than a touch panel's own, BTN_TOUCH and BTN_TOOL_*.
bool sendsKeys(const Recording& recording, uint32_t device);

/// A device in words, for messages: `/dev/input/event2 "synaptics"`.
std::string describeDevice(const RecordedDevice& device);

}  // namespace refhost
