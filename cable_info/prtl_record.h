#pragma once

/// \file
/// The length of a cable, computed from the round-trip latency of its link.
///
/// \code
/// cable_info::PrtlRecord local;
/// cable_info::PrtlRecord remote;
/// local.latency_res = 1;
/// local.round_trip_latency = 130;
/// local.local_phy_latency = remote.local_phy_latency = 50;
/// std::string error;
/// const float metres = local.CalculateLength(remote, error);  // (130 - 50 - 50) / 10 = 3
/// if (!port.SetMeasuredLength(metres)) std::cerr << error << '\n';
/// \endcode

#include <cstdint>
#include <string>

namespace cable_info {

/// The round-trip-latency register (PRTL) of one end of a link. A signal takes 10 latency units to
/// travel one metre of cable and back.
class PrtlRecord {
 public:
  /// The highest value of the round-trip counter, which means that the latency exceeded it.
  static constexpr std::uint32_t kMaxRoundTripLatency = 0xFFFFFF;
  /// The result of `CalculateLength` if it sets an error text.
  static constexpr float kNoLength = -1.0F;

  /// The first word of the register; not used.
  std::uint32_t head_word = 0;
  /// The resolution: latency units in one count of `round_trip_latency`.
  std::uint8_t latency_res = 0;
  /// The latency of this end's PHY, in latency units.
  std::uint16_t local_phy_latency = 0;
  /// The latency of this end's module data path, in latency units.
  std::uint16_t local_mod_dp_latency = 0;
  /// The round-trip latency in counts of `latency_res`, at most `kMaxRoundTripLatency`.
  std::uint32_t round_trip_latency = 0;

  /// The length in metres of the cable to `remote`. Round trip and resolution are those of this
  /// end. The result may be zero or negative.
  float CalculateLength(const PrtlRecord& remote) const;

  /// The same, or `kNoLength` with an explanation in `error` if the counter is at its highest value
  /// or the result is not positive. On success `error` is unchanged.
  float CalculateLength(const PrtlRecord& remote, std::string& error) const;

  /// The four values that a length is computed from, as one line of text.
  std::string ToString() const;
};

}  // namespace cable_info
