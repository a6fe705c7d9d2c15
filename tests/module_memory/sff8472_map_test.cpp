// SFF-8472: bytes in, named values out.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/module_memory/memory_map.h"
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

using cable_info::module_memory::Sff8472Map;
using map_cases::BitCase;
using map_cases::Bytes;
using map_cases::Changed;
using map_cases::Chars;
using map_cases::Expect;
using map_cases::FieldCase;
using map_cases::Keys;
using map_cases::Warnings;
using LaneCase = map_cases::LaneCase<1>;

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
  const ModuleImage& image() const { return image_; }
  ModuleInfo Decode() const { return cable_info::Decode(image_); }

 private:
  ModuleImage image_;
};

using Cases = map_cases::FieldCases<Memory>;

// An optical module of rev 11.4 with internal calibration and everything advertised.
Memory Full() {
  Memory memory;
  memory.Put(A0, 0, {0x03, 0x04, 0x07}).Put(A0, 64, {0x0E, 0x38});
  memory.Put(A0, 92, {0x68, 0xFE, 0x07});
  memory.Word(A2, 40, 0x3700).Word(A2, 48, 8000);  // the laser's thresholds: 55 C, 800 mA
  return memory.Word(A2, 98, 33000);
}

// The same of rev 12.4, with the additional enhanced features.
Memory Enhanced() {
  return Full()
      .Put(A0, 94, {0x09})
      .Put(A2, 56, {0x13, 0x03, 0x01})
      .Put(A2, 60, {0x0F})
      .Put(A2, 62, {0x07});
}

Memory External() { return Full().Put(A0, 92, {0x58}); }

// ---------------------------------------------------------------------------------------------
// Fields
// ---------------------------------------------------------------------------------------------

Cases FieldsOfA0() {
  return {Full(),
          {
              {Field::kIdentifier, A0, 0, {0x02}, 2, "Module soldered to motherboard (SFF-8472)"},
              {Field::kExtendedIdentifier, A0, 1, {0x04}, 4, "GBIC/SFP: 2-wire interface ID"},
              {Field::kExtendedIdentifier, A0, 1, {0x84}, 0x84, ""},
              {Field::kConnector, A0, 2, {0x01}, 1, "SC"},
              {Field::kConnector, A0, 2, {0x07}, 7, "LC"},
              {Field::kConnector, A0, 2, {0xA5}, 0xA5, ""},
              {Field::kEncoding, A0, 11, {0x01}, 1, "8B/10B"},
              {Field::kEncoding, A0, 11, {0x02}, 2, "4B/5B"},
              {Field::kEncoding, A0, 11, {0x03}, 3, "NRZ"},
              {Field::kEncoding, A0, 11, {0x04}, 4, "Manchester"},
              {Field::kEncoding, A0, 11, {0x05}, 5, "SONET Scrambled"},
              {Field::kEncoding, A0, 11, {0x06}, 6, "64B/66B"},
              {Field::kEncoding, A0, 11, {0x07}, 7, "256B/257B"},
              {Field::kEncoding, A0, 11, {0x08}, 8, "PAM4"},
              {Field::kEncoding, A0, 11, {0x88}, 0x88, ""},
              {Field::kNominalBitrate, A0, 12, {103}, 10300, ""},
              {Field::kNominalBitrate, A0, 12, {254}, 25400, ""},
              {Field::kRateIdentifier, A0, 13, {0x0C}, 12, "FC-PI-6 32/16/8G independent Rx, Tx"},
              {Field::kRateIdentifier, A0, 13, {0x03}, 3, ""},
              {Field::kRateIdentifier, A0, 13, {0x8C}, 0x8C, ""},
              {Field::kLengthSmf, A0, 14, {10, 99, 1, 2, 3, 4}, 10000, ""},
              {Field::kLengthSmf, A0, 14, {0, 5, 1, 2, 3, 4}, 500, ""},
              {Field::kLengthSmf, A0, 14, {80, 0}, 80000, ""},
              {Field::kLengthSmf, A0, 14, {40, 255}, 40000, ""},
              {Field::kLengthOm2, A0, 14, {1, 2, 8, 3, 4, 5}, 80, ""},
              {Field::kLengthOm1, A0, 14, {1, 2, 4, 3, 5, 6}, 30, ""},
              {Field::kLengthOm4, A0, 14, {1, 2, 3, 4, 40, 5}, 400, ""},
              {Field::kLengthOm3, A0, 14, {1, 2, 3, 4, 5, 30}, 300, ""},
              {Field::kLengthOm2, A0, 14, {1, 2, 200, 3, 4, 5}, 2000, ""},
              {Field::kLengthOm1, A0, 14, {1, 2, 4, 200, 5, 6}, 2000, ""},
              {Field::kLengthOm4, A0, 14, {1, 2, 3, 4, 254, 5}, 2540, ""},
              {Field::kLengthOm3, A0, 14, {1, 2, 3, 4, 5, 200}, 2000, ""},
              {Field::kVendor, A0, 20, Chars("Acme Optics     "), 0, "Acme Optics"},
              {Field::kVendor, A0, 20, Chars("ABCDEFGHIJKLMNOP"), 0, "ABCDEFGHIJKLMNOP"},
              {Field::kExtendedCompliance, A0, 36, {0x02}, 2, "100GBASE-SR4 or 25GBASE-SR"},
              {Field::kExtendedCompliance, A0, 36, {0x80}, 0x80, "64GFC"},
              {Field::kOui, A0, 36, {0x01, 0x00, 0x17, 0x6A, 0x02}, 0, "00176a"},
              {Field::kPartNumber, A0, 40, Chars("AO-LR           "), 0, "AO-LR"},
              {Field::kPartNumber, A0, 40, Chars("abcdefghijklmnop"), 0, "abcdefghijklmnop"},
              {Field::kVendorRevision, A0, 56, Chars("B4  "), 0, "B4"},
              {Field::kVendorRevision, A0, 56, Chars("1234"), 0, "1234"},
              {Field::kWavelength, A0, 60, {0x05, 0x1E}, 1310, ""},
              {Field::kWavelength, A0, 60, {0x06, 0x06, 14}, 1542.14, ""},
              {Field::kWavelength, A0, 60, {0x06, 0x06, 99}, 1542.99, ""},
              {Field::kWavelength, A0, 60, {0x06, 0x06, 100}, 1542, ""},
              {Field::kPowerClass, A0, 64, {0x9D}, 1, ""},
              {Field::kPowerClass, A0, 64, {0x02}, 2, ""},
              {Field::kPowerClass, A0, 64, {0x20}, 3, ""},
              {Field::kPowerClass, A0, 64, {0x40}, 4, ""},
              {Field::kCooledTransmitter, A0, 64, {0x04}, 1, ""},
              {Field::kTunableTransmitter, A0, 65, {0x40}, 1, ""},
              {Field::kBitrateMax, A0, 66, {42, 7}, 42, ""},
              {Field::kBitrateMin, A0, 66, {42, 7}, 7, ""},
              {Field::kBitrateMax, A0, 66, {200, 7}, 200, ""},
              {Field::kBitrateMin, A0, 66, {42, 135}, 135, ""},
              {Field::kSerialNumber, A0, 68, Chars("AO1060          "), 0, "AO1060"},
              {Field::kSerialNumber, A0, 68, Chars("0123456789abcdef"), 0, "0123456789abcdef"},
              {Field::kDateCode, A0, 84, Chars("15070301"), 0, "150703"},
              {Field::kLot, A0, 84, Chars("15070301"), 0, "01"},
              {Field::kCalibration, A0, 92, {0x68}, 2, "internal"},
              {Field::kCalibration, A0, 92, {0x58}, 1, "external"},
              {Field::kCalibration, A0, 92, {0x78}, 3, "both"},
              {Field::kRxPowerType, A0, 92, {0x68}, 1, "average power"},
              {Field::kRxPowerType, A0, 92, {0xF7}, 0, "OMA"},
              {Field::kAddressChange, A0, 92, {0x04}, 1, ""},
              {Field::kRevision, A0, 94, {0x07}, 0, "11.4"},
          }};
}

// A nominal rate of 255 refers to byte 66; byte 67 is the margin on both sides.
Cases ExtendedRate() {
  return {Full().Put(A0, 12, {255}),
          {
              {Field::kNominalBitrate, A0, 66, {112, 7}, 28000, ""},
              {Field::kExtendedBitrate, A0, 66, {103, 7}, 25750, ""},
              {Field::kBitrateMax, A0, 66, {112, 7}, 7, ""},
              {Field::kExtendedBitrate, A0, 66, {212, 7}, 53000, ""},
              {Field::kBitrateMax, A0, 66, {112, 135}, 135, ""},
              {Field::kBitrateMin, A0, 66, {112, 7}, 7, ""},
          }};
}

Cases PassiveCable() {
  return {Full().Put(A0, 8, {0x04}).Put(A0, 94, {0x09}),
          {
              {Field::kAttenuation12p9, A0, 14, {11, 20}, 11, ""},
              {Field::kAttenuation25p8, A0, 14, {11, 20}, 20, ""},
              {Field::kAttenuation12p9, A0, 14, {139, 20}, 139, ""},
              {Field::kAttenuation25p8, A0, 14, {11, 148}, 148, ""},
              {Field::kLengthCable, A0, 17, {1, 3, 0}, 3, ""},
              {Field::kLengthCable, A0, 17, {1, 3, 0x3E}, 6.2, ""},  // 62 times 0.1 m
              {Field::kLengthCable, A0, 17, {1, 3, 0x4F}, 15, ""},   // 15 times 1 m
              {Field::kLengthCable, A0, 17, {1, 3, 0x85}, 50, ""},   // 5 times 10 m
              {Field::kLengthCable, A0, 17, {1, 3, 0xC2}, 200, ""},  // 2 times 100 m
          }};
}

Cases StatusOfA2() {
  return {Full(),
          {
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
          }};
}

Cases PowerLevel4() {
  return {Full().Put(A0, 64, {0x40}), {{Field::kPowerLevel4Enable, A2, 118, {0x04}, 1, ""}}};
}

Cases FibreChannel64() {
  return {Full().Put(A0, 10, {0x02}).Put(A0, 62, {0x01}),
          {
              {Field::kPam4ModeTx, A2, 119, {0x10}, 1, ""},
              {Field::kPam4ModeRx, A2, 119, {0x08}, 1, ""},
              {Field::kMode64gfc, A2, 119, {0x04}, 1, ""},
          }};
}

Cases EnhancedFeatures() {
  return {
      Enhanced(),
      {
          {Field::kTxSquelchMethods, A2, 56, {0xF3}, 0, "none"},
          {Field::kTxSquelchMethods, A2, 56, {0x04}, 1, "reduces OMA"},
          {Field::kTxSquelchMethods, A2, 56, {0xFB}, 2, "reduces average power"},
          {Field::kTxSquelchMethods, A2, 56, {0x0C}, 3, "selected by the host"},
          {Field::kAdaptiveEqSettlingTime, A2, 60, {0x07, 20, 0x0F}, 2000, ""},
          {Field::kAdaptiveEqSettlingTime, A2, 60, {0x07, 148, 0x0F}, 14800, ""},
          {Field::kRxEmphasisType, A2, 62, {0xE7}, 0, "constant peak-to-peak amplitude, or none"},
          {Field::kRxEmphasisType, A2, 62, {0x08}, 1, "constant steady-state amplitude"},
          {Field::kRxEmphasisType, A2, 62, {0xF7}, 2, "constant average amplitude"},
          {Field::kRxEmphasisType, A2, 62, {0x18}, 3, ""},
          {Field::kRxAmplitudes, A2, 63, {0x7A}, 7, ""},
          {Field::kMaxTxInputEq, A2, 63, {0x7A}, 10, ""},
          {Field::kMaxRxPostCursor, A2, 64, {0x53}, 5, ""},
          {Field::kMaxRxPreCursor, A2, 64, {0x53}, 3, ""},
          {Field::kSecondaryExtendedCompliance, A2, 66, {1, 0x06, 2}, 6, "100G CWDM4"},
          {Field::kSecondaryExtendedCompliance, A2, 66, {1, 0x81, 2}, 0x81, "128GFC"},
          {Field::kTxEqRecall, A2, 71, {0x08}, 1, ""},
          {Field::kTxEqStore, A2, 71, {0x04}, 1, ""},
          {Field::kRxCursorsUsed, A2, 72, {0x10}, 1, ""},
          {Field::kRsPinIgnore, A2, 73, {0x10}, 1, ""},
      }};
}

// The host selects the kind of squelch.
Cases SquelchChoice() {
  return {Enhanced().Put(A2, 56, {0x0C}),
          {
              {Field::kTxSquelch, A2, 74, {0x04}, 1, "reduces average power"},
              {Field::kTxSquelch, A2, 74, {0xFB}, 0, "reduces OMA"},
          }};
}

Cases MaximumPower() {
  return {Enhanced().Put(A0, 64, {0x40}), {{Field::kMaxPower, A2, 65, {1, 35, 0}, 3.5, ""}}};
}

Cases Constants() {
  return {
      External(),
      {
          {Field::kRxPowerCalibration4, A2, 56, {0x3A, 0x80, 0, 0}, 1.0 / 1024, ""},
          {Field::kRxPowerCalibration3, A2, 60, {0xBE, 0x80, 0, 0}, -0.25, ""},
          {Field::kRxPowerCalibration2, A2, 64, {0x40, 0x49, 0, 2}, 3.140625 + 1.0 / 2097152, ""},
          {Field::kRxPowerCalibration1, A2, 68, {0x3F, 0x80, 0, 0}, 1, ""},
          {Field::kRxPowerCalibration0, A2, 72, {0x42, 0x48, 0, 0}, 50, ""},
          {Field::kTxBiasSlope, A2, 76, {0x01, 0x80}, 1.5, ""},
          {Field::kTxBiasOffset, A2, 78, {0x01, 0x0A}, 266, ""},
          {Field::kTxPowerSlope, A2, 80, {0xFF, 0x40}, 255.25, ""},
          {Field::kTxPowerOffset, A2, 82, {0xFF, 0x9C}, -100, ""},
          {Field::kTemperatureSlope, A2, 84, {0x00, 0x01}, 1.0 / 256, ""},
          {Field::kTemperatureOffset, A2, 86, {0x80, 0x00}, -32768, ""},
          {Field::kVoltageSlope, A2, 88, {0x02, 0x20}, 2.125, ""},
          {Field::kVoltageOffset, A2, 90, {0x7F, 0xFF}, 32767, ""},
      }};
}

std::vector<Cases> AllCases() {
  return {FieldsOfA0(),     ExtendedRate(),     PassiveCable(),  StatusOfA2(),   PowerLevel4(),
          FibreChannel64(), EnhancedFeatures(), SquelchChoice(), MaximumPower(), Constants()};
}

TEST(Sff8472Map, HasItsFields) {
  for (const Cases& it : AllCases()) Expect(it.memory, it.cases);
}

TEST(Sff8472Map, HasACaseForEachField) {
  std::vector<FieldCase> all;
  for (const Cases& it : AllCases()) all.insert(all.end(), it.cases.begin(), it.cases.end());
  map_cases::ExpectCovered(Sff8472Map().fields, all);
}

TEST(Sff8472Map, NamesEachRateIdentifier) {
  const std::pair<unsigned, std::string_view> kNames[] = {
      {0x00, "Unspecified"},
      {0x01, "SFF-8079 4/2/1G Rate_Select, AS0/AS1"},
      {0x02, "SFF-8431 8/4/2G Rx only"},
      {0x04, "SFF-8431 8/4/2G Tx only"},
      {0x06, "SFF-8431 8/4/2G independent Rx, Tx"},
      {0x08, "FC-PI-5 16/8/4G Rx only"},
      {0x0A, "FC-PI-5 16/8/4G independent Rx, Tx"},
      {0x0C, "FC-PI-6 32/16/8G independent Rx, Tx"},
      {0x0E, "10/8G Rx and Tx"},
      {0x10, "FC-PI-7 64/32/16G independent Rx, Tx"},
      {0x20, "PMD based: A0h byte 36, A2h byte 67"},
  };
  for (const auto& [code, name] : kNames) {
    EXPECT_EQ(Full().Put(A0, 13, {code}).Decode()[Field::kRateIdentifier].text, name) << code;
  }
  for (const unsigned code : {0x03U, 0x11U, 0x12U, 0x21U, 0xFFU}) {
    EXPECT_EQ(Full().Put(A0, 13, {code}).Decode()[Field::kRateIdentifier].text, "") << code;
  }
}

TEST(Sff8472Map, HasNoDecibelsForReservedCodes) {
  const ModuleInfo info = Enhanced().Put(A2, 63, {0x7B}).Put(A2, 114, {0xAB, 0x78}).Decode();
  EXPECT_EQ(info[Field::kTxInputEqHigh].number, 10);
  EXPECT_EQ(info[Field::kRxEmphasisHigh].number, 7);
  EXPECT_EQ(Warnings(info),
            (std::vector<std::string>{
                "Maximum TX input equalization: code 11 is not a value in dB",
                "TX input equalization at the low rate: code 11 is not a value in dB",
                "RX output emphasis at the low rate: code 8 is not a value in dB"}));
  for (const Field field : {Field::kMaxTxInputEq, Field::kTxInputEqLow, Field::kRxEmphasisLow}) {
    EXPECT_EQ(info.StateOf(field), FieldState::kNotImplemented);
  }
}

TEST(Sff8472Map, HasEqualizersFromRevisionCode07OnOnly) {
  const Field kFields[] = {Field::kTxInputEqHigh, Field::kTxInputEqLow, Field::kRxEmphasisHigh,
                           Field::kRxEmphasisLow};
  for (const Field field : kFields) {
    Memory memory = Full().Put(A2, 114, {0x21, 0x43});
    EXPECT_TRUE(memory.Decode()[field].IsPresent());
    EXPECT_EQ(memory.Put(A0, 94, {0x06}).Decode().StateOf(field), FieldState::kNotImplemented);
    EXPECT_EQ(memory.Put(A0, 94, {0x00}).Decode().StateOf(field), FieldState::kNotImplemented);
  }
  // Bits of other meaning are not reserved codes.
  EXPECT_EQ(Warnings(Full().Put(A0, 94, {0x06}).Put(A2, 114, {0xFF, 0xFF}).Decode()),
            std::vector<std::string>());
}

TEST(Sff8472Map, HasNoValueWhereZeroMeansNone) {
  const ModuleInfo info = Enhanced().Decode();
  for (const Field field : {Field::kNominalBitrate,
                            Field::kLengthSmf,
                            Field::kLengthOm4,
                            Field::kLengthOm3,
                            Field::kLengthOm2,
                            Field::kLengthOm1,
                            Field::kLengthCable,
                            Field::kVendor,
                            Field::kOui,
                            Field::kExtendedCompliance,
                            Field::kWavelength,
                            Field::kBitrateMax,
                            Field::kBitrateMin,
                            Field::kAdaptiveEqSettlingTime,
                            Field::kRxAmplitudes,
                            Field::kSecondaryExtendedCompliance,
                            Field::kTxInputEqHigh,
                            Field::kTxInputEqLow,
                            Field::kRxEmphasisHigh,
                            Field::kRxEmphasisLow}) {
    EXPECT_EQ(info.StateOf(field), FieldState::kNotImplemented)
        << cable_info::DescribeField(field).key;
  }
}

TEST(Sff8472Map, TakesFFhAtTheEndOfATextAsPadding) {
  const auto vendor = [](std::string_view text, std::size_t size) {
    Bytes bytes = Chars(text);
    bytes.resize(size, 0xFF);
    return Full().Put(A0, 20, bytes);
  };
  EXPECT_EQ(vendor("ACME", 16).Decode()[Field::kVendor].text, "ACME");
  EXPECT_EQ(vendor("ACME  ", 15).Decode()[Field::kVendor].text, "ACME") << "a NUL at the end";
  EXPECT_EQ(vendor("", 16).Decode().StateOf(Field::kVendor), FieldState::kNotImplemented);
  Memory before = vendor("", 2).Text(22, "ACME");
  EXPECT_EQ(before.Decode()[Field::kVendor].text, "\u00FF\u00FFACME");
}

TEST(Sff8472Map, IsThatOfEveryIdentifierOfTheFamily) {
  for (const unsigned identifier : {0x01U, 0x02U, 0x03U}) {
    EXPECT_EQ(Full().Put(A0, 0, {identifier}).Decode().family, cable_info::ModuleFamily::kSff8472);
  }
  // DWDM-SFP has its own map, and 20h follows CMIS.
  for (const unsigned identifier : {0x00U, 0x0BU, 0x20U}) {
    EXPECT_EQ(Full().Put(A0, 0, {identifier}).Decode().family, cable_info::ModuleFamily::kUnknown);
  }
}

TEST(Sff8472Map, NamesItsRevision) {
  const std::pair<unsigned, std::string_view> kRevisions[] = {
      {1, "9.3"},  {2, "9.5"},  {3, "10.2"}, {4, "10.4"}, {5, "11.0"},
      {6, "11.3"}, {7, "11.4"}, {8, "12.3"}, {9, "12.4"}, {10, "12.5"}};
  for (const auto& [code, name] : kRevisions) {
    EXPECT_EQ(Full().Put(A0, 94, {code}).Decode()[Field::kRevision].text, name);
  }
  EXPECT_FALSE(Full().Put(A0, 94, {0}).Decode()[Field::kRevision].IsPresent());
  const ModuleInfo unknown = Full().Put(A0, 94, {11}).Decode();
  EXPECT_FALSE(unknown[Field::kRevision].IsPresent());
  EXPECT_EQ(Warnings(unknown), std::vector<std::string>{
                                   "byte 94 of A0h is 0x0b, which is not the code of a revision"});
}

TEST(Sff8472Map, HasFourPowerLevels) {
  struct Case {
    unsigned byte64;
    double level;
    double watts;
  };
  const Case kCases[] = {{0x00, 1, 1.0}, {0x02, 2, 1.5}, {0x22, 3, 2.0}, {0x62, 4, 3.5}};
  for (const Case& it : kCases) {
    const ModuleInfo info = Enhanced().Put(A0, 64, {it.byte64}).Put(A2, 66, {35}).Decode();
    EXPECT_EQ(info[Field::kPowerClass].number, it.level);
    EXPECT_DOUBLE_EQ(info[Field::kMaxPower].number, it.watts);
  }
}

// Byte 66 is part of a calibration constant with external calibration, and of a neutral one before
// revision 12.4.
TEST(Sff8472Map, HasAMaximumPowerOfLevel4FromTheEnhancedFeaturesOnly) {
  Memory memory = Enhanced().Put(A0, 64, {0x40}).Put(A2, 66, {35});
  EXPECT_TRUE(memory.Decode()[Field::kMaxPower].IsPresent());
  const auto state = [](const Memory& changed) { return changed.Decode()[Field::kMaxPower].state; };
  EXPECT_EQ(state(Memory(memory).Put(A0, 92, {0x58})), FieldState::kNotImplemented);
  EXPECT_EQ(state(Memory(memory).Put(A0, 94, {0x08})), FieldState::kNotImplemented);
  EXPECT_EQ(state(Memory(memory).Put(A0, 92, {0x00})), FieldState::kNotImplemented);
  EXPECT_EQ(state(Memory(memory).Put(A2, 66, {0x00})), FieldState::kNotImplemented);
  EXPECT_EQ(state(Memory(memory).DropA2()), FieldState::kNotRead);
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

TEST(Sff8472Map, WarnsOfEachLengthAboveItsRange) {
  const std::pair<Bytes, std::string> kCases[] = {
      {{255, 1, 0, 0, 0, 0}, "Length, SMF: more than 254000 m"},
      {{0, 255, 0, 0, 0, 0}, "Length, SMF: more than 25400 m"},
      {{0, 0, 255, 0, 0, 0}, "Length, OM2: more than 2540 m"},
      {{0, 0, 0, 255, 0, 0}, "Length, OM1: more than 2540 m"},
      {{0, 0, 0, 0, 255, 0}, "Length, OM4: more than 2540 m"},
      {{0, 0, 0, 0, 0, 255}, "Length, OM3: more than 2540 m"},
  };
  for (const auto& [bytes, warning] : kCases) {
    EXPECT_EQ(Warnings(Full().Put(A0, 14, bytes).Decode()), std::vector<std::string>{warning});
  }
  EXPECT_EQ(Warnings(Full().Put(A0, 8, {0x08}).Put(A0, 18, {255}).Decode()),
            std::vector<std::string>{"Length, cable: more than 254 m"});
}

TEST(Sff8472Map, TakesByte18OfCopperModulesAsMetres) {
  std::vector<Memory> modules = {Full().Put(A0, 6, {0x08}), Full().Put(A0, 2, {0x22}),
                                 Full().Put(A0, 2, {0x21})};
  for (const unsigned code : {0x16U, 0x1CU, 0x1DU, 0x1EU}) {
    modules.push_back(Full().Put(A0, 36, {code}));
  }
  for (Memory& module : modules) {
    const ModuleInfo info = module.Put(A0, 14, {1, 2, 3, 4, 100, 5}).Word(A0, 60, 850).Decode();
    EXPECT_EQ(info[Field::kLengthCable].number, 100);
    for (const Field field : {Field::kLengthSmf, Field::kLengthOm4, Field::kLengthOm3,
                              Field::kLengthOm2, Field::kLengthOm1, Field::kWavelength}) {
      EXPECT_EQ(info.StateOf(field), FieldState::kNotImplemented);
    }
  }
}

TEST(Sff8472Map, TakesByte19OfCablesFromRevision124On) {
  Memory cable = Full().Put(A0, 8, {0x08}).Put(A0, 18, {3, 0x4F}).Put(A0, 94, {0x08});
  EXPECT_EQ(cable.Decode()[Field::kLengthCable].number, 3);
  EXPECT_EQ(cable.Put(A0, 94, {0x09}).Decode()[Field::kLengthCable].number, 15);
  // A multiplier without a base is no length.
  EXPECT_EQ(cable.Put(A0, 19, {0x40}).Decode()[Field::kLengthCable].number, 3);
  EXPECT_FALSE(cable.Put(A0, 18, {0}).Decode()[Field::kLengthCable].IsPresent());
  cable.Put(A0, 18, {3, 0x4F});
  // A transceiver for copper has metres in byte 18 alone.
  EXPECT_EQ(cable.Put(A0, 8, {0x00}).Put(A0, 6, {0x08}).Decode()[Field::kLengthCable].number, 3);
}

TEST(Sff8472Map, HasNoAttenuationOfOpticalCables) {
  Memory cable = Enhanced().Put(A0, 8, {0x08}).Put(A0, 14, {11, 20});
  EXPECT_EQ(cable.Decode()[Field::kAttenuation12p9].number, 11);
  for (const unsigned code : {0x01U, 0x18U, 0x31U, 0x33U}) {
    const ModuleInfo optical = cable.Put(A0, 36, {code}).Decode();
    EXPECT_FALSE(optical[Field::kAttenuation12p9].IsPresent()) << code;
    EXPECT_FALSE(optical[Field::kAttenuation25p8].IsPresent()) << code;
  }
  for (const unsigned code : {0x08U, 0x19U, 0x30U, 0x32U}) {
    EXPECT_TRUE(cable.Put(A0, 36, {code}).Decode()[Field::kAttenuation25p8].IsPresent()) << code;
  }
}

TEST(Sff8472Map, HasAFractionOfTheWavelengthUnlessByte62IsASpeed) {
  Memory memory = Full().Put(A0, 10, {0x02}).Put(A0, 60, {0x06, 0x06, 0x01});
  EXPECT_EQ(memory.Decode()[Field::kWavelength].number, 1542);
}

TEST(Sff8472Map, NamesEachComplianceBit) {
  const std::vector<BitCase> kBits = {
      {A0, 3, 7, "10GBASE-ER"},
      {A0, 3, 6, "10GBASE-LRM"},
      {A0, 3, 5, "10GBASE-LR"},
      {A0, 3, 4, "10GBASE-SR"},
      {A0, 3, 3, "InfiniBand 1X SX"},
      {A0, 3, 2, "InfiniBand 1X LX"},
      {A0, 3, 1, "InfiniBand 1X Copper Active"},
      {A0, 3, 0, "InfiniBand 1X Copper Passive"},
      {A0, 4, 7, "ESCON MMF, 1310 nm LED"},
      {A0, 4, 6, "ESCON SMF, 1310 nm laser"},
      {A0, 4, 5, "OC-192, short reach"},
      {A0, 4, 4, "SONET SR-1/IR-1/LR-1"},
      {A0, 4, 3, "SONET IR-2/LR-2"},
      {A0, 4, 2, "OC-48, long reach"},
      {A0, 4, 1, "OC-48, intermediate reach"},
      {A0, 4, 0, "OC-48, short reach"},
      {A0, 5, 6, "OC-12, single mode, long reach"},
      {A0, 5, 5, "OC-12, single mode, intermediate reach"},
      {A0, 5, 4, "OC-12, short reach"},
      {A0, 5, 2, "OC-3, single mode, long reach"},
      {A0, 5, 1, "OC-3, single mode, intermediate reach"},
      {A0, 5, 0, "OC-3, short reach"},
      {A0, 6, 7, "BASE-PX"},
      {A0, 6, 6, "BASE-BX10"},
      {A0, 6, 5, "100BASE-FX"},
      {A0, 6, 4, "100BASE-LX/LX10"},
      {A0, 6, 3, "1000BASE-T"},
      {A0, 6, 2, "1000BASE-CX"},
      {A0, 6, 1, "1000BASE-LX"},
      {A0, 6, 0, "1000BASE-SX"},
      {A0, 7, 7, "FC very long distance (V)"},
      {A0, 7, 6, "FC short distance (S)"},
      {A0, 7, 5, "FC intermediate distance (I)"},
      {A0, 7, 4, "FC long distance (L)"},
      {A0, 7, 3, "FC medium distance (M)"},
      {A0, 7, 2, "FC shortwave laser, linear RX (SA)"},
      {A0, 7, 1, "FC longwave laser (LC)"},
      {A0, 7, 0, "FC electrical inter-enclosure (EL)"},
      {A0, 8, 7, "FC electrical intra-enclosure (EL)"},
      {A0, 8, 6, "FC shortwave laser without OFC (SN)"},
      {A0, 8, 5, "FC shortwave laser with OFC (SL)"},
      {A0, 8, 4, "FC longwave laser (LL)"},
      {A0, 8, 3, "Active cable"},
      {A0, 8, 2, "Passive cable"},
      {A0, 9, 7, "FC twin axial pair (TW)"},
      {A0, 9, 6, "FC twisted pair (TP)"},
      {A0, 9, 5, "FC miniature coax (MI)"},
      {A0, 9, 4, "FC video coax (TV)"},
      {A0, 9, 3, "FC multi-mode 62.5 um (M6)"},
      {A0, 9, 2, "FC multi-mode 50 um (M5, M5E)"},
      {A0, 9, 0, "FC single mode (SM)"},
      {A0, 10, 7, "FC 1200 MB/s"},
      {A0, 10, 6, "FC 800 MB/s"},
      {A0, 10, 5, "FC 1600 MB/s"},
      {A0, 10, 4, "FC 400 MB/s"},
      {A0, 10, 3, "FC 3200 MB/s"},
      {A0, 10, 2, "FC 200 MB/s"},
      {A0, 10, 0, "FC 100 MB/s"},
  };
  map_cases::ExpectNames(Full(), kBits, [](const ModuleInfo& info) { return info.compliance; });
}

TEST(Sff8472Map, NamesComplianceOfSeveralBytes) {
  using Names = std::vector<std::string_view>;
  EXPECT_EQ(Full().Put(A0, 4, {0x18}).Decode().compliance, Names{"SONET LR-3"});
  EXPECT_EQ(Full().Put(A0, 10, {0x02}).Put(A0, 62, {0x01}).Decode().compliance,
            Names{"FC 6400 MB/s (64GFC)"});
  EXPECT_EQ(Full().Put(A0, 62, {0x01}).Decode().compliance, Names());
  EXPECT_EQ(Enhanced().Put(A0, 36, {0x05}).Put(A2, 67, {0x06}).Decode().compliance,
            (Names{"100GBASE-SR10", "100G CWDM4"}));
}

TEST(Sff8472Map, NamesComplianceOfCables) {
  const auto cable_names = [](const ModuleInfo& info) {  // but "Passive cable", "Active cable"
    return std::vector<std::string_view>(info.compliance.begin() + 1, info.compliance.end());
  };
  const std::vector<BitCase> kPassive = {{A0, 60, 1, "FC-PI-4 appendix H"},
                                         {A0, 60, 0, "SFF-8431 appendix E"}};
  map_cases::ExpectNames(Full().Put(A0, 8, {0x04}), kPassive, cable_names);
  const std::vector<BitCase> kActive = {{A0, 60, 3, "FC-PI-4 limiting"},
                                        {A0, 60, 2, "SFF-8431 limiting"},
                                        {A0, 60, 1, "FC-PI-4 appendix H"},
                                        {A0, 60, 0, "SFF-8431 appendix E"}};
  map_cases::ExpectNames(Full().Put(A0, 8, {0x08}), kActive, cable_names);
}

TEST(Sff8472Map, NamesEachOption) {
  const std::vector<BitCase> kBits = {
      {A0, 64, 6, "Power level 4"},
      {A0, 64, 5, "Power level 3"},
      {A0, 64, 4, "Paging"},
      {A0, 64, 3, "Retimer or CDR"},
      {A0, 64, 2, "Cooled laser"},
      {A0, 64, 1, "Power level 2"},
      {A0, 64, 0, "Linear receiver output"},
      {A0, 65, 7, "RX decision threshold"},
      {A0, 65, 6, "Tunable transmitter"},
      {A0, 65, 5, "Rate select pin"},
      {A0, 65, 4, "TX disable pin"},
      {A0, 65, 3, "TX fault pin"},
      {A0, 65, 2, "RX LOS pin, inverted"},
      {A0, 65, 1, "RX LOS pin"},
      {A0, 65, 0, "More pages"},
      {A0, 92, 7, "Legacy diagnostics"},
      {A0, 92, 6, "Digital diagnostics"},
      {A0, 92, 5, "Internal calibration"},
      {A0, 92, 4, "External calibration"},
      {A0, 92, 1, "Remote performance monitoring"},
      {A0, 93, 7, "Alarm and warning flags"},
      {A0, 93, 6, "Soft TX disable"},
      {A0, 93, 5, "Soft TX fault"},
      {A0, 93, 4, "Soft RX LOS"},
      {A0, 93, 3, "Soft rate select"},
      {A0, 93, 2, "Application select (SFF-8079)"},
      {A0, 93, 1, "Soft rate select (SFF-8431)"},
  };
  const Memory bare = Full().Put(A0, 64, {0, 0}).Put(A0, 92, {0, 0});
  map_cases::ExpectNames(bare, kBits, [](const ModuleInfo& info) { return info.options; });
}

TEST(Sff8472Map, NamesEachEnhancedFeature) {
  const std::vector<BitCase> kBits = {
      {A2, 56, 4, "RS pin ignore"},
      {A2, 56, 1, "TX forced squelch"},
      {A2, 56, 0, "TX squelch disable"},
      {A2, 57, 1, "RX forced squelch"},
      {A2, 57, 0, "RX squelch disable"},
      {A2, 58, 0, "TX adaptive equalization fault flag"},
      {A2, 60, 3, "TX equalization store and recall"},
      {A2, 60, 2, "TX adaptive equalization freeze"},
      {A2, 60, 1, "TX adaptive equalization"},
      {A2, 60, 0, "TX input equalization programmable"},
      {A2, 62, 2, "RX output post-cursor"},
      {A2, 62, 1, "RX output pre-cursor"},
      {A2, 62, 0, "RX output amplitude programmable"},
  };
  Memory bare = Full().Put(A0, 64, {0, 0}).Put(A0, 92, {0x40, 0x00, 0x09});
  const auto names = [](const ModuleInfo& info) {  // but "Digital diagnostics"
    return std::vector<std::string_view>(info.options.begin() + 1, info.options.end());
  };
  map_cases::ExpectNames(bare, kBits, names);
  // Before revision 12.4, the bytes hold neutral calibration constants.
  bare.Put(A0, 94, {0x08}).Put(A2, 56, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
  EXPECT_EQ(bare.Decode().options, std::vector<std::string_view>{"Digital diagnostics"});
}

std::vector<LaneCase> LaneCases() {
  return {
      {LaneField::kRxLos, A2, 110, {0x02}, {1}},
      {LaneField::kTxFault, A2, 110, {0x04}, {1}},
      {LaneField::kTxLol, A2, 119, {0x02}, {1}},
      {LaneField::kRxLol, A2, 119, {0x01}, {1}},
      {LaneField::kTxAdaptiveEqFault, A2, 118, {0x10}, {1}},
      {LaneField::kTxDisable, A2, 110, {0xC0}, {1}},
      {LaneField::kTxAdaptiveEqFreeze, A2, 71, {0x02}, {1}},
      {LaneField::kTxAdaptiveEq, A2, 71, {0x01}, {1}},
      {LaneField::kRxPreCursor, A2, 72, {0xBA}, {5}},
      {LaneField::kRxPostCursor, A2, 72, {0xB6}, {6}},
      {LaneField::kRxAmplitude, A2, 73, {0xF3}, {3}},
      {LaneField::kRxSquelchDisable, A2, 74, {0x10}, {1}},
      {LaneField::kRxForceSquelch, A2, 74, {0x20}, {1}},
      {LaneField::kTxForceSquelch, A2, 74, {0x02}, {1}},
      {LaneField::kTxSquelchDisable, A2, 74, {0x01}, {1}},
  };
}

TEST(Sff8472Map, HasTheFieldsOfItsLane) { Expect(Enhanced(), LaneCases()); }

TEST(Sff8472Map, HasACaseForEachFieldOfItsLane) {
  map_cases::ExpectCovered(Sff8472Map().lane_fields, LaneCases());
}

// The pin, or the control.
TEST(Sff8472Map, IsDisabledByEitherBit) {
  for (const unsigned byte : {0x80U, 0x40U}) {
    const ModuleInfo info = Full().Put(A2, 110, {byte}).Decode();
    EXPECT_EQ(info.lanes[0][LaneField::kTxDisable].number, 1) << byte;
  }
}

// ---------------------------------------------------------------------------------------------
// Advertisement
// ---------------------------------------------------------------------------------------------

// Everything is advertised and has a value.
Memory Populated() {
  Memory memory = Enhanced().Put(A0, 10, {0x02}).Put(A0, 62, {0x01}).Put(A0, 64, {0x6E});
  memory.Put(A2, 56, {0x1F}).Put(A2, 61, {20}).Put(A2, 63, {0x7A, 0x53, 0, 35, 0x06});
  return memory.Put(A2, 114, {0x5A, 0x37});
}

TEST(Sff8472Map, EachOptionBitGovernsItsValues) {
  map_cases::ExpectAdvertised(
      Populated(),
      {
          {A0, 10, 1, {"details.pam4_mode_tx", "details.pam4_mode_rx", "details.mode64gfc"}},
          {A0, 62, 0, {"details.pam4_mode_tx", "details.pam4_mode_rx", "details.mode64gfc"}},
          {A0, 64, 6, {"details.power_level4_enable"}},
          {A0, 64, 3, {"lanes.flags.tx_lol", "lanes.flags.rx_lol"}},
          {A0, 64, 2, {"laser_temperature_c", "tec_current_ma"}},
          {A0, 65, 0, {}},
          {A0,
           93,
           6,
           {"details.tx_disable_pin", "details.soft_tx_disable", "lanes.controls.tx_disable"}},
          {A0, 93, 5, {"lanes.flags.tx_fault"}},
          {A0, 93, 4, {"lanes.flags.rx_los"}},
          {A0, 93, 3, {"details.soft_rs0"}},
          {A2, 56, 4, {"details.rs_pin_ignore"}},
          {A2, 56, 3, {"details.tx_squelch"}},
          {A2, 56, 2, {"details.tx_squelch"}},
          {A2, 56, 1, {"lanes.details.tx_force_squelch"}},
          {A2, 56, 0, {"lanes.details.tx_squelch_disable"}},
          {A2, 57, 1, {"lanes.details.rx_force_squelch"}},
          {A2, 57, 0, {"lanes.details.rx_squelch_disable"}},
          {A2, 58, 0, {"lanes.flags.tx_adaptive_eq_fault"}},
          {A2, 60, 3, {"details.tx_eq_recall", "details.tx_eq_store"}},
          {A2, 60, 2, {"lanes.details.tx_adaptive_eq_freeze"}},
          {A2, 60, 1, {"lanes.details.tx_adaptive_eq"}},
          {A2, 62, 2, {"lanes.controls.rx_post_cursor"}},
          {A2, 62, 1, {"lanes.controls.rx_pre_cursor"}},
          {A2, 62, 0, {"lanes.controls.rx_amplitude"}},
      });
}

TEST(Sff8472Map, NeedsOneOfTwoBitsForItsRateSelectPins) {
  EXPECT_EQ(Changed(Populated().Put(A0, 93, {0xF4}).Decode(), Populated().Decode()),
            (Keys{"details.rs0_pin", "details.rs1_pin", "details.soft_rs0", "details.soft_rs1"}));
  EXPECT_EQ(Changed(Populated().Put(A0, 93, {0xF6}).Decode(), Populated().Decode()),
            Keys{"details.soft_rs0"});
}

TEST(Sff8472Map, NeedsOneCursorForTheirUse) {
  EXPECT_EQ(Changed(Populated().Decode(), Populated().Put(A2, 62, {0x01}).Decode()),
            (Keys{"details.rx_cursors_used", "lanes.controls.rx_pre_cursor",
                  "lanes.controls.rx_post_cursor"}));
}

TEST(Sff8472Map, NeedsPowerLevelsForTheirState) {
  const auto with_options = [](unsigned byte) { return Full().Put(A0, 64, {byte}).Decode(); };
  const Keys kBoth = {"details.power_level_state", "details.power_level_select"};
  EXPECT_EQ(Changed(with_options(0x00), with_options(0x02)), kBoth);
  EXPECT_EQ(Changed(with_options(0x00), with_options(0x20)), kBoth);
  // The maximum power of level 4 is one of the enhanced features, which this module lacks.
  EXPECT_EQ(Changed(with_options(0x00), with_options(0x40)),
            (Keys{"details.power_level_state", "details.power_level4_enable", "power.max_w"}));
}

TEST(Sff8472Map, HasAPam4ModeOf50GigabitEthernet) {
  for (unsigned code = 0x01; code <= 0xFF; ++code) {
    const bool is_50g = code == 0x39 || code == 0x40 || code == 0x41 || code == 0x42 ||
                        code == 0x45 || code == 0x4A;
    const ModuleInfo info = Full().Put(A0, 36, {code}).Decode();
    EXPECT_EQ(info[Field::kPam4ModeTx].IsPresent(), is_50g) << code;
    EXPECT_EQ(info[Field::kPam4ModeRx].IsPresent(), is_50g) << code;
    EXPECT_FALSE(info[Field::kMode64gfc].IsPresent()) << code;
  }
}

TEST(Sff8472Map, HasEnhancedFeaturesFromRevision124OnWithInternalCalibration) {
  const Keys kFeatures = {"details.tx_squelch_methods",
                          "details.tx_squelch",
                          "details.adaptive_eq_settling_time_ms",
                          "details.rx_emphasis_type",
                          "details.rx_amplitudes",
                          "details.max_tx_input_eq_db",
                          "details.max_rx_post_cursor",
                          "details.max_rx_pre_cursor",
                          "power.max_w",
                          "details.secondary_extended_compliance",
                          "details.tx_eq_recall",
                          "details.tx_eq_store",
                          "details.rx_cursors_used",
                          "details.rs_pin_ignore",
                          "lanes.flags.tx_adaptive_eq_fault",
                          "lanes.details.tx_adaptive_eq_freeze",
                          "lanes.details.tx_adaptive_eq",
                          "lanes.controls.rx_pre_cursor",
                          "lanes.controls.rx_post_cursor",
                          "lanes.controls.rx_amplitude",
                          "lanes.details.rx_squelch_disable",
                          "lanes.details.rx_force_squelch",
                          "lanes.details.tx_force_squelch",
                          "lanes.details.tx_squelch_disable"};
  Keys with_revision = kFeatures;
  with_revision.insert({"revision", "details.tx_input_eq_high_db", "details.tx_input_eq_low_db",
                        "details.rx_emphasis_high_db", "details.rx_emphasis_low_db"});
  EXPECT_EQ(Changed(Populated().Decode(), Populated().Put(A0, 94, {0x00}).Decode()), with_revision);
  Keys with_calibration = kFeatures;
  for (const char* key :
       {"details.rx_power_calibration4", "details.rx_power_calibration3",
        "details.rx_power_calibration2", "details.rx_power_calibration1",
        "details.rx_power_calibration0", "details.tx_bias_slope", "details.tx_bias_offset",
        "details.tx_power_slope", "details.tx_power_offset", "details.temperature_slope",
        "details.temperature_offset", "details.voltage_slope", "details.voltage_offset",
        "laser_temperature_c", "tec_current_ma"}) {
    with_calibration.insert(key);
  }
  EXPECT_EQ(Changed(Populated().Decode(), Populated().Put(A0, 92, {0x58}).Decode()),
            with_calibration);
}

TEST(Sff8472Map, HasNothingOfA2WithoutDiagnostics) {
  const ModuleInfo info = Populated().Put(A0, 92, {0x28}).Decode();
  Memory without_a2 = Populated().Put(A0, 92, {0x28});
  EXPECT_EQ(Changed(info, without_a2.DropA2().Decode()), Keys());
  for (const auto& line : Sff8472Map().fields) {
    if (line.page != A2) continue;
    EXPECT_EQ(info.StateOf(line.field), FieldState::kNotImplemented)
        << cable_info::DescribeField(line.field).key;
  }
  for (const auto& field : cable_info::LaneFields()) {
    EXPECT_EQ(info.lanes.at(0)[field.field].state, FieldState::kNotImplemented) << field.key;
  }
}

TEST(Sff8472Map, HasNotReadA2OfAModuleWithDiagnostics) {
  Memory memory = Populated();
  const ModuleInfo info = memory.DropA2().Decode();
  for (const Field field : {Field::kTxDisablePin, Field::kDataNotReady, Field::kPowerLevelState,
                            Field::kRxAmplitudes, Field::kTxInputEqHigh, Field::kMaxPower}) {
    EXPECT_EQ(info.StateOf(field), FieldState::kNotRead) << cable_info::DescribeField(field).key;
  }
  EXPECT_EQ(info.lanes[0][LaneField::kRxLos].state, FieldState::kNotRead);
  EXPECT_EQ(info.voltage.state, FieldState::kNotRead);
  EXPECT_EQ(info.aux.at(0).monitor.state, FieldState::kNotRead);
}

// ---------------------------------------------------------------------------------------------
// Monitors
// ---------------------------------------------------------------------------------------------

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

TEST(Sff8472Map, EachFlagHasItsBit) {
  struct Bits {
    std::size_t byte;  // of the alarm; the warning is four bytes later
    unsigned high;     // the bit; that of the low flag is below
    std::string_view name;
  };
  const Bits kBits[] = {{112, 7, "temperature"},   {112, 5, "voltage"},
                        {112, 3, "TX bias"},       {112, 1, "TX power"},
                        {113, 7, "RX power"},      {113, 5, "laser_temperature_c"},
                        {113, 3, "tec_current_ma"}};
  const auto raised = [](std::size_t byte, unsigned bit) {
    const ModuleInfo info = Full().Put(A2, byte, {1U << bit}).Decode();
    std::vector<std::pair<std::string_view, unsigned>> flags;
    const auto add = [&flags](std::string_view name, const Monitor& monitor) {
      EXPECT_EQ(monitor.flags.known, 0xF);
      if (monitor.flags.raised != 0) flags.emplace_back(name, monitor.flags.raised);
    };
    add("temperature", info.temperature);
    add("voltage", info.voltage);
    add("TX bias", info.lanes.at(0).tx_bias);
    add("TX power", info.lanes.at(0).tx_power);
    add("RX power", info.lanes.at(0).rx_power);
    for (const cable_info::AuxMonitor& aux : info.aux) add(aux.name, aux.monitor);
    return flags;
  };
  using Flags = std::vector<std::pair<std::string_view, unsigned>>;
  for (const Bits& it : kBits) {
    EXPECT_EQ(raised(it.byte, it.high), (Flags{{it.name, 0x1}}));
    EXPECT_EQ(raised(it.byte, it.high - 1), (Flags{{it.name, 0x2}}));
    EXPECT_EQ(raised(it.byte + 4, it.high), (Flags{{it.name, 0x4}}));
    EXPECT_EQ(raised(it.byte + 4, it.high - 1), (Flags{{it.name, 0x8}}));
  }
  EXPECT_EQ(raised(113, 1), Flags());
  EXPECT_EQ(raised(117, 0), Flags());
}

TEST(Sff8472Map, HasSignedTemperaturesAndCurrents) {
  EXPECT_DOUBLE_EQ(Full().Word(A2, 96, 0x8000).Decode().temperature.value, -128);
  EXPECT_DOUBLE_EQ(Full().Word(A2, 96, 0xFF80).Decode().temperature.value, -0.5);
  const ModuleInfo info = Full().Word(A2, 106, 0xFF00).Word(A2, 108, 0x8000).Decode();
  EXPECT_DOUBLE_EQ(info.aux.at(0).monitor.value, -1);
  EXPECT_DOUBLE_EQ(info.aux.at(1).monitor.value, -3276.8);
}

TEST(Sff8472Map, HasZeroPowerWithoutLight) {
  const ModuleInfo info = Full().Decode();
  EXPECT_TRUE(info.lanes.at(0).rx_power.IsPresent());
  EXPECT_EQ(info.lanes.at(0).rx_power.value, 0);
}

TEST(Sff8472Map, HasNoLaserThresholdsThatAreAllOnes) {
  const ModuleInfo info =
      Full().Put(A2, 40, Bytes(16, 0xFF)).Word(A2, 106, 0x2D40).Word(A2, 108, 100).Decode();
  EXPECT_EQ(info.aux.at(0).monitor.value, 45.25);
  EXPECT_EQ(info.aux.at(0).monitor.thresholds.given, 0);
  EXPECT_EQ(info.aux.at(1).monitor.thresholds.given, 0);
}

// With any flag byte unadvertised, the thresholds stay.
TEST(Sff8472Map, HasThresholdsWithoutFlags) {
  const ModuleInfo info = Full().Put(A0, 93, {0x00}).Put(A2, 0, {0x5A}).Decode();
  EXPECT_EQ(info.temperature.thresholds.At(AlarmLevel::kHighAlarm), 90);
  EXPECT_EQ(info.temperature.flags.known, 0);
}

Memory Neutral() {
  Memory memory = External();
  memory.Put(A2, 68, {0x3F, 0x80, 0, 0}).Word(A2, 76, 0x0100).Word(A2, 80, 0x0100);
  memory.Word(A2, 84, 0x0100).Word(A2, 88, 0x0100).Word(A2, 96, 0xF180).Word(A2, 98, 32893);
  memory.Word(A2, 100, 17997).Word(A2, 102, 5171).Word(A2, 104, 2);
  return memory.Word(A2, 0, 0x5A00).Word(A2, 2, 0xF600).Word(A2, 32, 20000);
}

TEST(Sff8472Map, NeutralConstantsChangeNothing) {
  const ModuleInfo external = Neutral().Decode();
  const ModuleInfo internal = Neutral().Put(A0, 92, {0x68}).Decode();
  EXPECT_EQ(Warnings(external), std::vector<std::string>());
  EXPECT_EQ(external.temperature.value, -14.5);
  EXPECT_EQ(internal.temperature.value, -14.5);
  EXPECT_DOUBLE_EQ(external.voltage.value, 3.2893);
  EXPECT_DOUBLE_EQ(internal.voltage.value, 3.2893);
  EXPECT_DOUBLE_EQ(external.lanes[0].tx_bias.value, 35.994);
  EXPECT_DOUBLE_EQ(external.lanes[0].tx_power.value, 0.5171);
  EXPECT_DOUBLE_EQ(external.lanes[0].rx_power.value, 0.0002);
  EXPECT_EQ(external.temperature.thresholds.values, (std::array<double, 4>{90, -10, 0, 0}));
  EXPECT_DOUBLE_EQ(external.lanes[0].rx_power.thresholds.values[0], 2);
}

TEST(Sff8472Map, AppliesTheConstantsWhereBothCalibrationsAreSet) {
  const ModuleInfo info = Neutral().Put(A0, 92, {0x78}).Word(A2, 84, 0x0200).Decode();
  EXPECT_EQ(info.temperature.value, -29);
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"both internal and external calibration are set; the "
                                     "constants of A2h are applied"});
}

TEST(Sff8472Map, IsCalibratedInternallyWithoutEitherBit) {
  const ModuleInfo info = Neutral().Put(A0, 92, {0x48}).Word(A2, 84, 0x0200).Decode();
  EXPECT_EQ(info.temperature.value, -14.5);
  EXPECT_FALSE(info[Field::kCalibration].IsPresent());
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"neither internal nor external calibration is set; decoded "
                                     "as internal"});
}

// Coefficients of the fourth and third power, which a linear sum would not show.
TEST(Sff8472Map, CalibratesRxPowerWithTruePowers) {
  Memory memory = Neutral();
  memory.Put(A2, 56, {0x38, 0x80, 0, 0}).Put(A2, 60, {0x3A, 0x80, 0, 0});  // 2^-14, 2^-10
  memory.Put(A2, 68, {0, 0, 0, 0}).Put(A2, 72, {0x41, 0x20, 0, 0}).Word(A2, 104, 16);
  // 16^4 / 2^14 + 16^3 / 2^10 + 10 = 4 + 4 + 10
  EXPECT_DOUBLE_EQ(memory.Decode().lanes[0].rx_power.value, 0.0018);
}

TEST(Sff8472Map, HasTheThresholdsOfEachQuantityCalibratedByItsConstants) {
  Memory memory = Neutral();
  memory.Word(A2, 76, 0x0200).Word(A2, 78, 1).Word(A2, 80, 0x0300).Word(A2, 82, 2);
  memory.Word(A2, 84, 0x0400).Word(A2, 86, 256).Word(A2, 88, 0x0080).Word(A2, 90, 0xFFFC);
  memory.Put(A2, 72, {0x42, 0x48, 0, 0});  // RX power: 50 more
  memory.Word(A2, 2, 0x0100).Word(A2, 10, 30000).Word(A2, 18, 100).Word(A2, 26, 100);
  memory.Word(A2, 34, 100);
  const ModuleInfo info = memory.Decode();
  const auto low_alarm = [](const Monitor& monitor) {
    return monitor.thresholds.At(AlarmLevel::kLowAlarm).value_or(-1);
  };
  EXPECT_DOUBLE_EQ(low_alarm(info.temperature), 5);             // 4 * 1 C + 1 C
  EXPECT_DOUBLE_EQ(low_alarm(info.voltage), 1.4996);            // 15000 - 4
  EXPECT_DOUBLE_EQ(low_alarm(info.lanes[0].tx_bias), 0.402);    // (200 + 1) * 2 uA
  EXPECT_DOUBLE_EQ(low_alarm(info.lanes[0].tx_power), 0.0302);  // 300 + 2
  EXPECT_DOUBLE_EQ(low_alarm(info.lanes[0].rx_power), 0.015);   // 100 + 50
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

TEST(Sff8472Map, ShowsQuantitiesUncalibratedWhoseConstantsAreInvalid) {
  const auto text = [](std::string_view quantity) {
    return "the calibration constants of " + std::string(quantity) +
           " are invalid; it is shown uncalibrated";
  };
  Memory memory = External().Word(A2, 96, 0x1900).Word(A2, 98, 33000).Word(A2, 100, 1000);
  const ModuleInfo info = memory.Word(A2, 102, 5171).Word(A2, 104, 2).Decode();
  EXPECT_EQ(Warnings(info), (std::vector<std::string>{
                                text("the temperature"), text("the supply voltage"),
                                text("the TX bias"), text("the TX power"), text("the RX power")}));
  EXPECT_DOUBLE_EQ(info.temperature.value, 25);
  EXPECT_DOUBLE_EQ(info.voltage.value, 3.3);
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_bias.value, 2);
  EXPECT_DOUBLE_EQ(info.lanes[0].tx_power.value, 0.5171);
  EXPECT_DOUBLE_EQ(info.lanes[0].rx_power.value, 0.0002);
  for (const Bytes& single : {Bytes{0x7F, 0xC0, 0, 0}, Bytes{0x7F, 0x80, 0, 0},
                              Bytes{0xFF, 0x80, 0, 0}}) {  // no number, infinities
    for (const std::size_t byte : {56U, 60U, 64U, 68U, 72U}) {
      const ModuleInfo odd = Neutral().Put(A2, byte, single).Decode();
      EXPECT_EQ(Warnings(odd), std::vector<std::string>{text("the RX power")});
      EXPECT_DOUBLE_EQ(odd.lanes[0].rx_power.value, 0.0002);
    }
  }
}

TEST(Sff8472Map, NeverUsesA2WithoutDiagnostics) {
  const ModuleInfo info = Full().Put(A0, 92, {0x00}).Word(A2, 96, 0x1900).Decode();
  EXPECT_EQ(info.temperature.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[0].rx_power.state, FieldState::kNotImplemented);
  EXPECT_EQ(info.lanes[0][LaneField::kRxLos].state, FieldState::kNotImplemented);
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"A2h was read, but the module states that it has "
                                     "no diagnostics; A2h is not used"});
}

TEST(Sff8472Map, HasNoOpticalMonitorsOfPassiveCablesAndCopperModules) {
  const auto with_values = [] {
    return Full().Word(A2, 96, 0x1E00).Word(A2, 100, 5000).Word(A2, 102, 0).Word(A2, 104, 7000);
  };
  const std::vector<std::pair<std::size_t, unsigned>> copper = {
      {8, 0x04}, {6, 0x08}, {2, 0x21}, {2, 0x22}, {36, 0x16}, {36, 0x1C}, {36, 0x1D}, {36, 0x1E}};
  for (const auto& [byte, value] : copper) {
    Memory memory = with_values().Put(A0, byte, {value}).Put(A2, 113, {0x40});
    // Constants that do not matter are not reported.
    for (const unsigned calibration : {0x68U, 0x58U}) {
      const ModuleInfo info = memory.Put(A0, 92, {calibration}).Put(A2, 80, {0, 0}).Decode();
      const Lane& lane = info.lanes.at(0);
      EXPECT_EQ(lane.tx_bias.state, FieldState::kNotImplemented) << byte << ' ' << value;
      EXPECT_EQ(lane.tx_power.state, FieldState::kNotImplemented) << byte << ' ' << value;
      EXPECT_EQ(lane.rx_power.state, FieldState::kNotImplemented) << byte << ' ' << value;
      EXPECT_EQ(lane.rx_power.thresholds.given, 0);
      EXPECT_EQ(lane.rx_power.flags.known, 0);
      EXPECT_TRUE(info.temperature.IsPresent());
      EXPECT_TRUE(info.voltage.IsPresent());
      const std::string all = testing::PrintToString(Warnings(info));
      EXPECT_NE(all.find("RX power is not advertised, but has a value: lane 1"), std::string::npos);
      EXPECT_EQ(all.find("calibration constants of the TX"), std::string::npos);
    }
  }
  const ModuleInfo active = with_values().Put(A0, 8, {0x08}).Decode();
  EXPECT_DOUBLE_EQ(active.lanes.at(0).rx_power.value, 0.7);
  EXPECT_EQ(Warnings(active), std::vector<std::string>());
}

TEST(Sff8472Map, HasNotReadAMissingUniformOrMirroredA2) {
  Memory missing = Full();
  EXPECT_EQ(missing.DropA2().Decode().temperature.state, FieldState::kNotRead);
  Memory uniform = Full();
  uniform.Word(A2, 40, 0).Word(A2, 48, 0).Word(A2, 98, 0);
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

TEST(Sff8472Map, HasAVoltageOfZeroThatIsNotReady) {
  const ModuleInfo info = Full().Word(A2, 98, 0).Put(A2, 110, {0x01}).Decode();
  EXPECT_EQ(info.voltage.state, FieldState::kNotReady);
  EXPECT_EQ(info.lanes.at(0).rx_power.state, FieldState::kNotReady);
  EXPECT_EQ(info.aux.at(0).monitor.state, FieldState::kNotReady);
}

TEST(Sff8472Map, WarnsOfDiagnosticsThatCannotBeReadPlainly) {
  EXPECT_EQ(
      Warnings(Full().Put(A0, 92, {0x6C}).Decode()),
      std::vector<std::string>{"the diagnostics need a change of the address (A0h byte 92 bit 2)"});
  Memory legacy = Full().Put(A0, 92, {0x80});
  EXPECT_EQ(Warnings(legacy.DropA2().Decode()),
            std::vector<std::string>{"the module has legacy diagnostics (A0h byte 92 bit 7), "
                                     "which are not decoded"});
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

TEST(Sff8472Map, HasNoLaserMonitorsWithoutValueAndThresholds) {
  const auto states = [](unsigned thresholds, unsigned temperature, unsigned current) {
    Memory memory = Full();
    for (std::size_t byte = 40; byte < 56; byte += 2) memory.Word(A2, byte, thresholds);
    const ModuleInfo info = memory.Word(A2, 106, temperature).Word(A2, 108, current).Decode();
    return std::make_pair(info.aux.at(0).monitor.state, info.aux.at(1).monitor.state);
  };
  const FieldState none = FieldState::kNotImplemented;
  const FieldState present = FieldState::kPresent;
  for (const unsigned thresholds : {0x0000U, 0xFFFFU}) {
    EXPECT_EQ(states(thresholds, 0x0000, 0x0000), std::make_pair(none, none));
    EXPECT_EQ(states(thresholds, 0xFFFF, 0xFFFF), std::make_pair(none, none));
    EXPECT_EQ(states(thresholds, 0x2D40, 0x0000), std::make_pair(present, none));
    EXPECT_EQ(states(thresholds, 0xFFFF, 0xFFFE), std::make_pair(none, present));
  }
  EXPECT_EQ(states(0xFF00, 0x0000, 0xFFFF), std::make_pair(present, present));
  Memory memory = Full().Word(A2, 40, 0);
  EXPECT_EQ(memory.Put(A2, 110, {0x01}).Decode().aux.at(0).monitor.state, FieldState::kNotReady);
}

TEST(Sff8472Map, NeedsACooledLaserForItsMonitors) {
  const ModuleInfo info = Full().Put(A0, 64, {0x00}).Word(A2, 106, 0x2D40).Decode();
  EXPECT_EQ(info.aux[0].monitor.state, FieldState::kNotImplemented);
  EXPECT_EQ(Warnings(info),
            std::vector<std::string>{"laser_temperature_c is not advertised, but has a value"});
}

}  // namespace
