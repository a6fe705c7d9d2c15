#pragma once

// Which lanes a CMIS module has.

#include <cstdint>
#include <vector>

#include "cable_info/module_memory/module_info.h"

namespace cable_info::module_memory {

inline constexpr unsigned kLanesPerBank = 8;

/// The lanes of each bank: bit n is lane n + 1 of the bank.
struct LaneLayout {
  unsigned banks = 1;
  unsigned host = 0;
  unsigned media = 0;
};

/// The banks of lanes: 01h:142.1-0, and 01h:174.4-0 from CMIS 5.4 on. Those that were read when
/// page 01h was not.
unsigned BanksOf(const ModuleImage& image);

/// The lanes on which an application can run, as far as the form factor has them; all of the form
/// factor when no application says. Media lanes are those that 00h:210 leaves.
LaneLayout LanesOf(const ModuleImage& image, const std::vector<Application>& applications);

}  // namespace cable_info::module_memory
