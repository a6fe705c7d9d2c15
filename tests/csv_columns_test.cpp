#include "cable_info/csv_columns.h"

#include <gtest/gtest.h>

namespace cable_info::test {
namespace {

TEST(CsvForms, HaveTheNamesOfTheDocumentation) {
  EXPECT_EQ(CsvFormName(CsvForm::kMissing), "missing");
  EXPECT_EQ(CsvFormName(CsvForm::kGuid), "guid");
  EXPECT_EQ(CsvFormName(CsvForm::kText), "text");
  EXPECT_EQ(CsvFormName(CsvForm::kBareText), "bare text");
  EXPECT_EQ(CsvFormName(CsvForm::kDecimal), "decimal");
  EXPECT_EQ(CsvFormName(CsvForm::kFlag), "flag");
  EXPECT_EQ(CsvFormName(CsvForm::kHex1), "hex 1");
  EXPECT_EQ(CsvFormName(CsvForm::kHex2), "hex 2");
  EXPECT_EQ(CsvFormName(CsvForm::kHex4), "hex 4");
  EXPECT_EQ(CsvFormName(CsvForm::kFourNibbles), "4 nibbles");
  EXPECT_EQ(CsvFormName(CsvForm::kFourBytes), "4 bytes");
  EXPECT_EQ(CsvFormName(CsvForm::kFixed3), "fixed 3");
  EXPECT_EQ(CsvFormName(CsvForm::kCelsius), "celsius");
  EXPECT_EQ(CsvFormName(CsvForm::kMicrovolts), "microvolts");
  EXPECT_EQ(CsvFormName(CsvForm::kFirmwareVersion), "version");
  EXPECT_EQ(CsvFormName(CsvForm::kDate), "date");
  EXPECT_EQ(CsvFormName(CsvForm::kWatts), "watts");
}

}  // namespace
}  // namespace cable_info::test
