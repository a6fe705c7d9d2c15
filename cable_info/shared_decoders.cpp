#include "cable_info/shared_decoders.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

#include "cable_info/value_format.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] decode {

namespace {

constexpr std::array<std::string_view, 9> kCableInfoVSStatusTexts = {
    "Success",
    "Invalid port number",
    "Port type is not QSFP (SFP/CX4 or internal)",
    "Cable not connected",
    "No eeprom in connected cable",
    "Invalid page number (>15)",
    "Address / size  is invalid. ((addr+size)>255) or size>48 or size==0",
    "Slave address is invalid. (slv_addr != 0x50)",
    "Bad QSFP cable (cable ignore ModSel# signal)",
};

// The list of speeds of every mask, made at compile time: "SDR/DDR/QDR" for 0x07.
struct SpeedList {
  std::array<char, 32> text;
  std::size_t size;
};
using SpeedLists = std::array<SpeedList, 1 << ib_compliance_code_arr.size()>;

constexpr SpeedLists MakeSpeedLists() {
  SpeedLists lists{};
  for (std::size_t mask = 1; mask < lists.size(); ++mask) {
    SpeedList& list = lists[mask];
    for (std::size_t bit = 0; bit < ib_compliance_code_arr.size(); ++bit) {
      if (((mask >> bit) & 1) == 0) continue;
      for (const char c : ib_compliance_code_arr[bit]) list.text[list.size++] = c;
    }
    --list.size;  // the separator after the last speed
  }
  return lists;
}
constexpr SpeedLists kSpeedLists = MakeSpeedLists();

}  // namespace

void AppendCableType(TextBuffer& out, std::uint8_t technology, std::string_view fallback) {
  out.Append(TableEntry(transmitter_technology_arr, technology, fallback));
}

bool HasSupportedSpeed(std::uint8_t mask) { return mask % kSpeedLists.size() != 0; }

void AppendSupportedSpeed(TextBuffer& out, std::uint8_t mask, std::string_view fallback) {
  const SpeedList& list = kSpeedLists[mask % kSpeedLists.size()];
  if (list.size == 0) {
    out.Append(fallback);
  } else {
    out.AppendPart(list.text, list.size);
  }
}

void AppendCelsius(TextBuffer& out, std::int8_t temperature) {
  out.AppendDecimal(temperature).Append('C');
}

void AppendTemperature(TextBuffer& out, std::uint8_t technology, std::int8_t temperature,
                       std::string_view fallback) {
  if (_is_valid_temperature(temperature, technology)) {
    AppendCelsius(out, temperature);
  } else {
    out.Append(fallback);
  }
}

void AppendVoltage(TextBuffer& out, std::uint16_t raw) {
  out.AppendDecimal(raw * kMicrovoltsPerUnit).Append(kMicrovoltUnit);
}

std::optional<double> Metres(std::string_view text) {
  constexpr double kMetresPerKilometre = 1000;
  constexpr std::ptrdiff_t kMaxNumberSize = 20;
  text = Trimmed(text);
  const bool is_signed = !text.empty() && text.front() == '-';
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const std::ptrdiff_t size = end - text.data();
  if (error != std::errc() || is_signed || size > kMaxNumberSize || !std::isfinite(number)) {
    return std::nullopt;
  }
  const std::string_view unit = Trimmed(text.substr(static_cast<std::size_t>(size)));
  if (unit == "km") return number * kMetresPerKilometre;
  if (unit == "m" || unit.empty()) return number;
  return std::nullopt;
}

void AppendCableInfoVSStatus(TextBuffer& out, std::uint8_t status) {
  out.Append(TableEntry(kCableInfoVSStatusTexts, status, kUnknownStatus));
}

}  // namespace decode
}  // namespace cable_info
