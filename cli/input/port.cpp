#include "cli/input/port.h"

#include <utility>

#include "cable_info/readings/module_readings.h"
#include "cli/printable.h"

namespace cli {

void Port::Attach(std::unique_ptr<cable_info::CableRecord> cable_pages,
                  std::unique_ptr<cable_info::PhyCableRecord> phy) {
  cable_record = cable_pages.get();
  phy_cable_record = phy.get();
  cable.AttachCableRecord(std::move(cable_pages));
  cable.AttachPhyCableRecord(std::move(phy));
}

cable_info::Readings ReadingsOf(const Port& port) {
  cable_info::Readings of_records = ReadingsOf(port.cable);
  if (port.module == nullptr) {
    of_records.checksum_mismatches = port.checksum_mismatches;
    return of_records;
  }
  cable_info::Readings readings = ReadingsOf(*port.module);
  readings.source = of_records.source;
  readings.lengths.measured = of_records.lengths.measured;
  readings.identity.lot = of_records.identity.lot;
  // SFP modules do not state their technology. The record derives it from other bytes, which do not
  // distinguish active copper cables from active optical ones.
  const bool is_certain = of_records.medium != cable_info::Medium::kActiveCopper;
  if (readings.medium == cable_info::Medium::kUnknown && is_certain) {
    readings.medium = of_records.medium;
  }
  return readings;
}

void AppendGuid(cable_info::text::TextBuffer& out, std::uint64_t guid) {
  constexpr int kHalfDigits = 8;
  out.AppendPrefixedHex(static_cast<std::uint32_t>(guid >> 32), kHalfDigits);
  out.AppendHex(static_cast<std::uint32_t>(guid), kHalfDigits);
}

std::string GuidText(std::uint64_t guid) { return cable_info::text::ToText(AppendGuid, guid); }

std::string PortText(std::uint64_t guid, std::uint32_t number) {
  return GuidText(guid) + '/' + std::to_string(number);
}

std::string PortName(const Port& port) {
  const std::string name = "port " + PortText(port.port_guid, port.number);
  return port.label.empty() ? name : name + " \"" + Shortened(port.label) + '"';
}

}  // namespace cli
