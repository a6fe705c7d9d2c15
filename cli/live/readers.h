#pragma once

/// \file
/// The ways to read a module, in the order in which they are tried.

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "cli/live/page_reader.h"

namespace cli {

/// Where the kernel's ethtool interface answers. Tests put another process in its place.
struct NetlinkPeer {
  int protocol = 16;       ///< NETLINK_GENERIC
  std::uint32_t port = 0;  ///< of the socket that answers; 0: the kernel
};

/// The kernel's ethtool netlink interface, by page, bank and I2C address. No answer within `limit`
/// is the error `kTimeLimit`.
std::unique_ptr<PageReader> MakeNetlinkReader(const std::string& interface,
                                              std::chrono::milliseconds limit,
                                              const NetlinkPeer& peer = {});

/// The older ioctl of ethtool, in the linear layout.
std::unique_ptr<PageReader> MakeIoctlReader(const std::string& interface);

/// A file of a driver in the linear layout.
std::unique_ptr<PageReader> MakeEepromFileReader(const std::string& path);

/// Another reader under a time limit. The kernel serves requests within the system call that sends
/// them, so a request can be abandoned but not ended: it continues in a thread that keeps `reader`
/// alive until then, and all later requests fail.
std::unique_ptr<PageReader> MakeTimedReader(std::shared_ptr<PageReader> reader,
                                            std::chrono::milliseconds limit);

}  // namespace cli
