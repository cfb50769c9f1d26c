#include "refhost/play/Plugin.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>

namespace refhost {

namespace {

/// android::aft_version, as the compiler spells it.
constexpr char kVersionSymbol[] = "_ZN7android11aft_versionE";

}  // namespace

std::string Plugin::defaultPath() {
    if (const char* named = std::getenv("ZQAFT_PLUGIN"); named != nullptr && *named != '\0') return named;
    std::error_code fault;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", fault);
    return (self.parent_path().parent_path() / "lib" / "libzqaftprocessor.so").string();
}

Plugin::Plugin(const std::string& path) : mPath(path) {
    // A name without a slash would be looked for among the system's libraries.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    mLibrary = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (mLibrary == nullptr) {
        throw PluginError(fmt::format("cannot load the plug-in {}: {}; `./run build` builds it, --plugin names another",
                                      path, dlerror()));
    }
    resolve(processKey, "processKey");
    resolve(processRawTouches, "processRawTouches");
    resolve(processInputWindow, "processInputWindow");
    resolve(configureSurface, "configureSurface");
    resolve(notifyInputStart, "notifyInputStart");
    resolve(notifyInputExit, "notifyInputExit");
    resolve(notifyScreenState, "notifyScreenState");
    resolve(allocNotifyKeyArgs, "allocNotifyKeyArgs");
    resolve(releaseNotifyKeyArgs, "releaseNotifyKeyArgs");
    resolve(copyRawPointerData, "copyRawPointerData");
    resolve(clearRawPointerData, "clearRawPointerData");
    resolve(filterAndCompactPointers, "filterAndCompactPointers");
    resolve(touchOnSide, "touchOnSide");
    resolve(touchDataValid, "touchDataValid");
    resolve(touchIsFolded, "touchIsFolded");
    const char* const* text = nullptr;
    resolve(text, kVersionSymbol);
    version = *text;
}

Plugin::~Plugin() { dlclose(mLibrary); }

template <typename Function>
void Plugin::resolve(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(mLibrary, name));
    if (function != nullptr) return;
    dlclose(mLibrary);
    throw PluginError(fmt::format("the library {} is not the plug-in: it does not export {}", mPath, name));
}

}  // namespace refhost
