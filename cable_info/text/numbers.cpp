#include "cable_info/text/numbers.h"

#include <charconv>

#include "cable_info/text/digit_pairs.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

namespace {

constexpr std::string_view kMilliwattText = " mW, ";
constexpr std::string_view kDbmText = " dBm";
constexpr std::string_view kMilliampereText = " mA";

char* WriteBelowTenThousand(char* to, std::uint32_t value) {
  if (value < 100) return WriteBelowHundred(to, value);
  return WriteTwoDigits(WriteBelowHundred(to, value / 100), value % 100);
}

static_assert(kMaxPowerSize == 2 * kMaxFixed3Size + kMilliwattText.size() + kDbmText.size());
static_assert(kMaxBiasSize == kMaxFixed3Size + kMilliampereText.size());

}  // namespace

char* WriteDecimal(char* to, std::uint32_t value) {
  if (value < 10'000) return WriteBelowTenThousand(to, value);
  if (value >= 100'000'000) return std::to_chars(to, to + kMaxDecimalSize, value).ptr;
  to = WriteBelowTenThousand(to, value / 10'000);
  return WriteTwoDigits(WriteTwoDigits(to, value / 100 % 100), value % 100);
}

char* WriteDecimal(char* to, std::uint64_t value) {
  if (value <= UINT32_MAX) return WriteDecimal(to, static_cast<std::uint32_t>(value));
  return std::to_chars(to, to + kMaxDecimalSize, value).ptr;
}

char* WriteLongHex(char* to, std::uint32_t value, int width) {
  int digits = width > 1 ? width : 1;
  while (digits < kMaxHexDigits && value >> (4 * digits) != 0) ++digits;
  char* const end = to + digits;
  for (char* digit = end; digit != to; value >>= 4) *--digit = kHexDigits[value & 0xF];
  return end;
}

char* WritePower(char* to, double milliwatts, double dbm) {
  to = WriteText(WriteFixed3(to, milliwatts), kMilliwattText);
  return WriteText(WriteFixed3(to, dbm), kDbmText);
}

char* WriteBias(char* to, double milliamperes) {
  return WriteText(WriteFixed3(to, milliamperes), kMilliampereText);
}

char* WriteBias(char* to, std::uint32_t microamperes) {
  return WriteText(WriteThousandths(to, microamperes), kMilliampereText);
}

}  // namespace text
}  // namespace cable_info
