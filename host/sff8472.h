#pragma once

#include <memory>
#include <span>

#include "cable_info/phy_cable_record.h"
#include "host/field_map.h"

namespace host {

/// The cable of an SFP, SFP+ or SFP28 module, whose memory is that of SFF-8472, with or without the
/// diagnostics of A2h.
std::unique_ptr<cable_info::PhyCableRecord> CableFromSff8472(const ModuleImage& image);

/// The checksums of SFF-8472.
std::span<const Checksum> Sff8472Checksums();

}  // namespace host
