#pragma once

/// \file
/// Judges the readings of a port by rules, each with a stable name, a severity and its limits.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/readings/readings.h"

namespace cable_info {

/// The severity of a finding; `kOff` disables a rule.
enum class Severity : std::uint8_t { kOff, kUnknown, kWarning, kCritical };

/// "off", "unknown", "warning" or "critical".
std::string_view SeverityName(Severity severity);

/// The overall result for a port or several ports, in ascending severity.
enum class Verdict : std::uint8_t { kOk, kUnknown, kWarning, kCritical };

/// The number of verdicts.
inline constexpr std::size_t kVerdicts = 4;

/// "ok", "unknown", "warning" or "critical".
std::string_view VerdictName(Verdict verdict);

/// A rule. Rules for a level of a quantity have no enumerators: see `ThresholdRule` and
/// `LatchedRule`.
enum class Rule : std::uint8_t {
  kQueryFailed,
  kNoData,
  kFirstThreshold,                                               ///< 20 of them: quantity by level
  kFirstLatched = kFirstThreshold + kQuantities * kAlarmLevels,  ///< 20 of them, in the same order
  kFirstLaneFlag = kFirstLatched + kQuantities * kAlarmLevels,   ///< in the order of `LaneFlag`
  kLaneImbalance = kFirstLaneFlag + kAllLaneFlags.size(),
  kOutlier,
  kLinkLoss,
  kEndMismatch,
  kLengthMismatch,
  kChecksum,
};

/// The number of rules.
inline constexpr std::size_t kRules = static_cast<std::size_t>(Rule::kChecksum) + 1;

/// The rule for a current value beyond a level.
constexpr Rule ThresholdRule(Quantity quantity, AlarmLevel level) {
  return static_cast<Rule>(static_cast<std::size_t>(Rule::kFirstThreshold) +
                           static_cast<std::size_t>(quantity) * kAlarmLevels +
                           static_cast<std::size_t>(level));
}

/// The rule for a latched flag of a level that the current value is not beyond.
constexpr Rule LatchedRule(Quantity quantity, AlarmLevel level) {
  return static_cast<Rule>(static_cast<std::size_t>(ThresholdRule(quantity, level)) +
                           kQuantities * kAlarmLevels);
}

/// The rule for a latched lane flag.
constexpr Rule LaneFlagRule(LaneFlag flag) {
  return static_cast<Rule>(static_cast<std::size_t>(Rule::kFirstLaneFlag) +
                           static_cast<std::size_t>(flag));
}

/// The rule of a number below `kRules`.
constexpr Rule RuleOf(std::size_t number) { return static_cast<Rule>(number); }

/// The stable name of a rule, such as "rx-power-low-alarm".
std::string_view RuleName(Rule rule);

/// The rule with a name; none for an unknown name.
std::optional<Rule> FindRule(std::string_view name);

/// The meaning of a rule in one phrase.
std::string_view RuleMeaning(Rule rule);

/// The unit of a rule's values and first limit: "C", "V", "mW", "mA", "dB" or "m"; empty for a rule
/// without a value.
std::string_view RuleUnit(Rule rule);

/// A limit, or a second severity, of a rule that has more than one.
struct RuleParameter {
  Rule rule;                 ///< the rule that it belongs to
  std::string_view name;     ///< as `RuleSettings::Set` knows it, such as "outlier.modules"
  std::string_view unit;     ///< empty for a plain number or a severity
  float limit;               ///< the default; NaN where it is a severity
  Severity severity;         ///< the default; `kOff` where it is a limit
  std::string_view meaning;  ///< in one phrase
};

/// All of these parameters.
inline constexpr std::array<RuleParameter, 5> kRuleParameters = {{
    {LaneFlagRule(LaneFlag::kRxLos), "rx-los.dark", "", std::numeric_limits<float>::quiet_NaN(),
     Severity::kCritical, "severity where the lane receives no light now"},
    {LaneFlagRule(LaneFlag::kTxFault), "tx-fault.dark", "", std::numeric_limits<float>::quiet_NaN(),
     Severity::kCritical, "severity where the lane transmits no light now"},
    {Rule::kOutlier, "outlier.deviations", "", 4.0F, Severity::kOff,
     "robust standard deviations below the median"},
    {Rule::kOutlier, "outlier.modules", "", 8.0F, Severity::kOff,
     "least number of modules with the same part number"},
    {Rule::kLengthMismatch, "length-mismatch.percent", "%", 20.0F, Severity::kOff,
     "difference from the stated length"},
}};

/// Severities and limits of all rules.
class RuleSettings {
 public:
  /// The defaults.
  RuleSettings();

  /// The result of `Set`.
  enum class Outcome : std::uint8_t { kSet, kUnknownName, kBadValue };

  /// Sets the severity or the limit of `name`, which is a rule or one of `kRuleParameters`: `value`
  /// is "off", "unknown", "warning" or "critical", or a number in the rule's unit.
  Outcome Set(std::string_view name, std::string_view value);

  /// The severity of a rule; `kOff` for one that is not applied.
  Severity SeverityOf(Rule rule) const { return severities_[Index(rule)]; }
  /// The limit of a rule; empty if the threshold of the module applies or the rule has none.
  std::optional<float> LimitOf(Rule rule) const { return limits_[Index(rule)]; }
  /// The severity of an entry of `kRuleParameters`.
  Severity ParameterSeverity(std::size_t parameter) const {
    return parameter_severities_[parameter];
  }
  /// The limit of an entry of `kRuleParameters`.
  float ParameterLimit(std::size_t parameter) const { return parameter_limits_[parameter]; }

 private:
  static constexpr std::size_t Index(Rule rule) { return static_cast<std::size_t>(rule); }

  std::array<Severity, kRules> severities_{};
  std::array<std::optional<float>, kRules> limits_;
  std::array<Severity, kRuleParameters.size()> parameter_severities_{};
  std::array<float, kRuleParameters.size()> parameter_limits_{};
};

/// \name Bits of `Finding::detail`
/// @{
inline constexpr std::uint8_t kPartNumberDiffers = 1;    ///< the ends name different part numbers
inline constexpr std::uint8_t kSerialNumberDiffers = 2;  ///< the ends name different serial numbers
/// @}

/// A finding of a rule. Numbers that it does not have are NaN.
struct Finding {
  /// A number that the finding does not have.
  static constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

  Rule rule = Rule::kNoData;               ///< the rule
  Severity severity = Severity::kUnknown;  ///< its severity
  std::uint8_t lane = 0;                   ///< 1..8; 0 is the module
  std::uint8_t detail = 0;  ///< of `kEndMismatch`: `kPartNumberDiffers`, `kSerialNumberDiffers`
  /// In `RuleUnit`; for `kQueryFailed` the status, for `kChecksum` the number of wrong checksums.
  float value = kNone;
  float limit = kNone;  ///< in `RuleUnit`
  /// The value that it was compared with: of `kLaneImbalance` the strongest lane, of `kOutlier` the
  /// median in dBm, of `kLengthMismatch` the stated length in metres.
  float reference = kNone;
};

/// The finding as one sentence.
std::string Sentence(const Finding& finding);

/// The worst of the findings; `kOk` if there are none.
Verdict VerdictOf(const Finding* first, const Finding* last);

/// Sorts findings by severity, the worst first, then by rule and lane.
void SortWorstFirst(std::vector<Finding>& findings);

/// The power used for no light: the resolution of a module's registers, 0.1 uW, in dBm.
inline constexpr double kDarkDbm = -40.0;

/// The power of a lane in dBm; `kDarkDbm` if it is lower or there is no light.
double DbmOrDark(double milliwatts);

/// Appends the findings of all rules that need only one port to `findings`: all except `kOutlier`,
/// `kLinkLoss` and `kEndMismatch`, which need the fabric (see fabric_rules.h).
///
/// Lanes that are not in use, copper and modules without monitors raise no optical finding: none of
/// power, bias, loss of light and transmitter faults. The flags of the host's side and of the CDRs
/// apply to active copper, too.
void Judge(const Readings& port, const RuleSettings& settings, std::vector<Finding>& findings);

}  // namespace cable_info
