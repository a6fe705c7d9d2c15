#include "cli/live/live_record.h"

#include "cli/format_version.h"
#include "cli/input/port.h"
#include "cli/input/record_text.h"
#include "cli/json_text.h"

namespace cli {

std::string LiveRecordText(const LiveRecord& record) {
  cable_info::text::TextBuffer out;
  JsonText json(out);
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  if (!record.port.device.empty()) {
    json.Key("node_guid").Plain(GuidText(record.port.node_guid));
    json.Key("port_guid").Plain(GuidText(record.port.port_guid));
    json.Key("port_num").Integer(record.port.number);
  }
  json.Key("label").Utf8(record.label);
  if (!record.taken_at.empty()) json.Key("taken_at").Plain(record.taken_at);
  if (!record.memory.halves().empty()) {
    json.Key("module_memory");
    WriteMemory(json, record.memory);
  }
  json.EndObject();
  return std::string(out.view());
}

}  // namespace cli
