#include "cable_info/phy_decode.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "cable_info/text/numbers.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] phy {

namespace {

struct FormFactorEntry {
  std::string_view name;
  bool is_cmis;
  std::uint8_t lanes;
};

// By cable identifier; see `FormFactor`.
constexpr std::array<FormFactorEntry, 12> kFormFactors = {{
    {"QSFP28", false, 4},
    {"QSFP+", false, 4},
    {"SFP28/SFP+", false, 1},
    {"QSA (QSFP->SFP)", false, 1},
    {"Backplane", false, 4},
    {"SFP-DD", true, 2},
    {"QSFP-DD", true, 8},
    {"QSFP_CMIS", true, 4},
    {"OSFP", true, 8},
    {"C2C", false, 8},
    {"DSFP", true, 2},
    {"QSFP_Split_Cable", false, 4},
}};

// A fibre length of the module and the metres in one unit of it.
struct FibreLength {
  std::uint8_t ModuleRecord::*field;
  std::uint8_t sfp_metres;
  std::uint8_t other_metres;
};

// By OM grade, from OM1 on.
constexpr std::array<FibreLength, 5> kFibreLengths = {{
    {&ModuleRecord::length_om1, 10, 10},
    {&ModuleRecord::length_om2, 10, 1},
    {&ModuleRecord::length_om3, 10, 2},
    {&ModuleRecord::length_om4, 10, 2},
    {&ModuleRecord::length_om5, 2, 2},
}};

constexpr int kMetresPerKilometre = 1000;

constexpr auto kUnitsPerWatt = static_cast<std::uint32_t>(1 / module::kWattsPerUnit);
constexpr std::array<std::string_view, kUnitsPerWatt> kQuarterTexts = {"", ".25", ".5", ".75"};

// Four missing attenuations: in CSV as cells, in the report for a module that is not passive, and
// without a module.
constexpr std::string_view kCsvNoAttenuation = R"("NA","NA","NA","NA")";
constexpr std::string_view kNotPassiveAttenuation = "NA NA NA NA";
constexpr std::string_view kReportNoAttenuation = "N/A N/A N/A N/A";

}  // namespace

double MilliwattsToDbm(double mw) {
  return mw <= 0.0 ? kUnrepresentablePower : 10.0 * std::log10(mw);
}

double DbmToMilliwatts(double dbm) {
  return dbm == 0.0 ? kUnrepresentablePower : std::pow(10.0, dbm / 10.0);
}

// ---------------------------------------------------------------------------------------------
// Fields of a module record
// ---------------------------------------------------------------------------------------------

namespace module {

bool HasCmis(const ModuleRecord& m) {
  return m.cable_identifier < kFormFactors.size() && kFormFactors[m.cable_identifier].is_cmis;
}

std::string_view FormFactorName(const ModuleRecord& m) {
  return m.cable_identifier < kFormFactors.size() ? kFormFactors[m.cable_identifier].name : kBareNa;
}

CableLength LengthOf(const ModuleRecord& m) {
  constexpr int kCmisMultipliers[] = {0, 1, 10, 100};
  if (!HasCmis(m)) return {m.cable_length, 1};
  return {m.cable_length & 0x3F, kCmisMultipliers[m.cable_length >> 6]};
}

int LaneCount(const ModuleRecord& m) {
  return m.cable_identifier < kFormFactors.size() ? kFormFactors[m.cable_identifier].lanes
                                                  : kPhyLanes;
}

SmfLength SmfLengthOf(const ModuleRecord& m) {
  const int value = m.smf_length & 0xFF;
  switch (static_cast<SmfLengthUnit>((m.smf_length >> 8) & 0x3)) {
    case SmfLengthUnit::kKilometre:
      return {value, kMetresPerKilometre};
    case SmfLengthUnit::kTenthOfKilometre:
      return {value, kMetresPerKilometre / 10};
  }
  return {};
}

int OmMetres(const ModuleRecord& m, std::uint8_t om) {
  if (om == 0 || om > kFibreLengths.size()) return 0;
  const FibreLength& length = kFibreLengths[om - 1U];
  const bool is_sfp = m.cable_identifier == static_cast<std::uint8_t>(FormFactor::kSfp28OrSfpPlus);
  return m.*length.field * (is_sfp ? length.sfp_metres : length.other_metres);
}

bool HasDateCode(const ModuleRecord& m) {
  return std::all_of(std::begin(m.date_code), std::end(m.date_code),
                     [](char c) { return c >= '0' && c <= '9'; });
}

void AppendMetres(TextBuffer& out, CableLength length) {
  if (length.multiplier == 0) {
    out.AppendTenths(static_cast<std::uint32_t>(length.base));
  } else {
    out.AppendDecimal(length.base * length.multiplier);
  }
  out.Append(" m");
}

void AppendLength(TextBuffer& out, const ModuleRecord& m, Form form, std::string_view na) {
  const CableLength length = LengthOf(m);
  if (length.base == 0) {
    out.Append(na);
  } else {
    decode::AppendQuotedInCsv(out, form, AppendMetres, length);
  }
}

void AppendLengthSmf(TextBuffer& out, const ModuleRecord& m) {
  const SmfLength length = SmfLengthOf(m);
  if (length.value == 0) {
    out.Append(kReportNa);
  } else if (length.unit == kMetresPerKilometre) {
    out.AppendDecimal(length.value).Append(" km");
  } else {
    out.AppendTenths(static_cast<std::uint32_t>(length.value)).Append(" km");
  }
}

void AppendLengthOmx(TextBuffer& out, const ModuleRecord& m, std::uint8_t om) {
  const int metres = OmMetres(m, om);
  if (metres == 0) {
    out.Append(kReportNa);
  } else {
    out.AppendDecimal(metres).Append(" m");
  }
}

void AppendTechnology(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  decode::AppendCableType(out, m.SelectTransmitterTechnology(), na);
}

void AppendRevision(TextBuffer& out, const ModuleRecord& m) {
  for (const char c : m.vendor_rev) {
    if (c != '\0') out.Append(c);
  }
}

void AppendFwVersion(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  std::uint8_t major = 0;
  std::uint8_t minor = 0;
  std::uint16_t sub_minor = 0;
  if (!m.GetFWVersion(major, minor, sub_minor)) {
    out.Append(na);
    return;
  }
  out.AppendDecimal(major).Append('.').AppendDecimal(minor).Append('.').AppendDecimal(sub_minor);
}

void AppendDateCode(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  if (!HasDateCode(m)) {
    out.Append(na);
    return;
  }
  const auto& d = m.date_code;  // last character first
  out.AppendPart(std::array{d[5], d[4], '-', d[3], d[2], '-', d[1], d[0]});
}

void AppendCdrEnable(TextBuffer& out, const ModuleRecord& m, Direction direction, CdrShown shown,
                     std::string_view na) {
  const bool is_rx = direction == Direction::kRx;
  const bool is_present = (is_rx ? m.rx_cdr_cap : m.tx_cdr_cap) != 0;
  if (m.IsPassiveCable() || (!is_present && shown == CdrShown::kWhenPresent)) {
    out.Append(na);
  } else {
    out.AppendPrefixedHex(is_rx ? m.rx_cdr_state : m.tx_cdr_state, 2);
  }
}

void AppendAttenuation(TextBuffer& out, const ModuleRecord& m, Form form) {
  const bool is_csv = form == Form::kCsv;
  if (!m.IsPassiveCable()) {
    out.Append(is_csv ? kCsvNoAttenuation : kNotPassiveAttenuation);
    return;
  }
  for (std::size_t i = 0; i < std::size(m.attenuation); ++i) {
    if (i > 0) out.Append(is_csv ? ',' : ' ');
    out.AppendDecimal(m.attenuation[i]);
  }
}

void AppendLaneSetting(TextBuffer& out, const ModuleRecord& m, std::uint8_t value, Form form,
                       std::string_view na) {
  if (m.IsPassiveCable()) {
    out.Append(na);
    return;
  }
  constexpr std::size_t kMaxSize = 4;  // three digits and a blank; a copy of known size is one move
  const bool is_csv = form == Form::kCsv;
  std::array<char, text::kMaxDecimalSize + 1> lane_text{};
  char* end = is_csv ? text::WriteHex(lane_text.data(), value, 2)
                     : text::WriteDecimal(lane_text.data(), std::uint32_t{value});
  if (!is_csv) *end++ = ' ';
  const std::ptrdiff_t size = end - lane_text.data();
  out.AppendWithin(kShownLanes * kMaxSize, [&](char* to) {
    for (int lane = 1; lane <= kShownLanes; ++lane, to += size) {
      std::memcpy(to, lane_text.data(), kMaxSize);
    }
    return is_csv ? to : to - 1;
  });
}

void AppendTemperature(TextBuffer& out, const ModuleRecord& m, std::uint16_t raw, Form form) {
  decode::AppendQuotedInCsv(out, form, decode::AppendTemperature, TechnologyNibble(m),
                            WholeDegrees(raw), decode::UnquotedMissingValue(form));
}

void AppendVoltage(TextBuffer& out, std::uint16_t raw, Form form) {
  decode::AppendQuotedInCsv(out, form, decode::AppendVoltage, raw);
}

void AppendMaxPower(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  if (m.max_power == 0) {
    out.Append(na);
    return;
  }
  out.AppendDecimal(m.max_power / kUnitsPerWatt);
  out.Append(kQuarterTexts[m.max_power % kUnitsPerWatt]).Append(" W");
}

void AppendSupportedSpeed(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  decode::AppendSupportedSpeed(out, m.ib_compliance_code, na);
}

}  // namespace module

// ---------------------------------------------------------------------------------------------
// Fields of a port, with or without a module record
// ---------------------------------------------------------------------------------------------

namespace {

// `append(out, module)`, or `missing` without a module record.
template <typename Append>
void AppendOfModule(TextBuffer& out, const PhyCableRecord& r, std::string_view missing,
                    Append append) {
  if (r.module == nullptr) {
    out.Append(missing);
  } else {
    append(out, *r.module);
  }
}

// A decoder that takes the missing value as its fallback.
template <typename Append>
void AppendWithFallback(TextBuffer& out, const PhyCableRecord& r, Form form, Append append) {
  const std::string_view na = decode::MissingValue(form);
  AppendOfModule(out, r, na, [&](TextBuffer& o, const ModuleRecord& m) { append(o, m, na); });
}

// A decoder whose text is quoted in CSV, its fallback included.
template <typename Append>
void AppendQuotedWithFallback(TextBuffer& out, const PhyCableRecord& r, Form form, Append append) {
  AppendOfModule(out, r, decode::MissingValue(form), [&](TextBuffer& o, const ModuleRecord& m) {
    decode::AppendQuotedInCsv(o, form, append, m, decode::UnquotedMissingValue(form));
  });
}

}  // namespace

void AppendType(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendQuotedWithFallback(out, r, form, module::AppendTechnology);
}

void AppendIdentifier(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, decode::MissingValue(form), [=](TextBuffer& o, const ModuleRecord& m) {
    o.Append(module::FormFactorName(m));
    if (form == Form::kReport) o.Append(" (").AppendPrefixedHex(m.cable_identifier, 2).Append(')');
  });
}

void AppendBitrate(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, kReportNa, [=](TextBuffer& o, const ModuleRecord& m) {
    if (form == Form::kCsv) {
      o.AppendDecimal(m.SelectNominalBR() * module::kMegabitsPerGigabit);
    } else {
      o.AppendDecimal(m.SelectNominalBR()).Append(" Gb/s");
    }
  });
}

void AppendPowerClass(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, form == Form::kCsv ? na_val : kBareNa,
                 [](TextBuffer& o, const ModuleRecord& m) { o.AppendDecimal(m.power_class); });
}

void AppendMaxPower(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendWithFallback(out, r, form, module::AppendMaxPower);
}

void AppendFwVersion(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendWithFallback(out, r, form, module::AppendFwVersion);
}

void AppendDateCode(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendWithFallback(out, r, form, module::AppendDateCode);
}

void AppendLot(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, decode::MissingValue(form),
                 [](TextBuffer& o, const ModuleRecord& m) { o.AppendPrefixedHex(m.lot, 4); });
}

void AppendComplianceCode(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, decode::MissingValue(form), [=](TextBuffer& o, const ModuleRecord& m) {
    if (form == Form::kCsv) {
      o.AppendDecimal(m.compliance_code);
    } else {
      o.AppendPrefixedHex(m.compliance_code, 2);
    }
  });
}

void AppendTechnology(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, decode::MissingValue(form), [=](TextBuffer& o, const ModuleRecord& m) {
    const bool is_csv = form == Form::kCsv;
    o.AppendPrefixedHex(is_csv ? m.SelectTransmitterTechnology() : m.cable_technology, 2);
  });
}

void AppendSupportedSpeed(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendQuotedWithFallback(out, r, form, module::AppendSupportedSpeed);
}

void AppendAttenuation(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(
      out, r, form == Form::kCsv ? kCsvNoAttenuation : kReportNoAttenuation,
      [=](TextBuffer& o, const ModuleRecord& m) { module::AppendAttenuation(o, m, form); });
}

void AppendLengthByReg(TextBuffer& out, const PhyCableRecord& r, Form form) {
  AppendOfModule(out, r, kBareNa, [=](TextBuffer& o, const ModuleRecord& m) {
    module::AppendLength(o, m, form, kBareNa);
  });
}

void AppendLengthByPrtl(TextBuffer& out, const PhyCableRecord& r, Form form) {
  if (r.prtl_length.empty()) {
    out.Append(kBareNa);
  } else if (form == Form::kCsv) {
    out.AppendQuoted(r.prtl_length);
  } else {
    out.Append(r.prtl_length);
  }
}

void AppendLength(TextBuffer& out, const PhyCableRecord& r, Form form) {
  if (r.prtl_length.empty()) {
    AppendLengthByReg(out, r, form);
  } else {
    AppendLengthByPrtl(out, r, form);
  }
}

void AppendLaneSetting(TextBuffer& out, const PhyCableRecord& r,
                       std::uint8_t ModuleRecord::*setting, Form form) {
  AppendWithFallback(out, r, form, [&](TextBuffer& o, const ModuleRecord& m, std::string_view na) {
    module::AppendLaneSetting(o, m, m.*setting, form, na);
  });
}

void AppendTemperature(TextBuffer& out, const PhyCableRecord& r, std::uint16_t ModuleRecord::*word,
                       Form form) {
  AppendOfModule(out, r, decode::MissingValue(form), [&](TextBuffer& o, const ModuleRecord& m) {
    module::AppendTemperature(o, m, m.*word, form);
  });
}

void AppendLengthSmf(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kReportNa, module::AppendLengthSmf);
}

void AppendLengthOmx(TextBuffer& out, const PhyCableRecord& r, std::uint8_t om) {
  AppendOfModule(out, r, kReportNa,
                 [=](TextBuffer& o, const ModuleRecord& m) { module::AppendLengthOmx(o, m, om); });
}

void AppendCdrEnable(TextBuffer& out, const PhyCableRecord& r) {
  using module::CdrShown;
  using module::Direction;
  AppendOfModule(out, r, kReportNa, [](TextBuffer& o, const ModuleRecord& m) {
    module::AppendCdrEnable(o, m, Direction::kTx, CdrShown::kWhenPresent, kReportNa);
    o.Append(' ');
    module::AppendCdrEnable(o, m, Direction::kRx, CdrShown::kWhenPresent, kReportNa);
  });
}

void AppendRxPowerType(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kReportNa, [](TextBuffer& o, const ModuleRecord& m) {
    o.Append(RxPowerTypeName(m.rx_power_type != 0));
  });
}

// ---------------------------------------------------------------------------------------------
// Vendor texts
// ---------------------------------------------------------------------------------------------

void AppendDescription(TextBuffer& out, std::string_view text, std::string_view blank) {
  const std::string_view trimmed = Trimmed(text);
  if (trimmed.empty()) {
    out.Append(blank);
    return;
  }
  out.AppendWithin(trimmed.size(), [=](char* to) {
    return std::replace_copy(trimmed.begin(), trimmed.end(), to, ',', '-');
  });
}

void AppendVendor(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kBareNa, [](TextBuffer& o, const ModuleRecord& m) {
    o.Append(Trimmed(ArrayText(m.vendor_name)));
  });
}

void AppendOui(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kBareNa, [](TextBuffer& o, const ModuleRecord& m) {
    o.AppendPrefixedHex(m.vendor_oui, 1);
  });
}

void AppendPn(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kBareNa, [](TextBuffer& o, const ModuleRecord& m) {
    AppendDescription(o, ArrayText(m.vendor_pn), kBareNa);
  });
}

void AppendSn(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kBareNa, [](TextBuffer& o, const ModuleRecord& m) {
    AppendDescription(o, ArrayText(m.vendor_sn), kBareNa);
  });
}

void AppendRevision(TextBuffer& out, const PhyCableRecord& r) {
  AppendOfModule(out, r, kBareNa, [](TextBuffer& o, const ModuleRecord& m) {
    TextBuffer revision;
    module::AppendRevision(revision, m);
    AppendDescription(o, revision.view(), kBareNa);
  });
}

// ---------------------------------------------------------------------------------------------
// Optical monitors
// ---------------------------------------------------------------------------------------------

std::string_view MissingPower(Form form) { return form == Form::kCsv ? na_val : kReportNoPower; }

void AppendPower(TextBuffer& out, double raw, std::uint16_t unit_flag, Form form) {
  const double mw = module::Milliwatts(raw, unit_flag);
  if (form == Form::kCsv) {
    out.AppendFixed3(mw);
    return;
  }
  const double dbm = module::IsDbm(unit_flag) ? raw : MilliwattsToDbm(mw);
  out.AppendWithin(text::kMaxPowerSize, [=](char* to) { return text::WritePower(to, mw, dbm); });
}

void AppendLanePower(TextBuffer& out, const PhyCableRecord& r, LaneWords lanes, int lane,
                     Form form) {
  AppendOfModule(out, r, MissingPower(form), [&](TextBuffer& o, const ModuleRecord& m) {
    AppendPower(o, module::LaneValue(m.*lanes, lane), m.power_unit_flag, form);
  });
}

void AppendBias(TextBuffer& out, double raw, Form form) {
  const double ma = module::Milliamperes(raw);
  if (form == Form::kCsv) {
    out.AppendFixed3(ma);
  } else {
    out.AppendWithin(text::kMaxBiasSize, [=](char* to) { return text::WriteBias(to, ma); });
  }
}

void AppendLaneBias(TextBuffer& out, const PhyCableRecord& r, int lane, Form form) {
  AppendOfModule(out, r, decode::MissingValue(form), [&](TextBuffer& o, const ModuleRecord& m) {
    AppendBias(o, module::LaneValue(m.tx_bias, lane), form);
  });
}

// ---------------------------------------------------------------------------------------------
// Latched flags
// ---------------------------------------------------------------------------------------------

namespace flags {

namespace {

// The lowest bit of each nibble, from the top one on, set by lanes 1 to 4 of a mask: 0x3 -> 0x1100.
unsigned Spread(unsigned mask) {
  return (mask & 0x1) << 12 | (mask & 0x2) << 7 | (mask & 0x4) << 2 | (mask & 0x8) >> 3;
}

// TX lanes 4..1 in the high nibble, RX lanes 4..1 in the low one.
std::uint8_t TxRx(std::uint8_t tx, std::uint8_t rx) {
  return static_cast<std::uint8_t>((tx & 0x0F) << 4 | (rx & 0x0F));
}

}  // namespace

std::uint16_t Interleaved(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
  return static_cast<std::uint16_t>(Spread(a) << 3 | Spread(b) << 2 | Spread(c) << 1 | Spread(d));
}

std::uint16_t RxPowerAlarms(const LatchedFlagsPage& p) {
  return Interleaved(p.latched_rx_power_high_alarm, p.latched_rx_power_low_alarm,
                     p.latched_rx_power_high_warning, p.latched_rx_power_low_warning);
}

std::uint16_t TxBiasAlarms(const LatchedFlagsPage& p) {
  return Interleaved(p.latched_tx_bias_high_alarm, p.latched_tx_bias_low_alarm,
                     p.latched_tx_bias_high_warning, p.latched_tx_bias_low_warning);
}

std::uint16_t TxPowerAlarms(const LatchedFlagsPage& p) {
  return Interleaved(p.latched_tx_power_high_alarm, p.latched_tx_power_low_alarm,
                     p.latched_tx_power_high_warning, p.latched_tx_power_low_warning);
}

std::uint8_t Loss(const LatchedFlagsPage& p) { return TxRx(p.latched_tx_los, p.latched_rx_los); }

std::uint8_t LossOfLock(const LatchedFlagsPage& p) {
  return TxRx(p.latched_tx_cdr_lol, p.latched_rx_cdr_lol);
}

std::uint8_t AdaptiveEqFault(const LatchedFlagsPage& p) {
  return p.latched_tx_adaptive_eq_fault & 0x0F;
}

std::uint8_t Temperature(const LatchedFlagsPage& p) { return p.latched_temperature_flags; }

std::uint8_t Voltage(const LatchedFlagsPage& p) { return p.latched_voltage_flags; }

}  // namespace flags

}  // namespace phy
}  // namespace cable_info
