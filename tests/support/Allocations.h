#pragma once

#include <cstddef>

namespace test {

/// The ways in which memory is asked for here.
enum class Heap {
    None,
    New,         ///< operator new, which throws
    NothrowNew,  ///< operator new that answers null
    Malloc,
};

/// How often this thread has asked for memory in these ways, in this program or in a library that it has loaded.
size_t allocations();

/// Lets one of this thread's allocations fail: the `nth` from here on, 1 being the next. Heap::None counts them all,
/// any other those of that heap alone. 0: none fails from now on.
void failAllocation(size_t nth, Heap of = Heap::None);

/// Which one has failed since that was asked for; Heap::None as long as none has.
Heap failedAllocation();

}  // namespace test
