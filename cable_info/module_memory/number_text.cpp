#include "cable_info/module_memory/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace cable_info::module_memory {

namespace {

// Writes `number` / 10^`decimals` without trailing zeros.
char* WriteDecimals(char* to, std::uint64_t number, unsigned decimals) {
  constexpr std::uint64_t kPowers[] = {1,      10,      100,      1000,     10000,
                                       100000, 1000000, 10000000, 100000000};
  const std::uint64_t power = kPowers[decimals];
  to = text::WriteDecimal(to, static_cast<std::uint32_t>(number / power));
  auto fraction = static_cast<std::uint32_t>(number % power);
  if (fraction == 0) return to;
  for (; fraction % 10 == 0; --decimals) fraction /= 10;
  *to = '.';
  for (unsigned i = decimals; i != 0; --i, fraction /= 10) {
    to[i] = static_cast<char>('0' + fraction % 10);
  }
  return to + decimals + 1;
}

// Writes a value that is a whole multiple of a small power of ten, or of 1/256, as most values of a
// module are; null for any other. Below 15 digits a decimal number that reads back as the value is
// the shortest one.
char* WriteExact(char* to, double value) {
  constexpr double kHighest = 1e7;
  constexpr double kFewDecimals = 1e4;
  constexpr double kManyDecimals = 1e8;
  const double magnitude = std::fabs(value);
  if (!(magnitude < kHighest) || (magnitude < 1.0 / kFewDecimals && magnitude != 0.0)) {
    return nullptr;
  }
  // The quotients below show whether the rounded products are right.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto few = static_cast<std::uint64_t>(magnitude * kFewDecimals + 0.5);
  const bool is_few = static_cast<double>(few) / kFewDecimals == magnitude;
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto many = is_few ? 0 : static_cast<std::uint64_t>(magnitude * kManyDecimals + 0.5);
  if (!is_few && static_cast<double>(many) / kManyDecimals != magnitude) return nullptr;
  if (std::signbit(value) && value != 0.0) *to++ = '-';
  return is_few ? WriteDecimals(to, few, 4) : WriteDecimals(to, many, 8);
}

}  // namespace

char* WriteShortest(char* to, double value) {
  if (!std::isfinite(value)) return text::WriteText(to, "null");
  if (char* const end = WriteExact(to, value)) return end;
  return std::to_chars(to, to + kShortestRoom, value).ptr;
}

char* WriteRounded(char* to, double value) {
  constexpr int kDigits = 6;
  if (char* const end = WriteExact(to, value)) return end;
  if (!std::isfinite(value) || value == std::floor(value)) return WriteShortest(to, value);
  return std::to_chars(to, to + kShortestRoom, value, std::chars_format::general, kDigits).ptr;
}

}  // namespace cable_info::module_memory
