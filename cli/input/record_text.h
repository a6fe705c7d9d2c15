#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cable_info/module_memory/module_listing.h"
#include "cli/output/json_text.h"

namespace cli {

/// A dump as the value of "module_memory" in a port record, which reads back as the same bytes.
void WriteMemory(JsonText& json, const cable_info::module_memory::DumpBytes& dump);

/// The port record of a module that was given as a dump.
std::string RecordOf(std::string_view label, std::uint32_t number,
                     const cable_info::module_memory::DumpBytes& dump);

}  // namespace cli
