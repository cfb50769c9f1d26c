#pragma once

#include "aftplatform/export.h"

/// Sizes in bytes, the closing NUL counted.
#define PROPERTY_KEY_MAX 32
#define PROPERTY_VALUE_MAX 92

extern "C" {

/// Reads a system property.
/// @param key           name of the property
/// @param value         receives the value and a NUL; room for PROPERTY_VALUE_MAX bytes
/// @param default_value what an unset or empty property reads as, cut to PROPERTY_VALUE_MAX - 1 bytes; null is ""
/// @return              length of `value` without the NUL, 0..PROPERTY_VALUE_MAX - 1
/// Never fails, never allocates. Any thread.
AFTPLATFORM_API int property_get(const char* key, char* value, const char* default_value);

}  // extern "C"
