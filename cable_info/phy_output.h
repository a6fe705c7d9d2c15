#pragma once

// The row and the report of a `PhyCableRecord`. Internal; not installed.

#include <iosfwd>
#include <string>
#include <vector>

#include "cable_info/cell_sink.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] phy {

/// What `PhyCableRecord::ToCSVStream` writes.
void WriteRow(std::ostream& os, const PhyCableRecord& r);
/// Passes the cells of the row to `sink`.
void VisitCells(CellSink& sink, const PhyCableRecord& r);
/// Appends the cells of that row to `cells`, each as its text.
void AppendCells(std::vector<std::string>& cells, const PhyCableRecord& r);
/// What `PhyCableRecord::ToFileStream` writes.
void WriteReport(std::ostream& os, const PhyCableRecord& r);

}  // namespace phy
}  // namespace cable_info
