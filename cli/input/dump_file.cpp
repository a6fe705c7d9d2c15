#include "cli/input/dump_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string_view>

#include "cable_info/module_memory/module_image.h"
#include "cli/input/byte_order_mark.h"
#include "cli/input/input_name.h"
#include "cli/system_error.h"

namespace cli {

namespace {

using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::DumpFromContent;
using cable_info::module_memory::kMaxDumpSize;

// A listing has a few characters for each byte; no dump is larger than this.
constexpr std::size_t kMaxFile = 64 * kMaxDumpSize;

class File {
 public:
  File(const std::string& path, int flags)
      : fd_(IsStandardInput(path) ? STDIN_FILENO
                                  : open(path.c_str(), O_RDONLY | O_CLOEXEC | flags)) {
    if (fd_ < 0) ThrowError(errno);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  File(File&&) = delete;
  File& operator=(File&&) = delete;
  ~File() {
    if (fd_ != STDIN_FILENO) close(fd_);
  }

  bool IsRegular() const {
    struct stat status {};
    return fstat(fd_, &status) == 0 && S_ISREG(status.st_mode);
  }

  // The content, up to one byte more than a dump may have.
  std::string Read() const {
    std::string content(kMaxFile + 1, '\0');
    std::size_t size = 0;
    while (size < content.size()) {
      const ssize_t got = read(fd_, content.data() + size, content.size() - size);
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) ThrowError(errno);
      if (got == 0) break;
      size += static_cast<std::size_t>(got);
    }
    content.resize(size);
    return content;
  }

 private:
  int fd_;
};

bool LooksLikePortRecords(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '{';
}

DumpBytes DumpFrom(std::string_view text) {
  if (text.size() > kMaxFile) {
    throw BadModule("a file of more than " + std::to_string(kMaxFile) +
                    " bytes is not the memory of a module");
  }
  return DumpFromContent(text);
}

}  // namespace

DumpBytes ReadDump(const std::string& path) {
  const std::string content = File(path, 0).Read();
  const std::string_view text = WithoutByteOrderMark(content);
  if (LooksLikePortRecords(text)) {
    throw BadModule("looks like port records, not like a dump; give it without --module");
  }
  return DumpFrom(text);
}

DumpBytes ReadRegularDump(const std::string& path) {
  const File file(path, O_NONBLOCK | O_NOCTTY);
  if (!file.IsRegular()) throw BadModule("not a regular file");
  const std::string content = file.Read();
  return DumpFrom(WithoutByteOrderMark(content));
}

}  // namespace cli
