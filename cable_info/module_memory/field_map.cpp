#include "cable_info/module_memory/field_map.h"

#include "cable_info/value_format.h"

namespace cable_info::module_memory {

std::string FieldValue::Text() const {
  std::string text;
  for (std::size_t i = 0; i < size_; ++i) {
    const std::uint8_t byte = bytes_[i];
    const bool is_control = byte < ' ' || byte == 0x7F;
    text += byte == 0 ? ' ' : is_control ? '?' : static_cast<char>(byte);
  }
  return std::string(cable_info::Trimmed(text));
}

std::size_t ReadField(const ModuleImage& image, Page page, std::size_t byte, std::size_t count,
                      std::uint8_t (&bytes)[kLongestField]) {
  for (std::size_t i = 0; i < count && i < kLongestField; ++i) {
    const DumpByte found = image.At(page, byte + i);
    if (!found) return i;
    bytes[i] = *found;
  }
  return std::min(count, kLongestField);
}

}  // namespace cable_info::module_memory
