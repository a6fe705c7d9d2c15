#pragma once

/// \file
/// Sets of fields, and the states of all fields of a module or a lane as such sets.
///
/// Few of the fields that the standards define are present in a module: about 40 of 235, and 15 of
/// the 144 of a lane. A bit per field finds them without looking at the others:
///
///     for (const Field field : info.FieldsIn(FieldState::kPresent)) Show(info[field]);

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "cable_info/module_memory/field_state.h"

namespace cable_info {

/// A set of fields; `FieldType` is `Field` or `LaneField`. Iterates over them in the order of their
/// enumeration.
template <typename FieldType>
class FieldSet {
 public:
  /// The number of fields of the type.
  static constexpr std::size_t kCount = static_cast<std::size_t>(FieldType::kCount);

  /// Iterates over the fields of a set, which must not change meanwhile.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = FieldType;
    using difference_type = std::ptrdiff_t;
    using pointer = const FieldType*;
    using reference = FieldType;

    Iterator(const FieldSet& set, std::size_t at) : set_(&set), at_(at) {}
    FieldType operator*() const { return static_cast<FieldType>(at_); }
    Iterator& operator++() {
      at_ = set_->NextFrom(at_ + 1);
      return *this;
    }
    Iterator operator++(int) {  // NOLINT(cert-dcl21-cpp): as that of every iterator
      const Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const Iterator& a, const Iterator& b) { return a.at_ == b.at_; }
    friend bool operator!=(const Iterator& a, const Iterator& b) { return a.at_ != b.at_; }

   private:
    const FieldSet* set_;
    std::size_t at_;
  };

  /// True if the field is in the set.
  bool Has(FieldType field) const { return (words_[WordOf(field)] & BitOf(field)) != 0; }
  /// Adds the field, or removes it.
  void Put(FieldType field, bool is_in) {
    std::uint64_t& word = words_[WordOf(field)];
    word = (word & ~BitOf(field)) | (is_in ? BitOf(field) : 0);
  }
  /// Adds the field.
  void Add(FieldType field) { Put(field, true); }
  /// The number of the first field of the set from number `at` on; `kCount` if there is none.
  std::size_t NextFrom(std::size_t at) const {
    if (at >= kCount) return kCount;
    std::size_t word = at / kWordBits;
    const std::uint64_t rest = words_[word] >> at % kWordBits;
    if (rest != 0) return at + LowestOf(rest);
    while (++word < kWords) {
      if (words_[word] != 0) return word * kWordBits + LowestOf(words_[word]);
    }
    return kCount;
  }
  /// The first field.
  Iterator begin() const { return {*this, NextFrom(0)}; }
  /// After the last field.
  Iterator end() const { return {*this, kCount}; }

  /// Adds the fields of another set.
  FieldSet& operator|=(const FieldSet& other) {
    for (std::size_t i = 0; i < kWords; ++i) words_[i] |= other.words_[i];
    return *this;
  }
  /// Removes the fields that another set does not have.
  FieldSet& operator&=(const FieldSet& other) {
    for (std::size_t i = 0; i < kWords; ++i) words_[i] &= other.words_[i];
    return *this;
  }
  /// The fields that are not in the set.
  FieldSet operator~() const {
    FieldSet others;
    for (std::size_t i = 0; i < kWords; ++i) others.words_[i] = ~words_[i];
    others.words_[kWords - 1] &= ~std::uint64_t{0} >> (kWords * kWordBits - kCount);
    return others;
  }
  /// True if both have the same fields.
  friend bool operator==(const FieldSet& a, const FieldSet& b) { return a.words_ == b.words_; }
  /// True if they differ.
  friend bool operator!=(const FieldSet& a, const FieldSet& b) { return !(a == b); }

 private:
  static constexpr std::size_t kWordBits = 64;
  static constexpr std::size_t kWords = (kCount + kWordBits - 1) / kWordBits;

  static std::size_t LowestOf(std::uint64_t bits) {
    return static_cast<std::size_t>(__builtin_ctzll(bits));
  }
  static constexpr std::size_t WordOf(FieldType field) {
    return static_cast<std::size_t>(field) / kWordBits;
  }
  static constexpr std::uint64_t BitOf(FieldType field) {
    return std::uint64_t{1} << static_cast<std::size_t>(field) % kWordBits;
  }

  std::array<std::uint64_t, kWords> words_ = {};
};

/// The states of all fields of a kind; at first none is implemented. Each state is a number of two
/// bits, in two sets.
template <typename FieldType>
class FieldStates {
 public:
  /// The state of a field.
  FieldState operator[](FieldType field) const {
    return StateOf((low_.Has(field) ? 1U : 0U) | (high_.Has(field) ? 2U : 0U));
  }
  /// Sets the state of a field.
  void Set(FieldType field, FieldState state) {
    const unsigned number = NumberOf(state);
    low_.Put(field, (number & 1U) != 0);
    high_.Put(field, (number & 2U) != 0);
  }
  /// Sets the state of several fields at once.
  void Set(const FieldSet<FieldType>& fields, FieldState state) {
    const unsigned number = NumberOf(state);
    Put(low_, fields, (number & 1U) != 0);
    Put(high_, fields, (number & 2U) != 0);
  }
  /// The fields that have a state.
  FieldSet<FieldType> In(FieldState state) const {
    const unsigned number = NumberOf(state);
    FieldSet<FieldType> set = (number & 1U) != 0 ? low_ : ~low_;
    return set &= (number & 2U) != 0 ? high_ : ~high_;
  }

 private:
  static void Put(FieldSet<FieldType>& set, const FieldSet<FieldType>& fields, bool is_in) {
    is_in ? set |= fields : set &= ~fields;
  }
  // 0 is not implemented.
  static constexpr unsigned NumberOf(FieldState state) {
    return static_cast<unsigned>(state) ^ static_cast<unsigned>(FieldState::kNotImplemented);
  }
  static constexpr FieldState StateOf(unsigned number) {
    return static_cast<FieldState>(number ^ static_cast<unsigned>(FieldState::kNotImplemented));
  }

  FieldSet<FieldType> low_;
  FieldSet<FieldType> high_;
};

}  // namespace cable_info
