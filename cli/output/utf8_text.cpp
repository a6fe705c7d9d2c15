#include "cli/output/utf8_text.h"

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

}  // namespace cli
