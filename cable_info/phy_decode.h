#pragma once

// Decoders of the PHY's registers: functions that append the text of one field.
//
// `phy::module` decodes the fields of a module record; `phy` decodes the values of a port, with or
// without one. `phy_cable_record.cpp` and `phy_registers.cpp` wrap them as published operations,
// `phy_output.cpp` composes rows and reports of them. Internal; not installed.

#include <cstdint>
#include <string_view>

#include "cable_info/phy_cable_record.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] phy {

using decode::Form;
using text::TextBuffer;

/// The lanes of which a row and a report show settings and latched flags.
inline constexpr int kShownLanes = 4;

using LaneWords = std::uint16_t (ModuleRecord::*)[kPhyLanes];

/// 10 * log10(mw); -999.999 for zero and negative powers.
double MilliwattsToDbm(double mw);
/// 10 to the power of dbm / 10; -999.999 for exactly 0 dBm.
double DbmToMilliwatts(double dbm);

// ---------------------------------------------------------------------------------------------
// Fields of a module record
// ---------------------------------------------------------------------------------------------

namespace module {

/// The direction of a CDR.
enum class Direction { kTx, kRx };

/// Whether the state of a CDR is shown for a module that has none.
enum class CdrShown { kWhenPresent, kAlways };

/// A length in metres: `base` times `multiplier`, where a multiplier of 0 means 0.1.
struct CableLength {
  int base = 0;        ///< 0: unknown
  int multiplier = 1;  ///< 0, 1, 10 or 100

  /// The length in metres.
  double Metres() const { return multiplier == 0 ? base * 0.1 : base * multiplier; }
};

/// A length of single-mode fibre: `value` times `unit` metres.
struct SmfLength {
  int value;  ///< 0: unknown
  int unit;   ///< 100 or 1000

  /// The length in metres.
  int Metres() const { return value * unit; }
};

bool HasCmis(const ModuleRecord& m);
inline std::uint8_t TechnologyNibble(const ModuleRecord& m) { return m.cable_technology >> 4; }
/// "NA" for codes without a name.
std::string_view FormFactorName(const ModuleRecord& m);
CableLength LengthOf(const ModuleRecord& m);
/// The number of lanes of the form factor; `kPhyLanes` for codes without a name.
int LaneCount(const ModuleRecord& m);
/// The longest single-mode link.
SmfLength SmfLengthOf(const ModuleRecord& m);
/// The longest link over fibre of grade OM1 to OM5, in metres; 0 if unknown, and for other grades.
int OmMetres(const ModuleRecord& m, std::uint8_t om);
/// Whether the date consists of digits.
bool HasDateCode(const ModuleRecord& m);
/// The value of lane 1..8.
inline std::uint16_t LaneValue(const std::uint16_t (&lanes)[kPhyLanes], int lane) {
  return lanes[PhyLaneIndex(lane)];
}

/// True when a `power_unit_flag` states that powers are in dBm; any other value: units of 0.1 uW.
constexpr bool IsDbm(std::uint16_t unit_flag) { return unit_flag == 0; }

/// A power in milliwatts.
inline double Milliwatts(double raw, std::uint16_t unit_flag) {
  constexpr double kMilliwattsPerUnit = 0.0001;
  return IsDbm(unit_flag) ? DbmToMilliwatts(raw) : raw * kMilliwattsPerUnit;
}

/// Microamperes in one unit of a bias word.
inline constexpr std::uint32_t kMicroamperesPerUnit = 2;

/// A bias word in milliamperes.
inline double Milliamperes(double raw) {
  constexpr double kUnitsPerMilliampere = 1000.0 / kMicroamperesPerUnit;
  return raw / kUnitsPerMilliampere;
}

/// `ModuleRecord::SelectNominalBR` is in Gb/s, a row in Mb/s.
inline constexpr std::uint32_t kMegabitsPerGigabit = 1000;

/// Watts in one unit of `ModuleRecord::max_power`.
inline constexpr double kWattsPerUnit = 0.25;

void AppendMetres(TextBuffer& out, CableLength length);
void AppendLength(TextBuffer& out, const ModuleRecord& m, Form form, std::string_view na);
void AppendLengthSmf(TextBuffer& out, const ModuleRecord& m);
void AppendLengthOmx(TextBuffer& out, const ModuleRecord& m, std::uint8_t om);
void AppendTechnology(TextBuffer& out, const ModuleRecord& m, std::string_view na);
void AppendRevision(TextBuffer& out, const ModuleRecord& m);
void AppendFwVersion(TextBuffer& out, const ModuleRecord& m, std::string_view na);
void AppendDateCode(TextBuffer& out, const ModuleRecord& m, std::string_view na);
void AppendCdrEnable(TextBuffer& out, const ModuleRecord& m, Direction direction, CdrShown shown,
                     std::string_view na);
void AppendAttenuation(TextBuffer& out, const ModuleRecord& m, Form form);
/// The value that all lanes share, four times.
void AppendLaneSetting(TextBuffer& out, const ModuleRecord& m, std::uint8_t value, Form form,
                       std::string_view na);
void AppendTemperature(TextBuffer& out, const ModuleRecord& m, std::uint16_t raw, Form form);
void AppendVoltage(TextBuffer& out, std::uint16_t raw, Form form);
void AppendMaxPower(TextBuffer& out, const ModuleRecord& m, std::string_view na);
void AppendSupportedSpeed(TextBuffer& out, const ModuleRecord& m, std::string_view na);

}  // namespace module

// ---------------------------------------------------------------------------------------------
// Fields of a port, with or without a module record
// ---------------------------------------------------------------------------------------------

void AppendType(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendIdentifier(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendBitrate(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendPowerClass(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendMaxPower(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendFwVersion(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendDateCode(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendLot(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendComplianceCode(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendTechnology(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendSupportedSpeed(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendAttenuation(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendLength(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendLengthByReg(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendLengthByPrtl(TextBuffer& out, const PhyCableRecord& r, Form form);
void AppendLaneSetting(TextBuffer& out, const PhyCableRecord& r,
                       std::uint8_t ModuleRecord::*setting, Form form);
void AppendTemperature(TextBuffer& out, const PhyCableRecord& r, std::uint16_t ModuleRecord::*word,
                       Form form);
void AppendLengthSmf(TextBuffer& out, const PhyCableRecord& r);
void AppendLengthOmx(TextBuffer& out, const PhyCableRecord& r, std::uint8_t om);
void AppendCdrEnable(TextBuffer& out, const PhyCableRecord& r);
void AppendRxPowerType(TextBuffer& out, const PhyCableRecord& r);

/// `text` trimmed, with "-" for commas; `blank` when nothing is left.
void AppendDescription(TextBuffer& out, std::string_view text, std::string_view blank);
void AppendVendor(TextBuffer& out, const PhyCableRecord& r);
void AppendOui(TextBuffer& out, const PhyCableRecord& r);
void AppendPn(TextBuffer& out, const PhyCableRecord& r);
void AppendSn(TextBuffer& out, const PhyCableRecord& r);
void AppendRevision(TextBuffer& out, const PhyCableRecord& r);

// ---------------------------------------------------------------------------------------------
// Optical monitors
// ---------------------------------------------------------------------------------------------

/// A lane's power without a module record.
std::string_view MissingPower(Form form);
void AppendPower(TextBuffer& out, double raw, std::uint16_t unit_flag, Form form);
void AppendLanePower(TextBuffer& out, const PhyCableRecord& r, LaneWords lanes, int lane,
                     Form form);
void AppendBias(TextBuffer& out, double raw, Form form);
void AppendLaneBias(TextBuffer& out, const PhyCableRecord& r, int lane, Form form);

// ---------------------------------------------------------------------------------------------
// Latched flags
// ---------------------------------------------------------------------------------------------

namespace flags {

/// An alarm word of the lane masks `a` to `d` (bit 0 is lane 1): one nibble per lane, lane 1 in the
/// top one, with the bits of `a`, `b`, `c`, `d` from its top.
std::uint16_t Interleaved(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d);

std::uint16_t RxPowerAlarms(const LatchedFlagsPage& p);
std::uint16_t TxBiasAlarms(const LatchedFlagsPage& p);
std::uint16_t TxPowerAlarms(const LatchedFlagsPage& p);
std::uint8_t Loss(const LatchedFlagsPage& p);
std::uint8_t LossOfLock(const LatchedFlagsPage& p);
std::uint8_t AdaptiveEqFault(const LatchedFlagsPage& p);
std::uint8_t Temperature(const LatchedFlagsPage& p);
std::uint8_t Voltage(const LatchedFlagsPage& p);

/// The hexadecimal digits of flags: as many as their type holds.
template <typename Flags>
constexpr int Digits(Flags (* /*select*/)(const LatchedFlagsPage&)) {
  return 2 * static_cast<int>(sizeof(Flags));
}

}  // namespace flags

/// The flags that `select(page)` returns; N/A without the page.
template <typename Flags>
void AppendFlags(TextBuffer& out, const PhyCableRecord& r,
                 Flags (*select)(const LatchedFlagsPage&)) {
  if (r.latched_flags == nullptr) {
    out.Append(kReportNa);
  } else {
    out.AppendPrefixedHex(select(*r.latched_flags), flags::Digits(select));
  }
}

}  // namespace phy
}  // namespace cable_info
