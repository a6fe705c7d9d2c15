#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/readings/rules.h"
#include "cli/input/port.h"
#include "cli/output/check_result.h"
#include "cli/output/port_set.h"

namespace cli {

/// The numbers of a port that are compared between two snapshots. Trivially copyable.
struct SnapshotNumbers {
  /// The number of quantities of the module; the others are those of its lanes.
  static constexpr auto kModuleQuantities =
      static_cast<std::size_t>(cable_info::Quantity::kRxPower);
  /// The number of readings of a port.
  static constexpr std::size_t kReadings =
      kModuleQuantities + (cable_info::kQuantities - kModuleQuantities) * cable_info::kMaxLanes;

  std::uint64_t node_guid;
  std::uint64_t port_guid;
  std::uint32_t number;
  float temperature;  ///< NaN without a value, as all of these
  std::array<float, cable_info::kMaxLanes> rx_power;
  std::array<float, cable_info::kMaxLanes> tx_power;
  std::array<float, cable_info::kMaxLanes> tx_bias;
  /// Latched flags by level: of temperature and voltage, then of RX power, TX power and TX bias of
  /// lanes 1..8 each.
  std::array<std::uint8_t, kReadings> bounds;
  std::array<std::uint8_t, cable_info::kAllLaneFlags.size()> lane_flags;
};

/// A port of a snapshot.
struct SnapshotPort {
  SnapshotNumbers numbers;
  std::string label;
  std::string part_number;
  std::string serial_number;
  std::string firmware;
  cable_info::Verdict verdict;
};

/// Appends what `Snapshot::Add` reads. Any thread may do so.
void WriteSnapshotPort(std::ostream& os, const Port& port,
                       const cable_info::RuleSettings& settings);

/// All ports of an input, as they were at one time.
class Snapshot {
 public:
  explicit Snapshot(const cable_info::RuleSettings& settings) : judged_(settings) {}

  /// Adds the ports that `WriteSnapshotPort` wrote one after the other.
  void Add(std::string_view ports);
  /// Judges the ports. No port may be added after that.
  void Finish();

  /// The ports, the first one of each identity; after `Finish`.
  const std::map<PortKey, const SnapshotPort*>& ports() const { return by_key_; }
  /// The number of ports that have the identity of another one, and are left out; after `Finish`.
  std::size_t repeated_ports() const { return repeated_ports_; }

 private:
  CheckResult judged_;
  std::vector<SnapshotPort> all_ports_;
  std::map<PortKey, const SnapshotPort*> by_key_;
  std::size_t repeated_ports_ = 0;
};

/// How far a reading may move without being reported.
struct Tolerances {
  double power_db = 1.0;
  double temperature_c = 10.0;
  double bias_percent = 10.0;
};

/// One difference between the old and the new state of a port.
struct Change {
  std::string what;  ///< "serial_number", "rx_power", "rx_los_raised", ...
  int lane = 0;      ///< 0: the module
  std::string before;
  std::string after;
  std::string_view unit;  ///< of both; empty for texts
};

enum class Presence : std::uint8_t { kBoth, kAppeared, kGone };

/// A port that is not the same in both snapshots.
struct ChangedPort {
  const SnapshotPort* port;  ///< the new one, or the old one of a port that is gone
  Presence presence;
  std::vector<Change> changes;
};

/// The ports that differ, by their keys. Ports of both snapshots are the same when their keys are,
/// or when one was renumbered; see `Renumber`.
std::vector<ChangedPort> Compare(const Snapshot& before, const Snapshot& after,
                                 const Tolerances& tolerances);
/// The same for two dumps of one module, whatever the labels of their ports.
std::vector<ChangedPort> CompareModules(const Snapshot& before, const Snapshot& after,
                                        const Tolerances& tolerances);

/// \name What `cableinfo diff` writes
/// @{
void WriteDiffAsText(std::ostream& os, const std::vector<ChangedPort>& changes);
void WriteDiffAsJson(std::ostream& os, const std::vector<ChangedPort>& changes);
/// @}

}  // namespace cli
