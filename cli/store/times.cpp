#include "cli/store/times.h"

#include <array>
#include <ctime>
#include <string_view>

#include "cli/store/database.h"

namespace cli {

std::string NormalizedTime(const std::string& text) {
  constexpr std::string_view kDate = "dddd-dd-dd";
  const auto fits = [&text](std::string_view pattern) {
    if (text.size() < pattern.size()) return false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
      const bool is_digit = text[i] >= '0' && text[i] <= '9';
      if (pattern[i] == 'd' ? !is_digit : text[i] != pattern[i]) return false;
    }
    return true;
  };
  if (!fits(kDate)) return {};
  const Database memory;
  // Without a modifier SQLite keeps a day that the month does not have.
  Statement query(memory,
                  "SELECT strftime('%Y-%m-%dT%H:%M:%SZ', ?1, '+0 days') "
                  "WHERE date(substr(?1, 1, 10), '+0 days') = substr(?1, 1, 10)");
  query.Bind(1, text);
  return query.Step() ? std::string(query.Text(0)) : std::string();
}

std::string TimeNow() {
  constexpr std::size_t kCapacity = 32;
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::array<char, kCapacity> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

}  // namespace cli
