#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zqaft {

/// Tells on stderr how far a long piece of work has come, once it has taken more than a second: one line that rewrites
/// itself on a terminal, a line now and then (at 1, 2, 4, 8 ... seconds) elsewhere.
class Progress {
  public:
    Progress();
    /// Takes the line away again on a terminal.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// @param lines    done so far
    /// @param fraction of the whole, where it is known
    void at(uint64_t lines, std::optional<double> fraction);

    /// The same of pieces of work that are counted: a bar on a terminal.
    /// @param done of `all`, in `things`: "traces"
    void at(size_t done, size_t all, std::string_view things);

    /// Takes the line away for now, where something else is about to be shown on the terminal.
    void clear();

    /// Whether `at` would look at the clock: cheap enough to ask for every line.
    bool due(uint64_t lines) const { return (lines & 0x3ff) == 0; }

  private:
    using Clock = std::chrono::steady_clock;

    void show(Clock::time_point now, const std::string& text);
    Clock::time_point mStart;
    Clock::time_point mNext;
    bool mTerminal;
    bool mShown = false;
};

}  // namespace zqaft
