#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cable_info/combined_cable_info.h"
#include "test_support.h"

namespace cable_info::test {
namespace {

// The published columns, in order; scripts depend on names and order.
constexpr auto kNames = std::to_array<std::string_view>({
    "NodeGuid",
    "PortGuid",
    "PortNum",
    "Source",
    "Vendor",
    "OUI",
    "PN",
    "SN",
    "Rev",
    "LengthSMFiber",
    "LengthOM5",
    "LengthOM4",
    "LengthOM3",
    "LengthOM2",
    "LengthOM1",
    "LengthCopperOrActive",
    "Identifier",
    "IdentifierStr",
    "Connector",
    "Type",
    "SupportedSpeed",
    "LengthDesc",
    "LengthDescByPRTL",
    "LengthDescByReg",
    "TypeDesc",
    "SupportedSpeedDesc",
    "Temperature",
    "PowerClass",
    "NominalBitrate",
    "CDREnableTxRx",
    "CDREnableTx",
    "CDREnableRx",
    "InputEq",
    "OutputAmp",
    "OutputEmp",
    "OutputPreEmp",
    "OutputPostEmp",
    "FWVersion",
    "Attenuation2.5G",
    "Attenuation5G",
    "Attenuation7G",
    "Attenuation12G",
    "Attenuation25G",
    "RXPowerType",
    "RX1Power",
    "RX2Power",
    "RX3Power",
    "RX4Power",
    "RX5Power",
    "RX6Power",
    "RX7Power",
    "RX8Power",
    "TX1Bias",
    "TX2Bias",
    "TX3Bias",
    "TX4Bias",
    "TX5Bias",
    "TX6Bias",
    "TX7Bias",
    "TX8Bias",
    "TX1Power",
    "TX2Power",
    "TX3Power",
    "TX4Power",
    "TX5Power",
    "TX6Power",
    "TX7Power",
    "TX8Power",
    "RX1LatchedLossIndicator",
    "RX2LatchedLossIndicator",
    "RX3LatchedLossIndicator",
    "RX4LatchedLossIndicator",
    "TX1LatchedLossIndicator",
    "TX2LatchedLossIndicator",
    "TX3LatchedLossIndicator",
    "TX4LatchedLossIndicator",
    "TX1AdaptiveEqualizationFaultIndicator",
    "TX2AdaptiveEqualizationFaultIndicator",
    "TX3AdaptiveEqualizationFaultIndicator",
    "TX4AdaptiveEqualizationFaultIndicator",
    "RX1CDRLOL",
    "RX2CDRLOL",
    "RX3CDRLOL",
    "RX4CDRLOL",
    "TX1CDRLOL",
    "TX2CDRLOL",
    "TX3CDRLOL",
    "TX4CDRLOL",
    "HighTemperatureAlarm",
    "LowTemperatureAlarm",
    "HighTemperatureWarning",
    "LowTemperatureWarning",
    "InitializationFlagComplete",
    "HighSupplyVoltageAlarm",
    "LowSupplyVoltageAlarm",
    "HighSupplyVoltageWarning",
    "LowSupplyVoltageWarning",
    "HighRX1PowerAlarm",
    "LowRX1PowerAlarm",
    "HighRX1PowerWarning",
    "LowRX1PowerWarning",
    "HighRX2PowerAlarm",
    "LowRX2PowerAlarm",
    "HighRX2PowerWarning",
    "LowRX2PowerWarning",
    "HighRX3PowerAlarm",
    "LowRX3PowerAlarm",
    "HighRX3PowerWarning",
    "LowRX3PowerWarning",
    "HighRX4PowerAlarm",
    "LowRX4PowerAlarm",
    "HighRX4PowerWarning",
    "LowRX4PowerWarning",
    "HighTX1BiasAlarm",
    "LowTX1BiasAlarm",
    "HighTX1BiasWarning",
    "LowTX1BiasWarning",
    "HighTX2BiasAlarm",
    "LowTX2BiasAlarm",
    "HighTX2BiasWarning",
    "LowTX2BiasWarning",
    "HighTX3BiasAlarm",
    "LowTX3BiasAlarm",
    "HighTX3BiasWarning",
    "LowTX3BiasWarning",
    "HighTX4BiasAlarm",
    "LowTX4BiasAlarm",
    "HighTX4BiasWarning",
    "LowTX4BiasWarning",
    "HighTX1PowerAlarm",
    "LowTX1PowerAlarm",
    "HighTX1PowerWarning",
    "LowTX1PowerWarning",
    "HighTX2PowerAlarm",
    "LowTX2PowerAlarm",
    "HighTX2PowerWarning",
    "LowTX2PowerWarning",
    "HighTX3PowerAlarm",
    "LowTX3PowerAlarm",
    "HighTX3PowerWarning",
    "LowTX3PowerWarning",
    "HighTX4PowerAlarm",
    "LowTX4PowerAlarm",
    "HighTX4PowerWarning",
    "LowTX4PowerWarning",
    "SupplyVoltageReporting",
    "TransmitterTechnology",
    "ActiveWavelengthControl",
    "CooledTransmitterDevice",
    "ActivePinDetector",
    "TunableTransmitter",
    "ExtendedSpecificationComplianceCodes",
    "AlarmTemperatureHighThresh",
    "AlarmTemperatureLowThresh",
    "WarnTemperatureHighThresh",
    "WarnTemperatureLowThresh",
    "AlarmVoltageHighThresh",
    "AlarmVoltageLowThresh",
    "WarnVoltageHighThresh",
    "WarnVoltageLowThresh",
    "RXPowerHighThresh",
    "RXPowerLowThresh",
    "TXPowerHighThresh",
    "TXPowerLowThresh",
    "TXBiasHighThresh",
    "TXBiasLowThresh",
    "DateCode",
    "Lot",
    "TX1AdaptiveEqualizationFreeze",
    "TX2AdaptiveEqualizationFreeze",
    "TX3AdaptiveEqualizationFreeze",
    "TX4AdaptiveEqualizationFreeze",
    "RXOutputDisable",
    "TXAdaptiveEqualizationEnable",
    "MaxPower",
    "CdrVendor",
    "MaxFiberLength",
});

TEST(TableHeader, HasTheColumnsInOrder) {
  ASSERT_EQ(kNames.size(), 177U);
  std::string expected;
  for (const std::string_view name : kNames) {
    if (!expected.empty()) expected += ',';
    expected += name;
  }
  EXPECT_EQ(CombinedCableInfo::GetCSVHeader(), expected + '\n');
}

TEST(TableHeader, BeginsWithNodeGuidAndEndsWithMaxFiberLength) {
  const std::string header = CombinedCableInfo::GetCSVHeader();
  EXPECT_TRUE(header.starts_with("NodeGuid,PortGuid,PortNum,Source,"));
  EXPECT_TRUE(header.ends_with("MaxPower,CdrVendor,MaxFiberLength\n"));
  EXPECT_EQ(header.find('"'), std::string::npos);
  EXPECT_EQ(header.find(' '), std::string::npos);
}

TEST(TableHeader, NamesEveryColumnOnce) {
  const std::set<std::string> names(ColumnNames().begin(), ColumnNames().end());
  EXPECT_EQ(names.size(), 177U);
}

TEST(TableHeader, GivesEveryColumnAMeaning) {
  ASSERT_EQ(kCsvColumns.size(), kNames.size());
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    EXPECT_EQ(kCsvColumns[i].name, kNames[i]);
    EXPECT_FALSE(kCsvColumns[i].meaning.empty()) << kNames[i];
  }
}

TEST(TableHeader, HasTheDocumentedMeanings) {
  // The lines of `cableinfo columns`: number, name and meaning, at fixed positions.
  const std::string listed = FileText(CABLE_INFO_EXPECTED_DIR "/../cli/expected/columns.txt");
  const std::vector<std::string> lines = Lines(listed);
  ASSERT_EQ(lines.size(), kCsvColumns.size() + 1);
  const std::size_t name = lines[0].find("Column");
  const std::size_t meaning = lines[0].find("Meaning");
  for (std::size_t i = 0; i < kCsvColumns.size(); ++i) {
    EXPECT_TRUE(lines[i + 1].substr(name).starts_with(std::string(kCsvColumns[i].name) + ' '));
    EXPECT_EQ(lines[i + 1].substr(meaning), kCsvColumns[i].meaning);
  }
}

}  // namespace
}  // namespace cable_info::test
