// cableinfo table

#include <cstddef>
#include <memory>
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

constexpr const char* kExamples =
    "Examples:\n"
    "  cableinfo table fabric.jsonl -o cables.csv    all ports, after a header of 177 columns\n"
    "  collect | cableinfo table --no-header         rows only, in a pipeline\n"
    "  cableinfo table --rfc4180 fabric.jsonl        for spreadsheets, databases and data frames\n"
    "  cableinfo table --json fabric.jsonl | jq .Temperature\n"
    "  cableinfo table --columns PortGuid,PortNum,SN,Temperature fabric.jsonl\n"
    "                                                these columns only, in this order";

struct Options {
  PortOptions ports;
  bool no_header = false;
  bool rfc4180 = false;
  bool json = false;
  std::vector<std::string> columns;  // none: all
};

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
  const std::string_view nearest = Nearest(name, names);
  return "cableinfo: --columns: unknown column \"" + name + '"' +
         (nearest.empty() ? "; cableinfo columns lists all of them"
                          : "; did you mean \"" + std::string(nearest) + "\"?");
}

// The columns that the options name, or none, with a message, for a name of none.
std::optional<ColumnIndices> FindColumns(const Options& options) {
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

ExitStatus WriteTable(const Options& options) {
  std::optional<ColumnIndices> columns = FindColumns(options);
  if (!columns) return ExitStatus::kUsage;
  if (options.json) return WritePorts(options.ports, JsonTableWriter(std::move(*columns)));
  if (options.rfc4180) {
    const auto header =
        options.no_header ? Rfc4180Writer::Header::kOmitted : Rfc4180Writer::Header::kWritten;
    return WritePorts(options.ports, Rfc4180Writer(header, std::move(*columns)));
  }
  const auto header =
      options.no_header ? TableWriter::Header::kOmitted : TableWriter::Header::kWritten;
  if (options.columns.empty()) return WritePorts(options.ports, TableWriter(header));
  return WritePorts(options.ports, ColumnsWriter(header, std::move(*columns)));
}

}  // namespace

void AddTableCommand(CLI::App& app, Action& action) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = AddPortCommand(app, "table", "Write the CSV table, one row per port",
                                           kExamples, options->ports);
  command->add_flag("--no-header", options->no_header, "Write the rows only");
  CLI::Option* const rfc4180 = command->add_flag(
      "--rfc4180", options->rfc4180,
      "Write CSV that every reader takes: 177 cells in each row, quotes doubled,\n"
      "missing values empty, numbers without units");
  command
      ->add_flag("--json", options->json,
                 "Write one JSON object per row: numbers as numbers, missing values null")
      ->excludes(rfc4180);
  command->callback([options, &action] { action = [options] { return WriteTable(*options); }; });
  command
      ->add_option("--columns", options->columns,
                   "Write only these columns, in this order: names joined by commas")
      ->type_name("NAMES")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->take_all();
}

}  // namespace cli
