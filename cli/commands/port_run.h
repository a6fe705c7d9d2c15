#pragma once

#include "cli/commands/port_options.h"
#include "cli/exit_status.h"
#include "cli/output/port_writer.h"

namespace cli {

/// Reads the inputs port by port and writes each port with `writer`. A bad port is reported on
/// standard error and left out.
ExitStatus RunPorts(const PortOptions& options, const PortWriter& writer, PortCollector* collector);

}  // namespace cli
