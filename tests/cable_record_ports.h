#pragma once

// Records of cable pages as a host fills them, one for each kind of port in a fabric.

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <type_traits>

#include "cable_info/cable_record.h"

namespace cable_info::test::cable_record_ports {

template <typename T, std::size_t N>
void Set(T (&array)[N], std::initializer_list<std::type_identity_t<T>> values) {
  std::copy(values.begin(), values.end(), array);
}

// A 1.5 m copper cable of the home vendor. Its firmware, lane settings and temperature are
// meaningless.
inline CableRecord HomeCopper() {
  CableRecord r;
  r.Identifier = 0x1E;
  r.Connector = 0x23;
  r.SupportedSpeedMask = 0x7F;
  r.TransmitterTechnologyCode = 10;
  r.LengthCopperOrActive = 2;
  r.Temperature = 0x1900;
  r.NominalBitrate = 53;
  r.PowerClass = 1;
  r.CdrControl = 0x5A;
  r.CdrPresence = 3;
  r.VendorModuleKind = 14;
  Set(r.Attenuation, {4, 6, 8, 13});
  r.ExtSpecCompliance = 0x40;
  r.TransmitterTechnologyRaw = 0xA0;
  r.InputEq = 0x4321;
  r.OutputAmp = 0x8765;
  r.OutputEmp = 0xCBA9;
  r.Lot = 0x3937;
  r.VendorName = "Kestrel";
  r.Oui = "0x5a1";
  r.PartNumber = "KC7-N01A5";
  r.SerialNumber = "KS2513VS08812";
  r.Revision = "B3";
  r.LengthText = "1.5 m";
  r.FwVersionText = "0.0.0";
  r.DateCodeText = "25032797";
  return r;
}

// A 3 m copper cable of another vendor without optional values.
inline CableRecord ForeignCopper() {
  CableRecord r;
  r.Identifier = 0x18;
  r.Connector = 0x21;
  r.SupportedSpeedMask = 0x3C;
  r.TransmitterTechnologyCode = 10;
  r.LengthCopperOrActive = 3;
  r.NominalBitrate = 103;
  r.PowerClass = 1;
  Set(r.Attenuation, {7, 10, 12, 17});
  r.ExtSpecCompliance = 0x0D;
  r.TransmitterTechnologyRaw = 0xA0;
  r.VendorName = "Harbour Cable Co";
  r.Oui = "0x2c7a9";
  r.PartNumber = "HC-DD-3M";
  r.SerialNumber = "HC98-00417";
  r.Revision = "NA";
  r.LengthText = "3 m";
  r.DateCodeText = "N/A";
  r.PrtlLengthText = "2.8 m";
  return r;
}

// A 15 m active cable: copper with equalizers at both ends.
inline CableRecord ActiveCable() {
  CableRecord r;
  r.Identifier = 0x11;
  r.Connector = 0x23;
  r.SupportedSpeedMask = 0x1F;
  r.TransmitterTechnologyCode = 12;
  r.LengthCopperOrActive = 15;
  r.Temperature = 0x2664;
  r.NominalBitrate = 26;
  r.PowerClass = 2;
  r.CdrControl = 0xF7;
  r.CdrPresence = 2;
  r.ExtSpecCompliance = 0x08;
  r.TransmitterTechnologyRaw = 0xC0;
  r.TxAdaptiveEqFreeze = 0x02;
  r.RxOutputDisableTxAdaptiveEq = 0x0F;
  r.InputEq = 0x5566;
  r.OutputAmp = 0x1223;
  r.OutputEmp = 0x0180;
  r.SupplyVoltage = 32410;
  r.Lot = 0x0007;
  r.TempHighAlarmThresh = 0x4B00;
  r.TempHighWarnThresh = 0x4600;
  r.TempLowAlarmThresh = 0xF600;
  r.TempLowWarnThresh = 0xFB00;
  r.VoltHighAlarmThresh = 36000;
  r.VoltHighWarnThresh = 35000;
  r.VoltLowAlarmThresh = 30000;
  r.VoltLowWarnThresh = 31000;
  Set(r.TxBias, {1.5F, 1.25F, 1.75F, 1.625F});
  r.VendorName = "Norden Links";
  r.Oui = "0x90d1b";
  r.PartNumber = "NL-ACC-15";
  r.SerialNumber = "NL15A2207";
  r.Revision = "02";
  r.LengthText = "15 m";
  r.DateCodeText = "231109";
  return r;
}

// A multi-mode transceiver of the home vendor with a measured length.
inline CableRecord HomeMultiMode() {
  CableRecord r;
  r.Identifier = 0x11;
  r.Connector = 0x0C;
  r.SupportedSpeedMask = 0x30;
  r.TransmitterTechnologyCode = 0;
  r.LengthOm3 = 35;
  r.LengthOm2 = 20;
  r.LengthOm1 = 11;
  r.LengthCopperOrActive = 50;
  r.Temperature = 0x31C0;
  r.OpaqueByte1 = 9;
  r.NominalBitrate = 53;
  r.PowerClass = 5;
  r.CdrControl = 0xFF;
  r.CdrPresence = 3;
  r.VendorModuleKind = 14;
  r.ExtSpecCompliance = 0x02;
  r.LatchedCdrLos = 0x21;
  r.LatchedAdaptiveEqFault = 0x80;
  r.LatchedCdrLol = 0x14;
  r.LatchedTemperatureAlarms = 0x01;
  r.TransmitterTechnologyRaw = 0x02;
  r.RxOutputDisableTxAdaptiveEq = 0x1E;
  r.InputEq = 0x2A2B;
  r.OutputAmp = 0x3132;
  r.OutputEmp = 0x0102;
  r.OpaqueWord1 = 3;
  r.SupplyVoltage = 33104;
  r.RxPowerAlarms = 0x0100;
  r.Lot = 0xBEEF;
  r.TempHighAlarmThresh = 0x5000;
  r.TempHighWarnThresh = 0x4C00;
  r.TempLowAlarmThresh = 0xFB00;
  r.TempLowWarnThresh = 0x0000;
  r.VoltHighAlarmThresh = 35000;
  r.VoltHighWarnThresh = 34500;
  r.VoltLowAlarmThresh = 31000;
  r.VoltLowWarnThresh = 31500;
  Set(r.RxPower, {1.0F, 0.8125F, 0.0417F, 1.1875F});
  Set(r.TxBias, {6.75F, 6.875F, 6.5F, 7.0F});
  Set(r.TxPower, {0.9375F, 1.0625F, 0.875F, 1.25F});
  r.RxPowerIsAverage = true;
  r.VendorName = "Kestrel";
  r.Oui = "0x5a1";
  r.PartNumber = "KM2-H50";
  r.SerialNumber = "KS2451FT10093";
  r.Revision = "A4";
  r.LengthText = "50 m";
  r.FwVersionText = "38.100.121";
  r.DateCodeText = "24121802";
  r.PrtlLengthText = "27.4 m";
  return r;
}

// A single-mode transceiver of another vendor; its firmware version is not shown.
inline CableRecord ForeignSingleMode() {
  CableRecord r;
  r.Identifier = 0x19;
  r.Connector = 0x07;
  r.SupportedSpeedMask = 0x60;
  r.TransmitterTechnologyCode = 6;
  r.LengthSmf = 10;
  r.Temperature = 0xFD80;
  r.NominalBitrate = 106;
  r.PowerClass = 7;
  r.CdrControl = 0x0C;
  r.CdrPresence = 1;
  r.VendorModuleKind = 16;
  r.OpaqueByte2 = 77;
  r.ExtSpecCompliance = 0x25;
  r.LatchedTemperatureAlarms = 0x11;
  r.LatchedVoltageAlarms = 0x40;
  r.TransmitterTechnologyRaw = 0x6D;
  r.TxAdaptiveEqFreeze = 0x0C;
  r.RxOutputDisableTxAdaptiveEq = 0xA0;
  r.InputEq = 0x0000;
  r.OutputAmp = 0xFFFF;
  r.OutputEmp = 0x7008;
  r.OpaqueWord1 = 1;
  r.SupplyVoltage = 30020;
  r.TxBiasAlarms = 0x4000;
  r.TxPowerAlarms = 0x0008;
  r.Lot = 0x0A0B;
  r.TempHighAlarmThresh = 0x4E00;
  r.TempHighWarnThresh = 0x4700;
  r.TempLowAlarmThresh = 0xF800;
  r.TempLowWarnThresh = 0xFF00;
  r.VoltHighAlarmThresh = 36500;
  r.VoltHighWarnThresh = 34900;
  r.VoltLowAlarmThresh = 30030;
  r.VoltLowWarnThresh = 31100;
  Set(r.RxPower, {0.25F, 0.3125F, 0.2F, 0.4F});
  Set(r.TxBias, {61.5F, 59.875F, 60.25F, 62.125F});
  Set(r.TxPower, {2.0F, 2.5F, 1.6F, 3.2F});
  r.VendorName = "Fjord Photonics";
  r.Oui = "0x5A1";
  r.PartNumber = "FP-800-FR4";
  r.SerialNumber = "FP0099137";
  r.Revision = "1C";
  r.LengthText = "10 km";
  r.FwVersionText = "2.14";
  r.DateCodeText = "2407";
  return r;
}

// A transceiver without light, with names so long that its last lines are cut.
inline CableRecord DarkModule() {
  CableRecord r;
  r.Identifier = 0x11;
  r.Connector = 0x0C;
  r.SupportedSpeedMask = 0x7F;
  r.TransmitterTechnologyCode = 7;
  r.LengthSmf = 40;
  r.Temperature = 0x1700;
  r.NominalBitrate = 103;
  r.PowerClass = 6;
  r.CdrPresence = 3;
  r.LatchedCdrLos = 0xFF;
  r.LatchedAdaptiveEqFault = 0xF0;
  r.LatchedCdrLol = 0xFF;
  r.LatchedTemperatureAlarms = 0x51;
  r.LatchedVoltageAlarms = 0x90;
  r.TransmitterTechnologyRaw = 0x7A;
  r.TxAdaptiveEqFreeze = 0x06;
  r.RxOutputDisableTxAdaptiveEq = 0xF0;
  r.InputEq = 0xFEDC;
  r.OutputAmp = 0xBA98;
  r.OutputEmp = 0x7654;
  r.SupplyVoltage = 29650;
  r.RxPowerAlarms = 0x5555;
  r.TxBiasAlarms = 0x5545;
  r.TxPowerAlarms = 0x5515;
  r.Lot = 0x2B2C;
  r.TempHighAlarmThresh = 0x7D00;
  r.TempHighWarnThresh = 0x7E00;
  r.TempLowAlarmThresh = 0xD800;
  r.TempLowWarnThresh = 0xD700;
  r.VoltHighAlarmThresh = 36400;
  r.VoltHighWarnThresh = 34700;
  r.VoltLowAlarmThresh = 29700;
  r.VoltLowWarnThresh = 31300;
  r.VendorName = "Meridian Photonics and Fibre Works";
  r.Oui = "0xc0ffee";
  r.PartNumber = "MPF-100G-ER4-EXTENDED-TEMPERATURE";
  r.SerialNumber = "MPF2409B0001733-CALIBRATED-AT-SITE";
  r.Revision = "1A";
  r.LengthText = "40 km";
  r.FwVersionText = "7.7";
  r.DateCodeText = "24091204";
  return r;
}

// The pages could not be read.
inline CableRecord FailedQuery() {
  CableRecord r;
  r.QueryStatus = 6;
  r.VendorName = "NA";
  r.Oui = "NA";
  r.PartNumber = "NA";
  r.SerialNumber = "NA";
  r.Revision = "NA";
  r.LengthText = "NA";
  r.FwVersionText = "NA";
  r.DateCodeText = "N/A";
  return r;
}

// An overheated transceiver: all alarms of temperature, voltage and one lane.
inline CableRecord HotModule() {
  CableRecord r;
  r.Identifier = 0x0D;
  r.Connector = 0x0C;
  r.SupportedSpeedMask = 0x0F;
  r.TransmitterTechnologyCode = 3;
  r.LengthOm2 = 82;
  r.LengthOm1 = 33;
  r.Temperature = 0x5DFF;
  r.NominalBitrate = 14;
  r.PowerClass = 3;
  r.CdrControl = 0x30;
  r.CdrPresence = 3;
  r.ExtSpecCompliance = 0x01;
  r.LatchedTemperatureAlarms = 0xA1;
  r.LatchedVoltageAlarms = 0xA0;
  r.TransmitterTechnologyRaw = 0x35;
  r.TxAdaptiveEqFreeze = 0x01;
  r.RxOutputDisableTxAdaptiveEq = 0x3C;
  r.InputEq = 0x000F;
  r.OutputAmp = 0x00F0;
  r.OutputEmp = 0x0F00;
  r.SupplyVoltage = 37500;
  r.RxPowerAlarms = 0xA000;
  r.TxBiasAlarms = 0x0A00;
  r.TxPowerAlarms = 0x00A1;
  r.Lot = 0x0012;
  r.TempHighAlarmThresh = 0x5CFF;
  r.TempHighWarnThresh = 0x55FF;
  r.TempLowAlarmThresh = 0xE200;
  r.TempLowWarnThresh = 0xEC00;
  r.VoltHighAlarmThresh = 37000;
  r.VoltHighWarnThresh = 36000;
  r.VoltLowAlarmThresh = 29000;
  r.VoltLowWarnThresh = 30500;
  Set(r.RxPower, {5.0F, 0.5F, 0.625F, 0.7F});
  Set(r.TxBias, {9.25F, 131.0F, 9.5F, 9.375F});
  Set(r.TxPower, {0.75F, 0.7F, 6.25F, 10.0F});
  r.VendorName = "Sable Photon";
  r.Oui = "0x77e0d";
  r.PartNumber = "SP-FDR-SR4";
  r.SerialNumber = "KS7XY7";
  r.Revision = "C";
  r.LengthText = "82 m";
  r.DateCodeText = "1606301";
  return r;
}

}  // namespace cable_info::test::cable_record_ports
