#pragma once

#include <string>

#include "cli/commands/port_options.h"
#include "cli/exit_status.h"
#include "cli/output/port_writer.h"

namespace cli {

/// The names of all files that the run reads, separated by blanks.
std::string InputNames(const PortOptions& options);

/// Reads the ports of the command line and writes each with `writer`: to the output, or when there
/// is one, to `collector`.
ExitStatus WritePorts(const PortOptions& options, const PortWriter& writer,
                      PortCollector* collector = nullptr);

}  // namespace cli
