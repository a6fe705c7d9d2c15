// The typed cells of a row, as a format other than the exact CSV receives them.

#include "cable_info/cell_sink.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/combined_cable_info.h"
#include "cable_info/typed_row.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

// Notes kind and value of every cell: "text Kestrel", "integer 3", "number 0.871", "flag 1", "-".
class Notes : public CellSink {
 public:
  void Text(std::string_view text) override { cells.push_back("text " + std::string(text)); }
  void Integer(std::uint32_t value) override {
    cells.push_back("integer " + std::to_string(value));
  }
  void Number(double value) override {
    numbers.push_back(value);
    cells.emplace_back("number");
  }
  void Flag(bool is_set) override { cells.emplace_back(is_set ? "flag 1" : "flag 0"); }
  void Missing() override { cells.emplace_back("-"); }

  const std::string& operator[](const std::string& column) const {
    for (std::size_t i = 3; i < ColumnNames().size(); ++i) {
      if (ColumnNames()[i] == column) return cells.at(i - 3);
    }
    throw std::out_of_range("no column " + column);
  }

  std::vector<std::string> cells;
  std::vector<double> numbers;
};

TEST(CellSink, AllCellsAreMissingWithoutRecords) {
  const CombinedCableInfo cable;
  Notes notes;
  cable.VisitCells(notes);
  EXPECT_EQ(notes.cells, std::vector<std::string>(174, "-"));
}

TEST(CellSink, FlagsAreSingleBitsInEitherDirection) {
  Notes notes;
  TypedRow row(notes);
  row.FlagsUpwards(0x9, 1, 3);
  row.FlagsDownwards(0x9, 3, 3);
  EXPECT_EQ(notes.cells, (std::vector<std::string>{"flag 0", "flag 0", "flag 1",  //
                                                   "flag 1", "flag 0", "flag 0"}));
}

TEST(CellSink, BareCellsAreTextsOrNumbers) {
  Notes notes;
  TypedRow row(notes);
  const auto append = [](text::TextBuffer& out, int value) {
    out.AppendDecimal(value).Append('!');
  };
  row.BareText("raw");
  row.BareTextOf(append, 5);
  row.BareQuantity(3.5, append, 5);
  row.Quantity(-2.0, append, 5);
  row.MissingAs("N/A");
  EXPECT_EQ(notes.cells,
            (std::vector<std::string>{"text raw", "text 5!", "number", "number", "-"}));
  EXPECT_EQ(notes.numbers, (std::vector<double>{3.5, -2.0}));
}

TEST(CellSink, CablePagesHaveTypedCells) {
  auto record = std::make_unique<CableRecord>();
  record->VendorName = "Kestrel";
  record->Identifier = 0x11;
  record->LengthOm3 = 35;
  record->RxPower[0] = 0.8714F;
  record->TxBias[3] = 6.75F;
  record->LatchedCdrLos = 1;
  record->DateCodeText = "240409";
  CombinedCableInfo cable;
  cable.AttachCableRecord(std::move(record));
  Notes notes;
  cable.VisitCells(notes);
  ASSERT_EQ(notes.cells.size(), 174U);
  EXPECT_EQ(notes["Source"], "text CABLE");
  EXPECT_EQ(notes["Vendor"], "text Kestrel");
  EXPECT_EQ(notes["PN"], "-");
  EXPECT_EQ(notes["Identifier"], "text 0x11");
  EXPECT_EQ(notes["LengthOM3"], "integer 35");
  EXPECT_EQ(notes["LengthOM4"], "-");
  EXPECT_EQ(notes["RX1LatchedLossIndicator"], "flag 1");
  EXPECT_EQ(notes["RX2LatchedLossIndicator"], "flag 0");
  EXPECT_EQ(notes["RX1Power"], "number");
  EXPECT_EQ(notes["DateCode"], "text 24-04-09");
  EXPECT_NE(std::find(notes.numbers.begin(), notes.numbers.end(), 0.871), notes.numbers.end());
  EXPECT_NE(std::find(notes.numbers.begin(), notes.numbers.end(), 6.75), notes.numbers.end());
}

TEST(CellSink, PhyWithoutModuleHasItsSourceAndLengthOnly) {
  auto record = std::make_unique<PhyCableRecord>();
  record->source = "PHY";
  record->prtl_length = "9.5 m";
  CombinedCableInfo cable;
  cable.AttachPhyCableRecord(std::move(record));
  Notes notes;
  cable.VisitCells(notes);
  ASSERT_EQ(notes.cells.size(), 174U);
  EXPECT_EQ(notes["Source"], "text PHY");
  EXPECT_EQ(notes.numbers, (std::vector<double>{9.5, 9.5}));
  EXPECT_EQ(std::count(notes.cells.begin(), notes.cells.end(), "-"), 171);
}

}  // namespace
}  // namespace cable_info::test
