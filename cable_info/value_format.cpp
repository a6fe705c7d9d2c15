#include "cable_info/value_format.h"

#include <algorithm>
#include <ostream>

#include "cable_info/shared_decoders.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {

using text::TextBuffer;
using text::ToText;

namespace {

constexpr std::array<std::string_view, 4> kAutonegStatusTexts = {
    "Success",
    "Port is not QDR",
    "Auto negotiation is in progress",
    "Link is down",
};

// White space of the C locale, which is also trimmed from vendor texts.
constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr int kLowestTemperature = -40;
constexpr int kHighestTemperature = 125;

// Scans as the conversions of `scanf` do: each step fails at the end of the text or at a character
// that does not match.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  bool Literal(std::string_view text) {
    if (rest_.substr(0, text.size()) != text) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  bool Number() {
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
    if (!rest_.empty() && (rest_[0] == '+' || rest_[0] == '-')) rest_.remove_prefix(1);
    const std::size_t digits = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    rest_.remove_prefix(digits);
    return digits > 0;
  }

  bool Character(char& character) {
    if (rest_.empty()) return false;
    character = rest_[0];
    rest_.remove_prefix(1);
    return true;
  }

 private:
  std::string_view rest_;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// Number to text
// ---------------------------------------------------------------------------------------------

template <>
std::string _to_string<unsigned char>(unsigned char value) {
  return std::to_string(value);
}

template <>
std::string _to_string<unsigned short>(unsigned short value) {
  return std::to_string(value);
}

template <>
std::string _to_string<double>(double value) {
  return ToText([&](TextBuffer& out) { out.AppendGeneral(value); });
}

template <>
std::string _to_ptr_string<unsigned char>(unsigned char value, int width) {
  return ToText([&](TextBuffer& out) { out.AppendPrefixedHex(value, width); });
}

template <>
std::string _to_ptr_string<unsigned short>(unsigned short value, int width) {
  return ToText([&](TextBuffer& out) { out.AppendPrefixedHex(value, width); });
}

std::string _to_cvs_quoted(bool quote, const std::string& text) {
  return quote ? '"' + text + '"' : text;
}

// ---------------------------------------------------------------------------------------------
// Stream inserters
// ---------------------------------------------------------------------------------------------

namespace {

// Null text sets the badbit, as the standard inserter of a null character pointer does.
std::ostream& InsertQuoted(std::ostream& os, char open, const std::string_view* text, char close) {
  os << open;
  if (text != nullptr) {
    os << *text;
  } else {
    os.setstate(std::ios_base::badbit);
  }
  return os << close;
}

}  // namespace

std::ostream& operator<<(std::ostream& os, const QUOTED_T<std::string>& quoted) {
  if (quoted.value == nullptr) return InsertQuoted(os, quoted.open, nullptr, quoted.close);
  const std::string_view text = *quoted.value;
  return InsertQuoted(os, quoted.open, &text, quoted.close);
}

std::ostream& operator<<(std::ostream& os, const QUOTED_T<char[3]>& quoted) {
  if (quoted.value == nullptr) return InsertQuoted(os, quoted.open, nullptr, quoted.close);
  const std::string_view text = ArrayText(*quoted.value);
  return InsertQuoted(os, quoted.open, &text, quoted.close);
}

std::ostream& operator<<(std::ostream& os, const FLOAT_T<float>& number) {
  const std::ios_base::fmtflags flags = os.flags();
  if (number.precision != 0) {
    os.precision(number.precision);
    os.setf(std::ios_base::fixed, std::ios_base::floatfield);
  }
  if (number.scientific) os.setf(std::ios_base::scientific, std::ios_base::floatfield);
  os << static_cast<double>(number.value);
  os.flags(flags);
  return os;
}

std::ostream& operator<<(std::ostream& os, const HEX_T<unsigned char>& number) {
  const std::ios_base::fmtflags flags = os.flags();
  os.setf(std::ios_base::hex, std::ios_base::basefield);
  os.fill(number.fill);
  if (number.width != 0) os.width(number.width);
  os << static_cast<unsigned>(number.value);
  os.flags(flags);
  return os;
}

// ---------------------------------------------------------------------------------------------
// Shared decoders
// ---------------------------------------------------------------------------------------------

fw_version_obj_t FWVersionFromWord(std::uint32_t version) {
  return {static_cast<std::uint8_t>(version >> 24), static_cast<std::uint8_t>(version >> 16),
          static_cast<std::uint16_t>(version)};
}

std::string CableTypeToStr(std::uint8_t technology, const std::string& fallback) {
  return ToText(decode::AppendCableType, technology, fallback);
}

std::string SupportedSpeedToStr(std::uint8_t mask, const std::string& fallback) {
  return ToText(decode::AppendSupportedSpeed, mask, fallback);
}

std::string TemperatureToStr(std::uint8_t technology, std::int8_t temperature,
                             const std::string& fallback) {
  return ToText(decode::AppendTemperature, technology, temperature, fallback);
}

std::string VoltageToStr(std::uint16_t raw) { return ToText(decode::AppendVoltage, raw); }

bool IsOpticCable(std::uint8_t technology) { return technology <= kLastOpticalTechnology; }

bool _is_valid_temperature(std::int8_t temperature, std::uint8_t technology) {
  if (decode::IsPassiveCopperTechnology(technology)) return false;
  return temperature >= kLowestTemperature && temperature <= kHighestTemperature;
}

bool _check_temperature_by_threshold(bool high, std::uint8_t technology, std::int8_t temperature,
                                     std::int8_t threshold) {
  if (!_is_valid_temperature(temperature, technology)) return false;
  if (!_is_valid_temperature(threshold, technology)) return false;
  return high ? temperature > threshold : temperature < threshold;
}

std::uint8_t TemperatureErrors(std::uint8_t technology, std::uint16_t temperature,
                               std::uint16_t high_threshold, std::uint16_t low_threshold) {
  const std::int8_t reading = WholeDegrees(temperature);
  const bool too_high =
      _check_temperature_by_threshold(true, technology, reading, WholeDegrees(high_threshold));
  const bool too_low =
      _check_temperature_by_threshold(false, technology, reading, WholeDegrees(low_threshold));
  return static_cast<std::uint8_t>((too_high ? 1 : 0) | (too_low ? 2 : 0));
}

std::string ConvertAutonegValueToStr(std::uint8_t status) {
  return std::string(TableEntry(kAutonegStatusTexts, status, kUnknownStatus));
}

std::string ConvertCableInfoVSStatusToStr(std::uint8_t status) {
  return ToText(decode::AppendCableInfoVSStatus, status);
}

std::string _get_vendor_from_sn(const std::string& sn) {
  Scanner scanner(UpToNul(sn));
  std::string vendor(2, '\0');
  const bool matches = scanner.Literal("KS") && scanner.Number() && scanner.Character(vendor[0]) &&
                       scanner.Character(vendor[1]) && scanner.Number();
  return matches ? vendor : std::string();
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

}  // namespace cable_info
