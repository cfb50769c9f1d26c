#include "zqaft/Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace zqaft {

using namespace std::chrono_literals;

Progress::Progress() : mStart(Clock::now()), mNext(mStart + 1s), mTerminal(isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() { clear(); }

void Progress::clear() {
    if (mShown && mTerminal) fmt::print(stderr, "\r\x1b[K");
    mShown = false;
}

void Progress::at(uint64_t lines, std::optional<double> fraction) {
    const Clock::time_point now = Clock::now();
    if (now < mNext) return;
    const double seconds = std::chrono::duration<double>(now - mStart).count();
    const std::string share = fraction ? fmt::format(" ({:.0f} %)", *fraction * 100) : "";
    const std::string text = fmt::format("zqaft: {} lines{} in {:.1f} s", lines, share, seconds);
    if (mTerminal) {
        fmt::print(stderr, "\r{}\x1b[K", text);
        mNext = now + 100ms;
    } else {
        fmt::print(stderr, "{}\n", text);
        mNext = mStart + 2 * (now - mStart);
    }
    mShown = true;
}

}  // namespace zqaft
