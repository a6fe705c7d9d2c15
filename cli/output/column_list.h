#pragma once

#include <iosfwd>

namespace cli {

/// Lists the columns of the table: number, name and meaning.
void WriteColumnsAsText(std::ostream& os);
/// The same as one JSON object per line.
void WriteColumnsAsJson(std::ostream& os);

}  // namespace cli
