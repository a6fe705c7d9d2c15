#pragma once

// Checks of fuzz targets. A failed check ends the run, and libFuzzer saves the input.

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
