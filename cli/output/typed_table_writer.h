#pragma once

#include "cable_info/cell_sink.h"
#include "cli/output/port_writer.h"
#include "cli/output/table_writer.h"

namespace cli {

/// Passes all cells of a port's row to `sink`: its GUIDs as texts, its number, and the cells of its
/// cable.
void VisitCells(const Port& port, cable_info::CellSink& sink);

/// The table as RFC 4180 defines CSV: every row has all columns, a cell with a comma, a double
/// quote or a line break is quoted and its quotes are doubled, lines end with CR LF, a missing
/// value is empty. The encoding is UTF-8.
class Rfc4180Writer : public PortWriter {
 public:
  explicit Rfc4180Writer(TableHeader header, ColumnIndices columns = AllColumns());
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  TableHeader header_;
  ColumnIndices columns_;
};

/// The table as JSON: one object for each row, each on one line, with the names of the columns
/// as keys; a missing value is null. ASCII.
class JsonTableWriter : public PortWriter {
 public:
  explicit JsonTableWriter(ColumnIndices columns = AllColumns());
  Syntax syntax() const override { return Syntax::kJson; }
  void Write(std::ostream& os, Port& port) const override;

 private:
  ColumnIndices columns_;
};

}  // namespace cli
