#include "cli/message.h"

#include <iostream>

namespace cli {

void PrintError(std::string line) { std::cerr << line.append("\n"); }

}  // namespace cli
