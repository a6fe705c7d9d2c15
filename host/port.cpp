#include "host/port.h"

#include "cable_info/value_format.h"

namespace host {

std::string GuidText(std::uint64_t guid) {
  constexpr int kHalfDigits = 8;
  return cable_info::ToText([guid](cable_info::TextBuffer& out) {
    out.AppendPrefixedHex(static_cast<std::uint32_t>(guid >> 32), kHalfDigits);
    out.AppendHex(static_cast<std::uint32_t>(guid), kHalfDigits);
  });
}

}  // namespace host
