// Readers of the linear layout: the older ioctl, and the EEPROM files of drivers.

#include <fcntl.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/live/readers.h"

namespace cli {

namespace {

PageAnswer NotInLayout() {
  return Failed({ReadError::Kind::kPage, "it is not part of the linear layout of this driver"});
}

// A descriptor that is closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&&) = delete;
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }

  int fd() const { return fd_; }

 private:
  int fd_;
};

class IoctlReader : public PageReader {
 public:
  explicit IoctlReader(std::string interface)
      : interface_(std::move(interface)), socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}

  PageAnswer Read(const PageRequest& request) override {
    // An empty cage and a missing interface give the same error.
    if (if_nametoindex(interface_.c_str()) == 0) {
      return Failed({ReadError::Kind::kPort, ErrorOf(ENODEV).text});
    }
    if (size_ == 0) {
      ethtool_modinfo info = {};
      info.cmd = ETHTOOL_GMODULEINFO;
      if (!Call(&info)) return Failed(ErrorOf(errno));
      size_ = info.eeprom_len;
    }
    const std::optional<std::size_t> offset = LinearOffset(request);
    if (!offset || *offset + request.length > size_) return NotInLayout();
    // The kernel writes the bytes after the header.
    std::vector<std::uint32_t> memory((sizeof(ethtool_eeprom) + request.length + 3) / 4);
    ethtool_eeprom header = {};
    header.cmd = ETHTOOL_GMODULEEEPROM;
    header.offset = static_cast<std::uint32_t>(*offset);
    header.len = request.length;
    std::memcpy(memory.data(), &header, sizeof(header));
    if (!Call(memory.data())) return Failed(ErrorOf(errno));
    std::memcpy(&header, memory.data(), sizeof(header));
    std::vector<std::uint8_t> bytes(std::min<std::size_t>(header.len, request.length));
    if (bytes.empty()) return Failed({ReadError::Kind::kPage, "the driver returned no bytes"});
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): words as bytes
    const auto* const all = reinterpret_cast<const std::uint8_t*>(memory.data());
    std::memcpy(bytes.data(), all + sizeof(header), bytes.size());
    return {std::move(bytes), std::nullopt};
  }

 private:
  bool Call(void* command) {
    ifreq request = {};
    if (interface_.size() >= sizeof(request.ifr_name)) {
      errno = ENODEV;
      return false;
    }
    interface_.copy(request.ifr_name, interface_.size());
    request.ifr_data = static_cast<char*>(command);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the interface of the system
    return ioctl(socket_.fd(), SIOCETHTOOL, &request) == 0;
  }

  const std::string interface_;
  const Descriptor socket_;
  std::size_t size_ = 0;  // of the memory; 0: not known yet
};

class EepromFileReader : public PageReader {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the interface of the system
  explicit EepromFileReader(const std::string& path)
      : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)), error_(errno) {}

  PageAnswer Read(const PageRequest& request) override {
    if (file_.fd() < 0) return Failed(ErrorOf(error_));
    const std::optional<std::size_t> offset = LinearOffset(request);
    if (!offset) return NotInLayout();
    std::vector<std::uint8_t> bytes(request.length);
    ssize_t got = 0;
    do {
      got = pread(file_.fd(), bytes.data(), bytes.size(), static_cast<off_t>(*offset));
    } while (got < 0 && errno == EINTR);
    if (got < 0) return Failed(ErrorOf(errno));
    if (got == 0) return Failed({ReadError::Kind::kPage, "the file ends before it"});
    bytes.resize(static_cast<std::size_t>(got));
    return {std::move(bytes), std::nullopt};
  }

 private:
  const Descriptor file_;
  const int error_;
};

}  // namespace

std::unique_ptr<PageReader> MakeIoctlReader(const std::string& interface) {
  return std::make_unique<IoctlReader>(interface);
}

std::unique_ptr<PageReader> MakeEepromFileReader(const std::string& path) {
  return std::make_unique<EepromFileReader>(path);
}

}  // namespace cli
