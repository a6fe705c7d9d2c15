#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/input/port.h"

namespace cli {

/// Which ports a run is about. A port is selected when it fits every kind of condition that is
/// given, and any condition of that kind; without conditions all ports are.
struct Selection {
  std::vector<std::uint32_t> numbers;  ///< port numbers
  std::vector<std::uint64_t> guids;    ///< of the node or of the port
  std::vector<std::string> labels;     ///< patterns: see `MatchesPattern`

  bool Selects(const Port& port) const;
};

/// True when `text` as a whole fits `pattern`, in which "*" matches any characters, "?" one,
/// "[abc]" and "[a-z]" for one of these and "[!abc]" for any other, and "\" takes the next
/// character verbatim. Compares bytes; a "?" is one UTF-8 character.
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace cli
