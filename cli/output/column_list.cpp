#include "cli/output/column_list.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <ostream>

#include "cable_info/combined_cable_info.h"
#include "cable_info/text/text_buffer.h"
#include "cli/format_version.h"
#include "cli/json_text.h"

namespace cli {

namespace {

using cable_info::CsvColumn;
using cable_info::CsvFormName;
using cable_info::kCsvColumns;

// One object; the unit is null for a code or a text.
void AppendColumn(JsonText& json, const CsvColumn& column, std::uint32_t number) {
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  json.Key("number").Integer(number);
  json.Key("name").Utf8(column.name);
  json.Key("meaning").Utf8(column.meaning);
  json.Key("unit");
  column.unit.empty() ? json.Null() : json.Utf8(column.unit);
  json.Key("forms").BeginObject();
  json.Key("cable_pages").Plain(CsvFormName(column.cable_form));
  json.Key("phy").Plain(CsvFormName(column.phy_form));
  json.EndObject();
  json.EndObject();
}

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
  std::uint32_t number = 0;
  for (const CsvColumn& column : kCsvColumns) {
    cable_info::text::TextBuffer line;
    JsonText json(line);
    AppendColumn(json, column, ++number);
    os << line.view() << '\n';
  }
}

}  // namespace cli
