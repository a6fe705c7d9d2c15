#include "cable_info/module_memory/module_info.h"

#include "cable_info/module_memory/sff8024.h"
#include "cable_info/module_memory/text_encoding.h"

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
  const bool is_named = codes != nullptr && value.IsPresent();
  return is_named ? codes->Name(static_cast<unsigned>(value.number)) : std::string_view();
}

FieldValue ModuleInfo::operator[](Field field) const {
  FieldValue value;
  value.state = StateOf(field);
  if (!value.IsPresent()) return value;
  const Slot& slot = slots_[static_cast<std::size_t>(field)];
  value.number = slot.number;
  value.text = {slot.name != nullptr ? slot.name : texts_.data() + slot.begin, slot.size};
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
  states_ = {};
  texts_.clear();
}

void ModuleInfo::SetState(Field field, FieldState state) {
  if (state == FieldState::kPresent) Present(field) = {};
  states_.Set(field, state);
}

void ModuleInfo::SetNumber(Field field, double number) { Present(field) = {number, nullptr, 0, 0}; }

void ModuleInfo::SetCode(Field field, unsigned code, std::string_view name) {
  Present(field) = {static_cast<double>(code), name.data(), 0,
                    static_cast<std::uint32_t>(name.size())};
}

void ModuleInfo::SetText(Field field, std::string_view latin1) {
  constexpr unsigned kContinuation = 0x80;
  constexpr unsigned kTwoBytes = 0xC0;
  constexpr unsigned kLowBits = 0x3F;
  const std::size_t begin = texts_.size();
  const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < kContinuation; };
  if (module_memory::IsAscii(latin1)) {
    texts_.append(latin1);
  } else {
    for (const char c : latin1) {
      const auto byte = static_cast<unsigned char>(c);
      if (!is_ascii(c)) texts_ += static_cast<char>(kTwoBytes | byte >> 6U);
      texts_ += is_ascii(c) ? c : static_cast<char>(kContinuation | (byte & kLowBits));
    }
  }
  Present(field) = {0.0, nullptr, static_cast<std::uint32_t>(begin),
                    static_cast<std::uint32_t>(texts_.size() - begin)};
}

}  // namespace cable_info
