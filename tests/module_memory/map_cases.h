#pragma once

// Cases of the tests of memory maps: bytes in, named values out.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_info.h"

namespace map_cases {

/// Bytes at a place, and the number that a field then has.
struct NumberCase {
  cable_info::Field field;
  cable_info::Page page;
  std::size_t byte;
  std::vector<unsigned> bytes;
  double value;
  std::string_view text;  ///< the name of a code
};

/// Puts the bytes of each case into a copy of `memory`, which is decoded.
template <typename Memory>
void Expect(const Memory& memory, const std::vector<NumberCase>& cases) {
  for (const NumberCase& it : cases) {
    Memory changed = memory;
    const cable_info::ModuleInfo info = changed.Put(it.page, it.byte, it.bytes).Decode();
    const cable_info::FieldValue value = info[it.field];
    const std::string_view key = cable_info::DescribeField(it.field).key;
    EXPECT_EQ(value.state, cable_info::FieldState::kPresent) << key;
    EXPECT_DOUBLE_EQ(value.number, it.value) << key;
    EXPECT_EQ(value.text, it.text) << key;
  }
}

/// All warnings but those of checksums, which no memory of these tests has right.
inline std::vector<std::string> Warnings(const cable_info::ModuleInfo& info) {
  std::vector<std::string> others;
  for (const std::string& warning : info.warnings) {
    if (warning.find("checksum") == std::string::npos) others.push_back(warning);
  }
  return others;
}

}  // namespace map_cases
