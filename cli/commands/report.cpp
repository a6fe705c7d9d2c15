// cableinfo report

#include <memory>

#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/output/report_writer.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo report fabric.jsonl                 a block of text for each port\n"
    "  cableinfo report --strict a.jsonl b.jsonl     two files, up to the first bad port\n"
    "  cableinfo report --module eeprom.bin          the memory of a module\n"
    "  cableinfo report --module lower:l.bin 00:u.bin\n"
    "                                                the same, page by page";

}  // namespace

void AddReportCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<PortOptions>();
  CLI::App* const command = AddPortCommand(
      app, "report", "Write the text report, one block per port", kExamples, *options);
  command->callback(
      [options, &action] { action = [options] { return WritePorts(*options, ReportWriter()); }; });
}

}  // namespace cli
