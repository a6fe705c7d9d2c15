// Monitored quantities of CMIS modules: values, thresholds and flags.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/module_memory/module_info.h"
#include "cmis_memory.h"

namespace {

using cable_info::AlarmLevel;
using cable_info::AuxMonitor;
using cable_info::FieldState;
using cable_info::Lane;
using cable_info::ModuleInfo;
using cable_info::Monitor;
using cable_info::Page;
using cmis_memory::FullModule;
using cmis_memory::Memory;

constexpr AlarmLevel kLevels[] = {AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm,
                                  AlarmLevel::kHighWarning, AlarmLevel::kLowWarning};

std::vector<double> ThresholdsOf(const Monitor& monitor) {
  std::vector<double> values;
  for (const AlarmLevel level : kLevels) {
    if (monitor.thresholds.At(level)) values.push_back(*monitor.thresholds.At(level));
  }
  return values;
}

// The number of the level whose flag is raised alone; 4 for none, 5 for several.
unsigned RaisedLevel(const Monitor& monitor) {
  unsigned raised = 4;
  for (unsigned i = 0; i < std::size(kLevels); ++i) {
    if (!monitor.flags.At(kLevels[i]).value_or(false)) continue;
    raised = raised == 4 ? i : 5;
  }
  return raised;
}

// ---------------------------------------------------------------------------------------------
// The module
// ---------------------------------------------------------------------------------------------

TEST(CmisMonitors, TemperatureIsSigned256ths) {
  Memory memory = FullModule();
  memory.Word(Page::kLower, 14, 0x2845);
  EXPECT_EQ(memory.Decode().temperature.value, 40.26953125);
  memory.Word(Page::kLower, 14, 0xFF8D);
  EXPECT_EQ(memory.Decode().temperature.value, -0.44921875);
  memory.Word(Page::kLower, 14, 0x8000);
  EXPECT_EQ(memory.Decode().temperature.value, -128.0);
  memory.Word(Page::kLower, 14, 0);
  EXPECT_EQ(memory.Decode().temperature.state, FieldState::kPresent);
  EXPECT_EQ(memory.Decode().temperature.value, 0.0);
}

TEST(CmisMonitors, VoltageIsIn100Microvolts) {
  Memory memory = FullModule();
  memory.Word(Page::kLower, 16, 33020);
  EXPECT_EQ(memory.Decode().voltage.value, 3.302);
}

TEST(CmisMonitors, ThresholdsOfTheModuleHaveTheirPlaces) {
  Memory memory = FullModule();
  memory.Put(Page::k02, 128, {75, 0, 0xFB, 0, 70, 0, 0, 0});
  memory.Put(Page::k02, 136, {0x8B, 0x42, 0x76, 0x8E, 0x87, 0x5A, 0x7A, 0x76});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(ThresholdsOf(info.temperature), (std::vector<double>{75, -5, 70, 0}));
  EXPECT_EQ(ThresholdsOf(info.voltage), (std::vector<double>{3.565, 3.035, 3.465, 3.135}));
}

TEST(CmisMonitors, ThresholdsThatAreAllZeroOrAllOnesAreNotGiven) {
  Memory memory = FullModule();
  EXPECT_TRUE(ThresholdsOf(memory.Decode().temperature).empty());
  memory.Put(Page::k02, 128, {255, 255, 255, 255, 255, 255, 255, 255});
  EXPECT_TRUE(ThresholdsOf(memory.Decode().temperature).empty());
  memory.Put(Page::k02, 128, {255, 255, 0, 0, 255, 255, 0, 0});
  EXPECT_EQ(ThresholdsOf(memory.Decode().temperature).size(), 4U);
}

TEST(CmisMonitors, FlagsOfTheModuleGoUpFromHighAlarm) {
  for (unsigned level = 0; level < 4; ++level) {
    Memory memory = FullModule();
    memory.Put(Page::kLower, 9, {1U << level});
    EXPECT_EQ(RaisedLevel(memory.Decode().temperature), level);
    EXPECT_EQ(RaisedLevel(memory.Decode().voltage), 4U);
    memory.Put(Page::kLower, 9, {0x10U << level});
    EXPECT_EQ(RaisedLevel(memory.Decode().temperature), 4U);
    EXPECT_EQ(RaisedLevel(memory.Decode().voltage), level);
  }
}

// ---------------------------------------------------------------------------------------------
// Auxiliary monitors
// ---------------------------------------------------------------------------------------------

std::vector<std::string_view> AuxNames(const ModuleInfo& info) {
  std::vector<std::string_view> names;
  for (const AuxMonitor& aux : info.aux) names.push_back(aux.name);
  return names;
}

TEST(CmisMonitors, AuxiliaryMonitorsAreNamedAfterTheirObservable) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 145, {0x00});
  EXPECT_EQ(AuxNames(memory.Decode()),
            (std::vector<std::string_view>{"aux1_custom", "laser_temperature_c",
                                           "laser_temperature_c", "custom"}));
  memory.Put(Page::k01, 145, {0x07});
  EXPECT_EQ(AuxNames(memory.Decode()),
            (std::vector<std::string_view>{"tec_current_percent", "tec_current_percent", "vcc2_v",
                                           "custom"}));
  memory.Put(Page::k01, 159, {0x0B});
  EXPECT_EQ(AuxNames(memory.Decode()), (std::vector<std::string_view>{"tec_current_percent"}));
  memory.Put(Page::k01, 159, {0x03});
  EXPECT_TRUE(memory.Decode().aux.empty());
}

TEST(CmisMonitors, AuxiliaryMonitorsThatAreNotAdvertisedAreRemarkedOn) {
  for (unsigned n = 0; n < 4; ++n) {
    Memory memory = FullModule();
    memory.Put(Page::k01, 159, {0x3FU & ~(4U << n)}).Sum();
    EXPECT_TRUE(memory.Decode().warnings.empty());
    memory.Word(Page::kLower, 18 + 2 * n, 100);
    const ModuleInfo info = memory.Decode();
    EXPECT_EQ(info.aux.size(), 3U);
    ASSERT_EQ(info.warnings.size(), 1U);
    EXPECT_EQ(info.warnings[0].find("auxiliary monitor " + std::to_string(n + 1)), 0U);
  }
}

TEST(CmisMonitors, WithoutPage01hAuxiliaryMonitorsHaveNoObservable) {
  Memory memory = FullModule();
  memory.Word(Page::kLower, 18, 100).Drop(Page::k01);
  EXPECT_TRUE(memory.Decode().aux.empty());
}

TEST(CmisMonitors, AuxiliaryMonitorsHaveTheUnitOfTheirObservable) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 18, {0x80, 0x01, 0x41, 0x00, 0x81, 0x00, 0xFF, 0xFE});
  memory.Put(Page::k01, 145, {0x05});
  ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.aux[0].monitor.value, -100.0);  // TEC current, %
  EXPECT_EQ(info.aux[1].monitor.value, 65.0);    // laser temperature
  EXPECT_EQ(info.aux[2].monitor.value, 3.3024);  // second supply
  EXPECT_EQ(info.aux[3].monitor.value, -2.0);    // custom
  memory.Put(Page::k01, 145, {0x02});
  info = memory.Decode();
  EXPECT_EQ(info.aux[0].monitor.value, -32767.0);
  EXPECT_EQ(info.aux[1].monitor.value, 0x4100 * 100.0 / 32767);
  EXPECT_EQ(info.aux[2].monitor.value, -127.0);
}

TEST(CmisMonitors, ThresholdsAndFlagsOfAuxiliaryMonitorsHaveTheirPlaces) {
  struct Place {
    std::size_t index;
    std::size_t thresholds;
    std::size_t flags_byte;
    unsigned flags_bit;
  };
  for (const Place& place :
       {Place{0, 144, 10, 0}, Place{1, 152, 10, 4}, Place{2, 160, 11, 0}, Place{3, 168, 11, 4}}) {
    Memory memory = FullModule();
    memory.Put(Page::k02, place.thresholds, {0, 100, 0, 0, 0, 50, 0, 25});
    memory.Put(Page::kLower, place.flags_byte, {4U << place.flags_bit});
    memory.Put(Page::k01, 145, {0x00});
    const ModuleInfo info = memory.Decode();
    for (std::size_t i = 0; i < 4; ++i) {
      const Monitor& monitor = info.aux.at(i).monitor;
      EXPECT_EQ(ThresholdsOf(monitor).size(), i == place.index ? 4U : 0U);
      EXPECT_EQ(RaisedLevel(monitor), i == place.index ? 2U : 4U);
    }
  }
}

// Bytes of values and of thresholds, page 02h, of every line of the map; the tests above and below
// put values there.
TEST(CmisMonitors, EveryMonitorOfTheMapHasACase) {
  const std::set<std::string> expected = {
      "lower 14, 128",                                                     // temperature
      "lower 16, 136",                                                     // supply voltage
      "lower 18, 144", "lower 20, 152", "lower 22, 160", "lower 24, 168",  // auxiliary
      "11h 154, 176",                                                      // TX power
      "11h 170, 184",                                                      // TX bias
      "11h 186, 192",                                                      // RX power
  };
  std::set<std::string> places;
  for (const auto& line : cable_info::module_memory::CmisMap().monitors) {
    EXPECT_EQ(line.threshold_page, Page::k02);
    places.insert(cable_info::ShortPageName(line.page) + ' ' + std::to_string(line.byte) + ", " +
                  std::to_string(line.threshold_byte));
  }
  EXPECT_EQ(places, expected);
}

// ---------------------------------------------------------------------------------------------
// Lanes
// ---------------------------------------------------------------------------------------------

struct LaneMonitor {
  std::string_view name;
  Monitor Lane::*monitor;
  std::size_t byte;        // of page 11h
  std::size_t flags;       // of page 11h
  std::size_t thresholds;  // of page 02h
  double per_unit;
  unsigned without;  // 01h:160 without it
};

std::vector<LaneMonitor> LaneMonitors() {
  return {
      {"TX power", &Lane::tx_power, 154, 139, 176, 10000, 0x05},
      {"TX bias", &Lane::tx_bias, 170, 143, 184, 500, 0x06},
      {"RX power", &Lane::rx_power, 186, 149, 192, 10000, 0x03},
  };
}

// The values of all lanes; those that are not present are -1.
std::vector<double> ValuesOf(const ModuleInfo& info, Monitor Lane::*monitor) {
  std::vector<double> values;
  for (const Lane& lane : info.lanes) {
    values.push_back((lane.*monitor).IsPresent() ? (lane.*monitor).value : -1.0);
  }
  return values;
}

TEST(CmisLaneMonitors, FollowLaneByLane) {
  for (const LaneMonitor& expected : LaneMonitors()) {
    for (std::size_t lane = 0; lane < 8; ++lane) {
      Memory memory = FullModule();
      memory.Word(Page::k11, expected.byte + 2 * lane, 0x9C41);
      std::vector<double> values(8, 0.0);
      values[lane] = 40001 / expected.per_unit;
      EXPECT_EQ(ValuesOf(memory.Decode(), expected.monitor), values);
    }
  }
}

TEST(CmisLaneMonitors, FlagsHaveOneBytePerLevelAndOneBitPerLane) {
  for (const LaneMonitor& expected : LaneMonitors()) {
    for (unsigned level = 0; level < 4; ++level) {
      Memory memory = FullModule();
      memory.Put(Page::k11, expected.flags + level, {0x81});
      const ModuleInfo info = memory.Decode();
      for (const Lane& lane : info.lanes) {
        const bool is_raised = lane.number == 1 || lane.number == 8;
        EXPECT_EQ(RaisedLevel(lane.*expected.monitor), is_raised ? level : 4U);
      }
    }
  }
}

TEST(CmisLaneMonitors, ThresholdsAreThoseOfAllLanes) {
  for (const LaneMonitor& expected : LaneMonitors()) {
    Memory memory = FullModule();
    memory.Put(Page::k02, expected.thresholds, {0x9C, 0x41, 0, 1, 0x80, 0, 0, 0});
    const ModuleInfo info = memory.Decode();
    const std::vector<double> values = {40001 / expected.per_unit, 1 / expected.per_unit,
                                        32768 / expected.per_unit, 0};
    EXPECT_EQ(ThresholdsOf(info.lanes[0].*expected.monitor), values);
    EXPECT_EQ(ThresholdsOf(info.lanes[7].*expected.monitor), values);
  }
}

// Without a value, and without thresholds and flags.
bool IsNotImplemented(const Monitor& monitor) {
  return monitor.state == FieldState::kNotImplemented && monitor.thresholds.given == 0 &&
         monitor.flags.known == 0;
}

TEST(CmisLaneMonitors, UnadvertisedMonitorsAreNotImplementedButCauseWarnings) {
  for (const LaneMonitor& expected : LaneMonitors()) {
    Memory memory = FullModule();
    memory.Put(Page::k01, 160, {expected.without}).Sum();
    memory.Put(Page::k02, expected.thresholds, {1, 2, 3, 4, 5, 6, 7, 8}).Sum();
    EXPECT_TRUE(memory.Decode().warnings.empty());
    memory.Word(Page::k11, expected.byte + 2, 1234).Put(Page::k11, expected.flags + 3, {0x40});
    const ModuleInfo info = memory.Decode();
    EXPECT_TRUE(std::all_of(info.lanes.begin(), info.lanes.end(), [&](const Lane& lane) {
      return IsNotImplemented(lane.*expected.monitor);
    }));
    const std::string warning = std::string(expected.name) + " is not advertised, but has a ";
    EXPECT_EQ(info.warnings, (std::vector<std::string>{warning + "value: lane 2",
                                                       warning + "flag raised: lane 7"}));
  }
}

TEST(CmisMonitors, TemperatureAndVoltageAreAdvertised) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 159, {0x3D}).Put(Page::kLower, 14, {40, 0, 0x80, 0xFC}).Sum();
  ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kPresent);
  EXPECT_EQ(info.voltage.state, FieldState::kNotImplemented);
  ASSERT_EQ(info.warnings.size(), 1U);
  EXPECT_NE(info.warnings[0].find("Supply voltage"), std::string::npos);
  memory.Put(Page::k01, 159, {0x3E}).Sum();
  info = memory.Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.voltage.state, FieldState::kPresent);
}

TEST(CmisLaneMonitors, WithoutPage01hOnlyValuesOtherThanZeroArePresent) {
  Memory memory = FullModule();
  memory.Drop(Page::k01).Word(Page::k11, 154, 10000);
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0].tx_power.state, FieldState::kPresent);
  EXPECT_EQ(info.lanes[0].tx_power.value, 1.0);
  EXPECT_EQ(info.lanes[1].tx_power.state, FieldState::kNotRead);
}

TEST(CmisLaneMonitors, WithoutPage11hThereAreThresholdsOnly) {
  Memory memory = FullModule();
  memory.Drop(Page::k11).Put(Page::k02, 192, {1, 2, 3, 4, 5, 6, 7, 8});
  const Monitor monitor = memory.Decode().lanes[0].rx_power;
  EXPECT_EQ(monitor.state, FieldState::kNotRead);
  EXPECT_EQ(ThresholdsOf(monitor).size(), 4U);
  EXPECT_EQ(monitor.flags.known, 0);
}

TEST(CmisLaneMonitors, TheMultiplierAppliesToBiasAndItsThresholds) {
  constexpr unsigned kMultipliers[] = {1, 2, 4, 1};
  for (unsigned code = 0; code < 4; ++code) {
    Memory memory = FullModule();
    memory.Put(Page::k01, 160, {0x07U | code << 3U});
    memory.Word(Page::k11, 170, 35275).Word(Page::k02, 184, 50000).Word(Page::k11, 154, 10000);
    memory.Sum();
    const ModuleInfo info = memory.Decode();
    EXPECT_EQ(info.lanes[0].tx_bias.value, 70.55 * kMultipliers[code]);
    EXPECT_EQ(info.lanes[0].tx_bias.thresholds.At(AlarmLevel::kHighAlarm),
              100.0 * kMultipliers[code]);
    EXPECT_EQ(info.lanes[0].tx_power.value, 1.0);
    EXPECT_EQ(info.warnings.size(), code == 3 ? 1U : 0U);  // reserved
  }
}

TEST(CmisLaneMonitors, ZeroLightIsAValue) {
  const ModuleInfo info = FullModule().Decode();
  EXPECT_EQ(info.lanes[0].rx_power.state, FieldState::kPresent);
  EXPECT_EQ(info.lanes[0].rx_power.value, 0.0);
}

}  // namespace
