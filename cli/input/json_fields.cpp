#include "cli/input/json_fields.h"

#include <cmath>
#include <optional>

#include "cli/spelling.h"

namespace cli {

namespace {

// The value of a hexadecimal digit, 16 for any other character.
constexpr std::array<std::uint8_t, 256> HexDigits() {
  std::array<std::uint8_t, 256> values{};
  values.fill(16);
  for (std::uint8_t i = 0; i < 10; ++i) values['0' + std::size_t{i}] = i;
  for (std::uint8_t i = 0; i < 6; ++i) {
    values['a' + std::size_t{i}] = values['A' + std::size_t{i}] = static_cast<std::uint8_t>(10 + i);
  }
  return values;
}
constexpr auto kHexDigits = HexDigits();

std::optional<std::uint64_t> HexCode(std::string_view text) {
  if (text.size() < 3 || text[0] != '0' || text[1] != 'x') return std::nullopt;
  text.remove_prefix(2);
  std::uint64_t code = 0;
  for (const char c : text) {
    const std::uint8_t digit = kHexDigits[static_cast<unsigned char>(c)];
    if (digit == 16 || code >> 60 != 0) return std::nullopt;
    code = code << 4 | digit;
  }
  return code;
}

}  // namespace

std::string Shown(std::string_view text) {
  constexpr std::size_t kMaxShown = 40;
  constexpr std::string_view kEllipsis = "...";
  std::string shown(text.substr(0, kMaxShown));
  if (text.size() > kMaxShown) {
    const auto is_continuation = [](char c) {
      return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    };
    while (!shown.empty() && is_continuation(text[shown.size()])) shown.pop_back();
    shown += kEllipsis;
  }
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return shown;
}

void Expected(const std::string& what, Json found) {
  throw FieldError{{}, "expected " + what + ", found " + Shown(simdjson::minify(found))};
}

std::uint64_t UnsignedUpTo(std::uint64_t highest, Json value) {
  std::uint64_t number = 0;
  std::string_view text;
  bool fits = value.get(number) == simdjson::SUCCESS;
  if (!fits && value.get(text) == simdjson::SUCCESS) {
    const std::optional<std::uint64_t> code = HexCode(text);
    fits = code.has_value();
    number = code.value_or(0);
  }
  if (!fits || number > highest) Expected("an integer from 0 to " + std::to_string(highest), value);
  return number;
}

void Assign(bool& target, Json value) {
  std::uint64_t number = 0;
  if (value.get(target) == simdjson::SUCCESS) return;
  if (value.get(number) != simdjson::SUCCESS || number > 1) Expected("true or false", value);
  target = number == 1;
}

void Assign(float& target, Json value) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  double number = 0.0;
  std::string_view text;
  if (value.get(number) == simdjson::SUCCESS) {
    if (std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
      Expected("a number within the range of a 32-bit float", value);
    }
    target = static_cast<float>(number);
    return;
  }
  if (value.get(text) != simdjson::SUCCESS) text = {};
  if (text == "nan") {
    target = std::numeric_limits<float>::quiet_NaN();
  } else if (text == "inf") {
    target = kInfinity;
  } else if (text == "-inf") {
    target = -kInfinity;
  } else {
    Expected("a number", value);
  }
}

void Assign(std::string& target, Json value) {
  std::string_view text;
  if (value.get(text) != simdjson::SUCCESS) Expected("a text", value);
  target = text;
}

std::string_view ShortText(std::size_t size, Json value) {
  std::string_view text;
  if (value.get(text) != simdjson::SUCCESS || text.size() > size) {
    Expected("a text of at most " + std::to_string(size) + " bytes", value);
  }
  return text;
}

void UnknownKey(std::string_view key, const std::vector<std::string_view>& names) {
  const std::string_view nearest = Nearest(key, names);
  const std::string hint =
      nearest.empty() ? "" : "; did you mean \"" + std::string(nearest) + "\"?";
  throw FieldError{{}, "unknown key" + hint};
}

}  // namespace cli
