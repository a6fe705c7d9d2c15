#pragma once

/// \file
/// A row of the cable table as typed cells, for formats other than the exact CSV: numbers without
/// their units, missing values as such.
///
/// \code
/// class Printer : public cable_info::CellSink {
///  public:
///   void Text(std::string_view text) override { std::cout << text << '\n'; }
///   void Integer(std::uint32_t value) override { std::cout << value << '\n'; }
///   void Number(double value) override { std::cout << value << '\n'; }
///   void Flag(bool is_set) override { std::cout << is_set << '\n'; }
///   void Missing() override { std::cout << "-\n"; }
/// };
///
/// Printer printer;
/// cable.VisitCells(printer);  // calls the printer 174 times, in the order of kCsvColumns
/// \endcode

#include <cstdint>
#include <string_view>

namespace cable_info {

/// Receives the cells of a row, one call each.
class CellSink {
 public:
  CellSink() = default;
  CellSink(const CellSink&) = delete;
  CellSink& operator=(const CellSink&) = delete;
  CellSink(CellSink&&) = delete;
  CellSink& operator=(CellSink&&) = delete;
  virtual ~CellSink() = default;

  /// A text, never empty. Bytes of no known encoding; valid during the call. Codes in hexadecimal
  /// (`0x0c`), versions and dates are texts, too.
  virtual void Text(std::string_view text) = 0;
  /// A whole number, in the unit of its column.
  virtual void Integer(std::uint32_t value) = 0;
  /// A finite number, in the unit of its column and with at most three decimals: the `double`
  /// nearest to those decimals.
  virtual void Number(double value) = 0;
  /// Yes or no.
  virtual void Flag(bool is_set) = 0;
  /// No value.
  virtual void Missing() = 0;
};

}  // namespace cable_info
