#pragma once

/// \file
/// The rules that compare a port with others of its fabric: `kOutlier`, `kLinkLoss` and
/// `kEndMismatch`. Ports are added one by one, in any order, and judged after the last one. Each
/// takes little more than 100 bytes.

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cable_info/readings/readings.h"
#include "cable_info/readings/rules.h"

namespace cable_info {

/// The identity of a port in its fabric.
struct PortId {
  std::uint64_t guid = 0;    ///< port GUID
  std::uint32_t number = 0;  ///< port number
};

/// Ports by GUID, then by number.
constexpr bool operator<(const PortId& a, const PortId& b) {
  return a.guid != b.guid ? a.guid < b.guid : a.number < b.number;
}

/// The same GUID and the same number.
constexpr bool operator==(const PortId& a, const PortId& b) {
  return a.guid == b.guid && a.number == b.number;
}

/// The values of a port that the rules use.
struct FabricPort {
  /// A port about which nothing is known.
  FabricPort() {
    rx_power.fill(Finding::kNone);
    tx_power.fill(Finding::kNone);
  }
  /// Copies the values from `readings`; `peer` is the port at the other end, if it is known.
  FabricPort(const PortId& id_in, const std::optional<PortId>& peer_in, const Readings& readings);

  PortId id;                   ///< the port
  std::optional<PortId> peer;  ///< the port at the other end; none if it is unknown
  std::string part_number;     ///< empty if unknown
  std::string serial_number;   ///< empty if unknown
  bool is_separable = true;    ///< false for a cable without separable connectors
  int lanes = 0;               ///< the number of lanes of the form factor, up to `kMaxLanes`
  /// Received powers by lane in milliwatts, NaN for lanes without a value or not in use.
  std::array<float, kMaxLanes> rx_power{};
  /// Transmitted powers, in the same form.
  std::array<float, kMaxLanes> tx_power{};
};

/// Compares ports with each other. Can be moved, but not copied.
class FabricRules {
 public:
  /// Applies the rules that `settings` does not turn off.
  explicit FabricRules(const RuleSettings& settings) : settings_(settings) {}
  FabricRules(const FabricRules&) = delete;  // part_numbers_ points to the keys of parts_
  FabricRules& operator=(const FabricRules&) = delete;
  /// Moves the ports; the other object may only be destroyed or assigned to.
  FabricRules(FabricRules&&) = default;
  /// The same.
  FabricRules& operator=(FabricRules&&) = default;
  ~FabricRules() = default;

  /// Adds a port; its index is the number of ports added before.
  void Add(const FabricPort& port);

  /// The number of ports that were added.
  std::size_t size() const { return ports_.size(); }
  /// \name The port with an index
  /// Texts stay valid until the next `Add`.
  /// @{

  /// Its identity.
  PortId IdOf(std::size_t index) const { return ports_[index].id; }
  /// Its part number; empty if unknown.
  std::string_view PartNumberOf(std::size_t index) const;
  /// Its serial number; empty if unknown.
  std::string_view SerialNumberOf(std::size_t index) const { return SerialNumber(ports_[index]); }
  /// @}

  /// Judges all ports; `found(index, finding)` is called for each finding, rule by rule.
  void Judge(const std::function<void(std::size_t index, const Finding& finding)>& found) const;

 private:
  using Found = std::function<void(std::size_t, const Finding&)>;

  struct Kept {
    PortId id;
    PortId peer;
    std::uint64_t serial_begin = 0;  // in serial_numbers_
    std::uint32_t serial_size = 0;
    std::uint32_t part = 0;  // 0: unknown
    std::uint8_t lanes = 0;
    bool has_peer = false;
    bool is_separable = false;
    std::array<float, kMaxLanes> rx_power = {};
    std::array<float, kMaxLanes> tx_power = {};
  };

  void JudgeOutliers(const Found& found) const;
  void JudgeOutliersAmong(const std::vector<std::uint32_t>& ports, const Found& found) const;
  void JudgeLinks(const Found& found) const;
  void JudgeLoss(std::size_t index, const Kept& far, const Found& found) const;
  void JudgeEnds(std::size_t index, const Kept& far, const Found& found) const;
  std::string_view SerialNumber(const Kept& port) const;

  RuleSettings settings_;
  std::deque<Kept> ports_;
  std::string serial_numbers_;
  std::unordered_map<std::string, std::uint32_t> parts_;
  std::vector<const std::string*> part_numbers_;  // the keys of parts_, by number less 1
  bool has_peers_ = false;
};

}  // namespace cable_info
