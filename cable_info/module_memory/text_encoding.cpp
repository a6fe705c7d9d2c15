#include "cable_info/module_memory/text_encoding.h"

#include <cstdint>
#include <cstring>

namespace cable_info::module_memory {

namespace {

// The bits with which a character of `length` bytes begins, and the lowest code point that needs
// that many.
struct Utf8Form {
  std::size_t length;
  unsigned mask;
  unsigned lead;
  unsigned lowest;
};

constexpr Utf8Form kForms[] = {
    {1, 0x80, 0x00, 0x0},
    {2, 0xE0, 0xC0, 0x80},
    {3, 0xF0, 0xE0, 0x800},
    {4, 0xF8, 0xF0, 0x10000},
};

}  // namespace

bool IsAscii(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::uint64_t any = 0;
  std::uint64_t bytes = 0;
  std::size_t at = 0;
  for (; at + sizeof(bytes) <= text.size(); at += sizeof(bytes)) {
    std::memcpy(&bytes, text.data() + at, sizeof(bytes));
    any |= bytes;
  }
  for (; at < text.size(); ++at) any |= static_cast<unsigned char>(text[at]);
  return (any & kHighBits) == 0;
}

std::size_t PlainLength(std::string_view text) {
  std::size_t at = 0;
  std::uint64_t bytes = 0;
  for (; at + sizeof(bytes) <= text.size(); at += sizeof(bytes)) {
    std::memcpy(&bytes, text.data() + at, sizeof(bytes));
    if (!IsPlain(SpecialBits(bytes))) return at;
  }
  return at;
}

std::size_t Utf8Length(std::string_view text) {
  constexpr unsigned kHighest = 0x10FFFF;
  constexpr unsigned kFirstSurrogate = 0xD800;
  constexpr unsigned kLastSurrogate = 0xDFFF;
  if (text.empty()) return 0;
  const auto lead = static_cast<unsigned char>(text[0]);
  for (const Utf8Form& form : kForms) {
    if ((lead & form.mask) != form.lead) continue;
    if (text.size() < form.length) return 0;
    unsigned point = lead & ~form.mask;
    for (std::size_t i = 1; i < form.length; ++i) {
      const auto byte = static_cast<unsigned char>(text[i]);
      if ((byte & 0xC0U) != 0x80U) return 0;
      point = point << 6U | (byte & 0x3FU);
    }
    const bool is_surrogate = point >= kFirstSurrogate && point <= kLastSurrogate;
    return point < form.lowest || point > kHighest || is_surrogate ? 0 : form.length;
  }
  return 0;
}

}  // namespace cable_info::module_memory
