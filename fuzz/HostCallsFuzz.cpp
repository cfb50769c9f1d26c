// Calls of a host, plausible ones and hostile ones, through the exports of the built plug-in; what a host relies on is
// checked after each.

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "fuzz/CallsFromBytes.h"
#include "refhost/check/Contract.h"
#include "refhost/play/Player.h"
#include "refhost/trace/TraceWriter.h"

namespace {

using refhost::Player;

[[noreturn]] void giveUp(const std::string& why) {
    fmt::print(stderr, "{}\n", why);
    std::abort();
}

/// Plays each input to a plug-in that has just been loaded, since it reads the properties once. The coverage counters
/// live in the plug-in and are read after the input's callback has returned: so it stays loaded until the next input,
/// and has to come back to the same address, where the counters are known to be.
class FreshPlugin {
  public:
    Player& load(const refhost::TraceHeader& header) {
        mPlayer.reset();
        mPlayer = std::make_unique<Player>(header, mPath);
        void* const now = address();
        if (mAddress == nullptr) mAddress = now;
        if (now != mAddress) {
            giveUp(
                "The plug-in was loaded to another address than before: its coverage counters would be looked for "
                "where they no longer are. Is it still unloaded with its Player? Does anything else hold it?");
        }
        return *mPlayer;
    }

  private:
    void* address() const {
        void* const held = dlopen(mPath.c_str(), RTLD_NOW | RTLD_NOLOAD);
        void* const symbol = held != nullptr ? dlsym(held, "processRawTouches") : nullptr;
        if (symbol == nullptr) giveUp("The plug-in has not been loaded.");
        dlclose(held);
        return symbol;
    }

    std::string mPath = refhost::Plugin::defaultPath();
    std::unique_ptr<Player> mPlayer;
    void* mAddress = nullptr;
};

FreshPlugin sPlugin;

[[noreturn]] void tell(const refhost::Breaches& breaches, fuzz::CallsFromBytes trace) {
    refhost::TextBuffer out;
    refhost::writeTrace(out, trace.header());
    refhost::TraceLine line;
    while (trace.next(line)) {
        refhost::writeTrace(out, line);
        if (line.line == breaches.front().line) break;
    }
    for (const refhost::Breach& breach : breaches) {
        fmt::format_to(std::back_inserter(out), "line {}: {}: {}\n", breach.line, breach.rule, breach.text);
    }
    giveUp(fmt::to_string(out));
}

}  // namespace

/// Loads the plug-in a first time, so that its counters are among those that the fuzzer begins with.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    sPlugin.load({});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::CallsFromBytes trace(data, size);
    Player& player = sPlugin.load(trace.header());
    refhost::Contract contract(trace.header());
    refhost::TraceLine line;
    while (trace.next(line)) {
        contract.hear(line, player.play(line));
        if (!contract.breaches().empty()) tell(contract.breaches(), fuzz::CallsFromBytes(data, size));
    }
    return 0;
}
