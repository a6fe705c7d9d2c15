#include "cli/output/readings_json.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cable_info/value_format.h"

namespace cli {

using cable_info::Attenuation;
using cable_info::CodeAndName;
using cable_info::Controls;
using cable_info::Flags;
using cable_info::Lengths;
using cable_info::Readings;

namespace {

void WriteCode(JsonText& json, std::string_view key, const std::optional<CodeAndName>& code) {
  json.Key(key);
  if (!code) return json.Null();
  json.BeginObject();
  json.Key("code").Integer(code->code);
  json.Key("name").BytesOrNull(code->name);
  json.EndObject();
}

}  // namespace

const std::string& LaneFlagKey(cable_info::LaneFlag flag) {
  static const auto kKeys = [] {
    std::array<std::string, cable_info::kAllLaneFlags.size()> keys;
    for (const cable_info::LaneFlag each : cable_info::kAllLaneFlags) {
      std::string& key = keys[static_cast<std::size_t>(each)];
      key = RuleName(LaneFlagRule(each));
      std::replace(key.begin(), key.end(), '-', '_');
    }
    return keys;
  }();
  return kKeys[static_cast<std::size_t>(flag)];
}

void WriteControls(JsonText& json, const Controls& controls, int lane) {
  const auto index = static_cast<std::size_t>(lane) - 1;
  const auto flag = [&](std::string_view key, const Flags& flags) {
    json.Key(key).OrNull(flags.Get(lane));
  };
  const auto value = [&](std::string_view key, const cable_info::LaneValues& values) {
    json.Key(key).OrNull(values[index]);
  };
  json.Key("controls").BeginObject();
  flag("tx_cdr", controls.tx_cdr);
  flag("rx_cdr", controls.rx_cdr);
  flag("rx_output_disable", controls.rx_output_disable);
  flag("tx_adaptive_eq", controls.tx_adaptive_eq);
  flag("tx_adaptive_eq_freeze", controls.tx_adaptive_eq_freeze);
  value("tx_input_eq", controls.tx_input_eq);
  value("rx_amplitude", controls.rx_amplitude);
  value("rx_emphasis", controls.rx_emphasis);
  value("rx_pre_cursor", controls.rx_pre_cursor);
  value("rx_post_cursor", controls.rx_post_cursor);
  json.EndObject();
}

void WriteCodes(JsonText& json, const Readings& port) {
  WriteCode(json, "identifier", port.identifier);
  WriteCode(json, "connector", port.connector);
  WriteCode(json, "technology", port.technology);
  WriteCode(json, "compliance", port.compliance);
  json.Key("medium").BytesOrNull(cable_info::MediumName(port.medium));
  json.Key("cdr_vendor").OrNull(port.cdr_vendor);
}

void WriteSpeeds(JsonText& json, const Readings& port) {
  json.Key("supported_speeds");
  if (!port.speeds) {
    json.Null();
  } else {
    json.BeginArray();
    for (std::size_t i = 0; i < cable_info::ib_compliance_code_arr.size(); ++i) {
      std::string_view name = cable_info::ib_compliance_code_arr[i];
      name.remove_suffix(1);  // the separator of a list
      if ((*port.speeds >> i & 1) != 0) json.Plain(name);
    }
    json.EndArray();
  }
  json.Key("nominal_bitrate_gbps").OrNull(port.nominal_bitrate_gbps);
}

void WritePower(JsonText& json, const Readings& port) {
  json.Key("power").BeginObject();
  json.Key("class").OrNull(port.power_class);
  json.Key("max_w").OrNull(port.max_power_w);
  json.EndObject();
}

void WriteLengths(JsonText& json, const Lengths& lengths) {
  json.Key("length_m").BeginObject();
  json.Key("cable").OrNull(lengths.cable);
  json.Key("measured").OrNull(lengths.measured);
  json.Key("smf").OrNull(lengths.smf);
  json.Key("om5").OrNull(lengths.om5);
  json.Key("om4").OrNull(lengths.om4);
  json.Key("om3").OrNull(lengths.om3);
  json.Key("om2").OrNull(lengths.om2);
  json.Key("om1").OrNull(lengths.om1);
  json.EndObject();
}

void WriteAttenuation(JsonText& json, const Attenuation& attenuation) {
  json.Key("attenuation_db").BeginObject();
  json.Key("2p5ghz").OrNull(attenuation.at_2p5);
  json.Key("5ghz").OrNull(attenuation.at_5);
  json.Key("7ghz").OrNull(attenuation.at_7);
  json.Key("12p9ghz").OrNull(attenuation.at_12p9);
  json.Key("25p8ghz").OrNull(attenuation.at_25p8);
  json.EndObject();
}

void WritePowerType(JsonText& json, const Readings& port) {
  json.Key("rx_power_type");
  if (!port.rx_power_is_average) return json.Null();
  json.Plain(*port.rx_power_is_average ? "average" : "oma");
}

}  // namespace cli
