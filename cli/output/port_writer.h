#pragma once

#include <cstdint>
#include <iosfwd>
#include <string_view>

#include "cli/exit_status.h"
#include "cli/input/port.h"

namespace cli {

/// Collects the text that a writer wrote for each port, for an output that needs all ports. Its
/// functions are called by one thread at a time.
class PortCollector {
 public:
  /// How the run over the ports ended.
  struct RunEnd {
    ExitStatus status = ExitStatus::kGood;
    /// All inputs were read to their ends.
    bool is_complete = true;
  };

  PortCollector() = default;
  PortCollector(const PortCollector&) = delete;
  PortCollector& operator=(const PortCollector&) = delete;
  PortCollector(PortCollector&&) = delete;
  PortCollector& operator=(PortCollector&&) = delete;
  virtual ~PortCollector() = default;

  /// Takes the text of the next ports, in the order of the input.
  virtual void Take(std::string_view ports) = 0;
  /// Writes the output, after the last port.
  virtual void End(std::ostream& os, const RunEnd& run) = 0;
};

/// What an output is read as, which decides how it escapes characters of texts.
enum class Syntax : std::uint8_t { kText, kJson };

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

  /// The results that the writer needs from a module's memory.
  virtual ModuleUse module_use() const { return ModuleUse::kRecords; }
  /// True when the writer needs `Port::record`.
  virtual bool needs_record() const { return false; }
  virtual Syntax syntax() const { return Syntax::kText; }
  /// False for ports that the writer leaves out.
  virtual bool Writes(const Port& /*port*/) const { return true; }
  /// Writes the text before the first port.
  virtual void Begin(std::ostream& /*os*/) const {}
  /// The text between two ports.
  virtual std::string_view Separator() const { return ""; }
  virtual void Write(std::ostream& os, Port& port) const = 0;
};

}  // namespace cli
