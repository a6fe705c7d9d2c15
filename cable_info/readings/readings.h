#pragma once

/// \file
/// One numeric view of a port, whatever it was read from: identity, lengths and speeds as values,
/// and every measured value in one unit, lanes in reading order. No caller needs to know unit
/// flags, swapped lanes or the bit orders of the sources.

#include <array>
#include <cassert>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/readings/reading.h"

namespace cable_info {

class CableRecord;
class CombinedCableInfo;
class PhyCableRecord;

/// The transmission medium.
enum class Medium : std::uint8_t {
  kUnknown,        ///< not known
  kOptical,        ///< a module or an active optical cable
  kPassiveCopper,  ///< unequalized or passive equalized copper
  kActiveCopper,   ///< copper with active equalizers
};

/// "optical", "passive_copper" or "active_copper"; empty for `kUnknown`.
std::string_view MediumName(Medium medium);

/// A code as its source numbers it, with its name.
struct CodeAndName {
  std::uint8_t code = 0;  ///< as numbered by the source
  std::string name;       ///< empty for a code without a name
};

/// The identity of a cable or module. Texts have no blanks at their ends; an empty text is unknown.
/// Their bytes are those of the source, in no known encoding.
struct Identity {
  std::string vendor;         ///< vendor name
  std::string oui;            ///< six lower-case hexadecimal digits
  std::string part_number;    ///< part number
  std::string revision;       ///< revision
  std::string serial_number;  ///< serial number
  std::string date_code;      ///< YYMMDD
  std::string firmware;       ///< major.minor.sub-minor in decimal, or verbatim from the source
  std::optional<std::uint16_t> lot;  ///< lot code
};

/// Lengths in metres; empty ones are not given.
struct Lengths {
  std::optional<float> cable;     ///< the stated length of a cable
  std::optional<float> measured;  ///< by round-trip latency
  std::optional<float> smf;       ///< supported on single-mode fibre
  std::optional<float> om5;       ///< supported on OM5 multi-mode fibre
  std::optional<float> om4;       ///< supported on OM4 multi-mode fibre
  std::optional<float> om3;       ///< supported on OM3 multi-mode fibre
  std::optional<float> om2;       ///< supported on OM2 multi-mode fibre
  std::optional<float> om1;       ///< supported on OM1 multi-mode fibre
};

/// Attenuation of copper in dB, by frequency in GHz; empty ones are not given.
struct Attenuation {
  std::optional<std::uint8_t> at_2p5;   ///< at 2.5 GHz
  std::optional<std::uint8_t> at_5;     ///< at 5 GHz
  std::optional<std::uint8_t> at_7;     ///< at 7 GHz
  std::optional<std::uint8_t> at_12p9;  ///< at 12.9 GHz
  std::optional<std::uint8_t> at_25p8;  ///< at 25.8 GHz
};

/// The latched flags of a lane, in addition to those of its monitors.
enum class LaneFlag : std::uint8_t {
  kRxLos,            ///< loss of the received signal
  kTxLos,            ///< loss of the host's signal
  kRxLol,            ///< the receiver's CDR lost its lock
  kTxLol,            ///< the transmitter's CDR lost its lock
  kTxFault,          ///< transmitter fault
  kAdaptiveEqFault,  ///< the adaptive equalization of the host's signal failed
};

/// All lane flags, in order.
inline constexpr std::array<LaneFlag, 6> kAllLaneFlags = {
    LaneFlag::kRxLos, LaneFlag::kTxLos,   LaneFlag::kRxLol,
    LaneFlag::kTxLol, LaneFlag::kTxFault, LaneFlag::kAdaptiveEqFault};

/// A value for each lane; empty where there is none. Lane n has index n - 1.
using LaneValues = std::array<std::optional<std::uint8_t>, kMaxLanes>;

/// The settings of the module by lane. Equalization, amplitude, emphasis and cursors are the codes
/// of the source.
struct Controls {
  Flags tx_cdr;                 ///< the CDR of the transmitter is on
  Flags rx_cdr;                 ///< the CDR of the receiver is on
  Flags rx_output_disable;      ///< the output towards the host is off
  Flags tx_adaptive_eq;         ///< the input adapts its equalization
  Flags tx_adaptive_eq_freeze;  ///< the adapted equalization is frozen
  LaneValues tx_input_eq;       ///< equalization of the input
  LaneValues rx_amplitude;      ///< amplitude of the output
  LaneValues rx_emphasis;       ///< emphasis of the output
  LaneValues rx_pre_cursor;     ///< pre-emphasis of the output
  LaneValues rx_post_cursor;    ///< post-emphasis of the output
};

/// A value that only some modules measure, such as an auxiliary monitor.
struct Observable {
  std::string name;   ///< what it measures, in lower case and with its unit, such as "vcc2_v"
  std::string place;  ///< where, such as "lane 1"; empty for the module
  std::string unit;   ///< empty for a plain number
  Reading reading;    ///< its quantity and lane have no meaning
};

/// All values of a port as numbers.
class Readings {
 public:
  /// Without data.
  Readings();

  /// False if nothing was read from the cable; only `source`, `lengths.measured`, `lanes` and
  /// `lanes_in_use` may be set then.
  bool has_data = false;
  /// The name of the data source; empty without data.
  std::string source;
  /// The status of the query that read the cable pages (see `ConvertCableInfoVSStatusToStr`); empty
  /// for other sources. If it has a value other than 0, there are no readings and no flags.
  std::optional<std::uint8_t> query_status;
  /// The number of wrong checksums in the memory of the module.
  int checksum_mismatches = 0;

  /// Vendor, part and serial number, and so on.
  Identity identity;
  /// The form factor: SFF-8024 rev 4.13 table 4-1, or the number of the PHY's register.
  std::optional<CodeAndName> identifier;
  /// The connector: SFF-8024 rev 4.13 table 4-3.
  std::optional<CodeAndName> connector;
  /// The technology: SFF-8636 rev 2.11 page 00h byte 147 bits 7..4, or CMIS 5.x page 00h byte 212.
  std::optional<CodeAndName> technology;
  /// The extended specification compliance: SFF-8024 rev 4.13 table 4-4.
  std::optional<CodeAndName> compliance;
  /// The transmission medium.
  Medium medium = Medium::kUnknown;
  /// The vendor code of the CDR chip, as in the PHY's register.
  std::optional<std::uint8_t> cdr_vendor;

  /// The InfiniBand speeds: bit 0 SDR, 1 DDR, 2 QDR, 3 FDR, 4 EDR, 5 HDR, 6 NDR.
  std::optional<std::uint8_t> speeds;
  std::optional<float> nominal_bitrate_gbps;  ///< nominal bit rate, Gb/s
  std::optional<std::uint8_t> power_class;    ///< power class, 1 to 8
  std::optional<float> max_power_w;           ///< maximum power, W
  Lengths lengths;                            ///< lengths of the cable, or supported by the module
  Attenuation attenuation;                    ///< attenuation of copper
  /// Received power is an average (true) or an OMA (false).
  std::optional<bool> rx_power_is_average;

  /// The number of lanes of the form factor, 0 to `kMaxLanes`; `kMaxLanes` if it is unknown. Of a
  /// module whose memory was read, its highest lane.
  int lanes = 0;
  /// Bit n - 1: the port has lane n, and it is not zero on all three of its monitors.
  std::uint8_t lanes_in_use = 0;
  /// The settings of the lanes.
  Controls controls;
  /// Auxiliary monitors and VDM observables of a module.
  std::vector<Observable> observables;

  /// A reading of the module: its temperature or its voltage.
  /// @{
  const Reading& Of(Quantity quantity) const { return Of(quantity, 0); }
  /// The same, for modification.
  Reading& Of(Quantity quantity) { return Of(quantity, 0); }
  /// @}
  /// A reading of a lane from 1 to `kMaxLanes`, or of the module, which is lane 0.
  /// @{
  const Reading& Of(Quantity quantity, int lane) const { return readings_[Index(quantity, lane)]; }
  /// The same, for modification.
  Reading& Of(Quantity quantity, int lane) { return readings_[Index(quantity, lane)]; }
  /// @}

  /// All readings: temperature, voltage, then RX power, TX power and TX bias of lanes 1..8 each.
  /// @{
  const Reading* begin() const { return readings_.data(); }
  /// The end of the readings.
  const Reading* end() const { return readings_.data() + readings_.size(); }
  /// @}

  /// The latched flags of the lanes.
  /// @{
  const Flags& Of(LaneFlag flag) const { return flags_[static_cast<std::size_t>(flag)]; }
  /// The same, for modification.
  Flags& Of(LaneFlag flag) { return flags_[static_cast<std::size_t>(flag)]; }
  /// @}

  /// True for a lane from 1 to `kMaxLanes` that is in use.
  bool IsInUse(int lane) const { return (lanes_in_use >> (lane - 1) & 1) != 0; }

 private:
  static constexpr std::size_t kModuleReadings = 2;

  static constexpr std::size_t Index(Quantity quantity, int lane) {
    const auto number = static_cast<std::size_t>(quantity);
    const bool is_of_module = number < kModuleReadings;
    assert(is_of_module ? lane == 0 : lane >= 1 && lane <= kMaxLanes);
    if (is_of_module) return number;
    return kModuleReadings + (number - kModuleReadings) * kMaxLanes +
           static_cast<std::size_t>(lane) - 1;
  }

  std::array<Reading, kModuleReadings + (kQuantities - kModuleReadings) * kMaxLanes> readings_;
  std::array<Flags, kAllLaneFlags.size()> flags_;
};

/// The readings of the cable-information pages. Units and bit orders are those of SFF-8636
/// rev 2.11.
///
/// The pages have thresholds of temperature and voltage only. A quantity whose four thresholds are
/// all zero has none; temperatures and their thresholds outside -40..125 C are missing. A module
/// whose monitors are zero on all lanes has no lane monitors. A voltage of 0 means that the module
/// has no voltage monitor; if its temperature word is 0, too, it has no temperature monitor either.
/// Passive copper has no monitors.
Readings ReadingsOf(const CableRecord& record);

/// The readings of the PHY's registers. The register has alarm thresholds only; the rules for
/// missing values are those of the cable pages. With a unit flag of 0 lane powers and their
/// thresholds are dBm: a lane of 0 dBm has no value, and a threshold above 40 dBm is ignored.
Readings ReadingsOf(const PhyCableRecord& record);

/// The readings of the `CableRecord` if there is one, otherwise of the `PhyCableRecord`; no data
/// without records.
Readings ReadingsOf(const CombinedCableInfo& cable);

}  // namespace cable_info
