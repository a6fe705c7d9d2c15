// Arbitrary bytes through every operation of PhyCableRecord, with or without module and latched
// flags, and of the facade.

#include "cable_info/phy_cable_record.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <bit>
#include <cstring>
#include <memory>
#include <sstream>

#include "check.h"
#include "shown.h"

namespace {

using cable_info::CombinedCableInfo;
using cable_info::PhyCableRecord;
using cable_info::test::Row;
using fuzz::Check;
using fuzz::CheckEqual;
using fuzz::Quoted;
using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;
using Renderer = std::string (PhyCableRecord::*)(bool csv) const;

constexpr bool kCsv = true;
constexpr bool kReport = false;

// A renderer, its column and the label of its line; empty if it has none.
struct Shown {
  Renderer render;
  std::string column;
  std::string label;
};

const Shown kShown[] = {
    {&PhyCableRecord::TypeToStr, "TypeDesc", "Type: "},
    {&PhyCableRecord::CableIdentifierToStr, "", "Identifier: "},
    {&PhyCableRecord::BitrateToStr, "NominalBitrate", "NominalBitrate: "},
    {&PhyCableRecord::CablePowerClassToStr, "PowerClass", "PowerClass: "},
    {&PhyCableRecord::MaxPowerToStr, "MaxPower", ""},
    {&PhyCableRecord::FWVersionToStr, "FWVersion", "FW Version: "},
    {&PhyCableRecord::DateCodeToStr, "", "DateCode: "},
    {&PhyCableRecord::LotToStr, "Lot", "Lot: "},
    {&PhyCableRecord::ComplanceCodeToStr, "ExtendedSpecificationComplianceCodes",
     "Extended Specification Compliance Codes: "},
    {&PhyCableRecord::TechnologyToStr, "TransmitterTechnology", "Transmitter Technology: "},
    {&PhyCableRecord::SupportedSpeedToStr, "SupportedSpeedDesc", "SupportedSpeed: "},
    {&PhyCableRecord::AttenuationToStr, "", "Attenuation(5,7,12,25): "},
    {&PhyCableRecord::CableLengthToStr, "LengthDesc", "Length: "},
    {&PhyCableRecord::CableLengthByPrtlToStr, "LengthDescByPRTL", "Length by PRTL: "},
    {&PhyCableRecord::CableLengthByRegToStr, "LengthDescByReg", "Length by Reg: "},
    {&PhyCableRecord::InputEqToStr, "InputEq", "InputEq: "},
    {&PhyCableRecord::OutputAmpToStr, "OutputAmp", "OutputAmp: "},
    {&PhyCableRecord::OuputPreEmpToStr, "OutputPreEmp", "OutputPreEmp: "},
    {&PhyCableRecord::OuputPostEmpToStr, "OutputPostEmp", "OutputPostEmp: "},
    {&PhyCableRecord::RX1PowerToStr, "RX1Power", "RX1 Power: "},
    {&PhyCableRecord::RX2PowerToStr, "RX2Power", "RX2 Power: "},
    {&PhyCableRecord::RX3PowerToStr, "RX3Power", "RX3 Power: "},
    {&PhyCableRecord::RX4PowerToStr, "RX4Power", "RX4 Power: "},
    {&PhyCableRecord::RX5PowerToStr, "RX5Power", "RX5 Power: "},
    {&PhyCableRecord::RX6PowerToStr, "RX6Power", "RX6 Power: "},
    {&PhyCableRecord::RX7PowerToStr, "RX7Power", "RX7 Power: "},
    {&PhyCableRecord::RX8PowerToStr, "RX8Power", "RX8 Power: "},
    {&PhyCableRecord::TX1PowerToStr, "TX1Power", "TX1 Power: "},
    {&PhyCableRecord::TX2PowerToStr, "TX2Power", "TX2 Power: "},
    {&PhyCableRecord::TX3PowerToStr, "TX3Power", "TX3 Power: "},
    {&PhyCableRecord::TX4PowerToStr, "TX4Power", "TX4 Power: "},
    {&PhyCableRecord::TX5PowerToStr, "TX5Power", "TX5 Power: "},
    {&PhyCableRecord::TX6PowerToStr, "TX6Power", "TX6 Power: "},
    {&PhyCableRecord::TX7PowerToStr, "TX7Power", "TX7 Power: "},
    {&PhyCableRecord::TX8PowerToStr, "TX8Power", "TX8 Power: "},
    {&PhyCableRecord::TXBias1ToStr, "TX1Bias", "TX1 Bias: "},
    {&PhyCableRecord::TXBias2ToStr, "TX2Bias", "TX2 Bias: "},
    {&PhyCableRecord::TXBias3ToStr, "TX3Bias", "TX3 Bias: "},
    {&PhyCableRecord::TXBias4ToStr, "TX4Bias", "TX4 Bias: "},
    {&PhyCableRecord::TXBias5ToStr, "TX5Bias", "TX5 Bias: "},
    {&PhyCableRecord::TXBias6ToStr, "TX6Bias", "TX6 Bias: "},
    {&PhyCableRecord::TXBias7ToStr, "TX7Bias", "TX7 Bias: "},
    {&PhyCableRecord::TXBias8ToStr, "TX8Bias", "TX8 Bias: "},
};

template <typename Bytes>
std::unique_ptr<Bytes> AnyBytes(FuzzedDataProvider& input) {
  auto filled = std::make_unique<Bytes>();
  input.ConsumeData(static_cast<void*>(filled.get()), sizeof(Bytes));
  return filled;
}

void FillAny(FuzzedDataProvider& input, PhyCableRecord& r) {
  constexpr std::size_t kMaxTextSize = 512;
  const bool has_module = input.ConsumeBool();
  const bool has_page = input.ConsumeBool();
  if (has_module) r.SetModule(AnyBytes<ModuleRecord>(input));
  if (has_page) r.SetLatchedFlags(AnyBytes<LatchedFlagsPage>(input));
  r.source = input.ConsumeRandomLengthString(kMaxTextSize);
  r.prtl_length = input.ConsumeRandomLengthString(kMaxTextSize);
}

bool HasPlainTexts(const PhyCableRecord& r) {
  for (const std::string& text : {r.source, r.prtl_length, r.VendorToStr(), r.VendorPnToStr(),
                                  r.VendorSnToStr(), r.RevisionToStr()}) {
    if (!fuzz::IsPlain(text)) return false;
  }
  return true;
}

void CheckRow(const PhyCableRecord& r, const std::string& text) {
  const Row row(text);
  CheckEqual(row.size(), fuzz::kCells, "cells of a row");
  CheckEqual(row["Source"], Quoted(r.source), "source");
  CheckEqual(row["Vendor"], Quoted(r.VendorToStr()), "vendor");
  CheckEqual(row["OUI"], r.VendorOUIToStr(), "OUI");
  CheckEqual(row["PN"], Quoted(r.VendorPnToStr()), "part number");
  CheckEqual(row["SN"], Quoted(r.VendorSnToStr()), "serial number");
  CheckEqual(row["Rev"], Quoted(r.RevisionToStr()), "revision");
  CheckEqual(row["IdentifierStr"], Quoted(r.CableIdentifierToStr(kCsv)), "identifier");
  CheckEqual(row["DateCode"], r.DateCodeToStr(kReport), "date");
  CheckEqual(row["Attenuation5G"] + ',' + row["Attenuation7G"] + ',' + row["Attenuation12G"] + ',' +
                 row["Attenuation25G"],
             r.AttenuationToStr(kCsv), "attenuation");
  for (const Shown& shown : kShown) {
    if (!shown.column.empty()) CheckEqual(row[shown.column], (r.*shown.render)(kCsv), shown.column);
  }
}

void CheckBlock(const PhyCableRecord& r, const std::string& text) {
  const fuzz::Block block(text);
  CheckEqual(block.size(), fuzz::kLines, "lines of a block");
  for (const Shown& shown : kShown) {
    if (shown.label.empty()) continue;
    CheckEqual(block.Value(shown.label), (r.*shown.render)(kReport), shown.label);
  }
  const std::pair<const char*, std::string> others[] = {
      {"Vendor: ", r.VendorToStr()},
      {"OUI: ", r.VendorOUIToStr()},
      {"PN: ", r.VendorPnToStr()},
      {"SN: ", r.VendorSnToStr()},
      {"Rev: ", r.RevisionToStr()},
      {"Temperature: ", r.GetTemperatureStr()},
      {"CDREnableTxRx: ", r.CDREnableTxRXToStr()},
      {"RX power type: ", r.RXPowerTypeToStr()},
      {"CDR Latched TX/RX Loss Indicator: ", r.LatchedTxRxIndicatorToStr()},
      {"Latched Adaptive Equalization Fault: ", r.LatchedAdaptiveEqualizationFaultToStr()},
      {"Latched  TX / RX LOL Indicator: ", r.LatchedTxRxLolIndicatorToStr()},
      {"Latched Temperature Alarm and Warning: ", r.LatchedTempAlarmAndWarningToStr()},
      {"Latched Voltage Alarm and Warning: ", r.LatchedVoltageAlarmAndWarningToStr()},
      {"RX Power Alarm and Warning: ", r.RXPowerAlarmAndWarningToStr()},
      {"TX Bias Alarm and Warning:  ", r.TXBiasAlarmAndWarningToStr()},
      {"TX Power Alarm and Warning: ", r.TXPowerAlarmAndWarningToStr()},
      {"AlarmTemperatureHighThresh: ", r.GetHighTemperatureThresholdStr()},
      {"AlarmTemperatureLowThresh: ", r.GetLowTemperatureThresholdStr()},
  };
  for (const auto& [label, value] : others) CheckEqual(block.Value(label), value, label);
}

void CheckModule(const PhyCableRecord& r, const ModuleRecord& m) {
  CheckEqual(m.IsModule() + m.IsActiveCable() + m.IsPassiveCable(), 1, "kinds of one cable");
  CheckEqual(m.ConvertCableIdentifierToStr(), r.CableIdentifierToStr(kCsv), "identifier");
  CheckEqual(m.ConvertCableLengthToStr(kCsv, "NA"), r.CableLengthByRegToStr(kCsv), "length");
  CheckEqual(m.ConvertCableLengthSMFiberToStr(), r.LengthSMFiberToStr(), "single-mode length");
  for (unsigned om = 0; om < 256; ++om) {
    const auto grade = static_cast<std::uint8_t>(om);
    CheckEqual(m.ConvertCableLengthOMXToStr(grade), r.LengthOmxToStr(grade), "multi-mode length");
  }
  CheckEqual(m.ConvertRevisionToStr().find('\0'), std::string::npos, "NULs of a revision");
  CheckEqual(Quoted(m.ConvertTransmitterTechnologyToStr("NA")), r.TypeToStr(kCsv), "technology");
  CheckEqual(Quoted(m.ConvertIBComplianceCodeToStr("NA")), r.SupportedSpeedToStr(kCsv), "speeds");
  CheckEqual(m.ConvertFWVersionToStr("N/A"), r.FWVersionToStr(kReport), "firmware");
  CheckEqual(m.ConvertDateCodeToStr("N/A"), r.DateCodeToStr(kReport), "date");
  CheckEqual(m.ConvertMaxPowerToStr("N/A"), r.MaxPowerToStr(kReport), "maximum power");
  CheckEqual(m.ConvertAttenuationToStr(kCsv), r.AttenuationToStr(kCsv), "attenuation");
  CheckEqual(m.ConvertTxEQRxAMPRxEMPToStr(m.tx_input_eq, true, "\"NA\""), r.InputEqToStr(kCsv),
             "input equalization");
  CheckEqual(m.ConvertTemperatureToStr(m.temperature, kReport), r.GetTemperatureStr(), "degrees");
  CheckEqual(m.ConvertCDREnableTxRxToStr(false, "N/A", false) + ' ' +
                 m.ConvertCDREnableTxRxToStr(true, "N/A", false),
             r.CDREnableTxRXToStr(), "CDR");
}

// Both accept any double, not only words of a register.
void CheckPowers(FuzzedDataProvider& input, const PhyCableRecord& r) {
  const auto value = std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
  const std::string mw = r.PowerLineToStr(value, 0, kCsv);
  CheckEqual(mw, fuzz::Fixed3(r.dBm_to_mW(value)), "milliwatts of a dBm");
  CheckEqual(r.PowerLineToStr(value, 0, kReport), mw + " mW, " + fuzz::Fixed3(value) + " dBm",
             "power in dBm");
  CheckEqual(r.TXBiasToStr(kReport, value), r.TXBiasToStr(kCsv, value) + " mA", "bias");
}

// `port` has only the record `r`.
void CheckFacade(CombinedCableInfo& port, const PhyCableRecord& r) {
  CheckEqual(fuzz::RowOf(port), fuzz::RowOf(r), "row of the facade");
  CheckEqual(fuzz::BlockOf(port), fuzz::BlockOf(r), "block of the facade");
  const cable_info::cable_id_t id = port.GetIdObj();
  Check(id.vendor.empty() || id.vendor.size() == 2, "a vendor code has two characters");
  Check(id.pn.find(',') == std::string::npos, "no comma in a part number");
  CheckEqual(port.GetPNVendor(), cable_info::Trimmed(r.GetPNVendor()), "part number");
  CheckEqual(port.GetUniqueKey(), r.GetUniqueKey(), "unique key");
  Check(r.GetUniqueKey().empty() || r.module != nullptr, "a key needs a module");
  CheckEqual(port.GetFWObj().sub_minor, r.GetFWObj().sub_minor, "firmware");
  CheckEqual(port.GetCDRVendor(), r.GetCDRVendor(), "CDR vendor");
  CheckEqual(port.IsOpticCable(), r.IsOpticCable(), "optical");
  CheckEqual(port.GetTemperatureAlarms(), r.GetTemperatureAlarms(), "alarms");
  Check(port.GetTemperatureErrorsByTreshold() <= 3, "two errors");
  CheckEqual(port.GetTemperatureStr(), r.GetTemperatureStr(), "temperature");
  cable_info::cable_record_data_t data;
  Check(!port.ExportData(&data), "only a cable record is exported");
  port.SetPrtlLength(r.prtl_length + "1");
  CheckEqual(r.CableLengthToStr(kReport), r.prtl_length, "a measured length goes first");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  auto record = std::make_unique<PhyCableRecord>();
  const PhyCableRecord& r = *record;
  FillAny(input, *record);

  const std::string row = fuzz::RowOf(r);
  const std::string block = fuzz::BlockOf(r);
  CheckEqual(row.back(), '\n', "end of a row");
  CheckEqual(block.back(), '\n', "end of a block");
  if (HasPlainTexts(r)) {
    CheckRow(r, row);
    CheckBlock(r, block);
  }
  if (r.module != nullptr) CheckModule(r, *r.module);
  CheckPowers(input, r);

  CombinedCableInfo port;
  port.AttachPhyCableRecord(std::move(record));
  CheckFacade(port, r);
  return 0;
}
