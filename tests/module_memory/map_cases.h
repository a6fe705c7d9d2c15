#pragma once

// Cases of the tests of memory maps: bytes in, named values out. All expected values are written by
// hand from the tables of the standards.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/module_memory/module_info.h"

namespace map_cases {

using Bytes = std::vector<unsigned>;
using Keys = std::set<std::string>;

/// The characters of a text as bytes.
inline Bytes Chars(std::string_view text) {
  Bytes bytes;
  for (const char c : text) bytes.push_back(static_cast<unsigned char>(c));
  return bytes;
}

/// Bytes at a place, and the value that a field then has.
struct FieldCase {
  cable_info::Field field;
  cable_info::Page page;
  std::size_t byte;
  Bytes bytes;
  double number;          ///< 0 of a text
  std::string_view text;  ///< a text, or the name of a code
};

/// Bytes at a place, and the values that a field of the lanes then has.
template <std::size_t N>
struct LaneCase {
  cable_info::LaneField field;
  cable_info::Page page;
  std::size_t byte;
  Bytes bytes;
  std::array<double, N> lanes;
};

/// Fields of a module that is otherwise `memory`.
template <typename Memory>
struct FieldCases {
  Memory memory;
  std::vector<FieldCase> cases;
};

inline Bytes Inverted(Bytes bytes) {
  for (unsigned& byte : bytes) byte = ~byte & 0xFFU;
  return bytes;
}

template <typename Memory>
void ExpectField(Memory memory, const FieldCase& it, double number) {
  const cable_info::ModuleInfo info = memory.Put(it.page, it.byte, it.bytes).Decode();
  const cable_info::FieldValue value = info[it.field];
  const std::string_view key = cable_info::DescribeField(it.field).key;
  EXPECT_EQ(value.state, cable_info::FieldState::kPresent) << key;
  EXPECT_DOUBLE_EQ(value.number, number) << key;
  EXPECT_EQ(value.text, it.text) << key;
}

/// Puts the bytes of each case into a copy of the memory, which is decoded. The inverted bytes of a
/// flag give the opposite.
template <typename Memory>
void Expect(const Memory& memory, const std::vector<FieldCase>& cases) {
  for (const FieldCase& it : cases) {
    ExpectField(memory, it, it.number);
    if (cable_info::DescribeField(it.field).kind != cable_info::FieldKind::kFlag) continue;
    FieldCase opposite = it;
    opposite.bytes = Inverted(it.bytes);
    ExpectField(memory, opposite, 1 - it.number);
  }
}

/// The same for lanes. The inverted bytes of a flag give the opposite on each lane.
template <typename Memory, std::size_t N>
void ExpectLanes(Memory memory, const LaneCase<N>& it) {
  const cable_info::ModuleInfo info = memory.Put(it.page, it.byte, it.bytes).Decode();
  ASSERT_EQ(info.lanes.size(), N);
  for (const cable_info::Lane& lane : info.lanes) {
    const std::string_view key = cable_info::DescribeField(it.field).key;
    EXPECT_TRUE(lane[it.field].IsPresent()) << key << lane.number;
    EXPECT_EQ(lane[it.field].number, it.lanes.at(lane.number - 1)) << key << lane.number;
  }
}

template <typename Memory, std::size_t N>
void Expect(const Memory& memory, const std::vector<LaneCase<N>>& cases) {
  for (const LaneCase<N>& it : cases) {
    ExpectLanes(memory, it);
    if (cable_info::DescribeField(it.field).kind != cable_info::FieldKind::kFlag) continue;
    LaneCase<N> opposite = it;
    opposite.bytes = Inverted(it.bytes);
    for (double& lane : opposite.lanes) lane = 1 - lane;
    ExpectLanes(memory, opposite);
  }
}

/// True when a case has the field of a line and bytes at its place.
template <typename Case, typename Line>
bool Covers(const Case& it, const Line& line) {
  return it.field == line.field && it.page == line.page && it.byte <= line.byte &&
         line.byte < it.byte + it.bytes.size();
}

/// Each line of the map has a case.
template <typename Line, typename Case>
void ExpectCovered(cable_info::module_memory::Lines<Line> lines, const std::vector<Case>& cases) {
  for (const Line& line : lines) {
    const auto covers = [&line](const Case& it) { return Covers(it, line); };
    EXPECT_TRUE(std::any_of(cases.begin(), cases.end(), covers))
        << "no case of " << cable_info::DescribeField(line.field).key << " at byte "
        << int(line.byte);
  }
}

/// A bit of a page, and its name.
struct BitCase {
  cable_info::Page page;
  std::size_t byte;
  unsigned bit;
  std::string_view name;
};

/// Each bit of the bytes, set alone, gives its name, and bits without a case give none. `list`
/// returns the names of a module.
template <typename Memory, typename List>
void ExpectNames(const Memory& memory, const std::vector<BitCase>& cases, const List& list) {
  for (const BitCase& place : cases) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      Memory changed = memory;
      const cable_info::ModuleInfo info = changed.Put(place.page, place.byte, {1U << bit}).Decode();
      std::vector<std::string_view> expected;
      for (const BitCase& it : cases) {
        if (it.page == place.page && it.byte == place.byte && it.bit == bit) {
          expected.push_back(it.name);
        }
      }
      EXPECT_EQ(list(info), expected) << place.byte << '.' << bit;
    }
  }
}

/// The state of each value by its key; all lanes have the same.
inline std::map<std::string, cable_info::FieldState> StatesOf(const cable_info::ModuleInfo& info) {
  std::map<std::string, cable_info::FieldState> states;
  for (const cable_info::FieldInfo& field : cable_info::ModuleFields()) {
    states.emplace(field.key, info.StateOf(field.field));
  }
  const cable_info::Lane& lane = info.lanes.at(0);
  for (const cable_info::LaneFieldInfo& field : cable_info::LaneFields()) {
    const cable_info::FieldState state = lane[field.field].state;
    states.emplace("lanes." + std::string(field.key), state);
    for (const cable_info::Lane& other : info.lanes) EXPECT_EQ(other[field.field].state, state);
  }
  states.emplace("monitors.temperature", info.temperature.state);
  states.emplace("monitors.voltage", info.voltage.state);
  states.emplace("lanes.rx_power", lane.rx_power.state);
  states.emplace("lanes.tx_power", lane.tx_power.state);
  states.emplace("lanes.tx_bias", lane.tx_bias.state);
  for (const cable_info::AuxMonitor& aux : info.aux) states.emplace(aux.name, aux.monitor.state);
  return states;
}

/// The keys of the values whose states differ.
inline Keys Changed(const cable_info::ModuleInfo& before, const cable_info::ModuleInfo& after) {
  const auto old_states = StatesOf(before);
  Keys keys;
  for (const auto& [key, state] : StatesOf(after)) {
    const auto old_state = old_states.find(key);
    if (old_state == old_states.end() || old_state->second != state) keys.insert(key);
  }
  return keys;
}

/// A bit that advertises values, by their keys.
struct AdvertisedBit {
  cable_info::Page page;
  std::size_t byte;
  unsigned bit;
  Keys keys;
};

/// Clearing each bit of the bytes makes exactly its values not implemented: none for bits without
/// a case. In `memory` all of them are set.
template <typename Memory>
void ExpectAdvertised(const Memory& memory, const std::vector<AdvertisedBit>& cases) {
  const cable_info::ModuleInfo full = memory.Decode();
  for (const AdvertisedBit& place : cases) {
    const unsigned all = memory.image().At(place.page, place.byte).value_or(0);
    for (unsigned bit = 0; bit < 8; ++bit) {
      Memory changed = memory;
      const cable_info::ModuleInfo info =
          changed.Put(place.page, place.byte, {all & ~(1U << bit)}).Decode();
      Keys expected;
      for (const AdvertisedBit& it : cases) {
        const bool is_it = it.page == place.page && it.byte == place.byte && it.bit == bit;
        if (is_it) expected = it.keys;
      }
      EXPECT_EQ(Changed(full, info), expected) << place.byte << '.' << bit;
      for (const std::string& key : expected) {
        EXPECT_EQ(StatesOf(full).at(key), cable_info::FieldState::kPresent) << key;
        EXPECT_EQ(StatesOf(info).at(key), cable_info::FieldState::kNotImplemented) << key;
      }
    }
  }
}

/// All warnings except those about checksums, which these memories do not have.
inline std::vector<std::string> Warnings(const cable_info::ModuleInfo& info) {
  std::vector<std::string> others;
  for (const std::string& warning : info.warnings) {
    if (warning.find("checksum") == std::string::npos) others.push_back(warning);
  }
  return others;
}

}  // namespace map_cases
