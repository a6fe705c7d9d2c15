#pragma once

#include "cli/output/port_writer.h"

namespace cli {

/// The values of a port as one line of JSON; docs/export.schema.json describes it.
class ExportWriter : public PortWriter {
 public:
  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  Syntax syntax() const override { return Syntax::kJson; }
  void Write(std::ostream& os, Port& port) const override;
};

}  // namespace cli
