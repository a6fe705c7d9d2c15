#pragma once

#include <iosfwd>

#include "cable_info/readings/rules.h"
#include "cli/output/port_writer.h"

namespace cli {

/// Writes the data of each port for the collector of a command that applies rules.
class JudgingWriter : public PortWriter {
 public:
  using Function = void (*)(std::ostream& os, const Port& port,
                            const cable_info::RuleSettings& settings);

  /// `settings` must outlive the writer.
  JudgingWriter(Function write, const cable_info::RuleSettings& settings)
      : write_(write), settings_(settings) {}

  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  void Write(std::ostream& os, Port& port) const override { write_(os, port, settings_); }

 private:
  const Function write_;
  const cable_info::RuleSettings& settings_;
};

}  // namespace cli
