#pragma once

#include <string>

#include "cable_info/module_memory/module_image.h"
#include "cli/live/sysfs.h"

namespace cli {

/// A port that was read.
struct LiveRecord {
  const LivePort& port;
  std::string label;
  std::string taken_at;                   ///< "2026-01-31T12:00:00Z"; empty: not written
  const cable_info::ModuleImage& memory;  ///< empty: no module
};

/// The record as a line of JSON, without line break, as `PortReader` reads it.
std::string LiveRecordText(const LiveRecord& record);

}  // namespace cli
