#include "cli/input/record_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "cable_info/text/text_buffer.h"
#include "cli/format_version.h"

namespace cli {

namespace {

using cable_info::module_memory::DumpByte;
using cable_info::module_memory::DumpBytes;
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

}  // namespace

void WriteMemory(JsonText& json, const DumpBytes& dump) {
  json.BeginObject();
  json.Key("hex").Bytes(HexOf(dump));
  json.EndObject();
}

std::string RecordOf(std::string_view label, std::uint32_t number, const DumpBytes& dump) {
  TextBuffer out;
  JsonText json(out);
  json.BeginObject();
  json.Key("format_version").Integer(kFormatVersion);
  json.Key("port_num").Integer(number);
  json.Key("label").Utf8(label);
  json.Key("module_memory");
  WriteMemory(json, dump);
  json.EndObject();
  return std::string(out.view());
}

}  // namespace cli
