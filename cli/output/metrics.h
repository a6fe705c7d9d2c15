#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/readings/rules.h"
#include "cli/input/port.h"
#include "cli/output/check_result.h"
#include "cli/output/port_set.h"

namespace cli {

/// Writes the samples of a port, in a form that `Metrics::Add` reads. Any thread may do so.
void WritePortMetrics(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings);

/// The metrics of all ports of a run, as OpenMetrics text that is also valid in the text format of
/// Prometheus. The format requires all samples of a family together, so their text is kept until
/// the last port was added.
class Metrics {
 public:
  explicit Metrics(const cable_info::RuleSettings& settings);

  /// Adds the ports that `WritePortMetrics` wrote one after the other. Of ports with the same GUID
  /// and number, and the same label if they have no GUID, only the first is kept: a monitoring
  /// system could not distinguish them.
  void Add(std::string_view ports);
  /// Judges the fabric, and writes all families. To be called once.
  void WriteTo(std::ostream& os);

  /// The number of ports that were not kept.
  std::size_t repeated_ports() const { return ports_.repeated(); }

 private:
  std::vector<std::string> samples_;  // by family
  PortSet ports_;
  CheckResult judged_;
};

}  // namespace cli
