#pragma once

#include <memory>

#include "cable_info/module_memory/field_map.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info::module_memory {

/// The cable of an SFP, SFP+ or SFP28 module, whose memory is that of SFF-8472, with or without the
/// diagnostics of A2h.
std::unique_ptr<cable_info::PhyCableRecord> CableFromSff8472(const ModuleImage& image);

/// The checksums of SFF-8472.
ChecksumList Sff8472Checksums();

}  // namespace cable_info::module_memory
