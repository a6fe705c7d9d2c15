#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include "cable_info/combined_cable_info.h"
#include "cable_info/value_format.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

bool HasSensor(int technology) { return technology != 10 && technology != 11; }
bool InRange(int degrees) { return degrees >= -40 && degrees <= 125; }

// A temperature word: whole degrees in the high byte, the fraction in the low byte.
std::uint16_t Word(int degrees, unsigned fraction) {
  return static_cast<std::uint16_t>((static_cast<unsigned>(degrees) & 0xFF) << 8 | fraction);
}

TEST(CableType, NamesSixteenCodes) {
  for (unsigned code = 0; code < 256; ++code) {
    const std::string expected = code < 16 ? TechnologyNames()[code] : "fallback";
    EXPECT_EQ(CombinedCableInfo::CableTypeToStr(static_cast<std::uint8_t>(code), "fallback"),
              expected);
  }
}

TEST(SupportedSpeed, JoinsTheSpeedsOfAllMasks) {
  const std::string names[] = {"SDR", "DDR", "QDR", "FDR", "EDR", "HDR", "NDR"};
  for (unsigned mask = 0; mask < 256; ++mask) {
    std::string expected;
    for (unsigned bit = 0; bit < 7; ++bit) {
      if ((mask >> bit & 1) == 0) continue;
      if (!expected.empty()) expected += '/';
      expected += names[bit];
    }
    if (expected.empty()) expected = "none";
    EXPECT_EQ(CombinedCableInfo::SupportedSpeedToStr(static_cast<std::uint8_t>(mask), "none"),
              expected);
  }
  EXPECT_EQ(CombinedCableInfo::SupportedSpeedToStr(0x0A, ""), "DDR/FDR");
  EXPECT_EQ(CombinedCableInfo::SupportedSpeedToStr(0x7F, ""), "SDR/DDR/QDR/FDR/EDR/HDR/NDR");
  EXPECT_EQ(CombinedCableInfo::SupportedSpeedToStr(0x80, "x"), "x");
}

TEST(Temperature, ShowsReadingsOfCablesWithASensor) {
  for (int technology = 0; technology < 256; ++technology) {
    for (int degrees = -128; degrees < 128; ++degrees) {
      const bool valid = HasSensor(technology) && InRange(degrees);
      const auto code = static_cast<std::uint8_t>(technology);
      const auto reading = static_cast<std::int8_t>(degrees);
      ASSERT_EQ(_is_valid_temperature(reading, code), valid);
      ASSERT_EQ(CombinedCableInfo::TemperatureToStr(code, reading, "no reading"),
                valid ? std::to_string(degrees) + "C" : "no reading");
    }
  }
  EXPECT_EQ(CombinedCableInfo::TemperatureToStr(3, 125, "f"), "125C");
  EXPECT_EQ(CombinedCableInfo::TemperatureToStr(3, 126, "f"), "f");
  EXPECT_EQ(CombinedCableInfo::TemperatureToStr(3, -41, "f"), "f");
  EXPECT_EQ(CombinedCableInfo::TemperatureToStr(0, -5, "f"), "-5C");
  EXPECT_EQ(CombinedCableInfo::TemperatureToStr(11, 30, "f"), "f");
}

TEST(TemperatureThreshold, IsCrossedStrictly) {
  for (const int technology : {0, 9, 10, 11, 12, 255}) {
    for (int degrees = -128; degrees < 128; ++degrees) {
      for (int threshold = -128; threshold < 128; ++threshold) {
        const bool valid = HasSensor(technology) && InRange(degrees) && InRange(threshold);
        const auto code = static_cast<std::uint8_t>(technology);
        const auto reading = static_cast<std::int8_t>(degrees);
        const auto limit = static_cast<std::int8_t>(threshold);
        ASSERT_EQ(_check_temperature_by_threshold(true, code, reading, limit),
                  valid && degrees > threshold);
        ASSERT_EQ(_check_temperature_by_threshold(false, code, reading, limit),
                  valid && degrees < threshold);
      }
    }
  }
  EXPECT_FALSE(_check_temperature_by_threshold(true, 0, 70, 70));
  EXPECT_TRUE(_check_temperature_by_threshold(true, 0, 71, 70));
  EXPECT_FALSE(_check_temperature_by_threshold(false, 0, -41, 0));
}

TEST(TemperatureErrors, CompareTheHighBytes) {
  for (unsigned technology = 0; technology < 256; ++technology) {
    for (const int degrees : {-128, -41, -40, -5, 0, 69, 70, 71, 125, 126}) {
      for (const int high : {-41, -40, 0, 70, 125, 126}) {
        for (const int low : {-41, -40, -5, 0, 70, 126}) {
          const bool readable = HasSensor(static_cast<int>(technology)) && InRange(degrees);
          unsigned expected = 0;
          if (readable && InRange(high) && degrees > high) expected |= 1;
          if (readable && InRange(low) && degrees < low) expected |= 2;
          // The low bytes would give the opposite result.
          ASSERT_EQ(TemperatureErrors(static_cast<std::uint8_t>(technology), Word(degrees, 0x80),
                                      Word(high, 0xFF), Word(low, 0x00)),
                    expected)
              << technology << ' ' << degrees << ' ' << high << ' ' << low;
        }
      }
    }
  }
}

TEST(Voltage, ShowsMicrovolts) {
  for (unsigned raw = 0; raw < 65536; ++raw) {
    char expected[16];
    std::snprintf(expected, sizeof(expected), "%uuV", raw * 100);
    ASSERT_EQ(CombinedCableInfo::VoltageToStr(static_cast<std::uint16_t>(raw)), expected);
  }
  EXPECT_EQ(VoltageToStr(33000), "3300000uV");
  EXPECT_EQ(VoltageToStr(0), "0uV");
  EXPECT_EQ(VoltageToStr(65535), "6553500uV");
}

TEST(OpticTechnology, IsAnyCodeUpToNine) {
  for (unsigned code = 0; code < 256; ++code) {
    EXPECT_EQ(CombinedCableInfo::IsOpticCable(static_cast<std::uint8_t>(code)), code <= 9);
  }
}

TEST(AutonegStatus, HasATextForEveryCode) {
  const std::string texts[] = {"Success", "Port is not QDR", "Auto negotiation is in progress",
                               "Link is down"};
  for (unsigned code = 0; code < 256; ++code) {
    EXPECT_EQ(ConvertAutonegValueToStr(static_cast<std::uint8_t>(code)),
              code < 4 ? texts[code] : "UNKNOWN");
  }
}

TEST(CableInfoQueryStatus, HasATextForEveryCode) {
  const std::string texts[] = {
      "Success",
      "Invalid port number",
      "Port type is not QSFP (SFP/CX4 or internal)",
      "Cable not connected",
      "No eeprom in connected cable",
      "Invalid page number (>15)",
      "Address / size  is invalid. ((addr+size)>255) or size>48 or size==0",
      "Slave address is invalid. (slv_addr != 0x50)",
      "Bad QSFP cable (cable ignore ModSel# signal)",
  };
  for (unsigned code = 0; code < 256; ++code) {
    EXPECT_EQ(ConvertCableInfoVSStatusToStr(static_cast<std::uint8_t>(code)),
              code < 9 ? texts[code] : "UNKNOWN");
  }
}

// The vendor code as found by the C library's scanner.
std::string Scanned(const std::string& sn) {
  int first = 0;
  int last = 0;
  char code[2] = {};
  if (std::sscanf(sn.c_str(), "KS%d%c%c%d", &first, &code[0], &code[1], &last) != 4) return {};
  return {code, 2};
}

TEST(VendorOfSerialNumber, IsTheCodeBetweenTheNumbers) {
  EXPECT_EQ(_get_vendor_from_sn("KS1234AB5678"), "AB");
  EXPECT_EQ(_get_vendor_from_sn("KS12AB"), "");
  EXPECT_EQ(_get_vendor_from_sn("ks1234AB5678"), "");
  EXPECT_EQ(_get_vendor_from_sn(" KS1234AB5678"), "");
  EXPECT_EQ(_get_vendor_from_sn(""), "");
  EXPECT_EQ(_get_vendor_from_sn("KS12,-3"), ",-");
  EXPECT_EQ(_get_vendor_from_sn("KS 12-+ -3rest"), "-+");
  EXPECT_EQ(_get_vendor_from_sn("KS+1 B2"), " B");
}

TEST(VendorOfSerialNumber, MayHaveAnyBlanksBeforeItsNumbers) {
  EXPECT_EQ(_get_vendor_from_sn("KS\t\n\v\f\r 1AB\t\n\v\f\r 2"), "AB");
  for (int c = 1; c < 256; ++c) {
    const bool transparent = (c >= 9 && c <= 13) || c == ' ' || c == '+' || c == '-';
    const std::string sn = "KS1AB" + std::string(1, static_cast<char>(c)) + "x";
    EXPECT_EQ(_get_vendor_from_sn(sn), c >= '0' && c <= '9' ? "AB" : "") << c;
    EXPECT_EQ(_get_vendor_from_sn(sn.substr(0, 6) + "2"),
              transparent || (c >= '0' && c <= '9') ? "AB" : "")
        << c;
  }
}

TEST(VendorOfSerialNumber, MayHaveAnyCharactersInItsCode) {
  for (int c = 1; c < 256; ++c) {
    if (c >= '0' && c <= '9') continue;  // part of the number
    const std::string code = {static_cast<char>(c), '\xE9'};
    EXPECT_EQ(_get_vendor_from_sn("KS1" + code + "2"), code) << c;
  }
  EXPECT_EQ(_get_vendor_from_sn("KS1A23"), "A2");
  EXPECT_EQ(_get_vendor_from_sn("KS1A2"), "");
}

TEST(VendorOfSerialNumber, EndsAtANul) {
  EXPECT_EQ(_get_vendor_from_sn(std::string("KS1AB\0002", 7)), "");
  EXPECT_EQ(_get_vendor_from_sn(std::string("KS1AB2\0xyz", 10)), "AB");
}

TEST(VendorOfSerialNumber, AcceptsNumbersOfAnyLength) {
  const std::string digits(10000, '7');
  EXPECT_EQ(_get_vendor_from_sn("KS" + digits + "XY" + digits), "XY");
  EXPECT_EQ(_get_vendor_from_sn("KS" + digits), "");
}

TEST(VendorOfSerialNumber, ScansAsTheCLibraryDoes) {
  constexpr std::string_view kAlphabet = "KS019AB +-\t\n\v\f\r.x\xA0";
  std::mt19937 random(7);
  int found = 0;
  for (int i = 0; i < 400'000; ++i) {
    std::string sn = i % 8 == 0 ? "" : "KS";
    for (auto length = random() % 9; length > 0; --length)
      sn += kAlphabet[random() % kAlphabet.size()];
    ASSERT_EQ(_get_vendor_from_sn(sn), Scanned(sn)) << sn;
    if (!Scanned(sn).empty()) ++found;
  }
  EXPECT_GT(found, 1000);
}

TEST(TrimmedText, HasNoWhiteSpaceAtItsEnds) {
  EXPECT_EQ(Trimmed("\t\n\v\f\r a b\t\n\v\f\r "), "a b");
  EXPECT_EQ(Trimmed(" \t "), "");
  EXPECT_EQ(Trimmed(""), "");
  for (int c = 1; c < 256; ++c) {
    const std::string text = static_cast<char>(c) + std::string("x") + static_cast<char>(c);
    const bool blank = (c >= 9 && c <= 13) || c == 32;
    EXPECT_EQ(Trimmed(text), blank ? "x" : text) << c;
  }
}

TEST(FirmwareWord, IsSplitIntoThreeNumbers) {
  const fw_version_obj_t version = FWVersionFromWord(0x1A0B0123);
  EXPECT_EQ(version.major, 26);
  EXPECT_EQ(version.minor, 11);
  EXPECT_EQ(version.sub_minor, 291);
  const fw_version_obj_t greatest = FWVersionFromWord(0xFFFFFFFF);
  EXPECT_EQ(greatest.major, 255);
  EXPECT_EQ(greatest.minor, 255);
  EXPECT_EQ(greatest.sub_minor, 65535);
  static_assert(sizeof(fw_version_obj_t) == 4);
}

}  // namespace
}  // namespace cable_info::test
