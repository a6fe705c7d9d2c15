#include "cli/json_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

#include "cli/utf8.h"

namespace cli {

namespace {

constexpr std::uint32_t kFirstBeyondAscii = 0x7F;  // DEL is escaped, too

bool IsPlain(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x20 && byte < kFirstBeyondAscii && c != '"' && c != '\\';
}

}  // namespace

void AppendShortestFixed(cable_info::text::TextBuffer& out, double value) {
  constexpr std::size_t kCapacity = 1100;  // the smallest number has 1074 decimals
  out.AppendWithin(kCapacity, [value](char* to) {
    return std::to_chars(to, to + kCapacity, value, std::chars_format::fixed).ptr;
  });
}

void JsonText::Integer(std::uint32_t value) {
  Separate();
  out_.AppendDecimal(value);
}

void JsonText::Number(float value) {
  if (!std::isfinite(value)) return Null();
  Separate();
  constexpr std::size_t kCapacity = 32;
  out_.AppendWithin(kCapacity,
                    [value](char* to) { return std::to_chars(to, to + kCapacity, value).ptr; });
}

void JsonText::NumberWithPoint(float value) {
  const std::size_t before = out_.size();
  Number(value);
  const std::string_view written = out_.view().substr(before);
  if (written.find_first_of(".enN") == std::string_view::npos) out_.Append(".0");
}

void JsonText::Rounded(double value) {
  if (!std::isfinite(value)) return Null();
  Separate();
  constexpr int kDecimals = 3;
  constexpr std::size_t kCapacity = 330;
  out_.AppendWithin(kCapacity, [value](char* to) {
    char* end = std::to_chars(to, to + kCapacity, value, std::chars_format::fixed, kDecimals).ptr;
    while (*(end - 1) == '0') --end;
    return *(end - 1) == '.' ? end - 1 : end;
  });
}

void JsonText::Bytes(std::string_view text) {
  Separate();
  out_.Append('"');
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain < text.size() && IsPlain(text[plain])) ++plain;
    out_.Append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    AppendCodePoint(static_cast<unsigned char>(text.front()));
    text.remove_prefix(1);
  }
  out_.Append('"');
}

void JsonText::Utf8(std::string_view text) {
  Separate();
  out_.Append('"');
  while (!text.empty()) {
    const Utf8Character byte{static_cast<unsigned char>(text.front()), 1};
    const Utf8Character character = FirstUtf8Character(text).value_or(byte);
    if (IsPlain(text.front())) {
      out_.Append(text.front());
    } else {
      AppendCodePoint(character.code);
    }
    text.remove_prefix(character.size);
  }
  out_.Append('"');
}

void JsonText::Plain(std::string_view text) {
  Separate();
  out_.Append('"').Append(text).Append('"');
}

void JsonText::AppendCodePoint(std::uint32_t code) {
  constexpr int kDigits = 4;
  switch (code) {
    case '"':
      out_.Append("\\\"");
      return;
    case '\\':
      out_.Append("\\\\");
      return;
    case '\b':
      out_.Append("\\b");
      return;
    case '\f':
      out_.Append("\\f");
      return;
    case '\n':
      out_.Append("\\n");
      return;
    case '\r':
      out_.Append("\\r");
      return;
    case '\t':
      out_.Append("\\t");
      return;
    default:
      break;
  }
  constexpr std::uint32_t kSupplement = 0x10000;
  if (code < kSupplement) {
    out_.Append("\\u").AppendHex(code, kDigits);
    return;
  }
  code -= kSupplement;
  out_.Append("\\u").AppendHex(0xD800 | code >> 10, kDigits);
  out_.Append("\\u").AppendHex(0xDC00 | (code & 0x3FF), kDigits);
}

}  // namespace cli
