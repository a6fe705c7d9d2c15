#pragma once

// The sink that writes a row of the cable table as exact CSV.
//
// A row writer is a template over its sink and emits typed cells in column order:
//
//   template <typename Row>
//   void AppendTransmitterCells(Row& row, const CableRecord& r) {
//     row.Hex(r.Technology, 2);     // 0x0c
//     row.Flag(r.IsCooled);         // 1
//     row.Missing();                // "NA"
//     row.EndGroup(CsvGroup::kTransmitter);
//   }
//
// The sink decides how a cell is written. `CsvRow` writes it as text with a comma after it; the
// calls are resolved at compile time, so a cell costs no more than writing its characters.
// `TypedRow` passes the values of the same cells to a `CellSink`, for formats where speed matters
// less.
//
// Runs of cells are written several at a time (15 to 22 % of a row): flags from a table of the
// sixteen texts of four flags, "1,0,0,1,", and missing cells from a text of sixteen of them.
//
// Internal; not installed.

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string_view>

#include "cable_info/csv_columns.h"
#include "cable_info/missing_values.h"
#include "cable_info/text/numbers.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

#ifdef NDEBUG
inline constexpr bool kChecksGroups = false;
#else
inline constexpr bool kChecksGroups = true;
#endif

/// One row of the cable table, from Source, the first column after those of the port, on. Every
/// call writes the next cell, or the next cells, each followed by a comma.
class CsvRow {
 public:
  /// A text without quotes, verbatim.
  void BareText(std::string_view text) {
    CountCells(1);
    out_.AppendWithin(text.size() + 1, [&](char* to) { return EndCell(WriteText(to, text)); });
  }
  /// A text between double quotes; nothing inside is escaped.
  void Text(std::string_view text) {
    CountCells(1);
    out_.AppendWithin(text.size() + 3, [&](char* to) {
      *to = '"';
      char* const end = WriteText(to + 1, text);
      *end = '"';
      return EndCell(end + 1);
    });
  }
  /// A text without quotes: what `append(buffer, args...)` appends.
  template <typename Append, typename... Args>
  void BareTextOf(Append&& append, const Args&... args) {
    CountCells(1);
    append(out_, args...);
    out_.Append(',');
  }
  /// A text between double quotes: what `append(buffer, args...)` appends.
  template <typename Append, typename... Args>
  void TextOf(Append&& append, const Args&... args) {
    CountCells(1);
    out_.Append('"');
    append(out_, args...);
    out_.Append("\",");
  }
  /// A number with its unit, between double quotes. CSV shows what `append(buffer, args...)`
  /// appends; a sink of numbers uses `value`, in the unit of the column.
  template <typename Append, typename... Args>
  void Quantity(double /*value*/, Append&& append, const Args&... args) {
    TextOf(append, args...);
  }
  /// The same without quotes.
  template <typename Append, typename... Args>
  void BareQuantity(double /*value*/, Append&& append, const Args&... args) {
    BareTextOf(append, args...);
  }
  /// A length, as a text with its unit.
  void Length(std::string_view text) { Text(text); }
  /// A whole number.
  void Decimal(std::uint32_t value) {
    CountCells(1);
    out_.AppendWithin(kMaxDecimalSize + 1,
                      [=](char* to) { return EndCell(WriteDecimal(to, value)); });
  }
  /// A whole number that CSV shows in a unit `factor` times smaller than other sinks do.
  void DecimalTimes(std::uint32_t value, std::uint32_t factor) { Decimal(value * factor); }
  /// A code: "0x" and at least `width` digits.
  void Hex(std::uint32_t value, int width) {
    CountCells(1);
    out_.AppendWithin(MaxPrefixedHexSize(width) + 1,
                      [=](char* to) { return EndCell(WritePrefixedHex(to, value, width)); });
  }
  /// A number with three decimals. A sink of numbers has no value for NaN, infinities and a power
  /// that cannot be represented.
  void Fixed3(double value) {
    CountCells(1);
    out_.AppendWithin(kMaxFixed3Size + 1,
                      [=](char* to) { return EndCell(WriteFixed3(to, value)); });
  }
  /// "1" or "0".
  void Flag(bool is_set) {
    CountCells(1);
    out_.Append(is_set ? "1," : "0,");
  }
  /// `count` flags of `bits`, from bit `first` upwards.
  void FlagsUpwards(std::uint32_t bits, int first, int count);
  /// `count` flags of `bits`, from bit `first` downwards.
  void FlagsDownwards(std::uint32_t bits, int first, int count);
  /// One missing value.
  void Missing() {
    CountCells(1);
    out_.Append(na_val).Append(',');
  }
  /// `count` missing values.
  void Missing(int count);
  /// One missing value, in a cell that shows it as `text` instead of `na_val`.
  void MissingAs(std::string_view text) { BareText(text); }

  /// Ends a group of columns. Debug builds assert that the number of cells since the last call is
  /// the number of columns of the group.
  void EndGroup([[maybe_unused]] CsvGroup group) {
    if constexpr (kChecksGroups) CheckGroup(group);
  }

  /// Ends the row, writes it to `os` regardless of the stream's formatting state, and flushes.
  /// Leaves the stream's width at 0.
  void WriteTo(std::ostream& os);

 private:
  static char* EndCell(char* end) {
    *end = ',';
    return end + 1;
  }

  void CountCells([[maybe_unused]] int count) {
    if constexpr (kChecksGroups) cells_ += count;
  }
  void CheckGroup(CsvGroup group);

  TextBuffer out_;
  int cells_ = 0;  // of the current group, in debug builds
};

}  // namespace text
}  // namespace cable_info
