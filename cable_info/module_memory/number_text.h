#pragma once

// Numbers as texts, for the JSON and the data sheet of a module.
//
// Internal; not installed.

#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The size of the longest text of `WriteShortest`.
inline constexpr std::size_t kMaxNumberSize = 32;
/// The shortest decimal number that reads back as `value`, as in JSON; "null" for NaN and
/// infinities.
char* WriteShortest(char* to, double value);

/// A number for people: as `WriteShortest` for whole numbers and for those that eight decimals
/// represent exactly, and rounded to six significant digits for all others.
char* WriteRounded(char* to, double value);

inline void AppendShortest(text::TextBuffer& out, double value) {
  out.EndAt(WriteShortest(out.Reserve(kMaxNumberSize), value));
}
inline void AppendRounded(text::TextBuffer& out, double value) {
  out.EndAt(WriteRounded(out.Reserve(kMaxNumberSize), value));
}

}  // namespace module_memory
}  // namespace cable_info
