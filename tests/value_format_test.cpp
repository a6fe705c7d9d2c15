#include "cable_info/value_format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "test_support.h"
#include "text/number_samples.h"

namespace cable_info::test {
namespace {

// ---------------------------------------------------------------------------------------------
// Number to text
// ---------------------------------------------------------------------------------------------

TEST(ToString, WritesBytesAsNumbers) {
  for (unsigned value = 0; value < 256; ++value) {
    char expected[8];
    std::snprintf(expected, sizeof(expected), "%u", value);
    EXPECT_EQ(_to_string(static_cast<unsigned char>(value)), expected);
  }
  EXPECT_EQ(_to_string<unsigned char>(65), "65");
}

TEST(ToString, WritesWordsInDecimal) {
  for (unsigned value = 0; value < 65536; ++value) {
    char expected[8];
    std::snprintf(expected, sizeof(expected), "%u", value);
    ASSERT_EQ(_to_string(static_cast<unsigned short>(value)), expected);
  }
}

TEST(ToString, WritesDoublesAsADefaultStreamDoes) {
  EXPECT_EQ(_to_string(25.5), "25.5");
  EXPECT_EQ(_to_string(0.0001), "0.0001");
  EXPECT_EQ(_to_string(1234567.0), "1.23457e+06");
  EXPECT_EQ(_to_string(0.0), "0");
  EXPECT_EQ(_to_string(-2.5), "-2.5");
  for (const double value : DelicateDoubles()) ASSERT_EQ(_to_string(value), PrintfGeneral(value));
}

TEST(ToPtrString, WritesHexadecimalOfTheTypesWidth) {
  EXPECT_EQ(_to_ptr_string<unsigned char>(0), "0x00");
  EXPECT_EQ(_to_ptr_string<unsigned char>(5), "0x05");
  EXPECT_EQ(_to_ptr_string<unsigned char>(171), "0xab");
  EXPECT_EQ(_to_ptr_string<unsigned short>(0), "0x0000");
  EXPECT_EQ(_to_ptr_string<unsigned short>(31), "0x001f");
  EXPECT_EQ(_to_ptr_string<unsigned short>(48879), "0xbeef");
}

TEST(ToPtrString, PadsToAnyWidthWithoutTruncating) {
  for (int width = 0; width <= 12; ++width) {
    for (unsigned value : {0U, 1U, 0xFU, 0x10U, 0xFFU, 0x100U, 0xFFFU, 0x1000U, 0xFFFFU}) {
      std::ostringstream expected;
      expected << "0x" << std::hex << std::setfill('0') << std::setw(width) << value;
      EXPECT_EQ(_to_ptr_string(static_cast<unsigned short>(value), width), expected.str());
      if (value > 0xFF) continue;
      EXPECT_EQ(_to_ptr_string(static_cast<unsigned char>(value), width), expected.str());
    }
  }
}

TEST(ToPtrString, ShowsEveryByteAndWord) {
  for (unsigned value = 0; value < 65536; ++value) {
    char expected[8];
    std::snprintf(expected, sizeof(expected), "0x%04x", value);
    ASSERT_EQ(_to_ptr_string(static_cast<unsigned short>(value)), expected);
    if (value > 0xFF) continue;
    std::snprintf(expected, sizeof(expected), "0x%02x", value);
    ASSERT_EQ(_to_ptr_string(static_cast<unsigned char>(value)), expected);
  }
}

TEST(ToCvsQuoted, QuotesWithoutEscaping) {
  EXPECT_EQ(_to_cvs_quoted(true, ""), R"("")");
  EXPECT_EQ(_to_cvs_quoted(true, "a,\"b\"\n"), "\"a,\"b\"\n\"");
  EXPECT_EQ(_to_cvs_quoted(false, "a,\"b\"\n"), "a,\"b\"\n");
  EXPECT_EQ(_to_cvs_quoted(false, ""), "");
  EXPECT_EQ(_to_cvs_quoted(true, std::string("a\0b", 3)), std::string("\"a\0b\"", 5));
  EXPECT_EQ(_to_cvs_quoted(false, std::string("a\0b", 3)), std::string("a\0b", 3));
}

// ---------------------------------------------------------------------------------------------
// Stream inserters
// ---------------------------------------------------------------------------------------------

TEST(QuotedInserter, WritesTheTextBetweenItsDelimiters) {
  const std::string text("a\"b\0c", 5);
  std::ostringstream os;
  os << QUOTED_T<std::string>(&text, '<', '>') << QUOTED_T<char[3]>(&"NA", '"', '"');
  EXPECT_EQ(os.str(), std::string("<a\"b\0c>\"NA\"", 11));
}

TEST(QuotedInserter, ReadsAnArrayToItsNulOrItsEnd) {
  const char full[3] = {'a', 'b', 'c'};
  const char half[3] = {'a', '\0', 'c'};
  std::ostringstream os;
  os << QUOTED_T<char[3]>(&full, '"', '"') << QUOTED_T<char[3]>(&half, '"', '"');
  EXPECT_EQ(os.str(), R"("abc""a")");
}

TEST(QuotedInserter, SetsTheBadbitForNull) {
  std::ostringstream os;
  os << QUOTED_T<char[3]>(nullptr, '<', '>');
  EXPECT_TRUE(os.bad());
  os << "more";
  EXPECT_EQ(os.str(), "<");

  std::ostringstream other;
  other << QUOTED_T<std::string>(nullptr, '<', '>');
  EXPECT_TRUE(other.bad());
  EXPECT_EQ(other.str(), "<");
}

TEST(QuotedInserter, DoesNotChangeFlagsPrecisionAndFill) {
  std::ostringstream os;
  os << std::hex << std::uppercase << std::setprecision(9) << std::setfill('*');
  const std::ios::fmtflags flags = os.flags();
  os << QUOTED_T<char[3]>(&"NA", '"', '"');
  EXPECT_EQ(os.flags(), flags);
  EXPECT_EQ(os.precision(), 9);
  EXPECT_EQ(os.fill(), '*');
}

TEST(Inserters, WriteNothingToABadStream) {
  const std::string text = "text";
  std::ostringstream os;
  os.setstate(std::ios::badbit);
  os << QUOTED_T<std::string>(&text, '"', '"') << QUOTED_T<char[3]>(&"NA", '"', '"')
     << FLOAT_T<float>(1.0F, 3, false) << HEX_T<unsigned char>(1, 2, '0');
  EXPECT_EQ(os.str(), "");
  EXPECT_TRUE(os.bad());
  EXPECT_EQ(os.precision(), 3);
  EXPECT_EQ(os.fill(), '0');
  EXPECT_EQ(os.flags(), std::ostringstream().flags());
}

TEST(FloatInserter, WritesFixedNotationWithItsPrecision) {
  std::ostringstream os;
  os << FLOAT_T<float>(25.5F, 3, false) << ' ' << FLOAT_T<float>(-0.0625F, 3, false);
  EXPECT_EQ(os.str(), "25.500 -0.062");
}

TEST(FloatInserter, RestoresTheNotationButNotThePrecision) {
  std::ostringstream os;
  os << FLOAT_T<float>(1.0F, 2, false);
  EXPECT_EQ(os.precision(), 2);
  EXPECT_EQ(os.flags(), std::ostringstream().flags());
  os << ' ' << 3.14159;
  EXPECT_EQ(os.str(), "1.00 3.1");
}

TEST(FloatInserter, UsesTheFormatOfTheStreamWithPrecisionZero) {
  std::ostringstream os;
  os << std::scientific << std::setprecision(1) << FLOAT_T<float>(1234.5F, 0, false);
  EXPECT_EQ(os.str(), "1.2e+03");
  EXPECT_EQ(os.precision(), 1);
}

TEST(FloatInserter, WritesScientificNotationWhateverThePrecision) {
  std::ostringstream os;
  os << std::fixed << FLOAT_T<float>(1234.5F, 0, true) << ' ' << FLOAT_T<float>(1234.5F, 2, true);
  EXPECT_EQ(os.str(), "1.234500e+03 1.23e+03");
  EXPECT_EQ(os.flags() & std::ios::floatfield, std::ios::fixed);
}

TEST(FloatInserter, WritesNanAndInfinities) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  std::ostringstream os;
  os << FLOAT_T<float>(kInfinity, 3, false) << ' ' << FLOAT_T<float>(-kInfinity, 3, false) << ' '
     << FLOAT_T<float>(std::numeric_limits<float>::quiet_NaN(), 3, false) << ' '
     << FLOAT_T<float>(-0.0F, 3, false);
  EXPECT_EQ(os.str(), "inf -inf nan -0.000");
}

TEST(FloatInserter, ConvertsItsValueToDouble) {
  // 0.1F is 0.100000001490116...
  std::ostringstream os;
  os << FLOAT_T<float>(0.1F, 12, false) << ' '
     << FLOAT_T<float>(std::numeric_limits<float>::max(), 1, false);
  EXPECT_EQ(os.str(), "0.100000001490 340282346638528859811704183484516925440.0");
}

TEST(FloatInserter, KeepsTheStreamsOtherFormatting) {
  std::ostringstream os;
  os << std::showpos << std::uppercase << std::hexfloat << std::setfill('*') << std::left;
  const std::ios::fmtflags flags = os.flags();
  os << std::setw(9) << FLOAT_T<float>(25.5F, 3, false) << ' ' << FLOAT_T<float>(25.5F, 2, true);
  EXPECT_EQ(os.str(), "+25.500** +2.55E+01");
  EXPECT_EQ(os.flags(), flags);
  EXPECT_EQ(os.width(), 0);
}

TEST(HexInserter, WritesEveryByte) {
  for (unsigned value = 0; value < 256; ++value) {
    char expected[8];
    std::snprintf(expected, sizeof(expected), "%02x", value);
    std::ostringstream os;
    os << HEX_T<unsigned char>(static_cast<unsigned char>(value), 2, '0');
    EXPECT_EQ(os.str(), expected);
  }
}

TEST(HexInserter, KeepsTheStreamsOtherFormatting) {
  std::ostringstream os;
  os << std::showbase << std::uppercase << std::dec << std::left;
  const std::ios::fmtflags flags = os.flags();
  os << HEX_T<unsigned char>(0xAB, 6, '*') << ' ' << 10;
  EXPECT_EQ(os.str(), "0XAB** 10");
  EXPECT_EQ(os.flags(), flags);
  EXPECT_EQ(os.width(), 0);
}

TEST(HexInserter, WritesAPaddedByteWithoutPrefix) {
  std::ostringstream os;
  os << HEX_T<unsigned char>(13, 2, '0') << HEX_T<unsigned char>(0xAB, 2, '0')
     << HEX_T<unsigned char>(1, 4, '*') << HEX_T<unsigned char>(65, 0, '0');
  EXPECT_EQ(os.str(), "0dab***141");
}

TEST(HexInserter, RestoresTheBaseButNotTheFill) {
  std::ostringstream os;
  os << HEX_T<unsigned char>(10, 2, '0') << std::setw(4) << 10;
  EXPECT_EQ(os.fill(), '0');
  EXPECT_EQ(os.str(), "0a0010");
  EXPECT_EQ(os.flags(), std::ostringstream().flags());
}

TEST(HexInserter, UsesTheWidthOfTheStreamWithWidthZero) {
  std::ostringstream os;
  os << std::setw(5) << HEX_T<unsigned char>(255, 0, '.');
  EXPECT_EQ(os.str(), "...ff");
}

TEST(HexInserter, ReplacesTheBaseOfTheStream) {
  std::ostringstream os;
  os << std::oct << HEX_T<unsigned char>(255, 2, '0') << ' ' << 8;
  EXPECT_EQ(os.str(), "ff 10");
}

// ---------------------------------------------------------------------------------------------
// Locales
// ---------------------------------------------------------------------------------------------

void ExpectTextsWithPoints() {
  EXPECT_EQ(_to_string(12345.5), "12345.5");
  EXPECT_EQ(_to_string<unsigned short>(65535), "65535");
  EXPECT_EQ(_to_ptr_string<unsigned short>(65535), "0xffff");
  EXPECT_EQ(Fixed3(12345.5), "12345.500");
  EXPECT_EQ(General(1234567.0), "1.23457e+06");
  EXPECT_EQ(VoltageToStr(65535), "6553500uV");
}

TEST(Locale, DoesNotAffectTexts) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
  ExpectTextsWithPoints();
  std::locale::global(before);
}

TEST(Locale, OfTheCLibraryDoesNotAffectTexts) {
  // Few systems have all of them; "C" always exists.
  for (const char* name : {"C", "de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
    SCOPED_TRACE(name);
    if (std::setlocale(LC_ALL, name) == nullptr) continue;
    ExpectTextsWithPoints();
    std::setlocale(LC_ALL, "C");
  }
}

}  // namespace
}  // namespace cable_info::test
