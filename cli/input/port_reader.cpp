#include "cli/input/port_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "cable_info/module_memory/module_memory.h"
#include "cable_info/prtl_record.h"
#include "cli/format_version.h"
#include "cli/input/dump_file.h"
#include "cli/input/input_name.h"
#include "cli/input/json_fields.h"
#include "cli/input/json_numbers.h"
#include "cli/input/line_reader.h"
#include "cli/input/module_memory.h"
#include "cli/input/module_remarks.h"
#include "cli/input/record_text.h"
#include "cli/printable.h"

namespace cli {

namespace {

using cable_info::CableRecord;
using cable_info::IsUpperPage;
using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::PageName;
using cable_info::PhyCableRecord;
using cable_info::PortId;
using cable_info::PrtlRecord;
using cable_info::module_memory::BadModule;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::ModuleReading;
using cable_info::module_memory::PageKey;
using cable_info::module_memory::ParseListing;
using cable_info::module_memory::ParsePageName;
using cable_info::module_memory::ParsePlainHex;
using cable_info::module_memory::PutPage;
using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;

static_assert(LineReader::kPadding >= simdjson::SIMDJSON_PADDING);

// Lanes 1..8, in this order.
template <auto kMember>
bool SetLanes(ModuleRecord& module, const Value& value) {
  auto& lanes = module.*kMember;
  return AssignElements(value, std::size(lanes), [&](std::size_t i) -> std::uint16_t& {
    return lanes[cable_info::PhyLaneIndex(static_cast<int>(i) + 1)];
  });
}

bool SetDateCode(ModuleRecord& module, const Value& value) {
  const std::optional<std::string_view> text = ShortText(sizeof(module.date_code), value);
  if (text) module.SetDateCode(*text);
  return text.has_value();
}

constexpr FieldTable kCableFields(std::to_array<Field<CableRecord>>({
    {"QueryStatus", Set<&CableRecord::QueryStatus>},
    {"Identifier", Set<&CableRecord::Identifier>},
    {"Connector", Set<&CableRecord::Connector>},
    {"SupportedSpeedMask", Set<&CableRecord::SupportedSpeedMask>},
    {"TransmitterTechnologyCode", Set<&CableRecord::TransmitterTechnologyCode>},
    {"LengthSmf", Set<&CableRecord::LengthSmf>},
    {"LengthOm3", Set<&CableRecord::LengthOm3>},
    {"LengthOm2", Set<&CableRecord::LengthOm2>},
    {"LengthOm1", Set<&CableRecord::LengthOm1>},
    {"LengthCopperOrActive", Set<&CableRecord::LengthCopperOrActive>},
    {"Temperature", Set<&CableRecord::Temperature>},
    {"OpaqueByte1", Set<&CableRecord::OpaqueByte1>},
    {"NominalBitrate", Set<&CableRecord::NominalBitrate>},
    {"PowerClass", Set<&CableRecord::PowerClass>},
    {"CdrControl", Set<&CableRecord::CdrControl>},
    {"CdrPresence", Set<&CableRecord::CdrPresence>},
    {"VendorModuleKind", Set<&CableRecord::VendorModuleKind>},
    {"Attenuation", Set<&CableRecord::Attenuation>},
    {"OpaqueByte2", Set<&CableRecord::OpaqueByte2>},
    {"ExtSpecCompliance", Set<&CableRecord::ExtSpecCompliance>},
    {"OpaqueByte3", Set<&CableRecord::OpaqueByte3>},
    {"LatchedCdrLos", Set<&CableRecord::LatchedCdrLos>},
    {"LatchedAdaptiveEqFault", Set<&CableRecord::LatchedAdaptiveEqFault>},
    {"LatchedCdrLol", Set<&CableRecord::LatchedCdrLol>},
    {"LatchedTemperatureAlarms", Set<&CableRecord::LatchedTemperatureAlarms>},
    {"LatchedVoltageAlarms", Set<&CableRecord::LatchedVoltageAlarms>},
    {"TransmitterTechnologyRaw", Set<&CableRecord::TransmitterTechnologyRaw>},
    {"TxAdaptiveEqFreeze", Set<&CableRecord::TxAdaptiveEqFreeze>},
    {"RxOutputDisableTxAdaptiveEq", Set<&CableRecord::RxOutputDisableTxAdaptiveEq>},
    {"InputEq", Set<&CableRecord::InputEq>},
    {"OutputAmp", Set<&CableRecord::OutputAmp>},
    {"OutputEmp", Set<&CableRecord::OutputEmp>},
    {"OpaqueWord1", Set<&CableRecord::OpaqueWord1>},
    {"SupplyVoltage", Set<&CableRecord::SupplyVoltage>},
    {"RxPowerAlarms", Set<&CableRecord::RxPowerAlarms>},
    {"TxBiasAlarms", Set<&CableRecord::TxBiasAlarms>},
    {"TxPowerAlarms", Set<&CableRecord::TxPowerAlarms>},
    {"Lot", Set<&CableRecord::Lot>},
    {"TempHighAlarmThresh", Set<&CableRecord::TempHighAlarmThresh>},
    {"TempHighWarnThresh", Set<&CableRecord::TempHighWarnThresh>},
    {"TempLowAlarmThresh", Set<&CableRecord::TempLowAlarmThresh>},
    {"TempLowWarnThresh", Set<&CableRecord::TempLowWarnThresh>},
    {"VoltHighAlarmThresh", Set<&CableRecord::VoltHighAlarmThresh>},
    {"VoltHighWarnThresh", Set<&CableRecord::VoltHighWarnThresh>},
    {"VoltLowAlarmThresh", Set<&CableRecord::VoltLowAlarmThresh>},
    {"VoltLowWarnThresh", Set<&CableRecord::VoltLowWarnThresh>},
    {"RxPower", Set<&CableRecord::RxPower>},
    {"TxBias", Set<&CableRecord::TxBias>},
    {"TxPower", Set<&CableRecord::TxPower>},
    {"RxPowerIsAverage", Set<&CableRecord::RxPowerIsAverage>},
    {"OpaqueDword1", Set<&CableRecord::OpaqueDword1>},
    {"VendorName", Set<&CableRecord::VendorName>},
    {"Oui", Set<&CableRecord::Oui>},
    {"PartNumber", Set<&CableRecord::PartNumber>},
    {"SerialNumber", Set<&CableRecord::SerialNumber>},
    {"Revision", Set<&CableRecord::Revision>},
    {"LengthText", Set<&CableRecord::LengthText>},
    {"ExtraText", Set<&CableRecord::ExtraText>},
    {"FwVersionText", Set<&CableRecord::FwVersionText>},
    {"DateCodeText", Set<&CableRecord::DateCodeText>},
    {"PrtlLengthText", Set<&CableRecord::PrtlLengthText>},
}));

constexpr FieldTable kModuleFields(std::to_array<Field<ModuleRecord>>({
    {"power_unit_flag", Set<&ModuleRecord::power_unit_flag>},
    {"compliance_code", Set<&ModuleRecord::compliance_code>},
    {"cable_technology", Set<&ModuleRecord::cable_technology>},
    {"power_class", Set<&ModuleRecord::power_class>},
    {"cable_identifier", Set<&ModuleRecord::cable_identifier>},
    {"cable_length", Set<&ModuleRecord::cable_length>},
    {"tx_input_eq", Set<&ModuleRecord::tx_input_eq>},
    {"rx_output_pre_emp", Set<&ModuleRecord::rx_output_pre_emp>},
    {"rx_output_amp", Set<&ModuleRecord::rx_output_amp>},
    {"max_power", Set<&ModuleRecord::max_power>},
    {"attenuation", Set<&ModuleRecord::attenuation>},
    {"tx_cdr_state", Set<&ModuleRecord::tx_cdr_state>},
    {"rx_cdr_state", Set<&ModuleRecord::rx_cdr_state>},
    {"tx_cdr_cap", Set<&ModuleRecord::tx_cdr_cap>},
    {"rx_cdr_cap", Set<&ModuleRecord::rx_cdr_cap>},
    {"rx_output_post_emp", Set<&ModuleRecord::rx_output_post_emp>},
    {"vendor_name", Set<&ModuleRecord::vendor_name>},
    {"vendor_pn", Set<&ModuleRecord::vendor_pn>},
    {"vendor_rev", Set<&ModuleRecord::vendor_rev>},
    {"fw_version", Set<&ModuleRecord::fw_version>},
    {"vendor_sn", Set<&ModuleRecord::vendor_sn>},
    {"voltage", Set<&ModuleRecord::voltage>},
    {"temperature", Set<&ModuleRecord::temperature>},
    {"rx_power", SetLanes<&ModuleRecord::rx_power>},
    {"rx_power_raw", Set<&ModuleRecord::rx_power>},
    {"tx_power", SetLanes<&ModuleRecord::tx_power>},
    {"tx_power_raw", Set<&ModuleRecord::tx_power>},
    {"tx_bias", SetLanes<&ModuleRecord::tx_bias>},
    {"tx_bias_raw", Set<&ModuleRecord::tx_bias>},
    {"temp_low_threshold", Set<&ModuleRecord::temp_low_threshold>},
    {"temp_high_threshold", Set<&ModuleRecord::temp_high_threshold>},
    {"voltage_low_threshold", Set<&ModuleRecord::voltage_low_threshold>},
    {"voltage_high_threshold", Set<&ModuleRecord::voltage_high_threshold>},
    {"rx_power_low_threshold", Set<&ModuleRecord::rx_power_low_threshold>},
    {"rx_power_high_threshold", Set<&ModuleRecord::rx_power_high_threshold>},
    {"tx_power_low_threshold", Set<&ModuleRecord::tx_power_low_threshold>},
    {"tx_power_high_threshold", Set<&ModuleRecord::tx_power_high_threshold>},
    {"tx_bias_low_threshold", Set<&ModuleRecord::tx_bias_low_threshold>},
    {"tx_bias_high_threshold", Set<&ModuleRecord::tx_bias_high_threshold>},
    {"smf_length", Set<&ModuleRecord::smf_length>},
    {"rx_power_type", Set<&ModuleRecord::rx_power_type>},
    {"ib_compliance_code", Set<&ModuleRecord::ib_compliance_code>},
    {"nominal_bitrate", Set<&ModuleRecord::nominal_bitrate>},
    {"extended_bitrate", Set<&ModuleRecord::extended_bitrate>},
    {"length_om5", Set<&ModuleRecord::length_om5>},
    {"length_om4", Set<&ModuleRecord::length_om4>},
    {"length_om3", Set<&ModuleRecord::length_om3>},
    {"length_om2", Set<&ModuleRecord::length_om2>},
    {"length_om1", Set<&ModuleRecord::length_om1>},
    {"lot", Set<&ModuleRecord::lot>},
    {"date_code", SetDateCode},
    {"vendor_oui", Set<&ModuleRecord::vendor_oui>},
    {"connector_type", Set<&ModuleRecord::connector_type>},
    {"cdr_vendor", Set<&ModuleRecord::cdr_vendor>},
    {"max_fiber_length", Set<&ModuleRecord::max_fiber_length>},
}));

constexpr FieldTable kLatchedFlagsFields(std::to_array<Field<LatchedFlagsPage>>({
    {"latched_voltage_flags", Set<&LatchedFlagsPage::latched_voltage_flags>},
    {"latched_temperature_flags", Set<&LatchedFlagsPage::latched_temperature_flags>},
    {"latched_tx_adaptive_eq_fault", Set<&LatchedFlagsPage::latched_tx_adaptive_eq_fault>},
    {"latched_tx_cdr_lol", Set<&LatchedFlagsPage::latched_tx_cdr_lol>},
    {"latched_tx_los", Set<&LatchedFlagsPage::latched_tx_los>},
    {"latched_tx_power_low_warning", Set<&LatchedFlagsPage::latched_tx_power_low_warning>},
    {"latched_tx_power_high_warning", Set<&LatchedFlagsPage::latched_tx_power_high_warning>},
    {"latched_tx_power_low_alarm", Set<&LatchedFlagsPage::latched_tx_power_low_alarm>},
    {"latched_tx_power_high_alarm", Set<&LatchedFlagsPage::latched_tx_power_high_alarm>},
    {"latched_tx_bias_low_warning", Set<&LatchedFlagsPage::latched_tx_bias_low_warning>},
    {"latched_tx_bias_high_warning", Set<&LatchedFlagsPage::latched_tx_bias_high_warning>},
    {"latched_tx_bias_low_alarm", Set<&LatchedFlagsPage::latched_tx_bias_low_alarm>},
    {"latched_tx_bias_high_alarm", Set<&LatchedFlagsPage::latched_tx_bias_high_alarm>},
    {"latched_rx_cdr_lol", Set<&LatchedFlagsPage::latched_rx_cdr_lol>},
    {"latched_rx_los", Set<&LatchedFlagsPage::latched_rx_los>},
    {"latched_rx_power_low_warning", Set<&LatchedFlagsPage::latched_rx_power_low_warning>},
    {"latched_rx_power_high_warning", Set<&LatchedFlagsPage::latched_rx_power_high_warning>},
    {"latched_rx_power_low_alarm", Set<&LatchedFlagsPage::latched_rx_power_low_alarm>},
    {"latched_rx_power_high_alarm", Set<&LatchedFlagsPage::latched_rx_power_high_alarm>},
}));

constexpr FieldTable kPrtlRecordFields(std::to_array<Field<PrtlRecord>>({
    {"head_word", Set<&PrtlRecord::head_word>},
    {"latency_res", Set<&PrtlRecord::latency_res>},
    {"local_phy_latency", Set<&PrtlRecord::local_phy_latency>},
    {"local_mod_dp_latency", Set<&PrtlRecord::local_mod_dp_latency>},
    {"round_trip_latency", Set<&PrtlRecord::round_trip_latency>},
}));

bool SetModule(PhyCableRecord& phy, const Value& value) {
  auto module = std::make_unique<ModuleRecord>();
  if (!SetFields(*module, value, kModuleFields)) return false;
  phy.SetModule(std::move(module));
  return true;
}

bool SetLatchedFlags(PhyCableRecord& phy, const Value& value) {
  auto page = std::make_unique<LatchedFlagsPage>();
  if (value.json.is_array()) {
    std::uint8_t bytes[sizeof(LatchedFlagsPage)] = {};
    if (!Assign(bytes, value)) return false;
    std::memcpy(page.get(), bytes, sizeof(bytes));
  } else if (value.json.is_object()) {
    if (!SetFields(*page, value, kLatchedFlagsFields)) return false;
  } else {
    return value.Expected("an object or an array");
  }
  phy.SetLatchedFlags(std::move(page));
  return true;
}

constexpr FieldTable kPhyFields(std::to_array<Field<PhyCableRecord>>({
    {"source", Set<&PhyCableRecord::source>},
    {"module", SetModule},
    {"latched_flags", SetLatchedFlags},
    {"prtl_length", Set<&PhyCableRecord::prtl_length>},
}));

struct PrtlEnds {
  std::optional<PrtlRecord> local;
  std::optional<PrtlRecord> remote;
};

template <auto kEnd>
bool SetPrtlEnd(PrtlEnds& ends, const Value& value) {
  return SetFields((ends.*kEnd).emplace(), value, kPrtlRecordFields);
}

constexpr FieldTable kPrtlFields(std::to_array<Field<PrtlEnds>>({
    {"local", SetPrtlEnd<&PrtlEnds::local>},
    {"remote", SetPrtlEnd<&PrtlEnds::remote>},
}));

// A dump of a module's memory, and where it comes from.
struct MemoryDraft {
  FilePolicy files;
  const std::string& folder;         // of the file that a record names
  std::vector<std::uint8_t>& bytes;  // of a dump in plain hexadecimal; else empty
  DumpBytes dump;                    // any other dump
  std::string path;                  // of that file; empty when the record holds the dump
  ModuleImage pages;                 // a dump that is given page by page
};

constexpr std::size_t kMaxShownPath = 255;

bool FailAsNoDump(const std::string& path, const Value& value) {
  return value.Fail(
      MessageKind::kBadModule,
      Shortened(path, kMaxShownPath) + " is not a regular file with a dump of a module's memory");
}

// The content of a line, before it becomes a port.
struct Draft {
  explicit Draft(MemoryDraft empty_memory) : memory(std::move(empty_memory)) {}

  std::string label;
  std::uint64_t node_guid = 0;
  std::uint64_t port_guid = 0;
  std::uint32_t port_num = 0;
  std::optional<PortId> peer;
  std::unique_ptr<CableRecord> cable;
  std::unique_ptr<PhyCableRecord> phy;
  MemoryDraft memory;
  bool has_memory = false;
  PrtlEnds prtl;
  std::optional<float> prtl_metres;
  std::optional<std::string> prtl_text;
};

bool CheckFormatVersion(Draft& /*draft*/, const Value& value) {
  double version = 0.0;
  if (value.json.get(version) != simdjson::SUCCESS || version != kFormatVersion) {
    return value.Expected(std::to_string(kFormatVersion));
  }
  return true;
}

// The time when the port was read, which is checked and not used.
bool CheckTime(Draft& /*draft*/, const Value& value) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
  std::string_view text;
  const bool is_text = value.json.get(text) == simdjson::SUCCESS && text.size() == kForm.size();
  const auto fits = [](char form, char c) {
    return form == '0' ? c >= '0' && c <= '9' : c == form;
  };
  if (!is_text || !std::equal(kForm.begin(), kForm.end(), text.begin(), fits)) {
    return value.Expected("a time such as \"2026-01-31T12:00:00Z\"");
  }
  return true;
}

bool SetCable(Draft& draft, const Value& value) {
  draft.cable = std::make_unique<CableRecord>();
  return SetFields(*draft.cable, value, kCableFields);
}

bool SetPhy(Draft& draft, const Value& value) {
  draft.phy = std::make_unique<PhyCableRecord>();
  return SetFields(*draft.phy, value, kPhyFields);
}

// Only a regular file that may be a dump is read, and messages hold none of its content: the author
// of the record may not be allowed to read it.
bool SetDumpFile(MemoryDraft& memory, const Value& value) {
  if (memory.files == FilePolicy::kRefuse) {
    return value.Fail(MessageKind::kBadModule, "files are refused by --no-files");
  }
  std::string path;
  if (!Assign(path, value)) return false;
  if (path.empty() || IsStandardInput(path)) return value.Expected("the name of a file");
  if (!memory.folder.empty() && path.front() != '/') path.insert(0, memory.folder + '/');
  try {
    memory.dump = ReadRegularDump(path);
    memory.path = std::move(path);
    return true;
  } catch (const std::system_error& error) {
    return value.Fail(MessageKind::kBadModule, "cannot read " + Shortened(path, kMaxShownPath) +
                                                   ": " + error.code().message());
  } catch (const BadModule&) {
    return FailAsNoDump(path, value);
  }
}

bool SetDumpListing(MemoryDraft& memory, const Value& value) {
  std::string_view text;
  if (value.json.get(text) != simdjson::SUCCESS) return value.Expected("a text");
  if (ParsePlainHex(text, memory.bytes)) return true;
  memory.bytes.clear();
  try {
    memory.dump = ParseListing(text);
    return true;
  } catch (const BadModule& bad) {
    return value.Fail(MessageKind::kBadModule, bad.what());
  }
}

// Each page has one valid key, so that no page can be given twice.
bool SetPage(ModuleImage& pages, std::string_view key, const Value& value) {
  const std::optional<Page> page = ParsePageName(key);
  if (!page || PageKey(*page) != key) {
    return value.Fail(MessageKind::kUnknownKey, std::string("unknown page; ") + kPageNames);
  }
  if (pages.Has(*page)) return value.FailAsRepeatedKey();
  std::string text;
  if (!Assign(text, value)) return false;
  try {
    const DumpBytes bytes = ParseListing(text);
    if (IsUpperPage(*page) && bytes.size() > ModuleImage::kHalf) {
      throw BadModule(PageName(*page) + " has at most " + std::to_string(ModuleImage::kHalf) +
                      " bytes, not " + std::to_string(bytes.size()));
    }
    PutPage(pages, *page, bytes);
    return true;
  } catch (const BadModule& bad) {
    return value.Fail(MessageKind::kBadModule, bad.what());
  }
}

bool SetDumpPages(MemoryDraft& memory, const Value& value) {
  simdjson::dom::object pages;
  if (value.json.get(pages) != simdjson::SUCCESS || pages.size() == 0) {
    return value.Expected("an object of pages");
  }
  for (const auto [key, listing] : pages) {
    if (!SetPage(memory.pages, key, Value(listing, value, key))) return false;
  }
  return true;
}

constexpr FieldTable kModuleMemoryFields(std::to_array<Field<MemoryDraft>>({
    {"file", SetDumpFile},
    {"hex", SetDumpListing},
    {"pages", SetDumpPages},
}));

bool SetModuleMemory(Draft& draft, const Value& value) {
  simdjson::dom::object object;
  if (value.json.get(object) == simdjson::SUCCESS && object.size() != 1) {
    return value.Expected(R"(one of "file", "hex" and "pages")");
  }
  draft.has_memory = true;
  return SetFields(draft.memory, value, kModuleMemoryFields);
}

constexpr FieldTable kPeerFields(std::to_array<Field<PortId>>({
    {"port_guid", Set<&PortId::guid>},
    {"port_num", Set<&PortId::number>},
}));

bool SetPeer(Draft& draft, const Value& value) {
  return SetFields(draft.peer.emplace(), value, kPeerFields);
}

bool SetPrtl(Draft& draft, const Value& value) { return SetFields(draft.prtl, value, kPrtlFields); }

bool SetPrtlLength(Draft& draft, const Value& value) {
  if (value.json.is_string()) return Assign(draft.prtl_text.emplace(), value);
  if (value.json.is_number()) return Assign(draft.prtl_metres.emplace(), value);
  return value.Expected("a number or a text");
}

constexpr FieldTable kPortFields(std::to_array<Field<Draft>>({
    {"format_version", CheckFormatVersion},
    {"node_guid", Set<&Draft::node_guid>},
    {"port_guid", Set<&Draft::port_guid>},
    {"port_num", Set<&Draft::port_num>},
    {"label", Set<&Draft::label>},
    {"taken_at", CheckTime},
    {"peer", SetPeer},
    {"cable", SetCable},
    {"phy", SetPhy},
    {"module_memory", SetModuleMemory},
    {"prtl", SetPrtl},
    {"prtl_length", SetPrtlLength},
}));

// A port has one record of each kind: a memory must not replace a record that the line holds.
template <typename Record>
void Place(std::unique_ptr<Record>& place, std::unique_ptr<Record> record, std::string_view key) {
  if (record == nullptr) return;
  if (place != nullptr) {
    throw BadModule("the line must not also have \"" + std::string(key) +
                    "\", which the memory of this module fills");
  }
  place = std::move(record);
}

// Decodes the module memory of the port, if it has one, and appends its remarks to `remarks`.
bool DecodeModuleMemory(Draft& draft, const Value& line, const PortReaderOptions& options,
                        cable_info::ModuleInfo& info, Port& port, std::vector<Message>& remarks) {
  if (!draft.has_memory) return true;
  const Value place(line.json, line, "module_memory");
  ModuleReading reading;
  try {
    const MemoryDraft& memory = draft.memory;
    if (!memory.pages.halves().empty()) {
      reading = DecodeModule(memory.pages, options.modules, info, port);
    } else if (!memory.bytes.empty()) {
      reading = DecodeModule(memory.bytes, options.modules, info, port);
    } else {
      reading = DecodeModule(memory.dump, options.modules, info, port);
    }
  } catch (const BadModule& bad) {
    if (!draft.memory.path.empty()) return FailAsNoDump(draft.memory.path, place);
    return place.Fail(MessageKind::kBadModule, bad.what());
  }
  try {
    AddRemarks(reading, options.checksums, remarks);
    Place(draft.cable, std::move(reading.cable), "cable");
    Place(draft.phy, std::move(reading.phy), "phy");
    return true;
  } catch (const BadModule& bad) {
    return place.Fail(MessageKind::kBadModule, bad.what());
  }
}

// The record of a port whose memory is in a file, with the content of the file.
std::string WithDump(const simdjson::dom::element& record, const DumpBytes& dump) {
  cable_info::text::TextBuffer out;
  JsonText json(out);
  json.BeginObject();
  for (const auto [key, member] : simdjson::dom::object(record)) {
    json.Key(key);
    key == "module_memory" ? WriteMemory(json, dump) : json.Verbatim(simdjson::minify(member));
  }
  json.EndObject();
  return std::string(out.view());
}

// Stores the measured length of the port; returns the reason where the registers give none.
std::string StorePrtlLength(const Draft& draft, Port& port) {
  std::string error;
  if (draft.prtl_text) {
    port.cable.SetPrtlLength(*draft.prtl_text);
  } else if (draft.prtl_metres) {
    port.cable.SetPrtlLength(*draft.prtl_metres);
  } else if (draft.prtl.local && draft.prtl.remote) {
    const float length = draft.prtl.local->CalculateLength(*draft.prtl.remote, error);
    if (error.empty()) port.cable.SetPrtlLength(length);
  }
  return error;
}

}  // namespace

class PortReader::Parser {
 public:
  // Parses a line; false, with a message in `problem`, when it is not JSON.
  bool Parse(std::string_view line, simdjson::dom::element& document, Message& problem) {
    auto error = ParsePadded(line, document);
    if (error == simdjson::NUMBER_ERROR) {
      if (auto representable = Representable(line)) {
        const std::size_t size = representable->size();
        representable_ = std::move(*representable);
        representable_.append(LineReader::kPadding, ' ');
        error = ParsePadded(std::string_view(representable_).substr(0, size), document);
      }
    }
    if (error == simdjson::SUCCESS) return true;
    if (error == simdjson::MEMALLOC) throw std::bad_alloc();
    problem = {MessageKind::kNotJson,
               std::string("not valid JSON: ") + simdjson::error_message(error),
               {},
               {}};
    return false;
  }

 private:
  simdjson::error_code ParsePadded(std::string_view line, simdjson::dom::element& document) {
    constexpr bool kCopies = false;  // the line is padded already
    return parser_.parse(line.data(), line.size(), kCopies).get(document);
  }

  simdjson::dom::parser parser_;
  std::string representable_;  // the last line that had to be changed; see `Representable`
};

PortReader::PortReader(const PortReaderOptions& options)
    : parser_(std::make_unique<Parser>()), options_(options) {}
PortReader::~PortReader() = default;

bool PortReader::Read(std::string_view line, Port& port, std::vector<Message>& messages) {
  messages.clear();
  Message problem;
  simdjson::dom::element document;
  if (!parser_->Parse(line, document, problem)) {
    messages.push_back(std::move(problem));
    return false;
  }
  dump_.clear();
  Draft draft(MemoryDraft{options_.files, folder_, dump_, {}, {}, {}});
  const Value value(document, problem);
  if (!SetFields(draft, value, kPortFields) ||
      !DecodeModuleMemory(draft, value, options_, info_, port, messages)) {
    if (!draft.label.empty()) problem.text.insert(0, "port \"" + Shortened(draft.label) + "\": ");
    messages.assign(1, problem);
    return false;
  }
  port.node_guid = draft.node_guid;
  port.port_guid = draft.port_guid;
  port.number = draft.port_num;
  port.label = std::move(draft.label);
  port.peer = draft.peer;
  port.Attach(std::move(draft.cable), std::move(draft.phy));
  if (options_.keeps_records) {
    port.record = draft.memory.path.empty() ? line : WithDump(document, draft.memory.dump);
  }
  std::string no_length = StorePrtlLength(draft, port);
  if (!no_length.empty()) {
    messages.push_back({MessageKind::kNoLength, std::move(no_length), {}, {}});
  }
  return true;
}

}  // namespace cli
