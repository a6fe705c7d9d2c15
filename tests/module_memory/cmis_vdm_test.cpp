#include "cable_info/module_memory/cmis_vdm.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "cmis_memory.h"

namespace {

using cable_info::module_memory::FindVdmObservable;
using cable_info::module_memory::Float16;
using cable_info::module_memory::VdmObservable;
using cable_info::module_memory::VdmThreshold;
using cable_info::module_memory::VdmValue;

TEST(Float16, IsMantissaTimesAPowerOfTen) {
  // Bits 15..11 hold the exponent plus 24.
  EXPECT_EQ(Float16(0x0000), 0.0);
  EXPECT_EQ(Float16(0x0001), 1e-24);
  EXPECT_EQ(Float16(0x07FF), 2047e-24);
  EXPECT_EQ(Float16(0x7001), 1e-10);  // 14
  EXPECT_EQ(Float16(0x8064), 100e-8);
  EXPECT_EQ(Float16(0xC000 | 5), 5.0);
  EXPECT_EQ(Float16(0xC800 | 5), 50.0);
  EXPECT_EQ(Float16(0xFFFF), 2047e7);  // the largest, 2.047e10
  EXPECT_EQ(Float16(0xF800), 0.0);
}

TEST(Float16, PrintsAsWritten) {
  EXPECT_EQ(Float16(14 << 11 | 120), 1.2e-8);
  EXPECT_EQ(Float16(13 << 11 | 737), 7.37e-9);
  EXPECT_EQ(Float16(15 << 11 | 495), 4.95e-7);
}

struct Expectation {
  unsigned type_id;
  std::string_view name;
  std::string_view unit;
  std::uint16_t raw;
  double value;
};

std::vector<Expectation> Expectations() {
  return {
      {1, "laser_age", "%", 42, 42.0},
      {2, "tec_current", "%", 0x8001, -100.0},
      {3, "laser_frequency_error", "MHz", 0xFFFE, -20.0},
      {4, "laser_temperature_deviation", "C", 0xFF80, -0.5},
      {5, "esnr_media", "dB", 0x1680, 22.5},
      {6, "esnr_host", "dB", 0x9A00, 154.0},
      {7, "pam4_level_transition_media", "dB", 0x3140, 49.25},
      {8, "pam4_level_transition_host", "dB", 0xFFFE, 255.9921875},
      {9, "pre_fec_ber_minimum_media", "", 0x79EF, 4.95e-7},
      {10, "pre_fec_ber_minimum_host", "", 0x7001, 1e-10},
      {11, "pre_fec_ber_maximum_media", "", 0x7001, 1e-10},
      {12, "pre_fec_ber_maximum_host", "", 0x7001, 1e-10},
      {13, "pre_fec_ber_average_media", "", 0x7001, 1e-10},
      {14, "pre_fec_ber_average_host", "", 0x7001, 1e-10},
      {15, "pre_fec_ber_current_media", "", 0x7078, 1.2e-8},
      {16, "pre_fec_ber_current_host", "", 0x7001, 1e-10},
      {17, "frame_errors_minimum_media", "frames", 0xC005, 5.0},
      {18, "frame_errors_minimum_host", "frames", 0xC005, 5.0},
      {19, "frame_errors_maximum_media", "frames", 0xC005, 5.0},
      {20, "frame_errors_maximum_host", "frames", 0xC005, 5.0},
      {21, "frame_errors_average_media", "frames", 0xC005, 5.0},
      {22, "frame_errors_average_host", "frames", 0xC005, 5.0},
      {23, "frame_errors_current_media", "frames", 0xC005, 5.0},
      {24, "frame_errors_current_host", "frames", 0xC005, 5.0},
      {25, "frame_errors_total_media", "frames", 0xC805, 50.0},
      {26, "frame_errors_total_host", "frames", 0xC805, 50.0},
      {27, "symbol_error_weight_minimum_media", "", 0xFF00, 65280.0},
      {28, "symbol_error_weight_minimum_host", "", 7, 7.0},
      {29, "symbol_error_weight_maximum_media", "", 7, 7.0},
      {30, "symbol_error_weight_maximum_host", "", 7, 7.0},
      {31, "symbol_error_weight_average_media", "", 7, 7.0},
      {32, "symbol_error_weight_average_host", "", 7, 7.0},
      {33, "symbol_error_weight_current_media", "", 7, 7.0},
      {34, "symbol_error_weight_current_host", "", 7, 7.0},
      {77, "supply_2p6v", "V", 26000, 2.6},
      {78, "supply_1p8v", "V", 18001, 1.8001},
      {79, "supply_1p2v", "V", 12000, 1.2},
      {80, "supply_0p9v", "V", 9000, 0.9},
      {81, "supply_0p7v_a", "V", 7000, 0.7},
      {82, "supply_0p7v_b", "V", 7000, 0.7},
      {83, "supply_12v", "V", 48001, 12.00025},
      {84, "external_laser_input_power", "dBm", 0xFF9C, -1.0},
      {128, "modulator_bias_xi", "%", 0xFFFF, 100.0},
      {129, "modulator_bias_xq", "%", 0xFFFF, 100.0},
      {130, "modulator_bias_yi", "%", 0xFFFF, 100.0},
      {131, "modulator_bias_yq", "%", 0xFFFF, 100.0},
      {132, "modulator_bias_x_phase", "%", 0xFFFF, 100.0},
      {133, "modulator_bias_y_phase", "%", 0, 0.0},
      {134, "chromatic_dispersion_short_link", "ps/nm", 0xFFFF, -1.0},
      {135, "chromatic_dispersion_long_link", "ps/nm", 0xFFFF, -20.0},
      {136, "differential_group_delay", "ps", 0xFFFF, 655.35},
      {137, "sopmd", "ps^2", 101, 1.01},
      {138, "polarization_dependent_loss", "dB", 17, 1.7},
      {139, "osnr", "dB", 363, 36.3},
      {140, "esnr", "dB", 0x8001, 3276.9},
      {141, "carrier_frequency_offset", "MHz", 0xFF38, -200.0},
      {142, "error_vector_magnitude", "%", 0xFFFF, 100.0},
      {143, "tx_power", "dBm", 0xFC18, -10.0},
      {144, "rx_total_power", "dBm", 0xFC18, -10.0},
      {145, "rx_signal_power", "dBm", 0xFC18, -10.0},
      {146, "sop_rate_of_change", "krad/s", 0x8000, 32768.0},
      {147, "modulation_error_ratio", "dB", 211, 21.1},
      {148, "clock_recovery_loop", "%", 0x7FFF, 100.0},
      {149, "sopmd_coarse", "ps^2", 0x8001, 32769.0},
      {150, "snr_margin", "dB", 0xFFEC, -2.0},
      {151, "q_factor", "dB", 0x8001, 3276.9},
      {152, "q_margin", "dB", 0xFFEC, -2.0},
  };
}

TEST(VdmObservables, HaveTheirNameUnitAndScale) {
  for (const Expectation& expected : Expectations()) {
    SCOPED_TRACE(expected.type_id);
    const VdmObservable* observable = FindVdmObservable(expected.type_id);
    ASSERT_NE(observable, nullptr);
    EXPECT_EQ(observable->name, expected.name);
    EXPECT_EQ(observable->unit, expected.unit);
    EXPECT_EQ(VdmValue(*observable, expected.raw), expected.value);
  }
}

TEST(VdmObservables, ReservedAndCustomTypesAreUnknown) {
  std::size_t known = 0;
  for (unsigned id = 0; id < 256; ++id) known += FindVdmObservable(id) != nullptr ? 1U : 0U;
  EXPECT_EQ(known, 34U + 8U + 25U);
  for (const unsigned id : {0U, 35U, 76U, 85U, 100U, 127U, 153U, 255U, 257U}) {
    EXPECT_EQ(FindVdmObservable(id), nullptr) << id;
  }
}

TEST(VdmObservables, AnInfiniteLevelTransitionHasNoNumber) {
  EXPECT_FALSE(VdmValue(*FindVdmObservable(7), 0xFFFF).has_value());
  EXPECT_FALSE(VdmValue(*FindVdmObservable(8), 0xFFFF).has_value());
  EXPECT_EQ(VdmValue(*FindVdmObservable(5), 0xFFFF), 255.99609375);
}

TEST(VdmThresholds, AreAbsentAtTheEndsOfTheirRange) {
  const VdmObservable& snr = *FindVdmObservable(5);
  EXPECT_FALSE(VdmThreshold(snr, 0x0000).has_value());
  EXPECT_FALSE(VdmThreshold(snr, 0xFFFF).has_value());
  EXPECT_EQ(VdmThreshold(snr, 0x8000), 128.0);
  EXPECT_EQ(VdmThreshold(snr, 0x0001), 1.0 / 256);

  const VdmObservable& frequency = *FindVdmObservable(3);
  EXPECT_FALSE(VdmThreshold(frequency, 0x8000).has_value());
  EXPECT_FALSE(VdmThreshold(frequency, 0x7FFF).has_value());
  EXPECT_EQ(VdmThreshold(frequency, 0x0000), 0.0);
  EXPECT_EQ(VdmThreshold(frequency, 0xFFFF), -10.0);

  const VdmObservable& ber = *FindVdmObservable(15);
  EXPECT_FALSE(VdmThreshold(ber, 0x0000).has_value());
  EXPECT_FALSE(VdmThreshold(ber, 0xFFFF).has_value());
  EXPECT_EQ(VdmThreshold(ber, 0x7078), 1.2e-8);
}

// ---------------------------------------------------------------------------------------------
// Pages 20h to 2Fh
// ---------------------------------------------------------------------------------------------

using cable_info::AlarmLevel;
using cable_info::FieldState;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::PageOf;
using cable_info::VdmSample;
using cmis_memory::FullModule;
using cmis_memory::Memory;

// A module with all pages of VDM.
Memory VdmModule() {
  Memory memory = FullModule();
  for (unsigned page = 0x20; page < 0x30; ++page) {
    memory.Add(PageOf(static_cast<std::uint8_t>(page)));
  }
  memory.Put(PageOf(0x2F), 128, {0x03});
  return memory;
}

TEST(Vdm, UnusedInstancesAreLeftOut) { EXPECT_TRUE(VdmModule().Decode().vdm.empty()); }

TEST(Vdm, ASampleHasItsObservableLaneAndValue) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0x20, 5, 0x27, 6, 0x1F, 15});
  memory.Put(PageOf(0x24), 128, {0x16, 0x80, 0x19, 0x00, 0x70, 0x78});
  const std::vector<VdmSample> vdm = memory.Decode().vdm;
  ASSERT_EQ(vdm.size(), 3U);
  EXPECT_EQ(vdm[0].observable, "esnr_media");
  EXPECT_EQ(vdm[0].type, 5U);
  EXPECT_EQ(vdm[0].instance, "lane 1");
  EXPECT_EQ(vdm[0].lane, 1U);
  EXPECT_EQ(vdm[0].unit, "dB");
  EXPECT_EQ(vdm[0].monitor.state, FieldState::kPresent);
  EXPECT_EQ(vdm[0].monitor.value, 22.5);
  EXPECT_EQ(vdm[1].observable, "esnr_host");
  EXPECT_EQ(vdm[1].instance, "lane 8");
  EXPECT_EQ(vdm[1].monitor.value, 25.0);
  EXPECT_EQ(vdm[2].observable, "pre_fec_ber_current_media");
  EXPECT_EQ(vdm[2].instance, "module");
  EXPECT_EQ(vdm[2].lane, 0U);
  EXPECT_EQ(vdm[2].monitor.value, 1.2e-8);
}

// The thresholds of a sample, from high alarm to low warning; -1 for those that are absent.
std::vector<double> ThresholdsOf(const VdmSample& sample) {
  std::vector<double> thresholds;
  for (const AlarmLevel level : {AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm,
                                 AlarmLevel::kHighWarning, AlarmLevel::kLowWarning}) {
    thresholds.push_back(sample.monitor.thresholds.At(level).value_or(-1.0));
  }
  return thresholds;
}

TEST(Vdm, ThresholdSetsBelongToTheGroup) {
  for (unsigned group = 0; group < 4; ++group) {
    const auto page = [group](unsigned first) {
      return PageOf(static_cast<std::uint8_t>(first + group));
    };
    Memory memory = VdmModule();
    memory.Put(page(0x20), 254, {0xF0, 5});                 // set 15
    memory.Put(page(0x24), 254, {0x01, 0x00});              // 1 dB
    memory.Put(page(0x28), 248, {4, 0, 1, 0, 3, 0, 2, 0});  // set 15
    memory.Put(page(0x28), 240, {9, 0, 9, 0, 9, 0, 9, 0});  // set 14
    const std::vector<VdmSample> vdm = memory.Decode().vdm;
    ASSERT_EQ(vdm.size(), 1U);
    EXPECT_EQ(vdm[0].monitor.value, 1.0);
    EXPECT_EQ(ThresholdsOf(vdm[0]), (std::vector<double>{4, 1, 3, 2}));
  }
}

TEST(Vdm, ThresholdsAtTheEndsOfTheRangeAreAbsent) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0x00, 3, 0x10, 5});
  memory.Put(PageOf(0x28), 128, {0x7F, 0xFF, 0x80, 0x00, 0x00, 0x05, 0x00, 0x00});
  memory.Put(PageOf(0x28), 136, {0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0x01, 0x00});
  const std::vector<VdmSample> vdm = memory.Decode().vdm;
  ASSERT_EQ(vdm.size(), 2U);
  EXPECT_EQ(vdm[0].monitor.thresholds.given, 0b1100);
  EXPECT_EQ(vdm[0].monitor.thresholds.At(AlarmLevel::kHighWarning), 50.0);
  EXPECT_EQ(vdm[0].monitor.thresholds.At(AlarmLevel::kLowWarning), 0.0);
  EXPECT_EQ(vdm[1].monitor.thresholds.given, 0b1000);
  EXPECT_EQ(vdm[1].monitor.thresholds.At(AlarmLevel::kLowWarning), 1.0);
  memory.Put(PageOf(0x28), 128, {0, 0, 0, 0, 0, 0, 0, 0});
  EXPECT_EQ(memory.Decode().vdm[0].monitor.thresholds.given, 0);
}

TEST(Vdm, FlagsHaveOneNibblePerInstance) {
  struct Place {
    unsigned group;
    unsigned instance;
    std::size_t byte;
    unsigned bits;
  };
  for (const Place& place : {Place{0, 0, 128, 0x05}, Place{0, 1, 128, 0x50},
                             Place{0, 63, 159, 0x50}, Place{3, 62, 255, 0x05}}) {
    Memory memory = VdmModule();
    memory.Put(PageOf(static_cast<std::uint8_t>(0x20 + place.group)),
               128 + std::size_t{2} * place.instance, {0x00, 5});
    memory.Put(PageOf(0x2C), place.byte, {place.bits});
    const std::vector<VdmSample> vdm = memory.Decode().vdm;
    ASSERT_EQ(vdm.size(), 1U);
    EXPECT_EQ(vdm[0].monitor.flags.known, 0b1111);
    EXPECT_EQ(vdm[0].monitor.flags.raised, 0b0101);  // high alarm and high warning
  }
}

TEST(Vdm, AnUnknownObservableKeepsItsNumbers) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0x01, 100}).Put(PageOf(0x24), 128, {0x80, 0x01});
  memory.Put(PageOf(0x28), 128, {0xFF, 0x00, 0, 1, 0, 2, 0, 3});
  const std::vector<VdmSample> vdm = memory.Decode().vdm;
  ASSERT_EQ(vdm.size(), 1U);
  EXPECT_EQ(vdm[0].observable, "");
  EXPECT_EQ(vdm[0].type, 100U);
  EXPECT_EQ(vdm[0].unit, "");
  EXPECT_EQ(vdm[0].instance, "lane 2");
  EXPECT_EQ(vdm[0].monitor.value, 32769.0);
  EXPECT_EQ(vdm[0].monitor.thresholds.At(AlarmLevel::kHighAlarm), 65280.0);
}

TEST(Vdm, AnInfiniteLevelTransitionHasNoValue) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0x00, 7}).Put(PageOf(0x24), 128, {0xFF, 0xFF});
  EXPECT_FALSE(memory.Decode().vdm.at(0).monitor.IsPresent());
}

TEST(Vdm, MissingPagesAreNotRead) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x21), 128, {0x00, 5});
  memory.Drop(PageOf(0x25)).Drop(PageOf(0x29)).Drop(PageOf(0x2C));
  const std::vector<VdmSample> vdm = memory.Decode().vdm;
  ASSERT_EQ(vdm.size(), 1U);
  EXPECT_EQ(vdm[0].monitor.state, FieldState::kNotRead);
  EXPECT_EQ(vdm[0].monitor.thresholds.given, 0);
  EXPECT_EQ(vdm[0].monitor.flags.known, 0);
}

TEST(Vdm, GroupsAreThoseThatTheModuleSupports) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0, 5}).Put(PageOf(0x22), 128, {0, 5});
  EXPECT_EQ(memory.Decode().vdm.size(), 2U);
  memory.Put(PageOf(0x2F), 128, {0x01});
  EXPECT_EQ(memory.Decode().vdm.size(), 1U);
  memory.Drop(PageOf(0x2F));
  EXPECT_EQ(memory.Decode().vdm.size(), 2U);
}

TEST(Vdm, LanesOfOtherBanksAreNumberedConsecutively) {
  Memory memory = VdmModule();
  memory.Put(Page::k01, 142, {0xFD});  // two banks
  memory.Add(PageOf(0x20, 1)).Put(PageOf(0x20, 1), 128, {0x02, 5});
  memory.Add(PageOf(0x24, 1)).Put(PageOf(0x24, 1), 128, {0x02, 0x00});
  const std::vector<VdmSample> vdm = memory.Decode().vdm;
  ASSERT_EQ(vdm.size(), 1U);
  EXPECT_EQ(vdm[0].instance, "lane 11");
  EXPECT_EQ(vdm[0].monitor.value, 2.0);
}

// All 64 instances of all four groups, in all of which descriptor, value, threshold set and flags
// differ from their neighbours'.
TEST(Vdm, EveryInstanceHasItsPlaces) {
  for (unsigned group = 0; group < 4; ++group) {
    const auto page = [group](unsigned first) {
      return PageOf(static_cast<std::uint8_t>(first + group));
    };
    Memory memory = VdmModule();
    for (unsigned i = 0; i < 64; ++i) {
      memory.Put(page(0x20), 128 + 2 * i, {(i % 16) << 4U | i % 8, 27});  // set, lane - 1, type
      memory.Word(page(0x24), 128 + 2 * i, 1000 + i);
    }
    for (unsigned set = 0; set < 16; ++set) {
      for (unsigned level = 0; level < 4; ++level) {
        memory.Word(page(0x28), 128 + 8 * set + 2 * level, 100 * set + level + 1);
      }
    }
    for (unsigned i = 0; i < 32; ++i) {
      memory.Put(PageOf(0x2C), 128 + 32 * group + i, {(2 * i % 16) | ((2 * i + 1) % 16) << 4U});
    }
    const std::vector<VdmSample> vdm = memory.Decode().vdm;
    ASSERT_EQ(vdm.size(), 64U);
    for (unsigned i = 0; i < 64; ++i) {
      SCOPED_TRACE(i);
      const double first = 100 * (i % 16) + 1;
      EXPECT_EQ(vdm[i].lane, i % 8 + 1);
      EXPECT_EQ(vdm[i].monitor.value, 1000 + i);
      EXPECT_EQ(ThresholdsOf(vdm[i]),
                (std::vector<double>{first, first + 1, first + 2, first + 3}));
      EXPECT_EQ(vdm[i].monitor.flags.raised, i % 16);
    }
  }
}

TEST(Vdm, FlagsAreHighAlarmLowAlarmHighWarningLowWarning) {
  constexpr AlarmLevel kLevels[] = {AlarmLevel::kHighAlarm, AlarmLevel::kLowAlarm,
                                    AlarmLevel::kHighWarning, AlarmLevel::kLowWarning};
  for (unsigned bit = 0; bit < 4; ++bit) {
    Memory memory = VdmModule();
    memory.Put(PageOf(0x20), 128, {0x00, 5}).Put(PageOf(0x2C), 128, {1U << bit});
    const cable_info::AlarmFlags flags = memory.Decode().vdm.at(0).monitor.flags;
    for (unsigned level = 0; level < 4; ++level) {
      EXPECT_EQ(flags.At(kLevels[level]), level == bit);
    }
  }
}

TEST(Vdm, TypesOfLaterRevisionsAreRawNumbers) {
  struct Case {
    unsigned type;
    unsigned since;
  };
  for (const Case& it : {Case{24, 0x40}, Case{25, 0x52}, Case{26, 0x52}, Case{27, 0x53},
                         Case{84, 0x53}, Case{128, 0x40}}) {
    Memory memory = VdmModule();
    memory.Put(PageOf(0x20), 128, {0x00, it.type}).Word(PageOf(0x24), 128, 0xC805);
    memory.Put(Page::kLower, 1, {it.since});
    EXPECT_NE(memory.Decode().vdm.at(0).observable, "") << it.type;
    if (it.since == 0x40) continue;
    memory.Put(Page::kLower, 1, {it.since - 1});
    EXPECT_EQ(memory.Decode().vdm.at(0).observable, "") << it.type;
    EXPECT_EQ(memory.Decode().vdm.at(0).monitor.value, 51205.0) << it.type;
  }
}

TEST(Vdm, ExternalLasersAreNoLanes) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0x02, 84, 0x0F, 84}).Word(PageOf(0x24), 128, 0xFF9C);
  const std::vector<VdmSample> vdm = memory.Decode().vdm;
  ASSERT_EQ(vdm.size(), 2U);
  EXPECT_EQ(vdm[0].instance, "laser 3");
  EXPECT_EQ(vdm[0].lane, 0U);
  EXPECT_EQ(vdm[0].monitor.value, -1.0);
  EXPECT_EQ(vdm[1].instance, "module");
}

TEST(Vdm, NeedsCmis40) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0, 5}).Put(Page::kLower, 1, {0x30});
  EXPECT_TRUE(memory.Decode().vdm.empty());
}

TEST(Vdm, PagesThatAreNotAdvertisedAreNotUsed) {
  Memory memory = VdmModule();
  memory.Put(PageOf(0x20), 128, {0, 5}).Put(Page::k01, 142, {0xBC}).Sum();
  const ModuleInfo info = memory.Decode();
  EXPECT_TRUE(info.vdm.empty());
  ASSERT_EQ(info.warnings.size(), 1U);
  EXPECT_NE(info.warnings[0].find("VDM"), std::string::npos);
  memory.Drop(Page::k01);
  EXPECT_EQ(memory.Decode().vdm.size(), 1U);
}

// ---------------------------------------------------------------------------------------------
// Pages 34h and 35h
// ---------------------------------------------------------------------------------------------

constexpr Page kCounters = PageOf(0x34);
constexpr Page kLinkMonitors = PageOf(0x35);

const VdmSample* FindSample(const ModuleInfo& info, std::string_view observable) {
  for (const VdmSample& sample : info.vdm) {
    if (sample.observable == observable) return &sample;
  }
  return nullptr;
}

TEST(Coherent, CountersAreBigEndianNumbers) {
  Memory memory = FullModule();
  memory.Add(kCounters);
  memory.Put(kCounters, 128, {0, 0, 0, 1, 0, 0, 0, 2});
  const char* const kNames[] = {"fec_received_frames", "fec_frames_per_subinterval",
                                "fec_uncorrectable_frames", "fec_uncorrectable_frames_minimum",
                                "fec_uncorrectable_frames_maximum"};
  for (unsigned i = 0; i < 5; ++i) memory.Put(kCounters, 168 + 4 * i, {0, 1, 0, i});
  const char* const kBits[] = {"fec_bits_per_subinterval", "fec_corrected_bits",
                               "fec_corrected_bits_minimum", "fec_corrected_bits_maximum"};
  for (unsigned i = 0; i < 4; ++i) memory.Put(kCounters, 143 + 8 * i, {i + 7});
  const ModuleInfo info = memory.Decode();
  ASSERT_EQ(info.vdm.size(), 10U);
  EXPECT_EQ(info.vdm[0].observable, "fec_received_bits");
  EXPECT_EQ(info.vdm[0].unit, "bits");
  EXPECT_EQ(info.vdm[0].instance, "lane 1");
  EXPECT_EQ(info.vdm[0].monitor.value, 4294967298.0);
  for (unsigned i = 0; i < 5; ++i) {
    const VdmSample* const sample = FindSample(info, kNames[i]);
    ASSERT_NE(sample, nullptr) << kNames[i];
    EXPECT_EQ(sample->monitor.value, 65536 + i) << kNames[i];
  }
  for (unsigned i = 0; i < 4; ++i) {
    const VdmSample* const sample = FindSample(info, kBits[i]);
    ASSERT_NE(sample, nullptr) << kBits[i];
    EXPECT_EQ(sample->monitor.value, i + 7) << kBits[i];
  }
}

TEST(Coherent, LinkMonitorsHaveAverageMinimumAndMaximum) {
  struct Case {
    const char* name;
    unsigned byte;
    unsigned raw;
    double value;
    const char* unit;
  };
  const Case kCases[] = {
      {"differential_group_delay", 140, 250, 2.5, "ps"},
      {"sopmd", 146, 120, 1.2, "ps^2"},
      {"polarization_dependent_loss", 152, 13, 1.3, "dB"},
      {"osnr", 158, 351, 35.1, "dB"},
      {"esnr", 164, 162, 16.2, "dB"},
      {"carrier_frequency_offset", 170, 0xFF38, -200, "MHz"},
      {"error_vector_magnitude", 176, 65535, 100, "%"},
      {"tx_power", 182, 0xFC18, -10, "dBm"},
      {"rx_total_power", 188, 0xFF38, -2, "dBm"},
      {"rx_signal_power", 194, 150, 1.5, "dBm"},
      {"sop_rate_of_change", 200, 7, 7, "krad/s"},
      {"modulation_error_ratio", 206, 181, 18.1, "dB"},
      {"clock_recovery_loop", 212, 0x7FFF, 100, "%"},
      {"snr_margin", 224, 0xFFF6, -1, "dB"},
      {"q_factor", 230, 99, 9.9, "dB"},
      {"q_margin", 236, 41, 4.1, "dB"},
  };
  for (const Case& it : kCases) {
    const char* const kKinds[] = {"_average", "_minimum", "_maximum"};
    for (unsigned kind = 0; kind < 3; ++kind) {
      Memory memory = FullModule();
      memory.Add(kLinkMonitors).Word(kLinkMonitors, it.byte + 2 * kind, it.raw);
      const ModuleInfo info = memory.Decode();
      const VdmSample* const sample = FindSample(info, std::string(it.name) + kKinds[kind]);
      ASSERT_NE(sample, nullptr) << it.name << kKinds[kind];
      EXPECT_DOUBLE_EQ(sample->monitor.value, it.value) << it.name << kKinds[kind];
      EXPECT_EQ(sample->unit, it.unit) << it.name;
    }
  }
  Memory memory = FullModule();
  memory.Add(kLinkMonitors).Put(kLinkMonitors, 132, {0xFF, 0xFF, 0xFE, 0x0C, 0, 1, 0, 2});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.vdm.size(), 51U);
  EXPECT_EQ(FindSample(info, "chromatic_dispersion_minimum")->monitor.value, -500);
  EXPECT_EQ(FindSample(info, "chromatic_dispersion_average")->monitor.value, 0);
  EXPECT_EQ(FindSample(info, "chromatic_dispersion_maximum")->monitor.value, 65538);
  EXPECT_EQ(FindSample(info, "chromatic_dispersion_average")->unit, "ps/nm");
  memory.Put(kLinkMonitors, 128, {0x80, 0, 0, 0});
  EXPECT_EQ(memory.Decode().vdm.at(0).monitor.value, -2147483648.0);
}

TEST(Coherent, ABankIsAMediaLane) {
  Memory memory = FullModule();
  memory.Add(PageOf(0x35, 1));
  EXPECT_EQ(memory.Decode().vdm.at(0).instance, "lane 2");
}

TEST(Coherent, PagesThatAreNotAdvertisedAreNotUsed) {
  Memory memory = FullModule();
  memory.Add(kLinkMonitors).Put(Page::k01, 142, {0xEC});
  EXPECT_TRUE(memory.Decode().vdm.empty());
  memory.Put(Page::kLower, 1, {0x52});  // tunable transmitters have them
  EXPECT_FALSE(memory.Decode().vdm.empty());
  memory.Put(Page::k01, 155, {0xBF});
  EXPECT_TRUE(memory.Decode().vdm.empty());
}

}  // namespace
