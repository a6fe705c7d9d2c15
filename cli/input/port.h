#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cable_info/combined_cable_info.h"
#include "cable_info/module_memory/module_info.h"
#include "cable_info/readings/fabric_rules.h"
#include "cable_info/readings/readings.h"
#include "cable_info/text/text_buffer.h"
#include "cable_info/value_format.h"

namespace cli {

/// The results that a reader decodes from a module's memory.
enum class ModuleUse {
  kRecords,  ///< the record that its family fills
  kInfo,     ///< its contents as named values
  kRecordsAndInfo,
};

/// A port as it was read: its identity and its cable.
struct Port {
  /// Attaches the records that there are; either may be null.
  void Attach(std::unique_ptr<cable_info::CableRecord> cable_pages,
              std::unique_ptr<cable_info::PhyCableRecord> phy);

  std::uint64_t node_guid = 0;
  std::uint64_t port_guid = 0;
  std::uint32_t number = 0;
  std::string label;                       ///< the user's name of the port; may be empty
  std::optional<cable_info::PortId> peer;  ///< the port at the other end of the link
  int checksum_mismatches = 0;             ///< of the memory that its records come from
  /// The port record as text, with a dump in place of the name of its file; empty unless the
  /// writer needs it.
  std::string record;
  cable_info::CombinedCableInfo cable;
  /// The records that `cable` owns; null where it has none.
  cable_info::CableRecord* cable_record = nullptr;
  cable_info::PhyCableRecord* phy_cable_record = nullptr;
  /// The contents of the module's memory, when it was given and `ModuleUse` asks for them; else
  /// null. Its reader owns them and reuses their memory for the next port.
  const cable_info::ModuleInfo* module = nullptr;
};

/// The readings of the port, from the memory of its module if that was decoded.
cable_info::Readings ReadingsOf(const Port& port);

/// A GUID as the table writes it: "0x" and 16 digits.
void AppendGuid(cable_info::text::TextBuffer& out, std::uint64_t guid);
std::string GuidText(std::uint64_t guid);
/// GUID and number of a port: "0xa0b1c20000d4e500/5".
std::string PortText(std::uint64_t guid, std::uint32_t number);

/// The name of a port in messages: `port 0xa0b1c20000d4e501/1 "label"`.
std::string PortName(const Port& port);

}  // namespace cli
