#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// An input file, read line by line through one buffer, however long the file is.
class LineReader {
 public:
  /// Bytes behind a line that may be read, though not relied upon; JSON parsers want some.
  static constexpr std::size_t kPadding = 64;
  static constexpr std::size_t kLongestLine = 128U << 10;

  /// Opens `path`, "-" for standard input. Throws `std::system_error`.
  explicit LineReader(const std::string& path);
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;
  LineReader(LineReader&&) = delete;
  LineReader& operator=(LineReader&&) = delete;
  ~LineReader();

  struct Line {
    std::string_view text;  ///< without its newline; valid until the next call
    bool too_long = false;  ///< the line passed `kLongestLine` and was skipped
  };
  /// The next line; none at the end. Throws `std::system_error`.
  std::optional<Line> Next();

  /// True when the next line is there already, so that `Next` need not wait for it.
  bool HasNext() const { return begin_ < whole_end_; }

  /// How people call the file.
  const std::string& name() const { return name_; }
  /// The number of the last line, from 1 on.
  std::uint64_t number() const { return number_; }
  /// Bytes of the lines returned so far.
  std::uint64_t bytes() const { return bytes_; }

 private:
  std::optional<Line> Taken(std::size_t length, std::size_t newline);
  /// False at the end of the file.
  bool Fill();
  std::size_t Offset(const void* position) const {
    return static_cast<std::size_t>(static_cast<const char*>(position) - buffer_.data());
  }

  std::string name_;
  int fd_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::size_t whole_end_ = 0;  // of the last line that is whole
  std::uint64_t number_ = 0;
  std::uint64_t bytes_ = 0;
};

/// The size of a regular file, as far as it can be known.
std::optional<std::uint64_t> FileSize(const std::string& path);

}  // namespace host
