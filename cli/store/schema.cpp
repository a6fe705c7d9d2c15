#include "cli/store/schema.h"

#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/csv_columns.h"

namespace cli {

namespace {

using cable_info::CsvColumn;
using cable_info::CsvForm;
using cable_info::kCsvColumns;

static_assert(kSchemaVersion == 1 && kCsvColumns.size() == 177,
              "a store has a column for each column of the table: a new one needs a new version");

constexpr std::string_view kIndexes = R"(
CREATE INDEX cable_by_snapshot ON cable (snapshot_id, "PortGuid", "PortNum");
CREATE INDEX reading_by_snapshot ON reading (snapshot_id, port_guid, port_num, quantity, lane);
CREATE INDEX finding_by_snapshot ON finding (snapshot_id, port_guid, port_num);
CREATE INDEX port_record_by_snapshot ON port_record (snapshot_id);
)";

constexpr std::string_view kViews = R"(
CREATE VIEW snapshot_pair AS
  SELECT id, lag(id) OVER (ORDER BY taken_at, id) AS previous_id FROM snapshot;
CREATE VIEW latest_snapshot AS
  SELECT * FROM snapshot ORDER BY taken_at DESC, id DESC LIMIT 1;
CREATE VIEW latest_cable AS
  SELECT * FROM cable WHERE snapshot_id = (SELECT id FROM latest_snapshot);
CREATE VIEW latest_reading AS
  SELECT * FROM reading WHERE snapshot_id = (SELECT id FROM latest_snapshot);
CREATE VIEW latest_finding AS
  SELECT * FROM finding WHERE snapshot_id = (SELECT id FROM latest_snapshot);
CREATE VIEW reading_change AS
  SELECT new.snapshot_id, old.snapshot_id AS previous_id, new.node_guid, new.port_guid, new.port_num,
    new.label, new.quantity, new.lane, new.unit, old.value AS previous_value, new.value,
    new.value - old.value AS change
  FROM snapshot_pair AS pair
  JOIN reading AS new ON new.snapshot_id = pair.id
  JOIN reading AS old ON old.snapshot_id = pair.previous_id AND old.port_guid = new.port_guid
    AND old.port_num = new.port_num AND old.quantity = new.quantity AND old.lane = new.lane
    AND (old.port_guid <> '0x0000000000000000' OR old.label IS new.label);
)";

std::string_view TypeOf(const CsvColumn& column) {
  if (column.unit == "m") return "REAL";
  switch (column.cable_form == CsvForm::kMissing ? column.phy_form : column.cable_form) {
    case CsvForm::kDecimal:
    case CsvForm::kFlag:
    case CsvForm::kCelsius:
    case CsvForm::kMicrovolts:
      return "INTEGER";
    case CsvForm::kFixed3:
    case CsvForm::kWatts:
      return "REAL";
    default:
      return "TEXT";
  }
}

struct Column {
  std::string name;
  std::string_view type;
};

struct Table {
  std::string_view name;
  std::vector<Column> columns;
};

constexpr std::string_view kId = "id";  // given by the database

Column SnapshotId() {
  return {"snapshot_id", "INTEGER NOT NULL REFERENCES snapshot (id) ON DELETE CASCADE"};
}

Table CableTable() {
  Table table{"cable", {SnapshotId(), {"label", "TEXT"}}};
  for (const CsvColumn& column : kCsvColumns) {
    table.columns.push_back({'"' + std::string(column.name) + '"', TypeOf(column)});
  }
  return table;
}

Table TableOf(StoreTable table) {
  switch (table) {
    case StoreTable::kSnapshot:
      return {"snapshot",
              {{std::string(kId), "INTEGER PRIMARY KEY AUTOINCREMENT"},
               {"taken_at", "TEXT NOT NULL"},
               {"input", "TEXT NOT NULL"},
               {"version", "TEXT NOT NULL"}}};
    case StoreTable::kCable:
      return CableTable();
    case StoreTable::kReading:
      return {"reading",
              {SnapshotId(),
               {"node_guid", "TEXT NOT NULL"},
               {"port_guid", "TEXT NOT NULL"},
               {"port_num", "INTEGER NOT NULL"},
               {"label", "TEXT"},
               {"quantity", "TEXT NOT NULL"},
               {"lane", "INTEGER NOT NULL"},
               {"value", "REAL"},
               {"unit", "TEXT NOT NULL"},
               {"high_alarm", "REAL"},
               {"low_alarm", "REAL"},
               {"high_warning", "REAL"},
               {"low_warning", "REAL"},
               {"flags", "INTEGER"}}};
    case StoreTable::kFinding:
      return {"finding",
              {{std::string(kId), "INTEGER PRIMARY KEY"},
               SnapshotId(),
               {"node_guid", "TEXT NOT NULL"},
               {"port_guid", "TEXT NOT NULL"},
               {"port_num", "INTEGER NOT NULL"},
               {"label", "TEXT"},
               {"rule", "TEXT NOT NULL"},
               {"severity", "TEXT NOT NULL"},
               {"lane", "INTEGER NOT NULL"},
               {"value", "REAL"},
               {"limit_value", "REAL"},
               {"unit", "TEXT"},
               {"sentence", "TEXT NOT NULL"}}};
    case StoreTable::kPortRecord:
      return {
          "port_record",
          {{std::string(kId), "INTEGER PRIMARY KEY"}, SnapshotId(), {"record", "TEXT NOT NULL"}}};
  }
  return {};
}

std::string CreateStatement(StoreTable table) {
  const Table described = TableOf(table);
  std::string text = "CREATE TABLE " + std::string(described.name) + " (";
  std::string_view separator = "\n  ";
  for (const Column& column : described.columns) {
    text.append(std::exchange(separator, ",\n  "));
    text.append(column.name).append(" ").append(column.type);
  }
  return text.append("\n);\n");
}

}  // namespace

std::string StoreSchema() {
  std::string text;
  for (const StoreTable table : {StoreTable::kCable, StoreTable::kSnapshot, StoreTable::kReading,
                                 StoreTable::kFinding, StoreTable::kPortRecord}) {
    text += CreateStatement(table);
  }
  return text.append(kIndexes).append(kViews);
}

std::string InsertStatement(StoreTable table) {
  const Table described = TableOf(table);
  std::string names;
  std::string parameters;
  std::string_view separator;
  for (const Column& column : described.columns) {
    if (column.name == kId) continue;
    names.append(separator).append(column.name);
    parameters.append(std::exchange(separator, ", ")).append("?");
  }
  return "INSERT INTO " + std::string(described.name) + " (" + names + ") VALUES (" + parameters +
         ')';
}

}  // namespace cli
