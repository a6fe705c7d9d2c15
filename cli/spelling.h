#pragma once

#include <span>
#include <string_view>

namespace cli {

/// The candidate that is most similar to `word`; empty when none is similar.
std::string_view Nearest(std::string_view word, std::span<const std::string_view> candidates);

}  // namespace cli
