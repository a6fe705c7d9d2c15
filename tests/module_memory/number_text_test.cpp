#include "cable_info/module_memory/number_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

std::string Shortest(double value) {
  char digits[cable_info::module_memory::kMaxNumberSize];
  return {digits, cable_info::module_memory::WriteShortest(digits, value)};
}

TEST(ShortestNumbers, HaveNoTrailingZeros) {
  EXPECT_EQ(Shortest(0), "0");
  EXPECT_EQ(Shortest(-0.0), "0");
  EXPECT_EQ(Shortest(100), "100");
  EXPECT_EQ(Shortest(3.3), "3.3");
  EXPECT_EQ(Shortest(0.0001), "0.0001");
  EXPECT_EQ(Shortest(34.5390625), "34.5390625");  // 34 and 138/256
}

TEST(ShortestNumbers, KeepTheirSign) {
  EXPECT_EQ(Shortest(-5), "-5");
  EXPECT_EQ(Shortest(-0.25), "-0.25");
  EXPECT_EQ(Shortest(-0.00390625), "-0.00390625");  // -1/256
  EXPECT_EQ(Shortest(-1.0 / 3), "-0.3333333333333333");
  EXPECT_EQ(Shortest(-1.2e-8), "-1.2e-08");
}

TEST(ShortestNumbers, HaveAnExponentWhenTheyAreTiny) {
  EXPECT_EQ(Shortest(1.2e-8), "1.2e-08");
  EXPECT_EQ(Shortest(5e-324), "5e-324");
}

TEST(ShortestNumbers, ReadBackAsTheyWere) {
  for (const double value : {1.0 / 3, 2.0 / 3, 12345678.9, 1e300, -9999999.123456789}) {
    EXPECT_EQ(std::stod(Shortest(value)), value);
  }
}

TEST(ShortestNumbers, AreNullWithoutFiniteValue) {
  EXPECT_EQ(Shortest(std::numeric_limits<double>::quiet_NaN()), "null");
  EXPECT_EQ(Shortest(-std::numeric_limits<double>::infinity()), "null");
}

std::string Rounded(double value) {
  char digits[cable_info::module_memory::kMaxNumberSize];
  return {digits, cable_info::module_memory::WriteRounded(digits, value)};
}

TEST(RoundedNumbers, KeepExactOnesAndHaveSixDigitsElsewhere) {
  EXPECT_EQ(Rounded(34.5390625), "34.5390625");
  EXPECT_EQ(Rounded(193.1), "193.1");
  EXPECT_EQ(Rounded(100.0 / 32767 * 11), "0.0335704");
  EXPECT_EQ(Rounded(-50.0015259254738), "-50.0015");
  EXPECT_EQ(Rounded(1.2e-8), "1.2e-08");
  EXPECT_EQ(Rounded(4294967298.0), "4294967298");
  EXPECT_EQ(Rounded(std::numeric_limits<double>::infinity()), "null");
}

}  // namespace
