#pragma once

/// \file
/// The 177 columns of the cable table as data: the name, meaning, unit and form of each, and the
/// groups in which the row writers emit them. The header line, the program's list of columns and
/// the reference in docs/table.md all come from, or are compared with, this table.
///
/// \code
/// for (const cable_info::CsvColumn& column : cable_info::kCsvColumns) {
///   std::cout << column.name << " [" << column.unit << "]: " << column.meaning << '\n';
/// }
/// \endcode

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cable_info {

/// The form of a column's cells. Quotes are part of the cell. A missing value has texts of its own.
enum class CsvForm : std::uint8_t {
  kMissing,      ///< `"NA"`: the source has no such value
  kGuid,         ///< `0xa0b1c20000d4e500`: 64 bits in hexadecimal
  kText,         ///< `"Kestrel"`: a text between quotes, nothing inside escaped
  kBareText,     ///< `0x5a1`: a text without quotes
  kDecimal,      ///< `25`: a whole number
  kFlag,         ///< `1` or `0`
  kHex1,         ///< `0xff`: hexadecimal, at least 1 digit
  kHex2,         ///< `0x0c`: hexadecimal, 2 digits
  kHex4,         ///< `0x3031`: hexadecimal, 4 digits
  kFourNibbles,  ///< `4421`: hexadecimal, a digit for each of lanes 1 to 4
  kFourBytes,    ///< `03030303`: hexadecimal, two digits for each of lanes 1 to 4
  kFixed3,       ///< `0.871`: three decimals
  kCelsius,      ///< `"41C"`: whole degrees Celsius
  kMicrovolts,   ///< `"3295000uV"`: a voltage
  kVersion,      ///< `2.40.5012`: major.minor.sub-minor
  kDate,         ///< `24-03-15`: year, month, day
  kWatts,        ///< `3.5 W`: a power
};

/// The name of a form, as docs/table.md uses it.
std::string_view CsvFormName(CsvForm form);

/// Columns that belong together. Row writers emit whole groups, in this order.
enum class CsvGroup : std::uint8_t {
  kPort,         ///< NodeGuid .. PortNum: the port itself; the host writes these cells
  kIdentity,     ///< Source .. Rev: the source of the data, and who made the cable
  kType,         ///< LengthSMFiber .. Temperature: what the cable is: lengths, codes, texts
  kSettings,     ///< PowerClass .. Attenuation25G: power class, rate, lane settings, firmware,
                 ///< attenuation
  kMonitors,     ///< RXPowerType .. TX8Power: measured powers and bias currents of eight lanes
  kFlags,        ///< RX1LatchedLossIndicator .. LowTX4PowerWarning: latched flags
  kTransmitter,  ///< SupplyVoltageReporting .. ExtendedSpecificationComplianceCodes: supply and
                 ///< transmitter
  kThresholds,   ///< AlarmTemperatureHighThresh .. TXBiasLowThresh: thresholds of the monitors
  kManufacture,  ///< DateCode .. MaxFiberLength: date and lot, lane switches, maximum power, CDR
                 ///< chip, reach
};

/// A group and its number of columns.
struct CsvGroupSize {
  CsvGroup group;    ///< the group
  int column_count;  ///< its number of columns
};

/// All groups, in the order of the table.
inline constexpr std::array<CsvGroupSize, 9> kCsvGroups = {{
    {CsvGroup::kPort, 3},
    {CsvGroup::kIdentity, 6},
    {CsvGroup::kType, 18},
    {CsvGroup::kSettings, 16},
    {CsvGroup::kMonitors, 25},
    {CsvGroup::kFlags, 77},
    {CsvGroup::kTransmitter, 7},
    {CsvGroup::kThresholds, 14},
    {CsvGroup::kManufacture, 11},
}};

/// The number of columns of a group.
constexpr int GroupSize(CsvGroup group) {
  return kCsvGroups[static_cast<std::size_t>(group)].column_count;
}

/// A column of the cable table.
struct CsvColumn {
  std::string_view name;     ///< as in the header
  std::string_view meaning;  ///< in a few words
  /// The unit of the value, empty for a code or a text. "coded": a number as the module's memory
  /// map codes it. Where the sources differ, that of the PHY follows after a semicolon.
  std::string_view unit;
  CsvForm cable_form;  ///< the form of cells from the cable-information pages
  CsvForm phy_form;    ///< the form of cells from the PHY's registers
};

/// Makes `kCsvColumns`, which is the table to use.
constexpr std::array<CsvColumn, 177> MakeCsvColumns() {
  using Form = CsvForm;
  // clang-format off
  return {{
    // name, meaning, unit, form from the cable pages, form from the PHY
    // kPort: NodeGuid .. PortNum
    {"NodeGuid", "GUID of the node that holds the port", "", Form::kGuid, Form::kGuid},
    {"PortGuid", "GUID of the port", "", Form::kGuid, Form::kGuid},
    {"PortNum", "port number", "", Form::kDecimal, Form::kDecimal},
    // kIdentity: Source .. Rev
    {"Source", "source of the row's data: CABLE for the cable-information pages, else as the host named it", "", Form::kText, Form::kText},
    {"Vendor", "vendor name", "", Form::kText, Form::kText},
    {"OUI", "vendor OUI", "", Form::kBareText, Form::kHex1},
    {"PN", "vendor part number", "", Form::kText, Form::kText},
    {"SN", "vendor serial number", "", Form::kText, Form::kText},
    {"Rev", "vendor revision", "", Form::kText, Form::kText},
    // kType: LengthSMFiber .. Temperature
    {"LengthSMFiber", "length supported on single-mode fibre", "coded", Form::kDecimal, Form::kDecimal},
    {"LengthOM5", "length supported on OM5 multi-mode fibre", "coded", Form::kMissing, Form::kDecimal},
    {"LengthOM4", "length supported on OM4 multi-mode fibre", "coded", Form::kMissing, Form::kDecimal},
    {"LengthOM3", "length supported on OM3 multi-mode fibre", "coded", Form::kDecimal, Form::kDecimal},
    {"LengthOM2", "length supported on OM2 multi-mode fibre", "coded", Form::kDecimal, Form::kDecimal},
    {"LengthOM1", "length supported on OM1 multi-mode fibre", "coded", Form::kDecimal, Form::kDecimal},
    {"LengthCopperOrActive", "length of a copper or active cable", "coded", Form::kDecimal, Form::kDecimal},
    {"Identifier", "module identifier code", "", Form::kHex2, Form::kHex2},
    {"IdentifierStr", "module identifier as text", "", Form::kText, Form::kText},
    {"Connector", "connector type code", "", Form::kHex2, Form::kHex2},
    {"Type", "cable type or transmitter technology code", "", Form::kDecimal, Form::kDecimal},
    {"SupportedSpeed", "supported-speed bit mask", "", Form::kDecimal, Form::kDecimal},
    {"LengthDesc", "cable length as text", "m", Form::kText, Form::kText},
    {"LengthDescByPRTL", "cable length measured by round-trip latency", "m", Form::kText, Form::kText},
    {"LengthDescByReg", "cable length as read from the module register", "m", Form::kText, Form::kText},
    {"TypeDesc", "cable type as text", "", Form::kText, Form::kText},
    {"SupportedSpeedDesc", "supported speeds as text", "", Form::kText, Form::kText},
    {"Temperature", "module temperature", "C", Form::kCelsius, Form::kCelsius},
    // kSettings: PowerClass .. Attenuation25G
    {"PowerClass", "module power class", "", Form::kDecimal, Form::kDecimal},
    {"NominalBitrate", "nominal bit rate", "Gb/s; PHY: Mb/s", Form::kDecimal, Form::kDecimal},
    {"CDREnableTxRx", "clock-and-data-recovery enable state, both directions", "", Form::kHex1, Form::kMissing},
    {"CDREnableTx", "clock-and-data-recovery enable state, transmit lanes", "", Form::kMissing, Form::kHex2},
    {"CDREnableRx", "clock-and-data-recovery enable state, receive lanes", "", Form::kMissing, Form::kHex2},
    {"InputEq", "transmit input equalization setting", "", Form::kFourNibbles, Form::kFourBytes},
    {"OutputAmp", "receive output amplitude setting", "", Form::kFourNibbles, Form::kFourBytes},
    {"OutputEmp", "receive output emphasis setting", "", Form::kFourNibbles, Form::kMissing},
    {"OutputPreEmp", "receive output pre-emphasis setting", "", Form::kMissing, Form::kFourBytes},
    {"OutputPostEmp", "receive output post-emphasis setting", "", Form::kMissing, Form::kFourBytes},
    {"FWVersion", "module firmware version", "", Form::kBareText, Form::kVersion},
    {"Attenuation2.5G", "copper attenuation at 2.5 GHz", "dB", Form::kDecimal, Form::kMissing},
    {"Attenuation5G", "copper attenuation at 5 GHz", "dB", Form::kDecimal, Form::kDecimal},
    {"Attenuation7G", "copper attenuation at 7 GHz", "dB", Form::kDecimal, Form::kDecimal},
    {"Attenuation12G", "copper attenuation at 12 GHz", "dB", Form::kDecimal, Form::kDecimal},
    {"Attenuation25G", "copper attenuation at 25 GHz", "dB", Form::kMissing, Form::kDecimal},
    // kMonitors: RXPowerType .. TX8Power
    {"RXPowerType", "how receive power is measured", "", Form::kFlag, Form::kDecimal},
    {"RX1Power", "receive power, lane 1", "mW", Form::kFixed3, Form::kFixed3},
    {"RX2Power", "receive power, lane 2", "mW", Form::kFixed3, Form::kFixed3},
    {"RX3Power", "receive power, lane 3", "mW", Form::kFixed3, Form::kFixed3},
    {"RX4Power", "receive power, lane 4", "mW", Form::kFixed3, Form::kFixed3},
    {"RX5Power", "receive power, lane 5", "mW", Form::kMissing, Form::kFixed3},
    {"RX6Power", "receive power, lane 6", "mW", Form::kMissing, Form::kFixed3},
    {"RX7Power", "receive power, lane 7", "mW", Form::kMissing, Form::kFixed3},
    {"RX8Power", "receive power, lane 8", "mW", Form::kMissing, Form::kFixed3},
    {"TX1Bias", "transmit bias current, lane 1", "mA", Form::kFixed3, Form::kFixed3},
    {"TX2Bias", "transmit bias current, lane 2", "mA", Form::kFixed3, Form::kFixed3},
    {"TX3Bias", "transmit bias current, lane 3", "mA", Form::kFixed3, Form::kFixed3},
    {"TX4Bias", "transmit bias current, lane 4", "mA", Form::kFixed3, Form::kFixed3},
    {"TX5Bias", "transmit bias current, lane 5", "mA", Form::kMissing, Form::kFixed3},
    {"TX6Bias", "transmit bias current, lane 6", "mA", Form::kMissing, Form::kFixed3},
    {"TX7Bias", "transmit bias current, lane 7", "mA", Form::kMissing, Form::kFixed3},
    {"TX8Bias", "transmit bias current, lane 8", "mA", Form::kMissing, Form::kFixed3},
    {"TX1Power", "transmit power, lane 1", "mW", Form::kFixed3, Form::kFixed3},
    {"TX2Power", "transmit power, lane 2", "mW", Form::kFixed3, Form::kFixed3},
    {"TX3Power", "transmit power, lane 3", "mW", Form::kFixed3, Form::kFixed3},
    {"TX4Power", "transmit power, lane 4", "mW", Form::kFixed3, Form::kFixed3},
    {"TX5Power", "transmit power, lane 5", "mW", Form::kMissing, Form::kFixed3},
    {"TX6Power", "transmit power, lane 6", "mW", Form::kMissing, Form::kFixed3},
    {"TX7Power", "transmit power, lane 7", "mW", Form::kMissing, Form::kFixed3},
    {"TX8Power", "transmit power, lane 8", "mW", Form::kMissing, Form::kFixed3},
    // kFlags: RX1LatchedLossIndicator .. LowTX4PowerWarning
    {"RX1LatchedLossIndicator", "latched loss-of-signal flag, receive lane 1", "", Form::kFlag, Form::kFlag},
    {"RX2LatchedLossIndicator", "latched loss-of-signal flag, receive lane 2", "", Form::kFlag, Form::kFlag},
    {"RX3LatchedLossIndicator", "latched loss-of-signal flag, receive lane 3", "", Form::kFlag, Form::kFlag},
    {"RX4LatchedLossIndicator", "latched loss-of-signal flag, receive lane 4", "", Form::kFlag, Form::kFlag},
    {"TX1LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 1", "", Form::kFlag, Form::kFlag},
    {"TX2LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 2", "", Form::kFlag, Form::kFlag},
    {"TX3LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 3", "", Form::kFlag, Form::kFlag},
    {"TX4LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 4", "", Form::kFlag, Form::kFlag},
    {"TX1AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 1", "", Form::kFlag, Form::kFlag},
    {"TX2AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 2", "", Form::kFlag, Form::kFlag},
    {"TX3AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 3", "", Form::kFlag, Form::kFlag},
    {"TX4AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 4", "", Form::kFlag, Form::kFlag},
    {"RX1CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 1", "", Form::kFlag, Form::kFlag},
    {"RX2CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 2", "", Form::kFlag, Form::kFlag},
    {"RX3CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 3", "", Form::kFlag, Form::kFlag},
    {"RX4CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 4", "", Form::kFlag, Form::kFlag},
    {"TX1CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 1", "", Form::kFlag, Form::kFlag},
    {"TX2CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 2", "", Form::kFlag, Form::kFlag},
    {"TX3CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 3", "", Form::kFlag, Form::kFlag},
    {"TX4CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 4", "", Form::kFlag, Form::kFlag},
    {"HighTemperatureAlarm", "latched high temperature alarm flag", "", Form::kFlag, Form::kFlag},
    {"LowTemperatureAlarm", "latched low temperature alarm flag", "", Form::kFlag, Form::kFlag},
    {"HighTemperatureWarning", "latched high temperature warning flag", "", Form::kFlag, Form::kFlag},
    {"LowTemperatureWarning", "latched low temperature warning flag", "", Form::kFlag, Form::kFlag},
    {"InitializationFlagComplete", "module initialization-complete flag", "", Form::kFlag, Form::kMissing},
    {"HighSupplyVoltageAlarm", "latched high supply-voltage alarm flag", "", Form::kFlag, Form::kFlag},
    {"LowSupplyVoltageAlarm", "latched low supply-voltage alarm flag", "", Form::kFlag, Form::kFlag},
    {"HighSupplyVoltageWarning", "latched high supply-voltage warning flag", "", Form::kFlag, Form::kFlag},
    {"LowSupplyVoltageWarning", "latched low supply-voltage warning flag", "", Form::kFlag, Form::kFlag},
    {"HighRX1PowerAlarm", "latched high receive power alarm flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"LowRX1PowerAlarm", "latched low receive power alarm flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"HighRX1PowerWarning", "latched high receive power warning flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"LowRX1PowerWarning", "latched low receive power warning flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"HighRX2PowerAlarm", "latched high receive power alarm flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"LowRX2PowerAlarm", "latched low receive power alarm flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"HighRX2PowerWarning", "latched high receive power warning flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"LowRX2PowerWarning", "latched low receive power warning flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"HighRX3PowerAlarm", "latched high receive power alarm flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"LowRX3PowerAlarm", "latched low receive power alarm flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"HighRX3PowerWarning", "latched high receive power warning flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"LowRX3PowerWarning", "latched low receive power warning flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"HighRX4PowerAlarm", "latched high receive power alarm flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"LowRX4PowerAlarm", "latched low receive power alarm flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"HighRX4PowerWarning", "latched high receive power warning flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"LowRX4PowerWarning", "latched low receive power warning flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"HighTX1BiasAlarm", "latched high transmit bias alarm flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"LowTX1BiasAlarm", "latched low transmit bias alarm flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"HighTX1BiasWarning", "latched high transmit bias warning flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"LowTX1BiasWarning", "latched low transmit bias warning flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"HighTX2BiasAlarm", "latched high transmit bias alarm flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"LowTX2BiasAlarm", "latched low transmit bias alarm flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"HighTX2BiasWarning", "latched high transmit bias warning flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"LowTX2BiasWarning", "latched low transmit bias warning flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"HighTX3BiasAlarm", "latched high transmit bias alarm flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"LowTX3BiasAlarm", "latched low transmit bias alarm flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"HighTX3BiasWarning", "latched high transmit bias warning flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"LowTX3BiasWarning", "latched low transmit bias warning flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"HighTX4BiasAlarm", "latched high transmit bias alarm flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"LowTX4BiasAlarm", "latched low transmit bias alarm flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"HighTX4BiasWarning", "latched high transmit bias warning flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"LowTX4BiasWarning", "latched low transmit bias warning flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"HighTX1PowerAlarm", "latched high transmit power alarm flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"LowTX1PowerAlarm", "latched low transmit power alarm flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"HighTX1PowerWarning", "latched high transmit power warning flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"LowTX1PowerWarning", "latched low transmit power warning flag, lane 1", "", Form::kFlag, Form::kFlag},
    {"HighTX2PowerAlarm", "latched high transmit power alarm flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"LowTX2PowerAlarm", "latched low transmit power alarm flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"HighTX2PowerWarning", "latched high transmit power warning flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"LowTX2PowerWarning", "latched low transmit power warning flag, lane 2", "", Form::kFlag, Form::kFlag},
    {"HighTX3PowerAlarm", "latched high transmit power alarm flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"LowTX3PowerAlarm", "latched low transmit power alarm flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"HighTX3PowerWarning", "latched high transmit power warning flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"LowTX3PowerWarning", "latched low transmit power warning flag, lane 3", "", Form::kFlag, Form::kFlag},
    {"HighTX4PowerAlarm", "latched high transmit power alarm flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"LowTX4PowerAlarm", "latched low transmit power alarm flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"HighTX4PowerWarning", "latched high transmit power warning flag, lane 4", "", Form::kFlag, Form::kFlag},
    {"LowTX4PowerWarning", "latched low transmit power warning flag, lane 4", "", Form::kFlag, Form::kFlag},
    // kTransmitter: SupplyVoltageReporting .. ExtendedSpecificationComplianceCodes
    {"SupplyVoltageReporting", "supply voltage as measured by the module", "uV", Form::kMicrovolts, Form::kMicrovolts},
    {"TransmitterTechnology", "transmitter technology", "", Form::kHex2, Form::kHex2},
    {"ActiveWavelengthControl", "transmitter has active wavelength control", "", Form::kFlag, Form::kFlag},
    {"CooledTransmitterDevice", "transmitter is cooled", "", Form::kFlag, Form::kFlag},
    {"ActivePinDetector", "receiver uses an active PIN detector", "", Form::kFlag, Form::kFlag},
    {"TunableTransmitter", "transmitter is tunable", "", Form::kFlag, Form::kFlag},
    {"ExtendedSpecificationComplianceCodes", "extended specification compliance code", "", Form::kDecimal, Form::kDecimal},
    // kThresholds: AlarmTemperatureHighThresh .. TXBiasLowThresh
    {"AlarmTemperatureHighThresh", "alarm high temperature threshold", "C", Form::kCelsius, Form::kCelsius},
    {"AlarmTemperatureLowThresh", "alarm low temperature threshold", "C", Form::kCelsius, Form::kCelsius},
    {"WarnTemperatureHighThresh", "warning high temperature threshold", "C", Form::kCelsius, Form::kMissing},
    {"WarnTemperatureLowThresh", "warning low temperature threshold", "C", Form::kCelsius, Form::kMissing},
    {"AlarmVoltageHighThresh", "alarm high supply-voltage threshold", "uV", Form::kMicrovolts, Form::kMicrovolts},
    {"AlarmVoltageLowThresh", "alarm low supply-voltage threshold", "uV", Form::kMicrovolts, Form::kMicrovolts},
    {"WarnVoltageHighThresh", "warning high supply-voltage threshold", "uV", Form::kMicrovolts, Form::kMissing},
    {"WarnVoltageLowThresh", "warning low supply-voltage threshold", "uV", Form::kMicrovolts, Form::kMissing},
    {"RXPowerHighThresh", "receive power high threshold", "0.1 uW or dBm", Form::kMissing, Form::kDecimal},
    {"RXPowerLowThresh", "receive power low threshold", "0.1 uW or dBm", Form::kMissing, Form::kDecimal},
    {"TXPowerHighThresh", "transmit power high threshold", "0.1 uW or dBm", Form::kMissing, Form::kDecimal},
    {"TXPowerLowThresh", "transmit power low threshold", "0.1 uW or dBm", Form::kMissing, Form::kDecimal},
    {"TXBiasHighThresh", "transmit bias high threshold", "2 uA", Form::kMissing, Form::kDecimal},
    {"TXBiasLowThresh", "transmit bias low threshold", "2 uA", Form::kMissing, Form::kDecimal},
    // kManufacture: DateCode .. MaxFiberLength
    {"DateCode", "vendor date code", "", Form::kBareText, Form::kDate},
    {"Lot", "vendor lot code", "", Form::kHex4, Form::kHex4},
    {"TX1AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 1", "", Form::kFlag, Form::kMissing},
    {"TX2AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 2", "", Form::kFlag, Form::kMissing},
    {"TX3AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 3", "", Form::kFlag, Form::kMissing},
    {"TX4AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 4", "", Form::kFlag, Form::kMissing},
    {"RXOutputDisable", "receive output disable state", "", Form::kHex1, Form::kMissing},
    {"TXAdaptiveEqualizationEnable", "transmit adaptive equalization enable state", "", Form::kHex1, Form::kMissing},
    {"MaxPower", "maximum module power", "W", Form::kMissing, Form::kWatts},
    {"CdrVendor", "clock-and-data-recovery chip vendor code", "", Form::kMissing, Form::kDecimal},
    {"MaxFiberLength", "maximum fibre length", "", Form::kMissing, Form::kDecimal},
  }};
  // clang-format on
}

/// The columns of the cable table, in order. The host writes the first three cells of a row, the
/// port's record the other 174.
inline constexpr std::array<CsvColumn, 177> kCsvColumns = MakeCsvColumns();

/// The number of columns that a port's record writes.
inline constexpr int kRecordColumnCount =
    static_cast<int>(kCsvColumns.size()) - GroupSize(CsvGroup::kPort);

/// The number of columns from `first` to `last`, both included; 0 when either is no column. For
/// compile-time use: it searches the table.
constexpr int ColumnCount(std::string_view first, std::string_view last) {
  int count = 0;
  for (const CsvColumn& column : kCsvColumns) {
    if (column.name == first || count > 0) ++count;
    if (count > 0 && column.name == last) return count;
  }
  return 0;
}

}  // namespace cable_info
