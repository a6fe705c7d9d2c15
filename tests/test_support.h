#pragma once

// Shared by several tests: splitting rows and blocks, and observing a stream.

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/combined_cable_info.h"

namespace cable_info::test {

// The parts of `text` between the separators, one more than there are separators.
inline std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  std::size_t begin = 0;
  for (std::size_t end = text.find(separator); end != std::string_view::npos;
       end = text.find(separator, begin)) {
    pieces.emplace_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  pieces.emplace_back(text.substr(begin));
  return pieces;
}

// The lines of a text that ends in a newline, without their newlines.
inline std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines = Split(text, '\n');
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

// The 177 column names, taken from the header line.
inline const std::vector<std::string>& ColumnNames() {
  static const std::vector<std::string> names = [] {
    std::string header = CombinedCableInfo::GetCSVHeader();
    if (!header.empty() && header.back() == '\n') header.pop_back();
    return Split(header, ',');
  }();
  return names;
}

inline std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot be read: " + path);
  return {std::istreambuf_iterator<char>(in), {}};
}

// The text that `write(stream)` writes to a new stream.
template <typename Write>
std::string Written(const Write& write) {
  std::ostringstream stream;
  write(stream);
  return stream.str();
}

// The row of a port, with its cells by column name. For rows whose texts contain no commas.
class Row {
 public:
  // `tail` is the text of a row writer: the cells from Source on, and a newline.
  explicit Row(const std::string& tail) : cells_(Split(tail.substr(0, tail.find('\n')), ',')) {}

  template <typename Record>
  static Row Of(const Record& record) {
    return Row(Written([&](std::ostream& os) { record.ToCSVStream(os); }));
  }

  std::size_t size() const { return cells_.size(); }

  const std::string& operator[](const std::string& column) const {
    return cells_.at(IndexOf(column));
  }

  // The names of the columns whose cell is `text`, among the `count` columns from `first` on.
  std::vector<std::string> ColumnsWith(const std::string& text, const std::string& first,
                                       std::size_t count) const {
    std::vector<std::string> found;
    const std::size_t begin = IndexOf(first);
    for (std::size_t i = begin; i < begin + count; ++i) {
      if (cells_.at(i) == text) found.push_back(ColumnNames().at(i + kHostCells));
    }
    return found;
  }

 private:
  static constexpr std::size_t kHostCells = 3;  // node GUID, port GUID, port number

  static std::size_t IndexOf(const std::string& column) {
    const auto& names = ColumnNames();
    const auto found = std::find(names.begin(), names.end(), column);
    if (found == names.end()) throw std::out_of_range("no column " + column);
    return static_cast<std::size_t>(found - names.begin()) - kHostCells;
  }

  std::vector<std::string> cells_;
};

// The names of the transmitter technologies (SFF-8636 byte 147), which scripts compare literally.
inline const std::vector<std::string>& TechnologyNames() {
  static const std::vector<std::string> names = {
      "850 nm VCSEL",
      "1310 nm VCSEL",
      "1550 nm VCSEL",
      "1310 nm FP",
      "1310 nm DFB",
      "1550 nm DFB",
      "1310 nm EML",
      "1550 nm EML",
      "others",
      "1490 nm DFB",
      "Copper cable- unequalized",
      "Copper cable- passive equalized",
      "Copper cable- near and far end limiting active equalizers",
      "Copper cable- far end limiting active equalizers",
      "Copper cable- near end limiting active equalizers",
      "Copper cable- linear active equalizers",
  };
  return names;
}

// A locale that writes 12.345,5.
class CommaPoint : public std::numpunct<char> {
 protected:
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

// A stream with non-default formatting in every respect.
class OddStream : public std::ostringstream {
 public:
  static constexpr int kPrecision = 9;
  static constexpr int kWidth = 30;
  static constexpr char kFill = '*';

  OddStream() {
    imbue(std::locale(std::locale::classic(), new CommaPoint));
    flags(kFlags);
    precision(kPrecision);
    width(kWidth);
    fill(kFill);
  }

  bool HasItsFlagsAndNoWidth() const { return flags() == kFlags && width() == 0; }

 private:
  static constexpr std::ios::fmtflags kFlags =
      std::ios::hex | std::ios::showbase | std::ios::uppercase | std::ios::showpos |
      std::ios::boolalpha | std::ios::left | std::ios::scientific;
};

// A stream buffer that keeps the text and counts the flushes.
class FlushCounter : public std::stringbuf {
 public:
  int flushes() const { return flushes_; }

 protected:
  int sync() override {
    ++flushes_;
    return 0;
  }

 private:
  int flushes_ = 0;
};

}  // namespace cable_info::test
