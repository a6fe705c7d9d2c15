#pragma once

/// \file
/// Which parts of a module's memory to read, for readers of live modules.

#include <cstdint>
#include <vector>

#include "cable_info/module_memory/module_image.h"

namespace cable_info {

/// Half a page of a module's memory: 128 bytes from byte `first`, 0 or 128, on.
struct MemoryPart {
  Page page = Page::kLower;  ///< the page that it belongs to
  std::uint8_t first = 0;    ///< its first byte: 0 or 128

  /// True if both are the same part.
  friend bool operator==(const MemoryPart& a, const MemoryPart& b) {
    return a.page == b.page && a.first == b.first;
  }
};

/// The name of the first 128 bytes of a module whose byte 0 is `identifier`: `Page::kA0` for SFP
/// modules, else `Page::kLower`.
Page FirstPageOf(std::uint8_t identifier);

/// The parts that the bytes in `image` advertise and that decoders use. A part that was read may
/// advertise others, so a reader calls this again after each part, until all parts of the list were
/// read or tried:
///
///     image empty                     -> lower
///     lower of an OSFP module         -> lower, 00h, 01h, 02h, 10h, 11h
///     01h, which advertises VDM       -> ..., 2Fh
///     2Fh: one group                  -> ..., 20h, 24h, 28h, 2Ch
///
/// The first part is the lower page under the name that `FirstPageOf` gives it. A part precedes
/// those that it advertises. Whatever the module advertises, the list has at most `kMaxMemoryParts`
/// parts.
std::vector<MemoryPart> PartsToRead(const ModuleImage& image);

/// The maximum number of parts to read from a module.
inline constexpr std::size_t kMaxMemoryParts = 256;

}  // namespace cable_info
