#pragma once

#include <string>

namespace cli {

/// Writes a line to standard error, in one piece.
void PrintError(std::string line);

}  // namespace cli
