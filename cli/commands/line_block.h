#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "cli/input/input_form.h"
#include "cli/input/line_reader.h"
#include "cli/store/snapshot_reader.h"

namespace cli {

/// A run of consecutive lines of one input, copied out of its reader: the unit of work of a run.
///
/// Blocks are filled in the order of the input, decoded in any order and by any thread, and written
/// in the order of the input. Their size is bounded, so that the memory of a run does not depend on
/// the length of its input:
///
///     lines <= 256   and   bytes < 256 KiB + the longest line
///
/// A block costs one copy of its bytes and nothing per line but three words.
class LineBlock {
 public:
  struct Line {
    std::string_view text;  ///< followed by `LineReader::kPadding` readable bytes
    std::uint64_t number;   ///< in the input, from 1 on
    bool too_long;          ///< the line was skipped; `text` is empty
  };

  LineBlock() = default;
  LineBlock(const LineBlock&) = delete;
  LineBlock& operator=(const LineBlock&) = delete;
  LineBlock(LineBlock&&) = delete;
  LineBlock& operator=(LineBlock&&) = delete;
  ~LineBlock() = default;

  /// Becomes an empty block of the input number `input`, at `path`.
  void Restart(std::size_t input, const std::string& path);
  void Add(const LineReader::Line& line, std::uint64_t number);
  /// Ends the block; no line may be added after it.
  void Finish();
  /// True when no further line should be added.
  bool IsFull() const;

  std::size_t size() const { return lines_.size(); }
  /// The line at `index`, of a finished block.
  Line operator[](std::size_t index) const;

  /// The input that the lines come from: its number, from 0 on, and its path.
  std::size_t input() const { return input_; }
  const std::string& path() const { return path_; }
  std::uint64_t input_bytes = 0;  ///< of all inputs up to the end of this block
  std::error_code input_error;    ///< why the input could not be read on after this block
  InputForm form = InputForm::kPortRecords;  ///< if another one, the input is skipped
  bool is_last_for_now = false;  ///< no further line is there yet; what was read should be shown

 private:
  struct Span {
    std::size_t begin;
    std::size_t size;
    bool too_long;
  };

  std::size_t input_ = 0;
  std::string path_;
  std::uint64_t first_number_ = 0;
  std::string bytes_;  // of all lines
  std::vector<Span> lines_;
};

/// Reads inputs block by block: files of port records, and snapshots of stores.
class BlockReader {
 public:
  /// "-" is standard input; `FindSnapshot` describes the names of snapshots.
  explicit BlockReader(std::vector<std::string> paths) : paths_(std::move(paths)) {}

  /// Fills `block` with the next lines, waiting only for the first of them; false at the end of
  /// the last input.
  bool Next(LineBlock& block);

 private:
  /// Opens the next input and recognizes its form.
  InputForm Open(const std::string& path);
  /// False when the input has no lines left.
  template <typename Lines>
  bool Fill(LineBlock& block, Lines& lines);

  bool IsOpen() const { return !std::holds_alternative<std::monostate>(lines_); }
  void Close() { lines_.emplace<std::monostate>(); }

  std::vector<std::string> paths_;
  std::size_t next_ = 0;  // index of the next input
  std::variant<std::monostate, LineReader, SnapshotReader> lines_;
  std::uint64_t bytes_before_ = 0;  // of the inputs that were read
};

}  // namespace cli
