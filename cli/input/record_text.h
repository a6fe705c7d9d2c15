#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cable_info/module_memory/module_image.h"
#include "cable_info/module_memory/module_listing.h"
#include "cli/json_text.h"

namespace cli {

/// \name The value of "module_memory" in a port record
/// It reads back as the same bytes.
/// @{
void WriteMemory(JsonText& json, const cable_info::module_memory::DumpBytes& dump);
void WriteMemory(JsonText& json, const cable_info::ModuleImage& memory);
/// @}

/// \name The port record of a module that was given as a dump, or page by page
/// @{
std::string RecordOf(std::string_view label, std::uint32_t number,
                     const cable_info::module_memory::DumpBytes& dump);
std::string RecordOf(std::string_view label, std::uint32_t number,
                     const cable_info::ModuleImage& memory);
/// @}

}  // namespace cli
