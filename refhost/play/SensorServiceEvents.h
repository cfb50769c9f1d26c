#pragma once

#include <cstdint>
#include <set>

#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What a trace makes of the sensor service, as context for the decisions: the library cannot record it. One thread.
class SensorServiceEvents {
  public:
    /// @param when ns, the trace's clock
    void add(int64_t when, const SensorService& event, Decisions& decisions);

    /// A sample that reaches no filter explains why nothing happens. Shown once for each sensor, until one arrives.
    /// @param arrived whether the library recorded anything of it
    void add(int64_t when, const SensorEvent& event, bool arrived, Decisions& decisions);

  private:
    std::set<int32_t> mUnheard;  ///< handles of the sensors whose samples reach no filter
};

}  // namespace refhost
