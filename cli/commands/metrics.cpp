// cableinfo metrics

#include "cli/output/metrics.h"

#include <ostream>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/judging_writer.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"

namespace cli {

namespace {

// Sorts the samples by their families.
class MetricsCollector : public PortCollector {
 public:
  explicit MetricsCollector(const cable_info::RuleSettings& settings) : metrics_(settings) {}

  void Take(std::string_view ports) override { metrics_.Add(ports); }
  void End(std::ostream& os) override { metrics_.WriteTo(os); }

 private:
  Metrics metrics_;
};

}  // namespace

ExitStatus WriteMetrics(const JudgedPortOptions& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  MetricsCollector collector(settings);
  return WritePorts(options.ports, JudgingWriter(WritePortMetrics, settings), &collector);
}

}  // namespace cli
