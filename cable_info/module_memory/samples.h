#pragma once

// Samples of versatile diagnostics: CMIS pages 20h to 2Fh, SFF-8636 pages 20h and 21h.
//
// Internal; not installed.

#include <cstddef>
#include <cstdint>

#include "cable_info/module_memory/cmis_vdm.h"
#include "cable_info/module_memory/memory_map.h"

namespace cable_info {
namespace [[gnu::visibility("hidden")]] module_memory {

/// The half of a byte that has the four flags of a sample.
enum class Nibble : std::uint8_t { kLow, kHigh };

/// The order of the four flags in it: that of `AlarmLevel` from bit 0 up, or from bit 3 down.
enum class FlagOrder : std::uint8_t { kUp, kDown };

/// A word of a page that is the value of a sample, its four flags and its four thresholds.
struct SamplePlace {
  const ModuleImage::Half& values;
  std::size_t value;  ///< the first of two bytes
  const ModuleImage::Half& thresholds;
  std::size_t threshold;  ///< the first of four words, in the order of `AlarmLevel`
  const ModuleImage::Half& flags;
  std::size_t flag;  ///< the byte
  Nibble nibble;
  FlagOrder order;
};

/// Reads a sample of an observable.
Monitor ReadSample(const SamplePlace& place, const VdmObservable& observable);

/// The sample of an observable of `lane`, 0 for the module; `observable` is null for a type without
/// a name.
VdmSample SampleOf(const VdmObservable* observable, unsigned type, unsigned lane,
                   const Monitor& monitor);

}  // namespace module_memory
}  // namespace cable_info
