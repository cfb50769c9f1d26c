#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "refhost/check/Breach.h"
#include "refhost/check/Switches.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What becomes of a key:
/// - "key-answer"  keys of other devices are dispatched, the sensor's notifications consumed, and a key-up shares the
///                 fate of its key-down; with the filter off, notifications of any device are consumed, and no others
/// - "key-held"    one key is held back at a time, and it is consumed
/// - "key-sent"    a key that is held back is sent once, as a down and up pair of its own codes: with the frame in
///                 which the gesture ends or has a second finger, from 1 ms after the key on. Only a finger that is
///                 restored drops it, and the next gesture.
class KeyRules {
  public:
    explicit KeyRules(const TraceHeader& header) : mDevices(header.devices) {}

    void check(const Switches& on, const ProcessKey& call, const CallResult& result, Breaches& breaches);
    void check(const Switches& on, const ProcessRawTouches& call, const CallResult& result, Breaches& breaches);

  private:
    const DeviceDescription* find(const DeviceRef& device) const;
    std::optional<bool> consumedForSure(const Switches& on, const ProcessKey& call) const;
    bool isPairOfHeld(const std::vector<android::NotifyKeyArgs>& keys, int64_t when) const;

    std::vector<DeviceDescription> mDevices;
    std::map<int32_t, uint32_t> mConsumedDowns;  ///< per key code, whose key-up is still to come
    std::optional<ProcessKey> mHeld;
    bool mTouching = false;
};

}  // namespace refhost
