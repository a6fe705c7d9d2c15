// Arbitrary fields through every operation of CableRecord and of the facade.

#include "cable_info/cable_record.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <sstream>

#include "cable_record_fields.h"
#include "check.h"
#include "shown.h"

namespace {

using cable_info::cable_record_data_t;
using cable_info::CableRecord;
using cable_info::CombinedCableInfo;
using cable_info::test::Row;
using fuzz::Check;
using fuzz::CheckEqual;
using fuzz::Fixed3;
using fuzz::Quoted;

constexpr bool kCsv = true;
constexpr bool kReport = false;
constexpr std::size_t kMaxBlockSize = 2047;

float AnyFloat(FuzzedDataProvider& input) {
  return std::bit_cast<float>(input.ConsumeIntegral<std::uint32_t>());
}

CableRecord AnyRecord(FuzzedDataProvider& input) {
  constexpr std::size_t kMaxTextSize = 4096;
  CableRecord r;
  for (auto* byte : cable_info::test::ByteFields(r)) *byte = input.ConsumeIntegral<std::uint8_t>();
  for (auto* word : cable_info::test::WordFields(r)) *word = input.ConsumeIntegral<std::uint16_t>();
  for (auto* lanes : {&r.RxPower, &r.TxBias, &r.TxPower}) {
    for (float& value : *lanes) value = AnyFloat(input);
  }
  r.RxPowerIsAverage = input.ConsumeBool();
  r.OpaqueDword1 = input.ConsumeIntegral<std::uint32_t>();
  // The OUI that identifies modules of the home vendor.
  const bool is_home = input.ConsumeBool();
  for (auto* text : cable_info::test::TextFields(r)) {
    *text = input.ConsumeRandomLengthString(kMaxTextSize);
  }
  if (is_home) r.Oui = "0x5a1";
  return r;
}

bool HasPlainTexts(CableRecord& r) {
  const auto texts = cable_info::test::TextFields(r);
  return std::all_of(texts.begin(), texts.end(),
                     [](const std::string* text) { return fuzz::IsPlain(*text); });
}

void CheckRow(const CableRecord& r, const std::string& text) {
  const Row row(text);
  CheckEqual(row.size(), fuzz::kCells, "cells of a row");
  CheckEqual(row["Source"], "\"CABLE\"", "source");
  CheckEqual(row["Vendor"], Quoted(r.VendorName), "vendor");
  CheckEqual(row["IdentifierStr"], Quoted(r.ConvertCableIdentifierToStr()), "identifier");
  CheckEqual(row["LengthDesc"], Quoted(r.ConvertLengthToStr()), "length");
  CheckEqual(row["LengthDescByPRTL"], Quoted(r.ConvertPrtlLengthToStr()), "measured length");
  CheckEqual(row["TypeDesc"], Quoted(r.ConvertCableTypeToStr()), "type");
  CheckEqual(row["SupportedSpeedDesc"], Quoted(r.ConvertSupportedSpeedToStr()), "speeds");
  CheckEqual(row["Temperature"], Quoted(r.ConvertTemperatureToStr(r.Temperature, kCsv)), "degrees");
  CheckEqual(row["CDREnableTxRx"], r.ConvertCDREnableTxRxToStr(kCsv), "CDR");
  CheckEqual(row["InputEq"], r.ConvertInputEqToStr(kCsv), "input equalization");
  CheckEqual(row["OutputAmp"], r.ConvertOutputAmpToStr(kCsv), "output amplitude");
  CheckEqual(row["OutputEmp"], r.ConvertOutputEmpToStr(kCsv), "output emphasis");
  CheckEqual(row["FWVersion"], r.ConvertFwVersionToStr(kCsv), "firmware");
  CheckEqual(row["Attenuation2.5G"] + ',' + row["Attenuation5G"] + ',' + row["Attenuation7G"] +
                 ',' + row["Attenuation12G"],
             r.ConvertAttenuationToStr(kCsv), "attenuation");
  CheckEqual(row["RX1Power"], Fixed3(static_cast<double>(r.RxPower[0])), "power of lane 1");
  CheckEqual(row["TX4Bias"], Fixed3(static_cast<double>(r.TxBias[3])), "bias of lane 4");
  CheckEqual(row["TX2Power"], Fixed3(static_cast<double>(r.TxPower[1])), "power of lane 2");
  CheckEqual(row["SupplyVoltageReporting"], Quoted(r.ConvertVoltageToStr(r.SupplyVoltage)),
             "voltage");
  CheckEqual(row["AlarmTemperatureLowThresh"],
             Quoted(r.ConvertTemperatureToStr(r.TempLowAlarmThresh, kCsv)), "low threshold");
  CheckEqual(row["DateCode"], r.ConvertDateCodeToStr(), "date");
  CheckEqual(row["RXOutputDisable"], r.ConvertRXOutputDisableToStr(), "RX output disable");
  CheckEqual(row["TXAdaptiveEqualizationEnable"], r.ConvertTXAdaptiveEqualizationEnableToStr(),
             "TX adaptive equalization");
}

void CheckBlock(const CableRecord& r, const std::string& text) {
  const fuzz::Block block(text);
  CheckEqual(block.size(), fuzz::kLines, "lines of a block");
  CheckEqual(block.Value("Source: "), "CABLE", "source");
  CheckEqual(block.Value("Length: "), r.ConvertLengthToStr(), "length");
  CheckEqual(block.Value("Length by PRTL: "), r.ConvertPrtlLengthToStr(), "measured length");
  CheckEqual(block.Value("Type: "), r.ConvertCableTypeToStr(), "type");
  CheckEqual(block.Value("SupportedSpeed: "), r.ConvertSupportedSpeedToStr(), "speeds");
  CheckEqual(block.Value("Temperature: "), r.GetTemperatureStr(), "temperature");
  CheckEqual(block.Value("CDREnableTxRx: "), r.ConvertCDREnableTxRxToStr(kReport), "CDR");
  CheckEqual(block.Value("InputEq: "), r.ConvertInputEqToStr(kReport), "input equalization");
  CheckEqual(block.Value("OutputAmp: "), r.ConvertOutputAmpToStr(kReport), "output amplitude");
  CheckEqual(block.Value("OutputEmp: "), r.ConvertOutputEmpToStr(kReport), "output emphasis");
  CheckEqual(block.Value("FW Version: "), r.ConvertFwVersionToStr(kReport), "firmware");
  CheckEqual(block.Value("Attenuation(2.5,5,7,12): "), r.ConvertAttenuationToStr(kReport),
             "attenuation");
  const auto power = static_cast<double>(r.RxPower[2]);
  CheckEqual(block.Value("RX3 Power: "),
             Fixed3(power) + " mW, " + Fixed3(r.mW_to_dBm(power)) + " dBm", "power of lane 3");
  CheckEqual(block.Value("AlarmTemperatureHighThresh: "), r.GetHighTemperatureThresholdStr(),
             "high threshold");
  CheckEqual(block.Value("AlarmTemperatureLowThresh: "), r.GetLowTemperatureThresholdStr(),
             "low threshold");
  CheckEqual(block.Value("DateCode: "), r.ConvertDateCodeToStr(), "date");
}

void CheckKinds(const CableRecord& r) {
  CheckEqual(r.IsModule() + r.IsActiveCable() + r.IsPassiveCable(), 1, "kinds of one cable");
  Check(!(r.IsKestMmf() && r.IsKestPsm()), "a home module is of one kind");
  Check(!(r.IsOpticCable() && r.IsPassiveCable()), "optical is not passive");
  Check(r.GetTemperatureAlarms() <= 0xF, "four alarms");
  Check(r.GetTemperatureErrorsByTreshold() <= 3, "two errors");
}

template <std::size_t N>
void CheckSlot(const char (&slot)[N], const std::string& text) {
  const std::string expected(cable_info::UpToNul(text).substr(0, N - 1));
  CheckEqual(std::string(slot, N), expected + std::string(N - expected.size(), '\0'), "slot");
}

void CheckExport(const CableRecord& r) {
  cable_record_data_t data;
  std::memset(&data, 0xFF, sizeof(data));
  r.ExportData(&data);
  CheckSlot(data.vendor, r.VendorName);
  CheckSlot(data.oui, r.Oui);
  CheckSlot(data.pn, r.PartNumber);
  CheckSlot(data.sn, r.SerialNumber);
  CheckSlot(data.revision, r.Revision);
  CheckSlot(data.length, r.ConvertLengthToStr());
  CheckSlot(data.extra, r.ExtraText);
  CheckSlot(data.fw_version, r.FwVersionText);
  CheckSlot(data.date_code, r.DateCodeText);
  CheckEqual(data.status, r.QueryStatus, "status");
  CheckEqual(data.bytes[20], r.RxOutputDisableTxAdaptiveEq, "last byte");
  CheckEqual(data.words[16], r.VoltLowWarnThresh, "last word");
  Check(std::memcmp(&data.monitors[8], r.TxPower, sizeof(r.TxPower)) == 0, "last monitors");
}

void CheckFacade(const CableRecord& r, const std::string& row, const std::string& block) {
  CombinedCableInfo port;
  port.AttachCableRecord(std::make_unique<CableRecord>(r));
  CheckEqual(fuzz::RowOf(port), row, "row of the facade");
  CheckEqual(fuzz::BlockOf(port), block, "block of the facade");
  const cable_info::cable_id_t id = port.GetIdObj();
  CheckEqual(id.pn, r.GetPNVendor(), "part number");
  CheckEqual(id.vendor, cable_info::_get_vendor_from_sn(r.SerialNumber), "vendor code");
  Check(id.vendor.empty() || id.vendor.size() == 2, "a vendor code has two characters");
  CheckEqual(port.GetPNVendor(), cable_info::Trimmed(r.GetPNVendor()), "part number, trimmed");
  CheckEqual(port.GetUniqueKey(), "", "unique key");
  CheckEqual(port.GetCDRVendor(), CombinedCableInfo::kNoRecord, "CDR vendor");
  CheckEqual(port.IsOpticCable(), r.IsOpticCable(), "optical");
  CheckEqual(port.GetTemperatureAlarms(), r.GetTemperatureAlarms(), "alarms");
  CheckEqual(port.GetTemperatureErrorsByTreshold(), r.GetTemperatureErrorsByTreshold(), "errors");
  CheckEqual(port.GetTemperatureStr(), r.GetTemperatureStr(), "temperature");
  cable_record_data_t data;
  Check(port.ExportData(&data), "a cable record is exported");
  port.SetPrtlLength(r.RxPower[0]);
  Check(fuzz::BlockOf(port).find(" m\nLength by PRTL: ") != std::string::npos ||
            block.size() > kMaxBlockSize / 2,
        "a measured length is shown");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  CableRecord r = AnyRecord(input);
  const bool is_plain = HasPlainTexts(r);

  std::ostringstream stream;
  r.ToCSVStream(stream);
  const std::string row = stream.str();
  CheckEqual(stream.precision(), 3, "precision after a row");
  CheckEqual(stream.fill(), '0', "fill after a row");
  CheckEqual(row.back(), '\n', "end of a row");
  if (is_plain) CheckRow(r, row);

  const std::string block = fuzz::BlockOf(r);
  Check(block.size() <= kMaxBlockSize, "a block is at most 2047 characters long");
  Check(block.find('\0') == std::string::npos, "a block holds no NUL");
  CheckEqual(block, r.c_str(true), "block and C string");
  Check(r.c_str(false).size() <= kMaxBlockSize, "so is a block without the PHY's lines");
  if (is_plain && block.size() < kMaxBlockSize) CheckBlock(r, block);

  CheckKinds(r);
  CheckExport(r);
  CheckFacade(r, row, block);
  return 0;
}
