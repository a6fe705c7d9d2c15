#include "cli/input/line_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "cli/input/byte_order_mark.h"
#include "cli/input/input_name.h"

namespace cli {

namespace {

constexpr std::size_t kReadSize = 1U << 20;

int Open(const std::string& path) {
  if (IsStandardInput(path)) return STDIN_FILENO;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) throw std::system_error(errno, std::generic_category());
  return fd;
}

}  // namespace

LineReader::LineReader(const std::string& path) : fd_(Open(path)), buffer_(kReadSize + kPadding) {}

LineReader::~LineReader() {
  if (fd_ != STDIN_FILENO) close(fd_);
}

std::optional<LineReader::Line> LineReader::Take(std::size_t length, std::size_t newline) {
  std::string_view text(buffer_.data() + begin_, length);
  begin_ += length + newline;
  bytes_ += length + newline;
  ++number_;
  if (number_ == 1) text = WithoutByteOrderMark(text);
  return Line{text, false};
}

std::optional<LineReader::Line> LineReader::Next() {
  std::size_t searched = 0;
  bool too_long = false;
  for (;;) {
    const char* const first = buffer_.data() + begin_;
    const std::size_t length = end_ - begin_;
    const void* const newline = std::memchr(first + searched, '\n', length - searched);
    if (newline != nullptr) {
      auto line = Take(Offset(newline) - begin_, 1);
      line->too_long = too_long || line->text.size() > kMaxLine;
      return line;
    }
    searched = length;
    if (length > kMaxLine) {  // drop what there is and look for the line's end
      too_long = true;
      bytes_ += length;
      begin_ = end_ = searched = 0;
    }
    if (Fill()) continue;
    if (end_ == begin_ && !too_long) return std::nullopt;
    auto line = Take(end_ - begin_, 0);
    line->too_long = too_long;
    return line;
  }
}

bool LineReader::Fill() {
  if (begin_ > 0) {
    std::copy(buffer_.data() + begin_, buffer_.data() + end_, buffer_.data());
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ + kPadding >= buffer_.size()) buffer_.resize(2 * buffer_.size());
  for (;;) {
    const ssize_t count = read(fd_, buffer_.data() + end_, buffer_.size() - kPadding - end_);
    if (count >= 0) {
      const char* const added = buffer_.data() + end_;
      const void* const newline = memrchr(added, '\n', static_cast<std::size_t>(count));
      end_ += static_cast<std::size_t>(count);
      whole_end_ = newline == nullptr ? 0 : Offset(newline) + 1;
      return count > 0;
    }
    if (errno != EINTR) throw std::system_error(errno, std::generic_category());
  }
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  struct stat status {};
  const int result =
      IsStandardInput(path) ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
  if (result != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace cli
