#pragma once

#include "aftplatform/export.h"

namespace aftplatform {

/// Remembers an object that lives until the process ends, so that it is not taken for a leak once the library that made
/// it, and held the only pointer to it, has been unloaded. Any thread.
AFTPLATFORM_API void neverDestroyed(const void* object);

}  // namespace aftplatform
