#include "cli/output/column_list.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>

#include "cable_info/combined_cable_info.h"
#include "cli/format_version.h"

namespace cli {

namespace {

using cable_info::CsvColumn;
using cable_info::CsvFormName;
using cable_info::kCsvColumns;
using Json = nlohmann::ordered_json;

// The unit of a column, null for a code or a text.
Json Unit(const CsvColumn& column) { return column.unit.empty() ? Json() : Json(column.unit); }

}  // namespace

void WriteColumnsAsText(std::ostream& os) {
  constexpr int kNumberWidth = 3;
  std::size_t name_width = 0;
  for (const CsvColumn& column : kCsvColumns) name_width = std::max(name_width, column.name.size());
  const auto line = [&](const auto& number, std::string_view name, std::string_view meaning) {
    os << std::right << std::setw(kNumberWidth) << number << "  " << std::left
       << std::setw(static_cast<int>(name_width)) << name << "  " << meaning << '\n';
  };
  line("No.", "Column", "Meaning");
  int number = 0;
  for (const CsvColumn& column : kCsvColumns) line(++number, column.name, column.meaning);
}

void WriteColumnsAsJson(std::ostream& os) {
  int number = 0;
  for (const CsvColumn& column : kCsvColumns) {
    const Json line = {
        {"format_version", kFormatVersion},
        {"number", ++number},
        {"name", column.name},
        {"meaning", column.meaning},
        {"unit", Unit(column)},
        {"forms",
         {{"cable_pages", CsvFormName(column.cable_form)}, {"phy", CsvFormName(column.phy_form)}}},
    };
    os << line.dump() << '\n';
  }
}

}  // namespace cli
