// A plug-in that contains the library: a shared object linked with the static library.

#include <memory>
#include <string>
#include <utility>

#include "cable_info/combined_cable_info.h"

extern "C" int TemperatureIsShown() {
  auto record = std::make_unique<cable_info::CableRecord>();
  record->Temperature = 41 << 8;
  cable_info::CombinedCableInfo port;
  port.AttachCableRecord(std::move(record));
  return port.GetTemperatureStr() == "41C" ? 1 : 0;
}
