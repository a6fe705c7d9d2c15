#include "cli/store/store.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "cable_info/cell_sink.h"
#include "cable_info/readings/readings.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/version.h"
#include "cli/output/check_result.h"
#include "cli/output/packed_bytes.h"
#include "cli/output/port_set.h"
#include "cli/output/typed_table_writer.h"
#include "cli/output/utf8_text.h"
#include "cli/store/database.h"
#include "cli/store/schema.h"

namespace cli {

namespace {

using cable_info::AlarmLevel;
using cable_info::Finding;
using cable_info::Observable;
using cable_info::Reading;
using cable_info::Readings;
using cable_info::text::TextBuffer;

// ---------------------------------------------------------------------------------------------
// Packed ports, passed from the threads that decode to the collector
// ---------------------------------------------------------------------------------------------

// A port, followed by its label, record, cells, readings and judgement.
struct Head {
  std::uint64_t node_guid;
  std::uint64_t port_guid;
  std::uint32_t number;
};

// A reading as it is stored, followed by the texts of its quantity and unit; NaN where there is no
// number.
struct StoredReading {
  std::uint8_t lane;
  std::uint8_t flags;
  bool has_flags;
  double value;
  std::array<double, cable_info::kAlarmLevels> thresholds;
};

enum class CellKind : char { kMissing, kInteger, kNumber, kText };

void AppendText(TextBuffer& out, std::string_view text) {
  out.Append(BytesOf(static_cast<std::uint32_t>(text.size()))).Append(text);
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// The `double` with the shortest decimal of a `float`: 0.871, not 0.87099999189376831.
double DecimalOf(float value) {
  // Numbers of few digits, as modules report them, are found by rounding: below 512 no two `float`s
  // are less than 0.00003 apart, so that at most one number of four decimals reads back as `value`.
  constexpr float kRounded = 512;
  constexpr double kFourDecimals = 10'000;
  if (std::fabs(value) < kRounded) {
    const double decimal =
        std::nearbyint(static_cast<double>(value) * kFourDecimals) / kFourDecimals;
    if (static_cast<float>(decimal) == value) return decimal;
  }
  constexpr std::size_t kCapacity = 32;
  std::array<char, kCapacity> digits{};
  const auto [end, error] = std::to_chars(digits.begin(), digits.end(), value);
  double decimal = kNoNumber;
  if (error == std::errc()) std::from_chars(digits.begin(), end, decimal);
  return decimal;
}

// Only what was measured or raised is stored.
bool IsStored(const Reading& reading) { return reading.IsPresent() || reading.latched.raised != 0; }

void AppendReading(TextBuffer& out, const Reading& reading, int lane, std::string_view quantity,
                   std::string_view unit) {
  StoredReading stored{static_cast<std::uint8_t>(lane),
                       reading.latched.raised,
                       reading.latched.known != 0,
                       kNoNumber,
                       {}};
  if (reading.IsPresent()) stored.value = DecimalOf(reading.value);
  for (const AlarmLevel level : cable_info::kAllAlarmLevels) {
    const std::optional<float> threshold = reading.Threshold(level);
    stored.thresholds[static_cast<std::size_t>(level)] =
        threshold ? DecimalOf(*threshold) : kNoNumber;
  }
  out.Append(BytesOf(stored));
  AppendText(out, quantity);
  AppendText(out, unit);
}

// The number in a place such as "lane 1"; 0 for the module.
int NumberIn(std::string_view place) {
  constexpr int kHighest = 255;
  int number = 0;
  const std::size_t digits = std::min(place.find_first_of("0123456789"), place.size());
  std::from_chars(place.data() + digits, place.data() + place.size(), number);
  return number >= 0 && number <= kHighest ? number : 0;
}

void AppendReadings(TextBuffer& out, const Readings& port) {
  for (const Reading& reading : port) {
    if (!IsStored(reading)) continue;
    AppendReading(out, reading, reading.lane, QuantityName(reading.quantity),
                  QuantityUnit(reading.quantity));
  }
  for (const Observable& observable : port.observables) {
    if (!IsStored(observable.reading)) continue;
    AppendReading(out, observable.reading, NumberIn(observable.place), observable.name,
                  observable.unit);
  }
}

// Packs the cells of a row one after the other: kind, then value; texts with their size, as UTF-8.
class PackedCells : public cable_info::CellSink {
 public:
  void Text(std::string_view text) override {
    utf8_.Truncate(0);
    AppendBytesAsUtf8(utf8_, text);
    AppendText(Begin(CellKind::kText), utf8_.view());
  }
  void Integer(std::uint32_t value) override { Begin(CellKind::kInteger).Append(BytesOf(value)); }
  void Number(double value) override { Begin(CellKind::kNumber).Append(BytesOf(value)); }
  void Flag(bool is_set) override { Integer(is_set ? 1 : 0); }
  void Missing() override { Begin(CellKind::kMissing); }

  std::string_view view() const { return out_.view(); }

 private:
  TextBuffer& Begin(CellKind kind) { return out_.Append(static_cast<char>(kind)); }

  TextBuffer out_;
  TextBuffer utf8_;
};

// ---------------------------------------------------------------------------------------------
// Rows
// ---------------------------------------------------------------------------------------------

// The parameters of the statements that describe a port.
constexpr int kSnapshotParameter = 1;
constexpr int kNodeGuidParameter = 2;
constexpr int kPortGuidParameter = 3;
constexpr int kPortNumParameter = 4;
constexpr int kLabelParameter = 5;

void BindText(Statement& statement, int number, std::string_view text) {
  text.empty() ? statement.BindNull(number) : statement.Bind(number, text);
}

void BindNumber(Statement& statement, int number, double value) {
  std::isnan(value) ? statement.BindNull(number) : statement.BindNumber(number, value);
}

void BindCell(Statement& statement, int parameter, std::string_view& cells) {
  switch (TakeValue<CellKind>(cells)) {
    case CellKind::kMissing:
      return statement.BindNull(parameter);
    case CellKind::kInteger:
      return statement.Bind(parameter, std::int64_t{TakeValue<std::uint32_t>(cells)});
    case CellKind::kNumber:
      return statement.BindNumber(parameter, TakeValue<double>(cells));
    case CellKind::kText:
      return statement.Bind(parameter, TakeText(cells));
  }
}

void AddFinding(Statement& insert, const Finding& finding) {
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

}  // namespace

class Store::Writer {
 public:
  Writer(const std::string& path, const cable_info::RuleSettings& settings)
      : database_(path, Database::Mode::kWrite), judged_(settings) {}

  void Begin(const Snapshot& snapshot) {
    database_.Execute("PRAGMA synchronous = NORMAL");
    database_.Execute("PRAGMA foreign_keys = ON");
    database_.Execute("BEGIN IMMEDIATE");
    CreateTables();
    Statement insert(database_, InsertStatement(StoreTable::kSnapshot));
    insert.Bind(1, snapshot.taken_at);
    const std::string input = Utf8Of(snapshot.input);
    insert.Bind(2, input);
    insert.Bind(3, cable_info::kVersion);
    insert.Run();
    snapshot_ = sqlite3_last_insert_rowid(database_.connection());
    insert_cable_.emplace(database_, InsertStatement(StoreTable::kCable));
    insert_reading_.emplace(database_, InsertStatement(StoreTable::kReading));
    insert_record_.emplace(database_, InsertStatement(StoreTable::kPortRecord));
    insert_cable_->Bind(kSnapshotParameter, snapshot_);
    insert_reading_->Bind(kSnapshotParameter, snapshot_);
    insert_record_->Bind(kSnapshotParameter, snapshot_);
  }

  void Add(std::string_view ports) {
    while (!ports.empty()) {
      const auto head = TakeValue<Head>(ports);
      const std::string_view label = TakeText(ports);
      const std::string_view record = TakeText(ports);
      const std::string_view cells = TakeText(ports);
      const std::string_view readings = TakeText(ports);
      const std::string_view judgement = TakeText(ports);
      if (!ports_.Add({head.port_guid, head.number}, label)) continue;
      AddRecord(record);
      AddCable(label, cells);
      AddReadings(head, label, readings);
      judged_.Add(judgement);
    }
  }

  void Finish() {
    judged_.Finish();
    Statement insert(database_, InsertStatement(StoreTable::kFinding));
    insert.Bind(kSnapshotParameter, snapshot_);
    for (std::size_t port = 0; port < judged_.size(); ++port) {
      const std::vector<Finding> findings = judged_.FindingsOf(port);
      if (findings.empty()) continue;
      const std::string node_guid = GuidText(judged_.NodeGuidOf(port));
      const std::string port_guid = GuidText(judged_.IdOf(port).guid);
      const std::string label = Utf8Of(judged_.LabelOf(port));
      BindPort(insert, node_guid, port_guid, judged_.IdOf(port).number, label);
      for (const Finding& finding : findings) AddFinding(insert, finding);
    }
  }

  void Commit(std::optional<std::uint32_t> keep) {
    if (keep) DropAllBut(*keep);
    database_.Execute("COMMIT");
    // Readers do not wait for the writer from now on. Not before the first snapshot, because the
    // mode is part of the file.
    sqlite3_exec(database_.connection(), "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
  }

  std::size_t repeated_ports() const { return ports_.repeated(); }

 private:
  // The rows of a snapshot are deleted with it.
  void DropAllBut(std::uint32_t keep) const {
    database_.Execute(
        "DELETE FROM snapshot WHERE id NOT IN (SELECT id FROM snapshot ORDER BY taken_at DESC, "
        "id DESC LIMIT " +
        std::to_string(keep) + ')');
  }

  void CreateTables() const {
    if (database_.Identify() == Database::Content::kStore) return;
    database_.Execute(StoreSchema());
    database_.Execute("PRAGMA application_id = " + std::to_string(kApplicationId));
    database_.Execute("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  }

  static void BindPort(Statement& statement, std::string_view node_guid, std::string_view port_guid,
                       std::uint32_t number, std::string_view label) {
    statement.Bind(kNodeGuidParameter, node_guid);
    statement.Bind(kPortGuidParameter, port_guid);
    statement.Bind(kPortNumParameter, std::int64_t{number});
    BindText(statement, kLabelParameter, label);
  }

  void AddRecord(std::string_view record) {
    insert_record_->Bind(kSnapshotParameter + 1, record);
    insert_record_->Run();
  }

  void AddCable(std::string_view label, std::string_view cells) {
    int parameter = kSnapshotParameter;
    BindText(*insert_cable_, ++parameter, label);
    while (!cells.empty()) BindCell(*insert_cable_, ++parameter, cells);
    insert_cable_->Run();
  }

  void AddReadings(const Head& head, std::string_view label, std::string_view readings) {
    const std::string node_guid = GuidText(head.node_guid);
    const std::string port_guid = GuidText(head.port_guid);
    BindPort(*insert_reading_, node_guid, port_guid, head.number, label);
    while (!readings.empty()) {
      const auto reading = TakeValue<StoredReading>(readings);
      int parameter = kLabelParameter;
      insert_reading_->Bind(++parameter, TakeText(readings));
      insert_reading_->Bind(++parameter, std::int64_t{reading.lane});
      BindNumber(*insert_reading_, ++parameter, reading.value);
      insert_reading_->Bind(++parameter, TakeText(readings));
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

  Database database_;
  std::int64_t snapshot_ = 0;
  std::optional<Statement> insert_cable_;
  std::optional<Statement> insert_reading_;
  std::optional<Statement> insert_record_;
  PortSet ports_;
  CheckResult judged_;
};

void WriteStoredPort(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings) {
  const Readings port_readings = ReadingsOf(port);
  PackedCells cells;
  VisitCells(port, cells);
  TextBuffer readings;
  AppendReadings(readings, port_readings);
  std::ostringstream judgement;
  WriteJudgedPort(judgement, port, port_readings, settings);
  const std::string label = Utf8Of(port.label);
  PackValue(os, Head{port.node_guid, port.port_guid, port.number});
  for (const std::string_view part : {std::string_view(label), std::string_view(port.record),
                                      cells.view(), readings.view(), judgement.view()}) {
    PackText(os, part);
  }
}

Store::Store(const std::string& path, const cable_info::RuleSettings& settings)
    : writer_(std::make_unique<Writer>(path, settings)) {}
Store::~Store() = default;
void Store::Begin(const Snapshot& snapshot) { writer_->Begin(snapshot); }
void Store::Add(std::string_view ports) { writer_->Add(ports); }
void Store::Finish() { writer_->Finish(); }
void Store::Commit(std::optional<std::uint32_t> keep) { writer_->Commit(keep); }
std::size_t Store::repeated_ports() const { return writer_->repeated_ports(); }

}  // namespace cli
