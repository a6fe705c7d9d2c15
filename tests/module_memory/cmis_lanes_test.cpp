// Lanes and applications of CMIS modules.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
#include "cable_info/module_memory/module_info.h"
#include "cmis_cases.h"
#include "cmis_memory.h"

namespace {

using cable_info::Application;
using cable_info::FieldState;
using cable_info::Lane;
using cable_info::LaneField;
using cable_info::LaneValue;
using cable_info::ModuleInfo;
using cable_info::Page;
using cable_info::PageOf;
using cmis_cases::Differences;
using cmis_cases::PlacesOf;
using cmis_memory::BareModule;
using cmis_memory::FlatModule;
using cmis_memory::FullModule;
using cmis_memory::Memory;

constexpr unsigned kLanes = 8;

std::vector<unsigned> LaneNumbers(const ModuleInfo& info) {
  std::vector<unsigned> numbers;
  for (const Lane& lane : info.lanes) numbers.push_back(lane.number);
  return numbers;
}

// The lanes whose field is present and not 0.
std::vector<unsigned> LanesWith(const ModuleInfo& info, LaneField field) {
  std::vector<unsigned> numbers;
  for (const Lane& lane : info.lanes) {
    if (lane[field].IsPresent() && lane[field].number != 0) numbers.push_back(lane.number);
  }
  return numbers;
}

bool AllLanesAre(const ModuleInfo& info, LaneField field, FieldState state) {
  return std::all_of(info.lanes.begin(), info.lanes.end(),
                     [&](const Lane& lane) { return lane[field].state == state; });
}

// ---------------------------------------------------------------------------------------------
// Fields with one bit per lane
// ---------------------------------------------------------------------------------------------

struct LaneBit {
  LaneField field;
  Page page;
  std::size_t byte;
};

std::vector<LaneBit> LaneBits() {
  return {
      {LaneField::kDataPathDeinit, Page::k10, 128},
      {LaneField::kTxPolarityFlip, Page::k10, 129},
      {LaneField::kTxDisable, Page::k10, 130},
      {LaneField::kTxSquelchDisable, Page::k10, 131},
      {LaneField::kTxForceSquelch, Page::k10, 132},
      {LaneField::kTxAdaptiveEqFreeze, Page::k10, 134},
      {LaneField::kRxPolarityFlip, Page::k10, 137},
      {LaneField::kRxOutputDisable, Page::k10, 138},
      {LaneField::kRxSquelchDisable, Page::k10, 139},
      {LaneField::kDataPathStateMask, Page::k10, 213},
      {LaneField::kTxFaultMask, Page::k10, 214},
      {LaneField::kTxLosMask, Page::k10, 215},
      {LaneField::kTxLolMask, Page::k10, 216},
      {LaneField::kTxAdaptiveEqFaultMask, Page::k10, 217},
      {LaneField::kRxLosMask, Page::k10, 226},
      {LaneField::kRxLolMask, Page::k10, 227},
      {LaneField::kRxOutputStatusMask, Page::k10, 232},
      {LaneField::kRxOutputValid, Page::k11, 132},
      {LaneField::kTxOutputValid, Page::k11, 133},
      {LaneField::kDataPathStateChanged, Page::k11, 134},
      {LaneField::kTxFault, Page::k11, 135},
      {LaneField::kTxLos, Page::k11, 136},
      {LaneField::kTxLol, Page::k11, 137},
      {LaneField::kTxAdaptiveEqFault, Page::k11, 138},
      {LaneField::kRxLos, Page::k11, 147},
      {LaneField::kRxLol, Page::k11, 148},
      {LaneField::kRxOutputStatusChanged, Page::k11, 153},
      {LaneField::kTxAdaptiveEq, Page::k11, 214},
      {LaneField::kTxCdr, Page::k11, 221},
      {LaneField::kRxCdr, Page::k11, 222},
      {LaneField::kDataPathInitPending, Page::k11, 235},
      {LaneField::kHostGenerator, Page::k13, 144},
      {LaneField::kMediaGenerator, Page::k13, 152},
      {LaneField::kHostChecker, Page::k13, 160},
      {LaneField::kMediaChecker, Page::k13, 168},
      {LaneField::kMediaOutputLoopback, Page::k13, 180},
      {LaneField::kMediaInputLoopback, Page::k13, 181},
      {LaneField::kHostOutputLoopback, Page::k13, 182},
      {LaneField::kHostInputLoopback, Page::k13, 183},
      {LaneField::kHostGeneratorLol, Page::k14, 136},
      {LaneField::kMediaGeneratorLol, Page::k14, 137},
      {LaneField::kHostCheckerLol, Page::k14, 138},
      {LaneField::kMediaCheckerLol, Page::k14, 139},
      {LaneField::kTxDefaultInverted, Page::k01, 171},
      {LaneField::kRxDefaultInverted, Page::k01, 172},
      {LaneField::kHostGeneratorInverted, Page::k13, 145},
      {LaneField::kHostGeneratorSwapped, Page::k13, 146},
      {LaneField::kMediaGeneratorInverted, Page::k13, 153},
      {LaneField::kMediaGeneratorSwapped, Page::k13, 154},
      {LaneField::kHostCheckerInverted, Page::k13, 161},
      {LaneField::kHostCheckerSwapped, Page::k13, 162},
      {LaneField::kMediaCheckerInverted, Page::k13, 169},
      {LaneField::kMediaCheckerSwapped, Page::k13, 170},
      {LaneField::kHostGatingMask, Page::k13, 208},
      {LaneField::kMediaGatingMask, Page::k13, 209},
      {LaneField::kHostGeneratorLolMask, Page::k13, 210},
      {LaneField::kMediaGeneratorLolMask, Page::k13, 211},
      {LaneField::kHostCheckerLolMask, Page::k13, 212},
      {LaneField::kMediaCheckerLolMask, Page::k13, 213},
      {LaneField::kHostGatingComplete, Page::k14, 134},
      {LaneField::kMediaGatingComplete, Page::k14, 135},
      {LaneField::kNetworkPathDeinit, PageOf(0x16), 160},
      {LaneField::kNetworkPathInitPending, PageOf(0x16), 204},
      {LaneField::kNetworkPathStateChanged, PageOf(0x17), 128},
      {LaneField::kNetworkPathStateMask, PageOf(0x17), 192},
      {LaneField::kTxInverted, PageOf(0x60), 128},
      {LaneField::kRxInverted, PageOf(0x60), 129},
  };
}

TEST(CmisLanes, BitNIsLaneNPlusOne) {
  for (const LaneBit& expected : LaneBits()) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    for (unsigned bit = 0; bit < kLanes; ++bit) {
      Memory memory = FullModule();
      memory.Put(expected.page, expected.byte, {1U << bit});
      const ModuleInfo info = memory.Decode();
      EXPECT_EQ(LanesWith(info, expected.field), std::vector<unsigned>{bit + 1});
      EXPECT_TRUE(AllLanesAre(info, expected.field, FieldState::kPresent));
    }
  }
}

// ---------------------------------------------------------------------------------------------
// Fields of more bits
// ---------------------------------------------------------------------------------------------

// Bytes of a page, and the values that the eight lanes of their bank then have.
struct LaneCase {
  LaneField field;
  Page page;
  std::size_t byte;
  std::vector<unsigned> bytes;
  std::vector<double> values;
  std::vector<unsigned> first_bytes = {};  // of the page, from byte 128 on
};

constexpr double kNone = std::numeric_limits<double>::infinity();  // not present

// clang-format off
std::vector<LaneCase> StateCases() {
  // The first word of the quad of each lane
  const std::vector<unsigned> powers = {
      0x01, 0x5E, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0xFA, 0x88, 0, 0, 0, 0, 0, 0,
      0x00, 0x64, 0, 0, 0, 0, 0, 0, 0x00, 0x00, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0x80, 0x00};
  const std::vector<double> power_values = {3.5, -0.01, 0.01, -14, 1, kNone, 2.56, -327.68};
  return {
      // Nibbles: the low one is the odd lane's
      {LaneField::kDataPathState, Page::k11, 128, {0x21, 0x43, 0x65, 0x17}, {1, 2, 3, 4, 5, 6, 7, 1}},
      {LaneField::kConfigStatus, Page::k11, 202, {0x10, 0x32, 0x54, 0xC6}, {0, 1, 2, 3, 4, 5, 6, 12}},
      {LaneField::kTxInputEq, Page::k11, 217, {0xC5, 0x43, 0x10, 0x98}, {5, 12, 3, 4, 0, 1, 8, 9}},
      {LaneField::kRxPreCursor, Page::k11, 223, {0x16, 0x32, 0x54, 0x70}, {6, 1, 2, 3, 4, 5, 0, 7}},
      {LaneField::kRxPostCursor, Page::k11, 227, {0x20, 0x31, 0x64, 0x57}, {0, 2, 1, 3, 4, 6, 7, 5}},
      {LaneField::kRxAmplitude, Page::k11, 231, {0x21, 0x03, 0xF0, 0x12}, {1, 2, 3, 0, 0, 15, 2, 1}},
      {LaneField::kNetworkPathState, PageOf(0x16), 200, {0x12, 0x34, 0x56, 0x71}, {2, 1, 4, 3, 6, 5, 1, 7}},
      // Pairs of bits: the lowest are those of lanes 1 and 5
      {LaneField::kTxEqRecalledBuffer, Page::k11, 215, {0x24, 0x81}, {0, 1, 2, 0, 1, 0, 0, 2}},
      // One byte per lane
      {LaneField::kApplication, Page::k11, 206, {0x10, 0x20, 0x34, 0x44, 0x58, 0x68, 0xFC, 0x0F}, {1, 2, 3, 4, 5, 6, 15, 0}},
      {LaneField::kDataPathFirstLane, Page::k11, 206, {0x10, 0x21, 0x34, 0xF5, 0x58, 0x68, 0xFC, 0x0F}, {1, 1, 3, 3, 5, 5, 7, 8}},
      {LaneField::kExplicitControl, Page::k11, 206, {0x01, 0x10, 0x02, 0x11, 0xFE, 0x03, 0x04, 0x09}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kTxWavelengthNumber, Page::k11, 240, {0x11, 0x21, 0x31, 0x41, 0x12, 0x22, 0x32, 0x42}, {1, 2, 3, 4, 1, 2, 3, 4}},
      {LaneField::kTxFiberNumber, Page::k11, 240, {0x11, 0x21, 0x31, 0x41, 0x12, 0x22, 0x32, 0x42}, {1, 1, 1, 1, 2, 2, 2, 2}},
      {LaneField::kRxWavelengthNumber, Page::k11, 248, {0x51, 0x62, 0x73, 0x84, 0x95, 0xA6, 0xB7, 0xC8}, {5, 6, 7, 8, 9, 10, 11, 12}},
      {LaneField::kRxFiberNumber, Page::k11, 248, {0x51, 0x62, 0x73, 0x84, 0x95, 0xA6, 0xB7, 0xC8}, {1, 2, 3, 4, 5, 6, 7, 8}},
      // Words
      {LaneField::kRxLatency, PageOf(0x15), 224, {1, 2, 0, 10, 0, 1, 1, 0, 0xFF, 0xFF, 0x80, 0, 0, 0, 3, 4}, {258, 10, 1, 256, 65535, 32768, 0, 772}},
      {LaneField::kTxLatency, PageOf(0x15), 240, {0, 10, 1, 2, 1, 0, 0, 1, 0x80, 0, 0xFF, 0xFF, 3, 4, 0, 0}, {10, 258, 256, 1, 32768, 65535, 772, 0}},
      {LaneField::kTxHostAcquisitions, PageOf(0x61), 128, {0, 1, 0, 2, 1, 0, 0xFF, 0xFF, 0, 0, 0, 10, 0x80, 0, 0, 3}, {1, 2, 256, 65535, 0, 10, 32768, 3}},
      {LaneField::kRxMediaAcquisitions, PageOf(0x61), 144, {0, 9, 0, 8, 0, 7, 0, 6, 0, 5, 0, 4, 0, 3, 2, 1}, {9, 8, 7, 6, 5, 4, 3, 513}},
      {LaneField::kTxDataPathAcquisitions, PageOf(0x61), 160, {1, 1, 0, 0, 0, 7, 0, 6, 0, 5, 0, 4, 0, 3, 0, 0}, {257, 0, 7, 6, 5, 4, 3, 0}},
      {LaneField::kRxDataPathAcquisitions, PageOf(0x61), 176, {0, 0, 2, 2, 0, 7, 0, 6, 0, 5, 0, 4, 0, 3, 0xFF, 0xFE}, {0, 514, 7, 6, 5, 4, 3, 65534}},
      // Bits 7..4 and 3..1 of a byte per lane, as on page 11h
      {LaneField::kProvisionedTxApplication, PageOf(0x19), 128, {0x10, 0x20, 0x34, 0x44, 0x58, 0x68, 0xFC, 0x0F}, {1, 2, 3, 4, 5, 6, 15, 0}},
      {LaneField::kProvisionedTxFirstLane, PageOf(0x19), 128, {0x10, 0x21, 0x34, 0xF5, 0x58, 0x68, 0xFC, 0x0F}, {1, 1, 3, 3, 5, 5, 7, 8}},
      {LaneField::kProvisionedRxApplication, PageOf(0x19), 136, {0x0F, 0x20, 0x34, 0x44, 0x58, 0x68, 0xFC, 0x10}, {0, 2, 3, 4, 5, 6, 15, 1}},
      {LaneField::kProvisionedRxFirstLane, PageOf(0x19), 136, {0x0F, 0x21, 0x34, 0xF5, 0x58, 0x68, 0xFC, 0x10}, {8, 1, 3, 3, 5, 5, 7, 1}},
      {LaneField::kApplicationBlock, PageOf(0x19), 144, {0, 1, 2, 3, 4, 0xFF, 6, 7}, {0, 1, 2, 3, 4, 255, 6, 7}},
      {LaneField::kSwitchedHostLane, PageOf(0x1D), 136, {8, 7, 6, 5, 4, 3, 2, 1}, {8, 7, 6, 5, 4, 3, 2, 1}},
      {LaneField::kSwitchedMediaLane, PageOf(0x6D), 136, {2, 1, 4, 3, 0, 8, 16, 5}, {2, 1, 4, 3, 0, 8, 16, 5}},
      // Four words of each lane: high alarm, low alarm, high warning and low warning
      {LaneField::kTxPowerHighAlarm, PageOf(0x62), 128, powers, power_values},
      {LaneField::kTxPowerLowAlarm, PageOf(0x62), 130, powers, power_values},
      {LaneField::kTxPowerHighWarning, PageOf(0x62), 132, powers, power_values},
      {LaneField::kTxPowerLowWarning, PageOf(0x62), 134, powers, power_values},
      // The four masks from high alarm down; one byte per level with one bit per lane
      {LaneField::kTxPowerMask, Page::k10, 218, {0x81, 0x02, 0x04, 0x88}, {8, 4, 2, 1, 0, 0, 0, 9}},
      {LaneField::kTxBiasMask, Page::k10, 222, {0x80, 0x40, 0x20, 0x01}, {1, 0, 0, 0, 0, 2, 4, 8}},
      {LaneField::kRxPowerMask, Page::k10, 228, {0x02, 0x03, 0x06, 0x0E}, {4, 15, 3, 1, 0, 0, 0, 0}},
  };
}

std::vector<LaneCase> TuningCases() {
  // Channels 78, 30, 3, 6, 33, 8, -4, 16 of the grids of 75, 100, 33, 150, 300, 3.125, 25, 12.5 GHz
  const std::vector<unsigned> channels = {0, 78, 0, 30, 0, 3, 0, 6, 0, 33, 0, 8, 0xFF, 0xFC, 0, 16};
  const std::vector<unsigned> grids = {0x70, 0x50, 0x60, 0x80, 0x90, 0x00, 0x30, 0x20};
  return {
      {LaneField::kGrid, Page::k12, 128, {0x00, 0x12, 0x20, 0x31, 0x41, 0x52, 0x60, 0x70}, {0, 1, 2, 3, 4, 5, 6, 7}},
      {LaneField::kGrid, Page::k12, 128, {0x8F, 0x90, 0xF0, 0x00, 0x00, 0x00, 0x00, 0x01}, {8, 9, 15, 0, 0, 0, 0, 0}},
      {LaneField::kRelativeThresholds, Page::k12, 128, {0x02, 0x01, 0x03, 0xFD, 0x72, 0x00, 0x10, 0x06}, {1, 0, 1, 0, 1, 0, 0, 1}},
      {LaneField::kFineTuning, Page::k12, 128, {0x70, 0x51, 0x02, 0x03, 0xFE, 0x01, 0x10, 0x11}, {0, 1, 0, 1, 0, 1, 0, 1}},
      {LaneField::kChannel, Page::k12, 136, {0, 78, 0xFF, 0xB8, 0, 30, 1, 0, 0xFF, 0xFF, 0x7F, 0xFF, 0x80, 0, 0, 1}, {78, -72, 30, 256, -1, 32767, -32768, 1}},
      {LaneField::kChannelFrequency, Page::k12, 136, channels, {195.05, 196.1, 193.2, 193.325, 193.4, 193.125, 193.0, 193.3}, grids},
      {LaneField::kChannelFrequency, Page::k12, 136, {0, 4, 0, 4, 0, 4}, {193.125, 193.3, kNone, 193.1, 193.1, 193.1, 193.1, 193.1}, {0x10, 0x40, 0xF0}},
      {LaneField::kFineTuningOffset, Page::k12, 152, {0xE8, 0x90, 0x17, 0x70, 0, 1, 0xFF, 0xFF, 0, 10, 1, 0, 0x80, 0, 0x7F, 0xFF}, {-6, 6, 0.001, -0.001, 0.01, 0.256, -32.768, 32.767}},
      // 195 050 000, 196 100 000 MHz and so on
      {LaneField::kLaserFrequency, Page::k12, 168, {0x0B, 0xA0, 0x3A, 0x10, 0x0B, 0xB0, 0x3F, 0xA0, 0,    0, 0, 1, 0, 0, 1, 0, 0,    1,    0,    0,    1,    0,    0,    0,    0x80, 0, 0, 0, 0, 0, 0, 0}, {195.05, 196.1, 0.000001, 0.000256, 0.065536, 16.777216, 2147.483648, kNone}},
      {LaneField::kTargetPower, Page::k12, 200, {0xFC, 0x18, 0x00, 0x96, 0xFF, 0xFF, 0, 1, 0x01, 0x2C, 0xFA, 0x88, 0, 100, 0xFF, 0x9C}, {-10, 1.5, -0.01, 0.01, 3, -14, 1, -1}},
      // Of all lanes of the bank, in steps of 0.5 dB
      {LaneField::kRelativeHighAlarm, Page::k12, 216, {0x52}, {3, 3, 3, 3, 3, 3, 3, 3}},
      {LaneField::kRelativeHighWarning, Page::k12, 216, {0x52}, {1.5, 1.5, 1.5, 1.5, 1.5, 1.5, 1.5, 1.5}},
      {LaneField::kRelativeLowAlarm, Page::k12, 217, {0x40}, {-2.5, -2.5, -2.5, -2.5, -2.5, -2.5, -2.5, -2.5}},
      {LaneField::kRelativeLowWarning, Page::k12, 217, {0x40}, {-0.5, -0.5, -0.5, -0.5, -0.5, -0.5, -0.5, -0.5}},
      {LaneField::kTuningInProgress, Page::k12, 222, {0x02, 0x01, 0, 0x03, 0xFD, 0x02, 0, 0x0A}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kWavelengthUnlocked, Page::k12, 222, {0x01, 0x02, 0, 0x03, 0xFE, 0x01, 0, 0x05}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kTargetPowerOutOfRange, Page::k12, 231, {0x20, 0xDF, 0, 0x20, 0xDF, 0x3F, 0, 0x20}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kFineTuningOutOfRange, Page::k12, 231, {0x10, 0xEF, 0, 0x10, 0xEF, 0x3F, 0, 0x10}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kTuningNotAccepted, Page::k12, 231, {0x08, 0xF7, 0, 0x08, 0xF7, 0x3F, 0, 0x08}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kInvalidChannel, Page::k12, 231, {0x04, 0xFB, 0, 0x04, 0xFB, 0x3F, 0, 0x04}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kWavelengthUnlockedLatched, Page::k12, 231, {0x02, 0xFD, 0, 0x02, 0xFD, 0x3F, 0, 0x02}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kTuningComplete, Page::k12, 231, {0x01, 0xFE, 0, 0x01, 0xFE, 0x3F, 0, 0x01}, {1, 0, 0, 1, 0, 1, 0, 1}},
      {LaneField::kTuningMask, Page::k12, 239, {0x3F, 0xC0, 0x01, 0x20, 0xC5, 0x10, 0x08, 0x02}, {63, 0, 1, 32, 5, 16, 8, 2}},
  };
}

std::vector<LaneCase> DiagnosticsCases() {
  const std::vector<unsigned> ratios = {0x70, 0x78, 0x70, 0x01, 0x79, 0xEF, 0x00, 0x01,
                                        0x80, 0x64, 0xC0, 0x05, 0xC8, 0x05, 0x00, 0x00};
  const std::vector<double> ratio_values = {1.2e-8, 1e-10, 4.95e-7, 1e-24, 1e-6, 5, 50, 0};
  // Little-endian 256ths
  const std::vector<unsigned> decibels = {0x80, 0x19, 0x00, 0x16, 0x01, 0x00, 0x00, 0x01,
                                          0x40, 0x1A, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x80};
  const std::vector<double> decibel_values = {25.5, 22, 0.00390625, 1, 26.25, 0, 255.99609375, 128};
  // Four little-endian pairs: errors 0x1234, 7, 256, 2^48, and 2^32, 10, 3, 511 bits
  const std::vector<unsigned> errors = {0x34, 0x12, 0, 0, 0, 0, 0, 0, 0,    0, 0, 0, 1, 0, 0, 0,
                                        7,    0,    0, 0, 0, 0, 0, 0, 10,   0, 0, 0, 0, 0, 0, 0,
                                        0,    1,    0, 0, 0, 0, 0, 0, 3,    0, 0, 0, 0, 0, 0, 0,
                                        0,    0,    0, 0, 0, 0, 1, 0, 0xFF, 1, 0, 0, 0, 0, 0, 0};
  const std::vector<unsigned> bits(errors.begin() + 8, errors.end());
  const std::vector<double> low_errors = {4660,  7,     256,   281474976710656,
                                          kNone, kNone, kNone, kNone};
  const std::vector<double> high_errors = {kNone, kNone, kNone, kNone,
                                           4660,  7,     256,   281474976710656};
  const std::vector<double> low_bits = {4294967296, 10, 3, 511, kNone, kNone, kNone, kNone};
  const std::vector<double> high_bits = {kNone, kNone, kNone, kNone, 4294967296, 10, 3, 511};
  const std::vector<double> low_lost = {0, 0, 1, 1, kNone, kNone, kNone, kNone};
  const std::vector<double> high_lost = {kNone, kNone, kNone, kNone, 0, 0, 1, 1};
  const std::vector<double> none(8, kNone);
  return {
      {LaneField::kHostGeneratorPattern, Page::k13, 148, {0x10, 0x32, 0x54, 0x76}, {0, 1, 2, 3, 4, 5, 6, 7}},
      {LaneField::kMediaGeneratorPattern, Page::k13, 156, {0x98, 0xBA, 0xEC, 0x0F}, {8, 9, 10, 11, 12, 14, 15, 0}},
      {LaneField::kHostCheckerPattern, Page::k13, 164, {0x01, 0x23, 0x45, 0x67}, {1, 0, 3, 2, 5, 4, 7, 6}},
      {LaneField::kMediaCheckerPattern, Page::k13, 172, {0x89, 0xAB, 0xCE, 0xF0}, {9, 8, 11, 10, 14, 12, 0, 15}},
      // The first byte of page 14h selects its results; bit 4: gated
      {LaneField::kHostBer, Page::k14, 192, ratios, ratio_values, {0x01}},
      {LaneField::kHostBer, Page::k14, 192, ratios, ratio_values, {0x11}},
      {LaneField::kHostBer, Page::k14, 192, ratios, none, {0x06}},
      {LaneField::kHostBer, Page::k14, 192, ratios, none, {0x21}},
      {LaneField::kMediaBer, Page::k14, 208, ratios, ratio_values, {0x01}},
      {LaneField::kMediaBer, Page::k14, 208, ratios, ratio_values, {0x11}},
      {LaneField::kHostSnr, Page::k14, 208, decibels, decibel_values, {0x06}},
      {LaneField::kHostSnr, Page::k14, 208, decibels, none, {0x16}},
      {LaneField::kHostSnr, Page::k14, 208, decibels, none, {0x00}},
      {LaneField::kMediaSnr, Page::k14, 240, decibels, decibel_values, {0x06}},
      {LaneField::kHostErrors, Page::k14, 192, errors, low_errors, {0x02}},
      {LaneField::kHostErrors, Page::k14, 192, errors, high_errors, {0x13}},
      {LaneField::kHostErrors, Page::k14, 192, errors, none, {0x04}},
      {LaneField::kHostBits, Page::k14, 200, bits, low_bits, {0x12}},
      {LaneField::kHostBits, Page::k14, 200, bits, high_bits, {0x03}},
      {LaneField::kHostSyncLost, Page::k14, 200, bits, low_lost, {0x02}},
      {LaneField::kHostSyncLost, Page::k14, 200, bits, high_lost, {0x03}},
      {LaneField::kMediaErrors, Page::k14, 192, errors, low_errors, {0x04}},
      {LaneField::kMediaErrors, Page::k14, 192, errors, high_errors, {0x15}},
      {LaneField::kMediaBits, Page::k14, 200, bits, low_bits, {0x14}},
      {LaneField::kMediaBits, Page::k14, 200, bits, high_bits, {0x05}},
      {LaneField::kMediaBits, Page::k14, 200, bits, none, {0x02}},
      {LaneField::kMediaSyncLost, Page::k14, 200, bits, low_lost, {0x04}},
      {LaneField::kMediaSyncLost, Page::k14, 200, bits, high_lost, {0x05}},
  };
}
// clang-format on

std::vector<LaneCase> LaneCases() {
  std::vector<LaneCase> cases = StateCases();
  for (const auto& more : {TuningCases(), DiagnosticsCases()}) {
    cases.insert(cases.end(), more.begin(), more.end());
  }
  return cases;
}

// A module of 16 lanes.
Memory TwoBanks() {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 0, {0x21}).Put(Page::k00, 128, {0x21}).Put(Page::k01, 142, {0xFD});
  for (const unsigned page : {0x10U, 0x11U, 0x12U, 0x13U, 0x14U, 0x15U, 0x16U, 0x17U, 0x19U, 0x1DU,
                              0x60U, 0x61U, 0x62U, 0x6DU}) {
    memory.Add(PageOf(static_cast<std::uint8_t>(page), 1));
  }
  return memory;
}

void ExpectValues(const ModuleInfo& info, const LaneCase& expected, unsigned bank) {
  ASSERT_EQ(info.lanes.size(), std::size_t{2} * kLanes);
  for (unsigned n = 0; n < kLanes; ++n) {
    SCOPED_TRACE("lane " + std::to_string(n + 1));
    const std::size_t at = std::size_t{bank} * kLanes + n;
    const LaneValue& value = info.lanes[at][expected.field];
    EXPECT_EQ(value.IsPresent(), expected.values[n] != kNone);
    if (!value.IsPresent()) continue;
    const bool is_lane = expected.field == LaneField::kDataPathFirstLane ||
                         expected.field == LaneField::kProvisionedTxFirstLane ||
                         expected.field == LaneField::kProvisionedRxFirstLane;
    EXPECT_DOUBLE_EQ(value.number, expected.values[n] + (is_lane ? bank * kLanes : 0));
  }
}

// Application number = 15 x block + AppSel; AppSel 0 is no application.
TEST(CmisLanes, ApplicationsAreThoseOfTheirBlock) {
  Memory memory = FullModule();
  memory.Put(Page::k11, 206, {0x10, 0x20, 0xF0, 0x00, 0x30}).Put(PageOf(0x19), 144, {0, 1, 2, 3});
  memory.Put(Page::k01, 175, {4});
  const auto applications = [](const ModuleInfo& info) {
    std::vector<double> numbers;
    for (const Lane& lane : info.lanes) numbers.push_back(lane[LaneField::kApplication].number);
    return numbers;
  };
  EXPECT_EQ(applications(memory.Decode()), (std::vector<double>{1, 17, 45, 0, 3, 0, 0, 0}));
  const std::vector<double> of_page_11h = {1, 2, 15, 0, 3, 0, 0, 0};
  memory.Put(Page::k01, 175, {0});  // no blocks
  EXPECT_EQ(applications(memory.Decode()), of_page_11h);
  memory.Put(Page::k01, 175, {1});  // block 0 only
  EXPECT_EQ(applications(memory.Decode()), of_page_11h);
  memory.Put(Page::k01, 175, {0xF0}).Put(Page::kLower, 1, {0x53});  // four bits in CMIS 5.3
  EXPECT_EQ(applications(memory.Decode()), of_page_11h);
}

TEST(CmisLanes, AnUnknownBlockLeavesTheApplicationUnknown) {
  Memory memory = FullModule();
  memory.Put(Page::k11, 206, {0x10, 0x20}).Put(PageOf(0x19), 144, {0, 2}).Put(Page::k01, 175, {2});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kApplication].number, 1);
  EXPECT_EQ(info.lanes[1][LaneField::kApplication].state, FieldState::kNotRead);
  EXPECT_EQ(std::count(info.warnings.begin(), info.warnings.end(),
                       "lane 2: block 2 of application descriptors does not exist"),
            1);
  memory.Drop(PageOf(0x19));
  EXPECT_EQ(memory.Decode().lanes[0][LaneField::kApplication].state, FieldState::kNotRead);
}

TEST(CmisLanes, FourEqualPowerThresholdsAreNotGiven) {
  for (const unsigned byte : {0x00U, 0xFFU}) {
    Memory memory = FullModule();
    memory.Put(PageOf(0x62), 128, std::vector<unsigned>(8, byte)).Put(PageOf(0x62), 136, {0, 1});
    const ModuleInfo info = memory.Decode();
    for (const LaneField field : {LaneField::kTxPowerHighAlarm, LaneField::kTxPowerLowAlarm,
                                  LaneField::kTxPowerHighWarning, LaneField::kTxPowerLowWarning}) {
      EXPECT_EQ(info.lanes[0][field].state, FieldState::kNotImplemented);
      EXPECT_EQ(info.lanes[1][field].state, FieldState::kPresent);
    }
  }
}

TEST(CmisLanes, NumbersOfAllLanesAndBanksHaveTheirPlaceAndUnit) {
  for (const LaneCase& expected : LaneCases()) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    for (unsigned bank = 0; bank < 2; ++bank) {
      Memory memory = TwoBanks();
      const Page page = PageOf(cable_info::NumberOf(expected.page), bank);
      memory.Put(page, 128, expected.first_bytes).Put(page, expected.byte, expected.bytes);
      ExpectValues(memory.Decode(), expected, bank);
    }
  }
}

TEST(CmisLanes, PagesWithoutBanksDescribeTheFirstEightLanes) {
  Memory memory = TwoBanks();
  memory.Put(Page::k01, 171, {0xFF});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[7][LaneField::kTxDefaultInverted].number, 1.0);
  EXPECT_EQ(info.lanes[8][LaneField::kTxDefaultInverted].state, FieldState::kNotImplemented);
}

TEST(CmisLanes, BitsOfOtherBanksAreThoseOfTheHigherLanes) {
  for (const LaneBit& expected : LaneBits()) {
    if (expected.page == Page::k01) continue;
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = TwoBanks();
    memory.Put(PageOf(cable_info::NumberOf(expected.page), 1), expected.byte, {0x24});
    EXPECT_EQ(LanesWith(memory.Decode(), expected.field), (std::vector<unsigned>{11, 14}));
  }
}

TEST(CmisLanes, EveryFieldOfTheMapHasACase) {
  std::set<std::string> tested = PlacesOf(LaneBits());
  tested.merge(PlacesOf(LaneCases()));
  EXPECT_EQ(Differences(tested, PlacesOf(cable_info::module_memory::CmisMap().lane_fields)),
            std::vector<std::string>());
}

TEST(CmisLanes, CodesHaveNames) {
  const auto name = [](LaneField field, double code) {
    return LaneCodeName(field, {FieldState::kPresent, code});
  };
  EXPECT_EQ(name(LaneField::kDataPathState, 1), "DataPathDeactivated");
  EXPECT_EQ(name(LaneField::kDataPathState, 7), "DataPathInitialized");
  EXPECT_EQ(name(LaneField::kNetworkPathState, 4), "DataPathActivated");
  EXPECT_EQ(name(LaneField::kConfigStatus, 1), "ConfigSuccess");
  EXPECT_EQ(name(LaneField::kConfigStatus, 12), "ConfigInProgress");
  EXPECT_EQ(name(LaneField::kConfigStatus, 13), "");
  EXPECT_EQ(name(LaneField::kGrid, 6), "33 GHz");
  EXPECT_EQ(name(LaneField::kGrid, 7), "75 GHz");
  EXPECT_EQ(name(LaneField::kGrid, 15), "");
  EXPECT_EQ(name(LaneField::kHostGeneratorPattern, 0), "PRBS31Q");
  EXPECT_EQ(name(LaneField::kMediaGeneratorPattern, 11), "PRBS7");
  EXPECT_EQ(name(LaneField::kHostCheckerPattern, 12), "SSPRQ");
  EXPECT_EQ(name(LaneField::kMediaCheckerPattern, 13), "");
}

// ---------------------------------------------------------------------------------------------
// Advertisements
// ---------------------------------------------------------------------------------------------

struct LaneAdvertisement {
  LaneField field;
  std::size_t byte;  // of page 01h
  unsigned without;  // its value with the bit clear
};

TEST(CmisLanes, UnadvertisedFieldsAreNotImplemented) {
  const std::vector<LaneAdvertisement> all = {
      {LaneField::kTxPolarityFlip, 155, 0xFE},
      {LaneField::kTxDisable, 155, 0xFD},
      {LaneField::kTxSquelchDisable, 155, 0xFB},
      {LaneField::kTxForceSquelch, 155, 0xF7},
      {LaneField::kGrid, 155, 0xBF},
      {LaneField::kChannel, 155, 0xBF},
      {LaneField::kLaserFrequency, 155, 0xBF},
      {LaneField::kTuningComplete, 155, 0xBF},
      {LaneField::kRxPolarityFlip, 156, 0xFE},
      {LaneField::kRxOutputDisable, 156, 0xFD},
      {LaneField::kRxSquelchDisable, 156, 0xFB},
      {LaneField::kTxFault, 157, 0xFE},
      {LaneField::kTxFaultMask, 157, 0xFE},
      {LaneField::kTxLos, 157, 0xFD},
      {LaneField::kTxLosMask, 157, 0xFD},
      {LaneField::kTxLol, 157, 0xFB},
      {LaneField::kTxLolMask, 157, 0xFB},
      {LaneField::kTxAdaptiveEqFault, 157, 0xF7},
      {LaneField::kTxAdaptiveEqFaultMask, 157, 0xF7},
      {LaneField::kRxLos, 158, 0xFD},
      {LaneField::kRxLosMask, 158, 0xFD},
      {LaneField::kRxLol, 158, 0xFB},
      {LaneField::kRxLolMask, 158, 0xFB},
      {LaneField::kRxPowerMask, 160, 0xFB},
      {LaneField::kTxPowerMask, 160, 0xFD},
      {LaneField::kTxBiasMask, 160, 0xFE},
      {LaneField::kTxAdaptiveEqFreeze, 161, 0xEF},
      {LaneField::kTxAdaptiveEq, 161, 0xF7},
      {LaneField::kTxInputEq, 161, 0xFB},
      {LaneField::kTxCdr, 161, 0xFE},
      {LaneField::kTxEqRecalledBuffer, 161, 0x9F},
      {LaneField::kRxPostCursor, 162, 0xEF},
      {LaneField::kRxPreCursor, 162, 0xF7},
      {LaneField::kRxAmplitude, 162, 0xFB},
      {LaneField::kRxCdr, 162, 0xFE},
      {LaneField::kHostGenerator, 142, 0xDF},
      {LaneField::kMediaInputLoopback, 142, 0xDF},
      {LaneField::kHostSnr, 142, 0xDF},
  };
  for (const LaneAdvertisement& expected : all) {
    SCOPED_TRACE(cable_info::DescribeField(expected.field).key);
    Memory memory = FullModule();
    memory.Put(Page::k12, 168, {0x0B});  // a frequency of 0 is none
    EXPECT_FALSE(AllLanesAre(memory.Decode(), expected.field, FieldState::kNotImplemented));
    memory.Put(Page::k01, expected.byte, {expected.without});
    EXPECT_TRUE(AllLanesAre(memory.Decode(), expected.field, FieldState::kNotImplemented));
  }
}

TEST(CmisLanes, LoopbacksAreAdvertisedOneByOne) {
  constexpr LaneField kFields[] = {LaneField::kMediaOutputLoopback, LaneField::kMediaInputLoopback,
                                   LaneField::kHostOutputLoopback, LaneField::kHostInputLoopback};
  for (unsigned bit = 0; bit < 4; ++bit) {
    Memory memory = FullModule();
    memory.Put(Page::k13, 128, {0x7FU & ~(1U << bit)});
    EXPECT_TRUE(AllLanesAre(memory.Decode(), kFields[bit], FieldState::kNotImplemented));
    EXPECT_TRUE(AllLanesAre(memory.Decode(), kFields[(bit + 1) % 4], FieldState::kPresent));
  }
}

TEST(CmisLanes, StatusOfCmis50IsNotImplementedBefore) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 1, {0x41}).Put(Page::k11, 132, {0xFF, 0xFF}).Put(Page::k11, 235, {0xFF});
  const ModuleInfo info = memory.Decode();
  for (const LaneField field :
       {LaneField::kRxOutputValid, LaneField::kTxOutputValid, LaneField::kRxOutputStatusChanged,
        LaneField::kRxOutputStatusMask, LaneField::kDataPathInitPending}) {
    EXPECT_TRUE(AllLanesAre(info, field, FieldState::kNotImplemented));
  }
}

TEST(CmisLanes, MissingPagesAreNotRead) {
  Memory memory = FullModule();
  memory.Drop(Page::k10).Drop(Page::k11);
  const ModuleInfo info = memory.Decode();
  for (const LaneField field : {LaneField::kTxDisable, LaneField::kDataPathState, LaneField::kRxLos,
                                LaneField::kTxCdr, LaneField::kRxPowerMask}) {
    EXPECT_TRUE(AllLanesAre(info, field, FieldState::kNotRead));
  }
}

TEST(CmisLanes, WithoutPage01hOnlySetBitsArePresent) {
  Memory memory = FullModule();
  memory.Drop(Page::k01).Put(Page::k11, 147, {0x02});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kRxLos].state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[1][LaneField::kRxLos].state, FieldState::kPresent);
  EXPECT_EQ(info.lanes[1][LaneField::kRxLos].number, 1.0);
}

TEST(CmisLanes, ARaisedFlagThatIsNotAdvertisedIsAWarning) {
  Memory memory = BareModule();
  memory.Put(Page::k11, 138, {0x8D}).Sum();
  const ModuleInfo info = memory.Decode();
  EXPECT_TRUE(AllLanesAre(info, LaneField::kTxAdaptiveEqFault, FieldState::kNotImplemented));
  ASSERT_EQ(info.warnings.size(), 1U);
  EXPECT_NE(info.warnings[0].find("TX adaptive equalization fault"), std::string::npos);
  EXPECT_NE(info.warnings[0].find("1, 3, 4, 8"), std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// Rules of single fields
// ---------------------------------------------------------------------------------------------

TEST(CmisLanes, ACdrWithoutBypassIsOn) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 161, {0x01, 0x01});
  ModuleInfo info = memory.Decode();
  EXPECT_EQ(LanesWith(info, LaneField::kTxCdr).size(), kLanes);
  EXPECT_EQ(LanesWith(info, LaneField::kRxCdr).size(), kLanes);
  memory.Put(Page::k01, 161, {0x03, 0x03}).Put(Page::k11, 221, {0x02, 0x04});
  info = memory.Decode();
  EXPECT_EQ(LanesWith(info, LaneField::kTxCdr), std::vector<unsigned>{2});
  EXPECT_EQ(LanesWith(info, LaneField::kRxCdr), std::vector<unsigned>{3});
}

TEST(CmisLanes, APreCursorWithoutPostCursorIsInTheFieldOfThePostCursor) {
  Memory memory = FullModule();
  memory.Put(Page::k01, 162, {0x08}).Put(Page::k11, 223, {0x05}).Put(Page::k11, 227, {0x06});
  ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kRxPreCursor].number, 6.0);
  EXPECT_EQ(info.lanes[0][LaneField::kRxPostCursor].state, FieldState::kNotImplemented);
  memory.Put(Page::k01, 162, {0x10});
  info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kRxPreCursor].state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[0][LaneField::kRxPostCursor].number, 6.0);
}

TEST(CmisLanes, DataPathControlWasReversedInCmis30) {
  Memory memory = FullModule();
  memory.Put(Page::k10, 128, {0xFE});
  EXPECT_EQ(memory.Decode().lanes[0][LaneField::kDataPathDeinit].number, 0.0);
  memory.Put(Page::kLower, 1, {0x30});
  EXPECT_EQ(LanesWith(memory.Decode(), LaneField::kDataPathDeinit), std::vector<unsigned>{1});
}

TEST(CmisLanes, GridCodesSixAndSevenWereSwappedBeforeCmis50) {
  Memory memory = FullModule();
  memory.Put(Page::k12, 128, {0x60, 0x70, 0x50});
  memory.Put(Page::kLower, 1, {0x40});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kGrid].number, 7.0);  // 75 GHz
  EXPECT_EQ(info.lanes[1][LaneField::kGrid].number, 6.0);  // 33 GHz
  EXPECT_EQ(info.lanes[2][LaneField::kGrid].number, 5.0);
}

TEST(CmisLanes, WavelengthAndFiberOfZeroAreUnknown) {
  const ModuleInfo info = FullModule().Decode();
  EXPECT_TRUE(AllLanesAre(info, LaneField::kTxWavelengthNumber, FieldState::kNotImplemented));
  EXPECT_TRUE(AllLanesAre(info, LaneField::kRxFiberNumber, FieldState::kNotImplemented));
}

// ---------------------------------------------------------------------------------------------
// Diagnostics
// ---------------------------------------------------------------------------------------------

class CmisBitErrorRatios : public testing::TestWithParam<unsigned> {};

TEST_P(CmisBitErrorRatios, NeedTheirSelector) {
  Memory memory = FullModule();
  memory.Put(Page::k14, 128, {GetParam()});
  memory.Put(Page::k14, 192, {0x70, 0x78}).Put(Page::k14, 206, {0x79, 0xEF});
  memory.Put(Page::k14, 208, {0x70, 0x01});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kHostBer].number, 1.2e-8);
  EXPECT_EQ(info.lanes[7][LaneField::kHostBer].number, 4.95e-7);
  EXPECT_EQ(info.lanes[0][LaneField::kMediaBer].number, 1e-10);
  EXPECT_EQ(info.lanes[1][LaneField::kMediaBer].state, FieldState::kPresent);
  EXPECT_TRUE(AllLanesAre(info, LaneField::kHostSnr, FieldState::kNotRead));
  EXPECT_TRUE(AllLanesAre(info, LaneField::kHostErrors, FieldState::kNotRead));
}
INSTANTIATE_TEST_SUITE_P(Selectors, CmisBitErrorRatios, testing::Values(0x01U, 0x11U));

TEST(CmisDiagnostics, SignalToNoiseRatiosAreLittleEndian) {
  Memory memory = FullModule();
  memory.Put(Page::k14, 128, {0x06});
  memory.Put(Page::k14, 208, {0x80, 0x19}).Put(Page::k14, 254, {0x00, 0x16});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kHostSnr].number, 25.5);
  EXPECT_EQ(info.lanes[7][LaneField::kMediaSnr].number, 22.0);
  EXPECT_TRUE(AllLanesAre(info, LaneField::kHostBer, FieldState::kNotRead));
}

TEST(CmisDiagnostics, CountersAreLittleEndianPairsOfFourLanes) {
  Memory memory = FullModule();
  memory.Put(Page::k14, 128, {0x02});
  memory.Put(Page::k14, 192, {0x34, 0x12}).Put(Page::k14, 200, {0, 0, 0, 0, 1});
  memory.Put(Page::k14, 208, {7});
  ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kHostErrors].number, 0x1234);
  EXPECT_EQ(info.lanes[0][LaneField::kHostBits].number, 4294967296.0);
  EXPECT_EQ(info.lanes[1][LaneField::kHostErrors].number, 7.0);
  EXPECT_EQ(info.lanes[4][LaneField::kHostErrors].state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[0][LaneField::kMediaErrors].state, FieldState::kNotRead);

  info = memory.Put(Page::k14, 128, {0x13}).Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kHostErrors].state, FieldState::kNotRead);
  EXPECT_EQ(info.lanes[4][LaneField::kHostErrors].number, 0x1234);
  info = memory.Put(Page::k14, 128, {0x04}).Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kMediaErrors].number, 0x1234);
  info = memory.Put(Page::k14, 128, {0x15}).Decode();
  EXPECT_EQ(info.lanes[5][LaneField::kMediaErrors].number, 7.0);
}

TEST(CmisDiagnostics, ResultsAreAdvertisedOneByOne) {
  struct Result {
    LaneField field;
    unsigned selector;
    unsigned without;  // 13h:130
  };
  for (const Result& result :
       {Result{LaneField::kHostBer, 1, 0xFE}, Result{LaneField::kMediaBits, 4, 0xFD},
        Result{LaneField::kHostSnr, 6, 0xEF}, Result{LaneField::kMediaSnr, 6, 0xDF}}) {
    Memory memory = FullModule();
    memory.Put(Page::k14, 128, {result.selector});
    EXPECT_EQ(memory.Decode().lanes[0][result.field].state, FieldState::kPresent);
    memory.Put(Page::k13, 130, {result.without});
    EXPECT_EQ(memory.Decode().lanes[0][result.field].state, FieldState::kNotImplemented);
  }
}

// ---------------------------------------------------------------------------------------------
// Which lanes there are
// ---------------------------------------------------------------------------------------------

TEST(CmisLaneLayout, LanesAreThoseOfTheApplications) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x0F, 0x18, 0x44, 0x01});
  EXPECT_EQ(LaneNumbers(memory.Decode()), (std::vector<unsigned>{1, 2, 3, 4}));
  memory.Put(Page::kLower, 86, {0x0F, 0x18, 0x44, 0x10});  // starts on lane 5
  memory.Put(Page::k01, 176, {0x10});
  EXPECT_EQ(LaneNumbers(memory.Decode()), (std::vector<unsigned>{5, 6, 7, 8}));
}

TEST(CmisLaneLayout, SeveralApplicationsAddUp) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x0F, 0x18, 0x44, 0x01, 0x0D, 0x17, 0x21, 0x55, 0xFF});
  memory.Put(Page::k01, 176, {0x01, 0x0F});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes.size(), 8U);  // 2 lanes from 1, 3, 5 and 7
}

TEST(CmisLaneLayout, MediaQuantitiesEndWithTheMediaLanes) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 86, {0x11, 0x1E, 0x84, 0x01});
  memory.Put(Page::k11, 135, {0xFF, 0xFF});
  const ModuleInfo info = memory.Decode();
  ASSERT_EQ(info.lanes.size(), 8U);
  EXPECT_EQ(LanesWith(info, LaneField::kTxFault), (std::vector<unsigned>{1, 2, 3, 4}));
  EXPECT_EQ(LanesWith(info, LaneField::kTxLos).size(), 8U);
  EXPECT_EQ(info.lanes[3].tx_power.state, FieldState::kPresent);
  EXPECT_EQ(info.lanes[4].tx_power.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[4].tx_power.flags.known, 0);
  EXPECT_EQ(info.lanes[4].tx_power.thresholds.given, 0);
  EXPECT_EQ(info.lanes[4][LaneField::kRxLos].state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[4][LaneField::kDataPathState].state, FieldState::kPresent);
}

TEST(CmisLaneLayout, UnsupportedMediaLanesAreExcluded) {
  Memory memory = FullModule();
  memory.Put(Page::k00, 210, {0xFE}).Put(Page::k11, 135, {0xFF});
  const ModuleInfo info = memory.Decode();
  ASSERT_EQ(info.lanes.size(), 8U);
  EXPECT_EQ(LanesWith(info, LaneField::kTxFault), std::vector<unsigned>{1});
}

TEST(CmisLaneLayout, MediaLanesWithoutTheirPlacesFollowTheHostLanes) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 86, {0x0D, 0x15, 0x21, 0x55, 0xFF});  // four times 2 and 1 lanes
  memory.Put(Page::k01, 176, {0x00}).Put(Page::k11, 135, {0xFF});
  EXPECT_EQ(LanesWith(memory.Decode(), LaneField::kTxFault), (std::vector<unsigned>{1, 2, 3, 4}));
}

// A count of 0 leaves the number to the interface (CMIS 5.4, third byte of a descriptor).
TEST(CmisLaneLayout, CountsLeftToTheInterfacesMayBeAny) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 86, {0x0F, 0x18, 0x44, 0x01, 0x1D, 0x01, 0x00, 0x01, 0xFF});
  memory.Put(Page::k01, 176, {0x01, 0x01}).Put(Page::k11, 135, {0xFF});
  EXPECT_EQ(LanesWith(memory.Decode(), LaneField::kTxFault).size(), 8U);
  memory.Put(Page::kLower, 92, {0x40});  // four host lanes, and as many of the media
  EXPECT_EQ(LanesWith(memory.Decode(), LaneField::kTxFault), (std::vector<unsigned>{1, 2, 3, 4}));
  EXPECT_EQ(memory.Decode().lanes.size(), 4U);
}

TEST(CmisLaneLayout, TheFormFactorLimitsTheLanes) {
  struct FormFactor {
    unsigned identifier;
    std::size_t lanes;
  };
  for (const FormFactor& form_factor :
       {FormFactor{0x18, 8}, FormFactor{0x19, 8}, FormFactor{0x1A, 2}, FormFactor{0x1B, 2},
        FormFactor{0x1E, 4}, FormFactor{0x1F, 2}, FormFactor{0x20, 1}, FormFactor{0x21, 8},
        FormFactor{0x23, 4}}) {
    Memory memory = BareModule();
    memory.Put(Page::kLower, 0, {form_factor.identifier});
    memory.Put(Page::k00, 128, {form_factor.identifier});
    EXPECT_EQ(memory.Decode().lanes.size(), form_factor.lanes) << form_factor.identifier;
    memory.Put(Page::kLower, 86, {0xFF});  // and it alone says them without applications
    EXPECT_EQ(memory.Decode().lanes.size(), form_factor.lanes) << form_factor.identifier;
  }
}

TEST(CmisLaneLayout, BanksHoldEightLanesEach) {
  Memory memory = FullModule();
  memory.Put(Page::kLower, 0, {0x21}).Put(Page::k00, 128, {0x21});
  memory.Put(Page::k01, 142, {0xFD});
  memory.Add(PageOf(0x11, 1)).Put(PageOf(0x11, 1), 147, {0x80});
  memory.Put(PageOf(0x11, 1), 128, {0x07}).Put(PageOf(0x11, 1), 206, {0x12});
  memory.Word(PageOf(0x11, 1), 186, 10000);
  const ModuleInfo info = memory.Decode();
  ASSERT_EQ(info.lanes.size(), 16U);
  EXPECT_EQ(info.lanes[15].number, 16U);
  EXPECT_EQ(LanesWith(info, LaneField::kRxLos), std::vector<unsigned>{16});
  EXPECT_EQ(info.lanes[8][LaneField::kDataPathState].number, 7.0);
  EXPECT_EQ(info.lanes[8][LaneField::kDataPathFirstLane].number, 10.0);
  EXPECT_EQ(info.lanes[8].rx_power.value, 1.0);
  EXPECT_EQ(info.lanes[8][LaneField::kTxDisable].state, FieldState::kNotRead);
  memory.Put(Page::k01, 142, {0xFE});
  EXPECT_EQ(memory.Decode().lanes.size(), 32U);
}

TEST(CmisLaneLayout, MoreBanksNeedCmis54) {
  Memory memory = BareModule();
  memory.Put(Page::k01, 142, {0x03}).Put(Page::k01, 174, {0x05});
  EXPECT_EQ(memory.Decode().lanes.size(), 48U);
  memory.Put(Page::kLower, 1, {0x53});
  EXPECT_EQ(memory.Decode().lanes.size(), 8U);
}

TEST(CmisLaneLayout, LanesWithGapsKeepTheirNumbersInEachBank) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x0F, 0x18, 0x44, 0x01}).Put(Page::k01, 142, {0x01});
  EXPECT_EQ(LaneNumbers(memory.Decode()), (std::vector<unsigned>{1, 2, 3, 4, 9, 10, 11, 12}));
}

TEST(CmisLaneLayout, FlatModulesHaveLanesWithoutValues) {
  const ModuleInfo info = FlatModule().Decode();
  ASSERT_EQ(info.lanes.size(), 8U);
  for (const Lane& lane : info.lanes) {
    for (const auto& field : cable_info::LaneFields()) {
      EXPECT_EQ(lane[field.field].state, FieldState::kNotImplemented) << field.key;
    }
    EXPECT_EQ(lane.rx_power.state, FieldState::kNotImplemented);
  }
}

// ---------------------------------------------------------------------------------------------
// Applications
// ---------------------------------------------------------------------------------------------

TEST(CmisApplications, DescribeHostAndMedia) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x50, 0x1C, 0x84, 0x01, 0x30, 0xC5, 0x11, 0xF0, 0xFF});
  memory.Put(Page::k01, 176, {0x05, 0x0A});
  const std::vector<Application> applications = memory.Decode().applications;
  ASSERT_EQ(applications.size(), 2U);
  EXPECT_EQ(applications[0].number, 1U);
  EXPECT_EQ(applications[0].host_interface.code, 0x50U);
  EXPECT_EQ(applications[0].host_interface.name, "400GAUI-4-L C2M");
  EXPECT_EQ(applications[0].media_interface.code, 0x1CU);
  EXPECT_EQ(applications[0].media_interface.name, "400GBASE-DR4");
  EXPECT_EQ(applications[0].host_lanes, 8U);
  EXPECT_EQ(applications[0].media_lanes, 4U);
  EXPECT_EQ(applications[0].host_assignment, 1U);
  EXPECT_EQ(applications[0].media_assignment, 5U);
  EXPECT_EQ(applications[1].number, 2U);
  EXPECT_EQ(applications[1].host_interface.name, "IB EDR");
  EXPECT_EQ(applications[1].media_interface.code, 0xC5U);
  EXPECT_EQ(applications[1].media_interface.name, "");
  EXPECT_EQ(applications[1].host_assignment, 0xF0U);
  EXPECT_EQ(applications[1].media_assignment, 0x0AU);
}

TEST(CmisApplications, MediaTypeNamesTheMediaInterface) {
  Memory memory = BareModule();
  constexpr std::string_view kNames[] = {
      "", "10GBASE-SW", "10GBASE-LW", "Copper cable", "Active cable, BER < 1e-12", "1000BASE-T",
      ""};
  for (unsigned type = 0; type < std::size(kNames); ++type) {
    memory.Put(Page::kLower, 85, {type, 0x11, 0x01});
    EXPECT_EQ(memory.Decode().applications.at(0).media_interface.name, kNames[type]) << type;
  }
}

// A module with all the applications that there can be.
Memory ModuleOfManyApplications() {
  Memory memory = BareModule();
  for (unsigned i = 0; i < 8; ++i) {
    memory.Put(Page::kLower, 86 + std::size_t{4} * i, {0x11, 0x1C, 0x11, 1});
  }
  for (unsigned i = 0; i < 7; ++i) {
    memory.Put(Page::k01, 223 + std::size_t{4} * i, {0x2C + i, 0x1C, 0x11, 1});
  }
  return memory;
}

TEST(CmisApplications, ContinueInPage01h) {
  Memory memory = ModuleOfManyApplications();
  memory.Put(Page::k01, 184, {0x80}).Put(Page::k01, 190, {0x40});
  const std::vector<Application> applications = memory.Decode().applications;
  ASSERT_EQ(applications.size(), 15U);
  EXPECT_EQ(applications[8].number, 9U);
  EXPECT_EQ(applications[8].host_interface.name, "IB SDR");
  EXPECT_EQ(applications[8].media_assignment, 0x80U);
  EXPECT_EQ(applications[14].number, 15U);
  EXPECT_EQ(applications[14].host_interface.name, "IB NDR");
  EXPECT_EQ(applications[14].media_assignment, 0x40U);
  memory.Drop(Page::k01);
  EXPECT_EQ(memory.Decode().applications.size(), 8U);
}

TEST(CmisApplications, EndWithFfAndSkipUnusedOnes) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x11, 0x1C, 0x84, 1, 0, 0, 0, 0, 0x0F, 0x17, 0x44, 1, 0xFF});
  memory.Put(Page::kLower, 102, {0x11, 0x1C, 0x84, 1});  // after the end
  const std::vector<Application> applications = memory.Decode().applications;
  ASSERT_EQ(applications.size(), 2U);
  EXPECT_EQ(applications[1].number, 3U);
}

// Page 1Ch: host and media interface, lanes, where the host lanes and the media lanes may start.
TEST(CmisApplications, ContinueInTheBanksOfPage1Ch) {
  Memory memory = BareModule();
  memory.Put(Page::k01, 175, {2}).Add(PageOf(0x1C)).Add(PageOf(0x1C, 1));
  memory.Put(PageOf(0x1C), 128, {0x11, 0x1C, 0x11, 1, 1, 0, 0, 0, 0xFF});
  memory.Put(PageOf(0x1C, 1), 128, {0x32, 0x1C, 0x42, 0x11, 0x05, 0, 0, 0});
  memory.Put(PageOf(0x1C, 1), 240, {0x30, 0x1C, 0x11, 0x80, 0x40, 0, 0, 0});
  const std::vector<Application> applications = memory.Decode().applications;
  ASSERT_EQ(applications.size(), 3U);
  EXPECT_EQ(applications[0].host_interface.code, 0x51U);  // the basic descriptor
  EXPECT_EQ(applications[1].number, 16U);
  EXPECT_EQ(applications[1].host_interface.name, "IB NDR");
  EXPECT_EQ(applications[1].media_interface.name, "400GBASE-DR4");
  EXPECT_EQ(applications[1].host_lanes, 4U);
  EXPECT_EQ(applications[1].media_lanes, 2U);
  EXPECT_EQ(applications[1].host_assignment, 0x11U);
  EXPECT_EQ(applications[1].media_assignment, 0x05U);
  EXPECT_EQ(applications[2].number, 30U);
  EXPECT_EQ(applications[2].media_assignment, 0x40U);
  memory.Put(Page::k01, 175, {1});
  EXPECT_EQ(memory.Decode().applications.size(), 1U);
  memory.Put(Page::k01, 175, {2}).Put(Page::kLower, 1, {0x52});
  EXPECT_EQ(memory.Decode().applications.size(), 1U);
}

TEST(CmisApplications, BasicDescriptorsMayReferToPage1Ch) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0x11, 0x1C, 0x11, 1, 0xBE, 0xBE, 0, 0, 0xFF});
  memory.Put(Page::k01, 175, {1}).Add(PageOf(0x1C));
  memory.Put(PageOf(0x1C), 128, {0x0F, 0x17, 0x22, 1, 1, 0, 0, 0});
  memory.Put(PageOf(0x1C), 136, {0x32, 0x1C, 0x44, 1, 3, 0, 0, 0, 0xFF});
  const std::vector<Application> applications = memory.Decode().applications;
  ASSERT_EQ(applications.size(), 2U);
  EXPECT_EQ(applications[0].host_interface.code, 0x11U);
  EXPECT_EQ(applications[1].number, 2U);
  EXPECT_EQ(applications[1].host_interface.name, "IB NDR");
  EXPECT_EQ(applications[1].host_lanes, 4U);
  EXPECT_EQ(applications[1].media_assignment, 3U);
}

TEST(CmisApplications, FlatModulesHaveNoMediaLanesToStartOn) {
  Memory memory = FlatModule();
  EXPECT_EQ(memory.Decode().applications.at(0).host_assignment, 1U);
  EXPECT_FALSE(memory.Decode().applications.at(0).media_assignment.has_value());
  memory.Put(Page::kLower, 1, {0x54});  // the byte means something else from here on
  EXPECT_FALSE(memory.Decode().applications.at(0).host_assignment.has_value());
}

TEST(CmisApplications, InfiniBandSpeedsAreThoseOfTheHostInterfaces) {
  Memory memory = BareModule();
  memory.Put(Page::kLower, 86, {0xA0, 0x77, 0x44, 1, 0x32, 0x1C, 0x44, 1, 0x31, 0x1C, 0x44, 1});
  memory.Put(Page::kLower, 98, {0x50, 0x1C, 0x44, 1, 0x32, 0x1C, 0x44, 1, 0xFF});
  EXPECT_EQ(memory.Decode().supported_speeds, (std::vector<std::string_view>{"HDR", "NDR", "XDR"}));
  EXPECT_TRUE(BareModule().Decode().supported_speeds.empty());
}

TEST(CmisLanes, LatenciesNeedTheTimingPage) {
  constexpr Page kTiming = cable_info::PageOf(0x15);
  Memory memory = FullModule();
  memory.Add(kTiming).Put(Page::k01, 145, {0x08});
  memory.Put(kTiming, 224, {0x01, 0x02, 0x00, 0x0A}).Put(kTiming, 254, {0x00, 0x63});
  const ModuleInfo info = memory.Decode();
  EXPECT_EQ(info.lanes[0][LaneField::kRxLatency].number, 258);
  EXPECT_EQ(info.lanes[1][LaneField::kRxLatency].number, 10);
  EXPECT_EQ(info.lanes[7][LaneField::kTxLatency].number, 99);
  memory.Put(Page::k01, 145, {0x00});
  EXPECT_FALSE(memory.Decode().lanes[0][LaneField::kRxLatency].IsPresent());
}

}  // namespace
