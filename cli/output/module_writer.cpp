#include "cli/output/module_writer.h"

#include <ostream>
#include <string>

#include "cable_info/module_memory/module_output.h"

namespace cli {

void ModuleWriter::Write(std::ostream& os, Port& port) const {
  if (port.module == nullptr) return;
  const std::string name =
      port.label.empty() ? PortText(port.port_guid, port.number) : std::string();
  const std::string& label = port.label.empty() ? name : port.label;
  if (form_ == ModuleForm::kText) {
    cable_info::WriteModuleText(os, *port.module, label);
  } else {
    cable_info::WriteModuleJson(os, *port.module, label);
    os.put('\n');
  }
}

}  // namespace cli
