#pragma once

// The lanes that a CMIS module has.
//
// Internal; not installed.

#include <vector>

#include "cable_info/module_memory/module_info.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The lanes of each bank: bit n is lane n + 1 of the bank.
struct LaneLayout {
  unsigned banks = 1;
  unsigned host = 0;
  unsigned media = 0;
};

/// The banks of lanes: 01h:142.1-0, and 01h:174.4-0 from CMIS 5.4 on. If page 01h was not read: the
/// banks that were.
unsigned BanksOf(const ModuleImage& image);

/// The lanes on which an application can run, limited to those of the form factor; all lanes of the
/// form factor if no application specifies them. Media lanes marked unsupported in 00h:210 are
/// excluded. `identifier` is the one that decided the family.
LaneLayout LanesOf(const ModuleImage& image, unsigned identifier,
                   const std::vector<Application>& applications);

}  // namespace module_memory
}  // namespace cable_info
