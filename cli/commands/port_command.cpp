#include "cli/commands/port_command.h"

#include "cli/commands/module_run.h"
#include "cli/commands/port_run.h"

namespace cli {

CLI::App* AddPortCommand(CLI::App& app, const std::string& name, const std::string& description,
                         const std::string& examples, PortOptions& options) {
  CLI::App* command = app.add_subcommand(name, description);
  command->footer(examples);
  CLI::Option* inputs = command->add_option(
      "FILE", options.inputs, "Files of port records; '-' or no file: standard input");
  command
      ->add_option("--module", options.modules,
                   "Read dumps of module memories instead of port records: images or hex\n"
                   "listings, each whole or, as PAGE:FILE, page by page")
      ->type_name("DUMP")
      ->excludes(inputs);
  command->add_option("-o,--output", options.output,
                      "Write to this file, which is replaced when the output is complete");
  command->add_flag("--strict", options.strict, "Stop at the first bad port");
  command
      ->add_option("-j,--jobs", options.jobs,
                   "Decode with this many threads (default: one for each processor)")
      ->type_name("N")
      ->check(CLI::Range(1U, kMaxJobs));
  command->add_flag("-q,--quiet", options.quiet, "Show no progress meter");
  return command;
}

ExitStatus WritePorts(const PortOptions& options, const PortWriter& writer) {
  return options.modules.empty() ? RunPorts(options, writer) : RunModules(options, writer);
}

}  // namespace cli
