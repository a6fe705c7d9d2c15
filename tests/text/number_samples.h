#pragma once

// Numbers that are difficult to format, and their text as written by the C library.

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "cable_info/text/text_buffer.h"

namespace cable_info::test {

// The text of a number as written by the C library.
inline std::string PrintfFixed3(double value) {
  char text[400];
  std::snprintf(text, sizeof(text), "%.3f", value);
  return text;
}

inline std::string PrintfGeneral(double value) {
  char text[400];
  std::snprintf(text, sizeof(text), "%g", value);
  return text;
}

inline std::string Fixed3(double value) {
  return text::ToText([&](text::TextBuffer& out) { out.AppendFixed3(value); });
}

inline std::string General(double value) {
  return text::ToText([&](text::TextBuffer& out) { out.AppendGeneral(value); });
}

// Values that are difficult to format.
inline std::vector<double> DelicateDoubles() {
  std::vector<double> values = {0.0,
                                0.0005,
                                0.0015,
                                0.0025,
                                0.9994999,
                                0.9995,
                                0.99999999,
                                1.0,
                                999.9995,
                                1e15,
                                4503599627370495.5,  // the largest half below 2^52
                                4503599627370496.0,
                                9007199254740993.0,
                                1e22,
                                1e100,
                                DBL_MAX,
                                DBL_MIN,
                                std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()};
  for (int k = 0; k <= 80000; ++k) values.push_back(k / 8000.0);  // including ties
  for (int e = -80; e <= 80; ++e) values.push_back(std::ldexp(1.0, e));
  const std::size_t count = values.size();
  for (std::size_t i = 0; i < count; ++i) values.push_back(std::copysign(values[i], -1.0));
  return values;
}

}  // namespace cable_info::test
