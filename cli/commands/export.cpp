// cableinfo export

#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/output/export_writer.h"

namespace cli {

ExitStatus WriteExport(const PortOptions& options) { return WritePorts(options, ExportWriter()); }

}  // namespace cli
