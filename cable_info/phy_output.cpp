#include "cable_info/phy_output.h"

#include <cmath>
#include <iterator>

#include "cable_info/csv_columns.h"
#include "cable_info/phy_decode.h"
#include "cable_info/report_labels.h"
#include "cable_info/text/cell_texts.h"
#include "cable_info/text/csv_row.h"
#include "cable_info/text/flushed_lines.h"
#include "cable_info/typed_row.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] phy {

namespace {

using text::CsvRow;
using text::FlushedReport;

// ---------------------------------------------------------------------------------------------
// CSV row, in column order
// ---------------------------------------------------------------------------------------------

// Emits cells of a module record; without one all of them are missing.
template <typename Row>
class ModuleCells {
 public:
  ModuleCells(Row& row, const ModuleRecord* module) : row_(row), module_(module) {}

  template <typename Number>
  void Decimal(Number ModuleRecord::*field) const {
    Cell([=](Row& row, const ModuleRecord& m) { row.Decimal(m.*field); });
  }
  void Hex(std::uint8_t ModuleRecord::*field) const {
    Cell([=](Row& row, const ModuleRecord& m) { row.Hex(m.*field, 2); });
  }
  // Any cell, `emit(row, module)`; `missing` is the cell without a module record.
  template <typename Emit>
  void Cell(Emit emit, std::string_view missing = na_val) const {
    if (module_ == nullptr) {
      row_.MissingAs(missing);
    } else {
      emit(row_, *module_);
    }
  }
  // The same for `count` cells.
  template <typename Emit>
  void Cells(int count, Emit emit) const {
    if (module_ == nullptr) {
      row_.Missing(count);
    } else {
      emit(row_, *module_);
    }
  }

 private:
  Row& row_;
  const ModuleRecord* module_;
};

// A text that is missing when it is blank.
template <typename Row>
void DescriptionCell(Row& row, std::string_view text) {
  const std::string_view trimmed = Trimmed(text);
  if (trimmed.empty()) {
    row.Missing();
  } else {
    row.TextOf(AppendDescription, trimmed, std::string_view());
  }
}

template <typename Row>
void RevisionCell(Row& row, const ModuleRecord& m) {
  TextBuffer revision;
  module::AppendRevision(revision, m);
  DescriptionCell(row, revision.view());
}

template <typename Row>
void IdentifierCell(Row& row, const ModuleRecord& m) {
  const std::string_view name = module::FormFactorName(m);
  if (name == kBareNa) {
    row.Missing();
  } else {
    row.Text(name);
  }
}

template <typename Row>
void SupportedSpeedCell(Row& row, const ModuleRecord& m) {
  if (decode::HasSupportedSpeed(m.ib_compliance_code)) {
    row.TextOf(decode::AppendSupportedSpeed, m.ib_compliance_code, kBareNa);
  } else {
    row.Missing();
  }
}

template <typename Row>
void LengthByRegCell(Row& row, const ModuleRecord& m) {
  const module::CableLength length = module::LengthOf(m);
  if (length.base == 0) {
    row.MissingAs(kBareNa);
  } else {
    row.Quantity(length.Metres(), module::AppendMetres, length);
  }
}

template <typename Row>
void TypeCell(Row& row, const ModuleRecord& m) {
  const std::uint8_t technology = m.SelectTransmitterTechnology();
  if (technology < transmitter_technology_arr.size()) {
    row.Text(transmitter_technology_arr[technology]);
  } else {
    row.Missing();
  }
}

template <typename Row>
void TemperatureCell(Row& row, const ModuleRecord& m, std::uint16_t raw) {
  const std::int8_t degrees = WholeDegrees(raw);
  if (_is_valid_temperature(degrees, module::TechnologyNibble(m))) {
    row.Quantity(degrees, decode::AppendCelsius, degrees);
  } else {
    row.Missing();
  }
}

template <typename Row>
void VoltageCell(Row& row, std::uint16_t raw) {
  row.Quantity(raw * decode::kMicrovoltsPerUnit, decode::AppendVoltage, raw);
}

// Shown whether the module has such a CDR or not.
template <typename Row>
void CdrEnableCell(Row& row, const ModuleRecord& m, std::uint8_t state) {
  if (m.IsPassiveCable()) {
    row.Missing();
  } else {
    row.Hex(state, 2);
  }
}

template <typename Row>
void LaneSettingsCell(Row& row, const ModuleRecord& m, std::uint8_t value) {
  if (m.IsPassiveCable()) {
    row.Missing();
  } else {
    row.BareTextOf(module::AppendLaneSetting, m, value, Form::kCsv, na_val);
  }
}

template <typename Row>
void FwVersionCell(Row& row, const ModuleRecord& m) {
  std::uint8_t major = 0;
  std::uint8_t minor = 0;
  std::uint16_t sub_minor = 0;
  if (m.GetFWVersion(major, minor, sub_minor)) {
    row.BareTextOf(module::AppendFwVersion, m, na_val);
  } else {
    row.Missing();
  }
}

template <typename Row>
void AttenuationCells(Row& row, const ModuleRecord& m) {
  if (!m.IsPassiveCable()) {
    row.Missing(static_cast<int>(std::size(m.attenuation)));
    return;
  }
  for (const std::uint8_t attenuation : m.attenuation) row.Decimal(attenuation);
}

template <typename Row>
void DateCodeCell(Row& row, const ModuleRecord& m) {
  if (module::HasDateCode(m)) {
    row.BareTextOf(module::AppendDateCode, m, kReportNa);
  } else {
    row.MissingAs(kReportNa);
  }
}

template <typename Row>
void MaxPowerCell(Row& row, const ModuleRecord& m) {
  if (m.max_power == 0) {
    row.Missing();
  } else {
    row.BareQuantity(m.max_power * module::kWattsPerUnit, module::AppendMaxPower, m, na_val);
  }
}

template <typename Row>
void LanePowerCells(Row& row, const ModuleRecord& m, LaneWords lanes) {
  for (int lane = 1; lane <= kPhyLanes; ++lane) {
    row.Fixed3(module::Milliwatts(module::LaneValue(m.*lanes, lane), m.power_unit_flag));
  }
}

template <typename Row>
void LaneBiasCells(Row& row, const ModuleRecord& m) {
  for (int lane = 1; lane <= kPhyLanes; ++lane) {
    row.Fixed3(module::Milliamperes(module::LaneValue(m.tx_bias, lane)));
  }
}

// kIdentity: Source .. Rev
template <typename Row>
void AppendIdentityCells(Row& row, const PhyCableRecord& r) {
  const ModuleCells<Row> cells(row, r.module);
  row.Text(r.source);
  cells.Cell([](Row& o, const ModuleRecord& m) { o.Text(Trimmed(ArrayText(m.vendor_name))); });
  cells.Cell([](Row& o, const ModuleRecord& m) { o.Hex(m.vendor_oui, 1); }, kBareNa);
  cells.Cell([](Row& o, const ModuleRecord& m) { DescriptionCell(o, ArrayText(m.vendor_pn)); });
  cells.Cell([](Row& o, const ModuleRecord& m) { DescriptionCell(o, ArrayText(m.vendor_sn)); });
  cells.Cell(RevisionCell<Row>);
  row.EndGroup(CsvGroup::kIdentity);
}

// kType: LengthSMFiber .. Temperature
template <typename Row>
void AppendTypeCells(Row& row, const PhyCableRecord& r) {
  // The decoder's own missing value, quoted once more by the row.
  constexpr std::string_view kQuotedNaVal = R"(""NA"")";
  const ModuleCells<Row> cells(row, r.module);
  cells.Decimal(&ModuleRecord::smf_length);
  cells.Decimal(&ModuleRecord::length_om5);
  cells.Decimal(&ModuleRecord::length_om4);
  cells.Decimal(&ModuleRecord::length_om3);
  cells.Decimal(&ModuleRecord::length_om2);
  cells.Decimal(&ModuleRecord::length_om1);
  cells.Decimal(&ModuleRecord::cable_length);
  cells.Hex(&ModuleRecord::cable_identifier);
  cells.Cell(IdentifierCell<Row>, kQuotedNaVal);
  cells.Hex(&ModuleRecord::connector_type);
  cells.Cell([](Row& o, const ModuleRecord& m) { o.Decimal(m.SelectTransmitterTechnology()); });
  cells.Decimal(&ModuleRecord::ib_compliance_code);
  if (r.prtl_length.empty()) {
    cells.Cell(LengthByRegCell<Row>, kBareNa);  // LengthDesc
    row.MissingAs(kBareNa);                     // LengthDescByPRTL
  } else {
    row.Length(r.prtl_length);
    row.Length(r.prtl_length);
  }
  cells.Cell(LengthByRegCell<Row>, kBareNa);
  cells.Cell(TypeCell<Row>);
  cells.Cell(SupportedSpeedCell<Row>);
  cells.Cell([](Row& o, const ModuleRecord& m) { TemperatureCell(o, m, m.temperature); });
  row.EndGroup(CsvGroup::kType);
}

// kSettings: PowerClass .. Attenuation25G
template <typename Row>
void AppendSettingCells(Row& row, const PhyCableRecord& r) {
  constexpr int kAttenuations = ColumnCount("Attenuation5G", "Attenuation25G");
  const ModuleCells<Row> cells(row, r.module);
  const auto lane_setting = [&](std::uint8_t ModuleRecord::*field) {
    cells.Cell([=](Row& o, const ModuleRecord& m) { LaneSettingsCell(o, m, m.*field); });
  };
  cells.Decimal(&ModuleRecord::power_class);
  cells.Cell(
      [](Row& o, const ModuleRecord& m) {
        o.DecimalTimes(m.SelectNominalBR(), module::kMegabitsPerGigabit);
      },
      kReportNa);
  row.Missing();  // CDREnableTxRx
  cells.Cell([](Row& o, const ModuleRecord& m) { CdrEnableCell(o, m, m.tx_cdr_state); });
  cells.Cell([](Row& o, const ModuleRecord& m) { CdrEnableCell(o, m, m.rx_cdr_state); });
  lane_setting(&ModuleRecord::tx_input_eq);
  lane_setting(&ModuleRecord::rx_output_amp);
  row.Missing();  // OutputEmp
  lane_setting(&ModuleRecord::rx_output_pre_emp);
  lane_setting(&ModuleRecord::rx_output_post_emp);
  cells.Cell(FwVersionCell<Row>);
  row.Missing();  // Attenuation2.5G
  cells.Cells(kAttenuations, AttenuationCells<Row>);
  row.EndGroup(CsvGroup::kSettings);
}

// kMonitors: RXPowerType .. TX8Power
template <typename Row>
void AppendMonitorCells(Row& row, const PhyCableRecord& r) {
  const ModuleCells<Row> cells(row, r.module);
  const auto lane_powers = [&](LaneWords lanes) {
    cells.Cells(kPhyLanes, [=](Row& o, const ModuleRecord& m) { LanePowerCells(o, m, lanes); });
  };
  cells.Decimal(&ModuleRecord::rx_power_type);
  lane_powers(&ModuleRecord::rx_power);
  cells.Cells(kPhyLanes, LaneBiasCells<Row>);
  lane_powers(&ModuleRecord::tx_power);
  row.EndGroup(CsvGroup::kMonitors);
}

// kFlags: RX1LatchedLossIndicator .. LowTX4PowerWarning
template <typename Row>
void AppendFlagCells(Row& row, const PhyCableRecord& r) {
  constexpr int kModuleFlags = 4;
  constexpr int kAlarmFlags = 4 * kShownLanes;
  const LatchedFlagsPage* const page = r.latched_flags;
  if (page == nullptr) {
    row.Missing(GroupSize(CsvGroup::kFlags));
    row.EndGroup(CsvGroup::kFlags);
    return;
  }
  row.FlagsUpwards(page->latched_rx_los, 0, kShownLanes);
  row.FlagsUpwards(page->latched_tx_los, 0, kShownLanes);
  row.FlagsUpwards(page->latched_tx_adaptive_eq_fault, 0, kShownLanes);
  row.FlagsUpwards(page->latched_rx_cdr_lol, 0, kShownLanes);
  row.FlagsUpwards(page->latched_tx_cdr_lol, 0, kShownLanes);
  row.FlagsUpwards(page->latched_temperature_flags, 0, kModuleFlags);
  row.Missing();  // InitializationFlagComplete
  row.FlagsUpwards(page->latched_voltage_flags, 0, kModuleFlags);
  row.FlagsDownwards(flags::RxPowerAlarms(*page), 15, kAlarmFlags);
  row.FlagsDownwards(flags::TxBiasAlarms(*page), 15, kAlarmFlags);
  row.FlagsDownwards(flags::TxPowerAlarms(*page), 15, kAlarmFlags);
  row.EndGroup(CsvGroup::kFlags);
}

// kTransmitter: SupplyVoltageReporting .. ExtendedSpecificationComplianceCodes
template <typename Row>
void AppendTransmitterCells(Row& row, const PhyCableRecord& r) {
  constexpr int kTransmitterFlags = ColumnCount("ActiveWavelengthControl", "TunableTransmitter");
  const ModuleCells<Row> cells(row, r.module);
  cells.Cell([](Row& o, const ModuleRecord& m) { VoltageCell(o, m.voltage); });
  cells.Cell([](Row& o, const ModuleRecord& m) { o.Hex(m.SelectTransmitterTechnology(), 2); });
  // From bit 0 up, although active wavelength control is bit 3 of the byte: the cells of this
  // source are published in this order. The row of the cable pages has them from bit 3 down.
  cells.Cells(kTransmitterFlags, [=](Row& o, const ModuleRecord& m) {
    o.FlagsUpwards(m.cable_technology, 0, kTransmitterFlags);
  });
  cells.Decimal(&ModuleRecord::compliance_code);
  row.EndGroup(CsvGroup::kTransmitter);
}

// kThresholds: AlarmTemperatureHighThresh .. TXBiasLowThresh
template <typename Row>
void AppendThresholdCells(Row& row, const PhyCableRecord& r) {
  const ModuleCells<Row> cells(row, r.module);
  const auto temperature = [&](std::uint16_t ModuleRecord::*field) {
    cells.Cell([=](Row& o, const ModuleRecord& m) { TemperatureCell(o, m, m.*field); });
  };
  const auto voltage = [&](std::uint16_t ModuleRecord::*field) {
    cells.Cell([=](Row& o, const ModuleRecord& m) { VoltageCell(o, m.*field); });
  };
  temperature(&ModuleRecord::temp_high_threshold);
  temperature(&ModuleRecord::temp_low_threshold);
  row.Missing();  // WarnTemperatureHighThresh
  row.Missing();  // WarnTemperatureLowThresh
  voltage(&ModuleRecord::voltage_high_threshold);
  voltage(&ModuleRecord::voltage_low_threshold);
  row.Missing();  // WarnVoltageHighThresh
  row.Missing();  // WarnVoltageLowThresh
  cells.Decimal(&ModuleRecord::rx_power_high_threshold);
  cells.Decimal(&ModuleRecord::rx_power_low_threshold);
  cells.Decimal(&ModuleRecord::tx_power_high_threshold);
  cells.Decimal(&ModuleRecord::tx_power_low_threshold);
  cells.Decimal(&ModuleRecord::tx_bias_high_threshold);
  cells.Decimal(&ModuleRecord::tx_bias_low_threshold);
  row.EndGroup(CsvGroup::kThresholds);
}

// kManufacture: DateCode .. MaxFiberLength
template <typename Row>
void AppendManufactureCells(Row& row, const PhyCableRecord& r) {
  constexpr int kLaneSwitches =
      ColumnCount("TX1AdaptiveEqualizationFreeze", "TXAdaptiveEqualizationEnable");
  const ModuleCells<Row> cells(row, r.module);
  cells.Cell(DateCodeCell<Row>, kReportNa);
  cells.Cell([](Row& o, const ModuleRecord& m) { o.Hex(m.lot, 4); });
  row.Missing(kLaneSwitches);
  cells.Cell(MaxPowerCell<Row>);
  cells.Decimal(&ModuleRecord::cdr_vendor);
  cells.Decimal(&ModuleRecord::max_fiber_length);
  row.EndGroup(CsvGroup::kManufacture);
}

template <typename Row>
void AppendRow(Row& row, const PhyCableRecord& r) {
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

// Writes lines of a module record; without one, each shows its missing value. The members are
// always inlined with their labels; see report_lines.h.
class ModuleLines {
 public:
  ModuleLines(FlushedReport& lines, const ModuleRecord* module) : lines_(lines), module_(module) {}

  template <typename Number>
  [[gnu::always_inline]] void Decimal(std::string_view label, Number ModuleRecord::*field,
                                      std::string_view missing = kReportNa) const {
    Line(label, missing, [&](const ModuleRecord& m) { lines_.Decimal(label, m.*field); });
  }
  template <typename Number>
  [[gnu::always_inline]] void Hex(std::string_view label, Number ModuleRecord::*field, int width,
                                  std::string_view missing = kReportNa) const {
    Line(label, missing, [&](const ModuleRecord& m) { lines_.Hex(label, m.*field, width); });
  }
  [[gnu::always_inline]] void Temperature(std::string_view label,
                                          std::uint16_t ModuleRecord::*word) const {
    Line(label, kReportNa, [&](const ModuleRecord& m) {
      lines_.Line(label, decode::AppendTemperature, module::TechnologyNibble(m),
                  WholeDegrees(m.*word), kReportNa);
    });
  }
  [[gnu::always_inline]] void Voltage(std::string_view label,
                                      std::uint16_t ModuleRecord::*word) const {
    Line(label, kReportNa, [&](const ModuleRecord& m) {
      lines_.Decimal(label, m.*word * decode::kMicrovoltsPerUnit, decode::kMicrovoltUnit);
    });
  }

 private:
  template <typename Write>
  [[gnu::always_inline]] void Line(std::string_view label, std::string_view missing,
                                   const Write& write) const {
    if (module_ == nullptr) {
      lines_.Text(label, missing);
    } else {
      write(*module_);
    }
  }

  FlushedReport& lines_;
  const ModuleRecord* module_;
};

void AppendIdentityLines(FlushedReport& lines, const PhyCableRecord& r) {
  lines.Text(label::kSource, r.source);
  lines.Line(label::kIdentifier, AppendIdentifier, r, Form::kReport);
  lines.Line(label::kVendor, AppendVendor, r);
  ModuleLines(lines, r.module).Hex(label::kOui, &ModuleRecord::vendor_oui, 1, kBareNa);
  lines.Line(label::kPn, AppendPn, r);
  lines.Line(label::kSn, AppendSn, r);
  lines.Line(label::kRev, AppendRevision, r);
  lines.Line(label::kLength, AppendLength, r, Form::kReport);
  lines.Line(label::kLengthByPrtl, AppendLengthByPrtl, r, Form::kReport);
  lines.Line(label::kLengthByReg, AppendLengthByReg, r, Form::kReport);
  lines.Line(label::kType, AppendType, r, Form::kReport);
  lines.Line(label::kSupportedSpeed, AppendSupportedSpeed, r, Form::kReport);
  ModuleLines(lines, r.module).Temperature(label::kTemperature, &ModuleRecord::temperature);
}

void AppendSettingLines(FlushedReport& lines, const PhyCableRecord& r) {
  ModuleLines(lines, r.module).Decimal(label::kPowerClass, &ModuleRecord::power_class, kBareNa);
  lines.Line(label::kNominalBitrate, AppendBitrate, r, Form::kReport);
  lines.Line(label::kCdrEnableTxRx, AppendCdrEnable, r);
  lines.Line(label::kInputEq, AppendLaneSetting, r, &ModuleRecord::tx_input_eq, Form::kReport);
  lines.Line(label::kOutputAmp, AppendLaneSetting, r, &ModuleRecord::rx_output_amp, Form::kReport);
  lines.Text(label::kOutputEmp, kReportNa);
  lines.Line(label::kFwVersion, AppendFwVersion, r, Form::kReport);
  lines.Line(label::kPhyAttenuation, AppendAttenuation, r, Form::kReport);
}

// The dBm of a power in units of 0.1 uW, for three decimals, by the natural logarithm of the number
// of units: half the time of `log10`, and a quarter less than the logarithm of the milliwatts, for
// which `std::log` takes another path near 1 mW. The results differ from those of `MilliwattsToDbm`
// in the last bits only; the text is the same for each of the 65,535 powers above 0 that a register
// can hold (see the test of every value).
double ShownDbm(double units) {
  constexpr double kDecibelsPerNeper = 4.342944819032518;  // 10 / ln(10)
  constexpr double kDbmOfUnit = -40.0;
  return kDecibelsPerNeper * std::log(units) + kDbmOfUnit;
}

// A raw 0 in each unit, which has no value in the other one. Lanes without a signal show it, and so
// do lanes that the module does not have: half of the lanes of a fabric with copper cables. It is
// copied, because formatting it would make a report a tenth slower. The size is a constant, so that
// the copy takes a few moves.
constexpr std::string_view kZeroMilliwatts = "0.000 mW, -999.999 dBm";
constexpr std::string_view kZeroDbm = "-999.999 mW, 0.000 dBm";
constexpr std::size_t kZeroSize = kZeroDbm.size();
static_assert(kZeroMilliwatts.size() == kZeroSize);

// The lines of the lanes are inlined with their labels; see report_lines.h.
[[gnu::always_inline]] inline void AppendPowerLines(FlushedReport& lines, std::string_view label,
                                                    const PhyCableRecord& r, LaneWords lanes) {
  if (r.module == nullptr) {
    for (int lane = 1; lane <= kPhyLanes; ++lane) {
      lines.LaneText(label, lane, MissingPower(Form::kReport));
    }
    return;
  }
  const std::uint16_t unit_flag = r.module->power_unit_flag;
  const bool is_dbm = module::IsDbm(unit_flag);
  const char* const zero = is_dbm ? kZeroDbm.data() : kZeroMilliwatts.data();
  for (int lane = 1; lane <= kPhyLanes; ++lane) {
    const std::uint16_t raw = module::LaneValue(r.module->*lanes, lane);
    if (raw == 0) {
      lines.LaneText(label, lane, {zero, kZeroSize});
    } else {
      lines.LanePower(label, lane, module::Milliwatts(raw, unit_flag),
                      is_dbm ? raw : ShownDbm(raw));
    }
  }
}

[[gnu::always_inline]] inline void AppendBiasLines(FlushedReport& lines, std::string_view label,
                                                   const PhyCableRecord& r) {
  for (int lane = 1; lane <= kPhyLanes; ++lane) {
    if (r.module == nullptr) {
      lines.LaneText(label, lane, kReportNa);
    } else {
      const std::uint32_t raw = module::LaneValue(r.module->tx_bias, lane);
      lines.LaneBias(label, lane, raw * module::kMicroamperesPerUnit);
    }
  }
}

void AppendMonitorLines(FlushedReport& lines, const PhyCableRecord& r) {
  lines.Line(label::kRxPowerType, AppendRxPowerType, r);
  AppendPowerLines(lines, label::kRxPower, r, &ModuleRecord::rx_power);
  AppendBiasLines(lines, label::kTxBias, r);
  AppendPowerLines(lines, label::kTxPower, r, &ModuleRecord::tx_power);
}

template <typename Flags>
[[gnu::always_inline]] inline void AppendFlagLine(FlushedReport& lines, std::string_view label,
                                                  const LatchedFlagsPage* page,
                                                  Flags (*select)(const LatchedFlagsPage&)) {
  if (page == nullptr) {
    lines.Text(label, kReportNa);
  } else {
    lines.Hex(label, select(*page), flags::Digits(select));
  }
}

void AppendFlagLines(FlushedReport& lines, const PhyCableRecord& r) {
  const LatchedFlagsPage* const page = r.latched_flags;
  AppendFlagLine(lines, label::kLoss, page, flags::Loss);
  AppendFlagLine(lines, label::kAdaptiveEqFault, page, flags::AdaptiveEqFault);
  AppendFlagLine(lines, label::kLossOfLock, page, flags::LossOfLock);
  AppendFlagLine(lines, label::kTemperatureFlags, page, flags::Temperature);
  AppendFlagLine(lines, label::kVoltageFlags, page, flags::Voltage);
  AppendFlagLine(lines, label::kRxPowerFlags, page, flags::RxPowerAlarms);
  AppendFlagLine(lines, label::kPhyTxBiasFlags, page, flags::TxBiasAlarms);
  AppendFlagLine(lines, label::kTxPowerFlags, page, flags::TxPowerAlarms);
}

void AppendTransmitterLines(FlushedReport& lines, const PhyCableRecord& r) {
  const ModuleLines module_lines(lines, r.module);
  module_lines.Voltage(label::kSupplyVoltage, &ModuleRecord::voltage);
  module_lines.Hex(label::kTransmitterTechnology, &ModuleRecord::cable_technology, 2);
  module_lines.Hex(label::kExtendedCompliance, &ModuleRecord::compliance_code, 2);
}

void AppendThresholdLines(FlushedReport& lines, const PhyCableRecord& r) {
  const ModuleLines module_lines(lines, r.module);
  module_lines.Temperature(label::kAlarmTemperatureHigh, &ModuleRecord::temp_high_threshold);
  module_lines.Temperature(label::kAlarmTemperatureLow, &ModuleRecord::temp_low_threshold);
  lines.Text(label::kWarnTemperatureHigh, kReportNa);
  lines.Text(label::kWarnTemperatureLow, kReportNa);
  module_lines.Voltage(label::kAlarmVoltageHigh, &ModuleRecord::voltage_high_threshold);
  module_lines.Voltage(label::kAlarmVoltageLow, &ModuleRecord::voltage_low_threshold);
  lines.Text(label::kWarnVoltageHigh, kReportNa);
  lines.Text(label::kWarnVoltageLow, kReportNa);
  module_lines.Decimal(label::kRxPowerHigh, &ModuleRecord::rx_power_high_threshold);
  module_lines.Decimal(label::kRxPowerLow, &ModuleRecord::rx_power_low_threshold);
  module_lines.Decimal(label::kTxPowerHigh, &ModuleRecord::tx_power_high_threshold);
  module_lines.Decimal(label::kTxPowerLow, &ModuleRecord::tx_power_low_threshold);
  module_lines.Decimal(label::kTxBiasHigh, &ModuleRecord::tx_bias_high_threshold);
  module_lines.Decimal(label::kTxBiasLow, &ModuleRecord::tx_bias_low_threshold);
}

void AppendManufactureLines(FlushedReport& lines, const PhyCableRecord& r) {
  lines.Line(label::kDateCode, AppendDateCode, r, Form::kReport);
  ModuleLines(lines, r.module).Hex(label::kLot, &ModuleRecord::lot, 4);
  lines.Text(label::kTxAdaptiveEqFreeze, kReportNa);
  lines.Text(label::kRxOutputDisable, kReportNa);
  lines.Text(label::kTxAdaptiveEqEnable, kReportNa);
  lines.Line(label::kOutputPreEmp, AppendLaneSetting, r, &ModuleRecord::rx_output_pre_emp,
             Form::kReport);
  lines.Line(label::kOutputPostEmp, AppendLaneSetting, r, &ModuleRecord::rx_output_post_emp,
             Form::kReport);
}

void AppendReport(FlushedReport& lines, const PhyCableRecord& r) {
  AppendIdentityLines(lines, r);
  AppendSettingLines(lines, r);
  AppendMonitorLines(lines, r);
  AppendFlagLines(lines, r);
  AppendTransmitterLines(lines, r);
  AppendThresholdLines(lines, r);
  AppendManufactureLines(lines, r);
}

}  // namespace

void WriteRow(std::ostream& os, const PhyCableRecord& r) {
  CsvRow row;
  AppendRow(row, r);
  row.WriteTo(os);
}

void VisitCells(CellSink& sink, const PhyCableRecord& r) {
  TypedRow row(sink);
  AppendRow(row, r);
}

void AppendCells(std::vector<std::string>& cells, const PhyCableRecord& r) {
  text::CellTexts row(cells);
  AppendRow(row, r);
}

void WriteReport(std::ostream& os, const PhyCableRecord& r) {
  FlushedReport lines(os);
  AppendReport(lines, r);
  lines.Finish();
}

}  // namespace phy
}  // namespace cable_info
