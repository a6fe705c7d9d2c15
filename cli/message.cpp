#include "cli/message.h"

#include <iostream>

#include "cli/printable.h"
#include "cli/spelling.h"

namespace cli {

std::string Message::Suggestion() const { return cli::Suggestion(unknown_key, known_keys); }

std::string Counted(std::uint64_t count, std::string_view one, std::string_view several) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : several);
}

void PrintError(std::string_view line) { std::cerr << Printable(line).append("\n"); }

}  // namespace cli
