#pragma once

#include <span>

#include "refhost/Names.h"
#include "refhost/trace/Trace.h"

// The words of traces, profiles and results for what the sensor service does.

namespace refhost {

inline constexpr Named<SensorService::State> kServiceStates[] = {
    {"dies", SensorService::State::Dies},
    {"registers", SensorService::State::Registers},
    {"absent", SensorService::State::Absent},
    {"present", SensorService::State::Present},
};

inline constexpr Named<aftplatform::sensors::Call> kServiceCalls[] = {
    {"getService", aftplatform::sensors::Call::GetService},
    {"linkToDeath", aftplatform::sensors::Call::LinkToDeath},
    {"createEventQueue", aftplatform::sensors::Call::CreateEventQueue},
    {"getDefaultSensor", aftplatform::sensors::Call::GetDefaultSensor},
    {"enableSensor", aftplatform::sensors::Call::EnableSensor},
    {"disableSensor", aftplatform::sensors::Call::DisableSensor},
};

inline constexpr Named<aftplatform::sensors::Fault> kServiceFaults[] = {
    {"transport", aftplatform::sensors::Fault::Transport},
    {"result", aftplatform::sensors::Fault::Result},
    {"noQueue", aftplatform::sensors::Fault::NoQueue},
};

/// The ways in which a call can fail: one that delivers no queue cannot fail to.
constexpr std::span<const Named<aftplatform::sensors::Fault>> faultsOf(aftplatform::sensors::Call call) {
    constexpr size_t kOfEach = 2;
    const std::span<const Named<aftplatform::sensors::Fault>> all(kServiceFaults);
    return call == aftplatform::sensors::Call::CreateEventQueue ? all : all.first(kOfEach);
}

}  // namespace refhost
