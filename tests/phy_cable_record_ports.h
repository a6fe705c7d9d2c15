#pragma once

// Ports with PHY registers only. Each has a property that those of realistic_ports.h lack: a
// measured length in addition to that of the module, no page of latched flags, no light at all,
// names that fill their arrays, all bits set.

#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

#include "cable_info/phy_cable_record.h"
#include "realistic_ports.h"

namespace cable_info::test::ports {

// An active copper cable of 7 m between two QSFP-DD cages, measured over its whole length.
inline std::unique_ptr<PhyCableRecord> ActiveQsfpDd() {
  auto r = Module();
  r->prtl_length = "6.9 m";
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  ModuleRecord& m = *r->module;
  m.compliance_code = 0x32;
  m.cable_technology = 0x0C;
  m.power_class = 2;
  m.cable_identifier = 6;
  m.cable_length = 0x47;
  m.tx_input_eq = 0x11;
  m.rx_output_pre_emp = 4;
  m.rx_output_amp = 0x22;
  m.max_power = 7;
  m.tx_cdr_state = 0xFF;
  m.rx_cdr_state = 0x7F;
  m.rx_output_post_emp = 0x1F;
  SetText(m.vendor_name, "Copperworks, Inc");
  SetText(m.vendor_pn, " CW-400,7M\t");
  SetText(m.vendor_rev, "0,3");
  SetText(m.vendor_sn, "KS2440CW0815");
  m.fw_version = 0x02030011;
  m.voltage = 33045;
  m.temperature = Degrees(44) | 0x80;
  m.rx_power_type = 0;
  m.ib_compliance_code = 0x60;
  m.extended_bitrate = 212;
  m.lot = 7;
  m.SetDateCode("241031");
  m.vendor_oui = 0xA0B0C0;
  m.connector_type = 0x23;
  m.cdr_vendor = 11;
  return r;
}

// A 10 km transceiver whose page of flags was not read.
inline std::unique_ptr<PhyCableRecord> SingleModeQsfp28() {
  auto r = Module();
  ModuleRecord& m = *r->module;
  m.compliance_code = 3;
  m.cable_technology = 0x6D;
  m.tx_cdr_state = 0x0E;
  m.rx_cdr_cap = 0;
  SetText(m.vendor_pn, "AO-100-LR4");
  SetText(m.vendor_rev, std::string_view("\0A\0B", 4));
  SetText(m.vendor_sn, "AO2403L0008");
  m.temperature = Degrees(-7) | 0xFF;
  m.temp_high_threshold = Degrees(126);  // outside the valid range
  SetArray<std::uint16_t>(m.rx_power, {10870, 11040, 10950, 11320});
  SetArray<std::uint16_t>(m.tx_power, {13960, 14120, 14010, 14330});
  SetArray<std::uint16_t>(m.tx_bias, {18951, 19107, 19036, 19275});
  m.smf_length = 10;
  m.ib_compliance_code = 0x1F;
  m.extended_bitrate = 103;
  m.connector_type = 7;
  m.max_fiber_length = 10000;
  return r;
}

// No light in any lane, and alarms of all kinds.
inline std::unique_ptr<PhyCableRecord> DarkOsfp() {
  auto r = Module();
  r->source = "";
  ModuleRecord& m = *r->module;
  m.cable_identifier = 8;
  m.cable_technology = 0x10;  // not in the table of technologies
  m.cable_length = 0xC0;      // a multiplier without a base
  m.max_power = 0;
  m.tx_cdr_cap = m.rx_cdr_cap = 0;
  SetText(m.vendor_name, "");
  SetText(m.vendor_pn, "   ");
  SetText(m.vendor_rev, "");
  SetText(m.vendor_sn, "");
  m.voltage = 28999;
  m.temperature = Degrees(126);
  m.ib_compliance_code = 0x80;
  m.extended_bitrate = 3;
  m.SetDateCode("2404");
  m.vendor_oui = 0;
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  LatchedFlagsPage& p = *r->latched_flags;
  p.latched_voltage_flags = 0x0A;
  p.latched_temperature_flags = 0x05;
  p.latched_tx_adaptive_eq_fault = 0x09;
  p.latched_tx_cdr_lol = 0x0E;
  p.latched_tx_los = 0x0B;
  p.latched_rx_cdr_lol = 0x07;
  p.latched_rx_los = 0xF0;  // lanes 5..8, which are not shown
  p.latched_rx_power_low_alarm = p.latched_rx_power_low_warning = 0x0F;
  p.latched_tx_bias_low_alarm = 0x06;
  p.latched_tx_bias_high_warning = 0x10;
  p.latched_tx_power_low_alarm = 0x0C;
  p.latched_tx_power_high_alarm = 0x01;
  p.latched_tx_power_low_warning = 0x08;
  return r;
}

// All bits set, except in the texts, which fill their arrays.
inline std::unique_ptr<PhyCableRecord> AllBitsSet() {
  auto r = std::make_unique<PhyCableRecord>();
  r->source = "ones";
  r->SetModule(std::make_unique<ModuleRecord>());
  r->SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  std::memset(static_cast<void*>(r->module), 0xFF, sizeof(ModuleRecord));
  std::memset(static_cast<void*>(r->latched_flags), 0xFF, sizeof(LatchedFlagsPage));
  ModuleRecord& m = *r->module;
  std::memcpy(m.vendor_name, "ABCDEFGHIJKLMNOPQ", sizeof(m.vendor_name));
  std::memcpy(m.vendor_pn, "abcdefghijklmnopq", sizeof(m.vendor_pn));
  std::memcpy(m.vendor_rev, "VWXYZ", sizeof(m.vendor_rev));
  std::memcpy(m.vendor_sn, "0123456789012345\"", sizeof(m.vendor_sn));
  return r;
}

}  // namespace cable_info::test::ports
