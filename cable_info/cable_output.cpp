#include "cable_info/cable_output.h"

#include <ostream>

#include "cable_info/cable_decode.h"
#include "cable_info/csv_columns.h"
#include "cable_info/report_labels.h"
#include "cable_info/text/cell_texts.h"
#include "cable_info/text/csv_row.h"
#include "cable_info/text/report_lines.h"
#include "cable_info/typed_row.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] cable {

namespace {

using text::BufferedReport;
using text::CsvRow;

// The size of the longest block of the text report.
constexpr std::size_t kMaxBlockSize = 2047;

// The formatting state that a row leaves on the stream; hosts that continue writing rely on it.
constexpr int kRowPrecision = 3;
constexpr char kRowFill = '0';

// The bias current of a lane that the pages do not have.
constexpr std::string_view kMissingBias = "N/A mA";

// ---------------------------------------------------------------------------------------------
// CSV row, in column order
// ---------------------------------------------------------------------------------------------

template <typename Row>
void IdentifierCell(Row& row, const CableRecord& r) {
  const std::string_view name = IdentifierName(r.Identifier);
  if (name == kBareNa) {
    row.Missing();
  } else {
    row.Text(name);
  }
}

template <typename Row>
void PrtlLengthCell(Row& row, const CableRecord& r) {
  if (r.PrtlLengthText.empty()) {
    row.Missing();
  } else {
    row.Length(r.PrtlLengthText);
  }
}

template <typename Row>
void TypeCell(Row& row, const CableRecord& r) {
  if (r.QueryStatus == 0 && r.TransmitterTechnologyCode >= transmitter_technology_arr.size()) {
    row.Missing();
  } else {
    row.TextOf(AppendCableType, r);
  }
}

template <typename Row>
void SupportedSpeedCell(Row& row, const CableRecord& r) {
  if (decode::HasSupportedSpeed(r.SupportedSpeedMask)) {
    row.TextOf(AppendSupportedSpeed, r);
  } else {
    row.Missing();
  }
}

template <typename Row>
void TemperatureCell(Row& row, const CableRecord& r, std::uint16_t word) {
  const std::int8_t degrees = WholeDegrees(word);
  if (_is_valid_temperature(degrees, r.TransmitterTechnologyCode)) {
    row.Quantity(degrees, decode::AppendCelsius, degrees);
  } else {
    row.Missing();
  }
}

template <typename Row>
void VoltageCell(Row& row, std::uint16_t word) {
  row.Quantity(word * decode::kMicrovoltsPerUnit, decode::AppendVoltage, word);
}

template <typename Row>
void CdrEnableCell(Row& row, const CableRecord& r) {
  if (r.IsPassiveCable()) {
    row.Missing();
  } else {
    row.Hex(r.CdrControl, 1);
  }
}

template <typename Row>
void LaneSettingsCell(Row& row, const CableRecord& r, std::uint16_t word) {
  if (r.IsPassiveCable()) {
    row.Missing();
  } else {
    row.BareTextOf(AppendLaneSettings, r, word, Form::kCsv);
  }
}

template <typename Row>
void FwVersionCell(Row& row, const CableRecord& r) {
  if (ShowsFwVersion(r)) {
    row.BareText(r.FwVersionText);
  } else {
    row.Missing();
  }
}

template <typename Row>
void AttenuationCells(Row& row, const CableRecord& r) {
  for (const std::uint8_t attenuation : r.Attenuation) {
    if (r.IsPassiveCable()) {
      row.Decimal(attenuation);
    } else {
      row.Missing();
    }
  }
}

template <typename Row>
void DateCodeCell(Row& row, const CableRecord& r) {
  if (r.DateCodeText == kReportNa) {
    row.MissingAs(kReportNa);
  } else {
    row.BareTextOf(AppendDateCode, r);
  }
}

// The four lanes of the pages, then the four that they do not have.
template <typename Row>
void LaneCells(Row& row, const float (&lanes)[kPageLanes]) {
  for (const float value : lanes) row.Fixed3(static_cast<double>(value));
  row.Missing(kPageLanes);
}

// kIdentity: Source .. Rev
template <typename Row>
void AppendIdentityCells(Row& row, const CableRecord& r) {
  row.Text(CableRecord::kSource);
  row.Text(r.VendorName);
  row.BareText(r.Oui);
  row.Text(r.PartNumber);
  row.Text(r.SerialNumber);
  row.Text(r.Revision);
  row.EndGroup(CsvGroup::kIdentity);
}

// kType: LengthSMFiber .. Temperature
template <typename Row>
void AppendTypeCells(Row& row, const CableRecord& r) {
  row.Decimal(r.LengthSmf);
  row.Missing();  // LengthOM5
  row.Missing();  // LengthOM4
  row.Decimal(r.LengthOm3);
  row.Decimal(r.LengthOm2);
  row.Decimal(r.LengthOm1);
  row.Decimal(r.LengthCopperOrActive);
  row.Hex(r.Identifier, 2);
  IdentifierCell(row, r);
  row.Hex(r.Connector, 2);
  row.Decimal(r.TransmitterTechnologyCode);
  row.Decimal(r.SupportedSpeedMask);
  row.Length(Length(r));
  PrtlLengthCell(row, r);
  row.Length(r.LengthText);
  TypeCell(row, r);
  SupportedSpeedCell(row, r);
  TemperatureCell(row, r, r.Temperature);
  row.EndGroup(CsvGroup::kType);
}

// kSettings: PowerClass .. Attenuation25G
template <typename Row>
void AppendSettingCells(Row& row, const CableRecord& r) {
  row.Decimal(r.PowerClass);
  row.Decimal(r.NominalBitrate);
  CdrEnableCell(row, r);
  row.Missing();  // CDREnableTx
  row.Missing();  // CDREnableRx
  LaneSettingsCell(row, r, r.InputEq);
  LaneSettingsCell(row, r, r.OutputAmp);
  LaneSettingsCell(row, r, r.OutputEmp);
  row.Missing();  // OutputPreEmp
  row.Missing();  // OutputPostEmp
  FwVersionCell(row, r);
  AttenuationCells(row, r);
  row.Missing();  // Attenuation25G
  row.EndGroup(CsvGroup::kSettings);
}

// kMonitors: RXPowerType .. TX8Power
template <typename Row>
void AppendMonitorCells(Row& row, const CableRecord& r) {
  row.Decimal(r.RxPowerIsAverage ? 1 : 0);
  LaneCells(row, r.RxPower);
  LaneCells(row, r.TxBias);
  LaneCells(row, r.TxPower);
  row.EndGroup(CsvGroup::kMonitors);
}

// kFlags: RX1LatchedLossIndicator .. LowTX4PowerWarning
template <typename Row>
void AppendFlagCells(Row& row, const CableRecord& r) {
  constexpr int kModuleFlags = 4;
  constexpr int kAlarmFlags = 4 * kPageLanes;
  row.FlagsUpwards(r.LatchedCdrLos, 0, kPageLanes);           // RX
  row.FlagsUpwards(r.LatchedCdrLos, 4, kPageLanes);           // TX
  row.FlagsUpwards(r.LatchedAdaptiveEqFault, 4, kPageLanes);  // TX
  row.FlagsUpwards(r.LatchedCdrLol, 0, kPageLanes);           // RX
  row.FlagsUpwards(r.LatchedCdrLol, 4, kPageLanes);           // TX
  row.FlagsDownwards(r.LatchedTemperatureAlarms, 7, kModuleFlags);
  row.Flag((r.LatchedTemperatureAlarms & 1) != 0);  // InitializationFlagComplete
  row.FlagsDownwards(r.LatchedVoltageAlarms, 7, kModuleFlags);
  row.FlagsDownwards(r.RxPowerAlarms, 15, kAlarmFlags);
  row.FlagsDownwards(r.TxBiasAlarms, 15, kAlarmFlags);
  row.FlagsDownwards(r.TxPowerAlarms, 15, kAlarmFlags);
  row.EndGroup(CsvGroup::kFlags);
}

// kTransmitter: SupplyVoltageReporting .. ExtendedSpecificationComplianceCodes
template <typename Row>
void AppendTransmitterCells(Row& row, const CableRecord& r) {
  constexpr int kTransmitterFlags = ColumnCount("ActiveWavelengthControl", "TunableTransmitter");
  VoltageCell(row, r.SupplyVoltage);
  row.Hex(HighNibble(r.TransmitterTechnologyRaw), 2);
  row.FlagsDownwards(r.TransmitterTechnologyRaw, 3, kTransmitterFlags);
  row.Decimal(r.ExtSpecCompliance);
  row.EndGroup(CsvGroup::kTransmitter);
}

// kThresholds: AlarmTemperatureHighThresh .. TXBiasLowThresh
template <typename Row>
void AppendThresholdCells(Row& row, const CableRecord& r) {
  constexpr int kPowerAndBiasThresholds = ColumnCount("RXPowerHighThresh", "TXBiasLowThresh");
  TemperatureCell(row, r, r.TempHighAlarmThresh);
  TemperatureCell(row, r, r.TempLowAlarmThresh);
  TemperatureCell(row, r, r.TempHighWarnThresh);
  TemperatureCell(row, r, r.TempLowWarnThresh);
  VoltageCell(row, r.VoltHighAlarmThresh);
  VoltageCell(row, r.VoltLowAlarmThresh);
  VoltageCell(row, r.VoltHighWarnThresh);
  VoltageCell(row, r.VoltLowWarnThresh);
  row.Missing(kPowerAndBiasThresholds);
  row.EndGroup(CsvGroup::kThresholds);
}

// kManufacture: DateCode .. MaxFiberLength
template <typename Row>
void AppendManufactureCells(Row& row, const CableRecord& r) {
  DateCodeCell(row, r);
  row.Hex(r.Lot, 4);
  row.FlagsDownwards(r.TxAdaptiveEqFreeze, 3, kPageLanes);
  row.Hex(HighNibble(r.RxOutputDisableTxAdaptiveEq), 1);
  row.Hex(LowNibble(r.RxOutputDisableTxAdaptiveEq), 1);
  row.Missing();  // MaxPower
  row.Missing();  // CdrVendor
  row.Missing();  // MaxFiberLength
  row.EndGroup(CsvGroup::kManufacture);
}

template <typename Row>
void AppendRow(Row& row, const CableRecord& r) {
  AppendIdentityCells(row, r);
  AppendTypeCells(row, r);
  AppendSettingCells(row, r);
  AppendMonitorCells(row, r);
  AppendFlagCells(row, r);
  AppendTransmitterCells(row, r);
  AppendThresholdCells(row, r);
  AppendManufactureCells(row, r);
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

// Texts in the block end at their first NUL. A text is cut to the size of the whole block first,
// because no more of it can be shown.
void AppendTextLine(BufferedReport& lines, std::string_view label, std::string_view text) {
  lines.Text(label, UpToNul(text.substr(0, kMaxBlockSize)));
}

void AppendDateCodeUpToNul(TextBuffer& out, const CableRecord& r) {
  const std::size_t begin = out.size();
  AppendDateCode(out, r);
  out.Truncate(begin + UpToNul(out.view().substr(begin)).size());
}

// The four lanes that the pages do not have.
void AppendMissingLanes(BufferedReport& lines, std::string_view label, std::string_view missing) {
  for (int lane = kPageLanes + 1; lane <= 2 * kPageLanes; ++lane) {
    lines.LaneText(label, lane, missing);
  }
}

void AppendPowerLines(BufferedReport& lines, std::string_view label,
                      const float (&powers)[kPageLanes]) {
  for (int lane = 1; lane <= kPageLanes; ++lane) {
    const auto mw = static_cast<double>(powers[lane - 1]);
    lines.LanePower(label, lane, mw, MilliwattsToDbm(mw));
  }
  AppendMissingLanes(lines, label, kReportNoPower);
}

void AppendBiasLines(BufferedReport& lines, std::string_view label,
                     const float (&biases)[kPageLanes]) {
  for (int lane = 1; lane <= kPageLanes; ++lane) {
    lines.LaneBias(label, lane, static_cast<double>(biases[lane - 1]));
  }
  AppendMissingLanes(lines, label, kMissingBias);
}

void AppendIdentityLines(BufferedReport& lines, const CableRecord& r) {
  lines.Line(label::kIdentifier, AppendIdentifier, r);
  AppendTextLine(lines, label::kVendor, r.VendorName);
  AppendTextLine(lines, label::kOui, r.Oui);
  AppendTextLine(lines, label::kPn, r.PartNumber);
  AppendTextLine(lines, label::kSn, r.SerialNumber);
  AppendTextLine(lines, label::kRev, r.Revision);
  AppendTextLine(lines, label::kLength, Length(r));
  AppendTextLine(lines, label::kLengthByPrtl, PrtlLength(r));
  AppendTextLine(lines, label::kCableLengthByReg, r.LengthText);
  lines.Line(label::kType, AppendCableType, r);
  lines.Line(label::kSupportedSpeed, AppendSupportedSpeed, r);
  lines.Line(label::kTemperature, AppendTemperature, r, r.Temperature, Form::kReport);
}

void AppendSettingLines(BufferedReport& lines, const CableRecord& r) {
  lines.Decimal(label::kPowerClass, r.PowerClass);
  lines.Decimal(label::kNominalBitrate, r.NominalBitrate, " Gb/s");
  lines.Line(label::kCdrEnableTxRx, AppendCdrEnable, r, Form::kReport);
  lines.Line(label::kInputEq, AppendLaneSettings, r, r.InputEq, Form::kReport);
  lines.Line(label::kOutputAmp, AppendLaneSettings, r, r.OutputAmp, Form::kReport);
  lines.Line(label::kOutputEmp, AppendLaneSettings, r, r.OutputEmp, Form::kReport);
  AppendTextLine(lines, label::kFwVersion, FwVersion(r, Form::kReport));
  lines.Line(label::kCableAttenuation, AppendAttenuation, r, Form::kReport);
}

void AppendMonitorLines(BufferedReport& lines, const CableRecord& r) {
  lines.Text(label::kRxPowerType, RxPowerTypeName(r.RxPowerIsAverage));
  AppendPowerLines(lines, label::kRxPower, r.RxPower);
  AppendBiasLines(lines, label::kTxBias, r.TxBias);
  AppendPowerLines(lines, label::kTxPower, r.TxPower);
}

void AppendFlagLines(BufferedReport& lines, const CableRecord& r) {
  lines.Hex(label::kLoss, r.LatchedCdrLos, 2);
  lines.Hex(label::kAdaptiveEqFault, r.LatchedAdaptiveEqFault, 2);
  lines.Hex(label::kLossOfLock, r.LatchedCdrLol, 2);
  lines.Hex(label::kTemperatureFlags, r.LatchedTemperatureAlarms, 2);
  lines.Hex(label::kVoltageFlags, r.LatchedVoltageAlarms, 2);
  lines.Hex(label::kRxPowerFlags, r.RxPowerAlarms, 4);
  lines.Hex(label::kTxBiasFlags, r.TxBiasAlarms, 4);
  lines.Hex(label::kTxPowerFlags, r.TxPowerAlarms, 4);
}

void AppendTransmitterLines(BufferedReport& lines, const CableRecord& r) {
  lines.Line(label::kSupplyVoltage, decode::AppendVoltage, r.SupplyVoltage);
  lines.Hex(label::kTransmitterTechnology, r.TransmitterTechnologyRaw, 2);
  lines.Hex(label::kExtendedCompliance, r.ExtSpecCompliance, 2);
}

void AppendThresholdLines(BufferedReport& lines, const CableRecord& r) {
  lines.Line(label::kAlarmTemperatureHigh, AppendTemperature, r, r.TempHighAlarmThresh,
             Form::kReport);
  lines.Line(label::kAlarmTemperatureLow, AppendTemperature, r, r.TempLowAlarmThresh,
             Form::kReport);
  lines.Line(label::kWarnTemperatureHigh, AppendTemperature, r, r.TempHighWarnThresh,
             Form::kReport);
  lines.Line(label::kWarnTemperatureLow, AppendTemperature, r, r.TempLowWarnThresh, Form::kReport);
  lines.Line(label::kAlarmVoltageHigh, decode::AppendVoltage, r.VoltHighAlarmThresh);
  lines.Line(label::kAlarmVoltageLow, decode::AppendVoltage, r.VoltLowAlarmThresh);
  lines.Line(label::kWarnVoltageHigh, decode::AppendVoltage, r.VoltHighWarnThresh);
  lines.Line(label::kWarnVoltageLow, decode::AppendVoltage, r.VoltLowWarnThresh);
  lines.Text(label::kRxPowerHigh, kReportNa);
  lines.Text(label::kRxPowerLow, kReportNa);
  lines.Text(label::kTxPowerHigh, kReportNa);
  lines.Text(label::kTxPowerLow, kReportNa);
  lines.Text(label::kTxBiasHigh, kReportNa);
  lines.Text(label::kTxBiasLow, kReportNa);
}

void AppendManufactureLines(BufferedReport& lines, const CableRecord& r) {
  lines.Line(label::kDateCode, AppendDateCodeUpToNul, r);
  lines.Hex(label::kLot, r.Lot, 4);
  lines.Hex(label::kTxAdaptiveEqFreeze, r.TxAdaptiveEqFreeze, 2);
  lines.Line(label::kRxOutputDisable, AppendRxOutputDisable, r);
  lines.Line(label::kTxAdaptiveEqEnable, AppendTxAdaptiveEqEnable, r);
}

void AppendReport(BufferedReport& lines, const CableRecord& r, PhyLines phy_lines) {
  if (phy_lines == PhyLines::kShown) lines.Text(label::kSource, CableRecord::kSource);
  AppendIdentityLines(lines, r);
  AppendSettingLines(lines, r);
  AppendMonitorLines(lines, r);
  AppendFlagLines(lines, r);
  AppendTransmitterLines(lines, r);
  AppendThresholdLines(lines, r);
  AppendManufactureLines(lines, r);
  if (phy_lines == PhyLines::kLeftOut) return;
  lines.Text(label::kOutputPreEmp, kReportNa);
  lines.Text(label::kOutputPostEmp, kReportNa);
}

}  // namespace

void WriteRow(std::ostream& os, const CableRecord& r) {
  CsvRow row;
  AppendRow(row, r);
  row.WriteTo(os);
  os.precision(kRowPrecision);
  os.fill(kRowFill);
}

void VisitCells(CellSink& sink, const CableRecord& r) {
  TypedRow row(sink);
  AppendRow(row, r);
}

void AppendCells(std::vector<std::string>& cells, const CableRecord& r) {
  text::CellTexts row(cells);
  AppendRow(row, r);
}

void WriteReport(std::ostream& os, const CableRecord& r) {
  BufferedReport lines;
  AppendReport(lines, r, PhyLines::kShown);
  const std::string_view block = lines.view().substr(0, kMaxBlockSize);
  os.write(block.data(), static_cast<std::streamsize>(block.size()));
  os.width(0);  // as after any formatted output
}

std::string ReportBlock(const CableRecord& r, PhyLines phy_lines) {
  BufferedReport lines;
  AppendReport(lines, r, phy_lines);
  return std::string(lines.view().substr(0, kMaxBlockSize));
}

}  // namespace cable
}  // namespace cable_info
