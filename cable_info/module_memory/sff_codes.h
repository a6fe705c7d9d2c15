#pragma once

// Codes that more than one module family uses, for decoders and records.
//
// Internal; not installed.

#include <cstdint>
#include <string>

#include "cable_info/module_memory/memory_map.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The bit of `ib_compliance_code` for a host electrical interface (SFF-8024 rev 4.13, table 4-5);
/// 0 for interfaces that are not InfiniBand's. The codes of SDR to NDR follow each other as the
/// bits do.
constexpr std::uint8_t InfiniBandSpeedOfHostInterface(std::uint8_t code) {
  constexpr std::uint8_t kSdr = 0x2C;
  constexpr std::uint8_t kNdr = 0x32;
  return code >= kSdr && code <= kNdr ? static_cast<std::uint8_t>(1U << (code - kSdr))
                                      : std::uint8_t{0};
}

/// \name The highest codes of equalizers that are numbers of dB; others are reserved
/// @{
inline constexpr unsigned kHighestInputEq = 10;
inline constexpr unsigned kHighestEmphasis = 7;
/// @}

/// "RX output emphasis: code 9 is not a value in dB".
inline std::string NoDecibelText(std::string_view label, unsigned code) {
  return std::string(label) + ": code " + std::to_string(code) + " is not a value in dB";
}

/// Removes a number of dB above the highest one, with a warning.
inline void DropReserved(Decoding& to, Field field, unsigned highest) {
  const FieldValue value = to.info[field];
  if (!value.IsPresent() || value.code() <= highest) return;
  to.Warn(NoDecibelText(DescribeField(field).label, value.code()));
  to.info.SetState(field, FieldState::kNotImplemented);
}

}  // namespace module_memory
}  // namespace cable_info
