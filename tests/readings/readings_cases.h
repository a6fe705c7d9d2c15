#pragma once

// Shared by the tests of readings and rules.

#include <string>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "cable_info/readings/rules.h"

namespace cable_info::readings_cases {

/// A monitor with a value, without thresholds and flags.
inline Monitor Measured(double value) {
  Monitor monitor;
  monitor.state = FieldState::kPresent;
  monitor.value = value;
  return monitor;
}

using Texts = std::vector<std::string>;

/// "critical rx-power-low-alarm 3" for each finding, in the order found.
inline Texts Shown(const std::vector<Finding>& findings) {
  Texts shown;
  for (const Finding& finding : findings) {
    std::string text(SeverityName(finding.severity));
    text.append(" ").append(RuleName(finding.rule));
    if (finding.lane != 0) text.append(" ").append(std::to_string(finding.lane));
    shown.push_back(text);
  }
  return shown;
}

}  // namespace cable_info::readings_cases
