// The data of a page is one JSON object:
//
//     {"input": "fabric.jsonl", "version": "0.2.0", ...,
//      "rules": [{"name": "rx-los", "meaning": "loss of ..."}, ...],
//      "models": [...], "flags": [...], "controls": [...],      parts that ports share
//      "ports": [{"model": 0, "flags": 2, "controls": 1, "guid": "0x...",
//                 "readings": {"rx_power": [...], ...}, "earlier": {...}}, ...],
//      "gone": ["0x.../1", ...],                                ports of the earlier snapshot only
//      "findings": [[port, rule, severity, lane, "sentence"], ...]}
//
// Absent keys of a port are unknown. Lists by lane begin with lane 1, and findings of a port with
// its worst.

#include "cli/output/page_data.h"

#include <algorithm>
#include <array>
#include <optional>
#include <ostream>
#include <sstream>
#include <utility>

#include "cable_info/readings/readings.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"
#include "cable_info/version.h"
#include "cli/json_text.h"
#include "cli/output/packed_bytes.h"
#include "cli/output/page_template.h"
#include "cli/output/readings_json.h"
#include "cli/output/snapshot.h"

namespace cli {

using cable_info::Finding;
using cable_info::Observable;
using cable_info::Quantity;
using cable_info::Reading;
using cable_info::Readings;
using cable_info::text::TextBuffer;

namespace {

constexpr std::array<Quantity, 3> kLaneQuantities = {Quantity::kRxPower, Quantity::kTxPower,
                                                     Quantity::kTxBias};

// ---------------------------------------------------------------------------------------------
// The parts of a port
// ---------------------------------------------------------------------------------------------

void WriteText(JsonText& json, std::string_view key, std::string_view text) {
  if (!text.empty()) json.Key(key).Bytes(text);
}

void WriteThresholds(JsonText& json, const Reading& reading) {
  json.BeginArray();
  for (const cable_info::AlarmLevel level : cable_info::kAllAlarmLevels) {
    json.OrNull(reading.Threshold(level));
  }
  json.EndArray();
}

bool HasThresholds(const Reading& reading) {
  return std::any_of(reading.thresholds.begin(), reading.thresholds.end(),
                     [](const std::optional<float>& threshold) { return threshold.has_value(); });
}

// The thresholds of each quantity, which all lanes share.
void WriteThresholds(JsonText& json, const Readings& port) {
  json.Key("thresholds").BeginObject();
  std::optional<Quantity> last;
  for (const Reading& reading : port) {
    if (last == reading.quantity || !HasThresholds(reading)) continue;
    last = reading.quantity;
    json.Key(QuantityName(reading.quantity));
    WriteThresholds(json, reading);
  }
  json.EndObject();
}

void WriteModel(TextBuffer& out, const Readings& port) {
  JsonText json(out);
  cable_info::Lengths lengths = port.lengths;
  lengths.measured.reset();
  json.BeginObject();
  WriteText(json, "source", port.source);
  WriteText(json, "vendor", port.identity.vendor);
  WriteText(json, "oui", port.identity.oui);
  WriteText(json, "part_number", port.identity.part_number);
  WriteText(json, "revision", port.identity.revision);
  WriteText(json, "firmware", port.identity.firmware);
  WriteCodes(json, port);
  WriteSpeeds(json, port);
  WritePower(json, port);
  WriteLengths(json, lengths);
  WriteAttenuation(json, port.attenuation);
  WritePowerType(json, port);
  json.Key("lanes").Integer(static_cast<std::uint32_t>(port.lanes));
  WriteThresholds(json, port);
  json.EndObject();
}

void WriteFlags(JsonText& json, const cable_info::Flags& flags) {
  json.BeginArray();
  json.Integer(flags.known);
  json.Integer(flags.raised);
  json.EndArray();
}

// The flags as pairs of the bits that are known and raised, and the states of the readings.
void WriteFlagsAndStates(TextBuffer& out, const Readings& port) {
  JsonText json(out);
  json.BeginObject();
  json.Key("readings").BeginArray();
  for (const Reading& reading : port) WriteFlags(json, reading.latched);
  json.EndArray();
  json.Key("states").BeginArray();
  for (const Reading& reading : port) json.Integer(static_cast<std::uint32_t>(reading.state));
  json.EndArray();
  json.Key("lanes").BeginArray();
  for (const cable_info::LaneFlag flag : cable_info::kAllLaneFlags) WriteFlags(json, port.Of(flag));
  json.EndArray();
  json.EndObject();
}

void WriteAllControls(TextBuffer& out, const Readings& port) {
  JsonText json(out);
  json.BeginArray();
  for (int lane = 1; lane <= port.lanes; ++lane) {
    json.BeginObject();
    WriteControls(json, port.controls, lane);
    json.EndObject();
  }
  json.EndArray();
}

void WriteValue(JsonText& json, const Reading& reading) {
  reading.IsPresent() ? json.Number(reading.value) : json.Null();
}

void WriteModuleReading(JsonText& json, const Readings& port, Quantity quantity) {
  const Reading& reading = port.Of(quantity);
  if (reading.IsPresent()) json.Key(QuantityName(quantity)).Number(reading.value);
}

void WriteLaneReadings(JsonText& json, const Readings& port, Quantity quantity) {
  int last = port.lanes;
  while (last > 0 && !port.Of(quantity, last).IsPresent()) --last;
  if (last == 0) return;
  json.Key(QuantityName(quantity)).BeginArray();
  for (int lane = 1; lane <= last; ++lane) WriteValue(json, port.Of(quantity, lane));
  json.EndArray();
}

void WriteObservables(JsonText& json, const Readings& port) {
  if (port.observables.empty()) return;
  json.Key("observables").BeginArray();
  for (const Observable& observable : port.observables) {
    json.BeginArray();
    json.Bytes(observable.name);
    json.Bytes(observable.place);
    json.Bytes(observable.unit);
    WriteValue(json, observable.reading);
    WriteThresholds(json, observable.reading);
    WriteFlags(json, observable.reading.latched);
    json.EndArray();
  }
  json.EndArray();
}

// The values that change over time.
void WriteReadings(TextBuffer& out, const Readings& port) {
  JsonText json(out);
  json.BeginObject();
  WriteText(json, "serial_number", port.identity.serial_number);
  WriteModuleReading(json, port, Quantity::kTemperature);
  WriteModuleReading(json, port, Quantity::kVoltage);
  for (const Quantity quantity : kLaneQuantities) WriteLaneReadings(json, port, quantity);
  json.Key("used").Integer(port.lanes_in_use);
  WriteObservables(json, port);
  json.EndObject();
}

// The other members of a port's object.
void WriteOwn(TextBuffer& out, const Port& port, const Readings& readings) {
  JsonText json(out);
  json.Key("node").Plain(GuidText(port.node_guid));
  json.Key("guid").Plain(GuidText(port.port_guid));
  json.Key("number").Integer(port.number);
  if (!port.label.empty()) json.Key("label").Utf8(port.label);
  if (port.peer) json.Key("peer").Plain(PortText(port.peer->guid, port.peer->number));
  if (readings.query_status && *readings.query_status != 0) {
    json.Key("status").Bytes(cable_info::ConvertCableInfoVSStatusToStr(*readings.query_status));
  }
  WriteText(json, "date_code", readings.identity.date_code);
  if (readings.identity.lot) json.Key("lot").Integer(*readings.identity.lot);
  if (readings.lengths.measured) json.Key("measured").Number(*readings.lengths.measured);
}

// The name of a port that is gone.
std::string NameOf(const PortKey& key) {
  return key.label.empty() ? PortText(key.guid, key.number) : key.label;
}

struct Parts {
  PortKey key;
  std::string_view judged;
  std::string_view model;
  std::string_view flags;
  std::string_view controls;
  std::string_view own;
  std::string_view readings;
};

// Takes a port from the front of `bytes`.
Parts TakeParts(std::string_view& bytes) {
  const auto id = TakeValue<cable_info::PortId>(bytes);
  Parts parts = {PortKey(id, TakeText(bytes)), {}, {}, {}, {}, {}, {}};
  for (std::string_view* const part :
       {&parts.judged, &parts.model, &parts.flags, &parts.controls, &parts.own, &parts.readings}) {
    *part = TakeText(bytes);
  }
  return parts;
}

// ---------------------------------------------------------------------------------------------
// The page
// ---------------------------------------------------------------------------------------------

// Writes JSON into an HTML element. The characters that are special in HTML occur only inside texts
// of JSON, where they can be escaped.
void WriteInHtml(std::ostream& os, std::string_view json) {
  constexpr std::string_view kSpecial = "<>&";
  while (!json.empty()) {
    const std::size_t plain = std::min(json.find_first_of(kSpecial), json.size());
    os.write(json.data(), static_cast<std::streamsize>(plain));
    json.remove_prefix(plain);
    if (json.empty()) return;
    os << (json.front() == '<' ? "\\u003c" : json.front() == '>' ? "\\u003e" : "\\u0026");
    json.remove_prefix(1);
  }
}

void WriteInHtml(std::ostream& os, const TextBuffer& json) { WriteInHtml(os, json.view()); }

void WriteShared(std::ostream& os, std::string_view key,
                 const std::vector<const std::string*>& texts) {
  os << ",\n\"" << key << "\":[";
  std::string_view separator = "\n";
  for (const std::string* const text : texts) {
    os << separator;
    WriteInHtml(os, *text);
    separator = ",\n";
  }
  os << ']';
}

// The page counts changes that exceed the defaults of `cableinfo diff`.
void WriteTolerances(JsonText& json) {
  constexpr Tolerances kTolerances;
  json.Key("tolerances").BeginObject();
  json.Key("power_db").Rounded(kTolerances.power_db);
  json.Key("temperature_c").Rounded(kTolerances.temperature_c);
  json.Key("bias_percent").Rounded(kTolerances.bias_percent);
  json.EndObject();
}

void WriteAbout(std::ostream& os, const PageData::About& about) {
  TextBuffer text;
  JsonText json(text);
  json.BeginObject();
  json.Key("input").Utf8(about.input);
  json.Key("version").Plain(cable_info::kVersion);
  json.Key("written_at").Plain(about.written_at);
  json.Key("taken_at").BytesOrNull(about.taken_at);
  json.Key("earlier_taken_at").BytesOrNull(about.earlier_taken_at);
  json.Key("dark_dbm").Rounded(cable_info::kDarkDbm);
  WriteTolerances(json);
  json.Key("rules").BeginArray();
  for (std::size_t i = 0; i < cable_info::kRules; ++i) {
    const cable_info::Rule rule = cable_info::RuleOf(i);
    json.BeginObject();
    json.Key("name").Plain(RuleName(rule));
    json.Key("meaning").Bytes(RuleMeaning(rule));
    json.EndObject();
  }
  json.EndArray();
  WriteInHtml(os, text);  // the object is closed after its last member
}

void WriteFindings(std::ostream& os, const CheckResult& judged) {
  os << ",\n\"findings\":[";
  std::string_view separator = "\n";
  for (std::size_t port = 0; port < judged.size(); ++port) {
    if (judged.VerdictOf(port) == cable_info::Verdict::kOk) continue;
    for (const Finding& finding : judged.FindingsOf(port)) {
      TextBuffer text;
      JsonText json(text);
      json.BeginArray();
      json.Integer(static_cast<std::uint32_t>(port));
      json.Integer(static_cast<std::uint32_t>(finding.rule));
      json.Integer(static_cast<std::uint32_t>(finding.severity));
      json.Integer(finding.lane);
      json.Bytes(Sentence(finding));
      json.EndArray();
      os << separator;
      WriteInHtml(os, text);
      separator = ",\n";
    }
  }
  os << ']';
}

}  // namespace

void WritePagePort(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings) {
  const Readings readings = ReadingsOf(port);
  std::ostringstream judged;
  WriteJudgedPort(judged, port, readings, settings);
  TextBuffer model;
  TextBuffer flags;
  TextBuffer controls;
  TextBuffer own;
  TextBuffer values;
  WriteModel(model, readings);
  WriteFlagsAndStates(flags, readings);
  WriteAllControls(controls, readings);
  WriteOwn(own, port, readings);
  WriteReadings(values, readings);
  PackValue(os, cable_info::PortId{port.port_guid, port.number});
  for (const std::string_view part : {std::string_view(port.label), judged.view(), model.view(),
                                      flags.view(), controls.view(), own.view(), values.view()}) {
    PackText(os, part);
  }
}

std::size_t PageData::Shared::IndexOf(std::string_view text) {
  const auto [entry, is_new] = indexes_.emplace(text, texts_.size());
  if (is_new) texts_.push_back(&entry->first);
  return entry->second;
}

void PageData::AddEarlier(std::string_view ports) {
  has_earlier_ = true;
  while (!ports.empty()) {
    Parts port = TakeParts(ports);
    earlier_.emplace(std::move(port.key), port.readings);
  }
}

void PageData::Add(std::string_view ports) {
  while (!ports.empty()) {
    Parts port = TakeParts(ports);
    judged_.Add(port.judged);
    if (has_earlier_) by_key_.emplace(std::move(port.key), ports_.size());
    std::string& json = ports_.emplace_back();
    json += "{\"model\":" + std::to_string(models_.IndexOf(port.model)) +
            ",\"flags\":" + std::to_string(flags_.IndexOf(port.flags)) +
            ",\"controls\":" + std::to_string(controls_.IndexOf(port.controls)) + ',';
    json.append(port.own).append(",\"readings\":").append(port.readings);
  }
}

void PageData::AttachEarlier() {
  Renumber(earlier_, by_key_);
  for (const auto& [key, index] : by_key_) {
    if (const auto earlier = earlier_.extract(key)) {
      ports_[index].append(",\"earlier\":").append(earlier.mapped());
    }
  }
}

void PageData::WritePorts(std::ostream& os) const {
  os << ",\n\"ports\":[";
  std::string_view separator = "\n";
  for (const std::string& port : ports_) {
    os << separator;
    WriteInHtml(os, port);
    os << '}';
    separator = ",\n";
  }
  os << ']';
}

// The earlier ports without a current one.
void PageData::WriteGone(std::ostream& os) const {
  std::vector<std::string> names;
  for (const auto& [key, readings] : earlier_) names.push_back(NameOf(key));
  std::sort(names.begin(), names.end());
  TextBuffer text;
  JsonText json(text);
  json.BeginArray();
  for (const std::string& name : names) json.Utf8(name);
  json.EndArray();
  os << ",\n\"gone\":";
  WriteInHtml(os, text);
}

void PageData::WriteTo(std::ostream& os, const About& about) {
  judged_.Finish();
  AttachEarlier();
  os << kPageHead;
  WriteAbout(os, about);
  WriteShared(os, "models", models_.texts());
  WriteShared(os, "flags", flags_.texts());
  WriteShared(os, "controls", controls_.texts());
  WritePorts(os);
  if (has_earlier_) WriteGone(os);
  WriteFindings(os, judged_);
  os << '}' << kPageTail;
}

}  // namespace cli
