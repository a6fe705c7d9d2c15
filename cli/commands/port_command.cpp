#include "cli/commands/port_command.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands/module_run.h"
#include "cli/commands/port_run.h"
#include "cli/input/input_name.h"
#include "cli/input/same_file.h"
#include "cli/message.h"
#include "cli/output/output_file.h"
#include "cli/store/snapshot_reader.h"

namespace cli {

namespace {

// All files that the run reads.
std::vector<std::string> InputPaths(const PortOptions& options) {
  return options.modules.empty() ? InputsOf(options) : ModulePaths(options);
}

// Why the options cannot be followed; none when they can.
std::optional<std::string> UsageProblem(const PortOptions& options) {
  for (const std::string& module : options.modules) {
    if (const auto problem = UnknownPage(module)) return "--module: " + *problem;
  }
  if (options.output.empty()) return "--output: " + std::string(kNoFileName);
  const std::vector<std::string> inputs = InputPaths(options);
  if (std::ranges::find(inputs, "") != inputs.end()) return kNoFileName;
  if (IsStandardOutput(options.output)) return std::nullopt;
  for (const std::string& input : inputs) {
    const std::optional<SnapshotName> snapshot = FindSnapshot(input);
    if (IsSameFile(snapshot ? snapshot->store : input, options.output)) {
      return "--output: " + options.output + " is also an input (" + InputName(input) + ")";
    }
  }
  return std::nullopt;
}

}  // namespace

std::string InputNames(const PortOptions& options) {
  std::string names;
  for (const std::string& path : InputPaths(options)) {
    if (!names.empty()) names += ' ';
    names += InputName(path);
  }
  return names;
}

ExitStatus WritePorts(const PortOptions& options, const PortWriter& writer,
                      PortCollector* collector) {
  if (const std::optional<std::string> problem = UsageProblem(options)) {
    PrintError("cableinfo: " + *problem);
    return ExitStatus::kUsage;
  }
  return options.modules.empty() ? RunPorts(options, writer, collector)
                                 : RunModules(options, writer, collector);
}

}  // namespace cli
