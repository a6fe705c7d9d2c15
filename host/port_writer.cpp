#include "host/port_writer.h"

#include <ostream>
#include <sstream>
#include <string>

namespace host {

void TableWriter::Begin(std::ostream& os) {
  if (with_header_) os << cable_info::CombinedCableInfo::GetCSVHeader();
}

void TableWriter::Write(std::ostream& os, Port& port) {
  os << GuidText(port.node_guid) << ',' << GuidText(port.port_guid) << ',' << port.number << ',';
  port.cable.ToCSVStream(os);
}

void ReportWriter::Write(std::ostream& os, Port& port) {
  if (!is_first_) os << '\n';
  is_first_ = false;
  os << "NodeGuid: " << GuidText(port.node_guid) << ", PortGuid: " << GuidText(port.port_guid)
     << ", PortNum: " << port.number << '\n';

  std::ostringstream block;
  port.cable.ToFileStream(block);
  const std::string text = block.str();
  os << text;
  if (!text.empty() && text.back() != '\n') os << '\n';  // a long block is cut inside a line
}

}  // namespace host
