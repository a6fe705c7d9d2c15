#pragma once

// What modules of SFF-8472 rev 12.4 advertise of their diagnostics, for the decoder, the records
// and the plan of pages.
//
// Internal; not installed.

#include <string_view>

#include "cable_info/module_memory/memory_map.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// Diagnostics at A2h, of a kind that can be read.
inline Advertised HasDiagnostics(const ModuleImage& image) {
  return AskBit(image, Page::kA0, 92, 6);
}

/// The warning of a module that has an A2h, but not those.
inline constexpr std::string_view kA2NotUsedText =
    "A2h was read, but the module states that it has no diagnostics; A2h is not used";

/// The values of A2h are internally calibrated.
inline Advertised IsCalibratedInternally(const ModuleImage& image) {
  return AskBit(image, Page::kA0, 92, 5);
}

/// The values of A2h need the constants of A2h.
inline Advertised IsCalibratedExternally(const ModuleImage& image) {
  return AskBit(image, Page::kA0, 92, 4);
}

/// A2h can be read only after a change of the address.
inline Advertised NeedsAddressChange(const ModuleImage& image) {
  return AskBit(image, Page::kA0, 92, 2);
}

/// The values of A2h are not valid yet.
inline Advertised IsNotReady(const ModuleImage& image) { return AskBit(image, Page::kA2, 110, 0); }

}  // namespace module_memory
}  // namespace cable_info
