#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "cable_info/readings/fabric_rules.h"

namespace cli {

/// The identity of a port among those of a fabric: its GUID and number, and its label if it has no
/// GUID.
struct PortKey {
  PortKey(cable_info::PortId id, std::string_view port_label)
      : guid(id.guid), number(id.number), label(id.guid == 0 ? port_label : std::string_view()) {}

  std::uint64_t guid;
  std::uint32_t number;
  std::string label;  ///< empty for a port with a GUID
};

inline bool operator<(const PortKey& a, const PortKey& b) {
  return std::tie(a.guid, a.number, a.label) < std::tie(b.guid, b.number, b.label);
}

/// The ports of a fabric, each once.
class PortSet {
 public:
  /// Adds a port; false if the set contains it already.
  bool Add(cable_info::PortId id, std::string_view label) {
    const bool is_new = ports_.emplace(id, label).second;
    if (!is_new) ++repeated_;
    return is_new;
  }

  /// The number of ports that were not added.
  std::size_t repeated() const { return repeated_; }

 private:
  std::set<PortKey> ports_;
  std::size_t repeated_ = 0;
};

/// The ports without a GUID whose label no other of them has, by label.
template <typename Value>
std::map<std::string_view, const PortKey*> PortsByLabel(const std::map<PortKey, Value>& ports) {
  std::map<std::string_view, const PortKey*> by_label;
  for (const auto& [key, value] : ports) {
    if (key.label.empty()) continue;
    const auto [entry, is_new] = by_label.emplace(key.label, &key);
    if (!is_new) entry->second = nullptr;
  }
  std::erase_if(by_label, [](const auto& entry) { return entry.second == nullptr; });
  return by_label;
}

/// Gives the ports of an earlier snapshot that were renumbered since then the keys that they have
/// in a later one: those without a GUID whose label only one port has in either snapshot. The
/// number of a dump, for example, is its position on the command line.
template <typename Earlier, typename Later>
void Renumber(std::map<PortKey, Earlier>& earlier, const std::map<PortKey, Later>& later) {
  const auto later_by_label = PortsByLabel(later);
  for (const auto& [label, key] : PortsByLabel(earlier)) {
    const auto now = later_by_label.find(label);
    if (now == later_by_label.end()) continue;
    auto port = earlier.extract(*key);
    port.key() = *now->second;
    earlier.insert(std::move(port));
  }
}

}  // namespace cli
