#pragma once

// Used by all targets of records: the row and the block of the text report.

#include <cstdio>
#include <string>
#include <string_view>

#include "cable_info/combined_cable_info.h"
#include "check.h"
#include "test_support.h"

namespace fuzz {

constexpr std::size_t kCells = 174;
constexpr std::size_t kLines = 78;

template <typename Record>
std::string RowOf(const Record& record) {
  return cable_info::test::Written([&](std::ostream& os) { record.ToCSVStream(os); });
}

template <typename Record>
std::string BlockOf(const Record& record) {
  return cable_info::test::Written([&](std::ostream& os) { record.ToFileStream(os); });
}

// True if cells and lines can still be counted when this text is one of them.
inline bool IsPlain(std::string_view text) {
  return text.find_first_of(std::string_view(",\"\n\0", 4)) == std::string_view::npos;
}

inline std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

// A value with three decimals, as the C library writes it.
inline std::string Fixed3(double value) {
  char text[400];
  std::snprintf(text, sizeof(text), "%.3f", value);
  return text;
}

// The lines of a block of plain texts. `Value(label)` is the text after the label, of the first
// line that has it.
class Block {
 public:
  explicit Block(std::string_view text) : lines_(cable_info::test::Lines(text)) {}

  std::size_t size() const { return lines_.size(); }

  std::string Value(std::string_view label) const {
    for (const std::string& line : lines_) {
      if (line.starts_with(label)) return line.substr(label.size());
    }
    return "no line " + std::string(label);
  }

 private:
  std::vector<std::string> lines_;
};

}  // namespace fuzz
