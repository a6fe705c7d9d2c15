#pragma once

// Lines that reach a stream one by one, each with a flush, at the cost of a few calls per report.
//
// A reader of the report must see every line as soon as it is written: the stream's buffer receives
// each line in one `sputn`, followed by `pubsync`, just as
//
//   for (line : report) { os.write(line); os.flush(); }
//
// would do. Written like that, the 78 lines of a report cost 156 stream operations, each with a
// sentry that locks, checks and unlocks: 73 % of the whole report. Here one sentry prepares the
// stream for all of them, lines are collected while they fit, and then written directly to the
// stream's buffer. If the buffer fails or throws, the stream ends in the state that `write` and
// `flush` would have left, and the remaining lines are written with those.
//
// A pending line is stored with its size before it, so that neither a list of lines nor a search
// for newlines (texts may hold some) is needed:
//
//   | size | line ... | size | line ... |            size: std::size_t, unaligned
//
// Invariant: the buffer sees the same sequence of calls as from `write` and `flush` line by line.
//
// Internal; not installed.

#include <cstddef>
#include <cstring>
#include <ostream>

#include "cable_info/text/report_lines.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

/// Call `Finish` after the last line.
class FlushedLines {
 public:
  /// `os` must outlive the lines.
  explicit FlushedLines(std::ostream& os) : os_(os), sentry_(os) {}

  /// Writes the pending lines.
  void Finish();

 protected:
  /// The place of the next line, where `capacity` characters are free.
  char* BeginLine(std::size_t capacity) {
    if (!out_.HasCapacity(kSizeSize + capacity)) FinishAndReserve(kSizeSize + capacity);
    return out_.end() + kSizeSize;
  }
  /// Takes the line up to `end`.
  void EndLine(char* line, char* end) {
    const auto size = static_cast<std::size_t>(end - line);
    std::memcpy(line - kSizeSize, &size, kSizeSize);
    out_.EndAt(end);
  }
  /// The buffer in which lines are composed.
  TextBuffer& Buffer() { return out_; }

 private:
  static constexpr std::size_t kSizeSize = sizeof(std::size_t);

  [[gnu::cold, gnu::noinline]] void FinishAndReserve(std::size_t capacity);
  const char* WriteDirectly();

  TextBuffer out_;
  std::ostream& os_;
  std::ostream::sentry sentry_;  // prepares the stream once for all lines
};

/// A report that is written to a stream line by line.
using FlushedReport = ReportLines<FlushedLines>;

}  // namespace text
}  // namespace cable_info
