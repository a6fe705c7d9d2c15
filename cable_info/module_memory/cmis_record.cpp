// The record of a CMIS module.

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/cmis_rules.h"
#include "cable_info/module_memory/record_map.h"
#include "cable_info/module_memory/records.h"
#include "cable_info/module_memory/sff8024.h"
#include "cable_info/module_memory/sff_codes.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/value_format.h"

namespace cable_info::module_memory {

namespace {

constexpr std::uint8_t kUnknownTechnology = 0xF0;  // not in the table; flags clear

// The record under construction, and bytes that form a field only together with others.
struct Draft {
  ModuleRecord module;
  LatchedFlagsPage flags;
  unsigned bias_multiplier_code = 0;
  std::uint8_t smf_length = 0;  // bits 7..6 multiplier, 5..0 base
};

template <auto kMember>
constexpr auto ToModule = SetNumberOf<Draft, &Draft::module, kMember>;
template <auto kMember>
constexpr auto ToText = SetTextOf<Draft, &Draft::module, kMember>;
template <auto kMember>
constexpr auto ToFlags = SetNumberOf<Draft, &Draft::flags, kMember>;
template <auto kMember>
constexpr auto ToDraft = SetNumber<Draft, kMember>;

template <auto kMember>
void ToLanes(Draft& draft, const FieldBytes& value) {
  for (std::size_t i = 0; i < value.size() / 2; ++i) {
    LaneOf(draft.module.*kMember, i + 1) = value.Word(i);
  }
}

void ToAttenuation(Draft& draft, const FieldBytes& value) {
  for (std::size_t i = 0; i < std::size(draft.module.attenuation); ++i) {
    draft.module.attenuation[i] = value[i];
  }
}

void ToFirmware(Draft& draft, const FieldBytes& value) {
  draft.module.fw_version = value.Number() << 16;  // major and minor; there is no sub-minor
}

void ToPowerClass(Draft& draft, const FieldBytes& value) {
  draft.module.power_class = static_cast<std::uint8_t>(value.Number() + 1);
}

// The fields, and what takes them. The places are those of the family's map.
// NOLINTNEXTLINE(readability-function-size): a table
const auto& Map() {
  using F = RecordField<Draft>;
  static const auto kMap = [] {
    const Places P(CmisMap());
    return std::array{
        F{P.FlagNibble(Quantity::kTemperature),
          ToFlags<&LatchedFlagsPage::latched_temperature_flags>},
        F{P.FlagNibble(Quantity::kVoltage), ToFlags<&LatchedFlagsPage::latched_voltage_flags>},
        F{P.Of(Field::kLengthSmf), ToDraft<&Draft::smf_length>},
        F{P.Of(Field::kTxBiasMultiplier), ToDraft<&Draft::bias_multiplier_code>},
        F{P.Advertising(LaneField::kTxCdr), ToModule<&ModuleRecord::tx_cdr_cap>},
        F{P.Advertising(LaneField::kRxCdr), ToModule<&ModuleRecord::rx_cdr_cap>},
        F{P.Value(Quantity::kTemperature), ToModule<&ModuleRecord::temperature>},
        F{P.Value(Quantity::kVoltage), ToModule<&ModuleRecord::voltage>},
        F{P.Of(Field::kFirmwareActive), ToFirmware},
        F{P.Of(Field::kVendor), ToText<&ModuleRecord::vendor_name>, Partial::kAccepted},
        F{P.Of(Field::kOui), ToModule<&ModuleRecord::vendor_oui>},
        F{P.Of(Field::kPartNumber), ToText<&ModuleRecord::vendor_pn>, Partial::kAccepted},
        F{P.Of(Field::kVendorRevision), ToText<&ModuleRecord::vendor_rev>, Partial::kAccepted},
        F{P.Of(Field::kSerialNumber), ToText<&ModuleRecord::vendor_sn>, Partial::kAccepted},
        F{P.Of(Field::kDateCode), SetDate<Draft>},
        F{P.Of(Field::kLot), ToModule<&ModuleRecord::lot>},
        F{P.Of(Field::kPowerClass), ToPowerClass},
        F{P.Of(Field::kMaxPower), ToModule<&ModuleRecord::max_power>},
        F{P.Of(Field::kLengthCable), ToModule<&ModuleRecord::cable_length>},
        F{P.Of(Field::kConnector), ToModule<&ModuleRecord::connector_type>},
        F{P.Of(Field::kAttenuation5, Bytes(4)), ToAttenuation},
        F{P.Of(Field::kTechnology), ToModule<&ModuleRecord::cable_technology>},
        F{P.Of(Field::kLengthOm5), ToModule<&ModuleRecord::length_om5>},
        F{P.Of(Field::kLengthOm4), ToModule<&ModuleRecord::length_om4>},
        F{P.Of(Field::kLengthOm3), ToModule<&ModuleRecord::length_om3>},
        F{P.Of(Field::kLengthOm2), ToModule<&ModuleRecord::length_om2>},
        F{P.Of(Field::kRxPowerType), ToModule<&ModuleRecord::rx_power_type>},
        F{P.Threshold(Quantity::kTemperature, kHighAlarm),
          ToModule<&ModuleRecord::temp_high_threshold>},
        F{P.Threshold(Quantity::kTemperature, kLowAlarm),
          ToModule<&ModuleRecord::temp_low_threshold>},
        F{P.Threshold(Quantity::kVoltage, kHighAlarm),
          ToModule<&ModuleRecord::voltage_high_threshold>},
        F{P.Threshold(Quantity::kVoltage, kLowAlarm),
          ToModule<&ModuleRecord::voltage_low_threshold>},
        F{P.Threshold(Quantity::kTxPower, kHighAlarm),
          ToModule<&ModuleRecord::tx_power_high_threshold>},
        F{P.Threshold(Quantity::kTxPower, kLowAlarm),
          ToModule<&ModuleRecord::tx_power_low_threshold>},
        F{P.Threshold(Quantity::kTxBias, kHighAlarm),
          ToModule<&ModuleRecord::tx_bias_high_threshold>},
        F{P.Threshold(Quantity::kTxBias, kLowAlarm),
          ToModule<&ModuleRecord::tx_bias_low_threshold>},
        F{P.Threshold(Quantity::kRxPower, kHighAlarm),
          ToModule<&ModuleRecord::rx_power_high_threshold>},
        F{P.Threshold(Quantity::kRxPower, kLowAlarm),
          ToModule<&ModuleRecord::rx_power_low_threshold>},
        F{P.Of(LaneField::kTxLos), ToFlags<&LatchedFlagsPage::latched_tx_los>},
        F{P.Of(LaneField::kTxLol), ToFlags<&LatchedFlagsPage::latched_tx_cdr_lol>},
        F{P.Of(LaneField::kTxAdaptiveEqFault),
          ToFlags<&LatchedFlagsPage::latched_tx_adaptive_eq_fault>},
        F{P.FlagBytes(Quantity::kTxPower, kHighAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_power_high_alarm>},
        F{P.FlagBytes(Quantity::kTxPower, kLowAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_power_low_alarm>},
        F{P.FlagBytes(Quantity::kTxPower, kHighWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_power_high_warning>},
        F{P.FlagBytes(Quantity::kTxPower, kLowWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_power_low_warning>},
        F{P.FlagBytes(Quantity::kTxBias, kHighAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_high_alarm>},
        F{P.FlagBytes(Quantity::kTxBias, kLowAlarm),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_low_alarm>},
        F{P.FlagBytes(Quantity::kTxBias, kHighWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_high_warning>},
        F{P.FlagBytes(Quantity::kTxBias, kLowWarning),
          ToFlags<&LatchedFlagsPage::latched_tx_bias_low_warning>},
        F{P.Of(LaneField::kRxLos), ToFlags<&LatchedFlagsPage::latched_rx_los>},
        F{P.Of(LaneField::kRxLol), ToFlags<&LatchedFlagsPage::latched_rx_cdr_lol>},
        F{P.FlagBytes(Quantity::kRxPower, kHighAlarm),
          ToFlags<&LatchedFlagsPage::latched_rx_power_high_alarm>},
        F{P.FlagBytes(Quantity::kRxPower, kLowAlarm),
          ToFlags<&LatchedFlagsPage::latched_rx_power_low_alarm>},
        F{P.FlagBytes(Quantity::kRxPower, kHighWarning),
          ToFlags<&LatchedFlagsPage::latched_rx_power_high_warning>},
        F{P.FlagBytes(Quantity::kRxPower, kLowWarning),
          ToFlags<&LatchedFlagsPage::latched_rx_power_low_warning>},
        F{P.Value(Quantity::kTxPower, kPhyLanes), ToLanes<&ModuleRecord::tx_power>},
        F{P.Value(Quantity::kTxBias, kPhyLanes), ToLanes<&ModuleRecord::tx_bias>},
        F{P.Value(Quantity::kRxPower, kPhyLanes), ToLanes<&ModuleRecord::rx_power>},
        F{P.Of(LaneField::kTxInputEq, Bits(3, 0)), ToModule<&ModuleRecord::tx_input_eq>},
        F{P.Of(LaneField::kTxCdr), ToModule<&ModuleRecord::tx_cdr_state>},
        F{P.Of(LaneField::kRxCdr), ToModule<&ModuleRecord::rx_cdr_state>},
        F{P.Of(LaneField::kRxPreCursor, Bits(3, 0)), ToModule<&ModuleRecord::rx_output_pre_emp>},
        F{P.Of(LaneField::kRxPostCursor, Bits(3, 0)), ToModule<&ModuleRecord::rx_output_post_emp>},
        F{P.Of(LaneField::kRxAmplitude, Bits(3, 0)), ToModule<&ModuleRecord::rx_output_amp>},
    };
  }();
  return kMap;
}

// Of the host interfaces of all applications. The record has no bit for later speeds.
void SetSpeeds(const ModuleImage& image, ModuleRecord& module, std::vector<std::string>& remarks) {
  std::string_view later;
  for (unsigned number = 1; number <= kApplications; ++number) {
    const std::uint8_t* const descriptor = DescriptorOf(image, number);
    if (descriptor == nullptr) break;
    const std::uint8_t speed = InfiniBandSpeedOfHostInterface(*descriptor);
    module.ib_compliance_code |= speed;
    if (speed == 0 && later.empty()) later = InfiniBandSpeedOf(*descriptor);
  }
  if (later.empty()) return;
  remarks.push_back("the module supports InfiniBand " + std::string(later) +
                    ", which rows and reports do not show");
}

// The record's unit codes are kilometres and tenths of them, its value has eight bits; what does
// not fit stays unknown.
std::uint16_t SmfLength(const ModuleImage& image, const Draft& draft,
                        std::vector<std::string>& remarks) {
  constexpr unsigned kHighest = 0xFF;
  constexpr unsigned kKilometre = 1000;
  constexpr unsigned kTenth = 100;
  const std::optional<unsigned> metres = SmfLengthOf(image, draft.smf_length);
  if (!metres) {
    remarks.emplace_back(
        "multiplier 3 of the length of single-mode fibre is not defined before CMIS 5.3");
    return 0;
  }
  if (*metres == 0) return 0;
  const bool is_in_tenths = draft.smf_length >> 6U == 0;
  if (is_in_tenths) return SmfLengthWord(*metres / kTenth, SmfLengthUnit::kTenthOfKilometre);
  const unsigned kilometres = *metres / kKilometre;
  if (kilometres <= kHighest) return SmfLengthWord(kilometres, SmfLengthUnit::kKilometre);
  remarks.emplace_back(
      "the length of single-mode fibre is above 255 km, which rows and reports "
      "cannot show");
  return 0;
}

std::uint16_t Multiplied(std::uint16_t bias, unsigned multiplier, bool& is_cut) {
  const std::uint32_t product = bias * multiplier;
  is_cut = is_cut || product != Saturated(product);
  return Saturated(product);
}

// "282.2 mA".
std::string BiasText(std::uint32_t units) {
  constexpr std::uint32_t kMicroamperes = 2;
  constexpr std::uint32_t kPerTenth = 100;
  const std::uint32_t tenths = (units * kMicroamperes + kPerTenth / 2) / kPerTenth;
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " mA";
}

void MultiplyBias(Draft& draft, std::vector<std::string>& remarks) {
  const std::optional<unsigned> own = BiasMultiplierOf(draft.bias_multiplier_code);
  const unsigned multiplier = own.value_or(1);
  if (!own) remarks.emplace_back(kReservedBiasMultiplier);
  ModuleRecord& module = draft.module;
  for (int lane = 1; lane <= kPhyLanes; ++lane) {
    std::uint16_t& bias = LaneOf(module.tx_bias, static_cast<std::size_t>(lane));
    const std::uint32_t units = bias * multiplier;
    bool is_cut = false;
    bias = Multiplied(bias, multiplier, is_cut);
    if (!is_cut) continue;
    remarks.push_back("the TX bias of lane " + std::to_string(lane) + " is " + BiasText(units) +
                      "; rows and reports show at most 131.07 mA");
  }
  bool is_cut = false;
  module.tx_bias_high_threshold = Multiplied(module.tx_bias_high_threshold, multiplier, is_cut);
  module.tx_bias_low_threshold = Multiplied(module.tx_bias_low_threshold, multiplier, is_cut);
  if (is_cut) {
    remarks.emplace_back(
        "a threshold of the TX bias is above 131.07 mA, the most that rows and "
        "reports show");
  }
}

// The record names 16 technologies; lasers beyond them are "others", copper beyond them is linear
// active.
void NarrowTechnology(ModuleRecord& module) {
  constexpr std::uint8_t kOthers = 8;
  constexpr std::uint8_t kLinearActive = 15;
  if (module.cable_technology <= kLinearActive || module.cable_technology == kUnknownTechnology) {
    return;
  }
  const bool is_copper = decode::IsCopperTechnology(module.cable_technology);
  module.cable_technology = is_copper ? kLinearActive : kOthers;
}

// Rows and reports show four lanes.
void RemarkOnHigherLanes(const LatchedFlagsPage& flags, std::vector<std::string>& remarks) {
  constexpr unsigned kFirstHidden = 4;  // the bit of lane 5
  const std::uint8_t masks[] = {
      flags.latched_tx_los,
      flags.latched_tx_cdr_lol,
      flags.latched_tx_adaptive_eq_fault,
      flags.latched_tx_power_high_alarm,
      flags.latched_tx_power_low_alarm,
      flags.latched_tx_power_high_warning,
      flags.latched_tx_power_low_warning,
      flags.latched_tx_bias_high_alarm,
      flags.latched_tx_bias_low_alarm,
      flags.latched_tx_bias_high_warning,
      flags.latched_tx_bias_low_warning,
      flags.latched_rx_los,
      flags.latched_rx_cdr_lol,
      flags.latched_rx_power_high_alarm,
      flags.latched_rx_power_low_alarm,
      flags.latched_rx_power_high_warning,
      flags.latched_rx_power_low_warning,
  };
  unsigned raised = 0;
  for (const std::uint8_t mask : masks) raised |= mask;
  std::string lanes;
  for (unsigned bit = kFirstHidden; bit < 8; ++bit) {
    if ((raised >> bit & 1U) == 0) continue;
    lanes += (lanes.empty() ? "" : ", ") + std::to_string(bit + 1);
  }
  if (lanes.empty()) return;
  remarks.push_back("flags are raised that rows and reports do not show: lane " + lanes);
}

// Flat memory has neither monitors nor flags, whatever its bytes hold.
void DropMonitors(Draft& draft) {
  draft.module.temperature = kNoTemperature;
  draft.module.voltage = 0;
  draft.flags.latched_temperature_flags = 0;
  draft.flags.latched_voltage_flags = 0;
}

void MovePreCursor(const ModuleImage& image, ModuleRecord& module) {
  if (!ControlsPreCursorOnly(image)) return;
  module.rx_output_pre_emp = module.rx_output_post_emp;
  module.rx_output_post_emp = 0;
}

void RemarkOnAttenuation(const ModuleImage& image, std::vector<std::string>& remarks) {
  const unsigned attenuation = BitsOf(image, Page::k00, 208).value_or(0);
  if (attenuation == 0 || HasAttenuationSince53(image) != Advertised::kYes) return;
  remarks.push_back("the attenuation at 53.1 GHz is " + std::to_string(attenuation) +
                    " dB, which rows and reports do not show");
}

// Passive copper has no sensor; its bytes are zero.
void DropTemperaturesOfPassiveCopper(ModuleRecord& module) {
  if (!decode::IsPassiveCopperTechnology(module.cable_technology)) return;
  module.temperature = kNoTemperature;
  module.temp_high_threshold = kNoTemperature;
  module.temp_low_threshold = kNoTemperature;
}

}  // namespace

std::unique_ptr<PhyCableRecord> CableFromCmis(const ModuleImage& image, std::uint8_t form_factor,
                                              std::vector<std::string>& remarks) {
  Draft draft;
  draft.module = UnknownModuleRecord(form_factor);
  draft.module.cable_technology = kUnknownTechnology;
  SetFields<Draft>(image, Map(), draft);
  if (IsPaged(image) == Advertised::kNo) DropMonitors(draft);
  SetSpeeds(image, draft.module, remarks);
  MovePreCursor(image, draft.module);
  draft.module.smf_length = SmfLength(image, draft, remarks);
  MultiplyBias(draft, remarks);
  NarrowTechnology(draft.module);
  RemarkOnHigherLanes(draft.flags, remarks);
  RemarkOnAttenuation(image, remarks);
  DropTemperaturesOfPassiveCopper(draft.module);
  if (HasBiasPages(image) && !image.Has(Page::k01)) remarks.emplace_back(kMissingBiasMultiplier);

  auto record = std::make_unique<PhyCableRecord>();
  record->SetModule(std::make_unique<ModuleRecord>(draft.module));
  // Lane flags that nobody read would look clear; an alarm of the whole module must not be lost.
  const bool has_alarm =
      draft.flags.latched_temperature_flags != 0 || draft.flags.latched_voltage_flags != 0;
  if (image.Has(Page::k11) || has_alarm) {
    record->SetLatchedFlags(std::make_unique<LatchedFlagsPage>(draft.flags));
  }
  return record;
}

}  // namespace cable_info::module_memory
