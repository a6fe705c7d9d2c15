#pragma once

/// \file
/// The levels of alarms and warnings, for all code that reads or shows thresholds and flags.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cable_info {

/// The four levels of a monitored quantity, in the order in which the standards list thresholds:
/// each has a threshold, and a flag that the module latches when the value crosses it.
enum class AlarmLevel : std::uint8_t { kHighAlarm, kLowAlarm, kHighWarning, kLowWarning };

/// The number of levels.
inline constexpr std::size_t kAlarmLevels = 4;

/// All levels, in order.
inline constexpr std::array<AlarmLevel, kAlarmLevels> kAllAlarmLevels = {
    AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm, AlarmLevel::kHighWarning,
    AlarmLevel::kLowWarning};

/// True for the two levels that a value crosses upwards.
constexpr bool IsHigh(AlarmLevel level) {
  return level == AlarmLevel::kHighAlarm || level == AlarmLevel::kHighWarning;
}

/// True for the two levels of an alarm.
constexpr bool IsAlarm(AlarmLevel level) {
  return level == AlarmLevel::kHighAlarm || level == AlarmLevel::kLowAlarm;
}

/// "high_alarm", "low_alarm", "high_warning" or "low_warning".
constexpr std::string_view AlarmLevelName(AlarmLevel level) {
  constexpr std::array<std::string_view, kAlarmLevels> kNames = {"high_alarm", "low_alarm",
                                                                 "high_warning", "low_warning"};
  return kNames[static_cast<std::size_t>(level)];
}

}  // namespace cable_info
