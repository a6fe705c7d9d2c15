#include "cli/input/json_numbers.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace cli {

namespace {

constexpr std::string_view kNumberCharacters = "0123456789+-.eE";

template <typename Number>
bool Holds(std::string_view token) {
  Number number{};
  const char* const end = token.data() + token.size();
  const auto read = std::from_chars(token.data(), end, number);
  return read.ec == std::errc() && read.ptr == end;
}

bool IsInteger(std::string_view token) {
  return token.find_first_of(".eE") == std::string_view::npos;
}

// True when the token is a number of JSON, whatever its size.
bool IsNumber(std::string_view token) {
  if (token.starts_with('-')) token.remove_prefix(1);
  const auto skip_digits = [&token] {
    const std::size_t count = std::min(token.find_first_not_of("0123456789"), token.size());
    token.remove_prefix(count);
    return count;
  };
  const bool starts_with_zero = token.starts_with('0');
  const std::size_t whole = skip_digits();
  if (whole == 0 || (starts_with_zero && whole > 1)) return false;
  if (token.starts_with('.')) {
    token.remove_prefix(1);
    if (skip_digits() == 0) return false;
  }
  if (token.starts_with('e') || token.starts_with('E')) {
    token.remove_prefix(1);
    if (token.starts_with('+') || token.starts_with('-')) token.remove_prefix(1);
    if (skip_digits() == 0) return false;
  }
  return token.empty();
}

// True for a number that is too large; one that is too small reads as zero.
bool IsTooLarge(std::string_view token) {
  double number = 0.0;
  const auto read = std::from_chars(token.data(), token.data() + token.size(), number);
  if (read.ec != std::errc::result_out_of_range) return false;
  const std::size_t exponent = token.find_first_of("eE");
  return exponent == std::string_view::npos || token.substr(exponent + 1, 1) != "-";
}

}  // namespace

std::optional<std::string> Representable(std::string_view line) {
  std::string out;
  bool is_changed = false;
  bool is_text = false;
  for (std::size_t i = 0; i < line.size();) {
    const char c = line[i];
    if (is_text && c == '\\') {
      out += line.substr(i, 2);
      i += 2;
      continue;
    }
    if (c == '"') is_text = !is_text;
    if (is_text || (c != '-' && (c < '0' || c > '9'))) {
      out += c;
      ++i;
      continue;
    }
    const std::size_t end = std::min(line.find_first_not_of(kNumberCharacters, i), line.size());
    const std::string_view token = line.substr(i, end - i);
    i = end;
    const bool is_number = IsNumber(token);
    if (is_number && IsTooLarge(token)) {
      out += token.front() == '-' ? "-1.7976931348623157e308" : "1.7976931348623157e308";
      is_changed = true;
      continue;
    }
    out += token;
    const bool is_long_integer = is_number && IsInteger(token) && !Holds<std::uint64_t>(token) &&
                                 !Holds<std::int64_t>(token);
    if (is_long_integer) {
      out += "e0";
      is_changed = true;
    }
  }
  return is_changed ? std::optional(out) : std::nullopt;
}

}  // namespace cli
