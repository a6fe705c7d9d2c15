#include "cli/output/report_writer.h"

#include <ostream>
#include <sstream>
#include <string>

#include "cli/printable.h"

namespace cli {

void ReportWriter::Write(std::ostream& os, Port& port) const {
  os << "NodeGuid: " << GuidText(port.node_guid) << ", PortGuid: " << GuidText(port.port_guid)
     << ", PortNum: " << port.number;
  if (!port.label.empty()) os << ", Label: " << Printable(port.label);
  os << '\n';

  std::ostringstream block;
  port.cable.ToFileStream(block);
  const std::string text = block.str();
  os << text;
  if (!text.empty() && text.back() != '\n') os << '\n';  // a long block is cut within a line
}

}  // namespace cli
