#pragma once

/// \file
/// Measures a cable by the round-trip latency of its link.

#include <cstdint>
#include <string>

namespace cable_info {

/// The round-trip-latency register (PRTL) of one end of a link, as read.
class PrtlRecord {
 public:
  /// The ceiling of the round-trip counter: the round trip took longer than it can tell.
  static constexpr std::uint32_t kMaxRoundTripLatency = 0xFFFFFF;
  /// What `CalculateLength` returns beside an error text.
  static constexpr float kNoLength = -1.0F;

  /// Carried only.
  std::uint32_t head_word = 0;
  /// Latency units in one count of `round_trip_latency`.
  std::uint8_t latency_res = 0;
  /// Latency units spent in this end's PHY.
  std::uint16_t local_phy_latency = 0;
  /// Latency units spent in this end's module data path.
  std::uint16_t local_mod_dp_latency = 0;
  /// Counts of `latency_res`.
  std::uint32_t round_trip_latency = 0;

  /// The length in metres of the cable to `remote`, as the registers give it, negative or zero
  /// included. The round trip and its resolution are this end's.
  float CalculateLength(const PrtlRecord& remote) const;

  /// The same, or -1 with an explanation in `error` when the registers give no length. On success
  /// `error` keeps its text.
  float CalculateLength(const PrtlRecord& remote, std::string& error) const;

  /// The four values that a length is computed from, on one line.
  std::string ToString() const;
};

}  // namespace cable_info
