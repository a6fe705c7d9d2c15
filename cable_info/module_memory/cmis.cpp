#include "cable_info/module_memory/cmis.h"

#include <algorithm>
#include <iterator>

#include "cable_info/module_memory/sff_codes.h"
#include "cable_info/value_format.h"

namespace cable_info::module_memory {

namespace {

using cable_info::PhyCableRecord;

constexpr std::uint8_t kUnknownTechnology = 0xF0;  // behind the end of the table, flags clear
constexpr std::uint8_t kFlatMemoryBit = 7;

// The record on its way, and the bytes that are a field only together with others.
struct Draft {
  ModuleRecord module;
  LatchedFlagsPage flags;
  unsigned bias_multiplier_code = 0;
  std::uint8_t smf_multiplier_code = 0;
  std::uint8_t smf_base = 0;
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
void ToLanes(Draft& draft, const FieldValue& value) {
  for (std::size_t i = 0; i < value.size() / 2; ++i) {
    LaneOf(draft.module.*kMember, i + 1) = value.Word(i);
  }
}

void ToAttenuation(Draft& draft, const FieldValue& value) {
  for (std::size_t i = 0; i < std::size(draft.module.attenuation); ++i) {
    draft.module.attenuation[i] = value[i];
  }
}

void ToFirmware(Draft& draft, const FieldValue& value) {
  draft.module.fw_version = value.Number() << 16;  // major and minor; there is no sub-minor
}

void ToPowerClass(Draft& draft, const FieldValue& value) {
  draft.module.power_class = static_cast<std::uint8_t>(value.Number() + 1);
}

void ToDate(Draft& draft, const FieldValue& value) { draft.module.SetDateCode(value.Text()); }

// Descriptors of four bytes, the host interface first; 0xFF ends their list.
void ToApplications(Draft& draft, const FieldValue& value) {
  constexpr std::uint8_t kEndOfList = 0xFF;
  constexpr std::size_t kDescriptor = 4;
  for (std::size_t i = 0; i < value.size() && value[i] != kEndOfList; i += kDescriptor) {
    draft.module.ib_compliance_code |= InfiniBandSpeedOfHostInterface(value[i]);
  }
}

constexpr Bits kAll = {};
constexpr bool kText = true;

constexpr MapField<Draft> kMap[] = {
    // The lower page
    {"Latched temperature flags",
     Page::kLower,
     9,
     1,
     {3, 0},
     ToFlags<&LatchedFlagsPage::latched_temperature_flags>},
    {"Latched supply voltage flags",
     Page::kLower,
     9,
     1,
     {7, 4},
     ToFlags<&LatchedFlagsPage::latched_voltage_flags>},
    {"Temperature", Page::kLower, 14, 2, kAll, ToModule<&ModuleRecord::temperature>},
    {"Supply voltage", Page::kLower, 16, 2, kAll, ToModule<&ModuleRecord::voltage>},
    {"Active firmware revision", Page::kLower, 39, 2, kAll, ToFirmware},
    {"Application descriptors", Page::kLower, 86, 32, kAll, ToApplications},

    // Page 00h
    {"Vendor name", Page::k00, 129, 16, kAll, ToText<&ModuleRecord::vendor_name>, kText},
    {"Vendor OUI", Page::k00, 145, 3, kAll, ToModule<&ModuleRecord::vendor_oui>},
    {"Vendor part number", Page::k00, 148, 16, kAll, ToText<&ModuleRecord::vendor_pn>, kText},
    {"Vendor revision", Page::k00, 164, 2, kAll, ToText<&ModuleRecord::vendor_rev>, kText},
    {"Vendor serial number", Page::k00, 166, 16, kAll, ToText<&ModuleRecord::vendor_sn>, kText},
    {"Date code", Page::k00, 182, 6, kAll, ToDate},
    {"Lot code", Page::k00, 188, 2, kAll, ToModule<&ModuleRecord::lot>},
    {"Module power class", Page::k00, 200, 1, {7, 5}, ToPowerClass},
    {"Maximum power", Page::k00, 201, 1, kAll, ToModule<&ModuleRecord::max_power>},
    {"Cable assembly length", Page::k00, 202, 1, kAll, ToModule<&ModuleRecord::cable_length>},
    {"Connector type", Page::k00, 203, 1, kAll, ToModule<&ModuleRecord::connector_type>},
    {"Copper cable attenuation", Page::k00, 204, 4, kAll, ToAttenuation},
    {"Media interface technology", Page::k00, 212, 1, kAll,
     ToModule<&ModuleRecord::cable_technology>},

    // Page 01h
    {"Length multiplier, SMF", Page::k01, 132, 1, {7, 6}, ToDraft<&Draft::smf_multiplier_code>},
    {"Base length, SMF", Page::k01, 132, 1, {5, 0}, ToDraft<&Draft::smf_base>},
    {"Length, OM5", Page::k01, 133, 1, kAll, ToModule<&ModuleRecord::length_om5>},
    {"Length, OM4", Page::k01, 134, 1, kAll, ToModule<&ModuleRecord::length_om4>},
    {"Length, OM3", Page::k01, 135, 1, kAll, ToModule<&ModuleRecord::length_om3>},
    {"Length, OM2", Page::k01, 136, 1, kAll, ToModule<&ModuleRecord::length_om2>},
    {"RX power measurement type",
     Page::k01,
     151,
     1,
     {4, 4},
     ToModule<&ModuleRecord::rx_power_type>},
    {"TX bias current scaling", Page::k01, 160, 1, {4, 3}, ToDraft<&Draft::bias_multiplier_code>},
    {"TX CDR supported", Page::k01, 161, 1, {0, 0}, ToModule<&ModuleRecord::tx_cdr_cap>},
    {"RX CDR supported", Page::k01, 162, 1, {0, 0}, ToModule<&ModuleRecord::rx_cdr_cap>},

    // Page 02h
    {"Temperature high alarm", Page::k02, 128, 2, kAll,
     ToModule<&ModuleRecord::temp_high_threshold>},
    {"Temperature low alarm", Page::k02, 130, 2, kAll, ToModule<&ModuleRecord::temp_low_threshold>},
    {"Supply voltage high alarm", Page::k02, 136, 2, kAll,
     ToModule<&ModuleRecord::voltage_high_threshold>},
    {"Supply voltage low alarm", Page::k02, 138, 2, kAll,
     ToModule<&ModuleRecord::voltage_low_threshold>},
    {"TX power high alarm", Page::k02, 176, 2, kAll,
     ToModule<&ModuleRecord::tx_power_high_threshold>},
    {"TX power low alarm", Page::k02, 178, 2, kAll,
     ToModule<&ModuleRecord::tx_power_low_threshold>},
    {"TX bias high alarm", Page::k02, 184, 2, kAll,
     ToModule<&ModuleRecord::tx_bias_high_threshold>},
    {"TX bias low alarm", Page::k02, 186, 2, kAll, ToModule<&ModuleRecord::tx_bias_low_threshold>},
    {"RX power high alarm", Page::k02, 192, 2, kAll,
     ToModule<&ModuleRecord::rx_power_high_threshold>},
    {"RX power low alarm", Page::k02, 194, 2, kAll,
     ToModule<&ModuleRecord::rx_power_low_threshold>},

    // Page 11h
    {"Latched TX loss of signal", Page::k11, 136, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_los>},
    {"Latched TX CDR loss of lock", Page::k11, 137, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_cdr_lol>},
    {"Latched TX adaptive input equalization failure", Page::k11, 138, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_adaptive_eq_fault>},
    {"Latched TX power high alarm", Page::k11, 139, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_power_high_alarm>},
    {"Latched TX power low alarm", Page::k11, 140, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_power_low_alarm>},
    {"Latched TX power high warning", Page::k11, 141, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_power_high_warning>},
    {"Latched TX power low warning", Page::k11, 142, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_power_low_warning>},
    {"Latched TX bias high alarm", Page::k11, 143, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_bias_high_alarm>},
    {"Latched TX bias low alarm", Page::k11, 144, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_bias_low_alarm>},
    {"Latched TX bias high warning", Page::k11, 145, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_bias_high_warning>},
    {"Latched TX bias low warning", Page::k11, 146, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_tx_bias_low_warning>},
    {"Latched RX loss of signal", Page::k11, 147, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_rx_los>},
    {"Latched RX CDR loss of lock", Page::k11, 148, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_rx_cdr_lol>},
    {"Latched RX power high alarm", Page::k11, 149, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_rx_power_high_alarm>},
    {"Latched RX power low alarm", Page::k11, 150, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_rx_power_low_alarm>},
    {"Latched RX power high warning", Page::k11, 151, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_rx_power_high_warning>},
    {"Latched RX power low warning", Page::k11, 152, 1, kAll,
     ToFlags<&LatchedFlagsPage::latched_rx_power_low_warning>},
    {"TX power", Page::k11, 154, 16, kAll, ToLanes<&ModuleRecord::tx_power>},
    {"TX bias", Page::k11, 170, 16, kAll, ToLanes<&ModuleRecord::tx_bias>},
    {"RX power", Page::k11, 186, 16, kAll, ToLanes<&ModuleRecord::rx_power>},
    {"TX input equalization, lane 1",
     Page::k11,
     217,
     1,
     {3, 0},
     ToModule<&ModuleRecord::tx_input_eq>},
    {"TX CDR enable", Page::k11, 221, 1, kAll, ToModule<&ModuleRecord::tx_cdr_state>},
    {"RX CDR enable", Page::k11, 222, 1, kAll, ToModule<&ModuleRecord::rx_cdr_state>},
    {"RX output equalization pre-cursor, lane 1",
     Page::k11,
     223,
     1,
     {3, 0},
     ToModule<&ModuleRecord::rx_output_pre_emp>},
    {"RX output equalization post-cursor, lane 1",
     Page::k11,
     227,
     1,
     {3, 0},
     ToModule<&ModuleRecord::rx_output_post_emp>},
    {"RX output amplitude, lane 1",
     Page::k11,
     231,
     1,
     {3, 0},
     ToModule<&ModuleRecord::rx_output_amp>},
};

// Page 01h's first two bytes, the inactive firmware's, may change while a module runs.
constexpr Checksum kChecksums[] = {
    {Page::k00, 128, 221, 222},
    {Page::k01, 130, 254, 255},
    {Page::k02, 128, 254, 255},
};

// The record's unit codes are kilometres and tenths of them, its value has eight bits; what does
// not fit stays unknown.
std::uint16_t SmfLength(const Draft& draft) {
  constexpr std::uint16_t kTenths = 1U << 8;
  constexpr unsigned kHighest = 0xFF;
  switch (draft.smf_multiplier_code) {
    case 0:
      return draft.smf_base == 0 ? std::uint16_t{0}
                                 : static_cast<std::uint16_t>(kTenths | draft.smf_base);
    case 1:
      return draft.smf_base;
    case 2:
      return draft.smf_base * 10U <= kHighest ? static_cast<std::uint16_t>(draft.smf_base * 10)
                                              : std::uint16_t{0};
    default:
      return 0;
  }
}

void MultiplyBias(Draft& draft) {
  constexpr std::uint32_t kMultipliers[] = {1, 2, 4, 1};  // the last is reserved
  const std::uint32_t multiplier = kMultipliers[draft.bias_multiplier_code & 3];
  ModuleRecord& module = draft.module;
  for (std::uint16_t& bias : module.tx_bias) bias = Saturated(bias * multiplier);
  module.tx_bias_high_threshold = Saturated(module.tx_bias_high_threshold * multiplier);
  module.tx_bias_low_threshold = Saturated(module.tx_bias_low_threshold * multiplier);
}

// Passive copper has no sensor; its bytes are zero.
void DropTemperaturesOfPassiveCopper(ModuleRecord& module) {
  const bool is_passive = module.cable_technology == cable_info::kUnequalizedCopper ||
                          module.cable_technology == cable_info::kPassiveEqualizedCopper;
  if (!is_passive) return;
  module.temperature = kNoTemperature;
  module.temp_high_threshold = kNoTemperature;
  module.temp_low_threshold = kNoTemperature;
}

Draft UnknownModule(std::uint8_t form_factor) {
  Draft draft;
  draft.module.cable_identifier = form_factor;
  StoreText(draft.module.vendor_name, "NA");
  draft.module.power_unit_flag = 1;  // powers are in units of 0.1 uW
  draft.module.cable_technology = kUnknownTechnology;
  draft.module.temperature = kNoTemperature;
  draft.module.temp_high_threshold = kNoTemperature;
  draft.module.temp_low_threshold = kNoTemperature;
  return draft;
}

}  // namespace

std::unique_ptr<PhyCableRecord> CableFromCmis(const ModuleImage& image, std::uint8_t form_factor,
                                              std::vector<std::string>& remarks) {
  Draft draft = UnknownModule(form_factor);
  SetFields(image, kMap, draft);
  draft.module.smf_length = SmfLength(draft);
  MultiplyBias(draft);
  DropTemperaturesOfPassiveCopper(draft.module);
  const bool shows_bias = image.Has(Page::k02) || image.Has(Page::k11);
  if (shows_bias && !image.Has(Page::k01)) {
    remarks.emplace_back(
        "page 01h with the multiplier of the bias currents is missing; it is "
        "taken as 1");
  }

  auto record = std::make_unique<PhyCableRecord>();
  record->module = std::make_unique<ModuleRecord>(draft.module).release();
  // Lane flags that nobody read would look clear; an alarm of the whole module must not be lost.
  const bool has_alarm =
      draft.flags.latched_temperature_flags != 0 || draft.flags.latched_voltage_flags != 0;
  if (image.Has(Page::k11) || has_alarm) {
    record->latched_flags = std::make_unique<LatchedFlagsPage>(draft.flags).release();
  }
  return record;
}

ChecksumList CmisChecksums() { return ChecksumList(kChecksums); }

bool IsFlatCmis(const ModuleImage& image) {
  return (image.At(Page::kLower, 2).value_or(0) >> kFlatMemoryBit & 1) != 0;
}

}  // namespace cable_info::module_memory
