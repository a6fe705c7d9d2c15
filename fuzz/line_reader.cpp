// Arbitrary bytes through the reader of lines, sometimes as a file longer than its buffer.

#include "cli/input/line_reader.h"

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "check.h"
#include "test_support.h"

namespace {

using fuzz::Check;
using fuzz::CheckEqual;

// A file in memory.
class File {
 public:
  explicit File(std::string_view text) : fd_(memfd_create("lines", 0)) {
    while (!text.empty()) {
      const ssize_t written = write(fd_, text.data(), text.size());
      Check(written > 0, "the file is written");
      text.remove_prefix(static_cast<std::size_t>(written));
    }
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  File(File&&) = delete;
  File& operator=(File&&) = delete;
  ~File() { close(fd_); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }

 private:
  int fd_;
};

// Input that starts with a star is repeated until the file is longer than the buffer.
std::string AnyText(std::string_view bytes) {
  constexpr std::size_t kMaxSize = 9U << 17;  // the buffer has 2^20
  if (bytes.size() < 3) return std::string(bytes);
  const bool is_long = bytes[0] == '*';
  const std::string_view piece = bytes.substr(1);
  std::string text(piece);
  while (is_long && text.size() < kMaxSize) text += piece;
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = AnyText(std::string_view(reinterpret_cast<const char*>(data), size));
  std::vector<std::string> expected = cable_info::test::Lines(text);
  if (!expected.empty() && expected[0].starts_with("\xEF\xBB\xBF")) expected[0].erase(0, 3);

  const File file(text);
  cli::LineReader reader(file.path());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (expected[i].ends_with('\r')) expected[i].pop_back();
    const auto line = reader.Next();
    Check(line.has_value(), "there is a line more");
    CheckEqual(reader.number(), i + 1, "number of a line");
    CheckEqual(line->too_long, expected[i].size() > cli::LineReader::kMaxLine, "a long line");
    if (line->too_long) continue;
    CheckEqual(line->text, expected[i], "line");
    const volatile char* const padding = line->text.data() + line->text.size();
    static_cast<void>(padding[cli::LineReader::kPadding - 1]);  // checked by the sanitizer
  }
  Check(!reader.Next().has_value(), "there is no line more");
  CheckEqual(reader.bytes(), text.size(), "bytes of all lines");
  return 0;
}
