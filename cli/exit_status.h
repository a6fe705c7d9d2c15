#pragma once

#include <algorithm>

namespace cli {

/// The program's exit statuses; when several apply, the highest one is returned.
enum class ExitStatus {
  kGood = 0,
  kBadPorts = 1,    ///< some ports were bad and were left out
  kUsage = 2,       ///< the command line is wrong
  kFileFailed = 3,  ///< a file could not be read or written
  kInternal = 4,    ///< out of memory, or an error of the program's own
  kWarning = 5,     ///< `check`: the worst verdict is a warning
  kCritical = 6,    ///< `check`: the worst verdict is critical
};

constexpr ExitStatus Worse(ExitStatus a, ExitStatus b) { return std::max(a, b); }

}  // namespace cli
