#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cable_info/module_memory/field_map.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info::module_memory {

/// The cable of a CMIS module (QSFP-DD, OSFP, SFP-DD, DSFP, QSFP with CMIS). `form_factor` is the
/// record's `cable_identifier`. What there is to remark goes to `remarks`.
std::unique_ptr<cable_info::PhyCableRecord> CableFromCmis(const ModuleImage& image,
                                                          std::uint8_t form_factor,
                                                          std::vector<std::string>& remarks);

/// The checksums of CMIS.
ChecksumList CmisChecksums();

/// True when the module says that it has page 00h only, behind the lower one.
bool IsFlatCmis(const ModuleImage& image);

}  // namespace cable_info::module_memory
