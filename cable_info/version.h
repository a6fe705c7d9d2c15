#pragma once

/// \file
/// The version of the library, by the rules of semantic versioning: before 1.0.0 each minor version
/// may change the interface, a patch never does.

#include <string_view>

namespace cable_info {

/// The version of these headers, "major.minor.patch". The build takes the version from here.
inline constexpr std::string_view kVersion = "0.1.0";

/// The number behind the first `dots` dots of a version, 0 when it has fewer.
constexpr int VersionNumber(std::string_view version, int dots) {
  int number = 0;
  for (const char c : version) {
    if (c == '.') {
      --dots;
    } else if (dots == 0) {
      number = 10 * number + (c - '0');
    }
  }
  return number;
}

/// \name The numbers of `kVersion`
/// @{
inline constexpr int kVersionMajor = VersionNumber(kVersion, 0);  ///< texts or columns changed
inline constexpr int kVersionMinor = VersionNumber(kVersion, 1);  ///< something was added
inline constexpr int kVersionPatch = VersionNumber(kVersion, 2);  ///< something was mended
/// @}

/// The version of the library that the program runs with. It differs from `kVersion` when the
/// shared library was replaced after the program was compiled.
std::string_view LibraryVersion();

}  // namespace cable_info
