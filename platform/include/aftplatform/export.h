#pragma once

/// Marks what libaftplatform.so gives away. Needed in the headers too: a user that is compiled with
/// -fvisibility=hidden would otherwise make private copies of vtables and type information of its own, and a cast or a
/// catch across the library boundary would miss.
#define AFTPLATFORM_API __attribute__((visibility("default")))
