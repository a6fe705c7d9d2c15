#include "cli/printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>

#include "cli/utf8.h"

namespace cli {

namespace {

bool IsControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

// Characters that reorder or break the text around them.
bool IsInvisibleFormat(char32_t code) {
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

void AppendHex(std::string& out, std::uint32_t code, int digits) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) out += kDigits[code >> shift & 0xF];
}

void AppendEscape(std::string& out, std::uint32_t code, Escapes escapes) {
  constexpr int kByteDigits = 2;
  constexpr int kCharacterDigits = 4;
  const bool is_byte = code <= 0xFF && escapes == Escapes::kShortest;
  out += is_byte ? "\\x" : "\\u";
  AppendHex(out, code, is_byte ? kByteDigits : kCharacterDigits);
}

}  // namespace

std::string Printable(std::string_view text, Newlines newlines, Escapes escapes) {
  const auto is_plain = [newlines](char c) {
    return (c >= ' ' && c <= '~') || (c == '\n' && newlines == Newlines::kKept);
  };
  std::string out;
  while (!text.empty()) {
    const auto* const plain_end = std::find_if_not(text.begin(), text.end(), is_plain);
    const auto plain = static_cast<std::size_t>(std::distance(text.begin(), plain_end));
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const std::optional<Utf8Character> character = FirstUtf8Character(text);
    if (!character) {
      AppendEscape(out, static_cast<unsigned char>(text.front()), escapes);
    } else if (IsControl(character->code) || IsInvisibleFormat(character->code)) {
      AppendEscape(out, character->code, escapes);
    } else {
      out += text.substr(0, character->size);
    }
    text.remove_prefix(character ? character->size : 1);
  }
  return out;
}

std::string Shortened(std::string_view text, std::size_t max_size) {
  if (text.size() <= max_size) return std::string(text);
  std::string shown(text.substr(0, max_size));
  while (!shown.empty() && IsUtf8Continuation(text[shown.size()])) shown.pop_back();
  return shown + "...";
}

}  // namespace cli
