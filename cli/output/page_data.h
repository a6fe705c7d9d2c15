#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cable_info/readings/rules.h"
#include "cli/input/port.h"
#include "cli/output/check_result.h"
#include "cli/output/port_set.h"

namespace cli {

/// Writes a port in a form that `PageData::Add` reads. Any thread may do so.
void WritePagePort(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings);

/// The HTML page of all ports of a run. Parts that many ports share are kept once, so that a port
/// takes little more space than its own readings.
class PageData {
 public:
  struct About {
    std::string input;             ///< names of the inputs
    std::string written_at;        ///< UTC, as all of these
    std::string taken_at;          ///< when the ports were read; empty if unknown
    std::string earlier_taken_at;  ///< the same of the earlier ports
  };

  explicit PageData(const cable_info::RuleSettings& settings) : judged_(settings) {}

  /// Adds the ports of an earlier snapshot, whose readings are shown next to the current ones. To
  /// be called before `Add`.
  void AddEarlier(std::string_view ports);
  /// Adds the ports that `WritePagePort` wrote one after the other.
  void Add(std::string_view ports);
  /// Judges the fabric, and writes the page. To be called once.
  void WriteTo(std::ostream& os, const About& about);

 private:
  // Moves the readings of the earlier ports to the current ones; those that are gone remain.
  void AttachEarlier();
  void WritePorts(std::ostream& os) const;
  void WriteGone(std::ostream& os) const;

  // JSON texts that are written once, in an array, and referred to by their index.
  class Shared {
   public:
    std::size_t IndexOf(std::string_view text);
    const std::vector<const std::string*>& texts() const { return texts_; }

   private:
    std::unordered_map<std::string, std::size_t> indexes_;
    std::vector<const std::string*> texts_;  // the keys of indexes_
  };

  CheckResult judged_;
  std::map<PortKey, std::string> earlier_;  // the readings of ports
  bool has_earlier_ = false;
  std::vector<std::string> ports_;  // the JSON of the ports, each without its last bracket
  std::map<PortKey, std::size_t>
      by_key_;  // the first of each in `ports_`, if there are earlier ones
  Shared models_;
  Shared flags_;
  Shared controls_;
};

}  // namespace cli
