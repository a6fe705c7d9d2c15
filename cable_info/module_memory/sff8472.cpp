#include "cable_info/module_memory/sff8472.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace cable_info::module_memory {

namespace {

using cable_info::PhyCableRecord;

constexpr std::uint8_t kSfpFormFactor = 2;
constexpr std::uint8_t kSeeExtendedRate = 255;
constexpr std::size_t kLastReading = 105;  // the last byte of what is calibrated

// The four warnings and alarms of one quantity, in the order of the flags.
struct AlarmFlags {
  std::uint8_t high_alarm = 0;
  std::uint8_t low_alarm = 0;
  std::uint8_t high_warning = 0;
  std::uint8_t low_warning = 0;
};

struct Calibration {
  double slope = 1.0;
  double offset = 0.0;
};

// The record on its way, and the bytes that are a field only together with others.
struct Draft {
  ModuleRecord module;
  LatchedFlagsPage flags;
  AlarmFlags temperature;
  AlarmFlags voltage;
  std::uint8_t is_passive_cable = 0;
  std::uint8_t is_active_cable = 0;
  std::uint8_t smf_kilometres = 0;
  std::uint8_t smf_hundred_metres = 0;
  std::uint8_t om4_or_cable = 0;
  std::uint8_t om3 = 0;
  std::uint16_t wavelength = 0;
  std::uint8_t extended_rate = 0;
  std::uint8_t power_level_2 = 0;
  std::uint8_t power_level_3 = 0;
  std::uint8_t is_internally_calibrated = 0;
  std::uint8_t is_externally_calibrated = 0;
  double rx_power[5] = {0.0, 0.0, 0.0, 1.0, 0.0};  // of the powers 4 to 0 of the raw value
  Calibration tx_bias;
  Calibration tx_power;
  Calibration temperature_calibration;
  Calibration voltage_calibration;
};

template <auto kMember>
constexpr auto ToModule = SetNumberOf<Draft, &Draft::module, kMember>;
template <auto kMember>
constexpr auto ToText = SetTextOf<Draft, &Draft::module, kMember>;
template <auto kMember>
constexpr auto ToFlags = SetNumberOf<Draft, &Draft::flags, kMember>;
template <auto kMember>
constexpr auto ToDraft = SetNumber<Draft, kMember>;

template <auto kQuantity, auto kFlag>
constexpr auto ToAlarm = SetNumberOf<Draft, kQuantity, kFlag>;

template <auto kMember>
void ToLane1(Draft& draft, const FieldValue& value) {
  LaneOf(draft.module.*kMember, 1) = value.Word(0);
}

void ToDate(Draft& draft, const FieldValue& value) { draft.module.SetDateCode(value.Text()); }

// An unsigned slope with eight bits behind the point, and a signed offset.
template <Calibration Draft::*kQuantity>
void ToCalibration(Draft& draft, const FieldValue& value) {
  constexpr double kOne = 256.0;
  draft.*kQuantity = {value.Word(0) / kOne, static_cast<double>(std::int16_t(value.Word(1)))};
}

// Five IEEE-754 singles, that of the highest power first.
void ToRxPowerCalibration(Draft& draft, const FieldValue& value) {
  for (std::size_t i = 0; i < std::size(draft.rx_power); ++i) {
    const auto high = static_cast<std::uint32_t>(value.Word(2 * i));
    const std::uint32_t bits = high << 16 | value.Word(2 * i + 1);
    float coefficient = 0.0F;
    static_assert(sizeof(coefficient) == sizeof(bits));
    std::memcpy(&coefficient, &bits, sizeof(coefficient));
    draft.rx_power[i] = static_cast<double>(coefficient);
  }
}

constexpr Bits kAll = {};
constexpr bool kText = true;

constexpr MapField<Draft> kMap[] = {
    // A0h
    {"Connector", Page::kA0, 2, 1, kAll, ToModule<&ModuleRecord::connector_type>},
    {"Active cable", Page::kA0, 8, 1, {3, 3}, ToDraft<&Draft::is_active_cable>},
    {"Passive cable", Page::kA0, 8, 1, {2, 2}, ToDraft<&Draft::is_passive_cable>},
    {"Nominal signaling rate", Page::kA0, 12, 1, kAll, ToModule<&ModuleRecord::nominal_bitrate>},
    {"Length, SMF, km", Page::kA0, 14, 1, kAll, ToDraft<&Draft::smf_kilometres>},
    {"Length, SMF, 100 m", Page::kA0, 15, 1, kAll, ToDraft<&Draft::smf_hundred_metres>},
    {"Length, OM2", Page::kA0, 16, 1, kAll, ToModule<&ModuleRecord::length_om2>},
    {"Length, OM1", Page::kA0, 17, 1, kAll, ToModule<&ModuleRecord::length_om1>},
    {"Length, OM4 or cable", Page::kA0, 18, 1, kAll, ToDraft<&Draft::om4_or_cable>},
    {"Length, OM3", Page::kA0, 19, 1, kAll, ToDraft<&Draft::om3>},
    {"Vendor name", Page::kA0, 20, 16, kAll, ToText<&ModuleRecord::vendor_name>, kText},
    {"Extended specification compliance", Page::kA0, 36, 1, kAll,
     ToModule<&ModuleRecord::compliance_code>},
    {"Vendor OUI", Page::kA0, 37, 3, kAll, ToModule<&ModuleRecord::vendor_oui>},
    {"Vendor part number", Page::kA0, 40, 16, kAll, ToText<&ModuleRecord::vendor_pn>, kText},
    {"Vendor revision", Page::kA0, 56, 4, kAll, ToText<&ModuleRecord::vendor_rev>, kText},
    {"Wavelength", Page::kA0, 60, 2, kAll, ToDraft<&Draft::wavelength>},
    {"Power level 3", Page::kA0, 64, 1, {5, 5}, ToDraft<&Draft::power_level_3>},
    {"Power level 2", Page::kA0, 64, 1, {1, 1}, ToDraft<&Draft::power_level_2>},
    {"Extended signaling rate", Page::kA0, 66, 1, kAll, ToDraft<&Draft::extended_rate>},
    {"Vendor serial number", Page::kA0, 68, 16, kAll, ToText<&ModuleRecord::vendor_sn>, kText},
    {"Date code", Page::kA0, 84, 6, kAll, ToDate},
    {"Lot code", Page::kA0, 90, 2, kAll, ToModule<&ModuleRecord::lot>},
    {"Internally calibrated", Page::kA0, 92, 1, {5, 5}, ToDraft<&Draft::is_internally_calibrated>},
    {"Externally calibrated", Page::kA0, 92, 1, {4, 4}, ToDraft<&Draft::is_externally_calibrated>},
    {"Received power measurement type",
     Page::kA0,
     92,
     1,
     {3, 3},
     ToModule<&ModuleRecord::rx_power_type>},

    // A2h
    {"Temperature high alarm", Page::kA2, 0, 2, kAll, ToModule<&ModuleRecord::temp_high_threshold>},
    {"Temperature low alarm", Page::kA2, 2, 2, kAll, ToModule<&ModuleRecord::temp_low_threshold>},
    {"Voltage high alarm", Page::kA2, 8, 2, kAll, ToModule<&ModuleRecord::voltage_high_threshold>},
    {"Voltage low alarm", Page::kA2, 10, 2, kAll, ToModule<&ModuleRecord::voltage_low_threshold>},
    {"TX bias high alarm", Page::kA2, 16, 2, kAll, ToModule<&ModuleRecord::tx_bias_high_threshold>},
    {"TX bias low alarm", Page::kA2, 18, 2, kAll, ToModule<&ModuleRecord::tx_bias_low_threshold>},
    {"TX power high alarm", Page::kA2, 24, 2, kAll,
     ToModule<&ModuleRecord::tx_power_high_threshold>},
    {"TX power low alarm", Page::kA2, 26, 2, kAll, ToModule<&ModuleRecord::tx_power_low_threshold>},
    {"RX power high alarm", Page::kA2, 32, 2, kAll,
     ToModule<&ModuleRecord::rx_power_high_threshold>},
    {"RX power low alarm", Page::kA2, 34, 2, kAll, ToModule<&ModuleRecord::rx_power_low_threshold>},
    {"RX power calibration", Page::kA2, 56, 20, kAll, ToRxPowerCalibration},
    {"TX bias calibration", Page::kA2, 76, 4, kAll, ToCalibration<&Draft::tx_bias>},
    {"TX power calibration", Page::kA2, 80, 4, kAll, ToCalibration<&Draft::tx_power>},
    {"Temperature calibration", Page::kA2, 84, 4, kAll,
     ToCalibration<&Draft::temperature_calibration>},
    {"Voltage calibration", Page::kA2, 88, 4, kAll, ToCalibration<&Draft::voltage_calibration>},
    {"Temperature", Page::kA2, 96, 2, kAll, ToModule<&ModuleRecord::temperature>},
    {"Supply voltage", Page::kA2, 98, 2, kAll, ToModule<&ModuleRecord::voltage>},
    {"TX bias", Page::kA2, 100, 2, kAll, ToLane1<&ModuleRecord::tx_bias>},
    {"TX power", Page::kA2, 102, 2, kAll, ToLane1<&ModuleRecord::tx_power>},
    {"RX power", Page::kA2, 104, 2, kAll, ToLane1<&ModuleRecord::rx_power>},
    {"RX loss of signal", Page::kA2, 110, 1, {1, 1}, ToFlags<&LatchedFlagsPage::latched_rx_los>},
    {"Temperature high alarm flag",
     Page::kA2,
     112,
     1,
     {7, 7},
     ToAlarm<&Draft::temperature, &AlarmFlags::high_alarm>},
    {"Temperature low alarm flag",
     Page::kA2,
     112,
     1,
     {6, 6},
     ToAlarm<&Draft::temperature, &AlarmFlags::low_alarm>},
    {"Voltage high alarm flag",
     Page::kA2,
     112,
     1,
     {5, 5},
     ToAlarm<&Draft::voltage, &AlarmFlags::high_alarm>},
    {"Voltage low alarm flag",
     Page::kA2,
     112,
     1,
     {4, 4},
     ToAlarm<&Draft::voltage, &AlarmFlags::low_alarm>},
    {"TX bias high alarm flag",
     Page::kA2,
     112,
     1,
     {3, 3},
     ToFlags<&LatchedFlagsPage::latched_tx_bias_high_alarm>},
    {"TX bias low alarm flag",
     Page::kA2,
     112,
     1,
     {2, 2},
     ToFlags<&LatchedFlagsPage::latched_tx_bias_low_alarm>},
    {"TX power high alarm flag",
     Page::kA2,
     112,
     1,
     {1, 1},
     ToFlags<&LatchedFlagsPage::latched_tx_power_high_alarm>},
    {"TX power low alarm flag",
     Page::kA2,
     112,
     1,
     {0, 0},
     ToFlags<&LatchedFlagsPage::latched_tx_power_low_alarm>},
    {"RX power high alarm flag",
     Page::kA2,
     113,
     1,
     {7, 7},
     ToFlags<&LatchedFlagsPage::latched_rx_power_high_alarm>},
    {"RX power low alarm flag",
     Page::kA2,
     113,
     1,
     {6, 6},
     ToFlags<&LatchedFlagsPage::latched_rx_power_low_alarm>},
    {"Temperature high warning flag",
     Page::kA2,
     116,
     1,
     {7, 7},
     ToAlarm<&Draft::temperature, &AlarmFlags::high_warning>},
    {"Temperature low warning flag",
     Page::kA2,
     116,
     1,
     {6, 6},
     ToAlarm<&Draft::temperature, &AlarmFlags::low_warning>},
    {"Voltage high warning flag",
     Page::kA2,
     116,
     1,
     {5, 5},
     ToAlarm<&Draft::voltage, &AlarmFlags::high_warning>},
    {"Voltage low warning flag",
     Page::kA2,
     116,
     1,
     {4, 4},
     ToAlarm<&Draft::voltage, &AlarmFlags::low_warning>},
    {"TX bias high warning flag",
     Page::kA2,
     116,
     1,
     {3, 3},
     ToFlags<&LatchedFlagsPage::latched_tx_bias_high_warning>},
    {"TX bias low warning flag",
     Page::kA2,
     116,
     1,
     {2, 2},
     ToFlags<&LatchedFlagsPage::latched_tx_bias_low_warning>},
    {"TX power high warning flag",
     Page::kA2,
     116,
     1,
     {1, 1},
     ToFlags<&LatchedFlagsPage::latched_tx_power_high_warning>},
    {"TX power low warning flag",
     Page::kA2,
     116,
     1,
     {0, 0},
     ToFlags<&LatchedFlagsPage::latched_tx_power_low_warning>},
    {"RX power high warning flag",
     Page::kA2,
     117,
     1,
     {7, 7},
     ToFlags<&LatchedFlagsPage::latched_rx_power_high_warning>},
    {"RX power low warning flag",
     Page::kA2,
     117,
     1,
     {6, 6},
     ToFlags<&LatchedFlagsPage::latched_rx_power_low_warning>},
};

constexpr Checksum kChecksums[] = {
    {Page::kA0, 0, 62, 63},
    {Page::kA0, 64, 94, 95},
    {Page::kA2, 0, 94, 95},
};

// SFF-8636's technology codes, in the high nibble of the record's technology byte.
std::uint8_t Technology(const Draft& draft) {
  if (draft.is_passive_cable != 0) return 0xA0;
  if (draft.is_active_cable != 0) return 0xC0;
  switch (draft.wavelength) {
    case 850:
      return 0x00;
    case 1310:
      return 0x40;
    case 1490:
      return 0x90;
    case 1550:
      return 0x50;
    default:
      return 0x80;  // others
  }
}

std::uint8_t PowerClass(const Draft& draft) {
  if (draft.power_level_3 != 0) return 3;
  return draft.power_level_2 != 0 ? 2 : 1;
}

std::uint16_t SmfLength(const Draft& draft) {
  constexpr std::uint16_t kTenthsOfKilometre = 1U << 8;
  if (draft.smf_kilometres != 0) return draft.smf_kilometres;
  if (draft.smf_hundred_metres == 0) return 0;
  return static_cast<std::uint16_t>(kTenthsOfKilometre | draft.smf_hundred_metres);
}

void FinishIdentity(Draft& draft) {
  ModuleRecord& module = draft.module;
  module.cable_technology = Technology(draft);
  module.power_class = PowerClass(draft);
  module.smf_length = SmfLength(draft);
  if (module.nominal_bitrate == kSeeExtendedRate) module.extended_bitrate = draft.extended_rate;
  const bool is_cable = draft.is_passive_cable != 0 || draft.is_active_cable != 0;
  if (is_cable) {
    module.cable_length = draft.om4_or_cable;
  } else {
    module.length_om4 = draft.om4_or_cable;
    module.length_om3 = draft.om3;
  }
}

// The nearest word; values that are no number have none.
std::uint16_t Word(double value) {
  constexpr double kHighest = 65535.0;
  if (std::isnan(value)) return 0;
  return static_cast<std::uint16_t>(std::lround(std::clamp(value, 0.0, kHighest)));
}

std::uint16_t SignedWord(double value) {
  constexpr double kLowest = -32768.0;
  constexpr double kHighest = 32767.0;
  return static_cast<std::uint16_t>(std::lround(std::clamp(value, kLowest, kHighest)));
}

void Calibrate(std::uint16_t& value, const Calibration& calibration) {
  value = Word(value * calibration.slope + calibration.offset);
}

void CalibrateTemperature(std::uint16_t& value, const Calibration& calibration) {
  if (value == kNoTemperature) return;
  value = SignedWord(std::int16_t(value) * calibration.slope + calibration.offset);
}

void CalibrateRxPower(std::uint16_t& value, const Draft& draft) {
  double power = 0.0;
  for (const double coefficient : draft.rx_power) power = power * value + coefficient;
  value = Word(power);
}

// Values and thresholds alike are those of the converter until they are calibrated.
void CalibrateExternally(Draft& draft) {
  ModuleRecord& module = draft.module;
  for (std::uint16_t* value :
       {&module.temperature, &module.temp_high_threshold, &module.temp_low_threshold}) {
    CalibrateTemperature(*value, draft.temperature_calibration);
  }
  for (std::uint16_t* value :
       {&module.voltage, &module.voltage_high_threshold, &module.voltage_low_threshold}) {
    Calibrate(*value, draft.voltage_calibration);
  }
  for (std::uint16_t* value : {&LaneOf(module.tx_bias, 1), &module.tx_bias_high_threshold,
                               &module.tx_bias_low_threshold}) {
    Calibrate(*value, draft.tx_bias);
  }
  for (std::uint16_t* value : {&LaneOf(module.tx_power, 1), &module.tx_power_high_threshold,
                               &module.tx_power_low_threshold}) {
    Calibrate(*value, draft.tx_power);
  }
  for (std::uint16_t* value : {&LaneOf(module.rx_power, 1), &module.rx_power_high_threshold,
                               &module.rx_power_low_threshold}) {
    CalibrateRxPower(*value, draft);
  }
}

std::uint8_t ModuleFlags(const AlarmFlags& flags) {
  return static_cast<std::uint8_t>(flags.high_alarm | flags.low_alarm << 1 |
                                   flags.high_warning << 2 | flags.low_warning << 3);
}

Draft UnknownModule() {
  Draft draft;
  draft.module.cable_identifier = kSfpFormFactor;
  StoreText(draft.module.vendor_name, "NA");
  draft.module.power_unit_flag = 1;  // powers are in units of 0.1 uW
  draft.module.temperature = kNoTemperature;
  draft.module.temp_high_threshold = kNoTemperature;
  draft.module.temp_low_threshold = kNoTemperature;
  return draft;
}

}  // namespace

std::unique_ptr<PhyCableRecord> CableFromSff8472(const ModuleImage& image) {
  Draft draft = UnknownModule();
  SetFields(image, kMap, draft);
  FinishIdentity(draft);

  auto record = std::make_unique<PhyCableRecord>();
  // Whether there are diagnostics is asked of A2h itself: modules exist that have them and deny it.
  if (image.Has(Page::kA2)) {
    const bool has_readings = image.At(Page::kA2, kLastReading).has_value();
    if (has_readings && draft.is_externally_calibrated != 0 &&
        draft.is_internally_calibrated == 0) {
      CalibrateExternally(draft);
    }
    draft.flags.latched_temperature_flags = ModuleFlags(draft.temperature);
    draft.flags.latched_voltage_flags = ModuleFlags(draft.voltage);
    record->latched_flags = std::make_unique<LatchedFlagsPage>(draft.flags).release();
  }
  record->module = std::make_unique<ModuleRecord>(draft.module).release();
  return record;
}

ChecksumList Sff8472Checksums() { return ChecksumList(kChecksums); }

}  // namespace cable_info::module_memory
