// SFF-8472: bytes in, named values out.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "map_cases.h"

namespace {

using cable_info::AlarmLevel;
using cable_info::Field;
using cable_info::FieldState;
using cable_info::FieldValue;
using cable_info::Lane;
using cable_info::LaneField;
using cable_info::ModuleImage;
using cable_info::ModuleInfo;
using cable_info::Monitor;
using cable_info::Page;

constexpr Page A0 = Page::kA0;
constexpr Page A2 = Page::kA2;

using Bytes = std::vector<unsigned>;
using map_cases::Expect;
using map_cases::Warnings;

class Memory {
 public:
  Memory() {
    const std::array<std::uint8_t, ModuleImage::kWhole> zeros = {};
    image_.Put(A0, 0, zeros.data(), zeros.size());
    image_.Put(A2, 0, zeros.data(), zeros.size());
  }
  Memory& Put(Page page, std::size_t byte, const Bytes& values) {
    for (const unsigned value : values) {
      const auto stored = static_cast<std::uint8_t>(value);
      image_.Put(page, byte++, &stored, 1);
    }
    return *this;
  }
  Memory& Word(Page page, std::size_t byte, unsigned value) {
    return Put(page, byte, {value >> 8U, value & 0xFFU});
  }
  Memory& Text(std::size_t byte, std::string_view text) {
    for (const char c : text) Put(A0, byte++, {static_cast<unsigned char>(c)});
    return *this;
  }
  Memory& DropA2() {
    image_.Drop(A2);
    return *this;
  }
  ModuleInfo Decode() const { return cable_info::Decode(image_); }

 private:
  ModuleImage image_;
};

// An optical module of rev 11.4 with internal calibration and everything advertised.
Memory Full() {
  Memory memory;
  memory.Put(A0, 0, {0x03, 0x04, 0x07}).Put(A0, 64, {0x0E, 0x38});
  memory.Put(A0, 92, {0x68, 0xFE, 0x07});
  return memory.Word(A2, 98, 33000);
}

// The same of rev 12.4, with the additional enhanced features.
Memory Enhanced() {
  return Full()
      .Put(A0, 94, {0x09})
      .Put(A2, 56, {0x13, 0x03, 0x01})
      .Put(A2, 60, {0x07})
      .Put(A2, 62, {0x07});
}

Memory External() { return Full().Put(A0, 92, {0x58}); }

TEST(Sff8472Map, HasTheFieldsOfA0) {
  Expect(Full(), {
                     {Field::kConnector, A0, 2, {0x07}, 7, "LC"},
                     {Field::kEncoding, A0, 11, {0x06}, 6, "64B/66B"},
                     {Field::kEncoding, A0, 11, {0x04}, 4, "Manchester"},
                     {Field::kNominalBitrate, A0, 12, {103}, 10300, ""},
                     {Field::kLengthSmf, A0, 14, {10, 100}, 10000, ""},
                     {Field::kLengthSmf, A0, 14, {0, 5}, 500, ""},
                     {Field::kLengthOm2, A0, 16, {8}, 80, ""},
                     {Field::kLengthOm1, A0, 17, {3}, 30, ""},
                     {Field::kLengthOm4, A0, 18, {40}, 400, ""},
                     {Field::kLengthOm3, A0, 19, {30}, 300, ""},
                     {Field::kWavelength, A0, 60, {0x05, 0x1E}, 1310, ""},
                     {Field::kWavelength, A0, 60, {0x06, 0x06, 14}, 1542.14, ""},
                     {Field::kCooledTransmitter, A0, 64, {0x04}, 1, ""},
                     {Field::kTunableTransmitter, A0, 65, {0x40}, 1, ""},
                     {Field::kBitrateMax, A0, 66, {42}, 42, ""},
                     {Field::kBitrateMin, A0, 67, {7}, 7, ""},
                     {Field::kRxPowerType, A0, 92, {0x68}, 1, "average power"},
                     {Field::kRxPowerType, A0, 92, {0x60}, 0, "OMA"},
                     {Field::kCalibration, A0, 92, {0x68}, 2, "internal"},
                     {Field::kCalibration, A0, 92, {0x58}, 1, "external"},
                     {Field::kAddressChange, A0, 92, {0x6C}, 1, ""},
                 });
}

TEST(Sff8472Map, HasTheFieldsOfA2) {
  Expect(Full(), {
                     {Field::kTxDisablePin, A2, 110, {0x80}, 1, ""},
                     {Field::kSoftTxDisable, A2, 110, {0x40}, 1, ""},
                     {Field::kRs1Pin, A2, 110, {0x20}, 1, ""},
                     {Field::kRs0Pin, A2, 110, {0x10}, 1, ""},
                     {Field::kSoftRs0, A2, 110, {0x08}, 1, ""},
                     {Field::kDataNotReady, A2, 110, {0x01}, 1, ""},
                     {Field::kTxInputEqHigh, A2, 114, {0x5A}, 5, ""},
                     {Field::kTxInputEqLow, A2, 114, {0x5A}, 10, ""},
                     {Field::kRxEmphasisHigh, A2, 115, {0x37}, 3, ""},
                     {Field::kRxEmphasisLow, A2, 115, {0x37}, 7, ""},
                     {Field::kSoftRs1, A2, 118, {0x08}, 1, ""},
                     {Field::kPowerLevelState, A2, 118, {0x02}, 1, ""},
                     {Field::kPowerLevelSelect, A2, 118, {0x01}, 1, ""},
                 });
  Expect(Full().Put(A0, 64, {0x40}), {{Field::kPowerLevel4Enable, A2, 118, {0x04}, 1, ""}});
  Expect(Full().Put(A0, 10, {0x02}).Put(A0, 62, {0x01}),
         {
             {Field::kPam4ModeTx, A2, 119, {0x10}, 1, ""},
             {Field::kPam4ModeRx, A2, 119, {0x08}, 1, ""},
             {Field::kMode64gfc, A2, 119, {0x04}, 1, ""},
         });
}

TEST(Sff8472Map, HasTheEnhancedFeatures) {
  Expect(Enhanced(),
         {
             {Field::kAdaptiveEqSettlingTime, A2, 61, {20}, 2000, ""},
             {Field::kRxEmphasisType, A2, 62, {0x0F}, 1, "constant steady-state amplitude"},
             {Field::kRxAmplitudes, A2, 63, {0x7A}, 7, ""},
             {Field::kMaxTxInputEq, A2, 63, {0x7A}, 10, ""},
             {Field::kMaxRxPostCursor, A2, 64, {0x53}, 5, ""},
             {Field::kMaxRxPreCursor, A2, 64, {0x53}, 3, ""},
             {Field::kSecondaryExtendedCompliance, A2, 67, {0x06}, 6, "100G CWDM4"},
             {Field::kRsPinIgnore, A2, 73, {0x10}, 1, ""},
         });
  EXPECT_FALSE(Full().Put(A2, 63, {0x7A}).Decode()[Field::kRxAmplitudes].IsPresent());
}

TEST(Sff8472Map, HasTexts) {
  struct Case {
    Field field;
    std::size_t byte;
    std::string_view stored;
    std::string_view text;
  };
  const Case kCases[] = {
      {Field::kVendor, 20, "Acme Optics     ", "Acme Optics"},
      {Field::kPartNumber, 40, "AO-LR           ", "AO-LR"},
      {Field::kVendorRevision, 56, "B4  ", "B4"},
      {Field::kSerialNumber, 68, "AO1060          ", "AO1060"},
      {Field::kDateCode, 84, "150703", "150703"},
      {Field::kLot, 90, "01", "01"},
  };
  for (const Case& it : kCases) {
    EXPECT_EQ(Full().Text(it.byte, it.stored).Decode()[it.field].text, it.text);
  }
  EXPECT_EQ(Full().Put(A0, 37, {0x00, 0x17, 0x6A}).Decode()[Field::kOui].text, "00176a");
}

TEST(Sff8472Map, NamesItsRevision) {
  const std::pair<unsigned, std::string_view> kRevisions[] = {
      {1, "9.3"}, {5, "11.0"}, {8, "12.3"}, {9, "12.4"}, {10, "12.5"}};
  for (const auto& [code, name] : kRevisions) {
    EXPECT_EQ(Full().Put(A0, 94, {code}).Decode()[Field::kRevision].text, name);
  }
}

TEST(Sff8472Map, HasFourPowerLevels) {
  struct Case {
    unsigned byte64;
    double level;
    double watts;
  };
  const Case kCases[] = {{0x00, 1, 1.0}, {0x02, 2, 1.5}, {0x22, 3, 2.0}, {0x62, 4, 3.5}};
  for (const Case& it : kCases) {
    const ModuleInfo info = Full().Put(A0, 64, {it.byte64}).Put(A2, 66, {35}).Decode();
    EXPECT_EQ(info[Field::kPowerClass].number, it.level);
    EXPECT_DOUBLE_EQ(info[Field::kMaxPower].number, it.watts);
  }
}

TEST(Sff8472Map, TakesTheExtendedRate) {
  EXPECT_EQ(Full().Put(A0, 12, {255}).Put(A0, 66, {112}).Decode()[Field::kNominalBitrate].number,
            28000);
}

TEST(Sff8472Map, HasCablesAndCopper) {
  Memory cable = Full().Put(A0, 8, {0x04}).Put(A0, 14, {11, 20, 1, 1, 3}).Put(A0, 60, {0x01});
  EXPECT_EQ(cable.Decode()[Field::kLengthCable].number, 3);
  EXPECT_FALSE(cable.Decode()[Field::kLengthSmf].IsPresent());
  EXPECT_FALSE(cable.Decode()[Field::kLengthOm4].IsPresent());
  EXPECT_FALSE(cable.Decode()[Field::kWavelength].IsPresent());
  EXPECT_FALSE(cable.Decode()[Field::kAttenuation12p9].IsPresent());
  EXPECT_EQ(cable.Decode().compliance.back(), "SFF-8431 appendix E");
  cable.Put(A0, 19, {0x4F}).Put(A0, 94, {0x09});  // 15 times 1 m
  EXPECT_EQ(cable.Decode()[Field::kLengthCable].number, 15);
  EXPECT_EQ(cable.Decode()[Field::kAttenuation12p9].number, 11);
  EXPECT_EQ(cable.Decode()[Field::kAttenuation25p8].number, 20);
  const ModuleInfo base_t = Full().Put(A0, 6, {0x08}).Put(A0, 18, {100}).Decode();
  EXPECT_EQ(base_t[Field::kLengthCable].number, 100);
  EXPECT_FALSE(base_t[Field::kLengthOm4].IsPresent());
}

TEST(Sff8472Map, WarnsOfLengthsAboveTheirRange) {
  const ModuleInfo info = Full().Put(A0, 16, {255}).Decode();
  EXPECT_FALSE(info[Field::kLengthOm2].IsPresent());
  EXPECT_EQ(Warnings(info), std::vector<std::string>{"Length, OM2: more than 2540 m"});
}

TEST(Sff8472Map, NamesCompliance) {
  const ModuleInfo info =
      Full().Put(A0, 3, {0x20, 0x11, 0x40, 0x01, 0x42, 0x20, 0x01, 0x80}).Decode();
  EXPECT_EQ(
      info.compliance,
      (std::vector<std::string_view>{
          "10GBASE-LR", "OC-48, short reach", "OC-12, single mode, long reach", "1000BASE-SX",
          "FC short distance (S)", "FC longwave laser (LC)", "FC shortwave laser with OFC (SL)",
          "FC single mode (SM)", "FC 1200 MB/s", "SONET SR-1/IR-1/LR-1"}));
}

TEST(Sff8472Map, HasTheFieldsOfItsLane) {
  struct Case {
    LaneField field;
    std::size_t byte;
    unsigned value;
    double expected;
  };
  const Case kCases[] = {
      {LaneField::kRxLos, 110, 0x02, 1},
      {LaneField::kTxFault, 110, 0x04, 1},
      {LaneField::kTxLol, 119, 0x02, 1},
      {LaneField::kRxLol, 119, 0x01, 1},
      {LaneField::kTxAdaptiveEqFault, 118, 0x10, 1},
      {LaneField::kTxDisable, 110, 0x80, 1},
      {LaneField::kTxDisable, 110, 0xC0, 1},
      {LaneField::kTxDisable, 110, 0x40, 1},
      {LaneField::kTxDisable, 110, 0x3F, 0},
      {LaneField::kTxAdaptiveEqFreeze, 71, 0x02, 1},
      {LaneField::kTxAdaptiveEq, 71, 0x01, 1},
      {LaneField::kRxPreCursor, 72, 0xA5, 5},
      {LaneField::kRxPostCursor, 72, 0xA6, 6},
      {LaneField::kRxAmplitude, 73, 0x03, 3},
      {LaneField::kRxSquelchDisable, 74, 0x10, 1},
      {LaneField::kRxForceSquelch, 74, 0x20, 1},
      {LaneField::kTxForceSquelch, 74, 0x02, 1},
      {LaneField::kTxSquelchDisable, 74, 0x01, 1},
  };
  for (const Case& it : kCases) {
    const ModuleInfo info = Enhanced().Put(A2, it.byte, {it.value}).Decode();
    ASSERT_EQ(info.lanes.size(), 1U);
    const std::string_view key = cable_info::DescribeField(it.field).key;
    EXPECT_TRUE(info.lanes[0][it.field].IsPresent()) << key;
    EXPECT_EQ(info.lanes[0][it.field].number, it.expected) << key;
  }
}

void ExpectLevels(const Monitor& monitor, const std::array<double, 4>& thresholds,
                  unsigned raised) {
  for (unsigned level = 0; level < 4; ++level) {
    EXPECT_EQ(monitor.thresholds.At(static_cast<AlarmLevel>(level)), thresholds.at(level));
  }
  EXPECT_EQ(monitor.flags.known, 0xF);
  EXPECT_EQ(monitor.flags.raised, raised);
}

TEST(Sff8472Map, HasMonitorsWithThresholdsAndFlags) {
  Memory memory = Full();
  memory.Put(A2, 0, {0x5A, 0, 0xF6, 0, 0x55, 0, 0xFB, 0});
  memory.Word(A2, 8, 36300).Word(A2, 10, 29700).Word(A2, 12, 34600).Word(A2, 14, 31300);
  memory.Word(A2, 16, 50000).Word(A2, 18, 1000).Word(A2, 20, 40000).Word(A2, 22, 2000);
  memory.Word(A2, 24, 13464).Word(A2, 26, 1267).Word(A2, 28, 11220).Word(A2, 30, 1584);
  memory.Word(A2, 32, 20000).Word(A2, 34, 158).Word(A2, 36, 10000).Word(A2, 38, 316);
  memory.Put(A2, 40, {55, 0, 35, 0, 50, 0, 40, 0});
  memory.Word(A2, 48, 8000).Word(A2, 50, 0xEC78).Word(A2, 52, 7000).Word(A2, 54, 0xF060);
  memory.Word(A2, 96, 0x228A).Word(A2, 98, 32893).Word(A2, 100, 17997).Word(A2, 102, 5171);
  memory.Word(A2, 104, 2).Word(A2, 106, 0x2D40).Word(A2, 108, 0xFF9C);
  // Temperature high alarm, voltage low alarm, TX bias high, TX power low; RX power low, laser
  // high, TEC low; warnings: temperature low, RX power high.
  memory.Put(A2, 112, {0x99, 0x64}).Put(A2, 116, {0x40, 0x80});
  const ModuleInfo info = memory.Decode();
  EXPECT_DOUBLE_EQ(info.temperature.value, 34.5390625);
  ExpectLevels(info.temperature, {90, -10, 85, -5}, 0x9);
  EXPECT_DOUBLE_EQ(info.voltage.value, 3.2893);
  ExpectLevels(info.voltage, {3.63, 2.97, 3.46, 3.13}, 0x2);
  const Lane& lane = info.lanes.at(0);
  EXPECT_DOUBLE_EQ(lane.tx_bias.value, 35.994);
  ExpectLevels(lane.tx_bias, {100, 2, 80, 4}, 0x1);
  EXPECT_DOUBLE_EQ(lane.tx_power.value, 0.5171);
  ExpectLevels(lane.tx_power, {1.3464, 0.1267, 1.122, 0.1584}, 0x2);
  EXPECT_DOUBLE_EQ(lane.rx_power.value, 0.0002);
  ExpectLevels(lane.rx_power, {2, 0.0158, 1, 0.0316}, 0x6);
  ASSERT_EQ(info.aux.size(), 2U);
  EXPECT_EQ(info.aux[0].name, "laser_temperature_c");
  EXPECT_DOUBLE_EQ(info.aux[0].monitor.value, 45.25);
  ExpectLevels(info.aux[0].monitor, {55, 35, 50, 40}, 0x1);
  EXPECT_EQ(info.aux[1].name, "tec_current_ma");
  EXPECT_DOUBLE_EQ(info.aux[1].monitor.value, -10);
  ExpectLevels(info.aux[1].monitor, {800, -500, 700, -400}, 0x2);
}

TEST(Sff8472Map, CalibratesExternally) {
  Memory memory = External();
  memory.Put(A2, 56, {0, 0, 0, 0, 0, 0, 0, 0});           // raw^4, raw^3
  memory.Put(A2, 64, {0x3A, 0x80, 0, 0, 0x40, 0, 0, 0});  // raw^2: 2^-10, raw: 2
  memory.Put(A2, 72, {0x42, 0x48, 0, 0});                 // 50
  memory.Put(A2, 76, {0x01, 0x80, 0x00, 0x0A});           // TX bias: 1.5, 10
  memory.Put(A2, 80, {0x02, 0x00, 0xFF, 0x9C});           // TX power: 2, -100
  memory.Put(A2, 84, {0x00, 0x80, 0xFF, 0x00});           // temperature: 0.5, -256
  memory.Put(A2, 88, {0x01, 0x00, 0x00, 0x64});           // voltage: 1, 100
  memory.Word(A2, 96, 0xF000).Word(A2, 98, 32000).Word(A2, 100, 1000).Word(A2, 102, 40);
  memory.Word(A2, 104, 1024).Word(A2, 16, 2000).Word(A2, 0, 0x5000);
  const ModuleInfo info = memory.Decode();
  EXPECT_DOUBLE_EQ(info.temperature.value, -9);  // (0.5 * -4096 - 256) / 256
  EXPECT_DOUBLE_EQ(info.voltage.value, 3.21);
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_bias.value, 3.02);     // 1510 * 2 uA
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_power.value, 0);       // 80 - 100
  EXPECT_DOUBLE_EQ(info.lanes[0].rx_power.value, 0.3122);  // 1024 + 2048 + 50
  EXPECT_EQ(info.temperature.thresholds.At(AlarmLevel::kHighAlarm), 39);
  EXPECT_EQ(info.lanes[0].tx_bias.thresholds.At(AlarmLevel::kHighAlarm), 6.02);
  EXPECT_EQ(info[Field::kTxBiasSlope].number, 1.5);
  EXPECT_EQ(info[Field::kTxPowerOffset].number, -100);
  EXPECT_EQ(info[Field::kRxPowerCalibration1].number, 2);
  EXPECT_FALSE(info.aux[0].monitor.IsPresent());
}

TEST(Sff8472Map, WarnsOfConstantsWithoutSense) {
  const ModuleInfo info = External().Word(A2, 100, 1000).Decode();
  EXPECT_EQ(Warnings(info).size(), 4U);  // four slopes of 0
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_bias.value, 2);
}

TEST(Sff8472Map, NeverUsesA2WithoutDiagnostics) {
  const ModuleInfo info = Full().Put(A0, 92, {0x00}).Word(A2, 96, 0x1900).Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[0].rx_power.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[0][LaneField::kRxLos].state, FieldState::kNotImplemented);
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"A2h was read, but the module says that it has "
                                     "no diagnostics; A2h is not used"});
}

TEST(Sff8472Map, HasNotReadAMissingUniformOrMirroredA2) {
  Memory missing = Full();
  EXPECT_EQ(missing.DropA2().Decode().temperature.state, FieldState::kNotRead);
  Memory uniform = Full();
  uniform.Word(A2, 98, 0);
  EXPECT_EQ(uniform.Decode().temperature.state, FieldState::kNotRead);
  EXPECT_EQ(uniform.Decode().pages_read, std::vector<Page>{A0});
  Memory mirrored = Full().Text(20, "Acme Optics     ");
  mirrored.Put(A2, 0, {0x03, 0x04, 0x07});
  for (std::size_t i = 0; i < 16; ++i) {
    mirrored.Put(A2, 20 + i, {static_cast<unsigned char>("Acme Optics     "[i])});
  }
  EXPECT_EQ(mirrored.Decode().temperature.state, FieldState::kNotRead);
}

TEST(Sff8472Map, HasNoVoltageOfZero) {
  const ModuleInfo info = Full().Word(A2, 98, 0).Word(A2, 96, 0x2300).Decode();
  EXPECT_EQ(info.voltage.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.temperature.value, 35);
}

TEST(Sff8472Map, DropsFlagsThatAreNotAdvertisedOrNotReady) {
  const ModuleInfo silent = Full().Put(A0, 93, {0x7E}).Put(A2, 112, {0x80}).Decode();
  EXPECT_EQ(silent.temperature.flags.known, 0);
  EXPECT_EQ(Warnings(silent),
            std::vector<std::string>{"alarm or warning flags are raised, but not advertised"});
  const ModuleInfo unready =
      Full().Put(A2, 110, {0x01}).Put(A2, 112, {0x80}).Put(A2, 0, {0x5A}).Decode();
  EXPECT_EQ(unready.temperature.state, FieldState::kNotReady);
  EXPECT_EQ(unready.temperature.flags.known, 0);
  EXPECT_EQ(unready.temperature.thresholds.given, 0xF);
}

TEST(Sff8472Map, NeedsACooledLaserForItsMonitors) {
  const ModuleInfo info = Full().Put(A0, 64, {0x00}).Word(A2, 106, 0x2D40).Decode();
  EXPECT_EQ(info.aux[0].monitor.state, FieldState::kNotImplemented);
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"laser_temperature_c is not advertised, but has a value"});
}

}  // namespace
