#include "cli/commands/port_command.h"

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

constexpr int kHexadecimal = 16;

// What is wrong with a GUID; empty when it is one, such as 0xa0b1c20000d4e500.
std::string IsGuid(const std::string& text) {
  std::string_view digits = text;
  if (digits.starts_with("0x")) digits.remove_prefix(2);
  constexpr std::size_t kMostDigits = 16;
  const bool is_guid = !digits.empty() && digits.size() <= kMostDigits &&
                       digits.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
  return is_guid ? "" : "expected a GUID of up to 16 hexadecimal digits, found \"" + text + '"';
}

// All files that the run reads.
std::vector<std::string> InputPaths(const PortOptions& options) {
  if (!options.modules.empty()) return ModulePaths(options);
  return options.inputs.empty() ? std::vector<std::string>{kStandardInput} : options.inputs;
}

// Why the options cannot be followed; none when they can.
std::optional<std::string> UsageProblem(const PortOptions& options) {
  for (const std::string& module : options.modules) {
    if (const auto problem = UnknownPage(module)) return "--module: " + *problem;
  }
  if (options.output.empty()) return "--output: expected the name of a file, found an empty one";
  if (IsStandardOutput(options.output)) return std::nullopt;
  for (const std::string& input : InputPaths(options)) {
    const std::optional<SnapshotName> snapshot = FindSnapshot(input);
    if (IsSameFile(snapshot ? snapshot->store : input, options.output)) {
      return "--output: " + options.output + " is also an input (" + InputName(input) + ")";
    }
  }
  return std::nullopt;
}

}  // namespace

void AddRunOptions(CLI::App& command, PortOptions& options) {
  command.add_option("--port", options.selection.numbers, "Only ports with this number")
      ->type_name("N")
      ->allow_extra_args(false)
      ->take_all();
  command
      .add_option_function<std::vector<std::string>>(
          "--guid",
          [&options](const std::vector<std::string>& guids) {
            for (const std::string& guid : guids) {
              options.selection.guids.push_back(std::stoull(guid, nullptr, kHexadecimal));
            }
          },
          "Only ports with this GUID, or of the node with it")
      ->type_name("GUID")
      ->allow_extra_args(false)
      ->take_all()
      ->check(IsGuid, "", "GUID");
  command
      .add_option("--label", options.selection.labels,
                  "Only ports whose label fits this pattern of '*', '?' and '[...]'")
      ->type_name("GLOB")
      ->allow_extra_args(false)
      ->take_all();
  command
      .add_option("-o,--output", options.output,
                  "Write to this file, which is replaced when the output is complete")
      ->type_name("FILE");
  command.add_flag("--strict", options.strict, "Stop at the first bad port");
  command
      .add_option("-j,--jobs", options.jobs,
                  "Decode with this many threads (default: one for each processor)")
      ->type_name("N")
      ->check(CLI::Range(1U, kMaxJobs));
  command.add_flag("--no-files", options.no_files,
                   "Refuse port records that name files, for input from elsewhere");
  command.add_flag("--all-messages", options.all_messages,
                   "Show all messages, not only the first 20 of a kind for each input");
  command.add_flag("-q,--quiet", options.quiet, "Show no progress meter, remarks or summary");
}

CLI::App* AddPortCommand(CLI::App& app, const std::string& name, const std::string& description,
                         const std::string& examples, PortOptions& options) {
  CLI::App* command = app.add_subcommand(name, description);
  command->footer(examples);
  CLI::Option* inputs = command->add_option(
      "FILE", options.inputs,
      "Files of port records, or snapshots of a store, as FILE.db or FILE.db@3;\n"
      "'-' or no file: standard input");
  command
      ->add_option("--module", options.modules,
                   "Read dumps of module memories instead of port records: images or hex\n"
                   "listings, each whole or, as PAGE:FILE, page by page")
      ->type_name("DUMP")
      ->excludes(inputs);
  AddRunOptions(*command, options);
  return command;
}

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
