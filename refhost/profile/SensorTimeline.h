#pragma once

#include <vector>

#include "refhost/profile/Profile.h"
#include "refhost/profile/YamlFields.h"

// What a profile can say of sensors and of the service that offers them. Faults are InputErrors.

namespace refhost {

/// The list of the sensors that the phone has.
std::vector<aftplatform::sensors::Sensor> readSensors(const YAML::Node& list, const YamlPlace& place);

/// `sensor_service` of the profile or of a timeline's entry, or nothing.
std::optional<SensorService> readSensorService(YamlFields& fields);

/// The samples that `sensor`, `slide_cover` and `fold_angle` of a timeline's entry stand for, in the order of time; the
/// timestamps are still to come.
/// @param sensors of the profile: only these can send any
/// @param atNs    when the entry happens
std::vector<TimelineEntry> readSamples(YamlFields& fields, const std::vector<aftplatform::sensors::Sensor>& sensors,
                                       int64_t atNs);

}  // namespace refhost
