#include "cable_info/text/text_buffer.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

void TextBuffer::Grow(std::size_t count) {
  const std::size_t used = size();
  const std::size_t capacity =
      std::max(2 * static_cast<std::size_t>(limit_ - begin_), used + count);
  std::unique_ptr<char[]> grown(new char[capacity]);
  std::copy_n(begin_, used, grown.get());
  heap_ = std::move(grown);
  begin_ = heap_.get();
  end_ = begin_ + used;
  limit_ = begin_ + capacity;
}

TextBuffer& TextBuffer::AppendDecimal(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  if (value < 0) Append('-');
  end_ = WriteDecimal(Reserve(kMaxDecimalSize), value < 0 ? 0 - bits : bits);
  return *this;
}

TextBuffer& TextBuffer::AppendGeneral(double value) {
  constexpr int kPrecision = 6;  // a stream's default
  constexpr std::size_t kMaxSize = 32;
  char* const begin = Reserve(kMaxSize);
  end_ = std::to_chars(begin, begin + kMaxSize, value, std::chars_format::general, kPrecision).ptr;
  return *this;
}

}  // namespace text
}  // namespace cable_info
