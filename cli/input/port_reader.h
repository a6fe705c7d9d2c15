#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/input/port.h"

namespace cli {

using cable_info::module_memory::ChecksumPolicy;

/// Why a line is not a port, as a message: "cable.Temperature: expected ..., found ...".
class BadPort : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads ports from lines of JSON; docs/port.schema.json describes them. One reader is used for
/// many lines, so that its memory is reused.
class PortReader {
 public:
  explicit PortReader(ChecksumPolicy checksums = ChecksumPolicy::kReport);
  PortReader(const PortReader&) = delete;
  PortReader& operator=(const PortReader&) = delete;
  PortReader(PortReader&&) = delete;
  PortReader& operator=(PortReader&&) = delete;
  ~PortReader();

  /// Fills `port`, which must be new. `LineReader::kPadding` bytes after `line` must be readable.
  /// Returns remarks about the port, usually none. Throws `BadPort`.
  std::vector<std::string> Read(std::string_view line, Port& port);

 private:
  class Parser;
  std::unique_ptr<Parser> parser_;
  ChecksumPolicy checksums_;
};

}  // namespace cli
