#include "cli/input/record_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "cable_info/text/text_buffer.h"
#include "cli/format_version.h"

namespace cli {

namespace {

using cable_info::ModuleImage;
using cable_info::Page;
using cable_info::module_memory::DumpByte;
using cable_info::module_memory::DumpBytes;
using cable_info::module_memory::PageKey;
using cable_info::text::TextBuffer;

constexpr std::size_t kRow = 16;
constexpr std::size_t kShortOffsets = 256;

void AppendByte(TextBuffer& out, DumpByte byte) {
  byte ? out.AppendHex(*byte, 2) : out.Append("XX");
}

// "f0: 11 XX 00": short offsets, and a mark for a byte that is missing.
void AppendColumns(TextBuffer& out, const DumpBytes& dump, std::size_t begin, std::size_t end) {
  out.AppendHex(static_cast<std::uint32_t>(begin), 2).Append(':');
  for (std::size_t i = begin; i < end; ++i) {
    out.Append(' ');
    AppendByte(out, dump[i]);
  }
  out.Append('\n');
}

// "0x0100: 1100": the bytes that are known, each run of them on a line.
void AppendRuns(TextBuffer& out, const DumpBytes& dump, std::size_t begin, std::size_t end) {
  constexpr int kOffsetDigits = 4;
  for (std::size_t i = begin; i < end; ++i) {
    if (!dump[i]) continue;
    if (i == begin || !dump[i - 1]) {
      out.AppendPrefixedHex(static_cast<std::uint32_t>(i), kOffsetDigits).Append(": ");
    }
    AppendByte(out, dump[i]);
    if (i + 1 == end || !dump[i + 1]) out.Append('\n');
  }
}

// As the text of a listing.
std::string HexOf(const DumpBytes& dump) {
  TextBuffer out;
  const bool is_whole = std::all_of(dump.begin(), dump.end(), [](DumpByte byte) { return byte; });
  if (is_whole) {
    for (const DumpByte byte : dump) AppendByte(out, byte);
    return std::string(out.view());
  }
  for (std::size_t begin = 0; begin < dump.size(); begin += kRow) {
    const std::size_t end = std::min(begin + kRow, dump.size());
    begin < kShortOffsets ? AppendColumns(out, dump, begin, end)
                          : AppendRuns(out, dump, begin, end);
  }
  return std::string(out.view());
}

// The bytes of a page as a dump of it has them.
DumpBytes BytesOf(const ModuleImage& memory, Page page) {
  const std::size_t begin = IsUpperPage(page) ? ModuleImage::kHalf : 0;
  const std::size_t end = page == Page::kLower ? ModuleImage::kHalf : ModuleImage::kWhole;
  DumpBytes bytes;
  for (std::size_t byte = begin; byte < end; ++byte) bytes.push_back(memory.At(page, byte));
  while (!bytes.empty() && !bytes.back()) bytes.pop_back();
  return bytes;
}

template <typename Memory>
std::string RecordWith(std::string_view label, std::uint32_t number, const Memory& memory) {
  TextBuffer out;
  JsonText json(out);
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  json.Key("port_num").Integer(number);
  json.Key("label").Utf8(label);
  json.Key("module_memory");
  WriteMemory(json, memory);
  json.EndObject();
  return std::string(out.view());
}

}  // namespace

void WriteMemory(JsonText& json, const DumpBytes& dump) {
  json.BeginObject();
  json.Key("hex").Bytes(HexOf(dump));
  json.EndObject();
}

void WriteMemory(JsonText& json, const ModuleImage& memory) {
  std::vector<Page> written;
  json.BeginObject();
  json.Key("pages").BeginObject();
  for (const ModuleImage::Half& half : memory.halves()) {
    const Page page = half.page();
    if (std::find(written.begin(), written.end(), page) != written.end()) continue;
    written.push_back(page);
    json.Key(PageKey(page)).Bytes(HexOf(BytesOf(memory, page)));
  }
  json.EndObject();
  json.EndObject();
}

std::string RecordOf(std::string_view label, std::uint32_t number, const DumpBytes& dump) {
  return RecordWith(label, number, dump);
}

std::string RecordOf(std::string_view label, std::uint32_t number, const ModuleImage& memory) {
  return RecordWith(label, number, memory);
}

}  // namespace cli
