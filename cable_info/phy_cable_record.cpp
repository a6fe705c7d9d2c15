#include "cable_info/phy_cable_record.h"

#include <utility>

#include "cable_info/phy_decode.h"
#include "cable_info/phy_output.h"

namespace cable_info {

using decode::Form;
using decode::FormOf;
using text::ToText;

// ---------------------------------------------------------------------------------------------
// Fields of the module
// ---------------------------------------------------------------------------------------------

PhyCableRecord::~PhyCableRecord() {
  delete module;
  delete latched_flags;
}

void PhyCableRecord::SetModule(std::unique_ptr<ModuleRecord> new_module) {
  delete std::exchange(module, new_module.release());
}

void PhyCableRecord::SetLatchedFlags(std::unique_ptr<LatchedFlagsPage> new_page) {
  delete std::exchange(latched_flags, new_page.release());
}

std::string PhyCableRecord::TypeToStr(bool csv) const {
  return ToText(phy::AppendType, *this, FormOf(csv));
}

std::string PhyCableRecord::CableIdentifierToStr(bool csv) const {
  return ToText(phy::AppendIdentifier, *this, FormOf(csv));
}

std::string PhyCableRecord::BitrateToStr(bool csv) const {
  return ToText(phy::AppendBitrate, *this, FormOf(csv));
}

std::string PhyCableRecord::CablePowerClassToStr(bool csv) const {
  return ToText(phy::AppendPowerClass, *this, FormOf(csv));
}

std::string PhyCableRecord::MaxPowerToStr(bool csv) const {
  return ToText(phy::AppendMaxPower, *this, FormOf(csv));
}

std::string PhyCableRecord::FWVersionToStr(bool csv) const {
  return ToText(phy::AppendFwVersion, *this, FormOf(csv));
}

std::string PhyCableRecord::DateCodeToStr(bool csv) const {
  return ToText(phy::AppendDateCode, *this, FormOf(csv));
}

std::string PhyCableRecord::LotToStr(bool csv) const {
  return ToText(phy::AppendLot, *this, FormOf(csv));
}

std::string PhyCableRecord::ComplanceCodeToStr(bool csv) const {
  return ToText(phy::AppendComplianceCode, *this, FormOf(csv));
}

std::string PhyCableRecord::TechnologyToStr(bool csv) const {
  return ToText(phy::AppendTechnology, *this, FormOf(csv));
}

std::string PhyCableRecord::SupportedSpeedToStr(bool csv) const {
  return ToText(phy::AppendSupportedSpeed, *this, FormOf(csv));
}

std::string PhyCableRecord::AttenuationToStr(bool csv) const {
  return ToText(phy::AppendAttenuation, *this, FormOf(csv));
}

std::string PhyCableRecord::CableLengthToStr(bool csv) const {
  return ToText(phy::AppendLength, *this, FormOf(csv));
}

std::string PhyCableRecord::CableLengthByRegToStr(bool csv) const {
  return ToText(phy::AppendLengthByReg, *this, FormOf(csv));
}

std::string PhyCableRecord::CableLengthByPrtlToStr(bool csv) const {
  return ToText(phy::AppendLengthByPrtl, *this, FormOf(csv));
}

std::string PhyCableRecord::InputEqToStr(bool csv) const {
  return ToText(phy::AppendLaneSetting, *this, &ModuleRecord::tx_input_eq, FormOf(csv));
}

std::string PhyCableRecord::OutputAmpToStr(bool csv) const {
  return ToText(phy::AppendLaneSetting, *this, &ModuleRecord::rx_output_amp, FormOf(csv));
}

std::string PhyCableRecord::OuputPreEmpToStr(bool csv) const {
  return ToText(phy::AppendLaneSetting, *this, &ModuleRecord::rx_output_pre_emp, FormOf(csv));
}

std::string PhyCableRecord::OuputPostEmpToStr(bool csv) const {
  return ToText(phy::AppendLaneSetting, *this, &ModuleRecord::rx_output_post_emp, FormOf(csv));
}

std::string PhyCableRecord::RevisionToStr() const { return ToText(phy::AppendRevision, *this); }

std::string PhyCableRecord::VendorToStr() const { return ToText(phy::AppendVendor, *this); }

std::string PhyCableRecord::VendorPnToStr() const { return ToText(phy::AppendPn, *this); }

std::string PhyCableRecord::VendorSnToStr() const { return ToText(phy::AppendSn, *this); }

std::string PhyCableRecord::VendorOUIToStr() const { return ToText(phy::AppendOui, *this); }

std::string PhyCableRecord::LengthSMFiberToStr() const {
  return ToText(phy::AppendLengthSmf, *this);
}

std::string PhyCableRecord::LengthOmxToStr(std::uint8_t om) const {
  return ToText(phy::AppendLengthOmx, *this, om);
}

std::string PhyCableRecord::CDREnableTxRXToStr() const {
  return ToText(phy::AppendCdrEnable, *this);
}

// ---------------------------------------------------------------------------------------------
// Identification
// ---------------------------------------------------------------------------------------------

std::string PhyCableRecord::DescToCsvDesc(const std::string& desc, bool empty_if_blank) const {
  return ToText(phy::AppendDescription, desc, empty_if_blank ? std::string_view() : kBareNa);
}

cable_id_t PhyCableRecord::GetIdObj() const {
  if (module == nullptr) return {};
  cable_id_t id;
  id.pn = DescToCsvDesc(std::string(ArrayText(module->vendor_pn)), true);
  id.identifier = module->ConvertCableIdentifierToStr();
  if (id.identifier == kBareNa) id.identifier.clear();
  id.vendor = _get_vendor_from_sn(DescToCsvDesc(std::string(ArrayText(module->vendor_sn)), true));
  id.revision = DescToCsvDesc(module->ConvertRevisionToStr(), true);
  return id;
}

std::string PhyCableRecord::GetUniqueKey() const {
  const std::string pn = VendorPnToStr();
  if (pn == kBareNa || module == nullptr) return {};
  const std::string revision = RevisionToStr();
  if (revision == kBareNa) return {};
  return pn + '_' + _to_ptr_string(module->cable_identifier) + '_' + revision;
}

std::string PhyCableRecord::GetPNVendor() const {
  return module == nullptr ? std::string() : std::string(ArrayText(module->vendor_pn));
}

fw_version_obj_t PhyCableRecord::GetFWObj() const {
  fw_version_obj_t version;
  if (module != nullptr) module->GetFWVersion(version.major, version.minor, version.sub_minor);
  return version;
}

std::uint8_t PhyCableRecord::GetCDRVendor() const {
  return module == nullptr ? std::uint8_t{0} : module->cdr_vendor;
}

bool PhyCableRecord::IsOpticCable() const {
  return module != nullptr && cable_info::IsOpticCable(module->SelectTransmitterTechnology());
}

// ---------------------------------------------------------------------------------------------
// Optical monitors
// ---------------------------------------------------------------------------------------------

double PhyCableRecord::mW_to_dBm(double mw) const { return phy::MilliwattsToDbm(mw); }

double PhyCableRecord::dBm_to_mW(double dbm) const { return phy::DbmToMilliwatts(dbm); }

std::string PhyCableRecord::PowerLineToStr(double raw, std::uint16_t unit_flag, bool csv) const {
  return ToText(phy::AppendPower, raw, unit_flag, FormOf(csv));
}

std::string PhyCableRecord::EmptyPowerLineToStr(bool csv) const {
  return std::string(phy::MissingPower(FormOf(csv)));
}

std::string PhyCableRecord::TXBiasToStr(bool csv, double raw) const {
  return ToText(phy::AppendBias, raw, FormOf(csv));
}

std::string PhyCableRecord::TX1PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 1, FormOf(csv));
}

std::string PhyCableRecord::TX2PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 2, FormOf(csv));
}

std::string PhyCableRecord::TX3PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 3, FormOf(csv));
}

std::string PhyCableRecord::TX4PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 4, FormOf(csv));
}

std::string PhyCableRecord::TX5PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 5, FormOf(csv));
}

std::string PhyCableRecord::TX6PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 6, FormOf(csv));
}

std::string PhyCableRecord::TX7PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 7, FormOf(csv));
}

std::string PhyCableRecord::TX8PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::tx_power, 8, FormOf(csv));
}

std::string PhyCableRecord::RX1PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 1, FormOf(csv));
}

std::string PhyCableRecord::RX2PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 2, FormOf(csv));
}

std::string PhyCableRecord::RX3PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 3, FormOf(csv));
}

std::string PhyCableRecord::RX4PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 4, FormOf(csv));
}

std::string PhyCableRecord::RX5PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 5, FormOf(csv));
}

std::string PhyCableRecord::RX6PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 6, FormOf(csv));
}

std::string PhyCableRecord::RX7PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 7, FormOf(csv));
}

std::string PhyCableRecord::RX8PowerToStr(bool csv) const {
  return ToText(phy::AppendLanePower, *this, &ModuleRecord::rx_power, 8, FormOf(csv));
}

std::string PhyCableRecord::TXBias1ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 1, FormOf(csv));
}

std::string PhyCableRecord::TXBias2ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 2, FormOf(csv));
}

std::string PhyCableRecord::TXBias3ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 3, FormOf(csv));
}

std::string PhyCableRecord::TXBias4ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 4, FormOf(csv));
}

std::string PhyCableRecord::TXBias5ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 5, FormOf(csv));
}

std::string PhyCableRecord::TXBias6ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 6, FormOf(csv));
}

std::string PhyCableRecord::TXBias7ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 7, FormOf(csv));
}

std::string PhyCableRecord::TXBias8ToStr(bool csv) const {
  return ToText(phy::AppendLaneBias, *this, 8, FormOf(csv));
}

std::string PhyCableRecord::RXPowerTypeToStr() const {
  return ToText(phy::AppendRxPowerType, *this);
}

// ---------------------------------------------------------------------------------------------
// Temperature and latched flags
// ---------------------------------------------------------------------------------------------

std::string PhyCableRecord::GetTemperatureStr() const {
  return ToText(phy::AppendTemperature, *this, &ModuleRecord::temperature, Form::kReport);
}

std::string PhyCableRecord::GetHighTemperatureThresholdStr() const {
  return ToText(phy::AppendTemperature, *this, &ModuleRecord::temp_high_threshold, Form::kReport);
}

std::string PhyCableRecord::GetLowTemperatureThresholdStr() const {
  return ToText(phy::AppendTemperature, *this, &ModuleRecord::temp_low_threshold, Form::kReport);
}

std::uint8_t PhyCableRecord::GetTemperatureErrorsByTreshold() const {
  if (module == nullptr) return 0;
  return TemperatureErrors(phy::module::TechnologyNibble(*module), module->temperature,
                           module->temp_high_threshold, module->temp_low_threshold);
}

std::uint8_t PhyCableRecord::GetTemperatureAlarms() const {
  return latched_flags == nullptr ? std::uint8_t{0} : latched_flags->latched_temperature_flags;
}

std::string PhyCableRecord::LatchedTxRxIndicatorToStr() const {
  return ToText(phy::AppendFlags<std::uint8_t>, *this, phy::flags::Loss);
}

std::string PhyCableRecord::LatchedTxRxLolIndicatorToStr() const {
  return ToText(phy::AppendFlags<std::uint8_t>, *this, phy::flags::LossOfLock);
}

std::string PhyCableRecord::LatchedAdaptiveEqualizationFaultToStr() const {
  return ToText(phy::AppendFlags<std::uint8_t>, *this, phy::flags::AdaptiveEqFault);
}

std::string PhyCableRecord::LatchedTempAlarmAndWarningToStr() const {
  return ToText(phy::AppendFlags<std::uint8_t>, *this, phy::flags::Temperature);
}

std::string PhyCableRecord::LatchedVoltageAlarmAndWarningToStr() const {
  return ToText(phy::AppendFlags<std::uint8_t>, *this, phy::flags::Voltage);
}

std::string PhyCableRecord::TXPowerAlarmAndWarningToStr() const {
  return ToText(phy::AppendFlags<std::uint16_t>, *this, phy::flags::TxPowerAlarms);
}

std::string PhyCableRecord::TXBiasAlarmAndWarningToStr() const {
  return ToText(phy::AppendFlags<std::uint16_t>, *this, phy::flags::TxBiasAlarms);
}

std::string PhyCableRecord::RXPowerAlarmAndWarningToStr() const {
  return ToText(phy::AppendFlags<std::uint16_t>, *this, phy::flags::RxPowerAlarms);
}

std::uint16_t PhyCableRecord::QuadroToInt(std::uint8_t a, std::uint8_t b, std::uint8_t c,
                                          std::uint8_t d) const {
  return phy::flags::Interleaved(a, b, c, d);
}

// ---------------------------------------------------------------------------------------------
// Outputs
// ---------------------------------------------------------------------------------------------

void PhyCableRecord::ToCSVStream(std::ostream& out) const { phy::WriteRow(out, *this); }

void PhyCableRecord::ToFileStream(std::ostream& out) const { phy::WriteReport(out, *this); }

}  // namespace cable_info
