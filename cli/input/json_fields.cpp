#include "cli/input/json_fields.h"

#include <cmath>

#include "cli/printable.h"

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

bool ReadHexCode(std::string_view text, std::uint64_t& code) {
  if (text.size() < 3 || text[0] != '0' || text[1] != 'x') return false;
  text.remove_prefix(2);
  code = 0;
  for (const char c : text) {
    const std::uint8_t digit = kHexDigits[static_cast<unsigned char>(c)];
    if (digit == 16 || code >> 60 != 0) return false;
    code = code << 4 | digit;
  }
  return true;
}

// The integer value of a number, however it is written; false if it is not an integer.
bool ReadNumber(simdjson::dom::element json, std::uint64_t& number) {
  if (json.get(number) == simdjson::SUCCESS) return true;
  constexpr double kEnd = 18446744073709551616.0;  // 2^64
  double real = 0.0;
  const bool is_integer = json.is_double() && json.get(real) == simdjson::SUCCESS && real >= 0.0 &&
                          real < kEnd && std::trunc(real) == real;
  if (is_integer) number = static_cast<std::uint64_t>(real);
  return is_integer;
}

// True for a number outside the range of a 64-bit float; see `Representable`.
bool IsBeyondDouble(simdjson::dom::element json) {
  double number = 0.0;
  return json.is_double() && json.get(number) == simdjson::SUCCESS &&
         std::fabs(number) == std::numeric_limits<double>::max();
}

}  // namespace

// NOLINTNEXTLINE(misc-no-recursion): as deep as the fields of a port are nested
std::string Value::Path() const {
  if (parent_ == nullptr) return {};
  std::string path = parent_->Path();
  if (key_.data() == nullptr) return path + '[' + std::to_string(index_) + ']';
  if (!path.empty()) path += '.';
  return path + Shortened(key_);
}

bool Value::Fail(MessageKind kind, const std::string& problem) const {
  const std::string path = Path();
  *problem_ = {kind, path.empty() ? problem : path + ": " + problem, {}, {}};
  return false;
}

bool Value::Expected(const std::string& what) const {
  const std::string found = IsBeyondDouble(json) ? "a number beyond the range of a 64-bit float"
                                                 : Shortened(simdjson::minify(json));
  return Fail(MessageKind::kBadValue, "expected " + what + ", found " + found);
}

bool Value::FailAsUnknownKey(std::span<const std::string_view> known_keys) const {
  *problem_ = {MessageKind::kUnknownKey, Path() + ": unknown key", std::string(key_), known_keys};
  return false;
}

bool Value::FailAsRepeatedKey() const {
  return Fail(MessageKind::kRepeatedKey, "key given more than once");
}

bool AssignInteger(std::uint64_t& target, std::uint64_t highest, const Value& value) {
  std::string_view text;
  const bool is_integer = value.json.get(text) == simdjson::SUCCESS
                              ? ReadHexCode(text, target)
                              : ReadNumber(value.json, target);
  if (is_integer && target <= highest) return true;
  return value.Expected("an integer from 0 to " + std::to_string(highest));
}

bool Assign(bool& target, const Value& value) {
  if (value.json.get(target) == simdjson::SUCCESS) return true;
  std::uint64_t number = 0;
  if (!ReadNumber(value.json, number) || number > 1) return value.Expected("true or false");
  target = number == 1;
  return true;
}

bool Assign(float& target, const Value& value) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  double number = 0.0;
  if (value.json.get(number) == simdjson::SUCCESS) {
    if (std::fabs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
      return value.Expected("a number within the range of a 32-bit float");
    }
    target = static_cast<float>(number);
    return true;
  }
  std::string_view text;
  if (value.json.get(text) != simdjson::SUCCESS) text = {};
  if (text == "nan") {
    target = std::numeric_limits<float>::quiet_NaN();
  } else if (text == "inf") {
    target = kInfinity;
  } else if (text == "-inf") {
    target = -kInfinity;
  } else {
    return value.Expected("a number");
  }
  return true;
}

bool Assign(std::string& target, const Value& value) {
  std::string_view text;
  if (value.json.get(text) != simdjson::SUCCESS) return value.Expected("a text");
  target = text;
  return true;
}

std::optional<std::string_view> ShortText(std::size_t size, const Value& value) {
  std::string_view text;
  if (value.json.get(text) == simdjson::SUCCESS && text.size() <= size) return text;
  value.Expected("a text of at most " + std::to_string(size) + " bytes");
  return std::nullopt;
}

}  // namespace cli
