// cableinfo store

#include "cli/store/store.h"

#include <algorithm>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/judging_writer.h"
#include "cli/commands/message_log.h"
#include "cli/commands/port_command.h"
#include "cli/commands/port_output.h"
#include "cli/commands/rule_options.h"
#include "cli/input/same_file.h"
#include "cli/message.h"
#include "cli/store/database.h"
#include "cli/store/snapshot_reader.h"
#include "cli/store/times.h"

namespace cli {

namespace {

// The snapshot keeps the records of the ports, too.
class StoredPortWriter : public JudgingWriter {
 public:
  explicit StoredPortWriter(const cable_info::RuleSettings& settings)
      : JudgingWriter(WriteStoredPort, settings) {}

  bool needs_record() const override { return true; }
};

// Adds the ports to the file, which is not touched before the first of them is there.
class StoreCollector : public PortCollector {
 public:
  StoreCollector(std::string path, Store::Snapshot snapshot,
                 const cable_info::RuleSettings& settings)
      : path_(std::move(path)), snapshot_(std::move(snapshot)), settings_(settings) {}

  void Take(std::string_view ports) override { Begun().Add(ports); }
  void End(std::ostream& /*os*/, const RunEnd& /*run*/) override {}

  bool has_ports() const { return store_ != nullptr; }
  Store& Begun() {
    if (store_ == nullptr) {
      auto store = std::make_unique<Store>(path_, settings_);
      store->Begin(snapshot_);
      store_ = std::move(store);
    }
    return *store_;
  }

 private:
  std::string path_;
  Store::Snapshot snapshot_;
  const cable_info::RuleSettings& settings_;
  std::unique_ptr<Store> store_;
};

// Why the snapshot must not be kept; null when it may.
const char* Reason(const StoreOptions& options, ExitStatus status, bool has_ports) {
  if (status >= ExitStatus::kFileFailed) return kInputNotRead;
  if (status == ExitStatus::kGood) return nullptr;
  if (options.ports.strict) return kStoppedAtBadPort;
  return has_ports ? nullptr : kNoPortDecoded;
}

// Why the database cannot be written; none when it can.
std::optional<std::string> DatabaseProblem(const std::string& name) {
  if (name.empty()) return "expected the name of a store, found an empty one";
  if (IsStandardOutput(name)) return "a store cannot be written to standard output";
  return std::nullopt;
}

// True when the database is to be read, too.
bool IsInput(const StoreOptions& options) {
  return std::ranges::any_of(options.ports.inputs, [&](const std::string& input) {
    const std::optional<SnapshotName> snapshot = FindSnapshot(input);
    return snapshot && IsSameFile(snapshot->store, options.database);
  });
}

}  // namespace

ExitStatus StoreSnapshot(const StoreOptions& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
  if (const std::optional<std::string> problem = DatabaseProblem(options.database)) {
    PrintError("cableinfo: " + *problem);
    return ExitStatus::kUsage;
  }
  if (IsInput(options)) {
    PrintError("cableinfo: " + options.database + " is also an input");
    return ExitStatus::kUsage;
  }
  const std::string taken_at =
      options.taken_at.empty() ? TimeNow() : NormalizedTime(options.taken_at);
  StoreCollector collector(options.database, {taken_at, InputNames(options.ports)}, settings);
  try {
    const ExitStatus status = WritePorts(options.ports, StoredPortWriter(settings), &collector);
    if (status == ExitStatus::kUsage) return status;
    if (const char* const reason = Reason(options, status, collector.has_ports())) {
      PrintError("cableinfo: " + options.database + ": not changed: " + reason);
      return status;
    }
    Store& store = collector.Begun();
    store.Finish();
    store.Commit(options.keep);
    if (!options.ports.quiet) PrintRepeatedPorts(store.repeated_ports());
    return status;
  } catch (const StoreError& error) {
    PrintError("cableinfo: " + options.database + ": " + error.what());
    return ExitStatus::kFileFailed;
  }
}

}  // namespace cli
