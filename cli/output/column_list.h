#pragma once

#include <iosfwd>

namespace cli {

/// Lists the columns of the table: number, name and meaning.
void WriteColumnsAsText(std::ostream& os);
/// Lists the columns with their units and the forms of their cells, one JSON object per line.
void WriteColumnsAsJson(std::ostream& os);

}  // namespace cli
