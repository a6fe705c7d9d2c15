// Each rule with a port that just meets it and one that just does not, from every source that can
// show it.

#include "cable_info/readings/rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/phy_cable_record.h"
#include "readings_cases.h"

namespace cable_info {
namespace {

using readings_cases::Shown;
using readings_cases::Texts;

using ModuleRecord = PhyCableRecord::ModuleRecord;
using LatchedFlagsPage = PhyCableRecord::LatchedFlagsPage;

// A healthy optical module on the cable pages.
CableRecord Pages() {
  CableRecord r;
  r.Identifier = 0x11;
  r.Connector = 0x0C;
  r.Temperature = 40 << 8;
  r.SupplyVoltage = 33000;
  r.TempHighAlarmThresh = 75 << 8;
  r.TempLowAlarmThresh = 0xFB00;  // -5
  r.TempHighWarnThresh = 70 << 8;
  r.VoltHighAlarmThresh = 36300;
  r.VoltLowAlarmThresh = 29700;
  r.VoltHighWarnThresh = 34650;
  r.VoltLowWarnThresh = 31350;
  for (int i = 0; i < 4; ++i) {
    r.RxPower[i] = 1.0F;
    r.TxPower[i] = 1.0F;
    r.TxBias[i] = 7.0F;
  }
  return r;
}

// A healthy optical module of eight lanes in the PHY's registers.
struct Registers {
  Registers() {
    module.power_unit_flag = 1;
    module.cable_identifier = 8;
    module.temperature = 40 << 8;
    module.voltage = 33000;
    module.temp_high_threshold = 75 << 8;
    module.temp_low_threshold = 0xFB00;
    module.voltage_high_threshold = 36300;
    module.voltage_low_threshold = 29700;
    module.rx_power_high_threshold = 20000;
    module.rx_power_low_threshold = 5000;
    module.tx_power_high_threshold = 20000;
    module.tx_power_low_threshold = 5000;
    module.tx_bias_high_threshold = 5000;
    module.tx_bias_low_threshold = 1000;
    for (int i = 0; i < 8; ++i) {
      module.rx_power[i] = 10000;
      module.tx_power[i] = 10000;
      module.tx_bias[i] = 3500;
    }
  }
  ModuleRecord module;
  LatchedFlagsPage flags;
};

std::vector<Finding> Find(const Readings& port, const RuleSettings& settings = {}) {
  std::vector<Finding> findings;
  Judge(port, settings, findings);
  return findings;
}

std::vector<Finding> Find(const CableRecord& record, const RuleSettings& settings = {}) {
  return Find(ReadingsOf(record), settings);
}

std::vector<Finding> Find(const Registers& registers, const RuleSettings& settings = {}) {
  PhyCableRecord phy;
  phy.SetModule(std::make_unique<ModuleRecord>(registers.module));
  phy.SetLatchedFlags(std::make_unique<LatchedFlagsPage>(registers.flags));
  return Find(ReadingsOf(phy), settings);
}

RuleSettings With(std::string_view name, std::string_view value) {
  RuleSettings settings;
  EXPECT_EQ(settings.Set(name, value), RuleSettings::Outcome::kSet) << name << '=' << value;
  return settings;
}

TEST(Rules, FindNothingInHealthyPorts) {
  EXPECT_EQ(Shown(Find(Pages())), Texts{});
  EXPECT_EQ(Shown(Find(Registers())), Texts{});
}

// ---------------------------------------------------------------------------------------------
// Without a module
// ---------------------------------------------------------------------------------------------

TEST(Rules, QueryFailed) {
  CableRecord r = Pages();
  r.QueryStatus = 1;
  r.Temperature = 100 << 8;
  r.LatchedCdrLos = 0xFF;
  const std::vector<Finding> findings = Find(r);
  EXPECT_EQ(Shown(findings), Texts{"critical query-failed"});
  EXPECT_EQ(findings[0].value, 1.0F);
  EXPECT_EQ(Sentence(findings[0]), "The query that reads the module failed: Invalid port number.");
}

TEST(Rules, NoData) {
  EXPECT_EQ(Shown(Find(Readings())), Texts{"unknown no-data"});
  PhyCableRecord phy;
  phy.source = "PHY";
  EXPECT_EQ(Shown(Find(ReadingsOf(phy))), Texts{"unknown no-data"});
  phy.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  EXPECT_EQ(Shown(Find(ReadingsOf(phy))), Texts{});
}

// ---------------------------------------------------------------------------------------------
// Thresholds of the module
// ---------------------------------------------------------------------------------------------

TEST(Rules, TemperatureOfThePages) {
  const auto at = [](int degrees) {
    CableRecord r = Pages();
    r.Temperature = static_cast<std::uint16_t>(degrees << 8);
    return Shown(Find(r));
  };
  EXPECT_EQ(at(70), Texts{});
  EXPECT_EQ(at(71), Texts{"warning temperature-high-warning"});
  EXPECT_EQ(at(75), Texts{"warning temperature-high-warning"});
  EXPECT_EQ(at(76), (Texts{"critical temperature-high-alarm", "warning temperature-high-warning"}));
  EXPECT_EQ(at(0), Texts{});
  EXPECT_EQ(at(-1), Texts{"warning temperature-low-warning"});
  EXPECT_EQ(at(-5), Texts{"warning temperature-low-warning"});
  EXPECT_EQ(at(-6), (Texts{"critical temperature-low-alarm", "warning temperature-low-warning"}));
}

TEST(Rules, TemperatureOfTheRegisters) {
  const auto at = [](int degrees) {
    Registers r;
    r.module.temperature = static_cast<std::uint16_t>(degrees << 8);
    return Shown(Find(r));
  };
  EXPECT_EQ(at(75), Texts{});
  EXPECT_EQ(at(76), Texts{"critical temperature-high-alarm"});
  EXPECT_EQ(at(-5), Texts{});
  EXPECT_EQ(at(-6), Texts{"critical temperature-low-alarm"});
}

TEST(Rules, VoltageOfThePages) {
  const auto at = [](std::uint16_t raw) {
    CableRecord r = Pages();
    r.SupplyVoltage = raw;
    return Shown(Find(r));
  };
  EXPECT_EQ(at(34650), Texts{});
  EXPECT_EQ(at(34651), Texts{"warning voltage-high-warning"});
  EXPECT_EQ(at(36301), (Texts{"critical voltage-high-alarm", "warning voltage-high-warning"}));
  EXPECT_EQ(at(31350), Texts{});
  EXPECT_EQ(at(31349), Texts{"warning voltage-low-warning"});
  EXPECT_EQ(at(29699), (Texts{"critical voltage-low-alarm", "warning voltage-low-warning"}));
}

TEST(Rules, VoltageOfTheRegisters) {
  const auto at = [](std::uint16_t raw) {
    Registers r;
    r.module.voltage = raw;
    return Shown(Find(r));
  };
  EXPECT_EQ(at(36300), Texts{});
  EXPECT_EQ(at(36301), Texts{"critical voltage-high-alarm"});
  EXPECT_EQ(at(29700), Texts{});
  EXPECT_EQ(at(29699), Texts{"critical voltage-low-alarm"});
}

TEST(Rules, PowerAndBiasOfTheRegisters) {
  struct Lane {
    std::uint16_t (ModuleRecord::*words)[8];
    std::string name;
    std::uint16_t low;
    std::uint16_t high;
  };
  const Lane lanes[] = {{&ModuleRecord::rx_power, "rx-power", 5000, 20000},
                        {&ModuleRecord::tx_power, "tx-power", 5000, 20000},
                        {&ModuleRecord::tx_bias, "tx-bias", 1000, 5000}};
  const RuleSettings settings = With("lane-imbalance", "off");
  for (const Lane& lane : lanes) {
    const auto at = [&](int raw) {
      Registers r;
      (r.module.*lane.words)[4] = static_cast<std::uint16_t>(raw);  // lane 6
      return Shown(Find(r, settings));
    };
    EXPECT_EQ(at(lane.high), Texts{});
    EXPECT_EQ(at(lane.high + 1), Texts{"critical " + lane.name + "-high-alarm 6"});
    EXPECT_EQ(at(lane.low), Texts{});
    EXPECT_EQ(at(lane.low - 1), Texts{"critical " + lane.name + "-low-alarm 6"});
  }
}

TEST(Rules, MissingThresholdsAreNotCrossed) {
  Registers r;
  r.module.temperature = 100 << 8;
  r.module.temp_high_threshold = r.module.temp_low_threshold = 0;
  r.module.rx_power_high_threshold = r.module.rx_power_low_threshold = 0;
  EXPECT_EQ(Shown(Find(r)), Texts{});
}

TEST(Rules, FindingsOfThresholdsNameBothValues) {
  Registers r;
  r.module.rx_power[0] = 4030;  // lane 2
  r.module.temperature = 79 << 8;
  std::vector<Finding> findings = Find(r, With("lane-imbalance", "off"));
  SortWorstFirst(findings);
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0].value, 79.0F);
  EXPECT_EQ(findings[0].limit, 75.0F);
  EXPECT_EQ(RuleUnit(findings[0].rule), "C");
  EXPECT_EQ(Sentence(findings[0]), "The temperature is 79 C, above the high alarm limit of 75 C.");
  EXPECT_EQ(findings[1].lane, 2);
  EXPECT_EQ(findings[1].value, 0.403F);
  EXPECT_EQ(findings[1].limit, 0.5F);
  EXPECT_EQ(RuleUnit(findings[1].rule), "mW");
  EXPECT_EQ(Sentence(findings[1]),
            "The RX power of lane 2 is 0.403 mW (-3.947 dBm), below the low alarm limit of "
            "0.5 mW (-3.01 dBm).");
}

// ---------------------------------------------------------------------------------------------
// Latched flags
// ---------------------------------------------------------------------------------------------

TEST(Rules, LatchedFlagsOfTheModuleOnThePages) {
  const char* const bounds[] = {"high-alarm", "low-alarm", "high-warning", "low-warning"};
  for (int i = 0; i < 4; ++i) {
    CableRecord r = Pages();
    r.LatchedTemperatureAlarms = static_cast<std::uint8_t>(0x80 >> i);
    EXPECT_EQ(Shown(Find(r)), Texts{"warning temperature-" + std::string(bounds[i]) + "-latched"});
    r.LatchedTemperatureAlarms = 0;
    r.LatchedVoltageAlarms = static_cast<std::uint8_t>(0x80 >> i);
    EXPECT_EQ(Shown(Find(r)), Texts{"warning voltage-" + std::string(bounds[i]) + "-latched"});
  }
}

TEST(Rules, LatchedFlagsOfTheLanesOnThePages) {
  CableRecord r = Pages();
  r.RxPowerAlarms = 0x4000;
  r.TxPowerAlarms = 0x0080;
  r.TxBiasAlarms = 0x0001;
  EXPECT_EQ(Shown(Find(r)),
            (Texts{"warning rx-power-low-alarm-latched 1", "warning tx-power-high-alarm-latched 3",
                   "warning tx-bias-low-warning-latched 4"}));
}

TEST(Rules, LatchedFlagsOfTheRegisters) {
  Registers r;
  r.flags.latched_temperature_flags = 1;
  r.flags.latched_voltage_flags = 8;
  r.flags.latched_rx_power_low_alarm = 0x80;
  r.flags.latched_tx_power_high_warning = 0x10;
  r.flags.latched_tx_bias_high_alarm = 0x01;
  EXPECT_EQ(
      Shown(Find(r)),
      (Texts{"warning temperature-high-alarm-latched", "warning voltage-low-warning-latched",
             "warning tx-bias-high-alarm-latched 1", "warning tx-power-high-warning-latched 5",
             "warning rx-power-low-alarm-latched 8"}));
}

TEST(Rules, ALatchedFlagOfAValueBeyondItsThresholdGivesNoSecondFinding) {
  Registers r;
  r.module.temperature = 76 << 8;
  r.flags.latched_temperature_flags = 1;
  EXPECT_EQ(Shown(Find(r)), Texts{"critical temperature-high-alarm"});
  r.flags.latched_temperature_flags = 4;  // the high warning, whose threshold is not known
  EXPECT_EQ(Shown(Find(r)),
            (Texts{"critical temperature-high-alarm", "warning temperature-high-warning-latched"}));
}

TEST(Rules, ALatchedFlagCountsWithoutAValue) {
  PhyCableRecord phy;
  phy.SetLatchedFlags(std::make_unique<LatchedFlagsPage>());
  phy.latched_flags->latched_temperature_flags = 1;
  const std::vector<Finding> findings = Find(ReadingsOf(phy));
  EXPECT_EQ(Shown(findings), Texts{"warning temperature-high-alarm-latched"});
  EXPECT_EQ(Sentence(findings[0]),
            "The temperature high alarm is latched; the value is not known now.");
}

TEST(Rules, SentencesOfLatchedFlags) {
  Registers r;
  r.flags.latched_rx_power_low_alarm = 0x80;
  EXPECT_EQ(Sentence(Find(r).at(0)),
            "The RX power low alarm of lane 8 is latched; the value is 1 mW (0 dBm) now.");
}

// ---------------------------------------------------------------------------------------------
// Lane flags
// ---------------------------------------------------------------------------------------------

TEST(Rules, LaneFlagsOfThePages) {
  const auto with = [](std::uint8_t CableRecord::*byte, std::uint8_t bits) {
    CableRecord r = Pages();
    r.*byte = bits;
    return Shown(Find(r));
  };
  EXPECT_EQ(with(&CableRecord::LatchedCdrLos, 0x04), Texts{"warning rx-los 3"});
  EXPECT_EQ(with(&CableRecord::LatchedCdrLos, 0x40), Texts{"warning tx-los 3"});
  EXPECT_EQ(with(&CableRecord::LatchedCdrLol, 0x01), Texts{"warning rx-lol 1"});
  EXPECT_EQ(with(&CableRecord::LatchedCdrLol, 0x80), Texts{"warning tx-lol 4"});
  EXPECT_EQ(with(&CableRecord::LatchedAdaptiveEqFault, 0x02), Texts{"warning tx-fault 2"});
  EXPECT_EQ(with(&CableRecord::LatchedAdaptiveEqFault, 0x20), Texts{"warning adaptive-eq-fault 2"});
}

TEST(Rules, LaneFlagsOfTheRegisters) {
  const auto with = [](std::uint8_t LatchedFlagsPage::*byte) {
    Registers r;
    r.flags.*byte = 0x40;
    return Shown(Find(r));
  };
  EXPECT_EQ(with(&LatchedFlagsPage::latched_rx_los), Texts{"warning rx-los 7"});
  EXPECT_EQ(with(&LatchedFlagsPage::latched_tx_los), Texts{"warning tx-los 7"});
  EXPECT_EQ(with(&LatchedFlagsPage::latched_rx_cdr_lol), Texts{"warning rx-lol 7"});
  EXPECT_EQ(with(&LatchedFlagsPage::latched_tx_cdr_lol), Texts{"warning tx-lol 7"});
  EXPECT_EQ(with(&LatchedFlagsPage::latched_tx_adaptive_eq_fault),
            Texts{"warning adaptive-eq-fault 7"});
}

TEST(Rules, SentencesOfLaneFlags) {
  const auto with = [](std::uint8_t CableRecord::*byte, std::uint8_t bits) {
    CableRecord r = Pages();
    r.*byte = bits;
    return Sentence(Find(r).at(0));
  };
  EXPECT_EQ(with(&CableRecord::LatchedCdrLos, 0x04),
            "Loss of the received signal of lane 3 is latched; the RX power is 1 mW (0 dBm) now.");
  EXPECT_EQ(with(&CableRecord::LatchedCdrLos, 0x40),
            "Loss of the host's signal of lane 3 is latched.");
  EXPECT_EQ(with(&CableRecord::LatchedCdrLol, 0x01),
            "Loss of lock of the receiver's CDR of lane 1 is latched.");
  EXPECT_EQ(with(&CableRecord::LatchedCdrLol, 0x80),
            "Loss of lock of the transmitter's CDR of lane 4 is latched.");
  EXPECT_EQ(with(&CableRecord::LatchedAdaptiveEqFault, 0x02),
            "A transmitter fault of lane 2 is latched; the TX power is 1 mW (0 dBm) now.");
  EXPECT_EQ(with(&CableRecord::LatchedAdaptiveEqFault, 0x20),
            "A fault of the adaptive equalization of lane 2 is latched.");
}

TEST(Rules, TheSentenceOfAFlagAdmitsAnUnknownPower) {
  CableRecord r = Pages();
  r.LatchedCdrLos = 0x02;
  r.RxPower[1] = std::nanf("");
  EXPECT_EQ(Sentence(Find(r, With("lane-imbalance", "off")).at(0)),
            "Loss of the received signal of lane 2 is latched; the RX power is not known now.");
}

TEST(Rules, ThePortWithoutDataHasASentence) {
  Finding finding;
  finding.rule = Rule::kNoData;
  EXPECT_EQ(Sentence(finding), "Nothing was read from the port's cable.");
}

TEST(Rules, LossOfSignalIsMoreSevereWithoutLight) {
  const RuleSettings settings = With("lane-imbalance", "off");
  CableRecord r = Pages();
  r.LatchedCdrLos = 0x02;
  r.RxPower[1] = 0.0011F;
  EXPECT_EQ(Shown(Find(r, settings)), Texts{"warning rx-los 2"});
  r.RxPower[1] = 0.001F;
  EXPECT_EQ(Shown(Find(r, settings)), Texts{"critical rx-los 2"});
  r.RxPower[1] = 0.0F;
  EXPECT_EQ(Shown(Find(r, settings)), Texts{"critical rx-los 2"});
  EXPECT_EQ(Sentence(Find(r, settings).at(0)),
            "Loss of the received signal of lane 2 is latched; there is no light now (0 mW).");
  r.RxPower[1] = std::nanf("");
  EXPECT_EQ(Shown(Find(r, settings)), Texts{"warning rx-los 2"}) << "not known is not dark";
}

TEST(Rules, LossOfSignalOfTheRegistersIsMoreSevereWithoutLight) {
  Registers r;
  r.flags.latched_rx_los = 0x01;
  r.module.rx_power_low_threshold = r.module.rx_power_high_threshold = 0;
  r.module.rx_power[1] = 11;  // lane 1
  const RuleSettings settings = With("lane-imbalance", "off");
  EXPECT_EQ(Shown(Find(r, settings)), Texts{"warning rx-los 1"});
  r.module.rx_power[1] = 10;
  EXPECT_EQ(Shown(Find(r, settings)), Texts{"critical rx-los 1"});
}

TEST(Rules, TransmitterFaultIsMoreSevereWithoutLight) {
  CableRecord r = Pages();
  r.LatchedAdaptiveEqFault = 0x08;
  r.TxPower[3] = 0.0011F;
  EXPECT_EQ(Shown(Find(r)), Texts{"warning tx-fault 4"});
  r.TxPower[3] = 0.0F;
  EXPECT_EQ(Shown(Find(r)), Texts{"critical tx-fault 4"});
  EXPECT_EQ(Sentence(Find(r).at(0)),
            "A transmitter fault of lane 4 is latched; there is no light now (0 mW).");
  EXPECT_EQ(Shown(Find(r, With("tx-fault.dark", "warning"))), Texts{"warning tx-fault 4"});
  EXPECT_EQ(Shown(Find(r, With("tx-fault", "off"))), Texts{});
}

// ---------------------------------------------------------------------------------------------
// Lanes that raise nothing
// ---------------------------------------------------------------------------------------------

CableRecord AllFlagsRaised() {
  CableRecord r = Pages();
  r.LatchedCdrLos = r.LatchedCdrLol = r.LatchedAdaptiveEqFault = 0xFF;
  r.RxPowerAlarms = r.TxPowerAlarms = r.TxBiasAlarms = 0xFFFF;
  return r;
}

TEST(Rules, LanesThatAreNotInUseRaiseNothing) {
  CableRecord r = AllFlagsRaised();
  for (int i = 1; i < 4; ++i) r.RxPower[i] = r.TxPower[i] = r.TxBias[i] = 0;
  const std::vector<Finding> findings = Find(r);
  EXPECT_EQ(findings.size(), 12U + 6U);
  EXPECT_TRUE(std::all_of(findings.begin(), findings.end(),
                          [](const Finding& finding) { return finding.lane == 1; }));
}

TEST(Rules, LanesThatTheFormFactorDoesNotHaveRaiseNothing) {
  Registers r;
  r.module.cable_identifier = 2;
  for (int i = 0; i < 8; i += 2) r.module.rx_power[i] = 1;  // lanes 2, 4, 6 and 8
  r.flags.latched_rx_los = 0xFE;
  r.flags.latched_rx_power_low_alarm = 0xFE;
  r.flags.latched_tx_cdr_lol = 0xFE;
  EXPECT_EQ(Shown(Find(r)), Texts{});
}

TEST(Rules, ModulesWithoutMonitorsRaiseNoOpticalFinding) {
  CableRecord r = AllFlagsRaised();
  for (int i = 0; i < 4; ++i) r.RxPower[i] = r.TxPower[i] = r.TxBias[i] = 0;
  EXPECT_EQ(Shown(Find(r)), Texts{});
}

TEST(Rules, CopperRaisesNoOpticalFinding) {
  CableRecord r = AllFlagsRaised();
  r.TransmitterTechnologyCode = 10;
  r.SupplyVoltage = 0;
  EXPECT_EQ(Shown(Find(r)), Texts{});
  r = AllFlagsRaised();
  r.TransmitterTechnologyCode = 12;
  r.LatchedCdrLos = r.LatchedCdrLol = 0x11;
  r.LatchedAdaptiveEqFault = 0x11;
  EXPECT_EQ(Shown(Find(r)), (Texts{"warning tx-los 1", "warning rx-lol 1", "warning tx-lol 1",
                                   "warning adaptive-eq-fault 1"}));
  Registers registers;
  registers.module.cable_technology = 0x0A;
  registers.module.rx_power[0] = 1;
  registers.flags.latched_rx_los = 0xFF;
  registers.flags.latched_tx_cdr_lol = 0xFF;
  EXPECT_EQ(Shown(Find(registers)), Texts{});
}

// ---------------------------------------------------------------------------------------------
// Comparisons within the port
// ---------------------------------------------------------------------------------------------

TEST(Rules, LaneImbalanceOfThePages) {
  CableRecord r = Pages();
  r.RxPower[2] = 0.502F;  // 2.993 dB below 1 mW
  EXPECT_EQ(Shown(Find(r)), Texts{});
  r.RxPower[2] = 0.501F;  // 3.002 dB
  const std::vector<Finding> findings = Find(r);
  EXPECT_EQ(Shown(findings), Texts{"warning lane-imbalance 3"});
  EXPECT_NEAR(findings[0].value, 3.0016F, 0.0005F);
  EXPECT_EQ(findings[0].limit, 3.0F);
  EXPECT_EQ(RuleUnit(findings[0].rule), "dB");
  EXPECT_EQ(Sentence(findings[0]),
            "The RX power of lane 3 is 3.002 dB below that of lane 1, more than 3 dB.");
  EXPECT_EQ(Shown(Find(r, With("lane-imbalance", "3.1"))), Texts{});
  EXPECT_EQ(Shown(Find(r, With("lane-imbalance", "2.5"))), Texts{"warning lane-imbalance 3"});
}

TEST(Rules, LaneImbalanceOfTheRegisters) {
  Registers r;
  r.module.rx_power[7] = 19900;  // lane 7: 2.989 dB above 1 mW
  EXPECT_EQ(Shown(Find(r)), Texts{});
  r.module.rx_power[7] = 19990;  // 3.008 dB
  EXPECT_EQ(Shown(Find(r)), Texts{"warning lane-imbalance 1"});
}

TEST(Rules, ADarkLaneInUseIsOutOfBalance) {
  CableRecord r = Pages();
  r.RxPower[0] = 0;
  const std::vector<Finding> findings = Find(r);
  EXPECT_EQ(Shown(findings), Texts{"warning lane-imbalance 1"});
  EXPECT_EQ(findings[0].value, 40.0F) << "no light counts as -40 dBm";
}

TEST(Rules, LengthMismatchOfThePages) {
  const auto with = [](std::uint8_t stated, const char* measured) {
    CableRecord r = Pages();
    r.Connector = 0x23;
    r.LengthCopperOrActive = stated;
    r.PrtlLengthText = measured;
    return Shown(Find(r));
  };
  EXPECT_EQ(with(5, "7 m"), Texts{}) << "40 %, but no more than 2 m";
  EXPECT_EQ(with(5, "7.1 m"), Texts{"warning length-mismatch"});
  EXPECT_EQ(with(5, "2.9 m"), Texts{"warning length-mismatch"});
  EXPECT_EQ(with(50, "60 m"), Texts{}) << "10 m, but no more than 20 %";
  EXPECT_EQ(with(50, "60.1 m"), Texts{"warning length-mismatch"});
  EXPECT_EQ(with(50, "39.9 m"), Texts{"warning length-mismatch"});
  EXPECT_EQ(with(0, "60 m"), Texts{});
  EXPECT_EQ(with(50, ""), Texts{});
}

TEST(Rules, LengthMismatchOfTheRegisters) {
  Registers r;
  r.module.connector_type = 0x23;
  r.module.cable_length = 0x4F;  // 15 m
  const auto with = [&](const char* measured) {
    PhyCableRecord phy;
    phy.SetModule(std::make_unique<ModuleRecord>(r.module));
    phy.prtl_length = measured;
    return Find(ReadingsOf(phy));
  };
  EXPECT_EQ(Shown(with("18 m")), Texts{});
  const std::vector<Finding> findings = with("18.5 m");
  EXPECT_EQ(Shown(findings), Texts{"warning length-mismatch"});
  EXPECT_EQ(Sentence(findings[0]),
            "The measured length differs from the stated 15 m by 3.5 m, more than 3 m.");
}

TEST(Rules, LengthMismatchHasTwoLimits) {
  CableRecord r = Pages();
  r.Connector = 0x23;
  r.LengthCopperOrActive = 10;
  r.PrtlLengthText = "13 m";
  EXPECT_EQ(Shown(Find(r)), Texts{"warning length-mismatch"});
  EXPECT_EQ(Shown(Find(r, With("length-mismatch", "3"))), Texts{});
  EXPECT_EQ(Shown(Find(r, With("length-mismatch.percent", "30"))), Texts{});
  EXPECT_EQ(Shown(Find(r, With("length-mismatch.percent", "29"))),
            Texts{"warning length-mismatch"});
}

TEST(Rules, TheReachOfAModuleIsNotTheLengthOfACable) {
  CableRecord r = Pages();
  r.LengthText = "100 m";
  r.LengthCopperOrActive = 50;
  r.PrtlLengthText = "10 m";
  EXPECT_EQ(Shown(Find(r)), Texts{});
}

TEST(Rules, Checksum) {
  Readings port = ReadingsOf(Pages());
  EXPECT_EQ(Shown(Find(port)), Texts{});
  port.checksum_mismatches = 1;
  EXPECT_EQ(Shown(Find(port)), Texts{"warning checksum"});
  EXPECT_EQ(Sentence(Find(port).at(0)), "A checksum of the module's memory does not match.");
  port.checksum_mismatches = 2;
  EXPECT_EQ(Sentence(Find(port).at(0)), "2 checksums of the module's memory do not match.");
}

// ---------------------------------------------------------------------------------------------
// Settings and names
// ---------------------------------------------------------------------------------------------

TEST(RuleSettings, SetSeverities) {
  CableRecord r = Pages();
  r.Temperature = 76 << 8;
  EXPECT_EQ(Shown(Find(r, With("temperature-high-alarm", "warning"))),
            (Texts{"warning temperature-high-alarm", "warning temperature-high-warning"}));
  EXPECT_EQ(Shown(Find(r, With("temperature-high-warning", "off"))),
            Texts{"critical temperature-high-alarm"});
  EXPECT_EQ(Shown(Find(Readings(), With("no-data", "critical"))), Texts{"critical no-data"});
}

TEST(RuleSettings, SetLimitsInAdditionToThoseOfTheModule) {
  CableRecord r = Pages();
  r.Temperature = 66 << 8;
  EXPECT_EQ(Shown(Find(r, With("temperature-high-warning", "66"))), Texts{});
  EXPECT_EQ(Shown(Find(r, With("temperature-high-warning", "65"))),
            Texts{"warning temperature-high-warning"});
  EXPECT_EQ(Shown(Find(r, With("rx-power-low-alarm", "1.5"))),
            (Texts{"critical rx-power-low-alarm 1", "critical rx-power-low-alarm 2",
                   "critical rx-power-low-alarm 3", "critical rx-power-low-alarm 4"}));
  EXPECT_EQ(Shown(Find(r, With("temperature-low-alarm", "-40"))), Texts{});
}

TEST(RuleSettings, RejectUnknownNamesAndValues) {
  RuleSettings settings;
  using Outcome = RuleSettings::Outcome;
  EXPECT_EQ(settings.Set("lane-imbalanc", "2"), Outcome::kUnknownName);
  EXPECT_EQ(settings.Set("", "2"), Outcome::kUnknownName);
  for (const char* value : {"", "bad", "2x", "nan", "inf", "-1", "Off", " 2"}) {
    EXPECT_EQ(settings.Set("lane-imbalance", value), Outcome::kBadValue) << value;
  }
  EXPECT_EQ(settings.Set("checksum", "2"), Outcome::kBadValue) << "it has no limit";
  EXPECT_EQ(settings.Set("tx-los", "2"), Outcome::kBadValue);
  EXPECT_EQ(settings.Set("temperature-high-alarm-latched", "2"), Outcome::kBadValue);
  EXPECT_EQ(settings.Set("outlier.modules", "off"), Outcome::kBadValue);
  EXPECT_EQ(settings.Set("outlier.modules", "-1"), Outcome::kBadValue);
  EXPECT_EQ(settings.Set("rx-los.dark", "3"), Outcome::kBadValue);
  EXPECT_EQ(settings.Set("temperature-low-alarm", "-20"), Outcome::kSet);
}

TEST(RuleNames, AreStableAndDistinct) {
  std::set<std::string_view> names;
  for (std::size_t i = 0; i < kRules; ++i) {
    const Rule rule = RuleOf(i);
    EXPECT_TRUE(names.insert(RuleName(rule)).second) << RuleName(rule);
    EXPECT_EQ(FindRule(RuleName(rule)), rule);
    EXPECT_FALSE(RuleMeaning(rule).empty()) << RuleName(rule);
  }
  EXPECT_EQ(names.size(), 54U);
  EXPECT_EQ(FindRule("temperature"), std::nullopt);
  EXPECT_EQ(RuleName(ThresholdRule(Quantity::kRxPower, AlarmLevel::kLowAlarm)),
            "rx-power-low-alarm");
  EXPECT_EQ(RuleName(LatchedRule(Quantity::kTxBias, AlarmLevel::kHighWarning)),
            "tx-bias-high-warning-latched");
  EXPECT_EQ(RuleName(LaneFlagRule(LaneFlag::kAdaptiveEqFault)), "adaptive-eq-fault");
  EXPECT_EQ(RuleName(Rule::kChecksum), "checksum");
}

TEST(Verdicts, AreTheWorstSeverities) {
  std::vector<Finding> findings;
  const auto verdict = [&] {
    return VerdictName(VerdictOf(findings.data(), findings.data() + findings.size()));
  };
  EXPECT_EQ(verdict(), "ok");
  findings.push_back({Rule::kNoData, Severity::kUnknown, 0, 0});
  EXPECT_EQ(verdict(), "unknown");
  findings.push_back({Rule::kLaneImbalance, Severity::kWarning, 3, 0});
  EXPECT_EQ(verdict(), "warning");
  findings.push_back({Rule::kChecksum, Severity::kCritical, 0, 0});
  findings.push_back({Rule::kLaneImbalance, Severity::kWarning, 2, 0});
  EXPECT_EQ(verdict(), "critical");
  SortWorstFirst(findings);
  EXPECT_EQ(Shown(findings), (Texts{"critical checksum", "warning lane-imbalance 2",
                                    "warning lane-imbalance 3", "unknown no-data"}));
}

}  // namespace
}  // namespace cable_info
