#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>

#include "cable_info/phy_cable_record.h"

namespace cable_info::test {
namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;
using Renderer = std::string (PhyCableRecord::*)(bool) const;
using FlagsRenderer = std::string (PhyCableRecord::*)() const;

constexpr Renderer kTxPower[] = {&PhyCableRecord::TX1PowerToStr, &PhyCableRecord::TX2PowerToStr,
                                 &PhyCableRecord::TX3PowerToStr, &PhyCableRecord::TX4PowerToStr,
                                 &PhyCableRecord::TX5PowerToStr, &PhyCableRecord::TX6PowerToStr,
                                 &PhyCableRecord::TX7PowerToStr, &PhyCableRecord::TX8PowerToStr};
constexpr Renderer kRxPower[] = {&PhyCableRecord::RX1PowerToStr, &PhyCableRecord::RX2PowerToStr,
                                 &PhyCableRecord::RX3PowerToStr, &PhyCableRecord::RX4PowerToStr,
                                 &PhyCableRecord::RX5PowerToStr, &PhyCableRecord::RX6PowerToStr,
                                 &PhyCableRecord::RX7PowerToStr, &PhyCableRecord::RX8PowerToStr};
constexpr Renderer kTxBias[] = {&PhyCableRecord::TXBias1ToStr, &PhyCableRecord::TXBias2ToStr,
                                &PhyCableRecord::TXBias3ToStr, &PhyCableRecord::TXBias4ToStr,
                                &PhyCableRecord::TXBias5ToStr, &PhyCableRecord::TXBias6ToStr,
                                &PhyCableRecord::TXBias7ToStr, &PhyCableRecord::TXBias8ToStr};

std::string Fixed3(double value) {
  char text[400];
  std::snprintf(text, sizeof(text), "%.3f", value);
  return text;
}

TEST(PhyPower, InDbmHasAMarkerForZeroAndNegativePowers) {
  const PhyCableRecord r;
  EXPECT_EQ(r.mW_to_dBm(0.0), -999.999);
  EXPECT_EQ(r.mW_to_dBm(-0.0), -999.999);
  EXPECT_EQ(r.mW_to_dBm(-1.0), -999.999);
  EXPECT_EQ(r.mW_to_dBm(1.0), 0.0);
  EXPECT_EQ(r.mW_to_dBm(100.0), 20.0);
  EXPECT_TRUE(std::isnan(r.mW_to_dBm(std::numeric_limits<double>::quiet_NaN())));
}

TEST(PhyPower, InMilliwattsHasAMarkerForZeroDbm) {
  const PhyCableRecord r;
  EXPECT_EQ(r.dBm_to_mW(0.0), -999.999);
  EXPECT_EQ(r.dBm_to_mW(-0.0), -999.999);
  EXPECT_DOUBLE_EQ(r.dBm_to_mW(10.0), 10.0);
  EXPECT_DOUBLE_EQ(r.dBm_to_mW(-10.0), 0.1);
  EXPECT_TRUE(std::isnan(r.dBm_to_mW(std::numeric_limits<double>::quiet_NaN())));
}

TEST(PhyPowerLine, ShowsTenthsOfMicrowatts) {
  const PhyCableRecord r;
  EXPECT_EQ(r.PowerLineToStr(5230, 1, true), "0.523");
  EXPECT_EQ(r.PowerLineToStr(5230, 1, false), "0.523 mW, -2.815 dBm");
  EXPECT_EQ(r.PowerLineToStr(0, 1, true), "0.000");
  EXPECT_EQ(r.PowerLineToStr(0, 65535, false), "0.000 mW, -999.999 dBm");
  for (int raw = 0; raw < 65536; ++raw) {
    const double mw = raw * 0.0001;
    ASSERT_EQ(r.PowerLineToStr(raw, 1, true), Fixed3(mw)) << raw;
    const double dbm = raw == 0 ? -999.999 : 10 * std::log10(mw);
    ASSERT_EQ(r.PowerLineToStr(raw, 1, false), Fixed3(mw) + " mW, " + Fixed3(dbm) + " dBm") << raw;
  }
}

TEST(PhyPowerLine, ScalesInDoubleAndByMultiplication) {
  const PhyCableRecord r;
  // The number of values whose last digit would differ with a division by 10,000.
  int differences = 0;
  for (int raw = 0; raw < 65536; ++raw) {
    if (r.PowerLineToStr(raw, 1, true) != Fixed3(raw / 10000.0)) ++differences;
  }
  EXPECT_EQ(differences, 2022);
}

TEST(PhyPowerLine, ReadsDbmWithoutTheUnitFlag) {
  const PhyCableRecord r;
  EXPECT_EQ(r.PowerLineToStr(0, 0, true), "-999.999");
  EXPECT_EQ(r.PowerLineToStr(0, 0, false), "-999.999 mW, 0.000 dBm");
  EXPECT_EQ(r.PowerLineToStr(10, 0, false), "10.000 mW, 10.000 dBm");
  EXPECT_EQ(r.PowerLineToStr(-10, 0, false), "0.100 mW, -10.000 dBm");
  EXPECT_EQ(r.PowerLineToStr(-0.0, 0, false), "-999.999 mW, -0.000 dBm");
  const std::string large = r.PowerLineToStr(3000, 0, true);
  EXPECT_EQ(large, Fixed3(std::pow(10.0, 300.0)));
  EXPECT_EQ(large.size(), 305U);
  EXPECT_EQ(r.PowerLineToStr(3083, 0, true), "inf");
  EXPECT_EQ(r.PowerLineToStr(65535, 0, false), "inf mW, 65535.000 dBm");
}

TEST(PhyPowerLine, ShowsNanAndInfinities) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  const PhyCableRecord r;
  EXPECT_EQ(r.PowerLineToStr(kNan, 0, false), "nan mW, nan dBm");
  EXPECT_EQ(r.PowerLineToStr(kNan, 1, false), "nan mW, nan dBm");
  EXPECT_EQ(r.PowerLineToStr(-5230, 1, false), "-0.523 mW, -999.999 dBm");
}

TEST(PhyLanes, AreStoredPairwiseSwapped) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  r.module->power_unit_flag = 1;
  for (int i = 0; i < 8; ++i) {
    r.module->rx_power[i] = static_cast<std::uint16_t>(10000 * (i % 6 + 1));
    r.module->tx_power[i] = static_cast<std::uint16_t>(1000 * (i + 1));
    r.module->tx_bias[i] = static_cast<std::uint16_t>(500 * (i + 1));
  }
  // The index of lane n in memory, from 0.
  constexpr int kPlace[] = {1, 0, 3, 2, 5, 4, 7, 6};
  for (int lane = 1; lane <= 8; ++lane) {
    const int place = kPlace[lane - 1];
    const double rx = place % 6 + 1;
    const double tx = (place + 1) / 10.0;
    const double bias = place + 1;
    EXPECT_EQ((r.*kRxPower[lane - 1])(true), Fixed3(rx)) << lane;
    EXPECT_EQ((r.*kTxPower[lane - 1])(true), Fixed3(tx)) << lane;
    EXPECT_EQ((r.*kTxBias[lane - 1])(true), Fixed3(bias)) << lane;
    EXPECT_EQ((r.*kTxBias[lane - 1])(false), Fixed3(bias) + " mA") << lane;
    EXPECT_EQ((r.*kRxPower[lane - 1])(false),
              Fixed3(rx) + " mW, " + Fixed3(10 * std::log10(rx)) + " dBm");
    EXPECT_EQ((r.*kTxPower[lane - 1])(false),
              Fixed3(tx) + " mW, " + Fixed3(10 * std::log10(tx)) + " dBm");
  }
  r.module->power_unit_flag = 0;
  r.module->rx_power[1] = 10;
  EXPECT_EQ(r.RX1PowerToStr(false), "10.000 mW, 10.000 dBm");
}

TEST(PhyLanes, AreMissingWithoutModule) {
  const PhyCableRecord r;
  EXPECT_EQ(r.EmptyPowerLineToStr(true), "\"NA\"");
  EXPECT_EQ(r.EmptyPowerLineToStr(false), "N/A N/A");
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ((r.*kRxPower[i])(true), "\"NA\"");
    EXPECT_EQ((r.*kRxPower[i])(false), "N/A N/A");
    EXPECT_EQ((r.*kTxPower[i])(true), "\"NA\"");
    EXPECT_EQ((r.*kTxPower[i])(false), "N/A N/A");
    EXPECT_EQ((r.*kTxBias[i])(true), "\"NA\"");
    EXPECT_EQ((r.*kTxBias[i])(false), "N/A");
  }
}

TEST(PhyBias, IsInUnitsOfTwoMicroamperes) {
  const PhyCableRecord r;
  EXPECT_EQ(r.TXBiasToStr(false, 3500), "7.000 mA");
  EXPECT_EQ(r.TXBiasToStr(true, 3500), "7.000");
  EXPECT_EQ(r.TXBiasToStr(true, -1), "-0.002");
  EXPECT_EQ(r.TXBiasToStr(true, std::numeric_limits<double>::quiet_NaN()), "nan");
  for (int raw = 0; raw < 65536; ++raw) {
    ASSERT_EQ(r.TXBiasToStr(true, raw), Fixed3(raw / 500.0));
  }
}

// ---------------------------------------------------------------------------------------------
// Temperature
// ---------------------------------------------------------------------------------------------

TEST(PhyTemperature, IsReadFromItsWords) {
  PhyCableRecord r;
  EXPECT_EQ(r.GetTemperatureStr(), "N/A");
  EXPECT_EQ(r.GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(r.GetLowTemperatureThresholdStr(), "N/A");
  r.SetModule(std::make_unique<ModuleRecord>());
  r.module->temperature = 0x29FF;
  r.module->temp_high_threshold = 75 << 8;
  r.module->temp_low_threshold = 0xFB00;
  EXPECT_EQ(r.GetTemperatureStr(), "41C");
  EXPECT_EQ(r.GetHighTemperatureThresholdStr(), "75C");
  EXPECT_EQ(r.GetLowTemperatureThresholdStr(), "-5C");
  r.module->temperature = 0x8000;
  EXPECT_EQ(r.GetTemperatureStr(), "N/A");
  r.module->cable_technology = 0xB0;
  EXPECT_EQ(r.GetHighTemperatureThresholdStr(), "N/A");
}

TEST(PhyTemperatureErrors, CompareWithTheThresholds) {
  struct Case {
    unsigned technology;
    int reading, high, low, errors;
  };
  constexpr Case kCases[] = {
      {0x00, 71, 70, 0, 1},  {0x00, 70, 70, 0, 0},    {0x00, -1, 70, 0, 2},   {0x00, 0, 70, 0, 0},
      {0x00, 30, 20, 40, 3}, {0xA0, 90, 70, 0, 0},    {0xBF, 90, 70, 0, 0},   {0xC0, 90, 70, 0, 1},
      {0x0A, 90, 70, 0, 1},  {0x00, 126, 70, 0, 0},   {0x00, -128, 70, 0, 0}, {0x00, -41, 70, 0, 0},
      {0x00, 90, 126, 0, 0}, {0x00, -30, 70, -41, 0}, {0x00, 125, 124, 0, 1},
  };
  PhyCableRecord r;
  EXPECT_EQ(r.GetTemperatureErrorsByTreshold(), 0);
  r.SetModule(std::make_unique<ModuleRecord>());
  const auto word = [](int degrees) {
    return static_cast<std::uint16_t>(static_cast<std::uint8_t>(degrees) << 8 | 0x80);
  };
  for (const Case& c : kCases) {
    r.module->cable_technology = static_cast<std::uint8_t>(c.technology);
    r.module->temperature = word(c.reading);
    r.module->temp_high_threshold = word(c.high);
    r.module->temp_low_threshold = word(c.low);
    EXPECT_EQ(r.GetTemperatureErrorsByTreshold(), c.errors) << c.technology << ' ' << c.reading;
  }
}

// ---------------------------------------------------------------------------------------------
// Latched flags
// ---------------------------------------------------------------------------------------------

TEST(PhyLatchedFlags, AreMissingWithoutTheirPage) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  for (const FlagsRenderer renderer :
       {&PhyCableRecord::LatchedTxRxIndicatorToStr, &PhyCableRecord::LatchedTxRxLolIndicatorToStr,
        &PhyCableRecord::LatchedAdaptiveEqualizationFaultToStr,
        &PhyCableRecord::LatchedTempAlarmAndWarningToStr,
        &PhyCableRecord::LatchedVoltageAlarmAndWarningToStr,
        &PhyCableRecord::TXPowerAlarmAndWarningToStr, &PhyCableRecord::TXBiasAlarmAndWarningToStr,
        &PhyCableRecord::RXPowerAlarmAndWarningToStr}) {
    EXPECT_EQ((r.*renderer)(), "N/A");
  }
  EXPECT_EQ(r.GetTemperatureAlarms(), 0);
}

TEST(PhyLatchedFlags, ArePackedIntoBytes) {
  PhyCableRecord r;
  r.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  LatchedFlagsPage& page = *r.latched_flags;
  page.latched_tx_los = 0x13;
  page.latched_rx_los = 0x2C;
  page.latched_tx_cdr_lol = 0xF5;
  page.latched_rx_cdr_lol = 0x4A;
  page.latched_tx_adaptive_eq_fault = 0xF6;
  page.latched_temperature_flags = 0xF9;
  page.latched_voltage_flags = 0x08;
  EXPECT_EQ(r.LatchedTxRxIndicatorToStr(), "0x3c");
  EXPECT_EQ(r.LatchedTxRxLolIndicatorToStr(), "0x5a");
  EXPECT_EQ(r.LatchedAdaptiveEqualizationFaultToStr(), "0x06");
  EXPECT_EQ(r.LatchedTempAlarmAndWarningToStr(), "0xf9");
  EXPECT_EQ(r.LatchedVoltageAlarmAndWarningToStr(), "0x08");
  EXPECT_EQ(r.GetTemperatureAlarms(), 0xF9);
}

TEST(PhyLatchedFlags, AreInterleavedIntoWords) {
  PhyCableRecord r;
  r.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  LatchedFlagsPage& page = *r.latched_flags;
  page.latched_tx_power_high_alarm = 0x01;
  page.latched_tx_power_low_alarm = 0x02;
  page.latched_tx_power_high_warning = 0x04;
  page.latched_tx_power_low_warning = 0x08;
  EXPECT_EQ(r.TXPowerAlarmAndWarningToStr(), "0x8421");
  page.latched_tx_bias_high_alarm = 0x08;
  page.latched_tx_bias_low_alarm = 0x04;
  page.latched_tx_bias_high_warning = 0x02;
  page.latched_tx_bias_low_warning = 0x01;
  EXPECT_EQ(r.TXBiasAlarmAndWarningToStr(), "0x1248");
  page.latched_rx_power_high_alarm = 0xF1;
  page.latched_rx_power_low_warning = 0xF8;
  EXPECT_EQ(r.RXPowerAlarmAndWarningToStr(), "0x8001");
}

TEST(PhyLatchedFlags, InterleaveAnyFourMasks) {
  const PhyCableRecord r;
  EXPECT_EQ(r.QuadroToInt(0x1, 0, 0, 0x8), 0x8001);
  EXPECT_EQ(r.QuadroToInt(0xF0, 0xF0, 0xF0, 0xF0), 0);
  for (unsigned masks = 0; masks < 65536; ++masks) {
    const unsigned in[] = {masks & 0xF, masks >> 4 & 0xF, masks >> 8 & 0xF, masks >> 12};
    unsigned expected = 0;
    for (unsigned lane = 0; lane < 4; ++lane) {
      for (unsigned kind = 0; kind < 4; ++kind) {
        if ((in[kind] >> lane & 1) != 0) expected |= 1U << (15 - 4 * lane - kind);
      }
    }
    const auto byte = [](unsigned value) { return static_cast<std::uint8_t>(value); };
    ASSERT_EQ(r.QuadroToInt(byte(in[0]), byte(in[1]), byte(in[2]), byte(in[3])), expected);
  }
}

}  // namespace
}  // namespace cable_info::test
