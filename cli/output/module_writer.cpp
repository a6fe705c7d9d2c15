#include "cli/output/module_writer.h"

#include <ostream>
#include <string>

#include "cable_info/module_memory/module_output.h"

namespace cli {

namespace {

std::string Label(const Port& port) {
  return port.label.empty() ? GuidText(port.port_guid) + '/' + std::to_string(port.number)
                            : port.label;
}

}  // namespace

void ModuleWriter::Write(std::ostream& os, Port& port) const {
  if (!port.module) return;
  if (form_ == ModuleForm::kText) {
    cable_info::WriteModuleText(os, *port.module, Label(port));
  } else {
    cable_info::WriteModuleJson(os, *port.module, Label(port));
    os.put('\n');
  }
}

}  // namespace cli
