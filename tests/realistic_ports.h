#pragma once

// Typical ports of a fabric. The expected row and report of each are in expected/NAME.csv and
// expected/NAME.txt.

#include <algorithm>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/combined_cable_info.h"
#include "cable_info/prtl_record.h"

namespace cable_info::test {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;

// A temperature word of whole degrees.
constexpr std::uint16_t Degrees(int degrees) {
  return static_cast<std::uint16_t>(static_cast<std::uint8_t>(degrees) << 8);
}

template <typename T, std::size_t N>
void SetArray(T (&array)[N], std::initializer_list<T> values) {
  std::copy(values.begin(), values.end(), array);
}

template <std::size_t N>
void SetText(char (&array)[N], std::string_view text) {
  std::fill(std::copy(text.begin(), text.end(), array), array + N, '\0');
}

inline void SetThresholds(CableRecord& r) {
  r.TempHighAlarmThresh = Degrees(75);
  r.TempHighWarnThresh = Degrees(70);
  r.TempLowAlarmThresh = Degrees(-5);
  r.TempLowWarnThresh = Degrees(0);
  r.VoltHighAlarmThresh = 36300;
  r.VoltHighWarnThresh = 34650;
  r.VoltLowAlarmThresh = 29700;
  r.VoltLowWarnThresh = 31350;
}

// A 2 m cable of the home vendor.
inline std::unique_ptr<CableRecord> PassiveCopper() {
  auto r = std::make_unique<CableRecord>();
  r->Identifier = 0x11;
  r->Connector = 0x23;
  r->SupportedSpeedMask = 0x1F;
  r->TransmitterTechnologyCode = 10;
  r->LengthCopperOrActive = 2;
  r->NominalBitrate = 25;
  r->PowerClass = 1;
  SetArray<std::uint8_t>(r->Attenuation, {3, 5, 6, 9});
  r->ExtSpecCompliance = 0x0B;
  r->TransmitterTechnologyRaw = 0xA0;
  r->VendorName = "Kestrel";
  r->Oui = "0x5a1";
  r->PartNumber = "KC1-E002";
  r->SerialNumber = "KS2408VS01234";
  r->Revision = "A2";
  r->LengthText = "2 m";
  r->DateCodeText = "24021501";
  r->Lot = 0x3031;
  return r;
}

// A 100G multi-mode transceiver.
inline std::unique_ptr<CableRecord> MultiModeOptic() {
  auto r = std::make_unique<CableRecord>();
  r->Identifier = 0x11;
  r->Connector = 0x0C;
  r->SupportedSpeedMask = 0x1F;
  r->LengthOm3 = 35;
  r->LengthCopperOrActive = 50;
  r->Temperature = Degrees(41) | 0x80;
  r->NominalBitrate = 25;
  r->PowerClass = 4;
  r->CdrControl = 0xFF;
  r->CdrPresence = 3;
  r->ExtSpecCompliance = 2;
  r->InputEq = 0x3333;
  r->OutputAmp = 0x2222;
  r->OutputEmp = 0x1111;
  r->SupplyVoltage = 32950;
  r->Lot = 0x4142;
  SetArray(r->RxPower, {0.871F, 0.902F, 0.856F, 0.893F});
  SetArray(r->TxBias, {7.024F, 7.118F, 6.986F, 7.052F});
  SetArray(r->TxPower, {0.912F, 0.934F, 0.897F, 0.921F});
  r->RxPowerIsAverage = true;
  r->VendorName = "Acme Optics";
  r->Oui = "0x1b21";
  r->PartNumber = "AO-100-SR4";
  r->SerialNumber = "AO2415X0042";
  r->Revision = "A1";
  r->LengthText = "70 m";
  r->DateCodeText = "24040901";
  SetThresholds(*r);
  return r;
}

// A multi-mode transceiver as read from the PHY, all lanes dark.
inline std::unique_ptr<PhyCableRecord> Module() {
  auto r = std::make_unique<PhyCableRecord>();
  r->source = "PHY";
  r->SetModule(std::make_unique<ModuleRecord>());
  ModuleRecord& m = *r->module;
  m.power_unit_flag = 1;
  m.power_class = 4;
  m.tx_input_eq = 3;
  m.rx_output_pre_emp = 1;
  m.rx_output_amp = 2;
  m.max_power = 14;
  m.tx_cdr_state = m.rx_cdr_state = 0x0F;
  m.tx_cdr_cap = m.rx_cdr_cap = 1;
  SetText(m.vendor_name, "Acme Optics");
  SetText(m.vendor_pn, "AO-100-SR4");
  SetText(m.vendor_rev, "A1");
  SetText(m.vendor_sn, "AO2415X0043");
  m.voltage = 32870;
  m.temperature = Degrees(43) | 0x40;
  m.temp_low_threshold = Degrees(-5);
  m.temp_high_threshold = Degrees(75);
  m.voltage_low_threshold = 29700;
  m.voltage_high_threshold = 36300;
  m.rx_power_low_threshold = 500;
  m.rx_power_high_threshold = 34674;
  m.tx_power_low_threshold = 1000;
  m.tx_power_high_threshold = 34674;
  m.tx_bias_low_threshold = 1500;
  m.tx_bias_high_threshold = 6000;
  m.rx_power_type = 1;
  m.ib_compliance_code = 0x20;
  m.nominal_bitrate = 255;
  m.extended_bitrate = 106;
  m.lot = 0x4142;
  m.SetDateCode("240409");
  m.vendor_oui = 0x1B21;
  m.connector_type = 0x0C;
  m.cdr_vendor = 2;
  return r;
}

// A single-mode transceiver of eight lanes.
inline std::unique_ptr<PhyCableRecord> Osfp() {
  auto r = Module();
  ModuleRecord& m = *r->module;
  m.cable_identifier = 8;
  m.cable_technology = 6;
  m.compliance_code = 0x1C;
  m.power_class = 8;
  m.max_power = 60;
  SetText(m.vendor_name, " Acme Optics ");
  SetText(m.vendor_pn, "AO-800-2xDR4");
  SetText(m.vendor_rev, "B2");
  m.fw_version = 0x1A0B0123;
  SetText(m.vendor_sn, "AO2440D0815");
  // In memory order: lanes 2, 1, 4, 3, 6, 5, 8, 7.
  SetArray<std::uint16_t>(m.rx_power, {11034, 11021, 11029, 11000, 11038, 11016, 11024, 11010});
  SetArray<std::uint16_t>(m.tx_power, {14025, 14012, 14020, 13991, 14029, 14007, 14015, 14001});
  SetArray<std::uint16_t>(m.tx_bias, {42023, 42010, 42018, 41989, 42027, 42005, 42013, 41999});
  m.smf_length = 0x0105;
  m.ib_compliance_code = 0x60;
  m.extended_bitrate = 212;
  m.connector_type = 0x28;
  m.max_fiber_length = 500;
  m.temperature = Degrees(52);
  m.tx_cdr_state = m.rx_cdr_state = 0xFF;
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  return r;
}

struct RealisticPort {
  std::string name;
  std::function<void(CombinedCableInfo&)> fill;

  friend void PrintTo(const RealisticPort& port, std::ostream* os) { *os << port.name; }
};

namespace ports {

inline void PassiveCopperCable(CombinedCableInfo& port) { port.AttachCableRecord(PassiveCopper()); }

inline void HomeMultiMode(CombinedCableInfo& port) {
  auto r = MultiModeOptic();
  r->VendorName = "Kestrel";
  r->Oui = "0x5a1";
  r->VendorModuleKind = 14;
  r->PartNumber = "KM1-SR4";
  r->SerialNumber = "KS2416FT00871";
  r->Revision = "A5";
  r->FwVersionText = "26.11.291";
  port.AttachCableRecord(std::move(r));
  PrtlRecord local;
  local.latency_res = 1;
  local.round_trip_latency = 600;
  local.local_mod_dp_latency = 20;
  local.local_phy_latency = 30;
  port.SetPrtlLength(local.CalculateLength(local));
}

inline void SingleMode(CombinedCableInfo& port) {
  auto r = MultiModeOptic();
  r->TransmitterTechnologyCode = 4;
  r->TransmitterTechnologyRaw = 0x4C;
  r->LengthSmf = 10;
  r->LengthOm3 = r->LengthCopperOrActive = 0;
  r->ExtSpecCompliance = 3;
  r->PartNumber = "AO-100-LR4";
  r->SerialNumber = "AO2403L0007";
  r->LengthText = "10 km";
  SetArray(r->RxPower, {1.104F, 1.087F, 1.132F, 1.095F});
  SetArray(r->TxBias, {38.214F, 37.902F, 38.55F, 38.071F});
  SetArray(r->TxPower, {1.412F, 1.396F, 1.433F, 1.401F});
  r->Temperature = Degrees(48);
  port.AttachCableRecord(std::move(r));
}

inline void ActiveCopperCable(CombinedCableInfo& port) {
  auto r = PassiveCopper();
  r->TransmitterTechnologyCode = 12;
  r->TransmitterTechnologyRaw = 0xC0;
  r->VendorName = "Copperworks";
  r->Oui = "0x2c99";
  r->PartNumber = "CW-ACC-5M";
  r->SerialNumber = "CW24020311";
  r->LengthText = "5 m";
  r->LengthCopperOrActive = 5;
  r->Temperature = Degrees(36);
  r->SupplyVoltage = 33010;
  r->CdrControl = 0x0F;
  r->CdrPresence = 1;
  r->InputEq = 0x5678;
  SetThresholds(*r);
  port.AttachCableRecord(std::move(r));
}

// A transceiver without light, with texts so long that the block of the report is cut.
inline void DarkModule(CombinedCableInfo& port) {
  auto r = MultiModeOptic();
  SetArray(r->RxPower, {0.0F, 0.0F, 0.0F, 0.0F});
  SetArray(r->TxBias, {0.0F, 0.0F, 0.0F, 0.0F});
  SetArray(r->TxPower, {0.0F, 0.0F, 0.0F, 0.0F});
  r->LatchedCdrLos = r->LatchedCdrLol = 0xFF;
  r->RxPowerAlarms = r->TxPowerAlarms = 0x5555;
  r->TxBiasAlarms = 0x4444;
  r->VendorName = "Acme Optics International";
  r->PartNumber = "AO-100-SR4-EXTENDED-TEMPERATURE";
  r->SerialNumber = "AO2415X0099-REWORKED-2024";
  r->Revision = "A1-LONG-REVISION-TEXT";
  r->LengthText = "70 m on OM3 or 100 m on OM4 fibre";
  port.AttachCableRecord(std::move(r));
}

inline void HotModule(CombinedCableInfo& port) {
  auto r = MultiModeOptic();
  r->Temperature = Degrees(83);
  r->LatchedTemperatureAlarms = 0xA1;
  r->LatchedVoltageAlarms = 0x50;
  r->SupplyVoltage = 29100;
  r->RxOutputDisableTxAdaptiveEq = 0x3C;
  r->TxAdaptiveEqFreeze = 9;
  r->LatchedAdaptiveEqFault = 0x90;
  r->RxPowerAlarms = 0x8001;
  r->TxBiasAlarms = 0x2010;
  port.AttachCableRecord(std::move(r));
}

inline void QueryFailed(CombinedCableInfo& port) {
  auto r = std::make_unique<CableRecord>();
  r->QueryStatus = 4;
  r->Oui = "0x0";
  r->VendorName = r->PartNumber = r->SerialNumber = r->Revision = "NA";
  r->LengthText = r->FwVersionText = "NA";
  r->DateCodeText = "N/A";
  port.AttachCableRecord(std::move(r));
}

inline void OsfpOptic(CombinedCableInfo& port) {
  auto r = Osfp();
  LatchedFlagsPage& p = *r->latched_flags;
  p.latched_rx_los = p.latched_rx_power_low_alarm = p.latched_rx_power_low_warning = 2;
  port.AttachPhyCableRecord(std::move(r));
}

inline void Sfp(CombinedCableInfo& port) {
  auto r = Module();
  ModuleRecord& m = *r->module;
  m.cable_identifier = 2;
  m.power_class = 1;
  m.max_power = 4;
  SetText(m.vendor_pn, "AO-25-SR");
  SetText(m.vendor_sn, "AO2351S1001");
  SetText(m.vendor_rev, "1.0");
  m.length_om3 = 7;
  m.length_om4 = 10;
  m.length_om2 = 2;
  m.length_om1 = 1;
  m.rx_power[1] = 6120;  // lane 1
  m.tx_power[1] = 7004;
  m.tx_bias[1] = 3488;
  m.nominal_bitrate = 103;
  m.extended_bitrate = 0;
  m.connector_type = 7;
  m.tx_cdr_cap = m.rx_cdr_cap = 0;
  m.ib_compliance_code = 0;
  m.cdr_vendor = 0;
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  LatchedFlagsPage& p = *r->latched_flags;
  p.latched_tx_los = p.latched_rx_los = 1;
  p.latched_rx_power_low_warning = p.latched_rx_power_low_alarm = 1;
  port.AttachPhyCableRecord(std::move(r));
}

inline void PassiveQsfp28(CombinedCableInfo& port) {
  auto r = Module();
  ModuleRecord& m = *r->module;
  m.power_unit_flag = 0;
  m.cable_technology = 0xA0;
  m.cable_length = 3;
  SetText(m.vendor_name, "Copperworks");
  SetText(m.vendor_pn, "CW-200-3M");
  SetText(m.vendor_rev, std::string_view("C\0"
                                         "1",
                                         3));
  SetText(m.vendor_sn, "CW24050042");
  m.fw_version = 0x01020304;
  SetArray<std::uint8_t>(m.attenuation, {5, 7, 12, 16});
  m.max_power = 0;
  m.connector_type = 0x23;
  m.vendor_oui = 0x2C99;
  m.temperature = m.voltage = 0;
  m.SetDateCode("240517");
  port.AttachPhyCableRecord(std::move(r));
}

inline void ModuleInDbm(CombinedCableInfo& port) {
  auto r = Module();
  ModuleRecord& m = *r->module;
  m.power_unit_flag = 0;
  SetArray<std::uint16_t>(m.rx_power, {2, 1, 3, 0});
  SetArray<std::uint16_t>(m.tx_power, {2, 2, 1, 1});
  SetArray<std::uint16_t>(m.tx_bias, {3513, 3500, 3508, 3479});
  SetText(m.vendor_rev, "");
  m.rx_power_type = 0;
  m.SetDateCode("24 409");
  SetText(m.vendor_sn, "AO2299M0001");
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  port.AttachPhyCableRecord(std::move(r));
}

inline void NoModule(CombinedCableInfo& port) {
  auto r = std::make_unique<PhyCableRecord>();
  r->source = "PHY";
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  r->latched_flags->latched_temperature_flags = 1;
  port.AttachPhyCableRecord(std::move(r));
}

inline void NoModuleNoPage(CombinedCableInfo& port) {
  auto r = std::make_unique<PhyCableRecord>();
  r->source = "PHY";
  port.AttachPhyCableRecord(std::move(r));
  port.SetPrtlLength("12 m");
}

inline void BothRecords(CombinedCableInfo& port) {
  auto cable = MultiModeOptic();
  cable->SerialNumber = "AO2415X0050";
  port.AttachCableRecord(std::move(cable));
  auto phy = Module();
  phy->module->cdr_vendor = 7;
  port.AttachPhyCableRecord(std::move(phy));
  port.SetPrtlLength(9.5F);
}

}  // namespace ports

inline std::vector<RealisticPort> RealisticPorts() {
  return {
      {"passive_copper", ports::PassiveCopperCable},
      {"home_multi_mode", ports::HomeMultiMode},
      {"single_mode", ports::SingleMode},
      {"active_copper_cable", ports::ActiveCopperCable},
      {"dark_module", ports::DarkModule},
      {"hot_module", ports::HotModule},
      {"query_failed", ports::QueryFailed},
      {"osfp_dr4", ports::OsfpOptic},
      {"sfp28_sr", ports::Sfp},
      {"passive_qsfp28", ports::PassiveQsfp28},
      {"dbm_module", ports::ModuleInDbm},
      {"no_module", ports::NoModule},
      {"no_module_no_page", ports::NoModuleNoPage},
      {"both_records", ports::BothRecords},
  };
}

}  // namespace cable_info::test
