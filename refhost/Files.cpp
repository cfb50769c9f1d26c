#include "refhost/Files.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "refhost/InputError.h"

namespace refhost {

std::unique_ptr<std::istream> openFile(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw FileError(fmt::format("{}: is a folder; expected a file", path));
    }
    auto file = std::make_unique<std::ifstream>(path, std::ios::binary);
    if (!*file) throw FileError(fmt::format("{}: cannot be opened: {}", path, std::strerror(errno)));
    return file;
}

std::string readFile(const std::string& path) {
    const std::unique_ptr<std::istream> file = path == "-" ? nullptr : openFile(path);
    std::istream& in = file ? *file : std::cin;
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) throw FileError(fmt::format("{}: cannot be read to its end", path));
    return std::move(text).str();
}

}  // namespace refhost
