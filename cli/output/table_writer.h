#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "cli/output/port_writer.h"

namespace cli {

/// The CSV table: the header, then one row per port.
class TableWriter : public PortWriter {
 public:
  enum class Header { kWritten, kOmitted };

  explicit TableWriter(Header header) : header_(header) {}
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  Header header_;
};

/// The same with some columns only, given by their indices in `cable_info::kCsvColumns`, in any
/// order. Cells that a port without records lacks are empty.
class ColumnsWriter : public PortWriter {
 public:
  ColumnsWriter(TableWriter::Header header, std::vector<std::size_t> columns)
      : header_(header), columns_(std::move(columns)) {}
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  TableWriter::Header header_;
  std::vector<std::size_t> columns_;
};

}  // namespace cli
