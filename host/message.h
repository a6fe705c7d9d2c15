#pragma once

#include <string>

namespace host {

/// Writes a line to standard error, in one piece.
void Say(std::string line);

}  // namespace host
