#pragma once

#include <string>
#include <vector>

#include "cli/input/input_name.h"
#include "cli/input/selection.h"
#include "cli/output/output_file.h"

namespace cli {

/// The message for an empty name of an input or output.
inline constexpr const char* kNoFileName = "expected the name of a file, found an empty one";

/// The most threads of a run.
inline constexpr unsigned kMaxJobs = 32;

/// The options that the commands that read ports have in common.
struct PortOptions {
  std::vector<std::string> inputs;   ///< none: standard input
  std::vector<std::string> modules;  ///< dumps of modules, instead of the inputs
  std::string output = kStandardOutput;
  Selection selection;        ///< of the ports that are read
  bool strict = false;        ///< stop at the first bad port
  bool quiet = false;         ///< no progress meter, remarks or summary
  bool all_messages = false;  ///< no limit of messages
  bool no_files = false;      ///< port records must not name files
  unsigned jobs = 0;          ///< threads; 0: one for each processor
};

/// The inputs of a run that reads no dumps.
inline std::vector<std::string> InputsOf(const PortOptions& options) {
  return options.inputs.empty() ? std::vector<std::string>{kStandardInput} : options.inputs;
}

}  // namespace cli
