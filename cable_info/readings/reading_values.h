#pragma once

// Numbers of a module as numbers of readings, for the readings of all sources.
// Internal; not installed.

#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

#include "cable_info/readings/reading.h"

namespace [[gnu::visibility("hidden")]] cable_info {

/// The nearest `float`; none for a number that is not finite or beyond the range of a `float`.
inline std::optional<float> AsFloat(double number) {
  constexpr auto kHighest = static_cast<double>(std::numeric_limits<float>::max());
  if (!(std::fabs(number) <= kHighest)) return std::nullopt;  // nor if it is not a number
  return static_cast<float>(number);
}

/// Sets a present value; a number that no `float` holds leaves the reading as it is.
inline void SetValue(Reading& reading, double value) {
  const std::optional<float> number = AsFloat(value);
  if (!number) return;
  reading.state = FieldState::kPresent;
  reading.value = *number;
}

/// Sets the threshold of a level; a number that no `float` holds is not given.
inline void SetThreshold(Reading& reading, AlarmLevel level, double value) {
  reading.thresholds[static_cast<std::size_t>(level)] = AsFloat(value);
}

}  // namespace cable_info
