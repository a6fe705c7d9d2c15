#pragma once

#include <cstdint>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/input/port.h"

namespace cli {

/// \name The memory of a module
/// Decodes it as `use` asks: into the record of its family, which is returned, into `info`, to
/// which `port.module` points then, or both. Throws `BadModule`.
/// @{
cable_info::module_memory::ModuleReading DecodeModule(const cable_info::ModuleImage& image,
                                                      ModuleUse use, cable_info::ModuleInfo& info,
                                                      Port& port);
cable_info::module_memory::ModuleReading DecodeModule(
    const cable_info::module_memory::DumpBytes& dump, ModuleUse use, cable_info::ModuleInfo& info,
    Port& port);
cable_info::module_memory::ModuleReading DecodeModule(const std::vector<std::uint8_t>& dump,
                                                      ModuleUse use, cable_info::ModuleInfo& info,
                                                      Port& port);
/// @}

}  // namespace cli
