#include "cable_info/readings/rules.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "cable_info/module_memory/alarm_words.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"

namespace cable_info {

namespace {

constexpr std::array<std::string_view, 4> kSeverityNames = {"off", "unknown", "warning",
                                                            "critical"};
constexpr std::array<std::string_view, kVerdicts> kVerdictNames = {"ok", "unknown", "warning",
                                                                   "critical"};

constexpr std::size_t kThresholdRules = kQuantities * kAlarmLevels;

constexpr std::size_t Number(Rule rule) { return static_cast<std::size_t>(rule); }

// The subject of a rule for a level of a quantity.
struct MonitorRule {
  Quantity quantity;
  AlarmLevel level;
  bool is_latched;
};

constexpr bool IsMonitorRule(Rule rule) {
  return rule >= Rule::kFirstThreshold && rule < Rule::kFirstLaneFlag;
}

std::optional<MonitorRule> MonitorRuleOf(Rule rule) {
  if (!IsMonitorRule(rule)) return std::nullopt;
  const std::size_t number = Number(rule) - Number(Rule::kFirstThreshold);
  const std::size_t within = number % kThresholdRules;
  return MonitorRule{static_cast<Quantity>(within / kAlarmLevels),
                     static_cast<AlarmLevel>(within % kAlarmLevels), number >= kThresholdRules};
}

// The rules without a level.
struct SingleRule {
  Rule rule;
  std::string_view name;
  Severity severity;
  std::string_view unit;
  float limit;
  std::string_view meaning;
};

constexpr auto kSingleRules = std::array<SingleRule, 14>{{
    {Rule::kQueryFailed, "query-failed", Severity::kCritical, "", Finding::kNone,
     "the query that reads the module failed"},
    {Rule::kNoData, "no-data", Severity::kUnknown, "", Finding::kNone,
     "nothing was read from the port's cable"},
    {LaneFlagRule(LaneFlag::kRxLos), "rx-los", Severity::kWarning, "mW", 0.001F,
     "loss of the received signal is latched; at or below the limit there is no light"},
    {LaneFlagRule(LaneFlag::kTxLos), "tx-los", Severity::kWarning, "", Finding::kNone,
     "loss of the host's signal is latched"},
    {LaneFlagRule(LaneFlag::kRxLol), "rx-lol", Severity::kWarning, "", Finding::kNone,
     "loss of lock of the receiver's CDR is latched"},
    {LaneFlagRule(LaneFlag::kTxLol), "tx-lol", Severity::kWarning, "", Finding::kNone,
     "loss of lock of the transmitter's CDR is latched"},
    {LaneFlagRule(LaneFlag::kTxFault), "tx-fault", Severity::kWarning, "mW", 0.001F,
     "a transmitter fault is latched; at or below the limit there is no light"},
    {LaneFlagRule(LaneFlag::kAdaptiveEqFault), "adaptive-eq-fault", Severity::kWarning, "",
     Finding::kNone, "a fault of the adaptive equalization is latched"},
    {Rule::kLaneImbalance, "lane-imbalance", Severity::kWarning, "dB", 3.0F,
     "RX power of the lanes in use differs by more than the limit"},
    {Rule::kOutlier, "outlier", Severity::kWarning, "dB", 3.0F,
     "RX power is below the median of modules with the same part number by more than the limits"},
    {Rule::kLinkLoss, "link-loss", Severity::kWarning, "dB", 6.0F,
     "the far end's TX power is above this end's RX power by more than the limit"},
    {Rule::kEndMismatch, "end-mismatch", Severity::kWarning, "", Finding::kNone,
     "the ends of a cable without separable connectors disagree on part or serial number"},
    {Rule::kLengthMismatch, "length-mismatch", Severity::kWarning, "m", 2.0F,
     "the measured length differs from the stated one by more than both limits"},
    {Rule::kChecksum, "checksum", Severity::kWarning, "", Finding::kNone,
     "a checksum of the module's memory does not match"},
}};

constexpr bool HasOneLineForEachRule() {
  for (std::size_t i = 0; i < kRules; ++i) {
    std::size_t lines = 0;
    for (const SingleRule& single : kSingleRules) lines += single.rule == RuleOf(i) ? 1U : 0U;
    if (lines != (IsMonitorRule(RuleOf(i)) ? 0U : 1U)) return false;
  }
  return true;
}
static_assert(HasOneLineForEachRule(), "each rule without a level has one line");

const SingleRule* FindSingleRule(Rule rule) {
  const auto* const found =
      std::find_if(kSingleRules.begin(), kSingleRules.end(),
                   [rule](const SingleRule& single) { return single.rule == rule; });
  return found == kSingleRules.end() ? nullptr : found;
}

// A name of words joined by dashes.
std::string Dashed(std::string_view words) {
  std::string name(words);
  std::replace(name.begin(), name.end(), '_', '-');
  return name;
}

std::string MonitorRuleName(const MonitorRule& rule) {
  return Dashed(QuantityName(rule.quantity)) + '-' + Dashed(AlarmLevelName(rule.level)) +
         (rule.is_latched ? "-latched" : "");
}

struct RuleTexts {
  std::string name;
  std::string meaning;
};

// Quantities as sentences name them.
constexpr std::array<std::string_view, kQuantities> kQuantityWords = {
    "temperature", "supply voltage", "RX power", "TX power", "TX bias"};

std::string_view Words(Quantity quantity) {
  return kQuantityWords[static_cast<std::size_t>(quantity)];
}
std::string_view Words(AlarmLevel level) { return module_memory::AlarmLevelWords(level); }

std::string MonitorRuleMeaning(const MonitorRule& rule) {
  std::string meaning(Words(rule.quantity));
  if (rule.is_latched) {
    return meaning.append(" ")
        .append(Words(rule.level))
        .append(" is latched; the value is within the threshold now, or unknown");
  }
  return meaning.append(IsHigh(rule.level) ? " is above the " : " is below the ")
      .append("module's own ")
      .append(Words(rule.level))
      .append(" threshold");
}

std::array<RuleTexts, kRules> MakeTexts() {
  std::array<RuleTexts, kRules> texts;
  for (std::size_t i = 0; i < kRules; ++i) {
    const Rule rule = RuleOf(i);
    if (const std::optional<MonitorRule> monitor = MonitorRuleOf(rule)) {
      texts[i] = {MonitorRuleName(*monitor), MonitorRuleMeaning(*monitor)};
    } else if (const SingleRule* const single = FindSingleRule(rule)) {
      texts[i] = {std::string(single->name), std::string(single->meaning)};
    }
  }
  return texts;
}

const RuleTexts& TextsOf(Rule rule) {
  static const std::array<RuleTexts, kRules> texts = MakeTexts();
  return texts[Number(rule)];
}

Severity DefaultSeverity(Rule rule) {
  if (const std::optional<MonitorRule> monitor = MonitorRuleOf(rule)) {
    return IsAlarm(monitor->level) && !monitor->is_latched ? Severity::kCritical
                                                           : Severity::kWarning;
  }
  return FindSingleRule(rule)->severity;
}

std::optional<Severity> ParseSeverity(std::string_view text) {
  for (std::size_t i = 0; i < kSeverityNames.size(); ++i) {
    if (kSeverityNames[i] == text) return static_cast<Severity>(i);
  }
  return std::nullopt;
}

std::optional<float> ParseLimit(std::string_view text) {
  float number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number)) return std::nullopt;
  return number;
}

// True for a rule whose limit can be set.
bool TakesLimit(Rule rule) {
  if (const std::optional<MonitorRule> monitor = MonitorRuleOf(rule)) return !monitor->is_latched;
  return !RuleUnit(rule).empty();
}

constexpr std::size_t kRxLosDark = 0;  // of kRuleParameters
constexpr std::size_t kTxFaultDark = 1;
constexpr std::size_t kLengthPercent = 4;
static_assert(kRuleParameters[kRxLosDark].name == "rx-los.dark");
static_assert(kRuleParameters[kTxFaultDark].name == "tx-fault.dark");
static_assert(kRuleParameters[kLengthPercent].name == "length-mismatch.percent");

// ---------------------------------------------------------------------------------------------
// Judging a port
// ---------------------------------------------------------------------------------------------

class Judgement {
 public:
  Judgement(const Readings& port, const RuleSettings& settings, std::vector<Finding>& findings)
      : port_(port), settings_(settings), findings_(findings) {}

  void Do() {
    if (!port_.has_data) return Add(Rule::kNoData, {});
    if (port_.query_status.value_or(0) != 0) {
      return Add(Rule::kQueryFailed, OnlyValue(*port_.query_status));
    }
    JudgeLevels(port_.Of(Quantity::kTemperature));
    JudgeLevels(port_.Of(Quantity::kVoltage));
    if (IsOptical()) JudgeLight();
    if (port_.medium != Medium::kPassiveCopper) JudgeHostSide();
    JudgeLength();
    if (port_.checksum_mismatches > 0) {
      Add(Rule::kChecksum, OnlyValue(port_.checksum_mismatches));
    }
  }

 private:
  struct Numbers {
    int lane = 0;
    float value = Finding::kNone;
    float limit = Finding::kNone;
    float reference = Finding::kNone;
  };

  static Numbers OnlyValue(int value) {
    return {0, static_cast<float>(value), Finding::kNone, Finding::kNone};
  }

  void Add(Rule rule, const Numbers& numbers) { Add(rule, settings_.SeverityOf(rule), numbers); }

  void Add(Rule rule, Severity severity, const Numbers& numbers) {
    if (severity == Severity::kOff) return;
    findings_.push_back({rule, severity, static_cast<std::uint8_t>(numbers.lane), 0, numbers.value,
                         numbers.limit, numbers.reference});
  }

  bool IsOptical() const {
    return port_.medium == Medium::kOptical || port_.medium == Medium::kUnknown;
  }

  void JudgeLevels(const Reading& reading) {
    // Most readings raise no finding.
    if (!reading.IsPresent() && reading.latched.raised == 0) return;
    const float value = reading.IsPresent() ? reading.value : Finding::kNone;
    for (const AlarmLevel level : kAllAlarmLevels) {
      const Rule rule = ThresholdRule(reading.quantity, level);
      const std::optional<float> set = settings_.LimitOf(rule);
      const std::optional<float> limit = set ? set : reading.Threshold(level);
      if (limit && reading.IsBeyond(level, *limit)) {
        Add(rule, {reading.lane, value, *limit, Finding::kNone});
      } else if (reading.latched.IsRaised(static_cast<int>(level) + 1)) {
        Add(LatchedRule(reading.quantity, level),
            {reading.lane, value, limit.value_or(Finding::kNone), Finding::kNone});
      }
    }
  }

  void JudgeLight() {
    for (int lane = 1; lane <= port_.lanes; ++lane) {
      if (!port_.IsInUse(lane)) continue;
      const Reading& rx_power = port_.Of(Quantity::kRxPower, lane);
      const Reading& tx_power = port_.Of(Quantity::kTxPower, lane);
      JudgeLevels(rx_power);
      JudgeLevels(tx_power);
      JudgeLevels(port_.Of(Quantity::kTxBias, lane));
      JudgeLightFlag(LaneFlag::kRxLos, rx_power, kRxLosDark);
      JudgeLightFlag(LaneFlag::kTxFault, tx_power, kTxFaultDark);
    }
    JudgeBalance();
  }

  // A flag with a second severity for lanes that have no light now.
  void JudgeLightFlag(LaneFlag flag, const Reading& power, std::size_t dark_parameter) {
    if (!port_.Of(flag).IsRaised(power.lane)) return;
    const Rule rule = LaneFlagRule(flag);
    Severity severity = settings_.SeverityOf(rule);
    if (severity == Severity::kOff) return;
    const float limit = settings_.LimitOf(rule).value_or(0);
    if (power.IsPresent() && power.value <= limit) {
      severity = settings_.ParameterSeverity(dark_parameter);
    }
    Add(rule, severity,
        {power.lane, power.IsPresent() ? power.value : Finding::kNone, limit, Finding::kNone});
  }

  void JudgeBalance() {
    int strongest = 0;
    int weakest = 0;
    const auto power = [&](int lane) { return port_.Of(Quantity::kRxPower, lane).value; };
    for (int lane = 1; lane <= port_.lanes; ++lane) {
      if (!port_.IsInUse(lane) || !port_.Of(Quantity::kRxPower, lane).IsPresent()) continue;
      if (strongest == 0 || power(lane) > power(strongest)) strongest = lane;
      if (weakest == 0 || power(lane) < power(weakest)) weakest = lane;
    }
    if (strongest == weakest) return;
    const float limit = settings_.LimitOf(Rule::kLaneImbalance).value_or(0);
    const double difference = DbmOrDark(static_cast<double>(power(strongest))) -
                              DbmOrDark(static_cast<double>(power(weakest)));
    if (difference <= static_cast<double>(limit)) return;
    Add(Rule::kLaneImbalance,
        {weakest, static_cast<float>(difference), limit, static_cast<float>(strongest)});
  }

  void JudgeHostSide() {
    for (const LaneFlag flag :
         {LaneFlag::kTxLos, LaneFlag::kRxLol, LaneFlag::kTxLol, LaneFlag::kAdaptiveEqFault}) {
      if (port_.Of(flag).raised == 0) continue;
      for (int lane = 1; lane <= port_.lanes; ++lane) {
        if (port_.IsInUse(lane) && port_.Of(flag).IsRaised(lane)) {
          Add(LaneFlagRule(flag), {lane, Finding::kNone, Finding::kNone, Finding::kNone});
        }
      }
    }
  }

  void JudgeLength() {
    constexpr float kPercent = 100;
    const Lengths& lengths = port_.lengths;
    if (!lengths.measured || !lengths.cable) return;
    const float difference = std::fabs(*lengths.measured - *lengths.cable);
    const float limit =
        std::max(settings_.LimitOf(Rule::kLengthMismatch).value_or(0),
                 *lengths.cable * settings_.ParameterLimit(kLengthPercent) / kPercent);
    if (difference > limit) Add(Rule::kLengthMismatch, {0, difference, limit, *lengths.cable});
  }

  const Readings& port_;
  const RuleSettings& settings_;
  std::vector<Finding>& findings_;
};

// ---------------------------------------------------------------------------------------------
// Sentences
// ---------------------------------------------------------------------------------------------

bool Has(float number) { return !std::isnan(number); }

void AppendNumber(std::string& text, double number) {
  text::TextBuffer out;
  constexpr double kThousand = 1000;
  out.AppendGeneral(std::round(number * kThousand) / kThousand);
  text.append(out.view());
}

// "0.021 mW (-16.778 dBm)" for a power, "79 C" for another quantity.
std::string Shown(Quantity quantity, float value) {
  std::string text;
  AppendNumber(text, static_cast<double>(value));
  text.append(" ").append(QuantityUnit(quantity));
  const std::optional<double> dbm =
      IsPower(quantity) ? MilliwattsToDbm(static_cast<double>(value)) : std::nullopt;
  if (dbm) {
    text.append(" (");
    AppendNumber(text, *dbm);
    text.append(" dBm)");
  }
  return text;
}

std::string Shown(float value, std::string_view unit) {
  std::string text;
  AppendNumber(text, static_cast<double>(value));
  return text.append(" ").append(unit);
}

// " of lane 3", or nothing for the module.
std::string OfLane(const Finding& finding) {
  return finding.lane == 0 ? "" : " of lane " + std::to_string(finding.lane);
}

std::string MonitorSentence(const Finding& finding, const MonitorRule& rule) {
  if (!rule.is_latched) {
    return "The " + std::string(Words(rule.quantity)) + OfLane(finding) + " is " +
           Shown(rule.quantity, finding.value) +
           (IsHigh(rule.level) ? ", above the " : ", below the ") + std::string(Words(rule.level)) +
           " limit of " + Shown(rule.quantity, finding.limit) + '.';
  }
  return "The " + std::string(Words(rule.quantity)) + ' ' + std::string(Words(rule.level)) +
         OfLane(finding) + " is latched; " +
         (Has(finding.value) ? "the value is " + Shown(rule.quantity, finding.value) + " now."
                             : "the value is not known now.");
}

std::string LightSentence(const Finding& finding, std::string_view what, Quantity quantity) {
  std::string text(what);
  text += OfLane(finding) + " is latched; ";
  if (!Has(finding.value)) {
    return text + "the " + std::string(Words(quantity)) + " is not known now.";
  }
  if (finding.value <= finding.limit) {
    return text + "there is no light now (" + Shown(quantity, finding.value) + ").";
  }
  return text + "the " + std::string(Words(quantity)) + " is " + Shown(quantity, finding.value) +
         " now.";
}

std::string FlagSentence(const Finding& finding) {
  switch (static_cast<LaneFlag>(Number(finding.rule) - Number(Rule::kFirstLaneFlag))) {
    case LaneFlag::kRxLos:
      return LightSentence(finding, "Loss of the received signal", Quantity::kRxPower);
    case LaneFlag::kTxLos:
      return "Loss of the host's signal" + OfLane(finding) + " is latched.";
    case LaneFlag::kRxLol:
      return "Loss of lock of the receiver's CDR" + OfLane(finding) + " is latched.";
    case LaneFlag::kTxLol:
      return "Loss of lock of the transmitter's CDR" + OfLane(finding) + " is latched.";
    case LaneFlag::kTxFault:
      return LightSentence(finding, "A transmitter fault", Quantity::kTxPower);
    case LaneFlag::kAdaptiveEqFault:
      return "A fault of the adaptive equalization" + OfLane(finding) + " is latched.";
  }
  return {};
}

std::string MismatchSentence(const Finding& finding) {
  constexpr unsigned kBoth = kPartNumberDiffers | kSerialNumberDiffers;
  const std::string_view what = finding.detail == kBoth                ? "part and serial numbers"
                                : finding.detail == kPartNumberDiffers ? "part numbers"
                                                                       : "serial numbers";
  return "The two ends of the cable report different " + std::string(what) + '.';
}

std::string ChecksumSentence(const Finding& finding) {
  if (finding.value == 1) return "A checksum of the module's memory does not match.";
  return Shown(finding.value, "checksums") + " of the module's memory do not match.";
}

std::string DecibelSentence(const Finding& finding) {
  const std::string value = Shown(finding.value, "dB");
  const std::string limit = Shown(finding.limit, "dB");
  if (finding.rule == Rule::kLaneImbalance) {
    return "The RX power" + OfLane(finding) + " is " + value + " below that of lane " +
           std::to_string(std::lround(finding.reference)) + ", more than " + limit + '.';
  }
  if (finding.rule == Rule::kOutlier) {
    return "The RX power is " + value + " below the median of its part number (" +
           Shown(finding.reference, "dBm") + "), more than " + limit + '.';
  }
  return "The RX power" + OfLane(finding) + " is " + value +
         " below the far end's TX power, more than " + limit + '.';
}

}  // namespace

std::string_view SeverityName(Severity severity) {
  return kSeverityNames[static_cast<std::size_t>(severity)];
}

std::string_view VerdictName(Verdict verdict) {
  return kVerdictNames[static_cast<std::size_t>(verdict)];
}

std::string_view RuleName(Rule rule) { return TextsOf(rule).name; }

std::string_view RuleMeaning(Rule rule) { return TextsOf(rule).meaning; }

std::optional<Rule> FindRule(std::string_view name) {
  for (std::size_t i = 0; i < kRules; ++i) {
    if (RuleName(RuleOf(i)) == name) return RuleOf(i);
  }
  return std::nullopt;
}

std::string_view RuleUnit(Rule rule) {
  if (const std::optional<MonitorRule> monitor = MonitorRuleOf(rule)) {
    return QuantityUnit(monitor->quantity);
  }
  return FindSingleRule(rule)->unit;
}

RuleSettings::RuleSettings() {
  for (std::size_t i = 0; i < kRules; ++i) {
    severities_[i] = DefaultSeverity(RuleOf(i));
    const SingleRule* const single = FindSingleRule(RuleOf(i));
    if (single != nullptr && Has(single->limit)) limits_[i] = single->limit;
  }
  for (std::size_t i = 0; i < kRuleParameters.size(); ++i) {
    parameter_severities_[i] = kRuleParameters[i].severity;
    parameter_limits_[i] = kRuleParameters[i].limit;
  }
}

RuleSettings::Outcome RuleSettings::Set(std::string_view name, std::string_view value) {
  const std::optional<Severity> severity = ParseSeverity(value);
  const std::optional<float> limit = ParseLimit(value);
  for (std::size_t i = 0; i < kRuleParameters.size(); ++i) {
    if (kRuleParameters[i].name != name) continue;
    if (Has(kRuleParameters[i].limit)) {
      if (!limit || *limit < 0) return Outcome::kBadValue;
      parameter_limits_[i] = *limit;
    } else {
      if (!severity) return Outcome::kBadValue;
      parameter_severities_[i] = *severity;
    }
    return Outcome::kSet;
  }
  const std::optional<Rule> rule = FindRule(name);
  if (!rule) return Outcome::kUnknownName;
  if (severity) {
    severities_[Index(*rule)] = *severity;
    return Outcome::kSet;
  }
  if (!limit || !TakesLimit(*rule)) return Outcome::kBadValue;
  const std::optional<MonitorRule> monitor = MonitorRuleOf(*rule);
  const bool may_be_negative = monitor && monitor->quantity == Quantity::kTemperature;
  if (*limit < 0 && !may_be_negative) return Outcome::kBadValue;
  limits_[Index(*rule)] = *limit;
  return Outcome::kSet;
}

std::string Sentence(const Finding& finding) {
  if (const std::optional<MonitorRule> monitor = MonitorRuleOf(finding.rule)) {
    return MonitorSentence(finding, *monitor);
  }
  switch (finding.rule) {
    case Rule::kQueryFailed:
      return "The query that reads the module failed: " +
             ConvertCableInfoVSStatusToStr(static_cast<std::uint8_t>(finding.value)) + '.';
    case Rule::kNoData:
      return "Nothing was read from the port's cable.";
    case Rule::kLaneImbalance:
    case Rule::kOutlier:
    case Rule::kLinkLoss:
      return DecibelSentence(finding);
    case Rule::kEndMismatch:
      return MismatchSentence(finding);
    case Rule::kLengthMismatch:
      return "The measured length differs from the stated " + Shown(finding.reference, "m") +
             " by " + Shown(finding.value, "m") + ", more than " + Shown(finding.limit, "m") + '.';
    case Rule::kChecksum:
      return ChecksumSentence(finding);
    default:
      return FlagSentence(finding);
  }
}

Verdict VerdictOf(const Finding* first, const Finding* last) {
  Severity worst = Severity::kOff;
  for (; first != last; ++first) worst = std::max(worst, first->severity);
  return static_cast<Verdict>(worst);
}

void SortWorstFirst(std::vector<Finding>& findings) {
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    if (a.severity != b.severity) return a.severity > b.severity;
    if (a.rule != b.rule) return a.rule < b.rule;
    return a.lane < b.lane;
  });
}

double DbmOrDark(double milliwatts) {
  return std::max(MilliwattsToDbm(milliwatts).value_or(kDarkDbm), kDarkDbm);
}

void Judge(const Readings& port, const RuleSettings& settings, std::vector<Finding>& findings) {
  Judgement(port, settings, findings).Do();
}

}  // namespace cable_info
