#include "cable_info/module_memory/module_info.h"

#include "cable_info/module_memory/sff8024.h"

namespace cable_info {

std::string_view FamilyName(ModuleFamily family) {
  switch (family) {
    case ModuleFamily::kSff8636:
      return "SFF-8636";
    case ModuleFamily::kCmis:
      return "CMIS";
    case ModuleFamily::kSff8472:
      return "SFF-8472";
    case ModuleFamily::kUnknown:
      break;
  }
  return {};
}

std::string_view StateName(FieldState state) {
  switch (state) {
    case FieldState::kPresent:
      return "present";
    case FieldState::kNotImplemented:
      return "not_implemented";
    case FieldState::kNotRead:
      return "not_read";
    case FieldState::kNotReady:
      break;
  }
  return "not_ready";
}

std::string_view LaneCodeName(LaneField field, const LaneValue& value) {
  const CodeTable* codes = DescribeField(field).codes;
  return codes != nullptr ? codes->Name(static_cast<unsigned>(value.number)) : std::string_view();
}

FieldValue ModuleInfo::operator[](Field field) const {
  const Slot& slot = slots_[static_cast<std::size_t>(field)];
  FieldValue value;
  value.state = slot.state;
  value.number = slot.number;
  value.text = slot.size != 0 ? std::string_view(texts_).substr(slot.begin, slot.size) : slot.name;
  return value;
}

std::optional<FieldValue> ModuleInfo::Find(std::string_view key) const {
  for (const FieldInfo& field : ModuleFields()) {
    if (field.key == key) return (*this)[field.field];
  }
  return std::nullopt;
}

void ModuleInfo::Clear() {
  family = ModuleFamily::kUnknown;
  temperature = {};
  voltage = {};
  aux.clear();
  lanes.clear();
  applications.clear();
  vdm.clear();
  compliance.clear();
  supported_speeds.clear();
  options.clear();
  checksums.clear();
  pages_read.clear();
  warnings.clear();
  slots_.fill({});
  texts_.clear();
}

void ModuleInfo::SetState(Field field, FieldState state) {
  Slot& slot = slots_[static_cast<std::size_t>(field)];
  slot = {};
  slot.state = state;
}

void ModuleInfo::SetNumber(Field field, double number) {
  Slot& slot = slots_[static_cast<std::size_t>(field)];
  slot = {};
  slot.state = FieldState::kPresent;
  slot.number = number;
}

void ModuleInfo::SetCode(Field field, unsigned code, std::string_view name) {
  Slot& slot = slots_[static_cast<std::size_t>(field)];
  slot = {};
  slot.state = FieldState::kPresent;
  slot.number = code;
  slot.name = name;
}

void ModuleInfo::SetText(Field field, std::string_view latin1) {
  constexpr unsigned kContinuation = 0x80;
  constexpr unsigned kTwoBytes = 0xC0;
  constexpr unsigned kLowBits = 0x3F;
  Slot& slot = slots_[static_cast<std::size_t>(field)];
  slot = {};
  slot.state = FieldState::kPresent;
  slot.begin = static_cast<std::uint16_t>(texts_.size());
  for (const char c : latin1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < kContinuation) {
      texts_ += c;
    } else {
      texts_ += static_cast<char>(kTwoBytes | byte >> 6U);
      texts_ += static_cast<char>(kContinuation | (byte & kLowBits));
    }
  }
  slot.size = static_cast<std::uint16_t>(texts_.size() - slot.begin);
}

}  // namespace cable_info
