// cableinfo table

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/csv_columns.h"
#include "cli/commands/commands.h"
#include "cli/commands/port_command.h"
#include "cli/message.h"
#include "cli/output/table_writer.h"
#include "cli/output/typed_table_writer.h"
#include "cli/spelling.h"

namespace cli {

namespace {

std::optional<std::size_t> FindColumn(std::string_view name) {
  for (std::size_t i = 0; i < cable_info::kCsvColumns.size(); ++i) {
    if (cable_info::kCsvColumns[i].name == name) return i;
  }
  return std::nullopt;
}

std::string UnknownColumn(const std::string& name) {
  std::vector<std::string_view> names;
  names.reserve(cable_info::kCsvColumns.size());
  for (const cable_info::CsvColumn& column : cable_info::kCsvColumns) names.push_back(column.name);
  return "cableinfo: --columns: unknown column \"" + name + '"' +
         Suggestion(name, names, "; cableinfo columns lists all of them");
}

// The columns that the options name; none, with a message, if one of the names is unknown.
std::optional<ColumnIndices> FindColumns(const TableOptions& options) {
  if (options.columns.empty()) return AllColumns();
  ColumnIndices columns;
  for (const std::string& name : options.columns) {
    const std::optional<std::size_t> column = FindColumn(name);
    if (!column) {
      PrintError(UnknownColumn(name));
      return std::nullopt;
    }
    columns.push_back(*column);
  }
  return columns;
}

}  // namespace

ExitStatus WriteTable(const TableOptions& options) {
  std::optional<ColumnIndices> columns = FindColumns(options);
  if (!columns) return ExitStatus::kUsage;
  if (options.as_json) return WritePorts(options.ports, JsonTableWriter(std::move(*columns)));
  const TableHeader header = options.no_header ? TableHeader::kOmitted : TableHeader::kWritten;
  if (options.rfc4180) {
    return WritePorts(options.ports, Rfc4180Writer(header, std::move(*columns)));
  }
  if (options.columns.empty()) return WritePorts(options.ports, TableWriter(header));
  return WritePorts(options.ports, ColumnsWriter(header, std::move(*columns)));
}

}  // namespace cli
