#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

#include "cable_info/readings/fabric_rules.h"

namespace cli {

/// Ports by GUID and number, and those without a GUID by their label, too.
class PortSet {
 public:
  /// Adds a port; false if the set contains it already.
  bool Add(cable_info::PortId id, std::string_view label) {
    const std::string_view name = id.guid == 0 ? label : std::string_view();
    const bool is_new = ports_.emplace(id.guid, id.number, name).second;
    if (!is_new) ++repeated_;
    return is_new;
  }

  /// The number of ports that were not added.
  std::size_t repeated() const { return repeated_; }

 private:
  std::set<std::tuple<std::uint64_t, std::uint32_t, std::string>> ports_;
  std::size_t repeated_ = 0;
};

}  // namespace cli
