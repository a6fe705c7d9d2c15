#include "cable_info/module_memory/sff8024.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <vector>

namespace {

using cable_info::CodeName;
using cable_info::CodeTable;

struct Expectation {
  const CodeTable* table;
  std::size_t size;
  unsigned first;
  unsigned last;
};

// Sizes, first and last codes as counted in the standards.
std::vector<Expectation> Tables() {
  return {
      {&cable_info::kIdentifiers, 39, 0x00, 0x26},
      {&cable_info::kSff8472Encodings, 9, 0x00, 0x08},
      {&cable_info::kSff8636Encodings, 9, 0x00, 0x08},
      {&cable_info::kConnectors, 23, 0x00, 0x28},
      {&cable_info::kComplianceCodes, 74, 0x00, 0x81},
      {&cable_info::kHostInterfaces, 119, 0x00, 0xFF},
      {&cable_info::kMmfInterfaces, 38, 0x00, 0xBE},
      {&cable_info::kSmfInterfaces, 143, 0x00, 0xBE},
      {&cable_info::kPassiveCopperInterfaces, 4, 0x00, 0xC0},
      {&cable_info::kActiveCableInterfaces, 6, 0x00, 0xBF},
      {&cable_info::kBaseTInterfaces, 8, 0x00, 0x07},
      {&cable_info::kQsfpSubtypes, 5, 0, 4},
      {&cable_info::kQsfpDdSubtypes, 6, 0, 5},
      {&cable_info::kSfpDdSubtypes, 3, 0, 2},
      {&cable_info::kOsfpSubtypes, 4, 0, 3},
      {&cable_info::kOsfpXdSubtypes, 3, 0, 2},
      {&cable_info::kFiberFaces, 3, 0, 2},
      {&cable_info::kHeatsinks, 4, 0, 3},
      {&cable_info::kMediaTypes, 6, 0, 5},
      {&cable_info::kMediaTechnologies, 21, 0, 20},
      {&cable_info::kSff8636Technologies, 16, 0, 15},
      {&cable_info::kOpticalLanes, 7, 0, 6},
      {&cable_info::kModuleStates, 5, 1, 5},
      {&cable_info::kDataPathStates, 7, 1, 7},
      {&cable_info::kConfigStatuses, 10, 0, 12},
      {&cable_info::kFrequencyGrids, 10, 0, 9},
      {&cable_info::kManagementSpeeds, 3, 0, 2},
      {&cable_info::kTestPatterns, 15, 0, 15},
      {&cable_info::kSff8472ExtendedIdentifiers, 8, 0, 7},
      {&cable_info::kSff8472RateIdentifiers, 11, 0x00, 0x20},
  };
}

bool DoesNotPrecede(const CodeName& a, const CodeName& b) { return a.code >= b.code; }
bool HasNoName(const CodeName& entry) { return entry.name.empty(); }

TEST(Sff8024, TablesAreComplete) {
  for (const Expectation& expected : Tables()) {
    const CodeTable& table = *expected.table;
    SCOPED_TRACE(table.source());
    ASSERT_EQ(table.size(), expected.size);
    EXPECT_EQ(table.begin()->code, expected.first);
    EXPECT_EQ((table.end() - 1)->code, expected.last);
  }
}

TEST(Sff8024, CodesAreInOrderAndHaveNames) {
  for (const Expectation& expected : Tables()) {
    const CodeTable& table = *expected.table;
    SCOPED_TRACE(table.source());
    EXPECT_EQ(std::adjacent_find(table.begin(), table.end(), DoesNotPrecede), table.end());
    EXPECT_TRUE(std::none_of(table.begin(), table.end(), HasNoName));
  }
}

TEST(Sff8024, EveryTableCitesItsSource) {
  for (const Expectation& expected : Tables()) {
    const std::string_view source = expected.table->source();
    EXPECT_TRUE(source.substr(0, 4) == "SFF-" || source.substr(0, 5) == "CMIS ") << source;
  }
}

struct Sample {
  const CodeTable* table;
  unsigned code;
  std::string_view name;  // empty: not assigned
};

std::vector<Sample> Samples() {
  return {
      {&cable_info::kIdentifiers, 0x00, "Unknown or unspecified"},
      {&cable_info::kIdentifiers, 0x03, "SFP/SFP+/SFP28 and later (SFF-8472)"},
      {&cable_info::kIdentifiers, 0x0D, "QSFP+ or later (SFF-8636/8436)"},
      {&cable_info::kIdentifiers, 0x11, "QSFP28 or later (SFF-8636)"},
      {&cable_info::kIdentifiers, 0x18, "QSFP-DD"},
      {&cable_info::kIdentifiers, 0x19, "OSFP"},
      {&cable_info::kIdentifiers, 0x1E, "QSFP+ or later with CMIS"},
      {&cable_info::kIdentifiers, 0x26, "XPO"},
      {&cable_info::kIdentifiers, 0x27, ""},
      {&cable_info::kIdentifiers, 0x7E, ""},
      {&cable_info::kIdentifiers, 0x80, ""},
      {&cable_info::kIdentifiers, 0x103, ""},
      {&cable_info::kSff8472Encodings, 4, "Manchester"},
      {&cable_info::kSff8472Encodings, 6, "64B/66B"},
      {&cable_info::kSff8636Encodings, 4, "SONET Scrambled"},
      {&cable_info::kSff8636Encodings, 5, "64B/66B"},
      {&cable_info::kSff8636Encodings, 6, "Manchester"},
      {&cable_info::kSff8636Encodings, 8, "PAM4"},
      {&cable_info::kSff8636Encodings, 9, ""},
      {&cable_info::kConnectors, 0x07, "LC"},
      {&cable_info::kConnectors, 0x0C, "MPO 1x12"},
      {&cable_info::kConnectors, 0x0E, ""},
      {&cable_info::kConnectors, 0x20, "HSSDC II"},
      {&cable_info::kConnectors, 0x23, "No separable connector"},
      {&cable_info::kConnectors, 0x28, "MPO 1x16"},
      {&cable_info::kConnectors, 0x29, ""},
      {&cable_info::kConnectors, 0x6F, ""},
      {&cable_info::kComplianceCodes, 0x02, "100GBASE-SR4 or 25GBASE-SR"},
      {&cable_info::kComplianceCodes, 0x0A, ""},
      {&cable_info::kComplianceCodes, 0x0B,
       "100GBASE-CR4, 25GBASE-CR CA-25G-L or 50GBASE-CR2 RS-FEC"},
      {&cable_info::kComplianceCodes, 0x50, ""},
      {&cable_info::kComplianceCodes, 0x7F, "256GFC-SW4"},
      {&cable_info::kComplianceCodes, 0x81, "128GFC"},
      {&cable_info::kHostInterfaces, 0x11, "400GAUI-8 C2M"},
      {&cable_info::kHostInterfaces, 0x12, ""},
      {&cable_info::kHostInterfaces, 0x24, ""},
      {&cable_info::kHostInterfaces, 0x32, "IB NDR"},
      {&cable_info::kHostInterfaces, 0x50, "400GAUI-4-L C2M"},
      {&cable_info::kHostInterfaces, 0x54, ""},
      {&cable_info::kHostInterfaces, 0xA0, "IB XDR"},
      {&cable_info::kHostInterfaces, 0xFF, "End of list"},
      {&cable_info::kMmfInterfaces, 0x12, "800GBASE-SR8"},
      {&cable_info::kMmfInterfaces, 0x25, ""},
      {&cable_info::kSmfInterfaces, 0x1C, "400GBASE-DR4"},
      {&cable_info::kSmfInterfaces, 0x25, ""},
      {&cable_info::kSmfInterfaces, 0x3E, "400ZR DWDM amplified"},
      {&cable_info::kSmfInterfaces, 0x93, "400G-FR4-LPO"},
      {&cable_info::kSmfInterfaces, 0x94, ""},
      {&cable_info::kPassiveCopperInterfaces, 0x01, "Copper cable"},
      {&cable_info::kPassiveCopperInterfaces, 0xC0, "Linear active copper loopback module"},
      {&cable_info::kActiveCableInterfaces, 0x04, "Active cable, BER < 1e-6"},
      {&cable_info::kActiveCableInterfaces, 0xC0, ""},
      {&cable_info::kBaseTInterfaces, 0x04, "10GBASE-T"},
      {&cable_info::kBaseTInterfaces, 0x08, ""},
      {&cable_info::kQsfpDdSubtypes, 3, "Type 2A"},
      {&cable_info::kFiberFaces, 2, "APC"},
      {&cable_info::kHeatsinks, 1, "RHS riding heatsink"},
      {&cable_info::kMediaTypes, 2, "SMF"},
      {&cable_info::kMediaTypes, 6, ""},
      {&cable_info::kMediaTechnologies, 4, "1310 nm DFB"},
      {&cable_info::kMediaTechnologies, 10, "Copper cable, unequalized"},
      {&cable_info::kMediaTechnologies, 16, "C-band tunable laser"},
      {&cable_info::kMediaTechnologies, 17, "L-band tunable laser"},
      {&cable_info::kMediaTechnologies, 21, ""},
      {&cable_info::kSff8636Technologies, 8, "Other / undefined"},
      {&cable_info::kSff8636Technologies, 16, ""},
      {&cable_info::kOpticalLanes, 1, "Lane 1 LSB"},
      {&cable_info::kOpticalLanes, 7, ""},
      {&cable_info::kModuleStates, 0, ""},
      {&cable_info::kModuleStates, 1, "ModuleLowPwr"},
      {&cable_info::kModuleStates, 3, "ModuleReady"},
      {&cable_info::kModuleStates, 5, "ModuleFault"},
      {&cable_info::kDataPathStates, 0, ""},
      {&cable_info::kDataPathStates, 4, "DataPathActivated"},
      {&cable_info::kDataPathStates, 7, "DataPathInitialized"},
      {&cable_info::kConfigStatuses, 8, "ConfigRejectedNoEmulation"},
      {&cable_info::kConfigStatuses, 9, ""},
      {&cable_info::kConfigStatuses, 12, "ConfigInProgress"},
      {&cable_info::kFrequencyGrids, 6, "33 GHz"},
      {&cable_info::kFrequencyGrids, 7, "75 GHz"},
      {&cable_info::kFrequencyGrids, 15, ""},
      {&cable_info::kManagementSpeeds, 2, "3.4 MHz"},
      {&cable_info::kTestPatterns, 12, "SSPRQ"},
      {&cable_info::kTestPatterns, 13, ""},
      {&cable_info::kSff8472ExtendedIdentifiers, 4, "GBIC/SFP: 2-wire interface ID"},
      {&cable_info::kSff8472RateIdentifiers, 3, ""},
      {&cable_info::kSff8472RateIdentifiers, 0x20, "PMD based: A0h byte 36, A2h byte 67"},
  };
}

TEST(Sff8024, CodesHaveTheirNamesAndGapsHaveNone) {
  for (const Sample& sample : Samples()) {
    EXPECT_EQ(sample.table->Name(sample.code), sample.name)
        << sample.table->source() << ", code " << sample.code;
  }
}

TEST(Sff8024, MediaTypeSelectsTheTableOfMediaInterfaces) {
  EXPECT_EQ(cable_info::MediaInterfacesOf(0), nullptr);
  EXPECT_EQ(cable_info::MediaInterfacesOf(1), &cable_info::kMmfInterfaces);
  EXPECT_EQ(cable_info::MediaInterfacesOf(2), &cable_info::kSmfInterfaces);
  EXPECT_EQ(cable_info::MediaInterfacesOf(3), &cable_info::kPassiveCopperInterfaces);
  EXPECT_EQ(cable_info::MediaInterfacesOf(4), &cable_info::kActiveCableInterfaces);
  EXPECT_EQ(cable_info::MediaInterfacesOf(5), &cable_info::kBaseTInterfaces);
  EXPECT_EQ(cable_info::MediaInterfacesOf(6), nullptr);
  EXPECT_EQ(cable_info::MediaInterfacesOf(0x40), nullptr);
}

TEST(Sff8024, IdentifierSelectsTheTableOfSubtypes) {
  EXPECT_EQ(cable_info::SubtypesOf(0x11), nullptr);
  EXPECT_EQ(cable_info::SubtypesOf(0x18), &cable_info::kQsfpDdSubtypes);
  EXPECT_EQ(cable_info::SubtypesOf(0x19), &cable_info::kOsfpSubtypes);
  EXPECT_EQ(cable_info::SubtypesOf(0x1E), &cable_info::kQsfpSubtypes);
  EXPECT_EQ(cable_info::SubtypesOf(0x1F), &cable_info::kSfpDdSubtypes);
  EXPECT_EQ(cable_info::SubtypesOf(0x21), &cable_info::kOsfpXdSubtypes);
}

TEST(Sff8024, HostInterfacesOfInfiniBandHaveASpeed) {
  constexpr std::string_view kSpeeds[] = {"SDR", "DDR", "QDR", "FDR", "EDR", "HDR", "NDR"};
  for (unsigned i = 0; i < std::size(kSpeeds); ++i) {
    EXPECT_EQ(cable_info::InfiniBandSpeedOf(0x2C + i), kSpeeds[i]);
  }
  EXPECT_EQ(cable_info::InfiniBandSpeedOf(0xA0), "XDR");
  for (const unsigned code : {0x00U, 0x2BU, 0x33U, 0x50U, 0xA1U, 0xFFU, 0x12CU}) {
    EXPECT_EQ(cable_info::InfiniBandSpeedOf(code), "");
  }
}

}  // namespace
