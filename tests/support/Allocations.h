#pragma once

#include <cstddef>

namespace test {

/// How often this thread has called operator new, in this program or in a library that it has loaded.
size_t allocations();

}  // namespace test
