#pragma once

#include "host/port_writer.h"

namespace host {

/// The values of a port as one line of JSON; docs/export.schema.json describes it.
class ExportWriter : public PortWriter {
 public:
  void Write(std::ostream& os, Port& port) const override;
};

}  // namespace host
