#pragma once

#include <string>
#include <utility>
#include <vector>

#include "refhost/profile/Profile.h"
#include "refhost/profile/YamlFields.h"

// What a profile can say both of the start and of later: properties, what is shown; and the timeline that says when.
// Faults are InputErrors.

namespace refhost {

/// A map of properties with their values, in its order.
std::vector<std::pair<std::string, std::string>> readProperties(const YAML::Node& node, const YamlPlace& place);

/// `windows`, `focused` and `keyguard`, of which those that are absent stay as `shown` has them. False: none is there.
bool readShown(YamlFields& fields, ProcessInputWindow& shown);

/// The timeline of a profile of which all the rest has been read; each entry changes what the ones before it have left.
std::vector<TimelineEntry> readTimeline(const YAML::Node& list, const YamlPlace& place, const Profile& start);

}  // namespace refhost
