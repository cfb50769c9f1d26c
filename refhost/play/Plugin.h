#pragma once

#include <stdexcept>
#include <string>

#include "aft/host/PluginApi.h"

namespace refhost {

/// A plug-in that cannot be loaded. what() says which path was tried and how to get one.
class PluginError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// `libzqaftprocessor.so`, loaded as the phone's input service loads it: all that is known of it are its exports.
/// A process should load it once: it reads the system properties when it is first called. Unloaded by the destructor.
class Plugin {
  public:
    /// Throws PluginError.
    explicit Plugin(const std::string& path);
    ~Plugin();
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// Where the plug-in of this build stands: beside the running program, in `../lib`; or what ZQAFT_PLUGIN names.
    static std::string defaultPath();

    // The exports, under their own names.
    decltype(&::processKey) processKey = nullptr;
    decltype(&::processRawTouches) processRawTouches = nullptr;
    decltype(&::processInputWindow) processInputWindow = nullptr;
    decltype(&::configureSurface) configureSurface = nullptr;
    decltype(&::notifyInputStart) notifyInputStart = nullptr;
    decltype(&::notifyInputExit) notifyInputExit = nullptr;
    decltype(&::notifyScreenState) notifyScreenState = nullptr;
    decltype(&::allocNotifyKeyArgs) allocNotifyKeyArgs = nullptr;
    decltype(&::releaseNotifyKeyArgs) releaseNotifyKeyArgs = nullptr;
    decltype(&::copyRawPointerData) copyRawPointerData = nullptr;
    decltype(&::clearRawPointerData) clearRawPointerData = nullptr;
    decltype(&::filterAndCompactPointers) filterAndCompactPointers = nullptr;
    decltype(&::touchOnSide) touchOnSide = nullptr;
    decltype(&::touchDataValid) touchDataValid = nullptr;
    decltype(&::touchIsFolded) touchIsFolded = nullptr;
    const char* version = nullptr;  ///< android::aft_version

  private:
    template <typename Function>
    void resolve(Function& function, const char* name);

    std::string mPath;
    void* mLibrary = nullptr;
};

}  // namespace refhost
