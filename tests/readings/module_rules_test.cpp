// The rules with modules whose memory is decoded: ports that just meet each, and just do not.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "cable_info/readings/fabric_rules.h"
#include "cable_info/readings/module_readings.h"
#include "cable_info/readings/rules.h"
#include "readings_cases.h"

namespace cable_info {
namespace {

using readings_cases::Measured;
using readings_cases::Shown;
using readings_cases::Texts;

constexpr unsigned kLanes = 2;

// A healthy optical module.
ModuleInfo Module() {
  ModuleInfo module;
  module.family = ModuleFamily::kCmis;
  module.SetCode(Field::kTechnology, 4, "1310 nm DFB");
  module.SetText(Field::kPartNumber, "PN");
  module.SetText(Field::kSerialNumber, "SN");
  module.temperature = Measured(40);
  module.voltage = Measured(3.3);
  for (unsigned number = 1; number <= kLanes; ++number) {
    Lane& lane = module.lanes.emplace_back();
    lane.number = number;
    lane.rx_power = Measured(1.0);
    lane.tx_power = Measured(1.0);
    lane.tx_bias = Measured(7.0);
  }
  return module;
}

Texts Find(const ModuleInfo& module, const RuleSettings& settings = {}) {
  std::vector<Finding> findings;
  Judge(ReadingsOf(module), settings, findings);
  return Shown(findings);
}

RuleSettings WithoutImbalance() {
  RuleSettings settings;
  EXPECT_EQ(settings.Set("lane-imbalance", "off"), RuleSettings::Outcome::kSet);
  return settings;
}

struct Place {
  std::string name;  // as rules begin
  std::string lane;  // as `Find` ends
  Monitor& (*of)(ModuleInfo& module);
};

const std::vector<Place>& Places() {
  static const std::vector<Place> kPlaces = {
      {"temperature", "", [](ModuleInfo& module) -> Monitor& { return module.temperature; }},
      {"voltage", "", [](ModuleInfo& module) -> Monitor& { return module.voltage; }},
      {"rx-power", " 2", [](ModuleInfo& module) -> Monitor& { return module.lanes[1].rx_power; }},
      {"tx-power", " 1", [](ModuleInfo& module) -> Monitor& { return module.lanes[0].tx_power; }},
      {"tx-bias", " 2", [](ModuleInfo& module) -> Monitor& { return module.lanes[1].tx_bias; }}};
  return kPlaces;
}

struct Level {
  std::string name;
  std::string severity;
  double beyond;  // in the direction of the limit
};

const std::vector<Level>& Levels() {  // in the order of `AlarmLevel`
  static const std::vector<Level> kLevels = {{"high-alarm", "critical", 0.125},
                                             {"low-alarm", "critical", -0.125},
                                             {"high-warning", "warning", 0.125},
                                             {"low-warning", "warning", -0.125}};
  return kLevels;
}

TEST(ModuleRules, HealthyModulesHaveNoFinding) { EXPECT_EQ(Find(Module()), Texts{}); }

TEST(ModuleRules, Thresholds) {
  for (const Place& place : Places()) {
    for (std::size_t level = 0; level < Levels().size(); ++level) {
      const Level& expected = Levels()[level];
      ModuleInfo module = Module();
      Monitor& monitor = place.of(module);
      monitor.value = 2.0;
      monitor.thresholds.values[level] = 2.0;
      monitor.thresholds.given = static_cast<std::uint8_t>(1U << level);
      EXPECT_EQ(Find(module, WithoutImbalance()), Texts{}) << place.name << expected.name;
      monitor.value += expected.beyond;
      EXPECT_EQ(Find(module, WithoutImbalance()),
                Texts{expected.severity + ' ' + place.name + '-' + expected.name + place.lane});
    }
  }
}

TEST(ModuleRules, LatchedFlags) {
  for (const Place& place : Places()) {
    for (std::size_t level = 0; level < Levels().size(); ++level) {
      ModuleInfo module = Module();
      AlarmFlags& flags = place.of(module).flags;
      flags.known = static_cast<std::uint8_t>(1U << level);
      EXPECT_EQ(Find(module), Texts{});
      flags.raised = flags.known;
      EXPECT_EQ(Find(module), Texts{"warning " + place.name + '-' + Levels()[level].name +
                                    "-latched" + place.lane});
    }
  }
}

TEST(ModuleRules, LaneFlags) {
  const std::pair<LaneField, const char*> kFlags[] = {
      {LaneField::kRxLos, "rx-los"},     {LaneField::kTxLos, "tx-los"},
      {LaneField::kRxLol, "rx-lol"},     {LaneField::kTxLol, "tx-lol"},
      {LaneField::kTxFault, "tx-fault"}, {LaneField::kTxAdaptiveEqFault, "adaptive-eq-fault"}};
  for (const auto& [field, rule] : kFlags) {
    ModuleInfo module = Module();
    module.lanes[1].Set(field, {FieldState::kPresent, 0});
    EXPECT_EQ(Find(module), Texts{}) << rule;
    module.lanes[1].Set(field, {FieldState::kPresent, 1});
    EXPECT_EQ(Find(module), Texts{"warning " + std::string(rule) + " 2"});
  }
}

TEST(ModuleRules, FlagsAreMoreSevereWithoutLight) {
  ModuleInfo module = Module();
  module.lanes[0].Set(LaneField::kRxLos, {FieldState::kPresent, 1});
  module.lanes[1].Set(LaneField::kTxFault, {FieldState::kPresent, 1});
  module.lanes[0].rx_power.value = module.lanes[1].tx_power.value = 0.0011;
  EXPECT_EQ(Find(module, WithoutImbalance()), (Texts{"warning rx-los 1", "warning tx-fault 2"}));
  module.lanes[0].rx_power.value = module.lanes[1].tx_power.value = 0.001;
  EXPECT_EQ(Find(module, WithoutImbalance()), (Texts{"critical rx-los 1", "critical tx-fault 2"}));
}

TEST(ModuleRules, LaneImbalance) {
  ModuleInfo module = Module();
  module.lanes[1].rx_power.value = 0.502;  // 2.993 dB below 1 mW
  EXPECT_EQ(Find(module), Texts{});
  module.lanes[1].rx_power.value = 0.501;  // 3.002 dB
  EXPECT_EQ(Find(module), Texts{"warning lane-imbalance 2"});
}

TEST(ModuleRules, NoData) { EXPECT_EQ(Find(ModuleInfo()), Texts{"unknown no-data"}); }

// ---------------------------------------------------------------------------------------------
// Rules that compare ports
// ---------------------------------------------------------------------------------------------

std::vector<Rule> RulesOf(const std::vector<FabricPort>& ports) {
  FabricRules rules{RuleSettings()};
  for (const FabricPort& port : ports) rules.Add(port);
  std::vector<Rule> found;
  rules.Judge([&](std::size_t, const Finding& finding) { found.push_back(finding.rule); });
  return found;
}

TEST(ModuleRules, Outlier) {
  const auto with = [](double rx_power) {
    std::vector<FabricPort> ports;
    for (unsigned n = 0; n < 8; ++n) {
      ModuleInfo module = Module();
      for (Lane& lane : module.lanes) lane.rx_power.value = n == 0 ? rx_power : 1.0;
      ports.emplace_back(PortId{n, 1}, std::nullopt, ReadingsOf(module));
    }
    return RulesOf(ports);
  };
  EXPECT_EQ(with(0.502), std::vector<Rule>{});  // 2.993 dB below the median
  EXPECT_EQ(with(0.501), std::vector<Rule>{Rule::kOutlier});
}

TEST(ModuleRules, LinkLoss) {
  const auto with = [](double rx_power) {
    ModuleInfo near = Module();
    for (Lane& lane : near.lanes) lane.rx_power.value = rx_power;
    return RulesOf({{PortId{1, 5}, PortId{2, 6}, ReadingsOf(near)},
                    {PortId{2, 6}, std::nullopt, ReadingsOf(Module())}});
  };
  EXPECT_EQ(with(0.252), std::vector<Rule>{});  // 5.986 dB below 1 mW
  EXPECT_EQ(with(0.251), std::vector<Rule>{Rule::kLinkLoss});
}

TEST(ModuleRules, EndMismatch) {
  const auto with = [](const char* serial_number) {
    ModuleInfo near = Module();
    near.SetCode(Field::kConnector, 0x23, "no separable connector");
    ModuleInfo far = near;
    far.SetText(Field::kSerialNumber, serial_number);
    return RulesOf({{PortId{1, 5}, PortId{2, 6}, ReadingsOf(near)},
                    {PortId{2, 6}, std::nullopt, ReadingsOf(far)}});
  };
  EXPECT_EQ(with("SN"), std::vector<Rule>{});
  EXPECT_EQ(with("SM"), std::vector<Rule>{Rule::kEndMismatch});
}

}  // namespace
}  // namespace cable_info
