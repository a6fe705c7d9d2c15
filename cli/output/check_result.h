#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/readings/fabric_rules.h"
#include "cable_info/readings/rules.h"
#include "cli/input/port.h"

namespace cli {

/// Applies the rules that need only one port to its readings, and appends the result for
/// `CheckResult::Add`. Any thread may do so.
void WriteJudgedPort(std::ostream& os, const Port& port, const cable_info::Readings& readings,
                     const cable_info::RuleSettings& settings);

/// The findings of all ports of a run. A port takes little more than 150 bytes, a finding 16.
class CheckResult {
 public:
  explicit CheckResult(const cable_info::RuleSettings& settings) : fabric_(settings) {}

  /// Adds the ports that `WriteJudgedPort` wrote one after the other.
  void Add(std::string_view judged_ports);
  /// Compares the ports with each other. No port may be added after that.
  void Finish();

  std::size_t size() const { return ports_.size(); }
  std::uint64_t NodeGuidOf(std::size_t port) const { return ports_[port].node_guid; }
  cable_info::PortId IdOf(std::size_t port) const { return fabric_.IdOf(port); }
  std::string_view LabelOf(std::size_t port) const;
  std::string_view PartNumberOf(std::size_t port) const { return fabric_.PartNumberOf(port); }
  std::string_view SerialNumberOf(std::size_t port) const { return fabric_.SerialNumberOf(port); }
  cable_info::Verdict VerdictOf(std::size_t port) const { return ports_[port].verdict; }
  /// The worst first.
  std::vector<cable_info::Finding> FindingsOf(std::size_t port) const;

  /// The verdict of the fabric: that of its worst port; `kOk` without ports.
  cable_info::Verdict verdict() const;
  /// How many ports have a verdict.
  std::size_t CountOf(cable_info::Verdict verdict) const;
  /// How many findings a rule has.
  std::size_t CountOf(cable_info::Rule rule) const;
  /// The ports with findings: the worst verdict first, then in the order of the input.
  std::vector<std::uint32_t> WorstFirst() const;

 private:
  struct Kept {
    std::uint64_t node_guid;
    std::uint64_t first_finding;  // in findings_
    std::uint64_t label_begin;    // in labels_
    std::uint32_t label_size;
    cable_info::Verdict verdict;
  };
  struct Compared {
    std::uint32_t port = 0;
    cable_info::Finding finding;
  };

  cable_info::FabricRules fabric_;
  std::deque<Kept> ports_;
  std::deque<cable_info::Finding> findings_;  // of the ports one after the other
  std::vector<Compared> compared_;            // by port
  std::string labels_;
  std::array<std::size_t, cable_info::kVerdicts> verdicts_{};
  std::array<std::size_t, cable_info::kRules> rules_{};
};

/// The heading of a port in a text: GUID and number, then label, part number and serial number as
/// far as known, with control characters as escapes.
std::string PortHeading(const cable_info::PortId& id, std::string_view label,
                        std::string_view part_number, std::string_view serial_number);

/// Whether a text is coloured.
enum class Colour { kNone, kAnsi };

/// \name What `cableinfo check` writes
/// @{

/// The findings, worst port first, and counts.
void WriteCheckAsText(std::ostream& os, const CheckResult& result, Colour colour);
/// A line of JSON per port in the order of the input, and a summary.
void WriteCheckAsJson(std::ostream& os, const CheckResult& result);
/// One line for a monitoring system, which begins with `state`.
void WriteCheckAsPlugin(std::ostream& os, const CheckResult& result, cable_info::Verdict state);
/// The rules with their settings.
void WriteRules(std::ostream& os, const cable_info::RuleSettings& settings);
/// @}

}  // namespace cli
