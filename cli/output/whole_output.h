#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/output/output_file.h"

namespace cli {

/// How a run ended, apart from failures of its output.
struct Outcome {
  ExitStatus status = ExitStatus::kGood;
  bool is_whole = true;  ///< false when the run stopped before the end of its input
};

/// Reports that a file could not be read or written; returns the status of that.
ExitStatus FileFailed(const std::string& name, const std::error_code& error);

/// Lets `write` fill the output at `path`, standard output where that is empty, and commits it. An
/// output that is not whole must not pass for the whole one under a file's name: it is discarded,
/// and an old file is kept. A reader that closed the pipe is no error.
ExitStatus WriteWhole(const std::string& path, const std::function<Outcome(OutputFile&)>& write);

/// Lets `write` write to standard output.
ExitStatus WriteToStandardOutput(const std::function<void(std::ostream&)>& write);

}  // namespace cli
