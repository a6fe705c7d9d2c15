// The command line of cableinfo.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <memory>
#include <string>

#include "cable_info/version.h"
#include "host/columns.h"
#include "host/exit_status.h"
#include "host/export_writer.h"
#include "host/message.h"
#include "host/module_run.h"
#include "host/port_writer.h"
#include "host/run.h"

namespace {

using host::ExitStatus;
using host::PortOptions;

constexpr const char* kDescription =
    "Shows what is known about the cables and modules of InfiniBand ports.\n"
    "Reads port records, one JSON object a line, from files or standard input.";

constexpr const char* kFooter =
    "Exit status: 0 all good, 1 some ports were bad and left out, 2 usage,\n"
    "3 a file could not be read or written, 4 out of memory or the like.\n"
    "'cableinfo COMMAND --help' tells more about a command; so does the manual page.";

constexpr const char* kTableExamples =
    "Examples:\n"
    "  cableinfo table fabric.jsonl -o cables.csv    all ports, under the header of 177 columns\n"
    "  collect | cableinfo table --no-header         rows only, from a pipe to a pipe";

constexpr const char* kReportExamples =
    "Examples:\n"
    "  cableinfo report fabric.jsonl                 a block of text for every port\n"
    "  cableinfo report --strict a.jsonl b.jsonl     two files, up to the first bad port\n"
    "  cableinfo report --module eeprom.bin          a module's memory\n"
    "  cableinfo report --module lower:l.bin 00:u.bin\n"
    "                                                the same, page by page";

constexpr const char* kExportExamples =
    "Examples:\n"
    "  cableinfo export fabric.jsonl                 one JSON object a port\n"
    "  cableinfo export - < fabric.jsonl | jq .temperature.celsius";

constexpr const char* kColumnsExamples =
    "Examples:\n"
    "  cableinfo columns                             number, name and meaning of each column\n"
    "  cableinfo columns --json | jq -r .name        the names alone";

CLI::App* AddPortCommand(CLI::App& app, const std::string& name, const std::string& description,
                         const std::string& examples, PortOptions& options) {
  CLI::App* command = app.add_subcommand(name, description);
  command->footer(examples);
  CLI::Option* inputs =
      command->add_option("FILE", options.inputs, "Port records; '-' or none: standard input");
  command
      ->add_option("--module", options.modules,
                   "Dumps of module memories instead of port records: images or hex listings,\n"
                   "each whole or, as PAGE:FILE, page by page")
      ->type_name("DUMP")
      ->excludes(inputs);
  command->add_option("-o,--output", options.output,
                      "Write to this file, which appears when it is whole");
  command->add_flag("--strict", options.strict, "Stop at the first bad port");
  command
      ->add_option("-j,--jobs", options.jobs,
                   "Decode with so many threads; the machine's own number unless given")
      ->type_name("N")
      ->check(CLI::Range(1U, host::kMostJobs));
  command->add_flag("-q,--quiet", options.quiet, "Show no progress meter");
  return command;
}

// Without a writer the columns are listed.
ExitStatus RunCommand(const PortOptions& options, host::PortWriter* writer, bool as_json) {
  if (writer == nullptr) {
    return host::RunToStandardOutput([&](std::ostream& os) { host::WriteColumns(os, as_json); });
  }
  return options.modules.empty() ? RunPorts(options, *writer) : RunModules(options, *writer);
}

int Run(int argc, char** argv) {
  CLI::App app(kDescription, "cableinfo");
  app.footer(kFooter);
  app.set_version_flag("--version", "cableinfo " + std::string(cable_info::kVersion));
  app.require_subcommand(1);

  PortOptions options;
  bool without_header = false;
  bool as_json = false;
  CLI::App* table =
      AddPortCommand(app, "table", "Write the CSV table, a row a port", kTableExamples, options);
  table->add_flag("--no-header", without_header, "Write the rows only");
  CLI::App* report = AddPortCommand(app, "report", "Write the text report, a block a port",
                                    kReportExamples, options);
  CLI::App* values = AddPortCommand(app, "export", "Write the values, a JSON object a port",
                                    kExportExamples, options);
  CLI::App* columns = app.add_subcommand("columns", "List the columns of the table");
  columns->footer(kColumnsExamples);
  columns->add_flag("--json", as_json, "Write a JSON object a column");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : static_cast<int>(ExitStatus::kUsage);
  }

  std::unique_ptr<host::PortWriter> writer;
  if (table->parsed()) writer = std::make_unique<host::TableWriter>(!without_header);
  if (report->parsed()) writer = std::make_unique<host::ReportWriter>();
  if (values->parsed()) writer = std::make_unique<host::ExportWriter>();
  return static_cast<int>(RunCommand(options, writer.get(), as_json));
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a closed pipe shows as a failed write
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    host::Say(std::string("cableinfo: ") + error.what());
    return static_cast<int>(ExitStatus::kInternal);
  }
}
