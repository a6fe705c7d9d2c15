#include "cli/output/check_result.h"

#include <algorithm>
#include <optional>
#include <ostream>

#include "cable_info/readings/readings.h"
#include "cli/output/packed_bytes.h"
#include "cli/printable.h"

namespace cli {

using cable_info::FabricPort;
using cable_info::Finding;
using cable_info::PortId;
using cable_info::Readings;
using cable_info::Rule;
using cable_info::Verdict;

namespace {

// A judged port, followed by its findings, part number, serial number and label.
struct Head {
  std::uint64_t node_guid = 0;
  PortId id = {};
  PortId peer = {};
  bool has_peer = false;
  bool is_separable = false;
  int lanes = 0;
  std::array<float, cable_info::kMaxLanes> rx_power = {};
  std::array<float, cable_info::kMaxLanes> tx_power = {};
  std::size_t findings = 0;
};

}  // namespace

void WriteJudgedPort(std::ostream& os, const Port& port, const Readings& readings,
                     const cable_info::RuleSettings& settings) {
  std::vector<Finding> findings;
  Judge(readings, settings, findings);
  const FabricPort fabric({port.port_guid, port.number}, port.peer, readings);
  Head head{};
  head.node_guid = port.node_guid;
  head.id = fabric.id;
  head.peer = fabric.peer.value_or(PortId());
  head.has_peer = fabric.peer.has_value();
  head.is_separable = fabric.is_separable;
  head.lanes = fabric.lanes;
  head.rx_power = fabric.rx_power;
  head.tx_power = fabric.tx_power;
  head.findings = findings.size();
  PackValue(os, head);
  for (const Finding& finding : findings) PackValue(os, finding);
  PackText(os, fabric.part_number);
  PackText(os, fabric.serial_number);
  PackText(os, port.label);
}

void CheckResult::Add(std::string_view judged_ports) {
  FabricPort fabric;
  while (!judged_ports.empty()) {
    const auto head = TakeValue<Head>(judged_ports);
    Kept kept{head.node_guid, findings_.size(), labels_.size(), 0, Verdict::kOk};
    for (std::size_t i = 0; i < head.findings; ++i) {
      const auto finding = TakeValue<Finding>(judged_ports);
      findings_.push_back(finding);
      kept.verdict = std::max(kept.verdict, cable_info::VerdictOf(&finding, &finding + 1));
    }
    fabric.id = head.id;
    fabric.peer = head.has_peer ? std::optional(head.peer) : std::nullopt;
    fabric.is_separable = head.is_separable;
    fabric.lanes = head.lanes;
    fabric.rx_power = head.rx_power;
    fabric.tx_power = head.tx_power;
    fabric.part_number = TakeText(judged_ports);
    fabric.serial_number = TakeText(judged_ports);
    fabric_.Add(fabric);
    const std::string_view label = TakeText(judged_ports);
    kept.label_size = static_cast<std::uint32_t>(label.size());
    labels_ += label;
    ports_.push_back(kept);
  }
}

void CheckResult::Finish() {
  fabric_.Judge([this](std::size_t port, const Finding& finding) {
    compared_.push_back({static_cast<std::uint32_t>(port), finding});
    ports_[port].verdict =
        std::max(ports_[port].verdict, cable_info::VerdictOf(&finding, &finding + 1));
  });
  std::stable_sort(compared_.begin(), compared_.end(),
                   [](const Compared& a, const Compared& b) { return a.port < b.port; });
  for (const Kept& port : ports_) ++verdicts_[static_cast<std::size_t>(port.verdict)];
  const auto count = [this](Rule rule) { ++rules_[static_cast<std::size_t>(rule)]; };
  for (const Finding& finding : findings_) count(finding.rule);
  for (const Compared& compared : compared_) count(compared.finding.rule);
}

std::string_view CheckResult::LabelOf(std::size_t port) const {
  return std::string_view(labels_).substr(ports_[port].label_begin, ports_[port].label_size);
}

std::vector<Finding> CheckResult::FindingsOf(std::size_t port) const {
  const bool is_last = port + 1 == ports_.size();
  const std::uint64_t end = is_last ? findings_.size() : ports_[port + 1].first_finding;
  std::vector<Finding> findings;
  for (std::uint64_t i = ports_[port].first_finding; i < end; ++i) findings.push_back(findings_[i]);
  const auto first = std::lower_bound(
      compared_.begin(), compared_.end(), port,
      [](const Compared& compared, std::size_t wanted) { return compared.port < wanted; });
  for (auto at = first; at != compared_.end() && at->port == port; ++at) {
    findings.push_back(at->finding);
  }
  SortWorstFirst(findings);
  return findings;
}

Verdict CheckResult::verdict() const {
  for (std::size_t i = cable_info::kVerdicts; i-- > 0;) {
    if (verdicts_[i] > 0) return static_cast<Verdict>(i);
  }
  return Verdict::kOk;
}

std::size_t CheckResult::CountOf(Verdict verdict) const {
  return verdicts_[static_cast<std::size_t>(verdict)];
}

std::size_t CheckResult::CountOf(Rule rule) const { return rules_[static_cast<std::size_t>(rule)]; }

std::vector<std::uint32_t> CheckResult::WorstFirst() const {
  std::vector<std::uint32_t> order;
  order.reserve(ports_.size() - CountOf(Verdict::kOk));
  for (const Verdict level : {Verdict::kCritical, Verdict::kWarning, Verdict::kUnknown}) {
    if (CountOf(level) == 0) continue;
    for (std::size_t i = 0; i < ports_.size(); ++i) {
      if (ports_[i].verdict == level) order.push_back(static_cast<std::uint32_t>(i));
    }
  }
  return order;
}

std::string PortHeading(const PortId& id, std::string_view label, std::string_view part_number,
                        std::string_view serial_number) {
  std::string heading = PortText(id.guid, id.number);
  if (!label.empty()) heading.append(" \"").append(Printable(label)).append("\"");
  for (const std::string_view text : {part_number, serial_number}) {
    if (!text.empty()) heading.append("  ").append(Printable(text));
  }
  return heading;
}

}  // namespace cli
