#pragma once

// Samples of versatile diagnostics: CMIS pages 20h to 2Fh, SFF-8636 pages 20h and 21h.
//
// Internal; not installed.

#include <cstddef>

#include "cable_info/module_memory/cmis_vdm.h"
#include "cable_info/module_memory/memory_map.h"

namespace cable_info::module_memory {

/// A word of a page that is the value of a sample, its four flags and its four thresholds.
struct SamplePlace {
  const ModuleImage::Half& values;
  std::size_t value;  ///< the first of two bytes
  const ModuleImage::Half& thresholds;
  std::size_t threshold;  ///< the first of four words, in the order of `AlarmLevel`
  const ModuleImage::Half& flags;
  std::size_t flag;            ///< the byte
  bool is_flag_high;           ///< the flags are the high nibble
  bool is_high_alarm_highest;  ///< the flag of the high alarm is bit 3 of the nibble, else bit 0
};

/// Reads a sample of an observable.
Monitor ReadSample(const SamplePlace& place, const VdmObservable& observable);

/// The sample of an observable of `lane`, 0 for the module; `observable` is null for a type without
/// a name.
VdmSample SampleOf(const VdmObservable* observable, unsigned type, unsigned lane,
                   const Monitor& monitor);

}  // namespace cable_info::module_memory
