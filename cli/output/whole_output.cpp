#include "cli/output/whole_output.h"

#include <cerrno>
#include <ostream>

#include "cli/message.h"

namespace cli {

ExitStatus FileFailed(const std::string& name, const std::error_code& error) {
  PrintError("cableinfo: " + name + ": " + error.message());
  return ExitStatus::kFileFailed;
}

ExitStatus WriteWhole(const std::string& path, const std::function<Outcome(OutputFile&)>& write) {
  Outcome outcome;
  try {
    OutputFile output(path);
    outcome = write(output);
    // What went to standard output cannot be taken back. After a failed write, the commit reports
    // the error.
    if (outcome.is_whole || output.has_failed() || path.empty()) output.Commit();
  } catch (const std::system_error& error) {
    if (error.code().value() == EPIPE) return outcome.status;
    return Worse(outcome.status, FileFailed(path.empty() ? "standard output" : path, error.code()));
  }
  return outcome.status;
}

ExitStatus WriteToStandardOutput(const std::function<void(std::ostream&)>& write) {
  return WriteWhole({}, [&](OutputFile& output) {
    std::ostream os(&output);
    write(os);
    return Outcome();
  });
}

}  // namespace cli
