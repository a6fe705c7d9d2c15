#pragma once

// How an object of JSON fills a record: a table of fields says which key sets which member.
//
//     constexpr auto kFields = std::to_array<Field<Point>>({
//         {"x", Set<&Point::x>},
//         {"y", Set<&Point::y>},
//     });
//     SetFields(point, element, kFields);     // {"x": 1, "y": "0x1f"}
//
// A member's type decides which values fit it; what does not fit is a `FieldError` whose path names
// the place: `cable.RxPower[2]`. A key that is absent or null leaves its member as it is.
//
// Keys usually come in the order of the table, so that finding a field costs one comparison.

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace cli {

using Json = simdjson::dom::element;

/// A value that does not fit. The path grows while the error passes outwards.
struct FieldError {
  std::string path;
  std::string problem;

  void Under(std::string_view name) {
    if (!path.empty() && path.front() != '[') path.insert(0, 1, '.');
    path.insert(0, name);
  }
};

/// Foreign text, shortened and made fit for one line of a terminal.
std::string Shown(std::string_view text);

/// Throws the `FieldError` "expected ..., found ...".
[[noreturn]] void Expected(const std::string& what, Json found);

/// \name Values
/// Each function stores a value that fits the type of the member.
/// @{

/// An integer, or hexadecimal text such as "0x1f".
std::uint64_t UnsignedUpTo(std::uint64_t highest, Json value);

template <typename Unsigned>
requires std::is_unsigned_v<Unsigned>
void Assign(Unsigned& target, Json value) {
  target = static_cast<Unsigned>(UnsignedUpTo(std::numeric_limits<Unsigned>::max(), value));
}

/// true, false, 1 or 0.
void Assign(bool& target, Json value);
/// A number, "nan", "inf" or "-inf".
void Assign(float& target, Json value);
void Assign(std::string& target, Json value);

/// A text of at most `size` bytes.
std::string_view ShortText(std::size_t size, Json value);

/// The rest of the array is cleared.
template <std::size_t N>
void Assign(char (&target)[N], Json value) {
  const std::string_view text = ShortText(N, value);
  std::fill(std::copy(text.begin(), text.end(), target), target + N, '\0');
}

/// An array of at most `count` elements; element i goes to `target(i)`.
template <typename Target>
void AssignElements(Json value, std::size_t count, const Target& target) {
  simdjson::dom::array elements;
  if (value.get(elements) != simdjson::SUCCESS || elements.size() > count) {
    Expected("an array of at most " + std::to_string(count) + " elements", value);
  }
  std::size_t index = 0;
  for (const Json element : elements) {
    try {
      if (!element.is_null()) Assign(target(index), element);
    } catch (FieldError& error) {
      error.Under('[' + std::to_string(index) + ']');
      throw;
    }
    ++index;
  }
}

template <typename T, std::size_t N>
void Assign(T (&target)[N], Json value) {
  AssignElements(value, N, [&](std::size_t i) -> T& { return target[i]; });
}
/// @}

/// \name Fields
/// @{

/// A key, and what stores its value.
template <typename Record>
struct Field {
  std::string_view name;
  void (*set)(Record& record, Json value);
};

template <auto kMember, typename Record>
void Set(Record& record, Json value) {
  Assign(record.*kMember, value);
}

/// The index of the field called `key`, or N. The search begins at `start` and wraps around.
template <typename Record, std::size_t N>
std::size_t FindField(const std::array<Field<Record>, N>& fields, std::string_view key,
                      std::size_t start) {
  for (std::size_t i = start; i < N; ++i) {
    if (fields[i].name == key) return i;
  }
  for (std::size_t i = 0; i < start; ++i) {
    if (fields[i].name == key) return i;
  }
  return N;
}

/// Throws the `FieldError` of a key that none of `names` is.
[[noreturn]] void UnknownKey(std::string_view key, const std::vector<std::string_view>& names);

/// Stores the members of an object into the fields of `record`.
template <typename Record, std::size_t N>
void SetFields(Record& record, Json value, const std::array<Field<Record>, N>& fields) {
  simdjson::dom::object object;
  if (value.get(object) != simdjson::SUCCESS) Expected("an object", value);
  std::size_t next = 0;
  for (const auto [key, member] : object) {
    try {
      const std::size_t found = FindField(fields, key, next);
      if (found == N) {
        std::vector<std::string_view> names;
        for (const Field<Record>& field : fields) names.push_back(field.name);
        UnknownKey(key, names);
      }
      if (!member.is_null()) fields[found].set(record, member);
      next = found + 1;
    } catch (FieldError& error) {
      error.Under(Shown(key));
      throw;
    }
  }
}
/// @}

}  // namespace cli
