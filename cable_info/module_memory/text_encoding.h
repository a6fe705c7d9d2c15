#pragma once

// Texts as UTF-8, for the JSON and the data sheet of a module.
//
// Internal; not installed.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The size of the well-formed UTF-8 character at the beginning of `text`; 0 if there is none.
std::size_t Utf8Length(std::string_view text);

/// True if no character needs more than one byte.
bool IsAscii(std::string_view text);

/// \name Plain characters: ASCII, but no control characters, double quotes or backslashes
/// Nearly all texts of modules are plain and short, so they are examined eight characters at a time
/// while they are copied.
/// @{

/// Bits for which `IsPlain` is true if all of eight characters are plain, in any byte order. The
/// bits of several groups can be combined with `|`.
constexpr std::uint64_t SpecialBits(std::uint64_t characters) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  // Up to the first special character, no subtraction borrows from the next one: each of these has
  // the high bit of the lowest special character set, and none if all are plain.
  const std::uint64_t control = characters - kEach * ' ';
  const std::uint64_t quote = (characters ^ kEach * '"') - kEach;
  const std::uint64_t backslash = (characters ^ kEach * '\\') - kEach;
  const std::uint64_t del = characters + kEach;
  return control | quote | backslash | del | characters;
}
constexpr bool IsPlain(std::uint64_t special_bits) {
  return (special_bits & 0x8080808080808080) == 0;
}

/// Copies `text` to `to`, where its size must be free; false if it is not plain.
inline bool CopyIfPlain(char* to, std::string_view text) {
  constexpr std::size_t kGroup = sizeof(std::uint64_t);
  const std::size_t size = text.size();
  std::uint64_t group = 0;
  if (size < kGroup) {
    char padded[kGroup] = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
    for (std::size_t i = 0; i < size; ++i) padded[i] = to[i] = text[i];
    std::memcpy(&group, padded, kGroup);
    return IsPlain(SpecialBits(group));
  }
  std::uint64_t special = 0;
  const auto copy = [&](std::size_t at) {
    std::memcpy(&group, text.data() + at, kGroup);
    std::memcpy(to + at, &group, kGroup);
    special |= SpecialBits(group);
  };
  for (std::size_t at = 0; at + kGroup < size; at += kGroup) copy(at);
  copy(size - kGroup);  // may overlap the group before
  return IsPlain(special);
}

/// The number of plain characters at the beginning of `text`, or less: whole groups of eight.
std::size_t PlainLength(std::string_view text);
/// @}

/// `AppendUtf8` of texts that are not plain, out of the way of those that are.
template <typename Special>
[[gnu::cold, gnu::noinline]] void AppendUnplain(text::TextBuffer& out, std::string_view text,
                                                const Special& special) {
  std::size_t plain = PlainLength(text);  // characters to append verbatim
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

/// Appends `text` as UTF-8; bytes that are not UTF-8 become U+FFFD. Control characters, double
/// quotes and backslashes are passed to `special` instead.
template <typename Special>
void AppendUtf8(text::TextBuffer& out, std::string_view text, const Special& special) {
  char* const to = out.Reserve(text.size());
  if (CopyIfPlain(to, text)) return out.EndAt(to + text.size());
  AppendUnplain(out, text, special);
}

}  // namespace module_memory
}  // namespace cable_info
