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
/// For the bytes `{"a":1}\r\n\n{"b":2}` the lines are `{"a":1}\r`, the empty line and `{"b":2}`,
/// numbered from 1. The buffer holds `[begin_, end_)`: the bytes that were read and not returned.
///
///     begin_ <= whole_end_ <= end_     as long as a whole line is buffered
///     end_ + kPadding <= size of the buffer
///
/// Each byte is copied at most once after it was read, and searched once. The buffer grows to the
/// longest line that is kept; a longer one is skipped without being stored.
class LineReader {
 public:
  /// Bytes after a line that may be read, whatever they hold: JSON parsers read ahead.
  static constexpr std::size_t kPadding = 64;
  static constexpr std::size_t kMaxLine = 128U << 10;

  /// Opens `path`, "-" for standard input. Throws `std::system_error`.
  explicit LineReader(const std::string& path);
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;
  LineReader(LineReader&&) = delete;
  LineReader& operator=(LineReader&&) = delete;
  ~LineReader();

  struct Line {
    std::string_view text;  ///< without its newline; valid until the next call
    bool too_long = false;  ///< the line is longer than `kMaxLine` and was skipped
  };
  /// The next line; none at the end. Throws `std::system_error`.
  std::optional<Line> Next();

  /// True when the next line is buffered, so that `Next` does not wait for it.
  bool HasNext() const { return begin_ < whole_end_; }

  /// The number of the last line, from 1 on.
  std::uint64_t number() const { return number_; }
  /// Bytes of the lines returned so far.
  std::uint64_t bytes() const { return bytes_; }

 private:
  std::optional<Line> Take(std::size_t length, std::size_t newline);
  /// Reads more bytes; false at the end of the file.
  bool Fill();
  std::size_t Offset(const void* position) const {
    return static_cast<std::size_t>(static_cast<const char*>(position) - buffer_.data());
  }

  int fd_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t whole_end_ = 0;  // the end of the last whole line
  std::uint64_t number_ = 0;
  std::uint64_t bytes_ = 0;
};

/// The size of a regular file; none for anything else.
std::optional<std::uint64_t> FileSize(const std::string& path);

}  // namespace cli
