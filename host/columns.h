#pragma once

#include <iosfwd>

namespace host {

/// Lists the columns of the cable table: number, name and meaning, as a text table or as lines of
/// JSON.
void WriteColumns(std::ostream& os, bool as_json);

}  // namespace host
