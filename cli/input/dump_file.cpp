#include "cli/input/dump_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

#include "cable_info/module_memory/module_image.h"
#include "cli/input/byte_order_mark.h"
#include "cli/input/input_name.h"

namespace cli {

namespace {

using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::kLongestDump;

// Reads a file up to `limit` bytes and one more.
class File {
 public:
  explicit File(const std::string& path)
      : fd_(IsStandardInput(path) ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (fd_ < 0) Fail();
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  File(File&&) = delete;
  File& operator=(File&&) = delete;
  ~File() {
    if (fd_ != STDIN_FILENO) close(fd_);
  }

  std::string Read(std::size_t limit) const {
    std::string content(limit + 1, '\0');
    std::size_t size = 0;
    while (size < content.size()) {
      const ssize_t got = read(fd_, content.data() + size, content.size() - size);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) Fail();
      if (got == 0) break;
      size += static_cast<std::size_t>(got);
    }
    content.resize(size);
    return content;
  }

 private:
  [[noreturn]] static void Fail() { throw std::system_error(errno, std::generic_category()); }

  int fd_;
};

}  // namespace

DumpBytes ReadDump(const std::string& path) {
  constexpr std::size_t kMaxFile = 64 * kLongestDump;
  const std::string content = File(path).Read(kMaxFile);
  if (content.size() > kMaxFile) {
    throw BadModule("a file of more than " + std::to_string(kMaxFile) +
                    " bytes is no module's memory");
  }
  return cable_info::module_memory::DumpFromContent(WithoutByteOrderMark(content));
}

}  // namespace cli
