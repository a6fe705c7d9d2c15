#include "realistic_ports.h"

#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace cable_info::test {
namespace {

std::string Expected(const std::string& file) {
  return FileText(std::string(CABLE_INFO_EXPECTED_DIR) + '/' + file);
}

class RealisticPortTest : public testing::TestWithParam<RealisticPort> {
 protected:
  void SetUp() override { GetParam().fill(port_); }

  CombinedCableInfo port_;
};

TEST_P(RealisticPortTest, HasItsRow) {
  EXPECT_EQ(Written([&](std::ostream& os) { port_.ToCSVStream(os); }),
            Expected(GetParam().name + ".csv"));
}

TEST_P(RealisticPortTest, HasItsReport) {
  EXPECT_EQ(Written([&](std::ostream& os) { port_.ToFileStream(os); }),
            Expected(GetParam().name + ".txt"));
}

INSTANTIATE_TEST_SUITE_P(Fabric, RealisticPortTest, testing::ValuesIn(RealisticPorts()),
                         [](const auto& port) { return port.param.name; });

}  // namespace
}  // namespace cable_info::test
