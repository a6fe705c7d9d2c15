#include "cli/utf8.h"

namespace cli {

std::optional<Utf8Character> FirstUtf8Character(std::string_view text) {
  if (text.empty()) return std::nullopt;
  const auto lead = static_cast<unsigned char>(text.front());
  if (lead < 0x80) return Utf8Character{lead, 1};
  constexpr char32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};  // by size
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC0 || lead > 0xF4 || text.size() < size) return std::nullopt;
  char32_t code = lead & (0x7FU >> size);
  for (const char c : text.substr(1, size - 1)) {
    if (!IsUtf8Continuation(c)) return std::nullopt;
    code = code << 6U | (static_cast<unsigned char>(c) & 0x3FU);
  }
  const bool is_surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLowest[size] || code > 0x10FFFF || is_surrogate) return std::nullopt;
  return Utf8Character{code, size};
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto character = FirstUtf8Character(text);
    if (!character) return false;
    text.remove_prefix(character->size);
  }
  return true;
}

}  // namespace cli
