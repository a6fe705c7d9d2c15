#include "cli/spelling.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <vector>

namespace cli {

namespace {

bool SameLetter(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

// The number of letters to insert, remove or replace to get from one word to the other.
std::size_t EditDistance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> row(to.size() + 1);
  for (std::size_t i = 0; i <= to.size(); ++i) row[i] = i;
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (SameLetter(from[i], to[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

// The candidate that is most similar to `word`; empty when none is similar. They may differ in two
// letters or a third of them, but not in more than half of them.
std::string_view Nearest(std::string_view word, std::span<const std::string_view> candidates) {
  constexpr std::size_t kMaxWord = 64;
  if (word.empty() || word.size() > kMaxWord) return {};
  std::string_view nearest;
  std::size_t least = std::min(std::max<std::size_t>(2, word.size() / 3), word.size() / 2) + 1;
  for (const std::string_view candidate : candidates) {
    const auto [shorter, longer] = std::minmax({word.size(), candidate.size()});
    if (longer - shorter >= least) continue;  // as many letters must be inserted
    const std::size_t distance = EditDistance(word, candidate);
    if (distance >= least) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest;
}

}  // namespace

std::string Suggestion(std::string_view word, std::span<const std::string_view> candidates,
                       std::string_view otherwise) {
  const std::string_view nearest = Nearest(word, candidates);
  if (nearest.empty()) return std::string(otherwise);
  return "; did you mean \"" + std::string(nearest) + "\"?";
}

}  // namespace cli
