#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace cli {

/// A character of UTF-8, and the number of its bytes, 1..4.
struct Utf8Character {
  char32_t code;
  std::size_t size;
};

/// The first character of a text; none if the text is empty or does not begin with well-formed
/// UTF-8. Overlong forms, surrogates and code points beyond U+10FFFF are not well-formed (The
/// Unicode Standard, table 3-7).
std::optional<Utf8Character> FirstUtf8Character(std::string_view text);

/// Whether all of a text is well-formed UTF-8.
bool IsUtf8(std::string_view text);

/// Whether a byte can only be the second to fourth one of a character.
constexpr bool IsUtf8Continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

}  // namespace cli
