#include "cable_info/text/cell_texts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cable_info::text {
namespace {

using Cells = std::vector<std::string>;

void AppendVolts(TextBuffer& out, int volts) { out.AppendDecimal(volts).Append(" V"); }

TEST(CellTexts, WriteEveryFormOfCell) {
  Cells cells;
  CellTexts row(cells);
  row.BareText("raw");
  row.Text("quoted");
  row.BareTextOf([](TextBuffer& out) { out.Append("a,b"); });
  row.TextOf(AppendVolts, -7);
  row.Quantity(3.0, AppendVolts, 3);
  row.BareQuantity(4.0, AppendVolts, 4);
  row.Length("2 m");
  row.Decimal(4294967295U);
  row.DecimalTimes(12, 250);
  row.Hex(0x1F, 4);
  row.Fixed3(0.5);
  row.Flag(true);
  row.Flag(false);
  row.Missing();
  row.MissingAs("N/A");
  row.EndGroup(CsvGroup::kPort);
  EXPECT_EQ(cells, (Cells{"raw", "\"quoted\"", "a,b", "\"-7 V\"", "\"3 V\"", "4 V", "\"2 m\"",
                          "4294967295", "3000", "0x001f", "0.500", "1", "0", "\"NA\"", "N/A"}));
}

TEST(CellTexts, WriteOneCellPerFlagAndMissingValue) {
  Cells cells;
  CellTexts row(cells);
  row.FlagsUpwards(0x6, 0, 4);
  row.FlagsDownwards(0x8000, 15, 3);
  row.Missing(2);
  EXPECT_EQ(cells, (Cells{"0", "1", "1", "0", "1", "0", "0", "\"NA\"", "\"NA\""}));
}

TEST(CellTexts, AppendToTheCellsThatAreThere) {
  Cells cells = {"first"};
  CellTexts(cells).Text("");
  EXPECT_EQ(cells, (Cells{"first", "\"\""}));
}

}  // namespace
}  // namespace cable_info::text
