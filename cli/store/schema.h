#pragma once

#include <cstdint>
#include <string>

namespace cli {

/// Marks a file as a store, in SQLite's `application_id`: "CBLI".
inline constexpr std::int64_t kApplicationId = 0x43424C49;

/// The version of the tables, in SQLite's `user_version`.
inline constexpr std::int64_t kSchemaVersion = 1;

/// The statements that create all tables, indexes and views of a store; docs/store.md describes
/// them.
std::string StoreSchema();

enum class StoreTable : std::uint8_t { kSnapshot, kCable, kReading, kFinding, kPortRecord };

/// The statement that adds a row to a table. Its parameters are the columns of the table, in their
/// order, without `id`.
std::string InsertStatement(StoreTable table);

}  // namespace cli
