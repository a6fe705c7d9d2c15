#pragma once

/// \file
/// The PHY's module-info register and its page of latched flags, in the memory layout of the
/// registers. A host fills them by copying the register as a whole or member by member:
///
/// \code
/// cable_info::ModuleRecord module;
/// module.cable_identifier = static_cast<std::uint8_t>(cable_info::FormFactor::kOsfp);
/// module.power_unit_flag = 1;                           // units of 0.1 uW
/// module.rx_power[cable_info::PhyLaneIndex(1)] = 8710;  // lane 1: 0.871 mW
/// module.SetDateCode("240315");
/// \endcode
///
/// Many fields are encoded as in the memory of the module. Their comments name the page and byte
/// that define the encoding: those of CMIS 5.x, or of SFF-8636 rev 2.11 and SFF-8472 rev 12.4 for
/// older modules.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cable_info/value_format.h"

namespace cable_info {

/// The form factor of a module, as `ModuleRecord::cable_identifier` codes it.
enum class FormFactor : std::uint8_t {
  kQsfp28 = 0,
  kQsfpPlus = 1,
  kSfp28OrSfpPlus = 2,
  kQsa = 3,  ///< adapter from QSFP to SFP
  kBackplane = 4,
  kSfpDd = 5,
  kQsfpDd = 6,
  kQsfpCmis = 7,
  kOsfp = 8,
  kC2c = 9,
  kDsfp = 10,
  kQsfpSplitCable = 11,
};

/// The number of lanes in the lane arrays of the register.
inline constexpr int kPhyLanes = 8;

/// The index of lane 1..8 in the lane arrays of the register, which hold each pair of lanes in
/// swapped order: 2, 1, 4, 3, 6, 5, 8, 7. `PhyLaneIndex(1)` is 1, `PhyLaneIndex(2)` is 0.
constexpr std::size_t PhyLaneIndex(int lane) { return static_cast<std::size_t>(lane - 1) ^ 1U; }

/// The unit of `ModuleRecord::smf_length`, in its bits 9..8.
enum class SmfLengthUnit : std::uint8_t {
  kKilometre = 0,         ///< whole kilometres
  kTenthOfKilometre = 1,  ///< units of 100 m
};

/// A single-mode fibre length as `ModuleRecord::smf_length` codes it.
constexpr std::uint16_t SmfLengthWord(unsigned value, SmfLengthUnit unit) {
  return static_cast<std::uint16_t>(static_cast<unsigned>(unit) << 8U | value);
}

/// The nominal bit rate that refers to the extended bit rate: in `ModuleRecord::nominal_bitrate`,
/// SFF-8636 rev 2.11 page 00h byte 140 and SFF-8472 rev 12.4 A0h byte 12.
inline constexpr std::uint8_t kSeeExtendedBitrate = 255;

/// The module-info register: 220 bytes, words in the byte order of the machine.
///
/// `cable_identifier` distinguishes CMIS modules from older ones (SFF-8636 and SFF-8472); the
/// meaning of several fields depends on it. "Passive" means that the high nibble of
/// `cable_technology` is 10, for CMIS modules, too.
///
/// Decoders with an `na` argument return it unchanged if there is no value.
struct ModuleRecord {
  /// Unit of lane powers and their thresholds: nonzero 0.1 uW, zero dBm.
  std::uint16_t power_unit_flag = 0;
  std::uint8_t reserved_2 = 0;  ///< never read
  /// Extended specification compliance code, SFF-8024 rev 4.13 table 4-4.
  std::uint8_t compliance_code = 0;
  std::uint8_t reserved_4 = 0;  ///< never read
  /// CMIS: media interface technology (page 00h byte 212). Older modules: the device-technology
  /// byte (SFF-8636 page 00h byte 147), bits 7..4 an index into `transmitter_technology_arr`, bit 3
  /// active wavelength control, 2 cooled transmitter, 1 detector, 0 tunable transmitter.
  std::uint8_t cable_technology = 0;
  /// Power class, 1 to 8.
  std::uint8_t power_class = 0;
  /// Form factor, a `FormFactor`: 0 QSFP28, 1 QSFP+, 2 SFP28/SFP+, 3 QSA, 4 backplane, 5 SFP-DD,
  /// 6 QSFP-DD, 7 QSFP_CMIS, 8 OSFP, 9 C2C, 10 DSFP, 11 QSFP split cable. Not an SFF-8024 code.
  std::uint8_t cable_identifier = 0;
  /// Cable length; 0 means unknown. CMIS (page 00h byte 202): bits 5..0 base, bits 7..6 multiplier
  /// (0.1, 1, 10, 100 m). Older modules: m.
  std::uint8_t cable_length = 0;
  std::uint8_t reserved_9[2] = {};  ///< never read
  /// \name Lane settings: one code for all lanes
  /// @{
  std::uint8_t tx_input_eq = 0;        ///< TX input equalization (CMIS page 11h bytes 217-220)
  std::uint8_t rx_output_pre_emp = 0;  ///< RX output pre-emphasis (CMIS page 11h bytes 223-226)
  std::uint8_t rx_output_amp = 0;      ///< RX output amplitude (CMIS page 11h bytes 231-234)
  /// @}
  /// Maximum power in units of 0.25 W (CMIS page 00h byte 201); 0 means not given.
  std::uint8_t max_power = 0;
  /// Copper attenuation at 5, 7, 12 and 25 GHz, dB (CMIS page 00h bytes 204-207; 12.9 and 25.8 GHz
  /// in the standard).
  std::uint8_t attenuation[4] = {};
  std::uint8_t tx_cdr_state = 0;  ///< TX CDR enabled, bit n - 1 is lane n
  std::uint8_t rx_cdr_state = 0;  ///< RX CDR enabled, bit n - 1 is lane n
  std::uint8_t tx_cdr_cap = 0;    ///< nonzero: the module has a TX CDR
  std::uint8_t rx_cdr_cap = 0;    ///< nonzero: the module has an RX CDR
  /// RX output post-emphasis, one code for all lanes (CMIS page 11h bytes 227-230).
  std::uint8_t rx_output_post_emp = 0;
  /// Vendor name; ends at its first NUL, and may have blanks at both ends.
  char vendor_name[17] = {};
  /// Part number; ends at its first NUL, and may have blanks at both ends.
  char vendor_pn[17] = {};
  /// Revision; NUL bytes may occur anywhere and are skipped.
  char vendor_rev[5] = {};
  std::uint8_t reserved_63 = 0;  ///< never read
  /// Firmware version: bits 31..24 major, 23..16 minor, 15..0 sub-minor; 0 means unknown.
  std::uint32_t fw_version = 0;
  /// Serial number; ends at its first NUL, and may have blanks at both ends.
  char vendor_sn[17] = {};
  std::uint8_t reserved_85 = 0;  ///< never read
  /// Supply voltage in units of 100 uV.
  std::uint16_t voltage = 0;
  /// Module temperature. High byte: whole degrees Celsius, signed; the low byte (1/256 degree) is
  /// ignored.
  std::uint16_t temperature = 0;
  /// \name Monitors of lanes 2, 1, 4, 3, 6, 5, 8, 7, in this order; see `PhyLaneIndex`
  /// @{
  std::uint16_t rx_power[8] = {};  ///< received power, in the unit given by `power_unit_flag`
  std::uint16_t tx_power[8] = {};  ///< transmitted power, in the unit given by `power_unit_flag`
  std::uint16_t tx_bias[8] = {};   ///< bias current in units of 2 uA
  /// @}
  /// \name Alarm thresholds, each encoded as the value that it applies to
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
  /// Length supported on single-mode fibre: bits 7..0 value, bits 9..8 unit (0: km, 1: 0.1 km;
  /// others: unknown). A value of 0 means unknown.
  std::uint16_t smf_length = 0;
  std::uint8_t reserved_162 = 0;  ///< never read
  /// Kind of the received powers: nonzero average power, zero OMA.
  std::uint8_t rx_power_type = 0;
  std::uint8_t reserved_164 = 0;  ///< never read
  /// InfiniBand speeds: bit 0 SDR, 1 DDR, 2 QDR, 3 FDR, 4 EDR, 5 HDR, 6 NDR.
  std::uint8_t ib_compliance_code = 0;
  std::uint8_t reserved_166[4] = {};  ///< never read
  /// Nominal bit rate in units of 100 Mb/s (SFF-8636 page 00h byte 140, SFF-8472 A0h byte 12);
  /// 255 means that `extended_bitrate` holds the rate.
  std::uint8_t nominal_bitrate = 0;
  /// Extended nominal bit rate in units of 250 Mb/s (SFF-8636 page 00h byte 222, SFF-8472 A0h
  /// byte 66). Used only if `nominal_bitrate` is 255.
  std::uint8_t extended_bitrate = 0;
  std::uint8_t reserved_172[8] = {};  ///< never read
  /// \name Lengths supported on multi-mode fibre, in the units of the memory map; 0 means unknown
  /// CMIS page 01h bytes 133-136, SFF-8472 A0h bytes 16-19.
  /// @{
  std::uint8_t length_om5 = 0;        ///< OM5, 2 m
  std::uint8_t length_om4 = 0;        ///< OM4, 2 m; SFP28/SFP+ 10 m
  std::uint8_t length_om3 = 0;        ///< OM3, 2 m; SFP28/SFP+ 10 m
  std::uint8_t length_om2 = 0;        ///< OM2, 1 m; SFP28/SFP+ 10 m
  std::uint8_t reserved_184[4] = {};  ///< never read
  std::uint8_t length_om1 = 0;        ///< OM1, 10 m
  /// @}
  std::uint8_t reserved_189[11] = {};  ///< never read
  /// Lot code, two characters as a big-endian number (CMIS page 00h bytes 188-189).
  std::uint16_t lot = 0;
  /// Date code: ASCII YYMMDD in reverse order, since the register is a little-endian word.
  /// `SetDateCode` sets it from a text in reading order.
  char date_code[6] = {};
  /// Vendor OUI as a 24-bit number.
  std::uint32_t vendor_oui = 0;
  /// Connector type, SFF-8024 rev 4.13 table 4-3; 0x23 (no separable connector) marks an active
  /// cable unless the cable is passive.
  std::uint8_t connector_type = 0;
  std::uint8_t reserved_213[4] = {};  ///< never read
  /// Vendor code of the CDR chip; shown without conversion.
  std::uint8_t cdr_vendor = 0;
  /// Maximum supported fibre length; shown without conversion.
  std::uint16_t max_fiber_length = 0;

  /// Sets the date from YYMMDD in reading order. Missing characters become NUL, which makes the
  /// date invalid; characters after the sixth are ignored.
  void SetDateCode(std::string_view yymmdd);

  /// True for the form factors SFP-DD, QSFP-DD, QSFP_CMIS, OSFP and DSFP.
  bool IsCMISCable() const;
  /// The technology code: the whole `cable_technology` for CMIS, otherwise its high nibble.
  std::uint8_t SelectTransmitterTechnology() const;
  /// The nominal bit rate, or the extended one, in whole Gb/s, rounded down.
  std::uint8_t SelectNominalBR() const;
  /// True if the high nibble of the technology byte is 10, unequalized copper.
  bool IsPassiveCable() const;
  /// True if it is not passive and has no separable connector.
  bool IsActiveCable() const;
  /// True if it is neither a passive nor an active cable.
  bool IsModule() const;
  /// Splits `fw_version`. Returns false, with all outputs 0, if it is unknown or the cable is
  /// passive.
  bool GetFWVersion(std::uint8_t& major, std::uint8_t& minor, std::uint16_t& subminor) const;

  /// The name of the form factor; "NA" for codes above 11.
  std::string ConvertCableIdentifierToStr() const;
  /// The cable length in metres with " m", between quotes in CSV; `na`, never quoted, if it is 0.
  std::string ConvertCableLengthToStr(bool csv, const std::string& na) const;
  /// The length on single-mode fibre in kilometres with " km", or N/A.
  std::string ConvertCableLengthSMFiberToStr() const;
  /// The length on multi-mode fibre of grade OM1..OM5 (`om` is 1..5) in metres with " m", or N/A.
  std::string ConvertCableLengthOMXToStr(std::uint8_t om) const;
  /// The name of the technology; `na` for codes above 15.
  std::string ConvertTransmitterTechnologyToStr(const std::string& na) const;
  /// The revision without its NUL bytes.
  std::string ConvertRevisionToStr() const;
  /// The firmware version as major.minor.sub-minor in decimal; `na` if it is unknown or the cable
  /// is passive.
  std::string ConvertFWVersionToStr(const std::string& na) const;
  /// The date as YY-MM-DD; `na` if any of its six characters is not a digit.
  std::string ConvertDateCodeToStr(const std::string& na) const;
  /// The CDR enable bits of the RX (`rx` true) or TX lanes as "0x" and two hexadecimal digits; `na`
  /// for passive cables and, unless `always` is true, for a direction without a CDR.
  std::string ConvertCDREnableTxRxToStr(bool rx, const std::string& na, bool always) const;
  /// The four attenuations, as four cells in CSV; missing for all but passive cables.
  std::string ConvertAttenuationToStr(bool csv) const;
  /// `value` four times, once per lane: as hexadecimal digits without separators (`hex` true) or as
  /// decimal numbers separated by blanks; `na` for passive cables.
  std::string ConvertTxEQRxAMPRxEMPToStr(std::uint8_t value, bool hex, const std::string& na) const;
  /// A temperature word of this module in whole degrees Celsius with "C"; in CSV between quotes,
  /// and so is the fallback.
  std::string ConvertTemperatureToStr(std::uint16_t raw, bool csv) const;
  /// A voltage word, given in units of 100 uV, in microvolts with "uV"; between quotes in CSV.
  std::string ConvertVoltageToStr(std::uint16_t raw, bool csv) const;
  /// The maximum power in watts with " W"; `na` if it is 0.
  std::string ConvertMaxPowerToStr(const std::string& na) const;
  /// The InfiniBand speeds, lowest first and joined by "/"; `na` if there are none.
  std::string ConvertIBComplianceCodeToStr(const std::string& na) const;
};

/// The page of latched flags: 22 bytes. In a byte of lane flags, bit n - 1 is lane n; rows and
/// reports show lanes 1..4 only. In the two bytes of module flags, bit 0 is the high alarm, 1 the
/// low alarm, 2 the high warning and 3 the low warning.
///
/// The bits are those of CMIS 5.x: module flags of lower page byte 9 (temperature in bits 3..0,
/// supply voltage in bits 7..4), lane flags of page 11h bytes 136-152.
struct LatchedFlagsPage {
  std::uint8_t reserved_0[2] = {};                 ///< never read
  std::uint8_t latched_voltage_flags = 0;          ///< module flags: supply voltage
  std::uint8_t latched_temperature_flags = 0;      ///< module flags: temperature
  std::uint8_t latched_tx_adaptive_eq_fault = 0;   ///< adaptive-equalization fault (11h:138)
  std::uint8_t latched_tx_cdr_lol = 0;             ///< CDR loss of lock, TX (11h:137)
  std::uint8_t latched_tx_los = 0;                 ///< loss of signal, TX (11h:136)
  std::uint8_t reserved_7 = 0;                     ///< never read
  std::uint8_t latched_tx_power_low_warning = 0;   ///< transmitted power, low warning (11h:142)
  std::uint8_t latched_tx_power_high_warning = 0;  ///< transmitted power, high warning (11h:141)
  std::uint8_t latched_tx_power_low_alarm = 0;     ///< transmitted power, low alarm (11h:140)
  std::uint8_t latched_tx_power_high_alarm = 0;    ///< transmitted power, high alarm (11h:139)
  std::uint8_t latched_tx_bias_low_warning = 0;    ///< bias current, low warning (11h:146)
  std::uint8_t latched_tx_bias_high_warning = 0;   ///< bias current, high warning (11h:145)
  std::uint8_t latched_tx_bias_low_alarm = 0;      ///< bias current, low alarm (11h:144)
  std::uint8_t latched_tx_bias_high_alarm = 0;     ///< bias current, high alarm (11h:143)
  std::uint8_t latched_rx_cdr_lol = 0;             ///< CDR loss of lock, RX (11h:148)
  std::uint8_t latched_rx_los = 0;                 ///< loss of signal, RX (11h:147)
  std::uint8_t latched_rx_power_low_warning = 0;   ///< received power, low warning (11h:152)
  std::uint8_t latched_rx_power_high_warning = 0;  ///< received power, high warning (11h:151)
  std::uint8_t latched_rx_power_low_alarm = 0;     ///< received power, low alarm (11h:150)
  std::uint8_t latched_rx_power_high_alarm = 0;    ///< received power, high alarm (11h:149)
};

}  // namespace cable_info
