// cableinfo module

#include <algorithm>
#include <string>

#include "cable_info/module_memory/module_image.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/input/input_form.h"
#include "cli/message.h"
#include "cli/output/module_writer.h"
#include "cli/store/snapshot_reader.h"

namespace cli {

namespace {

// Port records are lines of JSON objects, which no image and no listing begins like, or a snapshot.
// A stream is taken for port records.
bool IsPortRecords(const std::string& path) {
  return IsStream(path) || FirstCharacter(path) == '{' || FindSnapshot(path);
}

bool IsDump(const std::string& argument) {
  return cable_info::module_memory::ParsePageFile(argument) || !IsPortRecords(argument);
}

}  // namespace

ExitStatus WriteModules(ModuleOptions options) {
  PortOptions& ports = options.ports;
  const auto dumps = std::ranges::count_if(ports.inputs, IsDump);
  if (dumps != 0 && static_cast<std::size_t>(dumps) != ports.inputs.size()) {
    PrintError("cableinfo: expected either port records or dumps of modules, found both");
    return ExitStatus::kUsage;
  }
  if (dumps != 0) ports.modules.swap(ports.inputs);
  return WritePorts(ports, ModuleWriter(options.as_json ? ModuleForm::kJson : ModuleForm::kText));
}

}  // namespace cli
