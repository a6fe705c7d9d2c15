// cableinfo module

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>

#include "cable_info/module_memory/module_image.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/message.h"
#include "cli/output/module_writer.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo module eeprom.bin                   the memory of a module as a data sheet\n"
    "  cableinfo module --json a.bin b.txt           one JSON object per module\n"
    "  cableinfo module lower:l.bin 00:u.bin 11:p.bin\n"
    "                                                the memory of a module, page by page\n"
    "  cableinfo module --json fabric.jsonl          the modules of port records";

struct ModuleOptions {
  PortOptions ports;
  bool json = false;
};

// Port records are lines of JSON objects; no image and no listing begins like one.
bool IsPortRecords(const std::string& path) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (path == "-") return true;
  std::ifstream file(path, std::ios::binary);
  char begin[64];
  file.read(begin, sizeof(begin));
  std::string_view text(begin, static_cast<std::size_t>(file.gcount()));
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string_view::npos && text[first] == '{';
}

bool IsDump(const std::string& argument) {
  return cable_info::module_memory::ParsePageFile(argument) || !IsPortRecords(argument);
}

ExitStatus Run(ModuleOptions options) {
  PortOptions& ports = options.ports;
  const auto dumps = std::ranges::count_if(ports.inputs, IsDump);
  if (dumps != 0 && static_cast<std::size_t>(dumps) != ports.inputs.size()) {
    PrintError("cableinfo: port records and dumps of modules in one run; give them apart");
    return ExitStatus::kUsage;
  }
  if (dumps != 0) ports.modules.swap(ports.inputs);
  return WritePorts(ports, ModuleWriter(options.json ? ModuleForm::kJson : ModuleForm::kText));
}

}  // namespace

void AddModuleCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<ModuleOptions>();
  CLI::App* const command =
      AddPortCommand(app, "module", "Write the contents of module memories as text or JSON",
                     kExamples, options->ports);
  command->get_option("FILE")->description(
      "Dumps of module memories (images or hex listings, each whole or, as PAGE:FILE, page by\n"
      "page), or files of port records; '-' or no file: port records on standard input");
  command->add_flag("--json", options->json, "Write one JSON object per module");
  command->callback([options, &action] { action = [options] { return Run(*options); }; });
}

}  // namespace cli
