#include "host/port.h"

namespace host {

void AppendGuid(cable_info::TextBuffer& out, std::uint64_t guid) {
  constexpr int kHalfDigits = 8;
  out.AppendPrefixedHex(static_cast<std::uint32_t>(guid >> 32), kHalfDigits);
  out.AppendHex(static_cast<std::uint32_t>(guid), kHalfDigits);
}

std::string GuidText(std::uint64_t guid) { return cable_info::ToText(AppendGuid, guid); }

}  // namespace host
