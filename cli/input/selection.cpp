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

// The first character of a text that is not empty. A byte that does not belong to a well-formed
// UTF-8 character counts as a character with a code above all code points.
Utf8Character NextCharacter(std::string_view text) {
  constexpr char32_t kBytes = 0x110000;  // the first number that is not a code point
  return FirstUtf8Character(text).value_or(
      Utf8Character{kBytes + static_cast<unsigned char>(text.front()), 1});
}

char32_t TakeCharacter(std::string_view& text) {
  const Utf8Character character = NextCharacter(text);
  text.remove_prefix(character.size);
  return character.code;
}

// A bracket expression: its size in the pattern with both brackets (0: no closing one), and whether
// it lists the character.
struct Bracket {
  std::size_t size = 0;
  bool has_character = false;
};

Bracket ReadBracket(std::string_view pattern, char32_t character) {
  std::string_view rest = pattern.substr(1);
  const bool is_negated = rest.starts_with('!');
  if (is_negated) rest.remove_prefix(1);
  bool has_character = false;
  for (bool is_first = true; !rest.empty() && (is_first || rest.front() != ']'); is_first = false) {
    const char32_t first = TakeCharacter(rest);
    const bool is_range = rest.size() > 1 && rest[0] == '-' && rest[1] != ']';
    if (is_range) rest.remove_prefix(1);
    const char32_t last = is_range ? TakeCharacter(rest) : first;
    has_character |= first <= character && character <= last;
  }
  if (rest.empty()) return {};
  return {pattern.size() - rest.size() + 1, has_character != is_negated};
}

// The bytes of the pattern (0: no match) and of the text that match each other at the beginning of
// both.
struct Step {
  std::size_t pattern = 0;
  std::size_t text = 0;
};

Step Fit(std::string_view text, std::string_view pattern) {
  const Utf8Character character = NextCharacter(text);
  if (pattern.front() == '?') return {1, character.size};
  if (pattern.front() == '[') {
    const Bracket bracket = ReadBracket(pattern, character.code);
    if (bracket.size > 0) return {bracket.has_character ? bracket.size : 0, character.size};
  }
  const std::size_t escape = pattern.front() == '\\' && pattern.size() > 1 ? 1 : 0;
  const Utf8Character literal = NextCharacter(pattern.substr(escape));
  return {literal.code == character.code ? escape + literal.size : 0, character.size};
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
    TakeCharacter(star_text);
    text = star_text;
    pattern = star_pattern;
  }
}

}  // namespace cli
