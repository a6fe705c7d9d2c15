#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace cli {

/// A port of this machine that a module can be plugged into.
struct LivePort {
  std::string device;        ///< of class/infiniband; empty: a network interface alone
  std::uint32_t number = 0;  ///< of the port of that device, from 1
  std::uint64_t node_guid = 0;
  std::uint64_t port_guid = 0;
  std::string interface;  ///< of class/net; empty: none
  std::string eeprom;     ///< a file with the module's memory; empty: none

  /// "ib0", "hca0/1" of a port without interface, or the name of its EEPROM file's port.
  std::string Name() const;
  std::string name_of_eeprom;  ///< the driver's name for the port of the file
};

/// The ports under `sysfs`, usually /sys:
///
/// - `class/infiniband/DEVICE/ports/N`, except those of virtual functions, which share a module
///   with their physical function; GUIDs are those of `node_guid` and `gids/0`; the interface is
///   named by `gid_attrs/ndevs/0`, or is the one in `device/net` whose `dev_port` is N - 1;
/// - `class/net/INTERFACE` of the other devices, if they have a `device`;
/// - `bus/i2c/devices/DEVICE/eeprom` where a `port_name` beside it names the port, or is the name
///   of one of those interfaces.
///
/// Sorted by device and number, then by name.
std::vector<LivePort> FindPorts(const std::filesystem::path& sysfs);

/// The ports that `names` name: an interface, a device, a port of a device (`hca0/1`), or the
/// path of an EEPROM file. A network interface need not be one that `FindPorts` lists. Appends
/// names without a port to `unknown`.
std::vector<LivePort> SelectPorts(const std::vector<LivePort>& ports,
                                  const std::vector<std::string>& names,
                                  const std::filesystem::path& sysfs,
                                  std::vector<std::string>& unknown);

}  // namespace cli
