#include "cli/input/json_numbers.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using cli::Representable;

TEST(Representable, MakesLargeIntegersFloats) {
  EXPECT_EQ(Representable(R"({"a":18446744073709551616})"), R"({"a":18446744073709551616e0})");
  EXPECT_EQ(Representable("[-9223372036854775809]"), "[-9223372036854775809e0]");
}

TEST(Representable, MakesNumbersBeyondDoublesTheLargestOne) {
  EXPECT_EQ(Representable("[1e400,-1e400]"), "[1.7976931348623157e308,-1.7976931348623157e308]");
  EXPECT_EQ(Representable(std::string(400, '9')), "1.7976931348623157e308");
}

TEST(Representable, DoesNotChangeOtherLines) {
  for (const char* const line :
       {"", "{}", "[18446744073709551615,-9223372036854775808]", "1e-400", "1.5e300", R"("1e400")",
        R"({"1e400":"\"1e400"})", "[01e400]", "1e400e1", "1e", "-"}) {
    EXPECT_EQ(Representable(line), std::nullopt) << line;
  }
}

TEST(Representable, ChangesNumbersOnly) {
  EXPECT_EQ(Representable(R"({"1e400":"1e400 \"1e400","b":1e400})"),
            R"({"1e400":"1e400 \"1e400","b":1.7976931348623157e308})");
}

}  // namespace
