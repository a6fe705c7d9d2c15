#pragma once

#include <string>

#include "cable_info/module_memory/module_listing.h"

namespace cli {

/// The bytes of the dump at `path`, "-" for standard input. Throws `std::system_error` and
/// `BadModule`.
cable_info::module_memory::DumpBytes ReadDump(const std::string& path);

/// The same for a name that comes with the data: only a regular file is read, and nothing is waited
/// for. Throws `std::system_error` and `BadModule`.
cable_info::module_memory::DumpBytes ReadRegularDump(const std::string& path);

}  // namespace cli
