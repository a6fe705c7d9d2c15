#include "cable_info/text/csv_row.h"

#include <array>
#include <cassert>
#include <ostream>

namespace cable_info {
namespace [[gnu::visibility("hidden")]] text {

namespace {

// The cells of four flags, "0,1,1,0,", for each value of four bits.
constexpr std::size_t kFourFlagsSize = 8;
using FourFlagsTable = std::array<char, 16 * kFourFlagsSize>;

enum class Direction { kUpwards, kDownwards };

constexpr FourFlagsTable FourFlagsTexts(Direction direction) {
  FourFlagsTable texts{};
  for (std::size_t bits = 0; bits < 16; ++bits) {
    for (std::size_t cell = 0; cell < 4; ++cell) {
      const std::size_t bit = direction == Direction::kUpwards ? cell : 3 - cell;
      texts[kFourFlagsSize * bits + 2 * cell] = ((bits >> bit) & 1) != 0 ? '1' : '0';
      texts[kFourFlagsSize * bits + 2 * cell + 1] = ',';
    }
  }
  return texts;
}
constexpr FourFlagsTable kFlagsUpwards = FourFlagsTexts(Direction::kUpwards);
constexpr FourFlagsTable kFlagsDownwards = FourFlagsTexts(Direction::kDownwards);

std::string_view FourFlags(const FourFlagsTable& table, std::uint32_t bits) {
  return {&table[kFourFlagsSize * (bits & 0xF)], kFourFlagsSize};
}

// A run of missing cells.
constexpr int kMissingRun = 16;
constexpr std::size_t kMissingCellSize = na_val.size() + 1;

constexpr std::array<char, kMissingRun * kMissingCellSize> MissingCells() {
  std::array<char, kMissingRun * kMissingCellSize> cells{};
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::size_t at = i % kMissingCellSize;
    cells[i] = at < na_val.size() ? na_val[at] : ',';
  }
  return cells;
}
constexpr auto kMissingCells = MissingCells();

}  // namespace

void CsvRow::Missing(int count) {
  CountCells(count);
  for (; count > kMissingRun; count -= kMissingRun) out_.AppendPart(kMissingCells);
  out_.AppendPart(kMissingCells, static_cast<std::size_t>(count) * kMissingCellSize);
}

void CsvRow::FlagsUpwards(std::uint32_t bits, int first, int count) {
  CountCells(count / 4 * 4);
  for (; count >= 4; first += 4, count -= 4) out_.Append(FourFlags(kFlagsUpwards, bits >> first));
  for (; count > 0; ++first, --count) Flag(((bits >> first) & 1) != 0);
}

void CsvRow::FlagsDownwards(std::uint32_t bits, int first, int count) {
  CountCells(count / 4 * 4);
  for (; count >= 4; first -= 4, count -= 4) {
    out_.Append(FourFlags(kFlagsDownwards, bits >> (first - 3)));
  }
  for (; count > 0; --first, --count) Flag(((bits >> first) & 1) != 0);
}

void CsvRow::CheckGroup([[maybe_unused]] CsvGroup group) {
  assert(cells_ == GroupSize(group));
  cells_ = 0;
}

void CsvRow::WriteTo(std::ostream& os) {
  if (out_.size() > 0) out_.Truncate(out_.size() - 1);  // the last cell's comma
  out_.Append('\n');
  os.write(out_.view().data(), static_cast<std::streamsize>(out_.size()));
  os.width(0);  // as after any formatted output
  os.flush();
}

}  // namespace text
}  // namespace cable_info
