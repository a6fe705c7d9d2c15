#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Reads an input line by line through one buffer, however long the input is.
///
/// For the bytes `{"a":1}\r\n\n{"b":2}` the lines are `{"a":1}`, the empty line and `{"b":2}`,
/// numbered from 1. The buffer holds `[begin_, end_)`: the bytes that were read and not returned.
///
///     begin_ <= end_,    end_ + kPadding <= size of the buffer
///     no byte of [begin_, searched_) is a newline
///
/// Each byte is copied at most once after it was read, and searched once. The buffer grows to the
/// longest line that is kept; a longer one is skipped without being stored.
class LineReader {
 public:
  /// Bytes after a line that may be read, whatever they hold: JSON parsers read ahead.
  static constexpr std::size_t kPadding = 64;
  /// The longest line, without its end (LF or CR LF) and without a byte order mark.
  static constexpr std::size_t kMaxLine = 128U << 10;

  /// Opens `path`, "-" for standard input. Throws `std::system_error`.
  explicit LineReader(const std::string& path);
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;
  LineReader(LineReader&&) = delete;
  LineReader& operator=(LineReader&&) = delete;
  ~LineReader();

  struct Line {
    std::string_view text;  ///< without its end; valid until the next call of any operation
    bool too_long = false;  ///< the line is longer than `kMaxLine` and was skipped
  };
  /// The next line; none at the end. Throws `std::system_error`.
  std::optional<Line> Next();

  /// True when `Next` can return a line, or the end, without waiting for more input. Reads what is
  /// there already. Throws `std::system_error`.
  bool HasNext();

  /// The bytes that were read and not returned, up to the end of the buffer.
  std::string_view Buffered() const { return {buffer_.data() + begin_, end_ - begin_}; }
  /// Reads more bytes, waiting for them; false at the end of the input. Throws `std::system_error`.
  bool ReadMore();

  /// The number of the last line, from 1 on.
  std::uint64_t number() const { return number_; }
  /// Bytes of the lines returned so far.
  std::uint64_t bytes() const { return bytes_; }

 private:
  /// Searches the buffer for the end of the next line; drops what is too long to be kept.
  bool FindNewline();
  Line Take(std::size_t length, std::size_t newline);
  /// Reads more bytes, waiting for them; at the end of the file sets `is_at_end_`.
  void Fill();
  bool WouldWait() const;

  int fd_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t searched_ = 0;  // up to here there is no newline
  bool is_skipping_ = false;  // the beginning of the next line was dropped
  bool is_at_end_ = false;    // of the file
  std::uint64_t number_ = 0;
  std::uint64_t bytes_ = 0;
};

/// The size of a regular file; none for anything else.
std::optional<std::uint64_t> FileSize(const std::string& path);

}  // namespace cli
