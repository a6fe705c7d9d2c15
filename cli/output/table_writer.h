#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "cli/output/port_writer.h"

namespace cli {

/// Whether a table begins with the names of its columns.
enum class TableHeader { kWritten, kOmitted };

/// Indices into `cable_info::kCsvColumns`, in the order of the output.
using ColumnIndices = std::vector<std::size_t>;

/// All columns of the table, in its order.
ColumnIndices AllColumns();

/// The CSV table: the header, then one row per port.
class TableWriter : public PortWriter {
 public:
  explicit TableWriter(TableHeader header) : header_(header) {}
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  TableHeader header_;
};

/// The same with some columns only, in any order. Cells that a port without records lacks are
/// empty.
class ColumnsWriter : public PortWriter {
 public:
  ColumnsWriter(TableHeader header, ColumnIndices columns)
      : header_(header), columns_(std::move(columns)) {}
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  TableHeader header_;
  ColumnIndices columns_;
};

}  // namespace cli
