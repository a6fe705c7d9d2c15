#include "cable_info/readings/fabric_rules.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "cable_info/value_format.h"

namespace cable_info {

namespace {

constexpr std::size_t kOutlierDeviations = 2;  // of kRuleParameters
constexpr std::size_t kOutlierModules = 3;
static_assert(kRuleParameters[kOutlierDeviations].name == "outlier.deviations");
static_assert(kRuleParameters[kOutlierModules].name == "outlier.modules");

using Powers = std::array<float, kMaxLanes>;

float PowerOf(const Readings& readings, Quantity quantity, int lane) {
  const Reading& reading = readings.Of(quantity, lane);
  const bool counts = lane <= readings.lanes && readings.IsInUse(lane) && reading.IsPresent();
  return counts ? reading.value : Finding::kNone;
}

// The mean power of the lanes that have one, in milliwatts; NaN without lanes.
double Mean(const Powers& powers) {
  double sum = 0;
  int count = 0;
  for (const float power : powers) {
    if (std::isnan(power)) continue;
    sum += static_cast<double>(power);
    ++count;
  }
  return count == 0 ? static_cast<double>(Finding::kNone) : sum / count;
}

// The median; orders `values`, which must not be empty.
double Median(std::vector<double>& values) {
  const std::size_t middle = values.size() / 2;
  const auto at = values.begin() + static_cast<std::ptrdiff_t>(middle);
  std::nth_element(values.begin(), at, values.end());
  const double upper = *at;
  if (values.size() % 2 == 1) return upper;
  return (*std::max_element(values.begin(), at) + upper) / 2;
}

Finding Found(const RuleSettings& settings, Rule rule) {
  Finding finding;
  finding.rule = rule;
  finding.severity = settings.SeverityOf(rule);
  finding.limit = settings.LimitOf(rule).value_or(Finding::kNone);
  return finding;
}

bool IsOn(const RuleSettings& settings, Rule rule) {
  return settings.SeverityOf(rule) != Severity::kOff;
}

}  // namespace

FabricPort::FabricPort(const PortId& id_in, const std::optional<PortId>& peer_in,
                       const Readings& readings)
    : id(id_in),
      peer(peer_in),
      part_number(readings.identity.part_number),
      serial_number(readings.identity.serial_number),
      is_separable(!readings.connector || readings.connector->code != kNoSeparableConnector),
      lanes(readings.lanes) {
  for (int lane = 1; lane <= kMaxLanes; ++lane) {
    const auto index = static_cast<std::size_t>(lane) - 1;
    rx_power[index] = PowerOf(readings, Quantity::kRxPower, lane);
    tx_power[index] = PowerOf(readings, Quantity::kTxPower, lane);
  }
}

void FabricRules::Add(const FabricPort& port) {
  Kept kept{};
  kept.id = port.id;
  kept.has_peer = port.peer.has_value();
  kept.peer = port.peer.value_or(PortId());
  has_peers_ = has_peers_ || kept.has_peer;
  kept.serial_begin = serial_numbers_.size();
  kept.serial_size = static_cast<std::uint32_t>(port.serial_number.size());
  serial_numbers_ += port.serial_number;
  if (!port.part_number.empty()) {
    const auto next = static_cast<std::uint32_t>(parts_.size() + 1);
    const auto [part, is_new] = parts_.emplace(port.part_number, next);
    if (is_new) part_numbers_.push_back(&part->first);
    kept.part = part->second;
  }
  kept.lanes = static_cast<std::uint8_t>(std::clamp(port.lanes, 0, kMaxLanes));
  kept.is_separable = port.is_separable;
  kept.rx_power = port.rx_power;
  kept.tx_power = port.tx_power;
  ports_.push_back(kept);
}

void FabricRules::Judge(const std::function<void(std::size_t, const Finding&)>& found) const {
  if (IsOn(settings_, Rule::kOutlier)) JudgeOutliers(found);
  if (has_peers_) JudgeLinks(found);
}

void FabricRules::JudgeOutliers(const Found& found) const {
  std::vector<std::vector<std::uint32_t>> ports_of_part(part_numbers_.size() + 1);
  for (std::size_t i = 0; i < ports_.size(); ++i) {
    const bool has_power = !std::isnan(Mean(ports_[i].rx_power));
    if (ports_[i].part != 0 && has_power) {
      ports_of_part[ports_[i].part].push_back(static_cast<std::uint32_t>(i));
    }
  }
  const auto least = static_cast<double>(settings_.ParameterLimit(kOutlierModules));
  for (const std::vector<std::uint32_t>& ports : ports_of_part) {
    if (!ports.empty() && static_cast<double>(ports.size()) >= least) {
      JudgeOutliersAmong(ports, found);
    }
  }
}

void FabricRules::JudgeOutliersAmong(const std::vector<std::uint32_t>& ports,
                                     const Found& found) const {
  constexpr double kNormalDeviation = 1.4826;  // of a median absolute deviation of 1
  std::vector<double> powers;
  powers.reserve(ports.size());
  for (const std::uint32_t port : ports) powers.push_back(DbmOrDark(Mean(ports_[port].rx_power)));
  std::vector<double> values = powers;
  const double median = Median(values);
  for (double& value : values) value = std::fabs(value - median);
  const double deviation = kNormalDeviation * Median(values);
  Finding finding = cable_info::Found(settings_, Rule::kOutlier);
  const double limit =
      std::max(static_cast<double>(finding.limit),
               deviation * static_cast<double>(settings_.ParameterLimit(kOutlierDeviations)));
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const double below = median - powers[i];
    if (below <= limit) continue;
    finding.value = static_cast<float>(below);
    finding.limit = static_cast<float>(limit);
    finding.reference = static_cast<float>(median);
    found(ports[i], finding);
  }
}

void FabricRules::JudgeLinks(const Found& found) const {
  std::vector<std::uint32_t> by_id(ports_.size());
  std::iota(by_id.begin(), by_id.end(), 0);
  std::stable_sort(by_id.begin(), by_id.end(), [this](std::uint32_t a, std::uint32_t b) {
    return ports_[a].id < ports_[b].id;
  });
  for (std::size_t i = 0; i < ports_.size(); ++i) {
    if (!ports_[i].has_peer) continue;
    const PortId& peer = ports_[i].peer;
    const auto far = std::lower_bound(
        by_id.begin(), by_id.end(), peer,
        [this](std::uint32_t port, const PortId& id) { return ports_[port].id < id; });
    if (far == by_id.end() || !(ports_[*far].id == peer) || *far == i) continue;
    if (IsOn(settings_, Rule::kLinkLoss)) JudgeLoss(i, ports_[*far], found);
    if (IsOn(settings_, Rule::kEndMismatch)) JudgeEnds(i, ports_[*far], found);
  }
}

void FabricRules::JudgeLoss(std::size_t index, const Kept& far, const Found& found) const {
  const Kept& near = ports_[index];
  Finding finding = cable_info::Found(settings_, Rule::kLinkLoss);
  auto worst = static_cast<double>(finding.limit);
  const auto compare = [&](double sent, double received, int lane) {
    if (!(sent > 0) || std::isnan(received)) return;
    const double loss = DbmOrDark(sent) - DbmOrDark(received);
    if (loss <= worst) return;
    worst = loss;
    finding.value = static_cast<float>(loss);
    finding.lane = static_cast<std::uint8_t>(lane);
  };
  if (near.lanes == far.lanes) {
    for (int lane = 1; lane <= near.lanes; ++lane) {
      const auto i = static_cast<std::size_t>(lane) - 1;
      compare(static_cast<double>(far.tx_power[i]), static_cast<double>(near.rx_power[i]), lane);
    }
  } else {  // the mapping of the lanes is not known
    compare(Mean(far.tx_power), Mean(near.rx_power), 0);
  }
  if (!std::isnan(finding.value)) found(index, finding);
}

void FabricRules::JudgeEnds(std::size_t index, const Kept& far, const Found& found) const {
  const Kept& near = ports_[index];
  if (near.is_separable || far.is_separable) return;
  Finding finding = cable_info::Found(settings_, Rule::kEndMismatch);
  if (near.part != 0 && far.part != 0 && near.part != far.part) {
    finding.detail |= kPartNumberDiffers;
  }
  const std::string_view near_serial = SerialNumber(near);
  const std::string_view far_serial = SerialNumber(far);
  if (!near_serial.empty() && !far_serial.empty() && near_serial != far_serial) {
    finding.detail |= kSerialNumberDiffers;
  }
  if (finding.detail != 0) found(index, finding);
}

std::string_view FabricRules::PartNumberOf(std::size_t index) const {
  const std::uint32_t part = ports_[index].part;
  return part == 0 ? std::string_view() : std::string_view(*part_numbers_[part - 1]);
}

std::string_view FabricRules::SerialNumber(const Kept& port) const {
  return std::string_view(serial_numbers_).substr(port.serial_begin, port.serial_size);
}

}  // namespace cable_info
