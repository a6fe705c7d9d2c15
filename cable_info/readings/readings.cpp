#include "cable_info/readings/readings.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "cable_info/cable_record.h"
#include "cable_info/combined_cable_info.h"
#include "cable_info/module_memory/sff8024.h"
#include "cable_info/phy_cable_record.h"
#include "cable_info/phy_decode.h"
#include "cable_info/readings/medium.h"
#include "cable_info/readings/reading_values.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"

namespace cable_info {

namespace {

constexpr std::uint8_t kAllLanes = 0xFF;
// Volts in one unit of a voltage word.
constexpr double kVoltsPerUnit = decode::kMicrovoltsPerUnit / 1e6;

// ---------------------------------------------------------------------------------------------
// Shared by all sources
// ---------------------------------------------------------------------------------------------

CodeAndName Named(std::uint8_t code, std::string_view name) { return {code, std::string(name)}; }

std::string_view KnownText(std::string_view text) {
  text = Trimmed(text);
  return text == kBareNa || text == kReportNa ? std::string_view() : text;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The six digits of a date, without a lot that may follow them.
std::string_view DateDigits(std::string_view text) {
  constexpr std::size_t kDigits = 6;
  const std::string_view digits = text.substr(0, kDigits);
  const bool is_date =
      digits.size() == kDigits && std::all_of(digits.begin(), digits.end(), IsDigit);
  return is_date ? digits : std::string_view();
}

constexpr int kOuiDigits = 6;

std::string OuiText(std::uint32_t oui) {
  if (oui == 0) return {};
  return text::ToText([oui](text::TextBuffer& out) { out.AppendHex(oui, kOuiDigits); });
}

std::uint8_t LaneMask(int lanes) { return static_cast<std::uint8_t>((1U << lanes) - 1); }

std::uint8_t LaneBit(int lane) { return static_cast<std::uint8_t>(1U << (lane - 1)); }

// The mask of eight lanes with lane 1 in bit 0, from four bits with lane 1 in bit 3.
std::uint8_t Reversed4(unsigned bits) {
  return static_cast<std::uint8_t>((bits & 1) << 3 | (bits & 2) << 1 | (bits & 4) >> 1 |
                                   (bits & 8) >> 3);
}

std::optional<float> NonZero(double value) {
  return value == 0 ? std::nullopt : std::optional(static_cast<float>(value));
}

std::optional<std::uint8_t> NonZeroByte(std::uint8_t value) {
  return value == 0 ? std::nullopt : std::optional(value);
}

// The metres of a text, as `decode::Metres`; empty for 0, too.
std::optional<float> Metres(std::string_view text) {
  const std::optional<double> metres = decode::Metres(text);
  return metres ? NonZero(*metres) : std::nullopt;
}

// The whole degrees of a temperature word, if `_is_valid_temperature` accepts them. Rows and
// reports ignore the low byte of a record's words, too.
std::optional<double> Degrees(std::uint16_t word, std::uint8_t technology) {
  const std::int8_t degrees = WholeDegrees(word);
  if (!_is_valid_temperature(degrees, technology)) return std::nullopt;
  return degrees;
}

// The thresholds of a quantity, as raw words by level.
using Words = std::array<std::uint16_t, kAlarmLevels>;

bool AllZero(const Words& words) {
  return std::all_of(words.begin(), words.end(), [](std::uint16_t word) { return word == 0; });
}

void SetTemperature(Reading& reading, std::uint16_t word, const Words& thresholds,
                    std::size_t levels, std::uint8_t technology) {
  if (const std::optional<double> degrees = Degrees(word, technology)) SetValue(reading, *degrees);
  if (AllZero(thresholds)) return;
  for (std::size_t i = 0; i < levels; ++i) {
    const std::optional<double> degrees = Degrees(thresholds[i], technology);
    if (degrees) SetThreshold(reading, kAllAlarmLevels[i], *degrees);
  }
}

void SetVoltage(Reading& reading, std::uint16_t word, const Words& thresholds, std::size_t levels) {
  SetValue(reading, word * kVoltsPerUnit);
  if (AllZero(thresholds)) return;
  for (std::size_t i = 0; i < levels; ++i) {
    SetThreshold(reading, kAllAlarmLevels[i], thresholds[i] * kVoltsPerUnit);
  }
}

constexpr std::array<Quantity, 3> kLaneQuantities = {Quantity::kRxPower, Quantity::kTxPower,
                                                     Quantity::kTxBias};

// Clears a monitor that the module does not have.
void Deny(Reading& reading) {
  reading.state = FieldState::kNotImplemented;
  reading.value = 0;
  reading.thresholds = {};
  reading.latched = {};
}

bool IsZero(const Reading& reading) { return reading.IsPresent() && reading.value == 0; }

bool IsDark(const Readings& port, int lane) {
  return std::all_of(kLaneQuantities.begin(), kLaneQuantities.end(),
                     [&](Quantity quantity) { return IsZero(port.Of(quantity, lane)); });
}

// Determines the monitors and the lanes in use, after all values were set: lanes beyond those of
// the form factor have no monitors, copper has no optical ones, and a module that is zero on all
// lanes has none.
void SettleLanes(Readings& port) {
  bool has_monitors = false;
  for (int lane = 1; lane <= port.lanes; ++lane) {
    const bool is_dark = IsDark(port, lane);
    has_monitors = has_monitors || !is_dark;
    if (!is_dark) port.lanes_in_use |= LaneBit(lane);
  }
  for (const Quantity quantity : kLaneQuantities) {
    for (int lane = 1; lane <= kMaxLanes; ++lane) {
      Reading& reading = port.Of(quantity, lane);
      if (lane > port.lanes || IsCopper(port.medium)) {
        Deny(reading);
      } else if (!has_monitors) {
        reading.state = FieldState::kNotImplemented;
      }
    }
  }
  if (IsCopper(port.medium)) port.lanes_in_use = LaneMask(port.lanes);
  for (const LaneFlag flag : kAllLaneFlags) {
    port.Of(flag).known &= LaneMask(port.lanes);
    port.Of(flag).raised &= port.Of(flag).known;
  }
}

// A voltage of 0 means that the module does not measure it; then a temperature of 0 C means the
// same.
void SettleModule(Readings& port, std::uint16_t voltage, std::uint16_t temperature) {
  if (port.medium == Medium::kPassiveCopper) {
    Deny(port.Of(Quantity::kTemperature));
    Deny(port.Of(Quantity::kVoltage));
    return;
  }
  if (voltage != 0) return;
  port.Of(Quantity::kVoltage).state = FieldState::kNotImplemented;
  if (temperature == 0) port.Of(Quantity::kTemperature).state = FieldState::kNotImplemented;
}

// ---------------------------------------------------------------------------------------------
// The cable-information pages
// ---------------------------------------------------------------------------------------------

constexpr int kPageLanes = 4;

// SFF-8636 lower page, bytes 6 and 7: bits 7..4 are the four levels in order.
Flags LevelsDownwards(std::uint8_t byte) {
  constexpr std::uint8_t kKnown = 0x0F;
  return {kKnown, Reversed4(byte >> 4)};
}

// SFF-8636 lower page, bytes 9 to 14: one nibble per lane, lane 1 in the top nibble.
Flags LevelsOfLane(std::uint16_t word, int lane) {
  constexpr std::uint8_t kKnown = 0x0F;
  return {kKnown, Reversed4(static_cast<unsigned>(word) >> (4 * (kPageLanes - lane)) & 0xF)};
}

Flags FourLanes(unsigned bits) { return {0x0F, static_cast<std::uint8_t>(bits & 0xF)}; }

LaneValues NibblesFromTop(std::uint16_t word) {
  LaneValues values;
  for (int lane = 1; lane <= kPageLanes; ++lane) {
    const unsigned nibble = static_cast<unsigned>(word) >> (4 * (kPageLanes - lane)) & 0xF;
    values[static_cast<std::size_t>(lane) - 1] = static_cast<std::uint8_t>(nibble);
  }
  return values;
}

int LanesOf(const CableRecord& r) {
  constexpr std::uint8_t kSfpDd = 0x1A;
  constexpr std::uint8_t kDsfp = 0x1B;
  constexpr int kTwoLanes = 2;
  return r.Identifier == kSfpDd || r.Identifier == kDsfp ? kTwoLanes : kPageLanes;
}

std::string OuiOf(const CableRecord& r) {
  constexpr int kHexadecimal = 16;
  char* end = nullptr;
  const unsigned long oui = std::strtoul(r.Oui.c_str(), &end, kHexadecimal);
  constexpr unsigned long kHighest = 0xFFFFFF;
  if (end != r.Oui.c_str() + r.Oui.size() || oui > kHighest) return {};
  return OuiText(static_cast<std::uint32_t>(oui));
}

void SetIdentity(Identity& identity, const CableRecord& r) {
  identity.vendor = KnownText(r.VendorName);
  identity.oui = OuiOf(r);
  identity.part_number = KnownText(r.PartNumber);
  identity.revision = KnownText(r.Revision);
  identity.serial_number = KnownText(r.SerialNumber);
  identity.date_code = DateDigits(r.DateCodeText);
  if (r.IsKestMmf() || r.IsKestPsm()) identity.firmware = KnownText(r.FwVersionText);
  identity.lot = r.Lot;
}

void SetLengths(Lengths& lengths, const CableRecord& r, Medium medium) {
  constexpr int kMetresPerKilometre = 1000;
  constexpr int kOm3Unit = 2;
  constexpr int kOm4Unit = 2;
  lengths.smf = NonZero(r.LengthSmf * kMetresPerKilometre);
  lengths.om3 = NonZero(r.LengthOm3 * kOm3Unit);
  lengths.om2 = NonZero(r.LengthOm2);
  lengths.om1 = NonZero(r.LengthOm1);
  lengths.measured = Metres(r.PrtlLengthText);
  if (IsCable(medium, r.Connector)) {
    lengths.cable = NonZero(r.LengthCopperOrActive);
    if (!lengths.cable) lengths.cable = Metres(r.LengthText);
  } else if (r.TransmitterTechnologyCode == 0) {  // an 850 nm module with separable connectors
    lengths.om4 = NonZero(r.LengthCopperOrActive * kOm4Unit);
  }
}

void SetControls(Controls& controls, const CableRecord& r) {
  constexpr unsigned kTxCdr = 2;
  constexpr unsigned kRxCdr = 1;
  if (r.IsPassiveCable()) return;
  if ((r.CdrPresence & kTxCdr) != 0) controls.tx_cdr = FourLanes(r.CdrControl >> 4);
  if ((r.CdrPresence & kRxCdr) != 0) controls.rx_cdr = FourLanes(r.CdrControl);
  controls.rx_output_disable = FourLanes(r.RxOutputDisableTxAdaptiveEq >> 4);
  controls.tx_adaptive_eq = FourLanes(r.RxOutputDisableTxAdaptiveEq);
  controls.tx_adaptive_eq_freeze = FourLanes(Reversed4(r.TxAdaptiveEqFreeze));
  controls.tx_input_eq = NibblesFromTop(r.InputEq);
  controls.rx_amplitude = NibblesFromTop(r.OutputAmp);
  controls.rx_emphasis = NibblesFromTop(r.OutputEmp);
}

void SetModuleReadings(Readings& port, const CableRecord& r) {
  Reading& temperature = port.Of(Quantity::kTemperature);
  SetTemperature(
      temperature, r.Temperature,
      {r.TempHighAlarmThresh, r.TempLowAlarmThresh, r.TempHighWarnThresh, r.TempLowWarnThresh},
      kAlarmLevels, r.TransmitterTechnologyCode);
  temperature.latched = LevelsDownwards(r.LatchedTemperatureAlarms);
  Reading& voltage = port.Of(Quantity::kVoltage);
  SetVoltage(
      voltage, r.SupplyVoltage,
      {r.VoltHighAlarmThresh, r.VoltLowAlarmThresh, r.VoltHighWarnThresh, r.VoltLowWarnThresh},
      kAlarmLevels);
  voltage.latched = LevelsDownwards(r.LatchedVoltageAlarms);
  SettleModule(port, r.SupplyVoltage, r.Temperature);
}

void SetLanes(Readings& port, const CableRecord& r) {
  for (int lane = 1; lane <= kPageLanes; ++lane) {
    const int index = lane - 1;
    SetValue(port.Of(Quantity::kRxPower, lane), static_cast<double>(r.RxPower[index]));
    SetValue(port.Of(Quantity::kTxPower, lane), static_cast<double>(r.TxPower[index]));
    SetValue(port.Of(Quantity::kTxBias, lane), static_cast<double>(r.TxBias[index]));
    port.Of(Quantity::kRxPower, lane).latched = LevelsOfLane(r.RxPowerAlarms, lane);
    port.Of(Quantity::kTxPower, lane).latched = LevelsOfLane(r.TxPowerAlarms, lane);
    port.Of(Quantity::kTxBias, lane).latched = LevelsOfLane(r.TxBiasAlarms, lane);
  }
  port.Of(LaneFlag::kRxLos) = FourLanes(r.LatchedCdrLos);
  port.Of(LaneFlag::kTxLos) = FourLanes(r.LatchedCdrLos >> 4);
  port.Of(LaneFlag::kRxLol) = FourLanes(r.LatchedCdrLol);
  port.Of(LaneFlag::kTxLol) = FourLanes(r.LatchedCdrLol >> 4);
  port.Of(LaneFlag::kTxFault) = FourLanes(r.LatchedAdaptiveEqFault);
  port.Of(LaneFlag::kAdaptiveEqFault) = FourLanes(r.LatchedAdaptiveEqFault >> 4);
  SettleLanes(port);
}

// ---------------------------------------------------------------------------------------------
// The PHY's registers
// ---------------------------------------------------------------------------------------------

// The PHY's module flags are already in the order of the levels.
Flags LevelsUpwards(std::uint8_t byte) { return {0x0F, static_cast<std::uint8_t>(byte & 0xF)}; }

// The lanes with a raised flag, by level.
using LaneMasks = std::array<std::uint8_t, kAlarmLevels>;

Flags LevelsOfLane(const LaneMasks& masks, int lane) {
  Flags flags = {0x0F, 0};
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    flags.raised |= static_cast<std::uint8_t>((masks[i] >> (lane - 1) & 1) << i);
  }
  return flags;
}

// A power of a lane, or its threshold, in milliwatts; empty if there is none.
std::optional<double> LanePower(std::uint16_t raw, const ModuleRecord& m) {
  const bool is_dbm = phy::module::IsDbm(m.power_unit_flag);
  if (is_dbm && raw == 0) return std::nullopt;
  return phy::module::Milliwatts(raw, m.power_unit_flag);
}

std::optional<double> PowerThreshold(std::uint16_t raw, const ModuleRecord& m) {
  constexpr std::uint16_t kHighestDbm = 40;
  if (phy::module::IsDbm(m.power_unit_flag) && raw > kHighestDbm) return std::nullopt;
  return LanePower(raw, m);
}

void SetAlarms(Reading& reading, std::optional<double> high, std::optional<double> low) {
  if (high) SetThreshold(reading, AlarmLevel::kHighAlarm, *high);
  if (low) SetThreshold(reading, AlarmLevel::kLowAlarm, *low);
}

void SetLanePowers(Readings& port, Quantity quantity, const std::uint16_t (&lanes)[kMaxLanes],
                   std::uint16_t high, std::uint16_t low, const ModuleRecord& m) {
  std::optional<double> high_power;
  std::optional<double> low_power;
  if (high != 0 || low != 0) {
    high_power = PowerThreshold(high, m);
    low_power = PowerThreshold(low, m);
  }
  for (int lane = 1; lane <= kMaxLanes; ++lane) {
    Reading& reading = port.Of(quantity, lane);
    const std::optional<double> power = LanePower(phy::module::LaneValue(lanes, lane), m);
    if (power) SetValue(reading, *power);
    SetAlarms(reading, high_power, low_power);
  }
}

void SetLaneBias(Readings& port, const ModuleRecord& m) {
  using phy::module::Milliamperes;
  const bool has_thresholds = m.tx_bias_high_threshold != 0 || m.tx_bias_low_threshold != 0;
  for (int lane = 1; lane <= kMaxLanes; ++lane) {
    Reading& reading = port.Of(Quantity::kTxBias, lane);
    SetValue(reading, Milliamperes(phy::module::LaneValue(m.tx_bias, lane)));
    if (!has_thresholds) continue;
    SetAlarms(reading, Milliamperes(m.tx_bias_high_threshold),
              Milliamperes(m.tx_bias_low_threshold));
  }
}

void SetModuleReadings(Readings& port, const ModuleRecord& m) {
  constexpr std::size_t kRegisterLevels = 2;  // the register has no warning thresholds
  SetTemperature(port.Of(Quantity::kTemperature), m.temperature,
                 {m.temp_high_threshold, m.temp_low_threshold, 0, 0}, kRegisterLevels,
                 phy::module::TechnologyNibble(m));
  SetVoltage(port.Of(Quantity::kVoltage), m.voltage,
             {m.voltage_high_threshold, m.voltage_low_threshold, 0, 0}, kRegisterLevels);
  SetLanePowers(port, Quantity::kRxPower, m.rx_power, m.rx_power_high_threshold,
                m.rx_power_low_threshold, m);
  SetLanePowers(port, Quantity::kTxPower, m.tx_power, m.tx_power_high_threshold,
                m.tx_power_low_threshold, m);
  SetLaneBias(port, m);
}

void SetFlags(Readings& port, const LatchedFlagsPage& page) {
  port.Of(Quantity::kTemperature).latched = LevelsUpwards(page.latched_temperature_flags);
  port.Of(Quantity::kVoltage).latched = LevelsUpwards(page.latched_voltage_flags);
  const LaneMasks rx_power = {page.latched_rx_power_high_alarm, page.latched_rx_power_low_alarm,
                              page.latched_rx_power_high_warning,
                              page.latched_rx_power_low_warning};
  const LaneMasks tx_power = {page.latched_tx_power_high_alarm, page.latched_tx_power_low_alarm,
                              page.latched_tx_power_high_warning,
                              page.latched_tx_power_low_warning};
  const LaneMasks tx_bias = {page.latched_tx_bias_high_alarm, page.latched_tx_bias_low_alarm,
                             page.latched_tx_bias_high_warning, page.latched_tx_bias_low_warning};
  for (int lane = 1; lane <= kMaxLanes; ++lane) {
    port.Of(Quantity::kRxPower, lane).latched = LevelsOfLane(rx_power, lane);
    port.Of(Quantity::kTxPower, lane).latched = LevelsOfLane(tx_power, lane);
    port.Of(Quantity::kTxBias, lane).latched = LevelsOfLane(tx_bias, lane);
  }
  port.Of(LaneFlag::kRxLos) = {kAllLanes, page.latched_rx_los};
  port.Of(LaneFlag::kTxLos) = {kAllLanes, page.latched_tx_los};
  port.Of(LaneFlag::kRxLol) = {kAllLanes, page.latched_rx_cdr_lol};
  port.Of(LaneFlag::kTxLol) = {kAllLanes, page.latched_tx_cdr_lol};
  port.Of(LaneFlag::kAdaptiveEqFault) = {kAllLanes, page.latched_tx_adaptive_eq_fault};
}

void SetIdentity(Identity& identity, const ModuleRecord& m) {
  identity.vendor = KnownText(ArrayText(m.vendor_name));
  identity.oui = OuiText(m.vendor_oui);
  identity.part_number = KnownText(ArrayText(m.vendor_pn));
  identity.revision = KnownText(m.ConvertRevisionToStr());
  identity.serial_number = KnownText(ArrayText(m.vendor_sn));
  const std::string reversed(std::rbegin(m.date_code), std::rend(m.date_code));
  identity.date_code = DateDigits(reversed);
  identity.firmware = m.ConvertFWVersionToStr({});
  identity.lot = m.lot;
}

void SetLengths(Lengths& lengths, const ModuleRecord& m, Medium medium) {
  using phy::module::OmMetres;
  if (IsCable(medium, m.connector_type)) {
    lengths.cable = NonZero(phy::module::LengthOf(m).Metres());
  }
  lengths.smf = NonZero(phy::module::SmfLengthOf(m).Metres());
  lengths.om5 = NonZero(OmMetres(m, 5));
  lengths.om4 = NonZero(OmMetres(m, 4));
  lengths.om3 = NonZero(OmMetres(m, 3));
  lengths.om2 = NonZero(OmMetres(m, 2));
  lengths.om1 = NonZero(OmMetres(m, 1));
}

LaneValues Everywhere(std::uint8_t value, int lanes) {
  LaneValues values;
  for (int lane = 1; lane <= lanes; ++lane) values[static_cast<std::size_t>(lane) - 1] = value;
  return values;
}

void SetControls(Controls& controls, const ModuleRecord& m, int lanes) {
  if (m.IsPassiveCable()) return;
  const std::uint8_t all = LaneMask(lanes);
  const auto cdr = [all](std::uint8_t state) {
    return Flags{all, static_cast<std::uint8_t>(state & all)};
  };
  if (m.tx_cdr_cap != 0) controls.tx_cdr = cdr(m.tx_cdr_state);
  if (m.rx_cdr_cap != 0) controls.rx_cdr = cdr(m.rx_cdr_state);
  controls.tx_input_eq = Everywhere(m.tx_input_eq, lanes);
  controls.rx_amplitude = Everywhere(m.rx_output_amp, lanes);
  controls.rx_pre_cursor = Everywhere(m.rx_output_pre_emp, lanes);
  controls.rx_post_cursor = Everywhere(m.rx_output_post_emp, lanes);
}

// The medium by the technology code of the module. A cable that rows and reports treat as passive
// is passive here, too.
Medium MediumOf(const ModuleRecord& m) {
  return m.IsPassiveCable() ? Medium::kPassiveCopper
                            : MediumOfTechnology(m.SelectTransmitterTechnology());
}

void SetModule(Readings& port, const ModuleRecord& m) {
  SetIdentity(port.identity, m);
  const std::string identifier = m.ConvertCableIdentifierToStr();
  port.identifier = Named(m.cable_identifier, identifier == kBareNa ? "" : identifier);
  port.connector = Named(m.connector_type, kConnectors.Name(m.connector_type));
  const std::uint8_t technology = m.SelectTransmitterTechnology();
  port.technology = Named(technology, m.ConvertTransmitterTechnologyToStr({}));
  port.compliance = Named(m.compliance_code, kComplianceCodes.Name(m.compliance_code));
  port.medium = MediumOf(m);
  port.speeds = m.ib_compliance_code;
  port.nominal_bitrate_gbps = NonZero(static_cast<double>(m.SelectNominalBR()));
  port.power_class = m.power_class;
  port.max_power_w = NonZero(m.max_power * phy::module::kWattsPerUnit);
  port.rx_power_is_average = m.rx_power_type != 0;
  port.lanes = phy::module::LaneCount(m);
  SetLengths(port.lengths, m, port.medium);
  SetControls(port.controls, m, port.lanes);
  if (IsCopper(port.medium)) {
    port.attenuation.at_5 = NonZeroByte(m.attenuation[0]);
    port.attenuation.at_7 = NonZeroByte(m.attenuation[1]);
    port.attenuation.at_12p9 = NonZeroByte(m.attenuation[2]);
    port.attenuation.at_25p8 = NonZeroByte(m.attenuation[3]);
  }
  SetModuleReadings(port, m);
}

}  // namespace

std::string_view MediumName(Medium medium) {
  switch (medium) {
    case Medium::kUnknown:
      return {};
    case Medium::kOptical:
      return "optical";
    case Medium::kPassiveCopper:
      return "passive_copper";
    case Medium::kActiveCopper:
      return "active_copper";
  }
  return {};
}

Readings::Readings() {
  for (std::size_t i = 0; i < kModuleReadings; ++i) {
    readings_[i].quantity = static_cast<Quantity>(i);
  }
  for (const Quantity quantity : kLaneQuantities) {
    for (int lane = 1; lane <= kMaxLanes; ++lane) {
      Of(quantity, lane).quantity = quantity;
      Of(quantity, lane).lane = static_cast<std::uint8_t>(lane);
    }
  }
}

Readings ReadingsOf(const CableRecord& record) {
  Readings port;
  port.has_data = true;
  port.source = CableRecord::kSource;
  port.query_status = record.QueryStatus;
  port.lengths.measured = Metres(record.PrtlLengthText);
  if (record.QueryStatus != 0) return port;
  const std::uint8_t technology = record.TransmitterTechnologyCode;
  port.medium = MediumOfTechnology(technology);
  SetIdentity(port.identity, record);
  const std::string identifier = record.ConvertCableIdentifierToStr();
  port.identifier =
      Named(record.Identifier, identifier == kBareNa ? kIdentifiers.Name(record.Identifier)
                                                     : std::string_view(identifier));
  port.connector = Named(record.Connector, kConnectors.Name(record.Connector));
  port.technology = Named(technology, TableEntry(transmitter_technology_arr, technology, {}));
  port.compliance =
      Named(record.ExtSpecCompliance, kComplianceCodes.Name(record.ExtSpecCompliance));
  port.speeds = record.SupportedSpeedMask;
  port.nominal_bitrate_gbps = NonZero(record.NominalBitrate);
  port.power_class = record.PowerClass;
  port.rx_power_is_average = record.RxPowerIsAverage;
  SetLengths(port.lengths, record, port.medium);
  if (IsCopper(port.medium)) {
    port.attenuation.at_2p5 = NonZeroByte(record.Attenuation[0]);
    port.attenuation.at_5 = NonZeroByte(record.Attenuation[1]);
    port.attenuation.at_7 = NonZeroByte(record.Attenuation[2]);
    port.attenuation.at_12p9 = NonZeroByte(record.Attenuation[3]);
  }
  SetControls(port.controls, record);
  port.lanes = LanesOf(record);
  SetModuleReadings(port, record);
  SetLanes(port, record);
  return port;
}

Readings ReadingsOf(const PhyCableRecord& record) {
  Readings port;
  port.has_data = record.module != nullptr || record.latched_flags != nullptr;
  port.source = record.source;
  port.lengths.measured = Metres(record.prtl_length);
  port.lanes = kMaxLanes;
  if (record.module != nullptr) SetModule(port, *record.module);
  if (record.latched_flags != nullptr) SetFlags(port, *record.latched_flags);
  if (record.module == nullptr) {
    port.lanes_in_use = kAllLanes;
    return port;
  }
  port.cdr_vendor = record.module->cdr_vendor;
  SettleModule(port, record.module->voltage, record.module->temperature);
  SettleLanes(port);
  return port;
}

Readings ReadingsOf(const CombinedCableInfo& cable) {
  if (const CableRecord* const pages = cable.cable_record()) return ReadingsOf(*pages);
  if (const PhyCableRecord* const phy = cable.phy_cable_record()) return ReadingsOf(*phy);
  return {};
}

}  // namespace cable_info
