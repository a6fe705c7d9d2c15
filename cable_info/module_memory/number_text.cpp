#include "cable_info/module_memory/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace cable_info::module_memory {

namespace {

// Writes `number` / 10^`decimals` without trailing zeros.
char* WriteDecimals(char* to, std::uint64_t number, unsigned decimals) {
  char digits[24];
  char* begin = digits + sizeof(digits);
  char* const end = begin;
  for (; decimals != 0 && number % 10 == 0; --decimals) number /= 10;
  const bool has_fraction = decimals != 0;
  for (; decimals != 0; --decimals, number /= 10) *--begin = static_cast<char>('0' + number % 10);
  if (has_fraction) *--begin = '.';
  do {
    *--begin = static_cast<char>('0' + number % 10);
    number /= 10;
  } while (number != 0);
  return text::WriteText(to, {begin, static_cast<std::size_t>(end - begin)});
}

}  // namespace

char* WriteShortest(char* to, double value) {
  // Most values of a module are whole multiples of a small power of ten, or of 1/256. Below 15
  // digits a decimal number that reads back as the value is the shortest one.
  constexpr double kHighest = 1e7;
  constexpr double kFewDecimals = 1e4;
  constexpr double kManyDecimals = 1e8;
  if (!std::isfinite(value)) return text::WriteText(to, "null");
  const double magnitude = std::fabs(value);
  if (magnitude < kHighest && (magnitude >= 1.0 / kFewDecimals || magnitude == 0.0)) {
    if (std::signbit(value) && value != 0.0) *to++ = '-';
    // The quotients below show whether the rounded products are right.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    const auto few = static_cast<std::uint64_t>(magnitude * kFewDecimals + 0.5);
    if (static_cast<double>(few) / kFewDecimals == magnitude) return WriteDecimals(to, few, 4);
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    const auto many = static_cast<std::uint64_t>(magnitude * kManyDecimals + 0.5);
    if (static_cast<double>(many) / kManyDecimals == magnitude) return WriteDecimals(to, many, 8);
    value = magnitude;
  }
  return std::to_chars(to, to + kShortestRoom, value).ptr;
}

}  // namespace cable_info::module_memory
