#include "cable_info/module_memory/record_map.h"

#include "cable_info/missing_values.h"
#include "cable_info/value_format.h"

namespace cable_info::module_memory {

std::string_view FieldBytes::Text(char (&text)[kMaxFieldSize]) const {
  constexpr std::uint8_t kDelete = 0x7F;
  const std::size_t count = std::min(size_, kMaxFieldSize);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t byte = bytes_[i];
    const bool is_control = byte < ' ' || byte == kDelete;
    text[i] = byte == 0 ? ' ' : is_control ? '?' : static_cast<char>(byte);
  }
  return cable_info::Trimmed({text, count});
}

namespace {

constexpr Place kNoPlace = {Page::kLower, 0, {0, 7, 0}};

}  // namespace

Place Places::Of(Field field) const {
  const MapField* const line = FindLine(map_, field);
  return line == nullptr ? kNoPlace : Place{line->page, line->byte, line->extent};
}

Place Places::Of(Field field, Extent extent) const {
  Place place = Of(field);
  if (place.extent.bytes != 0) place.extent = extent;
  return place;
}

Place Places::Of(LaneField field, std::uint8_t bytes) const { return Of(field, Bytes(bytes)); }

Place Places::Of(LaneField field, Extent extent) const {
  for (const LaneMapField& line : map_.lane_fields) {
    if (line.field == field) return {line.page, line.byte, extent};
  }
  return kNoPlace;
}

Place Places::Advertising(LaneField field) const {
  for (const LaneMapField& line : map_.lane_fields) {
    const Advertisement& by = line.advertised;
    if (line.field == field) return {by.page, by.byte, Bit(by.bit)};
  }
  return kNoPlace;
}

const MapMonitor* Places::Find(Quantity quantity) const {
  for (const MapMonitor& line : map_.monitors) {
    if (line.quantity == quantity) return &line;
  }
  return nullptr;
}

Place Places::Value(Quantity quantity, unsigned lanes) const {
  const MapMonitor* const line = Find(quantity);
  if (line == nullptr) return kNoPlace;
  return {line->page, line->byte, Bytes(static_cast<std::uint8_t>(2 * lanes))};
}

Place Places::Threshold(Quantity quantity, AlarmLevel level) const {
  const MapMonitor* const line = Find(quantity);
  if (line == nullptr) return kNoPlace;
  const unsigned byte = line->threshold_byte + 2U * static_cast<unsigned>(level);
  return {line->threshold_page, static_cast<std::uint8_t>(byte), kWord};
}

Place Places::Flag(Quantity quantity, AlarmLevel level) const {
  const MapMonitor* const line = Find(quantity);
  if (line == nullptr) return kNoPlace;
  const BitPlace flag = FlagPlace(line->flags, level);
  return {line->flags.page, static_cast<std::uint8_t>(flag.byte), Bit(flag.bit)};
}

Place Places::FlagNibble(Quantity quantity) const {
  Place place = Flag(quantity, AlarmLevel::kHighAlarm);
  if (place.extent.bytes == 0) return place;
  const std::uint8_t low = place.extent.low;
  place.extent = Bits(static_cast<std::uint8_t>(low + 3), low);
  return place;
}

Place Places::FlagBytes(Quantity quantity, AlarmLevel level, std::uint8_t bytes) const {
  Place place = Flag(quantity, level);
  if (place.extent.bytes != 0) place.extent = Bytes(bytes);
  return place;
}

ModuleRecord UnknownModuleRecord(std::uint8_t form_factor) {
  ModuleRecord module;
  module.cable_identifier = form_factor;
  StoreText(module.vendor_name, kBareNa);
  module.power_unit_flag = 1;  // powers are in units of 0.1 uW
  module.temperature = kNoTemperature;
  module.temp_high_threshold = kNoTemperature;
  module.temp_low_threshold = kNoTemperature;
  return module;
}

}  // namespace cable_info::module_memory
