#pragma once

/// \file
/// The PHY's module-info register and its page of latched flags, with the memory layout of the
/// registers: a host may fill either by copying the register into it, or member by member.

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

/// The lanes of the register's lane arrays.
inline constexpr int kPhyLanes = 8;

/// The index of lane 1..8 in the register's lane arrays, which hold each pair of lanes in swapped
/// order: 2, 1, 4, 3, 6, 5, 8, 7.
constexpr std::size_t PhyLaneIndex(int lane) { return static_cast<std::size_t>(lane - 1) ^ 1U; }

/// The nominal bit rate that refers to the extended one: in `ModuleRecord::nominal_bitrate`, in
/// SFF-8636 page 00h byte 140 and in SFF-8472 A0h byte 12.
inline constexpr std::uint8_t kSeeExtendedBitrate = 255;

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
  std::string ConvertTxEQRxAMPRxEMPToStr(std::uint8_t value, bool hex, const std::string& na) const;
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

}  // namespace cable_info
