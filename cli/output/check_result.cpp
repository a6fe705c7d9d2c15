#include "cli/output/check_result.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <ostream>

#include "cable_info/readings/readings.h"

namespace cli {

using cable_info::FabricPort;
using cable_info::Finding;
using cable_info::PortId;
using cable_info::Readings;
using cable_info::Rule;
using cable_info::Verdict;

namespace {

// A judged port, followed by its findings and texts. Only this program reads it, in the same run.
struct Head {
  std::uint64_t node_guid = 0;
  PortId id = {};
  PortId peer = {};
  bool has_peer = false;
  bool is_separable = false;
  int lanes = 0;
  std::array<float, cable_info::kMostLanes> rx_power = {};
  std::array<float, cable_info::kMostLanes> tx_power = {};
  std::size_t findings = 0;
  std::size_t part_number = 0;  // the sizes of the texts
  std::size_t serial_number = 0;
  std::size_t label = 0;
};

static_assert(std::is_trivially_copyable_v<Head>);
static_assert(std::is_trivially_copyable_v<Finding>);

template <typename T>
void WriteBytes(std::ostream& os, const T* values, std::size_t count) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the bytes of plain values
  os.write(reinterpret_cast<const char*>(values), static_cast<std::streamsize>(count * sizeof(T)));
}

// Takes what was written from the front of `bytes`.
template <typename T>
T Take(std::string_view& bytes) {
  T value = {};
  std::memcpy(&value, bytes.data(), sizeof(T));
  bytes.remove_prefix(sizeof(T));
  return value;
}

std::string_view TakeText(std::string_view& bytes, std::size_t size) {
  const std::string_view text = bytes.substr(0, size);
  bytes.remove_prefix(size);
  return text;
}

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
  head.part_number = fabric.part_number.size();
  head.serial_number = fabric.serial_number.size();
  head.label = port.label.size();
  WriteBytes(os, &head, 1);
  WriteBytes(os, findings.data(), findings.size());
  os << fabric.part_number << fabric.serial_number << port.label;
}

void CheckResult::Add(std::string_view judged_ports) {
  FabricPort fabric;
  while (!judged_ports.empty()) {
    const auto head = Take<Head>(judged_ports);
    Kept kept{head.node_guid, findings_.size(), labels_.size(),
              static_cast<std::uint32_t>(head.label), Verdict::kOk};
    for (std::size_t i = 0; i < head.findings; ++i) {
      const auto finding = Take<Finding>(judged_ports);
      findings_.push_back(finding);
      kept.verdict = std::max(kept.verdict, cable_info::VerdictOf(&finding, &finding + 1));
    }
    fabric.id = head.id;
    fabric.peer = head.has_peer ? std::optional(head.peer) : std::nullopt;
    fabric.is_separable = head.is_separable;
    fabric.lanes = head.lanes;
    fabric.rx_power = head.rx_power;
    fabric.tx_power = head.tx_power;
    fabric.part_number = TakeText(judged_ports, head.part_number);
    fabric.serial_number = TakeText(judged_ports, head.serial_number);
    fabric_.Add(fabric);
    labels_ += TakeText(judged_ports, head.label);
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

}  // namespace cli
