#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/phy_cable_record.h"
#include "random_records.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;
using Names = std::vector<std::string>;

constexpr const char* kNa = "\"NA\"";
constexpr const char* kFirstFlag = "RX1LatchedLossIndicator";
constexpr std::size_t kFlags = 77;  // up to LowTX4PowerWarning

std::string Tail(const PhyCableRecord& record) {
  return Written([&](std::ostream& os) { record.ToCSVStream(os); });
}

TEST(PhyCableRecordRow, TakesEveryCellFromItsField) {
  PhyCableRecord r;
  r.source = "PHY";
  r.SetModule(std::make_unique<ModuleRecord>());
  ModuleRecord& m = *r.module;
  m.power_unit_flag = 1;
  m.compliance_code = 28;
  m.cable_technology = 0x4C;
  m.power_class = 5;
  m.cable_identifier = 1;
  m.cable_length = 30;
  m.tx_input_eq = 0x0A;
  m.rx_output_pre_emp = 0x0B;
  m.rx_output_amp = 0x0C;
  m.rx_output_post_emp = 0x0D;
  m.max_power = 14;
  m.tx_cdr_state = 0x0F;
  m.rx_cdr_state = 0xF0;
  std::strcpy(m.vendor_name, " Acme, Inc ");
  std::strcpy(m.vendor_pn, "P,N");
  std::strcpy(m.vendor_sn, "S,N");
  std::strcpy(m.vendor_rev, "A,1");
  m.fw_version = 0x01020304;
  m.voltage = 33000;
  m.temperature = 0x2A80;
  for (unsigned i = 0; i < 8; ++i) {
    m.rx_power[i] = static_cast<std::uint16_t>(10 * (i + 1));
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
  m.smf_length = 0x010A;
  m.rx_power_type = 3;
  m.ib_compliance_code = 0x30;
  m.nominal_bitrate = 103;
  m.length_om5 = 15;
  m.length_om4 = 14;
  m.length_om3 = 13;
  m.length_om2 = 12;
  m.length_om1 = 11;
  m.lot = 0x00AB;
  m.SetDateCode("240315");
  m.vendor_oui = 0x1B21;
  m.connector_type = 0x0C;
  m.cdr_vendor = 9;
  m.max_fiber_length = 10000;
  const Row row(Tail(r).replace(Tail(r).find("Acme, "), 6, "Acme; "));  // cells split at commas
  const std::pair<const char*, const char*> expected[] = {
      {"Source", "\"PHY\""},
      {"Vendor", "\"Acme; Inc\""},
      {"OUI", "0x1b21"},
      {"PN", "\"P-N\""},
      {"SN", "\"S-N\""},
      {"Rev", "\"A-1\""},
      {"LengthSMFiber", "266"},
      {"LengthOM5", "15"},
      {"LengthOM4", "14"},
      {"LengthOM3", "13"},
      {"LengthOM2", "12"},
      {"LengthOM1", "11"},
      {"LengthCopperOrActive", "30"},
      {"Identifier", "0x01"},
      {"IdentifierStr", "\"QSFP+\""},
      {"Connector", "0x0c"},
      {"Type", "4"},
      {"SupportedSpeed", "48"},
      {"LengthDesc", "\"30 m\""},
      {"LengthDescByPRTL", "NA"},
      {"LengthDescByReg", "\"30 m\""},
      {"TypeDesc", "\"1310 nm DFB\""},
      {"SupportedSpeedDesc", "\"EDR/HDR\""},
      {"Temperature", "\"42C\""},
      {"PowerClass", "5"},
      {"NominalBitrate", "10000"},
      {"CDREnableTxRx", kNa},
      {"CDREnableTx", "0x0f"},
      {"CDREnableRx", "0xf0"},
      {"InputEq", "0a0a0a0a"},
      {"OutputAmp", "0c0c0c0c"},
      {"OutputEmp", kNa},
      {"OutputPreEmp", "0b0b0b0b"},
      {"OutputPostEmp", "0d0d0d0d"},
      {"FWVersion", "1.2.772"},
      {"Attenuation2.5G", kNa},
      {"Attenuation5G", kNa},
      {"Attenuation7G", kNa},
      {"Attenuation12G", kNa},
      {"Attenuation25G", kNa},
      {"RXPowerType", "3"},
      {"RX1Power", "0.002"},
      {"RX2Power", "0.001"},
      {"RX3Power", "0.004"},
      {"RX4Power", "0.003"},
      {"RX5Power", "0.006"},
      {"RX6Power", "0.005"},
      {"RX7Power", "0.008"},
      {"RX8Power", "0.007"},
      {"TX1Bias", "2.000"},
      {"TX2Bias", "1.000"},
      {"TX3Bias", "4.000"},
      {"TX4Bias", "3.000"},
      {"TX5Bias", "6.000"},
      {"TX6Bias", "5.000"},
      {"TX7Bias", "8.000"},
      {"TX8Bias", "7.000"},
      {"TX1Power", "0.200"},
      {"TX2Power", "0.100"},
      {"TX3Power", "0.400"},
      {"TX4Power", "0.300"},
      {"TX5Power", "0.600"},
      {"TX6Power", "0.500"},
      {"TX7Power", "0.800"},
      {"TX8Power", "0.700"},
      {"SupplyVoltageReporting", "\"3300000uV\""},
      {"TransmitterTechnology", "0x04"},
      {"ActiveWavelengthControl", "0"},
      {"CooledTransmitterDevice", "0"},
      {"ActivePinDetector", "1"},
      {"TunableTransmitter", "1"},
      {"ExtendedSpecificationComplianceCodes", "28"},
      {"AlarmTemperatureHighThresh", "\"75C\""},
      {"AlarmTemperatureLowThresh", "\"-5C\""},
      {"WarnTemperatureHighThresh", kNa},
      {"WarnTemperatureLowThresh", kNa},
      {"AlarmVoltageHighThresh", "\"3630000uV\""},
      {"AlarmVoltageLowThresh", "\"2970000uV\""},
      {"WarnVoltageHighThresh", kNa},
      {"WarnVoltageLowThresh", kNa},
      {"RXPowerHighThresh", "1002"},
      {"RXPowerLowThresh", "1001"},
      {"TXPowerHighThresh", "1004"},
      {"TXPowerLowThresh", "1003"},
      {"TXBiasHighThresh", "1006"},
      {"TXBiasLowThresh", "1005"},
      {"DateCode", "24-03-15"},
      {"Lot", "0x00ab"},
      {"TX1AdaptiveEqualizationFreeze", kNa},
      {"TX4AdaptiveEqualizationFreeze", kNa},
      {"RXOutputDisable", kNa},
      {"TXAdaptiveEqualizationEnable", kNa},
      {"MaxPower", "3.5 W"},
      {"CdrVendor", "9"},
      {"MaxFiberLength", "10000"},
  };
  ASSERT_EQ(row.size(), 174U);
  for (const auto& [column, cell] : expected) EXPECT_EQ(row[column], cell) << column;
  EXPECT_EQ(row.ColumnsWith(kNa, kFirstFlag, kFlags).size(), kFlags) << "no page of flags";
}

TEST(PhyCableRecordRow, ShowsMissingValuesWithoutModule) {
  PhyCableRecord r;
  r.source = "PHY";
  const Row row = Row::Of(r);
  ASSERT_EQ(row.size(), 174U);
  const std::pair<const char*, const char*> special[] = {
      {"Source", "\"PHY\""},           {"OUI", "NA"},
      {"IdentifierStr", "\"\"NA\"\""}, {"LengthDesc", "NA"},
      {"LengthDescByPRTL", "NA"},      {"LengthDescByReg", "NA"},
      {"NominalBitrate", "N/A"},       {"DateCode", "N/A"},
  };
  for (const auto& [column, cell] : special) EXPECT_EQ(row[column], cell) << column;
  EXPECT_EQ(row.ColumnsWith(kNa, "Source", 174).size(), 174U - std::size(special));
}

TEST(PhyCableRecordRow, ShowsTheFlagsWithoutModule) {
  PhyCableRecord r;
  r.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  r.latched_flags->latched_rx_los = 0x0A;
  const Row row = Row::Of(r);
  EXPECT_EQ(row.ColumnsWith("1", kFirstFlag, kFlags),
            (Names{"RX2LatchedLossIndicator", "RX4LatchedLossIndicator"}));
  EXPECT_EQ(row.ColumnsWith(kNa, kFirstFlag, kFlags), Names{"InitializationFlagComplete"});
}

TEST(PhyCableRecordRow, ShowsTheValuesOfPassiveCopper) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  ModuleRecord& m = *r.module;
  m.cable_technology = 0xA5;
  m.attenuation[0] = 5;
  m.attenuation[1] = 7;
  m.attenuation[2] = 12;
  m.attenuation[3] = 16;
  m.temperature = 42 << 8;
  m.fw_version = 1;
  m.tx_cdr_cap = m.rx_cdr_cap = 1;
  const Row row = Row::Of(r);
  ASSERT_EQ(row.size(), 174U);
  EXPECT_EQ(row["Attenuation2.5G"], kNa);
  EXPECT_EQ(row["Attenuation5G"], "5");
  EXPECT_EQ(row["Attenuation7G"], "7");
  EXPECT_EQ(row["Attenuation12G"], "12");
  EXPECT_EQ(row["Attenuation25G"], "16");
  EXPECT_EQ(row["Temperature"], kNa);
  for (const char* column : {"CDREnableTx", "CDREnableRx", "InputEq", "OutputAmp", "OutputPreEmp",
                             "OutputPostEmp", "FWVersion", "AlarmTemperatureHighThresh"}) {
    EXPECT_EQ(row[column], kNa) << column;
  }
  EXPECT_EQ(row["Type"], "10");
  EXPECT_EQ(row["TransmitterTechnology"], "0x0a");
  EXPECT_EQ(row["ActiveWavelengthControl"], "1");
  EXPECT_EQ(row["CooledTransmitterDevice"], "0");
  EXPECT_EQ(row["ActivePinDetector"], "1");
  EXPECT_EQ(row["TunableTransmitter"], "0");
  m.cable_identifier = 7;
  EXPECT_EQ(Row::Of(r)["Type"], "165");
  m.cable_identifier = 9;
  EXPECT_EQ(Row::Of(r)["Type"], "10");
}

TEST(PhyCableRecordRow, ShowsTheLeastMaximumPowerAndFirmware) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  EXPECT_EQ(Row::Of(r)["MaxPower"], kNa);
  EXPECT_EQ(Row::Of(r)["FWVersion"], kNa);
  r.module->max_power = 1;
  r.module->fw_version = 1;
  EXPECT_EQ(Row::Of(r)["MaxPower"], "0.25 W");
  EXPECT_EQ(Row::Of(r)["FWVersion"], "0.0.1");
}

TEST(PhyCableRecordRow, PrefersTheMeasuredLength) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  r.module->cable_length = 3;
  r.prtl_length = "2.9 m";
  const Row row = Row::Of(r);
  EXPECT_EQ(row["LengthDesc"], "\"2.9 m\"");
  EXPECT_EQ(row["LengthDescByPRTL"], "\"2.9 m\"");
  EXPECT_EQ(row["LengthDescByReg"], "\"3 m\"");
}

TEST(PhyCableRecordRow, ShowsABadDateAsTheReportDoes) {
  PhyCableRecord r;
  r.SetModule(std::make_unique<ModuleRecord>());
  r.module->SetDateCode("24 315");
  EXPECT_EQ(Row::Of(r)["DateCode"], "N/A");
}

// ---------------------------------------------------------------------------------------------
// Flags, by the names of their columns
// ---------------------------------------------------------------------------------------------

// Sets each bit of the byte in turn. `column(lane)` names the column that must show it; only the
// low four bits have one.
template <typename Column>
void ExpectFlags(std::uint8_t LatchedFlagsPage::*byte, const Column& column) {
  for (int bit = 0; bit < 8; ++bit) {
    PhyCableRecord r;
    r.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
    r.latched_flags->*byte = static_cast<std::uint8_t>(1U << bit);
    const Names expected = bit < 4 ? Names{column(bit + 1)} : Names{};
    EXPECT_EQ(Row::Of(r).ColumnsWith("1", kFirstFlag, kFlags), expected) << "bit " << bit;
  }
}

TEST(PhyCableRecordRowFlags, NameTheLaneOfALatchedFault) {
  const auto lane_flag = [](const std::string& side, const std::string& what) {
    return [=](int lane) { return side + std::to_string(lane) + what; };
  };
  ExpectFlags(&LatchedFlagsPage::latched_rx_los, lane_flag("RX", "LatchedLossIndicator"));
  ExpectFlags(&LatchedFlagsPage::latched_tx_los, lane_flag("TX", "LatchedLossIndicator"));
  ExpectFlags(&LatchedFlagsPage::latched_tx_adaptive_eq_fault,
              lane_flag("TX", "AdaptiveEqualizationFaultIndicator"));
  ExpectFlags(&LatchedFlagsPage::latched_rx_cdr_lol, lane_flag("RX", "CDRLOL"));
  ExpectFlags(&LatchedFlagsPage::latched_tx_cdr_lol, lane_flag("TX", "CDRLOL"));
}

TEST(PhyCableRecordRowFlags, NameTheAlarmsOfTheModule) {
  const auto module_flag = [](const std::string& what) {
    return [=](int n) {
      const Names names = {"High" + what + "Alarm", "Low" + what + "Alarm",
                           "High" + what + "Warning", "Low" + what + "Warning"};
      return names.at(static_cast<std::size_t>(n) - 1);
    };
  };
  ExpectFlags(&LatchedFlagsPage::latched_temperature_flags, module_flag("Temperature"));
  ExpectFlags(&LatchedFlagsPage::latched_voltage_flags, module_flag("SupplyVoltage"));
}

TEST(PhyCableRecordRowFlags, NameTheAlarmsOfALane) {
  const auto alarm = [](const std::string& level, const std::string& side,
                        const std::string& what) {
    return [=](int lane) { return level + side + std::to_string(lane) + what; };
  };
  using Page = LatchedFlagsPage;
  ExpectFlags(&Page::latched_rx_power_high_alarm, alarm("High", "RX", "PowerAlarm"));
  ExpectFlags(&Page::latched_rx_power_low_alarm, alarm("Low", "RX", "PowerAlarm"));
  ExpectFlags(&Page::latched_rx_power_high_warning, alarm("High", "RX", "PowerWarning"));
  ExpectFlags(&Page::latched_rx_power_low_warning, alarm("Low", "RX", "PowerWarning"));
  ExpectFlags(&Page::latched_tx_bias_high_alarm, alarm("High", "TX", "BiasAlarm"));
  ExpectFlags(&Page::latched_tx_bias_low_alarm, alarm("Low", "TX", "BiasAlarm"));
  ExpectFlags(&Page::latched_tx_bias_high_warning, alarm("High", "TX", "BiasWarning"));
  ExpectFlags(&Page::latched_tx_bias_low_warning, alarm("Low", "TX", "BiasWarning"));
  ExpectFlags(&Page::latched_tx_power_high_alarm, alarm("High", "TX", "PowerAlarm"));
  ExpectFlags(&Page::latched_tx_power_low_alarm, alarm("Low", "TX", "PowerAlarm"));
  ExpectFlags(&Page::latched_tx_power_high_warning, alarm("High", "TX", "PowerWarning"));
  ExpectFlags(&Page::latched_tx_power_low_warning, alarm("Low", "TX", "PowerWarning"));
}

TEST(PhyCableRecordRowFlags, IgnoreTheReservedBytes) {
  EXPECT_EQ(sizeof(LatchedFlagsPage), 22U);
  PhyCableRecord r;
  r.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  r.latched_flags->reserved_0[0] = r.latched_flags->reserved_0[1] = r.latched_flags->reserved_7 =
      255;
  EXPECT_EQ(Row::Of(r).ColumnsWith("1", kFirstFlag, kFlags), Names{});
}

// ---------------------------------------------------------------------------------------------
// Streams
// ---------------------------------------------------------------------------------------------

TEST(PhyCableRecordRow, EndsInOneNewlineAndOneFlush) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  PhyCableRecord().ToCSVStream(os);
  EXPECT_EQ(buffer.flushes(), 1);
  EXPECT_EQ(buffer.str().find('\n'), buffer.str().size() - 1);
}

TEST(PhyCableRecordRow, NeitherUsesNorChangesTheStreamsFormatting) {
  const auto r = RandomPhyCableRecord(11);
  OddStream os;
  r->ToCSVStream(os);
  EXPECT_EQ(os.str(), Tail(*r));
  EXPECT_TRUE(os.HasItsFlagsAndNoWidth());
  EXPECT_EQ(os.precision(), OddStream::kPrecision);
  EXPECT_EQ(os.fill(), OddStream::kFill);
}

TEST(PhyCableRecordRow, WritesTheSourceVerbatim) {
  PhyCableRecord r;
  r.source = std::string("a\0\"\n", 4);
  EXPECT_TRUE(Tail(r).starts_with(std::string("\"a\0\"\n\",", 7)));
}

TEST(PhyCableRecordRow, HasAllCellsWhateverTheRecordHolds) {
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const std::string tail = Tail(*RandomPhyCableRecord(seed));
    ASSERT_EQ(tail.find('\n'), tail.size() - 1);
    ASSERT_EQ(Split(tail, ',').size(), 174U) << tail;
  }
}

}  // namespace
}  // namespace cable_info::test
