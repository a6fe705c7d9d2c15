#pragma once

/// \file
/// One measured value of a port with its context: what it measures, on which lane, in which unit,
/// between which thresholds, with which latched flags.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "cable_info/module_memory/alarm_level.h"
#include "cable_info/module_memory/field_state.h"

namespace cable_info {

/// The quantity of a reading.
enum class Quantity : std::uint8_t {
  kTemperature,  ///< the module's temperature, degrees Celsius
  kVoltage,      ///< the module's supply voltage, volts
  kRxPower,      ///< received optical power of a lane, milliwatts
  kTxPower,      ///< transmitted optical power of a lane, milliwatts
  kTxBias,       ///< laser bias current of a lane, milliamperes
};

/// The number of quantities.
inline constexpr std::size_t kQuantities = 5;

/// The highest number of lanes of a port. Lanes are numbered from 1.
inline constexpr int kMaxLanes = 8;

/// Up to eight switches or flags, each of which is on, off or not known; number 1 is bit 0.
struct Flags {
  std::uint8_t known = 0;   ///< bit n - 1: flag n is known
  std::uint8_t raised = 0;  ///< bit n - 1: flag n is raised; 0 where it is not known

  /// Flag `number`, counted from 1; empty when it is not known.
  constexpr std::optional<bool> Get(int number) const {
    const unsigned bit = 1U << (number - 1);
    if ((known & bit) == 0) return std::nullopt;
    return (raised & bit) != 0;
  }
  /// True when flag `number`, counted from 1, is known and raised.
  constexpr bool IsRaised(int number) const { return (known & raised & (1U << (number - 1))) != 0; }
};

/// A measured value. Values and thresholds are in the unit of the quantity (`QuantityUnit`); a
/// `float` holds every number that a module can report and prints as the module's own digits.
struct Reading {
  Quantity quantity = Quantity::kTemperature;  ///< what it measures
  std::uint8_t lane = 0;                       ///< 1..8; 0 is the module
  FieldState state = FieldState::kNotRead;     ///< only a present reading has a value
  Flags latched;                               ///< by level; see `Latched`
  float value = 0;                             ///< 0 unless present; never NaN or infinite
  std::array<std::optional<float>, kAlarmLevels> thresholds;  ///< by level

  /// True when there is a value.
  bool IsPresent() const { return state == FieldState::kPresent; }
  /// The module's own threshold; empty when it gives none.
  std::optional<float> Threshold(AlarmLevel level) const {
    return thresholds[static_cast<std::size_t>(level)];
  }
  /// The latched flag of a level; empty when it was not read or the module has none.
  std::optional<bool> Latched(AlarmLevel level) const {
    return latched.Get(static_cast<int>(level) + 1);
  }
  /// True if there is a value strictly beyond `limit`, on the side of `level`.
  bool IsBeyond(AlarmLevel level, float limit) const {
    return IsPresent() && (IsHigh(level) ? value > limit : value < limit);
  }
  /// An optical power in dBm; empty for other quantities, without a value, and without light.
  std::optional<double> Dbm() const;
};

/// "temperature", "voltage", "rx_power", "tx_power" or "tx_bias".
std::string_view QuantityName(Quantity quantity);

/// "C", "V", "mW" or "mA".
std::string_view QuantityUnit(Quantity quantity);

/// True for received and transmitted power, which can also be given in dBm.
constexpr bool IsPower(Quantity quantity) {
  return quantity == Quantity::kRxPower || quantity == Quantity::kTxPower;
}

/// 10 * log10(milliwatts) for a power above 0; empty for any other number.
std::optional<double> MilliwattsToDbm(double milliwatts);

}  // namespace cable_info
