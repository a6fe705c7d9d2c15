#pragma once

#include "cable_info/text/text_buffer.h"

namespace cable_info::module_memory {

/// The room of `WriteShortest`.
inline constexpr std::size_t kShortestRoom = 32;
/// The shortest decimal number that reads back as `value`, as JSON has numbers; "null" for what is
/// no number.
char* WriteShortest(char* to, double value);

inline void AppendShortest(text::TextBuffer& out, double value) {
  out.EndAt(WriteShortest(out.Reserve(kShortestRoom), value));
}

}  // namespace cable_info::module_memory
