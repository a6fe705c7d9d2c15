// SFF-8636: bytes in, named values out.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "cmis_memory.h"
#include "map_cases.h"

namespace {

using cable_info::AlarmLevel;
using cable_info::Field;
using cable_info::FieldState;
using cable_info::FieldValue;
using cable_info::Lane;
using cable_info::LaneField;
using cable_info::ModuleFamily;
using cable_info::ModuleInfo;
using cable_info::Monitor;
using cable_info::Page;
using cmis_memory::Memory;

constexpr Page L = Page::kLower;
constexpr Page P00 = Page::k00;
constexpr Page P02 = Page::k02;
constexpr Page P03 = Page::k03;

using Bytes = std::vector<unsigned>;
using map_cases::Expect;
using map_cases::Warnings;

// A QSFP28 module of rev 2.8 with an 850 nm laser and a separable connector.
Memory Bare() {
  Memory memory;
  memory.Add(L).Add(P00).Add(P02).Add(P03);
  memory.Put(L, 0, {0x11, 0x08, 0x02}).Put(P00, 128, {0x11}).Put(P00, 130, {0x0C});
  return memory;
}

// The same with everything advertised.
Memory Full() {
  Memory memory = Bare();
  memory.Put(L, 107, {60}).Put(P00, 129, {0x3F}).Put(P00, 141, {0x02});
  memory.Put(P00, 193, {0x7F, 0xFF, 0xFF}).Put(P00, 220, {0x3C, 0x1F});
  return memory.Put(P03, 227, {0xCE});
}

Memory Copper() { return Full().Put(P00, 147, {0xB0}); }

TEST(Sff8636Map, HasTheFieldsOfTheLowerPage) {
  Expect(Full(), {
                     {Field::kIdentifier, L, 0, {0x0D}, 0x0D, "QSFP+ or later (SFF-8636/8436)"},
                     {Field::kFlatMemory, L, 2, {0x04}, 1, ""},
                     {Field::kInterruptAsserted, L, 2, {0x00}, 1, ""},
                     {Field::kInterruptAsserted, L, 2, {0x02}, 0, ""},
                     {Field::kDataNotReady, L, 2, {0x01}, 1, ""},
                     {Field::kCoolerReady, L, 6, {0x02}, 1, ""},
                     {Field::kInitializationComplete, L, 6, {0x01}, 1, ""},
                     {Field::kSoftwareReset, L, 93, {0x80}, 1, ""},
                     {Field::kHighPowerClass8Enable, L, 93, {0x08}, 1, ""},
                     {Field::kHighPowerEnable, L, 93, {0x04}, 1, ""},
                     {Field::kLowPowerRequest, L, 93, {0x02}, 1, ""},
                     {Field::kLowPowerOverride, L, 93, {0x01}, 1, ""},
                     {Field::kLowPowerPinIsTxDisable, L, 99, {0x02}, 1, "TxDis"},
                     {Field::kInterruptPinIsLos, L, 99, {0x01}, 1, "RxLOSL"},
                     {Field::kMaxPower, L, 107, {125}, 12.5, ""},
                     {Field::kTemperatureMask, L, 103, {0xA5}, 10, ""},
                     {Field::kVoltageMask, L, 104, {0x40}, 4, ""},
                     {Field::kPropagationDelay, L, 108, {0x00, 0x06}, 60, ""},
                     {Field::kAdvancedLowPower, L, 110, {0x20}, 0.75, ""},
                     {Field::kFarSideManaged, L, 110, {0x08}, 1, ""},
                     {Field::kMinOperatingVoltage, L, 110, {0x01}, 2.5, ""},
                     {Field::kFarEnd, L, 113, {0x40}, 4, "four far ends with 1 lane"},
                     {Field::kNearEndLanes, L, 113, {0x0C}, 2, ""},
                     {Field::kTxTurnOnTime, L, 114, {0x30}, 3, ""},
                     {Field::kDataPathInitTime, L, 114, {0x05}, 5, ""},
                     {Field::kModselWaitTime, L, 115, {0x65}, 40, ""},  // 5 * 2^3
                     {Field::kSecondaryExtendedCompliance, L, 116, {0x06}, 6, "100G CWDM4"},
                     {Field::kModuleSubtype, L, 117, {0x30}, 3, "Type 2A"},
                     {Field::kFiberFace, L, 117, {0x02}, 2, "APC"},
                 });
}

TEST(Sff8636Map, HasTheFieldsOfPage00) {
  Expect(Full(), {
                     {Field::kConnector, P00, 130, {0x07}, 7, "LC"},
                     {Field::kEncoding, P00, 139, {0x05}, 5, "64B/66B"},
                     {Field::kEncoding, P00, 139, {0x08}, 8, "PAM4"},
                     {Field::kNominalBitrate, P00, 140, {103}, 10300, ""},
                     {Field::kRateSelectVersion, P00, 141, {0x02}, 2, ""},
                     {Field::kLengthSmf, P00, 142, {10}, 10000, ""},
                     {Field::kLengthOm3, P00, 143, {35}, 70, ""},
                     {Field::kLengthOm2, P00, 144, {82}, 82, ""},
                     {Field::kLengthOm1, P00, 145, {33}, 33, ""},
                     {Field::kLengthOm4, P00, 146, {50}, 100, ""},
                     {Field::kTechnology, P00, 147, {0x68}, 6, "1310 nm EML"},
                     {Field::kWavelengthControl, P00, 147, {0x08}, 1, ""},
                     {Field::kCooledTransmitter, P00, 147, {0x04}, 1, ""},
                     {Field::kDetector, P00, 147, {0x02}, 1, "APD"},
                     {Field::kTunableTransmitter, P00, 147, {0x01}, 1, ""},
                     {Field::kWavelength, P00, 186, {0x66, 0x58}, 1310, ""},
                     {Field::kWavelengthTolerance, P00, 188, {0x05, 0x14}, 6.5, ""},
                     {Field::kMaxCaseTemperature, P00, 190, {85}, 85, ""},
                     {Field::kMaxCaseTemperature, P00, 190, {0}, 70, ""},
                     {Field::kExtendedCompliance, P00, 192, {0x06}, 6, "100G CWDM4"},
                     {Field::kRxPowerType, P00, 220, {0x3C}, 1, "average power"},
                 });
}

TEST(Sff8636Map, HasTheFieldsOfPage03) {
  Expect(Full(),
         {
             {Field::kMaxTxInputEq, P03, 224, {0xA7}, 10, ""},
             {Field::kMaxRxEmphasis, P03, 224, {0xA7}, 7, ""},
             {Field::kRxEmphasisType, P03, 225, {0x1F}, 1, "constant steady-state amplitude"},
             {Field::kRxAmplitudes, P03, 225, {0x1F}, 15, ""},
             {Field::kCoolerSettlingTime, P03, 228, {14}, 14, ""},
             {Field::kAdaptiveEqSettlingTime, P03, 229, {10}, 1000, ""},
             {Field::kHostFec, P03, 230, {0x80}, 1, ""},
             {Field::kMediaFecBit, P03, 230, {0x40}, 1, ""},
         });
}

TEST(Sff8636Map, HasTheFieldsOfCopper) {
  Expect(Copper(), {
                       {Field::kAttenuation2p5, P00, 186, {5, 7, 9, 13}, 5, ""},
                       {Field::kAttenuation5, P00, 186, {5, 7, 9, 13}, 7, ""},
                       {Field::kAttenuation7, P00, 186, {5, 7, 9, 13}, 9, ""},
                       {Field::kAttenuation12p9, P00, 186, {5, 7, 9, 13}, 13, ""},
                       {Field::kAttenuation25p8, P00, 145, {21}, 21, ""},
                       {Field::kLengthCable, P00, 146, {3}, 3, ""},
                   });
  const ModuleInfo info = Copper().Put(P00, 142, {1, 2, 3, 4}).Put(P00, 186, {5, 7}).Decode();
  for (const Field field : {Field::kLengthSmf, Field::kLengthOm3, Field::kLengthOm2,
                            Field::kLengthOm1, Field::kWavelength, Field::kDetector}) {
    EXPECT_EQ(info[field].state, FieldState::kNotImplemented);
  }
}

TEST(Sff8636Map, HasTexts) {
  struct Case {
    Field field;
    Page page;
    std::size_t byte;
    std::string_view stored;
    std::string_view text;
  };
  const Case kCases[] = {
      {Field::kVendor, P00, 148, "Acme Optics     ", "Acme Optics"},
      {Field::kPartNumber, P00, 168, " AO-Q28 SR4     ", " AO-Q28 SR4"},
      {Field::kVendorRevision, P00, 184, "A1", "A1"},
      {Field::kSerialNumber, P00, 196,
       "AO\xB5"
       "4711         ",
       "AO\xC2\xB5"
       "4711"},
      {Field::kDateCode, P00, 212, "240315", "240315"},
      {Field::kLot, P00, 218, "L7", "L7"},
      {Field::kClei, P02, 128, "ABCDEFGHIJ", "ABCDEFGHIJ"},
  };
  for (const Case& it : kCases) {
    const ModuleInfo info = Full().Text(it.page, it.byte, it.stored).Decode();
    EXPECT_EQ(info[it.field].text, it.text);
  }
  EXPECT_EQ(Full().Put(P00, 165, {0xA0, 0xB1, 0x02}).Decode()[Field::kOui].text, "a0b102");
  const ModuleInfo blank = Full().Text(P00, 148, "                ").Decode();
  EXPECT_FALSE(blank[Field::kVendor].IsPresent());
  EXPECT_FALSE(blank[Field::kOui].IsPresent());
}

TEST(Sff8636Map, NamesItsRevision) {
  const std::pair<unsigned, std::string_view> kRevisions[] = {
      {0x03, "1.3"}, {0x05, "1.5"}, {0x06, "2.0"}, {0x07, "2.5"}, {0x08, "2.8"}};
  for (const auto& [code, name] : kRevisions) {
    EXPECT_EQ(Full().Put(L, 1, {code}).Decode()[Field::kRevision].text, name);
  }
  EXPECT_FALSE(Full().Put(L, 1, {0x00}).Decode()[Field::kRevision].IsPresent());
  EXPECT_FALSE(Full().Put(L, 1, {0x80}).Decode()[Field::kRevision].IsPresent());
}

TEST(Sff8636Map, KnowsPowerClassesAndTheirPower) {
  struct Case {
    unsigned byte129;
    unsigned byte107;
    unsigned power_class;
    double watts;
  };
  const Case kCases[] = {
      {0x00, 0, 1, 1.5}, {0x40, 0, 2, 2.0},  {0x80, 0, 3, 2.5}, {0xC0, 0, 4, 3.5},
      {0xC1, 0, 5, 4.0}, {0xC2, 0, 6, 4.5},  {0xC3, 0, 7, 5.0}, {0xE3, 60, 8, 6.0},
      {0xE3, 0, 7, 5.0}, {0xC0, 33, 4, 3.3},
  };
  for (const Case& it : kCases) {
    const ModuleInfo info = Full().Put(P00, 129, {it.byte129}).Put(L, 107, {it.byte107}).Decode();
    EXPECT_EQ(info[Field::kPowerClass].number, it.power_class) << it.byte129;
    EXPECT_DOUBLE_EQ(info[Field::kMaxPower].number, it.watts) << it.byte129;
  }
}

TEST(Sff8636Map, LooksAtTheExtendedRateOnlyWhenToldSo) {
  EXPECT_EQ(
      Full().Put(P00, 140, {255}).Put(P00, 222, {103}).Decode()[Field::kNominalBitrate].number,
      25750);
  EXPECT_EQ(
      Full().Put(P00, 140, {206}).Put(P00, 222, {246}).Decode()[Field::kNominalBitrate].number,
      20600);
  EXPECT_FALSE(Full().Put(P00, 140, {255}).Decode()[Field::kNominalBitrate].IsPresent());
}

TEST(Sff8636Map, TakesByte146AsOm4OnlyOfSeparable850NanometreModules) {
  const ModuleInfo cable = Full().Put(P00, 130, {0x23}).Put(P00, 146, {10}).Decode();
  EXPECT_EQ(cable[Field::kLengthCable].number, 10);
  EXPECT_FALSE(cable[Field::kLengthOm4].IsPresent());
  const ModuleInfo longwave = Full().Put(P00, 146, {10, 0x40}).Decode();
  EXPECT_EQ(longwave[Field::kLengthCable].number, 10);
  const ModuleInfo more = Full().Put(P00, 146, {255}).Decode();
  EXPECT_FALSE(more[Field::kLengthOm4].IsPresent());
  EXPECT_EQ(Warnings(more), std::vector<std::string>{"Length, OM4: more than 508 m"});
}

TEST(Sff8636Map, NamesComplianceAndSpeeds) {
  Memory memory = Full().Put(P00, 131, {0x84, 0x04, 0x20, 0x08, 0x40, 0x10, 0x01, 0x80});
  memory.Put(P00, 192, {0x0B}).Put(P00, 164, {0x31});
  const ModuleInfo info = memory.Decode();
  const std::vector<std::string_view> kNames(info.compliance.begin(), info.compliance.end() - 1);
  EXPECT_EQ(kNames, (std::vector<std::string_view>{
                        "40GBASE-SR4", "OC-48, long reach", "SAS 6.0 Gb/s", "1000BASE-T",
                        "FC short distance (S)", "FC longwave laser (LL)", "FC single mode (SM)",
                        "FC 1200 MB/s per lane"}));
  EXPECT_EQ(info.compliance.back().substr(0, 12), "100GBASE-CR4");
  EXPECT_EQ(info.supported_speeds, (std::vector<std::string_view>{"SDR", "EDR", "HDR"}));
}

struct LaneCase {
  LaneField field;
  Page page;
  std::size_t byte;
  Bytes bytes;
  std::array<double, 4> lanes;
};

TEST(Sff8636Map, HasTheFieldsOfLanes) {
  const LaneCase kCases[] = {
      {LaneField::kTxLos, L, 3, {0x10}, {1, 0, 0, 0}},
      {LaneField::kRxLos, L, 3, {0x08}, {0, 0, 0, 1}},
      {LaneField::kTxAdaptiveEqFault, L, 4, {0x20}, {0, 1, 0, 0}},
      {LaneField::kTxFault, L, 4, {0x05}, {1, 0, 1, 0}},
      {LaneField::kTxLol, L, 5, {0x80}, {0, 0, 0, 1}},
      {LaneField::kRxLol, L, 5, {0x01}, {1, 0, 0, 0}},
      {LaneField::kTxDisable, L, 86, {0x06}, {0, 1, 1, 0}},
      {LaneField::kRxRateSelect, L, 87, {0x1B}, {3, 2, 1, 0}},
      {LaneField::kTxRateSelect, L, 88, {0xC0}, {0, 0, 0, 3}},
      {LaneField::kTxCdr, L, 98, {0x10}, {1, 0, 0, 0}},
      {LaneField::kRxCdr, L, 98, {0x0E}, {0, 1, 1, 1}},
      {LaneField::kTxLosMask, L, 100, {0x40}, {0, 0, 1, 0}},
      {LaneField::kRxLosMask, L, 100, {0x02}, {0, 1, 0, 0}},
      {LaneField::kTxAdaptiveEqFaultMask, L, 101, {0x10}, {1, 0, 0, 0}},
      {LaneField::kTxFaultMask, L, 101, {0x08}, {0, 0, 0, 1}},
      {LaneField::kTxLolMask, L, 102, {0x20}, {0, 1, 0, 0}},
      {LaneField::kRxLolMask, L, 102, {0x04}, {0, 0, 1, 0}},
      {LaneField::kTxForceSquelch, P03, 231, {0x01}, {1, 0, 0, 0}},
      {LaneField::kTxAdaptiveEqFreeze, P03, 233, {0x08}, {1, 0, 0, 0}},
      {LaneField::kTxInputEq, P03, 234, {0x12, 0x34}, {1, 2, 3, 4}},
      {LaneField::kRxEmphasis, P03, 236, {0x21, 0x13}, {2, 1, 1, 3}},
      {LaneField::kRxAmplitude, P03, 238, {0x13, 0x23}, {1, 3, 2, 3}},
      {LaneField::kRxSquelchDisable, P03, 240, {0x20}, {0, 1, 0, 0}},
      {LaneField::kTxSquelchDisable, P03, 240, {0x0C}, {0, 0, 1, 1}},
      {LaneField::kRxOutputDisable, P03, 241, {0x30}, {1, 1, 0, 0}},
      {LaneField::kTxAdaptiveEq, P03, 241, {0x0D}, {1, 0, 1, 1}},
      {LaneField::kRxPowerMask, P03, 242, {0x84, 0x21}, {8, 4, 2, 1}},
      {LaneField::kTxBiasMask, P03, 244, {0xF0, 0x00}, {15, 0, 0, 0}},
      {LaneField::kTxPowerMask, P03, 246, {0x00, 0x0F}, {0, 0, 0, 15}},
  };
  for (const LaneCase& it : kCases) {
    const ModuleInfo info = Full().Put(it.page, it.byte, it.bytes).Decode();
    ASSERT_EQ(info.lanes.size(), 4U);
    for (const Lane& lane : info.lanes) {
      const std::string_view key = cable_info::DescribeField(it.field).key;
      EXPECT_TRUE(lane[it.field].IsPresent()) << key;
      EXPECT_EQ(lane[it.field].number, it.lanes.at(lane.number - 1)) << key << lane.number;
    }
  }
}

TEST(Sff8636Map, HasNoLaneFieldsThatAreNotAdvertised) {
  const ModuleInfo info = Bare().Decode();
  for (const LaneField field :
       {LaneField::kTxLos, LaneField::kTxAdaptiveEqFault, LaneField::kTxFault, LaneField::kTxLol,
        LaneField::kRxLol, LaneField::kTxDisable, LaneField::kRxRateSelect, LaneField::kTxCdr,
        LaneField::kRxCdr, LaneField::kTxForceSquelch, LaneField::kTxAdaptiveEqFreeze,
        LaneField::kTxInputEq, LaneField::kRxEmphasis, LaneField::kRxAmplitude,
        LaneField::kRxSquelchDisable, LaneField::kTxSquelchDisable, LaneField::kRxOutputDisable,
        LaneField::kTxAdaptiveEq}) {
    EXPECT_EQ(info.lanes.front()[field].state, FieldState::kNotImplemented);
  }
  EXPECT_TRUE(info.lanes.front()[LaneField::kRxLos].IsPresent());
}

TEST(Sff8636Map, WarnsOfRaisedFlagsThatAreNotAdvertised) {
  EXPECT_EQ(Warnings(Bare().Put(L, 3, {0xA0}).Decode()),
            std::vector<std::string>{"TX LOS is not advertised, but raised: lane 2, 4"});
}

TEST(Sff8636Map, ShowsACdrThatCannotBeBypassedAsOn) {
  const ModuleInfo info = Full().Put(P00, 194, {0x3F}).Decode();
  EXPECT_EQ(info.lanes[2][LaneField::kTxCdr].number, 1);
  EXPECT_EQ(info.lanes[2][LaneField::kRxCdr].number, 1);
}

void ExpectLevels(const Monitor& monitor, const std::array<double, 4>& thresholds,
                  unsigned raised) {
  for (unsigned level = 0; level < 4; ++level) {
    EXPECT_EQ(monitor.thresholds.At(static_cast<AlarmLevel>(level)), thresholds.at(level));
  }
  EXPECT_EQ(monitor.flags.known, 0xF);
  EXPECT_EQ(monitor.flags.raised, raised);
}

TEST(Sff8636Map, HasMonitorsWithThresholdsAndFlags) {
  Memory memory = Full();
  memory.Word(L, 22, 0x1F04).Put(L, 6, {0x80}).Word(L, 26, 32989).Put(L, 7, {0x10});
  memory.Word(L, 34, 4643).Word(L, 40, 65535).Put(L, 9, {0x81, 0x02});
  memory.Word(L, 42, 5140).Put(L, 11, {0x40}).Word(L, 50, 16705).Put(L, 13, {0x20});
  memory.Put(P03, 128, {0x4B, 0, 0xFB, 0, 0x46, 0, 0, 0});
  memory.Put(P03, 144, {0x94, 0x70, 0x6E, 0xF0, 0x86, 0xC4, 0x7B, 0x0C});
  memory.Put(P03, 176, {0x27, 0x10, 0, 1, 0x13, 0x88, 0, 2});
  memory.Put(P03, 184, {0x13, 0x88, 0, 1, 0x09, 0xC4, 0, 2});
  memory.Put(P03, 192, {0x4E, 0x20, 0, 3, 0x27, 0x10, 0, 4});
  const ModuleInfo info = memory.Decode();
  EXPECT_DOUBLE_EQ(info.temperature.value, 31.015625);
  ExpectLevels(info.temperature, {75, -5, 70, 0}, 0x1);
  EXPECT_DOUBLE_EQ(info.voltage.value, 3.2989);
  ExpectLevels(info.voltage, {3.8, 2.84, 3.45, 3.15}, 0x8);
  EXPECT_DOUBLE_EQ(info.lanes[0].rx_power.value, 0.4643);
  EXPECT_DOUBLE_EQ(info.lanes[3].rx_power.value, 6.5535);
  ExpectLevels(info.lanes[0].rx_power, {1, 0.0001, 0.5, 0.0002}, 0x1);
  ExpectLevels(info.lanes[1].rx_power, {1, 0.0001, 0.5, 0.0002}, 0x8);
  ExpectLevels(info.lanes[3].rx_power, {1, 0.0001, 0.5, 0.0002}, 0x4);
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_bias.value, 10.28);
  ExpectLevels(info.lanes[0].tx_bias, {10, 0.002, 5, 0.004}, 0x2);
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_power.value, 1.6705);
  ExpectLevels(info.lanes[0].tx_power, {2, 0.0003, 1, 0.0004}, 0x4);
}

TEST(Sff8636Map, HasSignedTemperatures) {
  EXPECT_DOUBLE_EQ(Full().Word(L, 22, 0x8000).Decode().temperature.value, -128);
  EXPECT_DOUBLE_EQ(Full().Word(L, 22, 0xFF80).Decode().temperature.value, -0.5);
}

TEST(Sff8636Map, HasNoThresholdsWhereAllAreZeroOrAllOnes) {
  EXPECT_EQ(Full().Decode().temperature.thresholds.given, 0);
  const Bytes ones(8, 0xFF);
  EXPECT_EQ(Full().Put(P03, 128, ones).Decode().temperature.thresholds.given, 0);
  EXPECT_EQ(Full().Put(P03, 129, {1}).Decode().temperature.thresholds.given, 0xF);
}

TEST(Sff8636Map, DecidesMonitorsByTheirBitsFromRevision28On) {
  const ModuleInfo none = Full().Put(P00, 220, {0x00}).Word(L, 22, 0x1900).Decode();
  EXPECT_EQ(none.temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(none.voltage.state, FieldState::kNotImplemented);
  EXPECT_EQ(none.lanes[0].tx_power.state, FieldState::kNotImplemented);
  EXPECT_EQ(Warnings(none),
            std::vector<std::string>{"Temperature is not advertised, but has a value"});
  Memory older = Full().Put(L, 1, {0x07}).Put(P00, 220, {0x00});
  EXPECT_EQ(older.Decode().temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(Memory(older).Word(L, 22, 0xFFFF).Decode().temperature.state,
            FieldState::kNotImplemented);
  EXPECT_EQ(older.Word(L, 22, 0x1900).Decode().temperature.state, FieldState::kPresent);
}

TEST(Sff8636Map, DecidesPowersByTheirBitsOrByAnyLane) {
  Memory memory = Full().Put(P00, 220, {0x30});
  EXPECT_EQ(memory.Decode().lanes[0].rx_power.state, FieldState::kNotImplemented);
  memory.Word(L, 36, 1);
  EXPECT_EQ(memory.Decode().lanes[0].rx_power.state, FieldState::kPresent);
  EXPECT_EQ(memory.Decode().lanes[0].rx_power.value, 0);
  Memory older = Full().Put(L, 1, {0x05}).Put(P00, 220, {0x00}).Word(L, 52, 7);
  EXPECT_EQ(older.Decode().lanes[0].tx_power.state, FieldState::kPresent);
}

TEST(Sff8636Map, HasNoOpticalQuantitiesOfCopper) {
  const ModuleInfo info = Copper().Word(L, 34, 0x4142).Put(L, 9, {0x80}).Decode();
  for (const Lane& lane : info.lanes) {
    for (const Monitor* monitor : {&lane.rx_power, &lane.tx_power, &lane.tx_bias}) {
      EXPECT_EQ(monitor->state, FieldState::kNotImplemented);
      EXPECT_EQ(monitor->thresholds.given, 0);
      EXPECT_EQ(monitor->flags.known, 0);
    }
  }
  EXPECT_EQ(Warnings(info), (std::vector<std::string>{
                                "RX power is not advertised, but has a value: lane 1",
                                "RX power is not advertised, but has a flag raised: lane 1"}));
}

TEST(Sff8636Map, KeepsThresholdsAndFlagsOfAModuleThatIsNotReady) {
  Memory memory = Full().Put(L, 2, {0x01}).Word(L, 22, 0x1900).Put(L, 6, {0x80});
  const ModuleInfo info = memory.Put(P03, 128, {0x4B, 0, 0xFB, 0, 0x46, 0, 0, 0}).Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotReady);
  ExpectLevels(info.temperature, {75, -5, 70, 0}, 0x1);
}

TEST(Sff8636Map, TellsMissingPagesFromFlatMemory) {
  Memory memory = Full();
  memory.Drop(P03);
  EXPECT_EQ(memory.Decode().lanes[0][LaneField::kTxInputEq].state, FieldState::kNotRead);
  EXPECT_EQ(memory.Decode()[Field::kMaxTxInputEq].state, FieldState::kNotRead);
  memory.Put(L, 2, {0x04});
  EXPECT_EQ(memory.Decode().lanes[0][LaneField::kTxInputEq].state, FieldState::kNotImplemented);
  EXPECT_EQ(memory.Decode()[Field::kMaxTxInputEq].state, FieldState::kNotImplemented);
}

TEST(Sff8636Map, TakesValuesAboveZeroWhereTheAdvertisingPageIsMissing) {
  Memory memory = Full().Put(L, 3, {0x10}).Word(L, 22, 0x1900);
  memory.Drop(P00);
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kPresent);
  EXPECT_EQ(info.voltage.state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[0][LaneField::kTxLos].state, FieldState::kPresent);
  EXPECT_EQ(info.lanes[1][LaneField::kTxLos].state, FieldState::kNotRead);
  EXPECT_EQ(info[Field::kVendor].state, FieldState::kNotRead);
}

TEST(Sff8636Map, HasNoQuantitiesOnLanesThatAreNotThere) {
  const ModuleInfo info = Full().Put(L, 113, {0x0C}).Word(L, 34, 100).Decode();
  EXPECT_TRUE(info.lanes[1].rx_power.IsPresent());
  EXPECT_EQ(info.lanes[2].rx_power.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[3][LaneField::kRxLos].state, FieldState::kNotImplemented);
}

TEST(Sff8636Map, VerifiesItsChecksums) {
  const ModuleInfo info = Full().Put(P00, 191, {1}).Decode();
  ASSERT_EQ(info.checksums.size(), 2U);
  EXPECT_EQ(info.checksums[0].last, 190);
  EXPECT_EQ(info.checksums[0].stored, 1);
  // Identifier, extended identifier, connector, rate select version
  EXPECT_EQ(info.checksums[0].computed, (0x11 + 0x3F + 0x0C + 0x02) & 0xFF);
}

TEST(Sff8636Map, IsFoundByByte128WhereByte0SaysNothing) {
  const ModuleInfo info = Full().Put(L, 0, {0x00}).Decode();
  EXPECT_EQ(info.family, ModuleFamily::kSff8636);
  EXPECT_EQ(info[Field::kIdentifier].number, 0x11);
  EXPECT_EQ(Full().Put(L, 0, {0x00}).Put(P00, 128, {0x00}).Decode().family, ModuleFamily::kUnknown);
}

constexpr Page P20 = Page::k20;
constexpr Page P21 = Page::k21;

Memory WithParameters() { return Full().Add(P20).Add(P21); }

// Parameter 1 is that of lane 3 with threshold set 2, parameter 4 that of the module with set 1.
TEST(Sff8636Parameters, HaveValueThresholdsAndFlags) {
  Memory memory = WithParameters();
  memory.Put(P20, 200, {0x16, 1}).Word(P20, 152, 0x1680);  // 22.5 dB
  memory.Put(P20, 206, {0x00, 6}).Word(P20, 158, 0xFF9C);  // -10 mA
  memory.Put(P20, 128, {0x90, 0x04});                      // the low nibble of 129 is parameter 4
  memory.Put(P21, 128, {0x03, 0xE8, 0xFC, 0x18, 0x02, 0xBC, 0xFE, 0x0C});
  memory.Put(P21, 136, {0x1E, 0, 0x0A, 0, 0x1C, 0, 0x0C, 0});
  const ModuleInfo info = memory.Decode();
  ASSERT_EQ(info.vdm.size(), 2U);
  EXPECT_EQ(info.vdm[0].observable, "snr_media");
  EXPECT_EQ(info.vdm[0].type, 1U);
  EXPECT_EQ(info.vdm[0].instance, "lane 3");
  EXPECT_EQ(info.vdm[0].unit, "dB");
  EXPECT_EQ(info.vdm[0].monitor.value, 22.5);
  EXPECT_EQ(info.vdm[0].monitor.thresholds.values, (std::array<double, 4>{30, 10, 28, 12}));
  EXPECT_EQ(info.vdm[0].monitor.flags.raised, 0x9);  // high alarm and low warning
  EXPECT_EQ(info.vdm[1].observable, "tec_current");
  EXPECT_EQ(info.vdm[1].instance, "module");
  EXPECT_EQ(info.vdm[1].monitor.value, -10);
  EXPECT_EQ(info.vdm[1].monitor.thresholds.values, (std::array<double, 4>{100, -100, 70, -50}));
  EXPECT_EQ(info.vdm[1].monitor.flags.raised, 0x2);  // low alarm
}

TEST(Sff8636Parameters, HaveTheScaleOfTheirType) {
  struct Case {
    unsigned type;
    unsigned raw;
    double value;
    std::string_view name;
  };
  const Case kCases[] = {
      {1, 0x0180, 1.5, "snr_media"},
      {2, 0xFFFF, -0.1, "residual_dispersion_media"},
      {3, 0xFFFE, 65534 / 256.0, "pam4_level_transition_media"},
      {4, 0x7078, 1.2e-8, "pre_fec_ber_average_media"},
      {5, 0xC00A, 10, "frame_errors_average_media"},
      {6, 25, 2.5, "tec_current"},
      {7, 0xFFFE, -20, "laser_frequency_error"},
      {8, 0xFF80, -0.5, "laser_temperature_error"},
      {9, 0x7078, 1.2e-8, "pre_fec_ber_minimum_media"},
      {10, 0x7078, 1.2e-8, "pre_fec_ber_maximum_media"},
      {11, 0x7078, 1.2e-8, "pre_fec_ber_prior_period_media"},
      {12, 0x7078, 1.2e-8, "pre_fec_ber_current_media"},
      {13, 0xC00A, 10, "frame_errors_minimum_media"},
      {14, 0xC00A, 10, "frame_errors_maximum_media"},
      {15, 0xC00A, 10, "frame_errors_prior_period_media"},
      {16, 0xC00A, 10, "frame_errors_current_media"},
      {192, 0x0102, 258, ""},
  };
  for (const Case& it : kCases) {
    Memory memory = WithParameters();
    const ModuleInfo info = memory.Put(P20, 246, {0, it.type}).Word(P20, 198, it.raw).Decode();
    ASSERT_EQ(info.vdm.size(), 1U) << it.type;
    EXPECT_EQ(info.vdm[0].observable, it.name);
    EXPECT_DOUBLE_EQ(info.vdm[0].monitor.value, it.value) << it.type;
  }
}

TEST(Sff8636Parameters, InfinityIsNoValue) {
  Memory memory = WithParameters();
  const ModuleInfo info = memory.Put(P20, 200, {0, 3}).Word(P20, 152, 0xFFFF).Decode();
  ASSERT_EQ(info.vdm.size(), 1U);
  EXPECT_EQ(info.vdm[0].monitor.state, FieldState::kNotImplemented);
}

TEST(Sff8636Parameters, AreNotUsedUnlessAdvertised) {
  Memory memory = WithParameters();
  const ModuleInfo info = memory.Put(P20, 200, {0, 1}).Put(P00, 195, {0xFE}).Decode();
  EXPECT_TRUE(info.vdm.empty());
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"page 20h was read, but the module does not advertise it"});
}

}  // namespace
