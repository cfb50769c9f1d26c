// A phone's life in minutes: millions of frames through the built plug-in with every filter acting all the time, and
// nothing that grows. Answers 1 where something did, or where a filter has stopped to act.
//
//     zqaft_soak [FRAMES]

#include <fmt/format.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

#include "bench/soak/Day.h"

namespace soak {
namespace {

constexpr uint64_t kDefaultFrames = 10'000'000;
constexpr uint64_t kLeastFrames = 100'000;  // with fewer, what comes up by chance may not come up

/// A sanitizer's heap is not the C library's, and keeps what was given back; its leak check judges at exit.
#ifdef ZQAFT_SANITIZED
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

/// What may come and go with the heap's own caches from one day to another. A day is some 220 frames long, so with the
/// fewest frames, too, a leak of one block a day is more than that.
constexpr int64_t kHeapSlack = 4096;
constexpr int64_t kResidentSlack = 262'144;

int64_t residentBytes() {
    int64_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

struct Memory {
    int64_t inUse = static_cast<int64_t>(mallinfo2().uordblks);
    int64_t resident = residentBytes();
};

/// Says how far it has come, on a terminal.
void progress(uint64_t frames, uint64_t of) {
    static const bool terminal = isatty(STDERR_FILENO) != 0;
    if (!terminal) return;
    if (frames < of) fmt::print(stderr, "\rzqaft_soak: {} % ", 100 * frames / of);
    if (frames >= of) fmt::print(stderr, "\r\x1b[K");
}

int run(uint64_t frames) {
    Phone phone(refhost::Plugin::defaultPath());
    Day day(phone);
    const auto until = [&](uint64_t end) {
        for (uint64_t shown = 0; phone.tally().frames < end; day.pass()) {
            if (phone.tally().frames < shown) continue;
            progress(phone.tally().frames, frames);
            shown = phone.tally().frames + frames / 100;
        }
    };
    until(frames / 20);
    Acts early = day.acts();  // here already: its storage counts, too
    const Memory before;
    until(frames - frames / 20);
    early = day.acts();
    until(frames);
    const Memory after;
    progress(frames, frames);

    const Tally& tally = phone.tally();
    fmt::print("{} frames, {} pointers removed, {} gestures cancelled\n", tally.frames, tally.removed, tally.cancelled);
    fmt::print("{} keys consumed, {} sent again, {} reports\n", tally.consumed, tally.sent / 2, tally.reports);
    bool well = true;
    for (const auto& [what, times] : day.acts()) {
        const bool acts = times > early.at(what);
        fmt::print("  {:<34}{:>10}{}\n", what, times, acts ? "" : "   STOPPED");
        well = well && acts;
    }
    const int64_t grown = after.inUse - before.inUse, spread = after.resident - before.resident;
    fmt::print("resident  {:>9} bytes after the first twentieth, {:>+8} since\n", before.resident, spread);
    if (kSanitized) return well ? EXIT_SUCCESS : EXIT_FAILURE;
    fmt::print("in use    {:>9} bytes after the first twentieth, {:>+8} since\n", before.inUse, grown);
    if (grown > kHeapSlack || spread > kResidentSlack) {
        fmt::print("GROWN\n");
        well = false;
    }
    return well ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace soak

int main(int argc, char** argv) {
    char* end = nullptr;
    const uint64_t frames = argc > 1 ? std::strtoull(argv[1], &end, 10) : soak::kDefaultFrames;
    if (argc > 2 || (end != nullptr && *end != '\0') || frames < soak::kLeastFrames) {
        fmt::print(stderr, "Usage: zqaft_soak [FRAMES]    {} at least\n", soak::kLeastFrames);
        return 64;
    }
    return soak::run(frames);
}
