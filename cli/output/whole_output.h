#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/output/output_file.h"

namespace cli {

/// What becomes of an output that was written.
enum class Ending { kCommit, kDiscard };

/// Reports that a file could not be read or written; returns the status of that.
ExitStatus FileFailed(const std::string& name, const std::error_code& error);

/// Lets `write` fill the output at `path` and commits or discards it. Returns the status of the
/// output alone: a reader that closed the pipe is no error.
ExitStatus WriteWhole(const std::string& path, const std::function<Ending(OutputFile&)>& write);

/// Lets `write` write to standard output.
ExitStatus WriteToStandardOutput(const std::function<void(std::ostream&)>& write);

}  // namespace cli
