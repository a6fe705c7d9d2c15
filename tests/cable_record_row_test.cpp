#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/cable_record.h"
#include "random_records.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

using Names = std::vector<std::string>;

constexpr const char* kNa = "\"NA\"";
constexpr const char* kFirstFlag = "RX1LatchedLossIndicator";
constexpr std::size_t kFlags = 77;  // up to LowTX4PowerWarning

std::string Tail(const CableRecord& record) {
  return Written([&](std::ostream& os) { record.ToCSVStream(os); });
}

// The names of the columns of set flags.
Names SetFlags(const CableRecord& record) {
  return Row::Of(record).ColumnsWith("1", kFirstFlag, kFlags);
}

TEST(CableRecordRow, TakesEveryCellFromItsField) {
  CableRecord r;
  r.VendorName = "Acme \"Optics\"";
  r.Oui = "0x1b21";
  r.PartNumber = "PN-1";
  r.SerialNumber = "SN-1";
  r.Revision = "A1";
  r.LengthSmf = 1;
  r.LengthOm3 = 2;
  r.LengthOm2 = 3;
  r.LengthOm1 = 4;
  r.LengthCopperOrActive = 255;
  r.Identifier = 0x0D;
  r.Connector = 0x0C;
  r.TransmitterTechnologyCode = 3;
  r.SupportedSpeedMask = 0x1F;
  r.LengthText = "10 km";
  r.Temperature = 0x2AFF;
  r.PowerClass = 7;
  r.NominalBitrate = 26;
  r.CdrControl = 0x0F;
  r.InputEq = 0x1234;
  r.OutputAmp = 0xABCD;
  r.OutputEmp = 0x0001;
  r.SupplyVoltage = 33000;
  r.TransmitterTechnologyRaw = 0x30;
  r.ExtSpecCompliance = 11;
  r.TempHighAlarmThresh = 75 << 8;
  r.TempLowAlarmThresh = 0xFB00;
  r.TempHighWarnThresh = 70 << 8;
  r.TempLowWarnThresh = 0x0000;
  r.VoltHighAlarmThresh = 36300;
  r.VoltLowAlarmThresh = 29700;
  r.VoltHighWarnThresh = 34650;
  r.VoltLowWarnThresh = 31350;
  r.DateCodeText = "24031501";
  r.Lot = 0x12;
  r.RxOutputDisableTxAdaptiveEq = 0xC3;
  for (unsigned lane = 0; lane < 4; ++lane) {
    r.RxPower[lane] = 1.25F + static_cast<float>(lane);
    r.TxBias[lane] = 11.25F + static_cast<float>(lane);
    r.TxPower[lane] = 21.25F + static_cast<float>(lane);
  }
  const Row row = Row::Of(r);
  const std::pair<const char*, const char*> expected[] = {
      {"Source", "\"CABLE\""},
      {"Vendor", "\"Acme \"Optics\"\""},
      {"OUI", "0x1b21"},
      {"PN", "\"PN-1\""},
      {"SN", "\"SN-1\""},
      {"Rev", "\"A1\""},
      {"LengthSMFiber", "1"},
      {"LengthOM5", kNa},
      {"LengthOM4", kNa},
      {"LengthOM3", "2"},
      {"LengthOM2", "3"},
      {"LengthOM1", "4"},
      {"LengthCopperOrActive", "255"},
      {"Identifier", "0x0d"},
      {"IdentifierStr", "\"QSFP+\""},
      {"Connector", "0x0c"},
      {"Type", "3"},
      {"SupportedSpeed", "31"},
      {"LengthDesc", "\"10 km\""},
      {"LengthDescByPRTL", kNa},
      {"LengthDescByReg", "\"10 km\""},
      {"TypeDesc", "\"1310 nm FP\""},
      {"SupportedSpeedDesc", "\"SDR/DDR/QDR/FDR/EDR\""},
      {"Temperature", "\"42C\""},
      {"PowerClass", "7"},
      {"NominalBitrate", "26"},
      {"CDREnableTxRx", "0xf"},
      {"CDREnableTx", kNa},
      {"CDREnableRx", kNa},
      {"InputEq", "1234"},
      {"OutputAmp", "abcd"},
      {"OutputEmp", "0001"},
      {"OutputPreEmp", kNa},
      {"OutputPostEmp", kNa},
      {"FWVersion", kNa},
      {"Attenuation2.5G", kNa},
      {"Attenuation5G", kNa},
      {"Attenuation7G", kNa},
      {"Attenuation12G", kNa},
      {"Attenuation25G", kNa},
      {"RXPowerType", "0"},
      {"RX1Power", "1.250"},
      {"RX4Power", "4.250"},
      {"RX5Power", kNa},
      {"RX8Power", kNa},
      {"TX1Bias", "11.250"},
      {"TX4Bias", "14.250"},
      {"TX5Bias", kNa},
      {"TX8Bias", kNa},
      {"TX1Power", "21.250"},
      {"TX4Power", "24.250"},
      {"TX5Power", kNa},
      {"TX8Power", kNa},
      {"SupplyVoltageReporting", "\"3300000uV\""},
      {"TransmitterTechnology", "0x03"},
      {"ExtendedSpecificationComplianceCodes", "11"},
      {"AlarmTemperatureHighThresh", "\"75C\""},
      {"AlarmTemperatureLowThresh", "\"-5C\""},
      {"WarnTemperatureHighThresh", "\"70C\""},
      {"WarnTemperatureLowThresh", "\"0C\""},
      {"AlarmVoltageHighThresh", "\"3630000uV\""},
      {"AlarmVoltageLowThresh", "\"2970000uV\""},
      {"WarnVoltageHighThresh", "\"3465000uV\""},
      {"WarnVoltageLowThresh", "\"3135000uV\""},
      {"RXPowerHighThresh", kNa},
      {"RXPowerLowThresh", kNa},
      {"TXPowerHighThresh", kNa},
      {"TXPowerLowThresh", kNa},
      {"TXBiasHighThresh", kNa},
      {"TXBiasLowThresh", kNa},
      {"DateCode", "24-03-15"},
      {"Lot", "0x0012"},
      {"RXOutputDisable", "0xc"},
      {"TXAdaptiveEqualizationEnable", "0x3"},
      {"MaxPower", kNa},
      {"CdrVendor", kNa},
      {"MaxFiberLength", kNa},
  };
  ASSERT_EQ(row.size(), 174U);
  for (const auto& [column, cell] : expected) EXPECT_EQ(row[column], cell) << column;
}

TEST(CableRecordRow, PrefersTheMeasuredLength) {
  CableRecord r;
  r.LengthText = "3 m";
  r.PrtlLengthText = "2.9 m";
  const Row row = Row::Of(r);
  EXPECT_EQ(row["LengthDesc"], "\"2.9 m\"");
  EXPECT_EQ(row["LengthDescByPRTL"], "\"2.9 m\"");
  EXPECT_EQ(row["LengthDescByReg"], "\"3 m\"");
}

TEST(CableRecordRow, ShowsTheValuesOfPassiveCopper) {
  CableRecord r;
  r.TransmitterTechnologyCode = 10;
  r.Temperature = 41 << 8;
  r.Attenuation[0] = 3;
  r.Attenuation[3] = 9;
  const Row row = Row::Of(r);
  EXPECT_EQ(row.size(), 174U);
  EXPECT_EQ(row["Attenuation2.5G"], "3");
  EXPECT_EQ(row["Attenuation5G"], "0");
  EXPECT_EQ(row["Attenuation7G"], "0");
  EXPECT_EQ(row["Attenuation12G"], "9");
  EXPECT_EQ(row["Attenuation25G"], kNa);
  EXPECT_EQ(row["Temperature"], kNa);
  EXPECT_EQ(row["AlarmTemperatureHighThresh"], kNa);
  EXPECT_EQ(row["CDREnableTxRx"], kNa);
  EXPECT_EQ(row["InputEq"], kNa);
  EXPECT_EQ(row["OutputAmp"], kNa);
  EXPECT_EQ(row["OutputEmp"], kNa);
}

TEST(CableRecordRow, ShowsTheKindOfReceivedPower) {
  CableRecord r;
  r.RxPowerIsAverage = true;
  EXPECT_EQ(Row::Of(r)["RXPowerType"], "1");
}

TEST(CableRecordRow, ShowsTheFirmwareOfTheHomeVendorsModules) {
  CableRecord r;
  r.Oui = "0x5a1";
  r.VendorModuleKind = 14;
  r.FwVersionText = "26.11.291";
  EXPECT_EQ(Row::Of(r)["FWVersion"], "26.11.291");
}

TEST(CableRecordRow, WritesAnyMonitorAsThePlainFormatterDoes) {
  CableRecord r;
  r.RxPower[0] = std::numeric_limits<float>::quiet_NaN();
  r.RxPower[1] = std::numeric_limits<float>::infinity();
  r.RxPower[2] = -0.25F;
  r.RxPower[3] = -0.0F;
  r.TxBias[0] = 16777216.0F;
  r.TxBias[1] = 0.0005F;  // above the tie as a double
  r.TxBias[2] = 0.0625F;  // a tie
  r.TxPower[0] = 3e38F;
  const Row row = Row::Of(r);
  EXPECT_EQ(row["RX1Power"], "nan");
  EXPECT_EQ(row["RX2Power"], "inf");
  EXPECT_EQ(row["RX3Power"], "-0.250");
  EXPECT_EQ(row["RX4Power"], "-0.000");
  EXPECT_EQ(row["TX1Bias"], "16777216.000");
  EXPECT_EQ(row["TX2Bias"], "0.001");
  EXPECT_EQ(row["TX3Bias"], "0.062");
  EXPECT_EQ(row["TX1Power"], "300000000549775575777803994281145270272.000");
}

// ---------------------------------------------------------------------------------------------
// Flags, by the names of their columns
// ---------------------------------------------------------------------------------------------

// Sets each bit in turn and expects a flag in the named column only.
template <typename Field>
void ExpectFlag(Field CableRecord::*field, int bit, const std::string& column) {
  CableRecord r;
  r.*field = static_cast<Field>(1U << bit);
  EXPECT_EQ(SetFlags(r), column.empty() ? Names{} : Names{column}) << "bit " << bit;
}

TEST(CableRecordRowFlags, NameTheLaneOfALatchedFault) {
  for (int bit = 0; bit < 8; ++bit) {
    const std::string lane = std::to_string(bit % 4 + 1);
    const bool is_tx = bit >= 4;
    const std::string side = is_tx ? "TX" : "RX";
    ExpectFlag(&CableRecord::LatchedCdrLos, bit, side + lane + "LatchedLossIndicator");
    ExpectFlag(&CableRecord::LatchedCdrLol, bit, side + lane + "CDRLOL");
    ExpectFlag(&CableRecord::LatchedAdaptiveEqFault, bit,
               is_tx ? "TX" + lane + "AdaptiveEqualizationFaultIndicator" : "");
  }
}

TEST(CableRecordRowFlags, NameTheAlarmsOfTheModule) {
  const std::string levels[] = {"HighX_Alarm", "LowX_Alarm", "HighX_Warning", "LowX_Warning"};
  const auto of = [](std::string level, const std::string& what) {
    return level.replace(level.find("X_"), 2, what);
  };
  for (int i = 0; i < 4; ++i) {
    ExpectFlag(&CableRecord::LatchedTemperatureAlarms, 7 - i, of(levels[i], "Temperature"));
    ExpectFlag(&CableRecord::LatchedVoltageAlarms, 7 - i, of(levels[i], "SupplyVoltage"));
    ExpectFlag(&CableRecord::LatchedVoltageAlarms, i, "");
  }
  ExpectFlag(&CableRecord::LatchedTemperatureAlarms, 0, "InitializationFlagComplete");
  for (int bit = 1; bit < 4; ++bit) ExpectFlag(&CableRecord::LatchedTemperatureAlarms, bit, "");
}

TEST(CableRecordRowFlags, NameTheAlarmsOfALane) {
  const std::pair<const char*, const char*> levels[] = {
      {"High", "Alarm"}, {"Low", "Alarm"}, {"High", "Warning"}, {"Low", "Warning"}};
  for (int bit = 0; bit < 16; ++bit) {
    const int place = 15 - bit;  // from the top bit down
    const std::string lane = std::to_string(place / 4 + 1);
    const auto& [level, kind] = levels[place % 4];
    const auto name = [&, level = std::string(level), kind = std::string(kind)](
                          const std::string& side, const std::string& what) {
      return level + side + lane + what + kind;
    };
    ExpectFlag(&CableRecord::RxPowerAlarms, bit, name("RX", "Power"));
    ExpectFlag(&CableRecord::TxBiasAlarms, bit, name("TX", "Bias"));
    ExpectFlag(&CableRecord::TxPowerAlarms, bit, name("TX", "Power"));
  }
}

TEST(CableRecordRowFlags, NameTheFreezeOfALane) {
  for (int bit = 0; bit < 8; ++bit) {
    CableRecord r;
    r.TxAdaptiveEqFreeze = static_cast<std::uint8_t>(1U << bit);
    const Names expected =
        bit < 4 ? Names{"TX" + std::to_string(4 - bit) + "AdaptiveEqualizationFreeze"} : Names{};
    EXPECT_EQ(Row::Of(r).ColumnsWith("1", "TX1AdaptiveEqualizationFreeze", 4), expected);
  }
}

TEST(CableRecordRowFlags, NameThePropertiesOfTheTransmitter) {
  const std::string columns[] = {"TunableTransmitter", "ActivePinDetector",
                                 "CooledTransmitterDevice", "ActiveWavelengthControl"};
  for (unsigned raw = 0; raw < 256; ++raw) {
    CableRecord r;
    r.TransmitterTechnologyRaw = static_cast<std::uint8_t>(raw);
    const Row row = Row::Of(r);
    EXPECT_EQ(row["TransmitterTechnology"], std::string("0x0") + "0123456789abcdef"[raw >> 4]);
    for (unsigned bit = 0; bit < 4; ++bit) {
      EXPECT_EQ(row[columns[bit]], (raw >> bit & 1) != 0 ? "1" : "0");
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Texts and streams
// ---------------------------------------------------------------------------------------------

TEST(CableRecordRow, WritesTextsVerbatim) {
  CableRecord r;
  r.VendorName = std::string("a\0b", 3);
  r.Oui = "x,\"\n";
  r.PartNumber = std::string(1'000'000, 'p');
  const std::string tail = Tail(r);
  EXPECT_TRUE(tail.starts_with(std::string("\"CABLE\",\"a\0b\",x,\"\n,\"ppp", 23)));
  EXPECT_GT(tail.size(), 1'000'000U);
}

TEST(CableRecordRow, EndsInOneNewlineAndOneFlush) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  CableRecord().ToCSVStream(os);
  EXPECT_EQ(buffer.flushes(), 1);
  EXPECT_EQ(buffer.str().find('\n'), buffer.str().size() - 1);
}

TEST(CableRecordRow, IgnoresTheStreamsFormatting) {
  const CableRecord r = RandomCableRecord(11);
  OddStream os;
  r.ToCSVStream(os);
  EXPECT_EQ(os.str(), Tail(r));
  EXPECT_TRUE(os.HasItsFlagsAndNoWidth());
  EXPECT_EQ(os.precision(), 3);
  EXPECT_EQ(os.fill(), '0');
}

TEST(CableRecordRow, WritesNothingToABrokenStream) {
  std::ostringstream os;
  os.setstate(std::ios::badbit);
  CableRecord().ToCSVStream(os);
  EXPECT_EQ(os.str(), "");
}

TEST(CableRecordRow, HasAllCellsWhateverTheRecordHolds) {
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const std::string tail = Tail(RandomCableRecord(seed));
    ASSERT_EQ(tail.find('\n'), tail.size() - 1);
    ASSERT_EQ(Split(tail, ',').size(), 174U) << tail;
  }
}

}  // namespace
}  // namespace cable_info::test
