#pragma once

#include <cstdint>

#include "aftplatform/export.h"

/// The clock that systemTime() reads in this process. Any thread; a change is seen by the next reading.
namespace aftplatform {

/// Makes every clock stand at `ns`, above INT64_MIN, until the next call.
AFTPLATFORM_API void setVirtualTime(int64_t ns);

/// Goes back to the machine's clocks, as at the start.
AFTPLATFORM_API void useRealClock();

}  // namespace aftplatform
