// The version: its numbers, and that library, headers and build agree on it.

#include "cable_info/version.h"

#include <gtest/gtest.h>

#include <string>

namespace cable_info {
namespace {

TEST(Version, IsSplitAtTheDots) {
  static_assert(VersionNumber("1.20.345", 0) == 1);
  static_assert(VersionNumber("1.20.345", 1) == 20);
  static_assert(VersionNumber("1.20.345", 2) == 345);
  static_assert(VersionNumber("0.0.10", 2) == 10);
  static_assert(VersionNumber("7", 1) == 0);
  EXPECT_EQ(kVersion, std::to_string(kVersionMajor) + '.' + std::to_string(kVersionMinor) + '.' +
                          std::to_string(kVersionPatch));
}

TEST(Version, OfTheLibraryIsThatOfItsHeaders) { EXPECT_EQ(LibraryVersion(), kVersion); }

// Packages, shared library and CMake use the version that CMake read from the header.
TEST(Version, OfTheBuildIsThatOfTheHeader) { EXPECT_EQ(kVersion, CABLE_INFO_BUILD_VERSION); }

}  // namespace
}  // namespace cable_info
