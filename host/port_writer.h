#pragma once

#include <iosfwd>

#include "host/port.h"

namespace host {

/// One form of output, written port by port.
class PortWriter {
 public:
  PortWriter() = default;
  PortWriter(const PortWriter&) = delete;
  PortWriter& operator=(const PortWriter&) = delete;
  PortWriter(PortWriter&&) = delete;
  PortWriter& operator=(PortWriter&&) = delete;
  virtual ~PortWriter() = default;

  /// What stands before the first port.
  virtual void Begin(std::ostream& /*os*/) {}
  virtual void Write(std::ostream& os, Port& port) = 0;
};

/// The CSV table: the header, then a row a port.
class TableWriter : public PortWriter {
 public:
  explicit TableWriter(bool with_header) : with_header_(with_header) {}
  void Begin(std::ostream& os) override;
  void Write(std::ostream& os, Port& port) override;

 private:
  bool with_header_;
};

/// The text report: a block a port under a heading line, with empty lines between the ports.
class ReportWriter : public PortWriter {
 public:
  void Write(std::ostream& os, Port& port) override;

 private:
  bool is_first_ = true;
};

}  // namespace host
