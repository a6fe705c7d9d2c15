#include "cli/output/metrics.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <optional>
#include <ostream>
#include <sstream>
#include <vector>

#include "cable_info/readings/readings.h"
#include "cable_info/text/text_buffer.h"
#include "cli/output/packed_bytes.h"
#include "cli/output/readings_json.h"
#include "cli/output/utf8_text.h"
#include "cli/utf8.h"

namespace cli {

namespace {

using cable_info::AlarmLevel;
using cable_info::CodeAndName;
using cable_info::Finding;
using cable_info::LaneFlag;
using cable_info::Observable;
using cable_info::Quantity;
using cable_info::Reading;
using cable_info::Readings;
using cable_info::Verdict;
using cable_info::text::TextBuffer;

// ---------------------------------------------------------------------------------------------
// Families
// ---------------------------------------------------------------------------------------------

struct Family {
  std::string_view name;
  std::string_view unit;  // empty: a plain number; otherwise the end of the name
  std::string_view help;
};

// The families that are written port by port. Values and thresholds are in the order of `Quantity`.
constexpr std::size_t kPowers = 2;
constexpr std::size_t kFirstValue = 0;
constexpr std::size_t kFirstDbm = kFirstValue + cable_info::kQuantities;
constexpr std::size_t kFirstThreshold = kFirstDbm + kPowers;
constexpr std::size_t kFlag = kFirstThreshold + cable_info::kQuantities;
constexpr std::size_t kLaneFlag = kFlag + 1;
constexpr std::size_t kInfo = kLaneFlag + 1;
constexpr std::size_t kFirstObservable = kInfo + 1;  // by `kObservableUnits`

constexpr std::string_view kObservableHelp = "Auxiliary monitor or diagnostic of a module.";
constexpr std::string_view kObservableThresholdHelp =
    "Threshold of an auxiliary monitor or diagnostic.";

constexpr Family kFamilies[] = {
    {"cableinfo_temperature_celsius", "celsius", "Temperature of the module."},
    {"cableinfo_voltage_volts", "volts", "Supply voltage of the module."},
    {"cableinfo_rx_power_watts", "watts", "Received optical power of a lane."},
    {"cableinfo_tx_power_watts", "watts", "Transmitted optical power of a lane."},
    {"cableinfo_tx_bias_amperes", "amperes", "Laser bias current of a lane."},
    {"cableinfo_rx_power_dbm", "dbm", "Received optical power of a lane; absent without light."},
    {"cableinfo_tx_power_dbm", "dbm", "Transmitted optical power of a lane; absent without light."},
    {"cableinfo_temperature_threshold_celsius", "celsius",
     "Threshold of the module's temperature."},
    {"cableinfo_voltage_threshold_volts", "volts", "Threshold of the module's supply voltage."},
    {"cableinfo_rx_power_threshold_watts", "watts", "Threshold of a lane's received power."},
    {"cableinfo_tx_power_threshold_watts", "watts", "Threshold of a lane's transmitted power."},
    {"cableinfo_tx_bias_threshold_amperes", "amperes", "Threshold of a lane's bias current."},
    {"cableinfo_flag_raised", "", "Latched flag of a monitor; present only while it is raised."},
    {"cableinfo_lane_flag_raised", "", "Latched flag of a lane; present only while it is raised."},
    {"cableinfo_module_info", "", "What identifies the cable or module; always 1."},
    {"cableinfo_observable_celsius", "celsius", kObservableHelp},
    {"cableinfo_observable_volts", "volts", kObservableHelp},
    {"cableinfo_observable_amperes", "amperes", kObservableHelp},
    {"cableinfo_observable_ratio", "ratio", kObservableHelp},
    {"cableinfo_observable_decibels", "decibels", kObservableHelp},
    {"cableinfo_observable_dbm", "dbm", kObservableHelp},
    {"cableinfo_observable_hertz", "hertz", kObservableHelp},
    {"cableinfo_observable", "", kObservableHelp},
    {"cableinfo_observable_threshold_celsius", "celsius", kObservableThresholdHelp},
    {"cableinfo_observable_threshold_volts", "volts", kObservableThresholdHelp},
    {"cableinfo_observable_threshold_amperes", "amperes", kObservableThresholdHelp},
    {"cableinfo_observable_threshold_ratio", "ratio", kObservableThresholdHelp},
    {"cableinfo_observable_threshold_decibels", "decibels", kObservableThresholdHelp},
    {"cableinfo_observable_threshold_dbm", "dbm", kObservableThresholdHelp},
    {"cableinfo_observable_threshold_hertz", "hertz", kObservableThresholdHelp},
    {"cableinfo_observable_threshold", "", kObservableThresholdHelp},
};
constexpr std::size_t kPortFamilies = std::size(kFamilies);

// The unit of an observable, and the factor to the base unit of its family.
struct ObservableUnit {
  std::string_view unit;
  double factor;
};

// In the order of the families; all other units have the last one.
constexpr std::array<ObservableUnit, 8> kObservableUnits = {{
    {"C", 1},
    {"V", 1},
    {"mA", 0.001},
    {"%", 0.01},
    {"dB", 1},
    {"dBm", 1},
    {"MHz", 1e6},
    {"", 1},
}};
constexpr std::size_t kFirstObservableThreshold = kFirstObservable + kObservableUnits.size();
static_assert(kFirstObservableThreshold + kObservableUnits.size() == kPortFamilies);

constexpr Family kVerdict = {"cableinfo_verdict", "",
                             "Verdict on a port: 0 ok, 1 unknown, 2 warning, 3 critical."};
constexpr Family kFinding = {"cableinfo_finding", "",
                             "Finding of a rule; present only while there is one."};
constexpr Family kPorts = {"cableinfo_ports", "", "Number of ports with a verdict."};

void WriteFamily(std::ostream& os, const Family& family, std::string_view samples) {
  if (samples.empty()) return;
  os << "# HELP " << family.name << ' ' << family.help << '\n';
  os << "# TYPE " << family.name << " gauge\n";
  if (!family.unit.empty()) os << "# UNIT " << family.name << ' ' << family.unit << '\n';
  os << samples;
}

// ---------------------------------------------------------------------------------------------
// Samples
// ---------------------------------------------------------------------------------------------

// Of the value of a label: UTF-8, or bytes that are written as the code points of their numbers.
enum class Encoding : std::uint8_t { kUtf8, kBytes };

// The value of a label, between double quotes.
void AppendLabelValue(TextBuffer& out, std::string_view text, Encoding encoding) {
  out.Append('"');
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      out.Append('\\').Append(c);
    } else if (c == '\n') {
      out.Append("\\n");
    } else if (encoding == Encoding::kUtf8 && c != '\0') {
      out.Append(c);
    } else {
      AppendByteAsUtf8(out, static_cast<unsigned char>(c));
    }
  }
  out.Append('"');
}

// One sample, "name{labels} value\n", written label by label.
class Sample {
 public:
  Sample(TextBuffer& out, const Family& family, std::string_view port_labels) : out_(out) {
    out_.Append(family.name).Append('{').Append(port_labels);
  }

  Sample& Label(std::string_view name, std::string_view value) {
    out_.Append(',').Append(name).Append('=');
    AppendLabelValue(out_, value, Encoding::kBytes);
    return *this;
  }
  Sample& LabelIfAny(std::string_view name, std::string_view value) {
    return value.empty() ? *this : Label(name, value);
  }
  // Nothing for the module itself.
  Sample& Lane(int lane) {
    if (lane != 0) out_.Append(",lane=\"").AppendDecimal(lane).Append('"');
    return *this;
  }
  void Value(double value) {
    constexpr int kDigits = 7;  // all that a `float` holds
    constexpr std::size_t kCapacity = 32;
    out_.Append("} ");
    out_.AppendWithin(kCapacity, [value](char* to) {
      return std::to_chars(to, to + kCapacity, value, std::chars_format::general, kDigits).ptr;
    });
    out_.Append('\n');
  }

 private:
  TextBuffer& out_;
};

// The labels that all samples of a port begin with.
std::string PortLabels(std::uint64_t node_guid, cable_info::PortId id, std::string_view label) {
  TextBuffer out;
  out.Append("node_guid=\"");
  AppendGuid(out, node_guid);
  out.Append("\",port_guid=\"");
  AppendGuid(out, id.guid);
  out.Append("\",port_num=\"").AppendDecimal(id.number).Append('"');
  if (!label.empty()) {
    out.Append(",label=");
    AppendLabelValue(out, label, IsUtf8(label) ? Encoding::kUtf8 : Encoding::kBytes);
  }
  return std::string(out.view());
}

// Values of a reading are in its own unit, those of a sample in the base unit.
double InBaseUnit(Quantity quantity, double value) {
  constexpr double kMilli = 1000;
  const bool is_base = quantity == Quantity::kTemperature || quantity == Quantity::kVoltage;
  return is_base ? value : value / kMilli;
}

class PortSamples {
 public:
  explicit PortSamples(const Port& port)
      : labels_(PortLabels(port.node_guid, {port.port_guid, port.number}, port.label)) {}

  std::string_view operator[](std::size_t family) const { return samples_[family].view(); }

  void Add(const Readings& port) {
    for (const Reading& reading : port) {
      AddValue(reading);
      AddThresholds(reading);
      AddFlags(reading);
    }
    for (const LaneFlag flag : cable_info::kAllLaneFlags) AddLaneFlags(port, flag);
    for (std::size_t i = 0; i < port.observables.size(); ++i) {
      if (IsFirst(port.observables, i)) AddObservable(port.observables[i]);
    }
    if (port.has_data) AddInfo(port);
  }

 private:
  Sample Begin(std::size_t family) { return {samples_[family], kFamilies[family], labels_}; }

  void AddValue(const Reading& reading) {
    if (!reading.IsPresent()) return;
    const auto quantity = static_cast<std::size_t>(reading.quantity);
    Begin(kFirstValue + quantity)
        .Lane(reading.lane)
        .Value(InBaseUnit(reading.quantity, static_cast<double>(reading.value)));
    const std::optional<double> dbm = reading.Dbm();
    if (!dbm) return;
    const auto first_power = static_cast<std::size_t>(Quantity::kRxPower);
    Begin(kFirstDbm + quantity - first_power).Lane(reading.lane).Value(*dbm);
  }

  void AddThresholds(const Reading& reading) {
    if (!reading.IsPresent()) return;
    for (const AlarmLevel level : cable_info::kAllAlarmLevels) {
      const std::optional<float> threshold = reading.Threshold(level);
      if (!threshold) continue;
      Begin(kFirstThreshold + static_cast<std::size_t>(reading.quantity))
          .Lane(reading.lane)
          .Label("bound", AlarmLevelName(level))
          .Value(InBaseUnit(reading.quantity, static_cast<double>(*threshold)));
    }
  }

  void AddFlags(const Reading& reading) {
    for (const AlarmLevel level : cable_info::kAllAlarmLevels) {
      if (!reading.Latched(level).value_or(false)) continue;
      Begin(kFlag)
          .Lane(reading.lane)
          .Label("quantity", QuantityName(reading.quantity))
          .Label("bound", AlarmLevelName(level))
          .Value(1);
    }
  }

  // A monitoring system could not distinguish two of the same name and place.
  static bool IsFirst(const std::vector<Observable>& observables, std::size_t index) {
    const Observable& observable = observables[index];
    const auto end = observables.begin() + static_cast<std::ptrdiff_t>(index);
    return std::find_if(observables.begin(), end, [&](const Observable& other) {
             return other.name == observable.name && other.place == observable.place;
           }) == end;
  }

  void AddObservable(const Observable& observable) {
    const Reading& reading = observable.reading;
    const auto* const unit =
        std::find_if(kObservableUnits.begin(), kObservableUnits.end() - 1,
                     [&](const ObservableUnit& known) { return known.unit == observable.unit; });
    const auto index = static_cast<std::size_t>(unit - kObservableUnits.begin());
    const auto begin = [&](std::size_t which) {
      Sample sample = Begin(which);
      sample.Label("observable", observable.name).LabelIfAny("place", observable.place);
      if (unit->unit.empty()) sample.LabelIfAny("unit", observable.unit);
      return sample;
    };
    if (reading.IsPresent()) {
      begin(kFirstObservable + index).Value(static_cast<double>(reading.value) * unit->factor);
    }
    for (const AlarmLevel level : cable_info::kAllAlarmLevels) {
      const std::optional<float> threshold = reading.Threshold(level);
      if (reading.IsPresent() && threshold) {
        begin(kFirstObservableThreshold + index)
            .Label("bound", AlarmLevelName(level))
            .Value(static_cast<double>(*threshold) * unit->factor);
      }
      if (!reading.Latched(level).value_or(false)) continue;
      Begin(kFlag)
          .Label("quantity", observable.name)
          .LabelIfAny("place", observable.place)
          .Label("bound", AlarmLevelName(level))
          .Value(1);
    }
  }

  void AddLaneFlags(const Readings& port, LaneFlag flag) {
    const std::string& name = LaneFlagKey(flag);
    for (int lane = 1; lane <= cable_info::kMaxLanes; ++lane) {
      if (port.Of(flag).IsRaised(lane)) Begin(kLaneFlag).Lane(lane).Label("flag", name).Value(1);
    }
  }

  void AddInfo(const Readings& port) {
    const cable_info::Identity& identity = port.identity;
    const auto name = [](const std::optional<CodeAndName>& code) -> std::string_view {
      return code ? std::string_view(code->name) : std::string_view();
    };
    Begin(kInfo)
        .LabelIfAny("vendor", identity.vendor)
        .LabelIfAny("part_number", identity.part_number)
        .LabelIfAny("serial_number", identity.serial_number)
        .LabelIfAny("revision", identity.revision)
        .LabelIfAny("firmware", identity.firmware)
        .LabelIfAny("form_factor", name(port.identifier))
        .LabelIfAny("type", name(port.technology))
        .Value(1);
  }

  std::string labels_;
  std::array<TextBuffer, kPortFamilies> samples_;
};

// ---------------------------------------------------------------------------------------------
// Packed ports, passed from the threads that decode to the collector
// ---------------------------------------------------------------------------------------------

// A port, followed by its label, its samples family by family, and its judgement.
struct Head {
  std::uint64_t guid;
  std::uint32_t number;
};

}  // namespace

void WritePortMetrics(std::ostream& os, const Port& port,
                      const cable_info::RuleSettings& settings) {
  PortSamples samples(port);
  const Readings readings = ReadingsOf(port);
  samples.Add(readings);
  std::ostringstream judgement;
  WriteJudgedPort(judgement, port, readings, settings);
  PackValue(os, Head{port.port_guid, port.number});
  PackText(os, port.label);
  for (std::size_t i = 0; i < kPortFamilies; ++i) PackText(os, samples[i]);
  PackText(os, judgement.view());
}

Metrics::Metrics(const cable_info::RuleSettings& settings)
    : samples_(kPortFamilies), judged_(settings) {}

void Metrics::Add(std::string_view ports) {
  while (!ports.empty()) {
    const auto head = TakeValue<Head>(ports);
    const std::string_view label = TakeText(ports);
    const bool is_new = ports_.Add({head.guid, head.number}, label);
    for (std::size_t i = 0; i < kPortFamilies; ++i) {
      const std::string_view text = TakeText(ports);
      if (is_new) samples_[i] += text;
    }
    const std::string_view judgement = TakeText(ports);
    if (is_new) judged_.Add(judgement);
  }
}

void Metrics::WriteTo(std::ostream& os) {
  judged_.Finish();
  TextBuffer verdicts;
  TextBuffer findings;
  for (std::size_t port = 0; port < judged_.size(); ++port) {
    const std::string labels =
        PortLabels(judged_.NodeGuidOf(port), judged_.IdOf(port), judged_.LabelOf(port));
    Sample(verdicts, kVerdict, labels).Value(static_cast<double>(judged_.VerdictOf(port)));
    const std::vector<Finding> found = judged_.FindingsOf(port);
    for (auto finding = found.begin(); finding != found.end(); ++finding) {
      const auto is_same = [&](const Finding& other) {
        return other.rule == finding->rule && other.lane == finding->lane;
      };
      if (std::find_if(found.begin(), finding, is_same) != finding) continue;
      Sample(findings, kFinding, labels)
          .Lane(finding->lane)
          .Label("rule", RuleName(finding->rule))
          .Label("severity", SeverityName(finding->severity))
          .Value(1);
    }
  }
  TextBuffer ports;
  for (std::size_t i = 0; i < cable_info::kVerdicts; ++i) {
    const auto verdict = static_cast<Verdict>(i);
    ports.Append(kPorts.name).Append("{verdict=\"").Append(VerdictName(verdict)).Append("\"} ");
    ports.AppendDecimal(static_cast<std::int64_t>(judged_.CountOf(verdict))).Append('\n');
  }
  for (std::size_t i = 0; i < kPortFamilies; ++i) WriteFamily(os, kFamilies[i], samples_[i]);
  WriteFamily(os, kVerdict, verdicts.view());
  WriteFamily(os, kFinding, findings.view());
  WriteFamily(os, kPorts, ports.view());
  os << "# EOF\n";
}

}  // namespace cli
