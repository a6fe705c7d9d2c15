// cableinfo metrics

#include "cli/output/metrics.h"

#include <memory>
#include <ostream>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo metrics fabric.jsonl -o /var/lib/node_exporter/cableinfo.prom\n"
    "                                                for the textfile collector\n"
    "  cableinfo metrics fabric.jsonl | promtool check metrics";

struct Options {
  PortOptions ports;
  RuleOptions rules;
};

// Writes the samples of the ports one by one.
class MetricsWriter : public PortWriter {
 public:
  explicit MetricsWriter(const cable_info::RuleSettings& settings) : settings_(settings) {}

  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  void Write(std::ostream& os, Port& port) const override { WritePortMetrics(os, port, settings_); }

 private:
  const cable_info::RuleSettings& settings_;
};

// Sorts the samples by their families.
class MetricsCollector : public PortCollector {
 public:
  explicit MetricsCollector(const cable_info::RuleSettings& settings) : metrics_(settings) {}

  void Take(std::string_view ports) override { metrics_.Add(ports); }
  void End(std::ostream& os) override { metrics_.WriteTo(os); }

 private:
  Metrics metrics_;
};

ExitStatus WriteMetrics(const Options& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  MetricsCollector collector(settings);
  return WritePorts(options.ports, MetricsWriter(settings), &collector);
}

}  // namespace

void AddMetricsCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPortCommand(
      app, "metrics", "Write OpenMetrics text for a monitoring system", kExamples, options->ports);
  AddRuleOptions(*command, options->rules);
  command->callback([options, &action] { action = [options] { return WriteMetrics(*options); }; });
}

}  // namespace cli
