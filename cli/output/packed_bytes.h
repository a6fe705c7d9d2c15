#pragma once

// The data of a port, written by any thread and read by the collector of all ports: values as their
// bytes, texts after their sizes. Only the same run of the program reads it.
//
//     PackValue(os, port.number);                 number = TakeValue<std::uint32_t>(bytes);
//     PackText(os, port.label);                   label = TakeText(bytes);
//
// Nothing is checked: the reader must take what the writer wrote, in the same order.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>
#include <type_traits>

namespace cli {

/// The bytes of a value; valid during its lifetime.
template <typename T>
std::string_view BytesOf(const T& value) {
  static_assert(std::is_trivially_copyable_v<T>);
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the bytes of a plain value
  return {reinterpret_cast<const char*>(&value), sizeof(T)};
}

template <typename T>
void PackValue(std::ostream& os, const T& value) {
  os << BytesOf(value);
}

inline void PackText(std::ostream& os, std::string_view text) {
  PackValue(os, static_cast<std::uint32_t>(text.size()));
  os << text;
}

/// Takes a value from the front of `bytes`.
template <typename T>
T TakeValue(std::string_view& bytes) {
  static_assert(std::is_trivially_copyable_v<T>);
  T value{};
  std::memcpy(&value, bytes.data(), sizeof(T));
  bytes.remove_prefix(sizeof(T));
  return value;
}

/// Takes a text from the front of `bytes`, of which it is a part.
inline std::string_view TakeText(std::string_view& bytes) {
  const auto size = TakeValue<std::uint32_t>(bytes);
  const std::string_view text = bytes.substr(0, size);
  bytes.remove_prefix(size);
  return text;
}

}  // namespace cli
