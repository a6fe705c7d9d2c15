// Lanes in the output of modules, whose texts are partly copied from those of other lanes.

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_output.h"

namespace {

using cable_info::FieldState;
using cable_info::Lane;
using cable_info::LaneField;
using cable_info::ModuleInfo;
using cable_info::Monitor;

Monitor Measured(double value) {
  Monitor monitor;
  monitor.state = FieldState::kPresent;
  monitor.value = value;
  monitor.thresholds = {{2.5, 0.25, 2.0, 0.5}, 0xF};
  monitor.flags = {0xF, 0};
  return monitor;
}

// Lanes that differ from the first one in one thing each.
std::vector<Lane> Variants() {
  Lane lane;
  lane.rx_power = Measured(1.5);
  lane.tx_power = Measured(0.75);
  lane.tx_bias = Measured(40);
  lane.Set(LaneField::kRxLos, {FieldState::kPresent, 0.0});
  lane.Set(LaneField::kRxAmplitude, {FieldState::kPresent, 3.0});
  std::vector<Lane> variants(11, lane);
  variants[1].rx_power.value = 1.75;
  variants[2].rx_power.thresholds.values[3] = 0.625;
  variants[3].rx_power.thresholds.given = 0x7;
  variants[4].rx_power.thresholds = {};
  variants[5].rx_power.flags.raised = 0x2;
  variants[6].rx_power.flags.known = 0x7;
  variants[7].rx_power.value = 1e-5 / 3;  // too wide for its column
  variants[8].rx_power.state = FieldState::kNotReady;
  variants[9].Set(LaneField::kRxLos, {FieldState::kPresent, 1.0});
  variants[10].Set(LaneField::kRxLos, {FieldState::kNotRead, 0.0});
  variants.emplace_back();
  return variants;
}

ModuleInfo ModuleOf(std::vector<Lane> lanes) {
  ModuleInfo info;
  info.lanes = std::move(lanes);
  for (std::size_t i = 0; i < info.lanes.size(); ++i) {
    info.lanes[i].number = static_cast<unsigned>(i + 1);
  }
  return info;
}

// The objects of lanes in JSON.
std::string LanesIn(const ModuleInfo& info) {
  const std::string json = cable_info::ModuleToJson(info, "m");
  constexpr std::string_view kBegin = "\"lanes\":[";
  const std::size_t begin = json.find(kBegin) + kBegin.size();
  return json.substr(begin, json.find("],\"vdm\"") - begin);
}

// The JSON of a lane alone, with another number.
std::string LaneAlone(const Lane& lane, const std::string& number) {
  const std::string json = LanesIn(ModuleOf({lane}));
  constexpr std::string_view kBegin = "{\"lane\":1,";
  EXPECT_EQ(json.substr(0, kBegin.size()), kBegin);
  return "{\"lane\":" + number + ',' + json.substr(kBegin.size());
}

TEST(LaneOutput, TheJsonOfALaneDoesNotDependOnTheLanesBefore) {
  const std::vector<Lane> variants = Variants();
  for (std::size_t a = 0; a < variants.size(); ++a) {
    for (std::size_t b = 0; b < variants.size(); ++b) {
      const std::string json = LanesIn(ModuleOf({variants[a], variants[b], variants[a]}));
      EXPECT_EQ(json, LaneAlone(variants[a], "1") + ',' + LaneAlone(variants[b], "2") + ',' +
                          LaneAlone(variants[a], "3"))
          << "lanes " << a << ", " << b << ", " << a;
    }
  }
}

TEST(LaneOutput, JsonHasTheThresholdsAndFlagsOfEachLane) {
  const std::vector<Lane> variants = Variants();
  EXPECT_EQ(LanesIn(ModuleOf({variants[0], variants[5]})).find("\"low_alarm\":true"),
            LanesIn(ModuleOf({variants[0], variants[5]})).rfind("\"low_alarm\":true"))
      << "one flag is raised";
  EXPECT_NE(LanesIn(ModuleOf({variants[0], variants[2]})).find("\"low_warning\":0.625"),
            std::string::npos);
}

// The lines of a data sheet that begin with a label.
std::string LinesOf(const ModuleInfo& info, const std::string& label) {
  const std::string text = '\n' + cable_info::ModuleToText(info, "m");
  std::string lines;
  for (std::size_t at = text.find("\n    " + label); at != std::string::npos;
       at = text.find("\n    " + label, at + 1)) {
    lines += text.substr(at, text.find('\n', at + 1) - at);
  }
  return lines;
}

TEST(LaneOutput, TheLineOfALaneDoesNotDependOnTheLanesBefore) {
  const std::vector<Lane> variants = Variants();
  Lane other = variants.front();  // shares its thresholds with none
  other.rx_power.thresholds.values[0] = 3.5;
  for (std::size_t a = 0; a < variants.size(); ++a) {
    for (std::size_t b = 0; b < variants.size(); ++b) {
      // The first lane keeps the lines of the lanes from being one.
      const ModuleInfo copied = ModuleOf({other, variants[a], variants[b]});
      const ModuleInfo apart = ModuleOf({other, other, variants[b]});
      const std::string line = LinesOf(copied, "RX power, lane 3");
      EXPECT_EQ(line, LinesOf(apart, "RX power, lane 3")) << "lanes " << a << ", " << b;
      EXPECT_NE(line, "");
    }
  }
}

TEST(LaneOutput, LinesEndAfterTheirLastThresholdOrFlag) {
  const std::vector<Lane> variants = Variants();
  const std::string indent = "\n    RX power, lane 1" + std::string(25, ' ');
  const std::string value = indent + "1.5 mW (1.76 dBm)" + std::string(7, ' ');
  const std::string limits = value + "0.25          0.5           2             2.5";
  EXPECT_EQ(LinesOf(ModuleOf({variants[0]}), "RX power"), limits);
  EXPECT_EQ(LinesOf(ModuleOf({variants[4]}), "RX power"), indent + "1.5 mW (1.76 dBm)");
  EXPECT_EQ(LinesOf(ModuleOf({variants[5]}), "RX power"), limits + "           low alarm");
}

TEST(LaneOutput, RowsOfFlagsShowLanesWithoutOne) {
  const std::vector<Lane> variants = Variants();
  EXPECT_EQ(LinesOf(ModuleOf({variants[0], variants[9], variants[10]}), "RX LOS"),
            "\n    RX LOS" + std::string(34, ' ') + " no     yes    -");
  EXPECT_EQ(LinesOf(ModuleOf({variants[0], variants[9]}), "RX LOS"),
            "\n    RX LOS" + std::string(34, ' ') + " no     yes");
}

}  // namespace
