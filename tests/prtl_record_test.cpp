#include "cable_info/prtl_record.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace cable_info::test {
namespace {

PrtlRecord End(std::uint8_t resolution, std::uint32_t round_trip, std::uint16_t data_path,
               std::uint16_t phy) {
  PrtlRecord record;
  record.latency_res = resolution;
  record.round_trip_latency = round_trip;
  record.local_mod_dp_latency = data_path;
  record.local_phy_latency = phy;
  return record;
}

// The error text of a length that is too short to be measured.
std::string BelowResolution(const std::string& local, const std::string& remote) {
  return "The cable's length is below latency resolution. PRTL registers details: local=" + local +
         " and remote=" + remote;
}

constexpr const char* kExceeds = "The PRTL round trip latency exceeds its maximal possible value.";

TEST(PrtlRecord, StartsZeroed) {
  static_assert(std::is_trivially_copyable_v<PrtlRecord>);
  const PrtlRecord record;
  EXPECT_EQ(record.head_word, 0U);
  EXPECT_EQ(record.ToString(),
            "(round_trip_latency=0, latency_res=0, local_mod_dp_latency=0, local_phy_latency=0)");
}

TEST(PrtlRecord, WritesItsFieldsAsNumbers) {
  EXPECT_EQ(
      End(1, 600, 20, 30).ToString(),
      "(round_trip_latency=600, latency_res=1, local_mod_dp_latency=20, local_phy_latency=30)");
  EXPECT_EQ(End(65, 4294967295U, 65535, 65534).ToString(),
            "(round_trip_latency=4294967295, latency_res=65, local_mod_dp_latency=65535, "
            "local_phy_latency=65534)");
}

TEST(PrtlLength, IsTheRoundTripWithoutTheLatenciesOfBothEnds) {
  std::string error = "kept";
  EXPECT_EQ(End(1, 600, 20, 30).CalculateLength(End(0, 0, 20, 30), error), 50.0F);
  EXPECT_EQ(error, "kept");
  EXPECT_EQ(End(1, 600, 20, 30).CalculateLength(End(0, 0, 20, 30)), 50.0F);
}

TEST(PrtlLength, UsesTheRoundTripOfThisEndOnly) {
  const PrtlRecord local = End(2, 100, 10, 20);
  EXPECT_EQ(local.CalculateLength(End(99, 12345, 3, 7)), (200 - 13 - 27) / 10.0F);
}

TEST(PrtlLength, MayBeNegativeWithoutACheck) {
  EXPECT_EQ(End(1, 10, 20, 30).CalculateLength(End(0, 0, 20, 30)), -9.0F);
}

TEST(PrtlLength, FailsAtTheHighestCount) {
  std::string error = "before";
  EXPECT_EQ(End(1, 0xFFFFFF, 0, 0).CalculateLength({}, error), -1.0F);
  EXPECT_EQ(error, kExceeds);
  error = "before";
  EXPECT_EQ(End(1, 0xFFFFFE, 0, 0).CalculateLength({}, error), 16777214.0F / 10.0F);
  EXPECT_EQ(error, "before");
}

TEST(PrtlLength, FailsAtTheHighestCountWhateverTheLength) {
  std::string error;
  EXPECT_EQ(End(0, 0xFFFFFF, 65535, 65535).CalculateLength({}, error), -1.0F);
  EXPECT_EQ(error, kExceeds);
  // The counter of the far end is not used, and the formula alone has no highest count.
  error = "kept";
  EXPECT_EQ(End(1, 600, 20, 30).CalculateLength(End(1, 0xFFFFFF, 20, 30), error), 50.0F);
  EXPECT_EQ(error, "kept");
  EXPECT_EQ(End(1, 0xFFFFFF, 0, 0).CalculateLength({}), 16777215.0F / 10.0F);
}

TEST(PrtlLength, FailsBelowItsResolution) {
  const std::string expected =
      "The cable's length is below latency resolution. PRTL registers details: "
      "local=(round_trip_latency=0, latency_res=1, local_mod_dp_latency=20, local_phy_latency=30)"
      " and "
      "remote=(round_trip_latency=0, latency_res=1, local_mod_dp_latency=20, local_phy_latency=30)";
  std::string error = "before";
  EXPECT_EQ(End(1, 0, 20, 30).CalculateLength(End(1, 0, 20, 30), error), -1.0F);
  EXPECT_EQ(error, expected);

  error.clear();
  EXPECT_EQ(End(0, 600, 0, 0).CalculateLength({}, error), -1.0F);
  EXPECT_NE(error, "");
  error.clear();
  EXPECT_EQ(End(1, 100, 20, 30).CalculateLength(End(0, 0, 20, 30), error), -1.0F) << "exactly zero";
  EXPECT_NE(error, "");
  error.clear();
  EXPECT_EQ(End(1, 101, 20, 30).CalculateLength(End(0, 0, 20, 30), error), 0.1F);
  EXPECT_EQ(error, "");
}

TEST(PrtlLength, DescribesBothEndsOnFailure) {
  std::string error = "replaced";
  EXPECT_EQ(End(7, 1, 65535, 3).CalculateLength(End(255, 4294967295U, 4, 65534), error), -1.0F);
  EXPECT_EQ(error,
            BelowResolution("(round_trip_latency=1, latency_res=7, local_mod_dp_latency=65535, "
                            "local_phy_latency=3)",
                            "(round_trip_latency=4294967295, latency_res=255, "
                            "local_mod_dp_latency=4, local_phy_latency=65534)"));
  EXPECT_EQ(End(0, 600, 0, 0).CalculateLength({}, error), -1.0F);
  EXPECT_EQ(error,
            BelowResolution("(round_trip_latency=600, latency_res=0, local_mod_dp_latency=0, "
                            "local_phy_latency=0)",
                            "(round_trip_latency=0, latency_res=0, local_mod_dp_latency=0, "
                            "local_phy_latency=0)"));
}

TEST(PrtlLength, OverwritesAnyTextWithItsError) {
  const PrtlRecord local = End(1, 0, 0, 0);
  std::string once;
  std::string twice(1000, 'x');
  local.CalculateLength({}, once);
  local.CalculateLength({}, twice);
  EXPECT_EQ(once, twice);
  local.CalculateLength({}, twice);
  EXPECT_EQ(once, twice);
}

TEST(PrtlLength, IsComputedFromOneCountOfACoarseCounter) {
  std::string error;
  EXPECT_EQ(End(255, 1, 0, 0).CalculateLength({}, error), 25.5F);
  EXPECT_EQ(error, "");
}

TEST(PrtlLength, WrapsItsProductAt32Bits) {
  // 255 * 16843010 = 2^32 + 254
  EXPECT_EQ(End(255, 16843010, 0, 0).CalculateLength({}), 25.4F);
  std::string error = "kept";
  EXPECT_EQ(End(255, 16843010, 0, 0).CalculateLength({}, error), 25.4F);
  EXPECT_EQ(error, "kept");
  // 128 * 2^25 = 2^32
  EXPECT_EQ(End(128, 33554432, 0, 0).CalculateLength({}, error), -1.0F);
  EXPECT_EQ(error, BelowResolution("(round_trip_latency=33554432, latency_res=128, "
                                   "local_mod_dp_latency=0, local_phy_latency=0)",
                                   "(round_trip_latency=0, latency_res=0, local_mod_dp_latency=0, "
                                   "local_phy_latency=0)"));
  // The largest product of a counter below its highest count, 255 * 16777214 = 4278189570, does not
  // wrap; floats of its size are multiples of 256.
  EXPECT_EQ(End(255, 0xFFFFFE, 0, 0).CalculateLength({}), 4278189568.0F / 10.0F);
}

TEST(PrtlLength, IsComputedInSinglePrecision) {
  // 3 * 16777213 = 50331639; floats of this size are multiples of 4, so it becomes 50331640. Less
  // 131070 that is 50200570, a tie that goes to the even 50200568; less 2, another such tie.
  EXPECT_EQ(End(3, 16777213, 65535, 1).CalculateLength(End(0, 0, 65535, 1)), 50200568.0F / 10.0F);
}

TEST(PrtlLength, SubtractsTheDataPathFirst) {
  // 174 * 356559 = 62041266, a tie between the multiples of 4 that becomes 62041264. Less the data
  // path of 126262: 61915002, a tie again, 61915000. Less the PHYs' 48387: 61866613, so 61866612.
  // Any other order, precision or grouping ends at 6186661.5.
  EXPECT_EQ(End(174, 356559, 65535, 20000).CalculateLength(End(0, 0, 60727, 28387)), 6186661.0F);
}

}  // namespace
}  // namespace cable_info::test
