// The JSON of a module.

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <vector>

#include "cable_info/module_memory/module_output.h"
#include "cable_info/module_memory/number_text.h"
#include "cable_info/module_memory/text_encoding.h"
#include "cable_info/text/text_buffer.h"

namespace cable_info {

namespace {

using module_memory::AppendShortest;
using module_memory::AppendUtf8;

constexpr std::string_view kNull = "null";

template <typename Fields>
constexpr std::size_t kSizeOf = std::tuple_size_v<Fields>;

// Fields of an object that is null when none of them is present.
struct OptionalObject {
  std::size_t begin;
  std::size_t end;
  std::string null;  // written instead of the object, including the text before it
};

// What comes before the value of each field: its key, after the ends and beginnings of the objects
// around it, such as `},"media":{"type":`.
template <std::size_t N>
struct Keys {
  std::array<std::string, N> before;
  std::string end;  // the ends of objects after the last value
  std::vector<OptionalObject> optional;
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

template <typename Fields>
std::vector<OptionalObject> OptionalObjectsOf(
    const Fields& fields, const std::array<std::string, kSizeOf<Fields>>& before) {
  std::vector<OptionalObject> objects;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string_view object = ObjectOf(fields[i].key);
    const auto& names = kOptionalObjects;
    if (std::find(std::begin(names), std::end(names), object) == std::end(names)) continue;
    std::size_t end = i;
    while (end < fields.size() && ObjectOf(fields[end].key) == object) ++end;
    objects.push_back({i, end, before[i].substr(0, before[i].rfind('{')) + std::string(kNull)});
    i = end - 1;
  }
  return objects;
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
    std::string& before = keys.before[i];
    before.append(open.size() - common, '}');
    before += ',';
    open.assign(parts.begin(), parts.end() - 1);
    for (std::size_t part = common; part < parts.size(); ++part) {
      before.append("\"").append(parts[part]).append(part + 1 < parts.size() ? "\":{" : "\":");
    }
  }
  keys.end.assign(open.size(), '}');
  keys.optional = OptionalObjectsOf(fields, keys.before);
  return keys;
}

void AppendString(text::TextBuffer& out, std::string_view utf8) {
  out.Append('"');
  AppendUtf8(out, utf8, [&out](unsigned char control) {
    constexpr int kDigits = 4;
    if (control == '"' || control == '\\') {
      out.Append('\\').Append(static_cast<char>(control));
    } else {
      out.Append("\\u").AppendHex(control, kDigits);
    }
  });
  out.Append('"');
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

constexpr std::array<std::string_view, kAlarmLevels> kLevelKeys = {
    "\"high_alarm\":", "\"low_alarm\":", "\"high_warning\":", "\"low_warning\":"};

void AppendThresholds(text::TextBuffer& out, const Thresholds& thresholds) {
  char separator = '{';
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    out.Append(separator).Append(kLevelKeys[i]);
    separator = ',';
    const std::optional<double> value = thresholds.At(static_cast<AlarmLevel>(i));
    if (value) {
      AppendShortest(out, *value);
    } else {
      out.Append(kNull);
    }
  }
  out.Append('}');
}

void AppendFlags(text::TextBuffer& out, const AlarmFlags& flags) {
  char separator = '{';
  for (std::size_t i = 0; i < kAlarmLevels; ++i) {
    out.Append(separator).Append(kLevelKeys[i]);
    separator = ',';
    const std::optional<bool> is_raised = flags.At(static_cast<AlarmLevel>(i));
    if (is_raised) {
      AppendFlag(out, *is_raised);
    } else {
      out.Append(kNull);
    }
  }
  out.Append('}');
}

// The members of a monitor's object.
void AppendMonitorMembers(text::TextBuffer& out, const Monitor& monitor) {
  out.Append("\"value\":");
  if (monitor.IsPresent()) {
    AppendShortest(out, monitor.value);
  } else {
    out.Append(kNull);
  }
  out.Append(R"(,"state":")").Append(StateName(monitor.state)).Append(R"(","thresholds":)");
  AppendThresholds(out, monitor.thresholds);
  out.Append(",\"flags\":");
  AppendFlags(out, monitor.flags);
}

void AppendMonitor(text::TextBuffer& out, std::string_view key, const Monitor& monitor) {
  out.Append(key).Append('{');
  AppendMonitorMembers(out, monitor);
  out.Append('}');
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
  // The values of fields by their keys: `append` writes one that `is_present`.
  template <typename Keys, typename IsPresent, typename AppendPresent>
  void Members(const Keys& keys, const IsPresent& is_present, const AppendPresent& append) {
    auto object = keys.optional.begin();
    std::size_t closed = 0;  // objects that were null, so that they need no end
    for (std::size_t i = 0; i < keys.before.size(); ++i) {
      if (object != keys.optional.end() && object->begin == i) {
        const OptionalObject& optional = *object++;
        bool has_any = false;
        for (std::size_t n = i; n < optional.end && !has_any; ++n) has_any = is_present(n);
        if (!has_any) {
          out_.Append(std::string_view(optional.null).substr(closed));
          closed = 1;
          i = optional.end - 1;
          continue;
        }
      }
      out_.Append(std::string_view(keys.before[i]).substr(closed));
      closed = 0;
      if (is_present(i)) {
        append(i);
      } else {
        out_.Append(kNull);
      }
    }
    out_.Append(std::string_view(keys.end).substr(closed));
  }

  void Fields() {
    static const auto kKeys = KeysOf(ModuleFields());
    Members(
        kKeys, [this](std::size_t i) { return info_[ModuleFields()[i].field].IsPresent(); },
        [this](std::size_t i) {
          const FieldInfo& field = ModuleFields()[i];
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
      out_.Append(",\"host_lanes\":").AppendDecimal(it.host_lanes);
      out_.Append(",\"media_lanes\":").AppendDecimal(it.media_lanes);
      AppendMask(",\"host_assignment\":", it.host_assignment);
      AppendMask(",\"media_assignment\":", it.media_assignment);
      out_.Append('}');
    });
  }

  void AppendMask(std::string_view key, std::optional<unsigned> mask) {
    out_.Append(key);
    if (mask) {
      out_.AppendDecimal(*mask);
    } else {
      out_.Append(kNull);
    }
  }

  void Monitors() {
    AppendMonitor(out_, R"(,"monitors":{"temperature_c":)", info_.temperature);
    AppendMonitor(out_, ",\"voltage_v\":", info_.voltage);
    AppendList(out_, ",\"aux\":", info_.aux, [this](const AuxMonitor& aux) {
      out_.Append(R"({"name":")").Append(aux.name).Append("\",");
      AppendMonitorMembers(out_, aux.monitor);
      out_.Append('}');
    });
    out_.Append('}');
  }

  void LaneObject(const Lane& lane) {
    static const auto kKeys = KeysOf(LaneFields());
    out_.Append("{\"lane\":").AppendDecimal(lane.number);
    AppendMonitor(out_, ",\"rx_power_mw\":", lane.rx_power);
    AppendMonitor(out_, ",\"tx_power_mw\":", lane.tx_power);
    AppendMonitor(out_, ",\"tx_bias_ma\":", lane.tx_bias);
    Members(
        kKeys, [&lane](std::size_t i) { return lane.values[i].IsPresent(); },
        [this, &lane](std::size_t i) {
          const LaneFieldInfo& field = LaneFields()[i];
          const LaneValue& value = lane.values[i];
          AppendValue(out_, field.kind, value.number, LaneCodeName(field.field, value));
        });
    out_.Append('}');
  }

  void Vdm(const VdmSample& sample) {
    out_.Append("{\"observable\":");
    AppendTextOrNull(out_, sample.observable);
    out_.Append(",\"type\":").AppendDecimal(sample.type).Append(",\"instance\":");
    AppendString(out_, sample.instance);
    out_.Append(",\"unit\":");
    AppendString(out_, sample.unit);
    out_.Append(',');
    AppendMonitorMembers(out_, sample.monitor);
    out_.Append('}');
  }

  void Checksums() {
    AppendList(out_, ",\"checksums\":", info_.checksums, [this](const PageChecksum& sum) {
      out_.Append(R"({"page":")").Append(ShortPageName(sum.page)).Append(R"(","first":)");
      out_.AppendDecimal(sum.first).Append(",\"last\":").AppendDecimal(sum.last);
      out_.Append(",\"stored\":").AppendDecimal(sum.stored);
      out_.Append(",\"computed\":").AppendDecimal(sum.computed).Append('}');
    });
  }

  text::TextBuffer& out_;
  const ModuleInfo& info_;
};

void AppendModuleJson(text::TextBuffer& out, const ModuleInfo& info, std::string_view label) {
  Json(out, info).Write(label);
}

}  // namespace

std::string ModuleToJson(const ModuleInfo& info, std::string_view label) {
  return text::ToText(AppendModuleJson, info, label);
}

}  // namespace cable_info
