#include "cli/output/export_writer.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/value_format.h"
#include "cli/format_version.h"

namespace cli {

namespace {

using Json = nlohmann::ordered_json;
using cable_info::CombinedCableInfo;

// Module texts are bytes of no known encoding: each byte becomes the code point of its number.
Json Text(std::string_view bytes) {
  std::string utf8;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

Json TextOrNull(std::string_view bytes) { return bytes.empty() ? Json() : Text(bytes); }

// The shortest number that reads back as the same float; the JSON writer shows NaN and infinities
// as null.
Json Number(float value) {
  if (!std::isfinite(value)) return {};
  char digits[32];
  const auto written = std::to_chars(digits, digits + sizeof(digits), value);
  double number = 0.0;
  std::from_chars(digits, written.ptr, number);
  return number;
}

Json NumberOrNull(std::uint32_t value) {
  return value == CombinedCableInfo::kNoRecord ? Json() : Json(value);
}

// 41 for "41C"; null where there is no reading.
Json Celsius(const std::string& text) {
  int degrees = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), degrees);
  return read.ec == std::errc() ? Json(degrees) : Json();
}

Json Source(const Port& port) {
  if (port.cable_record != nullptr) return Text(cable_info::CableRecord::kSource);
  if (port.phy_cable_record != nullptr) return Text(port.phy_cable_record->source);
  return {};
}

Json PrtlLength(const Port& port) {
  if (port.cable_record != nullptr) return TextOrNull(port.cable_record->PrtlLengthText);
  if (port.phy_cable_record != nullptr) return TextOrNull(port.phy_cable_record->prtl_length);
  return {};
}

Json Identification(const CombinedCableInfo& cable) {
  const cable_info::cable_id_t id = cable.GetIdObj();
  return {
      {"part_number", TextOrNull(id.pn)},
      {"identifier", TextOrNull(id.identifier)},
      {"vendor", TextOrNull(id.vendor)},
      {"revision", TextOrNull(id.revision)},
  };
}

Json Firmware(const CombinedCableInfo& cable) {
  const cable_info::fw_version_obj_t version = cable.GetFWObj();
  if (version.major == 0 && version.minor == 0 && version.sub_minor == 0) return {};
  return {
      {"major", version.major},
      {"minor", version.minor},
      {"sub_minor", version.sub_minor},
  };
}

Json Temperature(const CombinedCableInfo& cable) {
  return {
      {"celsius", Celsius(cable.GetTemperatureStr())},
      {"high_threshold_celsius", Celsius(cable.GetHighTemperatureThresholdStr())},
      {"low_threshold_celsius", Celsius(cable.GetLowTemperatureThresholdStr())},
      {"alarms", NumberOrNull(cable.GetTemperatureAlarms())},
      {"errors", NumberOrNull(cable.GetTemperatureErrorsByTreshold())},
  };
}

template <typename T, std::size_t N>
Json Array(const T (&values)[N]) {
  Json array = Json::array();
  for (const T value : values) array.push_back(value);
  return array;
}

Json Monitors(const float (&values)[12]) {
  Json array = Json::array();
  for (const float value : values) array.push_back(Number(value));
  return array;
}

Json Record(CombinedCableInfo& cable) {
  cable_info::cable_record_data_t data = {};
  if (!cable.ExportData(&data)) return {};
  const auto slot = [](const auto& text) { return Text(cable_info::ArrayText(text)); };
  return {
      {"status", data.status},
      {"identifier", data.identifier},
      {"connector", data.connector},
      {"supported_speed", data.supported_speed},
      {"transmitter_technology", data.transmitter_technology},
      {"lengths", Array(data.lengths)},
      {"temperature", data.temperature},
      {"bytes", Array(data.bytes)},
      {"words", Array(data.words)},
      {"monitors", Monitors(data.monitors)},
      {"rx_power_is_average", data.rx_power_is_average},
      {"word", data.word},
      {"vendor", slot(data.vendor)},
      {"oui", slot(data.oui)},
      {"pn", slot(data.pn)},
      {"sn", slot(data.sn)},
      {"revision", slot(data.revision)},
      {"length", slot(data.length)},
      {"extra", slot(data.extra)},
      {"fw_version", slot(data.fw_version)},
      {"date_code", slot(data.date_code)},
  };
}

}  // namespace

void ExportWriter::Write(std::ostream& os, Port& port) const {
  CombinedCableInfo& cable = port.cable;
  const Json line = {
      {"format_version", kFormatVersion},
      {"node_guid", GuidText(port.node_guid)},
      {"port_guid", GuidText(port.port_guid)},
      {"port_num", port.number},
      {"source", Source(port)},
      {"identification", Identification(cable)},
      {"part_number", TextOrNull(cable.GetPNVendor())},
      {"unique_key", TextOrNull(cable.GetUniqueKey())},
      {"firmware", Firmware(cable)},
      {"cdr_vendor", NumberOrNull(cable.GetCDRVendor())},
      {"is_optic", cable.IsOpticCable()},
      {"temperature", Temperature(cable)},
      {"prtl_length", PrtlLength(port)},
      {"record", Record(cable)},
  };
  constexpr bool kAsciiOnly = true;
  os << line.dump(-1, ' ', kAsciiOnly) << '\n';
}

}  // namespace cli
