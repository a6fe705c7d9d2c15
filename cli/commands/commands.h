#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/commands/port_options.h"
#include "cli/commands/rule_options.h"
#include "cli/exit_status.h"
#include "cli/output/output_file.h"
#include "cli/output/snapshot.h"

/// \file
/// The subcommands: the options of each, which the command line sets, and the function that runs
/// it.

namespace cli {

struct TableOptions {
  PortOptions ports;
  bool no_header = false;
  bool rfc4180 = false;
  bool as_json = false;
  std::vector<std::string> columns;  ///< none: all
};
ExitStatus WriteTable(const TableOptions& options);

ExitStatus WriteReport(const PortOptions& options);

ExitStatus WriteExport(const PortOptions& options);

struct CheckOptions {
  PortOptions ports;
  RuleOptions rules;
  bool as_json = false;
  bool as_plugin = false;
  bool lists_rules = false;
};
ExitStatus Check(const CheckOptions& options);

struct DiffOptions {
  PortOptions ports;
  RuleOptions rules;
  std::string before;
  std::string after;  ///< empty: `before` is a snapshot, to be compared with the one before it
  Tolerances tolerances;
  bool as_json = false;
};
ExitStatus Diff(DiffOptions options);

/// The options of `metrics` and `page`.
struct JudgedPortOptions {
  PortOptions ports;
  RuleOptions rules;
};
ExitStatus WriteMetrics(const JudgedPortOptions& options);
ExitStatus WritePage(JudgedPortOptions options);

struct StoreOptions {
  PortOptions ports;
  RuleOptions rules;
  std::string database;
  std::string taken_at;               ///< empty: now
  std::optional<std::uint32_t> keep;  ///< none: all snapshots
};
ExitStatus StoreSnapshot(const StoreOptions& options);

struct ModuleOptions {
  PortOptions ports;  ///< the inputs may be dumps
  bool as_json = false;
};
ExitStatus WriteModules(ModuleOptions options);

struct ReadOptions {
  std::vector<std::string> names;  ///< of ports; none: all
  std::string sysfs = "/sys";
  std::string output = kStandardOutput;
  double watch = 0;    ///< seconds between rounds; 0: one round
  double timeout = 2;  ///< seconds for one request
  bool scan = false;
  bool quiet = false;
};
ExitStatus ReadModules(const ReadOptions& options);

struct ColumnsOptions {
  bool as_json = false;
};
ExitStatus WriteColumns(const ColumnsOptions& options);

}  // namespace cli
