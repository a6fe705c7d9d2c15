#include "cli/message.h"

#include <iostream>

#include "cli/printable.h"
#include "cli/spelling.h"

namespace cli {

std::string Message::Suggestion() const {
  const std::string_view nearest = Nearest(unknown_key, known_keys);
  return nearest.empty() ? std::string() : "; did you mean \"" + std::string(nearest) + "\"?";
}

void PrintError(std::string_view line) { std::cerr << Printable(line).append("\n"); }

}  // namespace cli
