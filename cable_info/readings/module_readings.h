#pragma once

/// \file
/// The readings of a module whose memory was read.

#include "cable_info/readings/readings.h"

namespace cable_info {

class ModuleInfo;

/// What a module's memory reports, with all four thresholds and flags of each monitor, auxiliary
/// monitors and VDM observables. Lanes beyond `kMaxLanes` are left out. A reading keeps the state
/// that its field has.
Readings ReadingsOf(const ModuleInfo& module);

}  // namespace cable_info
