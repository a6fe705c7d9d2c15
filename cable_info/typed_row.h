#pragma once

// The sink that passes the cells of a row to a `CellSink` as values. It has the members of
// `CsvRow`, which document the cells; comments here describe only the differences.
//
// Internal; not installed.

#include <cstdint>
#include <string_view>

#include "cable_info/cell_sink.h"
#include "cable_info/csv_columns.h"
#include "cable_info/text/text_buffer.h"

namespace [[gnu::visibility("hidden")]] cable_info {

class TypedRow {
 public:
  explicit TypedRow(CellSink& sink) : sink_(sink) {}

  /// Missing when it is empty, "NA" or "N/A".
  void Text(std::string_view text);
  void BareText(std::string_view text) { Text(text); }
  template <typename Append, typename... Args>
  void TextOf(Append&& append, const Args&... args) {
    text::TextBuffer out;
    append(out, args...);
    Text(out.view());
  }
  template <typename Append, typename... Args>
  void BareTextOf(Append&& append, const Args&... args) {
    TextOf(append, args...);
  }
  template <typename Append, typename... Args>
  void Quantity(double value, Append&& /*append*/, const Args&... /*args*/) {
    sink_.Number(value);
  }
  template <typename Append, typename... Args>
  void BareQuantity(double value, Append&& /*append*/, const Args&... /*args*/) {
    sink_.Number(value);
  }
  /// A number of metres; any other text is passed as a text.
  void Length(std::string_view text);
  void Decimal(std::uint32_t value) { sink_.Integer(value); }
  void DecimalTimes(std::uint32_t value, std::uint32_t /*factor*/) { sink_.Integer(value); }
  /// A text: a code is the same in every format.
  void Hex(std::uint32_t value, int width);
  void Fixed3(double value);
  void Flag(bool is_set) { sink_.Flag(is_set); }
  void FlagsUpwards(std::uint32_t bits, int first, int count);
  void FlagsDownwards(std::uint32_t bits, int first, int count);
  void Missing() { sink_.Missing(); }
  void Missing(int count);
  void MissingAs(std::string_view /*text*/) { sink_.Missing(); }
  void EndGroup(CsvGroup /*group*/) {}

 private:
  CellSink& sink_;
};

}  // namespace cable_info
