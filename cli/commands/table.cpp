// cableinfo table

#include <memory>

#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/output/table_writer.h"
#include "cli/output/typed_table_writer.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo table fabric.jsonl -o cables.csv    all ports, after a header of 177 columns\n"
    "  collect | cableinfo table --no-header         rows only, in a pipeline\n"
    "  cableinfo table --rfc4180 fabric.jsonl        for spreadsheets, databases and data frames\n"
    "  cableinfo table --json fabric.jsonl | jq .Temperature";

struct Options {
  PortOptions ports;
  bool no_header = false;
  bool rfc4180 = false;
  bool json = false;
};

ExitStatus WriteTable(const Options& options) {
  if (options.json) return WritePorts(options.ports, JsonTableWriter());
  if (options.rfc4180) {
    const auto header =
        options.no_header ? Rfc4180Writer::Header::kOmitted : Rfc4180Writer::Header::kWritten;
    return WritePorts(options.ports, Rfc4180Writer(header));
  }
  const auto header =
      options.no_header ? TableWriter::Header::kOmitted : TableWriter::Header::kWritten;
  return WritePorts(options.ports, TableWriter(header));
}

}  // namespace

void AddTableCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPortCommand(app, "table", "Write the CSV table, one row per port",
                                           kExamples, options->ports);
  command->add_flag("--no-header", options->no_header, "Write the rows only");
  CLI::Option* const rfc4180 = command->add_flag(
      "--rfc4180", options->rfc4180,
      "Write CSV that every reader takes: 177 cells in each row, quotes doubled,\n"
      "missing values empty, numbers without units");
  command
      ->add_flag("--json", options->json,
                 "Write one JSON object per row: numbers as numbers, missing values null")
      ->excludes(rfc4180);
  command->callback([options, &action] { action = [options] { return WriteTable(*options); }; });
}

}  // namespace cli
