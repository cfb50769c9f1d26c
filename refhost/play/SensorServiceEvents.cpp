#include "refhost/play/SensorServiceEvents.h"

#include <fmt/format.h>

#include "refhost/trace/SensorNames.h"

namespace refhost {

void SensorServiceEvents::add(int64_t when, const SensorService& event, Decisions& decisions) {
    if (event.fails) {
        std::string calls;
        for (const auto& [call, fault] : *event.fails) {
            calls += fmt::format("{}{}: {}", calls.empty() ? "(" : ", ", nameOf(kServiceCalls, call),
                                 nameOf(kServiceFaults, fault));
        }
        const bool fixed = calls.empty();
        decisions.push_back(
            {when, Outcome::Noted, fixed ? "sensor service fixed" : "sensor service fails", fixed ? "" : calls + ")"});
    }
    if (!event.state) return;
    decisions.push_back(
        {when, Outcome::Noted, fmt::format("sensor service {}", nameOf(kServiceStates, *event.state)), ""});
}

void SensorServiceEvents::add(int64_t when, const SensorEvent& event, bool arrived, Decisions& decisions) {
    if (arrived) {
        mUnheard.erase(event.handle);
    } else if (mUnheard.insert(event.handle).second) {
        decisions.push_back({when, Outcome::Noted, fmt::format("sensor {} unheard", event.type),
                             "(no filter takes its samples: it is off, or this build follows no such sensor)"});
    }
}

}  // namespace refhost
