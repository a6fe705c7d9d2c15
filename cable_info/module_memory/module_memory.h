#pragma once

/// \file
/// Records from the memory of a module, for rows and reports.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/module_memory/module_image.h"
#include "cable_info/module_memory/module_info.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info::module_memory {

/// The name of the source, in rows and reports, of a `PhyCableRecord` from a module's memory.
inline constexpr std::string_view kModuleSource = "MODULE";

/// A decoded module: one record, of the kind that corresponds to its family.
struct ModuleReading {
  /// Of a module with the memory map of SFF-8636; else null.
  std::unique_ptr<CableRecord> cable;
  /// Of a module with the memory map of CMIS or SFF-8472; else null.
  std::unique_ptr<PhyCableRecord> phy;
  /// Checksums that do not match, a sentence each.
  std::vector<std::string> mismatches;
  /// All other remarks.
  std::vector<std::string> remarks;
};

/// Splits an image into pages, which follow each other in the order of the family. Appends remarks
/// to `remarks`. Throws `BadModule`.
ModuleImage SplitImage(const DumpBytes& image, std::vector<std::string>& remarks);
/// The same, of an image without missing bytes.
ModuleImage SplitImage(const std::vector<std::uint8_t>& image, std::vector<std::string>& remarks);

/// Decodes an image, in which pages follow each other in the order of the family. Throws
/// `BadModule` if it is not the memory of a module, or of one that fills no record; `Decode`
/// decodes more modules than there are records for.
ModuleReading ReadModule(const DumpBytes& image);

/// Decodes memory given page by page. Throws `BadModule` in the same cases.
ModuleReading ReadModule(const ModuleImage& pages);

/// A checksum that does not match, as a sentence.
std::string MismatchText(const PageChecksum& sum);

/// The treatment of a module whose memory has a wrong checksum.
enum class ChecksumPolicy {
  kReport,  ///< it is decoded, with a remark
  kRefuse,  ///< it is a `BadModule`
};

/// Appends the remarks of a reading to `remarks`, those on checksums first. Throws `BadModule` for
/// a mismatch that is refused.
void ReportChecksums(const ModuleReading& reading, ChecksumPolicy policy,
                     std::vector<std::string>& remarks);

}  // namespace cable_info::module_memory
