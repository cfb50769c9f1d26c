#include "zqaft/Progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace zqaft {

using namespace std::chrono_literals;

namespace {

constexpr size_t kBarWidth = 30;  ///< columns

}  // namespace

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
    show(now, fmt::format("zqaft: {} lines{} in {:.1f} s", lines, share, seconds));
}

void Progress::at(size_t done, size_t all, std::string_view things) {
    const Clock::time_point now = Clock::now();
    if (now < mNext) return;
    const double seconds = std::chrono::duration<double>(now - mStart).count();
    const size_t filled = kBarWidth * done / all;
    const std::string bar = mTerminal ? fmt::format("[{:=<{}}{:{}}] ", "", filled, "", kBarWidth - filled) : "";
    show(now, fmt::format("{}{} of {} {} in {:.1f} s", mTerminal ? bar : "zqaft: ", done, all, things, seconds));
}

void Progress::show(Clock::time_point now, const std::string& text) {
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
