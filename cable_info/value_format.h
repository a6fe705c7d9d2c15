#pragma once

/// \file
/// Formatting helpers, and the decoders and tables that all kinds of cable records share.
///
/// Texts are those of a default-formatted stream in the C locale, regardless of the locale of the
/// program. Decoders never fail: a value outside a table yields a fallback text.
///
/// \code
/// cable_info::_to_ptr_string<unsigned char>(0x11);     // "0x11"
/// cable_info::CableTypeToStr(4, "N/A");                // "1310 nm DFB"
/// cable_info::SupportedSpeedToStr(0x30, "N/A");        // "EDR/HDR"
/// cable_info::VoltageToStr(32950);                     // "3295000uV"
/// \endcode
///
/// Several names in this header and in those of the records have unusual spellings
/// (`_to_cvs_quoted`, `GetTemperatureErrorsByTreshold`, `OuputPreEmpToStr`, `ComplanceCodeToStr`).
/// They are part of the interface; do not correct them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "cable_info/missing_values.h"

namespace cable_info {

// ---------------------------------------------------------------------------------------------
// Number to text
// ---------------------------------------------------------------------------------------------

/// `value` in decimal; a `double` as `printf` writes "%g". Defined for `unsigned char`, `unsigned
/// short` and `double`.
template <typename T>
std::string _to_string(T value);
/// As a number, never as a character.
template <>
std::string _to_string<unsigned char>(unsigned char value);
/// With all digits.
template <>
std::string _to_string<unsigned short>(unsigned short value);
/// With at most six significant digits, as a default-formatted stream writes it.
template <>
std::string _to_string<double>(double value);

/// "0x" and `value` in lower-case hexadecimal, padded with "0" to at least `width` digits (by
/// default, twice the size of the type). Defined for `unsigned char` and `unsigned short`.
template <typename T>
std::string _to_ptr_string(T value, int width = 2 * static_cast<int>(sizeof(T)));
/// At least two digits by default.
template <>
std::string _to_ptr_string<unsigned char>(unsigned char value, int width);
/// At least four digits by default.
template <>
std::string _to_ptr_string<unsigned short>(unsigned short value, int width);

/// `text` between double quotes if `quote` is true, otherwise `text`. Nothing is escaped. The
/// spelling "cvs" is part of the interface; do not correct it.
std::string _to_cvs_quoted(bool quote, const std::string& text);

// ---------------------------------------------------------------------------------------------
// Stream inserters
// ---------------------------------------------------------------------------------------------

/// Writes a value between two delimiters; nothing is escaped. Does not own the value.
template <typename T>
struct QUOTED_T {
  /// Initializes the members.
  QUOTED_T(const T* value_in, char open_in, char close_in)
      : value(value_in), open(open_in), close(close_in) {}

  const T* value;  ///< must outlive the output
  char open;       ///< written before the value
  char close;      ///< written after the value
};

/// Writes a floating-point value with `precision` decimals in fixed notation, or in scientific
/// notation if `scientific` is true. With precision 0, precision and notation are those of the
/// stream.
template <typename T>
struct FLOAT_T {
  /// Initializes the members.
  FLOAT_T(T value_in, int precision_in, bool scientific_in)
      : value(value_in), precision(precision_in), scientific(scientific_in) {}

  T value;                 ///< the number
  std::int32_t precision;  ///< number of decimals; 0: that of the stream
  bool scientific;         ///< scientific notation
};

/// Writes an integer in hexadecimal, without "0x", padded on the left to `width` characters. With
/// width 0, the width of the stream remains in effect.
template <typename T>
struct HEX_T {
  /// Initializes the members.
  HEX_T(T value_in, int width_in, char fill_in) : value(value_in), width(width_in), fill(fill_in) {}

  T value;             ///< the number
  std::int32_t width;  ///< minimum number of characters; 0: that of the stream
  char fill;           ///< the fill character; remains set on the stream
};

/// For a null value, writes only the opening delimiter and sets the stream's badbit.
std::ostream& operator<<(std::ostream& os, const QUOTED_T<std::string>& quoted);
/// Writes the array up to its NUL or its end; a null value in the same way.
std::ostream& operator<<(std::ostream& os, const QUOTED_T<char[3]>& quoted);
/// Restores the stream's format flags, but not a precision that was set.
std::ostream& operator<<(std::ostream& os, const FLOAT_T<float>& number);
/// Restores the stream's format flags, but not the fill character.
std::ostream& operator<<(std::ostream& os, const HEX_T<unsigned char>& number);

// ---------------------------------------------------------------------------------------------
// Shared tables
// ---------------------------------------------------------------------------------------------

/// Transmitter technologies by code (SFF-8636 rev 2.11 page 00h byte 147, bits 7..4; CMIS 5.x page
/// 00h byte 212): 0..9 are optical transmitters, 10..15 copper cables.
inline constexpr std::array<std::string_view, 16> transmitter_technology_arr = {
    "850 nm VCSEL",
    "1310 nm VCSEL",
    "1550 nm VCSEL",
    "1310 nm FP",
    "1310 nm DFB",
    "1550 nm DFB",
    "1310 nm EML",
    "1550 nm EML",
    "others",
    "1490 nm DFB",
    "Copper cable- unequalized",
    "Copper cable- passive equalized",
    "Copper cable- near and far end limiting active equalizers",
    "Copper cable- far end limiting active equalizers",
    "Copper cable- near end limiting active equalizers",
    "Copper cable- linear active equalizers",
};

/// InfiniBand speeds by bit of the supported-speed mask (SFF-8636 rev 2.11 page 00h byte 164, which
/// defines bits 0 to 5), each with the separator that follows it in a list.
inline constexpr std::array<std::string_view, 7> ib_compliance_code_arr = {
    "SDR/", "DDR/", "QDR/", "FDR/", "EDR/", "HDR/", "NDR/",
};

/// The highest optical code of `transmitter_technology_arr`.
inline constexpr std::uint8_t kLastOpticalTechnology = 9;
/// The code of unequalized copper.
inline constexpr std::uint8_t kUnequalizedCopper = 10;
/// The code of passive-equalized copper.
inline constexpr std::uint8_t kPassiveEqualizedCopper = 11;

/// The connector code of a cable without separable connectors (SFF-8024 rev 4.13, table 4-3), which
/// marks an active cable assembly.
inline constexpr std::uint8_t kNoSeparableConnector = 0x23;

/// The result of converting a power that has no value in the other unit, milliwatts or dBm.
inline constexpr double kUnrepresentablePower = -999.999;

// ---------------------------------------------------------------------------------------------
// Values that all kinds of records return
// ---------------------------------------------------------------------------------------------

/// The firmware version of a module; all zero means unknown.
struct fw_version_obj_t {
  std::uint8_t major = 0;       ///< bits 31..24 of a version word
  std::uint8_t minor = 0;       ///< bits 23..16
  std::uint16_t sub_minor = 0;  ///< bits 15..0
};

/// The name of the kind of received power, as in the text report.
constexpr std::string_view RxPowerTypeName(bool is_average) {
  return is_average ? "Average Power" : "OMA";
}

/// Splits a 32-bit firmware version: major in bits 31..24, minor 23..16, sub-minor 15..0.
fw_version_obj_t FWVersionFromWord(std::uint32_t version);

/// The identification of a cable; an empty member means unknown.
struct cable_id_t {
  std::string pn;          ///< part number
  std::string identifier;  ///< name of the identifier
  std::string vendor;      ///< vendor code, taken from the serial number
  std::string revision;    ///< revision
};

// ---------------------------------------------------------------------------------------------
// Shared decoders
// ---------------------------------------------------------------------------------------------

/// The entry of `transmitter_technology_arr`, or `fallback` for codes above 15.
std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback);

/// The speeds of the mask, lowest first and joined by "/"; `fallback` if bits 0..6 are clear.
std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback);

/// `temperature` in degrees Celsius with "C"; `fallback` if `_is_valid_temperature` is false.
std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                             const std::string& fallback);

/// A supply voltage, given in units of 100 uV, in microvolts with "uV".
std::string VoltageToStr(std::uint16_t raw);

/// True for the optical codes 0..9 of `transmitter_technology_arr`.
bool IsOpticCable(std::uint8_t technology);

/// True if the cable has a sensor (its technology is neither 10 nor 11) and `temperature` is in
/// -40..125 degrees Celsius.
bool _is_valid_temperature(std::int8_t temperature, std::uint8_t technology);

/// True if `temperature` is strictly above (`high` true) or strictly below `threshold`; false if
/// one of them is not a valid temperature.
bool _check_temperature_by_threshold(bool high, std::uint8_t technology, std::int8_t temperature,
                                     std::int8_t threshold);

/// Compares a temperature with its thresholds: bit 0 is set above the high one, bit 1 below the low
/// one. The words are encoded as in the memory of a module, with whole degrees Celsius in the high
/// byte.
std::uint8_t TemperatureErrors(std::uint8_t technology, std::uint16_t temperature,
                               std::uint16_t high_threshold, std::uint16_t low_threshold);

/// The text of an undefined status.
inline constexpr std::string_view kUnknownStatus = "UNKNOWN";

/// The text of an InfiniBand auto-negotiation status; `kUnknownStatus` for undefined values.
std::string ConvertAutonegValueToStr(std::uint8_t status);

/// The text of the status of the vendor-specific query that reads the cable-information pages;
/// `kUnknownStatus` for undefined values.
std::string ConvertCableInfoVSStatusToStr(std::uint8_t status);

/// The two-character vendor code of a serial number of the form `KS<number><code><number>`; empty
/// for any other. Scans as `scanf` does with "KS%d%c%c%d" (white space and a sign may precede a
/// number), but accepts numbers of any length.
std::string _get_vendor_from_sn(const std::string& sn);

/// The whole degrees Celsius of a temperature word: its high byte, signed.
constexpr std::int8_t WholeDegrees(std::uint16_t word) {
  return static_cast<std::int8_t>(static_cast<std::uint8_t>(word >> 8));
}

/// The entry of a table of texts at `code`; `fallback` for codes past its end.
template <std::size_t N>
constexpr std::string_view TableEntry(const std::array<std::string_view, N>& table,
                                      std::size_t code, std::string_view fallback) {
  return code < N ? table[code] : fallback;
}

/// `text` without white space (space, \\t, \\n, \\v, \\f, \\r) at both ends.
std::string_view Trimmed(std::string_view text);

/// `text` up to its first NUL.
std::string_view UpToNul(std::string_view text);

/// The text of a char array: up to its first NUL, or all of it if there is none.
template <std::size_t N>
std::string_view ArrayText(const char (&array)[N]) {
  return UpToNul(std::string_view(array, N));
}

}  // namespace cable_info
