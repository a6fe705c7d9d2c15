#pragma once

// A process that answers on a netlink socket as the kernel's ethtool interface does, from the
// memory of a module that a test built. It misbehaves on request, and records what it was asked.

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <vector>

#include "cable_info/module_memory/module_image.h"
#include "cli/live/readers.h"

namespace live_tests {

/// The reaction of the responder to a request for one part of the memory.
struct Behaviour {
  enum class Kind {
    kServe,        ///< the bytes; an error where the memory has none
    kError,        ///< the error `number` with the text `text`
    kErrorAtName,  ///< the same, blaming the name of the interface
    kShort,        ///< only `number` bytes
    kLong,         ///< 128 + `number` bytes
    kNoData,       ///< a reply without bytes
    kAcknowledge,  ///< an error message with the number 0
    kSilent,       ///< no answer
    kLate,         ///< the bytes, after `number` milliseconds
    kNoise,        ///< datagrams of other senders, sequences and families, then the bytes
    kRandom,       ///< `number` datagrams of random bytes, then nothing
    kCutOff,       ///< the answer without its last `number` bytes
  };

  Kind kind = Kind::kServe;
  int number = 0;
  const char* text = "";
};

/// A request as it was received.
struct Received {
  std::uint16_t type = 0;
  std::uint16_t flags = 0;
  std::uint8_t command = 0;
  std::uint8_t page = 0;
  std::uint8_t bank = 0;
  std::uint8_t i2c_address = 0;
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
  char interface[16] = {};
};

class Responder {
 public:
  /// Serves `memory`, and the parts named by page as `behaviours` specifies; the first part of a
  /// module is that of its page.
  explicit Responder(const cable_info::ModuleImage& memory,
                     std::map<cable_info::Page, Behaviour> behaviours = {},
                     Behaviour of_family = {});
  Responder(const Responder&) = delete;
  Responder& operator=(const Responder&) = delete;
  Responder(Responder&&) = delete;
  Responder& operator=(Responder&&) = delete;
  /// Ends the process.
  ~Responder();

  cli::NetlinkPeer peer() const;
  /// The requests received so far.
  std::vector<Received> Requests() const;

 private:
  pid_t process_ = -1;
  std::uint32_t port_ = 0;
  int records_ = -1;  // a file that the process writes
};

}  // namespace live_tests
