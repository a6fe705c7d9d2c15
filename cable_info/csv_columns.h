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

/// The form of a column's cells. Quotes are part of the cell. Missing values have other texts.
enum class CsvForm : std::uint8_t {
  kMissing,          ///< `"NA"`: the source has no such value
  kGuid,             ///< `0xa0b1c20000d4e500`: 64 bits in hexadecimal
  kText,             ///< `"Kestrel"`: a text between quotes, nothing inside escaped
  kBareText,         ///< `0x5a1`: a text without quotes
  kDecimal,          ///< `25`: a whole number
  kFlag,             ///< `1` or `0`
  kHex1,             ///< `0xff`: hexadecimal, at least 1 digit
  kHex2,             ///< `0x0c`: hexadecimal, 2 digits
  kHex4,             ///< `0x3031`: hexadecimal, 4 digits
  kFourNibbles,      ///< `4421`: hexadecimal, a digit for each of lanes 1 to 4
  kFourBytes,        ///< `03030303`: hexadecimal, two digits for each of lanes 1 to 4
  kFixed3,           ///< `0.871`: three decimals
  kCelsius,          ///< `"41C"`: whole degrees Celsius
  kMicrovolts,       ///< `"3295000uV"`: a voltage
  kFirmwareVersion,  ///< `2.40.5012`: major.minor.sub-minor
  kDate,             ///< `24-03-15`: year, month, day
  kWatts,            ///< `3.5 W`: a power
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
// NOLINTNEXTLINE(readability-function-size): a table
constexpr std::array<CsvColumn, 177> MakeCsvColumns() {
  using F = CsvForm;
  // clang-format off
  return {{
    // name, meaning, unit, form from the cable pages, form from the PHY
    // kPort: NodeGuid .. PortNum
    {"NodeGuid", "GUID of the node that holds the port", "", F::kGuid, F::kGuid},
    {"PortGuid", "GUID of the port", "", F::kGuid, F::kGuid},
    {"PortNum", "port number", "", F::kDecimal, F::kDecimal},
    // kIdentity: Source .. Rev
    {"Source", "source of the row's data: CABLE for the cable-information pages, else as the host named it", "", F::kText, F::kText},
    {"Vendor", "vendor name", "", F::kText, F::kText},
    {"OUI", "vendor OUI", "", F::kBareText, F::kHex1},
    {"PN", "vendor part number", "", F::kText, F::kText},
    {"SN", "vendor serial number", "", F::kText, F::kText},
    {"Rev", "vendor revision", "", F::kText, F::kText},
    // kType: LengthSMFiber .. Temperature
    {"LengthSMFiber", "length supported on single-mode fibre", "coded", F::kDecimal, F::kDecimal},
    {"LengthOM5", "length supported on OM5 multi-mode fibre", "coded", F::kMissing, F::kDecimal},
    {"LengthOM4", "length supported on OM4 multi-mode fibre", "coded", F::kMissing, F::kDecimal},
    {"LengthOM3", "length supported on OM3 multi-mode fibre", "coded", F::kDecimal, F::kDecimal},
    {"LengthOM2", "length supported on OM2 multi-mode fibre", "coded", F::kDecimal, F::kDecimal},
    {"LengthOM1", "length supported on OM1 multi-mode fibre", "coded", F::kDecimal, F::kDecimal},
    {"LengthCopperOrActive", "length of a copper or active cable", "coded", F::kDecimal, F::kDecimal},
    {"Identifier", "module identifier code", "", F::kHex2, F::kHex2},
    {"IdentifierStr", "module identifier as text", "", F::kText, F::kText},
    {"Connector", "connector type code", "", F::kHex2, F::kHex2},
    {"Type", "cable type or transmitter technology code", "", F::kDecimal, F::kDecimal},
    {"SupportedSpeed", "supported-speed bit mask", "", F::kDecimal, F::kDecimal},
    {"LengthDesc", "cable length as text", "m", F::kText, F::kText},
    {"LengthDescByPRTL", "cable length measured by round-trip latency", "m", F::kText, F::kText},
    {"LengthDescByReg", "cable length as read from the module register", "m", F::kText, F::kText},
    {"TypeDesc", "cable type as text", "", F::kText, F::kText},
    {"SupportedSpeedDesc", "supported speeds as text", "", F::kText, F::kText},
    {"Temperature", "module temperature", "C", F::kCelsius, F::kCelsius},
    // kSettings: PowerClass .. Attenuation25G
    {"PowerClass", "module power class", "", F::kDecimal, F::kDecimal},
    {"NominalBitrate", "nominal bit rate", "Gb/s; PHY: Mb/s", F::kDecimal, F::kDecimal},
    {"CDREnableTxRx", "clock-and-data-recovery enable state, both directions", "", F::kHex1, F::kMissing},
    {"CDREnableTx", "clock-and-data-recovery enable state, transmit lanes", "", F::kMissing, F::kHex2},
    {"CDREnableRx", "clock-and-data-recovery enable state, receive lanes", "", F::kMissing, F::kHex2},
    {"InputEq", "transmit input equalization setting", "", F::kFourNibbles, F::kFourBytes},
    {"OutputAmp", "receive output amplitude setting", "", F::kFourNibbles, F::kFourBytes},
    {"OutputEmp", "receive output emphasis setting", "", F::kFourNibbles, F::kMissing},
    {"OutputPreEmp", "receive output pre-emphasis setting", "", F::kMissing, F::kFourBytes},
    {"OutputPostEmp", "receive output post-emphasis setting", "", F::kMissing, F::kFourBytes},
    {"FWVersion", "module firmware version", "", F::kBareText, F::kFirmwareVersion},
    {"Attenuation2.5G", "copper attenuation at 2.5 GHz", "dB", F::kDecimal, F::kMissing},
    {"Attenuation5G", "copper attenuation at 5 GHz", "dB", F::kDecimal, F::kDecimal},
    {"Attenuation7G", "copper attenuation at 7 GHz", "dB", F::kDecimal, F::kDecimal},
    {"Attenuation12G", "copper attenuation at 12 GHz", "dB", F::kDecimal, F::kDecimal},
    {"Attenuation25G", "copper attenuation at 25 GHz", "dB", F::kMissing, F::kDecimal},
    // kMonitors: RXPowerType .. TX8Power
    {"RXPowerType", "how receive power is measured", "", F::kFlag, F::kDecimal},
    {"RX1Power", "receive power, lane 1", "mW", F::kFixed3, F::kFixed3},
    {"RX2Power", "receive power, lane 2", "mW", F::kFixed3, F::kFixed3},
    {"RX3Power", "receive power, lane 3", "mW", F::kFixed3, F::kFixed3},
    {"RX4Power", "receive power, lane 4", "mW", F::kFixed3, F::kFixed3},
    {"RX5Power", "receive power, lane 5", "mW", F::kMissing, F::kFixed3},
    {"RX6Power", "receive power, lane 6", "mW", F::kMissing, F::kFixed3},
    {"RX7Power", "receive power, lane 7", "mW", F::kMissing, F::kFixed3},
    {"RX8Power", "receive power, lane 8", "mW", F::kMissing, F::kFixed3},
    {"TX1Bias", "transmit bias current, lane 1", "mA", F::kFixed3, F::kFixed3},
    {"TX2Bias", "transmit bias current, lane 2", "mA", F::kFixed3, F::kFixed3},
    {"TX3Bias", "transmit bias current, lane 3", "mA", F::kFixed3, F::kFixed3},
    {"TX4Bias", "transmit bias current, lane 4", "mA", F::kFixed3, F::kFixed3},
    {"TX5Bias", "transmit bias current, lane 5", "mA", F::kMissing, F::kFixed3},
    {"TX6Bias", "transmit bias current, lane 6", "mA", F::kMissing, F::kFixed3},
    {"TX7Bias", "transmit bias current, lane 7", "mA", F::kMissing, F::kFixed3},
    {"TX8Bias", "transmit bias current, lane 8", "mA", F::kMissing, F::kFixed3},
    {"TX1Power", "transmit power, lane 1", "mW", F::kFixed3, F::kFixed3},
    {"TX2Power", "transmit power, lane 2", "mW", F::kFixed3, F::kFixed3},
    {"TX3Power", "transmit power, lane 3", "mW", F::kFixed3, F::kFixed3},
    {"TX4Power", "transmit power, lane 4", "mW", F::kFixed3, F::kFixed3},
    {"TX5Power", "transmit power, lane 5", "mW", F::kMissing, F::kFixed3},
    {"TX6Power", "transmit power, lane 6", "mW", F::kMissing, F::kFixed3},
    {"TX7Power", "transmit power, lane 7", "mW", F::kMissing, F::kFixed3},
    {"TX8Power", "transmit power, lane 8", "mW", F::kMissing, F::kFixed3},
    // kFlags: RX1LatchedLossIndicator .. LowTX4PowerWarning
    {"RX1LatchedLossIndicator", "latched loss-of-signal flag, receive lane 1", "", F::kFlag, F::kFlag},
    {"RX2LatchedLossIndicator", "latched loss-of-signal flag, receive lane 2", "", F::kFlag, F::kFlag},
    {"RX3LatchedLossIndicator", "latched loss-of-signal flag, receive lane 3", "", F::kFlag, F::kFlag},
    {"RX4LatchedLossIndicator", "latched loss-of-signal flag, receive lane 4", "", F::kFlag, F::kFlag},
    {"TX1LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 1", "", F::kFlag, F::kFlag},
    {"TX2LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 2", "", F::kFlag, F::kFlag},
    {"TX3LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 3", "", F::kFlag, F::kFlag},
    {"TX4LatchedLossIndicator", "latched loss-of-signal flag, transmit lane 4", "", F::kFlag, F::kFlag},
    {"TX1AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 1", "", F::kFlag, F::kFlag},
    {"TX2AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 2", "", F::kFlag, F::kFlag},
    {"TX3AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 3", "", F::kFlag, F::kFlag},
    {"TX4AdaptiveEqualizationFaultIndicator", "latched adaptive-equalization fault flag, transmit lane 4", "", F::kFlag, F::kFlag},
    {"RX1CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 1", "", F::kFlag, F::kFlag},
    {"RX2CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 2", "", F::kFlag, F::kFlag},
    {"RX3CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 3", "", F::kFlag, F::kFlag},
    {"RX4CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, receive lane 4", "", F::kFlag, F::kFlag},
    {"TX1CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 1", "", F::kFlag, F::kFlag},
    {"TX2CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 2", "", F::kFlag, F::kFlag},
    {"TX3CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 3", "", F::kFlag, F::kFlag},
    {"TX4CDRLOL", "latched clock-and-data-recovery loss-of-lock flag, transmit lane 4", "", F::kFlag, F::kFlag},
    {"HighTemperatureAlarm", "latched high temperature alarm flag", "", F::kFlag, F::kFlag},
    {"LowTemperatureAlarm", "latched low temperature alarm flag", "", F::kFlag, F::kFlag},
    {"HighTemperatureWarning", "latched high temperature warning flag", "", F::kFlag, F::kFlag},
    {"LowTemperatureWarning", "latched low temperature warning flag", "", F::kFlag, F::kFlag},
    {"InitializationFlagComplete", "module initialization-complete flag", "", F::kFlag, F::kMissing},
    {"HighSupplyVoltageAlarm", "latched high supply-voltage alarm flag", "", F::kFlag, F::kFlag},
    {"LowSupplyVoltageAlarm", "latched low supply-voltage alarm flag", "", F::kFlag, F::kFlag},
    {"HighSupplyVoltageWarning", "latched high supply-voltage warning flag", "", F::kFlag, F::kFlag},
    {"LowSupplyVoltageWarning", "latched low supply-voltage warning flag", "", F::kFlag, F::kFlag},
    {"HighRX1PowerAlarm", "latched high receive power alarm flag, lane 1", "", F::kFlag, F::kFlag},
    {"LowRX1PowerAlarm", "latched low receive power alarm flag, lane 1", "", F::kFlag, F::kFlag},
    {"HighRX1PowerWarning", "latched high receive power warning flag, lane 1", "", F::kFlag, F::kFlag},
    {"LowRX1PowerWarning", "latched low receive power warning flag, lane 1", "", F::kFlag, F::kFlag},
    {"HighRX2PowerAlarm", "latched high receive power alarm flag, lane 2", "", F::kFlag, F::kFlag},
    {"LowRX2PowerAlarm", "latched low receive power alarm flag, lane 2", "", F::kFlag, F::kFlag},
    {"HighRX2PowerWarning", "latched high receive power warning flag, lane 2", "", F::kFlag, F::kFlag},
    {"LowRX2PowerWarning", "latched low receive power warning flag, lane 2", "", F::kFlag, F::kFlag},
    {"HighRX3PowerAlarm", "latched high receive power alarm flag, lane 3", "", F::kFlag, F::kFlag},
    {"LowRX3PowerAlarm", "latched low receive power alarm flag, lane 3", "", F::kFlag, F::kFlag},
    {"HighRX3PowerWarning", "latched high receive power warning flag, lane 3", "", F::kFlag, F::kFlag},
    {"LowRX3PowerWarning", "latched low receive power warning flag, lane 3", "", F::kFlag, F::kFlag},
    {"HighRX4PowerAlarm", "latched high receive power alarm flag, lane 4", "", F::kFlag, F::kFlag},
    {"LowRX4PowerAlarm", "latched low receive power alarm flag, lane 4", "", F::kFlag, F::kFlag},
    {"HighRX4PowerWarning", "latched high receive power warning flag, lane 4", "", F::kFlag, F::kFlag},
    {"LowRX4PowerWarning", "latched low receive power warning flag, lane 4", "", F::kFlag, F::kFlag},
    {"HighTX1BiasAlarm", "latched high transmit bias alarm flag, lane 1", "", F::kFlag, F::kFlag},
    {"LowTX1BiasAlarm", "latched low transmit bias alarm flag, lane 1", "", F::kFlag, F::kFlag},
    {"HighTX1BiasWarning", "latched high transmit bias warning flag, lane 1", "", F::kFlag, F::kFlag},
    {"LowTX1BiasWarning", "latched low transmit bias warning flag, lane 1", "", F::kFlag, F::kFlag},
    {"HighTX2BiasAlarm", "latched high transmit bias alarm flag, lane 2", "", F::kFlag, F::kFlag},
    {"LowTX2BiasAlarm", "latched low transmit bias alarm flag, lane 2", "", F::kFlag, F::kFlag},
    {"HighTX2BiasWarning", "latched high transmit bias warning flag, lane 2", "", F::kFlag, F::kFlag},
    {"LowTX2BiasWarning", "latched low transmit bias warning flag, lane 2", "", F::kFlag, F::kFlag},
    {"HighTX3BiasAlarm", "latched high transmit bias alarm flag, lane 3", "", F::kFlag, F::kFlag},
    {"LowTX3BiasAlarm", "latched low transmit bias alarm flag, lane 3", "", F::kFlag, F::kFlag},
    {"HighTX3BiasWarning", "latched high transmit bias warning flag, lane 3", "", F::kFlag, F::kFlag},
    {"LowTX3BiasWarning", "latched low transmit bias warning flag, lane 3", "", F::kFlag, F::kFlag},
    {"HighTX4BiasAlarm", "latched high transmit bias alarm flag, lane 4", "", F::kFlag, F::kFlag},
    {"LowTX4BiasAlarm", "latched low transmit bias alarm flag, lane 4", "", F::kFlag, F::kFlag},
    {"HighTX4BiasWarning", "latched high transmit bias warning flag, lane 4", "", F::kFlag, F::kFlag},
    {"LowTX4BiasWarning", "latched low transmit bias warning flag, lane 4", "", F::kFlag, F::kFlag},
    {"HighTX1PowerAlarm", "latched high transmit power alarm flag, lane 1", "", F::kFlag, F::kFlag},
    {"LowTX1PowerAlarm", "latched low transmit power alarm flag, lane 1", "", F::kFlag, F::kFlag},
    {"HighTX1PowerWarning", "latched high transmit power warning flag, lane 1", "", F::kFlag, F::kFlag},
    {"LowTX1PowerWarning", "latched low transmit power warning flag, lane 1", "", F::kFlag, F::kFlag},
    {"HighTX2PowerAlarm", "latched high transmit power alarm flag, lane 2", "", F::kFlag, F::kFlag},
    {"LowTX2PowerAlarm", "latched low transmit power alarm flag, lane 2", "", F::kFlag, F::kFlag},
    {"HighTX2PowerWarning", "latched high transmit power warning flag, lane 2", "", F::kFlag, F::kFlag},
    {"LowTX2PowerWarning", "latched low transmit power warning flag, lane 2", "", F::kFlag, F::kFlag},
    {"HighTX3PowerAlarm", "latched high transmit power alarm flag, lane 3", "", F::kFlag, F::kFlag},
    {"LowTX3PowerAlarm", "latched low transmit power alarm flag, lane 3", "", F::kFlag, F::kFlag},
    {"HighTX3PowerWarning", "latched high transmit power warning flag, lane 3", "", F::kFlag, F::kFlag},
    {"LowTX3PowerWarning", "latched low transmit power warning flag, lane 3", "", F::kFlag, F::kFlag},
    {"HighTX4PowerAlarm", "latched high transmit power alarm flag, lane 4", "", F::kFlag, F::kFlag},
    {"LowTX4PowerAlarm", "latched low transmit power alarm flag, lane 4", "", F::kFlag, F::kFlag},
    {"HighTX4PowerWarning", "latched high transmit power warning flag, lane 4", "", F::kFlag, F::kFlag},
    {"LowTX4PowerWarning", "latched low transmit power warning flag, lane 4", "", F::kFlag, F::kFlag},
    // kTransmitter: SupplyVoltageReporting .. ExtendedSpecificationComplianceCodes
    {"SupplyVoltageReporting", "supply voltage as measured by the module", "uV", F::kMicrovolts, F::kMicrovolts},
    {"TransmitterTechnology", "transmitter technology", "", F::kHex2, F::kHex2},
    {"ActiveWavelengthControl", "transmitter has active wavelength control", "", F::kFlag, F::kFlag},
    {"CooledTransmitterDevice", "transmitter is cooled", "", F::kFlag, F::kFlag},
    {"ActivePinDetector", "receiver uses an active PIN detector", "", F::kFlag, F::kFlag},
    {"TunableTransmitter", "transmitter is tunable", "", F::kFlag, F::kFlag},
    {"ExtendedSpecificationComplianceCodes", "extended specification compliance code", "", F::kDecimal, F::kDecimal},
    // kThresholds: AlarmTemperatureHighThresh .. TXBiasLowThresh
    {"AlarmTemperatureHighThresh", "alarm high temperature threshold", "C", F::kCelsius, F::kCelsius},
    {"AlarmTemperatureLowThresh", "alarm low temperature threshold", "C", F::kCelsius, F::kCelsius},
    {"WarnTemperatureHighThresh", "warning high temperature threshold", "C", F::kCelsius, F::kMissing},
    {"WarnTemperatureLowThresh", "warning low temperature threshold", "C", F::kCelsius, F::kMissing},
    {"AlarmVoltageHighThresh", "alarm high supply-voltage threshold", "uV", F::kMicrovolts, F::kMicrovolts},
    {"AlarmVoltageLowThresh", "alarm low supply-voltage threshold", "uV", F::kMicrovolts, F::kMicrovolts},
    {"WarnVoltageHighThresh", "warning high supply-voltage threshold", "uV", F::kMicrovolts, F::kMissing},
    {"WarnVoltageLowThresh", "warning low supply-voltage threshold", "uV", F::kMicrovolts, F::kMissing},
    {"RXPowerHighThresh", "receive power high threshold", "0.1 uW or dBm", F::kMissing, F::kDecimal},
    {"RXPowerLowThresh", "receive power low threshold", "0.1 uW or dBm", F::kMissing, F::kDecimal},
    {"TXPowerHighThresh", "transmit power high threshold", "0.1 uW or dBm", F::kMissing, F::kDecimal},
    {"TXPowerLowThresh", "transmit power low threshold", "0.1 uW or dBm", F::kMissing, F::kDecimal},
    {"TXBiasHighThresh", "transmit bias high threshold", "2 uA", F::kMissing, F::kDecimal},
    {"TXBiasLowThresh", "transmit bias low threshold", "2 uA", F::kMissing, F::kDecimal},
    // kManufacture: DateCode .. MaxFiberLength
    {"DateCode", "vendor date code", "", F::kBareText, F::kDate},
    {"Lot", "vendor lot code", "", F::kHex4, F::kHex4},
    {"TX1AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 1", "", F::kFlag, F::kMissing},
    {"TX2AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 2", "", F::kFlag, F::kMissing},
    {"TX3AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 3", "", F::kFlag, F::kMissing},
    {"TX4AdaptiveEqualizationFreeze", "adaptive equalization freeze state, transmit lane 4", "", F::kFlag, F::kMissing},
    {"RXOutputDisable", "receive output disable state", "", F::kHex1, F::kMissing},
    {"TXAdaptiveEqualizationEnable", "transmit adaptive equalization enable state", "", F::kHex1, F::kMissing},
    {"MaxPower", "maximum module power", "W", F::kMissing, F::kWatts},
    {"CdrVendor", "clock-and-data-recovery chip vendor code", "", F::kMissing, F::kDecimal},
    {"MaxFiberLength", "maximum fibre length", "", F::kMissing, F::kDecimal},
  }};
  // clang-format on
}

/// The columns of the cable table, in order. The host writes the first three cells of a row, the
/// port's record the other 174.
inline constexpr auto kCsvColumns = MakeCsvColumns();

/// The number of columns that a port's record writes.
inline constexpr int kRecordColumnCount =
    static_cast<int>(kCsvColumns.size()) - GroupSize(CsvGroup::kPort);

/// The number of columns from `first` to `last`, both included; 0 if either is not a column. For
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
