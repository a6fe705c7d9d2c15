#pragma once

#include <string>

namespace cli {

/// How the command line names standard input.
inline constexpr const char* kStandardInput = "-";

inline bool IsStandardInput(const std::string& path) { return path == kStandardInput; }

/// The name of an input in messages.
inline std::string InputName(const std::string& path) {
  return IsStandardInput(path) ? "<stdin>" : path;
}

}  // namespace cli
