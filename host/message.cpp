#include "host/message.h"

#include <iostream>

namespace host {

void Say(std::string line) { std::cerr << line.append("\n"); }

}  // namespace host
