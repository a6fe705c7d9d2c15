#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cable_info/readings/rules.h"
#include "cli/input/port.h"

namespace cli {

/// Writes a port in a form that `Store::Add` reads. Any thread may do so.
void WriteStoredPort(std::ostream& os, const Port& port, const cable_info::RuleSettings& settings);

/// Adds one snapshot to an SQLite file, in one transaction:
///
///     Store store("fabric.db", settings);
///     store.Begin({"2026-01-31T12:00:00Z", "fabric.jsonl"});
///     store.Add(ports);                    // what WriteStoredPort wrote, as often as needed
///     store.Finish();                      // judges the fabric
///     store.Commit(7);                     // without it the file stays as it was
///
/// docs/store.md describes the tables. Other writers of the file wait from `Begin` on. Every
/// function may throw `StoreError`.
class Store {
 public:
  struct Snapshot {
    std::string taken_at;  ///< UTC, as `NormalizedTime` returns it
    std::string input;     ///< names of the inputs
  };

  /// Opens the file, and creates it when there is none.
  Store(const std::string& path, const cable_info::RuleSettings& settings);
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
  Store(Store&&) = delete;
  Store& operator=(Store&&) = delete;
  ~Store();

  /// Waits for other writers, creates the tables when there are none, and adds a snapshot.
  void Begin(const Snapshot& snapshot);
  /// Adds the ports that `WriteStoredPort` wrote one after the other. Of ports with the same GUID
  /// and number, only the first is stored.
  void Add(std::string_view ports);
  /// Adds the findings, after the last port.
  void Finish();
  /// Makes everything permanent, and drops all but the `keep` newest snapshots.
  void Commit(std::optional<std::uint32_t> keep);

  /// The number of ports that were left out because the snapshot already had them.
  std::size_t repeated_ports() const;

 private:
  class Writer;
  std::unique_ptr<Writer> writer_;
};

}  // namespace cli
