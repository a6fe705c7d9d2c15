#pragma once

/// \file
/// The version of the library. It follows semantic versioning: before 1.0.0 a minor version may
/// change the interface, a patch version never does.

#include <string_view>

namespace cable_info {

/// The version of these headers, "major.minor.patch". The build reads the version from this line.
inline constexpr std::string_view kVersion = "0.2.0";

/// The number after the first `dots` dots of a version; 0 if it has fewer dots.
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
/// Before 1.0.0 a minor version may change texts and columns, too.
/// @{
inline constexpr int kVersionMajor = VersionNumber(kVersion, 0);  ///< changed texts or columns
inline constexpr int kVersionMinor = VersionNumber(kVersion, 1);  ///< additions
inline constexpr int kVersionPatch = VersionNumber(kVersion, 2);  ///< corrections
/// @}

/// The version of the library that the program is linked with at run time. It differs from
/// `kVersion` if the shared library was replaced after the program was compiled.
std::string_view LibraryVersion();

}  // namespace cable_info
