#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <set>
#include <string>
#include <utility>

#include "cable_info/phy_cable_record.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

using ModuleRecord = PhyCableRecord::ModuleRecord;

const std::string kNa = "none";
const std::set<unsigned> kCmisIdentifiers = {5, 6, 7, 8, 10};

std::uint8_t Byte(unsigned value) { return static_cast<std::uint8_t>(value); }

std::string General(double value) {
  char text[32];
  std::snprintf(text, sizeof(text), "%g", value);
  return text;
}

ModuleRecord OfTechnology(unsigned technology, unsigned identifier = 0) {
  ModuleRecord m;
  m.cable_technology = Byte(technology);
  m.cable_identifier = Byte(identifier);
  return m;
}

TEST(ModuleRecord, HasTheLayoutOfTheRegister) {
  EXPECT_EQ(sizeof(ModuleRecord), 220U);
  EXPECT_EQ(offsetof(ModuleRecord, fw_version), 64U);
  EXPECT_EQ(offsetof(ModuleRecord, voltage), 86U);
  EXPECT_EQ(offsetof(ModuleRecord, rx_power), 90U);
  EXPECT_EQ(offsetof(ModuleRecord, tx_power), 106U);
  EXPECT_EQ(offsetof(ModuleRecord, tx_bias), 122U);
  EXPECT_EQ(offsetof(ModuleRecord, temp_low_threshold), 138U);
  EXPECT_EQ(offsetof(ModuleRecord, smf_length), 160U);
  EXPECT_EQ(offsetof(ModuleRecord, nominal_bitrate), 170U);
  EXPECT_EQ(offsetof(ModuleRecord, length_om5), 180U);
  EXPECT_EQ(offsetof(ModuleRecord, lot), 200U);
  EXPECT_EQ(offsetof(ModuleRecord, date_code), 202U);
  EXPECT_EQ(offsetof(ModuleRecord, vendor_oui), 208U);
  EXPECT_EQ(offsetof(ModuleRecord, connector_type), 212U);
  EXPECT_EQ(offsetof(ModuleRecord, cdr_vendor), 217U);
  EXPECT_EQ(offsetof(ModuleRecord, max_fiber_length), 218U);
}

TEST(ModuleRecord, StartsZeroed) {
  const ModuleRecord m;
  unsigned char bytes[sizeof(m)];
  std::memcpy(bytes, &m, sizeof(m));
  for (const unsigned char byte : bytes) EXPECT_EQ(byte, 0);
}

TEST(ModuleRecordIdentifier, HasANameForTwelveCodes) {
  const std::string names[] = {"QSFP28",    "QSFP+",  "SFP28/SFP+", "QSA (QSFP->SFP)",
                               "Backplane", "SFP-DD", "QSFP-DD",    "QSFP_CMIS",
                               "OSFP",      "C2C",    "DSFP",       "QSFP_Split_Cable"};
  for (unsigned code = 0; code < 256; ++code) {
    const ModuleRecord m = OfTechnology(0, code);
    EXPECT_EQ(m.ConvertCableIdentifierToStr(), code < 12 ? names[code] : "NA");
    EXPECT_EQ(m.IsCMISCable(), kCmisIdentifiers.contains(code));
  }
}

TEST(ModuleRecordTechnology, IsAByteOrANibble) {
  for (unsigned identifier = 0; identifier < 256; ++identifier) {
    for (unsigned technology = 0; technology < 256; ++technology) {
      const ModuleRecord m = OfTechnology(technology, identifier);
      const unsigned code = kCmisIdentifiers.contains(identifier) ? technology : technology >> 4;
      ASSERT_EQ(m.SelectTransmitterTechnology(), code);
      ASSERT_EQ(m.ConvertTransmitterTechnologyToStr(kNa),
                code < 16 ? TechnologyNames()[code] : kNa);
      ASSERT_EQ(m.IsPassiveCable(), technology >> 4 == 10) << "CMIS or not";
    }
  }
}

TEST(ModuleRecordKind, FollowsTechnologyAndConnector) {
  for (unsigned technology = 0; technology < 256; ++technology) {
    for (unsigned connector = 0; connector < 256; ++connector) {
      ModuleRecord m = OfTechnology(technology);
      m.connector_type = Byte(connector);
      const bool passive = technology >= 0xA0 && technology <= 0xAF;
      ASSERT_EQ(m.IsActiveCable(), !passive && connector == 0x23);
      ASSERT_EQ(m.IsModule(), !passive && connector != 0x23);
    }
  }
}

TEST(ModuleRecordBitrate, IsInWholeGigabits) {
  ModuleRecord m;
  for (unsigned nominal = 0; nominal < 255; ++nominal) {
    m.nominal_bitrate = Byte(nominal);
    m.extended_bitrate = 200;
    EXPECT_EQ(m.SelectNominalBR(), nominal / 10);
  }
  m.nominal_bitrate = 255;
  for (unsigned extended = 0; extended < 256; ++extended) {
    m.extended_bitrate = Byte(extended);
    EXPECT_EQ(m.SelectNominalBR(), extended / 4);
  }
}

TEST(ModuleRecordLength, OfCmisHasAMultiplier) {
  for (const unsigned identifier : kCmisIdentifiers) {
    for (unsigned code = 0; code < 256; ++code) {
      ModuleRecord m = OfTechnology(0, identifier);
      m.cable_length = Byte(code);
      const unsigned base = code & 0x3F;
      const unsigned multipliers[] = {0, 1, 10, 100};
      std::string expected = kNa;
      if (base != 0) {
        expected = code >> 6 == 0 ? General(base * 0.1) + " m"
                                  : std::to_string(base * multipliers[code >> 6]) + " m";
      }
      EXPECT_EQ(m.ConvertCableLengthToStr(false, kNa), expected);
      EXPECT_EQ(m.ConvertCableLengthToStr(true, kNa), base == 0 ? kNa : '"' + expected + '"');
    }
  }
  ModuleRecord osfp = OfTechnology(0, 8);
  for (const auto& [code, text] : {std::pair<unsigned, const char*>{0x05, "0.5 m"},
                                   {0x0A, "1 m"},
                                   {0x45, "5 m"},
                                   {0x85, "50 m"},
                                   {0xC5, "500 m"},
                                   {0xFF, "6300 m"}}) {
    osfp.cable_length = Byte(code);
    EXPECT_EQ(osfp.ConvertCableLengthToStr(false, kNa), text);
  }
}

TEST(ModuleRecordLength, OfOlderModulesIsInMetres) {
  ModuleRecord m = OfTechnology(0, 9);
  EXPECT_EQ(m.ConvertCableLengthToStr(true, kNa), kNa);
  for (unsigned metres = 1; metres < 256; ++metres) {
    m.cable_length = Byte(metres);
    EXPECT_EQ(m.ConvertCableLengthToStr(false, kNa), std::to_string(metres) + " m");
    EXPECT_EQ(m.ConvertCableLengthToStr(true, kNa), '"' + std::to_string(metres) + " m\"");
  }
}

TEST(ModuleRecordLength, OfSingleModeFibreHasAUnit) {
  ModuleRecord m;
  for (unsigned word = 0; word < 65536; ++word) {
    m.smf_length = static_cast<std::uint16_t>(word);
    const unsigned value = word & 0xFF;
    std::string expected = "N/A";
    if (value != 0 && (word >> 8 & 3) == 0) expected = std::to_string(value) + " km";
    if (value != 0 && (word >> 8 & 3) == 1) expected = General(value * 100 / 1000.0) + " km";
    ASSERT_EQ(m.ConvertCableLengthSMFiberToStr(), expected) << word;
  }
  m.smf_length = 0x0105;
  EXPECT_EQ(m.ConvertCableLengthSMFiberToStr(), "0.5 km");
  m.smf_length = 0x0205;
  EXPECT_EQ(m.ConvertCableLengthSMFiberToStr(), "N/A");
}

TEST(ModuleRecordLength, OfMultiModeFibreHasAUnitPerGrade) {
  struct Grade {
    std::uint8_t ModuleRecord::*field;
    unsigned sfp;
    unsigned other;
  };
  constexpr Grade kGrades[] = {{&ModuleRecord::length_om1, 10, 10},
                               {&ModuleRecord::length_om2, 10, 1},
                               {&ModuleRecord::length_om3, 10, 2},
                               {&ModuleRecord::length_om4, 10, 2},
                               {&ModuleRecord::length_om5, 2, 2}};
  for (unsigned identifier = 0; identifier < 13; ++identifier) {
    for (unsigned grade = 1; grade <= 5; ++grade) {
      const auto& [field, sfp, other] = kGrades[grade - 1];
      for (unsigned value = 0; value < 256; ++value) {
        ModuleRecord m = OfTechnology(0, identifier);
        m.*field = Byte(value);
        const unsigned metres = value * (identifier == 2 ? sfp : other);
        ASSERT_EQ(m.ConvertCableLengthOMXToStr(Byte(grade)),
                  value == 0 ? "N/A" : std::to_string(metres) + " m");
      }
    }
  }
  ModuleRecord m;
  m.length_om1 = m.length_om2 = m.length_om3 = m.length_om4 = m.length_om5 = 9;
  EXPECT_EQ(m.ConvertCableLengthOMXToStr(0), "N/A");
  // The memory around the record is not read as a length.
  ModuleRecord row[3];
  std::memset(static_cast<void*>(row), 0xFF, sizeof(row));
  for (unsigned grade = 6; grade < 256; ++grade) {
    EXPECT_EQ(row[1].ConvertCableLengthOMXToStr(Byte(grade)), "N/A");
  }
}

TEST(ModuleRecordRevision, SkipsEveryNul) {
  ModuleRecord m;
  EXPECT_EQ(m.ConvertRevisionToStr(), "");
  std::memcpy(m.vendor_rev,
              "\0A\0"
              "1\0",
              5);
  EXPECT_EQ(m.ConvertRevisionToStr(), "A1");
  std::memcpy(m.vendor_rev, "ABCDE", 5);
  EXPECT_EQ(m.ConvertRevisionToStr(), "ABCDE");
}

TEST(ModuleRecordFirmware, HasThreeNumbers) {
  ModuleRecord m;
  std::uint8_t major = 9;
  std::uint8_t minor = 9;
  std::uint16_t sub_minor = 9;
  EXPECT_FALSE(m.GetFWVersion(major, minor, sub_minor));
  EXPECT_EQ(major + minor + sub_minor, 0);
  EXPECT_EQ(m.ConvertFWVersionToStr(kNa), kNa);

  m.fw_version = 0x1A0B0123;
  EXPECT_TRUE(m.GetFWVersion(major, minor, sub_minor));
  EXPECT_EQ(major, 26);
  EXPECT_EQ(minor, 11);
  EXPECT_EQ(sub_minor, 291);
  EXPECT_EQ(m.ConvertFWVersionToStr(kNa), "26.11.291");
  m.fw_version = 0xFFFFFFFF;
  EXPECT_EQ(m.ConvertFWVersionToStr(kNa), "255.255.65535");

  m.cable_technology = 0xA5;
  EXPECT_FALSE(m.GetFWVersion(major, minor, sub_minor));
  EXPECT_EQ(major + minor + sub_minor, 0);
  EXPECT_EQ(m.ConvertFWVersionToStr(kNa), kNa);
}

TEST(ModuleRecordDateCode, IsStoredInReverseOrder) {
  ModuleRecord m;
  EXPECT_EQ(m.ConvertDateCodeToStr(kNa), kNa);
  std::memcpy(m.date_code, "513012", 6);
  EXPECT_EQ(m.ConvertDateCodeToStr(kNa), "21-03-15");
  m.SetDateCode("210315");
  EXPECT_EQ(m.date_code[5], '2');
  EXPECT_EQ(m.date_code[0], '5');
  EXPECT_EQ(m.ConvertDateCodeToStr(kNa), "21-03-15");
}

TEST(ModuleRecordDateCode, NeedsSixDigits) {
  ModuleRecord m;
  for (int place = 0; place < 6; ++place) {
    for (int c = 0; c < 256; ++c) {
      std::string date = "210315";
      date[static_cast<std::size_t>(place)] = static_cast<char>(c);
      m.SetDateCode(date);
      const std::string text =
          date.substr(0, 2) + '-' + date.substr(2, 2) + '-' + date.substr(4, 2);
      EXPECT_EQ(m.ConvertDateCodeToStr(kNa), c >= '0' && c <= '9' ? text : kNa);
    }
  }
  m.SetDateCode("2103");
  EXPECT_EQ(m.ConvertDateCodeToStr(kNa), kNa);
  m.SetDateCode("21031599");
  EXPECT_EQ(m.ConvertDateCodeToStr(kNa), "21-03-15");
}

TEST(ModuleRecordCdrEnable, IsShownWithTheCdrOrAlways) {
  for (const bool rx : {false, true}) {
    for (unsigned state = 0; state < 256; ++state) {
      ModuleRecord m;
      (rx ? m.rx_cdr_state : m.tx_cdr_state) = Byte(state);
      (rx ? m.tx_cdr_cap : m.rx_cdr_cap) = 1;  // that of the other side has no effect
      char text[8];
      std::snprintf(text, sizeof(text), "0x%02x", state);
      EXPECT_EQ(m.ConvertCDREnableTxRxToStr(rx, kNa, false), kNa);
      EXPECT_EQ(m.ConvertCDREnableTxRxToStr(rx, kNa, true), text);
      (rx ? m.rx_cdr_cap : m.tx_cdr_cap) = 0x80;
      EXPECT_EQ(m.ConvertCDREnableTxRxToStr(rx, kNa, false), text);
      m.cable_technology = 0xA0;
      EXPECT_EQ(m.ConvertCDREnableTxRxToStr(rx, kNa, true), kNa);
    }
  }
}

TEST(ModuleRecordAttenuation, IsShownForPassiveCopper) {
  ModuleRecord m = OfTechnology(0xA0);
  const std::uint8_t values[] = {5, 7, 12, 255};
  std::memcpy(m.attenuation, values, 4);
  EXPECT_EQ(m.ConvertAttenuationToStr(true), "5,7,12,255");
  EXPECT_EQ(m.ConvertAttenuationToStr(false), "5 7 12 255");
  m.cable_technology = 0xB0;
  EXPECT_EQ(m.ConvertAttenuationToStr(true), R"("NA","NA","NA","NA")");
  EXPECT_EQ(m.ConvertAttenuationToStr(false), "NA NA NA NA");
}

TEST(ModuleRecordLaneSetting, RepeatsItsValue) {
  const ModuleRecord m;
  EXPECT_EQ(m.ConvertTxEQRxAMPRxEMPToStr(10, true, kNa), "0a0a0a0a");
  EXPECT_EQ(m.ConvertTxEQRxAMPRxEMPToStr(10, false, kNa), "10 10 10 10");
  EXPECT_EQ(m.ConvertTxEQRxAMPRxEMPToStr(255, true, kNa), "ffffffff");
  EXPECT_EQ(m.ConvertTxEQRxAMPRxEMPToStr(0, false, kNa), "0 0 0 0");
  EXPECT_EQ(m.ConvertTxEQRxAMPRxEMPToStr(255, false, kNa), "255 255 255 255");
  const ModuleRecord passive = OfTechnology(0xA0, 6);
  EXPECT_EQ(passive.ConvertTxEQRxAMPRxEMPToStr(10, true, kNa), kNa);
  EXPECT_EQ(passive.ConvertTxEQRxAMPRxEMPToStr(10, false, kNa), kNa);
}

TEST(ModuleRecordTemperature, DependsOnTheHighNibbleOfTheTechnology) {
  for (unsigned high = 0; high < 256; ++high) {
    const int degrees = high < 128 ? static_cast<int>(high) : static_cast<int>(high) - 256;
    const auto word = static_cast<std::uint16_t>(high << 8 | 0xC0);
    for (const unsigned technology : {0x00U, 0x0AU, 0x9FU, 0xA0U, 0xBFU, 0xC0U, 0xFFU}) {
      const ModuleRecord m = OfTechnology(technology, 8);
      const bool shown =
          degrees >= -40 && degrees <= 125 && technology >> 4 != 10 && technology >> 4 != 11;
      const std::string text = std::to_string(degrees) + "C";
      ASSERT_EQ(m.ConvertTemperatureToStr(word, false), shown ? text : "N/A");
      ASSERT_EQ(m.ConvertTemperatureToStr(word, true), shown ? '"' + text + '"' : "\"NA\"");
    }
  }
}

TEST(ModuleRecordVoltage, IsShownInMicrovolts) {
  const ModuleRecord m;
  EXPECT_EQ(m.ConvertVoltageToStr(33000, false), "3300000uV");
  EXPECT_EQ(m.ConvertVoltageToStr(33000, true), "\"3300000uV\"");
}

TEST(ModuleRecordMaxPower, IsInQuartersOfAWatt) {
  ModuleRecord m;
  EXPECT_EQ(m.ConvertMaxPowerToStr(kNa), kNa);
  for (unsigned value = 1; value < 256; ++value) {
    m.max_power = Byte(value);
    EXPECT_EQ(m.ConvertMaxPowerToStr(kNa), General(value / 4.0) + " W");
  }
  m.max_power = 14;
  EXPECT_EQ(m.ConvertMaxPowerToStr(kNa), "3.5 W");
}

TEST(ModuleRecordSpeed, ListsTheMask) {
  ModuleRecord m;
  EXPECT_EQ(m.ConvertIBComplianceCodeToStr(kNa), kNa);
  m.ib_compliance_code = 0x60;
  EXPECT_EQ(m.ConvertIBComplianceCodeToStr(kNa), "HDR/NDR");
}

}  // namespace
}  // namespace cable_info::test
