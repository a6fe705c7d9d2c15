#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "host/exit_status.h"
#include "host/port_writer.h"

namespace host {

/// What the commands that read ports have in common.
struct PortOptions {
  std::vector<std::string> inputs;  ///< "-" or none at all: standard input
  std::string output;               ///< empty: standard output
  bool strict = false;              ///< stop at the first bad port
  bool quiet = false;               ///< no progress meter
};

/// Reads the inputs port by port and writes each with `writer`. A bad port costs a line on standard
/// error and is left out.
ExitStatus RunPorts(const PortOptions& options, PortWriter& writer);

/// Lets `write` write to standard output.
ExitStatus RunToStandardOutput(const std::function<void(std::ostream&)>& write);

}  // namespace host
