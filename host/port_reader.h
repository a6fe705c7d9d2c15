#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/port.h"

namespace host {

/// Why a line is not a port, as people read it: "cable.Temperature: expected ..., found ...".
class BadPort : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads ports from lines of JSON; docs/port.schema.json describes them. One reader serves many
/// lines, so that its memory is reused.
class PortReader {
 public:
  /// `strict`: what else would be a remark about a checksum makes a port bad.
  explicit PortReader(bool strict = false);
  PortReader(const PortReader&) = delete;
  PortReader& operator=(const PortReader&) = delete;
  PortReader(PortReader&&) = delete;
  PortReader& operator=(PortReader&&) = delete;
  ~PortReader();

  /// Fills `port`, which must be new. The bytes behind `line`, as many as `LineReader::kPadding`,
  /// must be readable. Returns what there is to remark about the port, usually nothing. Throws
  /// `BadPort`.
  std::vector<std::string> Read(std::string_view line, Port& port);

 private:
  class Parser;
  std::unique_ptr<Parser> parser_;
  bool strict_;
};

}  // namespace host
