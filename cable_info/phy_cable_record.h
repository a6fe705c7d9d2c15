#pragma once

/// \file
/// What the PHY's module-info register and its latched-flags page tell about a port's cable.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

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
  /// The module-info register. The memory layout is the register's.
  ///
  /// The cable identifier tells CMIS modules from older ones (SFF-8636 and SFF-8472), and several
  /// fields change their meaning with it. "Passive" means the high nibble 10 of the technology
  /// byte, CMIS or not.
  ///
  /// Decoders return `na`, unchanged, where there is nothing to show.
  struct ModuleRecord {
    /// Nonzero: lane powers are in units of 0.1 uW; zero: they are taken as dBm.
    std::uint16_t power_unit_flag = 0;
    std::uint8_t reserved_2 = 0;  ///< never read
    /// SFF-8024, table of extended specification compliance codes.
    std::uint8_t compliance_code = 0;
    std::uint8_t reserved_4 = 0;  ///< never read
    /// CMIS: the media-interface technology. Older: bits 7..4 index `transmitter_technology_arr`,
    /// bit 3 is active wavelength control, 2 cooled, 1 PIN detector, 0 tunable.
    std::uint8_t cable_technology = 0;
    /// The module's power class, as a number.
    std::uint8_t power_class = 0;
    /// Form factor: 0 QSFP28, 1 QSFP+, 2 SFP28/SFP+, 3 QSA, 4 backplane, 5 SFP-DD, 6 QSFP-DD,
    /// 7 QSFP_CMIS, 8 OSFP, 9 C2C, 10 DSFP, 11 QSFP split cable.
    std::uint8_t cable_identifier = 0;
    /// CMIS: bits 5..0 base, bits 7..6 multiplier (0.1, 1, 10, 100 m). Older: metres.
    std::uint8_t cable_length = 0;
    std::uint8_t reserved_9[2] = {};     ///< never read
    std::uint8_t tx_input_eq = 0;        ///< input equalization of every TX lane
    std::uint8_t rx_output_pre_emp = 0;  ///< output pre-emphasis of every RX lane
    std::uint8_t rx_output_amp = 0;      ///< output amplitude of every RX lane
    /// Units of 0.25 W; 0 means not given.
    std::uint8_t max_power = 0;
    /// Copper attenuation at 5, 7, 12 and 25 GHz, dB.
    std::uint8_t attenuation[4] = {};
    std::uint8_t tx_cdr_state = 0;        ///< TX CDR enabled, a bit a lane
    std::uint8_t rx_cdr_state = 0;        ///< RX CDR enabled, a bit a lane
    std::uint8_t tx_cdr_cap = 0;          ///< nonzero: the module has a TX CDR
    std::uint8_t rx_cdr_cap = 0;          ///< nonzero: the module has an RX CDR
    std::uint8_t rx_output_post_emp = 0;  ///< output post-emphasis of every RX lane
    /// May carry blanks at both ends, as the part and serial numbers; ends at its first NUL.
    char vendor_name[17] = {};
    /// The vendor's part number.
    char vendor_pn[17] = {};
    /// NUL bytes may stand anywhere among the characters.
    char vendor_rev[5] = {};
    std::uint8_t reserved_63 = 0;  ///< never read
    /// Bits 31..24 major, 23..16 minor, 15..0 sub-minor; 0 means unknown.
    std::uint32_t fw_version = 0;
    /// The vendor's serial number.
    char vendor_sn[17] = {};
    std::uint8_t reserved_85 = 0;  ///< never read
    /// Units of 100 uV.
    std::uint16_t voltage = 0;
    /// High byte: whole degrees Celsius, signed. The low byte is never read.
    std::uint16_t temperature = 0;
    /// \name Lanes 2, 1, 4, 3, 6, 5, 8, 7, in this order
    /// @{
    std::uint16_t rx_power[8] = {};  ///< see `power_unit_flag`
    std::uint16_t tx_power[8] = {};  ///< see `power_unit_flag`
    std::uint16_t tx_bias[8] = {};   ///< units of 2 uA
    /// @}
    /// \name Alarm thresholds, encoded as the values that they guard
    /// @{
    std::uint16_t temp_low_threshold = 0;       ///< see `temperature`
    std::uint16_t temp_high_threshold = 0;      ///< see `temperature`
    std::uint16_t voltage_low_threshold = 0;    ///< see `voltage`
    std::uint16_t voltage_high_threshold = 0;   ///< see `voltage`
    std::uint16_t rx_power_low_threshold = 0;   ///< see `rx_power`
    std::uint16_t rx_power_high_threshold = 0;  ///< see `rx_power`
    std::uint16_t tx_power_low_threshold = 0;   ///< see `tx_power`
    std::uint16_t tx_power_high_threshold = 0;  ///< see `tx_power`
    std::uint16_t tx_bias_low_threshold = 0;    ///< see `tx_bias`
    std::uint16_t tx_bias_high_threshold = 0;   ///< see `tx_bias`
    /// @}
    std::uint16_t reserved_158 = 0;  ///< never read
    /// Bits 7..0 value; bits 9..8 unit: 0 km, 1 tenths of a km.
    std::uint16_t smf_length = 0;
    std::uint8_t reserved_162 = 0;  ///< never read
    /// Nonzero: average power; zero: OMA.
    std::uint8_t rx_power_type = 0;
    std::uint8_t reserved_164 = 0;  ///< never read
    /// Bit 0 SDR, 1 DDR, 2 QDR, 3 FDR, 4 EDR, 5 HDR, 6 NDR.
    std::uint8_t ib_compliance_code = 0;
    std::uint8_t reserved_166[4] = {};  ///< never read
    /// Units of 100 Mb/s; 255 means that `extended_bitrate` holds the rate.
    std::uint8_t nominal_bitrate = 0;
    /// Units of 250 Mb/s.
    std::uint8_t extended_bitrate = 0;
    std::uint8_t reserved_172[8] = {};  ///< never read
    /// \name Fibre lengths, in the units of the module's memory map
    /// @{
    std::uint8_t length_om5 = 0;        ///< units of 2 m
    std::uint8_t length_om4 = 0;        ///< units of 2 m; of 10 m for SFP28/SFP+
    std::uint8_t length_om3 = 0;        ///< units of 2 m; of 10 m for SFP28/SFP+
    std::uint8_t length_om2 = 0;        ///< metres; units of 10 m for SFP28/SFP+
    std::uint8_t reserved_184[4] = {};  ///< never read
    std::uint8_t length_om1 = 0;        ///< units of 10 m
    /// @}
    std::uint8_t reserved_189[11] = {};  ///< never read
    /// The vendor's lot code.
    std::uint16_t lot = 0;
    /// ASCII YYMMDD, last character first: the register is a little-endian word. `SetDateCode`
    /// fills it from a text.
    char date_code[6] = {};
    /// The vendor's OUI, as a number.
    std::uint32_t vendor_oui = 0;
    /// SFF-8024, table of connector types; 0x23 marks an active cable.
    std::uint8_t connector_type = 0;
    std::uint8_t reserved_213[4] = {};  ///< never read
    /// The CDR chip's vendor, as it stands.
    std::uint8_t cdr_vendor = 0;
    /// As it stands.
    std::uint16_t max_fiber_length = 0;

    /// Sets the date from YYMMDD in reading order. Missing characters become NUL, which is no date;
    /// characters behind the sixth are ignored.
    void SetDateCode(std::string_view yymmdd);

    /// True for SFP-DD, QSFP-DD, QSFP_CMIS, OSFP and DSFP.
    bool IsCMISCable() const;
    /// The technology code: the whole byte for CMIS, else its high nibble.
    std::uint8_t SelectTransmitterTechnology() const;
    /// Whole Gb/s.
    std::uint8_t SelectNominalBR() const;
    /// Unequalized copper by the high nibble of the technology byte.
    bool IsPassiveCable() const;
    /// Not passive, and without separable connector.
    bool IsActiveCable() const;
    /// Neither passive nor an active cable.
    bool IsModule() const;
    /// False, with all outputs 0, when no version is known or the cable is passive.
    bool GetFWVersion(std::uint8_t& major, std::uint8_t& minor, std::uint16_t& subminor) const;

    /// The form factor; "NA" for codes above 11.
    std::string ConvertCableIdentifierToStr() const;
    /// Metres with " m", as a whole quoted in CSV. `na` is never quoted.
    std::string ConvertCableLengthToStr(bool csv, const std::string& na) const;
    /// Kilometres with " km", or N/A.
    std::string ConvertCableLengthSMFiberToStr() const;
    /// Metres with " m" for the OM grade 1..5, or N/A.
    std::string ConvertCableLengthOMXToStr(std::uint8_t om) const;
    /// The text of the technology code; `na` for codes above 15.
    std::string ConvertTransmitterTechnologyToStr(const std::string& na) const;
    /// All characters but NUL.
    std::string ConvertRevisionToStr() const;
    /// major.minor.sub-minor in decimal.
    std::string ConvertFWVersionToStr(const std::string& na) const;
    /// YY-MM-DD; `na` when any of the six characters is no digit.
    std::string ConvertDateCodeToStr(const std::string& na) const;
    /// The RX (`rx`) or TX enable bits, shown when the module has the CDR or `always` is set; `na`
    /// for passive cables.
    std::string ConvertCDREnableTxRxToStr(bool rx, const std::string& na, bool always) const;
    /// Four values, in CSV as four cells; known for passive cables only.
    std::string ConvertAttenuationToStr(bool csv) const;
    /// `value` four times, once a lane: hexadecimal side by side (`hex`), else decimal with blanks;
    /// `na` for passive cables.
    std::string ConvertTxEQRxAMPRxEMPToStr(std::uint8_t value, bool hex,
                                           const std::string& na) const;
    /// Any temperature word of this module; quoted in CSV, fallback included.
    std::string ConvertTemperatureToStr(std::uint16_t raw, bool csv) const;
    /// Any voltage word of this module; quoted in CSV.
    std::string ConvertVoltageToStr(std::uint16_t raw, bool csv) const;
    /// Watts with " W".
    std::string ConvertMaxPowerToStr(const std::string& na) const;
    /// The InfiniBand speeds joined by "/".
    std::string ConvertIBComplianceCodeToStr(const std::string& na) const;
  };

  /// The page of latched flags. In a byte of lane flags bit n - 1 is lane n, and only lanes 1..4
  /// are shown. In the two module flags bit 0 is the high alarm, 1 the low alarm, 2 the high
  /// warning and 3 the low warning.
  struct LatchedFlagsPage {
    std::uint8_t reserved_0[2] = {};                 ///< never read
    std::uint8_t latched_voltage_flags = 0;          ///< module flags: supply voltage
    std::uint8_t latched_temperature_flags = 0;      ///< module flags: temperature
    std::uint8_t latched_tx_adaptive_eq_fault = 0;   ///< adaptive-equalization fault
    std::uint8_t latched_tx_cdr_lol = 0;             ///< CDR loss of lock, TX
    std::uint8_t latched_tx_los = 0;                 ///< loss of signal, TX
    std::uint8_t reserved_7 = 0;                     ///< never read
    std::uint8_t latched_tx_power_low_warning = 0;   ///< transmitted power too low: warning
    std::uint8_t latched_tx_power_high_warning = 0;  ///< transmitted power too high: warning
    std::uint8_t latched_tx_power_low_alarm = 0;     ///< transmitted power too low: alarm
    std::uint8_t latched_tx_power_high_alarm = 0;    ///< transmitted power too high: alarm
    std::uint8_t latched_tx_bias_low_warning = 0;    ///< bias current too low: warning
    std::uint8_t latched_tx_bias_high_warning = 0;   ///< bias current too high: warning
    std::uint8_t latched_tx_bias_low_alarm = 0;      ///< bias current too low: alarm
    std::uint8_t latched_tx_bias_high_alarm = 0;     ///< bias current too high: alarm
    std::uint8_t latched_rx_cdr_lol = 0;             ///< CDR loss of lock, RX
    std::uint8_t latched_rx_los = 0;                 ///< loss of signal, RX
    std::uint8_t latched_rx_power_low_warning = 0;   ///< received power too low: warning
    std::uint8_t latched_rx_power_high_warning = 0;  ///< received power too high: warning
    std::uint8_t latched_rx_power_low_alarm = 0;     ///< received power too low: alarm
    std::uint8_t latched_rx_power_high_alarm = 0;    ///< received power too high: alarm
  };

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
