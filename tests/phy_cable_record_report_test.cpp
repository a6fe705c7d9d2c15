#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "cable_info/phy_cable_record.h"
#include "random_records.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;

std::string Report(const PhyCableRecord& record) {
  return Written([&](std::ostream& os) { record.ToFileStream(os); });
}

TEST(PhyCableRecordReport, ShowsEveryFieldOnItsLine) {
  PhyCableRecord r;
  r.source = "PHY";
  r.prtl_length = "29.5 m";
  r.SetModule(std::make_unique<ModuleRecord>());
  ModuleRecord& m = *r.module;
  m.power_unit_flag = 1;
  m.compliance_code = 0x1C;
  m.cable_technology = 0x4C;
  m.power_class = 5;
  m.cable_identifier = 1;
  m.cable_length = 30;
  m.tx_input_eq = 10;
  m.rx_output_pre_emp = 11;
  m.rx_output_amp = 12;
  m.rx_output_post_emp = 13;
  m.tx_cdr_state = 0x0F;
  m.rx_cdr_state = 0xF0;
  m.tx_cdr_cap = m.rx_cdr_cap = 1;
  std::strcpy(m.vendor_name, "Acme");
  std::strcpy(m.vendor_pn, "P,N");
  std::strcpy(m.vendor_sn, "S,N");
  std::strcpy(m.vendor_rev, "A1");
  m.fw_version = 0x01020304;
  m.voltage = 33000;
  m.temperature = 0x2A80;
  for (unsigned i = 0; i < 8; ++i) {
    m.rx_power[i] = static_cast<std::uint16_t>(i % 2 == 0 ? 10000 : 0);
    m.tx_power[i] = static_cast<std::uint16_t>(1000 * (i + 1));
    m.tx_bias[i] = static_cast<std::uint16_t>(500 * (i + 1));
  }
  m.temp_low_threshold = 0xFB00;
  m.temp_high_threshold = 0x4B00;
  m.voltage_low_threshold = 29700;
  m.voltage_high_threshold = 36300;
  m.rx_power_low_threshold = 1001;
  m.rx_power_high_threshold = 1002;
  m.tx_power_low_threshold = 1003;
  m.tx_power_high_threshold = 1004;
  m.tx_bias_low_threshold = 1005;
  m.tx_bias_high_threshold = 1006;
  m.rx_power_type = 255;
  m.ib_compliance_code = 0x30;
  m.nominal_bitrate = 103;
  m.lot = 0x00AB;
  m.SetDateCode("240315");
  m.vendor_oui = 0x1B21;
  r.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  LatchedFlagsPage& p = *r.latched_flags;
  p.latched_tx_los = 0x13;
  p.latched_rx_los = 0x2C;
  p.latched_tx_adaptive_eq_fault = 0xF6;
  p.latched_tx_cdr_lol = 0x05;
  p.latched_rx_cdr_lol = 0x0A;
  p.latched_temperature_flags = 0xF1;
  p.latched_voltage_flags = 0x02;
  p.latched_rx_power_high_alarm = 0x1;
  p.latched_tx_bias_low_alarm = 0x2;
  p.latched_tx_power_high_warning = 0x4;
  EXPECT_EQ(Report(r),
            "Source: PHY\n"
            "Identifier: QSFP+ (0x01)\n"
            "Vendor: Acme\n"
            "OUI: 0x1b21\n"
            "PN: P-N\n"
            "SN: S-N\n"
            "Rev: A1\n"
            "Length: 29.5 m\n"
            "Length by PRTL: 29.5 m\n"
            "Length by Reg: 30 m\n"
            "Type: 1310 nm DFB\n"
            "SupportedSpeed: EDR/HDR\n"
            "Temperature: 42C\n"
            "PowerClass: 5\n"
            "NominalBitrate: 10 Gb/s\n"
            "CDREnableTxRx: 0x0f 0xf0\n"
            "InputEq: 10 10 10 10\n"
            "OutputAmp: 12 12 12 12\n"
            "OutputEmp: N/A\n"
            "FW Version: 1.2.772\n"
            "Attenuation(5,7,12,25): NA NA NA NA\n"
            "RX power type: Average Power\n"
            "RX1 Power: 0.000 mW, -999.999 dBm\n"
            "RX2 Power: 1.000 mW, 0.000 dBm\n"
            "RX3 Power: 0.000 mW, -999.999 dBm\n"
            "RX4 Power: 1.000 mW, 0.000 dBm\n"
            "RX5 Power: 0.000 mW, -999.999 dBm\n"
            "RX6 Power: 1.000 mW, 0.000 dBm\n"
            "RX7 Power: 0.000 mW, -999.999 dBm\n"
            "RX8 Power: 1.000 mW, 0.000 dBm\n"
            "TX1 Bias: 2.000 mA\n"
            "TX2 Bias: 1.000 mA\n"
            "TX3 Bias: 4.000 mA\n"
            "TX4 Bias: 3.000 mA\n"
            "TX5 Bias: 6.000 mA\n"
            "TX6 Bias: 5.000 mA\n"
            "TX7 Bias: 8.000 mA\n"
            "TX8 Bias: 7.000 mA\n"
            "TX1 Power: 0.200 mW, -6.990 dBm\n"
            "TX2 Power: 0.100 mW, -10.000 dBm\n"
            "TX3 Power: 0.400 mW, -3.979 dBm\n"
            "TX4 Power: 0.300 mW, -5.229 dBm\n"
            "TX5 Power: 0.600 mW, -2.218 dBm\n"
            "TX6 Power: 0.500 mW, -3.010 dBm\n"
            "TX7 Power: 0.800 mW, -0.969 dBm\n"
            "TX8 Power: 0.700 mW, -1.549 dBm\n"
            "CDR Latched TX/RX Loss Indicator: 0x3c\n"
            "Latched Adaptive Equalization Fault: 0x06\n"
            "Latched  TX / RX LOL Indicator: 0x5a\n"
            "Latched Temperature Alarm and Warning: 0xf1\n"
            "Latched Voltage Alarm and Warning: 0x02\n"
            "RX Power Alarm and Warning: 0x8000\n"
            "TX Bias Alarm and Warning:  0x0400\n"
            "TX Power Alarm and Warning: 0x0020\n"
            "Supply Voltage Reporting: 3300000uV\n"
            "Transmitter Technology: 0x4c\n"
            "Extended Specification Compliance Codes: 0x1c\n"
            "AlarmTemperatureHighThresh: 75C\n"
            "AlarmTemperatureLowThresh: -5C\n"
            "WarnTemperatureHighThresh: N/A\n"
            "WarnTemperatureLowThresh: N/A\n"
            "AlarmVoltageHighThresh: 3630000uV\n"
            "AlarmVoltageLowThresh: 2970000uV\n"
            "WarnVoltageHighThresh: N/A\n"
            "WarnVoltageLowThresh: N/A\n"
            "RXPowerHighThresh: 1002\n"
            "RXPowerLowThresh: 1001\n"
            "TXPowerHighThresh: 1004\n"
            "TXPowerLowThresh: 1003\n"
            "TXBiasHighThresh: 1006\n"
            "TXBiasLowThresh: 1005\n"
            "DateCode: 24-03-15\n"
            "Lot: 0x00ab\n"
            "TX Adaptive Equalization Freeze: N/A\n"
            "RX Output Disable: N/A\n"
            "TX Adaptive Equalization Enable: N/A\n"
            "OutputPreEmp: 11 11 11 11\n"
            "OutputPostEmp: 13 13 13 13\n");
}

TEST(PhyCableRecordReport, ShowsMissingValuesWithoutModuleAndPage) {
  std::string expected =
      "Source: \nIdentifier: N/A\nVendor: NA\nOUI: NA\nPN: NA\nSN: NA\nRev: NA\nLength: NA\n"
      "Length by PRTL: NA\nLength by Reg: NA\nType: N/A\nSupportedSpeed: N/A\nTemperature: N/A\n"
      "PowerClass: NA\nNominalBitrate: N/A\nCDREnableTxRx: N/A\nInputEq: N/A\nOutputAmp: N/A\n"
      "OutputEmp: N/A\nFW Version: N/A\nAttenuation(5,7,12,25): N/A N/A N/A N/A\n"
      "RX power type: N/A\n";
  const auto lanes = [&](const std::string& side, const std::string& value) {
    for (int lane = 1; lane <= 8; ++lane) expected += side + std::to_string(lane) + value + '\n';
  };
  lanes("RX", " Power: N/A N/A");
  lanes("TX", " Bias: N/A");
  lanes("TX", " Power: N/A N/A");
  expected +=
      "CDR Latched TX/RX Loss Indicator: N/A\nLatched Adaptive Equalization Fault: N/A\n"
      "Latched  TX / RX LOL Indicator: N/A\nLatched Temperature Alarm and Warning: N/A\n"
      "Latched Voltage Alarm and Warning: N/A\nRX Power Alarm and Warning: N/A\n"
      "TX Bias Alarm and Warning:  N/A\nTX Power Alarm and Warning: N/A\n"
      "Supply Voltage Reporting: N/A\nTransmitter Technology: N/A\n"
      "Extended Specification Compliance Codes: N/A\nAlarmTemperatureHighThresh: N/A\n"
      "AlarmTemperatureLowThresh: N/A\nWarnTemperatureHighThresh: N/A\n"
      "WarnTemperatureLowThresh: N/A\nAlarmVoltageHighThresh: N/A\nAlarmVoltageLowThresh: N/A\n"
      "WarnVoltageHighThresh: N/A\nWarnVoltageLowThresh: N/A\nRXPowerHighThresh: N/A\n"
      "RXPowerLowThresh: N/A\nTXPowerHighThresh: N/A\nTXPowerLowThresh: N/A\n"
      "TXBiasHighThresh: N/A\nTXBiasLowThresh: N/A\nDateCode: N/A\nLot: N/A\n"
      "TX Adaptive Equalization Freeze: N/A\nRX Output Disable: N/A\n"
      "TX Adaptive Equalization Enable: N/A\nOutputPreEmp: N/A\nOutputPostEmp: N/A\n";
  EXPECT_EQ(Report(PhyCableRecord()), expected);
}

TEST(PhyCableRecordReport, ShowsTheKindOfReceivedPower) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  EXPECT_EQ(Lines(Report(r))[21], "RX power type: OMA");
  r.module->rx_power_type = 1;
  EXPECT_EQ(Lines(Report(r))[21], "RX power type: Average Power");
}

TEST(PhyCableRecordReport, ShowsPassiveCopperAndAbsentCdrs) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  r.module->tx_cdr_state = 0x0F;
  EXPECT_EQ(Lines(Report(r))[15], "CDREnableTxRx: N/A N/A");
  r.module->cable_technology = 0xA0;
  r.module->attenuation[3] = 16;
  EXPECT_EQ(Lines(Report(r))[12], "Temperature: N/A");
  EXPECT_EQ(Lines(Report(r))[20], "Attenuation(5,7,12,25): 0 0 0 16");
}

// Powers in dBm or in units of 0.1 uW, and bias currents in units of 2 uA, as the C library writes
// them.
std::vector<std::string> MonitorLines(const ModuleRecord& m) {
  std::vector<std::string> lines;
  char text[1000];
  const auto power = [&](const char* direction, int lane, std::uint16_t raw) {
    double mw = raw * 0.0001;
    double dbm = raw == 0 ? -999.999 : 10.0 * std::log10(mw);
    if (m.power_unit_flag == 0) {
      mw = raw == 0 ? -999.999 : std::pow(10.0, raw / 10.0);
      dbm = raw;
    }
    std::snprintf(text, sizeof(text), "%s%d Power: %.3f mW, %.3f dBm", direction, lane, mw, dbm);
    lines.emplace_back(text);
  };
  for (int i = 0; i < 8; ++i) power("RX", i + 1, m.rx_power[i ^ 1]);
  for (int i = 0; i < 8; ++i) {
    std::snprintf(text, sizeof(text), "TX%d Bias: %.3f mA", i + 1, m.tx_bias[i ^ 1] / 500.0);
    lines.emplace_back(text);
  }
  for (int i = 0; i < 8; ++i) power("TX", i + 1, m.tx_power[i ^ 1]);
  return lines;
}

TEST(PhyCableRecordReport, ShowsEveryValueOfItsMonitors) {
  constexpr std::size_t kFirst = 22;
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  for (const std::uint16_t unit_flag : {std::uint16_t{0}, std::uint16_t{1}}) {
    r.module->power_unit_flag = unit_flag;
    for (unsigned raw = 0; raw <= UINT16_MAX; raw += 8) {
      for (unsigned i = 0; i < 8; ++i) {
        r.module->rx_power[i] = static_cast<std::uint16_t>(raw + i);
        r.module->tx_power[i] = static_cast<std::uint16_t>(raw + 7 - i);
        r.module->tx_bias[i] = static_cast<std::uint16_t>(raw + i);
      }
      const std::vector<std::string> expected = MonitorLines(*r.module);
      const std::vector<std::string> lines = Lines(Report(r));
      ASSERT_TRUE(std::equal(expected.begin(), expected.end(), lines.begin() + kFirst)) << raw;
    }
  }
}

TEST(PhyCableRecordReport, FlushesEveryLine) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  PhyCableRecord r;
  r.source = "two\nlines";
  r.ToFileStream(os);
  EXPECT_EQ(buffer.flushes(), 78);
  EXPECT_EQ(Lines(buffer.str()).size(), 79U);
}

TEST(PhyCableRecordReport, NeitherUsesNorChangesTheStreamsFormatting) {
  const auto r = RandomPhyCableRecord(11);
  OddStream os;
  r->ToFileStream(os);
  EXPECT_EQ(os.str(), Report(*r));
  EXPECT_TRUE(os.HasItsFlagsAndNoWidth());
  EXPECT_EQ(os.precision(), OddStream::kPrecision);
  EXPECT_EQ(os.fill(), OddStream::kFill);
}

TEST(PhyCableRecordReport, WritesNothingToABrokenStream) {
  std::ostringstream os;
  os.setstate(std::ios::badbit);
  PhyCableRecord().ToFileStream(os);
  EXPECT_EQ(os.str(), "");
}

TEST(PhyCableRecordReport, HasAllLinesWhateverTheRecordHolds) {
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const std::string report = Report(*RandomPhyCableRecord(seed));
    ASSERT_EQ(report.back(), '\n');
    ASSERT_EQ(Lines(report).size(), 78U) << report;
  }
}

}  // namespace
}  // namespace cable_info::test
