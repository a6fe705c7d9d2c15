#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "cable_info/cable_record.h"
#include "random_records.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

constexpr std::size_t kBlockLimit = 2047;

TEST(CableRecordReport, ShowsEveryFieldOnItsLine) {
  CableRecord r;
  r.Identifier = 0x0D;
  r.VendorName = "Acme Optics";
  r.Oui = "0x1b21";
  r.PartNumber = "PN-1";
  r.SerialNumber = "SN-1";
  r.Revision = "A1";
  r.LengthText = "10 km";
  r.PrtlLengthText = "9.5 m";
  r.TransmitterTechnologyCode = 4;
  r.SupportedSpeedMask = 0x11;
  r.Temperature = 42 << 8;
  r.PowerClass = 7;
  r.NominalBitrate = 26;
  r.CdrControl = 0xF0;
  r.CdrPresence = 3;
  r.InputEq = 0x1234;
  r.OutputAmp = 0xABCD;
  r.OutputEmp = 0x0005;
  r.RxPowerIsAverage = true;
  const float powers[] = {0.0F, 1.0F, 0.5F, 10.0F};
  for (int lane = 0; lane < 4; ++lane) {
    r.RxPower[lane] = powers[lane];
    r.TxBias[lane] = 7.0F + 0.25F * static_cast<float>(lane);
    r.TxPower[lane] = powers[3 - lane];
  }
  r.LatchedCdrLos = 0x12;
  r.LatchedAdaptiveEqFault = 0x03;
  r.LatchedCdrLol = 0x45;
  r.LatchedTemperatureAlarms = 0x81;
  r.LatchedVoltageAlarms = 0x0A;
  r.RxPowerAlarms = 0x8001;
  r.TxBiasAlarms = 0x00F2;
  r.TxPowerAlarms = 0x0003;
  r.SupplyVoltage = 33000;
  r.TransmitterTechnologyRaw = 0x4C;
  r.ExtSpecCompliance = 0x0B;
  r.TempHighAlarmThresh = 75 << 8;
  r.TempLowAlarmThresh = 0xFB00;
  r.TempHighWarnThresh = 70 << 8;
  r.TempLowWarnThresh = 1 << 8;
  r.VoltHighAlarmThresh = 36300;
  r.VoltLowAlarmThresh = 29700;
  r.VoltHighWarnThresh = 34650;
  r.VoltLowWarnThresh = 31350;
  r.DateCodeText = "24031501";
  r.Lot = 0x12;
  r.TxAdaptiveEqFreeze = 0x09;
  r.RxOutputDisableTxAdaptiveEq = 0xC3;
  EXPECT_EQ(r.c_str(true),
            "Source: CABLE\n"
            "Identifier: QSFP+ (0x0d)\n"
            "Vendor: Acme Optics\n"
            "OUI: 0x1b21\n"
            "PN: PN-1\n"
            "SN: SN-1\n"
            "Rev: A1\n"
            "Length: 9.5 m\n"
            "Length by PRTL: 9.5 m\n"
            " Length by Reg: 10 km\n"
            "Type: 1310 nm DFB\n"
            "SupportedSpeed: SDR/EDR\n"
            "Temperature: 42C\n"
            "PowerClass: 7\n"
            "NominalBitrate: 26 Gb/s\n"
            "CDREnableTxRx: 0xf 0x0\n"
            "InputEq: 1 2 3 4\n"
            "OutputAmp: 10 11 12 13\n"
            "OutputEmp: 0 0 0 5\n"
            "FW Version: N/A\n"
            "Attenuation(2.5,5,7,12): N/A N/A N/A N/A\n"
            "RX power type: Average Power\n"
            "RX1 Power: 0.000 mW, -999.999 dBm\n"
            "RX2 Power: 1.000 mW, 0.000 dBm\n"
            "RX3 Power: 0.500 mW, -3.010 dBm\n"
            "RX4 Power: 10.000 mW, 10.000 dBm\n"
            "RX5 Power: N/A N/A\n"
            "RX6 Power: N/A N/A\n"
            "RX7 Power: N/A N/A\n"
            "RX8 Power: N/A N/A\n"
            "TX1 Bias: 7.000 mA\n"
            "TX2 Bias: 7.250 mA\n"
            "TX3 Bias: 7.500 mA\n"
            "TX4 Bias: 7.750 mA\n"
            "TX5 Bias: N/A mA\n"
            "TX6 Bias: N/A mA\n"
            "TX7 Bias: N/A mA\n"
            "TX8 Bias: N/A mA\n"
            "TX1 Power: 10.000 mW, 10.000 dBm\n"
            "TX2 Power: 0.500 mW, -3.010 dBm\n"
            "TX3 Power: 1.000 mW, 0.000 dBm\n"
            "TX4 Power: 0.000 mW, -999.999 dBm\n"
            "TX5 Power: N/A N/A\n"
            "TX6 Power: N/A N/A\n"
            "TX7 Power: N/A N/A\n"
            "TX8 Power: N/A N/A\n"
            "CDR Latched TX/RX Loss Indicator: 0x12\n"
            "Latched Adaptive Equalization Fault: 0x03\n"
            "Latched  TX / RX LOL Indicator: 0x45\n"
            "Latched Temperature Alarm and Warning: 0x81\n"
            "Latched Voltage Alarm and Warning: 0x0a\n"
            "RX Power Alarm and Warning: 0x8001\n"
            "TX Bias Alarm and Warning: 0x00f2\n"
            "TX Power Alarm and Warning: 0x0003\n"
            "Supply Voltage Reporting: 3300000uV\n"
            "Transmitter Technology: 0x4c\n"
            "Extended Specification Compliance Codes: 0x0b\n"
            "AlarmTemperatureHighThresh: 75C\n"
            "AlarmTemperatureLowThresh: -5C\n"
            "WarnTemperatureHighThresh: 70C\n"
            "WarnTemperatureLowThresh: 1C\n"
            "AlarmVoltageHighThresh: 3630000uV\n"
            "AlarmVoltageLowThresh: 2970000uV\n"
            "WarnVoltageHighThresh: 3465000uV\n"
            "WarnVoltageLowThresh: 3135000uV\n"
            "RXPowerHighThresh: N/A\n"
            "RXPowerLowThresh: N/A\n"
            "TXPowerHighThresh: N/A\n"
            "TXPowerLowThresh: N/A\n"
            "TXBiasHighThresh: N/A\n"
            "TXBiasLowThresh: N/A\n"
            "DateCode: 24-03-15\n"
            "Lot: 0x0012\n"
            "TX Adaptive Equalization Freeze: 0x09\n"
            "RX Output Disable: 0xc\n"
            "TX Adaptive Equalization Enable: 0x3\n"
            "OutputPreEmp: N/A\n"
            "OutputPostEmp: N/A\n");
}

TEST(CableRecordReport, OmitsThreeLinesOnRequest) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    CableRecord r = RandomCableRecord(seed);
    r.QueryStatus = 0;  // from here on short enough not to be cut
    for (int lane = 0; lane < 4; ++lane) r.RxPower[lane] = r.TxBias[lane] = r.TxPower[lane] = 1.0F;
    for (std::string* text : {&r.VendorName, &r.Oui, &r.PartNumber, &r.SerialNumber, &r.Revision,
                              &r.LengthText, &r.PrtlLengthText, &r.FwVersionText}) {
      text->resize(4, 'x');
    }
    std::vector<std::string> lines = Lines(r.c_str(true));
    ASSERT_EQ(lines.size(), 78U);
    EXPECT_EQ(lines.front(), "Source: CABLE");
    EXPECT_EQ(lines[76], "OutputPreEmp: N/A");
    EXPECT_EQ(lines[77], "OutputPostEmp: N/A");
    lines.erase(lines.end() - 2, lines.end());
    lines.erase(lines.begin());
    EXPECT_EQ(Lines(r.c_str(false)), lines);
  }
}

TEST(CableRecordReport, ShowsTheLengthOfTheModuleTwiceIfNoneWasMeasured) {
  CableRecord r;
  r.LengthText = "3 m";
  const std::vector<std::string> lines = Lines(r.c_str(true));
  EXPECT_EQ(lines[7], "Length: 3 m");
  EXPECT_EQ(lines[8], "Length by PRTL: NA");
  EXPECT_EQ(lines[9], " Length by Reg: 3 m");
}

TEST(CableRecordReport, ShowsTheValuesOfPassiveCopper) {
  CableRecord r;
  r.TransmitterTechnologyCode = 10;
  r.Attenuation[1] = 5;
  r.Oui = "0x5a1";
  r.VendorModuleKind = 14;
  r.FwVersionText = "1.2.3";
  const std::vector<std::string> lines = Lines(r.c_str(false));
  EXPECT_EQ(lines[11], "Temperature: N/A");
  EXPECT_EQ(lines[14], "CDREnableTxRx: N/A N/A");
  EXPECT_EQ(lines[15], "InputEq: N/A");
  EXPECT_EQ(lines[18], "FW Version: N/A");
  EXPECT_EQ(lines[19], "Attenuation(2.5,5,7,12): 0 5 0 0");
  EXPECT_EQ(lines[20], "RX power type: OMA");
}

TEST(CableRecordReport, ShowsNanAndInfinitePowers) {
  CableRecord r;
  r.RxPower[0] = std::numeric_limits<float>::quiet_NaN();
  r.RxPower[1] = std::numeric_limits<float>::infinity();
  r.TxPower[0] = -0.0F;
  const std::vector<std::string> lines = Lines(r.c_str(true));
  EXPECT_EQ(lines[22], "RX1 Power: nan mW, nan dBm");
  EXPECT_EQ(lines[23], "RX2 Power: inf mW, inf dBm");
  EXPECT_EQ(lines[38], "TX1 Power: -0.000 mW, -999.999 dBm");
}

TEST(CableRecordReport, EndsTextsAtTheirNul) {
  CableRecord r;
  r.VendorName = std::string("ab\0cd", 5);
  r.Oui = std::string("\0x", 2);
  r.LengthText = std::string("3 m\0!", 5);
  r.DateCodeText = std::string(
      "24\0"
      "315",
      6);
  const std::vector<std::string> lines = Lines(r.c_str(true));
  EXPECT_EQ(lines[2], "Vendor: ab");
  EXPECT_EQ(lines[3], "OUI: ");
  EXPECT_EQ(lines[7], "Length: 3 m");
  EXPECT_EQ(lines[71], "DateCode: 24-");
}

TEST(CableRecordReport, IsCutInsideALine) {
  CableRecord r;
  const std::string whole = r.c_str(true);
  ASSERT_LT(whole.size(), kBlockLimit);
  r.VendorName.assign(kBlockLimit - whole.size(), 'v');  // fills the block to the last character
  EXPECT_EQ(r.c_str(true).size(), kBlockLimit);
  EXPECT_TRUE(r.c_str(true).ends_with("OutputPostEmp: N/A\n"));
  r.VendorName += 'v';
  EXPECT_EQ(r.c_str(true).size(), kBlockLimit);
  EXPECT_TRUE(r.c_str(true).ends_with("OutputPostEmp: N/A"));
  r.VendorName.assign(1'000'000, 'v');
  EXPECT_EQ(r.c_str(true).size(), kBlockLimit);
  EXPECT_TRUE(r.c_str(true).ends_with("vvv"));
}

TEST(CableRecordReport, IsWrittenWithoutFlush) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  CableRecord().ToFileStream(os);
  EXPECT_EQ(buffer.str(), CableRecord().c_str(true));
  EXPECT_EQ(buffer.flushes(), 0);
}

TEST(CableRecordReport, NeitherUsesNorChangesTheStreamsFormatting) {
  const CableRecord r = RandomCableRecord(3);
  OddStream os;
  r.ToFileStream(os);
  EXPECT_EQ(os.str(), r.c_str(true));
  EXPECT_TRUE(os.HasItsFlagsAndNoWidth());
  EXPECT_EQ(os.precision(), OddStream::kPrecision);
  EXPECT_EQ(os.fill(), OddStream::kFill);
}

TEST(CableRecordReport, NeverExceedsItsLimit) {
  for (unsigned seed = 0; seed < 5000; ++seed) {
    const std::string block = RandomCableRecord(seed).c_str(true);
    ASSERT_LE(block.size(), kBlockLimit);
    ASSERT_LE(Lines(block).size(), 78U);
    if (block.size() < kBlockLimit) {
      ASSERT_EQ(Lines(block).size(), 78U);
    }
  }
}

}  // namespace
}  // namespace cable_info::test
