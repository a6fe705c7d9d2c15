#include "cli/output/store.h"

#include <sqlite3.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <ctime>
#include <limits>
#include <ostream>
#include <sstream>
#include <system_error>
#include <type_traits>
#include <vector>

#include "cable_info/cell_sink.h"
#include "cable_info/csv_columns.h"
#include "cable_info/readings/readings.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/version.h"
#include "cli/output/check_result.h"
#include "cli/output/store_schema.h"
#include "cli/output/typed_table_writer.h"
#include "cli/output/utf8_text.h"

namespace cli {

namespace {

using cable_info::Bound;
using cable_info::Finding;
using cable_info::Reading;
using cable_info::text::TextBuffer;

// ---------------------------------------------------------------------------------------------
// From one thread to another: only this program reads what is written here, in the same run
// ---------------------------------------------------------------------------------------------

struct Head {
  std::uint64_t node_guid;
  std::uint64_t port_guid;
  std::uint32_t number;
  std::uint32_t label;  // sizes of the parts that follow
  std::uint32_t cells;
  std::uint32_t readings;  // how many
  std::uint32_t judgement;
};

// A reading as it is stored; NaN where there is no number.
struct StoredReading {
  cable_info::Quantity quantity;
  std::uint8_t lane;
  bool has_flags;
  std::uint8_t flags;
  double value;
  std::array<double, cable_info::kBounds> thresholds;
};

enum class CellKind : char { kMissing, kInteger, kNumber, kText };

static_assert(std::is_trivially_copyable_v<Head>);
static_assert(std::is_trivially_copyable_v<StoredReading>);

template <typename T>
void AppendBytes(TextBuffer& out, const T& value) {
  const auto bytes = std::bit_cast<std::array<char, sizeof(T)>>(value);
  out.Append({bytes.data(), bytes.size()});
}

template <typename T>
T Take(std::string_view& bytes) {
  T value{};
  std::memcpy(&value, bytes.data(), sizeof(T));
  bytes.remove_prefix(sizeof(T));
  return value;
}

std::string_view TakeText(std::string_view& bytes, std::size_t size) {
  const std::string_view text = bytes.substr(0, size);
  bytes.remove_prefix(size);
  return text;
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// The `double` with the shortest decimal of a `float`: 0.871, not 0.87099999189376831.
double DecimalOf(float value) {
  constexpr std::size_t kCapacity = 32;
  std::array<char, kCapacity> digits{};
  const auto [end, error] = std::to_chars(digits.begin(), digits.end(), value);
  double decimal = kNoNumber;
  if (error == std::errc()) std::from_chars(digits.begin(), end, decimal);
  return decimal;
}

StoredReading Stored(const Reading& reading) {
  StoredReading stored{reading.quantity,       reading.lane, reading.latched.known != 0,
                       reading.latched.raised, kNoNumber,    {}};
  if (reading.IsPresent()) stored.value = DecimalOf(reading.value);
  for (const Bound bound : cable_info::kAllBounds) {
    const std::optional<float> threshold = reading.Threshold(bound);
    stored.thresholds[static_cast<std::size_t>(bound)] =
        threshold ? DecimalOf(*threshold) : kNoNumber;
  }
  return stored;
}

// Packs the cells of a row one after the other: kind, then value; texts with their size, as UTF-8.
class PackedCells : public cable_info::CellSink {
 public:
  void Text(std::string_view text) override {
    utf8_.Truncate(0);
    for (const char c : text) AppendByteAsUtf8(utf8_, static_cast<unsigned char>(c));
    AppendBytes(Begin(CellKind::kText), static_cast<std::uint32_t>(utf8_.size()));
    out_.Append(utf8_.view());
  }
  void Integer(std::uint32_t value) override { AppendBytes(Begin(CellKind::kInteger), value); }
  void Number(double value) override { AppendBytes(Begin(CellKind::kNumber), value); }
  void Flag(bool is_set) override { Integer(is_set ? 1 : 0); }
  void Missing() override { Begin(CellKind::kMissing); }

  std::string_view view() const { return out_.view(); }

 private:
  TextBuffer& Begin(CellKind kind) { return out_.Append(static_cast<char>(kind)); }

  TextBuffer out_;
  TextBuffer utf8_;
};

// ---------------------------------------------------------------------------------------------
// SQLite
// ---------------------------------------------------------------------------------------------

void Check(sqlite3* connection, int result) {
  if (result != SQLITE_OK && result != SQLITE_ROW && result != SQLITE_DONE) {
    throw StoreError(sqlite3_errmsg(connection));
  }
}

class Statement {
 public:
  Statement(sqlite3* connection, const std::string& text) : connection_(connection) {
    Check(connection, sqlite3_prepare_v2(connection, text.c_str(), -1, &statement_, nullptr));
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  Statement(Statement&&) = delete;
  Statement& operator=(Statement&&) = delete;
  ~Statement() { sqlite3_finalize(statement_); }

  // Parameters are numbered from 1. A text must stay until the statement has run.
  void Bind(int number, std::string_view text) {
    Check(connection_, sqlite3_bind_text(statement_, number, text.data(),
                                         static_cast<int>(text.size()), SQLITE_STATIC));
  }
  void Bind(int number, std::int64_t value) {
    Check(connection_, sqlite3_bind_int64(statement_, number, value));
  }
  void BindNumber(int number, double value) {
    Check(connection_, sqlite3_bind_double(statement_, number, value));
  }
  void BindNull(int number) { Check(connection_, sqlite3_bind_null(statement_, number)); }

  // Runs to the first row; false when there is none.
  bool Step() {
    const int result = sqlite3_step(statement_);
    Check(connection_, result);
    return result == SQLITE_ROW;
  }
  // Runs a statement without rows, to be run again.
  void Run() {
    Step();
    sqlite3_reset(statement_);
  }
  std::int64_t Integer(int column) const { return sqlite3_column_int64(statement_, column); }

 private:
  sqlite3* connection_;
  sqlite3_stmt* statement_ = nullptr;
};

constexpr std::int64_t kApplicationId = 0x43424C49;  // "CBLI"
constexpr int kWaitMilliseconds = 60'000;

// The parameters of the statements that describe a port.
constexpr int kSnapshotParameter = 1;
constexpr int kNodeGuidParameter = 2;
constexpr int kPortGuidParameter = 3;
constexpr int kPortNumParameter = 4;
constexpr int kLabelParameter = 5;

std::string PlaceHolders(int count) {
  std::string text = "(?";
  for (int i = 1; i < count; ++i) text += ", ?";
  return text += ')';
}

}  // namespace

class Store::Database {
 public:
  Database(const std::string& path, const cable_info::RuleSettings& settings) : judged_(settings) {
    const int result =
        sqlite3_open_v2(path.c_str(), &connection_,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) {
      const std::string reason = sqlite3_errmsg(connection_);
      sqlite3_close(connection_);
      throw StoreError(reason);
    }
    sqlite3_busy_timeout(connection_, kWaitMilliseconds);
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  Database(Database&&) = delete;
  Database& operator=(Database&&) = delete;
  ~Database() {
    insert_cable_.reset();
    insert_reading_.reset();
    sqlite3_close(connection_);
  }

  void Begin(const Snapshot& snapshot) {
    Execute("PRAGMA synchronous = NORMAL");
    Execute("BEGIN IMMEDIATE");
    CreateTables();
    Statement insert(connection_,
                     "INSERT INTO snapshot (taken_at, input, version) VALUES (?, ?, ?)");
    insert.Bind(1, snapshot.taken_at);
    insert.Bind(2, snapshot.input);
    insert.Bind(3, cable_info::kVersion);
    insert.Run();
    snapshot_ = sqlite3_last_insert_rowid(connection_);
    constexpr int kReadingColumns = 14;
    insert_cable_.emplace(connection_, InsertCableStatement());
    insert_reading_.emplace(connection_,
                            "INSERT INTO reading VALUES " + PlaceHolders(kReadingColumns));
    insert_cable_->Bind(kSnapshotParameter, snapshot_);
    insert_reading_->Bind(kSnapshotParameter, snapshot_);
  }

  void Add(std::string_view ports) {
    while (!ports.empty()) {
      const auto head = Take<Head>(ports);
      const std::string_view label = TakeText(ports, head.label);
      const std::string_view cells = TakeText(ports, head.cells);
      const std::string_view readings = TakeText(ports, head.readings * sizeof(StoredReading));
      const std::string_view judgement = TakeText(ports, head.judgement);
      AddCable(label, cells);
      if (sqlite3_changes(connection_) == 0) {
        ++repeated_ports_;
        continue;
      }
      AddReadings(head, label, readings);
      judged_.Add(judgement);
    }
  }

  void Finish() {
    judged_.Finish();
    Statement insert(
        connection_,
        "INSERT INTO finding (snapshot_id, node_guid, port_guid, port_num, label, rule, "
        "severity, lane, value, limit_value, unit, sentence) VALUES " +
            PlaceHolders(12));
    for (std::size_t port = 0; port < judged_.size(); ++port) {
      const std::vector<Finding> findings = judged_.FindingsOf(port);
      if (findings.empty()) continue;
      const std::string node_guid = GuidText(judged_.NodeGuidOf(port));
      const std::string port_guid = GuidText(judged_.IdOf(port).guid);
      for (const Finding& finding : findings) {
        BindPort(insert, node_guid, port_guid, judged_.IdOf(port).number, judged_.LabelOf(port));
        AddFinding(insert, finding);
      }
    }
  }

  void Commit(std::optional<std::uint32_t> keep) {
    if (keep) DropAllBut(*keep);
    Execute("COMMIT");
    // Readers do not wait for the writer from now on. Not before the first snapshot, because the
    // mode is part of the file.
    sqlite3_exec(connection_, "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
  }

  std::size_t repeated_ports() const { return repeated_ports_; }

 private:
  void Execute(const std::string& statements) {
    Check(connection_, sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr));
  }
  std::int64_t Number(const std::string& query) {
    Statement statement(connection_, query);
    return statement.Step() ? statement.Integer(0) : 0;
  }

  // Foreign keys are declared for other programs. This one does not let SQLite check them, which
  // would cost a search for every row.
  void DropAllBut(std::uint32_t keep) {
    Execute(
        "CREATE TEMP TABLE kept AS SELECT id FROM snapshot ORDER BY taken_at DESC, id DESC LIMIT " +
        std::to_string(keep));
    for (const std::string table : {"finding", "reading", "cable"}) {
      Execute("DELETE FROM " + table + " WHERE snapshot_id NOT IN (SELECT id FROM kept)");
    }
    Execute("DELETE FROM snapshot WHERE id NOT IN (SELECT id FROM kept)");
  }

  void CreateTables() {
    const std::int64_t application = Number("PRAGMA application_id");
    const std::int64_t version = Number("PRAGMA user_version");
    if (application == kApplicationId) {
      if (version == kSchemaVersion) return;
      throw StoreError("the tables have version " + std::to_string(version) +
                       ", and this program writes version " + std::to_string(kSchemaVersion));
    }
    if (Number("SELECT count(*) FROM sqlite_master") != 0) {
      throw StoreError("the file is a database of another program");
    }
    Execute(StoreSchema());
    Execute("PRAGMA application_id = " + std::to_string(kApplicationId));
    Execute("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  }

  static void BindText(Statement& statement, int number, std::string_view text) {
    text.empty() ? statement.BindNull(number) : statement.Bind(number, text);
  }
  static void BindNumber(Statement& statement, int number, double value) {
    std::isfinite(value) ? statement.BindNumber(number, value) : statement.BindNull(number);
  }

  void BindPort(Statement& statement, std::string_view node_guid, std::string_view port_guid,
                std::uint32_t number, std::string_view label) const {
    statement.Bind(kSnapshotParameter, snapshot_);
    statement.Bind(kNodeGuidParameter, node_guid);
    statement.Bind(kPortGuidParameter, port_guid);
    statement.Bind(kPortNumParameter, std::int64_t{number});
    BindText(statement, kLabelParameter, label);
  }

  void AddCable(std::string_view label, std::string_view cells) {
    int parameter = kSnapshotParameter;
    BindText(*insert_cable_, ++parameter, label);
    while (!cells.empty()) BindCell(*insert_cable_, ++parameter, cells);
    insert_cable_->Run();
  }

  static void BindCell(Statement& statement, int parameter, std::string_view& cells) {
    switch (Take<CellKind>(cells)) {
      case CellKind::kMissing:
        return statement.BindNull(parameter);
      case CellKind::kInteger:
        return statement.Bind(parameter, std::int64_t{Take<std::uint32_t>(cells)});
      case CellKind::kNumber:
        return statement.BindNumber(parameter, Take<double>(cells));
      case CellKind::kText: {
        const auto size = Take<std::uint32_t>(cells);
        return statement.Bind(parameter, TakeText(cells, size));
      }
    }
  }

  void AddReadings(const Head& head, std::string_view label, std::string_view readings) {
    const std::string node_guid = GuidText(head.node_guid);
    const std::string port_guid = GuidText(head.port_guid);
    BindPort(*insert_reading_, node_guid, port_guid, head.number, label);
    while (!readings.empty()) {
      const auto reading = Take<StoredReading>(readings);
      int parameter = kLabelParameter;
      insert_reading_->Bind(++parameter, QuantityName(reading.quantity));
      insert_reading_->Bind(++parameter, std::int64_t{reading.lane});
      BindNumber(*insert_reading_, ++parameter, reading.value);
      insert_reading_->Bind(++parameter, QuantityUnit(reading.quantity));
      for (const double threshold : reading.thresholds) {
        BindNumber(*insert_reading_, ++parameter, threshold);
      }
      if (reading.has_flags) {
        insert_reading_->Bind(++parameter, std::int64_t{reading.flags});
      } else {
        insert_reading_->BindNull(++parameter);
      }
      insert_reading_->Run();
    }
  }

  static void AddFinding(Statement& insert, const Finding& finding) {
    const std::string sentence = Sentence(finding);
    int parameter = kLabelParameter;
    insert.Bind(++parameter, RuleName(finding.rule));
    insert.Bind(++parameter, SeverityName(finding.severity));
    insert.Bind(++parameter, std::int64_t{finding.lane});
    BindNumber(insert, ++parameter, DecimalOf(finding.value));
    BindNumber(insert, ++parameter, DecimalOf(finding.limit));
    BindText(insert, ++parameter, RuleUnit(finding.rule));
    insert.Bind(++parameter, sentence);
    insert.Run();
  }

  sqlite3* connection_ = nullptr;
  std::int64_t snapshot_ = 0;
  std::optional<Statement> insert_cable_;
  std::optional<Statement> insert_reading_;
  std::size_t repeated_ports_ = 0;
  CheckResult judged_;
};

void WriteStoredPort(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings) {
  PackedCells cells;
  VisitCells(port, cells);
  TextBuffer readings;
  std::uint32_t count = 0;
  for (const Reading& reading : ReadingsOf(port)) {
    if (!reading.IsPresent() && reading.latched.raised == 0) continue;
    AppendBytes(readings, Stored(reading));
    ++count;
  }
  std::ostringstream judgement;
  WriteJudgedPort(judgement, port, settings);
  const Head head = {port.node_guid,
                     port.port_guid,
                     port.number,
                     static_cast<std::uint32_t>(port.label.size()),
                     static_cast<std::uint32_t>(cells.view().size()),
                     count,
                     static_cast<std::uint32_t>(judgement.view().size())};
  TextBuffer start;
  AppendBytes(start, head);
  os << start.view() << port.label << cells.view() << readings.view() << judgement.view();
}

std::string NormalizedTime(const std::string& text) {
  constexpr std::string_view kDate = "dddd-dd-dd";
  const auto fits = [&text](std::string_view pattern) {
    if (text.size() < pattern.size()) return false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
      const bool is_digit = text[i] >= '0' && text[i] <= '9';
      if (pattern[i] == 'd' ? !is_digit : text[i] != pattern[i]) return false;
    }
    return true;
  };
  if (!fits(kDate)) return {};
  sqlite3* connection = nullptr;
  std::string normalized;
  if (sqlite3_open(":memory:", &connection) == SQLITE_OK) {
    sqlite3_stmt* query = nullptr;
    sqlite3_prepare_v2(connection, "SELECT strftime('%Y-%m-%dT%H:%M:%SZ', ?)", -1, &query, nullptr);
    sqlite3_bind_text(query, 1, text.c_str(), -1, SQLITE_STATIC);
    if (sqlite3_step(query) == SQLITE_ROW && sqlite3_column_type(query, 0) == SQLITE_TEXT) {
      normalized.assign(static_cast<const char*>(sqlite3_column_blob(query, 0)),
                        static_cast<std::size_t>(sqlite3_column_bytes(query, 0)));
    }
    sqlite3_finalize(query);
  }
  sqlite3_close(connection);
  return normalized;
}

std::string TimeNow() {
  constexpr std::size_t kCapacity = 32;
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  gmtime_r(&now, &utc);
  std::array<char, kCapacity> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

Store::Store(const std::string& path, const cable_info::RuleSettings& settings)
    : database_(std::make_unique<Database>(path, settings)) {}
Store::~Store() = default;
void Store::Begin(const Snapshot& snapshot) { database_->Begin(snapshot); }
void Store::Add(std::string_view ports) { database_->Add(ports); }
void Store::Finish() { database_->Finish(); }
void Store::Commit(std::optional<std::uint32_t> keep) { database_->Commit(keep); }
std::size_t Store::repeated_ports() const { return database_->repeated_ports(); }

}  // namespace cli
