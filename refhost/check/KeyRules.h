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

/// The rules on what becomes of a key; CheckRules.h says what each demands.
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
