#include "cli/output/table_writer.h"

#include <ostream>

#include "cable_info/text/text_buffer.h"

namespace cli {

void TableWriter::Begin(std::ostream& os) const {
  if (header_ == Header::kWritten) os << cable_info::CombinedCableInfo::GetCSVHeader();
}

void TableWriter::Write(std::ostream& os, Port& port) const {
  cable_info::text::TextBuffer cells;
  AppendGuid(cells, port.node_guid);
  cells.Append(',');
  AppendGuid(cells, port.port_guid);
  cells.Append(',').AppendDecimal(port.number).Append(',');
  os.write(cells.view().data(), static_cast<std::streamsize>(cells.size()));
  port.cable.ToCSVStream(os);
}

}  // namespace cli
