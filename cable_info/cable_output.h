#pragma once

// The row and the report of a `CableRecord`. Internal; not installed.

#include <iosfwd>
#include <string>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/cell_sink.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] cable {

/// Whether a block has the three lines that only the PHY fills: source, pre- and post-emphasis.
enum class PhyLines { kLeftOut, kShown };

/// What `CableRecord::ToCSVStream` writes.
void WriteRow(std::ostream& os, const CableRecord& r);
/// Passes the cells of the row to `sink`.
void VisitCells(CellSink& sink, const CableRecord& r);
/// Appends the cells of that row to `cells`, each as its text.
void AppendCells(std::vector<std::string>& cells, const CableRecord& r);
/// What `CableRecord::ToFileStream` writes.
void WriteReport(std::ostream& os, const CableRecord& r);
/// What `CableRecord::c_str` returns.
std::string ReportBlock(const CableRecord& r, PhyLines phy_lines);

}  // namespace cable
}  // namespace cable_info
