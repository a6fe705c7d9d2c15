#pragma once

#include "cable_info/value_format.h"

namespace cable_info::module_memory {

/// The room of `WriteShortest`.
inline constexpr std::size_t kShortestRoom = 32;
/// The shortest decimal number that reads back as `value`, as JSON has numbers; "null" for what is
/// no number.
char* WriteShortest(char* to, double value);

inline void AppendShortest(TextBuffer& out, double value) {
  out.EndAt(WriteShortest(out.Room(kShortestRoom), value));
}

}  // namespace cable_info::module_memory
