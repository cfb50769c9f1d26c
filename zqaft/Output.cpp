#include "zqaft/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

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

void replaceFile(const std::string& path, std::string_view text) {
    std::error_code unknown;
    const auto there = std::filesystem::status(path, unknown);
    const bool inPlace = std::filesystem::exists(there) && !std::filesystem::is_regular_file(there);
    const std::string written = inPlace ? path : fmt::format("{}.{}.tmp", path, getpid());
    std::ofstream file(written, std::ios::binary);
    file << text;
    file.close();
    if (file.good() && (inPlace || std::rename(written.c_str(), path.c_str()) == 0)) return;
    const std::string reason = std::strerror(errno);
    if (!inPlace) static_cast<void>(std::remove(written.c_str()));
    throw OutputError(fmt::format("cannot write {}: {}", path, reason));
}

void writeResult(const std::string& path, std::string_view text) {
    if (path != "-") return replaceFile(path, text);
    Output out;
    refhost::append(out.text(), text);
    out.flush();
}

}  // namespace zqaft
