// cableinfo check

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <ostream>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/output/check_result.h"
#include "cli/output/output_file.h"
#include "cli/output/whole_output.h"

namespace cli {

namespace {

using cable_info::RuleSettings;
using cable_info::Verdict;

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo check fabric.jsonl                  what is wrong, the worst port first\n"
    "  cableinfo check --set lane-imbalance=2.5 --set checksum=off fabric.jsonl\n"
    "  cableinfo check --json fabric.jsonl | jq -c 'select(.verdict == \"critical\")'\n"
    "  cableinfo check --module eeprom.bin           the verdict on one module\n"
    "  cableinfo check fabric.db                     on the latest snapshot of a store\n"
    "  cableinfo check --rules                       all rules with their limits\n"
    "Exit status: in addition, 5 when the worst verdict is a warning, 6 when it is critical;\n"
    "with --plugin: 0 ok, 1 warning, 2 critical, 3 unknown.";

struct Options {
  PortOptions ports;
  RuleOptions rules;
  bool as_json = false;
  bool as_plugin = false;
  bool lists_rules = false;
};

Colour ColourOf(const Options& options) {
  const char* const no_colour = std::getenv("NO_COLOR");
  const bool is_refused = no_colour != nullptr && *no_colour != '\0';
  const bool is_terminal = IsStandardOutput(options.ports.output) && isatty(STDOUT_FILENO) != 0;
  return is_terminal && !is_refused ? Colour::kAnsi : Colour::kNone;
}

// Judges the ports one by one.
class PortJudge : public PortWriter {
 public:
  explicit PortJudge(const RuleSettings& settings) : settings_(settings) {}

  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  void Write(std::ostream& os, Port& port) const override {
    WriteJudgedPort(os, port, ReadingsOf(port), settings_);
  }

 private:
  const RuleSettings& settings_;
};

// Compares the ports with each other once all are read, and writes what was found.
class FabricJudge : public PortCollector {
 public:
  FabricJudge(const Options& options, const RuleSettings& settings)
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
  const Options& options_;
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

ExitStatus Check(const Options& options) {
  RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  if (options.lists_rules) {
    return WriteToStandardOutput([&](std::ostream& os) { WriteRules(os, settings); });
  }
  FabricJudge judge(options, settings);
  const ExitStatus run = WritePorts(options.ports, PortJudge(settings), &judge);
  if (run == ExitStatus::kUsage) return run;
  if (options.as_plugin) return PluginStatusOf(judge.verdict(), run);
  return Worse(run, StatusOf(judge.verdict()));
}

}  // namespace

void AddCheckCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPortCommand(
      app, "check", "Judge the ports: what is wrong, the worst first", kExamples, options->ports);
  AddRuleOptions(*command, options->rules);
  CLI::Option* const json =
      command->add_flag("--json", options->as_json, "Write one JSON object per port and a summary");
  command->add_flag("--plugin", options->as_plugin, "Write one line for a monitoring system")
      ->excludes(json);
  command->add_flag("--rules", options->lists_rules, "List the rules and their settings, and stop");
  command->callback([options, &action] { action = [options] { return Check(*options); }; });
}

}  // namespace cli
