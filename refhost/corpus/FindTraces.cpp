#include "refhost/corpus/FindTraces.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "refhost/InputError.h"

namespace refhost {

namespace {

namespace fs = std::filesystem;

bool isHidden(const fs::path& path) { return path.filename().string().starts_with('.'); }

bool isTrace(const fs::directory_entry& entry) {
    if (!entry.path().filename().string().ends_with(kTraceEnding)) return false;
    std::error_code broken;
    const fs::file_status target = entry.status(broken);  // of a link, of what it leads to
    return fs::is_regular_file(target) || (!fs::exists(target) && entry.is_symlink());
}

std::vector<fs::path> tracesBelow(const fs::path& folder) {
    std::vector<fs::path> paths;
    for (fs::recursive_directory_iterator each(folder), end; each != end; ++each) {
        if (isHidden(each->path())) {
            each.disable_recursion_pending();
        } else if (isTrace(*each)) {
            paths.push_back(each->path());
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

}  // namespace

std::string withoutEnding(std::string path) {
    if (path.ends_with(kTraceEnding)) path.resize(path.size() - kTraceEnding.size());
    return path;
}

std::vector<FoundTrace> findTraces(const std::string& path) {
    std::vector<FoundTrace> found;
    try {
        if (!fs::is_directory(fs::status(path))) {
            if (!fs::exists(path)) throw FileError(fmt::format("{}: no such file or folder", path));
            return {{path, withoutEnding(path)}};
        }
        for (const fs::path& each : tracesBelow(path)) {
            found.push_back({each.string(), withoutEnding(each.lexically_relative(path).string())});
        }
    } catch (const fs::filesystem_error& fault) {
        const std::string where = fault.path1().empty() ? path : fault.path1().string();
        throw FileError(fmt::format("{}: cannot be read: {}", where, fault.code().message()));
    }
    if (found.empty()) throw FileError(fmt::format("{}: no file *{} in this folder or below", path, kTraceEnding));
    return found;
}

}  // namespace refhost
