#pragma once

/// \file
/// What the cable-information pages of a module tell about a port's cable.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>

#include "cable_info/value_format.h"

namespace cable_info {

/// A `CableRecord` as plain values, for callers that want no text. Texts are cut to their slot and
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

/// One port's cable as read from the cable-information pages (source "CABLE"). The host fills the
/// fields; every field starts zero or empty. Codes and flags are those of SFF-8636.
///
/// "Passive" means unequalized copper here (technology 10); temperatures are also denied to
/// passive-equalized copper (technology 11), which has no sensor either.
///
/// Decoders with a `csv` argument give the form of the CSV row when it is true, that of the text
/// report when it is false.
class CableRecord {
 public:
  /// How rows and reports name the source of this record's data.
  static constexpr std::string_view kSource = "CABLE";

  CableRecord() = default;
  /// \name Copying and moving
  /// A copy is a record of its own; a record that was moved from has unspecified texts.
  /// @{
  CableRecord(const CableRecord&) = default;             ///< copy
  CableRecord& operator=(const CableRecord&) = default;  ///< copy
  CableRecord(CableRecord&&) = default;                  ///< move
  CableRecord& operator=(CableRecord&&) = default;       ///< move
  /// @}
  virtual ~CableRecord();

  /// Status of the query that read the pages; 0 means that the data are good.
  std::uint8_t QueryStatus = 0;
  /// SFF-8024, table of identifier values.
  std::uint8_t Identifier = 0;
  /// SFF-8024, table of connector types; 0x23 marks an active cable.
  std::uint8_t Connector = 0;
  /// Bit 0 SDR, 1 DDR, 2 QDR, 3 FDR, 4 EDR, 5 HDR, 6 NDR.
  std::uint8_t SupportedSpeedMask = 0;
  /// Index into `transmitter_technology_arr`.
  std::uint8_t TransmitterTechnologyCode = 0;
  /// \name Lengths, in the units of the module's memory map
  /// @{
  std::uint8_t LengthSmf = 0;             ///< single-mode fibre
  std::uint8_t LengthOm3 = 0;             ///< OM3 multi-mode fibre
  std::uint8_t LengthOm2 = 0;             ///< OM2 multi-mode fibre
  std::uint8_t LengthOm1 = 0;             ///< OM1 multi-mode fibre
  std::uint8_t LengthCopperOrActive = 0;  ///< copper or active cable
  /// @}
  /// High byte: whole degrees Celsius, signed. The low byte is never read.
  std::uint16_t Temperature = 0;
  /// Exported only.
  std::uint8_t OpaqueByte1 = 0;
  /// Whole Gb/s.
  std::uint8_t NominalBitrate = 0;
  /// The module's power class, as a number.
  std::uint8_t PowerClass = 0;
  /// CDR enabled: high nibble TX lanes, low nibble RX lanes.
  std::uint8_t CdrControl = 0;
  /// Bit 1: has a TX CDR, bit 0: has an RX CDR.
  std::uint8_t CdrPresence = 0;
  /// Module kind of the home vendor: 14 multi-mode, 16 parallel single-mode.
  std::uint8_t VendorModuleKind = 0;
  /// Copper attenuation at 2.5, 5, 7 and 12 GHz, dB.
  std::uint8_t Attenuation[4] = {};
  /// Exported only.
  std::uint8_t OpaqueByte2 = 0;
  /// SFF-8024, table of extended specification compliance codes.
  std::uint8_t ExtSpecCompliance = 0;
  /// Exported only.
  std::uint8_t OpaqueByte3 = 0;
  /// Loss of signal: bits 7..4 TX4..TX1, bits 3..0 RX4..RX1 (as the next two).
  std::uint8_t LatchedCdrLos = 0;
  /// Adaptive equalization fault, TX lanes only: bits 7..4 TX4..TX1.
  std::uint8_t LatchedAdaptiveEqFault = 0;
  /// CDR loss of lock.
  std::uint8_t LatchedCdrLol = 0;
  /// Bit 7 high alarm, 6 low alarm, 5 high warning, 4 low warning, 0 initialization complete.
  std::uint8_t LatchedTemperatureAlarms = 0;
  /// Supply voltage; bits 7..4 as for the temperature.
  std::uint8_t LatchedVoltageAlarms = 0;
  /// The whole device-technology byte: bits 7..4 technology, 3 active wavelength control, 2 cooled
  /// transmitter, 1 active PIN detector, 0 tunable transmitter.
  std::uint8_t TransmitterTechnologyRaw = 0;
  /// Bits 3..0: TX1..TX4 (lane 1 in the highest of the four).
  std::uint8_t TxAdaptiveEqFreeze = 0;
  /// High nibble: RX output disabled; low nibble: TX adaptive equalization enabled.
  std::uint8_t RxOutputDisableTxAdaptiveEq = 0;
  /// \name Four 4-bit values, lane 1 in the top nibble
  /// @{
  std::uint16_t InputEq = 0;    ///< input equalization of TX1..TX4
  std::uint16_t OutputAmp = 0;  ///< output amplitude of RX1..RX4
  std::uint16_t OutputEmp = 0;  ///< output emphasis of RX1..RX4
  /// @}
  /// Exported only.
  std::uint16_t OpaqueWord1 = 0;
  /// Units of 100 uV.
  std::uint16_t SupplyVoltage = 0;
  /// \name Alarm words
  /// A nibble a lane, lane 1 in the top one; in each from its top bit: high alarm, low alarm, high
  /// warning, low warning.
  /// @{
  std::uint16_t RxPowerAlarms = 0;  ///< received power of RX1..RX4
  std::uint16_t TxBiasAlarms = 0;   ///< bias current of TX1..TX4
  std::uint16_t TxPowerAlarms = 0;  ///< transmitted power of TX1..TX4
  /// @}
  /// The vendor's lot code, as it stands.
  std::uint16_t Lot = 0;
  /// \name Temperature thresholds, encoded as `Temperature`
  /// @{
  std::uint16_t TempHighAlarmThresh = 0;  ///< alarm above it
  std::uint16_t TempHighWarnThresh = 0;   ///< warning above it
  std::uint16_t TempLowAlarmThresh = 0;   ///< alarm below it
  std::uint16_t TempLowWarnThresh = 0;    ///< warning below it
  /// @}
  /// \name Voltage thresholds, units of 100 uV
  /// @{
  std::uint16_t VoltHighAlarmThresh = 0;  ///< alarm above it
  std::uint16_t VoltHighWarnThresh = 0;   ///< warning above it
  std::uint16_t VoltLowAlarmThresh = 0;   ///< alarm below it
  std::uint16_t VoltLowWarnThresh = 0;    ///< warning below it
  /// @}
  /// \name Monitors of lanes 1..4
  /// @{
  float RxPower[4] = {};  ///< milliwatts
  float TxBias[4] = {};   ///< milliamperes
  float TxPower[4] = {};  ///< milliwatts
  /// @}
  /// Received power is an average (true) or an OMA (false).
  bool RxPowerIsAverage = false;
  /// Exported only.
  std::uint32_t OpaqueDword1 = 0;
  /// As it stands; never trimmed.
  std::string VendorName;
  /// As text; "0x5a1", compared literally, is the home vendor's.
  std::string Oui;
  /// "NA" means unknown.
  std::string PartNumber;
  /// As it stands; `_get_vendor_from_sn` finds a vendor code in it.
  std::string SerialNumber;
  /// "NA" means unknown.
  std::string Revision;
  /// The length as read from the module, as text.
  std::string LengthText;
  /// Exported only.
  std::string ExtraText;
  /// Shown for the home vendor's modules only; see `ConvertFwVersionToStr`.
  std::string FwVersionText;
  /// YYMMDD and anything behind it, or "N/A".
  std::string DateCodeText;
  /// The length measured by round-trip latency; empty means not measured.
  std::string PrtlLengthText;

  /// Neither passive nor an active cable.
  bool IsModule() const;
  /// Not passive, and without separable connector.
  bool IsActiveCable() const;
  /// Unequalized copper.
  bool IsPassiveCable() const;
  /// An optical technology in data that are good.
  bool IsOpticCable() const;
  /// A multi-mode module of the home vendor.
  bool IsKestMmf() const;
  /// A parallel single-mode module of the home vendor.
  bool IsKestPsm() const;

  /// Bit 0 high alarm, 1 low alarm, 2 high warning, 3 low warning.
  std::uint32_t GetTemperatureAlarms() const;
  /// Bit 0: above the high alarm threshold, bit 1: below the low one.
  std::uint32_t GetTemperatureErrorsByTreshold() const;
  /// Always zero: the pages carry no firmware object.
  fw_version_obj_t GetFWObj() const;
  /// 10 * log10(mw); -999.999 for zero, NaN for negative powers.
  double mW_to_dBm(double mw) const;
  /// The part number as it stands; empty when it is unknown.
  std::string GetPNVendor() const;
  /// What identifies the cable; the vendor code comes from the serial number.
  cable_id_t GetIdObj() const;
  /// Fills every field of `*data`, which must not be null.
  void ExportData(cable_record_data_t* data) const;

  /// SFF-8024, table of identifier values; "NA" for codes that name no port module.
  std::string ConvertCableIdentifierToStr() const;
  /// The technology, or "NA - " and the query's status.
  std::string ConvertCableTypeToStr() const;
  /// The speeds joined by "/", or "NA".
  std::string ConvertSupportedSpeedToStr() const;
  /// The measured length when there is one, else the module's.
  std::string ConvertLengthToStr() const;
  /// The measured length, or "NA".
  std::string ConvertPrtlLengthToStr() const;
  /// Any temperature word of this cable; not quoted, not even its CSV fallback.
  std::string ConvertTemperatureToStr(unsigned short value, bool csv) const;
  /// \name Temperature and alarm thresholds, in degrees Celsius with "C", or N/A
  /// @{
  std::string GetTemperatureStr() const;               ///< `Temperature`
  std::string GetHighTemperatureThresholdStr() const;  ///< `TempHighAlarmThresh`
  std::string GetLowTemperatureThresholdStr() const;   ///< `TempLowAlarmThresh`
  /// @}
  /// Any voltage word, in microvolts with "uV".
  std::string ConvertVoltageToStr(unsigned short value) const;
  /// YY-MM-DD; texts of three characters or fewer, and "N/A", as they stand.
  std::string ConvertDateCodeToStr() const;
  /// Known for the home vendor's multi-mode and parallel single-mode modules only.
  std::string ConvertFwVersionToStr(bool csv) const;
  /// Four values, in CSV as four cells; known for passive cables only.
  std::string ConvertAttenuationToStr(bool csv) const;
  /// The whole control byte in CSV; TX and RX nibbles, as far as present, in the report.
  std::string ConvertCDREnableTxRxToStr(bool csv) const;
  /// \name Settings of lanes 1..4
  /// Hexadecimal digits side by side in CSV, decimals with blanks in the report; missing for
  /// passive cables.
  /// @{
  std::string ConvertInputEqToStr(bool csv) const;    ///< `InputEq`
  std::string ConvertOutputAmpToStr(bool csv) const;  ///< `OutputAmp`
  std::string ConvertOutputEmpToStr(bool csv) const;  ///< `OutputEmp`
  /// @}
  /// \name Lane switches, one hexadecimal digit with lane 4 in its top bit
  /// @{
  std::string ConvertRXOutputDisableToStr() const;               ///< RX output disabled
  std::string ConvertTXAdaptiveEqualizationEnableToStr() const;  ///< TX adaptation enabled
  /// @}

  /// The block of the text report, at most 2047 characters. The lines of the source and of the two
  /// emphases that the pages lack are there only when `with_phy_lines` is true.
  std::string c_str(bool with_phy_lines) const;
  /// Writes `c_str(true)`.
  void ToFileStream(std::ostream& os) const;
  /// Writes the cells from Source to MaxFiberLength, a newline and a flush. Leaves the stream with
  /// precision 3 and fill "0".
  void ToCSVStream(std::ostream& os) const;
};

}  // namespace cable_info
