#pragma once

#include <cstddef>  // says which standard library this is

/// Marks what the host may call. Everything else in the plug-in stays hidden.
#define AFT_EXPORT __attribute__((visibility("default")))

/// True on the build whose host objects must stand where the phone has them: 32-bit pointers and the phone's standard
/// library. Elsewhere they hold the same members in the same order, at offsets of their own.
#if defined(_LIBCPP_VERSION) && __SIZEOF_POINTER__ == 4
#define AFT_PHONE_LAYOUT 1
#else
#define AFT_PHONE_LAYOUT 0
#endif
