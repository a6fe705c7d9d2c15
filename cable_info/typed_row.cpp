#include "cable_info/typed_row.h"

#include <charconv>
#include <cmath>
#include <optional>

#include "cable_info/missing_values.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/text/numbers.h"
#include "cable_info/value_format.h"

namespace cable_info {

void TypedRow::Text(std::string_view text) {
  if (text.empty() || text == kBareNa || text == kReportNa) return Missing();
  sink_.Text(text);
}

void TypedRow::Length(std::string_view text) {
  if (const std::optional<double> metres = decode::Metres(text)) return sink_.Number(*metres);
  Text(text);
}

void TypedRow::Hex(std::uint32_t value, int width) {
  text::TextBuffer out;
  out.AppendPrefixedHex(value, width);
  sink_.Text(out.view());
}

void TypedRow::Fixed3(double value) {
  if (!std::isfinite(value) || value == kUnrepresentablePower) return Missing();
  char digits[text::kMaxFixed3Size];
  const char* const end = text::WriteFixed3(digits, value);
  double rounded = 0;
  std::from_chars(digits, end, rounded);
  sink_.Number(rounded);
}

void TypedRow::FlagsUpwards(std::uint32_t bits, int first, int count) {
  for (; count > 0; ++first, --count) Flag(((bits >> first) & 1) != 0);
}

void TypedRow::FlagsDownwards(std::uint32_t bits, int first, int count) {
  for (; count > 0; --first, --count) Flag(((bits >> first) & 1) != 0);
}

void TypedRow::Missing(int count) {
  for (; count > 0; --count) Missing();
}

}  // namespace cable_info
