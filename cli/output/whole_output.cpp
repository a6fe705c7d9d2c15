#include "cli/output/whole_output.h"

#include <cerrno>
#include <ostream>

#include "cli/message.h"

namespace cli {

ExitStatus FileFailed(const std::string& name, const std::error_code& error) {
  PrintError("cableinfo: " + name + ": " + error.message());
  return ExitStatus::kFileFailed;
}

ExitStatus WriteWhole(const std::string& path, const std::function<Ending(OutputFile&)>& write) {
  try {
    OutputFile output(path);
    if (write(output) == Ending::kCommit) output.Commit();
  } catch (const std::system_error& error) {
    if (error.code().value() == EPIPE) return ExitStatus::kGood;
    return FileFailed(IsStandardOutput(path) ? "standard output" : path, error.code());
  }
  return ExitStatus::kGood;
}

ExitStatus WriteTo(const std::string& path, const std::function<void(std::ostream&)>& write) {
  return WriteWhole(path, [&](OutputFile& output) {
    std::ostream os(&output);
    write(os);
    return Ending::kCommit;
  });
}

}  // namespace cli
