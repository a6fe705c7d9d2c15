// cableinfo check

#include <array>
#include <cstdlib>
#include <ostream>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/judging_writer.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/output/check_result.h"
#include "cli/output/output_file.h"
#include "cli/output/whole_output.h"

namespace cli {

namespace {

using cable_info::RuleSettings;
using cable_info::Verdict;

Colour ColourOf(const CheckOptions& options) {
  const char* const no_colour = std::getenv("NO_COLOR");
  const bool is_refused = no_colour != nullptr && *no_colour != '\0';
  return IsTerminal(options.ports.output) && !is_refused ? Colour::kAnsi : Colour::kNone;
}

void WritePort(std::ostream& os, const Port& port, const RuleSettings& settings) {
  WriteJudgedPort(os, port, ReadingsOf(port), settings);
}

// The state that monitoring systems expect of a plug-in: critical if the verdict is; otherwise
// unknown if anything went wrong or there were no ports; otherwise the verdict.
Verdict PluginStateOf(const CheckResult& result, ExitStatus run) {
  const Verdict verdict = result.verdict();
  if (verdict == Verdict::kCritical) return verdict;
  return run != ExitStatus::kGood || result.size() == 0 ? Verdict::kUnknown : verdict;
}

ExitStatus PluginStatusOf(Verdict state) {
  constexpr std::array<ExitStatus, cable_info::kVerdicts> kStatuses = {
      kPluginOk, kPluginUnknown, kPluginWarning, kPluginCritical};
  return kStatuses[static_cast<std::size_t>(state)];
}

// Compares the ports with each other once all are read, and writes what was found.
class FabricJudge : public PortCollector {
 public:
  FabricJudge(const CheckOptions& options, const RuleSettings& settings)
      : options_(options), result_(settings) {}

  const CheckResult& result() const { return result_; }

  void Take(std::string_view ports) override { result_.Add(ports); }

  void End(std::ostream& os, const RunEnd& run) override {
    result_.Finish();
    if (options_.as_json) {
      WriteCheckAsJson(os, result_);
    } else if (options_.as_plugin) {
      WriteCheckAsPlugin(os, result_, PluginStateOf(result_, run.status));
    } else {
      WriteCheckAsText(os, result_, ColourOf(options_));
    }
  }

 private:
  const CheckOptions& options_;
  CheckResult result_;
};

ExitStatus StatusOf(Verdict verdict) {
  switch (verdict) {
    case Verdict::kOk:
    case Verdict::kUnknown:
      return ExitStatus::kGood;
    case Verdict::kWarning:
      return ExitStatus::kWarning;
    case Verdict::kCritical:
      return ExitStatus::kCritical;
  }
  return ExitStatus::kGood;
}

}  // namespace

ExitStatus Check(const CheckOptions& options) {
  RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) {
    return options.as_plugin ? kPluginUnknown : usage;
  }
  if (options.lists_rules) {
    return WriteTo(options.ports.output, [&](std::ostream& os) { WriteRules(os, settings); });
  }
  FabricJudge judge(options, settings);
  const ExitStatus run = WritePorts(options.ports, JudgingWriter(WritePort, settings), &judge);
  if (options.as_plugin) return PluginStatusOf(PluginStateOf(judge.result(), run));
  if (run == ExitStatus::kUsage) return run;
  return Worse(run, StatusOf(judge.result().verdict()));
}

}  // namespace cli
