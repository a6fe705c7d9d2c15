#pragma once

// The sink that collects the cells of a row as separate texts, each as `CsvRow` writes it but
// without the comma. For outputs that select columns; whole rows are written by `CsvRow`.
//
// Internal; not installed.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/csv_columns.h"
#include "cable_info/missing_values.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

/// See `CsvRow` for the members.
class CellTexts {
 public:
  /// Appends to `cells`.
  explicit CellTexts(std::vector<std::string>& cells) : cells_(cells) {}

  void BareText(std::string_view text) { cells_.emplace_back(text); }
  void Text(std::string_view text) {
    Cell([&](TextBuffer& out) { out.Append('"').Append(text).Append('"'); });
  }
  template <typename Append, typename... Args>
  void BareTextOf(Append&& append, const Args&... args) {
    Cell([&](TextBuffer& out) { append(out, args...); });
  }
  template <typename Append, typename... Args>
  void TextOf(Append&& append, const Args&... args) {
    Cell([&](TextBuffer& out) {
      out.Append('"');
      append(out, args...);
      out.Append('"');
    });
  }
  template <typename Append, typename... Args>
  void Quantity(double /*value*/, Append&& append, const Args&... args) {
    TextOf(append, args...);
  }
  template <typename Append, typename... Args>
  void BareQuantity(double /*value*/, Append&& append, const Args&... args) {
    BareTextOf(append, args...);
  }
  void Length(std::string_view text) { Text(text); }
  void Decimal(std::uint32_t value) {
    Cell([=](TextBuffer& out) { out.AppendDecimal(value); });
  }
  void DecimalTimes(std::uint32_t value, std::uint32_t factor) { Decimal(value * factor); }
  void Hex(std::uint32_t value, int width) {
    Cell([=](TextBuffer& out) { out.AppendPrefixedHex(value, width); });
  }
  void Fixed3(double value) {
    Cell([=](TextBuffer& out) { out.AppendFixed3(value); });
  }
  void Flag(bool is_set) { BareText(is_set ? "1" : "0"); }
  void FlagsUpwards(std::uint32_t bits, int first, int count) {
    for (int bit = first; bit < first + count; ++bit) Flag((bits >> bit & 1U) != 0);
  }
  void FlagsDownwards(std::uint32_t bits, int first, int count) {
    for (int bit = first; bit > first - count; --bit) Flag((bits >> bit & 1U) != 0);
  }
  void Missing() { BareText(na_val); }
  void Missing(int count) {
    for (int i = 0; i < count; ++i) Missing();
  }
  void MissingAs(std::string_view text) { BareText(text); }
  void EndGroup(CsvGroup /*group*/) {}

 private:
  template <typename Append>
  void Cell(const Append& append) {
    TextBuffer out;
    append(out);
    cells_.emplace_back(out.view());
  }

  std::vector<std::string>& cells_;
};

}  // namespace text
}  // namespace cable_info
