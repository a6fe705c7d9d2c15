#pragma once

#include <iosfwd>
#include <string_view>

#include "cli/input/port.h"

namespace cli {

/// An output format, written port by port. A writer keeps no state of a port, so that several
/// threads may use one writer at the same time.
class PortWriter {
 public:
  PortWriter() = default;
  PortWriter(const PortWriter&) = delete;
  PortWriter& operator=(const PortWriter&) = delete;
  PortWriter(PortWriter&&) = delete;
  PortWriter& operator=(PortWriter&&) = delete;
  virtual ~PortWriter() = default;

  /// What the writer needs of a module's memory.
  virtual ModuleUse module_use() const { return ModuleUse::kRecords; }
  /// False for ports of which there is nothing to write.
  virtual bool Writes(const Port& /*port*/) const { return true; }
  /// Writes what comes before the first port.
  virtual void Begin(std::ostream& /*os*/) const {}
  /// What comes between two ports.
  virtual std::string_view Separator() const { return ""; }
  virtual void Write(std::ostream& os, Port& port) const = 0;
};

}  // namespace cli
