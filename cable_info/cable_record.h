#pragma once

/// \file
/// A port's cable or module as read from its cable-information pages.
///
/// \code
/// cable_info::CableRecord record;
/// record.Identifier = 0x11;                // QSFP28
/// record.Temperature = 41 << 8;
/// record.VendorName = "Acme Optics";
/// record.ConvertCableIdentifierToStr();    // "QSFP28"
/// record.GetTemperatureStr();              // "41C"
/// record.ToFileStream(std::cout);          // the block of the text report
/// \endcode

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

#include "cable_info/value_format.h"

namespace cable_info {

/// A `CableRecord` as plain values, without any formatting: see `CableRecord::ExportData`. Each
/// member names the field that it is copied from. Texts are cut to the size of their array and
/// always end in a NUL.
struct cable_record_data_t {
  std::uint8_t status;                  ///< QueryStatus
  std::uint8_t identifier;              ///< Identifier
  std::uint8_t connector;               ///< Connector
  std::uint8_t supported_speed;         ///< SupportedSpeedMask
  std::uint8_t transmitter_technology;  ///< TransmitterTechnologyCode
  std::uint8_t lengths[5];              ///< LengthSmf, OM3, OM2, OM1, LengthCopperOrActive
  std::uint16_t temperature;            ///< Temperature
  std::uint8_t bytes[21];               ///< OpaqueByte1 .. RxOutputDisableTxAdaptiveEq
  std::uint16_t words[17];              ///< InputEq .. VoltLowWarnThresh
  float monitors[12];                   ///< RxPower, TxBias, TxPower of lanes 1..4
  std::uint8_t rx_power_is_average;     ///< RxPowerIsAverage
  std::uint32_t word;                   ///< OpaqueDword1
  char vendor[33];                      ///< VendorName
  char oui[33];                         ///< Oui
  char pn[33];                          ///< PartNumber
  char sn[33];                          ///< SerialNumber
  char revision[33];                    ///< Revision
  char length[33];                      ///< ConvertLengthToStr()
  char extra[33];                       ///< ExtraText
  char fw_version[41];                  ///< FwVersionText
  char date_code[17];                   ///< DateCodeText
};

static_assert(std::is_standard_layout_v<cable_record_data_t>);
static_assert(std::is_trivially_copyable_v<cable_record_data_t>);

/// A port's cable or module as read from its cable-information pages (source "CABLE"). The host
/// sets the fields; each is zero or empty initially. Any value is valid.
///
/// Codes, flags and units follow the memory map of SFF-8636 rev 2.11. The comments of the fields
/// give the page and byte of that standard, and "a.b" is bit b of byte a. Lane arrays hold lanes 1
/// to 4 in order.
///
/// "Passive" means unequalized copper (technology 10) in the comments below. Temperatures are
/// missing for passive equalized copper (technology 11), too, which has no sensor either.
///
/// Functions with a `csv` argument return the form of the CSV row if it is true, that of the text
/// report if it is false.
///
/// The spelling of `GetTemperatureErrorsByTreshold` is part of the interface; do not correct it.
class CableRecord {
 public:
  /// The name of this source in rows and reports.
  static constexpr std::string_view kSource = "CABLE";

  CableRecord() = default;
  /// \name Copying and moving
  /// Copies are independent of each other. The texts of a moved-from record are unspecified.
  /// @{
  CableRecord(const CableRecord&) = default;             ///< copy
  CableRecord& operator=(const CableRecord&) = default;  ///< copy
  CableRecord(CableRecord&&) = default;                  ///< move
  CableRecord& operator=(CableRecord&&) = default;       ///< move
  /// @}
  virtual ~CableRecord();

  /// Status of the query that read the pages; 0 means success.
  /// See `ConvertCableInfoVSStatusToStr`.
  std::uint8_t QueryStatus = 0;
  /// Module identifier, SFF-8024 rev 4.13 table 4-1 (lower page byte 0).
  std::uint8_t Identifier = 0;
  /// Connector type, SFF-8024 rev 4.13 table 4-3 (page 00h byte 130); 0x23 (no separable connector)
  /// marks an active cable unless the cable is passive.
  std::uint8_t Connector = 0;
  /// InfiniBand speeds (page 00h byte 164): bit 0 SDR, 1 DDR, 2 QDR, 3 FDR, 4 EDR, 5 HDR, and 6
  /// NDR, which the standard reserves.
  std::uint8_t SupportedSpeedMask = 0;
  /// Transmitter technology, an index into `transmitter_technology_arr` (page 00h byte 147.7..4).
  std::uint8_t TransmitterTechnologyCode = 0;
  /// \name Lengths, in the units of the memory map
  /// Columns of the table show these numbers; the length shown as text is `LengthText`.
  /// @{
  std::uint8_t LengthSmf = 0;  ///< single-mode fibre, km (page 00h byte 142)
  std::uint8_t LengthOm3 = 0;  ///< OM3 multi-mode fibre, 2 m (byte 143)
  std::uint8_t LengthOm2 = 0;  ///< OM2 multi-mode fibre, m (byte 144)
  std::uint8_t LengthOm1 = 0;  ///< OM1 multi-mode fibre, m (byte 145)
  /// Copper or active cable, m (byte 146). For separable modules with an 850 nm VCSEL, OM4
  /// multi-mode fibre, 2 m.
  std::uint8_t LengthCopperOrActive = 0;
  /// @}
  /// Module temperature (lower page bytes 22-23). High byte: whole degrees Celsius, signed; the low
  /// byte (1/256 degree) is ignored.
  std::uint16_t Temperature = 0;
  /// Copied by `ExportData`; not shown.
  std::uint8_t OpaqueByte1 = 0;
  /// Nominal bit rate in whole Gb/s (page 00h byte 140, or 222 where that is 255).
  std::uint8_t NominalBitrate = 0;
  /// Power class, 1 to 8 (page 00h byte 129).
  std::uint8_t PowerClass = 0;
  /// CDR enabled (lower page byte 98): bits 7..4 TX4..TX1, bits 3..0 RX4..RX1.
  std::uint8_t CdrControl = 0;
  /// Bit 1: has a TX CDR, bit 0: has an RX CDR (page 00h byte 129.3..2).
  std::uint8_t CdrPresence = 0;
  /// Kind of a module of the home vendor: 14 multi-mode, 16 parallel single-mode.
  std::uint8_t VendorModuleKind = 0;
  /// Copper attenuation at 2.5, 5, 7 and 12 GHz, dB (page 00h bytes 186-189; 12.9 GHz in the
  /// standard).
  std::uint8_t Attenuation[4] = {};
  /// Copied by `ExportData`; not shown.
  std::uint8_t OpaqueByte2 = 0;
  /// Extended specification compliance code, SFF-8024 rev 4.13 table 4-4 (page 00h byte 192).
  std::uint8_t ExtSpecCompliance = 0;
  /// Copied by `ExportData`; not shown.
  std::uint8_t OpaqueByte3 = 0;
  /// Loss of signal (lower page byte 3): bits 7..4 TX4..TX1, bits 3..0 RX4..RX1.
  std::uint8_t LatchedCdrLos = 0;
  /// Adaptive equalization fault (lower page byte 4): bits 7..4 TX4..TX1. Bits 3..0, transmitter
  /// faults in the standard, are shown only in the report, as part of the byte.
  std::uint8_t LatchedAdaptiveEqFault = 0;
  /// CDR loss of lock (lower page byte 5): bits 7..4 TX4..TX1, bits 3..0 RX4..RX1.
  std::uint8_t LatchedCdrLol = 0;
  /// Temperature flags (lower page byte 6): bit 7 high alarm, 6 low alarm, 5 high warning, 4 low
  /// warning; bit 0 initialization complete.
  std::uint8_t LatchedTemperatureAlarms = 0;
  /// Supply-voltage flags (lower page byte 7): bit 7 high alarm, 6 low alarm, 5 high warning, 4 low
  /// warning.
  std::uint8_t LatchedVoltageAlarms = 0;
  /// The whole device-technology byte (page 00h byte 147): bits 7..4 technology, 3 active
  /// wavelength control, 2 cooled transmitter, 1 detector (column ActivePinDetector; in the
  /// standard 1 is APD, 0 PIN), 0 tunable transmitter.
  std::uint8_t TransmitterTechnologyRaw = 0;
  /// Adaptive equalization frozen (page 03h byte 233): bits 3..0 are TX1..TX4, lane 1 in bit 3.
  std::uint8_t TxAdaptiveEqFreeze = 0;
  /// Page 03h byte 241: bits 7..4 RX output disabled, RX4..RX1; bits 3..0 TX adaptive equalization
  /// enabled, TX4..TX1.
  std::uint8_t RxOutputDisableTxAdaptiveEq = 0;
  /// \name Lane settings, four 4-bit values with lane 1 in the top nibble
  /// @{
  std::uint16_t InputEq = 0;    ///< input equalization, TX1..TX4 (page 03h bytes 234-235)
  std::uint16_t OutputAmp = 0;  ///< output amplitude, RX1..RX4 (page 03h bytes 238-239)
  std::uint16_t OutputEmp = 0;  ///< output emphasis, RX1..RX4 (page 03h bytes 236-237)
  /// @}
  /// Copied by `ExportData`; not shown.
  std::uint16_t OpaqueWord1 = 0;
  /// Supply voltage in units of 100 uV (lower page bytes 26-27).
  std::uint16_t SupplyVoltage = 0;
  /// \name Alarm words
  /// One nibble per lane, lane 1 in the top nibble; in each nibble, from the top bit: high alarm,
  /// low alarm, high warning, low warning.
  /// @{
  std::uint16_t RxPowerAlarms = 0;  ///< received power, RX1..RX4 (lower page bytes 9-10)
  std::uint16_t TxBiasAlarms = 0;   ///< bias current, TX1..TX4 (lower page bytes 11-12)
  std::uint16_t TxPowerAlarms = 0;  ///< transmitted power, TX1..TX4 (lower page bytes 13-14)
  /// @}
  /// Lot code, two characters as a big-endian number (page 00h bytes 218-219).
  std::uint16_t Lot = 0;
  /// \name Temperature thresholds, encoded as `Temperature`
  /// @{
  std::uint16_t TempHighAlarmThresh = 0;  ///< alarm above it (page 03h bytes 128-129)
  std::uint16_t TempHighWarnThresh = 0;   ///< warning above it (page 03h bytes 132-133)
  std::uint16_t TempLowAlarmThresh = 0;   ///< alarm below it (page 03h bytes 130-131)
  std::uint16_t TempLowWarnThresh = 0;    ///< warning below it (page 03h bytes 134-135)
  /// @}
  /// \name Voltage thresholds, units of 100 uV
  /// @{
  std::uint16_t VoltHighAlarmThresh = 0;  ///< alarm above it (page 03h bytes 144-145)
  std::uint16_t VoltHighWarnThresh = 0;   ///< warning above it (page 03h bytes 148-149)
  std::uint16_t VoltLowAlarmThresh = 0;   ///< alarm below it (page 03h bytes 146-147)
  std::uint16_t VoltLowWarnThresh = 0;    ///< warning below it (page 03h bytes 150-151)
  /// @}
  /// \name Monitors of lanes 1..4
  /// @{
  float RxPower[4] = {};  ///< received power, mW (lower page bytes 34-41)
  float TxBias[4] = {};   ///< bias current, mA (lower page bytes 42-49)
  float TxPower[4] = {};  ///< transmitted power, mW (lower page bytes 50-57)
  /// @}
  /// Received power is an average (true) or an OMA (false) (page 00h byte 220.3).
  bool RxPowerIsAverage = false;
  /// Copied by `ExportData`; not shown.
  std::uint32_t OpaqueDword1 = 0;
  /// Vendor name (page 00h bytes 148-163); shown verbatim, never trimmed.
  std::string VendorName;
  /// Vendor OUI as text (page 00h bytes 165-167). "0x5a1", compared literally, is the home vendor.
  std::string Oui;
  /// Part number (page 00h bytes 168-183); "NA" means unknown.
  std::string PartNumber;
  /// Serial number (page 00h bytes 196-211); shown verbatim. `_get_vendor_from_sn` extracts a
  /// vendor code from it.
  std::string SerialNumber;
  /// Revision (page 00h bytes 184-185); "NA" means unknown.
  std::string Revision;
  /// The length given by the module, as text with its unit.
  std::string LengthText;
  /// Copied by `ExportData`; not shown.
  std::string ExtraText;
  /// Firmware version, shown only for the home vendor's modules; see `ConvertFwVersionToStr`.
  std::string FwVersionText;
  /// Date code (page 00h bytes 212-217): YYMMDD, optionally followed by more characters; or "N/A".
  std::string DateCodeText;
  /// The length measured by round-trip latency, as text with its unit; empty means not measured.
  std::string PrtlLengthText;

  /// True if it is neither a passive nor an active cable.
  bool IsModule() const;
  /// True if it is not passive and has no separable connector.
  bool IsActiveCable() const;
  /// True for unequalized copper.
  bool IsPassiveCable() const;
  /// True if the pages were read successfully and the technology is optical.
  bool IsOpticCable() const;
  /// True for a multi-mode module of the home vendor.
  bool IsKestMmf() const;
  /// True for a parallel single-mode module of the home vendor.
  bool IsKestPsm() const;

  /// The latched temperature flags: bit 0 high alarm, 1 low alarm, 2 high warning, 3 low warning.
  std::uint32_t GetTemperatureAlarms() const;
  /// Compares the temperature with the alarm thresholds: bit 0 is set above the high one, bit 1
  /// below the low one. The spelling is part of the interface.
  std::uint32_t GetTemperatureErrorsByTreshold() const;
  /// Always zero: the pages contain no numeric firmware version.
  fw_version_obj_t GetFWObj() const;
  /// 10 * log10(mw); -999.999 for zero, NaN for a negative power.
  double mW_to_dBm(double mw) const;
  /// The part number, verbatim; empty if it is unknown.
  std::string GetPNVendor() const;
  /// The identification of the cable; the vendor code is taken from the serial number.
  cable_id_t GetIdObj() const;
  /// Sets every member of `*data`, which must not be null.
  void ExportData(cable_record_data_t* data) const;

  /// The name of `Identifier`; "NA" for codes that are not modules of a port.
  std::string ConvertCableIdentifierToStr() const;
  /// The name of the technology, "NA" for codes above 15; after a failed query, "NA - " and the
  /// text of its status.
  std::string ConvertCableTypeToStr() const;
  /// The supported speeds, lowest first and joined by "/", or "NA".
  std::string ConvertSupportedSpeedToStr() const;
  /// `PrtlLengthText` if it is not empty, otherwise `LengthText`.
  std::string ConvertLengthToStr() const;
  /// `PrtlLengthText`, or "NA" if it is empty.
  std::string ConvertPrtlLengthToStr() const;
  /// A temperature word of this cable in whole degrees Celsius with "C". Never quoted, not even
  /// the fallback of the CSV row, "NA"; that of the report is N/A.
  std::string ConvertTemperatureToStr(unsigned short value, bool csv) const;
  /// \name Temperature and alarm thresholds, in whole degrees Celsius with "C", or N/A
  /// @{
  std::string GetTemperatureStr() const;               ///< `Temperature`
  std::string GetHighTemperatureThresholdStr() const;  ///< `TempHighAlarmThresh`
  std::string GetLowTemperatureThresholdStr() const;   ///< `TempLowAlarmThresh`
  /// @}
  /// A voltage word, given in units of 100 uV, in microvolts with "uV".
  std::string ConvertVoltageToStr(unsigned short value) const;
  /// `DateCodeText` as YY-MM-DD; verbatim if it has three characters or fewer or is "N/A".
  std::string ConvertDateCodeToStr() const;
  /// `FwVersionText` for the home vendor's multi-mode and parallel single-mode modules; missing for
  /// all others.
  std::string ConvertFwVersionToStr(bool csv) const;
  /// The four attenuations, as four cells in CSV; missing for all but passive cables.
  std::string ConvertAttenuationToStr(bool csv) const;
  /// `CdrControl` in hexadecimal: the whole byte in CSV; in the report, the TX and the RX nibble
  /// separated by a blank, with N/A for a direction without a CDR. Missing for passive cables.
  std::string ConvertCDREnableTxRxToStr(bool csv) const;
  /// \name Settings of lanes 1..4
  /// In CSV one hexadecimal digit per lane, in the report four decimal numbers separated by blanks;
  /// missing for passive cables.
  /// @{
  std::string ConvertInputEqToStr(bool csv) const;    ///< `InputEq`
  std::string ConvertOutputAmpToStr(bool csv) const;  ///< `OutputAmp`
  std::string ConvertOutputEmpToStr(bool csv) const;  ///< `OutputEmp`
  /// @}
  /// \name Lane controls, one hexadecimal digit with lane 4 in its top bit
  /// @{
  std::string ConvertRXOutputDisableToStr() const;               ///< RX output disabled
  std::string ConvertTXAdaptiveEqualizationEnableToStr() const;  ///< TX adaptation enabled
  /// @}

  /// The block of the text report, cut after 2047 characters. The lines of the source and of the
  /// pre- and post-emphasis, which the pages do not contain, are included only if `with_phy_lines`
  /// is true.
  std::string c_str(bool with_phy_lines) const;
  /// Writes `c_str(true)` without a flush.
  void ToFileStream(std::ostream& os) const;
  /// Writes the cells from Source to MaxFiberLength and a newline, and flushes. Afterwards the
  /// stream has precision 3 and fill "0"; its formatting does not affect the row.
  void ToCSVStream(std::ostream& os) const;
};

}  // namespace cable_info
