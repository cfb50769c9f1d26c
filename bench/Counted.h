#pragma once

#include <cstdint>
#include <functional>

namespace bench {

/// How often this program, and what it has loaded, has asked the C heap for memory, on this thread.
uint64_t allocations();

/// How many system calls `work` makes. It runs in a child process that is stopped at each of them. Negative where this
/// machine does not let a process trace its child.
int64_t systemCallsOf(const std::function<void()>& work);

}  // namespace bench
