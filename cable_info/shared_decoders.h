#pragma once

// The shared decoders of value_format.h as functions that append to a text, for rows and reports.
// Internal; not installed.

#include <cstdint>
#include <optional>
#include <string_view>

#include "cable_info/missing_values.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] decode {

using text::TextBuffer;
using text::ToText;

/// The output that a text is for. Published operations have a `bool csv` instead.
enum class Form { kCsv, kReport };

constexpr Form FormOf(bool csv) { return csv ? Form::kCsv : Form::kReport; }

constexpr std::string_view MissingValue(Form form) {
  return cable_info::MissingValue(form == Form::kCsv);
}

/// The missing value of a text that is quoted as a whole in CSV.
constexpr std::string_view UnquotedMissingValue(Form form) {
  return cable_info::UnquotedMissingValue(form == Form::kCsv);
}

/// What `append(out, args...)` appends, between double quotes in CSV.
template <typename Append, typename... Args>
void AppendQuotedInCsv(TextBuffer& out, Form form, Append&& append, const Args&... args) {
  if (form == Form::kCsv) out.Append('"');
  append(out, args...);
  if (form == Form::kCsv) out.Append('"');
}

/// True for the technologies of copper cables: 10..15 (SFF-8636 rev 2.11 page 00h byte 147.7..4)
/// and 18..20, linear active ones (CMIS 5.3 page 00h byte 212, where 16 and 17 are lasers).
constexpr bool IsCopperTechnology(unsigned technology) {
  return (technology >= 10 && technology <= 15) || (technology >= 18 && technology <= 20);
}

/// True for those of passive copper cables.
constexpr bool IsPassiveCopperTechnology(unsigned technology) {
  return technology == kUnequalizedCopper || technology == kPassiveEqualizedCopper;
}

/// True for those of active copper cables with linear equalizers.
constexpr bool IsLinearCopperTechnology(unsigned technology) {
  return technology == 15 || (technology >= 18 && technology <= 20);
}

/// The name of a code in `transmitter_technology_arr`; `fallback` for codes above 15.
void AppendCableType(TextBuffer& out, std::uint8_t technology, std::string_view fallback);

/// True when a mask holds any speed that has a name.
bool HasSupportedSpeed(std::uint8_t mask);

/// The InfiniBand speeds of a mask, lowest first and joined by "/"; `fallback` for none.
void AppendSupportedSpeed(TextBuffer& out, std::uint8_t mask, std::string_view fallback);

/// Whole degrees Celsius with "C".
void AppendCelsius(TextBuffer& out, std::int8_t temperature);

/// `AppendCelsius`, or `fallback` for a temperature that is not valid.
void AppendTemperature(TextBuffer& out, std::uint8_t technology, std::int8_t temperature,
                       std::string_view fallback);

/// Microvolts in one unit of a voltage word.
inline constexpr std::uint32_t kMicrovoltsPerUnit = 100;

/// The unit of a voltage.
inline constexpr std::string_view kMicrovoltUnit = "uV";

/// A voltage word in microvolts with its unit.
void AppendVoltage(TextBuffer& out, std::uint16_t raw);

/// Metres of a text such as "50 m", "0.5 km" or "50"; empty for any other, such as a choice of
/// lengths.
std::optional<double> Metres(std::string_view text);

/// The status of the query that reads the cable-information pages.
void AppendCableInfoVSStatus(TextBuffer& out, std::uint8_t status);

}  // namespace decode
}  // namespace cable_info
