#include "cli/live/live_record.h"

#include <map>
#include <vector>

#include "cli/input/port.h"
#include "cli/output/json_text.h"

namespace cli {

namespace {

using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::text::TextBuffer;
using Half = ModuleImage::Half;

constexpr std::size_t kHalfSize = ModuleImage::kHalf;

// The bytes of a half from its first one on, in hexadecimal.
void AppendBytes(TextBuffer& out, const Half& half) {
  for (std::size_t byte = half.first(); half.Has(byte); ++byte) out.AppendHex(half[byte], 2);
}

// The listing of a page: plain hexadecimal, or rows with their offsets where bytes are missing
// before others.
std::string Listing(Page page, const std::vector<const Half*>& halves) {
  const std::size_t start = IsUpperPage(page) ? kHalfSize : 0;
  TextBuffer out;
  std::size_t next = start;
  for (const Half* const half : halves) {
    if (half->first() != next) {
      constexpr int kOffsetDigits = 8;
      if (!out.view().empty()) out.Append('\n');
      out.AppendHex(static_cast<std::uint32_t>(half->first() - start), kOffsetDigits).Append(": ");
    }
    AppendBytes(out, *half);
    next = half->first();
    while (half->Has(next)) ++next;
  }
  return std::string(out.view());
}

void AppendMemory(JsonText& json, const ModuleImage& memory) {
  std::vector<Page> order;
  std::map<Page, std::vector<const Half*>> pages;
  for (const Half& half : memory.halves()) {
    std::vector<const Half*>& halves = pages[half.page()];
    if (halves.empty()) order.push_back(half.page());
    halves.push_back(&half);
  }
  json.Key("module_memory").BeginObject();
  json.Key("pages").BeginObject();
  for (const Page page : order) {
    json.Key(cable_info::module_memory::PageKey(page)).Utf8(Listing(page, pages.at(page)));
  }
  json.EndObject();
  json.EndObject();
}

}  // namespace

std::string LiveRecordText(const LiveRecord& record) {
  TextBuffer out;
  JsonText json(out);
  json.BeginObject();
  if (!record.port.device.empty()) {
    json.Key("node_guid").Plain(GuidText(record.port.node_guid));
    json.Key("port_guid").Plain(GuidText(record.port.port_guid));
    json.Key("port_num").Integer(record.port.number);
  }
  json.Key("label").Utf8(record.label);
  if (!record.taken_at.empty()) json.Key("taken_at").Plain(record.taken_at);
  if (!record.memory.halves().empty()) AppendMemory(json, record.memory);
  json.EndObject();
  return std::string(out.view());
}

}  // namespace cli
