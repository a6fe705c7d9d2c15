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

/// True if `pattern` matches the whole `text`. "*" matches any characters, "?" one character,
/// "[abc]" and "[a-z]" one of these, "[!abc]" any other one, and "\" makes the next character
/// literal. All others match themselves. Text is compared by UTF-8 characters, which ranges order
/// by code point. A byte that does not belong to a well-formed character counts as one character;
/// in a range it sorts after all code points.
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace cli
