#pragma once

// Numbers as characters, written through a pointer.
//
// Every function writes its text at `to`, where the number of characters given by its `kMax...Size`
// must be free, and returns the end of the text:
//
//   char cell[kMaxDecimalSize];
//   char* const end = WriteDecimal(cell, std::uint32_t{42});   // "42", end == cell + 2
//
// A row or report thus reserves capacity once per cell or line instead of once per character. Bytes
// after the returned end, within the stated size, may change. All texts are those of the C locale.
//
// Internal; not installed.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

/// Copies `text` to `to`. Inlined, so that the copy of a literal takes one or two moves instead of
/// a call.
[[gnu::always_inline]] inline char* WriteText(char* to, std::string_view text) {
  std::char_traits<char>::copy(to, text.data(), text.size());
  return to + text.size();
}

/// The size of the longest decimal: the largest 64-bit number has 20 digits.
inline constexpr std::size_t kMaxDecimalSize = 20;
/// All digits, without leading zeros.
char* WriteDecimal(char* to, std::uint32_t value);
/// All digits, without leading zeros.
char* WriteDecimal(char* to, std::uint64_t value);

/// The digits of the largest hexadecimal.
inline constexpr int kMaxHexDigits = 8;
/// The hexadecimal digits.
inline constexpr std::string_view kHexDigits = "0123456789abcdef";
/// The size of the longest hexadecimal of at least `width` digits.
constexpr std::size_t MaxHexSize(int width) {
  return static_cast<std::size_t>(width > kMaxHexDigits ? width : kMaxHexDigits);
}
/// `WriteHex` of numbers with more than `width` digits, and of unusual widths.
char* WriteLongHex(char* to, std::uint32_t value, int width);
/// Lower-case hexadecimal, filled with "0" to at least `width` digits. Inlined: the width is nearly
/// always a constant, and often all values of the type fit it, so that the digits take a few moves
/// (5 % of a cable row, 6 % of a cable report).
inline char* WriteHex(char* to, std::uint32_t value, int width) {
  if (width < 1 || width >= kMaxHexDigits || value >> (4 * width) != 0) {
    return WriteLongHex(to, value, width);
  }
  for (int i = width - 1; i >= 0; --i, value >>= 4) to[i] = kHexDigits[value & 0xF];
  return to + width;
}

/// The size of the longest hexadecimal after its "0x".
constexpr std::size_t MaxPrefixedHexSize(int width) { return 2 + MaxHexSize(width); }
/// "0x" and `WriteHex`.
inline char* WritePrefixedHex(char* to, std::uint32_t value, int width) {
  return WriteHex(WriteText(to, "0x"), value, width);
}

/// The size of `WriteFixed3`'s longest text: a sign, 309 digits, a point and three digits.
inline constexpr std::size_t kMaxFixed3Size = 314;
/// Three decimals, exactly as `printf` writes "%.3f"; see fixed3.cpp.
char* WriteFixed3(char* to, double value);

/// A number given in thousandths, with three decimals: "6.750" for 6750. At most `kMaxFixed3Size`.
char* WriteThousandths(char* to, std::uint32_t thousandths);

/// The size of the longest power.
inline constexpr std::size_t kMaxPowerSize = 2 * kMaxFixed3Size + 9;
/// A power in both of its units with three decimals: "0.871 mW, -0.600 dBm".
char* WritePower(char* to, double milliwatts, double dbm);

/// The size of the longest bias current.
inline constexpr std::size_t kMaxBiasSize = kMaxFixed3Size + 3;
/// A bias current with three decimals: "6.750 mA".
char* WriteBias(char* to, double milliamperes);
/// The same, given in microamperes.
char* WriteBias(char* to, std::uint32_t microamperes);

}  // namespace text
}  // namespace cable_info
