#pragma once

// A text that grows by appending, without an allocation for texts of usual size.
//
//   TextBuffer out;
//   out.Append("PN: ").AppendDecimal(42).Append('\n');
//   os << out.view();
//
// The first 4096 characters are stored in the object itself, which is meant for the stack: a row
// has about 1,000 characters and a report about 2,000, so neither allocates. Longer texts move to
// the heap.
//
// Writers that know the largest size of a cell or a line reserve it once and then write through a
// pointer:
//
//   out.AppendWithin(kMaxDecimalSize + 1, [=](char* to) {
//     to = WriteDecimal(to, value);
//     *to = ',';
//     return to + 1;
//   });
//
// Invariant: begin_ <= end_ <= limit_; the text is [begin_, end_), and [end_, limit_) is free.
//
// Internal; not installed.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "cable_info/text/numbers.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

/// Not copyable; one thread at a time.
class TextBuffer {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): see inline_
  TextBuffer() : begin_(inline_), end_(inline_), limit_(inline_ + sizeof(inline_)) {}
  TextBuffer(const TextBuffer&) = delete;
  TextBuffer& operator=(const TextBuffer&) = delete;
  TextBuffer(TextBuffer&&) = delete;
  TextBuffer& operator=(TextBuffer&&) = delete;
  ~TextBuffer() = default;

  /// True when `count` more characters fit without moving the text.
  bool HasCapacity(std::size_t count) const {
    return static_cast<std::size_t>(limit_ - end_) >= count;
  }
  /// Makes `count` characters free after the text, and returns its end, where they begin.
  char* Reserve(std::size_t count) {
    if (!HasCapacity(count)) Grow(count);
    return end_;
  }
  /// The end of the text.
  char* end() { return end_; }
  /// The character at `offset`, which may be that at the end. Valid until the next append.
  char* At(std::size_t offset) { return begin_ + offset; }
  /// The offset of a character for `At`, which outlasts appends.
  std::size_t OffsetOf(const char* at) const { return static_cast<std::size_t>(at - begin_); }
  /// Moves the end of the text to `end`, up to which reserved characters were written.
  void EndAt(char* end) { end_ = end; }

  /// Appends what `write(to)` writes from `to`, where `capacity` characters are free, up to the
  /// pointer that it returns.
  template <typename Write>
  TextBuffer& AppendWithin(std::size_t capacity, Write&& write) {
    EndAt(write(Reserve(capacity)));
    return *this;
  }

  /// One character.
  TextBuffer& Append(char c) {
    char* const to = Reserve(1);
    *to = c;
    end_ = to + 1;
    return *this;
  }

  /// `text`, verbatim.
  [[gnu::always_inline]] TextBuffer& Append(std::string_view text) {
    end_ = WriteText(Reserve(text.size()), text);
    return *this;
  }

  /// The first `size` characters of `text`. All N are copied, since a copy of known size is a few
  /// moves and one of unknown size a call.
  template <std::size_t N>
  TextBuffer& AppendPart(const std::array<char, N>& text, std::size_t size = N) {
    char* const to = Reserve(N);
    std::char_traits<char>::copy(to, text.data(), N);
    end_ = to + size;
    return *this;
  }

  /// `text` between double quotes; nothing inside is escaped.
  TextBuffer& AppendQuoted(std::string_view text) { return Append('"').Append(text).Append('"'); }

  /// All digits.
  TextBuffer& AppendDecimal(std::uint32_t value) {
    end_ = WriteDecimal(Reserve(kMaxDecimalSize), value);
    return *this;
  }
  /// All digits, after "-" when `value` is negative.
  TextBuffer& AppendDecimal(std::int64_t value);
  /// All digits, after "-" when `value` is negative.
  TextBuffer& AppendDecimal(int value) {
    return value < 0 ? AppendDecimal(std::int64_t{value})
                     : AppendDecimal(static_cast<std::uint32_t>(value));
  }

  /// Lower-case hexadecimal, filled with "0" to at least `width` digits.
  TextBuffer& AppendHex(std::uint32_t value, int width) {
    end_ = WriteHex(Reserve(MaxHexSize(width)), value, width);
    return *this;
  }

  /// "0x" and `AppendHex`.
  TextBuffer& AppendPrefixedHex(std::uint32_t value, int width) {
    end_ = WritePrefixedHex(Reserve(MaxPrefixedHexSize(width)), value, width);
    return *this;
  }

  /// Three decimals, as `printf` writes "%.3f" in the C locale.
  TextBuffer& AppendFixed3(double value) {
    end_ = WriteFixed3(Reserve(kMaxFixed3Size), value);
    return *this;
  }

  /// A number of tenths: "12.5", and without decimals when it is whole: "12".
  TextBuffer& AppendTenths(std::uint32_t tenths) {
    AppendDecimal(tenths / 10);
    const std::uint32_t rest = tenths % 10;
    return rest == 0 ? *this : Append('.').Append(static_cast<char>('0' + rest));
  }

  /// At most six significant digits, as `printf` writes "%g" in the C locale.
  TextBuffer& AppendGeneral(double value);

  /// Removes everything after the first `size` characters.
  void Truncate(std::size_t size) {
    if (size < this->size()) end_ = begin_ + size;
  }

  /// The number of characters.
  std::size_t size() const { return static_cast<std::size_t>(end_ - begin_); }
  /// The text. Valid until the next append.
  std::string_view view() const { return {begin_, size()}; }

 private:
  [[gnu::cold, gnu::noinline]] void Grow(std::size_t count);

  char* begin_;
  char* end_;
  char* limit_;
  std::unique_ptr<char[]> heap_;
  char inline_[4096];  // left uninitialized: clearing it would cost more than writing a row
};

/// The text that `append(out, args...)` appends, as a string.
template <typename Append, typename... Args>
std::string ToText(Append&& append, const Args&... args) {
  TextBuffer out;
  append(out, args...);
  return std::string(out.view());
}

}  // namespace text
}  // namespace cable_info
