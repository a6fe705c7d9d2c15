// The findings of `cableinfo check` as text, JSON, and one line for monitoring systems.

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>
#include <string>

#include "cable_info/text/text_buffer.h"
#include "cli/format_version.h"
#include "cli/json_text.h"
#include "cli/message.h"
#include "cli/output/check_result.h"

namespace cli {

namespace {

using cable_info::Finding;
using cable_info::Rule;
using cable_info::RuleSettings;
using cable_info::Verdict;
using cable_info::text::TextBuffer;

constexpr std::array<Verdict, cable_info::kVerdicts> kWorstFirst = {
    Verdict::kCritical, Verdict::kWarning, Verdict::kUnknown, Verdict::kOk};

// ---------------------------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------------------------

constexpr int kSeverityWidth = 8;  // of "critical"

void AppendPadded(std::string& out, std::string_view text, std::size_t width) {
  out += text;
  if (text.size() < width) out.append(width - text.size(), ' ');
}

// A verdict or a severity by the name that both share, padded to a common width.
void AppendColoured(std::string& out, std::string_view name, Colour colour, std::size_t width) {
  if (colour == Colour::kNone) return AppendPadded(out, name, width);
  out += name == "critical"  ? "\x1b[1;31m"
         : name == "warning" ? "\x1b[33m"
         : name == "unknown" ? "\x1b[36m"
                             : "\x1b[32m";
  AppendPadded(out, name, width);
  out += "\x1b[0m";
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded;
  AppendPadded(padded, text, width);
  return padded;
}

std::size_t RuleWidth(const std::vector<Finding>& findings) {
  std::size_t width = 0;
  for (const Finding& finding : findings) width = std::max(width, RuleName(finding.rule).size());
  return width;
}

void AppendPortFindings(std::string& out, const CheckResult& result, std::size_t port,
                        Colour colour) {
  AppendColoured(out, VerdictName(result.VerdictOf(port)), colour, 0);
  out += "  ";
  out += PortHeading(result.IdOf(port), result.LabelOf(port), result.PartNumberOf(port),
                     result.SerialNumberOf(port));
  out += '\n';
  const std::vector<Finding> findings = result.FindingsOf(port);
  const std::size_t width = RuleWidth(findings);
  for (const Finding& finding : findings) {
    out += "  ";
    AppendColoured(out, SeverityName(finding.severity), colour, kSeverityWidth);
    out += "  ";
    AppendPadded(out, RuleName(finding.rule), width);
    out.append("  ").append(Sentence(finding)).append("\n");
  }
}

void WriteCounts(std::ostream& os, const CheckResult& result, Colour colour) {
  os << Counted(result.size(), "port", "ports") << ": ";
  bool is_first = true;
  for (const Verdict verdict : kWorstFirst) {
    const std::size_t count = result.CountOf(verdict);
    if (!is_first) os << ", ";
    is_first = false;
    std::string name;
    AppendColoured(name, VerdictName(verdict), count == 0 ? Colour::kNone : colour, 0);
    os << count << ' ' << name;
  }
  os << '\n';
  std::size_t width = 0;
  std::vector<Rule> rules;
  for (std::size_t i = 0; i < cable_info::kRules; ++i) {
    const Rule rule = cable_info::RuleOf(i);
    if (result.CountOf(rule) == 0) continue;
    rules.push_back(rule);
    width = std::max(width, RuleName(rule).size());
  }
  std::stable_sort(rules.begin(), rules.end(),
                   [&](Rule a, Rule b) { return result.CountOf(a) > result.CountOf(b); });
  for (const Rule rule : rules) {
    os << "  " << Padded(RuleName(rule), width) << "  " << result.CountOf(rule) << '\n';
  }
}

// ---------------------------------------------------------------------------------------------
// JSON
// ---------------------------------------------------------------------------------------------

void WriteFinding(JsonText& json, const Finding& finding) {
  const std::string_view unit = RuleUnit(finding.rule);
  json.BeginObject();
  json.Key("rule").Plain(RuleName(finding.rule));
  json.Key("severity").Plain(SeverityName(finding.severity));
  json.Key("lane");
  finding.lane == 0 ? json.Null() : json.Integer(finding.lane);
  json.Key("value").Number(finding.value);
  json.Key("limit").Number(finding.limit);
  json.Key("unit");
  unit.empty() ? json.Null() : json.Plain(unit);
  json.Key("message").Bytes(Sentence(finding));
  json.EndObject();
}

void WritePortLine(std::ostream& os, const CheckResult& result, std::size_t port) {
  TextBuffer line;
  JsonText json(line);
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  json.Key("node_guid").Plain(GuidText(result.NodeGuidOf(port)));
  json.Key("port_guid").Plain(GuidText(result.IdOf(port).guid));
  json.Key("port_num").Integer(result.IdOf(port).number);
  json.Key("label");
  result.LabelOf(port).empty() ? json.Null() : json.Utf8(result.LabelOf(port));
  json.Key("part_number").BytesOrNull(result.PartNumberOf(port));
  json.Key("serial_number").BytesOrNull(result.SerialNumberOf(port));
  json.Key("verdict").Plain(VerdictName(result.VerdictOf(port)));
  json.Key("findings").BeginArray();
  for (const Finding& finding : result.FindingsOf(port)) WriteFinding(json, finding);
  json.EndArray();
  json.EndObject();
  os << line.Append('\n').view();
}

void WriteSummary(std::ostream& os, const CheckResult& result) {
  TextBuffer line;
  JsonText json(line);
  const auto count = [&](std::string_view key, std::size_t number) {
    json.Key(key).Integer(static_cast<std::uint32_t>(number));
  };
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  json.Key("summary").BeginObject();
  json.Key("verdict").Plain(VerdictName(result.verdict()));
  count("ports", result.size());
  json.Key("verdicts").BeginObject();
  for (const Verdict verdict : kWorstFirst) count(VerdictName(verdict), result.CountOf(verdict));
  json.EndObject();
  json.Key("rules").BeginObject();
  for (std::size_t i = 0; i < cable_info::kRules; ++i) {
    const Rule rule = cable_info::RuleOf(i);
    if (result.CountOf(rule) > 0) count(RuleName(rule), result.CountOf(rule));
  }
  json.EndObject();
  json.EndObject();
  json.EndObject();
  os << line.Append('\n').view();
}

// ---------------------------------------------------------------------------------------------
// Rules
// ---------------------------------------------------------------------------------------------

// A limit with its unit.
std::string LimitText(float limit, std::string_view unit) {
  TextBuffer out;
  out.AppendGeneral(static_cast<double>(limit));
  if (!unit.empty()) out.Append(' ').Append(unit);
  return std::string(out.view());
}

void WriteRule(std::ostream& os, std::string_view name, std::string_view severity,
               const std::string& limit, std::string_view meaning) {
  constexpr std::size_t kNameWidth = 34;
  constexpr std::size_t kLimitWidth = 8;
  os << Padded(name, kNameWidth) << Padded(severity, kSeverityWidth) << "  "
     << Padded(limit, kLimitWidth) << "  " << meaning << '\n';
}

void WriteParameters(std::ostream& os, const RuleSettings& settings, Rule rule) {
  for (std::size_t i = 0; i < cable_info::kRuleParameters.size(); ++i) {
    const cable_info::RuleParameter& parameter = cable_info::kRuleParameters[i];
    if (parameter.rule != rule) continue;
    if (std::isnan(parameter.limit)) {
      WriteRule(os, parameter.name, SeverityName(settings.ParameterSeverity(i)), "",
                parameter.meaning);
    } else {
      WriteRule(os, parameter.name, "", LimitText(settings.ParameterLimit(i), parameter.unit),
                parameter.meaning);
    }
  }
}

}  // namespace

void WriteCheckAsText(std::ostream& os, const CheckResult& result, Colour colour) {
  std::string text;
  for (const std::uint32_t port : result.WorstFirst()) {
    text.clear();
    AppendPortFindings(text, result, port, colour);
    os << text << '\n';
  }
  WriteCounts(os, result, colour);
}

void WriteCheckAsJson(std::ostream& os, const CheckResult& result) {
  for (std::size_t port = 0; port < result.size(); ++port) WritePortLine(os, result, port);
  WriteSummary(os, result);
}

void WriteCheckAsPlugin(std::ostream& os, const CheckResult& result, Verdict state) {
  constexpr std::array<std::string_view, cable_info::kVerdicts> kStates = {"OK", "UNKNOWN",
                                                                           "WARNING", "CRITICAL"};
  os << "CABLES " << kStates[static_cast<std::size_t>(state)] << " - "
     << Counted(result.size(), "port", "ports");
  for (const Verdict verdict : kWorstFirst) {
    os << ", " << result.CountOf(verdict) << ' ' << VerdictName(verdict);
  }
  os << " | ports=" << result.size();
  for (const Verdict verdict : kWorstFirst) {
    os << ' ' << VerdictName(verdict) << '=' << result.CountOf(verdict);
  }
  os << '\n';
}

void WriteRules(std::ostream& os, const RuleSettings& settings) {
  WriteRule(os, "rule", "severity", "limit", "what it finds");
  for (std::size_t i = 0; i < cable_info::kRules; ++i) {
    const Rule rule = cable_info::RuleOf(i);
    const std::optional<float> limit = settings.LimitOf(rule);
    WriteRule(os, RuleName(rule), SeverityName(settings.SeverityOf(rule)),
              limit ? LimitText(*limit, RuleUnit(rule)) : "", RuleMeaning(rule));
    WriteParameters(os, settings, rule);
  }
}

}  // namespace cli
