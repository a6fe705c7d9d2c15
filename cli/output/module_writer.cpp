#include "cli/output/module_writer.h"

#include <ostream>
#include <string_view>

#include "cable_info/module_memory/module_output.h"
#include "cable_info/text/text_buffer.h"

namespace cli {

namespace {

// GUID and number of a port without a label.
void AppendName(cable_info::text::TextBuffer& out, const Port& port) {
  AppendGuid(out, port.port_guid);
  out.Append('/').AppendDecimal(port.number);
}

}  // namespace

void ModuleWriter::Write(std::ostream& os, Port& port) const {
  if (port.module == nullptr) return;
  cable_info::text::TextBuffer name;
  if (port.label.empty()) AppendName(name, port);
  const std::string_view label = port.label.empty() ? name.view() : port.label;
  if (form_ == ModuleForm::kText) {
    cable_info::WriteModuleText(os, *port.module, label);
  } else {
    cable_info::WriteModuleJson(os, *port.module, label);
    os.put('\n');
  }
}

}  // namespace cli
