#pragma once

// Two digits at a time from a table, which halves the divisions of a number. Internal to the
// writers of numbers.
//
// Internal; not installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

constexpr std::array<char, 200> MakeDigitPairs() {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}

/// "00" to "99", two characters each.
inline constexpr std::array<char, 200> kDigitPairs = MakeDigitPairs();

/// Both digits of `value`, which must be below 100.
inline char* WriteTwoDigits(char* to, std::uint32_t value) {
  std::memcpy(to, &kDigitPairs[2 * std::size_t{value}], 2);
  return to + 2;
}

/// One or two digits of `value`, which must be below 100; always writes two characters.
/// Without a branch, since whether a reading has one digit or two is not predictable.
inline char* WriteBelowHundred(char* to, std::uint32_t value) {
  const std::size_t skipped = value < 10 ? 1 : 0;
  const char* const pair = &kDigitPairs[2 * std::size_t{value}];
  to[0] = pair[skipped];
  to[1] = pair[1];
  return to + 2 - skipped;
}

}  // namespace text
}  // namespace cable_info
