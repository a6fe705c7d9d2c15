#include "cable_info/phy_registers.h"

#include <type_traits>

#include "cable_info/phy_decode.h"

namespace cable_info {

using decode::FormOf;
using phy::module::CdrShown;
using phy::module::Direction;
using text::ToText;

namespace {

// The registers' layout, which hosts that copy a register into a record depend on.
static_assert(std::is_standard_layout_v<ModuleRecord>);
static_assert(std::is_trivially_copyable_v<ModuleRecord>);
static_assert(offsetof(ModuleRecord, power_unit_flag) == 0);
static_assert(offsetof(ModuleRecord, compliance_code) == 3);
static_assert(offsetof(ModuleRecord, cable_technology) == 5);
static_assert(offsetof(ModuleRecord, power_class) == 6);
static_assert(offsetof(ModuleRecord, cable_identifier) == 7);
static_assert(offsetof(ModuleRecord, cable_length) == 8);
static_assert(offsetof(ModuleRecord, tx_input_eq) == 11);
static_assert(offsetof(ModuleRecord, rx_output_pre_emp) == 12);
static_assert(offsetof(ModuleRecord, rx_output_amp) == 13);
static_assert(offsetof(ModuleRecord, max_power) == 14);
static_assert(offsetof(ModuleRecord, attenuation) == 15);
static_assert(offsetof(ModuleRecord, tx_cdr_state) == 19);
static_assert(offsetof(ModuleRecord, rx_cdr_state) == 20);
static_assert(offsetof(ModuleRecord, tx_cdr_cap) == 21);
static_assert(offsetof(ModuleRecord, rx_cdr_cap) == 22);
static_assert(offsetof(ModuleRecord, rx_output_post_emp) == 23);
static_assert(offsetof(ModuleRecord, vendor_name) == 24);
static_assert(offsetof(ModuleRecord, vendor_pn) == 41);
static_assert(offsetof(ModuleRecord, vendor_rev) == 58);
static_assert(offsetof(ModuleRecord, fw_version) == 64);
static_assert(offsetof(ModuleRecord, vendor_sn) == 68);
static_assert(offsetof(ModuleRecord, voltage) == 86);
static_assert(offsetof(ModuleRecord, temperature) == 88);
static_assert(offsetof(ModuleRecord, rx_power) == 90);
static_assert(offsetof(ModuleRecord, tx_power) == 106);
static_assert(offsetof(ModuleRecord, tx_bias) == 122);
static_assert(offsetof(ModuleRecord, temp_low_threshold) == 138);
static_assert(offsetof(ModuleRecord, temp_high_threshold) == 140);
static_assert(offsetof(ModuleRecord, voltage_low_threshold) == 142);
static_assert(offsetof(ModuleRecord, voltage_high_threshold) == 144);
static_assert(offsetof(ModuleRecord, rx_power_low_threshold) == 146);
static_assert(offsetof(ModuleRecord, rx_power_high_threshold) == 148);
static_assert(offsetof(ModuleRecord, tx_power_low_threshold) == 150);
static_assert(offsetof(ModuleRecord, tx_power_high_threshold) == 152);
static_assert(offsetof(ModuleRecord, tx_bias_low_threshold) == 154);
static_assert(offsetof(ModuleRecord, tx_bias_high_threshold) == 156);
static_assert(offsetof(ModuleRecord, smf_length) == 160);
static_assert(offsetof(ModuleRecord, rx_power_type) == 163);
static_assert(offsetof(ModuleRecord, ib_compliance_code) == 165);
static_assert(offsetof(ModuleRecord, nominal_bitrate) == 170);
static_assert(offsetof(ModuleRecord, extended_bitrate) == 171);
static_assert(offsetof(ModuleRecord, length_om5) == 180);
static_assert(offsetof(ModuleRecord, length_om4) == 181);
static_assert(offsetof(ModuleRecord, length_om3) == 182);
static_assert(offsetof(ModuleRecord, length_om2) == 183);
static_assert(offsetof(ModuleRecord, length_om1) == 188);
static_assert(offsetof(ModuleRecord, lot) == 200);
static_assert(offsetof(ModuleRecord, date_code) == 202);
static_assert(offsetof(ModuleRecord, vendor_oui) == 208);
static_assert(offsetof(ModuleRecord, connector_type) == 212);
static_assert(offsetof(ModuleRecord, cdr_vendor) == 217);
static_assert(offsetof(ModuleRecord, max_fiber_length) == 218);
static_assert(sizeof(ModuleRecord) == 220);

static_assert(std::is_standard_layout_v<LatchedFlagsPage>);
static_assert(std::is_trivially_copyable_v<LatchedFlagsPage>);
static_assert(offsetof(LatchedFlagsPage, latched_voltage_flags) == 2);
static_assert(offsetof(LatchedFlagsPage, latched_temperature_flags) == 3);
static_assert(offsetof(LatchedFlagsPage, latched_tx_adaptive_eq_fault) == 4);
static_assert(offsetof(LatchedFlagsPage, latched_tx_cdr_lol) == 5);
static_assert(offsetof(LatchedFlagsPage, latched_tx_los) == 6);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_low_warning) == 8);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_high_warning) == 9);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_low_alarm) == 10);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_high_alarm) == 11);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_low_warning) == 12);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_high_warning) == 13);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_low_alarm) == 14);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_high_alarm) == 15);
static_assert(offsetof(LatchedFlagsPage, latched_rx_cdr_lol) == 16);
static_assert(offsetof(LatchedFlagsPage, latched_rx_los) == 17);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_low_warning) == 18);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_high_warning) == 19);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_low_alarm) == 20);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_high_alarm) == 21);
static_assert(sizeof(LatchedFlagsPage) == 22);

}  // namespace

void ModuleRecord::SetDateCode(std::string_view yymmdd) {
  constexpr std::size_t kCharacters = sizeof(date_code);
  for (std::size_t i = 0; i < kCharacters; ++i) {
    date_code[kCharacters - 1 - i] = i < yymmdd.size() ? yymmdd[i] : '\0';
  }
}

bool ModuleRecord::IsCMISCable() const { return phy::module::HasCmis(*this); }

std::uint8_t ModuleRecord::SelectTransmitterTechnology() const {
  return IsCMISCable() ? cable_technology : phy::module::TechnologyNibble(*this);
}

std::uint8_t ModuleRecord::SelectNominalBR() const {
  return nominal_bitrate == kSeeExtendedBitrate ? extended_bitrate / 4 : nominal_bitrate / 10;
}

bool ModuleRecord::IsPassiveCable() const {
  return phy::module::TechnologyNibble(*this) == kUnequalizedCopper;
}

bool ModuleRecord::IsActiveCable() const {
  return !IsPassiveCable() && connector_type == kNoSeparableConnector;
}

bool ModuleRecord::IsModule() const {
  return !IsPassiveCable() && connector_type != kNoSeparableConnector;
}

bool ModuleRecord::GetFWVersion(std::uint8_t& major, std::uint8_t& minor,
                                std::uint16_t& subminor) const {
  const bool is_known = fw_version != 0 && !IsPassiveCable();
  const fw_version_obj_t version = FWVersionFromWord(is_known ? fw_version : 0);
  major = version.major;
  minor = version.minor;
  subminor = version.sub_minor;
  return is_known;
}

std::string ModuleRecord::ConvertCableIdentifierToStr() const {
  return std::string(phy::module::FormFactorName(*this));
}

std::string ModuleRecord::ConvertCableLengthToStr(bool csv, const std::string& na) const {
  return ToText(phy::module::AppendLength, *this, FormOf(csv), na);
}

std::string ModuleRecord::ConvertCableLengthSMFiberToStr() const {
  return ToText(phy::module::AppendLengthSmf, *this);
}

std::string ModuleRecord::ConvertCableLengthOMXToStr(std::uint8_t om) const {
  return ToText(phy::module::AppendLengthOmx, *this, om);
}

std::string ModuleRecord::ConvertTransmitterTechnologyToStr(const std::string& na) const {
  return ToText(phy::module::AppendTechnology, *this, na);
}

std::string ModuleRecord::ConvertRevisionToStr() const {
  return ToText(phy::module::AppendRevision, *this);
}

std::string ModuleRecord::ConvertFWVersionToStr(const std::string& na) const {
  return ToText(phy::module::AppendFwVersion, *this, na);
}

std::string ModuleRecord::ConvertDateCodeToStr(const std::string& na) const {
  return ToText(phy::module::AppendDateCode, *this, na);
}

std::string ModuleRecord::ConvertCDREnableTxRxToStr(bool rx, const std::string& na,
                                                    bool always) const {
  return ToText(phy::module::AppendCdrEnable, *this, rx ? Direction::kRx : Direction::kTx,
                always ? CdrShown::kAlways : CdrShown::kWhenPresent, na);
}

std::string ModuleRecord::ConvertAttenuationToStr(bool csv) const {
  return ToText(phy::module::AppendAttenuation, *this, FormOf(csv));
}

std::string ModuleRecord::ConvertTxEQRxAMPRxEMPToStr(std::uint8_t value, bool hex,
                                                     const std::string& na) const {
  return ToText(phy::module::AppendLaneSetting, *this, value, FormOf(hex), na);
}

std::string ModuleRecord::ConvertTemperatureToStr(std::uint16_t raw, bool csv) const {
  return ToText(phy::module::AppendTemperature, *this, raw, FormOf(csv));
}

std::string ModuleRecord::ConvertVoltageToStr(std::uint16_t raw, bool csv) const {
  return ToText(phy::module::AppendVoltage, raw, FormOf(csv));
}

std::string ModuleRecord::ConvertMaxPowerToStr(const std::string& na) const {
  return ToText(phy::module::AppendMaxPower, *this, na);
}

std::string ModuleRecord::ConvertIBComplianceCodeToStr(const std::string& na) const {
  return ToText(phy::module::AppendSupportedSpeed, *this, na);
}

}  // namespace cable_info
