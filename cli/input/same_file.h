#pragma once

#include <string>

namespace cli {

/// True when the input and the output are one regular file, whatever links lead to it. "-" is
/// standard input.
bool IsSameFile(const std::string& input, const std::string& output);

}  // namespace cli
