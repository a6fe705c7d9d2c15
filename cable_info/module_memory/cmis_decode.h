#pragma once

// The parts of the decoder of CMIS.
//
// Internal; not installed.

#include <cstdint>

#include "cable_info/module_memory/cmis_lanes.h"
#include "cable_info/module_memory/memory_map.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// Flat memory is the lower page and page 00h.
enum class MemoryModel : std::uint8_t { kFlat, kPaged };

/// Adds the applications, those of page 1Ch of paged memory only.
void DecodeApplications(Decoding& to, MemoryModel memory);
/// Adds the InfiniBand speeds of the applications, ascending.
void AddSpeeds(ModuleInfo& info);

/// Adds the lanes of the layout, and decodes their fields if the memory is paged.
void DecodeLaneFields(Decoding& to, const LaneLayout& layout, MemoryModel memory);

/// Adds the samples of VDM, pages 20h to 2Fh of all banks.
void DecodeVdm(Decoding& to, const LaneLayout& layout);
/// Adds the numbers of the coherent pages 34h and 35h, if the module has them.
void DecodeCoherent(Decoding& to);

}  // namespace module_memory
}  // namespace cable_info
