#include "cable_info/cable_decode.h"

#include <cmath>
#include <cstddef>
#include <iterator>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] cable {

namespace {

// Nibble `lane` (1..4) of a word that holds lane 1 in the top one.
std::uint32_t LaneNibble(std::uint16_t word, int lane) {
  return (word >> 4 * (kPageLanes - lane)) & 0xF;
}

void AppendNibbleOrMissing(TextBuffer& out, bool is_present, std::uint8_t nibble) {
  if (is_present) {
    out.AppendPrefixedHex(nibble, 1);
  } else {
    out.Append(kReportNa);
  }
}

}  // namespace

double MilliwattsToDbm(double mw) {
  return mw == 0.0 ? kUnrepresentablePower : 10.0 * std::log10(mw);
}

std::string_view IdentifierName(std::uint8_t identifier) {
  switch (identifier) {
    case 0x0C:
      return "QSFP";
    case 0x0D:
      return "QSFP+";
    case 0x11:
      return "QSFP28";
    case 0x18:
      return "QSFP-DD";
    case 0x19:
      return "OSFP";
    case 0x1A:
      return "SFP-DD";
    case 0x1B:
      return "DSFP";
    case 0x1E:
      return "QSFP_CMIS";
    default:
      return kBareNa;
  }
}

std::string_view Length(const CableRecord& r) {
  return r.PrtlLengthText.empty() ? r.LengthText : r.PrtlLengthText;
}

std::string_view PrtlLength(const CableRecord& r) {
  return r.PrtlLengthText.empty() ? kBareNa : std::string_view(r.PrtlLengthText);
}

bool ShowsFwVersion(const CableRecord& r) { return r.IsKestMmf() || r.IsKestPsm(); }

std::string_view FwVersion(const CableRecord& r, Form form) {
  return ShowsFwVersion(r) ? std::string_view(r.FwVersionText) : decode::MissingValue(form);
}

void AppendCableType(TextBuffer& out, const CableRecord& r) {
  if (r.QueryStatus == 0) {
    decode::AppendCableType(out, r.TransmitterTechnologyCode, kBareNa);
    return;
  }
  out.Append("NA - ");
  decode::AppendCableInfoVSStatus(out, r.QueryStatus);
}

void AppendSupportedSpeed(TextBuffer& out, const CableRecord& r) {
  decode::AppendSupportedSpeed(out, r.SupportedSpeedMask, kBareNa);
}

void AppendTemperature(TextBuffer& out, const CableRecord& r, std::uint16_t word, Form form) {
  decode::AppendTemperature(out, r.TransmitterTechnologyCode, WholeDegrees(word),
                            decode::UnquotedMissingValue(form));
}

void AppendDateCode(TextBuffer& out, const CableRecord& r) {
  constexpr std::size_t kMaxUnsplitSize = 3;
  const std::string_view text = r.DateCodeText;
  if (text == kReportNa || text.size() <= kMaxUnsplitSize) {
    out.Append(text);
    return;
  }
  out.Append(text.substr(0, 2)).Append('-').Append(text.substr(2, 2)).Append('-');
  out.Append(text.substr(4, 2));
}

void AppendAttenuation(TextBuffer& out, const CableRecord& r, Form form) {
  const char separator = form == Form::kCsv ? ',' : ' ';
  for (std::size_t i = 0; i < std::size(r.Attenuation); ++i) {
    if (i > 0) out.Append(separator);
    if (r.IsPassiveCable()) {
      out.AppendDecimal(r.Attenuation[i]);
    } else {
      out.Append(decode::MissingValue(form));
    }
  }
}

void AppendCdrEnable(TextBuffer& out, const CableRecord& r, Form form) {
  if (r.IsPassiveCable()) {
    out.Append(form == Form::kCsv ? na_val : kReportTwoNa);
    return;
  }
  if (form == Form::kCsv) {
    out.AppendPrefixedHex(r.CdrControl, 1);
    return;
  }
  AppendNibbleOrMissing(out, (r.CdrPresence & 0x2) != 0, HighNibble(r.CdrControl));
  out.Append(' ');
  AppendNibbleOrMissing(out, (r.CdrPresence & 0x1) != 0, LowNibble(r.CdrControl));
}

void AppendLaneSettings(TextBuffer& out, const CableRecord& r, std::uint16_t word, Form form) {
  if (r.IsPassiveCable()) {
    out.Append(decode::MissingValue(form));
    return;
  }
  if (form == Form::kCsv) {
    out.AppendHex(word, kPageLanes);
    return;
  }
  for (int lane = 1; lane <= kPageLanes; ++lane) {
    if (lane > 1) out.Append(' ');
    out.AppendDecimal(LaneNibble(word, lane));
  }
}

void AppendRxOutputDisable(TextBuffer& out, const CableRecord& r) {
  out.AppendPrefixedHex(HighNibble(r.RxOutputDisableTxAdaptiveEq), 1);
}

void AppendTxAdaptiveEqEnable(TextBuffer& out, const CableRecord& r) {
  out.AppendPrefixedHex(LowNibble(r.RxOutputDisableTxAdaptiveEq), 1);
}

}  // namespace cable
}  // namespace cable_info
