#include "cable_info/module_memory/record_map.h"

#include "cable_info/value_format.h"

namespace cable_info::module_memory {

std::string FieldBytes::Text() const {
  std::string text;
  for (std::size_t i = 0; i < size_; ++i) {
    const std::uint8_t byte = bytes_[i];
    const bool is_control = byte < ' ' || byte == 0x7F;
    text += byte == 0 ? ' ' : is_control ? '?' : static_cast<char>(byte);
  }
  return std::string(cable_info::Trimmed(text));
}

std::size_t ReadField(const ModuleImage& image, const Place& place,
                      std::uint8_t (&bytes)[kLongestField]) {
  const ModuleImage::Half& half = image.HalfOf(place.page, place.byte);
  std::size_t count = 0;
  for (; count < place.extent.bytes && count < kLongestField; ++count) {
    if (!half.Has(place.byte + count)) break;
    bytes[count] = half[place.byte + count];
  }
  return count;
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
  const FlagPlaces& flags = line->flags;
  const auto n = static_cast<int>(level);
  const int at = flags.byte * 8 + 7 - flags.bit + (n & 1) * flags.low + (n >> 1) * flags.warning;
  return {flags.page, static_cast<std::uint8_t>(at / 8),
          Bit(static_cast<std::uint8_t>(7 - at % 8))};
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

}  // namespace cable_info::module_memory
