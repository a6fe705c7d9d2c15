#pragma once

// The file of a store, opened with SQLite, and its statements. The other headers of this folder
// build on it: `store.h` adds a snapshot, `snapshot_reader.h` reads one.

#include <sqlite3.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace cli {

/// Why a store cannot be used, in addition to the results of SQLite.
enum class StoreProblem {
  kOtherProgram = -1,  ///< the file is a database of another program
  kOtherVersion = -2,
  kNoSnapshot = -3,
  kNoSnapshotBefore = -4,
};

/// A database file could not be read or written.
class StoreError : public std::runtime_error {
 public:
  /// `result` is one of SQLite.
  explicit StoreError(int result);
  explicit StoreError(StoreProblem problem) : StoreError(static_cast<int>(problem)) {}

  const std::error_code& code() const { return code_; }

 private:
  std::error_code code_;
};

/// A connection to a file. Every function may throw `StoreError`.
class Database {
 public:
  enum class Mode { kRead, kWrite };

  /// An empty database in memory.
  Database();
  /// Opens the file; one to be written is created when there is none.
  Database(const std::string& name, Mode mode);
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  Database(Database&&) = delete;
  Database& operator=(Database&&) = delete;
  ~Database() { sqlite3_close(connection_); }

  sqlite3* connection() const { return connection_; }
  void Execute(const std::string& statements) const;
  /// The number that a query finds; 0 when it finds none.
  std::int64_t Number(const std::string& query) const;

  /// The content of the file.
  enum class Content { kNothing, kStore };
  /// Throws for the tables of another program or version.
  Content Identify() const;

 private:
  void Open(const std::string& name, int flags);

  sqlite3* connection_ = nullptr;
};

/// A prepared statement. Parameters are numbered from 1, columns from 0.
class Statement {
 public:
  Statement(const Database& database, const std::string& text);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  Statement(Statement&&) = delete;
  Statement& operator=(Statement&&) = delete;
  ~Statement() { sqlite3_finalize(statement_); }

  /// A text must stay until the statement has run.
  void Bind(int number, std::string_view text);
  void Bind(int number, std::int64_t value);
  void BindNumber(int number, double value);
  void BindNull(int number);

  /// Runs to the next row; false when there is none.
  bool Step();
  /// Runs a statement without rows, to be run again.
  void Run();

  std::int64_t Integer(int column) const { return sqlite3_column_int64(statement_, column); }
  /// Valid until the next step.
  std::string_view Text(int column) const;

 private:
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace cli
