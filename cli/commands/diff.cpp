// cableinfo diff

#include <cctype>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/message.h"
#include "cli/output/snapshot.h"
#include "cli/output/whole_output.h"
#include "cli/store/snapshot_reader.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo diff yesterday.jsonl today.jsonl    what changed, port by port\n"
    "  cableinfo diff --power-tolerance 3 --json yesterday.jsonl today.jsonl\n"
    "  cableinfo diff before.bin after.bin           two dumps of one module\n"
    "  cableinfo diff fabric.db                      the last two snapshots of a store\n"
    "  cableinfo diff fabric.db@3 fabric.db@7        two given ones";

struct Options {
  PortOptions ports;
  RuleOptions rules;
  std::string before;
  std::string after;  // empty: `before` is a snapshot, to be compared with the one before it
  Tolerances tolerances;
  bool as_json = false;
};

class SnapshotWriter : public PortWriter {
 public:
  explicit SnapshotWriter(const cable_info::RuleSettings& settings) : settings_(settings) {}

  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  void Write(std::ostream& os, Port& port) const override {
    WriteSnapshotPort(os, port, settings_);
  }

 private:
  const cable_info::RuleSettings& settings_;
};

// Keeps the ports of one input.
class OldCollector : public PortCollector {
 public:
  explicit OldCollector(Snapshot& snapshot) : snapshot_(snapshot) {}
  void Take(std::string_view ports) override { snapshot_.Add(ports); }
  void End(std::ostream& /*os*/) override { snapshot_.Finish(); }

 private:
  Snapshot& snapshot_;
};

// Keeps those of the other one, and writes what is different.
class NewCollector : public PortCollector {
 public:
  NewCollector(const Options& options, const Snapshot& before, Snapshot& after)
      : options_(options), before_(before), after_(after) {}
  void Take(std::string_view ports) override { after_.Add(ports); }
  void End(std::ostream& os) override {
    after_.Finish();
    const std::vector<ChangedPort> changes = Compare(before_, after_, options_.tolerances);
    options_.as_json ? WriteDiffAsJson(os, changes) : WriteDiffAsText(os, changes);
  }

 private:
  const Options& options_;
  const Snapshot& before_;
  Snapshot& after_;
};

// True for a file that begins as a port record does, or cannot be looked at.
bool HoldsPortRecords(const std::string& path) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  constexpr std::streamsize kRoom = 4096;
  std::string begin(kRoom, '\0');
  std::ifstream file(path, std::ios::binary);
  if (path == "-" || !file) return true;
  file.read(begin.data(), kRoom);
  begin.resize(static_cast<std::size_t>(file.gcount()));
  std::string_view text = begin;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos || text[first] == '{';
}

PortOptions WithInput(PortOptions options, const std::string& path) {
  (FindSnapshot(path) || HoldsPortRecords(path) ? options.inputs : options.modules) = {path};
  return options;
}

ExitStatus DiffInputs(const Options& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  const SnapshotWriter writer(settings);
  Snapshot before(settings);
  Snapshot after(settings);
  OldCollector old_collector(before);
  PortOptions old_options = WithInput(options.ports, options.before);
  old_options.output = "-";  // to which nothing is written
  const ExitStatus old_status = WritePorts(old_options, writer, &old_collector);
  if (old_status >= ExitStatus::kUsage) return old_status;
  NewCollector new_collector(options, before, after);
  return Worse(old_status,
               WritePorts(WithInput(options.ports, options.after), writer, &new_collector));
}

ExitStatus Diff(Options options) {
  if (!options.after.empty()) return DiffInputs(options);
  const std::optional<SnapshotName> snapshot = FindSnapshot(options.before);
  if (!snapshot) {
    PrintError("cableinfo: NEW is missing; only a snapshot of a store has another one before it");
    return ExitStatus::kUsage;
  }
  try {
    const SnapshotName after = Numbered(*snapshot);  // the same one, even if another is added
    options.after = after.Input();
    options.before = SnapshotBefore(after).Input();
  } catch (const StoreError& error) {
    return FileFailed(options.before, error.code());
  }
  return DiffInputs(options);
}

}  // namespace

void AddDiffCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand("diff", "Compare two states of the same ports");
  command->footer(kExamples);
  command
      ->add_option("OLD", options->before,
                   "Port records, a dump or a snapshot of a store, as they were")
      ->required();
  command->add_option("NEW", options->after,
                      "The same, as they are now; may be left out after a snapshot, which is then\n"
                      "compared with the one before it");
  command->add_flag("--json", options->as_json,
                    "Write one JSON object per port that changed and a summary");
  command
      ->add_option("--power-tolerance", options->tolerances.power_db,
                   "Report powers that moved by more (default: 1)")
      ->type_name("DB")
      ->check(CLI::NonNegativeNumber);
  command
      ->add_option("--temperature-tolerance", options->tolerances.temperature_c,
                   "Report temperatures that moved by more (default: 10)")
      ->type_name("C")
      ->check(CLI::NonNegativeNumber);
  command
      ->add_option("--bias-tolerance", options->tolerances.bias_percent,
                   "Report bias currents that moved by more (default: 10)")
      ->type_name("PERCENT")
      ->check(CLI::NonNegativeNumber);
  AddRuleOptions(*command, options->rules);
  AddRunOptions(*command, options->ports);
  command->callback([options, &action] { action = [options] { return Diff(*options); }; });
}

}  // namespace cli
