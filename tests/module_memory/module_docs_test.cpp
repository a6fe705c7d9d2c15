// docs/module_memory.md lists every line of the maps.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>

#include "cable_info/module_memory/memory_map.h"

namespace {

using cable_info::Page;
using cable_info::module_memory::Advertisement;
using cable_info::module_memory::CmisMap;
using cable_info::module_memory::Extent;
using cable_info::module_memory::LaneMapField;
using cable_info::module_memory::MapField;
using cable_info::module_memory::MapMonitor;
using cable_info::module_memory::MemoryMap;
using cable_info::module_memory::Quantity;
using cable_info::module_memory::Sff8472Map;
using cable_info::module_memory::Sff8636Map;

std::string Place(Page page, unsigned byte, Extent extent) {
  std::string text = cable_info::ShortPageName(page) + ' ' + std::to_string(byte);
  if (extent.bytes > 1) return text + '-' + std::to_string(byte + extent.bytes - 1);
  if (extent.high == 7 && extent.low == 0) return text;
  text += '.' + std::to_string(extent.high);
  return extent.high == extent.low ? text : text + ".." + std::to_string(extent.low);
}

std::string Words(const Advertisement& advertised) {
  if (advertised.is_always) return "";
  if (!advertised.words.empty()) return std::string(advertised.words);
  return Place(advertised.page, advertised.byte, {1, advertised.bit, advertised.bit});
}

std::string Row(std::string_view key, const std::string& place, const Advertisement& advertised,
                std::string_view since) {
  std::ostringstream row;
  row << "| `" << key << "` | " << place << " | " << Words(advertised) << " | " << since << " |";
  return row.str();
}

std::string KeyOf(const MapMonitor& line) {
  switch (line.quantity) {
    case Quantity::kTemperature:
      return "monitors.temperature_c";
    case Quantity::kVoltage:
      return "monitors.voltage_v";
    case Quantity::kTxBias:
      return "lanes.tx_bias_ma";
    case Quantity::kTxPower:
      return "lanes.tx_power_mw";
    case Quantity::kRxPower:
      return "lanes.rx_power_mw";
    case Quantity::kAux:
      break;
  }
  return "monitors.aux " + std::string(line.name);
}

std::string RowOf(const MapField& line) {
  return Row(cable_info::DescribeField(line.field).key, Place(line.page, line.byte, line.extent),
             line.advertised, line.since);
}

std::string RowOf(const LaneMapField& line) {
  return Row("lanes." + std::string(cable_info::DescribeField(line.field).key),
             Place(line.page, line.byte, line.extent), line.advertised, line.since);
}

std::string RowOf(const MapMonitor& line) {
  constexpr Extent kWord = {2, 7, 0};
  return Row(KeyOf(line),
             Place(line.page, line.byte, kWord) + "; thresholds " +
                 Place(line.threshold_page, line.threshold_byte, {8, 7, 0}),
             line.advertised, line.since);
}

std::string Documentation() {
  std::ifstream file(CABLE_INFO_EXPECTED_DIR "/../../docs/module_memory.md");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void ExpectRows(const MemoryMap& map, std::string_view heading) {
  const std::string documentation = Documentation();
  const std::size_t begin = documentation.find(heading);
  ASSERT_NE(begin, std::string::npos) << heading;
  const std::string section =
      documentation.substr(begin, documentation.find("\n### ", begin + 1) - begin);
  const auto expect = [&section](const std::string& row) {
    EXPECT_NE(section.find(row + '\n'), std::string::npos) << row;
  };
  for (const MapField& line : map.fields) expect(RowOf(line));
  for (const LaneMapField& line : map.lane_fields) expect(RowOf(line));
  for (const MapMonitor& line : map.monitors) expect(RowOf(line));
}

TEST(ModuleDocs, ListTheMapOfSff8636) { ExpectRows(Sff8636Map(), "### The map of SFF-8636"); }
TEST(ModuleDocs, ListTheMapOfSff8472) { ExpectRows(Sff8472Map(), "### The map of SFF-8472"); }
TEST(ModuleDocs, ListTheMapOfCmis) { ExpectRows(CmisMap(), "### The map of CMIS"); }

}  // namespace
