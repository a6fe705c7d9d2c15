// SFF-8636: bytes in, named values out.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
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
constexpr Page P20 = Page::k20;
constexpr Page P21 = Page::k21;

using cable_info::module_memory::Sff8636Map;
using map_cases::BitCase;
using map_cases::Bytes;
using map_cases::Changed;
using map_cases::Chars;
using map_cases::Expect;
using map_cases::FieldCase;
using map_cases::Keys;
using map_cases::Warnings;
using Cases = map_cases::FieldCases<Memory>;
using LaneCase = map_cases::LaneCase<4>;

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

// ---------------------------------------------------------------------------------------------
// Fields
// ---------------------------------------------------------------------------------------------

Cases LowerPage() {
  return {Full(),
          {
              {Field::kIdentifier, L, 0, {0x0D}, 0x0D, "QSFP+ or later (SFF-8636/8436)"},
              {Field::kRevision, L, 1, {0x08}, 0, "2.8"},
              {Field::kFlatMemory, L, 2, {0x04}, 1, ""},
              {Field::kInterruptAsserted, L, 2, {0xFD}, 1, ""},
              {Field::kDataNotReady, L, 2, {0x01}, 1, ""},
              {Field::kCoolerReady, L, 6, {0x02}, 1, ""},
              {Field::kInitializationComplete, L, 6, {0x01}, 1, ""},
              {Field::kSoftwareReset, L, 93, {0x80}, 1, ""},
              {Field::kHighPowerClass8Enable, L, 93, {0x08}, 1, ""},
              {Field::kHighPowerEnable, L, 93, {0x04}, 1, ""},
              {Field::kLowPowerRequest, L, 93, {0x02}, 1, ""},
              {Field::kLowPowerOverride, L, 93, {0x01}, 1, ""},
              {Field::kLowPowerPinIsTxDisable, L, 99, {0x02}, 1, "TxDis"},
              {Field::kLowPowerPinIsTxDisable, L, 99, {0xFD}, 0, "LPMode"},
              {Field::kInterruptPinIsLos, L, 99, {0x01}, 1, "RxLOSL"},
              {Field::kInterruptPinIsLos, L, 99, {0xFE}, 0, "IntL"},
              {Field::kTemperatureMask, L, 103, {0xA5}, 10, ""},
              {Field::kCoolerReadyMask, L, 103, {0x02}, 1, ""},
              {Field::kVoltageMask, L, 104, {0x5A}, 5, ""},
              {Field::kMaxPower, L, 107, {125}, 12.5, ""},
              {Field::kPropagationDelay, L, 108, {0x01, 0x06}, 2620, ""},
              {Field::kAdvancedLowPower, L, 110, {0x0F}, 1.5, ""},
              {Field::kAdvancedLowPower, L, 110, {0x1A}, 1.0, ""},
              {Field::kAdvancedLowPower, L, 110, {0x2D}, 0.75, ""},
              {Field::kAdvancedLowPower, L, 110, {0x38}, 0.5, ""},
              {Field::kFarSideManaged, L, 110, {0x08}, 1, ""},
              {Field::kMinOperatingVoltage, L, 110, {0xF8}, 3.3, ""},
              {Field::kMinOperatingVoltage, L, 110, {0xF9}, 2.5, ""},
              {Field::kMinOperatingVoltage, L, 110, {0x0A}, 1.8, ""},
              {Field::kFarEnd, L, 113, {0x8F}, 0, "unspecified or separable"},
              {Field::kFarEnd, L, 113, {0x10}, 1, "one far end with 4 lanes"},
              {Field::kFarEnd, L, 113, {0xA0}, 2, "one far end with 2 lanes"},
              {Field::kFarEnd, L, 113, {0x30}, 3, "one far end with 1 lane"},
              {Field::kFarEnd, L, 113, {0xC1}, 4, "four far ends with 1 lane"},
              {Field::kFarEnd, L, 113, {0x50}, 5, "two far ends with 2 lanes"},
              {Field::kFarEnd, L, 113, {0xE0}, 6, "two far ends with 1 lane"},
              {Field::kFarEnd, L, 113, {0x70}, 7, ""},
              {Field::kNearEndLanes, L, 113, {0xF0}, 4, ""},
              {Field::kNearEndLanes, L, 113, {0x0E}, 1, ""},
              {Field::kNearEndLanes, L, 113, {0x0C}, 2, ""},
              {Field::kModselWaitTime, L, 115, {0x65}, 40, ""},    // 5 * 2^3
              {Field::kModselWaitTime, L, 115, {0xFF}, 3968, ""},  // 31 * 2^7
              {Field::kSecondaryExtendedCompliance, L, 116, {0x06}, 6, "100G CWDM4"},
              {Field::kSecondaryExtendedCompliance, L, 116, {0x81}, 0x81, "128GFC"},
              {Field::kModuleSubtype, L, 117, {0x13}, 1, "Type 1"},
              {Field::kModuleSubtype, L, 117, {0x2D}, 2, "Type 2"},
              {Field::kModuleSubtype, L, 117, {0x31}, 3, "Type 2A"},
              {Field::kModuleSubtype, L, 117, {0x42}, 4, "Type 2B"},
              {Field::kFiberFace, L, 117, {0xFD}, 1, "PC/UPC"},
              {Field::kFiberFace, L, 117, {0x1E}, 2, "APC"},
          }};
}

Cases Sff8436() {
  return {Full().Put(L, 1, {0x01}), {{Field::kInitializationCompleteMask, L, 103, {0x01}, 1, ""}}};
}

Cases MicroQsfp() {
  return {Full().Put(L, 0, {0x17}).Put(P00, 128, {0x17}),
          {
              {Field::kTxTurnOnTime, L, 114, {0x3A}, 3, ""},
              {Field::kDataPathInitTime, L, 114, {0x3A}, 10, ""},
          }};
}

Cases Page00() {
  return {Full(),
          {
              {Field::kPowerClass, P00, 129, {0x9C}, 3, ""},
              {Field::kConnector, P00, 130, {0x07}, 7, "LC"},
              {Field::kConnector, P00, 130, {0xA5}, 0xA5, ""},
              {Field::kEncoding, P00, 139, {0x01}, 1, "8B/10B"},
              {Field::kEncoding, P00, 139, {0x02}, 2, "4B/5B"},
              {Field::kEncoding, P00, 139, {0x03}, 3, "NRZ"},
              {Field::kEncoding, P00, 139, {0x04}, 4, "SONET Scrambled"},
              {Field::kEncoding, P00, 139, {0x05}, 5, "64B/66B"},
              {Field::kEncoding, P00, 139, {0x06}, 6, "Manchester"},
              {Field::kEncoding, P00, 139, {0x07}, 7, "256B/257B"},
              {Field::kEncoding, P00, 139, {0x08}, 8, "PAM4"},
              {Field::kEncoding, P00, 139, {0x88}, 0x88, ""},
              {Field::kNominalBitrate, P00, 140, {103}, 10300, ""},
              {Field::kNominalBitrate, P00, 140, {254}, 25400, ""},
              {Field::kRateSelectVersion, P00, 141, {0xFD}, 1, ""},
              {Field::kRateSelectVersion, P00, 141, {0x02}, 2, ""},
              {Field::kLengthSmf, P00, 142, {10, 1, 2, 3, 4}, 10000, ""},
              {Field::kLengthOm3, P00, 142, {1, 35, 2, 3, 4}, 70, ""},
              {Field::kLengthOm2, P00, 142, {1, 2, 82, 3, 4}, 82, ""},
              {Field::kLengthOm1, P00, 142, {1, 2, 3, 33, 4}, 33, ""},
              {Field::kLengthOm4, P00, 142, {1, 2, 3, 4, 50}, 100, ""},
              {Field::kLengthSmf, P00, 142, {165, 1, 2, 3, 4}, 165000, ""},
              {Field::kLengthOm3, P00, 142, {1, 165, 2, 3, 4}, 330, ""},
              {Field::kLengthOm2, P00, 142, {1, 2, 165, 3, 4}, 165, ""},
              {Field::kLengthOm1, P00, 142, {1, 2, 3, 165, 4}, 165, ""},
              {Field::kLengthOm4, P00, 142, {1, 2, 3, 4, 165}, 330, ""},
              {Field::kTechnology, P00, 147, {0x0F}, 0, "850 nm VCSEL"},
              {Field::kTechnology, P00, 147, {0x68}, 6, "1310 nm EML"},
              {Field::kTechnology, P00, 147, {0xF1}, 15, "Copper cable, linear active equalizers"},
              {Field::kWavelengthControl, P00, 147, {0x98}, 1, ""},
              {Field::kCooledTransmitter, P00, 147, {0x94}, 1, ""},
              {Field::kDetector, P00, 147, {0x02}, 1, "APD"},
              {Field::kDetector, P00, 147, {0x0D}, 0, "PIN"},
              {Field::kTunableTransmitter, P00, 147, {0x91}, 1, ""},
              {Field::kVendor, P00, 148, Chars("Acme Optics     "), 0, "Acme Optics"},
              {Field::kVendor, P00, 148, Chars("ABCDEFGHIJKLMNOP"), 0, "ABCDEFGHIJKLMNOP"},
              {Field::kSpeedMask, P00, 164, {0x15}, 0x15, ""},
              {Field::kSpeedMask, P00, 164, {0xEA}, 0xEA, ""},
              {Field::kOui, P00, 165, {0xA0, 0xB1, 0x02}, 0, "a0b102"},
              {Field::kPartNumber, P00, 168, Chars(" AO-Q28 SR4     "), 0, " AO-Q28 SR4"},
              {Field::kPartNumber, P00, 168, Chars("abcdefghijklmnop"), 0, "abcdefghijklmnop"},
              {Field::kVendorRevision, P00, 184, Chars("A1"), 0, "A1"},
              {Field::kWavelength, P00, 186, {0x66, 0x59, 0x05, 0x14}, 1310.05, ""},
              {Field::kWavelengthTolerance, P00, 186, {0x66, 0x58, 0x05, 0x15}, 6.505, ""},
              {Field::kMaxCaseTemperature, P00, 190, {85}, 85, ""},
              {Field::kMaxCaseTemperature, P00, 190, {0}, 70, ""},
              {Field::kExtendedCompliance, P00, 192, {0x06}, 6, "100G CWDM4"},
              {Field::kExtendedCompliance, P00, 192, {0x0A}, 10, ""},
              {Field::kExtendedCompliance, P00, 192, {0x80}, 0x80, "64GFC"},
              {Field::kSerialNumber, P00, 196, Chars("AO\xB5 4711        "), 0, "AO\xC2\xB5 4711"},
              {Field::kSerialNumber, P00, 196, Chars("0123456789abcdef"), 0, "0123456789abcdef"},
              {Field::kDateCode, P00, 212, Chars("240315L7"), 0, "240315"},
              {Field::kLot, P00, 212, Chars("240315L7"), 0, "L7"},
              {Field::kRxPowerType, P00, 220, {0x3C}, 1, "average power"},
              {Field::kClei, P02, 128, Chars("ABCDEFGHIJkl"), 0, "ABCDEFGHIJ"},
          }};
}

// Without the bit of average power, RX power is monitored where a lane is not 0.
Cases Oma() {
  return {Full().Put(L, 34, {0, 1}), {{Field::kRxPowerType, P00, 220, {0xF7}, 0, "OMA"}}};
}

Cases ExtendedRate() {
  return {Full().Put(P00, 140, {255}),
          {
              {Field::kNominalBitrate, P00, 222, {103}, 25750, ""},
              {Field::kExtendedBitrate, P00, 222, {106}, 26500, ""},
              {Field::kExtendedBitrate, P00, 222, {212}, 53000, ""},
          }};
}

Cases CopperCable() {
  return {Copper(),
          {
              {Field::kAttenuation2p5, P00, 186, {5, 7, 9, 13}, 5, ""},
              {Field::kAttenuation5, P00, 186, {5, 7, 9, 13}, 7, ""},
              {Field::kAttenuation7, P00, 186, {5, 7, 9, 13}, 9, ""},
              {Field::kAttenuation12p9, P00, 186, {5, 7, 9, 13}, 13, ""},
              {Field::kAttenuation25p8, P00, 144, {2, 21, 3}, 21, ""},
              {Field::kAttenuation2p5, P00, 186, {133, 7, 9, 13}, 133, ""},
              {Field::kAttenuation5, P00, 186, {5, 135, 9, 13}, 135, ""},
              {Field::kAttenuation7, P00, 186, {5, 7, 137, 13}, 137, ""},
              {Field::kAttenuation12p9, P00, 186, {5, 7, 9, 141}, 141, ""},
              {Field::kAttenuation25p8, P00, 144, {2, 149, 3}, 149, ""},
              {Field::kLengthCable, P00, 145, {2, 3}, 3, ""},
          }};
}

Cases Page03() {
  return {Full(),
          {
              {Field::kMaxTxInputEq, P03, 224, {0xA7}, 10, ""},
              {Field::kMaxRxEmphasis, P03, 224, {0xA7}, 7, ""},
              {Field::kRxEmphasisType,
               P03,
               225,
               {0xCF},
               0,
               "constant peak-to-peak amplitude, or no information"},
              {Field::kRxEmphasisType, P03, 225, {0x10}, 1, "constant steady-state amplitude"},
              {Field::kRxEmphasisType, P03, 225, {0xEF}, 2, "constant average amplitude"},
              {Field::kRxEmphasisType, P03, 225, {0x30}, 3, ""},
              {Field::kRxAmplitudes, P03, 225, {0xF5}, 5, ""},
              {Field::kCoolerSettlingTime, P03, 227, {1, 14, 2}, 14, ""},
              {Field::kCoolerSettlingTime, P03, 227, {1, 142, 2}, 142, ""},
              {Field::kAdaptiveEqSettlingTime, P03, 228, {2, 10, 1}, 1000, ""},
              {Field::kAdaptiveEqSettlingTime, P03, 228, {2, 138, 1}, 13800, ""},
              {Field::kHostFec, P03, 230, {0x80}, 1, ""},
              {Field::kMediaFecBit, P03, 230, {0x40}, 1, ""},
              {Field::kMediaFecBit, P03, 230, {0xBF}, 0, ""},
          }};
}

std::vector<Cases> AllCases() {
  return {LowerPage(), Sff8436(),      MicroQsfp(),   Page00(),
          Oma(),       ExtendedRate(), CopperCable(), Page03()};
}

TEST(Sff8636Map, HasItsFields) {
  for (const Cases& it : AllCases()) Expect(it.memory, it.cases);
}

TEST(Sff8636Map, HasACaseForEachField) {
  std::vector<FieldCase> all;
  for (const Cases& it : AllCases()) all.insert(all.end(), it.cases.begin(), it.cases.end());
  map_cases::ExpectCovered(Sff8636Map().fields, all);
}

TEST(Sff8636Map, HasNoValueForCodesWithoutMeaning) {
  EXPECT_FALSE(Full().Put(L, 110, {0x47}).Decode()[Field::kAdvancedLowPower].IsPresent());
  EXPECT_FALSE(Full().Put(L, 110, {0x13}).Decode()[Field::kMinOperatingVoltage].IsPresent());
  EXPECT_FALSE(Full().Put(P00, 141, {0x03}).Decode()[Field::kRateSelectVersion].IsPresent());
  EXPECT_FALSE(Full().Put(P00, 141, {0xFC}).Decode()[Field::kRateSelectVersion].IsPresent());
}

TEST(Sff8636Map, HasNoDecibelsForReservedCodes) {
  const ModuleInfo info = Full().Put(P03, 224, {0xB8}).Put(P03, 236, {0x78, 0x9F}).Decode();
  EXPECT_FALSE(info[Field::kMaxTxInputEq].IsPresent());
  EXPECT_FALSE(info[Field::kMaxRxEmphasis].IsPresent());
  EXPECT_EQ(info.lanes[0][LaneField::kRxEmphasis].number, 7);
  EXPECT_FALSE(info.lanes[1][LaneField::kRxEmphasis].IsPresent());
  EXPECT_FALSE(info.lanes[2][LaneField::kRxEmphasis].IsPresent());
  EXPECT_EQ(Warnings(info),
            (std::vector<std::string>{"Maximum TX input equalization: code 11 is not a value in dB",
                                      "Maximum RX output emphasis: code 8 is not a value in dB",
                                      "RX output emphasis: code 8 is not a value in dB: lane 2",
                                      "RX output emphasis: code 9 is not a value in dB: lane 3",
                                      "RX output emphasis: code 15 is not a value in dB: lane 4"}));
}

TEST(Sff8636Map, HasNoValueWhereZeroMeansNone) {
  const ModuleInfo info = Full().Decode();
  for (const Field field : {Field::kPropagationDelay,
                            Field::kModselWaitTime,
                            Field::kSecondaryExtendedCompliance,
                            Field::kModuleSubtype,
                            Field::kFiberFace,
                            Field::kNominalBitrate,
                            Field::kLengthSmf,
                            Field::kLengthOm4,
                            Field::kLengthOm3,
                            Field::kLengthOm2,
                            Field::kLengthOm1,
                            Field::kLengthCable,
                            Field::kVendor,
                            Field::kOui,
                            Field::kSpeedMask,
                            Field::kWavelength,
                            Field::kWavelengthTolerance,
                            Field::kExtendedCompliance,
                            Field::kClei,
                            Field::kRxAmplitudes,
                            Field::kCoolerSettlingTime,
                            Field::kAdaptiveEqSettlingTime}) {
    EXPECT_EQ(info.StateOf(field), FieldState::kNotImplemented)
        << cable_info::DescribeField(field).key;
  }
  const ModuleInfo copper = Copper().Decode();
  for (const Field field : {Field::kAttenuation2p5, Field::kAttenuation5, Field::kAttenuation7,
                            Field::kAttenuation12p9, Field::kAttenuation25p8}) {
    EXPECT_EQ(copper.StateOf(field), FieldState::kNotImplemented);
  }
}

TEST(Sff8636Map, HasNoOpticalFieldsOfCopper) {
  const ModuleInfo info = Copper().Put(P00, 142, {1, 2, 3, 4}).Put(P00, 186, {5, 7}).Decode();
  for (const Field field : {Field::kLengthSmf, Field::kLengthOm3, Field::kLengthOm2,
                            Field::kLengthOm1, Field::kWavelength, Field::kDetector}) {
    EXPECT_EQ(info[field].state, FieldState::kNotImplemented);
  }
}

TEST(Sff8636Map, HasTheAttenuationAt25GigahertzOfSomeCopperOnly) {
  for (unsigned technology = 0; technology < 16; ++technology) {
    const ModuleInfo info = Full().Put(P00, 145, {21}).Put(P00, 147, {technology << 4U}).Decode();
    const bool has_it =
        technology == 10 || technology == 11 || technology == 13 || technology == 15;
    EXPECT_EQ(info[Field::kAttenuation25p8].IsPresent(), has_it) << technology;
    EXPECT_EQ(info[Field::kLengthOm1].IsPresent(), technology < 10) << technology;
    EXPECT_EQ(info[Field::kAttenuation5].state, FieldState::kNotImplemented) << technology;
  }
}

TEST(Sff8636Map, HasNoBlankTexts) {
  const ModuleInfo blank = Full().Text(P00, 148, "                ").Decode();
  EXPECT_FALSE(blank[Field::kVendor].IsPresent());
  EXPECT_FALSE(blank[Field::kOui].IsPresent());
}

TEST(Sff8636Map, NamesItsRevision) {
  const std::pair<unsigned, std::string_view> kRevisions[] = {
      {0x01, "SFF-8436 4.8"}, {0x02, "SFF-8436 4.8"}, {0x03, "1.3"}, {0x04, "1.4"},
      {0x05, "1.5"},          {0x06, "2.0"},          {0x07, "2.5"}, {0x08, "2.8"}};
  for (const auto& [code, name] : kRevisions) {
    EXPECT_EQ(Full().Put(L, 1, {code}).Decode()[Field::kRevision].text, name);
  }
  EXPECT_FALSE(Full().Put(L, 1, {0x00}).Decode()[Field::kRevision].IsPresent());
  const ModuleInfo unknown = Full().Put(L, 1, {0x80}).Decode();
  EXPECT_FALSE(unknown[Field::kRevision].IsPresent());
  EXPECT_EQ(Warnings(unknown),
            std::vector<std::string>{"byte 1 is 0x80, which is not the code of a revision"});
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
      {0xE3, 0, 7, 5.0}, {0xC0, 33, 4, 3.3}, {0x03, 0, 7, 5.0}, {0x20, 0, 1, 1.5},
  };
  for (const Case& it : kCases) {
    const ModuleInfo info = Full().Put(P00, 129, {it.byte129}).Put(L, 107, {it.byte107}).Decode();
    EXPECT_EQ(info[Field::kPowerClass].number, it.power_class) << it.byte129;
    EXPECT_DOUBLE_EQ(info[Field::kMaxPower].number, it.watts) << it.byte129;
  }
  // Byte 107 is that of revision 2.10.
  const ModuleInfo older = Full().Put(L, 1, {7}).Put(P00, 129, {0xC0}).Put(L, 107, {33}).Decode();
  EXPECT_DOUBLE_EQ(older[Field::kMaxPower].number, 3.5);
}

TEST(Sff8636Map, UsesTheExtendedRateOnlyIfTheNominalOneRefersToIt) {
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

TEST(Sff8636Map, NamesEachComplianceBit) {
  const std::vector<BitCase> kBits = {
      {P00, 131, 6, "10GBASE-LRM"},
      {P00, 131, 5, "10GBASE-LR"},
      {P00, 131, 4, "10GBASE-SR"},
      {P00, 131, 3, "40GBASE-CR4"},
      {P00, 131, 2, "40GBASE-SR4"},
      {P00, 131, 1, "40GBASE-LR4"},
      {P00, 131, 0, "40G Active Cable (XLPPI)"},
      {P00, 132, 3, "40G OTN (OTU3B/OTU3C)"},
      {P00, 132, 2, "OC-48, long reach"},
      {P00, 132, 1, "OC-48, intermediate reach"},
      {P00, 132, 0, "OC-48, short reach"},
      {P00, 133, 7, "SAS 24.0 Gb/s"},
      {P00, 133, 6, "SAS 12.0 Gb/s"},
      {P00, 133, 5, "SAS 6.0 Gb/s"},
      {P00, 133, 4, "SAS 3.0 Gb/s"},
      {P00, 134, 3, "1000BASE-T"},
      {P00, 134, 2, "1000BASE-CX"},
      {P00, 134, 1, "1000BASE-LX"},
      {P00, 134, 0, "1000BASE-SX"},
      {P00, 135, 7, "FC very long distance (V)"},
      {P00, 135, 6, "FC short distance (S)"},
      {P00, 135, 5, "FC intermediate distance (I)"},
      {P00, 135, 4, "FC long distance (L)"},
      {P00, 135, 3, "FC medium distance (M)"},
      {P00, 135, 1, "FC longwave laser (LC)"},
      {P00, 135, 0, "FC electrical inter-enclosure (EL)"},
      {P00, 136, 7, "FC electrical intra-enclosure"},
      {P00, 136, 6, "FC shortwave laser without OFC (SN)"},
      {P00, 136, 5, "FC shortwave laser with OFC (SL)"},
      {P00, 136, 4, "FC longwave laser (LL)"},
      {P00, 137, 7, "FC twin axial pair (TW)"},
      {P00, 137, 6, "FC shielded twisted pair (TP)"},
      {P00, 137, 5, "FC miniature coax (MI)"},
      {P00, 137, 4, "FC video coax (TV)"},
      {P00, 137, 3, "FC multi-mode 62.5 um (M6)"},
      {P00, 137, 2, "FC multi-mode 50 um (M5)"},
      {P00, 137, 1, "FC multi-mode 50 um (OM3)"},
      {P00, 137, 0, "FC single mode (SM)"},
      {P00, 138, 7, "FC 1200 MB/s per lane"},
      {P00, 138, 6, "FC 800 MB/s"},
      {P00, 138, 5, "FC 1600 MB/s per lane"},
      {P00, 138, 4, "FC 400 MB/s"},
      {P00, 138, 3, "FC 3200 MB/s per lane"},
      {P00, 138, 2, "FC 200 MB/s"},
      {P00, 138, 0, "FC 100 MB/s"},
  };
  map_cases::ExpectNames(Full(), kBits, [](const ModuleInfo& info) { return info.compliance; });
}

TEST(Sff8636Map, NamesEachOption) {
  const std::vector<BitCase> kBits = {
      {P00, 129, 4, "CLEI code"},
      {P00, 129, 3, "TX CDR"},
      {P00, 129, 2, "RX CDR"},
      {P00, 193, 6, "LPMode/TxDis pin configurable"},
      {P00, 193, 5, "IntL/RxLOSL pin configurable"},
      {P00, 193, 4, "TX adaptive equalization freeze"},
      {P00, 193, 3, "TX adaptive equalization"},
      {P00, 193, 2, "TX input equalization programmable"},
      {P00, 193, 1, "RX output emphasis programmable"},
      {P00, 193, 0, "RX output amplitude programmable"},
      {P00, 194, 7, "TX CDR on/off control"},
      {P00, 194, 6, "RX CDR on/off control"},
      {P00, 194, 5, "TX CDR loss of lock flag"},
      {P00, 194, 4, "RX CDR loss of lock flag"},
      {P00, 194, 3, "RX squelch disable"},
      {P00, 194, 2, "RX output disable"},
      {P00, 194, 1, "TX squelch disable"},
      {P00, 194, 0, "TX squelch"},
      {P00, 195, 7, "Page 02h"},
      {P00, 195, 6, "Page 01h"},
      {P00, 195, 5, "Rate select"},
      {P00, 195, 4, "TX disable"},
      {P00, 195, 3, "TX fault flag"},
      {P00, 195, 2, "TX squelch reduces average power"},
      {P00, 195, 1, "TX LOS flag"},
      {P00, 195, 0, "Pages 20h and 21h"},
      {P00, 221, 4, "Initialization complete flag"},
      {P00, 221, 3, "Extended rate select"},
      {P00, 221, 2, "Application select"},
      {P00, 221, 1, "Cooler readiness flag"},
      {P00, 221, 0, "Software reset"},
      {P03, 227, 7, "Host-side FEC control"},
      {P03, 227, 6, "Media-side FEC control"},
      {P03, 227, 3, "TX forced squelch"},
      {P03, 227, 2, "RxLOSL fast mode"},
      {P03, 227, 1, "TxDis fast mode"},
  };
  map_cases::ExpectNames(Bare(), kBits, [](const ModuleInfo& info) { return info.options; });
  // Page 03h byte 227 belongs to vendors before.
  EXPECT_TRUE(Bare().Put(L, 1, {0x07}).Put(P03, 227, {0xFF}).Decode().options.empty());
}

TEST(Sff8636Map, NamesComplianceOfBothExtendedCodesAndSpeeds) {
  Memory memory = Full().Put(P00, 131, {0x84}).Put(P00, 192, {0x06}).Put(L, 116, {0x05});
  const ModuleInfo info = memory.Put(P00, 164, {0x31}).Decode();
  EXPECT_EQ(info.compliance,
            (std::vector<std::string_view>{"40GBASE-SR4", "100G CWDM4", "100GBASE-SR10"}));
  EXPECT_EQ(info.supported_speeds, (std::vector<std::string_view>{"SDR", "EDR", "HDR"}));
  const std::vector<BitCase> kSpeeds = {{P00, 164, 0, "SDR"}, {P00, 164, 1, "DDR"},
                                        {P00, 164, 2, "QDR"}, {P00, 164, 3, "FDR"},
                                        {P00, 164, 4, "EDR"}, {P00, 164, 5, "HDR"}};
  map_cases::ExpectNames(Full(), kSpeeds, [](const ModuleInfo& it) { return it.supported_speeds; });
}

// ---------------------------------------------------------------------------------------------
// Lanes
// ---------------------------------------------------------------------------------------------

std::vector<LaneCase> LaneCases() {
  std::vector<LaneCase> cases = {
      {LaneField::kRxRateSelect, L, 87, {0x1B}, {3, 2, 1, 0}},
      {LaneField::kRxRateSelect, L, 87, {0xE4}, {0, 1, 2, 3}},
      {LaneField::kTxRateSelect, L, 88, {0x1B}, {3, 2, 1, 0}},
      {LaneField::kTxRateSelect, L, 88, {0xE4}, {0, 1, 2, 3}},
      {LaneField::kTxInputEq, P03, 234, {0x12, 0x34}, {1, 2, 3, 4}},
      {LaneField::kTxInputEq, P03, 234, {0xA9, 0x87}, {10, 9, 8, 7}},
      {LaneField::kRxEmphasis, P03, 236, {0x12, 0x34}, {1, 2, 3, 4}},
      {LaneField::kRxEmphasis, P03, 236, {0x76, 0x50}, {7, 6, 5, 0}},
      {LaneField::kRxAmplitude, P03, 238, {0x01, 0x23}, {0, 1, 2, 3}},
      {LaneField::kRxAmplitude, P03, 238, {0x32, 0x10}, {3, 2, 1, 0}},
      {LaneField::kRxPowerMask, P03, 242, {0x84, 0x21}, {8, 4, 2, 1}},
      {LaneField::kTxBiasMask, P03, 244, {0xF1, 0x37}, {15, 1, 3, 7}},
      {LaneField::kTxPowerMask, P03, 246, {0x12, 0x48}, {1, 2, 4, 8}},
  };
  cases.push_back({LaneField::kRxApplicationSelect, L, 89, {4, 3, 2, 0x81}, {0x81, 2, 3, 4}});
  cases.push_back({LaneField::kTxApplicationSelect, L, 94, {0xC3, 2, 1, 5}, {5, 1, 2, 0xC3}});
  cases.push_back({LaneField::kOpticalLane, P20, 248, {0x12, 0x34}, {1, 2, 3, 4}});
  cases.push_back({LaneField::kOpticalLane, P20, 248, {0x56, 0xD1}, {5, 6, 13, 1}});
  // A bit per lane: the bytes of lanes 1 to 4 alone.
  struct LaneBits {
    LaneField field;
    Page page;
    std::size_t byte;
    std::array<unsigned, 4> lanes;
  };
  const LaneBits kBits[] = {
      {LaneField::kTxLos, L, 3, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kRxLos, L, 3, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxAdaptiveEqFault, L, 4, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kTxFault, L, 4, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxLol, L, 5, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kRxLol, L, 5, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxDisable, L, 86, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxCdr, L, 98, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kRxCdr, L, 98, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxLosMask, L, 100, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kRxLosMask, L, 100, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxAdaptiveEqFaultMask, L, 101, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kTxFaultMask, L, 101, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxLolMask, L, 102, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kRxLolMask, L, 102, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxForceSquelch, P03, 231, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kTxAdaptiveEqFreeze, P03, 233, {0x08, 0x04, 0x02, 0x01}},
      {LaneField::kRxSquelchDisable, P03, 240, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kTxSquelchDisable, P03, 240, {0x01, 0x02, 0x04, 0x08}},
      {LaneField::kRxOutputDisable, P03, 241, {0x10, 0x20, 0x40, 0x80}},
      {LaneField::kTxAdaptiveEq, P03, 241, {0x01, 0x02, 0x04, 0x08}},
  };
  for (const LaneBits& it : kBits) {
    for (std::size_t lane = 0; lane < 4; ++lane) {
      std::array<double, 4> values = {};
      values.at(lane) = 1;
      cases.push_back({it.field, it.page, it.byte, {it.lanes.at(lane)}, values});
    }
  }
  return cases;
}

TEST(Sff8636Map, HasTheFieldsOfLanes) { Expect(Full().Add(P20), LaneCases()); }

TEST(Sff8636Map, NamesOpticalLanes) {
  const ModuleInfo info = Full().Add(P20).Put(P20, 248, {0x12, 0x6D}).Decode();
  const auto name = [&info](std::size_t lane) {
    return cable_info::LaneCodeName(LaneField::kOpticalLane,
                                    info.lanes.at(lane)[LaneField::kOpticalLane]);
  };
  EXPECT_EQ(name(0), "Lane 1 LSB");
  EXPECT_EQ(name(1), "Lane 1 MSB");
  EXPECT_EQ(name(2), "Lane 2");
  EXPECT_EQ(name(3), "");
}

TEST(Sff8636Map, HasACaseForEachFieldOfLanes) {
  map_cases::ExpectCovered(Sff8636Map().lane_fields, LaneCases());
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

// ---------------------------------------------------------------------------------------------
// Advertisement
// ---------------------------------------------------------------------------------------------

// Everything is advertised and has a value.
Memory Populated() {
  Memory memory = Full().Text(P02, 128, "ABCDEFGHIJ").Put(L, 6, {0x03});
  memory.Add(P20).Put(P20, 248, {0x12, 0x34});
  memory.Put(L, 108, {0, 6, 0x2A}).Put(L, 113, {0x10}).Put(L, 115, {0x65, 0x06, 0x31});
  return memory.Put(P03, 224, {0xA7, 0x1F}).Put(P03, 228, {14, 10, 0xC0});
}

TEST(Sff8636Map, EachOptionBitGovernsItsValues) {
  const Keys kRateSelect = {"lanes.details.rx_rate_select", "lanes.details.tx_rate_select"};
  map_cases::ExpectAdvertised(
      Populated(),
      {
          {P00, 129, 5, {"details.high_power_class8_enable"}},
          {P00, 129, 4, {"identity.clei"}},
          {P00, 129, 3, {"lanes.controls.tx_cdr"}},
          {P00, 129, 2, {"lanes.controls.rx_cdr"}},
          {P00,
           141,
           1,
           {"details.rate_select_version", "lanes.details.rx_rate_select",
            "lanes.details.tx_rate_select"}},
          {P00, 193, 6, {"details.low_power_pin_is_tx_disable"}},
          {P00, 193, 5, {"details.interrupt_pin_is_los"}},
          {P00, 193, 4, {"lanes.details.tx_adaptive_eq_freeze"}},
          {P00,
           193,
           3,
           {"details.adaptive_eq_settling_time_ms", "lanes.flags.tx_adaptive_eq_fault",
            "lanes.details.tx_adaptive_eq_fault_mask", "lanes.details.tx_adaptive_eq"}},
          {P00, 193, 2, {"details.max_tx_input_eq_db", "lanes.controls.tx_input_eq"}},
          {P00,
           193,
           1,
           {"details.max_rx_emphasis_db", "details.rx_emphasis_type",
            "lanes.details.rx_emphasis_db"}},
          {P00, 193, 0, {"details.rx_amplitudes", "lanes.controls.rx_amplitude"}},
          {P00, 194, 5, {"lanes.flags.tx_lol", "lanes.details.tx_lol_mask"}},
          {P00, 194, 4, {"lanes.flags.rx_lol", "lanes.details.rx_lol_mask"}},
          {P00, 194, 3, {"lanes.details.rx_squelch_disable"}},
          {P00, 194, 2, {"lanes.controls.rx_output_disable"}},
          {P00, 194, 1, {"lanes.details.tx_squelch_disable"}},
          {P00, 195, 5, kRateSelect},
          {P00, 195, 4, {"lanes.controls.tx_disable"}},
          {P00, 195, 3, {"lanes.flags.tx_fault", "lanes.details.tx_fault_mask"}},
          {P00, 195, 1, {"lanes.flags.tx_los", "lanes.details.tx_los_mask"}},
          {P00, 195, 0, {"lanes.details.optical_lane"}},
          {P00, 220, 5, {"monitors.temperature", "details.temperature_mask"}},
          {P00, 220, 4, {"monitors.voltage", "details.voltage_mask"}},
          {P00, 220, 3, {"lanes.rx_power", "details.rx_power_type", "lanes.details.rx_power_mask"}},
          {P00, 220, 2, {"lanes.tx_power", "lanes.details.tx_power_mask"}},
          {P00, 221, 4, {"details.initialization_complete"}},
          {P00, 221, 3, kRateSelect},
          {P00,
           221,
           2,
           {"lanes.details.rx_application_select", "lanes.details.tx_application_select"}},
          {P00, 221, 1, {"details.cooler_ready", "details.cooler_ready_mask"}},
          {P00, 221, 0, {"details.software_reset"}},
          {P03, 227, 7, {"details.host_fec"}},
          {P03, 227, 6, {"details.media_fec_bit"}},
          {P03, 227, 3, {"lanes.details.tx_force_squelch"}},
      });
}

TEST(Sff8636Map, NeedsPowerClassesAbove4ForTheirEnable) {
  EXPECT_EQ(Changed(Populated().Decode(), Populated().Put(P00, 129, {0x3C}).Decode()),
            Keys{"details.high_power_enable"});
}

TEST(Sff8636Map, HasTheFieldsOfItsRevision) {
  const auto with_revision = [](unsigned code) {
    return Populated().Put(L, 1, {code}).Word(L, 22, 0x1900).Word(L, 26, 33000).Decode();
  };
  EXPECT_EQ(Changed(with_revision(0x08), with_revision(0x07)),
            (Keys{"details.modsel_wait_time_us", "details.secondary_extended_compliance",
                  "details.module_subtype", "details.fiber_face", "details.cooler_settling_time_s",
                  "details.host_fec", "details.media_fec_bit", "lanes.details.tx_force_squelch"}));
  EXPECT_EQ(Changed(with_revision(0x07), with_revision(0x06)),
            (Keys{"details.far_end", "details.near_end_lanes"}));
  EXPECT_EQ(Changed(with_revision(0x06), with_revision(0x05)),
            (Keys{"lanes.tx_power", "lanes.details.tx_power_mask"}));
  EXPECT_EQ(Changed(with_revision(0x05), with_revision(0x03)), Keys());
  // SFF-8436 reserves the properties.
  EXPECT_EQ(Changed(with_revision(0x03), with_revision(0x02)),
            (Keys{"details.propagation_delay_ns", "details.advanced_low_power_w",
                  "details.far_side_managed", "details.min_operating_voltage_v",
                  "details.initialization_complete_mask"}));
  EXPECT_EQ(Changed(with_revision(0x02), with_revision(0x01)), Keys());
}

TEST(Sff8636Map, HasLowPowerModesOfAnUnknownRevisionWhenTheByteIsUsed) {
  Memory memory = Full().Put(L, 1, {0x00});
  for (const Field field :
       {Field::kAdvancedLowPower, Field::kFarSideManaged, Field::kMinOperatingVoltage}) {
    EXPECT_EQ(memory.Decode().StateOf(field), FieldState::kNotImplemented);
  }
  memory.Put(L, 110, {0x08});
  EXPECT_EQ(memory.Decode()[Field::kAdvancedLowPower].number, 1.5);
  EXPECT_EQ(memory.Decode()[Field::kFarSideManaged].number, 1);
  EXPECT_EQ(memory.Decode()[Field::kMinOperatingVoltage].number, 3.3);
}

TEST(Sff8636Map, HasMaximumDurationsOfMicroQsfpOnly) {
  EXPECT_FALSE(Full().Put(L, 114, {0x35}).Decode()[Field::kTxTurnOnTime].IsPresent());
  EXPECT_FALSE(Full().Put(L, 114, {0x35}).Decode()[Field::kDataPathInitTime].IsPresent());
}

// No bit advertised it before revision 2.5.
TEST(Sff8636Map, ShowsAnInitializationFlagOfOlderRevisionsWhenItIsRaised) {
  Memory memory = Bare().Put(L, 1, {0x06}).Put(L, 6, {0x01});
  EXPECT_EQ(memory.Decode()[Field::kInitializationComplete].number, 1);
  EXPECT_FALSE(
      Memory(memory).Put(L, 1, {0x07}).Decode()[Field::kInitializationComplete].IsPresent());
  EXPECT_FALSE(memory.Put(L, 6, {0xFE}).Decode()[Field::kInitializationComplete].IsPresent());
}

TEST(Sff8636Map, HasOpticalValuesOfOpticsOnly) {
  const auto with_technology = [](unsigned technology) {
    Memory memory = Full().Put(P00, 142, {1, 2, 3, 0}).Put(P00, 147, {technology << 4U});
    memory.Word(L, 22, 0x1900).Word(L, 26, 33000);  // copper with sensors has them, too
    return memory.Put(P00, 186, {5, 7, 9, 13}).Decode();
  };
  EXPECT_EQ(Changed(with_technology(9), with_technology(10)), (Keys{"media.length_m.smf",
                                                                    "media.length_m.om3",
                                                                    "media.length_m.om2",
                                                                    "media.wavelength_nm",
                                                                    "media.wavelength_tolerance_nm",
                                                                    "details.wavelength_control",
                                                                    "details.cooled_transmitter",
                                                                    "details.detector",
                                                                    "details.tunable_transmitter",
                                                                    "media.attenuation_db.2p5ghz",
                                                                    "media.attenuation_db.5ghz",
                                                                    "media.attenuation_db.7ghz",
                                                                    "media.attenuation_db.12p9ghz",
                                                                    "lanes.rx_power",
                                                                    "lanes.tx_power",
                                                                    "lanes.tx_bias",
                                                                    "details.rx_power_type",
                                                                    "lanes.details.rx_power_mask",
                                                                    "lanes.details.tx_power_mask",
                                                                    "lanes.details.tx_bias_mask"}));
  EXPECT_EQ(Changed(with_technology(10), with_technology(15)), Keys());
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

TEST(Sff8636Map, HasTheMonitorsOfEachLane) {
  Memory memory = Full();
  const unsigned kRaw[] = {1, 256, 4643, 65535};  // 0.1 uW, or 2 uA
  const std::array<double, 4> kMilliwatts = {0.0001, 0.0256, 0.4643, 6.5535};
  const std::array<double, 4> kMilliamperes = {0.002, 0.512, 9.286, 131.07};
  for (std::size_t lane = 0; lane < 4; ++lane) {
    memory.Word(L, 34 + 2 * lane, kRaw[lane]).Word(L, 42 + 2 * ((lane + 1) % 4), kRaw[lane]);
    memory.Word(L, 50 + 2 * ((lane + 2) % 4), kRaw[lane]);
  }
  const ModuleInfo info = memory.Decode();
  for (std::size_t lane = 0; lane < 4; ++lane) {
    EXPECT_DOUBLE_EQ(info.lanes[lane].rx_power.value, kMilliwatts.at(lane));
    EXPECT_DOUBLE_EQ(info.lanes[(lane + 1) % 4].tx_bias.value, kMilliamperes.at(lane));
    EXPECT_DOUBLE_EQ(info.lanes[(lane + 2) % 4].tx_power.value, kMilliwatts.at(lane));
  }
}

// The raised flags, such as "RX power 2: low alarm".
Keys RaisedFlags(const ModuleInfo& info) {
  constexpr std::string_view kLevels[] = {"high alarm", "low alarm", "high warning", "low warning"};
  Keys raised;
  const auto add = [&](const std::string& name, const Monitor& monitor) {
    for (unsigned level = 0; level < 4; ++level) {
      if (monitor.flags.At(static_cast<AlarmLevel>(level)).value_or(false)) {
        raised.insert(name + ": " + std::string(kLevels[level]));
      }
    }
  };
  add("temperature", info.temperature);
  add("voltage", info.voltage);
  for (const Lane& lane : info.lanes) {
    const std::string number = std::to_string(lane.number);
    add("RX power " + number, lane.rx_power);
    add("TX bias " + number, lane.tx_bias);
    add("TX power " + number, lane.tx_power);
  }
  return raised;
}

TEST(Sff8636Map, EachFlagHasItsBit) {
  struct Nibble {
    std::size_t byte;
    unsigned high_alarm;  // the bit; low alarm, high warning and low warning are below
    std::string name;
  };
  const Nibble kNibbles[] = {
      {6, 7, "temperature"}, {7, 7, "voltage"},     {9, 7, "RX power 1"},  {9, 3, "RX power 2"},
      {10, 7, "RX power 3"}, {10, 3, "RX power 4"}, {11, 7, "TX bias 1"},  {11, 3, "TX bias 2"},
      {12, 7, "TX bias 3"},  {12, 3, "TX bias 4"},  {13, 7, "TX power 1"}, {13, 3, "TX power 2"},
      {14, 7, "TX power 3"}, {14, 3, "TX power 4"},
  };
  for (const Nibble& it : kNibbles) {
    const auto raised = [&it](unsigned below) {
      return RaisedFlags(Full().Put(L, it.byte, {1U << (it.high_alarm - below)}).Decode());
    };
    EXPECT_EQ(raised(0), Keys{it.name + ": high alarm"});
    EXPECT_EQ(raised(1), Keys{it.name + ": low alarm"});
    EXPECT_EQ(raised(2), Keys{it.name + ": high warning"});
    EXPECT_EQ(raised(3), Keys{it.name + ": low warning"});
  }
}

TEST(Sff8636Map, HasNoFlagsInReservedBits) {
  const ModuleInfo info = Full().Put(L, 6, {0x0F, 0x0F, 0xFF}).Put(L, 15, {0xFF, 0xFF}).Decode();
  EXPECT_EQ(RaisedFlags(info), Keys());
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

// Reserved revision codes occur in real modules.
TEST(Sff8636Map, DecidesMonitorsByBitsOrReadingsWhereTheRevisionIsReserved) {
  Memory memory = Full().Put(L, 1, {0x80}).Put(P00, 220, {0x00});
  EXPECT_EQ(memory.Decode().temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(memory.Decode().lanes[0].tx_power.state, FieldState::kNotImplemented);
  memory.Put(P00, 220, {0x34});
  EXPECT_TRUE(memory.Decode().temperature.IsPresent());
  EXPECT_TRUE(memory.Decode().voltage.IsPresent());
  EXPECT_TRUE(memory.Decode().lanes[0].tx_power.IsPresent());
  memory.Put(P00, 220, {0x00}).Word(L, 22, 0x1900).Word(L, 26, 33000).Word(L, 56, 1);
  EXPECT_TRUE(memory.Decode().temperature.IsPresent());
  EXPECT_TRUE(memory.Decode().voltage.IsPresent());
  EXPECT_TRUE(memory.Decode().lanes[0].tx_power.IsPresent());
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

TEST(Sff8636Map, HasZeroPowerOnLanesWithoutLight) {
  // The flag of lane 3 shows that a power of 0 is measured.
  const ModuleInfo info = Full().Put(P00, 220, {0x30}).Put(L, 10, {0x40}).Decode();
  for (const Lane& lane : info.lanes) {
    EXPECT_EQ(lane.rx_power.state, FieldState::kPresent);
    EXPECT_EQ(lane.rx_power.value, 0);
  }
  EXPECT_EQ(info.lanes[2].rx_power.flags.raised, 0x2);
  EXPECT_EQ(Warnings(info), std::vector<std::string>());
}

TEST(Sff8636Map, HasNoModselWaitTimeWithoutAMantissa) {
  for (const unsigned byte : {0x00U, 0x20U, 0xE0U}) {
    const ModuleInfo info = Full().Put(L, 115, {byte}).Decode();
    EXPECT_EQ(info.StateOf(Field::kModselWaitTime), FieldState::kNotImplemented) << byte;
  }
}

TEST(Sff8636Map, HasNotReadMonitorsOfAMissingLowerPage) {
  Memory memory = Full().Put(P00, 220, {0x00});
  memory.Drop(L);
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[0].rx_power.state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[0].tx_bias.state, FieldState::kNotRead);
  for (const Field field :
       {Field::kRevision, Field::kFlatMemory, Field::kAdvancedLowPower, Field::kMinOperatingVoltage,
        Field::kNearEndLanes, Field::kModselWaitTime, Field::kPropagationDelay}) {
    EXPECT_EQ(info.StateOf(field), FieldState::kNotRead) << cable_info::DescribeField(field).key;
  }
}

TEST(Sff8636Map, HasNotReadFieldsOfAMissingPage00) {
  Memory memory = Full();
  memory.Drop(P00);
  const ModuleInfo info = memory.Decode();
  for (const Field field :
       {Field::kPowerClass, Field::kMaxCaseTemperature, Field::kNominalBitrate,
        Field::kRateSelectVersion, Field::kLengthCable, Field::kLengthOm4, Field::kLengthSmf,
        Field::kTechnology, Field::kConnector, Field::kOui}) {
    EXPECT_EQ(info.StateOf(field), FieldState::kNotRead) << cable_info::DescribeField(field).key;
  }
}

TEST(Sff8636Map, IsNotReadyWhereNothingIsMeasuredYet) {
  Memory memory = Full().Put(L, 1, {0x05, 0x01}).Put(P00, 220, {0x00});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotReady);
  EXPECT_EQ(info.voltage.state, FieldState::kNotReady);
  EXPECT_EQ(info.lanes[1].rx_power.state, FieldState::kNotReady);
  EXPECT_EQ(info.lanes[1].tx_power.state, FieldState::kNotReady);
  EXPECT_EQ(info.lanes[1].tx_bias.state, FieldState::kNotReady);
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"the module reports that its data is not ready"});
  const ModuleInfo copper = memory.Put(P00, 147, {0xA0}).Decode();
  EXPECT_EQ(copper.temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(copper.lanes[1].rx_power.state, FieldState::kNotImplemented);
}

TEST(Sff8636Map, HasTheBiasUnlessAFlatModuleMonitorsNothing) {
  Memory memory = Full().Put(L, 2, {0x04}).Put(P00, 220, {0x00});
  EXPECT_EQ(memory.Decode().lanes[0].tx_bias.state, FieldState::kNotImplemented);
  EXPECT_TRUE(Memory(memory).Word(L, 48, 1).Decode().lanes[0].tx_bias.IsPresent());
  EXPECT_TRUE(Memory(memory).Put(P00, 220, {0x20}).Decode().lanes[0].tx_bias.IsPresent());
  EXPECT_TRUE(memory.Put(L, 2, {0x00}).Decode().lanes[0].tx_bias.IsPresent());
}

TEST(Sff8636Map, HasTemperatureAndVoltageOfCopperWithSensors) {
  Memory memory = Copper().Put(L, 1, {0x05}).Put(P00, 220, {0x00});
  memory.Word(L, 22, 0x1900).Word(L, 26, 33000);
  EXPECT_EQ(memory.Decode().temperature.value, 25);
  EXPECT_DOUBLE_EQ(memory.Decode().voltage.value, 3.3);
}

TEST(Sff8636Map, HasNoTemperatureAndVoltageOfCopperWithoutSensors) {
  for (const unsigned raw : {0x0000U, 0xFFFFU}) {
    for (const unsigned technology : {0xA0U, 0xC0U, 0xF0U}) {
      Memory memory = Full().Put(P00, 147, {technology}).Word(L, 22, raw).Word(L, 26, raw);
      const ModuleInfo info = memory.Decode();  // 220.5 and 220.4 are set
      EXPECT_EQ(info.temperature.state, FieldState::kNotImplemented) << technology;
      EXPECT_EQ(info.voltage.state, FieldState::kNotImplemented) << technology;
      const ModuleInfo other = memory.Word(L, 22, 0x1900).Word(L, 26, 33000).Decode();
      EXPECT_EQ(other.temperature.value, 25);
      EXPECT_DOUBLE_EQ(other.voltage.value, 3.3);
      memory.Put(P00, 147, {0x00}).Word(L, 22, raw).Word(L, 26, raw);
      EXPECT_TRUE(memory.Decode().temperature.IsPresent()) << "an optical module";
    }
  }
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

TEST(Sff8636Map, DistinguishesMissingPagesFromFlatMemory) {
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

TEST(Sff8636Map, IgnoresThatAllLanesAreNotThere) {
  const ModuleInfo info = Full().Put(L, 113, {0x0F}).Word(L, 34, 100).Decode();
  EXPECT_TRUE(info.lanes[0].rx_power.IsPresent());
  EXPECT_FALSE(info[Field::kNearEndLanes].IsPresent());
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{
                "byte 113 states that the module has none of its four lanes; it is ignored"});
  // Byte 113 counts from revision 2.5 on.
  const ModuleInfo older = Full().Put(L, 1, {0x06}).Put(L, 113, {0x0C}).Decode();
  EXPECT_TRUE(older.lanes[3][LaneField::kRxLos].IsPresent());
}

TEST(Sff8636Map, HasNoPage03ThatRepeatsPage00) {
  Memory memory = Full();
  for (std::size_t byte = 128; byte < 256; ++byte) {
    memory.Put(P03, byte, {memory.image().At(P00, byte).value_or(0)});
  }
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kMaxTxInputEq].state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[0][LaneField::kTxInputEq].state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[0].rx_power.thresholds.given, 0);
  EXPECT_EQ(info.pages_read, (std::vector<Page>{L, P00, P02}));
}

TEST(Sff8636Map, IsThatOfEveryIdentifierOfTheFamily) {
  for (const unsigned identifier : {0x0DU, 0x0FU, 0x10U, 0x11U, 0x14U, 0x15U, 0x17U}) {
    const ModuleInfo info = Full().Put(L, 0, {identifier}).Put(P00, 128, {identifier}).Decode();
    EXPECT_EQ(info.family, ModuleFamily::kSff8636) << identifier;
    EXPECT_EQ(Warnings(info), std::vector<std::string>()) << identifier;
  }
  const ModuleInfo old = Full().Put(L, 0, {0x0C}).Put(P00, 128, {0x0C}).Decode();
  EXPECT_EQ(old.family, ModuleFamily::kSff8636);
  EXPECT_EQ(Warnings(old),
            std::vector<std::string>{
                "the identifier is that of INF-8438, whose memory map differs in places"});
}

TEST(Sff8636Map, VerifiesItsChecksums) {
  const ModuleInfo info = Full().Put(P00, 191, {1}).Decode();
  ASSERT_EQ(info.checksums.size(), 2U);
  EXPECT_EQ(info.checksums[0].last, 190);
  EXPECT_EQ(info.checksums[0].stored, 1);
  // Identifier, extended identifier, connector, rate select version
  EXPECT_EQ(info.checksums[0].computed, (0x11 + 0x3F + 0x0C + 0x02) & 0xFF);
}

TEST(Sff8636Map, IsIdentifiedByByte128IfByte0IsNoIdentifier) {
  const ModuleInfo info = Full().Put(L, 0, {0x00}).Decode();
  EXPECT_EQ(info.family, ModuleFamily::kSff8636);
  EXPECT_EQ(info[Field::kIdentifier].number, 0x11);
  EXPECT_EQ(Full().Put(L, 0, {0x00}).Put(P00, 128, {0x00}).Decode().family, ModuleFamily::kUnknown);
}

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

TEST(Sff8636Parameters, HaveTheirPlaces) {
  for (unsigned n = 1; n <= 24; ++n) {
    const unsigned set = (n - 1) % 16 + 1;
    const unsigned lane = (n - 1) % 4 + 1;
    Memory memory = WithParameters();
    memory.Put(P20, 200 + 2 * (n - 1), {(set - 1) << 4U | 0x4U | (lane - 1), 1});
    memory.Word(P20, 152 + 2 * (n - 1), 0x100 * n);
    memory.Put(P20, 128 + (n - 1) / 2, {n % 2 == 1 ? 0x2CU : 0xC2U});
    memory.Put(P21, 128 + 8 * (set - 1), {90, 0, 10, 0, 80, 0, 20, 0});
    const ModuleInfo info = memory.Decode();
    ASSERT_EQ(info.vdm.size(), 1U) << n;
    EXPECT_EQ(info.vdm[0].instance, "lane " + std::to_string(lane));
    EXPECT_EQ(info.vdm[0].lane, lane);
    EXPECT_EQ(info.vdm[0].monitor.value, n);
    EXPECT_EQ(info.vdm[0].monitor.thresholds.values, (std::array<double, 4>{90, 10, 80, 20}));
    EXPECT_EQ(info.vdm[0].monitor.flags.raised, 0x4) << n;  // high warning
  }
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

TEST(Sff8636Parameters, InfinityIsMissing) {
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
