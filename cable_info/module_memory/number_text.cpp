#include "cable_info/module_memory/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>

#include "cable_info/text/digit_pairs.h"

namespace cable_info::module_memory {

namespace {

// Writes `number` / 10^(2 * `Pairs`) without trailing zeros, two digits at a time.
template <unsigned Pairs>
char* WriteDecimals(char* to, std::uint64_t number) {
  constexpr std::uint32_t kPair = 100;
  constexpr std::uint64_t kPower = Pairs == 2 ? 10000 : 100000000;
  const auto whole = static_cast<std::uint32_t>(number / kPower);
  auto fraction = static_cast<std::uint32_t>(number % kPower);
  to = whole < kPair ? text::WriteBelowHundred(to, whole) : text::WriteDecimal(to, whole);
  if (fraction == 0) return to;
  *to = '.';
  for (std::size_t pair = Pairs; pair != 0; --pair, fraction /= kPair) {
    text::WriteTwoDigits(to + 2 * pair - 1, fraction % kPair);
  }
  char* end = to + 1 + 2 * std::size_t{Pairs};
  while (end[-1] == '0') --end;
  return end;
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
  // Signed, since conversions of unsigned numbers take several instructions.
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto few = static_cast<std::int64_t>(magnitude * kFewDecimals + 0.5);
  const bool is_few = static_cast<double>(few) / kFewDecimals == magnitude;
  // NOLINTNEXTLINE(bugprone-incorrect-roundings)
  const auto many = is_few ? 0 : static_cast<std::int64_t>(magnitude * kManyDecimals + 0.5);
  if (!is_few && static_cast<double>(many) / kManyDecimals != magnitude) return nullptr;
  if (std::signbit(value) && value != 0.0) *to++ = '-';
  return is_few ? WriteDecimals<2>(to, static_cast<std::uint64_t>(few))
                : WriteDecimals<4>(to, static_cast<std::uint64_t>(many));
}

}  // namespace

char* WriteShortest(char* to, double value) {
  if (!std::isfinite(value)) return text::WriteText(to, "null");
  if (char* const end = WriteExact(to, value)) return end;
  return std::to_chars(to, to + kMaxNumberSize, value).ptr;
}

char* WriteRounded(char* to, double value) {
  constexpr int kDigits = 6;
  if (char* const end = WriteExact(to, value)) return end;
  if (!std::isfinite(value) || value == std::floor(value)) return WriteShortest(to, value);
  return std::to_chars(to, to + kMaxNumberSize, value, std::chars_format::general, kDigits).ptr;
}

}  // namespace cable_info::module_memory
