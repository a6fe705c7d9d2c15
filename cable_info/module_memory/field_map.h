#pragma once

// How the memory map of a module family is written down as data, and read.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "cable_info/module_memory/module_image.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info::module_memory {

/// Bits of a byte, as the standards write them: 7..4. All eight unless something else is said.
struct Bits {
  std::uint8_t high = 7;
  std::uint8_t low = 0;
};

/// The bytes of one field, all of them known unless it is a text.
class FieldValue {
 public:
  FieldValue(const std::uint8_t* bytes, std::size_t count, Bits bits)
      : bytes_(bytes), size_(count), bits_(bits) {}

  std::size_t size() const { return size_; }
  /// The byte at `index`; 0 behind the end.
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
  /// As text that is fit for one cell: NULs are blanks, other control characters "?", and the
  /// blanks at both ends are gone.
  std::string Text() const;

 private:
  const std::uint8_t* bytes_;
  std::size_t size_;
  Bits bits_;
};

/// A line of a memory map: what the standard calls the field, where it stands, and what takes it.
template <typename Target>
struct MapField {
  std::string_view name;
  Page page = Page::kLower;
  std::uint8_t byte = 0;   ///< the first
  std::uint8_t count = 0;  ///< bytes
  Bits bits;
  void (*set)(Target& target, const FieldValue& value) = nullptr;
  bool is_text = false;  ///< a text that is cut short is still one
};

/// \name What takes a field: a member of the target, or a member of a part of the target
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
void SetNumber(Target& target, const FieldValue& value) {
  auto& member = target.*kMember;
  member = static_cast<std::remove_reference_t<decltype(member)>>(value.Number());
}

template <typename Target, auto kPart, auto kMember>
void SetNumberOf(Target& target, const FieldValue& value) {
  auto& part = target.*kPart;
  SetNumber<std::remove_reference_t<decltype(part)>, kMember>(part, value);
}

template <typename Target, auto kPart, auto kMember>
void SetTextOf(Target& target, const FieldValue& value) {
  StoreText((target.*kPart).*kMember, value.Text());
}
/// @}

/// The longest field of any map, in bytes.
inline constexpr std::size_t kLongestField = 64;

/// Reads a field into `bytes`; returns how many bytes of it are known from its first one on.
std::size_t ReadField(const ModuleImage& image, Page page, std::size_t byte, std::size_t count,
                      std::uint8_t (&bytes)[kLongestField]);

/// Sets what the image tells; what it lacks stays as it is.
template <typename Target, std::size_t N>
void SetFields(const ModuleImage& image, const MapField<Target> (&map)[N], Target& target) {
  for (const MapField<Target>& field : map) {
    std::uint8_t bytes[kLongestField] = {};
    const std::size_t known = ReadField(image, field.page, field.byte, field.count, bytes);
    if (known == 0 || (known < field.count && !field.is_text)) continue;
    field.set(target, FieldValue(bytes, known, field.bits));
  }
}

/// Bytes whose sum, cut to 8 bits, stands in another byte of the same page.
struct Checksum {
  Page page;
  std::uint8_t first;
  std::uint8_t last;
  std::uint8_t stored;
};

/// The checksums of a module family, in a table that lives as long as the program.
class ChecksumList {
 public:
  template <std::size_t N>
  explicit constexpr ChecksumList(const Checksum (&table)[N]) : begin_(table), end_(table + N) {}
  const Checksum* begin() const { return begin_; }
  const Checksum* end() const { return end_; }

 private:
  const Checksum* begin_;
  const Checksum* end_;
};

/// \name What maps have in common
/// @{

/// The temperature word of no reading: -128 C, outside of every sensor's range, shows as missing.
inline constexpr std::uint16_t kNoTemperature = 0x8000;

/// The value of the number, cut to the range of a word.
constexpr std::uint16_t Saturated(std::uint32_t number) {
  constexpr std::uint32_t kHighest = 0xFFFF;
  return static_cast<std::uint16_t>(std::min(number, kHighest));
}

/// What fills a `PhyCableRecord`: its module record, and its page of latched flags.
using ModuleRecord = cable_info::PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = cable_info::PhyCableRecord::LatchedFlagsPage;

/// The record keeps lanes 1..8 pairwise swapped.
inline std::uint16_t& LaneOf(std::uint16_t (&lanes)[8], std::size_t lane) {
  return lanes[(lane - 1) ^ 1];
}
/// @}

}  // namespace cable_info::module_memory
