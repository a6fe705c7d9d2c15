#include "host/port_writer.h"

#include <ostream>
#include <sstream>
#include <string>

namespace host {

void TableWriter::Begin(std::ostream& os) const {
  if (with_header_) os << cable_info::CombinedCableInfo::GetCSVHeader();
}

void TableWriter::Write(std::ostream& os, Port& port) const {
  cable_info::TextBuffer cells;
  AppendGuid(cells, port.node_guid);
  cells.Append(',');
  AppendGuid(cells, port.port_guid);
  cells.Append(',').AppendDecimal(port.number).Append(',');
  os.write(cells.view().data(), static_cast<std::streamsize>(cells.size()));
  port.cable.ToCSVStream(os);
}

void ReportWriter::Write(std::ostream& os, Port& port) const {
  os << "NodeGuid: " << GuidText(port.node_guid) << ", PortGuid: " << GuidText(port.port_guid)
     << ", PortNum: " << port.number << '\n';

  std::ostringstream block;
  port.cable.ToFileStream(block);
  const std::string text = block.str();
  os << text;
  if (!text.empty() && text.back() != '\n') os << '\n';  // a long block is cut inside a line
}

}  // namespace host
