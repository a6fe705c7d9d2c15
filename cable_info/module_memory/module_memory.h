#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/module_memory/module_image.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info::module_memory {

/// How rows and reports name the source of a `PhyCableRecord` that comes from a module's memory.
inline constexpr std::string_view kModuleSource = "MODULE";

/// What a module's memory tells: one record, of the kind that its family fills.
struct ModuleReading {
  std::unique_ptr<cable_info::CableRecord> cable;
  std::unique_ptr<cable_info::PhyCableRecord> phy;
  /// Checksums that do not match, a sentence each.
  std::vector<std::string> mismatches;
  /// Whatever else there is to remark.
  std::vector<std::string> remarks;
};

/// Decodes an image: its pages one behind the other, in the order of the family. Throws `BadModule`
/// for what is no module's memory.
ModuleReading ReadModule(const DumpBytes& image);

/// Decodes a memory that was given page by page. Throws `BadModule`.
ModuleReading ReadModule(ModuleImage pages);

/// Adds what the reading has to remark to `remarks`. Mismatches of checksums are remarks, or when
/// `strict` is set a `BadModule`.
void Judge(const ModuleReading& reading, bool strict, std::vector<std::string>& remarks);

}  // namespace cable_info::module_memory
