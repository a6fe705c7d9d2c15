#include "cable_info/cable_record.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <ostream>

namespace cable_info {

namespace {

constexpr std::string_view kHomeVendorOui = "0x5a1";
constexpr std::uint8_t kHomeMultiMode = 14;
constexpr std::uint8_t kHomeParallelSingleMode = 16;

constexpr int kLanes = 4;

// The longest block of the text report.
constexpr std::size_t kBlockLimit = 2047;

// What writing float and hexadecimal cells leaves on a stream; hosts that write on rely on it.
constexpr int kRowPrecision = 3;
constexpr char kRowFill = '0';

static_assert(offsetof(cable_record_data_t, lengths) == 5);
static_assert(offsetof(cable_record_data_t, temperature) == 10);
static_assert(offsetof(cable_record_data_t, bytes) == 12);
static_assert(offsetof(cable_record_data_t, words) == 34);
static_assert(offsetof(cable_record_data_t, monitors) == 68);
static_assert(offsetof(cable_record_data_t, rx_power_is_average) == 116);
static_assert(offsetof(cable_record_data_t, word) == 120);
static_assert(offsetof(cable_record_data_t, vendor) == 124);
static_assert(offsetof(cable_record_data_t, oui) == 157);
static_assert(offsetof(cable_record_data_t, pn) == 190);
static_assert(offsetof(cable_record_data_t, sn) == 223);
static_assert(offsetof(cable_record_data_t, revision) == 256);
static_assert(offsetof(cable_record_data_t, length) == 289);
static_assert(offsetof(cable_record_data_t, extra) == 322);
static_assert(offsetof(cable_record_data_t, fw_version) == 355);
static_assert(offsetof(cable_record_data_t, date_code) == 396);
static_assert(sizeof(cable_record_data_t) == 416);

std::uint8_t HighNibble(std::uint8_t byte) { return byte >> 4; }
std::uint8_t LowNibble(std::uint8_t byte) { return byte & 0x0F; }

// Nibble `lane` (1..4) of a word that holds lane 1 in the top one.
std::uint32_t LaneNibble(std::uint16_t word, int lane) {
  return (word >> 4 * (kLanes - lane)) & 0xF;
}

double MilliwattsToDbm(double mw) {
  return mw == 0.0 ? kUnrepresentablePower : 10.0 * std::log10(mw);
}

// Fills a slot of the export record; like `strncpy`, pads with NULs.
template <std::size_t N>
void FillSlot(char (&slot)[N], const std::string& text) {
  std::strncpy(slot, text.c_str(), N - 1);
  slot[N - 1] = '\0';
}

// ---------------------------------------------------------------------------------------------
// Decoders
// ---------------------------------------------------------------------------------------------

std::string_view IdentifierName(std::uint8_t identifier) {
  switch (identifier) {
    case 0x0C:
      return "QSFP";
    case 0x0D:
      return "QSFP+";
    case 0x11:
      return "QSFP28";
    case 0x18:
      return "QSFP-DD";
    case 0x19:
      return "OSFP";
    case 0x1A:
      return "SFP-DD";
    case 0x1B:
      return "DSFP";
    case 0x1E:
      return "QSFP_CMIS";
    default:
      return kBareNa;
  }
}

bool IsKnown(const std::string& text) { return !text.empty() && text != kBareNa; }

std::string_view Length(const CableRecord& r) {
  return r.PrtlLengthText.empty() ? r.LengthText : r.PrtlLengthText;
}

std::string_view PrtlLength(const CableRecord& r) {
  return r.PrtlLengthText.empty() ? kBareNa : std::string_view(r.PrtlLengthText);
}

std::string_view FwVersion(const CableRecord& r, bool csv) {
  return r.IsKestMmf() || r.IsKestPsm() ? std::string_view(r.FwVersionText) : MissingValue(csv);
}

void AppendType(TextBuffer& out, const CableRecord& r) {
  if (r.QueryStatus == 0) {
    AppendCableType(out, r.TransmitterTechnologyCode, kBareNa);
    return;
  }
  out.Append("NA - ");
  AppendCableInfoVSStatus(out, r.QueryStatus);
}

void AppendSpeeds(TextBuffer& out, const CableRecord& r) {
  AppendSupportedSpeed(out, r.SupportedSpeedMask, kBareNa);
}

void AppendTemperatureWord(TextBuffer& out, const CableRecord& r, std::uint16_t word, bool csv) {
  AppendTemperature(out, r.TransmitterTechnologyCode, WholeDegrees(word),
                    UnquotedMissingValue(csv));
}

void AppendDateCode(TextBuffer& out, const CableRecord& r) {
  constexpr std::size_t kTooShort = 3;
  const std::string_view text = r.DateCodeText;
  if (text == kReportNa || text.size() <= kTooShort) {
    out.Append(text);
    return;
  }
  out.Append(text.substr(0, 2)).Append('-').Append(text.substr(2, 2)).Append('-');
  out.Append(text.substr(4, 2));
}

void AppendAttenuation(TextBuffer& out, const CableRecord& r, bool csv) {
  const char separator = csv ? ',' : ' ';
  for (std::size_t i = 0; i < std::size(r.Attenuation); ++i) {
    if (i > 0) out.Append(separator);
    if (r.IsPassiveCable()) {
      out.AppendDecimal(r.Attenuation[i]);
    } else {
      out.Append(MissingValue(csv));
    }
  }
}

void AppendNibbleOrMissing(TextBuffer& out, bool present, std::uint8_t nibble) {
  if (present) {
    out.AppendPrefixedHex(nibble, 1);
  } else {
    out.Append(kReportNa);
  }
}

void AppendCdrEnable(TextBuffer& out, const CableRecord& r, bool csv) {
  if (r.IsPassiveCable()) {
    out.Append(csv ? na_val : "N/A N/A");
    return;
  }
  if (csv) {
    out.AppendPrefixedHex(r.CdrControl, 1);
    return;
  }
  AppendNibbleOrMissing(out, (r.CdrPresence & 0x2) != 0, HighNibble(r.CdrControl));
  out.Append(' ');
  AppendNibbleOrMissing(out, (r.CdrPresence & 0x1) != 0, LowNibble(r.CdrControl));
}

// The four values of a lane-setting word: input equalization, output amplitude, output emphasis.
void AppendLaneSettings(TextBuffer& out, const CableRecord& r, std::uint16_t word, bool csv) {
  if (r.IsPassiveCable()) {
    out.Append(MissingValue(csv));
    return;
  }
  if (csv) {
    out.AppendHex(word, kLanes);
    return;
  }
  for (int lane = 1; lane <= kLanes; ++lane) {
    if (lane > 1) out.Append(' ');
    out.AppendDecimal(LaneNibble(word, lane));
  }
}

void AppendRxOutputDisable(TextBuffer& out, const CableRecord& r) {
  out.AppendPrefixedHex(HighNibble(r.RxOutputDisableTxAdaptiveEq), 1);
}

void AppendTxAdaptiveEqEnable(TextBuffer& out, const CableRecord& r) {
  out.AppendPrefixedHex(LowNibble(r.RxOutputDisableTxAdaptiveEq), 1);
}

// ---------------------------------------------------------------------------------------------
// CSV row, in column order
// ---------------------------------------------------------------------------------------------

void AppendIdentityCells(CsvRow& row, const CableRecord& r) {
  row.Quoted(CableRecord::kSource);
  row.Quoted(r.VendorName);
  row.Raw(r.Oui);
  row.Quoted(r.PartNumber);
  row.Quoted(r.SerialNumber);
  row.Quoted(r.Revision);
}

void AppendTypeCells(CsvRow& row, const CableRecord& r) {
  row.Decimal(r.LengthSmf);
  row.Missing(2);  // OM5, OM4
  row.Decimal(r.LengthOm3);
  row.Decimal(r.LengthOm2);
  row.Decimal(r.LengthOm1);
  row.Decimal(r.LengthCopperOrActive);
  row.Hex(r.Identifier, 2);
  row.Quoted(IdentifierName(r.Identifier));
  row.Hex(r.Connector, 2);
  row.Decimal(r.TransmitterTechnologyCode);
  row.Decimal(r.SupportedSpeedMask);
  row.Quoted(Length(r));
  row.Quoted(PrtlLength(r));
  row.Quoted(r.LengthText);
  row.QuotedCell(AppendType, r);
  row.QuotedCell(AppendSpeeds, r);
  row.QuotedCell(AppendTemperatureWord, r, r.Temperature, kCsv);
}

void AppendSettingCells(CsvRow& row, const CableRecord& r) {
  row.Decimal(r.PowerClass);
  row.Decimal(r.NominalBitrate);
  row.Cell(AppendCdrEnable, r, kCsv);
  row.Missing(2);  // CDR enable of each direction
  row.Cell(AppendLaneSettings, r, r.InputEq, kCsv);
  row.Cell(AppendLaneSettings, r, r.OutputAmp, kCsv);
  row.Cell(AppendLaneSettings, r, r.OutputEmp, kCsv);
  row.Missing(2);  // pre- and post-emphasis
  row.Raw(FwVersion(r, kCsv));
  row.Cell(AppendAttenuation, r, kCsv);
  row.Missing();  // attenuation at 25 GHz
}

// The four lanes of the pages, then the four that they lack.
void AppendMonitorCells(CsvRow& row, const float (&lanes)[kLanes]) {
  for (const float value : lanes) row.Fixed3(static_cast<double>(value));
  row.Missing(kLanes);
}

void AppendFlagCells(CsvRow& row, const CableRecord& r) {
  row.FlagsUpwards(r.LatchedCdrLos, 0, kLanes);           // RX
  row.FlagsUpwards(r.LatchedCdrLos, 4, kLanes);           // TX
  row.FlagsUpwards(r.LatchedAdaptiveEqFault, 4, kLanes);  // TX
  row.FlagsUpwards(r.LatchedCdrLol, 0, kLanes);           // RX
  row.FlagsUpwards(r.LatchedCdrLol, 4, kLanes);           // TX
  row.FlagsDownwards(r.LatchedTemperatureAlarms, 7, 4);
  row.FlagsDownwards(r.LatchedTemperatureAlarms, 0, 1);  // initialization complete
  row.FlagsDownwards(r.LatchedVoltageAlarms, 7, 4);
  row.FlagsDownwards(r.RxPowerAlarms, 15, 16);
  row.FlagsDownwards(r.TxBiasAlarms, 15, 16);
  row.FlagsDownwards(r.TxPowerAlarms, 15, 16);
}

void AppendThresholdCells(CsvRow& row, const CableRecord& r) {
  row.QuotedCell(AppendTemperatureWord, r, r.TempHighAlarmThresh, kCsv);
  row.QuotedCell(AppendTemperatureWord, r, r.TempLowAlarmThresh, kCsv);
  row.QuotedCell(AppendTemperatureWord, r, r.TempHighWarnThresh, kCsv);
  row.QuotedCell(AppendTemperatureWord, r, r.TempLowWarnThresh, kCsv);
  row.QuotedCell(AppendVoltage, r.VoltHighAlarmThresh);
  row.QuotedCell(AppendVoltage, r.VoltLowAlarmThresh);
  row.QuotedCell(AppendVoltage, r.VoltHighWarnThresh);
  row.QuotedCell(AppendVoltage, r.VoltLowWarnThresh);
  row.Missing(6);  // RX power, TX power and TX bias, high and low
}

void AppendRow(CsvRow& row, const CableRecord& r) {
  AppendIdentityCells(row, r);
  AppendTypeCells(row, r);
  AppendSettingCells(row, r);
  row.Flag(r.RxPowerIsAverage);
  AppendMonitorCells(row, r.RxPower);
  AppendMonitorCells(row, r.TxBias);
  AppendMonitorCells(row, r.TxPower);
  AppendFlagCells(row, r);
  row.QuotedCell(AppendVoltage, r.SupplyVoltage);
  row.Hex(HighNibble(r.TransmitterTechnologyRaw), 2);
  row.FlagsDownwards(r.TransmitterTechnologyRaw, 3, 4);
  row.Decimal(r.ExtSpecCompliance);
  AppendThresholdCells(row, r);
  row.Cell(AppendDateCode, r);
  row.Hex(r.Lot, 4);
  row.FlagsDownwards(r.TxAdaptiveEqFreeze, 3, kLanes);
  row.Cell(AppendRxOutputDisable, r);
  row.Cell(AppendTxAdaptiveEqEnable, r);
  row.Missing(3);  // maximum power, CDR vendor, maximum fibre length
}

// ---------------------------------------------------------------------------------------------
// Text report, in line order
// ---------------------------------------------------------------------------------------------

void AppendIdentifier(TextBuffer& out, const CableRecord& r) {
  out.Append(IdentifierName(r.Identifier))
      .Append(" (")
      .AppendPrefixedHex(r.Identifier, 2)
      .Append(')');
}

// The block is made of C strings: a text ends at its first NUL. No more of it than the whole block
// holds is ever shown.
void AppendTextLine(ReportBlock& lines, std::string_view label, std::string_view text) {
  lines.Text(label, UpToNul(text.substr(0, kBlockLimit)));
}

void AppendDateCodeUpToNul(TextBuffer& out, const CableRecord& r) {
  const std::size_t begin = out.size();
  AppendDateCode(out, r);
  out.Truncate(begin + UpToNul(out.view().substr(begin)).size());
}

// The four lanes that the pages lack.
void AppendMissingLanes(ReportBlock& lines, std::string_view label, std::string_view missing) {
  for (int lane = kLanes + 1; lane <= 2 * kLanes; ++lane) lines.LaneText(label, lane, missing);
}

void AppendPowerLines(ReportBlock& lines, std::string_view label, const float (&powers)[kLanes]) {
  for (int lane = 1; lane <= kLanes; ++lane) {
    const auto mw = static_cast<double>(powers[lane - 1]);
    lines.LanePower(label, lane, mw, MilliwattsToDbm);
  }
  AppendMissingLanes(lines, label, kReportNoPower);
}

void AppendBiasLines(ReportBlock& lines, std::string_view label, const float (&biases)[kLanes]) {
  for (int lane = 1; lane <= kLanes; ++lane) {
    lines.LaneBias(label, lane, static_cast<double>(biases[lane - 1]));
  }
  AppendMissingLanes(lines, label, "N/A mA");
}

void AppendIdentityLines(ReportBlock& lines, const CableRecord& r) {
  lines.Line("Identifier: ", AppendIdentifier, r);
  AppendTextLine(lines, "Vendor: ", r.VendorName);
  AppendTextLine(lines, "OUI: ", r.Oui);
  AppendTextLine(lines, "PN: ", r.PartNumber);
  AppendTextLine(lines, "SN: ", r.SerialNumber);
  AppendTextLine(lines, "Rev: ", r.Revision);
  AppendTextLine(lines, "Length: ", Length(r));
  AppendTextLine(lines, "Length by PRTL: ", PrtlLength(r));
  AppendTextLine(lines, " Length by Reg: ", r.LengthText);
  lines.Line("Type: ", AppendType, r);
  lines.Line("SupportedSpeed: ", AppendSpeeds, r);
  lines.Line("Temperature: ", AppendTemperatureWord, r, r.Temperature, kReport);
}

void AppendSettingLines(ReportBlock& lines, const CableRecord& r) {
  lines.Decimal("PowerClass: ", r.PowerClass);
  lines.Decimal("NominalBitrate: ", r.NominalBitrate, " Gb/s");
  lines.Line("CDREnableTxRx: ", AppendCdrEnable, r, kReport);
  lines.Line("InputEq: ", AppendLaneSettings, r, r.InputEq, kReport);
  lines.Line("OutputAmp: ", AppendLaneSettings, r, r.OutputAmp, kReport);
  lines.Line("OutputEmp: ", AppendLaneSettings, r, r.OutputEmp, kReport);
  AppendTextLine(lines, "FW Version: ", FwVersion(r, kReport));
  lines.Line("Attenuation(2.5,5,7,12): ", AppendAttenuation, r, kReport);
}

void AppendMonitorLines(ReportBlock& lines, const CableRecord& r) {
  lines.Text("RX power type: ", RxPowerTypeName(r.RxPowerIsAverage));
  AppendPowerLines(lines, "RX# Power: ", r.RxPower);
  AppendBiasLines(lines, "TX# Bias: ", r.TxBias);
  AppendPowerLines(lines, "TX# Power: ", r.TxPower);
}

void AppendFlagLines(ReportBlock& lines, const CableRecord& r) {
  lines.Hex("CDR Latched TX/RX Loss Indicator: ", r.LatchedCdrLos, 2);
  lines.Hex("Latched Adaptive Equalization Fault: ", r.LatchedAdaptiveEqFault, 2);
  lines.Hex("Latched  TX / RX LOL Indicator: ", r.LatchedCdrLol, 2);
  lines.Hex("Latched Temperature Alarm and Warning: ", r.LatchedTemperatureAlarms, 2);
  lines.Hex("Latched Voltage Alarm and Warning: ", r.LatchedVoltageAlarms, 2);
  lines.Hex("RX Power Alarm and Warning: ", r.RxPowerAlarms, 4);
  lines.Hex("TX Bias Alarm and Warning: ", r.TxBiasAlarms, 4);
  lines.Hex("TX Power Alarm and Warning: ", r.TxPowerAlarms, 4);
}

void AppendThresholdLines(ReportBlock& lines, const CableRecord& r) {
  lines.Line("AlarmTemperatureHighThresh: ", AppendTemperatureWord, r, r.TempHighAlarmThresh,
             kReport);
  lines.Line("AlarmTemperatureLowThresh: ", AppendTemperatureWord, r, r.TempLowAlarmThresh,
             kReport);
  lines.Line("WarnTemperatureHighThresh: ", AppendTemperatureWord, r, r.TempHighWarnThresh,
             kReport);
  lines.Line("WarnTemperatureLowThresh: ", AppendTemperatureWord, r, r.TempLowWarnThresh, kReport);
  lines.Line("AlarmVoltageHighThresh: ", AppendVoltage, r.VoltHighAlarmThresh);
  lines.Line("AlarmVoltageLowThresh: ", AppendVoltage, r.VoltLowAlarmThresh);
  lines.Line("WarnVoltageHighThresh: ", AppendVoltage, r.VoltHighWarnThresh);
  lines.Line("WarnVoltageLowThresh: ", AppendVoltage, r.VoltLowWarnThresh);
  lines.Text("RXPowerHighThresh: ", kReportNa);
  lines.Text("RXPowerLowThresh: ", kReportNa);
  lines.Text("TXPowerHighThresh: ", kReportNa);
  lines.Text("TXPowerLowThresh: ", kReportNa);
  lines.Text("TXBiasHighThresh: ", kReportNa);
  lines.Text("TXBiasLowThresh: ", kReportNa);
}

void AppendBlock(ReportBlock& lines, const CableRecord& r, bool with_phy_lines) {
  if (with_phy_lines) lines.Text("Source: ", CableRecord::kSource);
  AppendIdentityLines(lines, r);
  AppendSettingLines(lines, r);
  AppendMonitorLines(lines, r);
  AppendFlagLines(lines, r);
  lines.Line("Supply Voltage Reporting: ", AppendVoltage, r.SupplyVoltage);
  lines.Hex("Transmitter Technology: ", r.TransmitterTechnologyRaw, 2);
  lines.Hex("Extended Specification Compliance Codes: ", r.ExtSpecCompliance, 2);
  AppendThresholdLines(lines, r);
  lines.Line("DateCode: ", AppendDateCodeUpToNul, r);
  lines.Hex("Lot: ", r.Lot, 4);
  lines.Hex("TX Adaptive Equalization Freeze: ", r.TxAdaptiveEqFreeze, 2);
  lines.Line("RX Output Disable: ", AppendRxOutputDisable, r);
  lines.Line("TX Adaptive Equalization Enable: ", AppendTxAdaptiveEqEnable, r);
  if (!with_phy_lines) return;
  lines.Text("OutputPreEmp: ", kReportNa);
  lines.Text("OutputPostEmp: ", kReportNa);
}

}  // namespace

CableRecord::~CableRecord() = default;

// ---------------------------------------------------------------------------------------------
// Classification, identification, export
// ---------------------------------------------------------------------------------------------

bool CableRecord::IsModule() const {
  return !IsPassiveCable() && Connector != kNoSeparableConnector;
}

bool CableRecord::IsActiveCable() const {
  return !IsPassiveCable() && Connector == kNoSeparableConnector;
}

bool CableRecord::IsPassiveCable() const { return TransmitterTechnologyCode == kUnequalizedCopper; }

bool CableRecord::IsOpticCable() const {
  return QueryStatus == 0 && cable_info::IsOpticCable(TransmitterTechnologyCode);
}

bool CableRecord::IsKestMmf() const {
  return Oui == kHomeVendorOui && !IsPassiveCable() && VendorModuleKind == kHomeMultiMode;
}

bool CableRecord::IsKestPsm() const {
  return Oui == kHomeVendorOui && !IsPassiveCable() && VendorModuleKind == kHomeParallelSingleMode;
}

std::uint32_t CableRecord::GetTemperatureAlarms() const {
  std::uint32_t alarms = 0;
  for (int i = 0; i < 4; ++i) {
    alarms |= static_cast<std::uint32_t>((LatchedTemperatureAlarms >> (7 - i)) & 1) << i;
  }
  return alarms;
}

std::uint32_t CableRecord::GetTemperatureErrorsByTreshold() const {
  return TemperatureErrors(TransmitterTechnologyCode, Temperature, TempHighAlarmThresh,
                           TempLowAlarmThresh);
}

fw_version_obj_t CableRecord::GetFWObj() const { return {}; }

double CableRecord::mW_to_dBm(double mw) const { return MilliwattsToDbm(mw); }

std::string CableRecord::GetPNVendor() const {
  return IsKnown(PartNumber) ? PartNumber : std::string();
}

cable_id_t CableRecord::GetIdObj() const {
  cable_id_t id;
  id.pn = GetPNVendor();
  id.identifier = ConvertCableIdentifierToStr();
  if (!IsKnown(id.identifier)) id.identifier.clear();
  id.vendor = _get_vendor_from_sn(SerialNumber);
  if (IsKnown(Revision)) id.revision = Revision;
  return id;
}

void CableRecord::ExportData(cable_record_data_t* data) const {
  data->status = QueryStatus;
  data->identifier = Identifier;
  data->connector = Connector;
  data->supported_speed = SupportedSpeedMask;
  data->transmitter_technology = TransmitterTechnologyCode;
  const std::uint8_t lengths[] = {LengthSmf, LengthOm3, LengthOm2, LengthOm1, LengthCopperOrActive};
  static_assert(sizeof(lengths) == sizeof(data->lengths));
  std::copy(std::begin(lengths), std::end(lengths), data->lengths);
  data->temperature = Temperature;
  const std::uint8_t bytes[] = {
      OpaqueByte1,
      NominalBitrate,
      PowerClass,
      CdrControl,
      CdrPresence,
      VendorModuleKind,
      Attenuation[0],
      Attenuation[1],
      Attenuation[2],
      Attenuation[3],
      OpaqueByte2,
      ExtSpecCompliance,
      OpaqueByte3,
      LatchedCdrLos,
      LatchedAdaptiveEqFault,
      LatchedCdrLol,
      LatchedTemperatureAlarms,
      LatchedVoltageAlarms,
      TransmitterTechnologyRaw,
      TxAdaptiveEqFreeze,
      RxOutputDisableTxAdaptiveEq,
  };
  static_assert(sizeof(bytes) == sizeof(data->bytes));
  std::copy(std::begin(bytes), std::end(bytes), data->bytes);
  const std::uint16_t words[] = {
      InputEq,
      OutputAmp,
      OutputEmp,
      OpaqueWord1,
      SupplyVoltage,
      RxPowerAlarms,
      TxBiasAlarms,
      TxPowerAlarms,
      Lot,
      TempHighAlarmThresh,
      TempHighWarnThresh,
      TempLowAlarmThresh,
      TempLowWarnThresh,
      VoltHighAlarmThresh,
      VoltHighWarnThresh,
      VoltLowAlarmThresh,
      VoltLowWarnThresh,
  };
  static_assert(sizeof(words) == sizeof(data->words));
  std::copy(std::begin(words), std::end(words), data->words);
  float* monitor = data->monitors;
  static_assert(sizeof(data->monitors) == sizeof(RxPower) + sizeof(TxBias) + sizeof(TxPower));
  monitor = std::copy(std::begin(RxPower), std::end(RxPower), monitor);
  monitor = std::copy(std::begin(TxBias), std::end(TxBias), monitor);
  std::copy(std::begin(TxPower), std::end(TxPower), monitor);
  data->rx_power_is_average = RxPowerIsAverage ? 1 : 0;
  data->word = OpaqueDword1;
  FillSlot(data->vendor, VendorName);
  FillSlot(data->oui, Oui);
  FillSlot(data->pn, PartNumber);
  FillSlot(data->sn, SerialNumber);
  FillSlot(data->revision, Revision);
  FillSlot(data->length, ConvertLengthToStr());
  FillSlot(data->extra, ExtraText);
  FillSlot(data->fw_version, FwVersionText);
  FillSlot(data->date_code, DateCodeText);
}

// ---------------------------------------------------------------------------------------------
// Decoders
// ---------------------------------------------------------------------------------------------

std::string CableRecord::ConvertCableIdentifierToStr() const {
  return std::string(IdentifierName(Identifier));
}

std::string CableRecord::ConvertCableTypeToStr() const { return ToText(AppendType, *this); }

std::string CableRecord::ConvertSupportedSpeedToStr() const { return ToText(AppendSpeeds, *this); }

std::string CableRecord::ConvertLengthToStr() const { return std::string(Length(*this)); }

std::string CableRecord::ConvertPrtlLengthToStr() const { return std::string(PrtlLength(*this)); }

std::string CableRecord::ConvertTemperatureToStr(unsigned short value, bool csv) const {
  return ToText(AppendTemperatureWord, *this, value, csv);
}

std::string CableRecord::GetTemperatureStr() const {
  return ConvertTemperatureToStr(Temperature, kReport);
}

std::string CableRecord::GetHighTemperatureThresholdStr() const {
  return ConvertTemperatureToStr(TempHighAlarmThresh, kReport);
}

std::string CableRecord::GetLowTemperatureThresholdStr() const {
  return ConvertTemperatureToStr(TempLowAlarmThresh, kReport);
}

std::string CableRecord::ConvertVoltageToStr(unsigned short value) const {
  return VoltageToStr(value);
}

std::string CableRecord::ConvertDateCodeToStr() const { return ToText(AppendDateCode, *this); }

std::string CableRecord::ConvertFwVersionToStr(bool csv) const {
  return std::string(FwVersion(*this, csv));
}

std::string CableRecord::ConvertAttenuationToStr(bool csv) const {
  return ToText(AppendAttenuation, *this, csv);
}

std::string CableRecord::ConvertCDREnableTxRxToStr(bool csv) const {
  return ToText(AppendCdrEnable, *this, csv);
}

std::string CableRecord::ConvertInputEqToStr(bool csv) const {
  return ToText(AppendLaneSettings, *this, InputEq, csv);
}

std::string CableRecord::ConvertOutputAmpToStr(bool csv) const {
  return ToText(AppendLaneSettings, *this, OutputAmp, csv);
}

std::string CableRecord::ConvertOutputEmpToStr(bool csv) const {
  return ToText(AppendLaneSettings, *this, OutputEmp, csv);
}

std::string CableRecord::ConvertRXOutputDisableToStr() const {
  return ToText(AppendRxOutputDisable, *this);
}

std::string CableRecord::ConvertTXAdaptiveEqualizationEnableToStr() const {
  return ToText(AppendTxAdaptiveEqEnable, *this);
}

// ---------------------------------------------------------------------------------------------
// Outputs
// ---------------------------------------------------------------------------------------------

std::string CableRecord::c_str(bool with_phy_lines) const {
  ReportBlock lines;
  AppendBlock(lines, *this, with_phy_lines);
  return std::string(lines.view().substr(0, kBlockLimit));
}

void CableRecord::ToFileStream(std::ostream& os) const {
  ReportBlock lines;
  AppendBlock(lines, *this, true);
  const std::string_view block = lines.view().substr(0, kBlockLimit);
  os.write(block.data(), static_cast<std::streamsize>(block.size()));
}

void CableRecord::ToCSVStream(std::ostream& os) const {
  CsvRow row;
  AppendRow(row, *this);
  row.WriteTo(os);
  os.precision(kRowPrecision);
  os.fill(kRowFill);
}

}  // namespace cable_info
