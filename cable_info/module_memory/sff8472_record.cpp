#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/record_map.h"
#include "cable_info/module_memory/records.h"
#include "cable_info/module_memory/sff8472_rules.h"

namespace cable_info::module_memory {

namespace {

constexpr auto kSfpFormFactor = static_cast<std::uint8_t>(FormFactor::kSfp28OrSfpPlus);
constexpr std::size_t kLastReading = 105;  // the last byte of what is calibrated

// The four warnings and alarms of one quantity, in the order of the flags.
struct LevelFlags {
  std::uint8_t high_alarm = 0;
  std::uint8_t low_alarm = 0;
  std::uint8_t high_warning = 0;
  std::uint8_t low_warning = 0;
};

// The record under construction, and bytes that form a field only together with others.
struct Draft {
  ModuleRecord module;
  LatchedFlagsPage flags;
  LevelFlags temperature;
  LevelFlags voltage;
  std::uint16_t smf_length = 0;  // kilometres, and hundreds of metres
  std::uint8_t om4_or_cable = 0;
  std::uint8_t om3 = 0;
  std::uint16_t wavelength = 0;
  std::uint8_t extended_rate = 0;
  std::uint8_t options = 0;
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
void ToLane1(Draft& draft, const FieldBytes& value) {
  LaneOf(draft.module.*kMember, 1) = value.Word(0);
}

// The fields, and what takes them. The places are those of the family's map.
// NOLINTNEXTLINE(readability-function-size): a table
const auto& Map() {
  using F = RecordField<Draft>;
  static const auto kMap = [] {
    const Places P(Sff8472Map());
    return std::array{
        F{P.Of(Field::kConnector), ToModule<&ModuleRecord::connector_type>},
        F{P.Of(Field::kNominalBitrate), ToModule<&ModuleRecord::nominal_bitrate>},
        F{P.Of(Field::kLengthSmf), ToDraft<&Draft::smf_length>},
        F{P.Of(Field::kLengthOm2), ToModule<&ModuleRecord::length_om2>},
        F{P.Of(Field::kLengthOm1), ToModule<&ModuleRecord::length_om1>},
        F{P.Of(Field::kLengthCable), ToDraft<&Draft::om4_or_cable>},
        F{P.Of(Field::kLengthOm3), ToDraft<&Draft::om3>},
        F{P.Of(Field::kVendor), ToText<&ModuleRecord::vendor_name>, Partial::kAccepted},
        F{P.Of(Field::kExtendedCompliance), ToModule<&ModuleRecord::compliance_code>},
        F{P.Of(Field::kOui), ToModule<&ModuleRecord::vendor_oui>},
        F{P.Of(Field::kPartNumber), ToText<&ModuleRecord::vendor_pn>, Partial::kAccepted},
        F{P.Of(Field::kVendorRevision), ToText<&ModuleRecord::vendor_rev>, Partial::kAccepted},
        F{P.Of(Field::kWavelength), ToDraft<&Draft::wavelength>},
        F{P.Of(Field::kPowerClass), ToDraft<&Draft::options>},
        F{P.Of(Field::kExtendedBitrate), ToDraft<&Draft::extended_rate>},
        F{P.Of(Field::kSerialNumber), ToText<&ModuleRecord::vendor_sn>, Partial::kAccepted},
        F{P.Of(Field::kDateCode), SetDate<Draft>},
        F{P.Of(Field::kLot), ToModule<&ModuleRecord::lot>},
        F{P.Of(Field::kRxPowerType), ToModule<&ModuleRecord::rx_power_type>},
        F{P.Threshold(Quantity::kTemperature, kHighAlarm),
          ToModule<&ModuleRecord::temp_high_threshold>},
        F{P.Threshold(Quantity::kTemperature, kLowAlarm),
          ToModule<&ModuleRecord::temp_low_threshold>},
        F{P.Threshold(Quantity::kVoltage, kHighAlarm),
          ToModule<&ModuleRecord::voltage_high_threshold>},
        F{P.Threshold(Quantity::kVoltage, kLowAlarm),
          ToModule<&ModuleRecord::voltage_low_threshold>},
        F{P.Threshold(Quantity::kTxBias, kHighAlarm),
          ToModule<&ModuleRecord::tx_bias_high_threshold>},
        F{P.Threshold(Quantity::kTxBias, kLowAlarm),
          ToModule<&ModuleRecord::tx_bias_low_threshold>},
        F{P.Threshold(Quantity::kTxPower, kHighAlarm),
          ToModule<&ModuleRecord::tx_power_high_threshold>},
        F{P.Threshold(Quantity::kTxPower, kLowAlarm),
          ToModule<&ModuleRecord::tx_power_low_threshold>},
        F{P.Threshold(Quantity::kRxPower, kHighAlarm),
          ToModule<&ModuleRecord::rx_power_high_threshold>},
        F{P.Threshold(Quantity::kRxPower, kLowAlarm),
          ToModule<&ModuleRecord::rx_power_low_threshold>},
        F{P.Value(Quantity::kTemperature), ToModule<&ModuleRecord::temperature>},
        F{P.Value(Quantity::kVoltage), ToModule<&ModuleRecord::voltage>},
        F{P.Value(Quantity::kTxBias), ToLane1<&ModuleRecord::tx_bias>},
        F{P.Value(Quantity::kTxPower), ToLane1<&ModuleRecord::tx_power>},
        F{P.Value(Quantity::kRxPower), ToLane1<&ModuleRecord::rx_power>},
        F{P.Of(LaneField::kRxLos, Bit(1)), ToFlags<&LatchedFlagsPage::latched_rx_los>},
        F{P.Flag(Quantity::kTemperature, kHighAlarm),
          ToAlarm<&Draft::temperature, &LevelFlags::high_alarm>},
        F{P.Flag(Quantity::kTemperature, kLowAlarm),
          ToAlarm<&Draft::temperature, &LevelFlags::low_alarm>},
        F{P.Flag(Quantity::kVoltage, kHighAlarm),
          ToAlarm<&Draft::voltage, &LevelFlags::high_alarm>},
        F{P.Flag(Quantity::kVoltage, kLowAlarm), ToAlarm<&Draft::voltage, &LevelFlags::low_alarm>},
        F{P.Flag(Quantity::kTxBias, kHighAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_high_alarm>},
        F{P.Flag(Quantity::kTxBias, kLowAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_low_alarm>},
        F{P.Flag(Quantity::kTxPower, kHighAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_power_high_alarm>},
        F{P.Flag(Quantity::kTxPower, kLowAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_power_low_alarm>},
        F{P.Flag(Quantity::kRxPower, kHighAlarm),
          ToFlags<&LatchedFlagsPage::latched_rx_power_high_alarm>},
        F{P.Flag(Quantity::kRxPower, kLowAlarm),
          ToFlags<&LatchedFlagsPage::latched_rx_power_low_alarm>},
        F{P.Flag(Quantity::kTemperature, kHighWarning),
          ToAlarm<&Draft::temperature, &LevelFlags::high_warning>},
        F{P.Flag(Quantity::kTemperature, kLowWarning),
          ToAlarm<&Draft::temperature, &LevelFlags::low_warning>},
        F{P.Flag(Quantity::kVoltage, kHighWarning),
          ToAlarm<&Draft::voltage, &LevelFlags::high_warning>},
        F{P.Flag(Quantity::kVoltage, kLowWarning),
          ToAlarm<&Draft::voltage, &LevelFlags::low_warning>},
        F{P.Flag(Quantity::kTxBias, kHighWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_high_warning>},
        F{P.Flag(Quantity::kTxBias, kLowWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_low_warning>},
        F{P.Flag(Quantity::kTxPower, kHighWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_power_high_warning>},
        F{P.Flag(Quantity::kTxPower, kLowWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_power_low_warning>},
        F{P.Flag(Quantity::kRxPower, kHighWarning),
          ToFlags<&LatchedFlagsPage::latched_rx_power_high_warning>},
        F{P.Flag(Quantity::kRxPower, kLowWarning),
          ToFlags<&LatchedFlagsPage::latched_rx_power_low_warning>},
    };
  }();
  return kMap;
}

// A code of `transmitter_technology_arr`, in the high nibble of the record's technology byte.
constexpr std::uint8_t TechnologyByte(unsigned code) {
  return static_cast<std::uint8_t>(code << 4U);
}

std::uint8_t Technology(const Draft& draft, Sff8472Medium medium) {
  constexpr unsigned k850NmVcsel = 0;
  constexpr unsigned k1310NmDfb = 4;
  constexpr unsigned k1550NmDfb = 5;
  constexpr unsigned kOthers = 8;
  constexpr unsigned k1490NmDfb = 9;
  constexpr unsigned kLimitingActiveCopper = 12;  // near and far end
  if (medium == Sff8472Medium::kPassiveCable || medium == Sff8472Medium::kCopper) {
    return TechnologyByte(kUnequalizedCopper);
  }
  if (medium == Sff8472Medium::kActiveCable) return TechnologyByte(kLimitingActiveCopper);
  switch (draft.wavelength) {
    case 850:
      return TechnologyByte(k850NmVcsel);
    case 1310:
      return TechnologyByte(k1310NmDfb);
    case 1490:
      return TechnologyByte(k1490NmDfb);
    case 1550:
      return TechnologyByte(k1550NmDfb);
    default:
      return TechnologyByte(kOthers);
  }
}

std::uint16_t SmfLength(const Draft& draft) {
  const unsigned kilometres = draft.smf_length >> 8U;
  const unsigned hundreds = draft.smf_length & 0xFFU;
  if (kilometres != 0) return SmfLengthWord(kilometres, SmfLengthUnit::kKilometre);
  return hundreds == 0 ? std::uint16_t{0}
                       : SmfLengthWord(hundreds, SmfLengthUnit::kTenthOfKilometre);
}

// The lengths of fibre are those of optics; cables and copper modules have other things there.
void FinishIdentity(Draft& draft, Sff8472Medium medium) {
  ModuleRecord& module = draft.module;
  module.cable_technology = Technology(draft, medium);
  module.power_class = static_cast<std::uint8_t>(Sff8472PowerLevel(draft.options));
  if (module.nominal_bitrate == kSeeExtendedBitrate) module.extended_bitrate = draft.extended_rate;
  if (medium == Sff8472Medium::kOptical) {
    module.smf_length = SmfLength(draft);
    module.length_om4 = draft.om4_or_cable;
    module.length_om3 = draft.om3;
  } else {
    module.cable_length = draft.om4_or_cable;
    module.length_om2 = 0;
    module.length_om1 = 0;
  }
}

// The nearest word; none for NaN and infinities.
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

void CalibrateTemperature(std::uint16_t& value, const Sff8472Calibration::Line& line) {
  if (value != kNoTemperature) value = SignedWord(line.At(static_cast<std::int16_t>(value)));
}

// A quantity of the record: its value, and its thresholds.
using Words = std::array<std::uint16_t*, 3>;

void Calibrate(const Words& words, const Sff8472Calibration::Line& line) {
  for (std::uint16_t* word : words) *word = Word(line.At(*word));
}

// Values and thresholds are uncalibrated readings of the converter, and stay so where the constants
// are invalid.
void CalibrateExternally(ModuleRecord& module, const Sff8472Calibration& constants,
                         std::vector<std::string>& remarks) {
  const auto is_valid = [&remarks](bool is_ok, std::string_view quantity) {
    if (!is_ok) remarks.push_back(UncalibratedText(quantity));
    return is_ok;
  };
  if (is_valid(constants.temperature.IsValid(), "the temperature")) {
    for (std::uint16_t* word :
         {&module.temperature, &module.temp_high_threshold, &module.temp_low_threshold}) {
      CalibrateTemperature(*word, constants.temperature);
    }
  }
  if (is_valid(constants.voltage.IsValid(), "the supply voltage")) {
    Calibrate({&module.voltage, &module.voltage_high_threshold, &module.voltage_low_threshold},
              constants.voltage);
  }
  if (is_valid(constants.tx_bias.IsValid(), "the TX bias")) {
    Calibrate(
        {&LaneOf(module.tx_bias, 1), &module.tx_bias_high_threshold, &module.tx_bias_low_threshold},
        constants.tx_bias);
  }
  if (is_valid(constants.tx_power.IsValid(), "the TX power")) {
    Calibrate({&LaneOf(module.tx_power, 1), &module.tx_power_high_threshold,
               &module.tx_power_low_threshold},
              constants.tx_power);
  }
  if (is_valid(constants.IsRxPowerValid(), "the RX power")) {
    for (std::uint16_t* word : {&LaneOf(module.rx_power, 1), &module.rx_power_high_threshold,
                                &module.rx_power_low_threshold}) {
      *word = Word(constants.RxPower(*word));
    }
  }
}

std::uint8_t ModuleFlags(const LevelFlags& flags) {
  return static_cast<std::uint8_t>(flags.high_alarm | flags.low_alarm << 1 |
                                   flags.high_warning << 2 | flags.low_warning << 3);
}

// An A2h that a cable or a copper module does not need may hold anything. For optics, A2h itself
// determines whether there are diagnostics: some have them without stating it.
bool UsesA2(const ModuleImage& image) {
  return Sff8472MediumOf(image) == Sff8472Medium::kOptical ||
         HasDiagnostics(image) != Advertised::kNo;
}

// Passive cables and copper modules have no optics, whatever A2h holds.
void DropOptics(Draft& draft) {
  ModuleRecord& m = draft.module;
  for (std::uint16_t* word :
       {&LaneOf(m.tx_bias, 1), &m.tx_bias_high_threshold, &m.tx_bias_low_threshold,
        &LaneOf(m.tx_power, 1), &m.tx_power_high_threshold, &m.tx_power_low_threshold,
        &LaneOf(m.rx_power, 1), &m.rx_power_high_threshold, &m.rx_power_low_threshold}) {
    *word = 0;
  }
  LatchedFlagsPage flags;
  flags.latched_rx_los = draft.flags.latched_rx_los;
  draft.flags = flags;
}

std::unique_ptr<PhyCableRecord> CableFrom(const ModuleImage& image,
                                          std::vector<std::string>& remarks) {
  Draft draft;
  draft.module = UnknownModuleRecord(kSfpFormFactor);
  SetFields<Draft>(image, Map(), draft);
  const Sff8472Medium medium = Sff8472MediumOf(image);
  FinishIdentity(draft, medium);

  auto record = std::make_unique<PhyCableRecord>();
  if (image.Has(Page::kA2)) {
    const bool has_readings = image.At(Page::kA2, kLastReading).has_value();
    const bool is_external = IsCalibratedExternally(image) == Advertised::kYes &&
                             IsCalibratedInternally(image) != Advertised::kYes;
    if (has_readings && is_external) {
      CalibrateExternally(draft.module, Sff8472CalibrationOf(image), remarks);
    }
    if (!MayHaveOptics(medium)) DropOptics(draft);
    draft.flags.latched_temperature_flags = ModuleFlags(draft.temperature);
    draft.flags.latched_voltage_flags = ModuleFlags(draft.voltage);
    record->SetLatchedFlags(std::make_unique<LatchedFlagsPage>(draft.flags));
    if (IsNotReady(image) == Advertised::kYes) remarks.emplace_back(kNotReadyText);
  }
  record->SetModule(std::make_unique<ModuleRecord>(draft.module));
  return record;
}

}  // namespace

std::unique_ptr<PhyCableRecord> CableFromSff8472(const ModuleImage& image,
                                                 std::vector<std::string>& remarks) {
  if (!image.Has(Page::kA2) || UsesA2(image)) return CableFrom(image, remarks);
  remarks.emplace_back(kA2NotUsedText);
  ModuleImage rest = image;
  rest.Drop(Page::kA2);
  return CableFrom(rest, remarks);
}

}  // namespace cable_info::module_memory
