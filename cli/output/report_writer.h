#pragma once

#include "cli/output/port_writer.h"

namespace cli {

/// The text report: one block per port after a heading line, with empty lines between the ports.
class ReportWriter : public PortWriter {
 public:
  std::string_view Separator() const override { return "\n"; }
  void Write(std::ostream& os, Port& port) const override;
};

}  // namespace cli
