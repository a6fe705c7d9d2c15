#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

#include "cable_info/readings/rules.h"
#include "cli/input/port.h"
#include "cli/output/check_result.h"

namespace cli {

/// The number of families that are written port by port.
inline constexpr std::size_t kPortFamilies = 31;

/// Writes the samples of a port, in a form that `Metrics::Add` reads. Any thread may do so.
void WritePortMetrics(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings);

/// The metrics of all ports of a run, as OpenMetrics text that is also valid in the text format of
/// Prometheus. The format requires all samples of a family together, so their text is kept until
/// the last port was added.
class Metrics {
 public:
  explicit Metrics(const cable_info::RuleSettings& settings) : judged_(settings) {}

  /// Adds the ports that `WritePortMetrics` wrote one after the other. Of ports with the same GUID
  /// and number, and the same label if they have no GUID, only the first is kept: a monitoring
  /// system could not distinguish them.
  void Add(std::string_view ports);
  /// Judges the fabric, and writes all families. To be called once.
  void WriteTo(std::ostream& os);

  /// The number of ports that were not kept.
  std::size_t repeated_ports() const { return repeated_ports_; }

 private:
  std::array<std::string, kPortFamilies> samples_;
  std::set<std::tuple<std::uint64_t, std::uint32_t, std::string>> ports_;
  std::size_t repeated_ports_ = 0;
  CheckResult judged_;
};

}  // namespace cli
