// Fields of a CMIS module as a whole: bytes in, value out.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/module_memory/module_info.h"
#include "cmis_cases.h"
#include "cmis_memory.h"

namespace {

using cable_info::Field;
using cable_info::FieldState;
using cable_info::FieldValue;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::PageOf;
using cmis_cases::Differences;
using cmis_cases::PlacesOf;
using cmis_memory::BareModule;
using cmis_memory::FlatModule;
using cmis_memory::FullModule;
using cmis_memory::Memory;

struct Number {
  Field field;
  Page page;
  std::size_t byte;
  unsigned width;  // bytes
  unsigned raw;
  double value;
};

// All other bytes are 0 except the advertising bits.
std::vector<Number> Numbers() {
  constexpr Page kLower = Page::kLower;
  return {
      {Field::kLowPowerRestrictions, kLower, 62, 1, 0x8A, 10},
      {Field::kPowerClass, Page::k00, 200, 1, 0x00, 1},
      {Field::kPowerClass, Page::k00, 200, 1, 0xE0, 8},
      {Field::kMaxPower, Page::k00, 201, 1, 41, 10.25},
      {Field::kLengthCable, Page::k00, 202, 1, 0x05, 0.5},
      {Field::kLengthCable, Page::k00, 202, 1, 0x45, 5},
      {Field::kLengthCable, Page::k00, 202, 1, 0x85, 50},
      {Field::kLengthCable, Page::k00, 202, 1, 0xFE, 6200},
      {Field::kLengthSmf, Page::k01, 132, 1, 0x05, 500},
      {Field::kLengthSmf, Page::k01, 132, 1, 0x4A, 10000},
      {Field::kLengthSmf, Page::k01, 132, 1, 0x84, 40000},
      {Field::kLengthSmf, Page::k01, 132, 1, 0xCA, 500000},  // 137.7-6 is 0: 50 km
      {Field::kLengthOm5, Page::k01, 133, 1, 75, 150},
      {Field::kLengthOm4, Page::k01, 134, 1, 50, 100},
      {Field::kLengthOm3, Page::k01, 135, 1, 35, 70},
      {Field::kLengthOm2, Page::k01, 136, 1, 30, 30},
      {Field::kWavelength, Page::k01, 138, 2, 26200, 1310},
      {Field::kWavelengthTolerance, Page::k01, 140, 2, 1300, 6.5},
      {Field::kBanks, Page::k01, 142, 1, 0xFC, 1},
      {Field::kBanks, Page::k01, 142, 1, 0xFE, 4},
      {Field::kBanks, Page::k01, 142, 1, 0xFF, 1},  // and 174.4-0 more
      {Field::kModselWaitTime, Page::k01, 143, 1, 0x61, 8},
      {Field::kMaxCaseTemperature, Page::k01, 146, 1, 70, 70},
      {Field::kMinCaseTemperature, Page::k01, 147, 1, 0xFB, -5},
      {Field::kPropagationDelay, Page::k01, 148, 2, 0x0102, 2580},
      {Field::kMinOperatingVoltage, Page::k01, 150, 1, 157, 3.14},
      {Field::kCdrPowerSaved, Page::k01, 152, 1, 25, 0.25},
      {Field::kCdbEplPages, Page::k01, 163, 1, 0x70, 0},
      {Field::kCdbEplPages, Page::k01, 163, 1, 0x44, 4},
      {Field::kCdbEplPages, Page::k01, 163, 1, 0x45, 8},
      {Field::kCdbEplPages, Page::k01, 163, 1, 0x46, 12},
      {Field::kCdbEplPages, Page::k01, 163, 1, 0x47, 16},
      {Field::kCdbAccessSize, Page::k01, 164, 1, 0, 8},
      {Field::kCdbAccessSize, Page::k01, 164, 1, 15, 128},
      {Field::kCdbAccessSize, Page::k01, 164, 1, 255, 2048},
      {Field::kRxAmplitudes, Page::k01, 153, 1, 0x7C, 7},
      {Field::kMaxTxInputEq, Page::k01, 153, 1, 0x7C, 12},
      {Field::kMaxRxPostCursor, Page::k01, 154, 1, 0x73, 7},
      {Field::kMaxRxPreCursor, Page::k01, 154, 1, 0x73, 3},
      {Field::kTxBiasMultiplier, Page::k01, 160, 1, 0x07, 1},
      {Field::kTxBiasMultiplier, Page::k01, 160, 1, 0x0F, 2},
      {Field::kTxBiasMultiplier, Page::k01, 160, 1, 0x17, 4},
      {Field::kTemperatureMask, kLower, 32, 1, 0x21, 8},     // that of the high alarm
      {Field::kVoltageMask, kLower, 32, 1, 0x21, 4},         // that of the low alarm
      {Field::kAux1Mask, kLower, 33, 1, 0x84, 2},            // that of the high warning
      {Field::kAux2Mask, kLower, 33, 1, 0x84, 1},            // that of the low warning
      {Field::kAux3Mask, kLower, 34, 1, 0x3C, 3},            // those of both warnings
      {Field::kCustomMonitorMask, kLower, 34, 1, 0x3C, 12},  // those of both alarms
      {Field::kTxEqBuffers, Page::k01, 161, 1, 0x5F, 2},
      {Field::kPageChangeTime, Page::k01, 169, 1, 2, 2.5},
      {Field::kNadBanks, Page::k01, 175, 1, 0x15, 21},
      {Field::kGrid3p125Lowest, Page::k04, 130, 2, 0xFFB8, -72},
      {Field::kGrid3p125Highest, Page::k04, 132, 2, 120, 120},
      {Field::kGrid6p25Lowest, Page::k04, 134, 2, 0xFFB8, -72},
      {Field::kGrid6p25Highest, Page::k04, 136, 2, 120, 120},
      {Field::kGrid12p5Lowest, Page::k04, 138, 2, 0xFFB8, -72},
      {Field::kGrid12p5Highest, Page::k04, 140, 2, 120, 120},
      {Field::kGrid25Lowest, Page::k04, 142, 2, 0xFFB8, -72},
      {Field::kGrid25Highest, Page::k04, 144, 2, 120, 120},
      {Field::kGrid50Lowest, Page::k04, 146, 2, 0xFFB8, -72},
      {Field::kGrid50Highest, Page::k04, 148, 2, 120, 120},
      {Field::kGrid100Lowest, Page::k04, 150, 2, 0xFFB8, -72},
      {Field::kGrid100Highest, Page::k04, 152, 2, 120, 120},
      {Field::kGrid33Lowest, Page::k04, 154, 2, 0xFFA6, -90},
      {Field::kGrid33Highest, Page::k04, 156, 2, 90, 90},
      {Field::kGrid75Lowest, Page::k04, 158, 2, 0xFFB8, -72},
      {Field::kGrid75Highest, Page::k04, 160, 2, 120, 120},
      {Field::kGrid150Lowest, Page::k04, 162, 2, 0xFFB8, -72},
      {Field::kGrid150Highest, Page::k04, 164, 2, 120, 120},
      {Field::kGrid300Lowest, Page::k04, 166, 2, 0xFFB8, -72},
      {Field::kGrid300Highest, Page::k04, 168, 2, 120, 120},
      {Field::kFineTuningResolution, Page::k04, 190, 2, 10, 0.01},
      {Field::kFineTuningLowest, Page::k04, 192, 2, 0xE890, -6},
      {Field::kFineTuningHighest, Page::k04, 194, 2, 6000, 6},
      {Field::kOutputPowerLowest, Page::k04, 198, 2, 0xFA88, -14},
      {Field::kOutputPowerHighest, Page::k04, 200, 2, 0xFC18, -10},
      {Field::kDiagnosticsSelector, Page::k14, 128, 1, 6, 6},
      {Field::kVdmGroups, PageOf(0x2F), 128, 1, 0xFE, 3},
      {Field::kVdmInterval, PageOf(0x2F), 129, 2, 0x7530, 3000},
      {Field::kVdmDutyCycle, PageOf(0x2F), 144, 1, 0xD7, 50},
      {Field::kUserPatternSize, Page::k13, 140, 1, 0xE3, 8},
  };
}

Memory& PutNumber(Memory& memory, Page page, std::size_t byte, unsigned width, unsigned raw) {
  return width == 1 ? memory.Put(page, byte, {raw}) : memory.Word(page, byte, raw);
}

TEST(CmisFields, NumbersHaveTheirPlaceAndUnit) {
  for (const Number& expected : Numbers()) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = FullModule();
    PutNumber(memory, expected.page, expected.byte, expected.width, expected.raw);
    const FieldValue value = memory.Decode()[expected.field];
    EXPECT_EQ(value.state, FieldState::kPresent);
    EXPECT_EQ(value.number, expected.value);
  }
}

struct Coded {
  Field field;
  Page page;
  std::size_t byte;
  unsigned raw;  // of the whole byte
  unsigned code;
  std::string_view name;
};

std::vector<Coded> Codes() {
  constexpr Page kLower = Page::kLower;
  return {
      {Field::kIdentifier, kLower, 0, 0x1E, 0x1E, "QSFP+ or later with CMIS"},
      {Field::kManagementSpeed, kLower, 2, 0x4A, 2, "3.4 MHz"},
      {Field::kManagementSpeed, kLower, 2, 0x50, 4, ""},
      {Field::kAutoCommissioning, kLower, 2, 0x4A, 2, "hot"},
      {Field::kState, kLower, 3, 0x06, 3, "ModuleReady"},
      {Field::kState, kLower, 3, 0xF2, 1, "ModuleLowPwr"},
      {Field::kState, kLower, 3, 0x0B, 5, "ModuleFault"},
      {Field::kState, kLower, 3, 0x00, 0, ""},
      {Field::kTxSquelch, kLower, 26, 0x20, 1, "reduces average power"},
      {Field::kFaultCause, kLower, 41, 1, 1, "TEC runaway"},
      {Field::kFaultCause, kLower, 41, 32, 32, ""},
      {Field::kStateMachines, kLower, 56, 3, 3, "module and data path"},
      {Field::kFunctionType, kLower, 57, 1, 1, "external laser source"},
      {Field::kModuleSubtype, kLower, 60, 0xF2, 2, "Type 2"},
      {Field::kHeatsink, kLower, 61, 0x12, 1, "RHS riding heatsink"},
      {Field::kFiberFace, kLower, 61, 0x12, 2, "APC"},
      {Field::kMediaType, kLower, 85, 1, 1, "MMF"},
      {Field::kMediaType, kLower, 85, 0x40, 0x40, ""},
      {Field::kConnector, Page::k00, 203, 0x28, 0x28, "MPO 1x16"},
      {Field::kFarEnd, Page::k00, 211, 0xE3, 3, "two ends of 4 lanes"},
      {Field::kFarEnd, Page::k00, 211, 4, 4, ""},
      {Field::kTechnology, Page::k00, 212, 16, 16, "C-band tunable laser"},
      {Field::kTechnology, Page::k00, 212, 21, 21, ""},
      {Field::kDataPathDeinitTime, Page::k01, 144, 0x70, 7, "< 5 s"},
      {Field::kDataPathInitTime, Page::k01, 144, 0x0D, 13, ">= 50 min"},
      {Field::kDataPathInitTime, Page::k01, 144, 0x0E, 14, ""},
      {Field::kTxInputClocking, Page::k01, 145, 0x40, 2, "pairs of lanes"},
      {Field::kDetector, Page::k01, 151, 0x80, 1, "APD"},
      {Field::kRxEmphasisType, Page::k01, 151, 0x20, 1, "steady state amplitude stays constant"},
      {Field::kRxPowerType, Page::k01, 151, 0x10, 1, "average power"},
      {Field::kRxPowerType, Page::k01, 151, 0xEF, 0, "OMA"},
      {Field::kTxSquelchMethods, Page::k01, 155, 0x20, 2, "reduces average power"},
      {Field::kRxOutputEqControls, Page::k01, 162, 0x18, 3, "pre-cursor and post-cursor"},
      {Field::kCdbInstances, Page::k01, 163, 0x40, 1, "one"},
      {Field::kModulePowerDownTime, Page::k01, 167, 0x20, 2, "< 10 ms"},
      {Field::kHostLaneSwitchingTime, PageOf(0x1D), 128, 0x2F, 2, "< 10 ms"},
      {Field::kMediaLaneSwitchingTime, PageOf(0x6D), 128, 0x70, 7, "< 5 s"},
      {Field::kModulePowerUpTime, Page::k01, 167, 0x07, 7, "< 5 s"},
      {Field::kTxTurnOffTime, Page::k01, 168, 0x30, 3, "< 50 ms"},
      {Field::kTxTurnOnTime, Page::k01, 168, 0x06, 6, "< 1 s"},
      {Field::kGatingSupport, Page::k13, 129, 0x40, 1, "<= 2 ms"},
      {Field::kGateTime, Page::k13, 177, 0xF9, 4, "60 s"},
      {Field::kGateTime, Page::k13, 177, 0x02, 1, "5 s"},
      {Field::kGateTime, Page::k13, 177, 0x04, 2, "10 s"},
      {Field::kGateTime, Page::k13, 177, 0x0C, 6, "300 s"},
      {Field::kUpdateInterval, Page::k13, 177, 0x01, 1, "5 s"},
      {Field::kUpdateInterval, Page::k13, 177, 0xFE, 0, "1 s"},
      {Field::kCdb1Status, kLower, 37, 0x01, 0x01, "done"},
      {Field::kCdb1Status, kLower, 37, 0x45, 0x45, "failed: check code"},
      {Field::kCdb1Status, kLower, 37, 0x83, 0x83, "busy: executing"},
      {Field::kCdb2Status, kLower, 38, 0x46, 0x46, "failed: password"},
      {Field::kCdb2Status, kLower, 38, 0x3F, 0x3F, ""},
      {Field::kPasswordResult, kLower, 42, 0xF8, 8, "in progress"},
      {Field::kPasswordResult, kLower, 42, 0x31, 1, "module password accepted"},
      {Field::kScratchPad, Page::k01, 251, 0x56, 1, "not supported"},
      {Field::kPasswordEntry, Page::k01, 251, 0x26, 2, "supported"},
      {Field::kPasswordEntryResult, Page::k01, 251, 0xF7, 1, "not supported"},
      {Field::kFullPageRead, Page::k01, 251, 0x56, 2, "supported"},
  };
}

TEST(CmisFields, CodesHaveTheirPlaceAndName) {
  for (const Coded& expected : Codes()) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = FullModule();
    memory.Put(expected.page, expected.byte, {expected.raw});
    const ModuleInfo info = memory.Decode();
    const FieldValue value = info[expected.field];
    EXPECT_EQ(value.state, FieldState::kPresent);
    EXPECT_EQ(value.code(), expected.code);
    EXPECT_EQ(value.text, expected.name);
  }
}

struct Flag {
  Field field;
  Page page;
  std::size_t byte;
  unsigned bit;
};

std::vector<Flag> Flags() {
  constexpr Page kLower = Page::kLower;
  return {
      {Field::kCdb2Complete, kLower, 8, 7},
      {Field::kCdb1Complete, kLower, 8, 6},
      {Field::kAbnormalFirmware, kLower, 8, 3},
      {Field::kDataPathFirmwareError, kLower, 8, 2},
      {Field::kModuleFirmwareError, kLower, 8, 1},
      {Field::kModuleStateChanged, kLower, 8, 0},
      {Field::kBankBroadcast, kLower, 26, 7},
      {Field::kLowPowerPinEnabled, kLower, 26, 6},
      {Field::kLowPowerRequest, kLower, 26, 4},
      {Field::kSoftwareReset, kLower, 26, 3},
      {Field::kSteppedConfigOnly, kLower, 2, 6},
      {Field::kCooledTransmitter, Page::k01, 145, 7},
      {Field::kReferenceClockLost, Page::k14, 132, 7},
      {Field::kReferenceClockMask, Page::k13, 206, 7},
      {Field::kAutoRestart, Page::k13, 177, 4},
      {Field::kVdmFrozen, PageOf(0x2F), 145, 7},
      {Field::kVdmUnfrozen, PageOf(0x2F), 145, 6},
      {Field::kVdmFreezeRequested, PageOf(0x2F), 144, 7},
      {Field::kVdmPowerSaving, PageOf(0x2F), 144, 6},
      {Field::kHostLaneSwitching, PageOf(0x1D), 152, 0},
      {Field::kMediaLaneSwitching, PageOf(0x6D), 152, 0},
      {Field::kCdb2CompleteMask, kLower, 31, 7},
      {Field::kCdb1CompleteMask, kLower, 31, 6},
      {Field::kAbnormalFirmwareMask, kLower, 31, 3},
      {Field::kDataPathFirmwareMask, kLower, 31, 2},
      {Field::kModuleFirmwareMask, kLower, 31, 1},
      {Field::kModuleStateMask, kLower, 31, 0},
      {Field::kWavelengthControl, Page::k01, 155, 7},
      {Field::kTunableTransmitter, Page::k01, 155, 6},
  };
}

TEST(CmisFields, FlagsAreSetByTheirBitAlone) {
  for (const Flag& expected : Flags()) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = FullModule();
    memory.Put(expected.page, expected.byte, {1U << expected.bit});
    EXPECT_EQ(memory.Decode()[expected.field].number, 1.0);
    const unsigned others = expected.byte == 2 ? 0x7F : 0xFF;  // bit 7 there is flat memory
    memory.Put(expected.page, expected.byte, {others & ~(1U << expected.bit)});
    EXPECT_EQ(memory.Decode()[expected.field].number, 0.0);
  }
}

TEST(CmisFields, InterruptIsAssertedByAClearBit) {
  Memory memory = FullModule();
  EXPECT_EQ(memory.Put(Page::kLower, 3, {0x06}).Decode()[Field::kInterruptAsserted].number, 1.0);
  EXPECT_EQ(memory.Put(Page::kLower, 3, {0x07}).Decode()[Field::kInterruptAsserted].number, 0.0);
}

struct Worded {
  Field field;
  Page page;
  std::size_t byte;
  std::vector<unsigned> bytes;
  std::string_view text;
};

std::vector<Worded> Words() {
  constexpr Page kLower = Page::kLower;
  constexpr Page kFirmware = PageOf(0x0D);
  constexpr std::string_view kLetters32 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`";
  constexpr std::string_view kLetters31 =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_#";  // up to the last byte
  std::vector<unsigned> highest_page(32);
  highest_page[31] = 0x80;
  const auto letters = [](unsigned count) {
    std::vector<unsigned> bytes;
    for (unsigned i = 0; i < count; ++i) bytes.push_back('A' + i);
    bytes.push_back('#');  // of the next field
    return bytes;
  };
  return {
      {Field::kRevision, kLower, 1, {0x53}, "5.3"},
      {Field::kFlagSummary0, kLower, 4, {0x00}, "none"},
      {Field::kFlagSummary0, kLower, 4, {0x01}, "page 11h"},
      {Field::kFlagSummary0, kLower, 4, {0xF6}, "page 12h, page 14h"},
      {Field::kFlagSummary0, kLower, 4, {0x08}, "page 2Ch"},
      {Field::kFirmwareActive, kLower, 39, {2, 7}, "2.7"},
      {Field::kVendor, Page::k00, 129, letters(16), "ABCDEFGHIJKLMNOP"},
      {Field::kOui, Page::k00, 145, {0xA0, 0xB1, 0xC2, 0xD3}, "a0b1c2"},
      {Field::kPartNumber, Page::k00, 148, letters(16), "ABCDEFGHIJKLMNOP"},
      {Field::kVendorRevision, Page::k00, 164, letters(2), "AB"},
      {Field::kSerialNumber, Page::k00, 166, letters(16), "ABCDEFGHIJKLMNOP"},
      {Field::kDateCode, Page::k00, 182, letters(6), "ABCDEF"},
      {Field::kLot, Page::k00, 188, letters(2), "AB"},
      {Field::kClei, Page::k00, 190, letters(10), "ABCDEFGHIJ"},
      {Field::kFirmwareInactive, Page::k01, 128, {3, 12}, "3.12"},
      {Field::kHardware, Page::k01, 130, {1, 4}, "1.4"},
      {Field::kPagesSupported, PageOf(0x0C), 128, {0x07, 0, 0x83}, "00h, 01h, 02h, 10h, 11h, 17h"},
      {Field::kPagesSupported, PageOf(0x0C), 128, highest_page, "FFh"},
      {Field::kFirmwareA, kFirmware, 148, {1, 2, 0x01, 0x02}, "1.2.258"},
      {Field::kFirmwareAText, kFirmware, 152, letters(32), kLetters32},
      {Field::kFirmwareAState, kFirmware, 136, {0x03}, "running, committed"},
      {Field::kFirmwareAState, kFirmware, 136, {0x74}, "invalid"},
      {Field::kFirmwareAState, kFirmware, 136, {0xF8}, "not running"},
      {Field::kFirmwareB, kFirmware, 184, {255, 0, 0, 9}, "255.0.9"},
      {Field::kFirmwareBText, kFirmware, 188, letters(32), kLetters32},
      {Field::kFirmwareBState, kFirmware, 136, {0x13}, "running"},
      {Field::kFirmwareBState, kFirmware, 136, {0x27}, "committed"},
      {Field::kFirmwareBState, kFirmware, 136, {0x40}, "invalid"},
      {Field::kFirmwareFixed, kFirmware, 220, {9, 8, 0, 7}, "9.8.7"},
      {Field::kFirmwareFixedText, kFirmware, 224, letters(31), kLetters31},
      {Field::kHostGeneratorPatterns, Page::k13, 132, {0x81, 0x10}, "PRBS31Q, PRBS13, SSPRQ"},
      {Field::kMediaGeneratorPatterns, Page::k13, 134, {0x02, 0x00}, "PRBS31"},
      {Field::kHostCheckerPatterns, Page::k13, 136, {0x00, 0xA0}, "13, user pattern"},
      {Field::kMediaCheckerPatterns, Page::k13, 138, {0x04, 0x02}, "PRBS23Q, PRBS9"},
  };
}

TEST(CmisFields, TextsHaveTheirPlace) {
  for (const Worded& expected : Words()) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = FullModule();
    memory.Put(expected.page, expected.byte, expected.bytes);
    const ModuleInfo info = memory.Decode();
    EXPECT_EQ(info[expected.field].state, FieldState::kPresent);
    EXPECT_EQ(info[expected.field].text, expected.text);
  }
}

TEST(CmisFields, FlagSummariesOfOtherBanksFollow) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 142, {0xFE}).Put(Page::kLower, 4, {1, 2, 4, 8});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kFlagSummary0].text, "page 11h");
  EXPECT_EQ(info[Field::kFlagSummary1].text, "page 12h");
  EXPECT_EQ(info[Field::kFlagSummary2].text, "page 14h");
  EXPECT_EQ(info[Field::kFlagSummary3].text, "page 2Ch");
  memory.Put(Page::k01, 142, {0xFD});
  EXPECT_EQ(memory.Decode()[Field::kFlagSummary1].text, "page 12h");
  EXPECT_EQ(memory.Decode()[Field::kFlagSummary2].state, FieldState::kNotImplemented);
}

TEST(CmisFields, FlagSummariesWereOfLanesBeforeCmis50) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 1, {0x41}).Put(Page::kLower, 4, {0x85});
  EXPECT_EQ(memory.Decode()[Field::kFlagSummary0].text, "lane 1, lane 3, lane 8");
}

TEST(CmisFields, FirmwareBanksWithoutALoadHaveNoVersion) {
  constexpr Page kFirmware = PageOf(0x0D);
  Memory memory = FullModule();
  memory.Put(kFirmware, 148, {0, 0, 0, 1}).Put(kFirmware, 184, {255, 255, 0, 1});
  memory.Put(kFirmware, 220, {0, 1, 0, 0});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kFirmwareA].state, FieldState::kNotImplemented);
  EXPECT_EQ(info[Field::kFirmwareB].state, FieldState::kNotImplemented);
  EXPECT_EQ(info[Field::kFirmwareFixed].text, "0.1.0");
}

TEST(CmisFields, BanksOfDescriptorsHadFourBitsInCmis53) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 1, {0x53}).Put(Page::k01, 175, {0xF5});
  EXPECT_EQ(memory.Decode()[Field::kNadBanks].number, 5.0);
}

TEST(CmisFields, EveryFieldOfTheMapHasACase) {
  std::set<std::string> tested = PlacesOf(Numbers());
  tested.merge(PlacesOf(Codes()));
  tested.merge(PlacesOf(Flags()));
  tested.merge(PlacesOf(Words()));
  const std::vector<Worded> tested_alone = {
      {Field::kInterruptAsserted, Page::kLower, 3, {}, ""},  // asserted by a clear bit
      {Field::kFlatMemory, Page::kLower, 2, {}, ""},
      {Field::kAttenuation5, Page::k00, 204, {}, ""},  // of copper cables
      {Field::kAttenuation7, Page::k00, 205, {}, ""},
      {Field::kAttenuation12p9, Page::k00, 206, {}, ""},
      {Field::kAttenuation25p8, Page::k00, 207, {}, ""},
      {Field::kAttenuation53p1, Page::k00, 208, {}, ""},
      {Field::kFlagSummary1, Page::kLower, 5, {}, ""},
      {Field::kFlagSummary2, Page::kLower, 6, {}, ""},
      {Field::kFlagSummary3, Page::kLower, 7, {}, ""},
  };
  tested.merge(PlacesOf(tested_alone));
  EXPECT_EQ(Differences(tested, PlacesOf(cable_info::module_memory::CmisMap().fields)),
            std::vector<std::string>());
}

TEST(CmisFields, FlatMemoryIsMarked) {
  EXPECT_EQ(FlatModule().Decode()[Field::kFlatMemory].number, 1.0);
  EXPECT_EQ(FlatModule().Put(Page::kLower, 2, {0x7F}).Decode()[Field::kFlatMemory].number, 0.0);
}

TEST(CmisFields, TextsAreTrimmedOfBlanksAndNuls) {
  Memory memory = BareModule();
  memory.Text(Page::k00, 129, "Example Vendor  ");
  memory.Put(Page::k00, 145, {0xA0, 0xB1, 0xC2});
  memory.Text(Page::k00, 148, "PART-0123456789X");
  memory.Text(Page::k00, 164, "A1");
  memory.Text(Page::k00, 166, "SN123");  // NULs follow
  memory.Text(Page::k00, 182, "24011799");
  memory.Text(Page::k00, 190, "          ");
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kVendor].text, "Example Vendor");
  EXPECT_EQ(info[Field::kOui].text, "a0b1c2");
  EXPECT_EQ(info[Field::kPartNumber].text, "PART-0123456789X");
  EXPECT_EQ(info[Field::kVendorRevision].text, "A1");
  EXPECT_EQ(info[Field::kSerialNumber].text, "SN123");
  EXPECT_EQ(info[Field::kDateCode].text, "240117");
  EXPECT_EQ(info[Field::kLot].text, "99");
  EXPECT_FALSE(info[Field::kClei].IsPresent());
  memory.Text(Page::k00, 190, "CLEI012345");
  EXPECT_EQ(memory.Decode()[Field::kClei].text, "CLEI012345");
}

TEST(CmisFields, RevisionIsMajorAndMinor) {
  Memory memory = BareModule();
  EXPECT_EQ(memory.Decode()[Field::kRevision].text, "5.4");
  EXPECT_EQ(memory.Put(Page::kLower, 1, {0x30}).Decode()[Field::kRevision].text, "3.0");
}

TEST(CmisFields, FirmwareOfZeroOrAllOnesIsMissing) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 39, {2, 7}).Put(Page::k01, 128, {255, 255, 1, 0});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kFirmwareActive].text, "2.7");
  EXPECT_FALSE(info[Field::kFirmwareInactive].IsPresent());
  EXPECT_EQ(info[Field::kHardware].text, "1.0");
  memory.Put(Page::kLower, 39, {0, 0}).Put(Page::k01, 128, {255, 1});
  EXPECT_FALSE(memory.Decode()[Field::kFirmwareActive].IsPresent());
  EXPECT_EQ(memory.Decode()[Field::kFirmwareInactive].text, "255.1");
}

TEST(CmisFields, ALengthOrWavelengthOfZeroIsMissing) {
  const ModuleInfo info = FullModule().Decode();
  for (const Field field :
       {Field::kLengthCable, Field::kLengthSmf, Field::kLengthOm5, Field::kLengthOm4,
        Field::kLengthOm3, Field::kLengthOm2, Field::kLengthOm1, Field::kWavelength,
        Field::kWavelengthTolerance, Field::kMaxCaseTemperature, Field::kMinCaseTemperature,
        Field::kPropagationDelay, Field::kMinOperatingVoltage, Field::kModselWaitTime}) {
    EXPECT_EQ(info[field].state, FieldState::kNotImplemented)
        << cable_info::DescribeField(field).key;
  }
}

TEST(CmisFields, TheCopyOfTheIdentifierDecidesWhereByte0NamesNoModule) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 1, {0x53}).Put(Page::kLower, 60, {0x01}).Put(Page::kLower, 86, {0xFF});
  for (const unsigned byte0 : {0x00U, 0x7FU}) {
    memory.Put(Page::kLower, 0, {byte0}).Put(Page::k00, 128, {0x1E});
    const ModuleInfo qsfp = memory.Decode();
    EXPECT_EQ(qsfp[Field::kIdentifier].code(), 0x1EU);
    EXPECT_EQ(qsfp[Field::kIdentifier].text, "QSFP+ or later with CMIS");
    EXPECT_EQ(qsfp[Field::kModuleSubtype].text, "Type 1");
    EXPECT_EQ(qsfp.lanes.size(), 4U);
    EXPECT_EQ(memory.Put(Page::k00, 128, {0x1B}).Decode().lanes.size(), 2U);
    EXPECT_EQ(memory.Put(Page::k00, 128, {0x20}).Decode().lanes.size(), 1U);
  }
  memory.Put(Page::k00, 128, {0x1E}).Drop(Page::kLower);
  EXPECT_EQ(memory.Decode()[Field::kIdentifier].code(), 0x1EU);
  EXPECT_EQ(memory.Decode().lanes.size(), 4U);
}

TEST(CmisFields, AModselWaitTimeWithoutAMantissaIsMissing) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 143, {0x20});
  EXPECT_EQ(memory.Decode().StateOf(Field::kModselWaitTime), FieldState::kNotImplemented);
}

TEST(CmisFields, ACaseTemperatureOfZeroIsValidIfTheOtherIsNotZero) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 146, {70, 0});
  const FieldValue lowest = memory.Decode()[Field::kMinCaseTemperature];
  EXPECT_EQ(lowest.state, FieldState::kPresent);
  EXPECT_EQ(lowest.number, 0.0);
}

TEST(CmisFields, AnAssemblyBeyondTheScaleHasNoLengthButAWarning) {
  Memory memory = BareModule();
  memory.Put(Page::k00, 202, {0xFF}).Sum();
  const ModuleInfo info = memory.Decode();
  EXPECT_FALSE(info[Field::kLengthCable].IsPresent());
  ASSERT_EQ(info.warnings.size(), 1U);
  EXPECT_NE(info.warnings[0].find("more than 6300 m"), std::string::npos);
}

TEST(CmisFields, TheLongestSmfLengthsNeedCmis53) {
  constexpr double kLengths[] = {500000, 1000000, 2000000, 5000000};
  for (unsigned code = 0; code < 4; ++code) {
    Memory memory = FullModule();
    memory.Put(Page::k01, 132, {0xCA}).Put(Page::k01, 137, {code << 6U});
    EXPECT_EQ(memory.Decode()[Field::kLengthSmf].number, kLengths[code]);
    memory.Put(Page::kLower, 1, {0x52});
    const ModuleInfo older = memory.Decode();
    EXPECT_FALSE(older[Field::kLengthSmf].IsPresent());
    EXPECT_FALSE(older.warnings.empty());
  }
}

TEST(CmisFields, ManagementSpeedHadTwoBitsBeforeCmis53) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 1, {0x52, 0x34});
  EXPECT_EQ(memory.Decode()[Field::kManagementSpeed].code(), 1U);
  memory.Put(Page::kLower, 1, {0x53, 0x34});
  EXPECT_EQ(memory.Decode()[Field::kManagementSpeed].code(), 13U);
}

// The attenuations that are present, from 5 GHz up.
std::vector<double> Attenuations(const ModuleInfo& info) {
  std::vector<double> attenuations;
  for (const Field field : {Field::kAttenuation5, Field::kAttenuation7, Field::kAttenuation12p9,
                            Field::kAttenuation25p8, Field::kAttenuation53p1}) {
    if (info[field].IsPresent()) attenuations.push_back(info[field].number);
  }
  return attenuations;
}

TEST(CmisFields, OnlyPassiveAndLinearCopperHasAnAttenuation) {
  const std::vector<double> all = {5, 6, 11, 23, 31};
  Memory memory = BareModule();
  memory.Put(Page::k00, 204, {5, 6, 11, 23, 31});
  for (const unsigned technology : {0U, 9U, 12U, 13U, 14U, 16U, 17U, 21U}) {
    memory.Put(Page::k00, 212, {technology});
    EXPECT_TRUE(Attenuations(memory.Decode()).empty()) << technology;
  }
  for (const unsigned technology : {10U, 11U, 15U, 18U, 19U, 20U}) {
    memory.Put(Page::k00, 212, {technology});
    EXPECT_EQ(Attenuations(memory.Decode()), all) << technology;
  }
  memory.Put(Page::kLower, 1, {0x52}).Put(Page::k00, 204, {0});
  for (const unsigned technology : {12U, 15U, 18U, 20U}) {
    memory.Put(Page::k00, 212, {technology});
    EXPECT_TRUE(Attenuations(memory.Decode()).empty()) << technology;
  }
  for (const unsigned technology : {10U, 11U}) {
    memory.Put(Page::k00, 212, {technology});
    EXPECT_EQ(Attenuations(memory.Decode()), (std::vector<double>{6, 11, 23})) << technology;
  }
}

TEST(CmisFields, TestPatternsAreListedLowByteFirst) {
  Memory memory = FullModule();
  memory.Put(Page::k13, 132, {0x81, 0x10, 0x02, 0x00, 0x00, 0xA0});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kHostGeneratorPatterns].text, "PRBS31Q, PRBS13, SSPRQ");
  EXPECT_EQ(info[Field::kMediaGeneratorPatterns].text, "PRBS31");
  EXPECT_EQ(info[Field::kHostCheckerPatterns].text, "13, user pattern");
  EXPECT_EQ(info[Field::kMediaCheckerPatterns].state, FieldState::kNotImplemented);
}

// A field whose bits are set, and the revision from which on they mean something.
struct Gate {
  Field field;
  Page page;
  std::size_t byte;
  unsigned since;
};

TEST(CmisFields, FieldsOfLaterRevisionsAreNotImplementedBefore) {
  const std::vector<Gate> gates = {
      {Field::kSteppedConfigOnly, Page::kLower, 2, 0x50},
      {Field::kAutoCommissioning, Page::kLower, 2, 0x53},
      {Field::kAbnormalFirmware, Page::kLower, 8, 0x54},
      {Field::kBankBroadcast, Page::kLower, 26, 0x52},
      {Field::kFaultCause, Page::kLower, 41, 0x50},
      {Field::kStateMachines, Page::kLower, 56, 0x53},
      {Field::kFunctionType, Page::kLower, 57, 0x53},
      {Field::kModuleSubtype, Page::kLower, 60, 0x53},
      {Field::kHeatsink, Page::kLower, 61, 0x54},
      {Field::kFiberFace, Page::kLower, 61, 0x53},
      {Field::kLowPowerRestrictions, Page::kLower, 62, 0x53},
      {Field::kPageChangeTime, Page::k01, 169, 0x53},
      {Field::kNadBanks, Page::k01, 175, 0x53},
      {Field::kHostLaneSwitching, PageOf(0x1D), 152, 0x53},
      {Field::kMediaLaneSwitching, PageOf(0x6D), 152, 0x54},
      {Field::kGrid150Lowest, Page::k04, 162, 0x53},
      {Field::kGrid300Highest, Page::k04, 168, 0x54},
      {Field::kLowPowerPinEnabled, Page::kLower, 26, 0x40},
  };
  for (const Gate& gate : gates) {
    SCOPED_TRACE(cable_info::DescribeField(gate.field).key);
    Memory memory = FullModule();
    memory.Put(gate.page, gate.byte, {0x7F});
    if (gate.byte == 62) memory.Put(gate.page, gate.byte, {0xFF});
    if (gate.byte == 26) memory.Put(gate.page, gate.byte, {0x80});
    memory.Put(Page::kLower, 1, {gate.since});
    EXPECT_EQ(memory.Decode()[gate.field].state, FieldState::kPresent);
    memory.Put(Page::kLower, 1, {gate.since - 1});
    EXPECT_EQ(memory.Decode()[gate.field].state, FieldState::kNotImplemented);
  }
}

// A field, and the bit without which it is not implemented.
struct Advertised {
  Field field;
  Page page;
  std::size_t byte;
  unsigned without;  // value of the byte with the bit clear
};

TEST(CmisFields, UnadvertisedFieldsAreNotImplemented) {
  const std::vector<Advertised> all = {
      {Field::kCdb2Complete, Page::k01, 163, 0x7F},
      {Field::kCdb1Complete, Page::k01, 163, 0x3F},
      {Field::kBankBroadcast, Page::k01, 156, 0x7F},
      {Field::kTxSquelch, Page::k01, 155, 0xEF},
      {Field::kLowPowerRestrictions, Page::kLower, 62, 0x7F},
      {Field::kAutoCommissioning, Page::kLower, 2, 0x3F},
      {Field::kRxAmplitudes, Page::k01, 162, 0xFB},
      {Field::kMaxTxInputEq, Page::k01, 161, 0xFB},
      {Field::kMaxRxPostCursor, Page::k01, 162, 0xEF},
      {Field::kMaxRxPreCursor, Page::k01, 162, 0xF7},
      {Field::kGrid3p125Lowest, Page::k04, 128, 0xFE},
      {Field::kGrid6p25Highest, Page::k04, 128, 0xFD},
      {Field::kGrid12p5Lowest, Page::k04, 128, 0xFB},
      {Field::kGrid25Highest, Page::k04, 128, 0xF7},
      {Field::kGrid50Lowest, Page::k04, 128, 0xEF},
      {Field::kGrid100Highest, Page::k04, 128, 0xDF},
      {Field::kGrid33Lowest, Page::k04, 128, 0xBF},
      {Field::kGrid75Highest, Page::k04, 128, 0x7F},
      {Field::kGrid75Highest, Page::k01, 155, 0xBF},
      {Field::kGrid150Lowest, Page::k04, 129, 0xBF},
      {Field::kGrid300Lowest, Page::k04, 129, 0xDF},
      {Field::kFineTuningResolution, Page::k04, 129, 0x7F},
      {Field::kFineTuningLowest, Page::k04, 129, 0x7F},
      {Field::kOutputPowerHighest, Page::k04, 196, 0x7F},
      {Field::kGatingSupport, Page::k01, 142, 0xDF},
      {Field::kDiagnosticsSelector, Page::k01, 142, 0xDF},
      {Field::kVdmGroups, Page::k01, 142, 0xBF},
  };
  for (const Advertised& expected : all) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = FullModule();
    EXPECT_EQ(memory.Decode()[expected.field].state, FieldState::kPresent);
    memory.Put(expected.page, expected.byte, {expected.without});
    EXPECT_EQ(memory.Decode()[expected.field].state, FieldState::kNotImplemented);
  }
}

TEST(CmisFields, MissingPagesAreNotRead) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 128, {1, 2, 3, 4});
  for (const unsigned page : {0x01U, 0x04U, 0x0DU, 0x13U, 0x2FU}) {
    memory.Drop(PageOf(static_cast<std::uint8_t>(page)));
  }
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kFirmwareInactive].state, FieldState::kNotRead);
  EXPECT_EQ(info[Field::kLengthSmf].state, FieldState::kNotRead);
  EXPECT_EQ(info[Field::kMaxCaseTemperature].state, FieldState::kNotRead);
  EXPECT_EQ(info[Field::kGrid75Lowest].state, FieldState::kNotRead);  // 0, and nobody says so
  EXPECT_EQ(info[Field::kMediaType].state, FieldState::kPresent);
  EXPECT_TRUE(info.options.empty());
}

TEST(CmisFields, WithoutItsAdvertisementAValueOtherThanZeroIsPresent) {
  Memory memory = FullModule();
  memory.Word(Page::k04, 160, 120).Drop(Page::k01);
  const FieldValue highest = memory.Decode()[Field::kGrid75Highest];
  EXPECT_EQ(highest.state, FieldState::kPresent);
  EXPECT_EQ(highest.number, 120.0);
}

TEST(CmisFields, FlatMemoryHasNoFlagsMonitorsOrControls) {
  Memory memory = FlatModule();
  memory.Put(Page::kLower, 3, {0x00, 0xFF}).Put(Page::kLower, 8, {0xFF, 0xFF, 0xFF, 0xFF});
  memory.Put(Page::kLower, 26, {0xFF});
  memory.Put(Page::k00, 202, {0x0A}).Sum();
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.voltage.state, FieldState::kNotImplemented);
  EXPECT_EQ(info[Field::kLengthCable].number, 1.0);
  for (const Field field :
       {Field::kState, Field::kInterruptAsserted, Field::kModuleStateChanged,
        Field::kModuleFirmwareError, Field::kCdb1Complete, Field::kLowPowerRequest,
        Field::kFirmwareInactive, Field::kLengthSmf, Field::kWavelength, Field::kFaultCause,
        Field::kGrid75Lowest, Field::kVdmGroups, Field::kDiagnosticsSelector}) {
    EXPECT_EQ(info[field].state, FieldState::kNotImplemented)
        << cable_info::DescribeField(field).key;
  }
}

TEST(CmisFields, FlatMemoryMayReportItsState) {
  Memory memory = FlatModule();
  memory.Put(Page::kLower, 3, {0x07});
  EXPECT_EQ(memory.Decode()[Field::kState].text, "ModuleReady");
}

TEST(CmisFields, UpperPagesOfFlatMemoryAreNotUsed) {
  Memory memory = FlatModule();
  memory.Add(Page::k01).Put(Page::k01, 128, {1, 2});
  memory.Add(Page::k11).Put(Page::k11, 147, {0xFF});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info[Field::kFirmwareInactive].state, FieldState::kNotImplemented);
  EXPECT_EQ(info.pages_read, (std::vector<Page>{Page::kLower, Page::k00}));
}

TEST(CmisFields, APageThatRepeatsPage00hWasNotThere) {
  Memory memory = FullModule();
  memory.Put(Page::k00, 135, {1, 2, 3, 4});
  for (std::size_t byte = 128; byte < 256; ++byte) {
    memory.Put(Page::k13, byte, {memory.image().At(Page::k00, byte).value_or(0)});
  }
  EXPECT_EQ(memory.Decode()[Field::kGatingSupport].state, FieldState::kNotRead);
}

TEST(CmisFields, OptionsAreTheAdvertisementsByName) {
  EXPECT_TRUE(BareModule().Decode().options.empty());
  Memory memory = BareModule();
  memory.Put(Page::k01, 161, {0x01, 0x02}).Put(Page::k01, 142, {0x40});
  const std::vector<std::string_view> expected = {"Versatile diagnostics monitoring (VDM)",
                                                  "TX CDR", "RX CDR bypass"};
  EXPECT_EQ(memory.Decode().options, expected);
}

TEST(CmisFields, ChecksumsAreComputedOverTheirBytes) {
  Memory memory = BareModule();
  memory.Put(Page::k00, 221, {0x10}).Put(Page::k00, 222, {0x29});
  memory.Put(Page::k01, 128, {0xAA, 0xAA, 0x07});  // 128 and 129 do not count
  memory.Put(Page::k01, 255, {0x08});              // with byte 176
  memory.Put(Page::k02, 128, {0x03}).Put(Page::k02, 254, {0x02, 0x05});
  const ModuleInfo info = memory.Decode();
  std::vector<unsigned> computed;
  for (const cable_info::PageChecksum& checksum : info.checksums) {
    computed.push_back(checksum.computed);
    EXPECT_EQ(checksum.stored, checksum.computed);
  }
  EXPECT_EQ(computed, (std::vector<unsigned>{0x29, 0x08, 0x05}));
  EXPECT_TRUE(info.warnings.empty());
}

TEST(CmisFields, Page04hHasAChecksum) {
  Memory memory = BareModule();
  memory.Add(Page::k04).Put(Page::k04, 128, {0xF0}).Put(Page::k04, 254, {0x25, 0x15});
  const cable_info::PageChecksum checksum = memory.Decode().checksums.back();
  EXPECT_EQ(checksum.page, Page::k04);
  EXPECT_EQ(checksum.first, 128);
  EXPECT_EQ(checksum.last, 254);
  EXPECT_EQ(checksum.computed, 0x15);
  EXPECT_EQ(checksum.stored, 0x15);
}

TEST(CmisFields, ALengthWithAReservedMultiplierIsMissing) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 160, {0x1F});
  EXPECT_EQ(memory.Decode()[Field::kTxBiasMultiplier].state, FieldState::kNotImplemented);
}

}  // namespace
