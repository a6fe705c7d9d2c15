#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string_view>

#include "cable_info/text/text_buffer.h"

namespace cli {

/// Appends the shortest decimal number without exponent that reads back as `value`, which must be
/// finite.
void AppendShortestFixed(cable_info::text::TextBuffer& out, double value);

/// Writes JSON on one line directly into a buffer, in ASCII. Commas are added; the caller must
/// close every object and array.
class [[gnu::visibility("hidden")]] JsonText {
 public:
  /// Appends to `out`, which must outlive the text.
  explicit JsonText(cable_info::text::TextBuffer & out) : out_(out) {}

  void BeginObject() { Open('{'); }
  void EndObject() { Close('}'); }
  void BeginArray() { Open('['); }
  void EndArray() { Close(']'); }

  /// The key of the next value; it is written verbatim.
  JsonText& Key(std::string_view key) {
    Separate();
    out_.Append('"').Append(key).Append("\":");
    needs_comma_ = false;
    return *this;
  }

  /// \name Values
  /// @{
  void Null() { Verbatim("null"); }
  void Bool(bool value) { Verbatim(value ? "true" : "false"); }
  void Integer(std::uint32_t value);
  /// The shortest text that reads back as the same number; null for NaN and infinities.
  void Number(float value);
  /// The same, always with a fraction: "0.0".
  void NumberWithPoint(float value);
  /// At most three decimals; null for NaN and infinities.
  void Rounded(double value);
  /// Bytes of no known encoding: each becomes the code point of its number.
  void Bytes(std::string_view text);
  /// UTF-8; a byte that is not part of a character becomes the code point of its number.
  void Utf8(std::string_view text);
  /// Text that needs no escapes.
  void Plain(std::string_view text);
  /// A JSON value, verbatim.
  void Verbatim(std::string_view json) {
    Separate();
    out_.Append(json);
  }
  /// @}

  /// \name Values that may be missing, and are null then
  /// @{
  template <std::unsigned_integral T>
  void OrNull(std::optional<T> value) {
    value ? Integer(*value) : Null();
  }
  void OrNull(std::optional<float> value) { value ? Number(*value) : Null(); }
  void OrNull(std::optional<bool> value) { value ? Bool(*value) : Null(); }
  /// Null for an empty text.
  void BytesOrNull(std::string_view text) { text.empty() ? Null() : Bytes(text); }
  /// @}

 private:
  void Separate() {
    if (needs_comma_) out_.Append(',');
    needs_comma_ = true;
  }
  void Open(char bracket) {
    Separate();
    out_.Append(bracket);
    needs_comma_ = false;
  }
  void Close(char bracket) {
    out_.Append(bracket);
    needs_comma_ = true;
  }
  void AppendCodePoint(std::uint32_t code);

  cable_info::text::TextBuffer& out_;
  bool needs_comma_ = false;
};

}  // namespace cli
