#pragma once

// Decoders of the cable-information pages: functions that append the text of one field.
// `cable_record.cpp` wraps them as published operations, `cable_output.cpp` composes rows and
// reports of them. Internal; not installed.

#include <cstdint>
#include <string_view>

#include "cable_info/cable_record.h"
#include "cable_info/shared_decoders.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] cable {

using decode::Form;
using text::TextBuffer;

/// The lanes of the pages.
inline constexpr int kPageLanes = 4;

/// 10 * log10(mw); -999.999 for zero, NaN for negative powers.
double MilliwattsToDbm(double mw);

constexpr std::uint8_t HighNibble(std::uint8_t byte) { return byte >> 4; }
constexpr std::uint8_t LowNibble(std::uint8_t byte) { return byte & 0x0F; }

/// "NA" for codes without a name.
std::string_view IdentifierName(std::uint8_t identifier);
/// The measured length, else the module's.
std::string_view Length(const CableRecord& r);
/// The measured length, or "NA".
std::string_view PrtlLength(const CableRecord& r);
/// Whether the record shows its firmware version: for two kinds of the home vendor's modules.
bool ShowsFwVersion(const CableRecord& r);
std::string_view FwVersion(const CableRecord& r, Form form);

void AppendCableType(TextBuffer& out, const CableRecord& r);
void AppendSupportedSpeed(TextBuffer& out, const CableRecord& r);
/// Temperatures and voltages are never quoted.
void AppendTemperature(TextBuffer& out, const CableRecord& r, std::uint16_t word, Form form);
void AppendDateCode(TextBuffer& out, const CableRecord& r);
void AppendAttenuation(TextBuffer& out, const CableRecord& r, Form form);
void AppendCdrEnable(TextBuffer& out, const CableRecord& r, Form form);
/// The four values of a word of lane settings.
void AppendLaneSettings(TextBuffer& out, const CableRecord& r, std::uint16_t word, Form form);
void AppendRxOutputDisable(TextBuffer& out, const CableRecord& r);
void AppendTxAdaptiveEqEnable(TextBuffer& out, const CableRecord& r);

}  // namespace cable
}  // namespace cable_info
