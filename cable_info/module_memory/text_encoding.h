#pragma once

// Internal; not installed.

#include <cstddef>
#include <string_view>

#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// How many bytes the well-formed UTF-8 character at the begin of `text` has; 0 when there is none.
std::size_t Utf8Length(std::string_view text);

/// The number of characters at the begin of `text` that are ASCII, and neither control characters
/// nor double quotes nor backslashes. Counts in groups of eight, so it may be less.
std::size_t PlainLength(std::string_view text);

/// Appends `text` as UTF-8; what is none becomes U+FFFD. Control characters, double quotes and
/// backslashes go to `special` instead.
template <typename Special>
void AppendUtf8(text::TextBuffer& out, std::string_view text, const Special& special) {
  std::size_t plain = PlainLength(text);  // characters to append as they are
  if (plain == text.size()) {
    out.Append(text);
    return;
  }
  const auto flush = [&](std::size_t dropped) {
    out.Append(text.substr(0, plain));
    text.remove_prefix(plain + dropped);
    plain = 0;
  };
  while (plain < text.size()) {
    const auto byte = static_cast<unsigned char>(text[plain]);
    if (byte < ' ' || byte == '"' || byte == '\\' || byte == 0x7F) {
      flush(1);
      special(byte);
    } else if (byte < 0x80) {
      ++plain;
    } else if (const std::size_t length = Utf8Length(text.substr(plain)); length != 0) {
      plain += length;
    } else {
      flush(1);
      out.Append("\xEF\xBF\xBD");
    }
  }
  out.Append(text);
}

}  // namespace module_memory
}  // namespace cable_info
