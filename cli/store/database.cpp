#include "cli/store/database.h"

#include <unistd.h>

#include "cli/store/schema.h"

namespace cli {

namespace {

constexpr int kWaitMilliseconds = 60'000;

class StoreCategory : public std::error_category {
 public:
  const char* name() const noexcept override { return "store"; }
  std::string message(int value) const override {
    if (value >= 0) return sqlite3_errstr(value);
    switch (static_cast<StoreProblem>(value)) {
      case StoreProblem::kOtherProgram:
        return "the file is a database of another program";
      case StoreProblem::kOtherVersion:
        return "the tables were written by another version of this program";
      case StoreProblem::kNoSnapshot:
        return "there is no such snapshot";
      case StoreProblem::kNoSnapshotBefore:
        return "there is no snapshot before it";
    }
    return "unknown problem";
  }
};

std::error_code StoreErrorCode(int value) {
  static const StoreCategory category;
  return {value, category};
}

void Check(int result) {
  if (result != SQLITE_OK && result != SQLITE_ROW && result != SQLITE_DONE) {
    throw StoreError(result);
  }
}

// False if SQLite needs other files next to this one that it cannot create.
bool IsReadable(sqlite3* connection) {
  const int result =
      sqlite3_exec(connection, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
  return result != SQLITE_READONLY && result != SQLITE_CANTOPEN;
}

// The name of the file for SQLite, which takes names that begin with ":" or "file:" for databases
// in memory and for URIs.
std::string PathOf(const std::string& name) { return name.starts_with('/') ? name : "./" + name; }

// "file:fabric.db", with its special characters escaped.
std::string UriOf(const std::string& path) {
  std::string uri = "file:";
  for (const char c : path) {
    if (c == '%') {
      uri += "%25";
    } else if (c == '?') {
      uri += "%3f";
    } else if (c == '#') {
      uri += "%23";
    } else {
      uri += c;
    }
  }
  return uri;
}

}  // namespace

StoreError::StoreError(int result)
    : std::runtime_error(StoreErrorCode(result).message()), code_(StoreErrorCode(result)) {}

Database::Database() { Open(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY); }

Database::Database(const std::string& name, Mode mode) {
  const std::string path = PathOf(name);
  if (mode == Mode::kWrite) {
    Open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    return;
  }
  Open(path, SQLITE_OPEN_READONLY);
  if (IsReadable(connection_) || access((path + "-wal").c_str(), F_OK) == 0) return;
  // In WAL mode, readers and writers share a file next to the database, which the reader may not be
  // allowed to create. Without a writer it is not needed.
  sqlite3_close(connection_);
  Open(UriOf(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

void Database::Open(const std::string& name, int flags) {
  const int result =
      sqlite3_open_v2(name.c_str(), &connection_, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  if (result != SQLITE_OK) {
    sqlite3_close(connection_);
    throw StoreError(result);
  }
  sqlite3_busy_timeout(connection_, kWaitMilliseconds);
}

void Database::Execute(const std::string& statements) const {
  Check(sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr));
}

std::int64_t Database::Number(const std::string& query) const {
  Statement statement(*this, query);
  return statement.Step() ? statement.Integer(0) : 0;
}

Database::Content Database::Identify() const {
  if (Number("PRAGMA application_id") == kApplicationId) {
    if (Number("PRAGMA user_version") == kSchemaVersion) return Content::kStore;
    throw StoreError(StoreProblem::kOtherVersion);
  }
  if (Number("SELECT count(*) FROM sqlite_master") == 0) return Content::kNothing;
  throw StoreError(StoreProblem::kOtherProgram);
}

Statement::Statement(const Database& database, const std::string& text) {
  Check(sqlite3_prepare_v2(database.connection(), text.c_str(), static_cast<int>(text.size()),
                           &statement_, nullptr));
}

void Statement::Bind(int number, std::string_view text) {
  Check(sqlite3_bind_text(statement_, number, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC));
}

void Statement::Bind(int number, std::int64_t value) {
  Check(sqlite3_bind_int64(statement_, number, value));
}

void Statement::BindNumber(int number, double value) {
  Check(sqlite3_bind_double(statement_, number, value));
}

void Statement::BindNull(int number) { Check(sqlite3_bind_null(statement_, number)); }

bool Statement::Step() {
  const int result = sqlite3_step(statement_);
  Check(result);
  return result == SQLITE_ROW;
}

void Statement::Run() {
  Step();
  sqlite3_reset(statement_);
}

std::string_view Statement::Text(int column) const {
  const auto* const text = static_cast<const char*>(sqlite3_column_blob(statement_, column));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

}  // namespace cli
