#pragma once

#include <cstdint>
#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/input/port.h"

namespace cli {

/// The names of pages, for messages.
inline constexpr const char* kPageNames =
    "the pages are lower, 00 to ff, with a bank as in 11.1, and a0 and a2 of SFP modules";

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
