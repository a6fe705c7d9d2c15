#include "cli/store/snapshot_reader.h"

#include <sys/stat.h>

#include <array>
#include <charconv>
#include <fstream>
#include <string_view>

#include "cli/input/input_name.h"

namespace cli {

namespace {

// True for a database of SQLite. Nothing is read of a pipe.
bool IsDatabase(const std::string& path) {
  constexpr std::string_view kMagic("SQLite format 3\0", 16);
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  std::ifstream file(path, std::ios::binary);
  std::array<char, kMagic.size()> begin{};
  file.read(begin.data(), begin.size());
  return file && std::string_view(begin.data(), begin.size()) == kMagic;
}

bool Exists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0;
}

// The number of the snapshot in a store that was opened.
std::int64_t NumberIn(const Database& database, const SnapshotName& snapshot) {
  if (database.Identify() == Database::Content::kNothing) {
    throw StoreError(StoreProblem::kNoSnapshot);
  }
  const std::string query =
      snapshot.number ? "SELECT id FROM snapshot WHERE id = " + std::to_string(*snapshot.number)
                      : "SELECT id FROM latest_snapshot";
  const std::int64_t number = database.Number(query);
  if (number == 0) throw StoreError(StoreProblem::kNoSnapshot);
  return number;
}

// Begins a transaction, so that the snapshot cannot be deleted between two statements.
std::string SelectRecords(const Database& database, const SnapshotName& snapshot) {
  database.Execute("BEGIN");
  return "SELECT record FROM port_record WHERE snapshot_id = " +
         std::to_string(NumberIn(database, snapshot)) + " ORDER BY id";
}

}  // namespace

std::string SnapshotName::Input() const {
  return number ? store + '@' + std::to_string(*number) : store;
}

std::optional<SnapshotName> FindSnapshot(const std::string& input) {
  if (IsStandardInput(input)) return std::nullopt;
  if (IsDatabase(input)) return SnapshotName{input, std::nullopt};
  const std::size_t at = input.rfind('@');
  if (at == std::string::npos || Exists(input)) return std::nullopt;
  std::int64_t number = 0;
  const char* const end = input.data() + input.size();
  const auto read = std::from_chars(input.data() + at + 1, end, number);
  if (read.ec != std::errc() || read.ptr != end || number <= 0) return std::nullopt;
  std::string store = input.substr(0, at);
  if (!IsDatabase(store)) return std::nullopt;
  return SnapshotName{std::move(store), number};
}

SnapshotName Numbered(const SnapshotName& snapshot) {
  return {snapshot.store, NumberIn(Database(snapshot.store, Database::Mode::kRead), snapshot)};
}

SnapshotName SnapshotBefore(const SnapshotName& snapshot) {
  const Database database(snapshot.store, Database::Mode::kRead);
  const std::int64_t before = database.Number("SELECT previous_id FROM snapshot_pair WHERE id = " +
                                              std::to_string(NumberIn(database, snapshot)));
  if (before == 0) throw StoreError(StoreProblem::kNoSnapshotBefore);
  return {snapshot.store, before};
}

std::string TakenAt(const SnapshotName& snapshot) {
  const Database database(snapshot.store, Database::Mode::kRead);
  Statement query(database, "SELECT taken_at FROM snapshot WHERE id = " +
                                std::to_string(NumberIn(database, snapshot)));
  return query.Step() ? std::string(query.Text(0)) : std::string();
}

SnapshotReader::SnapshotReader(const SnapshotName& snapshot)
    : database_(snapshot.store, Database::Mode::kRead),
      records_(database_, SelectRecords(database_, snapshot)) {}

std::optional<LineReader::Line> SnapshotReader::Next() {
  if (!records_.Step()) return std::nullopt;
  const std::string_view record = records_.Text(0);
  ++number_;
  bytes_ += record.size();
  // A record has the text of its line, and the dump of the file that the line names.
  constexpr std::size_t kMaxRecord = 2 * LineReader::kMaxLine;
  return LineReader::Line{record, record.size() > kMaxRecord};
}

}  // namespace cli
