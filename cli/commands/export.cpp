// cableinfo export

#include <memory>

#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/output/export_writer.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo export fabric.jsonl                 one JSON object per port\n"
    "  cableinfo export - < fabric.jsonl | jq .monitors.temperature_c.value";

}  // namespace

void AddExportCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<PortOptions>();
  CLI::App* const command = AddPortCommand(
      app, "export", "Write the values, one JSON object per port", kExamples, *options);
  command->callback(
      [options, &action] { action = [options] { return WritePorts(*options, ExportWriter()); }; });
}

}  // namespace cli
