// cableinfo report

#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/output/report_writer.h"

namespace cli {

ExitStatus WriteReport(const PortOptions& options) { return WritePorts(options, ReportWriter()); }

}  // namespace cli
