#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cable_info/readings/rules.h"
#include "cli/exit_status.h"

namespace cli {

/// The options of the commands that judge ports.
struct RuleOptions {
  std::vector<std::string> settings;  ///< "RULE=VALUE"
  std::optional<std::string> config;  ///< a file of such settings
};

/// Changes `settings` as the options specify, the file first. Prints what is wrong with them.
ExitStatus ApplyRuleOptions(const RuleOptions& options, cable_info::RuleSettings& settings);

}  // namespace cli
