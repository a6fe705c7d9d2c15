#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <system_error>
#include <vector>

#include "host/exit_status.h"
#include "host/output_file.h"
#include "host/port_writer.h"

namespace host {

/// The most threads of a run.
inline constexpr unsigned kMostJobs = 32;

/// What the commands that read ports have in common.
struct PortOptions {
  std::vector<std::string> inputs;   ///< "-" or none at all: standard input
  std::vector<std::string> modules;  ///< dumps of modules, instead of the inputs
  std::string output;                ///< empty: standard output
  bool strict = false;               ///< stop at the first bad port
  bool quiet = false;                ///< no progress meter
  unsigned jobs = 0;                 ///< threads; 0: as many as the machine runs at once
};

/// Reads the inputs port by port and writes each with `writer`. A bad port costs a line on standard
/// error and is left out.
ExitStatus RunPorts(const PortOptions& options, const PortWriter& writer);

/// Says that a file could not be read or written.
ExitStatus FileFailed(const std::string& name, const std::error_code& error);

/// Lets `write(output)` fill the output at `path`, and commits it if that returns true. A reader
/// that closed the pipe has what it wanted.
ExitStatus WithOutput(const std::string& path, const std::function<bool(OutputFile&)>& write);

/// Lets `write` write to standard output.
ExitStatus RunToStandardOutput(const std::function<void(std::ostream&)>& write);

}  // namespace host
