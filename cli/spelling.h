#pragma once

#include <string_view>
#include <vector>

namespace cli {

/// The candidate that `word` was most likely meant to be; empty when none is near.
std::string_view Nearest(std::string_view word, const std::vector<std::string_view>& candidates);

}  // namespace cli
