#pragma once

#include <string>

#include "cable_info/module_memory/module_listing.h"

namespace cli {

/// The bytes of the dump at `path`, "-" for standard input. Throws `std::system_error` and
/// `BadModule`.
cable_info::module_memory::DumpBytes ReadDump(const std::string& path);

/// The same for a path from untrusted data: reads only a regular file, and never blocks. Throws
/// `std::system_error` and `BadModule`.
cable_info::module_memory::DumpBytes ReadRegularDump(const std::string& path);

}  // namespace cli
