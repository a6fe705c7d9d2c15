#pragma once

#include <memory>

#include "cable_info/cable_record.h"
#include "cable_info/module_memory/field_map.h"

namespace cable_info::module_memory {

/// The cable of a QSFP, QSFP+ or QSFP28 module, whose memory is that of SFF-8636. `identifier`
/// is the code that chose this family.
std::unique_ptr<cable_info::CableRecord> CableFromSff8636(const ModuleImage& image,
                                                          std::uint8_t identifier);

/// The checksums of SFF-8636.
ChecksumList Sff8636Checksums();

/// True when the module says that it has pages 00h only, behind the lower one.
bool IsFlatSff8636(const ModuleImage& image);

}  // namespace cable_info::module_memory
