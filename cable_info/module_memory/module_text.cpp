// The data sheet of a module.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cable_info/module_memory/alarm_words.h"
#include "cable_info/module_memory/module_output.h"
#include "cable_info/module_memory/number_text.h"
#include "cable_info/module_memory/text_encoding.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {

namespace {

using module_memory::AppendRounded;
using module_memory::AppendUtf8;

constexpr std::size_t kLabelWidth = 44;  // of the first column, with its indentation
constexpr std::size_t kLineWidth = 100;
constexpr std::string_view kIndent = "    ";
constexpr std::size_t kUsualSize = 12288;  // of the sheet of a module

// ---------------------------------------------------------------------------------------------
// Values
// ---------------------------------------------------------------------------------------------

// A code of one byte: "0x1a".
void AppendHexCode(text::TextBuffer& out, unsigned code) { out.AppendPrefixedHex(code & 0xFFU, 2); }

void AppendCode(text::TextBuffer& out, unsigned code, std::string_view name) {
  if (name.empty()) return AppendHexCode(out, code);
  out.Append(name).Append(" (");
  AppendHexCode(out, code);
  out.Append(')');
}

void AppendWithUnit(text::TextBuffer& out, double value, std::string_view unit) {
  AppendRounded(out, value);
  if (unit.empty()) return;
  if (unit != "%") out.Append(' ');
  out.Append(unit);
}

std::string_view FlagWord(double flag) { return flag != 0.0 ? "yes" : "no"; }

std::string_view StateWords(FieldState state) {
  switch (state) {
    case FieldState::kPresent:
      return "present";
    case FieldState::kNotImplemented:
      return "not implemented";
    case FieldState::kNotRead:
      return "not read";
    case FieldState::kNotReady:
      break;
  }
  return "not ready";
}

// How many characters a UTF-8 text has.
std::size_t WidthOf(std::string_view text) {
  if (module_memory::IsAscii(text)) return text.size();
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

// Thresholds are listed in the order of their values.
constexpr std::array<AlarmLevel, kAlarmLevels> kColumns = {
    AlarmLevel::kLowAlarm, AlarmLevel::kLowWarning, AlarmLevel::kHighWarning,
    AlarmLevel::kHighAlarm};
constexpr std::size_t kValueWidth = 24;
constexpr std::size_t kFirstThreshold = kLabelWidth + 1 + kValueWidth;
constexpr std::size_t kThresholdWidth = 14;

void AppendRaised(text::TextBuffer& out, const AlarmFlags& flags) {
  std::string_view separator;
  for (const AlarmLevel level : kAllAlarmLevels) {
    if (!flags.At(level).value_or(false)) continue;
    out.Append(separator).Append(module_memory::AlarmLevelWords(level));
    separator = ", ";
  }
}

void AppendPower(text::TextBuffer& out, double milliwatts) {
  constexpr double kHundredths = 100.0;
  AppendWithUnit(out, milliwatts, "mW");
  if (milliwatts <= 0.0) return;
  const double dbm = std::round(10.0 * std::log10(milliwatts) * kHundredths) / kHundredths;
  out.Append(" (");
  AppendWithUnit(out, dbm, "dBm");
  out.Append(')');
}

void AppendBias(text::TextBuffer& out, double milliamperes) {
  AppendWithUnit(out, milliamperes, "mA");
}

// ---------------------------------------------------------------------------------------------
// The sheet
// ---------------------------------------------------------------------------------------------

struct Group {
  FieldGroup group;
  std::string_view heading;
};

constexpr Group kGroups[] = {
    {FieldGroup::kModule, ""},  // without a heading
    {FieldGroup::kIdentity, "Identity"},
    {FieldGroup::kPower, "Power"},
    {FieldGroup::kMedia, "Media"},
    {FieldGroup::kStatus, "Status"},
    {FieldGroup::kControls, "Controls"},
    {FieldGroup::kCapabilities, "Capabilities"},
    {FieldGroup::kCalibration, "Calibration"},
};

// The label of an auxiliary monitor.
struct AuxLabel {
  std::string_view name;
  std::string_view label;
  std::string_view unit;
};

constexpr AuxLabel kAuxLabels[] = {
    {"laser_temperature_c", "Laser temperature", "C"},
    {"tec_current_percent", "TEC current", "%"},
    {"tec_current_ma", "TEC current", "mA"},
    {"vcc2_v", "Second supply voltage", "V"},
    {"aux1_custom", "Auxiliary monitor 1, custom", ""},
    {"custom", "Custom monitor", ""},
};

AuxLabel LabelOf(std::string_view name) {
  for (const AuxLabel& label : kAuxLabels) {
    if (label.name == name) return label;
  }
  return {name, name, ""};
}

// The fields of each group of `kGroups`; not those of the title.
std::array<FieldSet<Field>, std::size(kGroups)> FieldsByGroup() {
  std::array<FieldSet<Field>, std::size(kGroups)> groups;
  for (const FieldInfo& field : ModuleFields()) {
    if (field.field == Field::kIdentifier || field.field == Field::kRevision) continue;  // in title
    for (std::size_t i = 0; i < std::size(kGroups); ++i) {
      if (field.group == kGroups[i].group) groups[i].Add(field.field);
    }
  }
  return groups;
}

// The first column of a line: a label with its indentation, its unit and the blanks after it.
class LabelColumn {
 public:
  LabelColumn() = default;
  // At least `blanks` blanks, and as many as fill `width` characters.
  LabelColumn(std::string_view label, std::string_view unit, std::size_t width,
              std::size_t blanks) {
    const std::string_view separator = unit.empty() ? "" : ", ";
    for (const std::string_view part : {kIndent, label, separator, unit}) Add(part);
    for (; size_ < text_.size() && (size_ < width || blanks != 0); ++size_) {
      text_[size_] = ' ';
      if (blanks != 0) --blanks;
    }
  }

  void AppendTo(text::TextBuffer& out) const { out.AppendPart(text_, size_); }

 private:
  void Add(std::string_view part) {
    part = part.substr(0, text_.size() - size_);
    size_ += part.copy(text_.data() + size_, part.size());
  }

  std::array<char, 64> text_ = {};  // more than the longest label needs
  std::size_t size_ = 0;
};

std::array<LabelColumn, kFieldCount> FieldColumns() {
  std::array<LabelColumn, kFieldCount> columns;
  for (const FieldInfo& field : ModuleFields()) {
    columns[static_cast<std::size_t>(field.field)] = {field.label, "", kLabelWidth + 1, 1};
  }
  return columns;
}

std::array<LabelColumn, kLaneFieldCount> LaneFieldColumns() {
  std::array<LabelColumn, kLaneFieldCount> columns;
  for (const LaneFieldInfo& field : LaneFields()) {
    columns[static_cast<std::size_t>(field.field)] = {field.label, field.unit, kLabelWidth, 0};
  }
  return columns;
}

class Sheet {
 public:
  Sheet(text::TextBuffer& out, const ModuleInfo& info) : out_(out), info_(info) {}

  void Write(std::string_view label) {
    Title(label);
    Groups();
    List("InfiniBand speeds", info_.supported_speeds);
    List("Compliance", info_.compliance);
    Applications();
    Monitors();
    Lanes();
    Vdm();
    List("Options", info_.options);
    Checksums();
    Pages();
    NotRead();
    Warnings();
  }

 private:
  void Text(std::string_view text) {
    AppendUtf8(out_, text, [this](unsigned char special) {
      const bool is_control = special < ' ' || special == 0x7F;
      out_.Append(is_control ? '?' : static_cast<char>(special));
    });
  }

  // Blanks up to a column of the line, at least `least` of them.
  void PadTo(std::size_t column, std::size_t least = 0) {
    constexpr std::size_t kUsualBlanks = 48;
    const std::size_t width = out_.size() - line_;
    const std::size_t blanks = width < column ? std::max(column - width, least) : least;
    char* const to = out_.Reserve(std::max(blanks, kUsualBlanks));
    std::memset(to, ' ', kUsualBlanks);  // of known size: a few moves
    if (blanks > kUsualBlanks) std::memset(to + kUsualBlanks, ' ', blanks - kUsualBlanks);
    out_.EndAt(to + blanks);
  }

  void BeginLine() { line_ = out_.size(); }

  // Ends a line without blanks at its end.
  void EndLine() {
    char* end = out_.Reserve(1);
    while (end[-1] == ' ') --end;  // at most to the end of the line before
    *end = '\n';
    out_.EndAt(end + 1);
  }

  void Heading(std::string_view heading) { out_.Append("  ").Append(heading).Append('\n'); }

  void Title(std::string_view label) {
    Text(label);
    out_.Append(": ");
    const FieldValue identifier = info_[Field::kIdentifier];
    const std::string_view family = FamilyName(info_.family);
    if (identifier.IsPresent()) {
      AppendCode(out_, identifier.code(), identifier.text);
    } else {
      out_.Append("unknown module");
    }
    if (!family.empty()) out_.Append(", ").Append(family);
    const FieldValue revision = info_[Field::kRevision];
    if (revision.IsPresent()) {
      const bool is_of_sff8436 =
          info_.family == ModuleFamily::kSff8636 && revision.text.substr(0, 3) == "SFF";
      out_.Append(is_of_sff8436 ? ", " : " ");
      Text(revision.text);
    }
    out_.Append('\n');
  }

  void Value(const FieldInfo& field, const FieldValue& value) {
    switch (field.kind) {
      case FieldKind::kText:
        return Text(value.text);
      case FieldKind::kNumber:
        return AppendWithUnit(out_, value.number, field.unit);
      case FieldKind::kCode:
        return AppendCode(out_, value.code(), value.text);
      case FieldKind::kFlag:
        out_.Append(FlagWord(value.number));
    }
  }

  void FieldLine(const FieldInfo& field, const FieldValue& value) {
    static const auto kLabels = FieldColumns();
    kLabels[static_cast<std::size_t>(field.field)].AppendTo(out_);
    Value(field, value);
    out_.Append('\n');
  }

  void Groups() {
    static const auto kFields = FieldsByGroup();
    const FieldSet<Field> present = info_.FieldsIn(FieldState::kPresent);
    for (std::size_t i = 0; i < std::size(kGroups); ++i) {
      FieldSet<Field> shown = present;
      shown &= kFields[i];
      bool has_heading = kGroups[i].heading.empty();
      for (const Field field : shown) {
        if (!has_heading) Heading(kGroups[i].heading);
        has_heading = true;
        FieldLine(DescribeField(field), info_[field]);
      }
    }
  }

  // Names with commas between them, on lines of limited width.
  template <typename Names>
  void List(std::string_view heading, const Names& names) {
    if (names.empty()) return;
    Heading(heading);
    std::size_t width = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string_view name = names[i];
      const std::size_t size = WidthOf(name) + 2;
      if (width == 0 || width + size > kLineWidth) {
        if (width != 0) out_.Append('\n');
        out_.Append(kIndent);
        width = kIndent.size();
      } else {
        out_.Append(' ');
      }
      Text(name);
      if (i + 1 < names.size()) out_.Append(',');
      width += size;
    }
    out_.Append('\n');
  }

  void Applications() {
    if (info_.applications.empty()) return;
    Heading("Applications");
    for (const Application& it : info_.applications) {
      BeginLine();
      out_.Append(kIndent).Append("Application ").AppendDecimal(it.number);
      PadTo(kLabelWidth);
      out_.Append(' ');
      AppendCode(out_, it.host_interface.code, it.host_interface.name);
      out_.Append(" to ");
      AppendCode(out_, it.media_interface.code, it.media_interface.name);
      LaneCounts(it);
      out_.Append('\n');
    }
  }

  // ", 8 host and 4 media lanes"; without counts that the interfaces define.
  void LaneCounts(const Application& it) {
    const bool has_both = it.host_lanes != 0 && it.media_lanes != 0;
    if (it.host_lanes != 0) out_.Append(", ").AppendDecimal(it.host_lanes).Append(" host");
    if (it.media_lanes != 0) {
      out_.Append(has_both ? " and " : ", ").AppendDecimal(it.media_lanes).Append(" media");
    }
    if (it.host_lanes != 0 || it.media_lanes != 0) out_.Append(" lanes");
  }

  void MonitorHeading() {
    BeginLine();
    out_.Append("  Monitors");
    PadTo(kLabelWidth);
    out_.Append(" value");
    std::size_t column = kFirstThreshold;
    for (const AlarmLevel level : kColumns) {
      PadTo(column);
      column += kThresholdWidth;
      out_.Append(module_memory::AlarmLevelWords(level));
    }
    PadTo(column);
    out_.Append("raised\n");
  }

  // The line of a monitor, after its label; `append_value` appends its value when it is present.
  template <typename AppendValue>
  void Monitored(const Monitor& monitor, const AppendValue& append_value) {
    PadTo(kLabelWidth);
    out_.Append(' ');
    if (monitor.IsPresent()) {
      append_value(out_, monitor.value);
    } else {
      out_.Append(StateWords(monitor.state));
    }
    Limits(monitor);
    EndLine();
  }

  // Nothing after the last one, since blanks at the end of the line would be removed one by one.
  void Limits(const Monitor& monitor) {
    if (monitor.thresholds.given == 0 && monitor.flags.raised == 0) return;
    std::size_t column = kFirstThreshold;
    for (const AlarmLevel level : kColumns) {
      PadTo(column, 1);
      column += kThresholdWidth;
      const std::optional<double> threshold = monitor.thresholds.At(level);
      if (threshold) AppendRounded(out_, *threshold);
    }
    if (monitor.flags.raised == 0) return;
    PadTo(column, 1);
    AppendRaised(out_, monitor.flags);
  }

  template <typename AppendValue>
  void MonitorLine(std::string_view label, const Monitor& monitor,
                   const AppendValue& append_value) {
    BeginLine();
    out_.Append(kIndent).Append(label);
    Monitored(monitor, append_value);
  }

  void QuantityLine(std::string_view label, const Monitor& monitor, std::string_view unit) {
    MonitorLine(label, monitor,
                [unit](text::TextBuffer& out, double value) { AppendWithUnit(out, value, unit); });
  }

  void Monitors() {
    MonitorHeading();
    QuantityLine("Temperature", info_.temperature, "C");
    QuantityLine("Supply voltage", info_.voltage, "V");
    for (const AuxMonitor& aux : info_.aux) {
      const AuxLabel label = LabelOf(aux.name);
      QuantityLine(label.label, aux.monitor, label.unit);
    }
    LaneMonitors("RX power", &Lane::rx_power, AppendPower);
    LaneMonitors("TX power", &Lane::tx_power, AppendPower);
    LaneMonitors("TX bias", &Lane::tx_bias, AppendBias);
  }

  template <typename AppendValue>
  void LaneMonitors(std::string_view name, Monitor Lane::*member, const AppendValue& append_value) {
    const auto& lanes = info_.lanes;
    if (lanes.empty()) return;
    const FieldState state = (lanes.front().*member).state;
    const bool is_same = std::all_of(lanes.begin(), lanes.end(), [&](const Lane& lane) {
      return (lane.*member).state == state && (lane.*member).flags.raised == 0;
    });
    if (is_same && state != FieldState::kPresent) {
      return MonitorLine(name, lanes.front().*member, append_value);
    }
    for (const Lane& lane : lanes) {
      BeginLine();
      out_.Append(kIndent).Append(name).Append(", lane ").AppendDecimal(lane.number);
      Monitored(lane.*member, append_value);
    }
  }

  // A value that is no flag.
  void LaneCell(const LaneFieldInfo& field, const LaneValue& value) {
    if (field.kind == FieldKind::kNumber) {
      AppendRounded(out_, value.number);
    } else if (const std::string_view name = LaneCodeName(field.field, value); !name.empty()) {
      out_.Append(name);
    } else {
      AppendHexCode(out_, static_cast<unsigned>(value.number));
    }
  }

  // A row per setting, a column per lane.
  void Lanes() {
    FieldSet<LaneField> shown;
    everywhere_ = ~shown;
    for (const Lane& lane : info_.lanes) {
      const FieldSet<LaneField> present = lane.FieldsIn(FieldState::kPresent);
      shown |= present;
      everywhere_ &= present;
    }
    bool has_heading = false;
    for (const LaneField field : shown) {
      if (!has_heading) LaneHeading();
      has_heading = true;
      LaneRow(DescribeField(field));
    }
  }

  void LaneHeading() {
    BeginLine();
    out_.Append("  Lanes");
    PadTo(kLabelWidth);
    for (const Lane& lane : info_.lanes) {
      LaneColumn([&] { out_.AppendDecimal(lane.number); });
    }
    EndLine();
  }

  template <typename AppendCell>
  void LaneColumn(const AppendCell& append_cell) {
    out_.Append(' ');
    const std::size_t begin = out_.size() - line_;
    append_cell();
    PadTo(begin + kLaneWidth);
  }

  void LaneColumn(const LaneFieldInfo& field, const LaneValue& value) {
    if (!value.IsPresent()) {
      out_.Append(" -     ");
    } else {
      LaneColumn([&] { LaneCell(field, value); });
    }
  }

  void FlagRow(LaneField field) {
    using Cell = std::array<char, 1 + kLaneWidth>;
    static constexpr Cell kAbsent = {' ', '-', ' ', ' ', ' ', ' ', ' '};
    static constexpr Cell kNo = {' ', 'n', 'o', ' ', ' ', ' ', ' '};
    static constexpr Cell kYes = {' ', 'y', 'e', 's', ' ', ' ', ' '};
    const bool is_everywhere = everywhere_.Has(field);
    char* to = out_.Reserve(info_.lanes.size() * kNo.size());
    for (const Lane& lane : info_.lanes) {
      const bool is_present = is_everywhere || lane[field].IsPresent();
      const Cell& cell = !is_present ? kAbsent : lane.NumberOf(field) != 0.0 ? kYes : kNo;
      to = std::copy(cell.begin(), cell.end(), to);
    }
    out_.EndAt(to);
  }

  // True if all lanes have a value, and the same.
  bool IsShared(LaneField field) const {
    if (!everywhere_.Has(field)) return false;
    const double number = info_.lanes.front().NumberOf(field);
    return std::all_of(info_.lanes.begin(), info_.lanes.end(), [field, number](const Lane& lane) {
      return lane.NumberOf(field) == number;
    });
  }

  void LaneRow(const LaneFieldInfo& field) {
    // Values that all lanes share are written once, unless they are as short as this.
    constexpr std::size_t kMaxRepeatedSize = 6;
    static const auto kLabels = LaneFieldColumns();
    BeginLine();
    kLabels[static_cast<std::size_t>(field.field)].AppendTo(out_);
    if (field.kind == FieldKind::kFlag) {
      FlagRow(field.field);
      return EndLine();
    }
    const bool is_shared = IsShared(field.field);
    const std::size_t row = out_.size();
    for (const Lane& lane : info_.lanes) {
      const std::size_t cell = out_.size() + 1;
      LaneColumn(field, lane[field.field]);
      if (is_shared && row + 1 == cell && out_.size() - cell > kMaxRepeatedSize) {
        if (info_.lanes.size() > 1) out_.Append(" (all lanes)");
        break;
      }
    }
    EndLine();
  }

  void Vdm() {
    if (info_.vdm.empty()) return;
    Heading("Versatile diagnostics");
    for (const VdmSample& sample : info_.vdm) {
      BeginLine();
      out_.Append(kIndent);
      if (sample.observable.empty()) {
        out_.Append("type ").AppendDecimal(sample.type);
      } else {
        for (const char c : sample.observable) out_.Append(c == '_' ? ' ' : c);
      }
      out_.Append(", ").Append(sample.instance);
      Monitored(sample.monitor, [&sample](text::TextBuffer& out, double value) {
        AppendWithUnit(out, value, sample.unit);
      });
    }
  }

  void Checksums() {
    if (info_.checksums.empty()) return;
    Heading("Checksums");
    for (const PageChecksum& sum : info_.checksums) {
      BeginLine();
      out_.Append(kIndent).Append(ShortPageName(sum.page)).Append(", bytes ");
      out_.AppendDecimal(sum.first).Append(" to ").AppendDecimal(sum.last);
      PadTo(kLabelWidth);
      out_.Append(' ');
      AppendHexCode(out_, sum.stored);
      if (sum.Matches()) {
        out_.Append(", correct\n");
      } else {
        out_.Append(", wrong: they add up to ");
        AppendHexCode(out_, sum.computed);
        out_.Append('\n');
      }
    }
  }

  void Pages() {
    std::vector<std::string> names;
    names.reserve(info_.pages_read.size());
    for (const Page page : info_.pages_read) names.push_back(ShortPageName(page));
    List("Pages read", names);
  }

  void NotRead() {
    std::vector<std::string_view> labels;
    for (const Field field : info_.FieldsIn(FieldState::kNotRead)) {
      labels.push_back(DescribeField(field).label);
    }
    List("Not read", labels);
  }

  void Warnings() {
    if (info_.warnings.empty()) return;
    Heading("Warnings");
    for (const std::string& warning : info_.warnings) {
      out_.Append(kIndent);
      Text(warning);
      out_.Append('\n');
    }
  }

  static constexpr std::size_t kLaneWidth = 6;

  text::TextBuffer& out_;
  const ModuleInfo& info_;
  std::size_t line_ = 0;            // where the line begins
  FieldSet<LaneField> everywhere_;  // the fields that all lanes have
};

void AppendModuleText(text::TextBuffer& out, const ModuleInfo& info, std::string_view label) {
  out.Reserve(kUsualSize);
  Sheet(out, info).Write(label);
}

}  // namespace

std::string ModuleToText(const ModuleInfo& info, std::string_view label) {
  return text::ToText(AppendModuleText, info, label);
}

void WriteModuleText(std::ostream& os, const ModuleInfo& info, std::string_view label) {
  text::TextBuffer out;
  AppendModuleText(out, info, label);
  os << out.view();
}

}  // namespace cable_info
