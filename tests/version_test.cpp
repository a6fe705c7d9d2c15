// The version: its numbers, and that library, headers and build tell the same one.

#include "cable_info/version.h"

#include <gtest/gtest.h>

#include <string>

namespace cable_info {
namespace {

TEST(Version, NumbersAreThoseBetweenTheDots) {
  static_assert(VersionNumber("1.20.345", 0) == 1);
  static_assert(VersionNumber("1.20.345", 1) == 20);
  static_assert(VersionNumber("1.20.345", 2) == 345);
  static_assert(VersionNumber("0.0.10", 2) == 10);
  static_assert(VersionNumber("7", 1) == 0);
  EXPECT_EQ(kVersion, std::to_string(kVersionMajor) + '.' + std::to_string(kVersionMinor) + '.' +
                          std::to_string(kVersionPatch));
}

TEST(Version, LibraryIsOfTheVersionOfItsHeaders) { EXPECT_EQ(LibraryVersion(), kVersion); }

// Packages, shared library and CMake carry the version that CMake found in the header.
TEST(Version, BuildReadsItFromTheHeader) { EXPECT_EQ(kVersion, CABLE_INFO_BUILD_VERSION); }

}  // namespace
}  // namespace cable_info
