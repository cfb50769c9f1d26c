#pragma once

#include <cstddef>

#include "aftplatform/export.h"

/// The platform's bounded C library: each call knows how much room its destination has. Sizes are in bytes; a size
/// above 2 GiB - 1 is taken for a negative number gone astray and refused. Any thread; nothing allocates.

extern "C" {

/// Copies `count` bytes. The areas must not overlap.
/// @return 0. EINVAL: a null pointer or an overlap; ERANGE: `destMax` is 0 or above 2 GiB - 1, or `count` is above
///         `destMax`. Nothing is copied then, and a destination of valid size is zeroed whole, so that a caller who
///         looks away never works on old data
AFTPLATFORM_API int memcpy_s(void* dest, size_t destMax, const void* src, size_t count);

/// Sets `count` bytes to `c`.
/// @return as memcpy_s, and a destination of valid size is zeroed whole when `count` does not fit
AFTPLATFORM_API int memset_s(void* dest, size_t destMax, int c, size_t count);

/// Formats as printf does into `dest`, with a NUL at the end.
/// @return bytes written without the NUL; -1, with an empty `dest`, when text and NUL do not both fit or an argument is
///         invalid
AFTPLATFORM_API int sprintf_s(char* dest, size_t destMax, const char* fmt, ...) __attribute__((format(printf, 3, 4)));

/// Scans numbers as sscanf does. The conversions of text (%s, %c, %[) take a size behind their pointer on the phone and
/// are not offered here.
/// @return numbers stored; -1 when the text ends before the first, or an argument is null
AFTPLATFORM_API int sscanf_s(const char* buffer, const char* fmt, ...) __attribute__((format(scanf, 2, 3)));

}  // extern "C"
