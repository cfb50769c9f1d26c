#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include "refhost/trace/Trace.h"

namespace refhost {

/// The exact times of the latest frames and keys that the host handed in. The library keeps times to the millisecond:
/// with this, a record's cause has the time of its event to the nanosecond. Holds a fixed amount. One thread.
class HandedIn {
  public:
    void add(const TraceEvent& event) {
        if (const auto* key = std::get_if<ProcessKey>(&event)) add(key->keyCode, key->when);
        if (const auto* frame = std::get_if<ProcessRawTouches>(&event)) add(kFrame, frame->when);
    }

    /// The time of the frame or key of that millisecond, ns; `when` itself where none is known.
    int64_t exactly(int32_t keyCode, int64_t when) const {
        const auto known = mTimes.find({when / kMs, keyCode});
        const bool fits = known != mTimes.end() && when >= 0 && known->second >= 0;  // one ms lies on both sides of 0
        return fits ? known->second : when;
    }
    static constexpr int32_t kFrame = 0;  ///< in place of a key code

  private:
    static constexpr int64_t kMs = 1'000'000;
    static constexpr size_t kMost = 65536;

    /// Of several in one millisecond, the first.
    void add(int32_t keyCode, int64_t when) {
        mTimes.try_emplace({when / kMs, keyCode}, when);
        if (mTimes.size() > kMost) mTimes.erase(mTimes.begin());
    }

    std::map<std::pair<int64_t, int32_t>, int64_t> mTimes;  ///< by ms and key code
};

}  // namespace refhost
