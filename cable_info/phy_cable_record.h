#pragma once

/// \file
/// A port's cable or module as read from the PHY's module-info register and latched-flags page.
///
/// \code
/// cable_info::PhyCableRecord record;
/// record.source = "PHY";
/// record.SetModule(std::make_unique<cable_info::ModuleRecord>());
/// record.module->temperature = 41 << 8;
/// record.GetTemperatureStr();     // "41C"
/// record.ToCSVStream(std::cout);  // the cells from Source on
/// \endcode

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

#include "cable_info/phy_registers.h"
#include "cable_info/value_format.h"

namespace cable_info {

/// A port's cable or module as read from the PHY's registers. The host sets the members; all are
/// empty or null initially.
///
/// Functions with a `csv` argument return the form of the CSV row if it is true, that of the text
/// report if it is false. Without a module record each returns a fixed text, `"NA"` with its quotes
/// for the CSV row and N/A for the report unless its comment names another.
///
/// The spellings of `ComplanceCodeToStr`, `OuputPreEmpToStr`, `OuputPostEmpToStr` and
/// `GetTemperatureErrorsByTreshold` are part of the interface; do not correct them.
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

  /// The name of the data source; shown verbatim.
  std::string source;
  /// The module-info register; null if it was not read. Owned by the record; `SetModule` replaces
  /// it. A host that assigns the pointer allocates the register with `new`, and deletes an old one.
  ModuleRecord* module = nullptr;
  /// The page of latched flags; null if it was not read. Owned like `module`; `SetLatchedFlags`
  /// replaces it.
  LatchedFlagsPage* latched_flags = nullptr;
  /// The length measured by round-trip latency, as text with its unit; empty means not measured.
  std::string prtl_length;

  /// \name Setting the registers
  /// The record takes ownership, and deletes the register held before. Null removes it.
  /// @{

  /// Sets `module`.
  void SetModule(std::unique_ptr<ModuleRecord> new_module);
  /// Sets `latched_flags`.
  void SetLatchedFlags(std::unique_ptr<LatchedFlagsPage> new_page);
  /// @}

  /// \name Fields of the module
  /// @{

  /// The name of the technology.
  std::string TypeToStr(bool csv) const;
  /// The name of the form factor, in the report followed by its code. Not quoted in CSV.
  std::string CableIdentifierToStr(bool csv) const;
  /// The nominal bit rate: in Mb/s without a unit in CSV, in Gb/s with " Gb/s" in the report. N/A,
  /// unquoted, in both without a module.
  std::string BitrateToStr(bool csv) const;
  /// The power class; NA in the report without a module.
  std::string CablePowerClassToStr(bool csv) const;
  /// The maximum power in watts with " W"; missing if it is 0.
  std::string MaxPowerToStr(bool csv) const;
  /// The firmware version as major.minor.sub-minor in decimal; missing if it is unknown or the
  /// cable is passive.
  std::string FWVersionToStr(bool csv) const;
  /// The date code as YY-MM-DD.
  std::string DateCodeToStr(bool csv) const;
  /// The lot code as "0x" and four hexadecimal digits.
  std::string LotToStr(bool csv) const;
  /// The extended specification compliance code, decimal in CSV, hexadecimal in the report. The
  /// spelling is part of the interface.
  std::string ComplanceCodeToStr(bool csv) const;
  /// In hexadecimal: the technology code in CSV, the whole technology byte in the report.
  std::string TechnologyToStr(bool csv) const;
  /// The InfiniBand speeds, lowest first and joined by "/".
  std::string SupportedSpeedToStr(bool csv) const;
  /// The four attenuations, as four cells in CSV; missing for all but passive cables.
  std::string AttenuationToStr(bool csv) const;
  /// The measured length if there is one, otherwise that of the module; NA, unquoted, if neither is
  /// known.
  std::string CableLengthToStr(bool csv) const;
  /// The length given by the module; NA, unquoted, if it is unknown.
  std::string CableLengthByRegToStr(bool csv) const;
  /// The measured length; NA, unquoted, if there is none.
  std::string CableLengthByPrtlToStr(bool csv) const;
  /// The input equalization of all lanes; see `ModuleRecord::ConvertTxEQRxAMPRxEMPToStr`.
  std::string InputEqToStr(bool csv) const;
  /// The output amplitude of all lanes, formatted in the same way.
  std::string OutputAmpToStr(bool csv) const;
  /// The output pre-emphasis of all lanes, formatted in the same way. The spelling is part of the
  /// interface.
  std::string OuputPreEmpToStr(bool csv) const;
  /// The output post-emphasis of all lanes, formatted in the same way. The spelling is part of the
  /// interface.
  std::string OuputPostEmpToStr(bool csv) const;
  /// The revision, trimmed and with "-" for commas; NA if it is blank or without a module.
  std::string RevisionToStr() const;
  /// The vendor name, trimmed, possibly empty; NA without a module.
  std::string VendorToStr() const;
  /// The part number, trimmed and with "-" for commas; NA if it is blank or without a module.
  std::string VendorPnToStr() const;
  /// The serial number, trimmed and with "-" for commas; NA if it is blank or without a module.
  std::string VendorSnToStr() const;
  /// The vendor OUI as "0x" and hexadecimal digits without leading zeros; NA without a module.
  std::string VendorOUIToStr() const;
  /// The length on single-mode fibre in kilometres with " km".
  std::string LengthSMFiberToStr() const;
  /// The length on multi-mode fibre of grade OM1..OM5 (`om` is 1..5) in metres with " m".
  std::string LengthOmxToStr(std::uint8_t om) const;
  /// The CDR enable bits of TX and RX, separated by a blank; a single N/A without a module.
  std::string CDREnableTxRXToStr() const;
  /// @}

  /// \name Identification
  /// @{

  /// `desc` trimmed and with "-" for commas. A blank `desc` becomes empty (`empty_if_blank` true)
  /// or NA.
  std::string DescToCsvDesc(const std::string& desc, bool empty_if_blank) const;
  /// The identification of the cable: each member as in the row, empty where that is NA; the vendor
  /// code is taken from the serial number. All empty without a module.
  cable_id_t GetIdObj() const;
  /// Part number, identifier code and revision joined by "_"; empty if one of them is unknown.
  std::string GetUniqueKey() const;
  /// The part number, verbatim; empty without a module.
  std::string GetPNVendor() const;
  /// The firmware version; all zero if it is unknown, for passive cables, and without a module.
  fw_version_obj_t GetFWObj() const;
  /// The vendor code of the CDR chip; 0 without a module.
  std::uint8_t GetCDRVendor() const;
  /// True if the technology is optical; false without a module.
  bool IsOpticCable() const;
  /// @}

  /// \name Optical monitors
  /// @{

  /// 10 * log10(mw); -999.999 for zero and negative powers.
  double mW_to_dBm(double mw) const;
  /// 10 to the power of dbm / 10; -999.999 for exactly 0 dBm.
  double dBm_to_mW(double dbm) const;
  /// The power of a lane: in milliwatts in CSV, in milliwatts and dBm in the report. `raw` is in
  /// units of 0.1 uW if `unit_flag` is nonzero, otherwise in dBm.
  std::string PowerLineToStr(double raw, std::uint16_t unit_flag, bool csv) const;
  /// The text of a lane's power without a module.
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
  /// A bias current, given in units of 2 uA, in milliamperes; with " mA" in the report.
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

  /// The temperature in whole degrees Celsius with "C", or N/A.
  std::string GetTemperatureStr() const;
  /// The high alarm threshold in the same form.
  std::string GetHighTemperatureThresholdStr() const;
  /// The low alarm threshold in the same form.
  std::string GetLowTemperatureThresholdStr() const;
  /// Compares the temperature with its alarm thresholds: bit 0 is set above the high one, bit 1
  /// below the low one; 0 without a module. The spelling is part of the interface.
  std::uint8_t GetTemperatureErrorsByTreshold() const;
  /// The latched temperature flags: bit 0 high alarm, 1 low alarm, 2 high warning, 3 low warning;
  /// 0 without the page of latched flags.
  std::uint8_t GetTemperatureAlarms() const;
  /// @}

  /// \name Latched flags, in hexadecimal; N/A without the page of latched flags
  /// Loss of signal and loss of lock have TX lanes 4..1 in the high nibble and RX lanes 4..1 in the
  /// low one. An alarm word has one nibble per lane, lane 1 in the top nibble; in each nibble, from
  /// the top bit: high alarm, low alarm, high warning, low warning.
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
  /// Interleaves four lane masks (bit 0 is lane 1) into an alarm word: each nibble holds, from the
  /// top bit, the lane's bits of `a`, `b`, `c` and `d`. Bits 4..7 of the masks are ignored.
  /// `QuadroToInt(1, 0, 0, 2)` is 0x8100.
  std::uint16_t QuadroToInt(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) const;
  /// @}

  /// Writes the cells from Source to MaxFiberLength and a newline, and flushes. The row neither
  /// depends on the stream's formatting nor changes it.
  void ToCSVStream(std::ostream& out) const;
  /// Writes the 78 lines of the text report, each ended by a newline and a flush.
  void ToFileStream(std::ostream& out) const;
};

}  // namespace cable_info
