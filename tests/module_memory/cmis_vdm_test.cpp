#include "cable_info/module_memory/cmis_vdm.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

using cable_info::FindVdmObservable;
using cable_info::Float16;
using cable_info::VdmObservable;
using cable_info::VdmThreshold;
using cable_info::VdmValue;

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

}  // namespace
