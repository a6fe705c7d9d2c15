#pragma once

// Internal; not installed.

#include <cstdint>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The bit of `ib_compliance_code` for a host electrical interface of SFF-8024 rev 4.13, table 4-5,
/// for; 0 for interfaces that are not InfiniBand's. The codes of SDR to NDR follow each other as
/// the bits do.
constexpr std::uint8_t InfiniBandSpeedOfHostInterface(std::uint8_t code) {
  constexpr std::uint8_t kSdr = 0x2C;
  constexpr std::uint8_t kNdr = 0x32;
  return code >= kSdr && code <= kNdr ? static_cast<std::uint8_t>(1U << (code - kSdr))
                                      : std::uint8_t{0};
}

}  // namespace module_memory
}  // namespace cable_info
