#include "cli/live/sysfs.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>

namespace cli {

namespace {

namespace fs = std::filesystem;

// The first line of an attribute; empty when it cannot be read.
std::string Attribute(const fs::path& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

// The names in a folder, sorted; none when there is no such folder.
std::vector<std::string> Names(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool Exists(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

std::optional<std::uint64_t> Number(std::string_view text, int base) {
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number, base);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

// The last 16 digits of "fe80:0000:0000:0000:a0b1:c200:00d4:e501"; 0 for anything else.
std::uint64_t GuidIn(std::string text) {
  constexpr std::size_t kDigits = 16;
  constexpr int kHexadecimal = 16;
  text.erase(std::remove(text.begin(), text.end(), ':'), text.end());
  if (text.size() < kDigits) return 0;
  return Number(std::string_view(text).substr(text.size() - kDigits), kHexadecimal).value_or(0);
}

bool IsVirtualFunction(const fs::path& device) { return Exists(device / "device" / "physfn"); }

// Children of an interface (partitions) and representors of functions share its module.
bool IsOwnInterface(const fs::path& interface) {
  if (Exists(interface / "parent")) return false;
  const std::string name = Attribute(interface / "phys_port_name");
  return name.find("vf") == std::string::npos && name.find("sf") == std::string::npos;
}

std::string InterfaceOf(const fs::path& device, std::uint32_t number) {
  const fs::path net = device / "device" / "net";
  const fs::path port = device / "ports" / std::to_string(number);
  std::string of_port = Attribute(port / "gid_attrs" / "ndevs" / "0");
  if (!of_port.empty()) return of_port;
  const bool is_only_port = Names(device / "ports").size() == 1;
  for (const std::string& name : Names(net)) {
    if (!IsOwnInterface(net / name)) continue;
    const auto port_of_interface = Number(Attribute(net / name / "dev_port"), 10);
    // An adapter with a device for each of its ports numbers the interfaces of each from 0.
    if (port_of_interface == number - 1U || (is_only_port && !port_of_interface)) return name;
  }
  return {};
}

void AddInfiniBand(const fs::path& sysfs, std::vector<LivePort>& ports) {
  const fs::path devices = sysfs / "class" / "infiniband";
  for (const std::string& device : Names(devices)) {
    const fs::path folder = devices / device;
    if (IsVirtualFunction(folder)) continue;
    std::vector<std::uint32_t> numbers;
    for (const std::string& name : Names(folder / "ports")) {
      const auto number = Number(name, 10);
      if (number && *number > 0 && *number <= UINT32_MAX) {
        numbers.push_back(static_cast<std::uint32_t>(*number));
      }
    }
    std::sort(numbers.begin(), numbers.end());
    for (const std::uint32_t number : numbers) {
      LivePort port;
      port.device = device;
      port.number = number;
      port.node_guid = GuidIn(Attribute(folder / "node_guid"));
      port.port_guid = GuidIn(Attribute(folder / "ports" / std::to_string(number) / "gids" / "0"));
      port.interface = InterfaceOf(folder, number);
      ports.push_back(std::move(port));
    }
  }
}

// Interfaces of devices other than InfiniBand devices.
void AddInterfaces(const fs::path& sysfs, std::vector<LivePort>& ports) {
  std::set<std::string> known;
  for (const LivePort& port : ports) known.insert(port.interface);
  const fs::path interfaces = sysfs / "class" / "net";
  for (const std::string& name : Names(interfaces)) {
    const fs::path folder = interfaces / name;
    const bool is_own = Exists(folder / "device") && !IsVirtualFunction(folder) &&
                        !Exists(folder / "device" / "infiniband") && IsOwnInterface(folder);
    if (!is_own || known.contains(name)) continue;
    LivePort port;
    port.interface = name;
    ports.push_back(std::move(port));
  }
}

void AddEepromFiles(const fs::path& sysfs, std::vector<LivePort>& ports) {
  const fs::path devices = sysfs / "bus" / "i2c" / "devices";
  for (const std::string& device : Names(devices)) {
    const fs::path eeprom = devices / device / "eeprom";
    const std::string name = Attribute(devices / device / "port_name");
    if (name.empty() || !Exists(eeprom)) continue;
    const auto same = std::find_if(ports.begin(), ports.end(), [&](const LivePort& port) {
      return (port.interface == name || port.Name() == name) && port.eeprom.empty();
    });
    LivePort& port = same == ports.end() ? ports.emplace_back() : *same;
    port.eeprom = eeprom.string();
    port.name_of_eeprom = name;
  }
}

bool IsNamed(const LivePort& port, const std::string& name) {
  if (name.empty()) return false;
  return port.Name() == name || port.interface == name || port.device == name ||
         port.name_of_eeprom == name ||
         (!port.device.empty() && port.device + '/' + std::to_string(port.number) == name);
}

// A port that is not listed: a virtual interface, or a file.
std::optional<LivePort> Unlisted(const std::string& name, const fs::path& sysfs) {
  LivePort port;
  if (name.find('/') != std::string::npos) {
    if (!Exists(name)) return std::nullopt;
    port.eeprom = name;
    port.name_of_eeprom = name;
    return port;
  }
  const bool is_name = !name.empty() && name != "." && name != "..";
  if (!is_name || !Exists(sysfs / "class" / "net" / name)) return std::nullopt;
  port.interface = name;
  return port;
}

}  // namespace

std::string LivePort::Name() const {
  if (!interface.empty()) return interface;
  if (!device.empty()) return device + '/' + std::to_string(number);
  return name_of_eeprom;
}

std::vector<LivePort> FindPorts(const fs::path& sysfs) {
  std::vector<LivePort> ports;
  AddInfiniBand(sysfs, ports);
  AddInterfaces(sysfs, ports);
  AddEepromFiles(sysfs, ports);
  return ports;
}

std::vector<LivePort> SelectPorts(const std::vector<LivePort>& ports,
                                  const std::vector<std::string>& names, const fs::path& sysfs,
                                  std::vector<std::string>& unknown) {
  if (names.empty()) return ports;
  std::vector<LivePort> selected;
  std::set<std::string> taken;
  for (const std::string& name : names) {
    bool is_known = false;
    for (const LivePort& port : ports) {
      if (!IsNamed(port, name)) continue;
      is_known = true;
      if (taken.insert(port.Name()).second) selected.push_back(port);
    }
    if (is_known) continue;
    const std::optional<LivePort> port = Unlisted(name, sysfs);
    if (!port) {
      unknown.push_back(name);
    } else if (taken.insert(port->Name()).second) {
      selected.push_back(*port);
    }
  }
  return selected;
}

}  // namespace cli
