#include "cable_info/value_format.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cinttypes>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iomanip>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

#include "test_support.h"

namespace cable_info::test {
namespace {

// What the C library makes of a number.
std::string PrintfFixed3(double value) {
  char text[400];
  std::snprintf(text, sizeof(text), "%.3f", value);
  return text;
}

std::string PrintfGeneral(double value) {
  char text[400];
  std::snprintf(text, sizeof(text), "%g", value);
  return text;
}

std::string Fixed3(double value) {
  return ToText([&](TextBuffer& out) { out.AppendFixed3(value); });
}

std::string General(double value) {
  return ToText([&](TextBuffer& out) { out.AppendGeneral(value); });
}

// Values at which formatting goes wrong first.
std::vector<double> DelicateDoubles() {
  std::vector<double> values = {0.0,
                                0.0005,
                                0.0015,
                                0.0025,
                                0.9994999,
                                0.9995,
                                0.99999999,
                                1.0,
                                999.9995,
                                1e15,
                                4503599627370495.5,  // the last half below 2^52
                                4503599627370496.0,
                                9007199254740993.0,
                                1e22,
                                1e100,
                                DBL_MAX,
                                DBL_MIN,
                                std::numeric_limits<double>::denorm_min(),
                                std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()};
  for (int k = 0; k <= 80000; ++k) values.push_back(k / 8000.0);  // ties among them
  for (int e = -80; e <= 80; ++e) values.push_back(std::ldexp(1.0, e));
  const std::size_t count = values.size();
  for (std::size_t i = 0; i < count; ++i) values.push_back(std::copysign(values[i], -1.0));
  return values;
}

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

TEST(ToPtrString, PadsToAnyWidthAndNeverCuts) {
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

TEST(QuotedInserter, BreaksTheStreamOnNull) {
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

TEST(QuotedInserter, LeavesFlagsPrecisionAndFill) {
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

TEST(FloatInserter, LeavesThePrecisionButRestoresTheNotation) {
  std::ostringstream os;
  os << FLOAT_T<float>(1.0F, 2, false);
  EXPECT_EQ(os.precision(), 2);
  EXPECT_EQ(os.flags(), std::ostringstream().flags());
  os << ' ' << 3.14159;
  EXPECT_EQ(os.str(), "1.00 3.1");
}

TEST(FloatInserter, LeavesAllToTheStreamWithoutPrecision) {
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

TEST(FloatInserter, WritesWhatIsNoNumber) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  std::ostringstream os;
  os << FLOAT_T<float>(kInfinity, 3, false) << ' ' << FLOAT_T<float>(-kInfinity, 3, false) << ' '
     << FLOAT_T<float>(std::numeric_limits<float>::quiet_NaN(), 3, false) << ' '
     << FLOAT_T<float>(-0.0F, 3, false);
  EXPECT_EQ(os.str(), "inf -inf nan -0.000");
}

TEST(FloatInserter, WidensItsValue) {
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

TEST(HexInserter, LeavesItsFillButRestoresTheBase) {
  std::ostringstream os;
  os << HEX_T<unsigned char>(10, 2, '0') << std::setw(4) << 10;
  EXPECT_EQ(os.fill(), '0');
  EXPECT_EQ(os.str(), "0a0010");
  EXPECT_EQ(os.flags(), std::ostringstream().flags());
}

TEST(HexInserter, TakesTheStreamsWidthWhenItHasNone) {
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
// TextBuffer
// ---------------------------------------------------------------------------------------------

TEST(TextBuffer, WritesThousandthsAsPrintfDoes) {
  for (const double value : DelicateDoubles()) ASSERT_EQ(Fixed3(value), PrintfFixed3(value));
}

TEST(TextBuffer, WritesNeighboursOfHalfThousandthsAsPrintfDoes) {
  // Odd sixteenths end in half a thousandth; the doubles next to them lie beside it.
  for (int sixteenths = 1; sixteenths < 20'000; sixteenths += 2) {
    const double half = sixteenths / 16.0;
    for (const double value : {std::nextafter(half, 0.0), half, std::nextafter(half, 1e9)}) {
      ASSERT_EQ(Fixed3(value), PrintfFixed3(value));
      ASSERT_EQ(Fixed3(-value), PrintfFixed3(-value));
    }
  }
  EXPECT_EQ(Fixed3(0.0625), "0.062");
  EXPECT_EQ(Fixed3(std::nextafter(0.0625, 1.0)), "0.063");
}

TEST(TextBuffer, WritesThousandthsOfAnyDoubleAsPrintfDoes) {
  std::mt19937_64 random(20240315);
  for (int i = 0; i < 1'000'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    ASSERT_EQ(Fixed3(value), PrintfFixed3(value));
  }
}

TEST(TextBuffer, WritesThousandthsOfFloatsAsPrintfDoes) {
  // Every 4,099th float, so all exponents and both signs.
  for (std::uint64_t bits = 0; bits <= 0xFFFFFFFF; bits += 4099) {
    const auto value = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    ASSERT_EQ(Fixed3(value), PrintfFixed3(value)) << bits;
  }
}

TEST(TextBuffer, WritesSixSignificantDigitsOfAnyDoubleAsPrintfDoes) {
  for (const double value :
       {999999.0, 999999.4, 999999.5, 9.999995, 9.9999949, 0.0001, 0.00009999995, 0.000099999949,
        123456.5, 1234565.0, 100000.0, 1e5, 1e6, 0.5}) {
    EXPECT_EQ(General(value), PrintfGeneral(value));
    EXPECT_EQ(General(-value), PrintfGeneral(-value));
  }
  for (const double value : DelicateDoubles()) ASSERT_EQ(General(value), PrintfGeneral(value));
  std::mt19937_64 random(20240316);
  for (int i = 0; i < 200'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    ASSERT_EQ(General(value), PrintfGeneral(value));
    const auto length =
        static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
    ASSERT_EQ(General(length), PrintfGeneral(length));
  }
}

TEST(TextBuffer, WritesIntegersOfAnySize) {
  const std::int64_t values[] = {0,    9,     10,        99,        100,      999,
                                 1000, 65535, 123456789, INT64_MAX, INT64_MIN};
  for (const std::int64_t magnitude : values) {
    for (const std::int64_t value : {magnitude, magnitude == INT64_MIN ? magnitude : -magnitude}) {
      EXPECT_EQ(ToText([&](TextBuffer& out) { out.AppendDecimal(value); }), std::to_string(value));
    }
  }
}

TEST(TextBuffer, WritesIntegersOfAnyLengthAsPrintfDoes) {
  std::vector<std::int64_t> values;
  for (std::int64_t power = 1; power <= INT64_MAX / 10; power *= 10) {
    for (const std::int64_t step : {-1, 0, 1}) {
      for (std::int64_t digit = 1; digit < 10; ++digit) values.push_back(digit * power + step);
    }
  }
  std::mt19937_64 random(20240317);
  for (int i = 0; i < 50'000; ++i) {
    values.push_back(static_cast<std::int64_t>(random() >> (random() % 64)));
  }
  for (const std::int64_t magnitude : values) {
    for (const auto value :
         {magnitude, static_cast<std::int64_t>(0 - static_cast<std::uint64_t>(magnitude))}) {
      char expected[32];
      std::snprintf(expected, sizeof(expected), "%" PRId64, value);
      ASSERT_EQ(ToText([&](TextBuffer& out) { out.AppendDecimal(value); }), expected);
    }
    const auto word = static_cast<std::uint32_t>(magnitude);
    char expected[32];
    std::snprintf(expected, sizeof(expected), "%" PRIx32, word);
    ASSERT_EQ(ToText([&](TextBuffer& out) { out.AppendHex(word, 1); }), expected);
  }
}

// Where numbers change their length, and every short one.
TEST(Numbers, AreAllTheirDigits) {
  const auto expect_digits = [](std::uint32_t value) {
    char expected[16];
    std::snprintf(expected, sizeof(expected), "%" PRIu32, value);
    char text[kDecimalRoom];
    EXPECT_EQ(std::string_view(text, WriteDecimal(text, value)), expected);
    EXPECT_EQ(std::string_view(text, WriteDecimal(text, std::uint64_t{value})), expected);
  };
  for (std::uint32_t value = 0; value < 200'000; ++value) expect_digits(value);
  for (std::uint64_t power = 100'000; power < UINT32_MAX; power *= 10) {
    for (std::uint32_t digit = 1; digit < 10 && digit * power < UINT32_MAX; ++digit) {
      const auto value = static_cast<std::uint32_t>(digit * power);
      for (const std::uint32_t step : {value - 1, value, value + 1}) expect_digits(step);
    }
  }
  expect_digits(UINT32_MAX);
}

// The address sanitizer sees who writes behind the room.
TEST(Numbers, StayWithinTheirRoom) {
  const auto expect_text = [](std::string_view expected, std::size_t room, auto write) {
    std::vector<char> text(room);
    EXPECT_EQ(std::string_view(text.data(), write(text.data())), expected);
  };
  expect_text("0", kDecimalRoom, [](char* to) { return WriteDecimal(to, std::uint32_t{0}); });
  expect_text("4294967295", kDecimalRoom, [](char* to) { return WriteDecimal(to, UINT32_MAX); });
  expect_text("18446744073709551615", kDecimalRoom,
              [](char* to) { return WriteDecimal(to, UINT64_MAX); });
  expect_text("ffffffff", HexRoom(0), [](char* to) { return WriteHex(to, UINT32_MAX, 0); });
  expect_text("000ffffffff", HexRoom(11), [](char* to) { return WriteHex(to, UINT32_MAX, 11); });
  expect_text("0xffffffff", PrefixedHexRoom(8),
              [](char* to) { return WritePrefixedHex(to, UINT32_MAX, 8); });
  for (const double value : {-DBL_MAX, -999.9994, -4503599627370495.5, 0.0}) {
    expect_text(PrintfFixed3(value), kFixed3Room,
                [value](char* to) { return WriteFixed3(to, value); });
  }
  const std::string longest = PrintfFixed3(-DBL_MAX);
  expect_text(longest + " mW, " + longest + " dBm", kPowerRoom,
              [](char* to) { return WritePower(to, -DBL_MAX, -DBL_MAX); });
  expect_text(PrintfFixed3(DBL_MAX) + " mW, 3082.547 dBm", kPowerRoom, [](char* to) {
    return WritePower(to, DBL_MAX, [](double mw) { return 10.0 * std::log10(mw); });
  });
  expect_text(longest + " mA", kBiasRoom, [](char* to) { return WriteBias(to, -DBL_MAX); });
  expect_text("4294967.295 mA", kBiasRoom, [](char* to) { return WriteBias(to, UINT32_MAX); });
}

// ---------------------------------------------------------------------------------------------
// Powers and biases
// ---------------------------------------------------------------------------------------------

double PlainDbm(double milliwatts) {
  if (milliwatts <= 0.0) return kUnrepresentablePower;
  return 10.0 * std::log10(milliwatts);
}

std::string PlainPower(double milliwatts) {
  return PrintfFixed3(milliwatts) + " mW, " + PrintfFixed3(PlainDbm(milliwatts)) + " dBm";
}

std::string Power(double milliwatts) {
  char text[kPowerRoom];
  return {text, WritePower(text, milliwatts, PlainDbm)};
}

TEST(Power, ShowsBothUnits) {
  EXPECT_EQ(Power(0.523), "0.523 mW, -2.815 dBm");
  EXPECT_EQ(Power(1.0), "1.000 mW, 0.000 dBm");
  EXPECT_EQ(Power(100.0), "100.000 mW, 20.000 dBm");
  EXPECT_EQ(Power(0.001), "0.001 mW, -30.000 dBm");
  EXPECT_EQ(Power(0.0), "0.000 mW, -999.999 dBm");
  EXPECT_EQ(Power(-0.0), "-0.000 mW, -999.999 dBm");
  EXPECT_EQ(Power(std::nextafter(1.0, 0.0)), "1.000 mW, -0.000 dBm");
  EXPECT_EQ(Power(std::nextafter(1.0, 2.0)), "1.000 mW, 0.000 dBm");
}

TEST(Power, IsThatOfThePlainExpression) {
  for (const double value : DelicateDoubles()) {
    ASSERT_EQ(Power(value), PlainPower(value));
    ASSERT_EQ(Power(-value), PlainPower(-value));
  }
  for (int raw = 1; raw <= UINT16_MAX; ++raw) {
    ASSERT_EQ(Power(raw * 0.0001), PlainPower(raw * 0.0001)) << raw;
  }
  std::mt19937_64 random(20);
  for (int i = 0; i < 50'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    ASSERT_EQ(Power(value), PlainPower(value)) << value;
  }
}

// The powers between those that are shown as one thousandth of a decibel and as the next.
TEST(Power, IsThatOfThePlainExpressionAtEveryTie) {
  for (int thousandths = -40'000; thousandths < 9'000; ++thousandths) {
    const double tie = std::pow(10.0, (thousandths + 0.5) / 10'000.0);
    for (const double distance : {-2e-8, -1e-12, 1e-12, 2e-8}) {
      const double value = tie * (1.0 + distance);
      ASSERT_EQ(Power(value), PlainPower(value)) << value;
    }
    for (double value = std::nextafter(tie, 0.0); value < tie * (1.0 + 1e-15);
         value = std::nextafter(value, DBL_MAX)) {
      ASSERT_EQ(Power(value), PlainPower(value)) << value;
    }
  }
}

// Where the magnitude of the decibels goes beyond three digits.
TEST(Power, IsThatOfThePlainExpressionAtEveryMagnitude) {
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    for (const double significand : {1.0, 1.25, 1.5, 1.99}) {
      const double value = std::ldexp(significand, exponent);
      ASSERT_EQ(Power(value), PlainPower(value)) << value;
    }
  }
  for (double value = 9.99e99; value < 1.001e100; value *= 1.00001) {
    ASSERT_EQ(Power(value), PlainPower(value)) << value;
    ASSERT_EQ(Power(1.0 / value), PlainPower(1.0 / value)) << value;
  }
}

TEST(Power, HardlyEverNeedsThePlainExpression) {
  static int asked = 0;
  for (int raw = 1; raw <= UINT16_MAX; ++raw) {
    char text[kPowerRoom];
    WritePower(text, raw * 0.0001, [](double milliwatts) {
      ++asked;
      return PlainDbm(milliwatts);
    });
  }
  EXPECT_LT(asked, 65);
}

TEST(Bias, IsGivenInMilliamperesOrMicroamperes) {
  const auto bias = [](auto value) {
    char text[kBiasRoom];
    return std::string(text, WriteBias(text, value));
  };
  EXPECT_EQ(bias(7.0), "7.000 mA");
  EXPECT_EQ(bias(std::uint32_t{7000}), "7.000 mA");
  EXPECT_EQ(bias(std::uint32_t{0}), "0.000 mA");
  EXPECT_EQ(bias(std::uint32_t{1}), "0.001 mA");
  EXPECT_EQ(bias(std::uint32_t{131'070}), "131.070 mA");
  EXPECT_EQ(bias(UINT32_MAX), "4294967.295 mA");
}

TEST(TextBuffer, WritesHexadecimalOfAnySize) {
  for (int shift = 0; shift < 32; ++shift) {
    for (const std::uint32_t value : {1U << shift, (1U << shift) - 1, 0xFFFFFFFFU >> shift}) {
      for (int width = 0; width <= 10; ++width) {
        char expected[32];
        std::snprintf(expected, sizeof(expected), "%0*x", width, value);
        ASSERT_EQ(ToText([&](TextBuffer& out) { out.AppendHex(value, width); }), expected);
      }
    }
  }
}

TEST(TextBuffer, GrowsAndKeepsItsText) {
  TextBuffer out;
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    out.AppendDecimal(i).Append(',').Append("text").AppendQuoted("q").AppendFixed3(i / 8.0);
    expected += std::to_string(i) + ",text\"q\"" + PrintfFixed3(i / 8.0);
  }
  EXPECT_EQ(out.view(), expected);
  const std::string big(1'000'000, 'x');
  out.Append(big);
  EXPECT_EQ(out.size(), expected.size() + big.size());
  out.Truncate(expected.size());
  EXPECT_EQ(out.view(), expected);
  out.Truncate(expected.size() + 1);
  EXPECT_EQ(out.size(), expected.size());
}

TEST(TextBuffer, GrowsAtEveryFillLevel) {
  for (std::size_t size = 4000; size <= 4200; ++size) {
    const std::string text(size, 'x');
    TextBuffer out;
    out.Append(text).Append('c');
    EXPECT_EQ(out.view(), text + 'c');
    out.Append(text).AppendHex(0xBEEF, 4).AppendDecimal(-1).AppendGeneral(2.5);
    EXPECT_EQ(out.view(), text + 'c' + text + "beef-12.5");
  }
}

// The address sanitizer sees where room is lacking.
TEST(TextBuffer, HasRoomForTheLongestNumbersAtEveryFillLevel) {
  const auto expect_behind = [](const std::string& text, const std::string& number, auto append) {
    TextBuffer out;
    out.Append(text);
    append(out);
    EXPECT_EQ(out.view(), text + number);
  };
  for (std::size_t size = 3700; size <= 4100; ++size) {
    const std::string text(size, 'x');
    expect_behind(text, "deadbeef", [](TextBuffer& out) { out.AppendHex(0xDEADBEEF, 8); });
    expect_behind(text, "-9223372036854775808",
                  [](TextBuffer& out) { out.AppendDecimal(INT64_MIN); });
    expect_behind(text, "-4503599627370495.500",
                  [](TextBuffer& out) { out.AppendFixed3(-4503599627370495.5); });
    expect_behind(text, "-1.79769e+308", [](TextBuffer& out) { out.AppendGeneral(-DBL_MAX); });
    expect_behind(text, PrintfFixed3(-DBL_MAX),
                  [](TextBuffer& out) { out.AppendFixed3(-DBL_MAX); });
  }
}

TEST(TextBuffer, TakesTextWithNuls) {
  const std::string text("a\0b", 3);
  TextBuffer out;
  out.AppendQuoted(text).Append("").AppendPrefixedHex(10, 2);
  EXPECT_EQ(out.view(), '"' + text + "\"0x0a");
  out.Truncate(0);
  EXPECT_EQ(out.view(), "");
  out.Append("again");
  EXPECT_EQ(out.view(), "again");
}

// ---------------------------------------------------------------------------------------------
// CsvRow
// ---------------------------------------------------------------------------------------------

TEST(CsvRow, WritesEveryFormOfCell) {
  CsvRow row;
  row.Raw("raw");
  row.Quoted("quoted");
  row.Decimal(4294967295U);
  row.Hex(0x1F, 4);
  row.Fixed3(0.5);
  row.Missing(2);
  row.Flag(true);
  row.Flag(false);
  row.FlagsUpwards(0x6, 0, 4);
  row.FlagsDownwards(0x8000, 15, 3);
  row.Cell([](TextBuffer& out) { out.Append("a,b"); });
  row.QuotedCell([](TextBuffer& out, int value) { out.AppendDecimal(value); }, -7);
  EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }),
            "raw,\"quoted\",4294967295,0x001f,0.500,\"NA\",\"NA\",1,0,0,1,1,0,1,0,0,a,b,\"-7\"\n");
}

TEST(CsvRow, HasRoomForEveryCellAtEveryFillLevel) {
  const std::string longest = PrintfFixed3(-DBL_MAX);
  for (std::size_t size = 3700; size <= 4100; ++size) {
    const std::string text(size, 'x');
    const auto expect_behind = [&](const std::string& cell, auto write) {
      CsvRow row;
      row.Raw(text);
      write(row);
      EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }), text + ',' + cell + '\n');
    };
    expect_behind("raw", [](CsvRow& row) { row.Raw("raw"); });
    expect_behind("\"quoted\"", [](CsvRow& row) { row.Quoted("quoted"); });
    expect_behind("4294967295", [](CsvRow& row) { row.Decimal(UINT32_MAX); });
    expect_behind("0xffffffff", [](CsvRow& row) { row.Hex(UINT32_MAX, 2); });
    expect_behind(longest, [](CsvRow& row) { row.Fixed3(-DBL_MAX); });
    expect_behind("\"NA\"", [](CsvRow& row) { row.Missing(); });
  }
}

TEST(CsvRow, MissesAnyNumberOfCells) {
  std::string expected;
  for (int count = 1; count <= 70; ++count) {
    expected += expected.empty() ? "\"NA\"" : ",\"NA\"";
    CsvRow row;
    row.Missing(count);
    EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }), expected + '\n');
  }
}

TEST(CsvRow, MayHaveNoCellOrAnEmptyOne) {
  CsvRow none;
  EXPECT_EQ(Written([&](std::ostream& os) { none.WriteTo(os); }), "\n");
  CsvRow one;
  one.Raw("");
  EXPECT_EQ(Written([&](std::ostream& os) { one.WriteTo(os); }), "\n");
}

TEST(CsvRow, EndsInOneNewlineAndOneFlush) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  CsvRow row;
  row.Raw("x");
  row.WriteTo(os);
  EXPECT_EQ(buffer.str(), "x\n");
  EXPECT_EQ(buffer.flushes(), 1);
}

TEST(CsvRow, IgnoresTheFormattingOfTheStream) {
  OddStream os;
  CsvRow row;
  row.Raw("x");
  row.Decimal(12345);
  row.Hex(10, 2);
  row.Fixed3(12345.5);
  row.WriteTo(os);
  EXPECT_EQ(os.str(), "x,12345,0x0a,12345.500\n");
  EXPECT_TRUE(os.HasItsFlagsAndWidth());
}

// ---------------------------------------------------------------------------------------------
// ReportLines
// ---------------------------------------------------------------------------------------------

TEST(ReportBlock, WritesEveryFormOfLine) {
  ReportBlock lines;
  lines.Text("Text: ", "a, \"b\"");
  lines.Decimal("Decimal: ", 4294967295U);
  lines.Decimal("Unit: ", 7, " m");
  lines.Hex("Hex: ", 0x1F, 4);
  lines.Line(
      "Line: ", [](TextBuffer& out, int value) { out.AppendDecimal(value); }, -7);
  lines.LineWithin("Within: ", 2, [](char* to) { return WriteText(to, "in"); });
  lines.LaneText("RX# Power: ", 8, "low");
  lines.LanePower("TX# Power: ", 1, 0.523, -2.815);
  lines.LaneBias("TX# Bias: ", 9, 7.25);
  lines.LaneLineWithin("#: ", 2, 0, [](char* to) { return to; });
  EXPECT_EQ(lines.view(),
            "Text: a, \"b\"\nDecimal: 4294967295\nUnit: 7 m\nHex: 0x001f\nLine: -7\nWithin: in\n"
            "RX8 Power: low\nTX1 Power: 0.523 mW, -2.815 dBm\nTX9 Bias: 7.250 mA\n2: \n");
}

TEST(ReportLines, HaveRoomForEveryLineAtEveryFillLevel) {
  const std::string longest = PrintfFixed3(-DBL_MAX);
  for (std::size_t size = 3400; size <= 4100; ++size) {
    const std::string text(size, 'x');
    const auto expect_behind = [&](const std::string& line, auto write) {
      const std::string expected = text + '\n' + line + '\n';
      ReportBlock block;
      block.Text("", text);
      write(block);
      EXPECT_EQ(block.view(), expected);
      std::ostringstream os;
      ReportLines lines(os);
      lines.Text("", text);
      write(lines);
      lines.Finish();
      EXPECT_EQ(os.str(), expected);
    };
    expect_behind("Text: text", [](auto& lines) { lines.Text("Text: ", "text"); });
    expect_behind("Decimal: 4294967295 m",
                  [](auto& lines) { lines.Decimal("Decimal: ", UINT32_MAX, " m"); });
    expect_behind("Hex: 0xffffffff", [](auto& lines) { lines.Hex("Hex: ", UINT32_MAX, 2); });
    expect_behind("3: text", [](auto& lines) { lines.LaneText("#: ", 3, "text"); });
    expect_behind("3: " + longest + " mW, " + longest + " dBm",
                  [](auto& lines) { lines.LanePower("#: ", 3, -DBL_MAX, -DBL_MAX); });
    expect_behind("3: " + longest + " mA", [](auto& lines) { lines.LaneBias("#: ", 3, -DBL_MAX); });
  }
}

// Notes what a stream asks of its buffer. The call that is number `bad_call` fails.
class FaultyBuffer : public std::streambuf {
 public:
  enum class Fault { kReturns, kThrows };

  FaultyBuffer(std::size_t bad_call, Fault fault) : bad_call_(bad_call), fault_(fault) {}
  const std::vector<std::string>& calls() const { return calls_; }

 protected:
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    return Fails(std::string(text, static_cast<std::size_t>(size))) ? size - 1 : size;
  }
  int sync() override { return Fails("flush") ? -1 : 0; }

 private:
  bool Fails(const std::string& call) {
    calls_.push_back(call);
    const bool fails = calls_.size() == bad_call_;
    if (fails && fault_ == Fault::kThrows) throw std::range_error("buffer");
    return fails;
  }

  std::size_t bad_call_;
  Fault fault_;
  std::vector<std::string> calls_;
};

// What came of writing lines to a faulty buffer.
struct Outcome {
  std::vector<std::string> calls;
  std::ios::iostate state;
  std::string thrown;

  bool operator==(const Outcome&) const = default;
};

template <typename WriteLines>
Outcome OutcomeOf(const WriteLines& write_lines, std::size_t bad_call, FaultyBuffer::Fault fault,
                  std::ios::iostate exceptions) {
  FaultyBuffer buffer(bad_call, fault);
  std::ostream os(&buffer);
  os.exceptions(exceptions);
  std::string thrown;
  try {
    write_lines(os);
  } catch (const std::ios_base::failure&) {
    thrown = "failure of the stream";
  } catch (const std::range_error& error) {
    thrown = error.what();
  }
  return {buffer.calls(), os.rdstate(), thrown};
}

TEST(ReportLines, TreatStreamsAsWritingAndFlushingEachLineDoes) {
  constexpr std::size_t kLines = 70;
  const std::string label(100, 'L');  // so that the lines are more than are ever put together
  const auto plainly = [&](std::ostream& os) {
    for (std::size_t i = 0; i < kLines; ++i) {
      const std::string line = label + std::to_string(i) + "\n";
      os.write(line.data(), static_cast<std::streamsize>(line.size()));
      os.flush();
    }
  };
  const auto fast = [&](std::ostream& os) {
    ReportLines lines(os);
    for (std::uint32_t i = 0; i < kLines; ++i) lines.Decimal(label, i);
    lines.Finish();
  };
  for (const auto fault : {FaultyBuffer::Fault::kReturns, FaultyBuffer::Fault::kThrows}) {
    for (const auto exceptions : {std::ios::goodbit, std::ios::badbit, std::ios::failbit,
                                  std::ios::badbit | std::ios::failbit}) {
      for (std::size_t bad_call = 0; bad_call <= 2 * kLines; ++bad_call) {
        const Outcome expected = OutcomeOf(plainly, bad_call, fault, exceptions);
        EXPECT_EQ(expected.calls.size(), bad_call == 0 ? 2 * kLines : bad_call);
        EXPECT_TRUE(OutcomeOf(fast, bad_call, fault, exceptions) == expected) << bad_call;
      }
    }
  }
}

TEST(ReportLines, WriteLinesOfAnyLength) {
  const auto append = [](TextBuffer& out, std::string_view text) { out.Append(text); };
  for (const std::size_t size :
       {0U, 1U, 1000U, 4000U, 4070U, 4080U, 4088U, 4096U, 5000U, 100000U}) {
    const std::string text(size, 'x');
    FlushCounter buffer;
    std::ostream os(&buffer);
    ReportLines lines(os);
    std::string expected;
    for (int i = 0; i < 3; ++i) {
      lines.Text("Text: ", text);
      lines.Line("Line: ", append, std::string_view(text));
      lines.Decimal("Decimal: ", 7);
      expected += "Text: " + text + "\nLine: " + text + "\nDecimal: 7\n";
    }
    lines.Finish();
    EXPECT_TRUE(buffer.str() == expected) << size;
    EXPECT_EQ(buffer.flushes(), 9) << size;
    lines.Finish();
    EXPECT_EQ(buffer.flushes(), 9) << size;
  }
}

TEST(ReportLines, WriteEveryFormOfLine) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  ReportLines lines(os);
  lines.Hex("Hex: ", 0x1F, 4);
  lines.LineWithin("Within: ", 2, [](char* to) { return WriteText(to, "in"); });
  lines.LaneText("RX# Power: ", 8, "low");
  lines.LanePower("TX# Power: ", 1, 0.523, PlainDbm);
  lines.LanePower("TX# Power: ", 2, 0.523, -2.5);
  lines.LaneBias("TX# Bias: ", 9, 7.25);
  lines.LaneBias("TX# Bias: ", 1, std::uint32_t{7250});
  lines.Finish();
  EXPECT_EQ(buffer.str(),
            "Hex: 0x001f\nWithin: in\nRX8 Power: low\nTX1 Power: 0.523 mW, -2.815 dBm\n"
            "TX2 Power: 0.523 mW, -2.500 dBm\nTX9 Bias: 7.250 mA\nTX1 Bias: 7.250 mA\n");
}

TEST(ReportLines, WriteNothingToABadStream) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  os.setstate(std::ios::failbit);
  ReportLines lines(os);
  lines.Text("A: ", "1");
  lines.Finish();
  EXPECT_EQ(buffer.str(), "");
  EXPECT_EQ(buffer.flushes(), 0);
  std::ostream nowhere(nullptr);
  ReportLines lost(nowhere);
  lost.Text("A: ", "1");
  lost.Finish();
  EXPECT_TRUE(nowhere.bad());
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

TEST(Locale, NeverShowsInTexts) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
  ExpectTextsWithPoints();
  std::locale::global(before);
}

TEST(Locale, OfTheCLibraryNeverShowsInTexts) {
  // Few systems have them all; "C" is always there.
  for (const char* name : {"C", "de_DE.UTF-8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
    SCOPED_TRACE(name);
    if (std::setlocale(LC_ALL, name) == nullptr) continue;
    ExpectTextsWithPoints();
    std::setlocale(LC_ALL, "C");
  }
}

}  // namespace
}  // namespace cable_info::test
