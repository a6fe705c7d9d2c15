#include "cable_info/phy_cable_record.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ostream>
#include <type_traits>

namespace cable_info {

namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;
using LaneWords = std::uint16_t (ModuleRecord::*)[8];

constexpr int kLanes = 8;
constexpr int kFlagLanes = 4;  // the lanes whose latched flags are shown

constexpr std::uint8_t kSfpIdentifier = 2;

struct FormFactor {
  std::string_view name;
  bool is_cmis;
};

// By cable identifier.
constexpr std::array<FormFactor, 12> kFormFactors = {{
    {"QSFP28", false},
    {"QSFP+", false},
    {"SFP28/SFP+", false},
    {"QSA (QSFP->SFP)", false},
    {"Backplane", false},
    {"SFP-DD", true},
    {"QSFP-DD", true},
    {"QSFP_CMIS", true},
    {"OSFP", true},
    {"C2C", false},
    {"DSFP", true},
    {"QSFP_Split_Cable", false},
}};

// A fibre length of the module and the metres that one unit of it stands for.
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

// Unit codes of the single-mode fibre length.
constexpr int kSmfKilometres = 0;
constexpr int kSmfTenthsOfKilometre = 1;
constexpr int kNoSmfUnit = -1;

constexpr std::uint16_t kDbmUnit = 0;  // of the power unit flag; all others stand for milliwatts
constexpr double kMilliwattsPerUnit = 0.0001;
constexpr double kBiasUnitsPerMilliampere = 500.0;
constexpr std::uint32_t kMicroamperesPerUnit = 2;
static_assert(kMicroamperesPerUnit * kBiasUnitsPerMilliampere == 1000.0);

// The four cells of an attenuation that is not known.
constexpr std::string_view kCsvNoAttenuation = R"("NA","NA","NA","NA")";

// The maximum power comes in quarters of a watt: what stands behind the whole ones.
constexpr std::array<std::string_view, 4> kQuarters = {"", ".25", ".5", ".75"};

// The register's layout. Whoever fills the record by copying the register relies on it.
static_assert(std::is_standard_layout_v<ModuleRecord>);
static_assert(std::is_trivially_copyable_v<ModuleRecord>);
static_assert(offsetof(ModuleRecord, power_unit_flag) == 0);
static_assert(offsetof(ModuleRecord, compliance_code) == 3);
static_assert(offsetof(ModuleRecord, cable_technology) == 5);
static_assert(offsetof(ModuleRecord, power_class) == 6);
static_assert(offsetof(ModuleRecord, cable_identifier) == 7);
static_assert(offsetof(ModuleRecord, cable_length) == 8);
static_assert(offsetof(ModuleRecord, tx_input_eq) == 11);
static_assert(offsetof(ModuleRecord, rx_output_pre_emp) == 12);
static_assert(offsetof(ModuleRecord, rx_output_amp) == 13);
static_assert(offsetof(ModuleRecord, max_power) == 14);
static_assert(offsetof(ModuleRecord, attenuation) == 15);
static_assert(offsetof(ModuleRecord, tx_cdr_state) == 19);
static_assert(offsetof(ModuleRecord, rx_cdr_state) == 20);
static_assert(offsetof(ModuleRecord, tx_cdr_cap) == 21);
static_assert(offsetof(ModuleRecord, rx_cdr_cap) == 22);
static_assert(offsetof(ModuleRecord, rx_output_post_emp) == 23);
static_assert(offsetof(ModuleRecord, vendor_name) == 24);
static_assert(offsetof(ModuleRecord, vendor_pn) == 41);
static_assert(offsetof(ModuleRecord, vendor_rev) == 58);
static_assert(offsetof(ModuleRecord, fw_version) == 64);
static_assert(offsetof(ModuleRecord, vendor_sn) == 68);
static_assert(offsetof(ModuleRecord, voltage) == 86);
static_assert(offsetof(ModuleRecord, temperature) == 88);
static_assert(offsetof(ModuleRecord, rx_power) == 90);
static_assert(offsetof(ModuleRecord, tx_power) == 106);
static_assert(offsetof(ModuleRecord, tx_bias) == 122);
static_assert(offsetof(ModuleRecord, temp_low_threshold) == 138);
static_assert(offsetof(ModuleRecord, temp_high_threshold) == 140);
static_assert(offsetof(ModuleRecord, voltage_low_threshold) == 142);
static_assert(offsetof(ModuleRecord, voltage_high_threshold) == 144);
static_assert(offsetof(ModuleRecord, rx_power_low_threshold) == 146);
static_assert(offsetof(ModuleRecord, rx_power_high_threshold) == 148);
static_assert(offsetof(ModuleRecord, tx_power_low_threshold) == 150);
static_assert(offsetof(ModuleRecord, tx_power_high_threshold) == 152);
static_assert(offsetof(ModuleRecord, tx_bias_low_threshold) == 154);
static_assert(offsetof(ModuleRecord, tx_bias_high_threshold) == 156);
static_assert(offsetof(ModuleRecord, smf_length) == 160);
static_assert(offsetof(ModuleRecord, rx_power_type) == 163);
static_assert(offsetof(ModuleRecord, ib_compliance_code) == 165);
static_assert(offsetof(ModuleRecord, nominal_bitrate) == 170);
static_assert(offsetof(ModuleRecord, extended_bitrate) == 171);
static_assert(offsetof(ModuleRecord, length_om5) == 180);
static_assert(offsetof(ModuleRecord, length_om4) == 181);
static_assert(offsetof(ModuleRecord, length_om3) == 182);
static_assert(offsetof(ModuleRecord, length_om2) == 183);
static_assert(offsetof(ModuleRecord, length_om1) == 188);
static_assert(offsetof(ModuleRecord, lot) == 200);
static_assert(offsetof(ModuleRecord, date_code) == 202);
static_assert(offsetof(ModuleRecord, vendor_oui) == 208);
static_assert(offsetof(ModuleRecord, connector_type) == 212);
static_assert(offsetof(ModuleRecord, cdr_vendor) == 217);
static_assert(offsetof(ModuleRecord, max_fiber_length) == 218);
static_assert(sizeof(ModuleRecord) == 220);

static_assert(std::is_standard_layout_v<LatchedFlagsPage>);
static_assert(std::is_trivially_copyable_v<LatchedFlagsPage>);
static_assert(offsetof(LatchedFlagsPage, latched_voltage_flags) == 2);
static_assert(offsetof(LatchedFlagsPage, latched_temperature_flags) == 3);
static_assert(offsetof(LatchedFlagsPage, latched_tx_adaptive_eq_fault) == 4);
static_assert(offsetof(LatchedFlagsPage, latched_tx_cdr_lol) == 5);
static_assert(offsetof(LatchedFlagsPage, latched_tx_los) == 6);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_low_warning) == 8);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_high_warning) == 9);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_low_alarm) == 10);
static_assert(offsetof(LatchedFlagsPage, latched_tx_power_high_alarm) == 11);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_low_warning) == 12);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_high_warning) == 13);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_low_alarm) == 14);
static_assert(offsetof(LatchedFlagsPage, latched_tx_bias_high_alarm) == 15);
static_assert(offsetof(LatchedFlagsPage, latched_rx_cdr_lol) == 16);
static_assert(offsetof(LatchedFlagsPage, latched_rx_los) == 17);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_low_warning) == 18);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_high_warning) == 19);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_low_alarm) == 20);
static_assert(offsetof(LatchedFlagsPage, latched_rx_power_high_alarm) == 21);
static_assert(sizeof(LatchedFlagsPage) == 22);

// The value of lane 1..8; the register swaps each pair of lanes.
std::uint16_t LaneValue(const std::uint16_t (&lanes)[kLanes], int lane) {
  return lanes[(lane - 1) ^ 1];
}

std::uint8_t TechnologyNibble(const ModuleRecord& m) { return m.cable_technology >> 4; }

std::string_view FormFactorName(const ModuleRecord& m) {
  return m.cable_identifier < kFormFactors.size() ? kFormFactors[m.cable_identifier].name : kBareNa;
}

double MilliwattsToDbm(double mw) {
  return mw <= 0.0 ? kUnrepresentablePower : 10.0 * std::log10(mw);
}

double DbmToMilliwatts(double dbm) {
  return dbm == 0.0 ? kUnrepresentablePower : std::pow(10.0, dbm / 10.0);
}

// ---------------------------------------------------------------------------------------------
// Decoders: the fields of a module
// ---------------------------------------------------------------------------------------------

namespace decode {

void Metres(TextBuffer& out, std::int64_t base, std::int64_t multiplier) {
  if (multiplier == 0) {  // stands for 0.1
    out.AppendGeneral(static_cast<double>(base) * 0.1);
  } else {
    out.AppendDecimal(base * multiplier);
  }
  out.Append(" m");
}

void Length(TextBuffer& out, const ModuleRecord& m, bool csv, std::string_view na) {
  constexpr std::int64_t kCmisMultipliers[] = {0, 1, 10, 100};
  const bool is_cmis = m.IsCMISCable();
  const std::int64_t base = is_cmis ? m.cable_length & 0x3F : m.cable_length;
  if (base == 0) {
    out.Append(na);
    return;
  }
  AppendCvsQuoted(out, csv, Metres, base, is_cmis ? kCmisMultipliers[m.cable_length >> 6] : 1);
}

void LengthSMFiber(TextBuffer& out, const ModuleRecord& m) {
  const unsigned value = m.smf_length & 0xFF;
  switch (value == 0 ? kNoSmfUnit : (m.smf_length >> 8) & 0x3) {
    case kSmfKilometres:
      out.AppendDecimal(value).Append(" km");
      return;
    case kSmfTenthsOfKilometre:
      out.AppendGeneral(value * 100 / 1000.0).Append(" km");
      return;
    default:
      out.Append(kReportNa);
  }
}

void LengthOMX(TextBuffer& out, const ModuleRecord& m, std::uint8_t om) {
  if (om == 0 || om > kFibreLengths.size()) {
    out.Append(kReportNa);
    return;
  }
  const FibreLength& length = kFibreLengths[om - 1U];
  const std::int64_t value = m.*length.field;
  if (value == 0) {
    out.Append(kReportNa);
    return;
  }
  const bool is_sfp = m.cable_identifier == kSfpIdentifier;
  out.AppendDecimal(value * (is_sfp ? length.sfp_metres : length.other_metres)).Append(" m");
}

void Technology(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  AppendCableType(out, m.SelectTransmitterTechnology(), na);
}

void Revision(TextBuffer& out, const ModuleRecord& m) {
  for (const char c : m.vendor_rev) {
    if (c != '\0') out.Append(c);
  }
}

void FWVersion(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  std::uint8_t major = 0;
  std::uint8_t minor = 0;
  std::uint16_t sub_minor = 0;
  if (!m.GetFWVersion(major, minor, sub_minor)) {
    out.Append(na);
    return;
  }
  out.AppendDecimal(major).Append('.').AppendDecimal(minor).Append('.').AppendDecimal(sub_minor);
}

void DateCode(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  for (const char c : m.date_code) {
    if (c < '0' || c > '9') {
      out.Append(na);
      return;
    }
  }
  const auto& d = m.date_code;  // last character first
  out.AppendPart(std::array{d[5], d[4], '-', d[3], d[2], '-', d[1], d[0]});
}

void CdrEnable(TextBuffer& out, const ModuleRecord& m, bool rx, std::string_view na, bool always) {
  const std::uint8_t state = rx ? m.rx_cdr_state : m.tx_cdr_state;
  const bool has_cdr = (rx ? m.rx_cdr_cap : m.tx_cdr_cap) != 0;
  if (m.IsPassiveCable() || (!has_cdr && !always)) {
    out.Append(na);
    return;
  }
  out.AppendPrefixedHex(state, 2);
}

void Attenuation(TextBuffer& out, const ModuleRecord& m, bool csv) {
  if (!m.IsPassiveCable()) {
    out.Append(csv ? kCsvNoAttenuation : "NA NA NA NA");
    return;
  }
  const char separator = csv ? ',' : ' ';
  for (std::size_t i = 0; i < std::size(m.attenuation); ++i) {
    if (i > 0) out.Append(separator);
    out.AppendDecimal(m.attenuation[i]);
  }
}

// The module tells one value for all lanes; it is shown for each of four.
void LaneSetting(TextBuffer& out, const ModuleRecord& m, std::uint8_t value, bool hex,
                 std::string_view na) {
  if (m.IsPassiveCable()) {
    out.Append(na);
    return;
  }
  std::array<char, kDecimalRoom> text{};
  const char* const end =
      hex ? WriteHex(text.data(), value, 2) : WriteDecimal(text.data(), std::uint32_t{value});
  const auto size = static_cast<std::size_t>(end - text.data());
  for (int lane = 1; lane <= 4; ++lane) {
    if (lane > 1 && !hex) out.Append(' ');
    out.AppendPart(text, size);
  }
}

void Temperature(TextBuffer& out, const ModuleRecord& m, std::uint16_t raw, bool csv) {
  AppendCvsQuoted(out, csv, AppendTemperature, TechnologyNibble(m), WholeDegrees(raw),
                  UnquotedMissingValue(csv));
}

void Voltage(TextBuffer& out, std::uint16_t raw, bool csv) {
  AppendCvsQuoted(out, csv, AppendVoltage, raw);
}

void MaxPower(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  if (m.max_power == 0) {
    out.Append(na);
    return;
  }
  constexpr std::uint32_t kQuartersPerWatt = kQuarters.size();
  out.AppendDecimal(m.max_power / kQuartersPerWatt);
  out.Append(kQuarters[m.max_power % kQuartersPerWatt]).Append(" W");
}

void IBComplianceCode(TextBuffer& out, const ModuleRecord& m, std::string_view na) {
  AppendSupportedSpeed(out, m.ib_compliance_code, na);
}

}  // namespace decode

// ---------------------------------------------------------------------------------------------
// Renderers: what a port shows, with or without a module
// ---------------------------------------------------------------------------------------------

namespace render {

// `append(out, module)`, or `missing` without a module.
template <typename Append>
void OfModule(TextBuffer& out, const PhyCableRecord& r, std::string_view missing, Append append) {
  if (r.module == nullptr) {
    out.Append(missing);
  } else {
    append(out, *r.module);
  }
}

// A decoder that takes the missing value as its fallback.
template <typename Decode>
void WithFallback(TextBuffer& out, const PhyCableRecord& r, bool csv, Decode decode) {
  const std::string_view na = MissingValue(csv);
  OfModule(out, r, na, [&](TextBuffer& o, const ModuleRecord& m) { decode(o, m, na); });
}

// A decoder whose text is quoted as a whole in CSV, its fallback included.
template <typename Decode>
void QuotedWithFallback(TextBuffer& out, const PhyCableRecord& r, bool csv, Decode decode) {
  OfModule(out, r, MissingValue(csv), [&](TextBuffer& o, const ModuleRecord& m) {
    AppendCvsQuoted(o, csv, decode, m, UnquotedMissingValue(csv));
  });
}

void Type(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  QuotedWithFallback(out, r, csv, decode::Technology);
}

void Identifier(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, MissingValue(csv), [csv](TextBuffer& o, const ModuleRecord& m) {
    o.Append(FormFactorName(m));
    if (!csv) o.Append(" (").AppendPrefixedHex(m.cable_identifier, 2).Append(')');
  });
}

void Bitrate(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  constexpr std::int64_t kMegabitsPerGigabit = 1000;
  OfModule(out, r, kReportNa, [csv](TextBuffer& o, const ModuleRecord& m) {
    if (csv) {
      o.AppendDecimal(m.SelectNominalBR() * kMegabitsPerGigabit);
    } else {
      o.AppendDecimal(m.SelectNominalBR()).Append(" Gb/s");
    }
  });
}

void PowerClass(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, csv ? na_val : kBareNa,
           [](TextBuffer& o, const ModuleRecord& m) { o.AppendDecimal(m.power_class); });
}

void MaxPower(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  WithFallback(out, r, csv, decode::MaxPower);
}

void FWVersion(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  WithFallback(out, r, csv, decode::FWVersion);
}

void DateCode(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  WithFallback(out, r, csv, decode::DateCode);
}

void Lot(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, MissingValue(csv),
           [](TextBuffer& o, const ModuleRecord& m) { o.AppendPrefixedHex(m.lot, 4); });
}

void ComplianceCode(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, MissingValue(csv), [csv](TextBuffer& o, const ModuleRecord& m) {
    if (csv) {
      o.AppendDecimal(m.compliance_code);
    } else {
      o.AppendPrefixedHex(m.compliance_code, 2);
    }
  });
}

void Technology(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, MissingValue(csv), [csv](TextBuffer& o, const ModuleRecord& m) {
    o.AppendPrefixedHex(csv ? m.SelectTransmitterTechnology() : m.cable_technology, 2);
  });
}

void SupportedSpeed(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  QuotedWithFallback(out, r, csv, decode::IBComplianceCode);
}

void Attenuation(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, csv ? kCsvNoAttenuation : "N/A N/A N/A N/A",
           [csv](TextBuffer& o, const ModuleRecord& m) { decode::Attenuation(o, m, csv); });
}

void LengthByReg(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  OfModule(out, r, kBareNa,
           [csv](TextBuffer& o, const ModuleRecord& m) { decode::Length(o, m, csv, kBareNa); });
}

void LengthByPrtl(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  if (r.prtl_length.empty()) {
    out.Append(kBareNa);
  } else if (csv) {
    out.AppendQuoted(r.prtl_length);
  } else {
    out.Append(r.prtl_length);
  }
}

void Length(TextBuffer& out, const PhyCableRecord& r, bool csv) {
  if (r.prtl_length.empty()) {
    LengthByReg(out, r, csv);
  } else {
    LengthByPrtl(out, r, csv);
  }
}

void LaneSetting(TextBuffer& out, const PhyCableRecord& r, std::uint8_t ModuleRecord::*setting,
                 bool csv) {
  const std::string_view na = MissingValue(csv);
  OfModule(out, r, na, [&](TextBuffer& o, const ModuleRecord& m) {
    decode::LaneSetting(o, m, m.*setting, csv, na);
  });
}

void OUI(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kBareNa,
           [](TextBuffer& o, const ModuleRecord& m) { o.AppendPrefixedHex(m.vendor_oui, 1); });
}

// A vendor's description: trimmed, its commas turned into hyphens, `blank` when nothing is left.
void Description(TextBuffer& out, std::string_view text, std::string_view blank) {
  const std::string_view trimmed = Trimmed(text);
  if (trimmed.empty()) {
    out.Append(blank);
    return;
  }
  const std::size_t begin = out.size();
  out.Append(trimmed);
  for (std::size_t i = trimmed.find(','); i < trimmed.size(); i = trimmed.find(',', i + 1)) {
    out.Replace(begin + i, '-');
  }
}

// A vendor's field, trimmed, with `comma` in place of commas; `blank` when nothing is left. It is
// copied as a whole, for a copy of known size is a few moves.
template <std::size_t N>
void VendorText(TextBuffer& out, const char (&field)[N], char comma, std::string_view blank) {
  const std::string_view trimmed = Trimmed(ArrayText(field));
  if (trimmed.empty()) {
    out.Append(blank);
    return;
  }
  std::array<char, 2 * N> shown{};  // the field may begin with up to N blanks
  for (std::size_t i = 0; i < N; ++i) shown[i] = field[i] == ',' ? comma : field[i];
  const char* const text = shown.data() + (trimmed.data() - field);
  out.AppendWithin(N, [=](char* to) {
    std::copy_n(text, N, to);
    return to + trimmed.size();
  });
}

void Vendor(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kBareNa,
           [](TextBuffer& o, const ModuleRecord& m) { VendorText(o, m.vendor_name, ',', {}); });
}

void Pn(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kBareNa,
           [](TextBuffer& o, const ModuleRecord& m) { VendorText(o, m.vendor_pn, '-', kBareNa); });
}

void Sn(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kBareNa,
           [](TextBuffer& o, const ModuleRecord& m) { VendorText(o, m.vendor_sn, '-', kBareNa); });
}

void Revision(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kBareNa, [](TextBuffer& o, const ModuleRecord& m) {
    TextBuffer revision;
    decode::Revision(revision, m);
    Description(o, revision.view(), kBareNa);
  });
}

void LengthSMFiber(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kReportNa, decode::LengthSMFiber);
}

void LengthOmx(TextBuffer& out, const PhyCableRecord& r, std::uint8_t om) {
  OfModule(out, r, kReportNa,
           [om](TextBuffer& o, const ModuleRecord& m) { decode::LengthOMX(o, m, om); });
}

void CdrEnable(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kReportNa, [](TextBuffer& o, const ModuleRecord& m) {
    decode::CdrEnable(o, m, false, kReportNa, false);
    o.Append(' ');
    decode::CdrEnable(o, m, true, kReportNa, false);
  });
}

void RxPowerType(TextBuffer& out, const PhyCableRecord& r) {
  OfModule(out, r, kReportNa, [](TextBuffer& o, const ModuleRecord& m) {
    o.Append(RxPowerTypeName(m.rx_power_type != 0));
  });
}

void Temperature(TextBuffer& out, const PhyCableRecord& r, std::uint16_t ModuleRecord::*word,
                 bool csv) {
  OfModule(out, r, MissingValue(csv),
           [&](TextBuffer& o, const ModuleRecord& m) { decode::Temperature(o, m, m.*word, csv); });
}

void Voltage(TextBuffer& out, const PhyCableRecord& r, std::uint16_t ModuleRecord::*word,
             bool csv) {
  OfModule(out, r, MissingValue(csv),
           [&](TextBuffer& o, const ModuleRecord& m) { decode::Voltage(o, m.*word, csv); });
}

// Any number of the module, in decimal; only rows show these.
template <typename Number>
void Decimal(TextBuffer& out, const PhyCableRecord& r, Number ModuleRecord::*field) {
  OfModule(out, r, na_val,
           [&](TextBuffer& o, const ModuleRecord& m) { o.AppendDecimal(m.*field); });
}

// A code of the module, in hexadecimal; only rows show these.
void HexByte(TextBuffer& out, const PhyCableRecord& r, std::uint8_t ModuleRecord::*field) {
  OfModule(out, r, na_val,
           [&](TextBuffer& o, const ModuleRecord& m) { o.AppendPrefixedHex(m.*field, 2); });
}

double Milliwatts(double raw, std::uint16_t unit_flag) {
  return unit_flag == kDbmUnit ? DbmToMilliwatts(raw) : raw * kMilliwattsPerUnit;
}

double Milliamperes(double raw) { return raw / kBiasUnitsPerMilliampere; }

void PowerLine(TextBuffer& out, double raw, std::uint16_t unit_flag, bool csv) {
  const double mw = Milliwatts(raw, unit_flag);
  if (csv) {
    out.AppendFixed3(mw);
    return;
  }
  out.AppendWithin(kPowerRoom, [=](char* to) {
    return unit_flag == kDbmUnit ? WritePower(to, mw, raw) : WritePower(to, mw, MilliwattsToDbm);
  });
}

std::string_view EmptyPowerLine(bool csv) { return csv ? na_val : kReportNoPower; }

void LanePower(TextBuffer& out, const PhyCableRecord& r, LaneWords lanes, int lane, bool csv) {
  OfModule(out, r, EmptyPowerLine(csv), [&](TextBuffer& o, const ModuleRecord& m) {
    PowerLine(o, LaneValue(m.*lanes, lane), m.power_unit_flag, csv);
  });
}

void Bias(TextBuffer& out, double raw, bool csv) {
  const double ma = Milliamperes(raw);
  if (csv) {
    out.AppendFixed3(ma);
  } else {
    out.AppendWithin(kBiasRoom, [=](char* to) { return WriteBias(to, ma); });
  }
}

void LaneBias(TextBuffer& out, const PhyCableRecord& r, int lane, bool csv) {
  OfModule(out, r, MissingValue(csv),
           [&](TextBuffer& o, const ModuleRecord& m) { Bias(o, LaneValue(m.tx_bias, lane), csv); });
}

}  // namespace render

// ---------------------------------------------------------------------------------------------
// Latched flags
// ---------------------------------------------------------------------------------------------

namespace flags {

// Lane 1..4 of a mask, bits 0..3, at the bottom of the word's nibbles, lane 1 in the top one.
constexpr std::array<std::uint16_t, 1 << kFlagLanes> SpreadMasks() {
  std::array<std::uint16_t, 1 << kFlagLanes> words{};
  for (unsigned mask = 0; mask < words.size(); ++mask) {
    unsigned word = 0;
    for (unsigned lane = 0; lane < kFlagLanes; ++lane) word = word << 4 | ((mask >> lane) & 1U);
    words[mask] = static_cast<std::uint16_t>(word);
  }
  return words;
}
constexpr auto kSpreadMasks = SpreadMasks();

unsigned Spread(std::uint8_t mask) { return kSpreadMasks[mask % kSpreadMasks.size()]; }

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

// TX lanes 4..1 in the high nibble, RX lanes 4..1 in the low one.
std::uint8_t TxRx(std::uint8_t tx, std::uint8_t rx) {
  return static_cast<std::uint8_t>((tx & 0x0F) << 4 | (rx & 0x0F));
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

// Flags have as many digits as their type holds.
template <typename Flags>
constexpr int Digits(Flags (* /*select*/)(const LatchedFlagsPage&)) {
  return 2 * static_cast<int>(sizeof(Flags));
}

// The flags that `select(page)` returns.
template <typename Flags>
void Append(TextBuffer& out, const PhyCableRecord& r, Flags (*select)(const LatchedFlagsPage&)) {
  if (r.latched_flags == nullptr) {
    out.Append(kReportNa);
    return;
  }
  out.AppendPrefixedHex(select(*r.latched_flags), Digits(select));
}

}  // namespace flags

// ---------------------------------------------------------------------------------------------
// CSV row, in column order
// ---------------------------------------------------------------------------------------------

void AppendIdentityCells(CsvRow& row, const PhyCableRecord& r) {
  row.Quoted(r.source);
  row.QuotedCell(render::Vendor, r);
  row.Cell(render::OUI, r);
  row.QuotedCell(render::Pn, r);
  row.QuotedCell(render::Sn, r);
  row.QuotedCell(render::Revision, r);
}

void AppendTechnologyCell(TextBuffer& out, const PhyCableRecord& r) {
  render::OfModule(out, r, na_val, [](TextBuffer& o, const ModuleRecord& m) {
    o.AppendDecimal(m.SelectTransmitterTechnology());
  });
}

void AppendTypeCells(CsvRow& row, const PhyCableRecord& r) {
  const auto decimal = [&](auto field) { row.Cell(render::Decimal<std::uint8_t>, r, field); };
  row.Cell(render::Decimal<std::uint16_t>, r, &ModuleRecord::smf_length);
  decimal(&ModuleRecord::length_om5);
  decimal(&ModuleRecord::length_om4);
  decimal(&ModuleRecord::length_om3);
  decimal(&ModuleRecord::length_om2);
  decimal(&ModuleRecord::length_om1);
  decimal(&ModuleRecord::cable_length);
  row.Cell(render::HexByte, r, &ModuleRecord::cable_identifier);
  row.QuotedCell(render::Identifier, r, kCsv);
  row.Cell(render::HexByte, r, &ModuleRecord::connector_type);
  row.Cell(AppendTechnologyCell, r);
  decimal(&ModuleRecord::ib_compliance_code);
  row.Cell(render::Length, r, kCsv);
  row.Cell(render::LengthByPrtl, r, kCsv);
  row.Cell(render::LengthByReg, r, kCsv);
  row.Cell(render::Type, r, kCsv);
  row.Cell(render::SupportedSpeed, r, kCsv);
  row.Cell(render::Temperature, r, &ModuleRecord::temperature, kCsv);
}

// Shown whether the module has such a CDR or not.
void AppendCdrEnableCell(TextBuffer& out, const PhyCableRecord& r, bool rx) {
  render::OfModule(out, r, na_val, [rx](TextBuffer& o, const ModuleRecord& m) {
    decode::CdrEnable(o, m, rx, na_val, true);
  });
}

void AppendSettingCells(CsvRow& row, const PhyCableRecord& r) {
  row.Cell(render::PowerClass, r, kCsv);
  row.Cell(render::Bitrate, r, kCsv);
  row.Missing();  // CDR enable of both directions
  row.Cell(AppendCdrEnableCell, r, false);
  row.Cell(AppendCdrEnableCell, r, true);
  row.Cell(render::LaneSetting, r, &ModuleRecord::tx_input_eq, kCsv);
  row.Cell(render::LaneSetting, r, &ModuleRecord::rx_output_amp, kCsv);
  row.Missing();  // emphasis
  row.Cell(render::LaneSetting, r, &ModuleRecord::rx_output_pre_emp, kCsv);
  row.Cell(render::LaneSetting, r, &ModuleRecord::rx_output_post_emp, kCsv);
  row.Cell(render::FWVersion, r, kCsv);
  row.Missing();  // attenuation at 2.5 GHz
  row.Cell(render::Attenuation, r, kCsv);
}

void AppendMonitorCells(CsvRow& row, const PhyCableRecord& r) {
  row.Cell(render::Decimal<std::uint8_t>, r, &ModuleRecord::rx_power_type);
  for (int lane = 1; lane <= kLanes; ++lane) {
    row.Cell(render::LanePower, r, &ModuleRecord::rx_power, lane, kCsv);
  }
  for (int lane = 1; lane <= kLanes; ++lane) row.Cell(render::LaneBias, r, lane, kCsv);
  for (int lane = 1; lane <= kLanes; ++lane) {
    row.Cell(render::LanePower, r, &ModuleRecord::tx_power, lane, kCsv);
  }
}

void AppendFlagCells(CsvRow& row, const LatchedFlagsPage* page) {
  constexpr int kLaneFlags = 5 * kFlagLanes;
  constexpr int kModuleFlags = 4;
  constexpr int kAlarmFlags = 3 * 4 * kFlagLanes;
  if (page == nullptr) {
    row.Missing(kLaneFlags + kModuleFlags + 1 + kModuleFlags + kAlarmFlags);
    return;
  }
  row.FlagsUpwards(page->latched_rx_los, 0, kFlagLanes);
  row.FlagsUpwards(page->latched_tx_los, 0, kFlagLanes);
  row.FlagsUpwards(page->latched_tx_adaptive_eq_fault, 0, kFlagLanes);
  row.FlagsUpwards(page->latched_rx_cdr_lol, 0, kFlagLanes);
  row.FlagsUpwards(page->latched_tx_cdr_lol, 0, kFlagLanes);
  row.FlagsUpwards(page->latched_temperature_flags, 0, kModuleFlags);
  row.Missing();  // initialization complete
  row.FlagsUpwards(page->latched_voltage_flags, 0, kModuleFlags);
  row.FlagsDownwards(flags::RxPowerAlarms(*page), 15, 16);
  row.FlagsDownwards(flags::TxBiasAlarms(*page), 15, 16);
  row.FlagsDownwards(flags::TxPowerAlarms(*page), 15, 16);
}

void AppendTransmitterCells(CsvRow& row, const PhyCableRecord& r) {
  constexpr int kTransmitterFlags = 4;
  row.Cell(render::Voltage, r, &ModuleRecord::voltage, kCsv);
  row.Cell(render::Technology, r, kCsv);
  if (r.module == nullptr) {
    row.Missing(kTransmitterFlags);
  } else {
    row.FlagsUpwards(r.module->cable_technology, 0, kTransmitterFlags);
  }
  row.Cell(render::ComplianceCode, r, kCsv);
}

void AppendThresholdCells(CsvRow& row, const PhyCableRecord& r) {
  const auto raw = [&](auto field) { row.Cell(render::Decimal<std::uint16_t>, r, field); };
  row.Cell(render::Temperature, r, &ModuleRecord::temp_high_threshold, kCsv);
  row.Cell(render::Temperature, r, &ModuleRecord::temp_low_threshold, kCsv);
  row.Missing(2);  // temperature warnings
  row.Cell(render::Voltage, r, &ModuleRecord::voltage_high_threshold, kCsv);
  row.Cell(render::Voltage, r, &ModuleRecord::voltage_low_threshold, kCsv);
  row.Missing(2);  // voltage warnings
  raw(&ModuleRecord::rx_power_high_threshold);
  raw(&ModuleRecord::rx_power_low_threshold);
  raw(&ModuleRecord::tx_power_high_threshold);
  raw(&ModuleRecord::tx_power_low_threshold);
  raw(&ModuleRecord::tx_bias_high_threshold);
  raw(&ModuleRecord::tx_bias_low_threshold);
}

void AppendRow(CsvRow& row, const PhyCableRecord& r) {
  AppendIdentityCells(row, r);
  AppendTypeCells(row, r);
  AppendSettingCells(row, r);
  AppendMonitorCells(row, r);
  AppendFlagCells(row, r.latched_flags);
  AppendTransmitterCells(row, r);
  AppendThresholdCells(row, r);
  row.Cell(render::DateCode, r, kReport);  // the report's missing value, as readers know it
  row.Cell(render::Lot, r, kCsv);
  row.Missing(4);  // adaptive equalization freeze of four lanes
  row.Missing();   // RX output disable
  row.Missing();   // TX adaptive equalization enable
  row.Cell(render::MaxPower, r, kCsv);
  row.Cell(render::Decimal<std::uint8_t>, r, &ModuleRecord::cdr_vendor);
  row.Cell(render::Decimal<std::uint16_t>, r, &ModuleRecord::max_fiber_length);
}

// ---------------------------------------------------------------------------------------------
// Text report, in line order
// ---------------------------------------------------------------------------------------------

void AppendIdentityLines(ReportLines& lines, const PhyCableRecord& r) {
  lines.Text("Source: ", r.source);
  lines.Line("Identifier: ", render::Identifier, r, kReport);
  lines.Line("Vendor: ", render::Vendor, r);
  lines.Line("OUI: ", render::OUI, r);
  lines.Line("PN: ", render::Pn, r);
  lines.Line("SN: ", render::Sn, r);
  lines.Line("Rev: ", render::Revision, r);
  lines.Line("Length: ", render::Length, r, kReport);
  lines.Line("Length by PRTL: ", render::LengthByPrtl, r, kReport);
  lines.Line("Length by Reg: ", render::LengthByReg, r, kReport);
  lines.Line("Type: ", render::Type, r, kReport);
  lines.Line("SupportedSpeed: ", render::SupportedSpeed, r, kReport);
  lines.Line("Temperature: ", render::Temperature, r, &ModuleRecord::temperature, kReport);
}

void AppendSettingLines(ReportLines& lines, const PhyCableRecord& r) {
  lines.Line("PowerClass: ", render::PowerClass, r, kReport);
  lines.Line("NominalBitrate: ", render::Bitrate, r, kReport);
  lines.Line("CDREnableTxRx: ", render::CdrEnable, r);
  lines.Line("InputEq: ", render::LaneSetting, r, &ModuleRecord::tx_input_eq, kReport);
  lines.Line("OutputAmp: ", render::LaneSetting, r, &ModuleRecord::rx_output_amp, kReport);
  lines.Text("OutputEmp: ", kReportNa);
  lines.Line("FW Version: ", render::FWVersion, r, kReport);
  lines.Line("Attenuation(5,7,12,25): ", render::Attenuation, r, kReport);
}

// The lanes' lines are inlined: then copying a label is a move or two instead of a call.
[[gnu::always_inline]] inline void AppendPowerLines(ReportLines& lines, std::string_view label,
                                                    const PhyCableRecord& r, LaneWords lanes) {
  if (r.module == nullptr) {
    for (int lane = 1; lane <= kLanes; ++lane) {
      lines.LaneText(label, lane, render::EmptyPowerLine(kReport));
    }
    return;
  }
  // A power of ten takes long, but several of them at a time hardly longer than one.
  double mw[kLanes];
  const std::uint16_t unit_flag = r.module->power_unit_flag;
  for (int i = 0; i < kLanes; ++i) {
    mw[i] = render::Milliwatts(LaneValue(r.module->*lanes, i + 1), unit_flag);
  }
  if (unit_flag == kDbmUnit) {
    for (int i = 0; i < kLanes; ++i) {
      const double dbm = LaneValue(r.module->*lanes, i + 1);
      lines.LanePower(label, i + 1, mw[i], dbm);
    }
    return;
  }
  for (int i = 0; i < kLanes; ++i) lines.LanePower(label, i + 1, mw[i], MilliwattsToDbm);
}

[[gnu::always_inline]] inline void AppendBiasLines(ReportLines& lines, std::string_view label,
                                                   const PhyCableRecord& r) {
  if (r.module == nullptr) {
    for (int lane = 1; lane <= kLanes; ++lane) lines.LaneText(label, lane, kReportNa);
    return;
  }
  for (int lane = 1; lane <= kLanes; ++lane) {
    const std::uint32_t raw = LaneValue(r.module->tx_bias, lane);
    lines.LaneBias(label, lane, raw * kMicroamperesPerUnit);
  }
}

void AppendMonitorLines(ReportLines& lines, const PhyCableRecord& r) {
  lines.Line("RX power type: ", render::RxPowerType, r);
  AppendPowerLines(lines, "RX# Power: ", r, &ModuleRecord::rx_power);
  AppendBiasLines(lines, "TX# Bias: ", r);
  AppendPowerLines(lines, "TX# Power: ", r, &ModuleRecord::tx_power);
}

template <typename Flags>
[[gnu::always_inline]] inline void AppendFlagLine(ReportLines& lines, std::string_view label,
                                                  const LatchedFlagsPage* page,
                                                  Flags (*select)(const LatchedFlagsPage&)) {
  if (page == nullptr) {
    lines.Text(label, kReportNa);
  } else {
    lines.Hex(label, select(*page), flags::Digits(select));
  }
}

void AppendFlagLines(ReportLines& lines, const LatchedFlagsPage* page) {
  AppendFlagLine(lines, "CDR Latched TX/RX Loss Indicator: ", page, flags::Loss);
  AppendFlagLine(lines, "Latched Adaptive Equalization Fault: ", page, flags::AdaptiveEqFault);
  AppendFlagLine(lines, "Latched  TX / RX LOL Indicator: ", page, flags::LossOfLock);
  AppendFlagLine(lines, "Latched Temperature Alarm and Warning: ", page, flags::Temperature);
  AppendFlagLine(lines, "Latched Voltage Alarm and Warning: ", page, flags::Voltage);
  AppendFlagLine(lines, "RX Power Alarm and Warning: ", page, flags::RxPowerAlarms);
  AppendFlagLine(lines, "TX Bias Alarm and Warning:  ", page, flags::TxBiasAlarms);
  AppendFlagLine(lines, "TX Power Alarm and Warning: ", page, flags::TxPowerAlarms);
}

[[gnu::always_inline]] inline void AppendRawLine(ReportLines& lines, std::string_view label,
                                                 const PhyCableRecord& r,
                                                 std::uint16_t ModuleRecord::*field) {
  if (r.module == nullptr) {
    lines.Text(label, kReportNa);
  } else {
    lines.Decimal(label, r.module->*field);
  }
}

void AppendThresholdLines(ReportLines& lines, const PhyCableRecord& r) {
  lines.Line("AlarmTemperatureHighThresh: ", render::Temperature, r,
             &ModuleRecord::temp_high_threshold, kReport);
  lines.Line("AlarmTemperatureLowThresh: ", render::Temperature, r,
             &ModuleRecord::temp_low_threshold, kReport);
  lines.Text("WarnTemperatureHighThresh: ", kReportNa);
  lines.Text("WarnTemperatureLowThresh: ", kReportNa);
  lines.Line("AlarmVoltageHighThresh: ", render::Voltage, r, &ModuleRecord::voltage_high_threshold,
             kReport);
  lines.Line("AlarmVoltageLowThresh: ", render::Voltage, r, &ModuleRecord::voltage_low_threshold,
             kReport);
  lines.Text("WarnVoltageHighThresh: ", kReportNa);
  lines.Text("WarnVoltageLowThresh: ", kReportNa);
  AppendRawLine(lines, "RXPowerHighThresh: ", r, &ModuleRecord::rx_power_high_threshold);
  AppendRawLine(lines, "RXPowerLowThresh: ", r, &ModuleRecord::rx_power_low_threshold);
  AppendRawLine(lines, "TXPowerHighThresh: ", r, &ModuleRecord::tx_power_high_threshold);
  AppendRawLine(lines, "TXPowerLowThresh: ", r, &ModuleRecord::tx_power_low_threshold);
  AppendRawLine(lines, "TXBiasHighThresh: ", r, &ModuleRecord::tx_bias_high_threshold);
  AppendRawLine(lines, "TXBiasLowThresh: ", r, &ModuleRecord::tx_bias_low_threshold);
}

void AppendReport(ReportLines& lines, const PhyCableRecord& r) {
  AppendIdentityLines(lines, r);
  AppendSettingLines(lines, r);
  AppendMonitorLines(lines, r);
  AppendFlagLines(lines, r.latched_flags);
  lines.Line("Supply Voltage Reporting: ", render::Voltage, r, &ModuleRecord::voltage, kReport);
  lines.Line("Transmitter Technology: ", render::Technology, r, kReport);
  lines.Line("Extended Specification Compliance Codes: ", render::ComplianceCode, r, kReport);
  AppendThresholdLines(lines, r);
  lines.Line("DateCode: ", render::DateCode, r, kReport);
  lines.Line("Lot: ", render::Lot, r, kReport);
  lines.Text("TX Adaptive Equalization Freeze: ", kReportNa);
  lines.Text("RX Output Disable: ", kReportNa);
  lines.Text("TX Adaptive Equalization Enable: ", kReportNa);
  lines.Line("OutputPreEmp: ", render::LaneSetting, r, &ModuleRecord::rx_output_pre_emp, kReport);
  lines.Line("OutputPostEmp: ", render::LaneSetting, r, &ModuleRecord::rx_output_post_emp, kReport);
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// ModuleRecord
// ---------------------------------------------------------------------------------------------

void ModuleRecord::SetDateCode(std::string_view yymmdd) {
  constexpr std::size_t kCharacters = sizeof(date_code);
  for (std::size_t i = 0; i < kCharacters; ++i) {
    date_code[kCharacters - 1 - i] = i < yymmdd.size() ? yymmdd[i] : '\0';
  }
}

bool ModuleRecord::IsCMISCable() const {
  return cable_identifier < kFormFactors.size() && kFormFactors[cable_identifier].is_cmis;
}

std::uint8_t ModuleRecord::SelectTransmitterTechnology() const {
  return IsCMISCable() ? cable_technology : TechnologyNibble(*this);
}

std::uint8_t ModuleRecord::SelectNominalBR() const {
  constexpr std::uint8_t kSeeExtended = 255;
  return nominal_bitrate == kSeeExtended ? extended_bitrate / 4 : nominal_bitrate / 10;
}

bool ModuleRecord::IsPassiveCable() const { return TechnologyNibble(*this) == kUnequalizedCopper; }

bool ModuleRecord::IsActiveCable() const {
  return !IsPassiveCable() && connector_type == kNoSeparableConnector;
}

bool ModuleRecord::IsModule() const {
  return !IsPassiveCable() && connector_type != kNoSeparableConnector;
}

bool ModuleRecord::GetFWVersion(std::uint8_t& major, std::uint8_t& minor,
                                std::uint16_t& subminor) const {
  const bool is_known = fw_version != 0 && !IsPassiveCable();
  const fw_version_obj_t version = FWVersionFromWord(is_known ? fw_version : 0);
  major = version.major;
  minor = version.minor;
  subminor = version.sub_minor;
  return is_known;
}

std::string ModuleRecord::ConvertCableIdentifierToStr() const {
  return std::string(FormFactorName(*this));
}

std::string ModuleRecord::ConvertCableLengthToStr(bool csv, const std::string& na) const {
  return ToText(decode::Length, *this, csv, na);
}

std::string ModuleRecord::ConvertCableLengthSMFiberToStr() const {
  return ToText(decode::LengthSMFiber, *this);
}

std::string ModuleRecord::ConvertCableLengthOMXToStr(std::uint8_t om) const {
  return ToText(decode::LengthOMX, *this, om);
}

std::string ModuleRecord::ConvertTransmitterTechnologyToStr(const std::string& na) const {
  return ToText(decode::Technology, *this, na);
}

std::string ModuleRecord::ConvertRevisionToStr() const { return ToText(decode::Revision, *this); }

std::string ModuleRecord::ConvertFWVersionToStr(const std::string& na) const {
  return ToText(decode::FWVersion, *this, na);
}

std::string ModuleRecord::ConvertDateCodeToStr(const std::string& na) const {
  return ToText(decode::DateCode, *this, na);
}

std::string ModuleRecord::ConvertCDREnableTxRxToStr(bool rx, const std::string& na,
                                                    bool always) const {
  return ToText(decode::CdrEnable, *this, rx, na, always);
}

std::string ModuleRecord::ConvertAttenuationToStr(bool csv) const {
  return ToText(decode::Attenuation, *this, csv);
}

std::string ModuleRecord::ConvertTxEQRxAMPRxEMPToStr(std::uint8_t value, bool hex,
                                                     const std::string& na) const {
  return ToText(decode::LaneSetting, *this, value, hex, na);
}

std::string ModuleRecord::ConvertTemperatureToStr(std::uint16_t raw, bool csv) const {
  return ToText(decode::Temperature, *this, raw, csv);
}

std::string ModuleRecord::ConvertVoltageToStr(std::uint16_t raw, bool csv) const {
  return ToText(decode::Voltage, raw, csv);
}

std::string ModuleRecord::ConvertMaxPowerToStr(const std::string& na) const {
  return ToText(decode::MaxPower, *this, na);
}

std::string ModuleRecord::ConvertIBComplianceCodeToStr(const std::string& na) const {
  return ToText(decode::IBComplianceCode, *this, na);
}

// ---------------------------------------------------------------------------------------------
// Fields of the module
// ---------------------------------------------------------------------------------------------

PhyCableRecord::~PhyCableRecord() {
  delete module;
  delete latched_flags;
}

std::string PhyCableRecord::TypeToStr(bool csv) const { return ToText(render::Type, *this, csv); }

std::string PhyCableRecord::CableIdentifierToStr(bool csv) const {
  return ToText(render::Identifier, *this, csv);
}

std::string PhyCableRecord::BitrateToStr(bool csv) const {
  return ToText(render::Bitrate, *this, csv);
}

std::string PhyCableRecord::CablePowerClassToStr(bool csv) const {
  return ToText(render::PowerClass, *this, csv);
}

std::string PhyCableRecord::MaxPowerToStr(bool csv) const {
  return ToText(render::MaxPower, *this, csv);
}

std::string PhyCableRecord::FWVersionToStr(bool csv) const {
  return ToText(render::FWVersion, *this, csv);
}

std::string PhyCableRecord::DateCodeToStr(bool csv) const {
  return ToText(render::DateCode, *this, csv);
}

std::string PhyCableRecord::LotToStr(bool csv) const { return ToText(render::Lot, *this, csv); }

std::string PhyCableRecord::ComplanceCodeToStr(bool csv) const {
  return ToText(render::ComplianceCode, *this, csv);
}

std::string PhyCableRecord::TechnologyToStr(bool csv) const {
  return ToText(render::Technology, *this, csv);
}

std::string PhyCableRecord::SupportedSpeedToStr(bool csv) const {
  return ToText(render::SupportedSpeed, *this, csv);
}

std::string PhyCableRecord::AttenuationToStr(bool csv) const {
  return ToText(render::Attenuation, *this, csv);
}

std::string PhyCableRecord::CableLengthToStr(bool csv) const {
  return ToText(render::Length, *this, csv);
}

std::string PhyCableRecord::CableLengthByRegToStr(bool csv) const {
  return ToText(render::LengthByReg, *this, csv);
}

std::string PhyCableRecord::CableLengthByPrtlToStr(bool csv) const {
  return ToText(render::LengthByPrtl, *this, csv);
}

std::string PhyCableRecord::InputEqToStr(bool csv) const {
  return ToText(render::LaneSetting, *this, &ModuleRecord::tx_input_eq, csv);
}

std::string PhyCableRecord::OutputAmpToStr(bool csv) const {
  return ToText(render::LaneSetting, *this, &ModuleRecord::rx_output_amp, csv);
}

std::string PhyCableRecord::OuputPreEmpToStr(bool csv) const {
  return ToText(render::LaneSetting, *this, &ModuleRecord::rx_output_pre_emp, csv);
}

std::string PhyCableRecord::OuputPostEmpToStr(bool csv) const {
  return ToText(render::LaneSetting, *this, &ModuleRecord::rx_output_post_emp, csv);
}

std::string PhyCableRecord::RevisionToStr() const { return ToText(render::Revision, *this); }

std::string PhyCableRecord::VendorToStr() const { return ToText(render::Vendor, *this); }

std::string PhyCableRecord::VendorPnToStr() const { return ToText(render::Pn, *this); }

std::string PhyCableRecord::VendorSnToStr() const { return ToText(render::Sn, *this); }

std::string PhyCableRecord::VendorOUIToStr() const { return ToText(render::OUI, *this); }

std::string PhyCableRecord::LengthSMFiberToStr() const {
  return ToText(render::LengthSMFiber, *this);
}

std::string PhyCableRecord::LengthOmxToStr(std::uint8_t om) const {
  return ToText(render::LengthOmx, *this, om);
}

std::string PhyCableRecord::CDREnableTxRXToStr() const { return ToText(render::CdrEnable, *this); }

// ---------------------------------------------------------------------------------------------
// Identification
// ---------------------------------------------------------------------------------------------

std::string PhyCableRecord::DescToCsvDesc(const std::string& desc, bool empty_if_blank) const {
  return ToText(render::Description, desc, empty_if_blank ? std::string_view() : kBareNa);
}

cable_id_t PhyCableRecord::GetIdObj() const {
  if (module == nullptr) return {};
  cable_id_t id;
  id.pn = DescToCsvDesc(std::string(ArrayText(module->vendor_pn)), true);
  id.identifier = module->ConvertCableIdentifierToStr();
  if (id.identifier == kBareNa) id.identifier.clear();
  id.vendor = _get_vendor_from_sn(DescToCsvDesc(std::string(ArrayText(module->vendor_sn)), true));
  id.revision = DescToCsvDesc(module->ConvertRevisionToStr(), true);
  return id;
}

std::string PhyCableRecord::GetUniqueKey() const {
  const std::string pn = VendorPnToStr();
  if (pn == kBareNa || module == nullptr) return {};
  const std::string revision = RevisionToStr();
  if (revision == kBareNa) return {};
  return pn + '_' + _to_ptr_string(module->cable_identifier) + '_' + revision;
}

std::string PhyCableRecord::GetPNVendor() const {
  return module == nullptr ? std::string() : std::string(ArrayText(module->vendor_pn));
}

fw_version_obj_t PhyCableRecord::GetFWObj() const {
  fw_version_obj_t version;
  if (module != nullptr) module->GetFWVersion(version.major, version.minor, version.sub_minor);
  return version;
}

std::uint8_t PhyCableRecord::GetCDRVendor() const {
  return module == nullptr ? std::uint8_t{0} : module->cdr_vendor;
}

bool PhyCableRecord::IsOpticCable() const {
  return module != nullptr && cable_info::IsOpticCable(module->SelectTransmitterTechnology());
}

// ---------------------------------------------------------------------------------------------
// Optical monitors
// ---------------------------------------------------------------------------------------------

double PhyCableRecord::mW_to_dBm(double mw) const { return MilliwattsToDbm(mw); }

double PhyCableRecord::dBm_to_mW(double dbm) const { return DbmToMilliwatts(dbm); }

std::string PhyCableRecord::PowerLineToStr(double raw, std::uint16_t unit_flag, bool csv) const {
  return ToText(render::PowerLine, raw, unit_flag, csv);
}

std::string PhyCableRecord::EmptyPowerLineToStr(bool csv) const {
  return std::string(render::EmptyPowerLine(csv));
}

std::string PhyCableRecord::TXBiasToStr(bool csv, double raw) const {
  return ToText(render::Bias, raw, csv);
}

std::string PhyCableRecord::TX1PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 1, csv);
}

std::string PhyCableRecord::TX2PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 2, csv);
}

std::string PhyCableRecord::TX3PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 3, csv);
}

std::string PhyCableRecord::TX4PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 4, csv);
}

std::string PhyCableRecord::TX5PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 5, csv);
}

std::string PhyCableRecord::TX6PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 6, csv);
}

std::string PhyCableRecord::TX7PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 7, csv);
}

std::string PhyCableRecord::TX8PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::tx_power, 8, csv);
}

std::string PhyCableRecord::RX1PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 1, csv);
}

std::string PhyCableRecord::RX2PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 2, csv);
}

std::string PhyCableRecord::RX3PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 3, csv);
}

std::string PhyCableRecord::RX4PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 4, csv);
}

std::string PhyCableRecord::RX5PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 5, csv);
}

std::string PhyCableRecord::RX6PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 6, csv);
}

std::string PhyCableRecord::RX7PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 7, csv);
}

std::string PhyCableRecord::RX8PowerToStr(bool csv) const {
  return ToText(render::LanePower, *this, &ModuleRecord::rx_power, 8, csv);
}

std::string PhyCableRecord::TXBias1ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 1, csv);
}

std::string PhyCableRecord::TXBias2ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 2, csv);
}

std::string PhyCableRecord::TXBias3ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 3, csv);
}

std::string PhyCableRecord::TXBias4ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 4, csv);
}

std::string PhyCableRecord::TXBias5ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 5, csv);
}

std::string PhyCableRecord::TXBias6ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 6, csv);
}

std::string PhyCableRecord::TXBias7ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 7, csv);
}

std::string PhyCableRecord::TXBias8ToStr(bool csv) const {
  return ToText(render::LaneBias, *this, 8, csv);
}

std::string PhyCableRecord::RXPowerTypeToStr() const { return ToText(render::RxPowerType, *this); }

// ---------------------------------------------------------------------------------------------
// Temperature and latched flags
// ---------------------------------------------------------------------------------------------

std::string PhyCableRecord::GetTemperatureStr() const {
  return ToText(render::Temperature, *this, &ModuleRecord::temperature, kReport);
}

std::string PhyCableRecord::GetHighTemperatureThresholdStr() const {
  return ToText(render::Temperature, *this, &ModuleRecord::temp_high_threshold, kReport);
}

std::string PhyCableRecord::GetLowTemperatureThresholdStr() const {
  return ToText(render::Temperature, *this, &ModuleRecord::temp_low_threshold, kReport);
}

std::uint8_t PhyCableRecord::GetTemperatureErrorsByTreshold() const {
  if (module == nullptr) return 0;
  return TemperatureErrors(TechnologyNibble(*module), module->temperature,
                           module->temp_high_threshold, module->temp_low_threshold);
}

std::uint8_t PhyCableRecord::GetTemperatureAlarms() const {
  return latched_flags == nullptr ? std::uint8_t{0} : latched_flags->latched_temperature_flags;
}

std::string PhyCableRecord::LatchedTxRxIndicatorToStr() const {
  return ToText(flags::Append<std::uint8_t>, *this, flags::Loss);
}

std::string PhyCableRecord::LatchedTxRxLolIndicatorToStr() const {
  return ToText(flags::Append<std::uint8_t>, *this, flags::LossOfLock);
}

std::string PhyCableRecord::LatchedAdaptiveEqualizationFaultToStr() const {
  return ToText(flags::Append<std::uint8_t>, *this, flags::AdaptiveEqFault);
}

std::string PhyCableRecord::LatchedTempAlarmAndWarningToStr() const {
  return ToText(flags::Append<std::uint8_t>, *this, flags::Temperature);
}

std::string PhyCableRecord::LatchedVoltageAlarmAndWarningToStr() const {
  return ToText(flags::Append<std::uint8_t>, *this, flags::Voltage);
}

std::string PhyCableRecord::TXPowerAlarmAndWarningToStr() const {
  return ToText(flags::Append<std::uint16_t>, *this, flags::TxPowerAlarms);
}

std::string PhyCableRecord::TXBiasAlarmAndWarningToStr() const {
  return ToText(flags::Append<std::uint16_t>, *this, flags::TxBiasAlarms);
}

std::string PhyCableRecord::RXPowerAlarmAndWarningToStr() const {
  return ToText(flags::Append<std::uint16_t>, *this, flags::RxPowerAlarms);
}

std::uint16_t PhyCableRecord::QuadroToInt(std::uint8_t a, std::uint8_t b, std::uint8_t c,
                                          std::uint8_t d) const {
  return flags::Interleaved(a, b, c, d);
}

// ---------------------------------------------------------------------------------------------
// Outputs
// ---------------------------------------------------------------------------------------------

void PhyCableRecord::ToCSVStream(std::ostream& out) const {
  CsvRow row;
  AppendRow(row, *this);
  row.WriteTo(out);
}

void PhyCableRecord::ToFileStream(std::ostream& out) const {
  ReportLines lines(out);
  AppendReport(lines, *this);
  lines.Finish();
}

}  // namespace cable_info
