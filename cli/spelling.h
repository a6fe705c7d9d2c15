#pragma once

#include <span>
#include <string>
#include <string_view>

namespace cli {

/// The end of a message about an unknown `word`: `; did you mean "Temperature"?` with the candidate
/// that is most similar to it, or `otherwise` when none is similar.
std::string Suggestion(std::string_view word, std::span<const std::string_view> candidates,
                       std::string_view otherwise = {});

}  // namespace cli
