#include "cable_info/text/csv_row.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cstdint>
#include <ostream>
#include <string>

#include "test_support.h"
#include "text/number_samples.h"

namespace cable_info::text {
namespace {

using test::FlushCounter;
using test::OddStream;
using test::PrintfFixed3;
using test::Written;

TEST(CsvRow, WritesEveryFormOfCell) {
  CsvRow row;
  row.BareText("raw");
  row.Text("quoted");
  row.Decimal(4294967295U);
  row.Hex(0x1F, 4);
  row.Fixed3(0.5);
  row.Missing(2);
  row.Flag(true);
  row.Flag(false);
  row.FlagsUpwards(0x6, 0, 4);
  row.FlagsDownwards(0x8000, 15, 3);
  row.BareTextOf([](TextBuffer& out) { out.Append("a,b"); });
  row.TextOf([](TextBuffer& out, int value) { out.AppendDecimal(value); }, -7);
  EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }),
            "raw,\"quoted\",4294967295,0x001f,0.500,\"NA\",\"NA\",1,0,0,1,1,0,1,0,0,a,b,\"-7\"\n");
}

TEST(CsvRow, WritesFlagsThatAreNoMultipleOfFour) {
  CsvRow row;
  row.FlagsUpwards(0x5, 0, 3);
  row.FlagsUpwards(0x55, 0, 7);
  EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }), "1,0,1,1,0,1,0,1,0,1\n");
}

TEST(CsvRow, ReservesEnoughForEveryCellAtEveryFillLevel) {
  const std::string longest = PrintfFixed3(-DBL_MAX);
  for (std::size_t size = 3700; size <= 4100; ++size) {
    const std::string text(size, 'x');
    const auto expect_after = [&](const std::string& cell, auto write) {
      CsvRow row;
      row.BareText(text);
      write(row);
      EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }), text + ',' + cell + '\n');
    };
    expect_after("raw", [](CsvRow& row) { row.BareText("raw"); });
    expect_after("\"quoted\"", [](CsvRow& row) { row.Text("quoted"); });
    expect_after("4294967295", [](CsvRow& row) { row.Decimal(UINT32_MAX); });
    expect_after("0xffffffff", [](CsvRow& row) { row.Hex(UINT32_MAX, 2); });
    expect_after(longest, [](CsvRow& row) { row.Fixed3(-DBL_MAX); });
    expect_after("\"NA\"", [](CsvRow& row) { row.Missing(); });
  }
}

TEST(CsvRow, WritesAnyNumberOfMissingCells) {
  std::string expected;
  for (int count = 1; count <= 70; ++count) {
    expected += expected.empty() ? "\"NA\"" : ",\"NA\"";
    CsvRow row;
    row.Missing(count);
    EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }), expected + '\n');
  }
}

TEST(CsvRow, CanHaveNoCellOrAnEmptyOne) {
  CsvRow none;
  EXPECT_EQ(Written([&](std::ostream& os) { none.WriteTo(os); }), "\n");
  CsvRow one;
  one.BareText("");
  EXPECT_EQ(Written([&](std::ostream& os) { one.WriteTo(os); }), "\n");
}

TEST(CsvRow, EndsInOneNewlineAndOneFlush) {
  FlushCounter buffer;
  std::ostream os(&buffer);
  CsvRow row;
  row.BareText("x");
  row.WriteTo(os);
  EXPECT_EQ(buffer.str(), "x\n");
  EXPECT_EQ(buffer.flushes(), 1);
}

TEST(CsvRow, IgnoresTheFormattingOfTheStream) {
  OddStream os;
  CsvRow row;
  row.BareText("x");
  row.Decimal(12345);
  row.Hex(10, 2);
  row.Fixed3(12345.5);
  row.WriteTo(os);
  EXPECT_EQ(os.str(), "x,12345,0x0a,12345.500\n");
  EXPECT_TRUE(os.HasItsFlagsAndNoWidth());
}

TEST(CsvRow, WritesQuantitiesWithTheirUnit) {
  const auto append = [](TextBuffer& out, int value) { out.AppendDecimal(value).Append("C"); };
  CsvRow row;
  row.Quantity(41.0, append, 41);
  row.BareQuantity(-3.0, append, -3);
  row.MissingAs("N/A");
  EXPECT_EQ(Written([&](std::ostream& os) { row.WriteTo(os); }), "\"41C\",-3C,N/A\n");
}

#ifndef NDEBUG
TEST(CsvRowDeathTest, CountsTheCellsOfEachGroup) {
  CsvRow row;
  row.Missing(GroupSize(CsvGroup::kIdentity));
  row.EndGroup(CsvGroup::kIdentity);
  row.Missing(GroupSize(CsvGroup::kType) - 1);
  EXPECT_DEATH(row.EndGroup(CsvGroup::kType), "cells_");
}
#endif

}  // namespace
}  // namespace cable_info::text
