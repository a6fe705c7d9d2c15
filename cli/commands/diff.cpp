// cableinfo diff

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/judging_writer.h"
#include "cli/commands/message_log.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/input/input_form.h"
#include "cli/input/input_name.h"
#include "cli/message.h"
#include "cli/output/snapshot.h"
#include "cli/output/whole_output.h"
#include "cli/store/snapshot_reader.h"

namespace cli {

namespace {

// Keeps the ports of one input.
class OldCollector : public PortCollector {
 public:
  explicit OldCollector(Snapshot& snapshot) : snapshot_(snapshot) {}
  void Take(std::string_view ports) override { snapshot_.Add(ports); }
  void End(std::ostream& /*os*/, const RunEnd& run) override {
    snapshot_.Finish();
    is_usable_ = run.is_complete && (run.status == ExitStatus::kGood || !snapshot_.ports().empty());
  }

  // False if ports are missing because the input could not be read, or because none was good.
  bool is_usable() const { return is_usable_; }

 private:
  Snapshot& snapshot_;
  bool is_usable_ = false;
};

// Keeps the ports of the other input, and writes the differences. Writes nothing if that input
// could not be read to its end: ports missing for that reason are not gone.
class NewCollector : public PortCollector {
 public:
  using CompareFunction = decltype(Compare);

  NewCollector(const DiffOptions& options, CompareFunction& compare, const Snapshot& before,
               Snapshot& after)
      : options_(options), compare_(compare), before_(before), after_(after) {}
  void Take(std::string_view ports) override { after_.Add(ports); }
  void End(std::ostream& os, const RunEnd& run) override {
    after_.Finish();
    if (!run.is_complete) return;
    const std::vector<ChangedPort> changes = compare_(before_, after_, options_.tolerances);
    options_.as_json ? WriteDiffAsJson(os, changes) : WriteDiffAsText(os, changes);
  }

 private:
  const DiffOptions& options_;
  CompareFunction& compare_;
  const Snapshot& before_;
  Snapshot& after_;
};

// True for a file that begins as a port record does, is empty or cannot be read, and for a stream.
bool IsPortRecords(const std::string& path) {
  return IsStream(path) || FirstCharacter(path).value_or('{') == '{';
}

PortOptions WithInput(PortOptions options, const std::string& path) {
  (FindSnapshot(path) || IsPortRecords(path) ? options.inputs : options.modules) = {path};
  return options;
}

ExitStatus DiffInputs(const DiffOptions& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  if (IsStandardInput(options.before) && IsStandardInput(options.after)) {
    PrintError("cableinfo: OLD and NEW are both standard input, which can be read only once");
    return ExitStatus::kUsage;
  }
  const JudgingWriter writer(WriteSnapshotPort, settings);
  Snapshot before(settings);
  Snapshot after(settings);
  OldCollector old_collector(before);
  PortOptions old_options = WithInput(options.ports, options.before);
  old_options.output = std::string(kStandardOutput);  // to which nothing is written
  const ExitStatus old_status = WritePorts(old_options, writer, &old_collector);
  if (old_status >= ExitStatus::kUsage || !old_collector.is_usable()) return old_status;
  const PortOptions new_options = WithInput(options.ports, options.after);
  const bool are_dumps = !old_options.modules.empty() && !new_options.modules.empty();
  NewCollector new_collector(options, are_dumps ? CompareModules : Compare, before, after);
  const ExitStatus new_status = WritePorts(new_options, writer, &new_collector);
  if (!options.ports.quiet) PrintRepeatedPorts(before.repeated_ports() + after.repeated_ports());
  return Worse(old_status, new_status);
}

}  // namespace

ExitStatus Diff(DiffOptions options) {
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

}  // namespace cli
