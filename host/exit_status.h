#pragma once

namespace host {

/// What the program's exit status tells.
enum class ExitStatus {
  kGood = 0,
  kBadPorts = 1,    ///< some ports were bad and left out
  kUsage = 2,       ///< the command line was not understood
  kFileFailed = 3,  ///< a file could not be read or written
  kInternal = 4,    ///< out of memory, or an error of the program's own
};

}  // namespace host
