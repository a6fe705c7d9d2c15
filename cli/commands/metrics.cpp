// cableinfo metrics

#include "cli/output/metrics.h"

#include <cstddef>
#include <ostream>
#include <sstream>
#include <string>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/judging_writer.h"
#include "cli/commands/message_log.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/output/output_file.h"
#include "cli/printable.h"

namespace cli {

namespace {

// Sorts the samples by their families.
class MetricsCollector : public PortCollector {
 public:
  MetricsCollector(const cable_info::RuleSettings& settings, const std::string& output)
      : metrics_(settings), output_(output) {}

  std::size_t repeated_ports() const { return metrics_.repeated_ports(); }

  void Take(std::string_view ports) override { metrics_.Add(ports); }
  void End(std::ostream& os, const RunEnd& /*run*/) override {
    if (!IsTerminal(output_)) return metrics_.WriteTo(os);
    std::ostringstream text;  // labels may hold control characters
    metrics_.WriteTo(text);
    os << Printable(text.view(), Newlines::kKept);
  }

 private:
  Metrics metrics_;
  const std::string& output_;
};

}  // namespace

ExitStatus WriteMetrics(const JudgedPortOptions& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  MetricsCollector collector(settings, options.ports.output);
  const ExitStatus status =
      WritePorts(options.ports, JudgingWriter(WritePortMetrics, settings), &collector);
  if (!options.ports.quiet) PrintRepeatedPorts(collector.repeated_ports());
  return status;
}

}  // namespace cli
