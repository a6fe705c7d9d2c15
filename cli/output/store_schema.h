#pragma once

#include <string>

namespace cli {

/// The statements that create all tables, indexes and views of a store; docs/store.md describes
/// them.
std::string StoreSchema();

/// The statement that adds a row to the table `cable`: the snapshot, the label and the 177 cells.
std::string InsertCableStatement();

}  // namespace cli
