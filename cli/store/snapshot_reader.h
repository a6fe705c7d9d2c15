#pragma once

// Snapshots of a store as inputs. Wherever a command reads port records, the name of a store,
// "fabric.db", means the records of its latest snapshot, and "fabric.db@3" those of snapshot 3:
// `BlockReader` reads them in place of the lines of a file, so that every command takes them.
//
//     if (const auto name = FindSnapshot("fabric.db")) {
//       const std::string before = SnapshotBefore(*name).Input();   // "fabric.db@2"
//     }

#include <cstdint>
#include <optional>
#include <string>

#include "cli/input/line_reader.h"
#include "cli/store/database.h"

namespace cli {

/// A snapshot by its store and number.
struct SnapshotName {
  std::string store;                   ///< the path of the file
  std::optional<std::int64_t> number;  ///< none: the latest one

  /// The name as an input: "fabric.db" or "fabric.db@3".
  std::string Input() const;
};

/// The snapshot that an input names; none if it is anything else, such as a file of port records.
/// Does not check that the store has the snapshot.
std::optional<SnapshotName> FindSnapshot(const std::string& input);

/// A snapshot by its number, even if it was named as the latest one. Throws `StoreError`.
SnapshotName Numbered(const SnapshotName& snapshot);

/// The snapshot before the given one, in the order of time. Throws `StoreError`; there may be none.
SnapshotName SnapshotBefore(const SnapshotName& snapshot);

/// When a snapshot was taken, such as "2026-01-31T12:00:00Z". Throws `StoreError`.
std::string TakenAt(const SnapshotName& snapshot);

/// Reads the port records of a snapshot in the order in which they were added, in one transaction:
/// changes by others meanwhile are not visible. Every function may throw `StoreError`.
class SnapshotReader {
 public:
  explicit SnapshotReader(const SnapshotName& snapshot);

  /// \name As `LineReader` has them; a record is a line
  /// @{
  std::optional<LineReader::Line> Next();
  bool HasNext() const { return true; }
  std::uint64_t number() const { return number_; }
  std::uint64_t bytes() const { return bytes_; }
  /// @}

 private:
  Database database_;
  Statement records_;
  std::uint64_t number_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace cli
