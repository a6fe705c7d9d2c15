#pragma once

#include <vector>

#include "cable_info/module_memory/module_memory.h"
#include "cli/message.h"

namespace cli {

/// Appends the remarks of a reading as messages. Throws `BadModule` for a wrong checksum that is
/// refused.
void AddRemarks(const cable_info::module_memory::ModuleReading& reading,
                cable_info::module_memory::ChecksumPolicy checksums,
                std::vector<Message>& messages);

}  // namespace cli
