// The data sheet of a module.

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "cable_info/module_memory/module_output.h"
#include "cable_info/module_memory/number_text.h"
#include "cable_info/module_memory/text_encoding.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {

namespace {

using module_memory::AppendUtf8;

constexpr std::size_t kLabelWidth = 44;  // of the first column, with its indentation
constexpr std::size_t kLineWidth = 100;
constexpr std::string_view kIndent = "    ";

// ---------------------------------------------------------------------------------------------
// Values
// ---------------------------------------------------------------------------------------------

std::string NumberText(double value) {
  char digits[module_memory::kShortestRoom];
  return {digits, module_memory::WriteShortest(digits, value)};
}

std::string WithUnit(std::string number, std::string_view unit) {
  if (!unit.empty()) number.append(unit == "%" ? "" : " ").append(unit);
  return number;
}

std::string CodeText(unsigned code, std::string_view name) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::string hex = {'0', 'x', kDigits[code >> 4U & 0xFU], kDigits[code & 0xFU]};
  return name.empty() ? hex : std::string(name) + " (" + hex + ')';
}

std::string ValueText(const FieldInfo& field, const FieldValue& value) {
  switch (field.kind) {
    case FieldKind::kText:
      return std::string(value.text);
    case FieldKind::kNumber:
      return WithUnit(NumberText(value.number), field.unit);
    case FieldKind::kCode:
      return CodeText(value.code(), value.text);
    case FieldKind::kFlag:
      break;
  }
  return value.number != 0.0 ? "yes" : "no";
}

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
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

constexpr std::array<std::string_view, kAlarmLevels> kLevelNames = {"high alarm", "low alarm",
                                                                    "high warning", "low warning"};

// Thresholds are listed in the order of their values.
constexpr std::array<AlarmLevel, kAlarmLevels> kColumns = {
    AlarmLevel::kLowAlarm, AlarmLevel::kLowWarning, AlarmLevel::kHighWarning,
    AlarmLevel::kHighAlarm};
constexpr std::size_t kValueWidth = 24;
constexpr std::size_t kThresholdWidth = 14;

std::string RaisedText(const AlarmFlags& flags) {
  std::string raised;
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    if (!flags.At(static_cast<AlarmLevel>(i)).value_or(false)) continue;
    raised.append(raised.empty() ? "" : ", ").append(kLevelNames[i]);
  }
  return raised;
}

std::string PowerText(double milliwatts) {
  constexpr double kHundredths = 100.0;
  std::string text = NumberText(milliwatts) + " mW";
  if (milliwatts <= 0.0) return text;
  const double dbm = std::round(10.0 * std::log10(milliwatts) * kHundredths) / kHundredths;
  return text + " (" + NumberText(dbm) + " dBm)";
}

// ---------------------------------------------------------------------------------------------
// The sheet
// ---------------------------------------------------------------------------------------------

struct Group {
  FieldGroup group;
  std::string_view heading;
};

constexpr Group kGroups[] = {
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

std::string WithBlanks(std::string_view name) {
  std::string text(name);
  std::replace(text.begin(), text.end(), '_', ' ');
  return text;
}

class Sheet {
 public:
  Sheet(text::TextBuffer& out, const ModuleInfo& info) : out_(out), info_(info) {}

  void Write(std::string_view label) {
    Title(label);
    for (const FieldInfo& field : ModuleFields()) {
      if (field.group == FieldGroup::kModule && field.field != Field::kIdentifier &&
          field.field != Field::kRevision) {
        FieldLine(field);
      }
    }
    for (const Group& group : kGroups) Fields(group);
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

  void Pad(std::size_t width, std::size_t to) {
    for (; width < to; ++width) out_.Append(' ');
  }

  void Heading(std::string_view heading) { out_.Append("  ").Append(heading).Append('\n'); }

  void Line(std::string_view label, std::string_view value) {
    out_.Append(kIndent).Append(label);
    Pad(kIndent.size() + label.size(), kLabelWidth);
    out_.Append(' ');
    Text(value);
    out_.Append('\n');
  }

  void Title(std::string_view label) {
    Text(label);
    out_.Append(": ");
    const FieldValue identifier = info_[Field::kIdentifier];
    const std::string_view family = FamilyName(info_.family);
    Text(identifier.IsPresent() ? CodeText(identifier.code(), identifier.text) : "unknown module");
    if (!family.empty()) out_.Append(", ").Append(family);
    const FieldValue revision = info_[Field::kRevision];
    if (revision.IsPresent()) {
      out_.Append(family == "SFF-8636" && revision.text.substr(0, 3) == "SFF" ? ", " : " ");
      Text(revision.text);
    }
    out_.Append('\n');
  }

  void FieldLine(const FieldInfo& field) {
    const FieldValue value = info_[field.field];
    if (value.IsPresent()) Line(field.label, ValueText(field, value));
  }

  void Fields(const Group& group) {
    const auto is_shown = [&](const FieldInfo& field) {
      return field.group == group.group && info_[field.field].IsPresent();
    };
    const auto& fields = ModuleFields();
    if (std::none_of(fields.begin(), fields.end(), is_shown)) return;
    Heading(group.heading);
    for (const FieldInfo& field : fields) {
      if (is_shown(field)) FieldLine(field);
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
      std::string text = CodeText(it.host_interface.code, it.host_interface.name) + " to " +
                         CodeText(it.media_interface.code, it.media_interface.name);
      text += ", " + std::to_string(it.host_lanes) + " host and " + std::to_string(it.media_lanes) +
              " media lanes";
      Line("Application " + std::to_string(it.number), text);
    }
  }

  void MonitorHeading() {
    out_.Append("  Monitors");
    Pad(std::string_view("  Monitors").size(), kLabelWidth);
    out_.Append(" value");
    Pad(std::string_view("value").size(), kValueWidth);
    for (const AlarmLevel level : kColumns) {
      const std::string_view name = kLevelNames[static_cast<std::size_t>(level)];
      out_.Append(name);
      Pad(name.size(), kThresholdWidth);
    }
    out_.Append("raised\n");
  }

  // The line of a monitor whose value is `value` when it is present.
  void MonitorLine(std::string_view label, const Monitor& monitor, const std::string& value) {
    std::string line;
    const auto pad = [&line](std::size_t to) {
      line.append(to > WidthOf(line) ? to - WidthOf(line) : 1, ' ');
    };
    line.append(kIndent).append(label);
    pad(kLabelWidth);
    line.append(" ").append(monitor.IsPresent() ? value : StateWords(monitor.state));
    std::size_t column = kLabelWidth + 1 + kValueWidth;
    for (const AlarmLevel level : kColumns) {
      pad(column);
      column += kThresholdWidth;
      const std::optional<double> threshold = monitor.thresholds.At(level);
      line.append(threshold ? NumberText(*threshold) : "");
    }
    pad(column);
    line.append(RaisedText(monitor.flags));
    line.erase(line.find_last_not_of(' ') + 1);
    out_.Append(line).Append('\n');
  }

  void Monitors() {
    MonitorHeading();
    MonitorLine("Temperature", info_.temperature, NumberText(info_.temperature.value) + " C");
    MonitorLine("Supply voltage", info_.voltage, NumberText(info_.voltage.value) + " V");
    for (const AuxMonitor& aux : info_.aux) {
      const AuxLabel label = LabelOf(aux.name);
      MonitorLine(label.label, aux.monitor, WithUnit(NumberText(aux.monitor.value), label.unit));
    }
    LaneMonitors("RX power", &Lane::rx_power, PowerText);
    LaneMonitors("TX power", &Lane::tx_power, PowerText);
    LaneMonitors("TX bias", &Lane::tx_bias, [](double bias) { return NumberText(bias) + " mA"; });
  }

  template <typename ToText>
  void LaneMonitors(std::string_view name, Monitor Lane::*member, const ToText& to_text) {
    const auto& lanes = info_.lanes;
    if (lanes.empty()) return;
    const FieldState state = (lanes.front().*member).state;
    const bool is_same = std::all_of(lanes.begin(), lanes.end(), [&](const Lane& lane) {
      return (lane.*member).state == state && (lane.*member).flags.raised == 0;
    });
    if (is_same && state != FieldState::kPresent)
      return MonitorLine(name, lanes.front().*member, "");
    for (const Lane& lane : lanes) {
      const Monitor& monitor = lane.*member;
      MonitorLine(std::string(name) + ", lane " + std::to_string(lane.number), monitor,
                  to_text(monitor.value));
    }
  }

  std::string LaneText(const LaneFieldInfo& field, const LaneValue& value) {
    if (!value.IsPresent()) return "-";
    if (field.kind == FieldKind::kFlag) return value.number != 0.0 ? "yes" : "no";
    if (field.kind == FieldKind::kNumber) return NumberText(value.number);
    const std::string_view name = LaneCodeName(field.field, value);
    return name.empty() ? CodeText(static_cast<unsigned>(value.number), {}) : std::string(name);
  }

  // A row per setting, a column per lane.
  void Lanes() {
    constexpr std::size_t kWidth = 6;
    const auto is_shown = [this](LaneField field) {
      return std::any_of(info_.lanes.begin(), info_.lanes.end(),
                         [field](const Lane& lane) { return lane[field].IsPresent(); });
    };
    const auto& fields = LaneFields();
    if (std::none_of(fields.begin(), fields.end(),
                     [&](const LaneFieldInfo& field) { return is_shown(field.field); })) {
      return;
    }
    Row("  Lanes", kWidth, [](const Lane& lane) { return std::to_string(lane.number); });
    for (const LaneFieldInfo& field : fields) {
      if (!is_shown(field.field)) continue;
      std::string label = std::string(kIndent).append(field.label);
      if (!field.unit.empty()) label.append(", ").append(field.unit);
      Row(label, kWidth, [&](const Lane& lane) { return LaneText(field, lane[field.field]); });
    }
  }

  template <typename ToText>
  void Row(std::string_view label, std::size_t width, const ToText& to_text) {
    std::string line(label);
    line.append(line.size() < kLabelWidth ? kLabelWidth - line.size() : 0, ' ');
    std::vector<std::string> texts;
    for (const Lane& lane : info_.lanes) texts.push_back(to_text(lane));
    const std::string& first = texts.front();
    const bool is_same = std::all_of(texts.begin(), texts.end(),
                                     [&first](const std::string& text) { return text == first; });
    if (first.size() > width && is_same) {
      texts.resize(1);
      if (info_.lanes.size() > 1) texts.front() += " (all lanes)";
    }
    for (const std::string& text : texts) {
      line.append(" ").append(text);
      line.append(text.size() < width ? width - text.size() : 0, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out_.Append(line).Append('\n');
  }

  void Vdm() {
    if (info_.vdm.empty()) return;
    Heading("Versatile diagnostics");
    for (const VdmSample& sample : info_.vdm) {
      const std::string name = sample.observable.empty() ? "type " + std::to_string(sample.type)
                                                         : WithBlanks(sample.observable);
      MonitorLine(name + ", " + sample.instance, sample.monitor,
                  WithUnit(NumberText(sample.monitor.value), sample.unit));
    }
  }

  void Checksums() {
    if (info_.checksums.empty()) return;
    Heading("Checksums");
    for (const PageChecksum& sum : info_.checksums) {
      const std::string bytes = ShortPageName(sum.page) + ", bytes " + std::to_string(sum.first) +
                                " to " + std::to_string(sum.last);
      const bool is_right = sum.stored == sum.computed;
      Line(bytes,
           CodeText(sum.stored, {}) +
               (is_right ? ", correct" : ", wrong: they add up to " + CodeText(sum.computed, {})));
    }
  }

  void Pages() {
    std::vector<std::string> names;
    for (const Page page : info_.pages_read) names.push_back(ShortPageName(page));
    List("Pages read", names);
  }

  void NotRead() {
    std::vector<std::string_view> labels;
    for (const FieldInfo& field : ModuleFields()) {
      if (info_[field.field].state == FieldState::kNotRead) labels.push_back(field.label);
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

  text::TextBuffer& out_;
  const ModuleInfo& info_;
};

void AppendModuleText(text::TextBuffer& out, const ModuleInfo& info, std::string_view label) {
  Sheet(out, info).Write(label);
}

}  // namespace

std::string ModuleToText(const ModuleInfo& info, std::string_view label) {
  return text::ToText(AppendModuleText, info, label);
}

}  // namespace cable_info
