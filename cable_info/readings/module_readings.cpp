#include "cable_info/readings/module_readings.h"

#include <algorithm>
#include <string>

#include "cable_info/module_memory/module_info.h"
#include "cable_info/module_memory/module_memory.h"
#include "cable_info/readings/medium.h"
#include "cable_info/readings/reading_values.h"
#include "cable_info/value_format.h"

namespace cable_info {

namespace {

constexpr std::uint8_t Bit(unsigned lane) { return static_cast<std::uint8_t>(1U << (lane - 1)); }

std::optional<double> NumberOf(const ModuleInfo& module, Field field) {
  const FieldValue value = module[field];
  if (!value.IsPresent()) return std::nullopt;
  return value.number;
}

std::optional<float> FloatOf(const ModuleInfo& module, Field field) {
  const std::optional<double> number = NumberOf(module, field);
  return number ? AsFloat(*number) : std::nullopt;
}

std::optional<std::uint8_t> ByteOf(const ModuleInfo& module, Field field) {
  const std::optional<double> number = NumberOf(module, field);
  constexpr double kMaxByte = 255;
  if (!number || *number < 0 || *number > kMaxByte) return std::nullopt;
  return static_cast<std::uint8_t>(*number);
}

// The bytes of a text whose characters have the code points of the same numbers.
std::string BytesOf(std::string_view utf8) {
  std::string bytes;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if ((lead & 0xFCU) == 0xC0U && i + 1 < utf8.size()) {
      const auto next = static_cast<unsigned char>(utf8[++i]);
      bytes += static_cast<char>((lead & 0x03U) << 6U | (next & 0x3FU));
    } else {
      bytes += utf8[i];
    }
  }
  return bytes;
}

std::string TextOf(const ModuleInfo& module, Field field) {
  const FieldValue value = module[field];
  return value.IsPresent() ? BytesOf(value.text) : std::string();
}

std::optional<CodeAndName> CodeOf(const ModuleInfo& module, Field field) {
  const std::optional<std::uint8_t> code = ByteOf(module, field);
  if (!code) return std::nullopt;
  return CodeAndName{*code, std::string(module[field].text)};
}

void SetReading(Reading& reading, const Monitor& monitor) {
  reading.state = monitor.IsPresent() ? FieldState::kNotRead : monitor.state;
  if (monitor.IsPresent()) SetValue(reading, monitor.value);
  for (const AlarmLevel level : kAllAlarmLevels) {
    const std::optional<double> threshold = monitor.thresholds.At(level);
    if (threshold) SetThreshold(reading, level, *threshold);
  }
  reading.latched.known = monitor.flags.known;
  reading.latched.raised = monitor.flags.raised & monitor.flags.known;
}

Medium MediumOf(const ModuleInfo& module) {
  if (module.family == ModuleFamily::kSff8472) return Medium::kUnknown;
  const std::optional<std::uint8_t> technology = ByteOf(module, Field::kTechnology);
  if (!technology) return Medium::kUnknown;
  return MediumOfTechnology(*technology);
}

void SetSwitch(Flags& flags, const LaneValue& value, unsigned lane) {
  if (!value.IsPresent()) return;
  flags.known |= Bit(lane);
  if (value.number != 0) flags.raised |= Bit(lane);
}

void SetSetting(LaneValues& values, const LaneValue& value, unsigned lane) {
  constexpr double kMaxByte = 255;
  if (!value.IsPresent() || value.number < 0 || value.number > kMaxByte) return;
  values[lane - 1] = static_cast<std::uint8_t>(value.number);
}

void SetLane(Readings& port, const Lane& lane) {
  const int number = static_cast<int>(lane.number);
  SetReading(port.Of(Quantity::kRxPower, number), lane.rx_power);
  SetReading(port.Of(Quantity::kTxPower, number), lane.tx_power);
  SetReading(port.Of(Quantity::kTxBias, number), lane.tx_bias);
  SetSwitch(port.Of(LaneFlag::kRxLos), lane[LaneField::kRxLos], lane.number);
  SetSwitch(port.Of(LaneFlag::kTxLos), lane[LaneField::kTxLos], lane.number);
  SetSwitch(port.Of(LaneFlag::kRxLol), lane[LaneField::kRxLol], lane.number);
  SetSwitch(port.Of(LaneFlag::kTxLol), lane[LaneField::kTxLol], lane.number);
  SetSwitch(port.Of(LaneFlag::kTxFault), lane[LaneField::kTxFault], lane.number);
  SetSwitch(port.Of(LaneFlag::kAdaptiveEqFault), lane[LaneField::kTxAdaptiveEqFault], lane.number);
  Controls& controls = port.controls;
  SetSwitch(controls.tx_cdr, lane[LaneField::kTxCdr], lane.number);
  SetSwitch(controls.rx_cdr, lane[LaneField::kRxCdr], lane.number);
  SetSwitch(controls.rx_output_disable, lane[LaneField::kRxOutputDisable], lane.number);
  SetSwitch(controls.tx_adaptive_eq, lane[LaneField::kTxAdaptiveEq], lane.number);
  SetSwitch(controls.tx_adaptive_eq_freeze, lane[LaneField::kTxAdaptiveEqFreeze], lane.number);
  SetSetting(controls.tx_input_eq, lane[LaneField::kTxInputEq], lane.number);
  SetSetting(controls.rx_amplitude, lane[LaneField::kRxAmplitude], lane.number);
  SetSetting(controls.rx_emphasis, lane[LaneField::kRxEmphasis], lane.number);
  SetSetting(controls.rx_pre_cursor, lane[LaneField::kRxPreCursor], lane.number);
  SetSetting(controls.rx_post_cursor, lane[LaneField::kRxPostCursor], lane.number);
}

// A lane is in use unless it is zero on all three monitors; a module of which no lane has a monitor
// has no lanes in use, unless it is copper.
void SetLanesInUse(Readings& port) {
  bool has_monitors = false;
  for (int lane = 1; lane <= port.lanes; ++lane) {
    const Reading* const readings[] = {&port.Of(Quantity::kRxPower, lane),
                                       &port.Of(Quantity::kTxPower, lane),
                                       &port.Of(Quantity::kTxBias, lane)};
    const auto is_present = [](const Reading* reading) { return reading->IsPresent(); };
    const auto is_zero = [](const Reading* reading) {
      return reading->IsPresent() && reading->value == 0;
    };
    has_monitors =
        has_monitors || std::any_of(std::begin(readings), std::end(readings), is_present);
    const bool is_dark = std::all_of(std::begin(readings), std::end(readings), is_zero);
    if (!is_dark) port.lanes_in_use |= Bit(static_cast<unsigned>(lane));
  }
  if (!has_monitors && !IsCopper(port.medium)) port.lanes_in_use = 0;
}

std::string AuxUnit(std::string_view name) {
  const std::string_view suffix = name.substr(std::min(name.size(), name.rfind('_') + 1));
  if (suffix == "c") return "C";
  if (suffix == "v") return "V";
  if (suffix == "ma") return "mA";
  return suffix == "percent" ? "%" : "";
}

void SetObservables(Readings& port, const ModuleInfo& module) {
  for (const AuxMonitor& aux : module.aux) {
    if (aux.monitor.state == FieldState::kNotImplemented) continue;
    Observable& observable = port.observables.emplace_back();
    observable.name = aux.name;
    observable.unit = AuxUnit(aux.name);
    SetReading(observable.reading, aux.monitor);
  }
  for (const VdmSample& sample : module.vdm) {
    Observable& observable = port.observables.emplace_back();
    observable.name = sample.observable.empty() ? "type_" + std::to_string(sample.type)
                                                : std::string(sample.observable);
    observable.place = sample.instance;
    observable.unit = sample.unit;
    SetReading(observable.reading, sample.monitor);
  }
}

void SetIdentity(Identity& identity, const ModuleInfo& module) {
  identity.vendor = TextOf(module, Field::kVendor);
  identity.oui = TextOf(module, Field::kOui);
  identity.part_number = TextOf(module, Field::kPartNumber);
  identity.revision = TextOf(module, Field::kVendorRevision);
  identity.serial_number = TextOf(module, Field::kSerialNumber);
  identity.date_code = TextOf(module, Field::kDateCode).substr(0, 6);
  identity.firmware = TextOf(module, Field::kFirmwareActive);
}

// SFF-8472 gives that length to cables and copper modules alone, and names no technology.
bool HasCableLength(const Readings& port, const ModuleInfo& module) {
  return module.family == ModuleFamily::kSff8472 ||
         IsCable(port.medium, ByteOf(module, Field::kConnector));
}

void SetLengths(Readings& port, const ModuleInfo& module) {
  Lengths& lengths = port.lengths;
  lengths.smf = FloatOf(module, Field::kLengthSmf);
  lengths.om5 = FloatOf(module, Field::kLengthOm5);
  lengths.om4 = FloatOf(module, Field::kLengthOm4);
  lengths.om3 = FloatOf(module, Field::kLengthOm3);
  lengths.om2 = FloatOf(module, Field::kLengthOm2);
  lengths.om1 = FloatOf(module, Field::kLengthOm1);
  if (HasCableLength(port, module)) lengths.cable = FloatOf(module, Field::kLengthCable);
  Attenuation& attenuation = port.attenuation;
  attenuation.at_2p5 = ByteOf(module, Field::kAttenuation2p5);
  attenuation.at_5 = ByteOf(module, Field::kAttenuation5);
  attenuation.at_7 = ByteOf(module, Field::kAttenuation7);
  attenuation.at_12p9 = ByteOf(module, Field::kAttenuation12p9);
  attenuation.at_25p8 = ByteOf(module, Field::kAttenuation25p8);
}

// None when all speeds of the module are later ones.
std::optional<std::uint8_t> SpeedMask(const ModuleInfo& module) {
  std::uint8_t mask = 0;
  for (std::size_t i = 0; i < ib_compliance_code_arr.size(); ++i) {
    std::string_view name = ib_compliance_code_arr[i];
    name.remove_suffix(1);  // the separator of a list
    const auto& speeds = module.supported_speeds;
    if (std::find(speeds.begin(), speeds.end(), name) != speeds.end()) {
      mask |= static_cast<std::uint8_t>(1U << i);
    }
  }
  if (mask == 0 && !module.supported_speeds.empty()) return std::nullopt;
  return mask;
}

}  // namespace

Readings ReadingsOf(const ModuleInfo& module) {
  constexpr float kMegabitsPerGigabit = 1000;
  Readings port;
  port.has_data = module.family != ModuleFamily::kUnknown;
  if (!port.has_data) return port;
  port.source = module_memory::kModuleSource;
  port.checksum_mismatches =
      static_cast<int>(std::count_if(module.checksums.begin(), module.checksums.end(),
                                     [](const PageChecksum& sum) { return !sum.Matches(); }));
  SetIdentity(port.identity, module);
  port.identifier = CodeOf(module, Field::kIdentifier);
  port.connector = CodeOf(module, Field::kConnector);
  port.technology = CodeOf(module, Field::kTechnology);
  port.compliance = CodeOf(module, Field::kExtendedCompliance);
  port.medium = MediumOf(module);
  port.speeds = SpeedMask(module);
  port.nominal_bitrate_gbps = FloatOf(module, Field::kNominalBitrate);
  if (port.nominal_bitrate_gbps) *port.nominal_bitrate_gbps /= kMegabitsPerGigabit;
  port.power_class = ByteOf(module, Field::kPowerClass);
  port.max_power_w = FloatOf(module, Field::kMaxPower);
  if (const std::optional<double> type = NumberOf(module, Field::kRxPowerType)) {
    port.rx_power_is_average = *type != 0;
  }
  SetLengths(port, module);
  SetReading(port.Of(Quantity::kTemperature), module.temperature);
  SetReading(port.Of(Quantity::kVoltage), module.voltage);
  for (const Lane& lane : module.lanes) {
    if (lane.number < 1 || lane.number > static_cast<unsigned>(kMaxLanes)) continue;
    port.lanes = std::max(port.lanes, static_cast<int>(lane.number));
    SetLane(port, lane);
  }
  SetLanesInUse(port);
  SetObservables(port, module);
  return port;
}

}  // namespace cable_info
