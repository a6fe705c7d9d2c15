#pragma once

// Filling records from the memory maps of module families.
//
// Internal; not installed.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The longest field of any map, in bytes.
inline constexpr std::size_t kMaxFieldSize = 64;

/// The bytes of one field, all of them known unless it is a text.
class FieldBytes {
 public:
  FieldBytes(const std::uint8_t* bytes, std::size_t count, Extent bits)
      : bytes_(bytes), size_(count), bits_(bits) {}

  std::size_t size() const { return size_; }
  /// The byte at `index`; 0 after the end.
  std::uint8_t operator[](std::size_t index) const {
    return index < size_ ? bytes_[index] : std::uint8_t{0};
  }
  /// The big-endian word number `index`.
  std::uint16_t Word(std::size_t index) const {
    return static_cast<std::uint16_t>((*this)[2 * index] << 8 | (*this)[2 * index + 1]);
  }
  /// The whole as one big-endian number of at most four bytes; of a single byte, its bits.
  std::uint32_t Number() const {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size_; ++i) number = number << 8 | bytes_[i];
    const unsigned width = bits_.high - bits_.low + 1U;
    return size_ == 1 ? number >> bits_.low & ((1U << width) - 1) : number;
  }
  /// The bytes as text for one cell, written to `text`: NULs become blanks, other control
  /// characters "?", and blanks at both ends are removed.
  std::string_view Text(char (&text)[kMaxFieldSize]) const;

 private:
  const std::uint8_t* bytes_;
  std::size_t size_;
  Extent bits_;
};

/// Bytes of a page, or bits of one byte.
struct Place {
  Page page = Page::kLower;
  std::uint8_t byte = 0;
  Extent extent = kByte;
};

/// The places of a family's map. The place of a field that the map does not have is empty.
class Places {
 public:
  explicit Places(const MemoryMap& map) : map_(map) {}

  /// All bytes of a field.
  Place Of(Field field) const;
  /// Bits of the byte that has a field.
  Place Of(Field field, Extent extent) const;
  /// The byte that has the field of lane 1, or `bytes` of them.
  Place Of(LaneField field, std::uint8_t bytes = 1) const;
  /// Bits of that byte.
  Place Of(LaneField field, Extent extent) const;
  /// The bit that advertises a field of the lanes.
  Place Advertising(LaneField field) const;
  /// The value of a quantity, or those of several lanes.
  Place Value(Quantity quantity, unsigned lanes = 1) const;
  Place Threshold(Quantity quantity, AlarmLevel level) const;
  /// The flag of lane 1.
  Place Flag(Quantity quantity, AlarmLevel level) const;
  /// The four flags of a map in which that of the high alarm is the lowest bit of a nibble.
  Place FlagNibble(Quantity quantity) const;
  /// The byte that has the flag of lane 1, or `bytes` of them.
  Place FlagBytes(Quantity quantity, AlarmLevel level, std::uint8_t bytes = 1) const;

 private:
  const MapMonitor* Find(Quantity quantity) const;

  const MemoryMap& map_;
};

/// The treatment of a field of which only the first bytes are known.
enum class Partial : std::uint8_t {
  kRefused,   ///< the record's field is unchanged
  kAccepted,  ///< the record's field is set from those: a text that is cut short is still one
};

/// A line of a record's map: the position of a field, and its setter.
template <typename Target>
struct RecordField {
  Place place;
  void (*set)(Target& target, const FieldBytes& value) = nullptr;
  Partial partial = Partial::kRefused;
};

/// \name Setters: of a member of the target, or of a member of a part of the target
/// @{
inline void StoreText(std::string& field, std::string_view text) { field = text; }

/// A field of the register, which ends it with a NUL.
template <std::size_t N>
void StoreText(char (&field)[N], std::string_view text) {
  text = text.substr(0, N - 1);
  std::memset(field, 0, N);
  text.copy(field, text.size());
}

template <typename Target, auto kMember>
void SetNumber(Target& target, const FieldBytes& value) {
  auto& member = target.*kMember;
  member = static_cast<std::remove_reference_t<decltype(member)>>(value.Number());
}

template <typename Target, auto kPart, auto kMember>
void SetNumberOf(Target& target, const FieldBytes& value) {
  auto& part = target.*kPart;
  SetNumber<std::remove_reference_t<decltype(part)>, kMember>(part, value);
}

template <typename Target, auto kPart, auto kMember>
void SetTextOf(Target& target, const FieldBytes& value) {
  char text[kMaxFieldSize];
  StoreText((target.*kPart).*kMember, value.Text(text));
}
/// @}

/// The first byte of the half that has the byte.
constexpr std::size_t FirstOfHalf(std::size_t byte) {
  return byte < ModuleImage::kHalf ? 0 : ModuleImage::kHalf;
}

/// Sets the fields that the image contains; others are unchanged.
template <typename Target, std::size_t N>
void SetFields(const ModuleImage& image, const std::array<RecordField<Target>, N>& map,
               Target& target) {
  const ModuleImage::Half* half = nullptr;
  Page page = Page::kLower;
  for (const RecordField<Target>& field : map) {
    const Place& place = field.place;
    // Most fields follow others of the same page.
    if (half == nullptr || page != place.page || half->first() != FirstOfHalf(place.byte)) {
      page = place.page;
      half = &image.HalfOf(page, place.byte);
    }
    if (half->IsEmpty()) continue;
    std::size_t known = place.extent.bytes;
    if (!half->Has(place.byte, known)) known = half->KnownFrom(place.byte, known);
    if (known == 0) continue;
    if (known < place.extent.bytes && field.partial == Partial::kRefused) continue;
    field.set(target, FieldBytes(half->From(place.byte), known, place.extent));
  }
}

/// \name Shared by several maps
/// @{

/// The temperature word without a reading: -128 C, which is outside the valid range and is shown as
/// missing.
inline constexpr std::uint16_t kNoTemperature = 0x8000;

/// The value of the number, cut to the range of a word.
constexpr std::uint16_t Saturated(std::uint32_t number) {
  constexpr std::uint32_t kHighest = 0xFFFF;
  return static_cast<std::uint16_t>(std::min(number, kHighest));
}

/// \name The levels, in the order of thresholds
/// @{
inline constexpr AlarmLevel kHighAlarm = AlarmLevel::kHighAlarm;
inline constexpr AlarmLevel kLowAlarm = AlarmLevel::kLowAlarm;
inline constexpr AlarmLevel kHighWarning = AlarmLevel::kHighWarning;
inline constexpr AlarmLevel kLowWarning = AlarmLevel::kLowWarning;
/// @}

/// The two parts of a `PhyCableRecord` that modules fill.
using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;

/// A module record of `form_factor` with all values unknown, as far as it can represent that.
ModuleRecord UnknownModuleRecord(std::uint8_t form_factor);

/// Sets the date code of the module record of `Draft`.
template <typename Draft>
void SetDate(Draft& draft, const FieldBytes& value) {
  char text[kMaxFieldSize];
  draft.module.SetDateCode(value.Text(text));
}

/// The place of lane 1..8 in a record.
inline std::uint16_t& LaneOf(std::uint16_t (&lanes)[kPhyLanes], std::size_t lane) {
  return lanes[PhyLaneIndex(static_cast<int>(lane))];
}
/// @}

}  // namespace module_memory
}  // namespace cable_info
