#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/output/output_file.h"

namespace cli {

/// How an output that was written ends.
enum class Ending { kCommit, kDiscard };

/// Reports that a file could not be read or written; returns the status of that.
ExitStatus FileFailed(const std::string& name, const std::error_code& error);

/// Calls `write` with the output at `path`, and commits or discards it. Returns the status of the
/// output alone; a reader that closed the pipe is not an error.
ExitStatus WriteWhole(const std::string& path, const std::function<Ending(OutputFile&)>& write);

/// Calls `write` with a stream to the output at `path`, and commits it.
ExitStatus WriteTo(const std::string& path, const std::function<void(std::ostream&)>& write);

}  // namespace cli
