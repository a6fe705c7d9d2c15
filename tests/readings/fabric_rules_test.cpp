// The rules that compare ports, with ports that just meet them and just do not.

#include "cable_info/readings/fabric_rules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cable_info/cable_record.h"
#include "cable_info/phy_cable_record.h"

namespace cable_info {
namespace {

using Findings = std::vector<std::pair<std::size_t, Finding>>;

CableRecord Module(const std::string& part, float rx_milliwatts) {
  CableRecord r;
  r.PartNumber = part;
  for (int i = 0; i < 4; ++i) {
    r.RxPower[i] = rx_milliwatts;
    r.TxPower[i] = 1.0F;
    r.TxBias[i] = 7.0F;
  }
  return r;
}

float Milliwatts(double dbm) { return static_cast<float>(std::pow(10.0, dbm / 10)); }

Findings Judge(const std::vector<FabricPort>& ports, const RuleSettings& settings = {}) {
  FabricRules rules(settings);
  for (const FabricPort& port : ports) rules.Add(port);
  Findings findings;
  rules.Judge(
      [&](std::size_t index, const Finding& finding) { findings.emplace_back(index, finding); });
  return findings;
}

RuleSettings With(std::string_view name, std::string_view value) {
  RuleSettings settings;
  EXPECT_EQ(settings.Set(name, value), RuleSettings::Outcome::kSet);
  return settings;
}

// Modules of one part number, with these RX powers in dBm.
std::vector<FabricPort> Group(const std::vector<double>& dbm) {
  std::vector<FabricPort> ports;
  for (const double power : dbm) {
    const PortId id{ports.size(), 1};
    ports.emplace_back(id, std::nullopt, ReadingsOf(Module("PN", Milliwatts(power))));
  }
  return ports;
}

// ---------------------------------------------------------------------------------------------
// Outliers
// ---------------------------------------------------------------------------------------------

TEST(Outlier, IsMoreThanThreeDecibelsBelowTheMedian) {
  const std::vector<double> others(7, -1.0);
  std::vector<double> powers = others;
  powers.push_back(-3.99);
  EXPECT_EQ(Judge(Group(powers)).size(), 0U);
  powers.back() = -4.01;
  const Findings findings = Judge(Group(powers));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].first, 7U);
  const Finding& finding = findings[0].second;
  EXPECT_EQ(finding.rule, Rule::kOutlier);
  EXPECT_EQ(finding.severity, Severity::kWarning);
  EXPECT_EQ(finding.lane, 0);
  EXPECT_NEAR(finding.value, 3.01F, 0.001F);
  EXPECT_EQ(finding.limit, 3.0F);
  EXPECT_NEAR(finding.reference, -1.0F, 0.001F);
  EXPECT_EQ(
      Sentence(finding),
      "The RX power is 3.01 dB below the median of its part number (-1 dBm), more than 3 dB.");
}

TEST(Outlier, IsMoreThanFourRobustDeviationsBelowTheMedian) {
  // The median of these is -1.5, and of the distances from it 1: a robust deviation of 1.4826.
  const std::vector<double> others = {0.5, -0.5, -0.5, -1.5, -1.5, -2.5, -2.5, -3.5};
  std::vector<double> powers = others;
  powers.push_back(-1.5 - 5.92);
  EXPECT_EQ(Judge(Group(powers)).size(), 0U);
  powers.back() = -1.5 - 5.94;
  const Findings findings = Judge(Group(powers));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_NEAR(findings[0].second.limit, 4 * 1.4826F, 0.001F);
  EXPECT_EQ(Judge(Group(powers), With("outlier.deviations", "4.1")).size(), 0U);
}

TEST(Outlier, NeedsEightModulesOfOnePartNumber) {
  std::vector<double> powers(6, -1.0);
  powers.push_back(-9.0);
  EXPECT_EQ(Judge(Group(powers)).size(), 0U);
  EXPECT_EQ(Judge(Group(powers), With("outlier.modules", "7")).size(), 1U);
  std::vector<FabricPort> ports = Group(powers);
  ports.emplace_back(PortId{9, 1}, std::nullopt, ReadingsOf(Module("other", 1.0F)));
  EXPECT_EQ(Judge(ports).size(), 0U);
  ports.emplace_back(PortId{10, 1}, std::nullopt, ReadingsOf(Module("PN", 0.8F)));
  const Findings findings = Judge(ports);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].first, 6U);
}

TEST(Outlier, IsNeverAStrongOneOrOneWithoutPartNumber) {
  std::vector<double> powers(8, -5.0);
  powers.push_back(3.0);
  EXPECT_EQ(Judge(Group(powers)).size(), 0U);
  std::vector<FabricPort> ports = Group({0, 0, 0, 0, 0, 0, 0, -9});
  for (FabricPort& port : ports) port.part_number.clear();
  EXPECT_EQ(Judge(ports).size(), 0U);
}

TEST(Outlier, IsAlsoFoundInRegisters) {
  std::vector<FabricPort> ports = Group({0, 0, 0, 0, 0, 0, 0});
  PhyCableRecord phy;
  phy.SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
  phy.module->power_unit_flag = 1;
  std::string("PN").copy(phy.module->vendor_pn, 16);
  for (int i = 0; i < 4; ++i) {
    phy.module->rx_power[i] = 4900;  // 3.1 dB below 1 mW
    phy.module->tx_bias[i] = 3500;
  }
  ports.emplace_back(PortId{8, 1}, std::nullopt, ReadingsOf(phy));
  ASSERT_EQ(Judge(ports).size(), 1U);
  EXPECT_EQ(Judge(ports, With("outlier", "off")).size(), 0U);
  EXPECT_EQ(Judge(ports, With("outlier", "3.2")).size(), 0U);
}

// ---------------------------------------------------------------------------------------------
// Links
// ---------------------------------------------------------------------------------------------

// Two ends of a link; the first names the second as its peer.
std::vector<FabricPort> Link(const CableRecord& near, const CableRecord& far) {
  return {{PortId{1, 5}, PortId{2, 6}, ReadingsOf(near)},
          {PortId{2, 6}, std::nullopt, ReadingsOf(far)}};
}

TEST(LinkLoss, IsTheDifferenceToTheFarEndsPower) {
  CableRecord near = Module("A", 1.0F);
  const CableRecord far = Module("B", 0.1F);
  near.RxPower[2] = Milliwatts(-5.99);
  EXPECT_EQ(Judge(Link(near, far)).size(), 0U);
  near.RxPower[2] = Milliwatts(-6.01);
  const Findings findings = Judge(Link(near, far));
  ASSERT_EQ(findings.size(), 1U) << "the far end knows no peer";
  EXPECT_EQ(findings[0].first, 0U);
  const Finding& finding = findings[0].second;
  EXPECT_EQ(finding.rule, Rule::kLinkLoss);
  EXPECT_EQ(finding.lane, 3);
  EXPECT_NEAR(finding.value, 6.01F, 0.001F);
  EXPECT_EQ(finding.limit, 6.0F);
  EXPECT_EQ(Sentence(finding),
            "The RX power of lane 3 is 6.01 dB below the far end's TX power, more than 6 dB.");
  EXPECT_EQ(Judge(Link(near, far), With("link-loss", "7")).size(), 0U);
  EXPECT_EQ(Judge(Link(near, far), With("link-loss", "off")).size(), 0U);
}

TEST(LinkLoss, NamesTheWorstLane) {
  CableRecord near = Module("A", Milliwatts(-7));
  near.RxPower[1] = 0;
  const Findings findings = Judge(Link(near, Module("B", 1.0F)));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].second.lane, 2);
  EXPECT_EQ(findings[0].second.value, 40.0F) << "no light counts as -40 dBm";
}

TEST(LinkLoss, NeedsAFarEndThatTransmits) {
  CableRecord far = Module("B", 1.0F);
  for (float& power : far.TxPower) power = 0;
  EXPECT_EQ(Judge(Link(Module("A", 0.01F), far)).size(), 0U);
}

TEST(LinkLoss, ComparesMeansWhereTheLanesDiffer) {
  PhyCableRecord phy;
  phy.SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
  phy.module->power_unit_flag = 1;
  phy.module->cable_identifier = 8;
  for (int i = 0; i < 8; ++i) phy.module->tx_power[i] = 10000;
  std::vector<FabricPort> ports = Link(Module("A", Milliwatts(-6.1)), CableRecord());
  ports[1] = FabricPort(PortId{2, 6}, std::nullopt, ReadingsOf(phy));
  const Findings findings = Judge(ports);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].second.lane, 0);
}

TEST(Links, NeedAKnownPeer) {
  const CableRecord near = Module("A", 0.01F);
  std::vector<FabricPort> ports = Link(near, Module("B", 1.0F));
  ports[0].peer = PortId{2, 5};
  EXPECT_EQ(Judge(ports).size(), 0U) << "another number";
  ports[0].peer = PortId{3, 6};
  EXPECT_EQ(Judge(ports).size(), 0U) << "another GUID";
  ports[0].peer = PortId{1, 5};
  EXPECT_EQ(Judge(ports).size(), 0U) << "itself";
  ports[0].peer.reset();
  EXPECT_EQ(Judge(ports).size(), 0U);
}

CableRecord Fixed(const std::string& part, const std::string& serial) {
  CableRecord r;
  r.TransmitterTechnologyCode = 10;
  r.Connector = 0x23;
  r.PartNumber = part;
  r.SerialNumber = serial;
  return r;
}

TEST(EndMismatch, ComparesPartAndSerialNumbers) {
  EXPECT_EQ(Judge(Link(Fixed("P", "S"), Fixed("P", "S"))).size(), 0U);
  const auto sentence = [](const CableRecord& near, const CableRecord& far) {
    const Findings findings = Judge(Link(near, far));
    EXPECT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.at(0).second.rule, Rule::kEndMismatch);
    EXPECT_EQ(findings.at(0).second.severity, Severity::kWarning);
    return Sentence(findings.at(0).second);
  };
  EXPECT_EQ(sentence(Fixed("P", "S"), Fixed("P", "T")),
            "The two ends of the cable report different serial numbers.");
  EXPECT_EQ(sentence(Fixed("P", "S"), Fixed("Q", "S")),
            "The two ends of the cable report different part numbers.");
  EXPECT_EQ(sentence(Fixed("P", "S"), Fixed("Q", "T")),
            "The two ends of the cable report different part and serial numbers.");
  EXPECT_EQ(Judge(Link(Fixed("P", "S"), Fixed("Q", "T")), With("end-mismatch", "off")).size(), 0U);
}

TEST(FabricRules, KeepTheIdentityOfPorts) {
  FabricRules rules{RuleSettings()};
  for (const FabricPort& port : Link(Fixed("P", "S"), Fixed("", ""))) rules.Add(port);
  ASSERT_EQ(rules.size(), 2U);
  EXPECT_EQ(rules.PartNumberOf(0), "P");
  EXPECT_EQ(rules.SerialNumberOf(0), "S");
  EXPECT_EQ(rules.PartNumberOf(1), "");
  EXPECT_EQ(rules.SerialNumberOf(1), "");
}

TEST(EndMismatch, NeedsTwoIdentifiedEndsOfACable) {
  CableRecord separable = Fixed("P", "S");
  separable.Connector = 0x0C;
  EXPECT_EQ(Judge(Link(Fixed("P", "S"), separable)).size(), 0U);
  EXPECT_EQ(Judge(Link(separable, Fixed("P", "T"))).size(), 0U);
  EXPECT_EQ(Judge(Link(Fixed("P", "S"), Fixed("", ""))).size(), 0U);
}

TEST(EndMismatch, AlsoComparesRegisters) {
  PhyCableRecord phy;
  phy.SetModule(std::make_unique<PhyCableRecord::ModuleRecord>());
  phy.module->connector_type = 0x23;
  std::string("P ").copy(phy.module->vendor_pn, 16);
  std::string("S ").copy(phy.module->vendor_sn, 16);
  std::vector<FabricPort> ports = Link(Fixed("P", "S"), CableRecord());
  ports[1] = FabricPort(PortId{2, 6}, PortId{1, 5}, ReadingsOf(phy));
  EXPECT_EQ(Judge(ports).size(), 0U);
  ports[0].serial_number = "T";
  EXPECT_EQ(Judge(ports).size(), 2U) << "each end knows the other";
}

}  // namespace
}  // namespace cable_info
