#include "cli/input/selection.h"

#include <algorithm>
#include <cstddef>

#include "cli/utf8.h"

namespace cli {

namespace {

template <typename T>
bool Contains(const std::vector<T>& values, const T& value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

// The size of the first UTF-8 character of a text that is not empty.
std::size_t CharacterSize(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && IsUtf8Continuation(text[size])) ++size;
  return size;
}

// A bracket expression: its size in the pattern with both brackets (0: no closing one), and whether
// it lists the character.
struct Bracket {
  std::size_t size = 0;
  bool has_character = false;
};

Bracket ReadBracket(std::string_view pattern, char c) {
  std::size_t at = 1;
  const bool is_negated = at < pattern.size() && pattern[at] == '!';
  if (is_negated) ++at;
  bool has_character = false;
  for (bool is_first = true; at < pattern.size() && (is_first || pattern[at] != ']');
       is_first = false) {
    const char first = pattern[at];
    const bool is_range =
        at + 2 < pattern.size() && pattern[at + 1] == '-' && pattern[at + 2] != ']';
    const char last = is_range ? pattern[at + 2] : first;
    const auto number = [](char letter) { return static_cast<unsigned char>(letter); };
    has_character |= number(first) <= number(c) && number(c) <= number(last);
    at += is_range ? 3 : 1;
  }
  if (at >= pattern.size()) return {};
  return {at + 1, has_character != is_negated};
}

// The bytes of the pattern (0: no match) and of the text that match each other at the beginning of
// both.
struct Step {
  std::size_t pattern = 0;
  std::size_t text = 1;
};

Step Fit(std::string_view text, std::string_view pattern) {
  if (pattern.front() == '?') return {1, CharacterSize(text)};
  if (pattern.front() == '[') {
    const Bracket bracket = ReadBracket(pattern, text.front());
    if (bracket.size > 0) return {bracket.has_character ? bracket.size : 0, 1};
  }
  if (pattern.front() == '\\' && pattern.size() > 1) {
    return {static_cast<std::size_t>(pattern[1] == text.front() ? 2 : 0), 1};
  }
  return {static_cast<std::size_t>(pattern.front() == text.front() ? 1 : 0), 1};
}

}  // namespace

bool Selection::Selects(const Port& port) const {
  if (!numbers.empty() && !Contains(numbers, port.number)) return false;
  if (!guids.empty() && !Contains(guids, port.node_guid) && !Contains(guids, port.port_guid)) {
    return false;
  }
  return labels.empty() || std::any_of(labels.begin(), labels.end(), [&](const std::string& label) {
           return MatchesPattern(port.label, label);
         });
}

// Only the last "*" must be retried: the ones before it match as little as they can.
bool MatchesPattern(std::string_view text, std::string_view pattern) {
  std::string_view star_text;
  std::string_view star_pattern;
  bool has_star = false;
  while (true) {
    if (!pattern.empty() && pattern.front() == '*') {
      pattern.remove_prefix(1);
      has_star = true;
      star_text = text;
      star_pattern = pattern;
      continue;
    }
    if (text.empty()) return pattern.empty();
    const Step step = pattern.empty() ? Step{} : Fit(text, pattern);
    if (step.pattern > 0) {
      text.remove_prefix(step.text);
      pattern.remove_prefix(step.pattern);
      continue;
    }
    if (!has_star || star_text.empty()) return false;
    star_text.remove_prefix(1);
    text = star_text;
    pattern = star_pattern;
  }
}

}  // namespace cli
