#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/module_memory/page_plan.h"

namespace cli {

/// A piece of a module's memory, as the kernel addresses it. Bytes 0..127 of every page are those
/// of the lower page.
struct PageRequest {
  std::uint8_t i2c_address = 0x50;  ///< 0x50; 0x51 for the diagnostics of SFP modules
  std::uint8_t page = 0;
  std::uint8_t bank = 0;
  std::uint8_t offset = 0;
  std::uint8_t length = 128;
};

/// How a half page is requested.
PageRequest RequestFor(const cable_info::MemoryPart& part);

/// The offset of the bytes in the linear layout of older drivers: the lower page, then the upper
/// pages by number; of SFP modules A0h, then A2h. None for banks other than 0, which it does not
/// contain.
std::optional<std::size_t> LinearOffset(const PageRequest& request);

/// Why bytes were not read.
struct ReadError {
  enum class Kind : std::uint8_t {
    kPage,          ///< these bytes cannot be read; others may be
    kNoModule,      ///< nothing is plugged in, or no longer
    kNotSupported,  ///< the driver offers no module memory in this way
    kNoPermission,
    kTimeLimit,  ///< no answer in time
    kPort,       ///< the port itself cannot be used
  };

  Kind kind = Kind::kPage;
  std::string text;
};

/// The error of a system call or of an answer of the kernel; `text` is shown after the meaning.
ReadError ErrorOf(int error_number, const std::string& text = {});

/// The error of a request without an answer in time.
ReadError NoAnswerInTime();

/// The bytes of a request, possibly fewer than requested, or an error.
struct PageAnswer {
  std::vector<std::uint8_t> bytes;
  std::optional<ReadError> error;
};

inline PageAnswer Failed(ReadError error) { return {{}, std::move(error)}; }

/// A way to read the module of a port. There is no operation that writes.
class PageReader {
 public:
  PageReader() = default;
  PageReader(const PageReader&) = delete;
  PageReader& operator=(const PageReader&) = delete;
  PageReader(PageReader&&) = delete;
  PageReader& operator=(PageReader&&) = delete;
  virtual ~PageReader() = default;

  virtual PageAnswer Read(const PageRequest& request) = 0;
};

}  // namespace cli
