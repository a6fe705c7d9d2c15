#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace cli {

/// A path, split after the last slash.
struct SplitPath {
  std::string folder;  ///< without that slash; empty for the current folder
  std::string name;    ///< empty for a path that ends with a slash
};

inline SplitPath Split(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {{}, path};
  return {path.substr(0, std::max<std::size_t>(slash, 1)), path.substr(slash + 1)};
}

}  // namespace cli
