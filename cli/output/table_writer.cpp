#include "cli/output/table_writer.h"

#include <array>
#include <numeric>
#include <ostream>
#include <string>

#include "cable_info/csv_columns.h"
#include "cable_info/text/text_buffer.h"

namespace cli {

ColumnIndices AllColumns() {
  ColumnIndices all(cable_info::kCsvColumns.size());
  std::iota(all.begin(), all.end(), std::size_t{0});
  return all;
}

void TableWriter::Begin(std::ostream& os) const {
  if (header_ == TableHeader::kWritten) os << cable_info::CombinedCableInfo::GetCSVHeader();
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

void ColumnsWriter::Begin(std::ostream& os) const {
  if (header_ == TableHeader::kOmitted) return;
  const char* separator = "";
  for (const std::size_t column : columns_) {
    os << separator << cable_info::kCsvColumns[column].name;
    separator = ",";
  }
  os << '\n';
}

void ColumnsWriter::Write(std::ostream& os, Port& port) const {
  const std::array<std::string, 3> port_cells = {GuidText(port.node_guid), GuidText(port.port_guid),
                                                 std::to_string(port.number)};
  const std::vector<std::string> cells = port.cable.Cells();
  const char* separator = "";
  for (const std::size_t column : columns_) {
    os << separator;
    separator = ",";
    if (column < port_cells.size()) {
      os << port_cells[column];
    } else if (column - port_cells.size() < cells.size()) {
      os << cells[column - port_cells.size()];
    }
  }
  os << '\n';
}

}  // namespace cli
