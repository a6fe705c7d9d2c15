#pragma once

#include <iosfwd>
#include <string_view>

#include "host/port.h"

namespace host {

/// One form of output, written port by port. Writers keep nothing of a port, so that several
/// threads may write with one of them.
class PortWriter {
 public:
  PortWriter() = default;
  PortWriter(const PortWriter&) = delete;
  PortWriter& operator=(const PortWriter&) = delete;
  PortWriter(PortWriter&&) = delete;
  PortWriter& operator=(PortWriter&&) = delete;
  virtual ~PortWriter() = default;

  /// What stands before the first port.
  virtual void Begin(std::ostream& /*os*/) const {}
  /// What stands between two ports.
  virtual std::string_view Separator() const { return ""; }
  virtual void Write(std::ostream& os, Port& port) const = 0;
};

/// The CSV table: the header, then a row a port.
class TableWriter : public PortWriter {
 public:
  explicit TableWriter(bool with_header) : with_header_(with_header) {}
  void Begin(std::ostream& os) const override;
  void Write(std::ostream& os, Port& port) const override;

 private:
  bool with_header_;
};

/// The text report: a block a port under a heading line, with empty lines between the ports.
class ReportWriter : public PortWriter {
 public:
  std::string_view Separator() const override { return "\n"; }
  void Write(std::ostream& os, Port& port) const override;
};

}  // namespace host
