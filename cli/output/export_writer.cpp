#include "cli/output/export_writer.h"

#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/module_memory/module_info.h"
#include "cable_info/readings/readings.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"
#include "cli/format_version.h"
#include "cli/json_text.h"
#include "cli/output/readings_json.h"

namespace cli {

namespace {

using cable_info::AlarmLevel;
using cable_info::CombinedCableInfo;
using cable_info::Observable;
using cable_info::Quantity;
using cable_info::Reading;
using cable_info::Readings;

void WriteGuid(JsonText& json, std::uint64_t guid) { json.Plain(GuidText(guid)); }

// ---------------------------------------------------------------------------------------------
// Readings
// ---------------------------------------------------------------------------------------------

void WriteThresholds(JsonText& json, const Reading& reading) {
  json.Key("thresholds");
  bool has_any = false;
  for (const AlarmLevel level : cable_info::kAllAlarmLevels)
    has_any = has_any || reading.Threshold(level);
  if (!has_any) return json.Null();
  json.BeginObject();
  for (const AlarmLevel level : cable_info::kAllAlarmLevels) {
    json.Key(cable_info::AlarmLevelName(level)).OrNull(reading.Threshold(level));
  }
  json.EndObject();
}

void WriteLatched(JsonText& json, const Reading& reading) {
  json.Key("flags");
  if (reading.latched.known == 0) return json.Null();
  json.BeginObject();
  for (const AlarmLevel level : cable_info::kAllAlarmLevels) {
    json.Key(cable_info::AlarmLevelName(level)).OrNull(reading.Latched(level));
  }
  json.EndObject();
}

// The parts of a reading, inside its object.
void WriteReading(JsonText& json, const Reading& reading) {
  json.Key("value");
  reading.IsPresent() ? json.Number(reading.value) : json.Null();
  if (cable_info::IsPower(reading.quantity)) {
    const std::optional<double> dbm = reading.Dbm();
    json.Key("dbm");
    dbm ? json.Rounded(*dbm) : json.Null();
  }
  json.Key("state").Plain(cable_info::StateName(reading.state));
  WriteThresholds(json, reading);
  WriteLatched(json, reading);
}

void WriteReading(JsonText& json, std::string_view key, const Reading& reading) {
  json.Key(key).BeginObject();
  WriteReading(json, reading);
  json.EndObject();
}

// The key of a lane flag is that of the other outputs, except that this one says which direction is
// equalized.
std::string_view ExportKey(cable_info::LaneFlag flag) {
  if (flag == cable_info::LaneFlag::kAdaptiveEqFault) return "tx_adaptive_eq_fault";
  return LaneFlagKey(flag);
}

void WriteLane(JsonText& json, const Readings& port, int lane) {
  json.BeginObject();
  json.Key("lane").Integer(static_cast<std::uint32_t>(lane));
  json.Key("in_use").Bool(port.IsInUse(lane));
  WriteReading(json, "rx_power_mw", port.Of(Quantity::kRxPower, lane));
  WriteReading(json, "tx_power_mw", port.Of(Quantity::kTxPower, lane));
  WriteReading(json, "tx_bias_ma", port.Of(Quantity::kTxBias, lane));
  json.Key("flags").BeginObject();
  for (const cable_info::LaneFlag flag : cable_info::kAllLaneFlags) {
    json.Key(ExportKey(flag)).OrNull(port.Of(flag).Get(lane));
  }
  json.EndObject();
  WriteControls(json, port.controls, lane);
  json.EndObject();
}

void WriteObservables(JsonText& json, const Readings& port) {
  json.Key("observables").BeginArray();
  for (const Observable& observable : port.observables) {
    json.BeginObject();
    json.Key("name").Bytes(observable.name);
    json.Key("place").BytesOrNull(observable.place);
    json.Key("unit").Bytes(observable.unit);
    WriteReading(json, observable.reading);
    json.EndObject();
  }
  json.EndArray();
}

// ---------------------------------------------------------------------------------------------
// Identity
// ---------------------------------------------------------------------------------------------

void WriteQueryStatus(JsonText& json, const Readings& port) {
  json.Key("query_status");
  if (!port.query_status) return json.Null();
  json.BeginObject();
  json.Key("code").Integer(*port.query_status);
  json.Key("name").Bytes(cable_info::ConvertCableInfoVSStatusToStr(*port.query_status));
  json.EndObject();
}

void WriteIdentity(JsonText& json, const Readings& port, const CombinedCableInfo& cable) {
  const cable_info::Identity& identity = port.identity;
  json.Key("identity").BeginObject();
  json.Key("vendor").BytesOrNull(identity.vendor);
  json.Key("oui").BytesOrNull(identity.oui);
  json.Key("part_number").BytesOrNull(identity.part_number);
  json.Key("revision").BytesOrNull(identity.revision);
  json.Key("serial_number").BytesOrNull(identity.serial_number);
  json.Key("vendor_code").BytesOrNull(cable_info::_get_vendor_from_sn(identity.serial_number));
  json.Key("date_code").BytesOrNull(identity.date_code);
  json.Key("lot").OrNull(identity.lot);
  json.Key("unique_key").BytesOrNull(cable.GetUniqueKey());
  json.EndObject();
  json.Key("firmware").BytesOrNull(identity.firmware);
}

// ---------------------------------------------------------------------------------------------
// The flat record
// ---------------------------------------------------------------------------------------------

template <typename T, std::size_t N>
void WriteIntegers(JsonText& json, std::string_view key, const T (&values)[N]) {
  json.Key(key).BeginArray();
  for (const T value : values) json.Integer(value);
  json.EndArray();
}

template <std::size_t N>
void WriteSlot(JsonText& json, std::string_view key, const char (&slot)[N]) {
  json.Key(key).Bytes(cable_info::ArrayText(slot));
}

void WriteRecord(JsonText& json, CombinedCableInfo& cable) {
  cable_info::cable_record_data_t data = {};
  json.Key("record");
  if (!cable.ExportData(&data)) return json.Null();
  json.BeginObject();
  json.Key("status").Integer(data.status);
  json.Key("identifier").Integer(data.identifier);
  json.Key("connector").Integer(data.connector);
  json.Key("supported_speed").Integer(data.supported_speed);
  json.Key("transmitter_technology").Integer(data.transmitter_technology);
  WriteIntegers(json, "lengths", data.lengths);
  json.Key("temperature").Integer(data.temperature);
  WriteIntegers(json, "bytes", data.bytes);
  WriteIntegers(json, "words", data.words);
  json.Key("monitors").BeginArray();
  for (const float value : data.monitors) json.NumberWithPoint(value);
  json.EndArray();
  json.Key("rx_power_is_average").Integer(data.rx_power_is_average);
  json.Key("word").Integer(data.word);
  WriteSlot(json, "vendor", data.vendor);
  WriteSlot(json, "oui", data.oui);
  WriteSlot(json, "pn", data.pn);
  WriteSlot(json, "sn", data.sn);
  WriteSlot(json, "revision", data.revision);
  WriteSlot(json, "length", data.length);
  WriteSlot(json, "extra", data.extra);
  WriteSlot(json, "fw_version", data.fw_version);
  WriteSlot(json, "date_code", data.date_code);
  json.EndObject();
}

std::string_view MeasuredLength(const CombinedCableInfo& cable) {
  if (cable.cable_record() != nullptr) return cable.cable_record()->PrtlLengthText;
  if (cable.phy_cable_record() != nullptr) return cable.phy_cable_record()->prtl_length;
  return {};
}

void WritePort(JsonText& json, Port& port) {
  CombinedCableInfo& cable = port.cable;
  const Readings readings = ReadingsOf(port);
  json.BeginObject();
  json.Key("format_version").Integer(kExportFormatVersion);
  json.Key("node_guid");
  WriteGuid(json, port.node_guid);
  json.Key("port_guid");
  WriteGuid(json, port.port_guid);
  json.Key("port_num").Integer(port.number);
  json.Key("label");
  port.label.empty() ? json.Null() : json.Utf8(port.label);
  json.Key("source").BytesOrNull(readings.source);
  WriteQueryStatus(json, readings);
  WriteIdentity(json, readings, cable);
  WriteCodes(json, readings);
  json.Key("is_optic").Bool(cable.IsOpticCable());
  WriteSpeeds(json, readings);
  WritePower(json, readings);
  WriteLengths(json, readings.lengths);
  json.Key("prtl_length").BytesOrNull(MeasuredLength(cable));
  WriteAttenuation(json, readings.attenuation);
  WritePowerType(json, readings);
  json.Key("monitors").BeginObject();
  WriteReading(json, "temperature_c", readings.Of(Quantity::kTemperature));
  WriteReading(json, "voltage_v", readings.Of(Quantity::kVoltage));
  json.EndObject();
  json.Key("lanes").BeginArray();
  for (int lane = 1; lane <= readings.lanes; ++lane) WriteLane(json, readings, lane);
  json.EndArray();
  WriteObservables(json, readings);
  WriteRecord(json, cable);
  json.EndObject();
}

}  // namespace

void ExportWriter::Write(std::ostream& os, Port& port) const {
  cable_info::text::TextBuffer line;
  JsonText json(line);
  WritePort(json, port);
  os << line.Append('\n').view();
}

}  // namespace cli
