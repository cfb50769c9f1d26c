#include "zqaft/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace zqaft {

namespace {

constexpr size_t kWorthWriting = size_t{64} * 1024;

}  // namespace

Output::Output() : mTerminal(isatty(STDOUT_FILENO) != 0) {}

Output::~Output() {
    // What went before is worth showing; that it cannot be shown has no one left to hear it.
    static_cast<void>(std::fwrite(mText.data(), 1, mText.size(), stdout));
    static_cast<void>(std::fflush(stdout));
}

void Output::offer() {
    if (mTerminal || mText.size() >= kWorthWriting) flush();
}

void Output::flush() {
    const bool written = std::fwrite(mText.data(), 1, mText.size(), stdout) == mText.size() && std::fflush(stdout) == 0;
    mText.clear();
    if (!written) throw OutputError(fmt::format("cannot write the output: {}", std::strerror(errno)));
}

}  // namespace zqaft
