#include "cable_info/version.h"

namespace cable_info {

std::string_view LibraryVersion() { return kVersion; }

}  // namespace cable_info
