#include "cli/output/snapshot.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <ostream>
#include <sstream>

#include "cable_info/text/text_buffer.h"
#include "cli/format_version.h"
#include "cli/json_text.h"
#include "cli/output/packed_bytes.h"
#include "cli/output/readings_json.h"
#include "cli/printable.h"

namespace cli {

using cable_info::Quantity;
using cable_info::Reading;
using cable_info::Readings;

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

float ValueOf(const Reading& reading) { return reading.IsPresent() ? reading.value : kNone; }

SnapshotNumbers NumbersOf(const Port& port, const Readings& readings) {
  SnapshotNumbers numbers{};
  numbers.node_guid = port.node_guid;
  numbers.port_guid = port.port_guid;
  numbers.number = port.number;
  numbers.temperature = ValueOf(readings.Of(Quantity::kTemperature));
  for (int lane = 1; lane <= cable_info::kMaxLanes; ++lane) {
    const auto i = static_cast<std::size_t>(lane) - 1;
    numbers.rx_power[i] = ValueOf(readings.Of(Quantity::kRxPower, lane));
    numbers.tx_power[i] = ValueOf(readings.Of(Quantity::kTxPower, lane));
    numbers.tx_bias[i] = ValueOf(readings.Of(Quantity::kTxBias, lane));
  }
  std::size_t i = 0;
  for (const Reading& reading : readings) {
    numbers.bounds[i++] = reading.latched.raised & reading.latched.known;
  }
  for (std::size_t flag = 0; flag < numbers.lane_flags.size(); ++flag) {
    const cable_info::Flags& flags = readings.Of(cable_info::kAllLaneFlags[flag]);
    numbers.lane_flags[flag] = flags.raised & flags.known;
  }
  return numbers;
}

cable_info::PortId IdOf(const SnapshotPort& port) {
  return {port.numbers.port_guid, port.numbers.number};
}

std::string NumberText(float value) {
  cable_info::text::TextBuffer out;
  JsonText(out).Number(value);
  return std::string(out.view());
}

// The changes of one port.
class Comparison {
 public:
  Comparison(const SnapshotPort& before, const SnapshotPort& after, const Tolerances& tolerances)
      : before_(before), after_(after), tolerances_(tolerances) {}

  std::vector<Change> Compare() {
    const bool is_swapped =
        CompareText("serial_number", before_.serial_number, after_.serial_number);
    CompareText("part_number", before_.part_number, after_.part_number);
    CompareText("firmware", before_.firmware, after_.firmware);
    if (before_.verdict != after_.verdict) {
      Add("verdict", 0, std::string(VerdictName(before_.verdict)),
          std::string(VerdictName(after_.verdict)), "");
    }
    CompareFlags();
    if (!is_swapped) CompareReadings();
    return std::move(changes_);
  }

 private:
  void Add(std::string what, int lane, std::string before, std::string after,
           std::string_view unit) {
    changes_.push_back({std::move(what), lane, std::move(before), std::move(after), unit});
  }

  bool CompareText(const char* what, const std::string& before, const std::string& after) {
    if (before == after) return false;
    Add(what, 0, before, after, "");
    return !before.empty() && !after.empty();
  }

  void CompareFlags() {
    const Readings layout;  // has the quantities and lanes of the bounds, in their order
    std::size_t i = 0;
    for (const Reading& reading : layout) {
      const std::uint8_t before = before_.numbers.bounds[i];
      const std::uint8_t after = after_.numbers.bounds[i++];
      for (const cable_info::AlarmLevel level : cable_info::kAllAlarmLevels) {
        AddFlag(
            std::string(QuantityName(reading.quantity)) + '_' + std::string(AlarmLevelName(level)),
            reading.lane, before, after, static_cast<unsigned>(level));
      }
    }
    for (std::size_t flag = 0; flag < cable_info::kAllLaneFlags.size(); ++flag) {
      const std::string& name = LaneFlagKey(cable_info::kAllLaneFlags[flag]);
      for (int lane = 1; lane <= cable_info::kMaxLanes; ++lane) {
        AddFlag(name, lane, before_.numbers.lane_flags[flag], after_.numbers.lane_flags[flag],
                static_cast<unsigned>(lane) - 1);
      }
    }
  }

  void AddFlag(const std::string& name, int lane, std::uint8_t before, std::uint8_t after,
               unsigned bit) {
    const bool was = (before >> bit & 1U) != 0;
    const bool is = (after >> bit & 1U) != 0;
    if (was != is) Add(name, lane, was ? "raised" : "clear", is ? "raised" : "clear", "");
  }

  void CompareReadings() {
    const SnapshotNumbers& before = before_.numbers;
    const SnapshotNumbers& after = after_.numbers;
    if (std::fabs(static_cast<double>(after.temperature) -
                  static_cast<double>(before.temperature)) > tolerances_.temperature_c) {
      AddReading(Quantity::kTemperature, 0, before.temperature, after.temperature);
    }
    for (int lane = 1; lane <= cable_info::kMaxLanes; ++lane) {
      const auto i = static_cast<std::size_t>(lane) - 1;
      ComparePower(Quantity::kRxPower, lane, before.rx_power[i], after.rx_power[i]);
      ComparePower(Quantity::kTxPower, lane, before.tx_power[i], after.tx_power[i]);
      CompareBias(lane, before.tx_bias[i], after.tx_bias[i]);
    }
  }

  void ComparePower(Quantity quantity, int lane, float before, float after) {
    if (std::isnan(before) || std::isnan(after)) return;
    const double moved = std::fabs(cable_info::DbmOrDark(static_cast<double>(after)) -
                                   cable_info::DbmOrDark(static_cast<double>(before)));
    if (moved > tolerances_.power_db) AddReading(quantity, lane, before, after);
  }

  void CompareBias(int lane, float before, float after) {
    constexpr double kPercent = 100;
    const double moved = std::fabs(static_cast<double>(after) - static_cast<double>(before));
    if (moved * kPercent > tolerances_.bias_percent * std::fabs(static_cast<double>(before))) {
      AddReading(Quantity::kTxBias, lane, before, after);
    }
  }

  void AddReading(Quantity quantity, int lane, float before, float after) {
    Add(std::string(QuantityName(quantity)), lane, NumberText(before), NumberText(after),
        QuantityUnit(quantity));
  }

  const SnapshotPort& before_;
  const SnapshotPort& after_;
  const Tolerances& tolerances_;
  std::vector<Change> changes_;
};

std::string_view PresenceName(Presence presence) {
  switch (presence) {
    case Presence::kBoth:
      return "changed";
    case Presence::kAppeared:
      return "appeared";
    case Presence::kGone:
      return "gone";
  }
  return {};
}

std::string Heading(const SnapshotPort& port) {
  return PortHeading(IdOf(port), port.label, port.part_number, port.serial_number);
}

std::string Shown(const std::string& text, std::string_view unit) {
  if (text.empty()) return "unknown";
  return unit.empty() ? Printable(text) : text + ' ' + std::string(unit);
}

std::size_t CountOf(const std::vector<ChangedPort>& changes, Presence presence) {
  return static_cast<std::size_t>(
      std::count_if(changes.begin(), changes.end(),
                    [presence](const ChangedPort& port) { return port.presence == presence; }));
}

void WriteState(JsonText& json, std::string_view key, const std::string& text,
                std::string_view unit) {
  json.Key(key);
  if (text.empty()) return json.Null();
  unit.empty() ? json.Bytes(text) : json.Verbatim(text);
}

void WriteChange(JsonText& json, const Change& change) {
  json.BeginObject();
  json.Key("what").Plain(change.what);
  json.Key("lane");
  change.lane == 0 ? json.Null() : json.Integer(static_cast<std::uint32_t>(change.lane));
  WriteState(json, "old", change.before, change.unit);
  WriteState(json, "new", change.after, change.unit);
  json.Key("unit");
  change.unit.empty() ? json.Null() : json.Plain(change.unit);
  json.EndObject();
}

}  // namespace

void WriteSnapshotPort(std::ostream& os, const Port& port,
                       const cable_info::RuleSettings& settings) {
  const Readings readings = ReadingsOf(port);
  std::ostringstream judged;
  WriteJudgedPort(judged, port, readings, settings);
  PackValue(os, NumbersOf(port, readings));
  PackText(os, judged.view());
  PackText(os, port.label);
  PackText(os, readings.identity.part_number);
  PackText(os, readings.identity.serial_number);
  PackText(os, readings.identity.firmware);
}

void Snapshot::Add(std::string_view ports) {
  while (!ports.empty()) {
    SnapshotPort port{TakeValue<SnapshotNumbers>(ports), {}, {}, {}, {}, cable_info::Verdict::kOk};
    judged_.Add(TakeText(ports));
    port.label = TakeText(ports);
    port.part_number = TakeText(ports);
    port.serial_number = TakeText(ports);
    port.firmware = TakeText(ports);
    all_ports_.push_back(std::move(port));
  }
}

void Snapshot::Finish() {
  judged_.Finish();
  for (std::size_t i = 0; i < all_ports_.size(); ++i) {
    SnapshotPort& port = all_ports_[i];
    port.verdict = judged_.VerdictOf(i);
    const bool is_new = by_key_.emplace(PortKey(IdOf(port), port.label), &port).second;
    if (!is_new) ++repeated_ports_;
  }
}

std::vector<ChangedPort> Compare(const Snapshot& before, const Snapshot& after,
                                 const Tolerances& tolerances) {
  const auto& new_ports = after.ports();
  auto old_ports = before.ports();
  Renumber(old_ports, new_ports);
  auto all = new_ports;
  all.insert(old_ports.begin(), old_ports.end());
  std::vector<ChangedPort> changed;
  for (const auto& [key, port] : all) {
    const auto old_port = old_ports.find(key);
    if (!new_ports.contains(key)) {
      changed.push_back({port, Presence::kGone, {}});
    } else if (old_port == old_ports.end()) {
      changed.push_back({port, Presence::kAppeared, {}});
    } else {
      std::vector<Change> changes = Comparison(*old_port->second, *port, tolerances).Compare();
      if (!changes.empty()) changed.push_back({port, Presence::kBoth, std::move(changes)});
    }
  }
  return changed;
}

std::vector<ChangedPort> CompareModules(const Snapshot& before, const Snapshot& after,
                                        const Tolerances& tolerances) {
  const bool are_both_there = before.ports().size() == 1 && after.ports().size() == 1;
  if (!are_both_there) return Compare(before, after, tolerances);
  const SnapshotPort& port = *after.ports().begin()->second;
  std::vector<Change> changes =
      Comparison(*before.ports().begin()->second, port, tolerances).Compare();
  if (changes.empty()) return {};
  return {{&port, Presence::kBoth, std::move(changes)}};
}

void WriteDiffAsText(std::ostream& os, const std::vector<ChangedPort>& changes) {
  for (const ChangedPort& changed : changes) {
    os << PresenceName(changed.presence) << "  " << Heading(*changed.port) << '\n';
    for (const Change& change : changed.changes) {
      os << "  " << change.what;
      if (change.lane != 0) os << " of lane " << change.lane;
      os << ": " << Shown(change.before, change.unit) << " -> " << Shown(change.after, change.unit)
         << '\n';
    }
    os << '\n';
  }
  os << CountOf(changes, Presence::kAppeared) << " appeared, " << CountOf(changes, Presence::kGone)
     << " gone, " << CountOf(changes, Presence::kBoth) << " changed\n";
}

void WriteDiffAsJson(std::ostream& os, const std::vector<ChangedPort>& changes) {
  for (const ChangedPort& changed : changes) {
    const SnapshotPort& port = *changed.port;
    cable_info::text::TextBuffer line;
    JsonText json(line);
    json.BeginObject();
    json.Key("format_version").Integer(kFormatVersion);
    json.Key("node_guid").Plain(GuidText(port.numbers.node_guid));
    json.Key("port_guid").Plain(GuidText(port.numbers.port_guid));
    json.Key("port_num").Integer(port.numbers.number);
    json.Key("label");
    port.label.empty() ? json.Null() : json.Utf8(port.label);
    json.Key("part_number").BytesOrNull(port.part_number);
    json.Key("serial_number").BytesOrNull(port.serial_number);
    json.Key("presence").Plain(PresenceName(changed.presence));
    json.Key("changes").BeginArray();
    for (const Change& change : changed.changes) WriteChange(json, change);
    json.EndArray();
    json.EndObject();
    os << line.Append('\n').view();
  }
  cable_info::text::TextBuffer line;
  JsonText json(line);
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  json.Key("summary").BeginObject();
  for (const Presence presence : {Presence::kAppeared, Presence::kGone, Presence::kBoth}) {
    json.Key(PresenceName(presence))
        .Integer(static_cast<std::uint32_t>(CountOf(changes, presence)));
  }
  json.EndObject();
  json.EndObject();
  os << line.Append('\n').view();
}

}  // namespace cli
