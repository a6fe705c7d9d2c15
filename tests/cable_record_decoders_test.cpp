#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "cable_info/cable_record.h"

namespace cable_info::test {
namespace {

constexpr std::uint8_t kPassive = 10;
constexpr std::uint8_t kPassiveEqualized = 11;

std::uint8_t Byte(unsigned value) { return static_cast<std::uint8_t>(value); }

CableRecord OfTechnology(unsigned technology) {
  CableRecord r;
  r.TransmitterTechnologyCode = Byte(technology);
  return r;
}

TEST(CableRecordIdentifier, HasANameForPortModules) {
  const std::map<unsigned, std::string> names = {
      {0x0C, "QSFP"}, {0x0D, "QSFP+"},  {0x11, "QSFP28"}, {0x18, "QSFP-DD"},
      {0x19, "OSFP"}, {0x1A, "SFP-DD"}, {0x1B, "DSFP"},   {0x1E, "QSFP_CMIS"}};
  CableRecord r;
  for (unsigned code = 0; code < 256; ++code) {
    r.Identifier = Byte(code);
    const auto name = names.find(code);
    EXPECT_EQ(r.ConvertCableIdentifierToStr(), name == names.end() ? "NA" : name->second);
  }
}

TEST(CableRecordType, IsTheTechnologyIfTheQuerySucceeded) {
  EXPECT_EQ(OfTechnology(0).ConvertCableTypeToStr(), "850 nm VCSEL");
  EXPECT_EQ(OfTechnology(15).ConvertCableTypeToStr(), "Copper cable- linear active equalizers");
  EXPECT_EQ(OfTechnology(16).ConvertCableTypeToStr(), "NA");
  EXPECT_EQ(OfTechnology(255).ConvertCableTypeToStr(), "NA");
}

TEST(CableRecordType, IsTheStatusIfTheQueryFailed) {
  for (unsigned status = 1; status < 256; ++status) {
    CableRecord r = OfTechnology(3);
    r.QueryStatus = Byte(status);
    EXPECT_EQ(r.ConvertCableTypeToStr(), "NA - " + ConvertCableInfoVSStatusToStr(Byte(status)));
  }
  CableRecord r;
  r.QueryStatus = 3;
  EXPECT_EQ(r.ConvertCableTypeToStr(), "NA - Cable not connected");
}

TEST(CableRecordSpeed, IsNaForAnEmptyMask) {
  CableRecord r;
  EXPECT_EQ(r.ConvertSupportedSpeedToStr(), "NA");
  r.SupportedSpeedMask = 0x90;
  EXPECT_EQ(r.ConvertSupportedSpeedToStr(), "EDR");
}

TEST(CableRecordLength, PrefersTheMeasuredOne) {
  CableRecord r;
  EXPECT_EQ(r.ConvertLengthToStr(), "");
  EXPECT_EQ(r.ConvertPrtlLengthToStr(), "NA");
  r.LengthText = "3 m";
  EXPECT_EQ(r.ConvertLengthToStr(), "3 m");
  EXPECT_EQ(r.ConvertPrtlLengthToStr(), "NA");
  r.PrtlLengthText = "2.9 m";
  EXPECT_EQ(r.ConvertLengthToStr(), "2.9 m");
  EXPECT_EQ(r.ConvertPrtlLengthToStr(), "2.9 m");
}

TEST(CableRecordTemperature, IsTheHighByteOfTheWord) {
  for (unsigned high = 0; high < 256; ++high) {
    const int degrees = high < 128 ? static_cast<int>(high) : static_cast<int>(high) - 256;
    const bool valid = degrees >= -40 && degrees <= 125;
    const std::string text = std::to_string(degrees) + "C";
    const auto word = static_cast<unsigned short>(high << 8 | 0x7F);
    for (const unsigned technology : {0U, 10U, 11U, 12U, 200U}) {
      const CableRecord r = OfTechnology(technology);
      const bool shown = valid && technology != 10 && technology != 11;
      ASSERT_EQ(r.ConvertTemperatureToStr(word, true), shown ? text : "NA");
      ASSERT_EQ(r.ConvertTemperatureToStr(word, false), shown ? text : "N/A");
    }
  }
}

TEST(CableRecordTemperature, IsReadFromTheRightWord) {
  CableRecord r;
  r.Temperature = 41 << 8;
  r.TempHighAlarmThresh = 75 << 8;
  r.TempLowAlarmThresh = 0xFB00;
  r.TempHighWarnThresh = r.TempLowWarnThresh = 1 << 8;
  EXPECT_EQ(r.GetTemperatureStr(), "41C");
  EXPECT_EQ(r.GetHighTemperatureThresholdStr(), "75C");
  EXPECT_EQ(r.GetLowTemperatureThresholdStr(), "-5C");
  r.TransmitterTechnologyCode = kPassiveEqualized;
  EXPECT_EQ(r.GetTemperatureStr(), "N/A");
  EXPECT_EQ(r.GetHighTemperatureThresholdStr(), "N/A");
  EXPECT_EQ(r.GetLowTemperatureThresholdStr(), "N/A");
}

TEST(CableRecordVoltage, IsShownInMicrovolts) {
  const CableRecord r = OfTechnology(kPassive);
  EXPECT_EQ(r.ConvertVoltageToStr(33000), "3300000uV");
}

TEST(CableRecordDateCode, IsSplitIntoPairs) {
  CableRecord r;
  for (const auto& [text, expected] : {std::pair<std::string, std::string>{"24031501", "24-03-15"},
                                       {"240315", "24-03-15"},
                                       {"24031", "24-03-1"},
                                       {"2403", "24-03-"},
                                       {"123", "123"},
                                       {"", ""},
                                       {"N/A", "N/A"},
                                       {"N/A ", "N/-A -"},
                                       {"ab,cdef", "ab-,c-de"}}) {
    r.DateCodeText = text;
    EXPECT_EQ(r.ConvertDateCodeToStr(), expected) << text;
  }
}

TEST(CableRecordFirmware, IsShownForTheHomeVendorsModules) {
  CableRecord r;
  r.FwVersionText = "26.11.291";
  EXPECT_EQ(r.ConvertFwVersionToStr(true), "\"NA\"");
  EXPECT_EQ(r.ConvertFwVersionToStr(false), "N/A");
  r.Oui = "0x5a1";
  for (const unsigned kind : {14U, 16U}) {
    r.VendorModuleKind = Byte(kind);
    EXPECT_EQ(r.ConvertFwVersionToStr(true), "26.11.291");
    EXPECT_EQ(r.ConvertFwVersionToStr(false), "26.11.291");
  }
  r.VendorModuleKind = 15;
  EXPECT_EQ(r.ConvertFwVersionToStr(false), "N/A");
  r.VendorModuleKind = 14;
  r.TransmitterTechnologyCode = kPassive;
  EXPECT_EQ(r.ConvertFwVersionToStr(true), "\"NA\"");
}

TEST(CableRecordAttenuation, IsShownForPassiveCopper) {
  CableRecord r = OfTechnology(kPassive);
  EXPECT_EQ(r.ConvertAttenuationToStr(true), "0,0,0,0");
  const std::uint8_t values[] = {3, 255, 0, 12};
  std::copy(std::begin(values), std::end(values), r.Attenuation);
  EXPECT_EQ(r.ConvertAttenuationToStr(true), "3,255,0,12");
  EXPECT_EQ(r.ConvertAttenuationToStr(false), "3 255 0 12");
  for (const unsigned technology : {0U, 9U, 11U, 12U, 15U, 255U}) {
    r.TransmitterTechnologyCode = Byte(technology);
    EXPECT_EQ(r.ConvertAttenuationToStr(true), R"("NA","NA","NA","NA")");
    EXPECT_EQ(r.ConvertAttenuationToStr(false), "N/A N/A N/A N/A");
  }
}

TEST(CableRecordCdrEnable, ShowsNibblesOfPresentCdrs) {
  const std::string digits = "0123456789abcdef";
  CableRecord r;
  for (unsigned control = 0; control < 256; ++control) {
    for (unsigned presence = 0; presence < 256; presence += control % 16 == 0 ? 1U : 64U) {
      r.CdrControl = Byte(control);
      r.CdrPresence = Byte(presence);
      const std::string tx = (presence & 2) != 0 ? std::string("0x") + digits[control / 16] : "N/A";
      const std::string rx = (presence & 1) != 0 ? std::string("0x") + digits[control % 16] : "N/A";
      r.TransmitterTechnologyCode = kPassiveEqualized;
      ASSERT_EQ(r.ConvertCDREnableTxRxToStr(false), tx + " " + rx);
      const std::string high = control < 16 ? "" : std::string(1, digits[control / 16]);
      ASSERT_EQ(r.ConvertCDREnableTxRxToStr(true), "0x" + high + digits[control % 16]);
      r.TransmitterTechnologyCode = kPassive;
      ASSERT_EQ(r.ConvertCDREnableTxRxToStr(false), "N/A N/A");
      ASSERT_EQ(r.ConvertCDREnableTxRxToStr(true), "\"NA\"");
    }
  }
}

TEST(CableRecordLaneSettings, ShowFourNibbles) {
  struct Setting {
    std::uint16_t CableRecord::*field;
    std::string (CableRecord::*text)(bool) const;
  };
  constexpr Setting kSettings[] = {
      {&CableRecord::InputEq, &CableRecord::ConvertInputEqToStr},
      {&CableRecord::OutputAmp, &CableRecord::ConvertOutputAmpToStr},
      {&CableRecord::OutputEmp, &CableRecord::ConvertOutputEmpToStr},
  };
  for (const Setting& setting : kSettings) {
    CableRecord r;
    r.*setting.field = 0x1234;
    EXPECT_EQ((r.*setting.text)(true), "1234");
    EXPECT_EQ((r.*setting.text)(false), "1 2 3 4");
    r.*setting.field = 0xABCD;
    EXPECT_EQ((r.*setting.text)(true), "abcd");
    EXPECT_EQ((r.*setting.text)(false), "10 11 12 13");
    r.*setting.field = 0x000F;
    EXPECT_EQ((r.*setting.text)(true), "000f");
    EXPECT_EQ((r.*setting.text)(false), "0 0 0 15");
    r.TransmitterTechnologyCode = kPassiveEqualized;
    EXPECT_EQ((r.*setting.text)(true), "000f");
    r.TransmitterTechnologyCode = kPassive;
    EXPECT_EQ((r.*setting.text)(true), "\"NA\"");
    EXPECT_EQ((r.*setting.text)(false), "N/A");
  }
}

TEST(CableRecordOutputControl, ShowsTheTwoNibbles) {
  const std::string digits = "0123456789abcdef";
  CableRecord r = OfTechnology(kPassive);
  for (unsigned byte = 0; byte < 256; ++byte) {
    r.RxOutputDisableTxAdaptiveEq = Byte(byte);
    EXPECT_EQ(r.ConvertRXOutputDisableToStr(), std::string("0x") + digits[byte / 16]);
    EXPECT_EQ(r.ConvertTXAdaptiveEqualizationEnableToStr(), std::string("0x") + digits[byte % 16]);
  }
}

}  // namespace
}  // namespace cable_info::test
