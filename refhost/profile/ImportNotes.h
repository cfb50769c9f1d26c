#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/profile/Profile.h"
#include "refhost/recording/Recording.h"

namespace refhost {

/// "1 line", "3 lines".
std::string counted(uint64_t count, std::string_view one, std::string_view many);

/// How the recording was understood: what of it was skipped or has to be assumed. A sentence each.
std::vector<std::string> notesOnReading(const Recording& recording);

/// Where the recorded panel (a device of the recording) is another than the profile's, by its axes or, where the
/// recording does not describe them, by a position beyond the surface. Empty where they agree.
std::vector<std::string> notesOnPanel(const Recording& recording, uint32_t panel, const Profile& profile);

}  // namespace refhost
