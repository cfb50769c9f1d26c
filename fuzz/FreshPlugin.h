#pragma once

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "refhost/play/Player.h"

namespace fuzz {

[[noreturn]] inline void giveUp(const std::string& why) {
    fmt::print(stderr, "{}\n", why);
    std::abort();
}

/// Plays each input to a plug-in that has just been loaded, since it reads the properties once. The coverage counters
/// live in the plug-in and are read after the input's callback has returned: so it stays loaded until the next input,
/// and has to come back to the same address, where the counters are known to be.
class FreshPlugin {
  public:
    refhost::Player& load(const refhost::TraceHeader& header) {
        mPlayer.reset();
        mPlayer = std::make_unique<refhost::Player>(header, mPath);
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
    std::unique_ptr<refhost::Player> mPlayer;
    void* mAddress = nullptr;
};

}  // namespace fuzz
