#pragma once

#include "cli/output/port_writer.h"

namespace cli {

/// The CSV table: the header, then one row per port.
class TableWriter : public PortWriter {
 public:
  enum class Header { kWritten, kOmitted };

  explicit TableWriter(Header header) : header_(header) {}
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  Header header_;
};

}  // namespace cli
