// cableinfo check

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

// Compares the ports with each other once all are read, and writes what was found.
class FabricJudge : public PortCollector {
 public:
  FabricJudge(const CheckOptions& options, const RuleSettings& settings)
      : options_(options), result_(settings) {}

  Verdict verdict() const { return result_.verdict(); }

  void Take(std::string_view ports) override { result_.Add(ports); }

  void End(std::ostream& os) override {
    result_.Finish();
    if (options_.as_json) {
      WriteCheckAsJson(os, result_);
    } else if (options_.as_plugin) {
      WriteCheckAsPlugin(os, result_);
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

// What monitoring systems expect of a plugin. Whatever went wrong makes the result unknown, unless
// it is bad already.
ExitStatus PluginStatusOf(Verdict verdict, ExitStatus run) {
  constexpr auto kOk = static_cast<ExitStatus>(0);
  constexpr auto kPluginWarning = static_cast<ExitStatus>(1);
  constexpr auto kPluginCritical = static_cast<ExitStatus>(2);
  constexpr auto kPluginUnknown = static_cast<ExitStatus>(3);
  if (verdict == Verdict::kCritical) return kPluginCritical;
  if (run != ExitStatus::kGood || verdict == Verdict::kUnknown) return kPluginUnknown;
  return verdict == Verdict::kWarning ? kPluginWarning : kOk;
}

}  // namespace

ExitStatus Check(const CheckOptions& options) {
  RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  if (options.lists_rules) {
    return WriteToStandardOutput([&](std::ostream& os) { WriteRules(os, settings); });
  }
  FabricJudge judge(options, settings);
  const ExitStatus run = WritePorts(options.ports, JudgingWriter(WritePort, settings), &judge);
  if (run == ExitStatus::kUsage) return run;
  if (options.as_plugin) return PluginStatusOf(judge.verdict(), run);
  return Worse(run, StatusOf(judge.verdict()));
}

}  // namespace cli
