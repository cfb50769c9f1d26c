#pragma once

#include <yaml-cpp/yaml.h>

#include <string>

namespace refhost {

/// The document that a text holds; null where it holds none. Throws YAML::Exception where it is none, and where more
/// stands behind it: the library's own loader takes the first document and passes over the rest in silence, also where
/// it is a mistyped key that has ended it.
YAML::Node yamlDocument(const std::string& text);

}  // namespace refhost
