// The JSON of a module.

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "cable_info/module_memory/module_output.h"
#include "cable_info/module_memory/number_text.h"
#include "cable_info/module_memory/text_encoding.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {

namespace {

using module_memory::AppendShortest;
using module_memory::AppendUnplain;

constexpr std::string_view kNull = "null";

template <typename Fields>
constexpr std::size_t kSizeOf = std::tuple_size_v<Fields>;

constexpr std::size_t kUsualSize = 49152;  // of the JSON of a large module

// Fields that follow each other: those of an object that is null when none of them is present, or
// those between two such objects.
struct Run {
  std::size_t last;       // the first field after it
  std::size_t brace = 0;  // the place of the object's "{" in `Keys::text`; 0: no such object
  std::size_t after = 0;  // the place after its "}"
};

// The text of fields that are all null: keys and values, with the ends and beginnings of objects
// between them, such as `null},"media":{"type":null`. Absent fields are copied from it, those that
// follow each other at once.
template <std::size_t N>
struct Keys {
  std::string text;
  std::array<std::size_t, N> begin = {};  // of each field's key, or of what comes before it
  std::array<std::size_t, N> value = {};  // of each field's null
  std::size_t closing = 0;                // where the ends of objects after the last value begin
  std::vector<Run> runs;

  std::string_view From(std::size_t first, std::size_t last) const {
    return std::string_view(text).substr(first, last - first);
  }
};

std::vector<std::string_view> Split(std::string_view key) {
  std::vector<std::string_view> parts;
  for (std::size_t dot = key.find('.'); dot != std::string_view::npos; dot = key.find('.')) {
    parts.push_back(key.substr(0, dot));
    key.remove_prefix(dot + 1);
  }
  parts.push_back(key);
  return parts;
}

// The object that contains a field; empty at the top level.
std::string_view ObjectOf(std::string_view key) {
  const std::vector<std::string_view> parts = Split(key);
  return parts.size() < 2 ? std::string_view() : parts[parts.size() - 2];
}

bool IsOptional(std::string_view object) {
  const auto& names = kOptionalObjects;
  return std::find(std::begin(names), std::end(names), object) != std::end(names);
}

template <typename Fields>
std::vector<Run> RunsOf(const Fields& fields, const Keys<kSizeOf<Fields>>& keys) {
  std::vector<Run> runs;
  for (std::size_t i = 0; i < fields.size(); i = runs.back().last) {
    const std::string_view object = ObjectOf(fields[i].key);
    const bool is_optional = IsOptional(object);
    const auto belongs = [&](std::string_view other) {
      return is_optional ? other == object : !IsOptional(other);
    };
    std::size_t last = i + 1;
    while (last < fields.size() && belongs(ObjectOf(fields[last].key))) ++last;
    runs.push_back({last});
    if (!is_optional) continue;
    constexpr std::size_t kBrace = 1;
    const std::size_t after = last < fields.size() ? keys.begin[last] : keys.closing;
    runs.back().brace = keys.text.rfind('{', keys.value[i]);
    runs.back().after = after + kBrace;
  }
  return runs;
}

template <typename Fields>
auto KeysOf(const Fields& fields) {
  Keys<kSizeOf<Fields>> keys;
  std::vector<std::string_view> open;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::vector<std::string_view> parts = Split(fields[i].key);
    std::size_t common = 0;
    while (common < open.size() && common + 1 < parts.size() && open[common] == parts[common]) {
      ++common;
    }
    keys.begin[i] = keys.text.size();
    keys.text.append(open.size() - common, '}');
    keys.text += ',';
    open.assign(parts.begin(), parts.end() - 1);
    for (std::size_t part = common; part < parts.size(); ++part) {
      keys.text.append("\"").append(parts[part]).append(part + 1 < parts.size() ? "\":{" : "\":");
    }
    keys.value[i] = keys.text.size();
    keys.text += kNull;
  }
  keys.closing = keys.text.size();
  keys.text.append(open.size(), '}');
  keys.runs = RunsOf(fields, keys);
  return keys;
}

[[gnu::cold, gnu::noinline]] void AppendEscaped(text::TextBuffer& out, std::string_view utf8) {
  out.Append('"');
  AppendUnplain(out, utf8, [&out](unsigned char control) {
    constexpr int kDigits = 4;
    if (control == '"' || control == '\\') {
      out.Append('\\').Append(static_cast<char>(control));
    } else {
      out.Append("\\u").AppendHex(control, kDigits);
    }
  });
  out.Append('"');
}

void AppendString(text::TextBuffer& out, std::string_view utf8) {
  char* const to = out.Reserve(utf8.size() + 2);
  *to = '"';
  if (!module_memory::CopyIfPlain(to + 1, utf8)) return AppendEscaped(out, utf8);
  to[utf8.size() + 1] = '"';
  out.EndAt(to + utf8.size() + 2);
}

void AppendTextOrNull(text::TextBuffer& out, std::string_view text) {
  if (text.empty()) {
    out.Append(kNull);
  } else {
    AppendString(out, text);
  }
}

void AppendFlag(text::TextBuffer& out, bool set) {
  out.Append(set ? std::string_view("true") : std::string_view("false"));
}

void AppendCode(text::TextBuffer& out, unsigned code, std::string_view name) {
  out.Append("{\"code\":").AppendDecimal(code).Append(",\"name\":");
  AppendTextOrNull(out, name);
  out.Append('}');
}

void AppendValue(text::TextBuffer& out, FieldKind kind, double number, std::string_view text) {
  switch (kind) {
    case FieldKind::kText:
      return AppendTextOrNull(out, text);
    case FieldKind::kNumber:
      return AppendShortest(out, number);
    case FieldKind::kCode:
      return AppendCode(out, static_cast<unsigned>(number), text);
    case FieldKind::kFlag:
      return AppendFlag(out, number != 0.0);
  }
}

// The key of a level with the brace or the comma before it, for a copy of known size:
// `,"low_alarm":`.
struct LevelKey {
  std::array<char, 16> text = {};
  std::size_t size = 0;
};

constexpr std::array<LevelKey, kAlarmLevels> kLevelKeys = [] {
  std::array<LevelKey, kAlarmLevels> keys = {};
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    LevelKey& key = keys[i];
    key.text[key.size++] = i == 0 ? '{' : ',';
    key.text[key.size++] = '"';
    for (const char c : AlarmLevelName(kAllAlarmLevels[i])) key.text[key.size++] = c;
    key.text[key.size++] = '"';
    key.text[key.size++] = ':';
  }
  return keys;
}();

// The object of a quantity without thresholds: `{"high_alarm":null,...}`.
constexpr std::size_t kNoThresholdsSize = [] {
  std::size_t size = 1;
  for (const LevelKey& key : kLevelKeys) size += key.size + kNull.size();
  return size;
}();
constexpr std::array<char, kNoThresholdsSize> kNoThresholds = [] {
  std::array<char, kNoThresholdsSize> text = {};
  std::size_t size = 0;
  for (const LevelKey& key : kLevelKeys) {
    for (std::size_t i = 0; i < key.size; ++i) text[size++] = key.text[i];
    for (const char c : kNull) text[size++] = c;
  }
  text[size] = '}';
  return text;
}();

void AppendThresholds(text::TextBuffer& out, const Thresholds& thresholds) {
  if (thresholds.given == 0) {
    out.AppendPart(kNoThresholds);
    return;
  }
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    out.AppendPart(kLevelKeys[i].text, kLevelKeys[i].size);
    const std::optional<double> value = thresholds.At(static_cast<AlarmLevel>(i));
    if (value) {
      AppendShortest(out, *value);
    } else {
      out.Append(kNull);
    }
  }
  out.Append('}');
}

// The last member of a monitor's object, with its end.
std::string FlagsText(const AlarmFlags& flags) {
  std::string text = ",\"flags\":";
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    const std::optional<bool> is_raised = flags.At(static_cast<AlarmLevel>(i));
    text.append(kLevelKeys[i].text.data(), kLevelKeys[i].size);
    text.append(!is_raised ? kNull : *is_raised ? "true" : "false");
  }
  return text + "}}";
}

constexpr unsigned kAllLevels = (1U << kAlarmLevels) - 1;

// The flags of a quantity, by the known ones in the high bits and the raised ones in the low bits.
std::vector<std::string> FlagsTexts() {
  std::vector<std::string> texts;
  for (unsigned bits = 0; bits <= (kAllLevels << kAlarmLevels | kAllLevels); ++bits) {
    texts.push_back(FlagsText({static_cast<std::uint8_t>(bits >> kAlarmLevels),
                               static_cast<std::uint8_t>(bits & kAllLevels)}));
  }
  return texts;
}

void AppendFlags(text::TextBuffer& out, const AlarmFlags& flags) {
  static const std::vector<std::string> kTexts = FlagsTexts();
  out.Append(kTexts[(flags.known & kAllLevels) << kAlarmLevels | (flags.raised & kAllLevels)]);
}

// The members of a monitor's object between its value and its thresholds.
std::array<std::string, 4> StateTexts() {
  std::array<std::string, 4> texts;
  for (const FieldState state : {FieldState::kPresent, FieldState::kNotImplemented,
                                 FieldState::kNotRead, FieldState::kNotReady}) {
    texts[static_cast<std::size_t>(state)] =
        R"(,"state":")" + std::string(StateName(state)) + R"(","thresholds":)";
  }
  return texts;
}

// The object of a monitor; `begin` is what comes before its value: a brace, and other members.
void AppendMonitor(text::TextBuffer& out, std::string_view begin, const Monitor& monitor) {
  static const std::array<std::string, 4> kStates = StateTexts();
  out.Append(begin).Append("\"value\":");
  if (monitor.IsPresent()) {
    AppendShortest(out, monitor.value);
  } else {
    out.Append(kNull);
  }
  out.Append(kStates[static_cast<std::size_t>(monitor.state)]);
  AppendThresholds(out, monitor.thresholds);
  AppendFlags(out, monitor.flags);
}

// `items` between brackets, each written by `append`.
template <typename Items, typename AppendItem>
void AppendList(text::TextBuffer& out, std::string_view key, const Items& items,
                const AppendItem& append) {
  out.Append(key).Append('[');
  bool is_first = true;
  for (const auto& item : items) {
    if (!is_first) out.Append(',');
    is_first = false;
    append(item);
  }
  out.Append(']');
}

class Json {
 public:
  Json(text::TextBuffer& out, const ModuleInfo& info) : out_(out), info_(info) {}

  void Write(std::string_view label) {
    out_.Append("{\"format_version\":").AppendDecimal(kModuleFormatVersion).Append(",\"label\":");
    AppendString(out_, label);
    out_.Append(",\"family\":");
    AppendTextOrNull(out_, FamilyName(info_.family));
    Fields();
    Applications();
    Names(",\"compliance\":", info_.compliance);
    Names(",\"supported_speeds\":", info_.supported_speeds);
    Monitors();
    AppendList(out_, ",\"lanes\":", info_.lanes, [this](const Lane& lane) { LaneObject(lane); });
    AppendList(out_, ",\"vdm\":", info_.vdm, [this](const VdmSample& sample) { Vdm(sample); });
    Names(",\"options\":", info_.options);
    Checksums();
    AppendList(out_, ",\"pages_read\":", info_.pages_read,
               [this](Page page) { AppendString(out_, ShortPageName(page)); });
    AppendList(out_, ",\"warnings\":", info_.warnings,
               [this](const std::string& warning) { AppendString(out_, warning); });
    out_.Append('}');
  }

 private:
  // The values by their keys: `append` writes those that are `present`.
  template <typename Keys, typename Fields, typename AppendPresent>
  void Members(const Keys& keys, const Fields& present, const AppendPresent& append) {
    std::size_t written = 0;  // the end of the keys' text that is done with
    std::size_t i = present.NextFrom(0);
    for (const Run& run : keys.runs) {
      if (i >= run.last && run.brace != 0) {
        out_.Append(keys.From(written, run.brace)).Append(kNull);
        written = run.after;
      }
      for (; i < run.last; i = present.NextFrom(i + 1)) {
        out_.Append(keys.From(written, keys.value[i]));
        append(i);
        written = keys.value[i] + kNull.size();
      }
    }
    out_.Append(keys.From(written, keys.text.size()));
  }

  void Fields() {
    static const auto& kFields = ModuleFields();
    static const auto kKeys = KeysOf(kFields);
    Members(kKeys, info_.FieldsIn(FieldState::kPresent), [this](std::size_t i) {
      const FieldInfo& field = kFields[i];
      const FieldValue value = info_[field.field];
      AppendValue(out_, field.kind, value.number, value.text);
    });
  }

  void Names(std::string_view key, const std::vector<std::string_view>& names) {
    AppendList(out_, key, names, [this](std::string_view name) { AppendString(out_, name); });
  }

  void Applications() {
    AppendList(out_, ",\"applications\":", info_.applications, [this](const Application& it) {
      out_.Append("{\"number\":").AppendDecimal(it.number).Append(",\"host_interface\":");
      AppendCode(out_, it.host_interface.code, it.host_interface.name);
      out_.Append(",\"media_interface\":");
      AppendCode(out_, it.media_interface.code, it.media_interface.name);
      AppendOrNull(",\"host_lanes\":", CountOf(it.host_lanes));
      AppendOrNull(",\"media_lanes\":", CountOf(it.media_lanes));
      AppendOrNull(",\"host_assignment\":", it.host_assignment);
      AppendOrNull(",\"media_assignment\":", it.media_assignment);
      out_.Append('}');
    });
  }

  // The number of lanes; none where the interface defines it.
  static std::optional<unsigned> CountOf(unsigned lanes) {
    return lanes != 0 ? std::optional<unsigned>(lanes) : std::nullopt;
  }

  void AppendOrNull(std::string_view key, std::optional<unsigned> number) {
    out_.Append(key);
    if (number) {
      out_.AppendDecimal(*number);
    } else {
      out_.Append(kNull);
    }
  }

  void Monitors() {
    AppendMonitor(out_, R"(,"monitors":{"temperature_c":{)", info_.temperature);
    AppendMonitor(out_, ",\"voltage_v\":{", info_.voltage);
    AppendList(out_, ",\"aux\":", info_.aux, [this](const AuxMonitor& aux) {
      out_.Append(R"({"name":")").Append(aux.name);
      AppendMonitor(out_, "\",", aux.monitor);
    });
    out_.Append('}');
  }

  void LaneObject(const Lane& lane) {
    out_.Append("{\"lane\":").AppendDecimal(lane.number);
    AppendMonitor(out_, ",\"rx_power_mw\":{", lane.rx_power);
    AppendMonitor(out_, ",\"tx_power_mw\":{", lane.tx_power);
    AppendMonitor(out_, ",\"tx_bias_ma\":{", lane.tx_bias);
    const FieldSet<LaneField> present = lane.FieldsIn(FieldState::kPresent);
    if (lane_text_.end != 0 && present == present_) {
      ChangedLaneValues(lane);
    } else {
      present_ = present;
      LaneValues(lane);
    }
    out_.Append('}');
  }

  // A part of the text.
  struct Part {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  void Repeat(const Part& part) {
    out_.Reserve(part.end - part.begin);  // before a view of the text is taken
    out_.Append(out_.view().substr(part.begin, part.end - part.begin));
  }

  // A value of a lane, and where its text is.
  struct WrittenValue {
    LaneField field;
    double number;
    Part text;
  };

  void LaneValues(const Lane& lane) {
    static const auto kKeys = KeysOf(LaneFields());
    values_.clear();
    values_.reserve(kUsualFields);
    lane_text_.begin = out_.size();
    Members(kKeys, present_, [this, &lane](std::size_t i) {
      const auto field = static_cast<LaneField>(i);
      const std::size_t begin = out_.size();
      AppendLaneValue(lane, field);
      values_.push_back({field, lane.NumberOf(field), {begin, out_.size()}});
    });
    lane_text_.end = out_.size();
  }

  // Most lanes differ from the first one in few values. All other text is copied.
  void ChangedLaneValues(const Lane& lane) {
    std::size_t done = lane_text_.begin;
    for (const WrittenValue& value : values_) {
      if (lane.NumberOf(value.field) == value.number) continue;
      Repeat({done, value.text.begin});
      AppendLaneValue(lane, value.field);
      done = value.text.end;
    }
    Repeat({done, lane_text_.end});
  }

  void AppendLaneValue(const Lane& lane, LaneField field) {
    const LaneValue value = lane[field];
    AppendValue(out_, DescribeField(field).kind, value.number, LaneCodeName(field, value));
  }

  void Vdm(const VdmSample& sample) {
    out_.Append("{\"observable\":");
    AppendTextOrNull(out_, sample.observable);
    out_.Append(",\"type\":").AppendDecimal(sample.type).Append(",\"instance\":");
    AppendString(out_, sample.instance);
    out_.Append(",\"unit\":");
    AppendString(out_, sample.unit);
    AppendMonitor(out_, ",", sample.monitor);
  }

  void Checksums() {
    AppendList(out_, ",\"checksums\":", info_.checksums, [this](const PageChecksum& sum) {
      out_.Append(R"({"page":")").Append(ShortPageName(sum.page)).Append(R"(","first":)");
      out_.AppendDecimal(sum.first).Append(",\"last\":").AppendDecimal(sum.last);
      out_.Append(",\"stored\":").AppendDecimal(sum.stored);
      out_.Append(",\"computed\":").AppendDecimal(sum.computed).Append('}');
    });
  }

  static constexpr std::size_t kUsualFields = 32;  // of a lane

  text::TextBuffer& out_;
  const ModuleInfo& info_;
  FieldSet<LaneField> present_;       // the fields in values_
  std::vector<WrittenValue> values_;  // those of a lane, whose text is lane_text_
  Part lane_text_;
};

void AppendModuleJson(text::TextBuffer& out, const ModuleInfo& info, std::string_view label) {
  out.Reserve(kUsualSize);
  Json(out, info).Write(label);
}

}  // namespace

std::string ModuleToJson(const ModuleInfo& info, std::string_view label) {
  return text::ToText(AppendModuleJson, info, label);
}

void WriteModuleJson(std::ostream& os, const ModuleInfo& info, std::string_view label) {
  text::TextBuffer out;
  AppendModuleJson(out, info, label);
  os << out.view();
}

}  // namespace cable_info
