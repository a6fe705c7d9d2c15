#include "cable_info/text/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "cable_info/text/text_buffer.h"
#include "text/number_samples.h"

namespace cable_info::text {
namespace {

using test::DelicateDoubles;
using test::Fixed3;
using test::General;
using test::PrintfFixed3;
using test::PrintfGeneral;

TEST(Fixed3, WritesThousandthsAsPrintfDoes) {
  for (const double value : DelicateDoubles()) ASSERT_EQ(Fixed3(value), PrintfFixed3(value));
}

TEST(Fixed3, WritesNeighboursOfHalfThousandthsAsPrintfDoes) {
  // Odd multiples of a sixteenth end in half a thousandth.
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

TEST(Fixed3, WritesThousandthsOfAnyDoubleAsPrintfDoes) {
  std::mt19937_64 random(20240315);
  for (int i = 0; i < 1'000'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    ASSERT_EQ(Fixed3(value), PrintfFixed3(value));
  }
}

TEST(Fixed3, WritesThousandthsOfFloatsAsPrintfDoes) {
  // Every 4,099th float, so all exponents and both signs.
  for (std::uint64_t bits = 0; bits <= 0xFFFFFFFF; bits += 4099) {
    const auto value = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    ASSERT_EQ(Fixed3(value), PrintfFixed3(value)) << bits;
  }
}

TEST(General, WritesSixSignificantDigitsOfAnyDoubleAsPrintfDoes) {
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

TEST(Decimal, WritesIntegersOfAnySize) {
  const std::int64_t values[] = {0,    9,     10,        99,        100,      999,
                                 1000, 65535, 123456789, INT64_MAX, INT64_MIN};
  for (const std::int64_t magnitude : values) {
    for (const std::int64_t value : {magnitude, magnitude == INT64_MIN ? magnitude : -magnitude}) {
      EXPECT_EQ(ToText([&](TextBuffer& out) { out.AppendDecimal(value); }), std::to_string(value));
    }
  }
}

TEST(Decimal, WritesIntegersOfAnyLengthAsPrintfDoes) {
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

// Numbers around every change of length, and all short numbers.
TEST(Decimal, WritesAllDigits) {
  const auto expect_digits = [](std::uint32_t value) {
    char expected[16];
    std::snprintf(expected, sizeof(expected), "%" PRIu32, value);
    char text[kMaxDecimalSize];
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

// The address sanitizer reports writes beyond the stated size.
TEST(Numbers, StayWithinTheirSize) {
  const auto expect_text = [](std::string_view expected, std::size_t size, auto write) {
    std::vector<char> text(size);
    EXPECT_EQ(std::string_view(text.data(), write(text.data())), expected);
  };
  expect_text("0", kMaxDecimalSize, [](char* to) { return WriteDecimal(to, std::uint32_t{0}); });
  expect_text("4294967295", kMaxDecimalSize, [](char* to) { return WriteDecimal(to, UINT32_MAX); });
  expect_text("18446744073709551615", kMaxDecimalSize,
              [](char* to) { return WriteDecimal(to, UINT64_MAX); });
  expect_text("ffffffff", MaxHexSize(0), [](char* to) { return WriteHex(to, UINT32_MAX, 0); });
  expect_text("000ffffffff", MaxHexSize(11), [](char* to) { return WriteHex(to, UINT32_MAX, 11); });
  expect_text("0xffffffff", MaxPrefixedHexSize(8),
              [](char* to) { return WritePrefixedHex(to, UINT32_MAX, 8); });
  for (const double value : {-DBL_MAX, -999.9994, -4503599627370495.5, 0.0}) {
    expect_text(PrintfFixed3(value), kMaxFixed3Size,
                [value](char* to) { return WriteFixed3(to, value); });
  }
  const std::string longest = PrintfFixed3(-DBL_MAX);
  expect_text(longest + " mW, " + longest + " dBm", kMaxPowerSize,
              [](char* to) { return WritePower(to, -DBL_MAX, -DBL_MAX); });
  expect_text(longest + " mA", kMaxBiasSize, [](char* to) { return WriteBias(to, -DBL_MAX); });
}

TEST(Hex, WritesHexadecimalOfAnySize) {
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

std::string Power(double milliwatts, double dbm) {
  char power[kMaxPowerSize];
  return {power, WritePower(power, milliwatts, dbm)};
}

TEST(Power, ShowsBothUnits) {
  EXPECT_EQ(Power(0.523, -2.815), "0.523 mW, -2.815 dBm");
  EXPECT_EQ(Power(1.0, 0.0), "1.000 mW, 0.000 dBm");
  EXPECT_EQ(Power(100.0, 20.0), "100.000 mW, 20.000 dBm");
  EXPECT_EQ(Power(0.0, -999.999), "0.000 mW, -999.999 dBm");
  EXPECT_EQ(Power(-0.0, -999.999), "-0.000 mW, -999.999 dBm");
  EXPECT_EQ(Power(1.0, -1e-17), "1.000 mW, -0.000 dBm");
}

TEST(Bias, ShowsMilliamperes) {
  const auto bias = [](double milliamperes) {
    char text[kMaxBiasSize];
    return std::string(text, WriteBias(text, milliamperes));
  };
  EXPECT_EQ(bias(7.0), "7.000 mA");
  EXPECT_EQ(bias(0.0), "0.000 mA");
  EXPECT_EQ(bias(0.001), "0.001 mA");
  EXPECT_EQ(bias(131.07), "131.070 mA");
  EXPECT_EQ(bias(4294967.295), "4294967.295 mA");
}

}  // namespace
}  // namespace cable_info::text
