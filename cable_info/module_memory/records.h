#pragma once

// Records from the memory of a module, one function per family, for `ReadModule`.
//
// Internal; not installed.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/module_memory/module_image.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// \name The records of the module families
/// The image is that of a `ModuleMemory`. Values for which the record has no field are reported in
/// `remarks`.
/// @{
/// `identifier` is the code that determined the family.
std::unique_ptr<CableRecord> CableFromSff8636(const ModuleImage& image, std::uint8_t identifier,
                                              std::vector<std::string>& remarks);
/// `form_factor` is the `cable_identifier` of the record.
std::unique_ptr<PhyCableRecord> CableFromCmis(const ModuleImage& image, std::uint8_t form_factor,
                                              std::vector<std::string>& remarks);
std::unique_ptr<PhyCableRecord> CableFromSff8472(const ModuleImage& image,
                                                 std::vector<std::string>& remarks);
/// @}

}  // namespace module_memory
}  // namespace cable_info
