#pragma once

#include <string_view>

namespace refhost {

// The parts of a report's page that are the same for every trace: what stands in page/, built into the program.

extern const std::string_view kPageStyle;
extern const std::string_view kPageBody;
extern const std::string_view kPageScript;  ///< the files of page/ in the order of refhost/CMakeLists.txt, one module

}  // namespace refhost
