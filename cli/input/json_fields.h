#pragma once

// Fills a record from a JSON object by a table of fields, which maps keys to members.
//
//     constexpr FieldTable kPointFields(std::to_array<Field<Point>>({
//         {"x", Set<&Point::x>},
//         {"y", Set<&Point::y>},
//     }));
//     Message problem;
//     SetFields(point, Value(element, problem), kPointFields);     // {"x": 1, "y": "0x1f"}
//
// The type of a member determines the values that fit it. The first value that does not fit is an
// error: every function then returns false, and the message names the place, `cable.RxPower[2]`.
// A key that is absent or null leaves its member unchanged; an unknown key and a repeated one are
// errors.
//
// Keys usually follow the order of the table, so that finding a field costs one comparison. Places
// are chained on the stack and become text only for an error. Errors are returned, not thrown,
// because an input may have many: an exception costs as much as ten small ports.

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "cli/message.h"

namespace cli {

/// A value and its place in the line.
class Value {
 public:
  /// The value of a whole line; the first error goes to `problem`.
  Value(simdjson::dom::element element, Message& problem) : json(element), problem_(&problem) {}
  /// The member `key` of `parent`, which must outlive the value.
  Value(simdjson::dom::element element, const Value& parent, std::string_view key)
      : json(element), problem_(parent.problem_), parent_(&parent), key_(key) {}
  /// The element `index` of the array `parent`, which must outlive the value.
  Value(simdjson::dom::element element, const Value& parent, std::size_t index)
      : json(element), problem_(parent.problem_), parent_(&parent), index_(index) {}

  /// Sets the message "PATH: PROBLEM"; returns false.
  bool Fail(MessageKind kind, const std::string& problem) const;
  /// Sets the message "PATH: expected WHAT, found ..."; returns false.
  bool Expected(const std::string& what) const;
  /// Sets the message of a key that is not one of `known_keys`; returns false.
  bool FailAsUnknownKey(std::span<const std::string_view> known_keys) const;
  /// Sets the message of a key that an object has twice; returns false.
  bool FailAsRepeatedKey() const;

  simdjson::dom::element json;

 private:
  /// "cable.RxPower[2]"; empty for the line itself.
  std::string Path() const;

  Message* problem_;
  const Value* parent_ = nullptr;
  std::string_view key_;  // of an object; without data in an array
  std::size_t index_ = 0;
};

/// \name Values
/// Each function stores a value that fits the type of the member, or returns false.
/// @{

/// Any way to write an integer, such as 31, 31.0 or "0x1f".
bool AssignInteger(std::uint64_t& target, std::uint64_t highest, const Value& value);

template <typename Unsigned>
requires std::is_unsigned_v<Unsigned>
bool Assign(Unsigned& target, const Value& value) {
  constexpr std::uint64_t kHighest = std::numeric_limits<Unsigned>::max();
  std::uint64_t number = 0;
  const bool is_plain = value.json.get(number) == simdjson::SUCCESS && number <= kHighest;
  if (!is_plain && !AssignInteger(number, kHighest, value)) return false;
  target = static_cast<Unsigned>(number);
  return true;
}

/// true, false, 1 or 0.
bool Assign(bool& target, const Value& value);
/// A number, "nan", "inf" or "-inf".
bool Assign(float& target, const Value& value);
bool Assign(std::string& target, const Value& value);

/// A text of at most `size` bytes.
std::optional<std::string_view> ShortText(std::size_t size, const Value& value);

/// The rest of the array is cleared.
template <std::size_t N>
bool Assign(char (&target)[N], const Value& value) {
  const std::optional<std::string_view> text = ShortText(N, value);
  if (text) std::fill(std::copy(text->begin(), text->end(), target), target + N, '\0');
  return text.has_value();
}

/// An array of at most `count` elements; element i goes to `target(i)`.
template <typename Target>
bool AssignElements(const Value& value, std::size_t count, const Target& target) {
  simdjson::dom::array elements;
  if (value.json.get(elements) != simdjson::SUCCESS || elements.size() > count) {
    return value.Expected("an array of at most " + std::to_string(count) + " elements");
  }
  std::size_t index = 0;
  for (const simdjson::dom::element element : elements) {
    if (!element.is_null() && !Assign(target(index), Value(element, value, index))) return false;
    ++index;
  }
  return true;
}

template <typename T, std::size_t N>
bool Assign(T (&target)[N], const Value& value) {
  return AssignElements(value, N, [&](std::size_t i) -> T& { return target[i]; });
}
/// @}

/// \name Fields
/// @{

/// A key, and what stores its value.
template <typename Record>
struct Field {
  std::string_view key;
  bool (*set)(Record& record, const Value& value);
};

template <auto kMember, typename Record>
bool Set(Record& record, const Value& value) {
  return Assign(record.*kMember, value);
}

/// The fields of a record.
template <typename Record, std::size_t N>
class FieldTable {
 public:
  constexpr explicit FieldTable(const std::array<Field<Record>, N>& fields) {
    for (std::size_t i = 0; i < N; ++i) {
      keys_[i] = fields[i].key;
      setters_[i] = fields[i].set;
    }
  }

  static constexpr std::size_t size() { return N; }
  std::span<const std::string_view> keys() const { return keys_; }

  /// The index of `key`, or `size()`. The search begins at `start` and wraps around.
  std::size_t Find(std::string_view key, std::size_t start) const {
    for (std::size_t i = start; i < N; ++i) {
      if (keys_[i] == key) return i;
    }
    for (std::size_t i = 0; i < start; ++i) {
      if (keys_[i] == key) return i;
    }
    return N;
  }

  bool SetField(std::size_t index, Record& record, const Value& value) const {
    return setters_[index](record, value);
  }

 private:
  std::array<std::string_view, N> keys_{};
  std::array<bool (*)(Record& record, const Value& value), N> setters_{};
};

/// Stores the members of an object into the fields of `record`.
template <typename Record, std::size_t N>
bool SetFields(Record& record, const Value& value, const FieldTable<Record, N>& fields) {
  simdjson::dom::object object;
  if (value.json.get(object) != simdjson::SUCCESS) return value.Expected("an object");
  std::bitset<N> seen;
  std::size_t next = 0;
  for (const auto [key, member] : object) {
    const Value place(member, value, key);
    const std::size_t found = fields.Find(key, next);
    if (found == N) return place.FailAsUnknownKey(fields.keys());
    if (seen[found]) return place.FailAsRepeatedKey();
    seen[found] = true;
    if (!member.is_null() && !fields.SetField(found, record, place)) return false;
    next = found + 1;
  }
  return true;
}
/// @}

}  // namespace cli
