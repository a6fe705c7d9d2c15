#include "cli/commands/rule_options.h"

#include <cerrno>
#include <fstream>
#include <optional>
#include <string_view>
#include <system_error>

#include "cable_info/value_format.h"
#include "cli/input/byte_order_mark.h"
#include "cli/message.h"
#include "cli/output/whole_output.h"
#include "cli/printable.h"
#include "cli/spelling.h"

namespace cli {

namespace {

using cable_info::RuleSettings;
using cable_info::Trimmed;

// Every name that a setting can have.
std::vector<std::string_view> SettingNames() {
  std::vector<std::string_view> names;
  for (std::size_t i = 0; i < cable_info::kRules; ++i) {
    names.push_back(RuleName(cable_info::RuleOf(i)));
  }
  for (const cable_info::RuleParameter& parameter : cable_info::kRuleParameters) {
    names.push_back(parameter.name);
  }
  return names;
}

// Applies "NAME=VALUE"; returns what is wrong with it.
std::optional<std::string> Apply(std::string_view setting, RuleSettings& settings) {
  const std::size_t equals = setting.find('=');
  if (equals == std::string_view::npos) {
    return "expected RULE=VALUE, found \"" + Shortened(setting) + '"';
  }
  const std::string name(Trimmed(setting.substr(0, equals)));
  const std::string value(Trimmed(setting.substr(equals + 1)));
  switch (settings.Set(name, value)) {
    case RuleSettings::Outcome::kSet:
      return std::nullopt;
    case RuleSettings::Outcome::kUnknownName:
      return "unknown rule \"" + Shortened(name) + '"' +
             Suggestion(name, SettingNames(), "; cableinfo check --rules lists all of them");
    case RuleSettings::Outcome::kBadValue:
      break;
  }
  return name + ": \"" + Shortened(value) +
         "\" is neither a severity (off, unknown, warning, critical) nor a limit of this rule";
}

// Applies the lines "RULE = VALUE" of a file.
ExitStatus ApplyFile(const std::string& path, RuleSettings& settings) {
  std::ifstream file(path);
  if (!file) return FileFailed(path, std::error_code(errno, std::generic_category()));
  ExitStatus status = ExitStatus::kGood;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    std::string_view text = line;
    if (++number == 1) text = WithoutByteOrderMark(text);
    const std::string_view setting = Trimmed(text.substr(0, text.find('#')));
    if (setting.empty()) continue;
    if (const std::optional<std::string> problem = Apply(setting, settings)) {
      PrintError(path + ':' + std::to_string(number) + ": " + *problem);
      status = ExitStatus::kUsage;
    }
  }
  if (file.bad()) return FileFailed(path, std::error_code(errno, std::generic_category()));
  return status;
}

}  // namespace

ExitStatus ApplyRuleOptions(const RuleOptions& options, RuleSettings& settings) {
  if (options.config) {
    const ExitStatus status = ApplyFile(*options.config, settings);
    if (status != ExitStatus::kGood) return status;
  }
  for (const std::string& setting : options.settings) {
    if (const std::optional<std::string> problem = Apply(setting, settings)) {
      PrintError("cableinfo: --set: " + *problem);
      return ExitStatus::kUsage;
    }
  }
  return ExitStatus::kGood;
}

}  // namespace cli
