// cableinfo table

#include <memory>

#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/output/table_writer.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo table fabric.jsonl -o cables.csv    all ports, after a header of 177 columns\n"
    "  collect | cableinfo table --no-header         rows only, in a pipeline";

struct Options {
  PortOptions ports;
  bool no_header = false;
};

}  // namespace

void AddTableCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPortCommand(app, "table", "Write the CSV table, one row per port",
                                           kExamples, options->ports);
  command->add_flag("--no-header", options->no_header, "Write the rows only");
  command->callback([options, &action] {
    action = [options] {
      const auto header =
          options->no_header ? TableWriter::Header::kOmitted : TableWriter::Header::kWritten;
      return WritePorts(options->ports, TableWriter(header));
    };
  });
}

}  // namespace cli
