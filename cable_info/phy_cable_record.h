#pragma once

/// \file
/// What the PHY's module-info register and its latched-flags page tell about a port's cable.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "cable_info/phy_registers.h"
#include "cable_info/value_format.h"

namespace cable_info {

/// One port's cable as the PHY diagnostic registers show it. The host fills it; all starts zero,
/// empty and null.
///
/// Renderers with a `csv` argument give the form of the CSV row when it is true, that of the text
/// report when it is false. Without a module record each returns a fixed text, usually `"NA"` with
/// its quotes in the CSV row and N/A in the report; where it is another one, the renderer says so.
class PhyCableRecord {
 public:
  /// The module-info register.
  using ModuleRecord = cable_info::ModuleRecord;
  /// The page of latched flags.
  using LatchedFlagsPage = cable_info::LatchedFlagsPage;

  PhyCableRecord() = default;
  PhyCableRecord(const PhyCableRecord&) = delete;
  PhyCableRecord& operator=(const PhyCableRecord&) = delete;
  PhyCableRecord(PhyCableRecord&&) = delete;
  PhyCableRecord& operator=(PhyCableRecord&&) = delete;
  /// Deletes the module record and the page of latched flags.
  ~PhyCableRecord();

  /// Names the data source; shown as it stands.
  std::string source;
  /// Owned, allocated with `new`; null when the register was not read.
  ModuleRecord* module = nullptr;
  /// Owned, allocated with `new`; null when the page was not read.
  LatchedFlagsPage* latched_flags = nullptr;
  /// The length measured by round-trip latency; empty means not measured.
  std::string prtl_length;

  /// \name Fields of the module
  /// @{

  /// The technology's text.
  std::string TypeToStr(bool csv) const;
  /// The form factor's name; the report adds its code. The CSV form carries no quotes.
  std::string CableIdentifierToStr(bool csv) const;
  /// Mb/s without unit in CSV, Gb/s in the report; N/A, unquoted, in both without a module.
  std::string BitrateToStr(bool csv) const;
  /// NA in the report without a module.
  std::string CablePowerClassToStr(bool csv) const;
  /// Watts with " W".
  std::string MaxPowerToStr(bool csv) const;
  /// major.minor.sub-minor in decimal; missing for passive cables, too.
  std::string FWVersionToStr(bool csv) const;
  /// YY-MM-DD.
  std::string DateCodeToStr(bool csv) const;
  /// "0x" and four hexadecimal digits.
  std::string LotToStr(bool csv) const;
  /// Decimal in CSV, hexadecimal in the report.
  std::string ComplanceCodeToStr(bool csv) const;
  /// The technology code in CSV, the whole technology byte in the report.
  std::string TechnologyToStr(bool csv) const;
  /// The InfiniBand speeds joined by "/".
  std::string SupportedSpeedToStr(bool csv) const;
  /// Four values, in CSV as four cells.
  std::string AttenuationToStr(bool csv) const;
  /// The measured length when there is one, else the module's; NA, unquoted, for neither.
  std::string CableLengthToStr(bool csv) const;
  /// The module's length; NA, unquoted, when it is not known.
  std::string CableLengthByRegToStr(bool csv) const;
  /// The measured length; NA, unquoted, when there is none.
  std::string CableLengthByPrtlToStr(bool csv) const;
  /// The input equalization of all lanes; see `ModuleRecord::ConvertTxEQRxAMPRxEMPToStr` (as the
  /// next three).
  std::string InputEqToStr(bool csv) const;
  /// The output amplitude.
  std::string OutputAmpToStr(bool csv) const;
  /// The output pre-emphasis.
  std::string OuputPreEmpToStr(bool csv) const;
  /// The output post-emphasis.
  std::string OuputPostEmpToStr(bool csv) const;
  /// Trimmed, with "-" for commas; NA without a module or any character (as the part and serial
  /// numbers).
  std::string RevisionToStr() const;
  /// Trimmed, possibly empty; NA without a module.
  std::string VendorToStr() const;
  /// The part number.
  std::string VendorPnToStr() const;
  /// The serial number.
  std::string VendorSnToStr() const;
  /// "0x" and hexadecimal digits without filling; NA without a module.
  std::string VendorOUIToStr() const;
  /// Kilometres of single-mode fibre with " km".
  std::string LengthSMFiberToStr() const;
  /// Metres of multi-mode fibre of the OM grade 1..5, with " m".
  std::string LengthOmxToStr(std::uint8_t om) const;
  /// TX, a blank, RX; one N/A without a module.
  std::string CDREnableTxRXToStr() const;
  /// @}

  /// \name Identification
  /// @{

  /// `desc` trimmed, with its commas turned into "-"; when it is blank, empty (`empty_if_blank`) or
  /// NA.
  std::string DescToCsvDesc(const std::string& desc, bool empty_if_blank) const;
  /// What identifies the cable, each part as in the row and empty where that has NA; the vendor
  /// code comes from the serial number. All empty without a module.
  cable_id_t GetIdObj() const;
  /// Part number, identifier code and revision joined by "_"; empty when one of them is unknown.
  std::string GetUniqueKey() const;
  /// The part number as it stands; empty without a module.
  std::string GetPNVendor() const;
  /// All zero without a module or a version, and for passive cables.
  fw_version_obj_t GetFWObj() const;
  /// 0 without a module.
  std::uint8_t GetCDRVendor() const;
  /// False without a module.
  bool IsOpticCable() const;
  /// @}

  /// \name Optical monitors
  /// @{

  /// 10 * log10(mw); -999.999 for zero and negative powers.
  double mW_to_dBm(double mw) const;
  /// 10 to the power of dbm / 10; -999.999 for exactly 0 dBm.
  double dBm_to_mW(double dbm) const;
  /// A lane's power: milliwatts in CSV, milliwatts and dBm in the report. `raw` is in units of
  /// 0.1 uW when `unit_flag` is nonzero, else in dBm.
  std::string PowerLineToStr(double raw, std::uint16_t unit_flag, bool csv) const;
  /// What the power of a lane reads without a module.
  std::string EmptyPowerLineToStr(bool csv) const;
  std::string TX1PowerToStr(bool csv) const;  ///< TX lane 1
  std::string TX2PowerToStr(bool csv) const;  ///< TX lane 2
  std::string TX3PowerToStr(bool csv) const;  ///< TX lane 3
  std::string TX4PowerToStr(bool csv) const;  ///< TX lane 4
  std::string TX5PowerToStr(bool csv) const;  ///< TX lane 5
  std::string TX6PowerToStr(bool csv) const;  ///< TX lane 6
  std::string TX7PowerToStr(bool csv) const;  ///< TX lane 7
  std::string TX8PowerToStr(bool csv) const;  ///< TX lane 8
  std::string RX1PowerToStr(bool csv) const;  ///< RX lane 1
  std::string RX2PowerToStr(bool csv) const;  ///< RX lane 2
  std::string RX3PowerToStr(bool csv) const;  ///< RX lane 3
  std::string RX4PowerToStr(bool csv) const;  ///< RX lane 4
  std::string RX5PowerToStr(bool csv) const;  ///< RX lane 5
  std::string RX6PowerToStr(bool csv) const;  ///< RX lane 6
  std::string RX7PowerToStr(bool csv) const;  ///< RX lane 7
  std::string RX8PowerToStr(bool csv) const;  ///< RX lane 8
  /// A bias current in units of 2 uA, in milliamperes; the report adds " mA".
  std::string TXBiasToStr(bool csv, double raw) const;
  std::string TXBias1ToStr(bool csv) const;  ///< TX lane 1
  std::string TXBias2ToStr(bool csv) const;  ///< TX lane 2
  std::string TXBias3ToStr(bool csv) const;  ///< TX lane 3
  std::string TXBias4ToStr(bool csv) const;  ///< TX lane 4
  std::string TXBias5ToStr(bool csv) const;  ///< TX lane 5
  std::string TXBias6ToStr(bool csv) const;  ///< TX lane 6
  std::string TXBias7ToStr(bool csv) const;  ///< TX lane 7
  std::string TXBias8ToStr(bool csv) const;  ///< TX lane 8
  /// "Average Power" or "OMA".
  std::string RXPowerTypeToStr() const;
  /// @}

  /// \name Temperature
  /// @{

  /// Degrees Celsius with "C", or N/A (as the next two).
  std::string GetTemperatureStr() const;
  /// The high alarm threshold.
  std::string GetHighTemperatureThresholdStr() const;
  /// The low alarm threshold.
  std::string GetLowTemperatureThresholdStr() const;
  /// Bit 0: above the high threshold, bit 1: below the low one; 0 without a module.
  std::uint8_t GetTemperatureErrorsByTreshold() const;
  /// The latched temperature flags; 0 without their page.
  std::uint8_t GetTemperatureAlarms() const;
  /// @}

  /// \name Latched flags, in hexadecimal; N/A without their page
  /// The first three combine TX lanes 4..1 in the high nibble with RX lanes 4..1 in the low one.
  /// The alarm words have a nibble a lane, lane 1 in the top one; in each from its top bit: high
  /// alarm, low alarm, high warning, low warning.
  /// @{

  /// Loss of signal.
  std::string LatchedTxRxIndicatorToStr() const;
  /// CDR loss of lock.
  std::string LatchedTxRxLolIndicatorToStr() const;
  /// Adaptive equalization fault: TX lanes only, in the low nibble.
  std::string LatchedAdaptiveEqualizationFaultToStr() const;
  /// The temperature byte of the page.
  std::string LatchedTempAlarmAndWarningToStr() const;
  /// The supply-voltage byte of the page.
  std::string LatchedVoltageAlarmAndWarningToStr() const;
  /// The alarm word of the transmitted powers.
  std::string TXPowerAlarmAndWarningToStr() const;
  /// The alarm word of the bias currents.
  std::string TXBiasAlarmAndWarningToStr() const;
  /// The alarm word of the received powers.
  std::string RXPowerAlarmAndWarningToStr() const;
  /// Interleaves the lane masks (bit 0 is lane 1) into an alarm word; in each nibble the bits of
  /// `a`, `b`, `c`, `d` from the top. Bits 4..7 are ignored.
  std::uint16_t QuadroToInt(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) const;
  /// @}

  /// Writes the cells from Source to MaxFiberLength, a newline and a flush. The stream's formatting
  /// neither shows in the row nor changes.
  void ToCSVStream(std::ostream& out) const;
  /// Writes the 78 lines of the text report, each ended by a newline and a flush.
  void ToFileStream(std::ostream& out) const;
};

}  // namespace cable_info
