#pragma once

// The lines of a text report, each a label and a value, and the two sinks that they are written to.
//
//   BufferedReport lines;                       // or: FlushedReport lines(os);
//   lines.Decimal("PowerClass: ", 4);           // PowerClass: 4
//   lines.LaneBias("TX# Bias: ", 2, 6.75);      // TX2 Bias: 6.750 mA
//
// `ReportLines<Sink>` formats the lines, the sink stores them: `BufferedLines` keeps all of them as
// one text, `FlushedLines` (flushed_lines.h) writes each one to a stream and flushes.
//
// A line reserves the largest size it can have and is written through one pointer. The members are
// always inlined: a label is a literal, whose copy then takes one or two moves instead of a call.
// If the compiler decides, a report takes a fifth longer.
//
// Internal; not installed.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cable_info/text/numbers.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

/// The forms of a report's lines. A label that names a lane holds a "#" for its number, 1..9.
template <typename Sink>
class ReportLines : public Sink {
 public:
  using Sink::Sink;

  /// A value that `append(buffer, args...)` appends.
  template <typename Append, typename... Args>
  [[gnu::always_inline]] void Line(std::string_view label, Append&& append, const Args&... args) {
    TextBuffer& out = this->Buffer();
    char* const line = this->BeginLine(label.size());
    const std::size_t before = out.OffsetOf(line);
    out.EndAt(WriteText(line, label));
    append(out, args...);
    char* const end = out.Reserve(1);  // may move the text, and with it the line
    EndLine(out.At(before), end);
  }

  /// `text`, verbatim.
  [[gnu::always_inline]] void Text(std::string_view label, std::string_view text) {
    LineWithin(label, text.size(), [=](char* to) { return WriteText(to, text); });
  }
  /// `text`, verbatim, for a lane.
  [[gnu::always_inline]] void LaneText(std::string_view label, int lane, std::string_view text) {
    LaneLineWithin(label, lane, text.size(), [=](char* to) { return WriteText(to, text); });
  }
  /// All digits, and `unit` after them.
  [[gnu::always_inline]] void Decimal(std::string_view label, std::uint32_t value,
                                      std::string_view unit = {}) {
    LineWithin(label, kMaxDecimalSize + unit.size(),
               [=](char* to) { return WriteText(WriteDecimal(to, value), unit); });
  }
  /// "0x" and at least `width` digits.
  [[gnu::always_inline]] void Hex(std::string_view label, std::uint32_t value, int width) {
    LineWithin(label, MaxPrefixedHexSize(width),
               [=](char* to) { return WritePrefixedHex(to, value, width); });
  }
  /// A lane's power in both of its units.
  [[gnu::always_inline]] void LanePower(std::string_view label, int lane, double milliwatts,
                                        double dbm) {
    LaneLineWithin(label, lane, kMaxPowerSize,
                   [=](char* to) { return WritePower(to, milliwatts, dbm); });
  }
  /// A lane's bias current, as an argument of `WriteBias`.
  template <typename Bias>
  [[gnu::always_inline]] void LaneBias(std::string_view label, int lane, Bias bias) {
    LaneLineWithin(label, lane, kMaxBiasSize, [=](char* to) { return WriteBias(to, bias); });
  }

 private:
  // A value that `write(to)` writes, `capacity` characters at most.
  template <typename Write>
  [[gnu::always_inline]] void LineWithin(std::string_view label, std::size_t capacity,
                                         const Write& write) {
    char* const line = this->BeginLine(label.size() + capacity + 1);
    EndLine(line, write(WriteText(line, label)));
  }

  template <typename Write>
  [[gnu::always_inline]] void LaneLineWithin(std::string_view label, int lane, std::size_t capacity,
                                             const Write& write) {
    char* const line = this->BeginLine(label.size() + capacity + 1);
    char* const value = WriteText(line, label);
    *(line + label.find('#')) = static_cast<char>('0' + lane);
    EndLine(line, write(value));
  }

  [[gnu::always_inline]] void EndLine(char* line, char* end) {
    *end = '\n';
    Sink::EndLine(line, end + 1);
  }
};

/// A sink that keeps the lines as one text.
class BufferedLines {
 public:
  /// The lines so far. Valid until the next line.
  std::string_view view() const { return out_.view(); }

 protected:
  /// The place of the next line, where `capacity` characters are free.
  char* BeginLine(std::size_t capacity) { return out_.Reserve(capacity); }
  /// Keeps the line up to `end`.
  void EndLine(const char* /*line*/, char* end) { out_.EndAt(end); }
  /// The buffer in which lines are composed.
  TextBuffer& Buffer() { return out_; }

 private:
  TextBuffer out_;
};

/// A report that is kept as one text.
using BufferedReport = ReportLines<BufferedLines>;

}  // namespace text
}  // namespace cable_info
