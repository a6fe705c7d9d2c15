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

/// \name The exit statuses of `check --plugin`, which monitoring systems define
/// @{
inline constexpr auto kPluginOk = static_cast<ExitStatus>(0);
inline constexpr auto kPluginWarning = static_cast<ExitStatus>(1);
inline constexpr auto kPluginCritical = static_cast<ExitStatus>(2);
inline constexpr auto kPluginUnknown = static_cast<ExitStatus>(3);
/// @}

constexpr ExitStatus Worse(ExitStatus a, ExitStatus b) { return std::max(a, b); }

}  // namespace cli
