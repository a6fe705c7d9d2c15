#pragma once

// The names of alarm levels as words, for data sheets and sentences.
//
// Internal; not installed.

#include <array>
#include <cstddef>
#include <string_view>

#include "cable_info/module_memory/alarm_level.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// A name with blanks in place of its underscores.
struct Words {
  std::array<char, 16> text = {};
  std::size_t size = 0;
};
constexpr Words WordsOf(std::string_view name) {
  Words words;
  for (const char c : name) words.text[words.size++] = c == '_' ? ' ' : c;
  return words;
}

inline constexpr std::array<Words, kAlarmLevels> kAlarmLevelWords = {
    WordsOf(AlarmLevelName(AlarmLevel::kHighAlarm)),
    WordsOf(AlarmLevelName(AlarmLevel::kLowAlarm)),
    WordsOf(AlarmLevelName(AlarmLevel::kHighWarning)),
    WordsOf(AlarmLevelName(AlarmLevel::kLowWarning)),
};

/// "high alarm", "low alarm", "high warning" or "low warning".
constexpr std::string_view AlarmLevelWords(AlarmLevel level) {
  const Words& words = kAlarmLevelWords[static_cast<std::size_t>(level)];
  return {words.text.data(), words.size};
}

}  // namespace module_memory
}  // namespace cable_info
