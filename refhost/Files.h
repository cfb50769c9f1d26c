#pragma once

#include <istream>
#include <memory>
#include <string>

namespace refhost {

/// Opens a file for reading, byte for byte. Throws FileError where there is none, or where it is a folder.
std::unique_ptr<std::istream> openFile(const std::string& path);

/// All of a file, or of standard input for "-". Throws FileError, also where it cannot be read to its end.
std::string readFile(const std::string& path);

}  // namespace refhost
