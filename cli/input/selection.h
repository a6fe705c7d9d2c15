#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/input/port.h"

namespace cli {

/// The ports that a run selects: those that meet at least one condition of each kind that is given;
/// all ports without conditions.
struct Selection {
  std::vector<std::uint32_t> numbers;  ///< port numbers
  std::vector<std::uint64_t> guids;    ///< of the node or of the port
  std::vector<std::string> labels;     ///< patterns: see `MatchesPattern`

  bool Selects(const Port& port) const;
};

/// True if `pattern` matches the whole `text`. "*" matches any characters, "?" one UTF-8 character,
/// "[abc]" and "[a-z]" one of these, "[!abc]" any other one, and "\" makes the next character
/// literal. All others match the same byte.
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace cli
