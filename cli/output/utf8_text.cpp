#include "cli/output/utf8_text.h"

#include <algorithm>
#include <cstddef>

#include "cli/utf8.h"

namespace cli {

void AppendByteAsUtf8(cable_info::text::TextBuffer& out, unsigned char byte) {
  constexpr unsigned kFirstBeyondAscii = 0x80;
  constexpr std::string_view kSymbolForNul = "\xE2\x90\x80";
  if (byte == 0) {
    out.Append(kSymbolForNul);
  } else if (byte < kFirstBeyondAscii) {
    out.Append(static_cast<char>(byte));
  } else {
    out.Append(static_cast<char>(0xC0U | byte >> 6U));
    out.Append(static_cast<char>(0x80U | (byte & 0x3FU)));
  }
}

void AppendBytesAsUtf8(cable_info::text::TextBuffer& out, std::string_view bytes) {
  const auto is_plain = [](char c) { return c > 0; };
  if (std::all_of(bytes.begin(), bytes.end(), is_plain)) {
    out.Append(bytes);
    return;
  }
  for (const char c : bytes) AppendByteAsUtf8(out, static_cast<unsigned char>(c));
}

std::string Utf8Of(std::string_view text) {
  if (IsUtf8(text)) return std::string(text);
  cable_info::text::TextBuffer out;
  while (!text.empty()) {
    const auto character = FirstUtf8Character(text);
    const std::size_t size = character ? character->size : 1;
    if (character) {
      out.Append(text.substr(0, size));
    } else {
      AppendByteAsUtf8(out, static_cast<unsigned char>(text.front()));
    }
    text.remove_prefix(size);
  }
  return std::string(out.view());
}

}  // namespace cli
