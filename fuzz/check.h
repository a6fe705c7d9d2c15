#pragma once

// What a fuzz target holds against its subject: a check that fails ends the run, and the input is
// kept.

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace fuzz {

inline void Check(bool holds, std::string_view what) {
  if (holds) return;
  std::cerr << "does not hold: " << what << std::endl;
  std::abort();
}

template <typename Left, typename Right>
void CheckEqual(const Left& left, const Right& right, std::string_view what) {
  if (left == right) return;
  std::cerr << "not equal: " << what << "\n<" << left << ">\n<" << right << ">" << std::endl;
  std::abort();
}

}  // namespace fuzz
