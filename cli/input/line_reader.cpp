#include "cli/input/line_reader.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "cli/input/byte_order_mark.h"
#include "cli/input/input_name.h"
#include "cli/system_error.h"

namespace cli {

namespace {

constexpr std::size_t kReadSize = 1U << 20;

// What may surround the text of a line: a byte order mark and a CR.
constexpr std::size_t kMaxExtra = 4;

int Open(const std::string& path) {
  if (IsStandardInput(path)) return STDIN_FILENO;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) ThrowError(errno);
  return fd;
}

}  // namespace

LineReader::LineReader(const std::string& path) : fd_(Open(path)), buffer_(kReadSize + kPadding) {}

LineReader::~LineReader() {
  if (fd_ != STDIN_FILENO) close(fd_);
}

std::optional<LineReader::Line> LineReader::Next() {
  while (!FindNewline() && !is_at_end_) Fill();
  if (searched_ < end_) return Take(searched_ - begin_, 1);
  if (begin_ == end_ && !is_skipping_) return std::nullopt;
  return Take(end_ - begin_, 0);
}

bool LineReader::HasNext() {
  while (!FindNewline() && !is_at_end_) {
    if (WouldWait()) return false;
    Fill();
  }
  return true;
}

bool LineReader::FindNewline() {
  const char* const first = buffer_.data() + searched_;
  const void* const newline = std::memchr(first, '\n', end_ - searched_);
  if (newline != nullptr) {
    searched_ += static_cast<std::size_t>(static_cast<const char*>(newline) - first);
    return true;
  }
  if (end_ - begin_ > kMaxLine + kMaxExtra) {
    is_skipping_ = true;
    bytes_ += end_ - begin_;
    begin_ = end_ = 0;
  }
  searched_ = end_;
  return false;
}

LineReader::Line LineReader::Take(std::size_t length, std::size_t newline) {
  std::string_view text(buffer_.data() + begin_, length);
  begin_ += length + newline;
  searched_ = begin_;
  bytes_ += length + newline;
  ++number_;
  if (number_ == 1) text = WithoutByteOrderMark(text);
  if (text.ends_with('\r')) text.remove_suffix(1);
  const bool too_long = is_skipping_ || text.size() > kMaxLine;
  is_skipping_ = false;
  return {text, too_long};
}

void LineReader::Fill() {
  if (begin_ > 0) {
    std::copy(buffer_.data() + begin_, buffer_.data() + end_, buffer_.data());
    end_ -= begin_;
    searched_ -= begin_;
    begin_ = 0;
  }
  if (end_ + kPadding >= buffer_.size()) buffer_.resize(2 * buffer_.size());
  for (;;) {
    const ssize_t count = read(fd_, buffer_.data() + end_, buffer_.size() - kPadding - end_);
    if (count >= 0) {
      end_ += static_cast<std::size_t>(count);
      is_at_end_ = count == 0;
      return;
    }
    if (errno != EINTR) ThrowError(errno);
  }
}

bool LineReader::ReadMore() {
  if (!is_at_end_) Fill();
  return !is_at_end_;
}

bool LineReader::WouldWait() const {
  pollfd input = {fd_, POLLIN, 0};
  return poll(&input, 1, 0) == 0;
}

std::optional<std::uint64_t> FileSize(const std::string& path) {
  struct stat status {};
  const int result =
      IsStandardInput(path) ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
  if (result != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace cli
