// cableinfo store

#include "cli/store/store.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/readings/rules.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/commands/rule_options.h"
#include "cli/input/same_file.h"
#include "cli/message.h"
#include "cli/store/database.h"
#include "cli/store/snapshot_reader.h"
#include "cli/store/times.h"

namespace cli {

namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo store fabric.db fabric.jsonl        adds a snapshot to fabric.db\n"
    "  collect | cableinfo store fabric.db --keep 30\n"
    "  sqlite3 fabric.db 'SELECT * FROM latest_finding'";

struct Options {
  PortOptions ports;
  RuleOptions rules;
  std::string database;
  std::string taken_at;
  std::optional<std::uint32_t> keep;
};

// Packs the ports one by one.
class StoredPortWriter : public PortWriter {
 public:
  explicit StoredPortWriter(const cable_info::RuleSettings& settings) : settings_(settings) {}

  ModuleUse module_use() const override { return ModuleUse::kRecordsAndInfo; }
  bool needs_record() const override { return true; }
  void Write(std::ostream& os, Port& port) const override { WriteStoredPort(os, port, settings_); }

 private:
  const cable_info::RuleSettings& settings_;
};

// Adds the ports to the file, which is not touched before the first of them is there.
class StoreCollector : public PortCollector {
 public:
  StoreCollector(std::string path, Store::Snapshot snapshot,
                 const cable_info::RuleSettings& settings)
      : path_(std::move(path)), snapshot_(std::move(snapshot)), settings_(settings) {}

  void Take(std::string_view ports) override { Begun().Add(ports); }
  void End(std::ostream& /*os*/) override {}

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
const char* Reason(const Options& options, ExitStatus status, bool has_ports) {
  if (status >= ExitStatus::kFileFailed) return "an input could not be read";
  if (status == ExitStatus::kGood) return nullptr;
  if (options.ports.strict) return "the run stopped at a bad port";
  return has_ports ? nullptr : "no port could be decoded";
}

// True when the database is to be read, too.
bool IsInput(const Options& options) {
  return std::ranges::any_of(options.ports.inputs, [&](const std::string& input) {
    const std::optional<SnapshotName> snapshot = FindSnapshot(input);
    return snapshot && IsSameFile(snapshot->store, options.database);
  });
}

ExitStatus StoreSnapshot(const Options& options) {
  cable_info::RuleSettings settings;
  const ExitStatus usage = ApplyRuleOptions(options.rules, settings);
  if (usage != ExitStatus::kGood) return usage;
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
    const std::size_t repeated = store.repeated_ports();
    if (repeated > 0 && !options.ports.quiet) {
      PrintError("cableinfo: " + std::to_string(repeated) +
                 " ports left out: others have the same GUID and number");
    }
    return status;
  } catch (const StoreError& error) {
    PrintError("cableinfo: " + options.database + ": " + error.what());
    return ExitStatus::kFileFailed;
  }
}

}  // namespace

void AddStoreCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command =
      AddPortCommand(app, "store", "Add a snapshot to an SQLite file", kExamples, options->ports);
  // The first file is the database; the others are the inputs.
  CLI::Option* const files = command->get_option("FILE");
  files
      ->description(
          "The database, then files of port records, or snapshots of other stores;\n"
          "'-' or no other file: standard input")
      ->required();
  command->get_option("--module")->remove_excludes(files);
  files->remove_excludes(command->get_option("--module"));
  command->remove_option(command->get_option("--output"));
  AddRuleOptions(*command, options->rules);
  command
      ->add_option("--taken-at", options->taken_at,
                   "When the ports were read, as 2026-01-31T12:00:00Z (default: now)")
      ->type_name("TIME")
      ->check(
          [](const std::string& text) {
            return NormalizedTime(text).empty()
                       ? "expected a time such as 2026-01-31T12:00:00Z, found \"" + text + '"'
                       : std::string();
          },
          "", "TIME");
  command->add_option("--keep", options->keep, "Keep only this many snapshots, the newest")
      ->type_name("N")
      ->check(CLI::Range(1U, UINT32_MAX));
  command->callback([options, &action] {
    std::vector<std::string>& inputs = options->ports.inputs;
    options->database = inputs.front();
    inputs.erase(inputs.begin());
    action = [options] { return StoreSnapshot(*options); };
  });
}

}  // namespace cli
