// `ReadingsOf` for a module's memory.

#include "cable_info/readings/module_readings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

#include "cable_info/module_memory/module_info.h"
#include "cable_info/readings/rules.h"
#include "readings_cases.h"

namespace cable_info {
namespace {

using readings_cases::Measured;

// A module of two lanes.
ModuleInfo Module() {
  ModuleInfo module;
  module.family = ModuleFamily::kCmis;
  module.SetCode(Field::kTechnology, 4, "1310 nm DFB");
  module.SetText(Field::kPartNumber, "PN");
  module.temperature = Measured(40.5);
  module.temperature.thresholds.values = {75, -5, 70, 0};
  module.temperature.thresholds.given = 0x0F;
  module.voltage = Measured(3.3);
  for (unsigned number = 1; number <= 2; ++number) {
    Lane& lane = module.lanes.emplace_back();
    lane.number = number;
    lane.rx_power = Measured(1.0);
    lane.tx_power = Measured(1.0);
    lane.tx_bias = Measured(282.2);
  }
  return module;
}

std::vector<Rule> RulesOf(const ModuleInfo& module) {
  std::vector<Finding> findings;
  Judge(ReadingsOf(module), RuleSettings(), findings);
  std::vector<Rule> rules;
  for (const Finding& finding : findings) rules.push_back(finding.rule);
  return rules;
}

TEST(ModuleReadings, KeepValuesThresholdsAndStates) {
  ModuleInfo module = Module();
  module.voltage.state = FieldState::kNotReady;
  const Readings port = ReadingsOf(module);
  EXPECT_TRUE(port.has_data);
  EXPECT_EQ(port.identity.part_number, "PN");
  EXPECT_EQ(port.medium, Medium::kOptical);
  EXPECT_EQ(port.lanes, 2);
  EXPECT_EQ(port.lanes_in_use, 3);
  EXPECT_EQ(port.Of(Quantity::kTemperature).value, 40.5F);
  EXPECT_EQ(port.Of(Quantity::kTemperature).Threshold(AlarmLevel::kLowAlarm), -5.0F);
  EXPECT_EQ(port.Of(Quantity::kTemperature).Threshold(AlarmLevel::kHighWarning), 70.0F);
  EXPECT_EQ(port.Of(Quantity::kVoltage).state, FieldState::kNotReady);
  EXPECT_EQ(port.Of(Quantity::kVoltage).value, 0.0F);
  EXPECT_EQ(port.Of(Quantity::kTxBias, 2).value, 282.2F);
  EXPECT_FALSE(ReadingsOf(ModuleInfo()).has_data);
}

TEST(ModuleReadings, GiveTextsAsTheBytesOfTheModule) {
  ModuleInfo module = Module();
  module.SetText(Field::kSerialNumber, "A\xFF\x80Z");
  EXPECT_EQ(ReadingsOf(module).identity.serial_number, "A\xFF\x80Z");
}

TEST(ModuleReadings, MeetWarningThresholdsOfLanes) {
  ModuleInfo module = Module();
  module.lanes[1].rx_power.thresholds.values = {2, 0.1, 1.5, 1.0};
  module.lanes[1].rx_power.thresholds.given = 0x0F;
  EXPECT_EQ(RulesOf(module), std::vector<Rule>{});
  module.lanes[1].rx_power.value = 0.99;
  EXPECT_EQ(RulesOf(module),
            std::vector<Rule>{ThresholdRule(Quantity::kRxPower, AlarmLevel::kLowWarning)});
  module.lanes[1].rx_power.value = 1.51;
  EXPECT_EQ(RulesOf(module),
            std::vector<Rule>{ThresholdRule(Quantity::kRxPower, AlarmLevel::kHighWarning)});
}

TEST(ModuleReadings, RaiseTheFlagsThatAreKnown) {
  ModuleInfo module = Module();
  module.lanes[0].Set(LaneField::kTxFault, {FieldState::kPresent, 1});
  module.lanes[1].Set(LaneField::kRxLos, {FieldState::kNotImplemented, 1});
  module.lanes[1].tx_bias.flags = {0x01, 0x01};
  const Readings port = ReadingsOf(module);
  EXPECT_EQ(port.Of(LaneFlag::kTxFault).Get(1), true);
  EXPECT_EQ(port.Of(LaneFlag::kTxFault).Get(2), std::nullopt);
  EXPECT_EQ(port.Of(LaneFlag::kRxLos).Get(2), std::nullopt);
  EXPECT_EQ(RulesOf(module),
            (std::vector<Rule>{LaneFlagRule(LaneFlag::kTxFault),
                               LatchedRule(Quantity::kTxBias, AlarmLevel::kHighAlarm)}));
}

TEST(ModuleReadings, CountChecksumsThatDoNotMatch) {
  ModuleInfo module = Module();
  module.checksums = {{Page::k00, 128, 221, 7, 7}, {Page::k01, 130, 254, 7, 8}};
  EXPECT_EQ(ReadingsOf(module).checksum_mismatches, 1);
  EXPECT_EQ(RulesOf(module), std::vector<Rule>{Rule::kChecksum});
}

TEST(ModuleReadings, HaveNoLanesInUseWithoutMonitors) {
  ModuleInfo module = Module();
  for (Lane& lane : module.lanes) {
    lane.rx_power = lane.tx_power = lane.tx_bias = Monitor();
    lane.Set(LaneField::kRxLos, {FieldState::kPresent, 1});
  }
  EXPECT_EQ(ReadingsOf(module).lanes_in_use, 0);
  EXPECT_EQ(RulesOf(module), std::vector<Rule>{});
}

TEST(ModuleReadings, CarryAuxiliaryMonitorsAndVdm) {
  ModuleInfo module = Module();
  module.aux = {{"laser_temperature_c", Measured(45)}, {"vcc2_v", Monitor()}};
  VdmSample sample;
  sample.observable = "pre_fec_ber_current_media";
  sample.instance = "lane 1";
  sample.monitor = Measured(1.5e-8);
  module.vdm = {sample};
  const Readings port = ReadingsOf(module);
  ASSERT_EQ(port.observables.size(), 2U);
  EXPECT_EQ(port.observables[0].name, "laser_temperature_c");
  EXPECT_EQ(port.observables[0].unit, "C");
  EXPECT_EQ(port.observables[0].reading.value, 45.0F);
  EXPECT_EQ(port.observables[1].name, "pre_fec_ber_current_media");
  EXPECT_EQ(port.observables[1].place, "lane 1");
  EXPECT_EQ(port.observables[1].reading.value, 1.5e-8F);
}

TEST(ModuleReadings, CarryEveryUnitOfAuxiliaryMonitors) {
  ModuleInfo module = Module();
  module.aux = {{"vcc2_v", Measured(1.8)},
                {"tec_current_ma", Measured(3)},
                {"tec_current_percent", Measured(-12.5)},
                {"custom", Measured(7)}};
  const Readings port = ReadingsOf(module);
  ASSERT_EQ(port.observables.size(), 4U);
  EXPECT_EQ(port.observables[0].unit, "V");
  EXPECT_EQ(port.observables[1].unit, "mA");
  EXPECT_EQ(port.observables[2].unit, "%");
  EXPECT_EQ(port.observables[3].unit, "");
}

TEST(ModuleReadings, NameUnknownObservablesByTheirType) {
  ModuleInfo module = Module();
  VdmSample sample;
  sample.type = 101;
  sample.monitor = Measured(7);
  module.vdm = {sample};
  EXPECT_EQ(ReadingsOf(module).observables.at(0).name, "type_101");
}

TEST(ModuleReadings, OmitValuesThatNoFloatHolds) {
  ModuleInfo module = Module();
  for (const double value : {1e300, -1e300, HUGE_VAL, std::nan("")}) {
    module.voltage = Measured(value);
    EXPECT_EQ(ReadingsOf(module).Of(Quantity::kVoltage).state, FieldState::kNotRead) << value;
  }
}

TEST(ModuleReadings, OmitThresholdsThatNoFloatHolds) {
  ModuleInfo module = Module();
  module.voltage.thresholds.values = {1e39, -1e39, HUGE_VAL, 3.5};
  module.voltage.thresholds.given = 0x0F;
  const Readings port = ReadingsOf(module);
  const Reading& voltage = port.Of(Quantity::kVoltage);
  EXPECT_EQ(voltage.Threshold(AlarmLevel::kHighAlarm), std::nullopt);
  EXPECT_EQ(voltage.Threshold(AlarmLevel::kLowAlarm), std::nullopt);
  EXPECT_EQ(voltage.Threshold(AlarmLevel::kHighWarning), std::nullopt);
  EXPECT_EQ(voltage.Threshold(AlarmLevel::kLowWarning), 3.5F);
  EXPECT_EQ(RulesOf(module),
            std::vector<Rule>{ThresholdRule(Quantity::kVoltage, AlarmLevel::kLowWarning)});
}

TEST(ModuleReadings, DeriveTheMediumFromTheTechnology) {
  const auto medium = [](unsigned technology) {
    ModuleInfo module = Module();
    module.SetCode(Field::kTechnology, technology, "");
    return ReadingsOf(module).medium;
  };
  EXPECT_EQ(medium(0), Medium::kOptical);         // 850 nm VCSEL
  EXPECT_EQ(medium(9), Medium::kOptical);         // 1490 nm DFB
  EXPECT_EQ(medium(10), Medium::kPassiveCopper);  // unequalized
  EXPECT_EQ(medium(11), Medium::kPassiveCopper);  // passive equalized
  EXPECT_EQ(medium(12), Medium::kActiveCopper);   // near and far end limiting equalizers
  EXPECT_EQ(medium(15), Medium::kActiveCopper);   // linear equalizers
  EXPECT_EQ(medium(16), Medium::kOptical);        // C-band tunable laser
  EXPECT_EQ(medium(17), Medium::kOptical);        // L-band tunable laser
  EXPECT_EQ(medium(18), Medium::kActiveCopper);   // near and far end linear equalizers
  EXPECT_EQ(medium(19), Medium::kActiveCopper);   // far end linear equalizers
  EXPECT_EQ(medium(20), Medium::kActiveCopper);   // near end linear equalizers
  EXPECT_EQ(medium(21), Medium::kOptical);        // reserved
}

TEST(ModuleReadings, DoNotKnowTheMediumWithoutTechnology) {
  ModuleInfo module = Module();
  module.SetState(Field::kTechnology, FieldState::kNotRead);
  EXPECT_EQ(ReadingsOf(module).medium, Medium::kUnknown);
  module = Module();
  module.family = ModuleFamily::kSff8472;
  EXPECT_EQ(ReadingsOf(module).medium, Medium::kUnknown);
}

TEST(ModuleReadings, GiveSettingsThatFitAByte) {
  ModuleInfo module = Module();
  module.lanes[0].Set(LaneField::kRxAmplitude, {FieldState::kPresent, 3});
  module.lanes[1].Set(LaneField::kRxAmplitude, {FieldState::kPresent, 256});
  const Readings port = ReadingsOf(module);
  EXPECT_EQ(port.controls.rx_amplitude[0], 3);
  EXPECT_EQ(port.controls.rx_amplitude[1], std::nullopt);
}

TEST(ModuleReadings, GiveLengthsAndSpeeds) {
  ModuleInfo module = Module();
  module.SetNumber(Field::kLengthSmf, 1500);
  module.supported_speeds = {"SDR", "QDR", "HDR"};
  const Readings port = ReadingsOf(module);
  EXPECT_EQ(port.lengths.smf, 1500.0F);
  EXPECT_EQ(port.lengths.om3, std::nullopt);
  EXPECT_EQ(port.speeds, 0b100101);
}

TEST(ModuleReadings, GiveTheLengthOfACableToCablesAlone) {
  constexpr unsigned kOptical = 4;
  constexpr unsigned kCopper = 10;
  constexpr unsigned kMpo = 0x0C;
  constexpr unsigned kNoneSeparable = 0x23;
  const auto length = [](ModuleFamily family, unsigned technology, unsigned connector) {
    ModuleInfo module = Module();
    module.family = family;
    module.SetCode(Field::kTechnology, technology, "");
    module.SetCode(Field::kConnector, connector, "");
    module.SetNumber(Field::kLengthCable, 5);
    return ReadingsOf(module).lengths.cable;
  };
  for (const ModuleFamily family : {ModuleFamily::kSff8636, ModuleFamily::kCmis}) {
    EXPECT_EQ(length(family, kOptical, kMpo), std::nullopt);
    EXPECT_EQ(length(family, kOptical, kNoneSeparable), 5.0F);
    EXPECT_EQ(length(family, kCopper, kMpo), 5.0F);
  }
  // SFF-8472 names no technology; only cables and copper modules have that length.
  EXPECT_EQ(length(ModuleFamily::kSff8472, kOptical, 0x21), 5.0F);
}

TEST(ModuleReadings, LeaveSpeedsOpenWithoutAKnownOne) {
  ModuleInfo module = Module();
  module.supported_speeds = {"XDR"};
  EXPECT_EQ(ReadingsOf(module).speeds, std::nullopt);
}

TEST(ModuleReadings, GiveTheKindOfReceivedPower) {
  ModuleInfo module = Module();
  EXPECT_EQ(ReadingsOf(module).rx_power_is_average, std::nullopt);
  module.SetCode(Field::kRxPowerType, 1, "average power");
  EXPECT_EQ(ReadingsOf(module).rx_power_is_average, true);
  module.SetCode(Field::kRxPowerType, 0, "OMA");
  EXPECT_EQ(ReadingsOf(module).rx_power_is_average, false);
}

}  // namespace
}  // namespace cable_info
