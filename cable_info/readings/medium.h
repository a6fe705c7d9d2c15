#pragma once

// The medium of a module by its technology code, and what follows from it, for the readings of all
// sources.
// Internal; not installed.

#include <optional>

#include "cable_info/readings/readings.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/value_format.h"

namespace [[gnu::visibility("hidden")]] cable_info {

/// The medium of a technology: a code of `transmitter_technology_arr`, or a later one of CMIS 5.x.
inline Medium MediumOfTechnology(unsigned technology) {
  if (decode::IsPassiveCopperTechnology(technology)) return Medium::kPassiveCopper;
  return decode::IsCopperTechnology(technology) ? Medium::kActiveCopper : Medium::kOptical;
}

constexpr bool IsCopper(Medium medium) {
  return medium == Medium::kPassiveCopper || medium == Medium::kActiveCopper;
}

/// True for a cable, which has a length: copper, or no separable connector.
constexpr bool IsCable(Medium medium, std::optional<unsigned> connector) {
  return IsCopper(medium) || connector == kNoSeparableConnector;
}

}  // namespace cable_info
